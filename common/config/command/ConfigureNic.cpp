#include "common/config/command/ConfigureNic.h"

#include <numeric>

#include "common/config/ConfigError.h"
#include "common/config/command/NicCommand.h"
#include "common/logging/LogLines.h"
#include "common/util/ClassName.h"

namespace config::command {
namespace {

// The doubled word belongs to the text.
constexpr err::Site kNoAdapter{R"(common\config\command\ConfigureNic)",
                               "ConfigureNic has not been been associated with a nic index", 68};

}  // namespace

void ConfigureNic::Execute() {
  if (index_ == kUnset) throw ConfigError{kNoAdapter, /*value=*/0, /*systemError=*/0};
  log_.Log(logging::kDetail, logging::kAdapter, index_);
  for (const auto& owned : commands_) {
    IConfigureCommand& command = *owned;
    SetIndexOf(command);
    if (!command.IsNeeded()) continue;
    log_.Log(logging::kDetail, logging::kAdapterCommand, util::ClassName(typeid(command)).c_str(),
             command.Describe().c_str());
    command.Execute();
  }
}

void ConfigureNic::SetIndexOf(IConfigureCommand& command) const {
  if (auto* nicCommand = dynamic_cast<NicCommand*>(&command)) nicCommand->SetIndex(index_);
}

Comparison ConfigureNic::CompareAdapter(IConfigureCommand& command) const {
  SetIndexOf(command);
  return command.Compare();
}

std::uint32_t ConfigureNic::PauseMs() const {
  return std::accumulate(
      commands_.begin(), commands_.end(), std::uint32_t{0},
      [](std::uint32_t sum, const auto& command) { return sum + command->PauseMs(); });
}

}  // namespace config::command
