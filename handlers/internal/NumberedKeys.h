// Keys that a decimal number follows, such as "Route0", and another key that says how many count.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "base/ConfigKeys.h"
#include "handlers/internal/ConfigFile.h"

/// The numbers of the keys `numbered` of a section that are read: of those that are present the
/// lowest, as many as the key `count` says.
std::vector<std::size_t> NumberedKeys(ConfigFile& file, std::string_view section,
                                      base::Key numbered, base::Key count);
