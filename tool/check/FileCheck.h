// The check of one file.
#pragma once

#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tool/check/Findings.h"

namespace tool::check {

/// Something that only one computer can have.
struct Claim {
  /// The finding that a second claim is.
  Code code;
  /// Equal for equal claims, however they are written.
  std::string identity;
  /// As the file writes it.
  std::string text;
  Place place;
  Excerpt excerpt;
};

struct FileReport {
  std::string file;
  /// In the order of their places.
  std::vector<Finding> findings;
  std::vector<Claim> claims;
};

/// Checks a file's content; with a `machine` also against that.
FileReport CheckText(const std::string& file, std::string text, simulated::Machine* machine);

/// The report of a file that cannot be read.
FileReport Unreadable(const std::string& file, const std::string& reason);

/// A file of more bytes is not a configuration.
constexpr std::size_t kLargestFile = std::size_t{4} << 20U;
FileReport TooLarge(const std::string& file);

}  // namespace tool::check
