// What holds for any file on any machine, tried on generated ones. Every case comes from its seed
// alone, which a failure names.
#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "common/err/GeneralError.h"
#include "common/logging/NullLogSink.h"
#include "handlers/internal/ConfigFile.h"
#include "handlers/internal/IEventListener.h"
#include "handlers/internal/SectionTranslator.h"
#include "platform/IRegistry.h"
#include "platform/simulated/MachineFile.h"
#include "platform/simulated/Simulation.h"
#include "tests/support/DeliveryRules.h"
#include "tests/support/JsonText.h"
#include "tests/support/MachineTest.h"
#include "tests/support/QueueRules.h"
#include "tool/agent/AgentHost.h"
#include "tool/agent/Conversation.h"
#include "tool/check/DesiredState.h"
#include "tool/check/Fix.h"
#include "tool/plan/PlanOutput.h"
#include "tool/plan/QueuePlan.h"

namespace {

using simulated::Machine;

constexpr std::uint32_t kCases = 300;
constexpr char kFile[] = R"(C:\tarvo.cfg)";

class Generator {
 public:
  explicit Generator(std::uint32_t seed) : random_(seed) {}

  // The distributions of the standard library differ from one to the next.
  std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_()) % limit; }
  bool Percent(std::uint32_t chance) { return Below(100) < chance; }
  std::string OneOf(std::initializer_list<const char*> texts) {
    return texts.begin()[Below(static_cast<std::uint32_t>(texts.size()))];
  }
  std::string Address() { return "10." + std::to_string(Below(3)) + ".0." + Number(9); }
  std::string Number(std::uint32_t limit) { return std::to_string(1 + Below(limit)); }

 private:
  std::mt19937 random_;
};

// ---- A machine as it could stand on a desk ------------------------------------------------------

simulated::Adapter PciAdapter(Generator& any, std::uint32_t position) {
  const std::string number = std::to_string(position);
  simulated::Adapter adapter;
  adapter.index = 2 + 3 * position;
  adapter.settingId += number;
  adapter.pnpDeviceId += number;
  adapter.locationInformation = "PCI bus 1, device " + number + ", function 0";
  adapter.macAddress = "08:00:27:00:00:0" + number;
  adapter.dhcpEnabled = any.Percent(50);
  adapter.ipAddresses = {any.Address()};
  adapter.subnetMasks = {"255.0.0.0"};
  if (any.Percent(50)) adapter.gateways = {"10.0.0.1"};
  if (any.Percent(50)) adapter.dnsServers = {any.Address()};
  adapter.staticDns = !adapter.dnsServers.empty();
  if (any.Percent(30)) adapter.dnsSuffixes = {"a.example"};
  return adapter;
}

Machine AnyMachine(Generator& any) {
  Machine machine = simulated::ExampleMachine();
  const simulated::Adapter software = machine.adapters.back();
  machine.adapters.clear();
  const std::uint32_t adapters = any.Below(4);
  for (std::uint32_t i = 0; i < adapters; ++i) machine.adapters.push_back(PciAdapter(any, i));
  if (any.Percent(50)) machine.adapters.insert(machine.adapters.begin(), software);
  for (std::uint32_t i = any.Below(3); i > 0; --i) {
    machine.persistentRoutes.push_back({"10." + std::to_string(i) + ".0.0", "255.255.0.0",
                                        any.Address(), static_cast<std::int32_t>(any.Below(4))});
  }
  if (any.Percent(30)) {
    machine.persistentRoutes.push_back({"0.0.0.0", "0.0.0.0", "10.0.0.1", 1});
  }
  if (any.Percent(40)) {
    machine.membership = simulated::DomainMembership{"corp.example", "CORP", any.Percent(80)};
    machine.domains[0].computers = {
        {machine.computerName, "CN=TEMPLATE," + machine.domains[0].ous[any.Below(2)]}};
  } else if (any.Percent(30)) {
    // A member whose networking comes back leaves its domain first, whatever the file wants.
    machine.registry.emplace_back();
  }
  if (any.Percent(20)) {
    machine.decrypt.reset();
    machine.decryptIsNone = true;
  }
  if (any.Percent(30)) machine.PutFile(machine.agentFolder + R"(\tarvo.cfg)", "[Old]\n");
  return machine;
}

// ---- A file that asks for one state of it -------------------------------------------------------

std::string AnyIdentity(Generator& any) {
  std::string text = "[Networking]\n";
  if (any.Percent(70))
    text += "DomainUsername=ENCIPHERED-USER\nDomainPassword=ENCIPHERED-PASSWORD\n";
  if (any.Percent(60)) text += "ComputerName=" + any.OneOf({"PC9", "template", "PC10"}) + "\n";
  if (any.Percent(70)) text += "Workgroup=" + any.OneOf({"True", "False", "no"}) + "\n";
  if (any.Percent(60)) text += "Domain=" + any.OneOf({"W", "CORP", "corp.example"}) + "\n";
  if (any.Percent(40)) text += "DNSDomain=" + any.OneOf({"corp.example", "Corp.Example"}) + "\n";
  if (any.Percent(50)) {
    text +=
        "DSOrganizationalUnit=" + any.OneOf({"Sales", "Sales/Europe", "OU=Europe,OU=Sales"}) + "\n";
  }
  if (any.Percent(30)) text += "JoinDomainBeforeNameChange=true\n";
  return text;
}

std::string AnyAddressing(Generator& any) {
  if (any.Percent(20)) return "";
  if (any.Percent(40)) return "DHCP=" + any.OneOf({"True", "yes"}) + "\n";
  std::string text = "DHCP=False\nAddress=" + any.Address() + "," + any.Address() +
                     "\nNetmask=255.0.0.0 255.0.0.0\n";
  if (any.Percent(70)) text += "Gateway=" + any.OneOf({"10.0.0.1", "10.0.0.2;10.0.0.1"}) + "\n";
  return text;
}

std::string AnyDns(Generator& any, const std::string& suffixes) {
  if (any.Percent(30)) return "DNS-Use-DHCP=True\n";
  std::string text = "SetDNSInfo=" + any.OneOf({"True", "False"}) + "\nDNS-Server-Count=2\n";
  for (const char* key : {"DNS-Server0=", "DNS-Server1="}) {
    if (any.Percent(70)) text += key + any.Address() + "\n";
  }
  return text + "DNS-SuffixSearchOrder=" + suffixes + "\n";
}

std::string AnyRoutes(Generator& any) {
  std::string text = "Static-Route-Count=" + std::to_string(any.Below(3)) + "\n";
  for (std::uint32_t i = 0; i < 2; ++i) {
    const std::string number = std::to_string(i);
    text += "Route" + number + "=10." + number + ".0.0\n 255.255.0.0 " + any.Address() + " 0 " +
            any.Number(3) + "\n";
  }
  return text;
}

/// Each section means another adapter, all name theirs in the same way, and what belongs to the
/// whole machine stands there once or alike: else the sections undo each other's work.
std::string AnyAdapters(Generator& any, const Machine& machine) {
  const std::uint32_t binding = any.Below(3);
  const std::string suffixes = any.OneOf({"", "a.example", "b.example a.example"});
  std::string text;
  for (const simulated::Adapter& adapter : machine.adapters) {
    const bool isPci = adapter.pnpDeviceId.starts_with("PCI");
    if (!isPci || any.Percent(20)) continue;
    const bool isFirst = text.empty();
    text += isFirst ? "[TCP/IP]\n" : "[NicEntry" + std::to_string(adapter.index) + "]\n";
    if (binding == 0) text += "MACAddress=" + *adapter.macAddress + "\n";
    if (binding == 1) {
      text +=
          "PCIBus=1\nPCIDevice=" + std::to_string((adapter.index - 2) / 3) + "\nPCIFunction=0\n";
    }
    text += AnyAddressing(any) + AnyDns(any, suffixes);
    if (isFirst && any.Percent(60)) text += AnyRoutes(any);
  }
  return text;
}

std::string AnyFile(Generator& any, const Machine& machine) {
  std::string text = "; generated\n";
  if (any.Percent(20)) text += "[Global]\nScheduleId=7\n";
  std::string identity = any.Percent(70) ? AnyIdentity(any) : "";
  std::string adapters = AnyAdapters(any, machine);
  if (any.Percent(50)) identity.swap(adapters);
  return text + identity + adapters;
}

/// One file, in its place on one machine.
struct Case {
  explicit Case(std::uint32_t seed) : any(seed), machine(AnyMachine(any)) {
    file = AnyFile(any, machine);
    machine.PutFile(kFile, file);
  }
  Generator any;
  Machine machine;
  std::string file;
};

/// Checks every case in a fresh process; `holds` tells whether it came to the check.
template <class Property>
void ForEachCase(Property holds) {
  std::uint32_t checked = 0;
  for (std::uint32_t seed = 1; seed <= kCases && !testing::Test::HasFatalFailure(); ++seed) {
    Case generated(seed);
    SCOPED_TRACE("seed " + std::to_string(seed) + "\n" + generated.file +
                 simulated::PrintMachine(generated.machine));
    support::StartFreshProcess();
    holds(generated, &checked);
  }
  EXPECT_GT(checked, kCases / 2) << "most files are to ask for something that can be done";
}

tool::Request Configure() { return {"Internal", "Configure", {{"Filename", kFile}}}; }

// ---- The properties -----------------------------------------------------------------------------

/// What a run does whether it is needed or not: DNS is handed back to DHCP, pauses are made, and
/// the file is put away.
bool IsAlwaysDone(const simulated::Change& change) {
  if (change.call == "wmi.method") {
    return change["method"] == "SetDNSServerSearchOrder" &&
           change["arguments"]["DNSServerSearchOrder"].IsNull();
  }
  return change.call == "sleep" || change.call == "file.move" || change.call == "file.delete";
}

TEST(Property, ASecondRunFindsNothingToDo) {
  ForEachCase([](Case& generated, std::uint32_t* settled) {
    Machine& machine = generated.machine;
    const tool::Conversation first =
        tool::Converse(Configure(), {/*deliverPosted=*/true, /*restarts=*/5}, machine);
    for (const tool::Delivery& delivery : first.deliveries) {
      ASSERT_EQ(support::BrokenRule(delivery, machine), "");
    }
    ASSERT_NE(first.deliveries.back().Result(), "Reboot") << "there is no end of restarts";
    if (!first.Succeeded()) return;
    ++*settled;
    machine.PutFile(kFile, generated.file);
    const tool::Delivery second = tool::Deliver(Configure(), machine);
    ASSERT_EQ(second.Result(), "Success");
    for (const simulated::Change& change : second.changes) {
      ASSERT_TRUE(IsAlwaysDone(change)) << support::JsonText(change);
    }
  });
}

constexpr char kFails[] = "the run fails";

/// The commands that a plan runs before the first restart, as the log of a run tells them, and
/// whether the run fails.
std::vector<std::string> PlannedRun(const simulated::Json& plan) {
  std::vector<std::string> lines;
  bool fails = !plan["error"].is_null();
  const auto add = [&](const char* runner, const simulated::Json& command) {
    if (!command["reached"]) return;
    fails |= !command["will_fail"].is_null();
    if (command["class"] == "config::command::Reboot") return;
    lines.push_back(std::string(runner) + "(): about to execute class " +
                    command["class"].get<std::string>() + " (" +
                    command["description"].get<std::string>() + ")");
  };
  const std::size_t runsNow = plan["runs_now"];
  for (std::size_t i = 0; i < std::min(runsNow + 1, plan["commands"].size()); ++i) {
    const simulated::Json& command = plan["commands"][i];
    add("ConfigBuilder::RunConfig", command);
    for (const simulated::Json& inner : command.value("commands", simulated::Json::array())) {
      if (inner["needed"]) add("ConfigureNic::Execute", inner);
    }
  }
  if (fails) lines.emplace_back(kFails);
  return lines;
}

/// What was run, in the same way, as a simulation tells it.
std::vector<std::string> ActualRun(const simulated::Json& simulation) {
  std::vector<std::string> lines;
  for (const simulated::Json& line : simulation["log"]) {
    const std::string text = line["text"];
    if (text.find("about to execute") != std::string::npos) lines.push_back(text);
  }
  if (simulation["reply"].value("Result", "") == "Failure") lines.emplace_back(kFails);
  return lines;
}

TEST(Property, ThePlanIsWhatTheRunDoes) {
  ForEachCase([](Case& generated, std::uint32_t* finished) {
    Machine& machine = generated.machine;
    const tool::QueuePlan plan = tool::MakePlan(machine, kFile, kFile, tool::Comparing::kInTurn);
    const std::vector<std::string> planned = PlannedRun(tool::ToJson(plan, /*verbose=*/false));
    support::StartFreshProcess();
    const tool::Delivery delivery = tool::Deliver(Configure(), machine);
    if (delivery.Result() != "Failure") ++*finished;
    ASSERT_EQ(planned, ActualRun(tool::ToJson(delivery)));
  });
}

/// The events that `check` takes a file to ask for, but for those of the account and the adapters'
/// places.
std::multiset<std::string> DesiredEvents(const tool::check::DesiredState& desired) {
  using tool::check::DesiredAdapter;
  std::multiset<std::string> events;
  const auto add = [&](const char* kind, std::string_view value) {
    events.insert(kind + (" " + std::string(value)));
  };
  const tool::check::Identity& identity = desired.identity;
  const auto* const name = identity.membershipName;
  if (identity.IsDomain()) add("DOMAIN", name->FirstLine());
  if (identity.IsWorkgroup()) add("WORKGROUP", name != nullptr ? name->FirstLine() : "WORKGROUP");
  if (identity.renames) add("COMPUTER_NAME", identity.Find(base::Key::kComputerName)->FirstLine());
  for (const DesiredAdapter& adapter : desired.adapters) {
    add("NIC", "");
    if (adapter.addressing == DesiredAdapter::Addressing::kDhcp) add("DHCP", "");
    if (adapter.dnsFromDhcp) add("DNS_DHCP", "");
    if (adapter.IsStatic()) {
      add("STATIC", "");
      for (const auto& address : adapter.addresses) add("IP_ADDRESS", address.item.text);
      for (const auto& mask : adapter.masks) add("SUBNET_MASK", mask.item.text);
      for (const auto& gateway : adapter.gateways) add("GATEWAY", gateway.item.text);
    }
    for (const auto* server : adapter.servers) {
      if (!adapter.setsDns) break;
      for (const auto& item : desired.document.Items(*server)) add("DNS_SERVER", item.text);
    }
    for (const auto& route : adapter.routes) {
      add("STATIC_ROUTE", "");
      add("IP_ADDRESS", route.destination.item.text);
      add("SUBNET_MASK", route.mask.item.text);
      add("ROUTE_GATEWAY", route.gateway.item.text);
      add("ROUTE_METRIC", std::to_string(route.metric));
    }
  }
  return events;
}

TEST(Property, CheckTakesAFileAsTheTranslatorDoes) {
  const std::set<std::string> kOthers{
      "DOMAIN_USER",     "DOMAIN_PASSWORD",    "DOMAIN_OU",      "IP_INTERFACE",
      "DNS_SUFFIX",      "NIC_PCI_BUS",        "NIC_PCI_DEVICE", "NIC_PCI_FUNCTION",
      "NIC_MAC_ADDRESS", "ROUTE_FOURTH_FIELD", "NOOP",           "ENABLE_NETWORKING"};
  ForEachCase([&](Case& generated, std::uint32_t* planned) {
    const tool::QueuePlan plan =
        tool::MakePlan(generated.machine, kFile, kFile, tool::Comparing::kInTurn);
    if (plan.error) return;
    ++*planned;
    std::multiset<std::string> sent;
    for (const tool::PlannedEvent& event : plan.events) {
      if (kOthers.contains(event.kind)) continue;
      sent.insert(event.kind + " " + (event.opens ? "" : event.value));
    }
    tool::check::Document document(generated.file);
    ASSERT_EQ(DesiredEvents(tool::check::ReadDesiredState(document)), sent);
  });
}

TEST(Property, TheAnalysisLosesNothingAndKeepsTheOrder) {
  ForEachCase([](Case& generated, std::uint32_t* analysed) {
    simulated::SimulatedPlatform platform(generated.machine);
    const platform::ScopedPlatform scope(platform);
    ConfigFile file(/*caseSensitive=*/false);
    ASSERT_EQ(file.Parse(generated.file, /*merge=*/false), ConfigFile::kSuccess);
    logging::NullLogSink log;
    tool::AgentHost host;
    config::ConfigBuilder builder(log);
    NullEventListener listener;
    SectionTranslator(file, builder, log, host, listener).TranslateAll();
    const support::QueueRules rules(builder);
    builder.Analyze();
    const bool joinFirst = file.FindValue("Networking", "JoinDomainBeforeNameChange").has_value();
    ASSERT_EQ(rules.Broken(builder, joinFirst), "");
    if (!builder.Commands().empty()) ++*analysed;
  });
}

// ---- Fixing -------------------------------------------------------------------------------------

/// The line with a fault such as people make.
std::string Faulty(Generator& any, std::string line) {
  const std::size_t equals = line.find('=');
  const std::size_t middle = std::min(equals, line.size()) / 2;
  switch (any.Below(8)) {
    case 0:
      if (middle > 0) std::swap(line[middle], line[middle - 1]);
      return line;
    case 1:
      return line + any.OneOf({" ; k\xF6ln", " # one", ";"});
    case 2:
      return equals < line.size() ? line.insert(equals + 1, "\"") + "\"" : line;
    case 3:
      return line + "\n" + line;
    case 4:
      return line.substr(line.starts_with('[') ? 1 : 0);
    case 5:
      return line.substr(0, line.size() - 1);
    case 6:
      return equals < line.size() ? line.replace(equals, 1, any.OneOf({" ", ": "})) : line;
    default:
      return "  " + base::Folded(line);
  }
}

std::string FaultyFile(Generator& any, const std::string& file) {
  std::string text = any.Percent(10) ? "\xEF\xBB\xBF" : "";
  const std::string end = any.Percent(50) ? "\r\n" : "\n";
  for (const std::string& line : base::Split(file, "\n")) {
    for (const std::string& part : base::Split(any.Percent(15) ? Faulty(any, line) : line, "\n")) {
      text += part + end;
    }
  }
  return any.Percent(30) ? text.substr(0, text.size() - end.size()) : text;
}

TEST(Property, AFixLeavesFewerFindingsAndTheRestOfTheFile) {
  namespace check = tool::check;
  ForEachCase([](Case& generated, std::uint32_t* fixed) {
    const std::string text = FaultyFile(generated.any, generated.file);
    Machine* const machine = generated.any.Percent(50) ? &generated.machine : nullptr;
    SCOPED_TRACE(text);
    const check::FileReport before = check::CheckText("pc.cfg", text, machine);
    std::set<std::string> claimed;
    const auto draft = check::FixText(before, machine, claimed);
    if (before.text.empty()) return;
    const auto codes = [](check::FileReport report) {
      check::LeaveOutAllowed(report);
      std::multiset<check::Code> all;
      for (const check::Finding& finding : report.findings) all.insert(finding.code);
      return all;
    };
    const check::FileReport after = check::CheckText("pc.cfg", draft.text, machine);
    const auto left = codes(after);
    const auto had = codes(before);
    ASSERT_TRUE(std::includes(had.begin(), had.end(), left.begin(), left.end())) << draft.text;
    ASSERT_EQ(left.size() == had.size(), draft.text == text);
    ASSERT_EQ(check::FixText(after, machine, claimed).text, after.text) << "the second time";
    const std::string diff = check::UnifiedDiff(before, draft);
    ASSERT_EQ(diff.empty(), draft.text == text);
    ASSERT_EQ(diff.find("ENCIPHERED"), std::string::npos) << diff;
    const auto count = [](const std::string& file, char c) {
      return std::count(file.begin(), file.end(), c);
    };
    ASSERT_EQ(count(draft.text, '\xF6'), count(text, '\xF6')) << "comments are kept";
    const auto returns = count(draft.text, '\r');
    ASSERT_EQ(returns, count(text, '\r') != 0 ? count(draft.text, '\n') : 0);
    // Every line that is not new is the one of the file, and they are in order.
    const std::vector<std::string> lines = base::Split(text, "\n");
    std::size_t last = 0;
    std::istringstream stream(draft.text);
    for (const std::size_t origin : draft.origins) {
      std::string line;
      std::getline(stream, line);
      if (origin == 0) continue;
      ASSERT_GT(origin, last);
      ASSERT_EQ(lines.at(origin - 1), line);
      last = origin;
    }
    if (draft.text != text) ++*fixed;
  });
}

}  // namespace
