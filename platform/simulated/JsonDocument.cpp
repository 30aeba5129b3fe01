#include "platform/simulated/JsonDocument.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <set>
#include <vector>

#include "platform/simulated/MachineFile.h"

namespace simulated {
namespace {

constexpr std::size_t kLargestDocument = 64U << 20U;
constexpr std::size_t kDeepestNesting = 32;
constexpr std::size_t kLongestNameShown = 60;
constexpr std::size_t kLongestFaultShown = 200;
/// So many names are listed rather than searched for the nearest.
constexpr std::size_t kMostNamesListed = 5;

/// A text as it can stand in a one-line message.
std::string Shown(std::string_view text) {
  const bool isLong = text.size() > kLongestNameShown;
  const std::string start(text.substr(0, kLongestNameShown));
  return nlohmann::json(start + (isLong ? "..." : ""))
      .dump(-1, ' ', /*ensure_ascii=*/true, nlohmann::json::error_handler_t::replace);
}

std::string FieldStep(std::string_view name) {
  const bool isPlain = !name.empty() && name.size() <= kLongestNameShown &&
                       std::all_of(name.begin(), name.end(), [](unsigned char letter) {
                         return letter == '_' || std::isalnum(letter) != 0;
                       });
  return isPlain ? "." + std::string(name) : "[" + Shown(name) + "]";
}

std::string ElementStep(std::size_t index) { return "[" + std::to_string(index) + "]"; }

/// Follows a running parse to see what the parsed value no longer shows.
class Watch {
 public:
  explicit Watch(const std::string& fileName) : fileName_(fileName) {}

  bool operator()(int, nlohmann::json::parse_event_t event, const nlohmann::json& value) {
    using Event = nlohmann::json::parse_event_t;
    switch (event) {
      case Event::object_start:
      case Event::array_start:
        CountElement();
        if (levels_.size() == kDeepestNesting) {
          Fail("nested deeper than " + std::to_string(kDeepestNesting) + " levels; flatten it");
        }
        levels_.push_back(
            {.isArray = event == Event::array_start, .elements = 0, .keys = {}, .key = {}});
        break;
      case Event::object_end:
      case Event::array_end:
        levels_.pop_back();
        break;
      case Event::key:
        levels_.back().key = value.get<std::string>();
        if (!levels_.back().keys.insert(levels_.back().key).second) {
          Fail("stands twice in this object; keep one");
        }
        break;
      case Event::value:
        CountElement();
        break;
    }
    return true;
  }

 private:
  struct Level {
    bool isArray;
    std::size_t elements;
    std::set<std::string> keys;
    std::string key;
  };

  void CountElement() {
    if (!levels_.empty() && levels_.back().isArray) ++levels_.back().elements;
  }

  [[noreturn]] void Fail(const std::string& fault) const {
    std::string path = "$";
    for (const Level& level : levels_) {
      path += level.isArray ? ElementStep(level.elements - 1) : FieldStep(level.key);
    }
    throw MachineFileError(fileName_ + ": " + path + ": " + fault);
  }

  const std::string& fileName_;
  std::vector<Level> levels_;
};

std::string LineAndColumn(const std::string& text, std::size_t byte) {
  const std::string_view before = std::string_view(text).substr(0, byte == 0 ? 0 : byte - 1);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::size_t feed = before.rfind('\n');
  const std::size_t column = before.size() - (feed == std::string_view::npos ? 0 : feed + 1) + 1;
  return std::to_string(line) + ":" + std::to_string(column);
}

/// The part of the parser's message that tells the fault, fit for one line.
std::string FaultOf(const nlohmann::json::exception& error) {
  std::string message = error.what();
  for (const std::string_view prefixEnd : {"] ", ": "}) {
    const std::size_t end = message.find(prefixEnd);
    if (end != std::string::npos) message.erase(0, end + prefixEnd.size());
  }
  message.resize(std::min(message.size(), kLongestFaultShown));
  std::replace_if(
      message.begin(), message.end(), [](char sign) { return sign < ' ' || sign > '~'; }, '?');
  return message;
}

bool IsWideText(const std::string& text) {
  return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
         (text.size() > 1 && text[1] == '\0');
}

/// How many letters must be inserted, removed or replaced to make one text the other.
std::size_t Distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

nlohmann::json ParseDocument(const std::string& text, const std::string& fileName) {
  if (text.size() > kLargestDocument) {
    throw MachineFileError(fileName + ": larger than 64 MiB; leave out what the run does not need");
  }
  if (IsWideText(text)) throw MachineFileError(fileName + ":1:1: not UTF-8; save it as UTF-8");
  try {
    Watch watch(fileName);
    return nlohmann::json::parse(
        text, [&](int depth, nlohmann::json::parse_event_t event, const nlohmann::json& value) {
          return watch(depth, event, value);
        });
  } catch (const nlohmann::json::parse_error& error) {
    throw MachineFileError(fileName + ":" + LineAndColumn(text, error.byte) +
                           ": malformed JSON: " + FaultOf(error));
  } catch (const nlohmann::json::exception& error) {
    throw MachineFileError(fileName + ": malformed JSON: " + FaultOf(error));
  }
}

std::string Cursor::Path() const {
  if (parent_ == nullptr) return "$";
  return parent_->Path() + (parent_->value_.is_array() ? ElementStep(index_) : FieldStep(name_));
}

void Cursor::Fail(const std::string& fault) const {
  throw MachineFileError(fileName_ + ": " + Path() + ": " + fault);
}

void Cursor::FailType(const std::string& expected) const {
  const std::string found = value_.is_object()   ? "an object"
                            : value_.is_array()  ? "a list"
                            : value_.is_string() ? "a text"
                                                 : value_.dump();
  Fail("expected " + expected + ", found " + found);
}

void Cursor::FailUnknown(const std::string& what, std::string_view name,
                         std::span<const std::string_view> known) const {
  std::string mend = "; remove it or correct its name";
  const auto nearest = std::min_element(known.begin(), known.end(),
                                        [&](std::string_view left, std::string_view right) {
                                          return Distance(left, name) < Distance(right, name);
                                        });
  // A name that shares hardly a letter is no help.
  if (name.size() <= kLongestNameShown && Distance(*nearest, name) <= 2 + name.size() / 5) {
    mend = "; did you mean \"" + std::string(*nearest) + "\"?";
  } else if (known.size() <= kMostNamesListed) {
    mend.clear();
    for (const std::string_view one : known) {
      mend.append(mend.empty() ? "; write one of " : ", ").append(one);
    }
  }
  Fail("unknown " + what + " " + Shown(name) + mend);
}

}  // namespace simulated
