// A command that changes one network adapter.
#pragma once

#include "common/config/ConfigError.h"
#include "common/config/command/IConfigureCommand.h"

namespace config::command {

class NicCommand : public IConfigureCommand {
 public:
  /// The `Index` of the adapter; set before the command is asked or run.
  void SetIndex(std::uint32_t index) { index_ = index; }

 protected:
  std::uint32_t Index() const { return index_; }

 private:
  std::uint32_t index_ = 0;
};

}  // namespace config::command
