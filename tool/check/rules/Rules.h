// The rules: each function looks for one family of faults in one file and adds what it finds.
#pragma once

#include "tool/check/DesiredState.h"
#include "tool/check/Findings.h"

namespace tool::check {

/// Lines that are not what they look like: headers, continuation lines, duplicates.
void CheckLines(const DesiredState& desired, Findings& findings);

/// Sections and keys that nobody reads.
void CheckNames(const DesiredState& desired, Findings& findings);

/// Each value for itself, by what its key takes.
void CheckValues(const DesiredState& desired, Findings& findings);

/// What does not fit together within an adapter's section.
void CheckAdapters(const DesiredState& desired, Findings& findings);

/// What does not fit together in the computer's identity.
void CheckIdentity(const DesiredState& desired, Findings& findings);

/// What goes wrong between adapters' sections.
void CheckSections(const DesiredState& desired, Findings& findings);

}  // namespace tool::check
