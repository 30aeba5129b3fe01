// A JSON document of which every fault can be told by its place: parsing with limits, and a cursor
// that knows its path.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/simulated/MachineFile.h"

namespace simulated {

/// Parses a document, whose texts `encode` turns into the machine's bytes. Throws
/// `MachineFileError` for malformed JSON (with line and column), a key that stands twice in an
/// object, and documents that are too deep or too large.
nlohmann::json ParseDocument(const std::string& text, const std::string& fileName,
                             const Encoder& encode);

/// A place in a document. Lives no longer than the cursor it was reached from.
class Cursor {
 public:
  Cursor(const nlohmann::json& root, const std::string& fileName)
      : value_(root), fileName_(fileName) {}

  const nlohmann::json& Value() const { return value_; }
  /// The place of a field that exists.
  Cursor Field(std::string_view name) const { return {*this, *value_.find(name), name, 0}; }
  /// The place of a field; nothing when the object has none of this name.
  std::optional<Cursor> FindField(std::string_view name) const {
    const auto found = value_.find(name);
    if (found == value_.end()) return std::nullopt;
    return Cursor(*this, *found, name, 0);
  }
  Cursor Element(std::size_t index) const { return {*this, value_.at(index), {}, index}; }
  /// The path of this place: "$.adapters[1].index".
  std::string Path() const;

  /// Throws `MachineFileError` with the file, this place and `fault`, which ends with the mend.
  [[noreturn]] void Fail(const std::string& fault) const;
  /// Fails because something else was expected here: "expected a text, found a number".
  [[noreturn]] void FailType(const std::string& expected) const;
  /// Fails for a `name` that is none of `known`, which holds at least one, and names the nearest.
  [[noreturn]] void FailUnknown(const std::string& what, std::string_view name,
                                std::span<const std::string_view> known) const;

 private:
  Cursor(const Cursor& parent, const nlohmann::json& value, std::string_view name,
         std::size_t index)
      : value_(value), fileName_(parent.fileName_), parent_(&parent), name_(name), index_(index) {}

  const nlohmann::json& value_;
  const std::string& fileName_;
  const Cursor* parent_ = nullptr;
  std::string_view name_;
  std::size_t index_ = 0;
};

}  // namespace simulated
