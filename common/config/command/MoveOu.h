// The organizational unit of the computer's account.
#pragma once

#include "common/config/command/DomainCommand.h"

namespace config::command {

class MoveOu final : public DomainCommand {
 public:
  explicit MoveOu(std::string ou) : ou_(std::move(ou)) {}

  /// Throws sys::DomainError or sys::CWmiError.
  void Execute() override { DomainWithAccount().MoveOu(ou_); }

  /// Not needed on a workgroup machine, without user and OU, and when the account is in the OU
  /// already.
  bool Differs(Comparison* comparison) override {
    if (!sys::Domain::Instance().IsDomainMember()) {
      if (comparison != nullptr) comparison->Set("no domain", ou_);
      return false;
    }
    if (User().empty() && ou_.empty()) return false;
    sys::Domain& domain = DomainWithAccount();  // reading the current OU may need it
    const std::string dnsDomain = domain.GetDnsDomainName();
    const std::string current = sys::BuildDn(dnsDomain, domain.GetOu(/*asDn=*/false));
    const std::string wanted = sys::BuildDn(dnsDomain, ou_);
    if (comparison != nullptr) comparison->Set(current, wanted);
    return !base::SameText(wanted, current);
  }

  /// "OU=Sales/Europe".
  std::string Describe() override { return "OU=" + ou_; }

 private:
  std::string ou_;
};

}  // namespace config::command
