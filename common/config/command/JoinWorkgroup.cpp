#include "common/config/command/JoinWorkgroup.h"

#include "common/sys/Domain.h"
#include "common/util/Text.h"

namespace config::command {

void JoinWorkgroup::Execute() {
  sys::Domain& domain = sys::Domain::Instance();
  domain.SetCredentials(User(), Password());
  domain.JoinWorkgroup(workgroup_);
}

bool JoinWorkgroup::IsNeeded() {
  return !workgroup_.empty() &&
         !util::EqualsIgnoringCase(workgroup_, sys::Domain::Instance().GetWorkgroup());
}

std::string JoinWorkgroup::Describe() {
  return "Workgroup=" + workgroup_ + " {User=" + User() + "}";
}

}  // namespace config::command
