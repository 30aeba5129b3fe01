// What the engine relies on at the seam, asked of whichever machine this program was linked with:
// the real one on Windows, a blank simulated one elsewhere. So the two cannot drift apart.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "platform/ICriticalSection.h"
#include "platform/IDirectory.h"
#include "platform/IErrors.h"
#include "platform/IFiles.h"
#include "platform/ILibraries.h"
#include "platform/IPlatform.h"
#include "platform/IRegistry.h"
#include "platform/IResolver.h"
#include "platform/ISecurity.h"
#include "platform/IServices.h"
#include "platform/IWmi.h"

namespace platform {
namespace {

constexpr Win32Error kFileNotFound = 2;
constexpr Win32Error kAccessDenied = 5;
constexpr Win32Error kFileExists = 80;
constexpr Win32Error kInvalidParameter = 87;
constexpr Win32Error kModuleNotFound = 126;
constexpr Win32Error kAlreadyExists = 183;
constexpr Win32Error kMoreData = 234;
constexpr Win32Error kNoSuchService = 1060;
constexpr HResult kWmiNotFound = static_cast<HResult>(0x80041002);
constexpr HResult kWmiInvalidNamespace = static_cast<HResult>(0x8004100E);
constexpr std::int32_t kForwardOnlyImmediate = 0x30;

class PortContract : public ::testing::Test {
 protected:
  /// Checks that a call failed for this reason. The last error is forgotten afterwards.
  void ExpectFailure(bool succeeded, Win32Error reason) {
    const Win32Error error = machine.Errors().LastError();
    EXPECT_FALSE(succeeded);
    EXPECT_EQ(error, reason);
    machine.Errors().SetLastError(0);
  }

  IPlatform& machine = Default();
};

class RegistryContract : public PortContract {
 protected:
  void SetUp() override { ASSERT_EQ(registry.Create(kLocalMachine, kSubkey, 0xF003F, &key), 0u); }
  void TearDown() override { EXPECT_EQ(registry.Close(key), 0u); }

  static constexpr char kSubkey[] = R"(Software\Orvanta\Port Contract)";
  IRegistry& registry = machine.Registry();
  RegistryKey key{};
};

TEST_F(RegistryContract, ValuesComeBackWithTheirTypeAndExactBytes) {
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
    EXPECT_EQ(registry.Query(key, name, &type, data.data(), &found), kMoreData);
    EXPECT_EQ(found, size - 1);
    EXPECT_EQ(type, 77u);

    EXPECT_EQ(registry.Erase(key, c.name), 0u);
    EXPECT_EQ(registry.Query(key, name, &type, nullptr, &found), kFileNotFound);
    EXPECT_EQ(registry.Erase(key, c.name), kFileNotFound);
  }
}

TEST_F(RegistryContract, OpeningNeedsTheKeyToExist) {
  RegistryKey other{17};
  EXPECT_EQ(registry.Open(kLocalMachine, R"(Software\Orvanta\Absent)", 0x80000000, &other),
            kFileNotFound);
  EXPECT_EQ(other, RegistryKey{17});
  ASSERT_EQ(registry.Set(key, "Number", kRegDWord, "\x01\x00\x00", 4), 0u);
  ASSERT_EQ(registry.Open(kLocalMachine, R"(software\ORVANTA\port contract)", 0x80000000, &other),
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
    const std::string stem = program.substr(0, program.rfind('\\') + 1) +
                             ::testing::UnitTest::GetInstance()->current_test_info()->name();
    first = stem + "1.cfg";
    second = stem + "2.cfg";
    TearDown();
  }
  void TearDown() override {
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

TEST_F(FilesContract, AbsentFilesAreReportedAsSuch) {
  std::string content;
  ExpectFailure(files.Attributes(first) != kNoAttributes, kFileNotFound);
  ExpectFailure(files.ReadWhole(first, &content), kFileNotFound);
  ExpectFailure(files.Erase(first), kFileNotFound);
  ExpectFailure(files.Move(first, second), kFileNotFound);
  ExpectFailure(files.Copy(first, second, false), kFileNotFound);
}

TEST_F(FilesContract, ProfileEntriesAreWrittenInPlace) {
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

TEST_F(FilesContract, CopiesAndMovesRespectWhatStandsInTheWay) {
  ASSERT_TRUE(files.WriteProfileEntry("S", "k", "old", second));
  ASSERT_TRUE(files.WriteProfileEntry("S", "k", "new", first));

  ExpectFailure(files.Copy(first, second, true), kFileExists);
  ExpectFailure(files.Move(first, second), kAlreadyExists);
  EXPECT_EQ(Entries(second), "[S]\nk=old\n");
  EXPECT_TRUE(files.Copy(first, second, false));
  EXPECT_EQ(Entries(second), "[S]\nk=new\n");
  EXPECT_TRUE(files.Erase(second));
  EXPECT_TRUE(files.Move(first, second));
  EXPECT_EQ(Entries(second), "[S]\nk=new\n");
  ExpectFailure(files.Attributes(first) != kNoAttributes, kFileNotFound);
}

TEST_F(FilesContract, OneFileHasManySpellings) {
  ASSERT_TRUE(files.WriteProfileEntry("S", "k", "v", first));
  std::string spelled = first;
  std::replace(spelled.begin(), spelled.end(), '\\', '/');
  std::transform(spelled.begin(), spelled.end(), spelled.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  bool same = false;
  ExpectFailure(files.SameFile(first, second, &same), kFileNotFound);
  EXPECT_TRUE(files.SameFile(first, spelled, &same) && same) << spelled;
  EXPECT_TRUE(files.Copy(first, second, false));
  EXPECT_TRUE(files.SameFile(first, second, &same) && !same) << "equal content is not enough";
}

TEST_F(PortContract, ServicesThatDoNotExistCannotBeOpened) {
  IServices& services = machine.Services();
  const ServiceHandle manager = services.OpenManager();
  ASSERT_NE(manager, ServiceHandle::kNone);
  const ServiceHandle service = services.OpenService(manager, "Orvanta Absent");
  ExpectFailure(service != ServiceHandle::kNone, kNoSuchService);
  services.Close(manager);
}

class SecurityContract : public PortContract {
 protected:
  /// A block that lives as long as the test.
  template <class Record>
  Record* Block(std::uint32_t size) {
    blocks.emplace_back(security.Allocate(size),
                        [](void* block) { Default().Security().Free(block); });
    return static_cast<Record*>(blocks.back().get());
  }

  ISecurity& security = machine.Security();
  std::vector<std::unique_ptr<void, void (*)(void*)>> blocks;
};

TEST_F(SecurityContract, ANewListIsEmpty) {
  auto* const list = Block<Acl>(64);
  ExpectFailure(security.InitializeAcl(list, 4), kInsufficientBuffer);
  ASSERT_TRUE(security.InitializeAcl(list, 64));
  AclSize size;
  EXPECT_TRUE(security.GetAclSize(list, &size));
  EXPECT_EQ(size.entryCount, 0u);
  EXPECT_EQ(size.bytes, 64u);
  AccessEntry entry;
  ExpectFailure(security.EntryAt(list, 0, &entry), kInvalidParameter);
  EXPECT_EQ(entry.record, nullptr);
}

TEST_F(SecurityContract, ADescriptorRefersToItsList) {
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

TEST_F(PortContract, ALockLetsItsHolderInAgainAndOthersAtTheEnd) {
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

TEST_F(PortContract, LibrariesThatDoNotExistCannotBeLoaded) {
  const LibraryHandle library = machine.Libraries().Load("orvanta-absent.dll");
  ExpectFailure(library != LibraryHandle::kNone, kModuleNotFound);
}

TEST_F(PortContract, DottedTextsAreReadInEveryNotation) {
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

TEST_F(PortContract, HostsThatDoNotExistLeaveTheAddress) {
  IResolver& resolver = machine.Resolver();
  ASSERT_EQ(resolver.Start(), 0u);
  std::uint32_t address = 5;
  EXPECT_FALSE(resolver.LookUpHost("orvanta-absent.invalid", &address));
  EXPECT_NE(resolver.LastError(), 0u);
  EXPECT_EQ(address, 5u);
}

TEST_F(PortContract, UnknownResultsHaveNoText) {
  std::string text = "kept";
  EXPECT_FALSE(machine.Errors().Describe(static_cast<HResult>(0xA0AB1234), &text));
  EXPECT_EQ(text, "kept");
}

TEST_F(PortContract, AWorkgroupMachineHasAGroupButNoDomain) {
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
  EXPECT_EQ(directory.StatusToError(static_cast<NtStatus>(0xC0000022)), kAccessDenied);
}

class WmiContract : public PortContract {
 protected:
  void SetUp() override {
    ASSERT_EQ(wmi.EnterApartment(), kOk);
    ASSERT_GE(wmi.SecureProcess(), kOk);
    ASSERT_GE(wmi.MakeLocator(&locator), kOk);
    ASSERT_GE(locator->ConnectServer(R"(root\cimv2)", &services), kOk);
    ASSERT_GE(services->SecureProxy(), kOk);
  }
  void TearDown() override {
    services.reset();
    locator.reset();
    wmi.LeaveApartment();
  }

  IWmi& wmi = machine.Wmi();
  std::unique_ptr<IWmiLocator> locator;
  std::unique_ptr<IWmiServices> services;
};

TEST_F(WmiContract, ApartmentsNest) {
  EXPECT_EQ(wmi.EnterApartment(), 1);
  wmi.LeaveApartment();
  EXPECT_EQ(wmi.EnterApartment(), 1);
  wmi.LeaveApartment();
}

TEST_F(WmiContract, AQueryAnswersItsRowsAndThenNone) {
  std::unique_ptr<IWmiRows> rows;
  ASSERT_GE(
      services->ExecQuery("select Name from Win32_ComputerSystem", kForwardOnlyImmediate, &rows),
      kOk);
  std::unique_ptr<IWmiObject> row;
  std::uint32_t returned = 0;
  ASSERT_EQ(rows->Next(kForever, &row, &returned), kOk);
  EXPECT_EQ(returned, 1u);
  Variant name;
  EXPECT_GE(row->Get("Name", &name), kOk);
  ASSERT_TRUE(std::holds_alternative<std::string>(name));
  EXPECT_NE(std::get<std::string>(name), "");
  const Variant before = name;
  EXPECT_EQ(row->Get("NoSuchProperty", &name), kWmiNotFound);
  EXPECT_EQ(name, before);
  EXPECT_EQ(rows->Next(kForever, &row, &returned), kNoMoreRows);
  EXPECT_EQ(returned, 0u);
}

TEST_F(WmiContract, AQueryMayMatchNothing) {
  std::unique_ptr<IWmiRows> rows;
  ASSERT_GE(services->ExecQuery(
                "select MACAddress from Win32_NetworkAdapterConfiguration where Index=98765",
                kForwardOnlyImmediate, &rows),
            kOk);
  std::unique_ptr<IWmiObject> row;
  std::uint32_t returned = 9;
  EXPECT_EQ(rows->Next(kForever, &row, &returned), kNoMoreRows);
  EXPECT_EQ(returned, 0u);
}

TEST_F(WmiContract, InstancesOfAClassCanBeReadWithoutWaiting) {
  std::unique_ptr<IWmiRows> rows;
  ASSERT_GE(services->CreateInstanceEnum("Win32_OperatingSystem", &rows), kOk);
  std::unique_ptr<IWmiObject> row;
  std::uint32_t returned = 0;
  ASSERT_EQ(rows->Next(0, &row, &returned), kOk);
  EXPECT_EQ(returned, 1u);
  Variant drive;
  EXPECT_GE(row->Get("SystemDrive", &drive), kOk);
  EXPECT_EQ(drive, Variant("C:"));
}

TEST_F(WmiContract, WhatDoesNotExistIsRefused) {
  std::unique_ptr<IWmiServices> other;
  EXPECT_EQ(locator->ConnectServer(R"(root\orvanta-absent)", &other), kWmiInvalidNamespace);
  std::unique_ptr<IWmiObject> object;
  EXPECT_TRUE(Failed(services->FetchClass("Orvanta_Absent", &object)));
  EXPECT_EQ(object, nullptr);
  ASSERT_GE(services->FetchClass("Win32_NetWorkAdapterConfiguration", &object), kOk);
  std::unique_ptr<IWmiObject> definition;
  EXPECT_EQ(object->GetMethod("NoSuchMethod", &definition), kWmiNotFound);
  EXPECT_EQ(definition, nullptr);
}

}  // namespace
}  // namespace platform
