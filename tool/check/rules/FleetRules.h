// What must not be the same in two files.
#pragma once

#include <vector>

#include "tool/check/DesiredState.h"
#include "tool/check/FileCheck.h"

namespace tool::check {

/// The computer name, the static addresses and the MAC addresses of a file.
std::vector<Claim> ClaimsOf(const DesiredState& desired);

/// Adds a finding to every file that claims what an earlier one claims already.
void CheckFleet(std::vector<FileReport>& reports);

}  // namespace tool::check
