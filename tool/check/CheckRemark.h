// What a rehearsal says of a file that the library can hardly have understood.
#pragma once

#include <string>

namespace tool {

/// "2 errors, the first in line 3: ...; see orvanta-config check pc.cfg": one line for a file that
/// `check` finds errors in, empty for any other. `path` is as the user gave it.
std::string CheckRemark(const std::string& path, const std::string& text);

}  // namespace tool
