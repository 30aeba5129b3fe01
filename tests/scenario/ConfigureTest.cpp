// A configuration file and a machine in; reply, log, changes and machine out.
#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/IRegistry.h"
#include "tests/support/JsonText.h"
#include "tests/support/MachineTest.h"
#include "tool/agent/Delivery.h"

namespace {

using Texts = std::vector<std::string>;
using simulated::Machine;

constexpr char kFile[] = R"(C:\tarvo.cfg)";
constexpr char kMoved[] = R"(C:\Program Files\Orvanta\Agent\tarvo.cfg)";
constexpr char kFlagKey[] = R"(HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service)";

class ConfigureTest : public support::MachineTest {
 protected:
  ConfigureTest() { machine_ = simulated::ExampleMachine(); }

  /// Places `text` on the machine and sends the message that names it.
  tool::Delivery Configure(const std::string& text) {
    machine_.files.push_back({kFile, text});
    return Send();
  }
  tool::Delivery Send() {
    return tool::Deliver({"Internal", "Configure", {{"Filename", kFile}}}, machine_);
  }

  /// "Schedule-ID= Result=Success", the values of the reply in order.
  static std::string Reply(const tool::Delivery& delivery) {
    std::string text;
    const simulated::Json json = tool::ToJson(delivery);
    for (const auto& [name, value] : json["reply"].items()) {
      text += name + "=" + value.get<std::string>() + " ";
    }
    return text;
  }

  /// The WMI methods with their arguments, and the calls of other kinds.
  static Texts Changes(const tool::Delivery& delivery) {
    Texts texts;
    for (const auto& change : delivery.changes) {
      if (change.call == "wmi.method") {
        texts.push_back(change["method"].Text() + support::JsonText(change["arguments"]));
      } else if (change.call == "process.run") {
        texts.push_back(change["command"].Text());
      } else {
        texts.push_back(change.call);
      }
    }
    return texts;
  }

  static bool Logged(const tool::Delivery& delivery, std::uint32_t level, const std::string& text) {
    return std::any_of(delivery.log.begin(), delivery.log.end(), [&](const tool::LogLine& line) {
      return line.level == level && line.text == text;
    });
  }
};

constexpr char kAnswered[] = "Schedule-ID= Task-Sequence-ID= ";

TEST_F(ConfigureTest, TheResultTellsHowTheRunEnded) {
  const struct {
    const char* name;
    const char* text;
    std::string reply;
    const char* place;
  } kCases[] = {
      {"nothing to do", "[Global]\nScheduleId=1\nTaskSequence=2\n",
       "Schedule-ID=1 Task-Sequence-ID=2 Result=Success ", kMoved},
      {"restart", "[Networking]\nComputerName=A\n", kAnswered + std::string("Result=Reboot "),
       kFile},
      {"suppressed restart", "[Networking]\nComputerName=A\n[global]\nrebootafterconfig=FALSE\n",
       kAnswered + std::string("Result=Failure Status-Module=Tarvo Status-Code=3 "), kMoved},
      {"suppressed without need",
       "[Networking]\nComputerName=template\n[Global]\n"
       "RebootAfterConfig=False\n",
       kAnswered + std::string("Result=Success "), kMoved},
      {"header without end", "[Networking]\nComputerName=A\n[Global\nx=y\n",
       "Result=Failure Status-Module=Tarvo Status-Code=3 ", kFile},
      {"empty file", "", "Result=Failure Status-Module=Tarvo Status-Code=3 ", kFile},
      {"refused adapter setting", "[TCP/IP]\nDHCP=False\nNetmask=255.0.0.0\n",
       kAnswered + std::string("Result=Failure Status-Module=Win32 Status-Code=0 "), kMoved},
      {"name that does not resolve", "[TCP/IP]\nDHCP=False\nAddress=nowhere\n",
       kAnswered + std::string("Result=Failure Status-Module=Win32 Status-Code=11001 "), kMoved},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    machine_ = simulated::ExampleMachine();
    const tool::Delivery delivery = Configure(c.text);
    EXPECT_EQ(delivery.status, 1);
    EXPECT_EQ(Reply(delivery), c.reply);
    ASSERT_EQ(machine_.files.size(), 1U);
    EXPECT_EQ(machine_.files[0].path, c.place);
    EXPECT_EQ(machine_.files[0].text, c.text);
  }
}

TEST_F(ConfigureTest, AMissingFileIsNotAnswered) {
  const tool::Delivery delivery = Send();
  EXPECT_EQ(delivery.status, 0);
  EXPECT_EQ(Reply(delivery), "");
  EXPECT_TRUE(
      Logged(delivery, 2,
             R"(internal/Configure:115 Configure::HandleMessage(): config file=C:\tarvo.cfg)"));
  EXPECT_TRUE(Logged(delivery, 0,
                     "internal/Configure:629 Configure::HandleMessage(): File C:\\tarvo.cfg does "
                     "not exist"));
}

TEST_F(ConfigureTest, AFileThatStandsInTheWayIsReplacedAndTheFileItselfIsNot) {
  machine_.files = {{kMoved, "old"}};
  Configure("[Global]\n");
  ASSERT_EQ(machine_.files.size(), 1U);
  EXPECT_EQ(machine_.files[0].text, "[Global]\n");
  tool::Deliver({"Internal", "Configure", {{"Filename", kMoved}}}, machine_);
  EXPECT_EQ(machine_.files.size(), 1U) << "it is where it belongs already";
}

TEST_F(ConfigureTest, AWaitingRestoreTakesTheFilesPlace) {
  machine_.files = {{R"(C:\restore.cfg)", "[Global]\nConfig=RestoreAfterCreate\n"}};
  const tool::Delivery delivery = Configure("[Global]\nConfig=restore\n");
  EXPECT_EQ(delivery.status, 1);
  EXPECT_EQ(Reply(delivery), "");
  EXPECT_EQ(tool::ToJson(delivery)["posted"].dump(),
            R"([{"type":"Internal","name":"Configure","values":[["Filename","C:\\tarvo.cfg"]]}])");
  ASSERT_EQ(machine_.files.size(), 1U);
  EXPECT_EQ(machine_.files[0].path, kFile);
  EXPECT_EQ(machine_.files[0].text, "[Global]\nConfig=RestoreAfterCreate\n");

  machine_.files = {{R"(C:\restore.cfg)", "[Global]\n"}};
  EXPECT_EQ(Reply(Configure("[Global]\nConfig=Restore\n[Broken\n")),
            "Result=Failure Status-Module=Tarvo Status-Code=3 ")
      << "no setting of a broken file counts";
  machine_.files.clear();
  EXPECT_EQ(Reply(Configure("[Global]\nConfig=Restore\n")),
            kAnswered + std::string("Result=Success "))
      << "without a restore file the file itself counts";
}

TEST_F(ConfigureTest, NetworkingThatWasDisabledComesBack) {
  const Texts services{"registry.delete", "service.start_type",
                       "service.start",   "service.start_type",
                       "service.start",   "service.start_type",
                       "service.start",   "service.start_type",
                       "service.start",   "sleep"};
  for (const bool afterCreate : {false, true}) {
    SCOPED_TRACE(afterCreate);
    machine_ = simulated::ExampleMachine();
    machine_.registry = {{kFlagKey, "NetworkDisabled", platform::kRegDWord, 1u}};
    machine_.membership = simulated::DomainMembership{"corp.example", "CORP", true};
    const tool::Delivery delivery =
        Configure(afterCreate ? "[Global]\nConfig=RestoreAfterCreate\n" : "[Global]\n");
    Texts expected = services;
    if (!afterCreate) {
      expected.insert(expected.begin() + 1,
                      {R"(UnjoinDomainOrWorkgroup{"UserName":null,"Password":null,)"
                       R"("FUnjoinOptions":0})",
                       R"(JoinDomainOrWorkgroup{"Name":"WrkGrp","UserName":null,"Password":null,)"
                       R"("AccountOU":null,"FJoinOptions":0})"});
    }
    expected.push_back("file.move");
    EXPECT_EQ(Changes(delivery), expected);
    EXPECT_TRUE(machine_.registry.empty());
    EXPECT_TRUE(Logged(delivery, 0,
                       "internal/Configure:152 Networking was disabled see if we need to go to wrk "
                       "grp"));
    EXPECT_EQ(Logged(delivery, 0,
                     "internal/Configure:160 Looks we are coming after create image, No need to go "
                     "to wrk grp"),
              afterCreate);
  }
}

TEST_F(ConfigureTest, MembershipFollowsThreeKeys) {
  constexpr struct {
    const char *keys, *first;
  } kCases[] = {
      {"Domain=D\n", ""},
      {"Workgroup=\nDomain=D\n", ""},
      {"Workgroup=true\nDomain=W\n", "\"Name\":\"W\""},
      {"Workgroup=True\n", ""},
      {"Workgroup=False\nDomain=corp.example\n", "\"Name\":\"corp.example\""},
      {"Workgroup=no\nDNSDomain=corp.example\nDomain=CORP\n", "\"Name\":\"corp.example\""},
      {"Workgroup=False\n", ""},  // the workgroup WORKGROUP, which the machine is in
      {"Workgroup=False\nDSOrganizationalUnit=Sales\n", ""},
      {"Workgroup=False\nDomain=corp.example\nDSOrganizationalUnit=Sales\n",
       "\"AccountOU\":\"OU=Sales,DC=corp,DC=example\""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.keys);
    machine_ = simulated::ExampleMachine();
    const Texts changes = Changes(Configure(std::string("[Networking]\n") + c.keys));
    if (*c.first == '\0') {
      EXPECT_EQ(changes, Texts{"file.move"});
    } else {
      EXPECT_NE(changes[0].find(c.first), std::string::npos) << changes[0];
    }
  }
}

TEST_F(ConfigureTest, CredentialsFollowTheOuAndTheNameOnly) {
  const std::string account =
      "[Networking]\nDomainUsername=ENCIPHERED-USER\n"
      "DomainPassword=ENCIPHERED-PASSWORD\nWorkgroup=False\n"
      "DNSDomain=corp.example\n";
  const auto join = [this](const std::string& text) {
    machine_ = simulated::ExampleMachine();
    return Changes(Configure(text)).at(0);
  };
  EXPECT_NE(join(account + "DSOrganizationalUnit=Sales\n").find(R"(corp.example\\joiner)"),
            std::string::npos);
  EXPECT_EQ(join(account).find("joiner"), std::string::npos) << "they never reach the join alone";
}

TEST_F(ConfigureTest, AdapterKeysBecomeMethods) {
  const struct {
    const char* name;
    const char* keys;
    Texts changes;
  } kCases[] = {
      {"unchanged addressing", "Address=10.0.0.5\nNetmask=255.0.0.0\n", {}},
      {"empty keys", "DHCP=\nPCIBus=\nMACAddress=\nDNS-Use-DHCP=\n", {}},
      {"DHCP that is on", "DHCP=yes\n", {}},
      {"lists with every separator",
       "DHCP=false\nAddress=10.0.0.5;10.0.0.6\n  10.0.0.7\n"
       "Netmask=255.0.0.0, 255.0.0.0\t255.0.0.0\n",
       {R"(EnableStatic{"IPAddress":["10.0.0.5","10.0.0.6","10.0.0.7"],)"
        R"("SubNetMask":["255.0.0.0","255.0.0.0","255.0.0.0"]})",
        "sleep"}},
      {"DNS over DHCP wins",
       "DNS-Use-DHCP=TRUE\nSetDNSInfo=True\nDNS-Server-Count=1\n"
       "DNS-Server0=10.0.0.2\n",
       {"SetDNSServerSearchOrder{}"}},
      {"servers without SetDNSInfo", "DNS-Server-Count=1\nDNS-Server0=10.0.0.2\n", {}},
      {"numbered from 1 with a gap",
       "SetDNSInfo=True\nDNS-Server-Count=2\nDNS-Server1=10.0.0.2\n"
       "DNS-Server3=0.0.0.0,10.0.0.3\n",
       {R"(SetDNSServerSearchOrder{"DNSServerSearchOrder":["10.0.0.2","10.0.0.3"]})"}},
      {"a count beyond all keys",
       "SetDNSInfo=True\nDNS-Server-Count=2147483647\n"
       "DNS-Server0=10.0.0.2\n",
       {R"(SetDNSServerSearchOrder{"DNSServerSearchOrder":["10.0.0.2"]})"}},
      {"a count that is none", "SetDNSInfo=True\nDNS-Server-Count=-1\nDNS-Server0=10.0.0.2\n", {}},
      {"routes",
       "Static-Route-Count=2\nRoute0=10.1.0.0,255.255.0.0,10.0.0.1,x,7\n"
       "Route1=10.2.0.0 255.255.0.0 10.0.0.1\n",
       {"route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 7",
        "route -p ADD 10.2.0.0 mask 255.255.0.0 10.0.0.1 METRIC 0"}},
      {"a route twice",
       "Static-Route-Count=2\nRoute0=10.1.0.0,255.255.0.0,10.0.0.1,x,7\n"
       "Route1=10.1.0.0,255.255.0.0,10.0.0.1,y,7\n",
       {"route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 7"}},
      {"a route that is empty", "Static-Route-Count=2\nRoute0=\nRoute1= , ;\n", {}},
      {"a route that is no address",
       "Static-Route-Count=1\nRoute0=1host\n",
       {"route -p ADD 255.255.255.255 mask 255.255.255.255 255.255.255.255 METRIC 0"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    machine_ = simulated::ExampleMachine();
    Texts changes = Changes(Configure(std::string("[tcp/ip]\n") + c.keys));
    EXPECT_EQ(changes.back(), "file.move");
    changes.pop_back();
    EXPECT_EQ(changes, c.changes);
  }
}

TEST_F(ConfigureTest, RoutesBecomeTheWantedOnes) {
  const auto route = [](const char* destination, const char* nextHop, int metric) {
    return simulated::PersistentRoute{destination, "255.255.0.0", nextHop, metric};
  };
  const simulated::PersistentRoute standard{"0.0.0.0", "0.0.0.0", "10.0.0.254", 1};
  const struct {
    const char* name;
    std::vector<simulated::PersistentRoute> existing;
    Texts changes;
  } kCases[] = {
      {"equal in another order",
       {route("10.2.0.0", "10.0.0.1", 5), standard, route("10.1.0.0", "10.0.0.1", 5)},
       {}},
      {"equal, one of them twice",
       {route("10.1.0.0", "10.0.0.1", 5), route("10.2.0.0", "10.0.0.1", 5),
        route("10.1.0.0", "10.0.0.1", 5)},
       {}},
      {"another metric and a stranger",
       {route("10.9.0.0", "10.0.0.1", 5), route("10.1.0.0", "10.0.0.1", 6),
        route("10.2.0.0", "10.0.0.1", 5)},
       {"route DELETE 10.1.0.0", "route DELETE 10.9.0.0",
        "route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 5"}},
      {"a second default route",
       {standard, route("10.1.0.0", "10.0.0.1", 5), standard, route("10.2.0.0", "10.0.0.1", 5)},
       {"route DELETE 0.0.0.0"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    machine_ = simulated::ExampleMachine();
    machine_.persistentRoutes = c.existing;
    Texts changes = Changes(
        Configure("[TCP/IP]\nStatic-Route-Count=2\nRoute1=10.2.0.0 255.255.0.0 10.0.0.1 0 5\n"
                  "Route2=10.1.0.0 255.255.0.0 10.0.0.1 0 5\n"));
    changes.pop_back();
    EXPECT_EQ(changes, c.changes);
  }
}

TEST_F(ConfigureTest, ASectionThatComesTwiceIsOne) {
  const Texts changes = Changes(
      Configure("[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\n[Networking]\n[tcp/ip]\nAddress=10.0.0.6\n"
                "Netmask=255.0.0.0\n"));
  EXPECT_EQ(changes.at(0), R"(EnableStatic{"IPAddress":["10.0.0.5"],"SubNetMask":["255.0.0.0"]})");
}

TEST_F(ConfigureTest, HugeValuesAreAnsweredLikeAnyOther) {
  const std::string huge(1 << 20, '7');
  constexpr struct {
    const char *section, *key, *result;
  } kCases[] = {
      {"Networking", "ComputerName", "Reboot"}, {"TCP/IP", "PCIBus", "Success"},
      {"TCP/IP", "MACAddress", "Success"},      {"TCP/IP", "Static-Route-Count", "Success"},
      {"Global", "ScheduleId", "Success"},      {"ConfigSettings", "any", "Success"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.key);
    machine_ = simulated::ExampleMachine();
    EXPECT_EQ(Configure("[" + std::string(c.section) + "]\n" + c.key + "=" + huge).Result(),
              c.result);
  }
}

TEST_F(ConfigureTest, OrderAndLetterCaseOfListsCount) {
  machine_.adapters.resize(1);
  simulated::Adapter& adapter = machine_.adapters[0];
  adapter.dhcpEnabled = false;
  adapter.ipAddresses = {"10.0.0.5", "10.0.0.6"};
  adapter.subnetMasks = {"255.0.0.0", "255.0.0.0"};
  adapter.gateways = {"10.0.0.1", "10.0.0.2"};
  adapter.dnsServers = {"10.0.0.3", "10.0.0.4"};
  adapter.dnsSuffixes = {"a.example", "b.example"};
  const Machine same = machine_;
  const std::string head =
      "[TCP/IP]\nDHCP=False\nNetmask=255.0.0.0\nSetDNSInfo=True\n"
      "DNS-Server-Count=1\n";
  constexpr struct {
    const char *keys, *method;
  } kCases[] = {
      {"Address=10.0.0.5,10.9.9.9\nGateway=10.0.0.1,10.0.0.2\nDNS-Server0=10.0.0.3,10.0.0.4\n"
       "DNS-SuffixSearchOrder=a.example,b.example\n",
       ""},
      {"Address=10.0.0.6\n", "EnableStatic"},
      {"Address=10.0.0.5\nGateway=10.0.0.2,10.0.0.1\n", "SetGateways"},
      {"Address=10.0.0.5\nDNS-Server0=10.0.0.4,10.0.0.3\n", "SetDNSServerSearchOrder"},
      {"Address=10.0.0.5\nDNS-SuffixSearchOrder=A.example,b.example\n", "SetDNSSuffixSearchOrder"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.keys);
    machine_ = same;
    const Texts changes = Changes(Configure(head + c.keys));
    const bool called = std::any_of(changes.begin(), changes.end(), [&](const std::string& change) {
      return *c.method != '\0' && change.starts_with(c.method);
    });
    EXPECT_EQ(called, *c.method != '\0');
    EXPECT_EQ(changes.size(), called ? 3U : 2U) << "a pause, the file's move, and no more";
  }
}

TEST_F(ConfigureTest, AdaptersAreBoundByLocationThenAddressThenOrder) {
  const struct {
    const char* name;
    const char* text;
    std::vector<int> indexes;
  } kCases[] = {
      {"location",
       "[TCP/IP]\nPCIBus=4\nPCIDevice=0\nPCIFunction=0\nMACAddress=080027123456\n",
       {8}},
      {"location that is not there",
       "[TCP/IP]\nPCIBus=9\nPCIDevice=0\nPCIFunction=0\n"
       "MACAddress=08-00-27-65-43-21\n",
       {8}},
      {"unknown location", "[TCP/IP]\nPCIBus=4294967295\nPCIDevice=0\nPCIFunction=0\n", {7}},
      {"half a location", "[TCP/IP]\nPCIBus=4\n", {7}},
      {"an address no PCI adapter has", "[TCP/IP]\nMACAddress=02004C4F4F50\n", {7}},
      {"in order", "[NicEntry2]\nx=y\n[MyNicEntry1]\nx=y\n[Interface1]\nx=y\n", {7, 8}},
      {"a match may be taken twice",
       "[NicEntry1]\nx=y\n[NicEntry2]\nMACAddress=080027123456\n"
       "[NicEntry3]\nx=y\n",
       {7, 7, 8}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    machine_ = simulated::ExampleMachine();
    const tool::Delivery delivery = Configure(c.text);
    std::vector<int> indexes;
    for (const tool::LogLine& line : delivery.log) {
      const std::string start =
          "ConfigureNic::Execute(): NIC index (Win32_NetworkAdapterConfiguration.Index)=";
      if (line.text.starts_with(start))
        indexes.push_back(std::stoi(line.text.substr(start.size())));
    }
    EXPECT_EQ(indexes, c.indexes);
  }
  machine_.adapters.resize(1);
  machine_.files.clear();
  const tool::Delivery delivery = Configure("[NicEntry1]\nx=y\n[NicEntry2]\nx=y\n");
  EXPECT_TRUE(Logged(delivery, 0,
                     "internal/Configure:581 Configure::HandleMessage(): caught win32 error\n\t"
                     "common\\config\\command\\ConfigureNic:68 - ConfigureNic has not been been "
                     "associated with a nic index\n\tValue=0, SystemError=0x00000000"));
}

TEST_F(ConfigureTest, RefusalsReachReplyAndLog) {
  const std::string nic =
      "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\n"
      "Gateway=10.0.0.1\nSetDNSInfo=True\nDNS-Server-Count=1\n"
      "DNS-Server0=10.0.0.2\nDNS-SuffixSearchOrder=a.example\n";
  const std::string route = "Static-Route-Count=1\nRoute0=10.1.0.0 255.255.0.0 10.0.0.1\n";
  const struct {
    const char* method;
    std::string text;
    const char* record;
    int value;
  } kCases[] = {
      {"Rename", "[Networking]\nComputerName=A\n",
       "ChangeCompName:45 - Configuring computer name failed", 4},
      {"EnableDHCP", "[TCP/IP]\nPCIBus=4\nPCIDevice=0\nPCIFunction=0\nDHCP=True\n",
       "SetDhcp:48 - Configuring DHCP failed", 4},
      {"EnableStatic", nic, "SetStatic:68 - Configuring static IP addresses failed", 4},
      {"SetGateways", nic, "SetGateway:52 - Configuring gateways failed", 4},
      {"SetDNSServerSearchOrder", nic, "SetDns:68 - Configuring DNS servers failed", 4},
      {"SetDNSServerSearchOrder", "[TCP/IP]\nDNS-Use-DHCP=True\n",
       "SetDns:60 - Configuring DNS via DHCP failed", 4},
      {"SetDNSSuffixSearchOrder", nic, "SetDnsSuffix:54 - Configuring DNS suffixes failed", 4},
      {"DELETE", "[TCP/IP]\nStatic-Route-Count=1\n" + route,
       "SetStaticRoute:149 - Failed to delete static route", 5},
      {"ADD", "[TCP/IP]\n" + route, "SetStaticRoute:151 - Failed to add static route", 5},
  };
  for (const auto& c : kCases) {
    for (const std::int32_t result : {1, 87, -2147217406}) {
      SCOPED_TRACE(std::string(c.method) + " " + std::to_string(result));
      machine_ = simulated::ExampleMachine();
      if (std::string(c.method) == "DELETE") machine_.persistentRoutes.emplace_back().metric = 9;
      const bool isRoute = c.value == 5;
      simulated::Fault fault;
      fault.call = isRoute ? "process.run" : "wmi.method";
      (isRoute ? fault.contains : fault.method) = c.method;
      fault.result = result;
      machine_.faults = {fault};
      const tool::Delivery delivery = Configure(c.text);
      if (result == 1 && !isRoute) {
        EXPECT_EQ(tool::ToJson(delivery)["log"].dump().find(c.record), std::string::npos)
            << "1 is done after a restart";
        continue;
      }
      EXPECT_EQ(Reply(delivery),
                kAnswered + std::string("Result=Failure Status-Module=Win32 Status-Code=") +
                    std::to_string(result) + " ");
      char hex[9];
      std::snprintf(hex, sizeof hex, "%08X", static_cast<unsigned>(result));
      EXPECT_TRUE(
          Logged(delivery, 0,
                 "internal/Configure:581 Configure::HandleMessage(): caught win32 error\n\t" +
                     std::string(c.record) + "\n\tValue=" + std::to_string(c.value) +
                     ", SystemError=0x" + hex))
          << delivery.log.back().text;
    }
  }
}

TEST_F(ConfigureTest, ErrorsOfOtherLayersAreReportedAsGeneral) {
  simulated::Fault fault;
  fault.call = "lsa.open";
  fault.error = 5;
  machine_.faults = {fault};
  const tool::Delivery delivery = Configure("[Networking]\nWorkgroup=True\nDomain=W\n");
  EXPECT_EQ(Reply(delivery),
            kAnswered + std::string("Result=Failure Status-Module=Win32 Status-Code=5 "));
  EXPECT_TRUE(Logged(delivery, 0,
                     "internal/Configure:607 Configure::HandleMessage(): caught general (win32) "
                     "error\n\tDomain:121 -  - IsDomainMember returned error \n\tValue=0, "
                     "SystemError=0x00000005"));
}

TEST_F(ConfigureTest, ErrorsBeforeTheWorkReachTheMessageEntry) {
  AddFault("wmi.connect", static_cast<platform::HResult>(0x800706BA));
  const tool::Delivery delivery = Configure("[Networking]\nComputerName=A\n");
  EXPECT_EQ(delivery.status, 0);
  EXPECT_TRUE(
      Logged(delivery, 0, "Toolbox-Main:103 Toolbox::DoMagic caught an unhandled exception"));
  EXPECT_TRUE(Logged(delivery, 0,
                     "Exception Details: common\\sys\\OsVersion:129 - Error thrown from WMI "
                     "initialization code. (error = 0) "));
}

TEST_F(ConfigureTest, ASecondRunOfTheSameFileChangesNothingMore) {
  const std::string text =
      "[Networking]\nWorkgroup=False\nDNSDomain=corp.example\nDSOrganizationalUnit=Sales/Europe\n"
      "DomainUsername=ENCIPHERED-USER\nDomainPassword=ENCIPHERED-PASSWORD\nComputerName=PC9\n"
      "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\nGateway=10.0.0.1\n"
      "SetDNSInfo=True\nDNS-Server-Count=1\nDNS-Server0=10.0.0.2\n"
      "DNS-SuffixSearchOrder=a.example\nStatic-Route-Count=1\n"
      "Route0=10.1.0.0 255.255.0.0 10.0.0.1 0 3\n";
  int runs = 0;
  std::string result = "Reboot";
  for (machine_.files = {{kFile, text}}; result == "Reboot" && runs < 5; ++runs) {
    result = Send().Result();
    if (result == "Reboot") machine_.Restart();
  }
  EXPECT_EQ(result, "Success");
  EXPECT_EQ(runs, 3) << "rename, then join and network, then nothing";
  EXPECT_EQ(machine_.computerName, "PC9");
  EXPECT_EQ(machine_.domains[0].computers.at(0).dn, "CN=PC9,OU=Europe,OU=Sales,DC=corp,DC=example");
  machine_.files.clear();
  EXPECT_EQ(Changes(Configure(text)), (Texts{"sleep", "file.move"}));
}

TEST_F(ConfigureTest, SettingsGoToTheAgentAsTheyStand) {
  const tool::Delivery delivery = Configure("[ConfigSettings]\na=1\n; note\nA=2\nb=\n");
  EXPECT_EQ(tool::ToJson(delivery)["sent"].dump(),
            R"([{"target":"SetAgentSettings","type":"Settings","name":"Included",)"
            R"("values":[["a","1"],["","; note"],["A","2"],["b",""]]}])");
}

}  // namespace
