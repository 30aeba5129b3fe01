#include "tool/check/Findings.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

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
  return ++counts_[static_cast<std::size_t>(KindOf(code).severity)] <= kMostOfSeverity;
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
