#include "common/config/command/MoveOu.h"

#include "common/sys/Domain.h"
#include "common/util/Text.h"

namespace config::command {

void MoveOu::Execute() {
  sys::Domain& domain = sys::Domain::Instance();
  domain.SetCredentials(User(), Password());
  domain.MoveOu(ou_);
}

bool MoveOu::IsNeeded() {
  sys::Domain& domain = sys::Domain::Instance();
  if (!domain.IsDomainMember() || (User().empty() && ou_.empty())) return false;
  domain.SetCredentials(User(), Password());  // reading the current OU may need them
  const std::string dnsDomain = domain.GetDnsDomainName();
  const std::string current = sys::BuildDn(dnsDomain, domain.GetOu(/*asDn=*/false));
  return !util::EqualsIgnoringCase(sys::BuildDn(dnsDomain, ou_), current);
}

std::string MoveOu::Describe() { return "OU=" + ou_; }

}  // namespace config::command
