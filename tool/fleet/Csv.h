// Comma-separated values as RFC 4180 describes them; semicolons separate as well, as spreadsheets
// of some languages write them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool::fleet {

struct CsvRecord {
  /// As spreadsheets count: the first line is row 1, and an empty line is a row.
  std::size_t number = 0;
  std::vector<std::string> fields;
  /// What is wrong with it, for example "field 3: a quote is never closed"; empty for nothing.
  std::string fault;
};

/// Reads one record after another from a text that outlives the reader.
class CsvReader {
 public:
  /// Skips a byte order mark. What the first line holds more of, commas or semicolons, separates.
  explicit CsvReader(std::string_view text);

  /// The next record that is not an empty line; nothing at the end. A record with a quote that is
  /// never closed ends with its first line, so that the ones below it can be read.
  std::optional<CsvRecord> Next();

 private:
  std::string_view rest_;
  std::size_t number_ = 0;
  char separator_ = ',';
};

}  // namespace tool::fleet
