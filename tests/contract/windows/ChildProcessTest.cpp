// A child of the real machine, with its output relayed.
#include <gtest/gtest.h>

#include "common/logging/NullLogSink.h"
#include "common/proc/ChildProcess.h"
#include "common/proc/OutputRelay.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"

// clang-format off: it needs the types of <windows.h>
#include <tlhelp32.h>
// clang-format on

namespace {

using platform::windows::KernelHandle;

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

/// The command interpreter that this process has started and that still runs; null without one.
KernelHandle RunningChild() {
  const KernelHandle snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = ::Process32First(snapshot.get(), &entry); more;
       more = ::Process32Next(snapshot.get(), &entry)) {
    if (entry.th32ParentProcessID != ::GetCurrentProcessId()) continue;
    if (::lstrcmpiA(entry.szExeFile, "cmd.exe") != 0) continue;
    KernelHandle child(
        ::OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, entry.th32ProcessID));
    if (::WaitForSingleObject(child.get(), 0) == WAIT_TIMEOUT) return child;
  }
  return nullptr;
}

TEST(ChildProcessContract, AChildThatOutlivesItsTimeIsEnded) {
  logging::NullLogSink log;
  KernelHandle process;
  {
    proc::CChildProcess child(log, /*timeoutMs=*/100);
    // It waits for its input, which stays open.
    EXPECT_EQ(child.ExecuteCmd(nullptr, "cmd /c pause", "", "", /*wait=*/false, 1, nullptr), 0);
    process = RunningChild();
    ASSERT_NE(process, nullptr);
  }
  EXPECT_EQ(::WaitForSingleObject(process.get(), 60000), DWORD{WAIT_OBJECT_0});
  DWORD exitCode = 0;
  EXPECT_TRUE(::GetExitCodeProcess(process.get(), &exitCode));
  EXPECT_EQ(exitCode, 1u);
}

}  // namespace
