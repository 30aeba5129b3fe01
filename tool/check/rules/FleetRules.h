// What must not be the same in two files.
#pragma once

#include <vector>

#include "tool/check/FileCheck.h"
#include "tool/check/Wishes.h"

namespace tool::check {

/// The computer name, the static addresses and the MAC addresses of a file.
std::vector<Claim> ClaimsOf(const Document& document, const Wishes& wishes);

/// Adds a finding to every file that claims what an earlier one claims already.
void CheckFleet(std::vector<FileReport>& reports);

}  // namespace tool::check
