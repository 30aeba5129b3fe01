// A configuration file and a machine in; the queue, and why it is that queue, out.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "tests/support/FreshProcess.h"
#include "tests/support/PlannedRun.h"
#include "tests/support/ToolTest.h"

namespace {

using support::Json;
using support::ReadText;
using support::Texts;

constexpr char kMember[] = R"({"schema": 1, "computer_name": "PC1",
    "membership": {"domain": {"dns_name": "corp.example", "flat_name": "CORP"}},
    "directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP",
      "ous": ["OU=Sales,DC=corp,DC=example"],
      "computers": [{"name": "PC1", "dn": "CN=PC1,OU=Sales,DC=corp,DC=example"}]}]}})";

/// The name of a class without its namespaces.
std::string ShortName(const Json& command) {
  const std::string name = command["class"];
  EXPECT_TRUE(name.starts_with("config::command::")) << name;
  return name.substr(name.rfind(':') + 1);
}

/// "JoinDomain none > corp.example", "ConfigureNic 7 mac [SetDhcp static > dhcp,
/// -SetDns 10.0.0.1]": what is not needed has a "-".
std::string Print(const Json& command) {
  std::string text = (command.value("needed", true) ? "" : "-") + ShortName(command);
  if (command.contains("commands")) {
    text += " " + command["index"].dump() + " " + command["bound_by"].get<std::string>() + " [";
    for (const Json& inner : command["commands"]) {
      text += (text.ends_with('[') ? "" : ", ") + Print(inner);
    }
    return text + "]";
  }
  if (command.contains("current")) text += " " + command["current"].get<std::string>() + " >";
  if (command.contains("wanted")) text += " " + command["wanted"].get<std::string>();
  return text;
}

std::string Print(const Json& commands, const char* separator) {
  std::string text;
  for (const Json& command : commands) text += (text.empty() ? "" : separator) + Print(command);
  return text;
}

class PlanTest : public support::ToolTest {
 protected:
  Json Plan(const std::string& config, const Texts& options = {}) {
    support::StartFreshProcess();
    return RunJson("plan", config, options);
  }
};

TEST_F(PlanTest, TheQueueSaysWhatIsNeededAndWhy) {
  const std::string member = Write("member.json", kMember);
  const struct {
    const char* name;
    const char* config;
    Texts options;
    const char* queue;
    const char* dropped;
    int runsNow;
  } kCases[] = {
      {"nothing", "[Global]\nConfig=x\n", {}, "", "", 0},
      {"the same name in other case",
       "[Networking]\nComputerName=template\n",
       {},
       "",
       "ChangeCompName TEMPLATE > template",
       0},
      {"a rename comes before a join and its restart",
       "[Networking]\nWorkgroup=No\nDomain=corp.example\nComputerName=B\n",
       {},
       "ChangeCompName TEMPLATE > B; Reboot; JoinDomain  > corp.example; Reboot",
       "",
       1},
      {"or behind it",
       "[Networking]\nWorkgroup=No\nDomain=corp.example\nComputerName=B\n"
       "JoinDomainBeforeNameChange=True\n",
       {},
       "JoinDomain  > corp.example; Sleep; ChangeCompName TEMPLATE > B; Reboot",
       "",
       3},
      {"a workgroup",
       "[Networking]\nWorkgroup=True\nDomain=W\n",
       {},
       "JoinWorkgroup WORKGROUP > W",
       "",
       1},
      {"an OU without a domain",
       "[Networking]\nDSOrganizationalUnit=Sales\n",
       {},
       "",
       "MoveOu no domain > Sales",
       0},
      {"a member leaves its domain",
       "[Networking]\nWorkgroup=True\nDomain=W\n",
       {"--machine", member},
       "JoinWorkgroup  > W; Reboot",
       "",
       1},
      {"a member in its OU",
       "[Networking]\nDSOrganizationalUnit=Sales\n",
       {"--machine", member},
       "",
       "MoveOu OU=Sales,DC=corp,DC=example > OU=Sales,DC=corp,DC=example",
       0},
      {"adapters by location, address, and the next",
       "[TCP/IP]\nDHCP=True\n"
       "[NicEntry1]\nMACAddress=08-00-27-65-43-21\nDHCP=True\nDNS-Use-DHCP=True\n"
       "[NicEntry2]\nPCIBus=0\nPCIDevice=3\nPCIFunction=0\nMACAddress=080027654321\n"
       "[NicEntry3]\nPCIBus=9\nPCIDevice=9\nPCIFunction=9\n",
       {},
       "ConfigureNic 7 next [-SetDhcp dhcp > dhcp]; "
       "ConfigureNic 8 mac [SetDhcp static > dhcp, SetDns dhcp]; ConfigureNic 7 pci []; "
       "ConfigureNic -1 none []",
       "",
       4},
      {"static addresses, and what comes with them",
       "[NicEntry]\nMACAddress=080027654321\nDHCP=False\nAddress=10.20.0.15 10.20.0.16\n"
       "Netmask=255.255.0.0 255.255.0.0\nGateway=10.20.0.1\nSetDNSInfo=True\n"
       "DNS-Server-Count=1\nDNS-Server1=10.0.0.2\nDNS-SuffixSearchOrder=a.example b.example\n",
       {},
       "ConfigureNic 8 mac [-SetStatic 10.20.0.15/255.255.0.0 > "
       "10.20.0.15/255.255.0.0,10.20.0.16/255.255.0.0, Sleep, SetGateway  > 10.20.0.1, "
       "SetDns  > 10.0.0.2, SetDnsSuffix  > a.example,b.example]",
       "",
       1},
      {"suffixes are the whole machine's, so the second section finds them set",
       "[TCP/IP]\nSetDNSInfo=True\nDNS-SuffixSearchOrder=a.example\n"
       "[NicEntry1]\nSetDNSInfo=True\nDNS-SuffixSearchOrder=a.example\n",
       {},
       "ConfigureNic 7 next [SetDnsSuffix  > a.example]; "
       "ConfigureNic 8 next [-SetDnsSuffix a.example > a.example]",
       "",
       2},
      {"two sections of one adapter find each other's work",
       "[TCP/IP]\nMACAddress=080027123456\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\n"
       "[NicEntry1]\nMACAddress=080027123456\nDHCP=True\n",
       {},
       "ConfigureNic 7 mac [SetStatic dhcp > 10.0.0.5/255.0.0.0, Sleep]; "
       "ConfigureNic 7 mac [SetDhcp static > dhcp]",
       "",
       2},
      {"an empty address list is left to the run",
       "[TCP/IP]\nDHCP=False\nNetmask=255.0.0.0\n",
       {},
       "ConfigureNic 7 next [SetStatic /255.0.0.0, Sleep]",
       "",
       1},
      {"routes",
       "[TCP/IP]\nStatic-Route-Count=1\nRoute1=10.1.0.0 255.255.0.0 10.0.0.1 x 5\n",
       {},
       "ConfigureNic 7 next []; SetStaticRoute  > 10.1.0.0/255.255.0.0 via 10.0.0.1 metric 5",
       "",
       2},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    const Json json = Plan(c.config, c.options);
    EXPECT_EQ(exitCode_, 0);
    EXPECT_EQ(Print(json["commands"], "; "), c.queue);
    EXPECT_EQ(Print(json["dropped"], "; "), c.dropped);
    EXPECT_EQ(json["runs_now"], c.runsNow);
    EXPECT_TRUE(json["error"].is_null());
  }
}

TEST_F(PlanTest, ThePlanIsWhatTheRunDoes) {
  std::vector<Texts> runs;
  for (const char* name : {"office-pc", "laptop", "server"}) {
    const std::string path = std::string("examples/") + name;
    runs.push_back({path + ".cfg", "--machine", path + ".machine.json"});
  }
  for (const char* name : {"first-boot", "office-pc", "server"}) {
    runs.push_back({std::string("examples/") + name + ".cfg"});
  }
  const char* const kSuffixes[] = {"", "a.example", "b.example"};
  for (int i = 0; i < 9; ++i) {
    // Three sections for two adapters, one of them for an adapter that another one has too.
    const auto section = [](const char* name, const char* mac, const std::string& suffixes) {
      return std::string("[") + name + "]\nMACAddress=" + mac +
             "\nDHCP=False\nAddress=10.20.0.15\nNetmask=255.255.0.0\nGateway=10.20.0.1\n"
             "SetDNSInfo=True\nDNS-SuffixSearchOrder=" +
             suffixes + "\n";
    };
    runs.push_back({Write("three" + std::to_string(i) + ".cfg",
                          section("TCP/IP", "080027123456", kSuffixes[i % 3]) +
                              section("NicEntry1", "080027654321", kSuffixes[i / 3]) +
                              section("NicEntry2", "080027123456", kSuffixes[1]))});
  }
  for (const Texts& run : runs) {
    SCOPED_TRACE(run.front());
    const auto json = [&](const char* command) {
      Texts arguments{command, "--json"};
      arguments.insert(arguments.end(), run.begin(), run.end());
      EXPECT_EQ(Run(arguments), 0) << out_ << err_;
      return Json::parse(out_);
    };
    const Json plan = json("plan");
    EXPECT_EQ(support::PlannedRun(plan), support::ActualRun(json("simulate")));
    EXPECT_FALSE(support::PlannedRun(plan).empty());
  }
}

TEST_F(PlanTest, AnErrorOfTheLibraryIsToldWithItsPlace) {
  const std::string deaf =
      Write("deaf.json",
            R"({"schema": 1, "faults": [{"call": "wmi.connect", "hresult": "0x800706BA"}]})");
  const std::string deafOnce =
      Write("once.json", R"({"schema": 1, "faults": [{"call": "wmi.connect", "nth": 1}]})");
  const std::string stuck =
      Write("stuck.json", R"({"schema": 1, "files": [{"path": "C:\\restore.cfg",
      "text": "[a]"}], "faults": [{"call": "file.move", "error": 32}]})");
  const struct {
    const char* name;
    const char* config;
    Texts options;
    const char* error;
    const char* event;
  } kCases[] = {
      {"a name that does not resolve",
       "[TCP/IP]\nDHCP=False\n\nAddress=no.where\n",
       {},
       R"({"class":"ipc::CIPAddressError","source":"common\\ipc\\IpAddress","line":58,)"
       R"("message":"IPAddress::Connect Name Resolution Error","value":0,"system_error":11001})",
       "at IP_ADDRESS no.where from [TCP/IP] Address, line 4\n"},
      {"a route's name",
       "[TCP/IP]\nStatic-Route-Count=1\nRoute1=1.1.1.1 255.0.0.0 no.where\n",
       {},
       R"({"class":"ipc::CIPAddressError","source":"common\\ipc\\IpAddress","line":58,)"
       R"("message":"IPAddress::Connect Name Resolution Error","value":0,"system_error":11001})",
       "at STATIC_ROUTE 1.1.1.1 255.0.0.0 no.where from [TCP/IP] Route1, line 3\n"},
      {"a machine that does not answer",
       "[Networking]\nComputerName=A\n",
       {"--machine", deaf},
       R"({"class":"sys::OsVersionError","source":"common\\sys\\OsVersion","line":129,)",
       ""},
      {"a machine that does not answer once",
       "[Networking]\nComputerName=A\n",
       {"--machine", deafOnce, "--follow-restarts", "1"},
       R"({"class":"sys::OsVersionError","source":"common\\sys\\OsVersion","line":129,)",
       "Still not true"},
      {"a restore file that cannot be moved",
       "[Global]\nConfig=Restore\n",
       {"--machine", stuck},
       R"({"class":"util::CFileIOError","source":"common\\util\\FileUtils","line":51,)",
       ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    const Json json = Plan(c.config, c.options);
    EXPECT_EQ(exitCode_, 1);
    EXPECT_TRUE(json["error"].dump().starts_with(c.error)) << json["error"].dump();
    EXPECT_EQ(json["commands"].size() + json["dropped"].size(), 0U);
    Texts text{"plan", "-"};
    text.insert(text.end(), c.options.begin(), c.options.end());
    EXPECT_EQ(Run(text, c.config), 1);
    EXPECT_NE(out_.find(std::string("No plan\n")), std::string::npos) << out_;
    EXPECT_NE(out_.find(c.event), std::string::npos) << out_;
  }
}

TEST_F(PlanTest, WhateverCallFailsThereIsAPlanOrAReason) {
  const std::string config = ReadText("examples/server.cfg");
  Json machine = Json::parse(ReadText("examples/server.machine.json"));
  Texts outcomes;
  for (int nth = 1; nth <= 1000; ++nth) {
    SCOPED_TRACE(nth);
    machine["faults"] = {{{"call", "*"}, {"nth", nth}, {"error", 5}}};
    const int exitCode =
        Run({"plan", "-", "--json", "--machine", Write("m.json", machine.dump())}, config);
    if (exitCode == 2) {
      EXPECT_FALSE(err_.empty());
      outcomes.emplace_back("unusable");
      continue;
    }
    const Json json = Json::parse(out_);
    outcomes.push_back(exitCode == 0 ? "plan" : json["error"]["class"].get<std::string>());
    EXPECT_EQ(exitCode != 0, json["commands"].empty());
  }
  EXPECT_EQ(outcomes.back(), "plan") << "the machine is called less often";
  for (const char* outcome : {"plan", "unusable", "sys::CWmiError", "sys::OsVersionError"}) {
    EXPECT_NE(std::count(outcomes.begin(), outcomes.end(), outcome), 0) << outcome;
  }
}

TEST_F(PlanTest, WhatTheUserMustMendIsOneLineAndExitCodeTwo) {
  const std::string config = Write("a.cfg", "[Networking]\nComputerName=A\n");
  const std::string restore = Write("r.json", R"({"schema": 1, "files": [
      {"path": "C:\\restore.cfg", "text": "[a]\n[b"}]})");
  const std::string deaf = Write("d.json", R"({"schema": 1, "faults": [{"call": "file.read"}]})");
  const struct {
    const char* name;
    Texts arguments;
    const char* says;
  } kCases[] = {
      {"no file", {"plan"}, "plan: FILE is missing; name a configuration file, or - for"},
      {"a misspelt option",
       {"plan", "--machin", "m.json", config},
       "--machin: unknown option of plan; use --machine, or see orvanta-config plan --help"},
      {"a letter", {"plan", "-v", config}, "-v: unknown option of plan; use --verbose, or"},
      {"an option without its value",
       {"plan", config, "--machine"},
       "--machine: lacks its value M"},
      {"an option as a value", {"plan", config, "--html", "--json"}, "--html: lacks its value OUT"},
      {"an option twice",
       {"plan", config, "--html=a", "--html", "b"},
       "--html: can be given only once"},
      {"two files", {"plan", config, config}, "unexpected argument; see"},
      {"a restart count",
       {"plan", config, "--follow-restarts", "x"},
       "\"x\" is not a number from 0 to"},
      {"an option alone", {"--bogus"}, "--bogus: unknown option; see"},
      {"a misspelt command", {"chekc", config}, "chekc: unknown command; use check, or see"},
      {"no shell", {"completion"}, "completion: SHELL is missing; name bash, zsh or fish"},
      {"a word that is none",
       {"simulate", "--message", "x"},
       "--message: \"x\" is not one of configure, prep-for-image or update-info; see"},
      {"absent file", {"plan", Path("none.cfg")}, "none.cfg: cannot be read"},
      {"unknown option", {"plan", config, "--deliver-posted"}, "see orvanta-config plan --help"},
      {"open header", {"plan", Write("b.cfg", "[a]\n x=y\n [b\n")}, "b.cfg:3:2: section header"},
      {"empty file", {"plan", Write("c.cfg", "")}, "c.cfg: is empty"},
      {"open header of the restore file",
       {"plan", Write("d.cfg", "[Global]\nConfig=Restore\n"), "--machine", restore},
       "the restore file on the machine:2:1: section header"},
      {"unreadable on the machine", {"plan", config, "--machine", deaf}, "a.cfg: cannot be read"},
      {"file over itself", {"plan", config, "--save-machine", config}, "itself"},
      {"page over the machine",
       {"plan", config, "--machine", deaf, "--html", Path(".") + "/d.json"},
       "d.json: is the machine file itself"},
      {"page over the saved machine",
       {"plan", config, "--save-machine", Path("new"), "--html", Path("./new")},
       "is the saved machine itself"},
      {"page to standard output", {"plan", config, "--html", "-"}, "--html -"},
      {"page over the file", {"plan", config, "--html", config}, "itself"},
      {"negative restarts", {"plan", config, "--follow-restarts=-1"}, "--follow-restarts"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Run(c.arguments), 2);
    EXPECT_EQ(out_, "");
    EXPECT_NE(err_.find(c.says), std::string::npos) << err_;
    EXPECT_EQ(err_.find('\n'), err_.size() - 1) << err_;
  }
}

TEST_F(PlanTest, APlanChangesNothing) {
  const std::string machine = R"({"schema": 1,
      "registry": [{"key": "HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service",
                    "name": "NetworkDisabled", "type": "REG_DWORD", "data": 1}],
      "files": [{"path": "C:\\restore.cfg", "text": "[Networking]\nComputerName=B\n"},
                {"path": "C:\\tarvo.cfg", "text": "[Global]\nConfig=Restore\n"}],
      "adapters": [{"dhcp_enabled": true}]})";
  const std::string text = "[Global]\nConfig=restore\n[TCP/IP]\nDHCP=False\n";
  const std::string saved = Path("saved.json");
  const Json json = Plan(text, {"--machine", Write("m.json", machine), "--save-machine", saved});
  EXPECT_EQ(Print(json["commands"], "; "), "EnableNetworking; ChangeCompName TEMPLATE > B; Reboot")
      << "the flag counts, and the restore file takes the file's place";
  Json expected = Json::parse(machine);
  expected["files"][1]["text"] = text;
  const Json after = Json::parse(ReadText(saved));
  for (const char* part : {"registry", "files"}) EXPECT_EQ(after[part], expected[part]);
  EXPECT_EQ(after["adapters"][0]["dhcp_enabled"], true);

  EXPECT_EQ(Run({"plan", "-", "--machine", Path("m.json")}, text), 0);
  EXPECT_NE(out_.find("A restore file is pending"), std::string::npos) << out_;
  EXPECT_NE(out_.find("1  EnableNetworking  registry value NetworkDisabled\n"), std::string::npos)
      << out_;
}

TEST_F(PlanTest, EveryEventNamesItsLineAndEverySectionItsAdapter) {
  const Json json = Plan(
      "; the account's own lines\n[Networking]\nDomainPassword=ENCIPHERED-PASSWORD\n"
      "DomainUsername=ENCIPHERED-USER\nCOMPUTERNAME=A\n"
      "[TCP/IP]\nSetDNSInfo=True\nDNS-Server-Count=2\nDNS-Server1=10.0.0.2,\n  10.0.0.3\n"
      "DNS-Server2=0.0.0.0\nPCIBus=4\nPCIDevice=0\nPCIFunction=0\n[NicEntry2]\n[NicEntry3]\n"
      "Description=last\nMACAddress=12-34\n",
      {"--verbose"});
  Texts events;
  for (const Json& event : json["events"]) {
    events.push_back(event["line"].dump() + " " + event["section"].get<std::string>() + " " +
                     event["key"].get<std::string>() + " " + event["kind"].get<std::string>() +
                     "=" + event["value"].get<std::string>());
    if (!event["came_to_nothing"].is_null()) events.back() += " nothing";
  }
  EXPECT_EQ(
      events,
      (Texts{"5 Networking ComputerName COMPUTER_NAME=A",
             "4 Networking DomainUsername DOMAIN_USER=***",
             "3 Networking DomainPassword DOMAIN_PASSWORD=***",
             "6 TCP/IP  NIC=", "12 TCP/IP PCIBus NIC_PCI_BUS=4",
             "13 TCP/IP PCIDevice NIC_PCI_DEVICE=0", "14 TCP/IP PCIFunction NIC_PCI_FUNCTION=0",
             "9 TCP/IP DNS-Server1 DNS_SERVER=10.0.0.2", "9 TCP/IP DNS-Server1 DNS_SERVER=10.0.0.3",
             "11 TCP/IP DNS-Server2 DNS_SERVER=0.0.0.0 nothing",
             "15 NicEntry2  NIC=", "17 NicEntry3 Description NIC=last",
             "18 NicEntry3 MACAddress NIC_MAC_ADDRESS=12-34"}));
  EXPECT_EQ(json["commands"][0]["events"].dump(), "[0,1,2]");
  EXPECT_EQ(json["commands"][1]["commands"][0]["events"].dump(), "[7,8]");
  EXPECT_EQ(json["adapters"].dump(),
            R"([{"index":7,"pci_location":"0/3/0","mac_address":"08:00:27:12:34:56",)"
            R"("not_eligible":null,"taken_by":["NicEntry2"]},)"
            R"({"index":8,"pci_location":"4/0/0","mac_address":"08:00:27:65:43:21",)"
            R"("not_eligible":null,"taken_by":["TCP/IP"]},)"
            R"({"index":12,"pci_location":null,"mac_address":"02:00:4C:4F:4F:50",)"
            R"("not_eligible":"not on the PCI bus","taken_by":[]}])");
}

TEST_F(PlanTest, TheReportIsATreeThatTellsWhatWaits) {
  const auto expectReport = [&](const std::string& config, const std::string& report) {
    EXPECT_EQ(Run({"plan", "-"}, config), 0);
    const std::size_t start = out_.find("\n\n") + 2;
    EXPECT_EQ(out_.substr(start), report);
  };
  expectReport(
      "[Networking]\nWorkgroup=No\nDomain=corp.example\nComputerName=B\n"
      "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\nDNS-Use-DHCP=True\n"
      "[NicEntry1]\nPCIBus=0\nPCIDevice=9\nPCIFunction=0\nMACAddress=00\nDHCP=False\n"
      "Address=10.20.0.15\nNetmask=255.255.0.0\n"
      "[NicEntry2]\nDHCP=True\n",
      R"(Runs now
  1  ChangeCompName  Name=B {User=}  [Networking] line 4
                     TEMPLATE -> B
  -- restart: the run stops here --
Waits for the restart, and is planned anew then
  3  JoinDomain      DNS Domain=corp.example, Windows Domain= {User=}  [Networking] line 3
                     none -> corp.example
  4  ConfigureNic    adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [TCP/IP] line 5
                     the next free one, no PCI location or MAC address given
       SetStatic     IP and Subnet Masks: {ip=10.0.0.5,mask=255.0.0.0}  lines 6-8
                     dhcp -> 10.0.0.5/255.0.0.0
       Sleep         Duration=20000 milliseconds
       SetDns        DNS via DHCP  line 9
                     -> dhcp, whatever it is now
  5  ConfigureNic    adapter 8, Intel(R) 82574L Gigabit Network Connection  [NicEntry1] lines 10-14
                     the next free one, no adapter at PCI location 0/9/0 or with MAC address 00
                     passed over: adapter 7 is taken by [TCP/IP]
       SetStatic     IP and Subnet Masks: {ip=10.20.0.15,mask=255.255.0.0}  lines 15-17
                     not needed: 10.20.0.15/255.255.0.0 already
       Sleep         Duration=20000 milliseconds
  6  ConfigureNic    no adapter is left, so the run fails here  [NicEntry2] line 18
                     no PCI location or MAC address given
                     passed over: adapter 7 is taken by [TCP/IP], adapter 8 is taken by [NicEntry1], adapter 12 is not on the PCI bus
       SetDhcp       line 19
  7  Reboot
Pauses
  40 s after the restart
)");
  expectReport(
      "[Global]\nRebootAfterConfig=False\n[Networking]\nComputerName=B\nWorkgroup=No\n"
      "Domain=d\n[NicEntry1]\nMACAddress=02004C4F4F50\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0."
      "0.0\n",
      R"(Runs now
  1  ChangeCompName  Name=B {User=}  [Networking] line 4
                     TEMPLATE -> B
  -- restart, which RebootAfterConfig=False forbids: the run fails here --
Never done: the run fails and the file is put away
  3  JoinDomain      DNS Domain=d, Windows Domain= {User=}  [Networking] line 6
                     none -> d
  4  ConfigureNic    adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [NicEntry1] lines 7-8
                     the next free one, no adapter with MAC address 02004C4F4F50 that can be had: adapter 12 is not on the PCI bus
       SetStatic     IP and Subnet Masks: {ip=10.0.0.5,mask=255.0.0.0}  lines 9-11
                     dhcp -> 10.0.0.5/255.0.0.0
       Sleep         Duration=20000 milliseconds
)");
  expectReport(
      "[Networking]\nComputerName=template\n[TCP/IP]\nSetDNSInfo=True\n"
      "DNS-Server-Count=1\nDNS-Server1=0.0.0.0\n",
      R"(Runs now
  1  ConfigureNic    adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [TCP/IP] line 3
                     the next free one, no PCI location or MAC address given
Dropped
     ChangeCompName  Name=template {User=}  [Networking] line 2
                     not needed: TEMPLATE already
Asks for nothing
  DNS_SERVER 0.0.0.0 from [TCP/IP] DNS-Server1, line 6: 0.0.0.0 is no server
)");
}

/// "SetGateway [TCP/IP] line 5: 10.0.0.9 > 10.0.0.1: reason".
std::string PrintNotTrue(const Json& wishes) {
  std::string text;
  for (const Json& wish : wishes) {
    const auto field = [&](const char* name) { return wish[name].get<std::string>(); };
    text += field("what") + " [" + field("section") + "] " + field("lines") + ": ";
    if (!wish["current"].is_null()) text += field("current") + " > " + field("wanted") + ": ";
    text += field("reason") + "\n";
  }
  return text;
}

TEST_F(PlanTest, RestartsAreFollowedToTheirEnd) {
  const auto faulty = [&](const char* name, const char* fault) {
    return Write(name, std::string(R"({"schema": 1, "adapters": [{"dhcp_enabled": true,
        "location_information": "PCI bus 1, device 0, function 0"},
        {"index": 8, "mac_address": "01"}], "directory": {"domains": [{"dns_name": "corp.example",
        "flat_name": "CORP", "accounts": [{"user": "", "password": ""}]}]}, "faults": [)") +
                           fault + "]}");
  };
  const std::string plain = faulty("plain.json", "");
  const std::string unnamed =
      faulty("unnamed.json", R"({"call": "wmi.method", "method": "Rename", "result": 0})");
  const std::string refusing =
      faulty("refusing.json",
             R"({"call": "wmi.method", "method": "SetGateways", "index": 7, "result": 84})");
  const std::string late =
      faulty("late.json", R"({"call": "wmi.method", "method": "Rename", "nth": 1, "result": 0})");
  const std::string two = Write("two.json", R"({"schema": 1, "adapters": [{"dhcp_enabled": false,
      "ip_addresses": ["10.0.0.5", "10.0.0.6"], "subnet_masks": ["255.0.0.0", "255.0.0.0"]}]})");
  const std::string leaving =
      Write("leaving.json",
            std::string(kMember).substr(0, 14) +
                R"("registry": [{"key": "HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service",
          "name": "NetworkDisabled", "type": "REG_DWORD", "data": 1}], )" +
                (kMember + 14));
  const std::string rename = "[Networking]\nComputerName=B\n";
  const std::string join =
      "[Networking]\nWorkgroup=No\nDomain=corp.example\nDSOrganizationalUnit=\nComputerName=B\n";
  const struct {
    const char* name;
    std::string config;
    std::string machine;
    const char* most;
    int exitCode;
    const char* ending;
    const char* results;
    std::string notTrue;
  } kCases[] = {
      {"nothing to do", "[Global]\n", plain, "3", 0, "settled", "Success ", ""},
      {"one restart", rename, plain, "3", 0, "settled", "Reboot Success ", ""},
      {"the limit", rename, plain, "0", 0, "limit", "Reboot ",
       "ChangeCompName [Networking] line 2: TEMPLATE > B: it waits for a restart\n"},
      {"a limit that is just enough", rename, plain, "1", 0, "settled", "Reboot Success ", ""},
      {"a join behind the restart", join, plain, "1", 0, "limit", "Reboot Reboot ", ""},
      {"two restarts", join, plain, "2", 0, "settled", "Reboot Reboot Success ", ""},
      {"a name that is never taken", rename, unnamed, "9", 1, "loops", "Reboot ",
       "ChangeCompName [Networking] line 2: TEMPLATE > B: every start does it again, to no "
       "effect\n"},
      {"a name that is taken late is no loop", rename, late, "9", 0, "settled",
       "Reboot Reboot Success ", ""},
      {"a forbidden restart", "[Global]\nRebootAfterConfig=False\n" + join, plain, "3", 1, "failed",
       "Failure ",
       "ChangeCompName [Networking] line 7: TEMPLATE > B: it waits for a restart\n"
       "JoinDomain [Networking] line 5:  > corp.example: the run failed: a restart is due, which "
       "RebootAfterConfig=False forbids\n"},
      {"a refusal",
       "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\nGateway=10.0.0.1\n"
       "DNS-Use-DHCP=True\n",
       refusing, "3", 1, "failed", "Failure ",
       "SetGateway [TCP/IP] line 5:  > 10.0.0.1: the run failed: SetGateway:52 - Configuring "
       "gateways failed, system error 84\n"},
      {"sections that undo each other, and wishes that nothing comes of",
       "[TCP/IP]\nSetDNSInfo=True\nDNS-SuffixSearchOrder=a\n[NicEntry2]\nSetDNSInfo=True\n"
       "DNS-SuffixSearchOrder=b\nDNS-Server-Count=1\nDNS-Server1=0.0.0.0\n"
       "[Networking]\nDSOrganizationalUnit=Sales\n",
       plain, "3", 0, "settled", "Success ",
       "SetDnsSuffix [TCP/IP] line 3: b > a: the run did it, and something behind it or the "
       "machine undid it\n"
       "MoveOu [Networking] line 10: no domain > Sales: the computer belongs to no domain\n"
       "DNS_SERVER [NicEntry2] line 8: 0.0.0.0 is no server\n"},
      {"a section without an adapter", "[NicEntry1]\n[NicEntry2]\n[NicEntry3]\n", plain, "3", 1,
       "failed", "Failure ",
       "ConfigureNic [NicEntry3] line 3: no adapter is left: no PCI location or MAC address given, "
       "adapter 7 is taken by [NicEntry1], adapter 8 is taken by [NicEntry2]\n"},
      {"keys that nothing comes of",
       "[TCP/IP]\nAddress=10.0.0.5,\n 10.0.0.6\nNetmask=255.0.0.0\nSetDNSInfo=True\n[Interface1]\n"
       "DHCP=True\n[Networking]\nDomainPassword=AB\nAB=\nDNSDomain=x\n",
       plain, "3", 0, "settled", "Success ",
       "Address, Netmask [TCP/IP] lines 2, 4: nothing came of it; orvanta-config check tells why\n"
       "DHCP [Interface1] line 7: nothing came of it; orvanta-config check tells why\n"
       "DNSDomain [Networking] line 11: nothing came of it; orvanta-config check tells why\n"},
      {"an address beside the only one that is asked for",
       "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\n", two, "3", 0, "settled",
       "Success ",
       "SetStatic [TCP/IP] lines 2-4: 10.0.0.5/255.0.0.0,10.0.0.6/255.0.0.0 > 10.0.0.5/255.0.0.0: "
       "the first address is right already, and no other is compared\n"},
      {"what no run does, as it is true until something behind it",
       "[TCP/IP]\nPCIBus=1\nPCIDevice=0\nPCIFunction=0\nDHCP=True\n[NicEntry1]\nPCIBus=1\n"
       "PCIDevice=0\nPCIFunction=0\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\n",
       plain, "3", 0, "settled", "Success ",
       "SetDhcp [TCP/IP] line 5: static > dhcp: no run did it (not needed: dhcp already), and "
       "something else changed it\n"},
      {"networking turned on again leaves the domain",
       "[Networking]\nWorkgroup=No\nDomain=corp.example\n", leaving, "3", 0, "settled", "Success ",
       "JoinDomain [Networking] line 3:  > corp.example: no run did it (the computer belongs to "
       "this domain already), and something else changed it\n"},
      {"an address beside one that is right already",
       "[TCP/IP]\nDHCP=False\nAddress=10.20.0.15,10.20.0.16\nNetmask=255.255.0.0,255.255.0.0\n"
       "MACAddress=080027654321\n",
       "", "3", 0, "settled", "Success ",
       "SetStatic [TCP/IP] lines 2-4: 10.20.0.15/255.255.0.0 > "
       "10.20.0.15/255.255.0.0,10.20.0.16/255.255.0.0: the first address is right already, and no "
       "other is compared\n"},
      {"addresses that are all set",
       "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5,10.0.0.6\nNetmask=255.0.0.0,255.0.0.0\n", plain, "3",
       0, "settled", "Success ", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    Texts options{"--follow-restarts", c.most};
    if (!c.machine.empty()) options.insert(options.end(), {"--machine", c.machine});
    const Json json = Plan(c.config, options);
    EXPECT_EQ(exitCode_, c.exitCode);
    EXPECT_EQ(json["ending"], c.ending);
    std::string results;
    for (const Json& step : json["steps"]) results += step["result"].get<std::string>() + " ";
    EXPECT_EQ(results, c.results);
    EXPECT_EQ(PrintNotTrue(json["not_true"]), c.notTrue);
    EXPECT_EQ(json["commands"], json["steps"][0]["plan"]["commands"]);
    const bool loops = json["ending"] == "loops";
    EXPECT_EQ(json["restarts"], json["steps"].size() - (loops ? 0 : 1));
    EXPECT_EQ(json["loops_to"], loops ? Json(0) : Json());
  }
}

TEST_F(PlanTest, ARestoreIsFollowedThroughItsHandOver) {
  const std::string machine = Write("m.json", R"({"schema": 1, "files": [
      {"path": "C:\\restore.cfg", "text": "[Networking]\nComputerName=B\n"}]})");
  const Json json = Plan("[Global]\nConfig=Restore\n", {"--machine", machine, "--follow-restarts",
                                                        "3", "--save-machine", Path("after.json")});
  EXPECT_EQ(json["ending"], "settled");
  EXPECT_EQ(Print(json["commands"], "; "), "ChangeCompName TEMPLATE > B; Reboot");
  Texts calls;
  for (const Json& change : json["steps"][0]["changes"]) calls.push_back(change["call"]);
  EXPECT_EQ(calls, (Texts{"file.delete", "file.move", "wmi.method"}));
  EXPECT_EQ(Json::parse(ReadText(Path("after.json")))["computer_name"], "B");
  EXPECT_EQ(Run({"plan", "-", "--machine", machine, "--follow-restarts", "3"},
                "[Global]\nConfig=Restore\n"),
            0);
  for (const char* part :
       {"\nRun\n  reply Reboot\n\n-- restart 1 --\n\nRuns now\n  nothing\nDropped\n",
        "\nEnd\n  settled after 1 restart\n"}) {
    EXPECT_NE(out_.find(part), std::string::npos) << part << out_;
  }
}

/// What is wrong with the structure of a page: tags that do not match, links that lead nowhere, ids
/// that stand twice.
std::string FaultOf(const std::string& page) {
  Texts open;
  std::set<std::string> ids;
  std::set<std::string> targets;
  for (std::size_t at = page.find('<'); at != std::string::npos; at = page.find('<', at + 1)) {
    const std::size_t end = page.find('>', at);
    if (end == std::string::npos) return "an open tag";
    const std::string tag = page.substr(at + 1, end - at - 1);
    const std::string name = tag.substr(0, tag.find(' '));
    const auto attribute = [&](const std::string& start) {
      const std::size_t from = tag.find(start);
      if (from == std::string::npos) return std::string();
      return tag.substr(from + start.size(),
                        tag.find('"', from + start.size()) - from - start.size());
    };
    if (name.starts_with('/')) {
      if (open.empty() || "/" + open.back() != name) return "no beginning of " + tag;
      open.pop_back();
    } else if (name != "!DOCTYPE" && name != "meta" && name != "wbr") {
      open.push_back(name);
    }
    const std::string id = attribute(" id=\"");
    if (!id.empty() && !ids.insert(id).second) return "two of " + id;
    if (name == "a") targets.insert(attribute(" href=\"#"));
  }
  if (!open.empty()) return "no end of " + open.back();
  for (const std::string& target : targets) {
    if (!ids.contains(target)) return "no place " + target;
  }
  return "";
}

TEST_F(PlanTest, ThePageStandsAloneAndItsLinksLeadSomewhere) {
  const std::string page = Path("plan.html");
  const struct {
    const char* name;
    const char* config;
    Texts options;
    Texts parts;
  } kCases[] = {
      {"restarts",
       "[Networking]\nWorkgroup=No\nDomain=corp.example\nDSOrganizationalUnit=Sales\n"
       "DomainUsername=ENCIPHERED-USER\nDomainPassword=ENCIPHERED-PASSWORD\nComputerName=B\n"
       "[TCP/IP]\nDHCP=True\n[NicEntry2]\nSetDNSInfo=True\nDNS-Server-Count=1\n"
       "DNS-Server1=0.0.0.0\n",
       {"--follow-restarts", "3"},
       {"settled after 2 restarts", ">restart: the run stops here; what follows waits",
        "Plan after restart 2", "Its run", "Machine, before and after",
        "<td data-name=\"After\">domain corp.example</td>", "not on the PCI bus",
        "Asks for nothing", "Still not true", "<span class=\"text\">DomainPassword=***</span>"}},
      {"without following",
       "[Networking]\nComputerName=B\n",
       {},
       {"a restart is due", "name after the restart"}},
      {"an error",
       "[TCP/IP]\nDHCP=False\nAddress=no.where\n",
       {},
       {"No plan.", "failed after 0 restarts"}},
      {"nothing", "[Global]\n", {}, {"Nothing.", "settled after 0 restarts"}},
      {"no adapter",
       "[NicEntry1]\n[NicEntry2]\n[NicEntry3]\n",
       {},
       {"Passed over: adapter 7 is taken by [NicEntry1]"}},
      {"texts that look like a page",
       "[Networking]\nComputerName=<script>\"&\n[NicEntry <b>]\nMACAddress=</li>\x1B\n"
       "\tSetDNSInfo=True\nDNS-SuffixSearchOrder=<i>\nUserPwd=s3cret-of-a-line\n",
       {},
       {"&lt;script&gt;&quot;&amp;", "[NicEntry &lt;b&gt;]", "MACAddress=&lt;/li&gt;\\x1B",
        " SetDNSInfo=True"}},
      {"texts in ANSI",
       "[TCP/IP]\nDescription=\xE4\xF6 \xC3\xA4\n",
       {},
       {"Description=\xEF\xBF\xBD\xEF\xBF\xBD \xC3\xA4</span>"}},
      {"a forbidden restart",
       "[Global]\nRebootAfterConfig=False\n[Networking]\nComputerName=B\nWorkgroup=No\nDomain=d\n",
       {},
       {"the run fails here; what follows is never done", "<li id=\"s1c3\" class=\"never\">"}},
      {"a file that is none",
       "\xFF\xFE[",
       {},
       {"Check: 1 error: the file is binary or in UTF-16; see orvanta-config check -"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    Texts arguments{"plan", "-", "--html", page};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    support::StartFreshProcess();
    Run(arguments, c.config);
    EXPECT_EQ(err_, "");
    EXPECT_FALSE(out_.empty());
    const std::string html = ReadText(page);
    EXPECT_EQ(FaultOf(html), "");
    for (const std::string& part : c.parts) EXPECT_NE(html.find(part), std::string::npos) << part;
    for (const char* barred :
         {"<script", "<link", "src=", "url(", "http:", "https:", "s3cret", "\x1B", "\t"}) {
      EXPECT_EQ(html.find(barred), std::string::npos) << barred;
    }
    for (const char* needed :
         {"prefers-color-scheme: dark", "name=\"viewport\"", "max-width: 40rem"}) {
      EXPECT_NE(html.find(needed), std::string::npos) << needed;
    }
  }
}

TEST_F(PlanTest, NoTextOfTheUserSteersTheTerminalAndNoPasswordIsShown) {
  const std::string config =
      "[Networking]\nComputerName=A\x1B[31m\nDomainUsername=ENCIPHERED-USER\n"
      "DomainPassword=ENCIPHERED-PASSWORD\n[NicEntry \x1B[0m]\nMACAddress=\x07\n"
      "Description=pwd=s3cret-in-a-text\n";
  for (const char* option : {"--json", "--verbose"}) {
    EXPECT_EQ(Run({"plan", "-", option, "--verbose"}, config), 0);
    EXPECT_EQ(out_.find('\x1B'), std::string::npos) << out_;
    EXPECT_EQ(out_.find("s3cret"), std::string::npos) << out_;
    EXPECT_NE(out_.find("***"), std::string::npos) << out_;
  }
}

}  // namespace
