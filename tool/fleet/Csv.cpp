#include "tool/fleet/Csv.h"

#include <algorithm>

namespace tool::fleet {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kLineEnds = "\r\n";

/// Takes a field in quotes off the front of `text`: a doubled quote is one of the content. False
/// when it is never closed.
bool TakeQuoted(std::string_view& text, std::string* field) {
  for (std::size_t from = 1;;) {
    const std::size_t quote = text.find('"', from);
    if (quote == std::string_view::npos) return false;
    field->append(text, from, quote - from);
    if (text.substr(quote + 1, 1) != "\"") {
      text.remove_prefix(quote + 1);
      return true;
    }
    *field += '"';
    from = quote + 2;
  }
}

/// Takes everything up to one of `ends` off the front of `text`.
std::string_view TakeUpTo(std::string_view& text, std::string_view ends) {
  const std::string_view taken = text.substr(0, text.find_first_of(ends));
  text.remove_prefix(taken.size());
  return taken;
}

/// Takes one off the front of `text`; false when there is none.
bool TakeLineEnd(std::string_view& text) {
  const bool isThere = text.starts_with('\r') || text.starts_with('\n');
  if (isThere) text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
  return isThere;
}

}  // namespace

CsvReader::CsvReader(std::string_view text) : rest_(text) {
  if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
  const std::string_view first = rest_.substr(0, rest_.find_first_of(kLineEnds));
  if (std::count(first.begin(), first.end(), ';') > std::count(first.begin(), first.end(), ',')) {
    separator_ = ';';
  }
}

std::optional<CsvRecord> CsvReader::Next() {
  const std::string ends = std::string(kLineEnds) + separator_;
  CsvRecord record{number_, {}, {}};
  do {
    if (rest_.empty()) return std::nullopt;
    ++record.number;
  } while (TakeLineEnd(rest_));
  for (;;) {
    std::string& field = record.fields.emplace_back();
    const std::string place = "field " + std::to_string(record.fields.size());
    if (!rest_.starts_with('"')) {
      field = TakeUpTo(rest_, ends);
      if (field.find('"') != std::string::npos && record.fault.empty()) {
        record.fault = place + ": a quote in a field without quotes around it";
      }
    } else if (!TakeQuoted(rest_, &field)) {
      field = TakeUpTo(rest_, kLineEnds);
      record.fault = place + ": a quote is never closed";
    } else if (!TakeUpTo(rest_, ends).empty() && record.fault.empty()) {
      record.fault = place + ": text after the closing quote";
    }
    if (!rest_.starts_with(separator_)) break;
    rest_.remove_prefix(1);
  }
  TakeLineEnd(rest_);
  number_ = record.number;
  return record;
}

}  // namespace tool::fleet
