// What a configuration file says and the library makes nothing of.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "tool/plan/QueuePlan.h"

namespace tool {

/// Keys of one section.
struct UnusedKeys {
  /// Empty for what stands before the first section.
  std::string section;
  /// As they may be shown.
  std::vector<std::string> keys;
  std::set<std::size_t> lines;
};

/// The keys that no event of the plan came of, in the order of the file: of sections that nobody
/// reads, misspelt or repeated ones, and those that another key of the section rules out. Keys that
/// only steer others are not among them. Nothing for a file too large to be checked.
std::vector<UnusedKeys> FindUnusedKeys(const QueuePlan& plan);

/// "[TCP/IP] Address, Netmask"; of many keys the first few.
std::string UnusedText(const UnusedKeys& unused);

}  // namespace tool
