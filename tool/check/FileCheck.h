// The check of one file.
#pragma once

#include <cstddef>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tool/check/Findings.h"

namespace tool::check {

/// Something that only one computer can have.
struct Claim {
  /// Equal for equal claims, however they are written.
  std::string identity;
  /// What a second claim is, but for where the first one is.
  Finding finding;
};

/// A comment that asks for leaving findings out.
struct Allowance {
  std::vector<std::string> codes;
  /// The lines that it counts for.
  std::size_t first = 1;
  std::size_t last = std::numeric_limits<std::size_t>::max();
  /// What it is when it leaves out none.
  Finding idle;
};

struct FileReport {
  std::string file;
  /// In the order of their places.
  std::vector<Finding> findings;
  std::vector<Claim> claims;
  std::vector<Allowance> allowances = {};
  /// The file's bytes where a finding has an edit, else empty.
  std::string text = {};
  /// Of findings that were left out, as `BaselineKey` has them.
  std::set<std::string> leftOut = {};
};

/// Checks a file's content; with a `machine` also against that. Finds `most` of each severity.
FileReport CheckText(const std::string& file, std::string text, simulated::Machine* machine,
                     std::size_t most = kMostOfSeverity);

/// Leaves out what comments of the file allow, and tells of those that allow nothing.
void LeaveOutAllowed(FileReport& report);

/// The report of a file that cannot be read.
FileReport Unreadable(const std::string& file, const std::string& reason);

/// A file of more bytes is not a configuration.
constexpr std::size_t kLargestFile = std::size_t{4} << 20U;
FileReport TooLarge(const std::string& file);

/// "2 errors, the first on line 3: ...; see orvanta-config check pc.cfg": one line for a file that
/// has errors, empty for any other. `path` is as the user gave it.
std::string Remark(const std::string& path, const std::string& text);

}  // namespace tool::check
