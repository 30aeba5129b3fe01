// Undoes the network lock-down of an image.
#pragma once

#include "common/config/command/IConfigureCommand.h"

namespace config::command {

class EnableNetworking final : public IConfigureCommand {
 public:
  /// `leaveDomain` makes a domain member join the workgroup "WrkGrp" first.
  explicit EnableNetworking(bool leaveDomain) : leaveDomain_(leaveDomain) {}

  /// Gives the networking services their start types, starts them and waits for three seconds. What
  /// the service manager refuses is skipped. Throws sys::DomainError or sys::CWmiError when the
  /// domain cannot be left.
  void Execute() override;
  /// Empty.
  std::string Describe() override;
  std::uint32_t PauseMs() const override;

 private:
  bool leaveDomain_;
};

}  // namespace config::command
