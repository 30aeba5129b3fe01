// The organizational unit of the computer's account.
#pragma once

#include "common/config/command/DomainCommand.h"

namespace config::command {

class MoveOu final : public DomainCommand {
 public:
  explicit MoveOu(std::string ou) : ou_(std::move(ou)) {}

  /// Throws sys::DomainError or sys::CWmiError.
  void Execute() override;
  /// Not needed on a workgroup machine, without user and OU, and when the account is in the OU
  /// already.
  bool Differs(Comparison* comparison) override;
  /// "OU=Sales/Europe".
  std::string Describe() override;

 private:
  std::string ou_;
};

}  // namespace config::command
