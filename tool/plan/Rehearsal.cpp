#include "tool/plan/Rehearsal.h"

#include <algorithm>
#include <set>
#include <string>

#include "common/config/command/ConfigureNic.h"
#include "common/config/command/NicCommand.h"
#include "common/sys/Domain.h"
#include "platform/simulated/Simulation.h"
#include "tool/check/FileCheck.h"
#include "tool/explain/ErrorNumbers.h"
#include "tool/io/CodePage.h"
#include "tool/machine/MachineDifference.h"

namespace tool {
namespace {

using config::command::IConfigureCommand;

bool IsRefused(const simulated::Change& change) {
  const simulated::Value& result = change["result"];
  const bool isDone = result.IsNull() || result == simulated::Value(0) ||
                      (change.call == "wmi.method" && result == simulated::Value(1));
  return !isDone || !change["hresult"].IsNull() || !change["error"].IsNull();
}

/// The answer to the last call: "result 1326", "error 5", "0x80041002".
std::string AnswerText(const std::string& call, std::uint32_t number) {
  if (number >= 0x80000000U) return simulated::HResultText(static_cast<platform::HResult>(number));
  const char* const kind = call == "wmi.method"    ? "result "
                           : call == "process.run" ? "exit code "
                                                   : "error ";
  return kind + std::to_string(number);
}

}  // namespace

Rehearsal::~Rehearsal() { sys::Domain::Instance().ForgetCredentials(); }

Course Rehearsal::Do(const IConfigureCommand& command, const std::function<bool()>& step) {
  Course course{goesOn_, {}, {}};
  for (simulated::Fault& fault : machine_.faults) fault.struck.clear();
  const std::size_t start = machine_.journal.size();
  bool mayChange = true;
  try {
    mayChange = step();
  } catch (const err::CGeneralError& error) {
    if (goesOn_) Judge(command, error, start, course);
  }
  for (std::size_t i = start; course.reached && i < machine_.journal.size(); ++i) {
    const simulated::Change& change = machine_.journal[i];
    if (!change["unknown"].IsNull()) course.unknown = change["unknown"].Text();
    if (change.call == "sleep") {
      pauseMs_ += static_cast<std::uint64_t>(std::get<std::int64_t>(change["milliseconds"]));
    } else if (mayChange && !IsRefused(change)) {
      ++changes_;
    }
  }
  return course;
}

void Rehearsal::Judge(const IConfigureCommand& command, const err::CGeneralError& error,
                      std::size_t start, Course& course) {
  const bool isFault = std::any_of(machine_.faults.begin(), machine_.faults.end(),
                                   [](const auto& fault) { return !fault.struck.empty(); });
  goesOn_ = false;
  Failure& failure = course.willFail.emplace();
  failure.meaning = error.message;
  failure.isOfFile = !isFault;
  if (dynamic_cast<const config::command::ConfigureNic*>(&command) != nullptr) {
    failure.answer = "no adapter is left";
    failure.meaning = "the machine has none for the section";
    return;
  }
  const std::string call = machine_.journal.size() > start ? machine_.journal.back().call : "";
  failure.answer =
      error.SystemError != 0 ? AnswerText(call, error.SystemError) : "the library refuses";
  if (call == "process.run") return;  // an exit code is the program's own
  const bool isOfAdapter = dynamic_cast<const config::command::NicCommand*>(&command) != nullptr;
  if (const auto* reading = explain::FindAnswer(error.SystemError, isOfAdapter)) {
    failure.meaning = reading->meaning;
  }
}

Course Rehearsal::Restart() {
  Course course{goesOn_, {}, {}};
  if (goesOn_ && restartForbidden_) {
    goesOn_ = false;
    course.willFail = {"no restart", "RebootAfterConfig=False forbids it",
                       /*isOfFile=*/true};
  } else if (goesOn_) {
    machine_.Restart();
    ++restarts_;
  }
  return course;
}

void Rehearsal::Conclude(QueuePlan& plan) const {
  plan.changes = changes_;
  plan.restarts = restarts_;
  plan.pauseMs = pauseMs_;
  plan.outcome = !goesOn_        ? PlanOutcome::kFailure
                 : restarts_ > 0 ? PlanOutcome::kRestart
                 : changes_ > 0  ? PlanOutcome::kSuccess
                                 : PlanOutcome::kNothing;
}

void NameCause(simulated::Machine machine, QueuePlan& plan) {
  using check::Code;
  const PlannedCommand* const failing = plan.Failing();
  const bool isOfFile = failing != nullptr && failing->course.willFail->isOfFile;
  if (!isOfFile && !plan.error) return;
  std::set<std::size_t> lines;
  std::set<Code> codes;
  if (failing != nullptr) {
    for (const std::size_t event : failing->events) lines.insert(plan.events[event].line);
    if (failing->Is("Reboot")) codes = {Code::kSuppressedRestart, Code::kStrandedJoin};
  } else if (plan.error->event) {
    lines.insert(plan.events[*plan.error->event].line);
  } else {
    codes = {Code::kSilentMachine, Code::kMachineIpv6};
  }
  for (const check::Finding& finding : check::CheckText("", plan.text, &machine).findings) {
    const check::FindingKind& kind = check::KindOf(finding.code);
    const bool isError = kind.severity == check::Severity::kError;
    if (!codes.contains(finding.code) && !(isError && lines.contains(finding.place.line))) continue;
    // The last family is about the machine, and closest to the cause.
    const std::string code = kind.id;
    if (!plan.causeCode.empty() &&
        (code[1] < plan.causeCode[1] || (code[1] == plan.causeCode[1] && code > plan.causeCode))) {
      continue;
    }
    plan.causeCode = code;
    plan.cause = finding.message;
  }
  if (!plan.error || plan.error->event || plan.error->className != "ipc::CIPAddressError") return;
  for (const simulated::Adapter& adapter : machine.adapters) {
    for (const std::string& gateway : adapter.gateways) {
      if (gateway.find(':') == std::string::npos) continue;
      plan.cause = ToUtf8(AdapterName(adapter) + " has the IPv6 gateway " + gateway) +
                   ", which the library cannot read";
    }
  }
}

}  // namespace tool
