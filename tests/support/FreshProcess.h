// What lives longer than a message, how a test gets rid of it, and a member machine.
#pragma once

#include <string>

#include "common/ipc/IpAddress.h"
#include "common/sys/Domain.h"
#include "platform/simulated/Simulation.h"

namespace sys {

/// Lets a test start with the domain object of a fresh process.
struct DomainTestAccess {
  static void Reset() {
    Domain& domain = Domain::Instance();
    for (std::string* text : {&domain.workgroup_, &domain.domainName_, &domain.dnsDomainName_,
                              &domain.ou_, &domain.user_, &domain.password_}) {
      text->clear();
    }
    domain.isMember_ = false;
  }
};

}  // namespace sys

namespace ipc {

/// Lets a test start with a process that has not started WinSock.
struct WinSockTestAccess {
  static void Reset() { WinSockManager::Instance().started_ = false; }
};

}  // namespace ipc

namespace support {

/// Leaves the library that is linked into the program as it is in a process that has just started.
inline void StartFreshProcess() {
  sys::DomainTestAccess::Reset();
  ipc::WinSockTestAccess::Reset();
  simulated::socketsStarted = false;
}

/// Makes the machine a member of the example's domain.
inline void JoinCorp(simulated::Machine& machine, const std::string& place = "CN=Computers") {
  machine.membership = simulated::DomainMembership{"corp.example", "CORP", true};
  machine.domains[0].computers = {
      {machine.computerName, "CN=" + machine.computerName + "," + place + ",DC=corp,DC=example"}};
}

}  // namespace support
