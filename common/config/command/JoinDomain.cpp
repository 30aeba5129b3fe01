#include "common/config/command/JoinDomain.h"

#include "base/LetterCase.h"
#include "common/sys/Domain.h"

namespace config::command {

void JoinDomain::Execute() {
  sys::Domain& domain = sys::Domain::Instance();
  domain.SetCredentials(User(), Password());
  domain.JoinDomainAndOu(dnsDomain_, ou_, joinBeforeRename_);
}

bool JoinDomain::Differs(Comparison* comparison) {
  const bool byDns = !dnsDomain_.empty();
  const bool byWindows = !windowsDomain_.empty();
  if (!byDns && !byWindows) return false;
  sys::Domain& domain = sys::Domain::Instance();
  const std::string dns = byDns ? domain.GetDnsDomainName() : "";
  const std::string windows = byWindows ? domain.GetDomainName() : "";
  if (comparison != nullptr)
    comparison->Set(byDns ? dns : windows, byDns ? dnsDomain_ : windowsDomain_);
  return !(byDns && base::SameText(dnsDomain_, dns)) &&
         !(byWindows && base::SameText(windowsDomain_, windows));
}

std::string JoinDomain::Describe() {
  return "DNS Domain=" + dnsDomain_ + ", Windows Domain=" + windowsDomain_ + " {User=" + User() +
         "}";
}

}  // namespace config::command
