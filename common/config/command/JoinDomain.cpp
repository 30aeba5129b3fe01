#include "common/config/command/JoinDomain.h"

#include "common/sys/Domain.h"
#include "common/util/Text.h"

namespace config::command {

void JoinDomain::Execute() {
  sys::Domain& domain = sys::Domain::Instance();
  domain.SetCredentials(User(), Password());
  domain.JoinDomainAndOu(dnsDomain_, ou_, joinBeforeRename_);
}

bool JoinDomain::IsNeeded() {
  if (dnsDomain_.empty() && windowsDomain_.empty()) return false;
  sys::Domain& domain = sys::Domain::Instance();
  const bool sameDns =
      !dnsDomain_.empty() && util::EqualsIgnoringCase(dnsDomain_, domain.GetDnsDomainName());
  const bool sameWindows =
      !windowsDomain_.empty() && util::EqualsIgnoringCase(windowsDomain_, domain.GetDomainName());
  return !sameDns && !sameWindows;
}

std::string JoinDomain::Describe() {
  return "DNS Domain=" + dnsDomain_ + ", Windows Domain=" + windowsDomain_ + " {User=" + User() +
         "}";
}

}  // namespace config::command
