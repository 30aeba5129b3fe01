#include "common/util/Wiping.h"

#include <array>
#include <cstring>

namespace util {
namespace {

// Through a volatile pointer, so that the compiler knows neither what is called nor that the call
// could be dropped.
void* (*volatile const fill)(void*, int, std::size_t) = std::memset;

void WipeOwnFrame() noexcept {
  std::array<char, kWipedStack> frame;
  Wipe(frame.data(), frame.size());
}

// Called through it, the frame lies below the caller's and not within it.
void (*volatile const wipeOwnFrame)() noexcept = WipeOwnFrame;

}  // namespace

void Wipe(void* memory, std::size_t size) noexcept { fill(memory, 0, size); }

void Wipe(std::string& text) noexcept {
  text.resize(text.capacity());
  Wipe(text.data(), text.size());
  text.clear();
}

void WipeFreedStack() noexcept { wipeOwnFrame(); }

}  // namespace util
