#include "common/config/command/MoveOu.h"

#include "base/LetterCase.h"
#include "common/sys/Domain.h"

namespace config::command {

void MoveOu::Execute() {
  sys::Domain& domain = sys::Domain::Instance();
  domain.SetCredentials(User(), Password());
  domain.MoveOu(ou_);
}

bool MoveOu::Differs(Comparison* comparison) {
  sys::Domain& domain = sys::Domain::Instance();
  if (!domain.IsDomainMember()) {
    if (comparison != nullptr) comparison->Set("no domain", ou_);
    return false;
  }
  if (User().empty() && ou_.empty()) return false;
  domain.SetCredentials(User(), Password());  // reading the current OU may need them
  const std::string dnsDomain = domain.GetDnsDomainName();
  const std::string current = sys::BuildDn(dnsDomain, domain.GetOu(/*asDn=*/false));
  const std::string wanted = sys::BuildDn(dnsDomain, ou_);
  if (comparison != nullptr) comparison->Set(current, wanted);
  return !base::SameText(wanted, current);
}

std::string MoveOu::Describe() { return "OU=" + ou_; }

}  // namespace config::command
