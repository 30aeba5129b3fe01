// A pause between commands.
#pragma once

#include "common/config/command/IConfigureCommand.h"
#include "common/sys/Pause.h"

namespace config::command {

class Sleep final : public IConfigureCommand {
 public:
  explicit Sleep(std::uint32_t milliseconds) : milliseconds_(milliseconds) {}

  /// Suspends the calling thread.
  void Execute() override { sys::Pause(milliseconds_); }
  /// "Duration=8000 milliseconds".
  std::string Describe() override {
    return "Duration=" + std::to_string(milliseconds_) + " milliseconds";
  }
  std::uint32_t PauseMs() const override { return milliseconds_; }

 private:
  std::uint32_t milliseconds_;
};

}  // namespace config::command
