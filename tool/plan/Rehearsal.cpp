#include "tool/plan/Rehearsal.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <variant>

#include "common/config/command/NicCommand.h"
#include "common/sys/Domain.h"
#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/Simulation.h"
#include "tool/check/FileCheck.h"
#include "tool/explain/ErrorNumbers.h"
#include "tool/io/CodePage.h"
#include "tool/machine/ChangeText.h"

namespace tool {
namespace {

using config::command::Comparison;
using config::command::ConfigureNic;
using config::command::IConfigureCommand;
using simulated::Adapter;

/// What a domain answers to a user or password that it does not know.
constexpr std::uint32_t kWrongAccount = 1326;

/// The answer to the last call: "result 1326", "error 5", "0x80041002".
std::string AnswerText(const std::string& call, std::uint32_t number) {
  if (number >= 0x80000000U) return simulated::HResultText(static_cast<platform::HResult>(number));
  const char* const kind = call == "wmi.method"    ? "result "
                           : call == "process.run" ? "exit code "
                                                   : "error ";
  return kind + std::to_string(number);
}

/// The settings are equal; what DHCP gives is none.
bool IsSame(const Adapter& left, const Adapter& right) {
  return std::all_of(
      std::begin(simulated::kAdapterFields), std::end(simulated::kAdapterFields),
      [&](const simulated::AdapterField& field) {
        const auto isEqual = [&](auto member) { return left.*member == right.*member; };
        return (field.isGiven != nullptr && field.isGiven(left) && field.isGiven(right)) ||
               std::visit(isEqual, field.member);
      });
}

}  // namespace

bool IsRefused(const simulated::Change& change) {
  const simulated::Value& result = change["result"];
  const bool isDone = result.IsNull() || result == simulated::Value(0) ||
                      (change.call == "wmi.method" && result == simulated::Value(1));
  return !isDone || !change["hresult"].IsNull() || !change["error"].IsNull();
}

Rehearsal::~Rehearsal() { sys::Domain::Instance().ForgetCredentials(); }

Course Rehearsal::Execute(IConfigureCommand& command) {
  return Do(command, [&] {
    if (goesOn_) command.Execute();
    return true;
  });
}

Course Rehearsal::Execute(const ConfigureNic& nic, IConfigureCommand& command,
                          Comparison* comparison) {
  return Do(command, [&] {
    *comparison = nic.CompareAdapter(command);
    if (!executes_ || !comparison->needed) return false;
    // A command that does not read the current value may set the same again.
    std::optional<Adapter> before;
    if (comparison->wanted && !comparison->current) before = *machine_.FindAdapter(nic.Index());
    command.Execute();
    return !before || !IsSame(*before, *machine_.FindAdapter(nic.Index()));
  });
}

Course Rehearsal::Bind(const ConfigureNic& nic) {
  if (nic.Index() != ConfigureNic::kUnset) return {.reached = goesOn_};
  return Fail("no adapter is left", "the machine has none for the section");
}

Course Rehearsal::Restart() {
  if (plan_.restartForbidden) return Fail("no restart", "RebootAfterConfig=False forbids it");
  if (goesOn_) {
    machine_.Restart();
    ++plan_.restarts;
  }
  return {.reached = goesOn_};
}

Course Rehearsal::Fail(const char* answer, const char* meaning) {
  Course course{.reached = goesOn_};
  if (goesOn_) course.willFail = {answer, meaning, /*isOfFile=*/true};
  goesOn_ = false;
  return course;
}

Course Rehearsal::Do(const IConfigureCommand& command, const std::function<bool()>& step) {
  Course course{.reached = goesOn_};
  for (simulated::Fault& fault : machine_.faults) fault.struck.clear();
  const std::size_t start = machine_.journal.size();
  const simulated::Membership before = machine_.membership;
  bool mayChange = true;
  try {
    mayChange = step();
  } catch (const err::CGeneralError& error) {
    if (!executes_) throw;
    const bool isOfAdapter = dynamic_cast<const config::command::NicCommand*>(&command) != nullptr;
    if (goesOn_) course.willFail = FailureOf(error, start, isOfAdapter);
    goesOn_ = false;
  }
  const auto* const left = std::get_if<simulated::DomainMembership>(&before);
  const auto* const joined = std::get_if<simulated::WorkgroupMembership>(&machine_.membership);
  if (course.reached && left != nullptr && joined != nullptr) {
    course.notes.push_back(ToUtf8("leaves " +
                                  (left->dnsName.empty() ? left->flatName : left->dnsName) +
                                  ", joins " + joined->name));
  }
  for (std::size_t i = start; course.reached && i < machine_.journal.size(); ++i) {
    const simulated::Change& change = machine_.journal[i];
    if (!change["unknown"].IsNull()) course.unknown = change["unknown"].Text();
    // Other refusals fail the command or are tried again.
    if (change.call.starts_with("service.")) {
      const auto& [words, refusal, note] = Describe(change);
      if (!refusal.empty())
        course.notes.push_back("refused, and ignored: " + words + ": " + refusal);
    }
    if (change.call == "sleep") {
      plan_.pauseMs += static_cast<std::uint64_t>(std::get<std::int64_t>(change["milliseconds"]));
    } else if (mayChange && !IsRefused(change)) {
      ++plan_.changes;
    }
  }
  return course;
}

Failure Rehearsal::FailureOf(const err::CGeneralError& error, std::size_t start,
                             bool isOfAdapter) const {
  Failure failure{"the library refuses", error.message};
  failure.isOfFile = std::none_of(machine_.faults.begin(), machine_.faults.end(),
                                  [](const auto& fault) { return !fault.struck.empty(); });
  // A program that could not be run has an error of the system, and no exit code.
  const bool hasResult =
      machine_.journal.size() > start && machine_.journal.back()["error"].IsNull();
  const std::string call = hasResult ? machine_.journal.back().call : "";
  if (error.SystemError != 0) failure.answer = AnswerText(call, error.SystemError);
  if (call == "process.run") return failure;  // an exit code is the program's own
  if (const auto* reading = explain::FindAnswer(error.SystemError, isOfAdapter)) {
    failure.meaning = reading->meaning;
  }
  return failure;
}

void Rehearsal::Conclude(ConfigurePlan& run) {
  const std::size_t start = machine_.journal.size();
  try {
    if (goesOn_) run.PutAway();
  } catch (const err::CGeneralError& error) {
    goesOn_ = false;
    plan_.staysBehind = FailureOf(error, start, /*isOfAdapter=*/false);
  }
  plan_.outcome = !goesOn_                                  ? PlanOutcome::kFailure
                  : plan_.restarts > 0                      ? PlanOutcome::kRestart
                  : plan_.changes + plan_.agentSettings > 0 ? PlanOutcome::kSuccess
                                                            : PlanOutcome::kNothing;
}

void NameCause(const simulated::Machine& given, QueuePlan& plan) {
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
  // A wrong account is refused before the organizational unit is looked for.
  const bool isOfAccount =
      failing != nullptr &&
      failing->course.willFail->meaning == explain::FindAnswer(kWrongAccount, false)->meaning;
  simulated::Machine machine = given;
  for (const check::Finding& finding : check::CheckText("", plan.text, &machine).findings) {
    if (isOfAccount && finding.code == Code::kNoSuchOu) continue;
    const bool isCause =
        codes.contains(finding.code) || (IsError(finding) && lines.contains(finding.place.line));
    const std::string code = check::KindOf(finding.code).id;
    // The last family is about the machine, and closest to the cause.
    const bool isCloser = plan.causeCode.empty() || code[1] > plan.causeCode[1] ||
                          (code[1] == plan.causeCode[1] && code <= plan.causeCode);
    if (!isCause || !isCloser) continue;
    plan.causeCode = code;
    plan.cause = finding.message;
  }
}

}  // namespace tool
