#include "common/config/analyzer/WindowsVistaAnalyzer.h"

#include "common/config/command/ConfigureNic.h"
#include "common/config/command/SetStatic.h"
#include "common/config/command/Sleep.h"

namespace config::analyzer {
namespace {

/// The system needs this long to bring up a static address.
constexpr std::uint32_t kAfterStaticMs = 20000;

}  // namespace

void WindowsVistaAnalyzer::Reorder(command::CommandList& commands) {
  for (const auto& command : commands) {
    auto* nic = dynamic_cast<command::ConfigureNic*>(command.get());
    if (nic == nullptr) continue;
    const auto first = FindFirst<command::SetStatic>(nic->Commands());
    if (first == nic->Commands().end()) continue;
    nic->Commands().insert(std::next(first), std::make_unique<command::Sleep>(kAfterStaticMs));
  }
  next_.Reorder(commands);
}

}  // namespace config::analyzer
