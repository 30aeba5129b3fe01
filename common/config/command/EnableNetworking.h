// Undoes the network lock-down of an image.
#pragma once

#include "common/config/command/IConfigureCommand.h"
#include "common/sys/Domain.h"
#include "common/sys/Pause.h"
#include "common/sys/Services.h"

namespace config::command {

class EnableNetworking final : public IConfigureCommand {
 public:
  /// `leaveDomain` makes a domain member join the workgroup "WrkGrp" first.
  explicit EnableNetworking(bool leaveDomain) : leaveDomain_(leaveDomain) {}

  /// Gives the networking services their start types, starts them and waits for three seconds. What
  /// the service manager refuses is skipped. Throws sys::DomainError or sys::CWmiError when the
  /// domain cannot be left.
  void Execute() override {
    sys::Domain& domain = sys::Domain::Instance();
    if (leaveDomain_ && domain.IsDomainMember()) domain.JoinWorkgroup("WrkGrp");
    sys::ForEachNetworkService([](std::size_t position, const sys::Service& service) {
      service.SetStartType(base::kNetworkServices[position].start);
      service.Start();  // a service that is running refuses, which does no harm
    });
    sys::Pause(PauseMs());
  }

  /// Empty.
  std::string Describe() override { return {}; }
  std::uint32_t PauseMs() const override { return 3000; }

 private:
  bool leaveDomain_;
};

}  // namespace config::command
