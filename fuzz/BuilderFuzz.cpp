// Sends a stream of events to the builder, then analyses and runs its queue on the built-in
// example. Each line of the input is one event, as "kind phase value" with the numbers of both, or
// "option VALUE", "member" (of the example's domain, before anything else) or "fault N".
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "common/config/ConfigBuilder.h"
#include "common/config/ConfigError.h"
#include "common/ipc/IpAddress.h"
#include "common/logging/NullLogSink.h"
#include "fuzz/Check.h"
#include "platform/ScopedPlatform.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tests/support/FreshProcess.h"
#include "tests/support/QueueRules.h"

namespace {

using config::ConfigBuilder;

bool HasFaults(const simulated::Machine& machine) { return !machine.faults.empty(); }

/// A refused event leaves the queue as it was; the end of a scope may have closed it.
void Send(ConfigBuilder& builder, const std::string& line, bool faults) {
  std::istringstream words(line);
  std::uint32_t kind = 0;
  std::uint32_t phase = 0;
  std::string value;
  words >> kind >> phase >> std::ws;
  std::getline(words, value);
  const std::size_t commands = builder.Commands().size();
  try {
    builder.ConfigEvent(config::EventKind{kind}, config::Event{phase}, value);
    Check(builder.Commands().size() >= commands);
  } catch (const config::ConfigError& error) {
    Check(builder.Commands().size() == commands && error.Value >= 0 && error.Value <= 1);
  } catch (const ipc::CIPAddressError&) {
    Check(builder.Commands().size() == commands);
  } catch (const err::CGeneralError&) {
    Check(faults);  // the builder asks for the membership
  }
}

void AnalyzeAndRun(ConfigBuilder& builder, bool joinFirst, const simulated::Machine& machine) {
  try {
    const support::QueueRules rules(builder);
    builder.Analyze();
    // A question that fails only once may have had two answers.
    const std::string broken = HasFaults(machine) ? "" : rules.Broken(builder, joinFirst);
    if (!broken.empty()) std::fprintf(stderr, "%s\n", broken.c_str());
    Check(broken.empty());
    bool reboot = false;
    const bool finished = builder.RunConfig(&reboot);
    Check(finished != reboot);
  } catch (const err::CGeneralError& error) {
    Check(error.file != nullptr && error.message != nullptr);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  support::StartFreshProcess();
  simulated::Machine machine = simulated::ExampleMachine();
  simulated::SimulatedPlatform platform(machine);
  {
    const platform::ScopedPlatform scope(platform);
    logging::NullLogSink log;
    ConfigBuilder builder(log);
    bool joinFirst = false;
    std::istringstream input(std::string(data, data + size));
    for (std::string line; std::getline(input, line);) {
      if (line == "member") {
        if (builder.Commands().empty()) support::JoinCorp(machine, "OU=Sales");
      } else if (line.starts_with("option ")) {
        builder.SetOption(ConfigBuilder::kJoinDomainBeforeNameChange, line.substr(7));
        joinFirst = base::SameText(line.substr(7), "true");
      } else if (line.starts_with("fault ")) {
        machine.FailCall(base::ParseUnsigned(line.substr(6)), /*error=*/5);
      } else {
        Send(builder, line, HasFaults(machine));
      }
    }
    AnalyzeAndRun(builder, joinFirst, machine);
  }
  if (!HasFaults(machine)) Check(platform.InUse() == simulated::Usage{});
  return 0;
}
