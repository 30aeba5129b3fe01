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

/// A change of the file's bytes that fixes a finding.
struct Edit {
  Span span;
  /// Takes the place of the stretch.
  std::string text;
  // Of the stretch.
  Place begin;
  Place end;
};

struct Finding {
  Code code{};
  std::string message;
  std::string hint;
  Place place;
  /// Empty when it is about no line.
  Excerpt excerpt;
  std::optional<RelatedPlace> related = std::nullopt;
  /// Only where the fix is certain and shows no secret.
  std::optional<Edit> edit = std::nullopt;
};

inline bool IsError(const Finding& finding) {
  return KindOf(finding.code).severity == Severity::kError;
}

/// So many findings of each severity are shown for a file.
constexpr std::size_t kMostOfSeverity = 100;

/// Collects the findings of a document, so many of each severity at most.
class Findings {
 public:
  /// The document is borrowed.
  Findings(const Document& document, std::size_t most) : document_(document), most_(most) {}

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

  // Each fixes the finding that was added last, unless it has an edit or the lines in question hold
  // a secret.

  /// By this text in place of the stretch.
  void FixBy(Span span, std::string text);
  /// By moving the comment to a line of its own above `line`.
  void FixByMoving(const Item& comment, std::uint32_t line);

  /// How many were added, but for those that were too many.
  std::size_t Size() const { return findings_.size(); }

  /// All of them in the order of their places.
  std::vector<Finding> Take();

 private:
  /// Counts the finding; false when there are too many already.
  bool Counts(Code code);

  const Document& document_;
  const std::size_t most_;
  bool isLastKept_ = false;
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
