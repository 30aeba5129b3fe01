#include "common/config/analyzer/WindowsVistaAnalyzer.h"

#include "common/config/command/ConfigureNic.h"
#include "common/config/command/SetStatic.h"
#include "common/config/command/Sleep.h"

namespace config::analyzer {
namespace {

/// The system needs this long to bring up a static address.
constexpr std::uint32_t kAfterStaticMs = 20000;

void PauseAfterStatic(command::CommandList& commands) {
  const auto first = FindFirst<command::SetStatic>(commands);
  if (first != commands.end()) {
    commands.insert(std::next(first), std::make_unique<command::Sleep>(kAfterStaticMs));
  }
}

}  // namespace

void WindowsVistaAnalyzer::Reorder(command::CommandList& commands) {
  for (const auto& command : commands) {
    if (auto* nic = dynamic_cast<command::ConfigureNic*>(command.get())) {
      PauseAfterStatic(nic->Commands());
    }
  }
  next_.Reorder(commands);
}

}  // namespace config::analyzer
