#include "common/config/command/JoinWorkgroup.h"

#include "base/LetterCase.h"
#include "common/sys/Domain.h"

namespace config::command {

void JoinWorkgroup::Execute() {
  sys::Domain& domain = sys::Domain::Instance();
  domain.SetCredentials(User(), Password());
  domain.JoinWorkgroup(workgroup_);
}

Comparison JoinWorkgroup::Compare() {
  if (workgroup_.empty()) return {.needed = false};
  const std::string current = sys::Domain::Instance().GetWorkgroup();
  return {!base::SameText(workgroup_, current), current, workgroup_};
}

std::string JoinWorkgroup::Describe() {
  return "Workgroup=" + workgroup_ + " {User=" + User() + "}";
}

}  // namespace config::command
