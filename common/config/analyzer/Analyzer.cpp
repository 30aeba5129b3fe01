#include "common/config/analyzer/Analyzer.h"

#include <algorithm>
#include <memory>
#include <typeinfo>
#include <utility>

#include "common/config/analyzer/AdapterBinding.h"
#include "common/config/command/ChangeCompName.h"
#include "common/config/command/JoinDomain.h"
#include "common/config/command/JoinWorkgroup.h"
#include "common/config/command/Reboot.h"
#include "common/sys/Domain.h"

namespace config::analyzer {
namespace {

bool NeedsRestart(const std::unique_ptr<command::IConfigureCommand>& command) {
  const command::IConfigureCommand& candidate = *command;
  const std::type_info& type = typeid(candidate);
  if (type == typeid(command::ChangeCompName) || type == typeid(command::JoinDomain)) return true;
  return type == typeid(command::JoinWorkgroup) && sys::Domain::Instance().IsDomainMember();
}

}  // namespace

Analysis Analyzer::Analyze(command::CommandList& commands) {
  Analysis analysis;
  // One by one: when a question to the machine throws, the queue still holds whole commands.
  for (auto command = commands.begin(); command != commands.end();) {
    command::Comparison comparison = (*command)->Compare();
    const bool needed = comparison.needed;
    analysis.comparisons.emplace(command->get(), std::move(comparison));
    if (needed) {
      ++command;
    } else {
      analysis.dropped.push_back(std::move(*command));
      command = commands.erase(command);
    }
  }
  analysis.adapters = BindAdapters(commands);
  Reorder(commands);
  if (std::any_of(commands.begin(), commands.end(), NeedsRestart)) {
    commands.push_back(std::make_unique<command::Reboot>());
  }
  return analysis;
}

}  // namespace config::analyzer
