// Membership of a domain.
#pragma once

#include "common/config/command/DomainCommand.h"

namespace config::command {

class JoinDomain final : public DomainCommand {
 public:
  explicit JoinDomain(std::string dnsDomain) : dnsDomain_(std::move(dnsDomain)) {}

  /// Where the computer's account belongs; empty for the directory's default.
  void SetOu(std::string ou) { ou_ = std::move(ou); }
  /// The rename follows in the same run, so the service principal names wait for it.
  void SetJoinBeforeRename() { joinBeforeRename_ = true; }

  /// Throws sys::DomainError or sys::CWmiError.
  void Execute() override {
    DomainWithAccount().JoinDomainAndOu(dnsDomain_, ou_, joinBeforeRename_);
  }

  /// Not needed for an empty domain and for the current one in any letter case.
  bool Differs(Comparison* comparison) override {
    const bool byDns = !dnsDomain_.empty();
    const bool byWindows = !windowsDomain_.empty();
    if (!byDns && !byWindows) return false;
    sys::Domain& domain = sys::Domain::Instance();
    const std::string dns = byDns ? domain.GetDnsDomainName() : "";
    const std::string windows = byWindows ? domain.GetDomainName() : "";
    if (comparison != nullptr) {
      comparison->Set(byDns ? dns : windows, byDns ? dnsDomain_ : windowsDomain_);
    }
    return !(byDns && base::SameText(dnsDomain_, dns)) &&
           !(byWindows && base::SameText(windowsDomain_, windows));
  }

  /// "DNS Domain=corp.example, Windows Domain= {User=jdoe}".
  std::string Describe() override {
    return "DNS Domain=" + dnsDomain_ + ", Windows Domain=" + windowsDomain_ + " {User=" + User() +
           "}";
  }

 private:
  std::string dnsDomain_;
  std::string windowsDomain_;  // no event fills it yet
  std::string ou_;
  bool joinBeforeRename_ = false;
};

}  // namespace config::command
