#include "tool/check/rules/FleetRules.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "common/util/Text.h"
#include "platform/simulated/Secrets.h"

namespace tool::check {
namespace {

std::string_view NounOf(Code code) {
  if (code == Code::kFleetComputerName) return "computer name ";
  return code == Code::kFleetAddress ? "address " : "MAC address ";
}

class Claims {
 public:
  explicit Claims(const Document& document) : document_(document) {}

  void Add(Code code, std::string identity, const Span& span, std::string_view text) {
    const bool isHidden = !document_.Hidden(span).empty();
    claims_.push_back({code, std::move(identity), isHidden ? simulated::kHidden : std::string(text),
                       document_.PlaceOf(span), document_.ExcerptOf(span)});
  }

  std::vector<Claim> Take() { return std::move(claims_); }

 private:
  const Document& document_;
  std::vector<Claim> claims_;
};

struct FirstClaim {
  std::size_t report;
  Place place;
};

}  // namespace

std::vector<Claim> ClaimsOf(const Document& document, const Wishes& wishes) {
  Claims claims(document);
  if (const Section* const section = wishes.identity.section) {
    if (const Entry* const name = section->Find(Key::kComputerName)) {
      std::string identity(name->FirstLine());
      util::ToUpper(identity);
      claims.Add(Code::kFleetComputerName, std::move(identity), document.ValueSpan(*name),
                 name->FirstLine());
    }
  }
  for (const Adapter& adapter : wishes.adapters) {
    if (!adapter.mac.empty()) {
      const Entry& entry = *adapter.section->Find(Key::kMacAddress);
      claims.Add(Code::kFleetMacAddress, adapter.mac, document.ValueSpan(entry), entry.FirstLine());
    }
    if (adapter.addressing != Adapter::Addressing::kStatic) continue;
    for (const Address& address : adapter.addresses) {
      if (!address.bits) continue;
      claims.Add(Code::kFleetAddress, std::to_string(*address.bits), address.item.span,
                 address.item.text);
    }
  }
  return claims.Take();
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
           std::string(NounOf(claim.code)) + Quoted(claim.text) + " is given in " + other.file +
               ":" + std::to_string(other.place.line) + ", too",
           KindOf(claim.code).hint, claim.place, std::move(claim.excerpt), std::move(other)});
    }
    if (report.findings.size() != before) SortByPlace(report.findings);
  }
}

}  // namespace tool::check
