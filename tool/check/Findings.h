// What was found in one file, with all that a report shows of it.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/check/Document.h"
#include "tool/check/FindingTable.h"

namespace tool::check {

/// A place elsewhere that a finding is about, too.
struct RelatedPlace {
  std::string file;
  Place place;
};

struct Finding {
  Code code{};
  std::string message;
  std::string hint;
  Place place;
  /// Empty when it is about no line.
  Excerpt excerpt;
  std::optional<RelatedPlace> related = std::nullopt;
};

inline bool IsError(const Finding& finding) {
  return KindOf(finding.code).severity == Severity::kError;
}

/// Collects the findings of a document, so many of each severity at most.
class Findings {
 public:
  static constexpr std::size_t kMostOfSeverity = 100;

  /// The document is borrowed.
  explicit Findings(const Document& document) : document_(document) {}

  // Each adds a finding about a place; without a `hint` with the one of the table.

  void At(Code code, Span span, std::string message, std::string hint = {});
  /// What the item is: the message begins with it.
  void OfItem(Code code, const Item& item, const std::string& what, std::string hint = {});
  void AtLine(Code code, std::uint32_t line, std::string message, std::string hint = {});
  void AtKey(Code code, const PlacedEntry& entry, std::string message, std::string hint = {});
  void AtValue(Code code, const PlacedEntry& entry, std::string message, std::string hint = {});
  /// At the first header of the section.
  void AtHeader(Code code, const Section& section, std::string message, std::string hint = {});
  /// About the file as a whole.
  void OfFile(Code code, std::string message);

  /// All of them in the order of their places.
  std::vector<Finding> Take();

 private:
  /// Counts the finding; false when there are too many already.
  bool Counts(Code code);

  const Document& document_;
  std::vector<Finding> findings_;
  std::array<std::size_t, 3> counts_{};
};

/// A finding about a place; without a `hint` with the one of the table.
Finding FindingAt(const Document& document, Code code, Span span, std::string message,
                  std::string hint = {});

/// A finding that is about no line.
Finding FindingOfFile(Code code, std::string message);

/// Findings in one place keep their order.
void SortByPlace(std::vector<Finding>& findings);

/// A text from a file inside a message: in quotes, and cut when it is long.
std::string Quoted(std::string_view text);

}  // namespace tool::check
