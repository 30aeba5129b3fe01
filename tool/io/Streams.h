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
  /// `err` shows a line that is written again and again.
  bool progress = false;
};

}  // namespace tool
