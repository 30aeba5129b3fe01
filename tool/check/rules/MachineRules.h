// What only a machine can tell about a configuration file.
#pragma once

#include "platform/simulated/Machine.h"
#include "tool/check/DesiredState.h"
#include "tool/check/Findings.h"

namespace tool::check {

/// Tells the desired what of the computer's identity changes on the machine.
void CompareIdentity(DesiredState& desired, const simulated::Machine& machine);

/// Looks for the adapters, routes, host names, domain, unit and account that the file needs. One
/// thread at a time may call it.
void CheckOnMachine(const DesiredState& desired, simulated::Machine& machine, Findings& findings);

}  // namespace tool::check
