// What only a machine can tell about a configuration file.
#pragma once

#include "platform/simulated/Machine.h"
#include "tool/check/Findings.h"
#include "tool/check/Wishes.h"

namespace tool::check {

/// Tells the wishes what of the computer's identity changes on the machine.
void CompareIdentity(Wishes& wishes, const simulated::Machine& machine);

/// Looks for the adapters, routes, host names, domain, unit and account that the file needs. One
/// thread at a time may call it.
void CheckOnMachine(const Document& document, const Wishes& wishes, simulated::Machine& machine,
                    Findings& findings);

}  // namespace tool::check
