// Every call to the machine can fail: each story is told once for every call that it makes, with
// that call failing, and then again on the healed machine.
#include <algorithm>
#include <deque>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/IRegistry.h"
#include "platform/simulated/MachineFile.h"
#include "tests/support/DeliveryRules.h"
#include "tests/support/JsonText.h"
#include "tests/support/MachineTest.h"
#include "tool/agent/AgentMessage.h"
#include "tool/agent/Delivery.h"
#include "tool/io/ToolError.h"
#include "tool/plan/QueuePlan.h"
#include "tool/roundtrip/ImageRestore.h"
#include "tool/roundtrip/RestoredSettings.h"
#include "toolbox/ToolboxApi.h"

namespace {

using simulated::Json;
using simulated::Machine;

constexpr char kFile[] = R"(C:\tarvo.cfg)";
constexpr char kFlagKey[] = R"(HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service)";

struct Story {
  const char* name;
  const char* message;
  /// What C:\tarvo.cfg holds; null for no file.
  const char* file;
  void (*prepare)(Machine& machine);
};

void Join(Machine& machine) { support::JoinCorp(machine); }

const Story kStories[] = {
    {"network", "Configure",
     "[TCP/IP]\nPCIBus=0\nPCIDevice=3\nPCIFunction=0\nDHCP=False\nAddress=10.0.0.5\n"
     "Netmask=255.0.0.0\nGateway=gateway.corp.example\nSetDNSInfo=True\nDNS-Server-Count=1\n"
     "DNS-Server0=10.0.0.2\nDNS-SuffixSearchOrder=a.example\nStatic-Route-Count=1\n"
     "Route0=10.1.0.0 255.255.0.0 10.0.0.1 0 3\n[NicEntry2]\nDHCP=True\n",
     [](Machine& machine) {
       machine.persistentRoutes = {{"10.9.0.0", "255.255.0.0", "10.0.0.1", 1}};
       machine.PutFile(R"(C:\Program Files\Orvanta\Agent\tarvo.cfg)", "of an earlier run");
     }},
    {"rename and join", "Configure",
     "[Networking]\nWorkgroup=False\nDNSDomain=corp.example\nDSOrganizationalUnit=Sales/Europe\n"
     "DomainUsername=ENCIPHERED-USER\nDomainPassword=ENCIPHERED-PASSWORD\nComputerName=PC9\n"
     "[ConfigSettings]\nServer=a\n",
     [](Machine&) {}},
    {"leave the domain", "Configure", "[Networking]\nWorkgroup=True\nDomain=W\n", Join},
    {"move to another OU", "Configure",
     "[Networking]\nWorkgroup=False\nDNSDomain=corp.example\nDSOrganizationalUnit=Sales/Europe\n"
     "DomainUsername=ENCIPHERED-USER\nDomainPassword=ENCIPHERED-PASSWORD\n",
     Join},
    {"first start of an image", "Configure", "[Global]\nConfig=Restore\n",
     [](Machine& machine) {
       machine.registry = {{kFlagKey, "NetworkDisabled", platform::kRegDWord, 1u}};
       machine.files = {{R"(C:\restore.cfg)", "[TCP/IP]\nDHCP=True\n"}};
       for (simulated::Service& service : machine.services) {
         service.start = platform::ServiceStart::kDisabled;
         service.running = false;
       }
     }},
    {"networking comes back", "Configure", "[TCP/IP]\nDHCP=True\n",
     [](Machine& machine) {
       support::JoinCorp(machine);
       machine.registry = {{kFlagKey, "NetworkDisabled", platform::kRegDWord, 1u}};
     }},
    {"preparation of an image", "PrepForImage", nullptr, [](Machine&) {}},
    {"update information", "UpdateInfo", nullptr, [](Machine&) {}},
};

/// What a story that was disturbed once, at one call, leaves different for ever: a top-level field
/// of the machine file.
const struct {
  const char* story;
  const char* call;
  const char* field;
} kLasting[] = {
    // A text that cannot be converted counts as 255.255.255.255.
    {"network", "host.parse", "adapters"},
    {"network", "host.parse", "persistent_routes"},
    // The section of an adapter whose place cannot be read takes the next free one.
    {"network", "wmi.get", "adapters"},
    {"networking comes back", "wmi.get", "adapters"},
    // A restore file that is not seen stays, and the agent's own file counts.
    {"first start of an image", "file.attributes", "files"},
    {"first start of an image", "file.move", "files"},
    {"first start of an image", "file.read", "files"},
    {"first start of an image", "wmi.get", "files"},
    // A move that fails leaves the restore file moved away already: nothing is left to be sent.
    {"first start of an image", "file.", "services"},
    // The mark of disabled networking is taken before the work, and only once.
    {"networking comes back", "", "membership"},
    {"networking comes back", "", "services"},
    // Without a system drive the files go to the root of the current one.
    {"preparation of an image", "wmi.get", "files"},
};

/// The calls whose failure may leave the reply as it is: what cannot be read counts as absent, what
/// cannot be recorded or re-enabled is left out, and closing cannot fail.
const std::set<std::string> kUntold = {
    "library.load",  "library.call",    "library.find",    "host.parse",
    "wmi.leave",     "wmi.get",         "sleep",           "service.start_type",
    "service.close", "service.open",    "service.start",   "service.open_manager",
    "file.write",    "file.attributes", "file.copy",       "file.read",
    "process.close", "process.inherit", "registry.query",  "registry.delete",
    "registry.open", "registry.close",  "lsa.close",       "lsa.primary",
    "lsa.dns",       "lsa.workgroup",   "directory.leave", "directory.name"};

class FaultSweep : public support::MachineTest {
 protected:
  static void Place(const Story& story, Machine& machine) {
    if (story.file != nullptr) machine.PutFile(kFile, story.file);
  }

  static Machine MachineOf(const Story& story) {
    support::StartFreshProcess();
    Machine machine = simulated::ExampleMachine();
    story.prepare(machine);
    Place(story, machine);
    return machine;
  }

  static tool::Delivery Send(const Story& story, Machine& machine) {
    tool::Request request{"Internal", story.message, {}};
    if (story.file != nullptr) request.values = {{"Filename", kFile}};
    return tool::Deliver(std::move(request), machine);
  }

  /// Sends the message until it has done its work: again after a restart, and for the file that a
  /// restore file has replaced.
  static void TellToTheEnd(const Story& story, Machine& machine) {
    for (int tellings = 0; tellings < 5; ++tellings) {
      const tool::Delivery delivery = Send(story, machine);
      const bool handedOver = story.file != nullptr && !delivery.posted.empty();
      if (!handedOver && delivery.Result() != "Reboot") return;
      if (!handedOver) machine.Restart();
    }
    ADD_FAILURE() << "the story has no end";
  }

  /// Tells the story once for each of its calls, with this error of that call, or with 0 for a
  /// success that answers nothing; how many calls there were.
  template <class Check>
  static int Disturb(const Story& story, platform::Win32Error error, Check check) {
    for (int nth = 1;; ++nth) {
      Machine machine = MachineOf(story);
      machine.FailCall(static_cast<std::uint32_t>(nth), error);
      if (error == 0) machine.faults[0].hresult = 0;
      const tool::Delivery delivery = Send(story, machine);
      const std::string struck = machine.faults[0].struck;
      if (struck.empty()) return nth - 1;
      SCOPED_TRACE(std::string(story.name) + ", call " + std::to_string(nth) + ": " + struck);
      check(machine, delivery, struck);
    }
  }

  /// The machine as it ended, the lines of its files in no order.
  static Json EndOf(Machine machine) {
    machine.faults.clear();
    for (simulated::File& file : machine.files) {
      std::multiset<std::string> lines;
      std::istringstream text(file.text);
      for (std::string line; std::getline(text, line);) lines.insert(line);
      file.text.clear();
      for (const std::string& line : lines) file.text += line + "\n";
    }
    return simulated::ToJson(machine, /*hideSecrets=*/false);
  }
};

/// A change that was refused, by a fault or by the machine.
bool Failed(const simulated::Change& change) {
  const simulated::Value& result = change["result"];
  return !change["error"].IsNull() || !change["hresult"].IsNull() ||
         (!result.IsNull() && result != simulated::Value(0));
}

/// Every change that was made is one that the undisturbed story makes as well, puts the file away,
/// or puts the mark of disabled networking back.
void ExpectStepsOf(const std::vector<simulated::Change>& wanted,
                   const std::vector<simulated::Change>& changes) {
  std::multiset<std::string> left;
  for (const simulated::Change& change : wanted) left.insert(support::JsonText(change));
  for (const simulated::Change& change : changes) {
    if (Failed(change) || change.call == "file.move" || change.call == "registry.set") continue;
    const auto found = left.find(support::JsonText(change));
    EXPECT_NE(found, left.end()) << support::JsonText(change);
    if (found != left.end()) left.erase(found);
  }
}

bool MayLast(const Story& story, const std::string& call, const std::string& pointer) {
  return std::any_of(std::begin(kLasting), std::end(kLasting), [&](const auto& row) {
    return std::string(row.story) == story.name && call.starts_with(row.call) &&
           pointer.starts_with(std::string("/") + row.field);
  });
}

class FaultSweepWith : public FaultSweep,
                       public testing::WithParamInterface<platform::Win32Error> {};

TEST_P(FaultSweepWith, EveryCallCanFail) {
  int struckFaults = 0;
  for (const Story& story : kStories) {
    Machine undisturbed = MachineOf(story);
    const tool::Delivery wanted = Send(story, undisturbed);
    Machine whole = MachineOf(story);
    TellToTheEnd(story, whole);
    const Json end = EndOf(whole);
    struckFaults += Disturb(
        story, GetParam(), [&](Machine& machine, const auto& delivery, const std::string& struck) {
          EXPECT_EQ(support::BrokenRule(delivery, machine), "");
          if (delivery.status == wanted.status && delivery.Result() == wanted.Result()) {
            EXPECT_TRUE(kUntold.contains(struck));
          } else if (!MayLast(story, struck, "/files")) {
            EXPECT_TRUE(delivery.status == 0 || delivery.Result() == "Failure");
            if (!MayLast(story, struck, "/adapters"))
              ExpectStepsOf(wanted.changes, delivery.changes);
          }
          machine.faults.clear();
          if (delivery.Result() == "Failure") Place(story, machine);
          TellToTheEnd(story, machine);
          for (const Json& difference : Json::diff(end, EndOf(machine))) {
            EXPECT_TRUE(MayLast(story, struck, difference["path"])) << difference;
          }
        });
  }
  EXPECT_GT(struckFaults, 40);
}

TEST_F(FaultSweep, ASuccessThatAnswersNothingHarmsNobody) {
  for (const Story& story : kStories) {
    Disturb(story, 0, [](const Machine& machine, const auto& delivery, const std::string&) {
      EXPECT_EQ(support::BrokenRule(delivery, machine), "");
    });
  }
}

/// Has so many messages to give, and counts the files of a machine when one is posted.
struct WatchingHost final : IAgentHost {
  WatchingHost(const Machine& watched, std::size_t limit) : machine(watched), most(limit) {}
  ~WatchingHost() = default;
  void Reserved0() override {}
  void SendTo(const char* /*target*/, IAgentMessage* /*message*/) override {}
  std::int32_t Post(IAgentMessage* /*message*/) override {
    filesAtPost = machine.files.size();
    return 1;
  }
  void Log(std::uint32_t /*level*/, const char* /*format*/, ...) override {}
  IAgentMessage* CreateMessage() override {
    if (messages.size() == most) return nullptr;
    return &messages.emplace_back("", "", tool::AgentMessage::GivenValues());
  }

  const Machine& machine;
  const std::size_t most;
  std::deque<tool::AgentMessage> messages;
  std::size_t filesAtPost = 0;
};

TEST_F(FaultSweep, AnImageIsPostedBeforeTheCopyAndNeedsTwoMessages) {
  for (const std::size_t most : {0U, 1U, 2U}) {
    machine_ = simulated::ExampleMachine();
    WatchingHost host(machine_, most);
    tool::AgentMessage message("Internal", "PrepForImage", {});
    EXPECT_EQ(GetToolboxAPI()->doMagic(&message, &host), most == 2 ? 1 : 0);
    EXPECT_EQ(machine_.files.size(), most);
    EXPECT_EQ(machine_.registry.empty(), most != 2);
    EXPECT_EQ(host.filesAtPost, most == 2 ? 1U : 0U) << "the restore file alone";
    if (most != 2) continue;
    // The settings travel in a message of their own.
    EXPECT_STREQ(host.messages[0].GetValue("Config"), "RestoreAfterCreate");
    EXPECT_STREQ(host.messages[0].GetValue("RebootAfterConfig"), "True");
  }
}

TEST_F(FaultSweep, WhateverFailsInARoundTripTheReasonIsFound) {
  for (std::uint32_t nth = 1;; ++nth) {
    support::StartFreshProcess();
    Machine machine = simulated::ExampleMachine();
    machine.adapters.front().gateways.push_back("10.0.0.2");
    machine.persistentRoutes.emplace_back();
    machine.FailCall(nth, 5);
    const tool::ImageRestore image = tool::RestoreFromImage(machine);
    for (const tool::RestoredSetting& setting : tool::RestoredSettings(image)) {
      EXPECT_EQ(setting.reason.empty(), setting.IsAsBefore()) << nth << " " << setting.setting;
    }
    if (image.after.faults.front().matched < nth) break;
  }
}

TEST_F(FaultSweep, WhateverFailsThereIsAPlanOrAReason) {
  std::set<std::string> outcomes;
  const auto plan = [&](const Story& story, std::uint32_t nth) {
    SCOPED_TRACE(std::string(story.name) + ", call " + std::to_string(nth));
    Machine machine = MachineOf(story);
    machine.FailCall(nth, 5);
    try {
      const tool::QueuePlan made = tool::MakePlan(machine, kFile, kFile, tool::Comparing::kInTurn);
      EXPECT_EQ(made.error.has_value(), made.commands.empty());
      return made.error ? made.error->className : std::string("plan");
    } catch (const tool::ToolError&) {
      return std::string("unusable");
    }
  };
  for (const Story& story : {kStories[0], kStories[1]}) {
    for (std::uint32_t nth = 1; nth <= 400; ++nth) outcomes.insert(plan(story, nth));
    EXPECT_EQ(plan(story, 400), "plan") << "the machine is called less often";
  }
  for (const char* outcome : {"plan", "unusable", "sys::CWmiError", "sys::OsVersionError"}) {
    EXPECT_TRUE(outcomes.contains(outcome)) << outcome;
  }
}

// Refused, not found, out of memory.
INSTANTIATE_TEST_SUITE_P(, FaultSweepWith, testing::Values(5U, 2U, 14U));

}  // namespace
