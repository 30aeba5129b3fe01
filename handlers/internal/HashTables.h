// Many hash tables in two arrays, so that a table costs no allocation of its own. A table maps a
// hash to the ids of items that live elsewhere; 0 is no id. Tables use open addressing and are at
// most two thirds full.
#pragma once

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

  static bool HasRoomFor(std::size_t items, const Table& table) {
    return SizeFor(items) <= table.size;
  }

  /// Empties the table and gives it room for that many items. The place of the outgrown one is
  /// reused when it is the last; else it stays unused, as a rule no more than what is in use.
  void Enlarge(Table* table, std::size_t items) {
    const bool isLast = table->begin + table->size == ids_.size();
    const std::size_t begin = isLast ? table->begin : ids_.size();
    const std::size_t size = SizeFor(items);
    *table = {begin, 0};
    Resize(begin);
    Resize(begin + size);
    table->size = static_cast<std::uint32_t>(size);
  }

  /// The id that was inserted with this hash and that `isWanted` accepts, or 0.
  template <typename IsWanted>
  std::uint32_t Find(const Table& table, std::uint32_t hash, IsWanted isWanted) const {
    return table.size == 0 ? 0 : ids_[FindSlot(table, hash, isWanted)];
  }

  /// The same, but inserts `id` and returns it when there is none. The table must have room.
  template <typename IsWanted>
  std::uint32_t FindOrInsert(const Table& table, std::uint32_t hash, std::uint32_t id,
                             IsWanted isWanted) {
    const std::size_t slot = FindSlot(table, hash, isWanted);
    if (tags_[slot] == 0) {
      tags_[slot] = TagOf(hash);
      ids_[slot] = id;
    }
    return ids_[slot];
  }

  /// Drops all tables; their handles must be made anew.
  void Clear() { Resize(0); }

 private:
  static std::size_t SizeFor(std::size_t items) { return std::bit_ceil(items + items / 2 + 1); }
  static std::uint8_t TagOf(std::uint32_t hash) {
    return static_cast<std::uint8_t>(hash >> 24 | 1);
  }

  /// The slot of the wanted item, or the free one where it belongs.
  template <typename IsWanted>
  std::size_t FindSlot(const Table& table, std::uint32_t hash, IsWanted isWanted) const {
    const std::uint8_t* const tags = tags_.data() + table.begin;
    const std::uint32_t* const ids = ids_.data() + table.begin;
    const std::uint32_t mask = table.size - 1;
    const std::uint8_t tag = TagOf(hash);
    std::uint32_t slot = hash & mask;
    while (tags[slot] != 0 && !(tags[slot] == tag && isWanted(ids[slot]))) slot = (slot + 1) & mask;
    return table.begin + slot;
  }

  void Resize(std::size_t size) {
    tags_.resize(size);
    ids_.resize(size);
  }

  // A tag is some bits of the hash, and 0 in a free slot. Tags are apart from the ids so that those
  // of a large table stay in the processor's cache.
  std::vector<std::uint8_t> tags_;
  std::vector<std::uint32_t> ids_;
};
