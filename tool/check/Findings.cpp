#include "tool/check/Findings.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

#include "base/LetterCase.h"
#include "base/Utf8.h"
#include "tool/io/CodePage.h"
#include "tool/io/Text.h"

namespace tool::check {
namespace {

constexpr std::size_t kLongestQuote = 60;

std::string HintFor(Code code, std::string hint) {
  return hint.empty() ? KindOf(code).hint : std::move(hint);
}

/// The message, or the finding's title when it would repeat what the excerpt hides.
std::string MessageFor(Code code, const Document& document, Span span, std::string message) {
  const std::string_view hidden = document.Hidden(span).substr(0, kLongestQuote);
  const bool tells = !hidden.empty() && message.find(hidden) != std::string::npos;
  return tells ? KindOf(code).title : std::move(message);
}

}  // namespace

bool Findings::Counts(Code code) {
  isLastKept_ = ++counts_[static_cast<std::size_t>(KindOf(code).severity)] <= most_;
  return isLastKept_;
}

void Findings::At(Code code, Span span, std::string message, std::string hint) {
  if (!Counts(code)) return;
  findings_.push_back(FindingAt(document_, code, span, std::move(message), std::move(hint)));
}

void Findings::OfItem(Code code, const Item& item, const std::string& what, std::string hint) {
  At(code, item.span, Quoted(item.text) + " " + what, std::move(hint));
}

void Findings::AtLine(Code code, std::uint32_t line, std::string message, std::string hint) {
  At(code, document_.ItemOf(line).span, std::move(message), std::move(hint));
}

void Findings::AtKey(Code code, const PlacedEntry& entry, std::string message, std::string hint) {
  At(code, document_.KeySpan(entry), std::move(message), std::move(hint));
}

void Findings::AtValue(Code code, const PlacedEntry& entry, std::string message, std::string hint) {
  At(code, document_.ValueSpan(entry), std::move(message), std::move(hint));
}

void Findings::AtHeader(Code code, const Section& section, std::string message, std::string hint) {
  AtLine(code, section.headers[0], std::move(message), std::move(hint));
}

void Findings::OfFile(Code code, std::string message) {
  if (Counts(code)) findings_.push_back(FindingOfFile(code, std::move(message)));
}

void Findings::FixBy(Span span, std::string text) {
  if (!isLastKept_ || findings_.back().edit || !document_.LinesOf(span)) return;
  const auto placeAt = [&](std::size_t offset) { return document_.PlaceOf({offset, 0}); };
  findings_.back().edit =
      Edit{span, std::move(text), placeAt(span.offset), placeAt(span.offset + span.length)};
}

void Findings::FixByMoving(const Item& comment, std::uint32_t line) {
  const std::size_t begin = document_.ItemOf(line).span.offset;
  const std::size_t end = comment.span.offset + comment.span.length;
  const auto lines = document_.LinesOf({begin, end - begin});
  const bool isComment = comment.text.starts_with(';') || comment.text.starts_with('#');
  const bool isMiddle = document_.Lines()[line].kind == ConfigFile::Line::Kind::kContinuation;
  // An allowance would begin to count.
  const bool isAllowance = base::Find(comment.text, "orvanta:") != std::string_view::npos;
  if (!lines || !isComment || isMiddle || isAllowance) return;
  const Span rest{lines->span.offset, comment.span.offset - lines->span.offset};
  const std::string_view kept = lines->text.substr(0, rest.length);
  FixBy({rest.offset, rest.length + comment.span.length},
        std::string(comment.text) + document_.LineEnding(end) +
            std::string(kept.substr(0, kept.find_last_not_of(" \t") + 1)));
}

std::vector<Finding> Findings::Take() {
  const std::size_t all = std::accumulate(counts_.begin(), counts_.end(), std::size_t{0});
  const std::size_t leftOut = all - findings_.size();
  if (leftOut > 0) {
    findings_.push_back(FindingOfFile(Code::kManyFindings,
                                      std::to_string(leftOut) + " more findings are not shown"));
  }
  SortByPlace(findings_);
  return std::move(findings_);
}

Finding FindingAt(const Document& document, Code code, Span span, std::string message,
                  std::string hint) {
  return {code, ToUtf8(MessageFor(code, document, span, std::move(message))),
          ToUtf8(HintFor(code, std::move(hint))), document.PlaceOf(span), document.ExcerptOf(span)};
}

Finding FindingOfFile(Code code, std::string message) {
  return {code, std::move(message), KindOf(code).hint, {}, {}};
}

void SortByPlace(std::vector<Finding>& findings) {
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
    return std::tuple(a.place.line, a.place.column) < std::tuple(b.place.line, b.place.column);
  });
}

std::string Quoted(std::string_view text) {
  const bool isLong = text.size() > kLongestQuote;
  std::size_t length = std::min(text.size(), kLongestQuote);
  while (isLong && length > 0 && base::IsMiddleOfCharacter(text[length])) --length;
  return "\"" + std::string(text.substr(0, length)) + (isLong ? "..." : "") + "\"";
}

}  // namespace tool::check
