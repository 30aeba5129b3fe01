// Blocks of the process heap, which hold the system's records of the user-context classes.
#pragma once

#include <cstdint>
#include <memory>

#include "common/sys/ImpersonationError.h"
#include "platform/IPlatform.h"
#include "platform/ISecurity.h"

namespace sys {

inline platform::ISecurity& Security() { return platform::Current().Security(); }

struct HeapBlockFreer {
  void operator()(void* block) const { Security().Free(block); }
};

/// Owns a record in a block of its own.
template <class Record>
using HeapBlock = std::unique_ptr<Record, HeapBlockFreer>;

/// A new block. Throws a pointer to CImpersonationError when there is no memory.
template <class Record>
HeapBlock<Record> AllocateBlock(std::uint32_t size, const err::Site& outOfMemory) {
  void* const block = Security().Allocate(size);
  if (block == nullptr) ThrowOutOfMemory(outOfMemory);
  return HeapBlock<Record>(static_cast<Record*>(block));
}

}  // namespace sys
