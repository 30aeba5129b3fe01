// Membership of a workgroup.
#pragma once

#include "common/config/command/DomainCommand.h"

namespace config::command {

class JoinWorkgroup final : public DomainCommand {
 public:
  explicit JoinWorkgroup(std::string workgroup) : workgroup_(std::move(workgroup)) {}

  /// Throws sys::DomainError or sys::CWmiError.
  void Execute() override;
  /// Not needed for an empty name and for the current workgroup in whatever letter case.
  bool Differs(Comparison* comparison) override;
  /// "Workgroup=WORKGROUP {User=jdoe}".
  std::string Describe() override;

 private:
  std::string workgroup_;
};

}  // namespace config::command
