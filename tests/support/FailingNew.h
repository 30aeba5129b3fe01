// An operator new that fails when it is told to; it is the whole program's.
#pragma once

#include <functional>

namespace support {

/// Runs `step`, which may use `count` allocations; the next one throws std::bad_alloc, and a step
/// that lets it pass ends there. True when the step came to its end.
bool Survives(long count, const std::function<void()>& step);

}  // namespace support
