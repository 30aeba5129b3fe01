// A simulated machine under every test: fill it in, run the code, read it back.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/sys/Domain.h"
#include "platform/ScopedPlatform.h"
#include "platform/simulated/Machine.h"
#include "platform/simulated/SimulatedPlatform.h"

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

namespace support {

class MachineTest : public testing::Test {
 protected:
  MachineTest() { sys::DomainTestAccess::Reset(); }

  /// Everything that was taken from the machine must have been given back.
  void TearDown() override { EXPECT_EQ(platform_.InUse(), stillInUse_); }

  /// The journal, one JSON text a change.
  std::vector<std::string> Journal() const {
    std::vector<std::string> lines;
    for (const simulated::Json& change : machine_.journal) lines.push_back(change.dump());
    return lines;
  }

  /// Makes calls to the machine fail.
  void AddFault(const std::string& call, platform::HResult hresult) {
    simulated::Fault fault;
    fault.call = call;
    fault.hresult = hresult;
    machine_.faults.push_back(fault);
  }

  simulated::Machine machine_;
  simulated::SimulatedPlatform platform_{machine_};
  platform::ScopedPlatform scope_{platform_};
  simulated::Usage stillInUse_;
};

}  // namespace support
