// A simulated machine under every test: fill it in, run the code, read it back.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/ScopedPlatform.h"
#include "platform/simulated/Machine.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tests/support/FreshProcess.h"

namespace support {

class MachineTest : public testing::Test {
 protected:
  MachineTest() { StartFreshProcess(); }

  /// Everything that was taken from the machine must have been given back.
  void TearDown() override { EXPECT_EQ(platform_.InUse(), stillInUse_); }

  /// Makes calls to the machine fail.
  void AddFault(const std::string& call, platform::HResult hresult) {
    simulated::Fault fault;
    fault.call = call;
    fault.hresult = hresult;
    machine_.faults.push_back(fault);
  }

  /// Makes the n-th call of this name fail with error 5, and no other call.
  void FailCall(const std::string& call, std::uint32_t nth) {
    simulated::Fault fault;
    fault.call = call;
    fault.nth = nth;
    fault.error = 5;
    machine_.faults = {fault};
  }

  simulated::Machine machine_;
  simulated::SimulatedPlatform platform_{machine_};
  platform::ScopedPlatform scope_{platform_};
  simulated::Usage stillInUse_;
};

}  // namespace support
