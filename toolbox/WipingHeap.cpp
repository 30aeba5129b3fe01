// The plug-in's heap: a block that is given back holds nothing any more. Passwords pass through
// texts, events, commands and their copies; none of these has to remember to wipe them.
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

#include "common/util/Wiping.h"

namespace {

/// Stands before every block; as large as the alignment that blocks owe.
struct alignas(std::max_align_t) BlockHeader {
  std::size_t size;
};

void* Allocate(std::size_t size) {
  if (size > std::numeric_limits<std::size_t>::max() - sizeof(BlockHeader)) return nullptr;
  void* const memory = std::malloc(sizeof(BlockHeader) + size);
  return memory == nullptr ? nullptr : new (memory) BlockHeader{size} + 1;
}

void Release(void* block) noexcept {
  if (block == nullptr) return;
  BlockHeader* const header = static_cast<BlockHeader*>(block) - 1;
  util::Wipe(block, header->size);
  std::free(header);
}

}  // namespace

// Every form for objects of usual alignment, so that no block of ours meets another heap.

void* operator new(std::size_t size) {
  for (;;) {
    if (void* const block = Allocate(size)) return block;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
  return operator new(size, nothrow);
}

void operator delete(void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Release(block); }
