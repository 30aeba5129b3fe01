#include <algorithm>
#include <unordered_map>
#include <utility>

#include "base/LetterCase.h"
#include "platform/simulated/Secrets.h"
#include "tool/check/rules/Rules.h"
#include "tool/io/CodePage.h"

namespace tool::check {
namespace {

struct FirstClaim {
  std::size_t report;
  Place place;
};

}  // namespace

std::vector<Claim> ClaimsOf(const DesiredState& desired) {
  const Document& document = desired.document;
  std::vector<Claim> claims;
  const auto add = [&](Code code, const char* noun, const std::string& identity, Span span,
                       std::string_view text) {
    const bool isHidden = !document.Hidden(span).empty();
    const std::string shown = isHidden ? simulated::kHidden : ToUtf8(text);
    claims.push_back({KindOf(code).id + identity,
                      {code, noun + (" " + Quoted(shown)), KindOf(code).hint,
                       document.PlaceOf(span), document.ExcerptOf(span)}});
  };
  if (const PlacedEntry* const name = desired.identity.Find(Key::kComputerName)) {
    std::string identity(name->FirstLine());
    base::ToUpper(identity);
    add(Code::kFleetComputerName, "computer name", identity, document.ValueSpan(*name),
        name->FirstLine());
  }
  for (const DesiredAdapter& adapter : desired.adapters) {
    if (!adapter.mac.empty()) {
      const PlacedEntry& entry = *adapter.section->Find(Key::kMacAddress);
      add(Code::kFleetMacAddress, "MAC address", adapter.mac, document.ValueSpan(entry),
          entry.FirstLine());
    }
    if (!adapter.IsStatic()) continue;
    for (const auto& [item, bits] : adapter.addresses) {
      if (bits) add(Code::kFleetAddress, "address", std::to_string(*bits), item.span, item.text);
    }
  }
  return claims;
}

void CheckFleet(std::vector<FileReport>& reports) {
  std::unordered_map<std::string, FirstClaim> firsts;
  for (std::size_t i = 0; i < reports.size(); ++i) {
    FileReport& report = reports[i];
    const std::size_t before = report.findings.size();
    for (Claim& claim : report.claims) {
      Finding& finding = claim.finding;
      const auto [first, isNew] = firsts.try_emplace(claim.identity, FirstClaim{i, finding.place});
      // Within a file that is a finding of its own.
      if (isNew || first->second.report == i) continue;
      finding.related = {reports[first->second.report].file, first->second.place};
      finding.message += " is also given in " + finding.related->file + ":" +
                         std::to_string(finding.related->place.line);
      report.findings.push_back(std::move(finding));
    }
    if (report.findings.size() != before) SortByPlace(report.findings);
  }
}

}  // namespace tool::check
