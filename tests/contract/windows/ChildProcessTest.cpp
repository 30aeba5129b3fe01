// A child of the real machine, with its output relayed.
#include <gtest/gtest.h>

#include "common/logging/NullLogSink.h"
#include "common/proc/ChildProcess.h"
#include "common/proc/OutputRelay.h"

namespace {

TEST(ChildProcessContract, OutputAndExitCodeComeBack) {
  logging::NullLogSink log;
  proc::OutputRelay relay;
  proc::CChildProcess child(log, proc::CChildProcess::kWithoutLimit);
  EXPECT_EQ(child.ExecuteCmd(nullptr, "cmd /c \"echo said& echo complained 1>&2& exit 7\"", "", "",
                             /*wait=*/true, /*showWindow=*/1, &relay),
            7);
  EXPECT_TRUE(relay.OutputText().starts_with("said")) << relay.OutputText();
  EXPECT_TRUE(relay.ErrorText().starts_with("complained")) << relay.ErrorText();
}

TEST(ChildProcessContract, AChildThatOutlivesItsTimeIsEnded) {
  logging::NullLogSink log;
  proc::CChildProcess child(log, /*timeoutMs=*/100);
  // It waits for its input, which stays open.
  EXPECT_EQ(child.ExecuteCmd(nullptr, "cmd /c pause", "", "", /*wait=*/false, 1, nullptr), 0);
}

}  // namespace
