// The rules: each function looks for one family of faults in one file and adds what it finds.
#pragma once

#include <vector>

#include "tool/check/DesiredState.h"
#include "tool/check/FileCheck.h"

namespace tool::check {

/// Lines that are not what they look like: headers, continuation lines, duplicates.
void CheckLines(const DesiredState& desired, Findings& findings);

/// Sections and keys that nobody reads.
void CheckNames(const DesiredState& desired, Findings& findings);

/// The key of such a section that may be meant; a numbered one with a number.
std::optional<std::string> NearestKey(SectionKind section, std::string_view key);

/// Each value for itself, by what its key takes.
void CheckValues(const DesiredState& desired, Findings& findings);

/// What does not fit together within an adapter's section.
void CheckAdapters(const DesiredState& desired, Findings& findings);

/// What does not fit together in the computer's identity.
void CheckIdentity(const DesiredState& desired, Findings& findings);

/// What goes wrong between adapters' sections.
void CheckSections(const DesiredState& desired, Findings& findings);

/// The comments that ask for leaving findings out. Adds a finding for each that would change what
/// the machine gets.
std::vector<Allowance> AllowancesOf(const Document& document, Findings& findings);

// What only a machine can tell.

/// Tells the desired what of the computer's identity changes on the machine.
void CompareIdentity(DesiredState& desired, simulated::Machine& machine);

/// Looks for the adapters, routes, host names, domain, unit and account that the file needs. One
/// thread at a time may call it.
void CheckOnMachine(const DesiredState& desired, simulated::Machine& machine, Findings& findings);

// What must not be the same in two files.

/// The computer name, the static addresses and the MAC addresses of a file.
std::vector<Claim> ClaimsOf(const DesiredState& desired);

/// Adds a finding to every file that claims what an earlier one claims already.
void CheckFleet(std::vector<FileReport>& reports);

}  // namespace tool::check
