#include "tool/explain/LogStory.h"

#include <algorithm>

#include "base/Utf8.h"
#include "common/logging/LogLines.h"
#include "tool/io/CodePage.h"

namespace tool::explain {
namespace {

/// What is longer is no line of the library.
constexpr std::size_t kLongestLine = 1 << 16;
/// So many lines of others may stand within a report.
constexpr std::size_t kMostForeignLines = 20;
constexpr std::uint32_t kFileNotFound = 2;

/// How most formats begin: with the place of the call.
constexpr std::string_view kPlace = "%s:%d ";
/// What the first constant text of every format holds, so that other lines are quickly passed over.
constexpr std::string_view kAnchor = "::";

/// From kNoFile on, a message logs one of them at most.
enum class Kind { kMessage, kFile, kCommand, kAdapter, kReport, kNoFile, kNotLoaded, kEnd };

struct Format {
  constexpr Format(Kind ofKind, std::string_view format, std::string_view following = {})
      : kind(ofKind),
        text(format.substr(0, format.find('\n'))),
        details(text == format ? following : format.substr(text.size() + 1)),
        constant(text.starts_with(kPlace) ? kPlace.size() : 0),
        anchor(text.find(kAnchor) - constant) {}

  Kind kind;
  /// Its first line.
  std::string_view text;
  /// What follows on lines of its own, a format a line.
  std::string_view details;
  /// Where the first constant text behind the place begins, and the anchor in that.
  std::size_t constant;
  std::size_t anchor;
};

constexpr Format kFormats[] = {
    {Kind::kMessage, logging::kFindingHandler},
    {Kind::kFile, logging::kConfigFile},
    {Kind::kNoFile, logging::kNoFile},
    {Kind::kNotLoaded, logging::kNotLoaded},
    {Kind::kCommand, logging::kCommand},
    {Kind::kCommand, logging::kAdapterCommand},
    {Kind::kAdapter, logging::kAdapter},
    {Kind::kEnd, logging::kConfigError},
    {Kind::kEnd, logging::kGeneralError},
    {Kind::kReport, logging::kImageError},
    {Kind::kReport, logging::kCopyError},
    {Kind::kReport, logging::kUnknownError},
    {Kind::kReport, logging::kUnhandled, logging::kExceptionDetails},
};

using Values = std::vector<std::string_view>;

/// The texts in the places of the format's conversions. Nothing unless `text` begins as the format
/// and holds its other constant texts in order.
std::optional<Values> Match(std::string_view format, std::string_view text) {
  Values values;
  std::size_t conversion = std::min(format.find('%'), format.size());
  if (!text.starts_with(format.substr(0, conversion))) return std::nullopt;
  text.remove_prefix(conversion);
  while (conversion < format.size()) {
    format.remove_prefix(format.find_first_of("sdX", conversion) + 1);
    conversion = std::min(format.find('%'), format.size());
    const std::string_view constant = format.substr(0, conversion);
    const bool isLast = conversion == format.size();
    const std::size_t end = isLast ? text.rfind(constant) : text.find(constant);
    if (end == std::string_view::npos) return std::nullopt;
    values.push_back(text.substr(0, end));
    text.remove_prefix(end + constant.size());
  }
  return values;
}

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t end = text.find_last_not_of(" \r");
  return text.substr(0, end == std::string_view::npos ? 0 : end + 1);
}

std::string Text(std::string_view bytes) {
  return base::IsUtf8(bytes) ? std::string(bytes) : ToUtf8(bytes);
}

std::int32_t Number(std::string_view text) {
  return static_cast<std::int32_t>(ParseNumber(text).value_or(0));
}

/// The first line of the format whose anchor is this one, with the texts that it holds.
const Format* Recognize(std::string_view line, std::size_t anchor, Values& values) {
  for (const Format& format : kFormats) {
    if (format.anchor > anchor) continue;
    std::size_t start = anchor - format.anchor;
    if (line[start] != format.text[format.constant]) continue;
    if (format.constant > 0) start = line.find_last_of(" \t", start - 2) + 1;
    auto found = Match(format.text, line.substr(start));
    if (!found || (format.constant > 0 && !ParseNumber((*found)[1]))) continue;
    values = std::move(*found);
    return &format;
  }
  return nullptr;
}

}  // namespace

std::uint32_t LoggedFailure::Answer() const {
  const std::int32_t code = value.value_or(1);
  const std::uint32_t answer = systemError.value_or(0);
  const bool isOfWmi = source == "Wmi" || source.ends_with("OsVersion");
  if (isOfWmi && code < 0) return static_cast<std::uint32_t>(code);
  // These, and the registry but for keys (3), tell the last error of Windows, which may be older.
  const bool isOld = isOfWmi ? answer < 0x80000000U : source.ends_with("Registry") && code > 3;
  return isOld ? 0 : answer;
}

const Reading* LoggedFailure::Why() const {
  const bool isExitCode = source == "SetStaticRoute";
  const bool isOfAdapter = source.starts_with("Set");
  const Reading* const answer = isExitCode ? FindReading(NumberKind::kRecord, Answer(), source)
                                           : FindAnswer(Answer(), isOfAdapter);
  // Of an escaped error no value is told; what those need not ask Windows for has this one.
  const auto code = static_cast<std::uint32_t>(value.value_or(1));
  return answer != nullptr ? answer : FindReading(NumberKind::kRecord, code, source);
}

void LogReader::Read(std::string_view block) {
  while (!block.empty()) {
    const std::size_t end = std::min(block.find('\n'), block.size());
    const bool isWhole = end < block.size();
    if (isWhole && carried_.empty()) {
      ReadLine(block.substr(0, end));
    } else {
      carried_.append(block.substr(0, std::min(end, kLongestLine - carried_.size())));
      if (isWhole) {
        ReadLine(carried_);
        carried_.clear();
      }
    }
    block.remove_prefix(std::min(end + 1, block.size()));
  }
}

void LogReader::End() {
  ReadLine(carried_);
  if (story_) tell_(*story_);
  story_.reset();
}

void LogReader::ReadLine(std::string_view line) {
  line = WithoutBlanks(line.substr(0, kLongestLine));
  Values values;
  const Format* format = nullptr;
  std::size_t anchor = line.find(kAnchor);
  while (anchor != std::string_view::npos && format == nullptr) {
    format = Recognize(line, anchor, values);
    anchor = line.find(kAnchor, anchor + 1);
  }
  if (format == nullptr) {
    if (!details_.empty() && !ReadDetail(line) && ++foreignLines_ > kMostForeignLines) {
      details_ = {};
    }
    return;
  }
  const bool isNext = story_ && story_->failure && format->kind >= Kind::kNoFile;
  if (format->kind == Kind::kMessage || !story_ || isNext) {
    if (story_) tell_(*story_);
    story_.emplace();
    adapter_.clear();
  }
  details_ = {};
  LoggedFailure failure;
  switch (format->kind) {
    case Kind::kMessage:
      story_->type = Text(values[2]);
      story_->name = Text(values[3]);
      return;
    case Kind::kFile:
      story_->file = Text(values[2]);
      return;
    case Kind::kCommand: {
      // "SetDhcp" of "class config::command::SetDhcp".
      const std::string name = Text(values[0].substr(values[0].rfind(':') + 1));
      if (format->text == logging::kCommand) adapter_.clear();
      story_->steps.push_back(name + (values[1].empty() ? "" : " (" + Text(values[1]) + ")") +
                              adapter_);
      return;
    }
    case Kind::kAdapter:
      adapter_ = " on adapter " + Text(values[0]);
      return;
    case Kind::kNoFile:
      failure.text = "the file does not exist";
      failure.systemError = kFileNotFound;
      break;
    case Kind::kNotLoaded:
      failure.text = "the file cannot be loaded";
      failure.value = Number(values[3]);
      break;
    case Kind::kReport:
    case Kind::kEnd:
      break;
  }
  if (story_->failure) return;  // what fails now comes of the first failure
  failure.source = Text(values[0]);
  failure.line = Number(values[1]);
  story_->failure = std::move(failure);
  details_ = format->details;
  foreignLines_ = 0;
}

bool LogReader::ReadDetail(std::string_view line) {
  const std::size_t end = std::min(details_.find('\n'), details_.size());
  std::string_view format = WithoutBlanks(details_.substr(0, end));
  std::size_t start = line.find(format.substr(0, format.find('%')));
  if (format.starts_with('\t')) {
    // Set off with a tab, or with blanks in a report of this tool.
    format.remove_prefix(1);
    const std::size_t tab = line.rfind('\t');
    start = tab != std::string_view::npos ? tab + 1
            : line.starts_with(' ')       ? line.find_first_not_of(' ')
                                          : tab;
  }
  if (start == std::string_view::npos) return false;
  const auto values = Match(format, line.substr(start));
  if (!values) return false;
  LoggedFailure& failure = *story_->failure;
  if (values->size() == 2) {
    failure.value = Number(values->front());
    failure.systemError = ParseNumber("0x" + std::string(values->back()));
  } else {
    if (!ParseNumber((*values)[1])) return false;
    failure.source = Text(values->front());
    failure.line = Number((*values)[1]);
    const bool hasText = format.find("%s", 1) != std::string_view::npos;
    if (hasText) failure.text = Text((*values)[2]);
    if (!hasText || values->size() > 3) failure.systemError = ParseNumber(values->back());
  }
  details_.remove_prefix(std::min(end + 1, details_.size()));
  foreignLines_ = 0;
  return true;
}

}  // namespace tool::explain
