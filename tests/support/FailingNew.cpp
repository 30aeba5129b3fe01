#include "tests/support/FailingNew.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

/// Allocations that still succeed; below 0 all of them do.
long allowed = -1;

void* Allocate(std::size_t size) {
  if (allowed == 0) return nullptr;
  if (allowed > 0) --allowed;
  return std::malloc(size != 0 ? size : 1);
}

}  // namespace

void* operator new(std::size_t size) {
  void* const memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace support {

bool Survives(long count, const std::function<void()>& step) {
  allowed = count;
  bool done = true;
  try {
    step();
  } catch (const std::bad_alloc&) {
    done = false;
  }
  allowed = -1;
  return done;
}

}  // namespace support
