// A pause between commands.
#pragma once

#include <cstdint>

#include "common/config/command/IConfigureCommand.h"

namespace config::command {

class Sleep final : public IConfigureCommand {
 public:
  explicit Sleep(std::uint32_t milliseconds) : milliseconds_(milliseconds) {}

  /// Suspends the calling thread.
  void Execute() override;
  /// "Duration=8000 milliseconds".
  std::string Describe() override;
  std::uint32_t PauseMs() const override { return milliseconds_; }

 private:
  std::uint32_t milliseconds_;
};

}  // namespace config::command
