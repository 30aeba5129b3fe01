// Membership of a workgroup.
#pragma once

#include "common/config/command/DomainCommand.h"

namespace config::command {

class JoinWorkgroup final : public DomainCommand {
 public:
  explicit JoinWorkgroup(std::string workgroup) : workgroup_(std::move(workgroup)) {}

  /// Throws sys::DomainError or sys::CWmiError.
  void Execute() override { DomainWithAccount().JoinWorkgroup(workgroup_); }

  /// Not needed for an empty name and for the current workgroup in any letter case.
  bool Differs(Comparison* comparison) override {
    if (workgroup_.empty()) return false;
    const std::string current = sys::Domain::Instance().GetWorkgroup();
    if (comparison != nullptr) comparison->Set(current, workgroup_);
    return !base::SameText(workgroup_, current);
  }

  /// "Workgroup=WORKGROUP {User=jdoe}".
  std::string Describe() override { return "Workgroup=" + workgroup_ + " {User=" + User() + "}"; }

 private:
  std::string workgroup_;
};

}  // namespace config::command
