#include "common/config/command/ChangeCompName.h"

#include "base/LetterCase.h"
#include "common/config/ConfigError.h"
#include "common/sys/Wmi.h"

namespace config::command {
namespace {

constexpr err::Site kFailed{"ChangeCompName", "Configuring computer name failed", 45};

}  // namespace

void ChangeCompName::Execute() {
  const std::int32_t result = sys::Wmi::SetComputerName(name_, User(), Password());
  if (result != 0 && result != 1) {
    throw ConfigError{kFailed, /*value=*/4, static_cast<std::uint32_t>(result)};
  }
}

bool ChangeCompName::Differs(Comparison* comparison) {
  if (name_.empty()) return false;
  std::string current;
  sys::Wmi::GetComputerName(&current);
  if (comparison != nullptr) comparison->Set(current, name_);
  return !base::SameText(name_, current);
}

std::string ChangeCompName::Describe() { return "Name=" + name_ + " {User=" + User() + "}"; }

}  // namespace config::command
