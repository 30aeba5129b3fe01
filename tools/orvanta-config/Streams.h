// Where a command reads and writes.
#pragma once

#include <iosfwd>

namespace tool {

struct Streams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  /// `out` shows colours and the user did not forbid them by NO_COLOR.
  bool color = false;
};

}  // namespace tool
