// The computer's name.
#pragma once

#include "common/config/command/DomainCommand.h"

namespace config::command {

class ChangeCompName final : public DomainCommand {
 public:
  explicit ChangeCompName(std::string name) : name_(std::move(name)) {}

  /// Throws ConfigError (value 4) unless the computer answers 0 or 1.
  void Execute() override;
  /// Not needed for an empty name and for the current one in whatever letter case.
  bool Differs(Comparison* comparison) override;
  /// "Name=PC1 {User=jdoe}".
  std::string Describe() override;

 private:
  std::string name_;
};

}  // namespace config::command
