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

void Release(void* block) noexcept {
  if (block == nullptr) return;
  BlockHeader* const header = static_cast<BlockHeader*>(block) - 1;
  util::Wipe(block, header->size);
  std::free(header);
}

}  // namespace

// The standard library's other forms for objects of usual alignment, such as those for arrays, call
// these, so no block of ours meets another heap.

void* operator new(std::size_t size) {
  constexpr std::size_t kLargest = std::numeric_limits<std::size_t>::max() - sizeof(BlockHeader);
  void* const memory = size <= kLargest ? std::malloc(sizeof(BlockHeader) + size) : nullptr;
  if (memory == nullptr) throw std::bad_alloc();  // nobody installs a new-handler
  return new (memory) BlockHeader{size} + 1;
}

void operator delete(void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
