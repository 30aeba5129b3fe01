// Every call to the machine can fail: each story is told once for every call that it makes, with
// that call failing, and then again on the healed machine.
#include <algorithm>
#include <cstdio>
#include <deque>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/IRegistry.h"
#include "platform/simulated/MachineFile.h"
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

/// A call that no story comes to: a fault there only counts.
constexpr std::uint32_t kNever = 0xFFFFFFFF;
constexpr char kFile[] = R"(C:\tarvo.cfg)";
constexpr char kFlagKey[] = R"(HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service)";

struct Story {
  const char* name;
  const char* message;
  /// What C:\tarvo.cfg holds; null for no file.
  const char* file;
  void (*prepare)(Machine& machine);
};

void JoinCorp(Machine& machine) {
  machine.membership = simulated::DomainMembership{"corp.example", "CORP", true};
  machine.domains[0].computers.push_back(
      {machine.computerName, "CN=TEMPLATE,CN=Computers,DC=corp,DC=example"});
}

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
    {"leave the domain", "Configure", "[Networking]\nWorkgroup=True\nDomain=W\n", JoinCorp},
    {"move to another OU", "Configure",
     "[Networking]\nWorkgroup=False\nDNSDomain=corp.example\nDSOrganizationalUnit=Sales/Europe\n"
     "DomainUsername=ENCIPHERED-USER\nDomainPassword=ENCIPHERED-PASSWORD\n",
     JoinCorp},
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
       JoinCorp(machine);
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

  /// The machine as it ended, the lines of its files in no order.
  static Json EndOf(Machine machine) {
    machine.faults.clear();
    for (simulated::File& file : machine.files) {
      std::vector<std::string> lines;
      std::istringstream text(file.text);
      for (std::string line; std::getline(text, line);) lines.push_back(line);
      std::sort(lines.begin(), lines.end());
      file.text.clear();
      for (const std::string& line : lines) file.text += line + "\n";
    }
    return simulated::ToJson(machine, /*hideSecrets=*/false);
  }
};

struct Code {
  const char* name;
  platform::Win32Error error;
};

class FaultSweepWith : public FaultSweep, public testing::WithParamInterface<Code> {};

/// A change that was refused, by a fault or by the machine.
bool Failed(const simulated::Change& change) {
  const simulated::Value& result = change["result"];
  return !change["error"].IsNull() || !change["hresult"].IsNull() ||
         (!result.IsNull() && result != simulated::Value(0));
}

/// What a failed call leaves with the library.
simulated::Usage StillInUseAfter(const std::string& call) {
  simulated::Usage usage;
  // A key that cannot be closed stays open; the policy does when there is no workgroup to be had.
  if (call == "registry.close") usage.registryKeys = 1;
  if (call == "lsa.workgroup") usage.policies = 1;
  return usage;
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

/// A reply that tells of a failure does so in one of the two specified ways.
void ExpectTold(const tool::Delivery& delivery) {
  std::set<std::string> keys;
  for (const tool::MessageValue& value : delivery.reply) keys.insert(value.key);
  if (delivery.status == 0) {
    EXPECT_FALSE(keys.contains("Result"));
  } else {
    EXPECT_EQ(delivery.Result(), "Failure");
    EXPECT_TRUE(keys.contains("Status-Module") && keys.contains("Status-Code"));
  }
  EXPECT_TRUE(std::any_of(delivery.log.begin(), delivery.log.end(),
                          [](const tool::LogLine& line) { return line.level == 0; }));
}

bool MayLast(const Story& story, const std::string& call, const std::string& pointer) {
  return std::any_of(std::begin(kLasting), std::end(kLasting), [&](const auto& row) {
    return std::string(row.story) == story.name && call.starts_with(row.call) &&
           pointer.starts_with(std::string("/") + row.field);
  });
}

TEST_P(FaultSweepWith, EveryCallCanFail) {
  int struckFaults = 0;
  for (const Story& story : kStories) {
    Machine counted = MachineOf(story);
    counted.FailCall(kNever, 0);
    const tool::Delivery wanted = Send(story, counted);
    Machine whole = MachineOf(story);
    TellToTheEnd(story, whole);
    const Json end = EndOf(whole);
    for (std::uint32_t nth = 1; nth <= counted.faults[0].matched; ++nth) {
      Machine machine = MachineOf(story);
      machine.FailCall(nth, GetParam().error);
      const tool::Delivery delivery = Send(story, machine);
      const std::string struck = machine.faults[0].struck;
      EXPECT_NE(struck, "") << nth;
      ++struckFaults;
      SCOPED_TRACE(std::string(story.name) + ", call " + std::to_string(nth) + ": " + struck);
      EXPECT_EQ(delivery.exception, "");
      EXPECT_TRUE(delivery.stillInUse == StillInUseAfter(struck));
      EXPECT_EQ(delivery.unreleasedMessages, 0U);
      if (delivery.status == wanted.status && delivery.Result() == wanted.Result()) {
        EXPECT_TRUE(kUntold.contains(struck));
      } else if (!MayLast(story, struck, "/files")) {
        ExpectTold(delivery);
        if (!MayLast(story, struck, "/adapters")) ExpectStepsOf(wanted.changes, delivery.changes);
      }

      machine.faults.clear();
      if (delivery.Result() == "Failure") Place(story, machine);
      TellToTheEnd(story, machine);
      for (const Json& difference : Json::diff(end, EndOf(machine))) {
        EXPECT_TRUE(MayLast(story, struck, difference["path"])) << difference;
      }
    }
  }
  EXPECT_GT(struckFaults, 40);
  std::printf("%d calls were made to fail (%s)\n", struckFaults, GetParam().name);
}

TEST_F(FaultSweep, ASuccessThatAnswersNothingHarmsNobody) {
  for (const Story& story : kStories) {
    Machine counted = MachineOf(story);
    counted.FailCall(kNever, 0);
    Send(story, counted);
    for (std::uint32_t nth = 1; nth <= counted.faults[0].matched; ++nth) {
      Machine machine = MachineOf(story);
      machine.FailCall(nth, 0);
      machine.faults[0].hresult = 0;
      const tool::Delivery delivery = Send(story, machine);
      const std::string struck = machine.faults[0].struck;
      SCOPED_TRACE(std::string(story.name) + ", call " + std::to_string(nth) + ": " + struck);
      EXPECT_EQ(delivery.exception, "");
      EXPECT_TRUE(delivery.stillInUse == StillInUseAfter(struck));
    }
  }
}

/// Counts the files of a machine when a message is posted.
class WatchingHost final : public IAgentHost {
 public:
  /// Has so many messages to give.
  WatchingHost(const Machine& machine, std::size_t most) : machine_(machine), most_(most) {}
  ~WatchingHost() = default;

  void Reserved0() override {}
  void SendTo(const char* /*target*/, IAgentMessage* /*message*/) override {}
  std::int32_t Post(IAgentMessage* /*message*/) override {
    filesAtPost_ = machine_.files.size();
    return 1;
  }
  void Log(std::uint32_t /*level*/, const char* /*format*/, ...) override {}
  IAgentMessage* CreateMessage() override {
    if (messages_.size() == most_) return nullptr;
    return &messages_.emplace_back("", "", tool::AgentMessage::GivenValues());
  }

  std::size_t FilesAtPost() const { return filesAtPost_; }
  std::deque<tool::AgentMessage>& Messages() { return messages_; }

 private:
  const Machine& machine_;
  const std::size_t most_;
  std::deque<tool::AgentMessage> messages_;
  std::size_t filesAtPost_ = 0;
};

TEST_F(FaultSweep, TheMessageOfAnImageIsPostedBeforeTheCopyIsMade) {
  WatchingHost host(machine_, 2);
  tool::AgentMessage message("Internal", "PrepForImage", {});
  EXPECT_EQ(GetToolboxAPI()->doMagic(&message, &host), 1);
  EXPECT_EQ(host.FilesAtPost(), 1U) << "the restore file alone";
  EXPECT_EQ(machine_.files.size(), 2U);
  ASSERT_EQ(host.Messages().size(), 2U) << "the settings travel in a message of their own";
  EXPECT_STREQ(host.Messages()[0].GetValue("Config"), "RestoreAfterCreate");
  EXPECT_STREQ(host.Messages()[0].GetValue("RebootAfterConfig"), "True");
}

TEST_F(FaultSweep, AHostWithoutMessagesIsOutOfMemory) {
  for (const std::size_t most : {0U, 1U}) {
    machine_ = simulated::ExampleMachine();
    WatchingHost host(machine_, most);
    tool::AgentMessage message("Internal", "PrepForImage", {});
    EXPECT_EQ(GetToolboxAPI()->doMagic(&message, &host), 0);
    EXPECT_EQ(machine_.files.size(), most);
    EXPECT_TRUE(machine_.registry.empty());
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

INSTANTIATE_TEST_SUITE_P(, FaultSweepWith,
                         testing::Values(Code{"refused", 5}, Code{"not_found", 2},
                                         Code{"out_of_memory", 14}),
                         [](const auto& code) { return std::string(code.param.name); });

}  // namespace
