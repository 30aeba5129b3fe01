#include "common/logging/NullLogSink.h"
#include "common/proc/ChildProcess.h"
#include "common/proc/OutputRelay.h"
#include "platform/IProcesses.h"
#include "tests/support/MachineTest.h"

namespace {

using proc::CChildProcess;

constexpr char kAdd[] = "route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 1";

class ChildProcessTest : public support::MachineTest {
 protected:
  std::int32_t Run(const std::string& commandLine, const std::string& user = "", bool wait = true,
                   proc::OutputRelay* relay = nullptr) {
    CChildProcess child(log_, CChildProcess::kWithoutLimit);
    return child.ExecuteCmd(nullptr, commandLine, user, "", wait, 1, relay);
  }

  logging::NullLogSink log_;
};

TEST_F(ChildProcessTest, TheResultIsTheExitCodeOrWhyThereIsNone) {
  EXPECT_EQ(Run(kAdd), 0);
  EXPECT_EQ(Run("route DELETE 10.9.0.0"), 1) << "there is no such route";
  EXPECT_EQ(Run("route DELETE 10.9.0.0", "", /*wait=*/false), 0);
  EXPECT_EQ(Run("nothing 100%%"), 2);
  EXPECT_EQ(machine_.journal.back()["command"], "nothing 100%");
  const std::size_t runs = machine_.journal.size();
  EXPECT_EQ(Run(kAdd, "joiner"), -1) << "runs as another user are not done";
  EXPECT_EQ(machine_.journal.size(), runs);
}

TEST_F(ChildProcessTest, OneObjectRunsOneProcessAfterAnother) {
  CChildProcess child(log_, CChildProcess::kWithoutLimit);
  for (int runs = 0; runs < 2; ++runs) {
    EXPECT_EQ(child.ExecuteCmd(nullptr, kAdd, "", "", /*wait=*/true, 1, nullptr), 0);
    EXPECT_EQ(platform_.InUse().processHandles, 2) << "the process and its thread";
  }
}

TEST_F(ChildProcessTest, ARelayThatCannotAttachPutsTheStandardHandlesBack) {
  platform::IProcesses& processes = platform_.Processes();
  const auto before = processes.GetStandardHandle(platform::StandardStream::kOutput);
  for (const char* call : {"process.pipe", "process.set_standard", "process.duplicate"}) {
    for (const std::uint32_t nth : {1u, 2u, 3u}) {
      SCOPED_TRACE(call + std::to_string(nth));
      FailCall(call, nth);
      proc::OutputRelay relay;
      platform::StartupInfo startup;
      EXPECT_FALSE(relay.Attach(&startup));
      EXPECT_EQ(startup.standardOutput, platform::Handle::kNone);
      EXPECT_EQ(processes.GetStandardHandle(platform::StandardStream::kOutput), before);
    }
  }
  machine_.faults.clear();
  proc::OutputRelay relay;
  EXPECT_EQ(Run(kAdd, "", /*wait=*/true, &relay), 0);
  EXPECT_NE(processes.GetStandardHandle(platform::StandardStream::kOutput), before);
  EXPECT_TRUE(relay.Pump());
  FailCall("process.peek", 1);
  EXPECT_FALSE(relay.Pump());
}

}  // namespace
