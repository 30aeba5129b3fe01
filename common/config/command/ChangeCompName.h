// The computer's name.
#pragma once

#include "common/config/ConfigError.h"
#include "common/config/command/DomainCommand.h"
#include "common/sys/Wmi.h"

namespace config::command {

class ChangeCompName final : public DomainCommand {
 public:
  explicit ChangeCompName(std::string name) : name_(std::move(name)) {}

  /// Throws ConfigError (value 4) unless the computer returns 0 or 1.
  void Execute() override {
    RequireDone(sys::Wmi::SetComputerName(name_, User(), Password()), kFailed);
  }

  /// Not needed for an empty name and for the current one in any letter case.
  bool Differs(Comparison* comparison) override {
    if (name_.empty()) return false;
    std::string current;
    sys::Wmi::GetComputerName(&current);
    if (comparison != nullptr) comparison->Set(current, name_);
    return !base::SameText(name_, current);
  }

  /// "Name=PC1 {User=jdoe}".
  std::string Describe() override { return "Name=" + name_ + " {User=" + User() + "}"; }

 private:
  static constexpr err::Site kFailed{"ChangeCompName", "Configuring computer name failed", 45};

  std::string name_;
};

}  // namespace config::command
