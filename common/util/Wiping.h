// Memory that held a secret: overwritten so that no compiler drops it as a dead store.
#pragma once

#include <cstddef>
#include <string>

namespace util {

/// Fills `size` bytes with zeros.
void Wipe(void* memory, std::size_t size) noexcept;

/// Leaves an empty text; no byte that it ever held in its present buffer stays.
void Wipe(std::string& text) noexcept;

/// Overwrites what functions that have returned left on the stack, `kWipedStack` bytes below the
/// caller: short texts lie there, and not on the heap.
void WipeFreedStack() noexcept;

/// Far more than the frames of a message take, and little of a thread's stack (1 MiB at least).
constexpr std::size_t kWipedStack = std::size_t{32} * 1024;

}  // namespace util
