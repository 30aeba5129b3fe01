// This computer, read into the form of a simulated one.
#pragma once

#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tool/io/Streams.h"

namespace tool {

struct CapturedMachine {
  simulated::Machine machine;
  /// What could not be read, and why, a line each; it stands at its default in the machine.
  std::vector<std::string> gaps;
};

/// Reads the machine behind `platform::Current()`, without changing it: names, membership,
/// operating system, adapters, persistent routes, the networking services, the library's registry
/// value and the agent's configuration files. What no machine can tell is left out: the directory,
/// host names, what can be deciphered.
CapturedMachine CaptureMachine();

/// Lists the gaps on standard error, as told by the command or option `teller`.
void TellGaps(const CapturedMachine& captured, const char* teller, const Streams& streams);

}  // namespace tool
