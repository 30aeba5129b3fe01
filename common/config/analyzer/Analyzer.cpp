#include "common/config/analyzer/Analyzer.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <typeinfo>

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

void Analyzer::Analyze(command::CommandList& commands) {
  // One by one: when a question to the machine throws, the queue still holds whole commands.
  for (auto command = commands.begin(); command != commands.end();) {
    command = (*command)->IsNeeded() ? std::next(command) : commands.erase(command);
  }
  BindAdapters(commands);
  Reorder(commands);
  if (std::any_of(commands.begin(), commands.end(), NeedsRestart)) {
    commands.push_back(std::make_unique<command::Reboot>());
  }
}

}  // namespace config::analyzer
