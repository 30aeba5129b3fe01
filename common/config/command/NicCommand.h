// A command that changes one network adapter.
#pragma once

#include <cstdint>

#include "common/config/ConfigError.h"
#include "common/config/command/IConfigureCommand.h"

namespace config::command {

class NicCommand : public IConfigureCommand {
 public:
  /// The `Index` of the adapter; set before the command is asked or run.
  void SetIndex(std::uint32_t index) { index_ = index; }

 protected:
  std::uint32_t Index() const { return index_; }

  /// Throws ConfigError (value 4) unless a method answered 0 (done) or 1 (done after a restart).
  static void RequireDone(std::int32_t result, const err::Site& failure) {
    if (result != 0 && result != 1) {
      throw ConfigError{failure, /*value=*/4, static_cast<std::uint32_t>(result)};
    }
  }

 private:
  std::uint32_t index_ = 0;
};

}  // namespace config::command
