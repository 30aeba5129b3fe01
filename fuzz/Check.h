// What every fuzz target needs: a broken promise ends the program as a crash does.
#pragma once

#include <cstdlib>

inline void Check(bool holds) {
  if (!holds) std::abort();
}
