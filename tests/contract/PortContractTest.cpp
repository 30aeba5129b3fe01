// What the engine relies on at the seam, asked of every operation of every port of both adapters:
// of the simulated one and, under Wine, of the Windows adapter twice: on the system itself, and
// over calls that a simulated machine answers. So the two cannot drift apart. What Wine lacks is
// asked of described machines only: methods of WMI, membership and the directory, the access lists
// of window stations and desktops, profiles, and services and programs of a test's choice.
// scripts/check_contract.py finds an operation that is not asked.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <chrono>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#include "platform/simulated/Codes.h"
#include "platform/simulated/MachineFile.h"
#include "tests/contract/World.h"
#include "tests/support/JsonText.h"

namespace platform {
namespace {

using simulated::HResultText;
using simulated::Json;
using std::string_view;

constexpr std::int32_t kForwardOnlyImmediate = 0x30;
constexpr std::uint32_t kReadAccess = 0x80000000;
constexpr std::uint32_t kAllAccess = 0xF003F;

/// JSON written with single quotes.
std::string Quoted(string_view text) {
  std::string quoted(text);
  std::replace(quoted.begin(), quoted.end(), '\'', '"');
  return quoted;
}

Variant ToVariant(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number()) return value.get<std::int32_t>();
  if (value.is_array()) return TextArray{value.get<std::vector<std::string>>()};
  return Null{};
}

Json ToJson(const Variant& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
  if (const auto* flag = std::get_if<RawBool>(&value)) return flag->bits;
  if (const auto* list = std::get_if<TextArray>(&value)) return list->items;
  return nullptr;
}

/// What a described machine is at first.
constexpr char kMachine[] = R"({'schema': 1, 'computer_name': 'PC1',
  'adapters': [
    {'dhcp_enabled': false, 'ip_addresses': ['10.0.0.5'], 'subnet_masks': ['255.0.0.0'],
     'gateways': ['10.0.0.1'], 'dns_servers': ['10.0.0.2', '10.0.0.3'], 'static_dns': true},
    {'index': 4294967295, 'setting_id': '{B}', 'pnp_device_id': 'ROOT\\NET\\1',
     'location_information': null, 'ip_enabled': false}],
  'persistent_routes': [{'destination': '10.9.0.0'}, {'destination': '10.9.0.0', 'metric': 2}],
  'services': [{}, {'name': 'NetBT', 'start': 'disabled', 'running': false}],
  'directory': {'domains': [{'accounts': [{}], 'ous': ['OU=Sales,DC=corp,DC=example']}]}})";

class PortContract : public testing::TestWithParam<std::string> {
 protected:
  /// Everything that was taken must have been given back.
  void TearDown() override { EXPECT_EQ(world.inUse(), simulated::Usage{}); }

  /// Checks that a call failed for this reason. The last error is forgotten afterwards.
  void ExpectFailure(bool succeeded, Win32Error reason) {
    const Win32Error error = machine.Errors().LastError();
    EXPECT_FALSE(succeeded);
    EXPECT_EQ(error, reason);
    machine.Errors().SetLastError(0);
  }

  simulated::Machine described = simulated::ParseMachine(Quoted(kMachine), "test");
  contract::World world = contract::MakeWorld(GetParam(), described);
  IPlatform& machine = world.machine;
};

class RegistryContract : public PortContract {
 protected:
  void SetUp() override {
    ASSERT_EQ(registry.Create(kLocalMachine, kSubkey, kAllAccess, &key), 0u);
  }
  void TearDown() override {
    EXPECT_EQ(registry.Close(key), 0u);
    PortContract::TearDown();
  }

  static constexpr char kSubkey[] = R"(Software\Orvanta\Port Contract)";
  IRegistry& registry = machine.Registry();
  RegistryKey key{};
};

TEST_P(RegistryContract, ValuesComeBackWithTheirTypeAndExactBytes) {
  const struct {
    const char* name;
    std::uint32_t type;
    std::string data;
  } cases[] = {{"Number", kRegDWord, std::string("\x02\x00\x00\x80", 4)},
               {"Text", kRegSz, std::string("two words", 10)},
               {"Expandable", kRegExpandSz, std::string("%SystemRoot%", 13)},
               {"", kRegSz, std::string("default", 8)}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto size = static_cast<std::uint32_t>(c.data.size());
    ASSERT_EQ(registry.Set(key, c.name, c.type, c.data.data(), size), 0u);
    const char* name = *c.name == '\0' ? nullptr : c.name;

    std::uint32_t type = 0;
    std::uint32_t found = 0;
    EXPECT_EQ(registry.Query(key, name, &type, nullptr, nullptr), 0u);
    EXPECT_EQ(type, c.type);
    EXPECT_EQ(registry.Query(key, name, nullptr, nullptr, &found), 0u);
    EXPECT_EQ(found, size);

    std::string data(found + 3, '#');
    found += 3;
    EXPECT_EQ(registry.Query(key, name, nullptr, data.data(), &found), 0u);
    EXPECT_EQ(found, size);
    EXPECT_EQ(data, c.data + "###");

    found = size - 1;
    type = 77;
    EXPECT_EQ(registry.Query(key, name, &type, data.data(), &found), simulated::kMoreData);
    EXPECT_EQ(found, size - 1);
    EXPECT_EQ(type, 77u);

    EXPECT_EQ(registry.Erase(key, c.name), 0u);
    EXPECT_EQ(registry.Query(key, name, &type, nullptr, &found), simulated::kFileNotFound);
    EXPECT_EQ(registry.Erase(key, c.name), simulated::kFileNotFound);
  }
}

TEST_P(RegistryContract, OpeningNeedsTheKeyToExist) {
  RegistryKey other{17};
  EXPECT_EQ(registry.Open(kLocalMachine, R"(Software\Orvanta\Absent)", kReadAccess, &other),
            simulated::kFileNotFound);
  EXPECT_EQ(other, RegistryKey{17});
  ASSERT_EQ(registry.Set(key, "Number", kRegDWord, "\x01\x00\x00", 4), 0u);
  ASSERT_EQ(registry.Open(kLocalMachine, R"(software\ORVANTA\port contract)", kReadAccess, &other),
            0u);
  std::uint32_t number = 0;
  std::uint32_t size = 4;
  EXPECT_EQ(registry.Query(other, "NUMBER", nullptr, &number, &size), 0u);
  EXPECT_EQ(number, 1u);
  EXPECT_EQ(registry.Close(other), 0u);
  EXPECT_EQ(registry.Erase(key, "Number"), 0u);
}

class FilesContract : public PortContract {
 protected:
  void SetUp() override {
    std::string program;
    ASSERT_TRUE(files.ModulePath(&program));
    // Each test has names of its own, since tests run side by side.
    std::string stem = testing::UnitTest::GetInstance()->current_test_info()->name();
    std::replace(stem.begin(), stem.end(), '/', '-');
    stem.insert(0, program, 0, program.rfind('\\') + 1);
    first = stem + "1.cfg";
    second = stem + "2.cfg";
    Clear();
  }
  void TearDown() override {
    Clear();
    PortContract::TearDown();
  }

  void Clear() {
    files.Erase(first);
    files.Erase(second);
    machine.Errors().SetLastError(0);
  }

  /// The file without what writers of such files do differently: blank lines, line ends, blanks
  /// round "=".
  std::string Entries(const std::string& path) {
    std::string content;
    EXPECT_TRUE(files.ReadWhole(path, &content));
    std::erase_if(content, [](char c) { return c == '\r' || c == ' '; });
    const auto twoFeeds = [](char a, char b) { return a == '\n' && b == '\n'; };
    content.erase(std::unique(content.begin(), content.end(), twoFeeds), content.end());
    return content;
  }

  IFiles& files = machine.Files();
  std::string first;
  std::string second;
};

TEST_P(FilesContract, AbsentFilesAreReportedAsSuch) {
  std::string content;
  ExpectFailure(files.Attributes(first) != kNoAttributes, simulated::kFileNotFound);
  ExpectFailure(files.ReadWhole(first, &content), simulated::kFileNotFound);
  ExpectFailure(files.Erase(first), simulated::kFileNotFound);
  ExpectFailure(files.Move(first, second), simulated::kFileNotFound);
  ExpectFailure(files.Copy(first, second, false), simulated::kFileNotFound);
}

TEST_P(FilesContract, ProfileEntriesAreWrittenInPlace) {
  const char* const entries[][3] = {{"Global", "Config", "Restore"},
                                    {"TCP/IP0", "Address", "10.0.0.1"},
                                    {"global", "Reboot", "True"},
                                    {"GLOBAL", "CONFIG", "Other"}};
  for (const auto& [section, key, value] : entries) {
    ASSERT_TRUE(files.WriteProfileEntry(section, key, value, first));
  }
  EXPECT_EQ(files.Attributes(first) & kDirectoryAttribute, 0u);
  EXPECT_EQ(Entries(first), "[Global]\nConfig=Other\nReboot=True\n[TCP/IP0]\nAddress=10.0.0.1\n");
}

TEST_P(FilesContract, CopiesAndMovesRespectWhatStandsInTheWay) {
  ASSERT_TRUE(files.WriteProfileEntry("S", "k", "old", second));
  ASSERT_TRUE(files.WriteProfileEntry("S", "k", "new", first));

  ExpectFailure(files.Copy(first, second, true), simulated::kFileExists);
  ExpectFailure(files.Move(first, second), simulated::kAlreadyExists);
  EXPECT_EQ(Entries(second), "[S]\nk=old\n");
  EXPECT_TRUE(files.Copy(first, second, false));
  EXPECT_EQ(Entries(second), "[S]\nk=new\n");
  EXPECT_TRUE(files.Erase(second));
  EXPECT_TRUE(files.Move(first, second));
  EXPECT_EQ(Entries(second), "[S]\nk=new\n");
  ExpectFailure(files.Attributes(first) != kNoAttributes, simulated::kFileNotFound);
}

TEST_P(FilesContract, OneFileHasManySpellings) {
  ASSERT_TRUE(files.WriteProfileEntry("S", "k", "v", first));
  std::string spelled = first;
  std::replace(spelled.begin(), spelled.end(), '\\', '/');
  std::transform(spelled.begin(), spelled.end(), spelled.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  spelled.insert(2, "/./");
  bool same = false;
  ExpectFailure(files.SameFile(first, second, &same), simulated::kFileNotFound);
  EXPECT_TRUE(files.SameFile(first, spelled, &same) && same) << spelled;
  EXPECT_TRUE(files.Copy(first, second, false));
  EXPECT_TRUE(files.SameFile(first, second, &same) && !same) << "equal content is not enough";
}

TEST_P(PortContract, HandlesThatAreNotOpenAreRefused) {
  constexpr Handle kNothing{0x7FFF0};
  constexpr std::uint32_t kWaitFailed = 0xFFFFFFFF;
  IProcesses& processes = machine.Processes();
  Handle copy = Handle::kNone;
  std::uint32_t number = 9;
  char byte = 'x';
  ExpectFailure(processes.StopInheriting(kNothing), simulated::kInvalidHandle);
  ExpectFailure(processes.Duplicate(kNothing, &copy), simulated::kInvalidHandle);
  ExpectFailure(processes.Wait(kNothing, 0) != kWaitFailed, simulated::kInvalidHandle);
  ExpectFailure(processes.ExitCode(kNothing, &number), simulated::kInvalidHandle);
  ExpectFailure(processes.Terminate(kNothing, 1), simulated::kInvalidHandle);
  ExpectFailure(processes.Peek(kNothing, &number), simulated::kInvalidHandle);
  ExpectFailure(processes.Read(kNothing, &byte, 1, &number), simulated::kInvalidHandle);
  ExpectFailure(processes.Write(kNothing, &byte, 1), simulated::kInvalidHandle);
  EXPECT_EQ(copy, Handle::kNone);
  EXPECT_EQ(number, 9u);
}

TEST_P(PortContract, StandardHandlesAreReplacedOneByOne) {
  IProcesses& processes = machine.Processes();
  Handle read{}, write{};
  ASSERT_TRUE(processes.MakePipe(&read, &write, 0));
  for (const StandardStream stream :
       {StandardStream::kInput, StandardStream::kOutput, StandardStream::kError}) {
    const Handle before = processes.GetStandardHandle(stream);
    EXPECT_TRUE(processes.SetStandardHandle(stream, write));
    const Handle during = processes.GetStandardHandle(stream);
    EXPECT_TRUE(processes.SetStandardHandle(stream, before));
    EXPECT_EQ(during, write);
    EXPECT_EQ(processes.GetStandardHandle(stream), before);
  }
  processes.Close(read);
  processes.Close(write);
}

TEST_P(PortContract, WhatDoesNotExistIsNotFound) {
  IServices& services = machine.Services();
  const ServiceHandle manager = services.OpenManager();
  ASSERT_NE(manager, ServiceHandle::kNone);
  const ServiceHandle service = services.OpenService(manager, "Orvanta Absent");
  ExpectFailure(service != ServiceHandle::kNone, simulated::kServiceUnknown);
  services.Close(manager);

  ProcessInformation child;
  char command[] = "orvanta-absent.exe";
  ExpectFailure(machine.Processes().Spawn(nullptr, command, nullptr, nullptr, {}, &child),
                simulated::kFileNotFound);
  EXPECT_EQ(child.process, Handle::kInvalid);
  EXPECT_EQ(child.processId, 0u);

  const LibraryHandle library = machine.Libraries().Load("orvanta-absent.dll");
  ExpectFailure(library != LibraryHandle::kNone, simulated::kModuleNotFound);

  IResolver& resolver = machine.Resolver();
  ASSERT_EQ(resolver.Start(), 0u);
  std::uint32_t address = 5;
  EXPECT_FALSE(resolver.LookUpHost("orvanta-absent.invalid", &address));
  EXPECT_NE(resolver.LastError(), 0u);
  EXPECT_EQ(address, 5u);

  std::string text = "kept";
  EXPECT_FALSE(machine.Errors().Describe(static_cast<HResult>(0xA0AB1234), &text));
  EXPECT_EQ(text, "kept");
}

class SecurityContract : public PortContract {
 protected:
  void TearDown() override {
    blocks.clear();
    PortContract::TearDown();
  }

  /// A block that lives as long as the test.
  template <class Record>
  Record* Block(std::uint32_t size) {
    blocks.emplace_back(security.Allocate(size), [this](void* block) { security.Free(block); });
    return static_cast<Record*>(blocks.back().get());
  }

  ISecurity& security = machine.Security();
  std::vector<std::shared_ptr<void>> blocks;
};

TEST_P(SecurityContract, ANewListIsEmpty) {
  auto* const list = Block<Acl>(64);
  ExpectFailure(security.InitializeAcl(list, 4), kInsufficientBuffer);
  ASSERT_TRUE(security.InitializeAcl(list, 64));
  AclSize size;
  EXPECT_TRUE(security.GetAclSize(list, &size));
  EXPECT_EQ(size.entryCount, 0u);
  EXPECT_EQ(size.bytes, 64u);
  AccessEntry entry;
  ExpectFailure(security.EntryAt(list, 0, &entry), simulated::kInvalidParameter);
  EXPECT_EQ(entry.record, nullptr);
}

TEST_P(SecurityContract, ADescriptorRefersToItsList) {
  auto* const descriptor = Block<Descriptor>(kDescriptorSize);
  ASSERT_TRUE(security.InitializeDescriptor(descriptor));
  EXPECT_TRUE(security.IsValidDescriptor(descriptor));
  auto* const list = Block<Acl>(64);
  ASSERT_TRUE(security.InitializeAcl(list, 64));
  const Acl* found = list;
  EXPECT_TRUE(security.DescriptorList(descriptor, &found));
  EXPECT_EQ(found, nullptr);
  const std::uint32_t bare = security.DescriptorSize(descriptor);
  EXPECT_TRUE(security.SetDescriptorList(descriptor, list));
  EXPECT_TRUE(security.DescriptorList(descriptor, &found));
  EXPECT_EQ(found, list);
  EXPECT_EQ(security.DescriptorSize(descriptor), bare + 64);
}

TEST_P(PortContract, ALockLetsItsHolderInAgainAndOthersAtTheEnd) {
  const auto lock = machine.MakeCriticalSection();
  lock->Enter();
  lock->Enter();
  std::atomic<bool> started = false;
  std::atomic<bool> entered = false;
  std::thread other([&] {
    started = true;
    lock->Enter();
    entered = true;
    lock->Leave();
  });
  while (!started) std::this_thread::yield();
  lock->Leave();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(entered);
  lock->Leave();
  other.join();
  EXPECT_TRUE(entered);
}

TEST_P(PortContract, DottedTextsAreReadInEveryNotation) {
  constexpr struct {
    const char* text;
    std::uint32_t address;  // network byte order on a little-endian machine
  } kCases[] = {
      {"10.0.0.1", 0x0100000A},     {"255.255.255.0", 0x00FFFFFF}, {"0.0.0.0", 0},
      {"1.2.3", 0x03000201},        {"1.2", 0x02000001},           {"16909060", 0x04030201},
      {"010.0x10.0.1", 0x01001008}, {"256.0.0.1", kNoAddress},     {"1.2.3.4.5", kNoAddress},
      {"10.0.0.", kNoAddress},      {"10..0.1", kNoAddress},       {"fd00::2", kNoAddress},
      {"1host", kNoAddress},        {"-1.0.0.0", kNoAddress}};
  for (const auto& c : kCases) {
    EXPECT_EQ(machine.Resolver().ParseDotted(c.text), c.address) << c.text;
  }
}

TEST_P(PortContract, AWorkgroupMachineHasAGroupButNoDomain) {
  IDirectory& directory = machine.Directory();
  PolicyHandle policy{};
  ASSERT_GE(directory.OpenPolicy(&policy), 0);
  bool hasSid = true;
  std::string name = "x";
  EXPECT_GE(directory.QueryPrimaryDomain(policy, &hasSid, &name), 0);
  EXPECT_FALSE(hasSid);
  name = "x";
  EXPECT_GE(directory.QueryDnsDomain(policy, &name), 0);
  EXPECT_EQ(name, "");
  directory.ClosePolicy(policy);
  name = "no group is called so";
  EXPECT_TRUE(directory.LanGroup(&name));
  EXPECT_NE(name, "no group is called so");
  EXPECT_EQ(directory.StatusToError(0), 0u);
  EXPECT_EQ(directory.StatusToError(static_cast<NtStatus>(0xC0000022)), simulated::kAccessDenied);
}

/// A connection to WMI, for its own lifetime; `result` tells how far it came.
struct Connection {
  explicit Connection(IPlatform& machine) : wmi(machine.Wmi()) {
    result = wmi.EnterApartment();
    if (result >= 0) result = wmi.SecureProcess();
    if (result >= 0) result = wmi.MakeLocator(&locator);
    if (result >= 0) result = locator->ConnectServer(R"(ROOT\cimv2)", &services);
    if (result >= 0) result = services->SecureProxy();
  }
  ~Connection() {
    services.reset();
    locator.reset();
    wmi.LeaveApartment();
  }

  IWmi& wmi;
  HResult result;
  std::unique_ptr<IWmiLocator> locator;
  std::unique_ptr<IWmiServices> services;
};

class WmiContract : public PortContract {
 protected:
  void SetUp() override {
    connection.emplace(machine);
    ASSERT_GE(connection->result, kOk);
  }
  void TearDown() override {
    connection.reset();
    PortContract::TearDown();
  }

  /// The next row that is there at all.
  std::unique_ptr<IWmiObject> Row(IWmiRows& rows, std::int32_t timeout, HResult expected) {
    std::unique_ptr<IWmiObject> row;
    std::uint32_t returned = 9;
    EXPECT_EQ(rows.Next(timeout, &row, &returned), expected);
    EXPECT_EQ(returned, expected == kOk ? 1u : 0u);
    return row;
  }

  std::optional<Connection> connection;
};

TEST_P(WmiContract, ApartmentsNest) {
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(connection->wmi.EnterApartment(), 1);
    connection->wmi.LeaveApartment();
  }
}

TEST_P(WmiContract, AQueryAnswersItsRowsAndThenNone) {
  const auto query = [&](const char* text) {
    std::unique_ptr<IWmiRows> rows;
    EXPECT_GE(connection->services->ExecQuery(text, kForwardOnlyImmediate, &rows), kOk);
    return rows;
  };
  const auto rows = query("select Name from Win32_ComputerSystem");
  const auto row = Row(*rows, kForever, kOk);
  Variant name;
  EXPECT_GE(row->Get("Name", &name), kOk);
  ASSERT_TRUE(std::holds_alternative<std::string>(name));
  EXPECT_NE(std::get<std::string>(name), "");
  const Variant before = name;
  EXPECT_EQ(row->Get("NoSuchProperty", &name), simulated::kWmiNotFound);
  EXPECT_EQ(name, before);
  Row(*rows, kForever, kNoMoreRows);
  Row(*query("select MACAddress from Win32_NetworkAdapterConfiguration where Index=98765"),
      kForever, kNoMoreRows);
}

TEST_P(WmiContract, InstancesOfAClassCanBeReadWithoutWaiting) {
  std::unique_ptr<IWmiRows> rows;
  ASSERT_GE(connection->services->CreateInstanceEnum("Win32_OperatingSystem", &rows), kOk);
  Variant drive;
  EXPECT_GE(Row(*rows, 0, kOk)->Get("SystemDrive", &drive), kOk);
  EXPECT_EQ(drive, Variant("C:"));
}

TEST_P(WmiContract, WhatDoesNotExistIsRefused) {
  std::unique_ptr<IWmiServices> other;
  EXPECT_EQ(connection->locator->ConnectServer(R"(root\orvanta-absent)", &other),
            simulated::kWmiInvalidNamespace);
  std::unique_ptr<IWmiObject> object;
  EXPECT_TRUE(Failed(connection->services->FetchClass("Orvanta_Absent", &object)));
  EXPECT_EQ(object, nullptr);
  ASSERT_GE(connection->services->FetchClass("Win32_NetWorkAdapterConfiguration", &object), kOk);
  std::unique_ptr<IWmiObject> definition;
  EXPECT_EQ(object->GetMethod("NoSuchMethod", &definition), simulated::kWmiNotFound);
  EXPECT_EQ(definition, nullptr);
}

class DescribedMachine : public SecurityContract {
 protected:
  /// The selected properties of all rows, or the failure.
  std::string Query(const std::string& query) {
    const Connection connection(machine);
    EXPECT_GE(connection.result, kOk);
    std::unique_ptr<IWmiRows> rows;
    const HResult result =
        connection.services->ExecQuery("select " + query, kForwardOnlyImmediate, &rows);
    if (result < 0) return HResultText(result);
    Json found = Json::array();
    std::unique_ptr<IWmiObject> row;
    std::uint32_t returned = 0;
    while (rows->Next(kForever, &row, &returned) == kOk) {
      std::istringstream properties(query.substr(0, query.find(' ')));
      for (std::string property; std::getline(properties, property, ',');) {
        Variant value;
        EXPECT_GE(row->Get(property, &value), kOk);
        found.push_back(ToJson(value));
      }
    }
    return found.dump();
  }

  /// Calls a method as the engine does; its return value, or the failure.
  std::string Method(std::string path, const std::string& method, string_view arguments) {
    path.insert(0, path.starts_with("Name=") ? "Win32_ComputerSystem."
                                             : "Win32_NetworkAdapterConfiguration.");
    if (path.ends_with('.')) path.pop_back();
    const Connection connection(machine);
    EXPECT_GE(connection.result, kOk);
    std::unique_ptr<IWmiObject> object, definition, parameters, answer;
    HResult result = connection.services->FetchClass(path.substr(0, path.find('.')), &object);
    if (result >= 0) result = object->GetMethod(method, &definition);
    if (result >= 0 && definition) result = definition->SpawnInstance(&parameters);
    const Json wanted = Json::parse(Quoted(arguments));
    for (const auto& [name, value] : wanted.items()) {
      if (result >= 0) result = parameters->Put(name, ToVariant(value));
    }
    if (result >= 0) {
      result = connection.services->ExecMethod(path, method, parameters.get(), &answer);
    }
    Variant value;
    if (result >= 0) result = answer->Get("ReturnValue", &value);
    return result < 0 ? HResultText(result) : ToJson(value).dump();
  }

  /// A part of the machine as its file shows it.
  std::string At(const std::string& pointer) const {
    return simulated::ToJson(described, false)[Json::json_pointer(pointer)].dump();
  }
};

TEST_P(DescribedMachine, ServicesChangeTheirStartTypeAndStart) {
  IServices& services = machine.Services();
  const ServiceHandle manager = services.OpenManager();
  const ServiceHandle service = services.OpenService(manager, "netbt");
  ASSERT_NE(service, ServiceHandle::kNone);
  ExpectFailure(services.Start(service), simulated::kServiceDisabled);
  EXPECT_TRUE(services.SetStartType(service, ServiceStart::kManual));
  EXPECT_EQ(At("/services/1/start"), "\"manual\"");
  EXPECT_TRUE(services.Start(service));
  EXPECT_EQ(At("/services/1/running"), "true");
  ExpectFailure(services.Start(service), simulated::kServiceAlreadyRunning);
  services.Close(service);
  services.Close(manager);
}

TEST_P(DescribedMachine, AChildHasPipesAndEnds) {
  struct {
    std::string command;
    std::uint32_t exitCode;
    std::size_t routes;
  } commands[] = {{"route DELETE 10.9.0.0", 0, 0},
                  {"route DELETE 10.9.0.0", 1, 0},
                  {"route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 4294967295", 0, 1},
                  {"route -p ADD 10.1.0.300 mask 255.255.0.0 10.0.0.1 METRIC 1", 1, 1},
                  {"route -p ADD 10.1.0.0 mask 255.255.0.0 255.255.255.255 METRIC 1", 1, 1},
                  {"route print", 1, 1}};
  IProcesses& processes = machine.Processes();
  Handle read{}, write{};
  ASSERT_TRUE(processes.MakePipe(&read, &write, 65536));
  EXPECT_TRUE(processes.StopInheriting(read));
  for (auto& c : commands) {
    SCOPED_TRACE(c.command);
    ProcessInformation child;
    ASSERT_TRUE(processes.Spawn(nullptr, c.command.data(), nullptr, nullptr,
                                {kUseStandardHandles, 1, read, write, write}, &child));
    EXPECT_EQ(processes.Wait(child.process, 100), kWaitSignalled);
    std::uint32_t number = 9;
    EXPECT_TRUE(processes.ExitCode(child.process, &number));
    EXPECT_EQ(number, c.exitCode);
    EXPECT_EQ(described.persistentRoutes.size(), c.routes);
    processes.Close(child.process);
    processes.Close(child.thread);
  }
  EXPECT_EQ(At("/persistent_routes/0/metric"), "-1");
  processes.Close(read);
  processes.Close(write);
}

TEST_P(DescribedMachine, NamesAndResultsHaveTheirAnswers) {
  described.hosts = {{"gateway.example", "10.0.0.1"}};
  std::uint32_t address = 0;
  EXPECT_EQ(machine.Resolver().Start(), 0u);
  EXPECT_TRUE(machine.Resolver().LookUpHost("Gateway.example", &address));
  EXPECT_EQ(address, 0x0100000Au);
  std::string text;
  EXPECT_TRUE(machine.Errors().Describe(simulated::FromError(simulated::kAccessDenied), &text));
  EXPECT_EQ(text, "Access is denied.\r\n");
  machine.Clock().Sleep(20000);
  EXPECT_EQ(support::JsonTexts(described.journal),
            std::vector<std::string>{R"({"call":"sleep","milliseconds":20000})"});
}

TEST_P(DescribedMachine, AUserLosesTheRightToAnObject) {
  constexpr Token kUser{7};
  constexpr UserObject kObject{20};
  described.userObjects = {{20, {7, 8}}};
  std::uint32_t needed = 0;
  const Sid* user = nullptr;
  ExpectFailure(security.TokenUser(kUser, nullptr, 0, &needed, &user), kInsufficientBuffer);
  EXPECT_EQ(user, nullptr);
  void* const record = Block<void>(needed);
  ASSERT_TRUE(security.TokenUser(kUser, record, needed, &needed, &user));
  const std::uint32_t sidSize = security.SidSize(user);
  auto* const own = Block<Sid>(sidSize);
  EXPECT_FALSE(security.CopySid(sidSize - 1, own, user));
  ASSERT_TRUE(security.CopySid(sidSize, own, user));
  EXPECT_TRUE(security.SameSid(own, user));

  // Each turn takes the user's entries away: one is there at first.
  for (const std::uint32_t entries : {2u, 1u}) {
    EXPECT_FALSE(security.GetObjectSecurity(kObject, nullptr, 0, &needed));
    auto* const descriptor = Block<Descriptor>(needed);
    ASSERT_TRUE(security.GetObjectSecurity(kObject, descriptor, needed, &needed));
    const Acl* list = nullptr;
    ASSERT_TRUE(security.DescriptorList(descriptor, &list));
    AclSize size;
    ASSERT_TRUE(security.GetAclSize(list, &size));
    EXPECT_EQ(size.entryCount, entries);
    auto* const rest = Block<Acl>(size.bytes);
    ASSERT_TRUE(security.InitializeAcl(rest, size.bytes));
    for (std::uint32_t i = 0; i < size.entryCount; ++i) {
      AccessEntry entry;
      ASSERT_TRUE(security.EntryAt(list, i, &entry));
      if (!security.SameSid(entry.sid, own)) {
        EXPECT_TRUE(security.AddEntry(rest, entry));
      }
    }
    auto* const changed = Block<Descriptor>(kDescriptorSize);
    ASSERT_TRUE(security.InitializeDescriptor(changed));
    EXPECT_TRUE(security.SetDescriptorList(changed, rest));
    EXPECT_TRUE(security.IsValidDescriptor(changed));
    EXPECT_TRUE(security.SetObjectSecurity(kObject, changed));
  }
  EXPECT_EQ(described.userObjects.at(20), std::vector<std::uint64_t>{8});
}

TEST_P(DescribedMachine, AUserContextIsGivenBack) {
  EXPECT_TRUE(security.Revert());
  EXPECT_TRUE(security.UnloadProfile(Token{7}, Profile{50}));
  EXPECT_TRUE(security.SetProcessStation(UserObject{31}));
  security.CloseDesktop(UserObject{20});
  security.CloseStation(UserObject{30});
  EXPECT_EQ(support::JsonTexts(described.journal),
            (std::vector<std::string>{R"({"call":"security.revert","handle":0})",
                                      R"({"call":"security.unload_profile","handle":50})",
                                      R"({"call":"security.set_station","handle":31})",
                                      R"({"call":"security.close","handle":20})",
                                      R"({"call":"security.close","handle":30})"}));
  security.CloseToken(Token{0x7FFF0});
}

TEST_P(DescribedMachine, QueriesAnswerTheSelectedPropertiesOfTheRowsAsked) {
  constexpr std::pair<const char*, string_view> kQueries[] = {
      {"Name from Win32_ComputerSystem", "['PC1']"},
      {"Index from Win32_NetworkAdapterConfiguration where IPEnabled=true", "[7]"},
      {"dhcpenabled from win32_NETWORKADAPTERconfiguration where Index=-1", "[-1]"},
      {"IPAddress,IPSubnet from Win32_NetworkAdapterConfiguration where Index=7",
       "[['10.0.0.5'],['255.0.0.0']]"},
      {"DefaultIPGateway from Win32_NetworkAdapterConfiguration where Index=4294967295", "[null]"},
      {"Caption from Win32_NetworkAdapter where Index=5", "[]"},
      {"Metric1 from Win32_IP4PersistedRouteTable", "[1,2]"},
      {"Speed from Win32_NetworkAdapter where Index=7", "0x80041017"},
      {"Name from Win32_Nothing", "0x80041010"},
      {"Name Win32_ComputerSystem", "0x80041017"}};
  for (const auto& [query, answer] : kQueries) EXPECT_EQ(Query(query), Quoted(answer)) << query;
}

TEST_P(DescribedMachine, MethodsChangeWhatTheyMayAndRefuseTheRest) {
  constexpr const char* kJoin = "JoinDomainOrWorkgroup";
  constexpr const char* kGateway = "{'DefaultIPGateway':['10.0.0.1','11.0.0.9']}";
  constexpr const char* kPc = "Name=\"PC1\"";
  const struct {
    std::string path, method;
    string_view arguments, outcome;
    std::string changed{};  // by a refusal nothing
    string_view value{};
  } kMethods[] = {
      {"Index=7", "EnableDHCP", "{}", "0", "/adapters/0/gateways", "[]"},
      {"Index=7", "SetGateways", kGateway, "84"},
      {"Index=7", "EnableStatic", "{'IPAddress':['1.0.0.1'],'SubNetMask':[]}", "68"},
      {"Index=7", "EnableStatic", "{'IPAddress':['1.0.0.256'],'SubNetMask':['255.0.0.0']}", "66"},
      // What an unreadable address becomes on its way here.
      {"Index=7", "EnableStatic", "{'IPAddress':['255.255.255.255'],'SubNetMask':['255.0.0.0']}",
       "66"},
      {"Index=7", "EnableStatic",
       "{'IPAddress':['10.0.0.9','11.0.0.9'],'SubNetMask':['255.0.0.0','255.255.255.255']}", "0",
       "/adapters/0/dhcp_enabled", "false"},
      {"Index=7", "SetGateways", "{'DefaultIPGateway':['10.0.0.1','11.0.0.1']}", "71"},
      {"Index=7", "SetGateways", kGateway, "0", "/adapters/0/gateways", "['10.0.0.1','11.0.0.9']"},
      {"Index=7", "SetGateways", "{'DefaultIPGateway':null}", "0", "/adapters/0/gateways", "[]"},
      {"Index=7", "SetDNSServerSearchOrder", "{}", "0", "/adapters/0/static_dns", "false"},
      {"Index=7", "SetDNSServerSearchOrder", "{'DNSServerSearchOrder':['10.0.0.7']}", "0",
       "/adapters/0/static_dns", "true"},
      {"", "SetDNSSuffixSearchOrder", "{'DNSDomainSuffixSearchOrder':['a.b']}", "0",
       "/adapters/1/dns_suffixes", "['a.b']"},
      {"Index=9", "EnableDHCP", "{}", "0x80041002"},
      {"Index=7", "SetGateways", "{'Gateway':null}", "0x80041002"},
      {"Name=\"PC2\"", "Rename", "{'Name':'X'}", "0x80041002"},
      {kPc, "Rename", "{'Name':'PC2','UserName':null}", "0", "/computer_name", "'PC1'"},
      {kPc, kJoin, "{'Name':'LAB','FJoinOptions':0}", "0", "/membership", "{'workgroup':'LAB'}"},
      {kPc, kJoin, "{'Name':'other.example','FJoinOptions':1}", "1355"},
      {kPc, kJoin, "{'Name':'CORP','UserName':'joiner','Password':'S3CRET','FJoinOptions':3}",
       "1326"},
      {kPc, kJoin, "{'Name':'CORP','UserName':'Joiner','Password':'s3cret','FJoinOptions':1}",
       "1332"},
      {kPc, kJoin,
       "{'Name':'CORP','UserName':'joiner','Password':'s3cret','FJoinOptions':3,'AccountOU':'X'}",
       "2"},
      {kPc, kJoin,
       R"({'Name':'corp.example','UserName':'corp.example\\joiner','Password':'s3cret',
           'AccountOU':null,'FJoinOptions':259})",
       "0", "/directory/domains/0/computers/0/dn", "'CN=PC1,CN=Computers,DC=corp,DC=example'"},
      {kPc, kJoin, "{'Name':'CORP','UserName':'joiner','Password':'s3cret','FJoinOptions':1}",
       "2691"},
      {kPc, "UnjoinDomainOrWorkgroup", "{}", "0", "/membership", "{'workgroup':'WORKGROUP'}"}};
  for (const auto& c : kMethods) {
    SCOPED_TRACE(c.method + std::string(c.arguments));
    const std::string before = At("");
    EXPECT_EQ(Method(c.path, c.method, c.arguments), c.outcome);
    EXPECT_EQ(At(c.changed), c.changed.empty() ? before : Quoted(c.value));
  }
}

TEST_P(DescribedMachine, ComputersMoveAndAreRenamedInTheirDirectory) {
  described.membership = simulated::DomainMembership{"corp.example", "CORP", true};
  described.domains[0].computers = {{"PC1", "CN=PC1,CN=Computers,DC=corp,DC=example"}};
  constexpr const char* kFrom = "LDAP://CN=PC1,CN=Computers,DC=corp,DC=example";
  constexpr const char* kTo = "LDAP://OU=Sales,DC=corp,DC=example";
  const struct {
    std::string source, target, password, bound, moved;
  } kMoves[] = {{kFrom, kTo, "wrong", "0x8007052E", "0x00000000"},
                {kFrom, "LDAP://OU=None,DC=corp,DC=example", "s3cret", "0x80072030", "0x00000000"},
                {kFrom, "LDAP://OU=Sales,DC=other", "s3cret", "0x8007203A", "0x00000000"},
                {"LDAP://CN=PC9,DC=corp,DC=example", kTo, "s3cret", "0x00000000", "0x80072030"},
                {kFrom, kTo, "s3cret", "0x00000000", "0x00000000"}};
  auto& directory = machine.Directory();
  std::unique_ptr<IDirectoryContainer> container;
  EXPECT_EQ(HResultText(directory.BindContainer(kTo, "joiner", "s3cret", &container)),
            "0x800401F0");
  directory.EnterApartment();
  for (const auto& c : kMoves) {
    SCOPED_TRACE(c.source + " to " + c.target);
    const HResult bound = directory.BindContainer(c.target, "CORP\\joiner", c.password, &container);
    EXPECT_EQ(HResultText(bound), c.bound);
    const HResult moved = bound < 0 ? 0 : container->MoveHere(c.source);
    EXPECT_EQ(HResultText(moved), c.moved);
    container.reset();
  }
  EXPECT_EQ(HResultText(machine.Wmi().EnterApartment()), "0x80010106");
  machine.Wmi().LeaveApartment();
  directory.LeaveApartment();

  Method("Name=\"PC1\"", "Rename", "{'Name':'PC2'}");
  described.Restart();
  EXPECT_EQ(At("/computer_name") + At("/pending_computer_name"), "\"PC2\"null");
  char buffer[64];
  std::uint32_t length = 0;
  ASSERT_TRUE(directory.ComputerObjectName(nullptr, &length));
  ASSERT_LE(length, sizeof buffer);
  ASSERT_TRUE(directory.ComputerObjectName(buffer, &length));
  EXPECT_STREQ(buffer, "CN=PC2,OU=Sales,DC=corp,DC=example");
}

TEST_P(DescribedMachine, DecryptExistsOnlyWhereItIsInstalled) {
  auto& libraries = machine.Libraries();
  EXPECT_EQ(libraries.Load("LibCrypto.dll"), LibraryHandle::kNone);
  described.decrypt = {{"in", "plain"}, {"long", std::string(4096, 'x')}};
  const ExportedFunction decrypt = libraries.FindExport(libraries.Load("libcrypto.DLL"), "Decrypt");
  ASSERT_NE(decrypt, nullptr);
  char output[4096] = "";
  EXPECT_FALSE(libraries.Decrypt(decrypt, "out", output));
  EXPECT_FALSE(libraries.Decrypt(decrypt, "long", output));
  EXPECT_TRUE(libraries.Decrypt(decrypt, "in", output));
  EXPECT_STREQ(output, "plain");
}

std::string NameOf(const testing::TestParamInfo<std::string>& world) { return world.param; }

INSTANTIATE_TEST_SUITE_P(, PortContract, testing::ValuesIn(contract::kEveryWorld), NameOf);
INSTANTIATE_TEST_SUITE_P(, RegistryContract, testing::ValuesIn(contract::kEveryWorld), NameOf);
INSTANTIATE_TEST_SUITE_P(, FilesContract, testing::ValuesIn(contract::kEveryWorld), NameOf);
INSTANTIATE_TEST_SUITE_P(, SecurityContract, testing::ValuesIn(contract::kEveryWorld), NameOf);
INSTANTIATE_TEST_SUITE_P(, WmiContract, testing::ValuesIn(contract::kEveryWorld), NameOf);
INSTANTIATE_TEST_SUITE_P(, DescribedMachine, testing::ValuesIn(contract::kDescribedWorlds), NameOf);

}  // namespace
}  // namespace platform
