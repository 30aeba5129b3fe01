// Waiting, as the commands use it.
#pragma once

#include <cstdint>

namespace sys {

/// Suspends the calling thread.
void Pause(std::uint32_t milliseconds);

}  // namespace sys
