// The rules of the simulated computer: what its calls answer, change and leave in the journal.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "platform/IClock.h"
#include "platform/IDirectory.h"
#include "platform/IErrors.h"
#include "platform/IFiles.h"
#include "platform/ILibraries.h"
#include "platform/IProcesses.h"
#include "platform/IRegistry.h"
#include "platform/IServices.h"
#include "platform/IWmi.h"
#include "platform/simulated/MachineFile.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tests/support/JsonText.h"

namespace {

using platform::HResult;
using platform::Variant;
using simulated::HResultText;
using simulated::Json;
using std::string_view;

/// JSON written with single quotes.
std::string Quoted(string_view text) {
  std::string quoted(text);
  std::replace(quoted.begin(), quoted.end(), '\'', '"');
  return quoted;
}

Variant ToVariant(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number()) return value.get<std::int32_t>();
  if (value.is_array()) return platform::TextArray{value.get<std::vector<std::string>>()};
  return platform::Null{};
}

Json ToJson(const Variant& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
  if (const auto* flag = std::get_if<platform::RawBool>(&value)) return flag->bits;
  if (const auto* list = std::get_if<platform::TextArray>(&value)) return list->items;
  return nullptr;
}

class SimulatedMachineTest : public testing::Test {
 protected:
  SimulatedMachineTest() {
    machine_ = simulated::ParseMachine(Quoted(R"({'schema': 1, 'computer_name': 'PC1',
      'adapters': [
        {'dhcp_enabled': false, 'ip_addresses': ['10.0.0.5'], 'subnet_masks': ['255.0.0.0'],
         'gateways': ['10.0.0.1'], 'dns_servers': ['10.0.0.2', '10.0.0.3'], 'static_dns': true},
        {'index': 4294967295, 'setting_id': '{B}', 'pnp_device_id': 'ROOT\\NET\\1',
         'location_information': null, 'ip_enabled': false}],
      'persistent_routes': [{'destination': '10.9.0.0'}, {'destination': '10.9.0.0', 'metric': 2}],
      'services': [{}, {'name': 'NetBT', 'start': 'disabled', 'running': false}],
      'directory': {'domains': [{'accounts': [{}], 'ous': ['OU=Sales,DC=corp,DC=example']}]}})"),
                                       "test");
  }

  /// Everything that was taken from the machine must have been given back.
  void TearDown() override { EXPECT_EQ(platform_.InUse(), simulated::Usage{}); }

  /// Runs `action` with a connection to WMI; the failure to connect, or what `action` answers.
  template <class Action>
  std::string Connected(Action action) {
    std::unique_ptr<platform::IWmiLocator> locator;
    std::unique_ptr<platform::IWmiServices> services;
    HResult result = platform_.Wmi().EnterApartment();
    if (result >= 0) result = platform_.Wmi().SecureProcess();
    if (result >= 0) result = platform_.Wmi().MakeLocator(&locator);
    if (result >= 0) result = locator->ConnectServer(R"(ROOT\cimv2)", &services);
    const std::string answer = result < 0 ? HResultText(result) : action(*services);
    services.reset();
    locator.reset();
    platform_.Wmi().LeaveApartment();
    return answer;
  }

  /// The given properties of all rows, or the failure.
  std::string Query(string_view query, const std::vector<std::string>& properties) {
    return Connected([&](platform::IWmiServices& services) {
      std::unique_ptr<platform::IWmiRows> rows;
      const HResult result = services.ExecQuery(std::string(query), 0x30, &rows);
      if (result < 0) return HResultText(result);
      Json found = Json::array();
      std::unique_ptr<platform::IWmiObject> row;
      std::uint32_t returned = 0;
      while (rows->Next(platform::kForever, &row, &returned) == platform::kOk) {
        for (const std::string& property : properties) {
          Variant value;
          const HResult got = row->Get(property, &value);
          found.push_back(got < 0 ? Json(HResultText(got)) : ToJson(value));
        }
      }
      return found.dump();
    });
  }

  /// Calls a method as the engine does; its return value, or the failure.
  std::string Method(std::string path, const std::string& method, string_view arguments) {
    path.insert(0, path.starts_with("Name=") ? "Win32_ComputerSystem."
                                             : "Win32_NetworkAdapterConfiguration.");
    if (path.ends_with('.')) path.pop_back();
    return Connected([&](platform::IWmiServices& services) {
      std::unique_ptr<platform::IWmiObject> object, definition, parameters, answer;
      HResult result = services.FetchClass(path.substr(0, path.find('.')), &object);
      if (result >= 0) result = object->GetMethod(method, &definition);
      if (result >= 0 && definition) result = definition->SpawnInstance(&parameters);
      const Json wanted = Json::parse(Quoted(arguments));
      for (const auto& [name, value] : wanted.items()) {
        if (result >= 0) result = parameters->Put(name, ToVariant(value));
      }
      if (result >= 0) result = services.ExecMethod(path, method, parameters.get(), &answer);
      Variant value;
      if (result >= 0) result = answer->Get("ReturnValue", &value);
      return result < 0 ? HResultText(result) : ToJson(value).dump();
    });
  }

  std::string Route(std::string command) {
    platform::ProcessInformation child;
    std::uint32_t exitCode = 99;
    auto& processes = platform_.Processes();
    if (!processes.Spawn(nullptr, command.data(), nullptr, nullptr, {}, &child)) {
      return "error " + std::to_string(platform_.Errors().LastError());
    }
    EXPECT_EQ(processes.Wait(child.process, 100), platform::kWaitSignalled);
    EXPECT_TRUE(processes.ExitCode(child.process, &exitCode));
    processes.Close(child.process);
    processes.Close(child.thread);
    return std::to_string(exitCode);
  }

  /// Sets a service to start with the system and starts it.
  std::string StartService(const std::string& name) {
    auto& services = platform_.Services();
    const auto manager = services.OpenManager();
    const auto service = services.OpenService(manager, name);
    const bool started =
        services.SetStartType(service, platform::ServiceStart::kSystem) && services.Start(service);
    const auto error = platform_.Errors().LastError();
    services.Close(service);
    services.Close(manager);
    return started ? "ok" : std::to_string(error);
  }

  /// A part of the machine as its file shows it.
  std::string At(const std::string& pointer) const {
    return simulated::ToJson(machine_, false)[Json::json_pointer(pointer)].dump();
  }

  simulated::Machine machine_;
  simulated::SimulatedPlatform platform_{machine_};
};

TEST_F(SimulatedMachineTest, QueriesAnswerTheSelectedPropertiesOfTheRowsAsked) {
  const struct {
    string_view query;
    std::vector<std::string> properties;
    string_view answer;
  } kQueries[] = {{"Name from Win32_ComputerSystem", {"Name"}, "['PC1']"},
                  {"Index, SettingID from Win32_NetworkAdapterConfiguration where IPEnabled=true",
                   {"Index", "DHCPEnabled"},
                   "[7,'0x80041002']"},
                  {"DHCPEnabled from win32_NETWORKADAPTERconfiguration where Index=-1",
                   {"dhcpenabled"},
                   "[-1]"},
                  {"IPAddress, IPSubnet from Win32_NetworkAdapterConfiguration where Index=7",
                   {"IPAddress", "IPSubnet"},
                   "[['10.0.0.5'],['255.0.0.0']]"},
                  {"DefaultIPGateway from Win32_NetworkAdapterConfiguration where Index=4294967295",
                   {"DefaultIPGateway"},
                   "[null]"},
                  {"Caption from Win32_NetworkAdapter where Index=5", {"Caption"}, "[]"},
                  {"Mask, Metric1 from Win32_IP4PersistedRouteTable", {"Metric1"}, "[1,2]"},
                  {"Speed from Win32_NetworkAdapter where Index=7", {}, "0x80041017"},
                  {"Name from Win32_Nothing", {}, "0x80041010"},
                  {"Name Win32_ComputerSystem", {}, "0x80041017"}};
  for (const auto& c : kQueries) {
    EXPECT_EQ(Query("select " + std::string(c.query), c.properties), Quoted(c.answer)) << c.query;
  }
}

TEST_F(SimulatedMachineTest, MethodsChangeWhatTheyMayAndRefuseTheRest) {
  constexpr const char* kJoin = "JoinDomainOrWorkgroup";
  constexpr const char* kGateway = "{'DefaultIPGateway':['10.0.0.1','11.0.0.9']}";
  constexpr const char* kPc = "Name=\"PC1\"";
  // One machine after the other: a refusal leaves everything as it is.
  const struct {
    std::string path, method;
    string_view arguments, outcome;
    std::string changed;
    string_view value;
  } kMethods[] = {
      {"Index=7", "EnableDHCP", "{}", "0", "/adapters/0/gateways", "[]"},
      {"Index=7", "SetGateways", kGateway, "84", "", ""},
      {"Index=7", "EnableStatic", "{'IPAddress':['1.0.0.1'],'SubNetMask':[]}", "68", "", ""},
      {"Index=7", "EnableStatic", "{'IPAddress':[],'SubNetMask':[]}", "68", "", ""},
      {"Index=7", "EnableStatic", "{'IPAddress':['1.0.0.256'],'SubNetMask':['255.0.0.0']}", "66",
       "", ""},
      // What an unreadable address becomes on its way here.
      {"Index=7", "EnableStatic", "{'IPAddress':['255.255.255.255'],'SubNetMask':['255.0.0.0']}",
       "66", "", ""},
      {"Index=7", "EnableStatic",
       "{'IPAddress':['10.0.0.9','11.0.0.9'],'SubNetMask':['255.0.0.0','255.255.255.255']}", "0",
       "/adapters/0/dhcp_enabled", "false"},
      {"Index=7", "SetGateways", "{'DefaultIPGateway':['10.0.0.1','11.0.0.1']}", "71", "", ""},
      {"Index=7", "SetGateways", kGateway, "0", "/adapters/0/gateways", "['10.0.0.1','11.0.0.9']"},
      {"Index=7", "SetGateways", "{'DefaultIPGateway':null}", "0", "/adapters/0/gateways", "[]"},
      {"Index=7", "SetDNSServerSearchOrder", "{}", "0", "/adapters/0/static_dns", "false"},
      {"Index=7", "SetDNSServerSearchOrder", "{'DNSServerSearchOrder':['10.0.0.7']}", "0",
       "/adapters/0/static_dns", "true"},
      {"", "SetDNSSuffixSearchOrder", "{'DNSDomainSuffixSearchOrder':['a.b']}", "0",
       "/adapters/1/dns_suffixes", "['a.b']"},
      {"Index=9", "EnableDHCP", "{}", "0x80041002", "", ""},
      {"", "EnableDHCP", "{}", "0x8004103A", "", ""},
      {"Index=7", "SetGateways", "{'Gateway':null}", "0x80041002", "", ""},
      {"Name=\"PC2\"", "Rename", "{'Name':'X'}", "0x80041002", "", ""},
      {kPc, "Rename", "{'Name':'PC2','UserName':null}", "0", "/computer_name", "'PC1'"},
      {kPc, kJoin, "{'Name':'LAB','FJoinOptions':0}", "0", "/membership", "{'workgroup':'LAB'}"},
      {kPc, kJoin, "{'Name':'other.example','FJoinOptions':1}", "1355", "", ""},
      {kPc, kJoin, "{'Name':'CORP','UserName':'joiner','Password':'S3CRET','FJoinOptions':3}",
       "1326", "", ""},
      {kPc, kJoin, "{'Name':'CORP','UserName':'Joiner','Password':'s3cret','FJoinOptions':1}",
       "1332", "", ""},
      {kPc, kJoin,
       "{'Name':'CORP','UserName':'joiner','Password':'s3cret','FJoinOptions':3,'AccountOU':'X'}",
       "2", "", ""},
      {kPc, kJoin,
       R"({'Name':'corp.example','UserName':'corp.example\\joiner','Password':'s3cret',
           'AccountOU':null,'FJoinOptions':259})",
       "0", "/directory/domains/0/computers/0/dn", "'CN=PC1,CN=Computers,DC=corp,DC=example'"},
      {kPc, kJoin, "{'Name':'CORP','UserName':'joiner','Password':'s3cret','FJoinOptions':1}",
       "2691", "", ""},
      {kPc, "UnjoinDomainOrWorkgroup", "{}", "0", "/membership", "{'workgroup':'WORKGROUP'}"}};
  for (const auto& c : kMethods) {
    SCOPED_TRACE(c.method + std::string(c.arguments));
    const std::string before = At("");
    EXPECT_EQ(Method(c.path, c.method, c.arguments), c.outcome);
    EXPECT_EQ(At(c.changed), c.changed.empty() ? before : Quoted(c.value));
  }
}

TEST_F(SimulatedMachineTest, AStaticAddressTakesWhatCameWithTheLease) {
  for (const bool staticDns : {false, true}) {
    simulated::Adapter& adapter = machine_.adapters[0];
    adapter.gateways = {"1.0.0.1"};
    adapter.dnsServers = {"1.0.0.2"};
    adapter.staticDns = staticDns;
    for (const bool leased : {false, true}) {
      adapter.dhcpEnabled = leased;
      EXPECT_EQ(
          Method("Index=7", "EnableStatic", "{'IPAddress':['1.0.0.5'],'SubNetMask':['255.0.0.0']}"),
          "0");
      EXPECT_EQ(At("/adapters/0/gateways"), leased ? "[]" : "[\"1.0.0.1\"]");
      EXPECT_EQ(At("/adapters/0/dns_servers"), leased && !staticDns ? "[]" : "[\"1.0.0.2\"]");
    }
  }
}

TEST_F(SimulatedMachineTest, EverySpellingOfAPathNamesTheSameFile) {
  machine_.files = {{R"(C:\Dir\a.cfg)", "text"}};
  for (const std::string path :
       {"c:/dir/A.CFG", R"(C:\Dir\.\a.cfg)", R"(C:\\Dir\/a.cfg)", R"(C:\Dir\x\..\a.cfg)"}) {
    SCOPED_TRACE(path);
    auto& files = platform_.Files();
    std::string text;
    EXPECT_TRUE(files.ReadWhole(path, &text));
    EXPECT_FALSE(files.Copy(machine_.files[0].path, path, /*failIfExists=*/false));
    EXPECT_EQ(platform_.Errors().LastError(), 32U);
    EXPECT_TRUE(files.Move(path, path));
    EXPECT_EQ(machine_.files.size(), 1U);
  }
}

TEST_F(SimulatedMachineTest, ComputersMoveAndAreRenamedInTheirDirectory) {
  machine_.membership = simulated::DomainMembership{"corp.example", "CORP", true};
  machine_.domains[0].computers = {{"PC1", "CN=PC1,CN=Computers,DC=corp,DC=example"}};
  constexpr const char* kFrom = "LDAP://CN=PC1,CN=Computers,DC=corp,DC=example";
  constexpr const char* kTo = "LDAP://OU=Sales,DC=corp,DC=example";
  const struct {
    std::string source, target, password, bound, moved;
  } kMoves[] = {{kFrom, kTo, "wrong", "0x8007052E", "0x00000000"},
                {kFrom, "LDAP://OU=None,DC=corp,DC=example", "s3cret", "0x80072030", "0x00000000"},
                {kFrom, "LDAP://OU=Sales,DC=other", "s3cret", "0x8007203A", "0x00000000"},
                {"LDAP://CN=PC9,DC=corp,DC=example", kTo, "s3cret", "0x00000000", "0x80072030"},
                {"LDAP://CN=PC1, CN=Computers, DC=corp,DC=example",
                 "LDAP://OU = Sales , DC=corp, DC=example", "s3cret", "0x00000000", "0x00000000"}};
  auto& directory = platform_.Directory();
  std::unique_ptr<platform::IDirectoryContainer> container;
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
  EXPECT_EQ(HResultText(platform_.Wmi().EnterApartment()), "0x80010106");
  platform_.Wmi().LeaveApartment();
  directory.LeaveApartment();

  Method("Name=\"PC1\"", "Rename", "{'Name':'PC2'}");
  machine_.Restart();
  EXPECT_EQ(At("/computer_name") + At("/pending_computer_name"), "\"PC2\"null");
  char buffer[64];
  std::uint32_t length = 0;
  ASSERT_TRUE(directory.ComputerObjectName(nullptr, &length));
  ASSERT_LE(length, sizeof buffer);
  ASSERT_TRUE(directory.ComputerObjectName(buffer, &length));
  EXPECT_STREQ(buffer, "CN=PC2,OU=Sales,DC=corp,DC=example");
}

TEST_F(SimulatedMachineTest, TheRouteToolKeepsThePersistentRoutes) {
  const struct {
    std::string command, outcome;
    std::size_t routes;
  } kCommands[] = {{"route DELETE 10.9.0.0", "0", 0},
                   {"route DELETE 10.9.0.0", "1", 0},
                   {"route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 4294967295", "0", 1},
                   {"route -p ADD 10.1.0.300 mask 255.255.0.0 10.0.0.1 METRIC 1", "1", 1},
                   {"route -p ADD 10.1.0.0 mask 255.255.0.0 255.255.255.255 METRIC 1", "1", 1},
                   {"route print", "1", 1},
                   {"router DELETE 10.1.0.0", "error 2", 1}};
  for (const auto& c : kCommands) {
    EXPECT_EQ(Route(c.command), c.outcome) << c.command;
    EXPECT_EQ(machine_.persistentRoutes.size(), c.routes) << c.command;
  }
  EXPECT_EQ(At("/persistent_routes/0/metric"), "-1");
}

TEST_F(SimulatedMachineTest, TheRegistryMirrorsTheAdapters) {
  constexpr const char* kInterface =
      R"(SYSTEM\CurrentControlSet\Services\Tcpip\Parameters\Interfaces\)";
  const simulated::Adapter& first = machine_.adapters[0];
  const struct {
    std::string key, name, answer;
  } kValues[] = {{kInterface + first.settingId, "NameServer", "10.0.0.2,10.0.0.3"},
                 {kInterface + std::string("{b}"), "nameserver", ""},
                 {kInterface + std::string("{C}"), "NameServer", "2"},
                 {R"(SYSTEM\CurrentControlSet\Enum\ROOT\NET\1)", "LocationInformation", "2"},
                 {R"(system\currentcontrolset\enum\)" + first.pnpDeviceId, "LocationInformation",
                  *first.locationInformation}};
  auto& registry = platform_.Registry();
  for (const auto& c : kValues) {
    platform::RegistryKey key{};
    char text[128] = "";
    std::uint32_t size = sizeof text;
    platform::Win32Error error = registry.Open(platform::kLocalMachine, c.key, 0x80000000, &key);
    if (error == 0) {
      error = registry.Query(key, c.name.c_str(), nullptr, text, &size);
      EXPECT_EQ(registry.Set(key, c.name, platform::kRegSz, "", 1), 5u) << "opened for reading";
      registry.Close(key);
    }
    EXPECT_EQ(error == 0 ? text : std::to_string(error), c.answer) << c.key;
  }
}

TEST_F(SimulatedMachineTest, ProfileEntriesAreWrittenInPlace) {
  const struct {
    std::string before, after;
  } kTexts[] = {
      {"", "[Net]\r\nKey=new\r\n"},
      {"; c\n[a]\n[NET] x\n KEY = old\nkey=2\n", "; c\n[a]\n[NET] x\nKEY=new\nkey=2\n"},
      {"[net]\r\na=1\r\n\r\n[b]\r\nkey=1\r\n", "[net]\r\na=1\r\nKey=new\r\n\r\n[b]\r\nkey=1\r\n"},
      {"[b]\na=1", "[b]\na=1\r\n[Net]\r\nKey=new\r\n"},
      {"[net]\na[1]=1", "[net]\na[1]=1\r\nKey=new\r\n"}};
  for (const auto& c : kTexts) {
    machine_.files = {{R"(C:\x.cfg)", c.before}};
    EXPECT_TRUE(platform_.Files().WriteProfileEntry("Net", "Key", "new", "c:/X.CFG"));
    EXPECT_EQ(machine_.files.at(0).text, c.after);
  }
  EXPECT_FALSE(platform_.Files().WriteProfileEntry("Net", "Key", "new", R"(C:\none\x.cfg)"));
  EXPECT_EQ(platform_.Errors().LastError(), 3u);
}

TEST_F(SimulatedMachineTest, DecryptExistsOnlyWhereItIsInstalled) {
  auto& libraries = platform_.Libraries();
  EXPECT_EQ(libraries.Load("LibCrypto.dll"), platform::LibraryHandle::kNone);
  machine_.decrypt = {{"in", "plain"}, {"long", std::string(4096, 'x')}};
  const auto decrypt = reinterpret_cast<bool (*)(const char*, char*)>(
      libraries.FindExport(libraries.Load("libcrypto.DLL"), "Decrypt"));
  ASSERT_NE(decrypt, nullptr);
  char output[4096] = "";
  EXPECT_FALSE(decrypt("out", output));
  EXPECT_FALSE(decrypt("long", output));
  EXPECT_TRUE(decrypt("in", output));
  EXPECT_STREQ(output, "plain");
}

TEST_F(SimulatedMachineTest, TheJournalListsEveryChangeInOrder) {
  machine_.PutFile(R"(C:\a.cfg)", "text");
  Method("Name=\"PC1\"", "Rename", "{'Name':'PC2','UserName':null}");
  Method("Index=9", "EnableDHCP", "{}");
  platform_.Clock().Sleep(20000);
  Route("other");
  EXPECT_EQ(StartService("dhcp"), "1056");
  auto& registry = platform_.Registry();
  platform::RegistryKey key{};
  registry.Create(platform::kLocalMachine, R"(Software\X)", 0xF013F, &key);
  registry.Set(key, "Flag", platform::kRegDWord, "\x01\x00\x00", 4);
  registry.Erase(key, "Gone");
  registry.Close(key);
  platform_.Files().Move(R"(C:\a.cfg)", R"(C:\b.cfg)");
  platform_.Files().Copy(R"(C:\a.cfg)", R"(C:\c.cfg)", false);
  const std::vector<std::string> kLines = {
      R"({"call":"wmi.method","path":"Win32_ComputerSystem.Name=\"PC1\"","method":"Rename",)"
      R"("arguments":{"Name":"PC2","UserName":null},"result":0})",
      R"({"call":"wmi.method","path":"Win32_NetworkAdapterConfiguration.Index=9",)"
      R"("method":"EnableDHCP","arguments":{},"hresult":"0x80041002"})",
      R"({"call":"sleep","milliseconds":20000})",
      R"({"call":"process.run","command":"other","error":2})",
      R"({"call":"service.start_type","service":"dhcp","start":"system","result":0})",
      R"({"call":"service.start","service":"dhcp","result":1056})",
      R"({"call":"registry.set","key":"HKEY_LOCAL_MACHINE\\Software\\X","name":"Flag","data":1})",
      R"({"call":"registry.delete","key":"HKEY_LOCAL_MACHINE\\Software\\X","name":"Gone","error":2})",
      R"({"call":"file.move","source":"C:\\a.cfg","destination":"C:\\b.cfg"})",
      R"({"call":"file.copy","source":"C:\\a.cfg","destination":"C:\\c.cfg","error":2})"};
  EXPECT_EQ(support::JsonTexts(machine_.journal), kLines);
}

TEST_F(SimulatedMachineTest, FaultsStrikeTheCallsTheyDescribe) {
  // In this order: a query for the name, one for DHCP, EnableDHCP, Rename, a route deleted, one
  // added, a service.
  constexpr const char* kUnharmed = "['PC1'] [0] 0 0 0 0 ok";
  const struct {
    std::string fault;
    string_view answers;
  } kFaults[] = {
      {"'call':'wmi.connect','hresult':'0x800706BA'",
       "0x800706BA 0x800706BA 0x800706BA 0x800706BA 0 0 ok"},
      {"'call':'wmi.query','contains':'dhcpenabled','hresult':'0x80041010'",
       "['PC1'] 0x80041010 0 0 0 0 ok"},
      {"'call':'wmi.query','index':7,'error':5", "['PC1'] 0x80070005 0 0 0 0 ok"},
      {"'call':'wmi.method','method':'EnableDHCP','index':7,'result':66",
       "['PC1'] [0] 66 0 0 0 ok"},
      {"'call':'wmi.method','nth':2", "['PC1'] [0] 0 0x80004005 0 0 ok"},
      {"'call':'wmi.method','nth':3,'result':1", kUnharmed},
      {"'call':'process.run','contains':'ADD','result':87", "['PC1'] [0] 0 0 0 87 ok"},
      {"'call':'process.run','error':8", "['PC1'] [0] 0 0 error 8 error 8 ok"},
      {"'call':'service.start_type','service':'netbt','error':5", "['PC1'] [0] 0 0 0 0 5"},
      {"'call':'service.start_type','service':'Dhcp','error':5", kUnharmed},
      {"'call':'*','nth':1,'error':14", "0x8007000E [0] 0 0 0 0 ok"},
      {"'call':'*','method':'Rename','hresult':'0x80070005'", "['PC1'] [0] 0 0x80070005 0 0 ok"}};
  const simulated::Machine fresh = machine_;
  for (const auto& c : kFaults) {
    machine_ = fresh;
    const std::string file = Quoted("{'schema':1,'faults':[{" + c.fault + "}]}");
    machine_.faults = simulated::ParseMachine(file, "test").faults;
    const std::string answers[] = {
        Query("select Name from Win32_ComputerSystem", {"Name"}),
        Query("select DHCPEnabled from Win32_NetworkAdapterConfiguration where Index=7",
              {"DHCPEnabled"}),
        Method("Index=7", "EnableDHCP", "{}"),
        Method("Name=\"PC1\"", "Rename", "{'Name':'PC2'}"),
        Route("route DELETE 10.9.0.0"),
        Route("route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 1"),
        StartService("NetBT")};
    std::string line;
    for (const std::string& answer : answers) line += (line.empty() ? "" : " ") + answer;
    EXPECT_EQ(line, Quoted(c.answers)) << c.fault;
  }
}

}  // namespace
