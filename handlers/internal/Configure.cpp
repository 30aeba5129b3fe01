#include "handlers/internal/Configure.h"

#include <string>

#include "common/config/ConfigError.h"
#include "common/logging/LogLines.h"
#include "common/sys/Domain.h"
#include "common/util/Finally.h"

namespace {

constexpr char kPath[] = "internal/Configure";

constexpr std::int32_t kAnswered = 1;
constexpr std::int32_t kNotAnswered = 0;
/// "Status-Code" of a run that stopped without an error.
constexpr std::int32_t kRunStopped = 3;

/// The lines of the log calls.
enum Line : int { kConfigErrorLine = 581, kGeneralErrorLine = 607 };

void WriteStatus(IAgentMessage& message, const char* module, std::int32_t code) {
  message.SetValue("Status-Module", module);
  message.SetValue("Status-Code", std::to_string(code).c_str());
}

void WriteResult(IAgentMessage& message, const char* result) { message.SetValue("Result", result); }

std::int32_t StatusCode(const err::CGeneralError& error) {
  return static_cast<std::int32_t>(error.SystemError);
}

}  // namespace

std::int32_t Configure::HandleMessage(IAgentMessage* message, IAgentHost* host) {
  // The account belongs to this message: its commands set it, and other messages may run meanwhile.
  const util::Finally forget([] { sys::Domain::Instance().ForgetCredentials(); });
  NullEventListener listener;
  ConfigurePlan plan(*this, *host, listener);
  switch (plan.Open(*message)) {
    case ConfigurePlan::Opening::kLoaded:
      break;
    case ConfigurePlan::Opening::kHandedOver:
      return kAnswered;
    case ConfigurePlan::Opening::kHandOverRefused:
    case ConfigurePlan::Opening::kNoFile:
      return kNotAnswered;
    case ConfigurePlan::Opening::kNotLoaded:
      WriteResult(*message, "Failure");
      WriteStatus(*message, "Tarvo", plan.Loaded());
      return kAnswered;
  }
  message->SetValue("Schedule-ID", plan.Global().scheduleId.c_str());
  message->SetValue("Task-Sequence-ID", plan.Global().taskSequence.c_str());
  try {
    plan.Build();
    Run(plan, *message);
  } catch (const config::ConfigError& error) {
    WriteResult(*message, "Failure");
    LogRecord(logging::kConfigError, kPath, kConfigErrorLine, error);
    WriteStatus(*message, "Win32", StatusCode(error));
    plan.PutAway();
  } catch (const err::CGeneralError& error) {
    LogRecord(logging::kGeneralError, kPath, kGeneralErrorLine, error);
    WriteResult(*message, "Failure");
    WriteStatus(*message, "Win32", StatusCode(error));
    plan.PutAway();
  }
  return kAnswered;
}

void Configure::Run(ConfigurePlan& plan, IAgentMessage& message) {
  plan.Analyze();
  bool reboot = false;
  const bool finished = plan.Builder().RunConfig(&reboot);
  // Deliberate: a suppressed restart does not turn a run that stopped for it into a success.
  if (reboot && !plan.Global().noReboot) {
    WriteResult(message, "Reboot");
    return;
  }
  WriteResult(message, finished ? "Success" : "Failure");
  if (!finished) WriteStatus(message, "Tarvo", kRunStopped);
  plan.PutAway();
}
