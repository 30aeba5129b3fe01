#include "tool/check/rules/FleetRules.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "base/LetterCase.h"
#include "platform/simulated/Secrets.h"
#include "tool/io/CodePage.h"

namespace tool::check {
namespace {

std::string_view NounOf(Code code) {
  if (code == Code::kFleetComputerName) return "computer name ";
  return code == Code::kFleetAddress ? "address " : "MAC address ";
}

struct FirstClaim {
  std::size_t report;
  Place place;
};

}  // namespace

std::vector<Claim> ClaimsOf(const DesiredState& desired) {
  const Document& document = desired.document;
  std::vector<Claim> claims;
  const auto add = [&](Code code, const std::string& identity, Span span, std::string_view text) {
    const bool isHidden = !document.Hidden(span).empty();
    claims.push_back({code, identity, isHidden ? simulated::kHidden : ToUtf8(text),
                      document.PlaceOf(span), document.ExcerptOf(span)});
  };
  if (const Entry* const name = desired.identity.Find(Key::kComputerName)) {
    std::string identity(name->FirstLine());
    base::ToUpper(identity);
    add(Code::kFleetComputerName, identity, document.ValueSpan(*name), name->FirstLine());
  }
  for (const DesiredAdapter& adapter : desired.adapters) {
    if (!adapter.mac.empty()) {
      const Entry& entry = *adapter.section->Find(Key::kMacAddress);
      add(Code::kFleetMacAddress, adapter.mac, document.ValueSpan(entry), entry.FirstLine());
    }
    if (!adapter.IsStatic()) continue;
    for (const auto& [item, bits] : adapter.addresses) {
      if (bits) add(Code::kFleetAddress, std::to_string(*bits), item.span, item.text);
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
      const std::string key = std::string(KindOf(claim.code).id) + claim.identity;
      const auto [first, isNew] = firsts.try_emplace(key, FirstClaim{i, claim.place});
      // Within a file that is a finding of its own.
      if (isNew || first->second.report == i) continue;
      RelatedPlace other{reports[first->second.report].file, first->second.place};
      report.findings.push_back(
          {claim.code,
           std::string(NounOf(claim.code)) + Quoted(claim.text) + " is also given in " +
               other.file + ":" + std::to_string(other.place.line),
           KindOf(claim.code).hint, claim.place, std::move(claim.excerpt), std::move(other)});
    }
    if (report.findings.size() != before) SortByPlace(report.findings);
  }
}

}  // namespace tool::check
