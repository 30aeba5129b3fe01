#include "common/config/command/JoinWorkgroup.h"

#include "base/LetterCase.h"
#include "common/sys/Domain.h"

namespace config::command {

void JoinWorkgroup::Execute() {
  sys::Domain& domain = sys::Domain::Instance();
  domain.SetCredentials(User(), Password());
  domain.JoinWorkgroup(workgroup_);
}

bool JoinWorkgroup::Differs(Comparison* comparison) {
  if (workgroup_.empty()) return false;
  const std::string current = sys::Domain::Instance().GetWorkgroup();
  if (comparison != nullptr) comparison->Set(current, workgroup_);
  return !base::SameText(workgroup_, current);
}

std::string JoinWorkgroup::Describe() {
  return "Workgroup=" + workgroup_ + " {User=" + User() + "}";
}

}  // namespace config::command
