// Many hash tables in two arrays, so that a table costs no allocation of its own. A table maps a
// hash to the ids of items that are stored elsewhere; 0 means none. Tables use open addressing and
// are at most two thirds full.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

class HashTables {
 public:
  /// A table; made empty, without room for anything.
  struct Table {
    std::size_t begin = 0;
    std::uint32_t size = 0;
  };

  /// Gives the table room for that many items. True when it was emptied for that.
  bool MakeRoom(std::size_t items, Table* table) {
    const std::size_t size = std::max<std::size_t>(16, std::bit_ceil(items + items / 2 + 1));
    if (size <= table->size) return false;
    // An outgrown table gives up its place unless it is the last; that is less than is in use.
    const bool isLast = table->begin + table->size == ids_.size();
    const std::size_t begin = isLast ? table->begin : ids_.size();
    tags_.resize(begin + size);
    ids_.resize(begin + size);
    std::fill(tags_.begin() + static_cast<std::ptrdiff_t>(begin), tags_.end(), std::uint8_t{0});
    *table = {begin, static_cast<std::uint32_t>(size)};
    return true;
  }

  /// The id with this hash that `isWanted` accepts. When there is none, `ifAbsent` is inserted,
  /// unless it is 0, and returned; the table must have room for it.
  template <typename IsWanted>
  std::uint32_t Find(const Table& table, std::uint32_t hash, std::uint32_t ifAbsent,
                     IsWanted isWanted) {
    if (table.size == 0) return 0;
    std::uint8_t* const tags = tags_.data() + table.begin;
    std::uint32_t* const ids = ids_.data() + table.begin;
    const std::uint32_t mask = table.size - 1;
    const auto tag = static_cast<std::uint8_t>(hash >> 24 | 1);
    std::uint32_t slot = hash & mask;
    while (tags[slot] != 0 && !(tags[slot] == tag && isWanted(ids[slot]))) slot = (slot + 1) & mask;
    if (tags[slot] != 0) return ids[slot];
    if (ifAbsent != 0) {
      tags[slot] = tag;
      ids[slot] = ifAbsent;
    }
    return ifAbsent;
  }

 private:
  // A tag is some bits of the hash, and 0 in a free slot. Tags are apart from the ids so that those
  // of a large table stay in the processor's cache.
  std::vector<std::uint8_t> tags_;
  std::vector<std::uint32_t> ids_;
};
