#include "platform/simulated/Secrets.h"

#include <algorithm>

#include "base/LetterCase.h"
#include "base/Nearest.h"
#include "base/Pieces.h"

namespace simulated {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::string_view kWords[] = {"pass", "pwd", "secret"};
constexpr std::string_view kNames[] = {"DomainUsername", "DomainPassword"};

/// Where the first of the words stands.
std::size_t WordIn(std::string_view text) {
  std::size_t first = kNowhere;
  for (const std::string_view word : kWords) first = std::min(first, base::Find(text, word));
  return first;
}

/// Where the name ends that an entry begins with, though something else than "=" may follow it.
std::size_t LeadEnd(std::string_view entry) {
  return std::min(entry.find_first_of(" \t:="), entry.size());
}

/// Hides what follows the first of the separators behind one of the words.
std::string RedactedBehind(std::string_view text, std::string_view separators) {
  const std::size_t word = WordIn(text);
  const std::size_t behind = word != kNowhere ? text.find_first_of(separators, word) : kNowhere;
  if (behind == kNowhere) return std::string(text);
  return std::string(text.substr(0, behind + 1)) + kHidden;
}

}  // namespace

bool NamesPassword(std::string_view name) { return WordIn(name) != kNowhere; }

bool NamesSecret(std::string_view name) {
  return NamesPassword(name) || base::Nearest(name, kNames);
}

std::size_t SecretLines::HiddenFrom(std::string_view line) {
  const std::string_view content = base::Trimmed(line);
  if (content.empty()) return kNowhere;
  const std::size_t from = Judge(content);
  if (from >= content.size()) return kNowhere;
  return static_cast<std::size_t>(content.data() - line.data()) + from;
}

std::size_t SecretLines::Judge(std::string_view line) {
  const bool isComment = line[0] == ';' || line[0] == '#';
  const std::size_t equals = line.find('=');
  if (line[0] == '[') {
    return equals != kNowhere && NamesPassword(line) ? equals + 1 : kNowhere;
  }
  if (!isComment && equals == kNowhere && goesOn_) return 0;
  // The end of a cipher text may look like an entry: "AB12==".
  const bool isTail = equals != kNowhere && line.find_first_not_of('=', equals) == kNowhere;
  if (!isComment && isTail && goesOn_) return 0;

  // A comment may be an entry that somebody took out.
  const std::string_view entry = base::Trimmed(line.substr(isComment ? 1 : 0));
  const std::size_t start = line.size() - entry.size();
  const std::size_t lead = LeadEnd(entry);
  const std::string_view key = base::Trimmed(line.substr(start, equals - start));
  const bool isNamed = NamesSecret(entry.substr(0, lead));
  goesOn_ = isNamed || NamesPassword(line) || (equals != kNowhere && NamesSecret(key));
  if (!goesOn_) return kNowhere;
  if (isNamed && lead < key.size()) return start + lead;
  if (isNamed || (equals != kNowhere && NamesSecret(key))) return std::min(equals, line.size()) + 1;
  if (isComment) return 1;
  return equals != kNowhere ? equals + 1 : 0;
}

std::string RedactedFile(std::string_view text) {
  std::string shown;
  SecretLines lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size() - 1) + 1;
    const std::string_view line = text.substr(start, end - start);
    const std::size_t lineEnd = std::min(line.find_last_not_of("\r\n") + 1, line.size());
    const std::size_t from = lines.HiddenFrom(line.substr(0, lineEnd));
    if (from != kNowhere) {
      shown.append(line.substr(0, from)).append(kHidden).append(line.substr(lineEnd));
    } else {
      shown += line;
    }
    start = end;
  }
  return shown;
}

std::string RedactedText(std::string_view text) { return RedactedBehind(text, "="); }

std::string RedactedValue(std::string_view value) {
  if (value.find('\n') != kNowhere) return RedactedFile(value);
  return RedactedBehind(value, " \t:=");
}

Change Redacted(Change change) {
  const bool writesSecret = change.call == "file.write" && NamesSecret(change["key"].Text());
  for (auto& [name, value] : change.fields) {
    if (writesSecret && name == "value") value = kHidden;
    auto* const arguments = std::get_if<Fields>(&value);
    if (arguments == nullptr) continue;
    for (auto& [argument, given] : *arguments) {
      if (NamesPassword(argument) && std::holds_alternative<std::string>(given)) given = kHidden;
    }
  }
  return change;
}

}  // namespace simulated
