#include "common/config/analyzer/SettingsAnalyzer.h"

#include <algorithm>

#include "common/config/command/ChangeCompName.h"
#include "common/config/command/JoinDomain.h"
#include "common/config/command/Reboot.h"
#include "common/config/command/Sleep.h"

namespace config::analyzer {
namespace {

/// Domain controllers need a moment before they know a computer that has just joined.
constexpr std::uint32_t kAfterJoinMs = 8000;

}  // namespace

void SettingsAnalyzer::Reorder(command::CommandList& commands) {
  auto join = FindFirst<command::JoinDomain>(commands);
  auto rename = FindFirst<command::ChangeCompName>(commands);
  if (join == commands.end() || rename == commands.end()) return;

  const bool joinFirst = *joinFirst_;
  if (joinFirst != (join < rename)) {
    std::iter_swap(join, rename);
    std::swap(join, rename);
  }
  if (joinFirst) {
    static_cast<command::JoinDomain&>(**join).SetJoinBeforeRename();
    commands.insert(std::next(join), std::make_unique<command::Sleep>(kAfterJoinMs));
  } else {
    commands.insert(std::next(rename), std::make_unique<command::Reboot>());
  }
}

}  // namespace config::analyzer
