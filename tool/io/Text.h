// Plain text for a terminal: colours, alignment, and texts from files made safe to show.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// The text with every control character spelled out ("\n", "\x1B"), so that a text from a file
/// stays on its line and cannot steer the terminal. A byte that is not UTF-8 becomes U+FFFD.
std::string Printable(std::string_view text);

/// The text filled up with blanks to `width` characters; longer texts stay as they are.
std::string Padded(std::string_view text, std::size_t width);

struct Row {
  std::string name;
  std::string text;
};

/// One line per row: the names in a column of their own.
std::string Rows(const std::vector<Row>& rows, const std::string& indent);

/// The items side by side, separated by commas; "-" for none.
std::string ListText(const std::vector<std::string>& items);

/// The items in that form, followed by ", and 3 more" when `more` is not 0.
std::string FirstFew(std::vector<std::string> items, std::size_t more);

/// Wraps texts in terminal colours, or leaves them alone.
class Style {
 public:
  explicit Style(bool color) : color_(color) {}

  std::string Heading(std::string_view text) const { return Wrap("1", text); }
  std::string Good(std::string_view text) const { return Wrap("32", text); }
  std::string Bad(std::string_view text) const { return Wrap("31", text); }
  std::string Notice(std::string_view text) const { return Wrap("33", text); }
  std::string Dim(std::string_view text) const { return Wrap("2", text); }

 private:
  std::string Wrap(const char* code, std::string_view text) const;

  bool color_;
};

}  // namespace tool
