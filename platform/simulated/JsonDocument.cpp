#include "platform/simulated/JsonDocument.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/Nearest.h"
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
  // What the parser read last may be a password.
  message.resize(std::min({message.size(), message.find("; last read"), kLongestFaultShown}));
  std::replace_if(
      message.begin(), message.end(), [](char sign) { return sign < ' ' || sign > '~'; }, '?');
  return message;
}

/// Builds a document while it is parsed, so that every fault can be told by its place.
class Builder {
 public:
  Builder(const std::string& text, const std::string& fileName, const Encoder& encode)
      : text_(text), fileName_(fileName), encode_(encode) {}

  nlohmann::json Take() { return std::move(root_); }

  // What the parser calls; true lets it go on.
  bool null() { return Put(nullptr); }
  bool boolean(bool value) { return Put(value); }
  bool number_integer(std::int64_t value) { return Put(value); }
  bool number_unsigned(std::uint64_t value) { return Put(value); }
  bool number_float(double value, const std::string&) { return Put(value); }
  bool string(std::string& value) {
    const std::optional<std::string> bytes = Encoded(value);
    Place(bytes.value_or(""));
    return bytes || FailEncoding();
  }
  bool binary(nlohmann::json::binary_t&) { return false; }
  bool start_object(std::size_t) { return Open(nlohmann::json::object()); }
  bool start_array(std::size_t) { return Open(nlohmann::json::array()); }
  bool end_object() { return Close(); }
  bool end_array() { return Close(); }

  bool key(std::string& name) {
    auto& object = levels_.back().value->get_ref<nlohmann::json::object_t&>();
    const std::optional<std::string> bytes = Encoded(name);
    const auto [entry, isNew] = object.try_emplace(bytes.value_or(name));
    levels_.back().entry = &*entry;
    if (!bytes) FailEncoding();
    if (!isNew) Fail("stands twice in this object; keep one");
    return true;
  }

  bool parse_error(std::size_t byte, const std::string&, const nlohmann::json::exception& error) {
    throw MachineFileError(fileName_ + ":" + LineAndColumn(text_, byte) +
                           ": malformed JSON: " + FaultOf(error) + "; correct it there");
  }

 private:
  using Entry = nlohmann::json::object_t::value_type;

  /// An open object or list, and the entry of the object that is being read.
  struct Level {
    nlohmann::json* value;
    Entry* entry;
  };

  nlohmann::json* Place(nlohmann::json value) {
    if (levels_.empty()) return &(root_ = std::move(value));
    const Level& level = levels_.back();
    if (level.value->is_object()) return &(level.entry->second = std::move(value));
    // cppcheck-suppress accessMoved; the move above returns
    level.value->push_back(std::move(value));
    return &level.value->back();
  }

  bool Put(nlohmann::json value) {
    Place(std::move(value));
    return true;
  }

  bool Open(nlohmann::json value) {
    nlohmann::json* const place = Place(std::move(value));
    if (levels_.size() == kDeepestNesting) {
      Fail("nested deeper than " + std::to_string(kDeepestNesting) + " levels; flatten it");
    }
    levels_.push_back({place, nullptr});
    return true;
  }

  bool Close() {
    levels_.pop_back();
    return true;
  }

  /// A text as the machine holds it; none when it cannot.
  std::optional<std::string> Encoded(const std::string& text) const {
    return encode_ ? encode_(text) : text;
  }

  [[noreturn]] bool FailEncoding() const {
    Fail("cannot be written in the machine's code page; use its characters");
  }

  [[noreturn]] void Fail(const std::string& fault) const {
    std::string path = "$";
    for (const Level& level : levels_) {
      path += level.value->is_array() ? ElementStep(level.value->size() - 1)
                                      : FieldStep(level.entry->first);
    }
    throw MachineFileError(fileName_ + ": " + path + ": " + fault);
  }

  const std::string& text_;
  const std::string& fileName_;
  const Encoder& encode_;
  nlohmann::json root_;
  std::vector<Level> levels_;
};

bool IsWideText(const std::string& text) {
  return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
         (text.size() > 1 && text[1] == '\0');
}

}  // namespace

nlohmann::json ParseDocument(const std::string& text, const std::string& fileName,
                             const Encoder& encode) {
  if (text.size() > kLargestDocument) {
    throw MachineFileError(fileName + ": larger than 64 MiB; leave out what the run does not need");
  }
  if (IsWideText(text)) throw MachineFileError(fileName + ":1:1: not UTF-8; save it as UTF-8");
  Builder builder(text, fileName, encode);
  nlohmann::json::sax_parse(text, &builder);
  return builder.Take();
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
  if (const auto nearest = base::Nearest(name, known)) {
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
