#include "common/config/analyzer/Analyzer.h"

#include <iterator>
#include <typeinfo>

#include "common/config/analyzer/AdapterBinding.h"
#include "common/config/command/ChangeCompName.h"
#include "common/config/command/JoinDomain.h"
#include "common/config/command/JoinWorkgroup.h"
#include "common/config/command/Reboot.h"
#include "common/sys/Domain.h"

namespace config::analyzer {
namespace {

/// One by one: when a question to the machine throws, the queue still holds whole commands.
void DropUnneeded(command::CommandList& commands, Analysis* analysis) {
  for (auto command = commands.begin(); command != commands.end();) {
    bool needed = false;
    if (analysis == nullptr) {
      needed = (*command)->IsNeeded();
    } else {
      needed =
          analysis->comparisons.emplace(command->get(), (*command)->Compare()).first->second.needed;
      if (!needed) analysis->dropped.push_back(std::move(*command));
    }
    command = needed ? std::next(command) : commands.erase(command);
  }
}

}  // namespace

void Analyzer::Analyze(command::CommandList& commands, Analysis* analysis) {
  Prepare(commands);
  DropUnneeded(commands, analysis);
  std::unique_ptr<sys::NicList> adapters = BindAdapters(commands);
  if (analysis != nullptr) analysis->adapters = std::move(adapters);
  Reorder(commands);
  if (std::any_of(commands.begin(), commands.end(),
                  [this](const auto& command) { return NeedsRestart(*command); })) {
    commands.push_back(std::make_unique<command::Reboot>());
  }
  Finish(commands);
}

bool Analyzer::NeedsRestart(const command::IConfigureCommand& command) {
  bool needed = false;
  if (NeedsReboot(command, &needed)) return needed;
  const std::type_info& type = typeid(command);
  if (type == typeid(command::ChangeCompName) || type == typeid(command::JoinDomain)) return true;
  return type == typeid(command::JoinWorkgroup) && sys::Domain::Instance().IsDomainMember();
}

}  // namespace config::analyzer
