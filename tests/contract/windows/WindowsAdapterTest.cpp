// What only the real machine can show: conversions, kept error numbers, raw files, the streams of
// child processes, window stations.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <variant>

#include "platform/IErrors.h"
#include "platform/IFiles.h"
#include "platform/IPlatform.h"
#include "platform/IProcesses.h"
#include "platform/ISecurity.h"
#include "platform/IServices.h"
#include "platform/windows/Com.h"
#include "platform/windows/Handles.h"
#include "platform/windows/Text.h"
#include "platform/windows/WindowsHeader.h"

namespace platform::windows {
namespace {

TEST(WindowsText, ComesBackUnchangedAndIsNoErrorWhenEmpty) {
  ::SetLastError(1234);
  for (const std::wstring& wide : {std::wstring(), std::wstring(L"plain"), std::wstring(L"a\0b", 3),
                                   std::wstring(L"Z\u00FCrich"), std::wstring(70000, L'x')}) {
    EXPECT_EQ(ToWide(ToNarrow(wide)), wide);
  }
  EXPECT_EQ(TextOf(nullptr), "");
  EXPECT_EQ(::GetLastError(), 1234u);
}

TEST(WindowsVariant, EveryValueOfTheSeamComesBack) {
  const std::pair<VARTYPE, Variant> cases[] = {
      {VT_EMPTY, Empty{}},
      {VT_NULL, Null{}},
      {VT_BOOL, kVariantTrue},
      {VT_BOOL, RawBool{1}},
      {VT_I4, std::int32_t{-2}},
      {VT_BSTR, std::string()},
      {VT_BSTR, std::string("text")},
      {VT_ARRAY | VT_BSTR, TextArray{}},
      {VT_ARRAY | VT_BSTR, TextArray{{"10.0.0.1", "", "10.0.0.3"}}}};
  for (const auto& [type, value] : cases) {
    OwnedVariant stored(value);
    EXPECT_EQ(stored.Address()->vt, type);
    EXPECT_EQ(stored.ToSeamValue(), value);
    if (type == (VT_ARRAY | VT_BSTR)) {
      LONG bound = 9;
      ASSERT_EQ(::SafeArrayGetLBound(stored.Address()->parray, 1, &bound), S_OK);
      EXPECT_EQ(bound, 0);
      VARTYPE element = VT_EMPTY;
      ASSERT_EQ(::SafeArrayGetVartype(stored.Address()->parray, &element), S_OK);
      EXPECT_EQ(element, VT_BSTR);
    }
  }
}

TEST(WindowsVariant, SystemValuesAreReducedToWhatTheSeamKnows) {
  SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 0}};
  constexpr std::uint64_t kOnes = ~std::uint64_t{0};
  const struct {
    VARTYPE type;
    std::uint64_t bits;
    Variant value;
  } cases[] = {
      {VT_I1, kOnes, -1},
      {VT_UI1, kOnes, 255},
      {VT_I2, kOnes, -1},
      {VT_UI2, kOnes, 65535},
      {VT_I4, 0x7FFFFFFF, 0x7FFFFFFF},
      {VT_UI4, 0xFFFFFFFF, -1},
      {VT_R8, 1, Empty{}},
      {VT_BSTR, 0, std::string()},
      {VT_ARRAY | VT_BSTR, 0, TextArray{{}, 0}},
      {VT_ARRAY | VT_BSTR, reinterpret_cast<std::uintptr_t>(::SafeArrayCreate(VT_BSTR, 2, bounds)),
       TextArray{{}, 2}}};
  for (const auto& c : cases) {
    OwnedVariant variant;
    variant.Address()->ullVal = c.bits;
    variant.Address()->vt = c.type;
    EXPECT_EQ(variant.ToSeamValue(), c.value) << c.type;
  }
}

class WindowsMachine : public ::testing::Test {
 protected:
  IPlatform& machine = Default();
};

TEST_F(WindowsMachine, ClosersKeepTheLastError) {
  ::SetLastError(1234);
  machine.Processes().Close(Handle::kNone);
  EXPECT_EQ(machine.Errors().LastError(), 1234u);
  machine.Services().Close(ServiceHandle::kNone);
  EXPECT_EQ(machine.Errors().LastError(), 1234u);
}

/// A file in the temporary folder, deleted at the end.
struct RawFile {
  /// `content` stands at `offset`; before it are zeros.
  explicit RawFile(const std::string& content, std::uintmax_t offset = 0) {
    std::ofstream(path).close();
    std::filesystem::resize_file(path, offset);
    std::ofstream(path, std::ios::binary | std::ios::app) << content;
  }
  ~RawFile() { std::filesystem::remove(path); }
  RawFile(const RawFile&) = delete;
  RawFile& operator=(const RawFile&) = delete;

  const std::string path = (std::filesystem::temp_directory_path() /
                            ("orvanta" + std::to_string(::GetCurrentProcessId())))
                               .string();
};

TEST_F(WindowsMachine, FilesAreReadWholeAndUntranslated) {
  constexpr std::uintmax_t kBeyondOneRead = (1 << 24) + 5;
  const std::string bytes("a\r\nb\0\x1A\xFF\n", 8);
  for (const std::uintmax_t offset : {std::uintmax_t{0}, kBeyondOneRead}) {
    const RawFile file(bytes, offset);
    std::string content = "old";
    ASSERT_TRUE(machine.Files().ReadWhole(file.path, &content));
    EXPECT_EQ(content, std::string(offset, '\0') + bytes);
  }
  std::string content = "old";
  EXPECT_TRUE(machine.Files().ReadWhole(RawFile("").path, &content));
  EXPECT_EQ(content, "");
}

TEST_F(WindowsMachine, WhatIsNoFileOfReasonableSizeIsNotRead) {
  std::string content;
  EXPECT_FALSE(machine.Files().ReadWhole(R"(C:\windows)", &content));
  EXPECT_EQ(machine.Errors().LastError(), static_cast<Win32Error>(ERROR_ACCESS_DENIED));
  const RawFile huge("", std::uintmax_t{1} << 32);
  EXPECT_FALSE(machine.Files().ReadWhole(huge.path, &content));
  EXPECT_EQ(machine.Errors().LastError(), static_cast<Win32Error>(ERROR_FILE_TOO_LARGE));
}

TEST_F(WindowsMachine, BlocksComeFromTheProcessHeap) {
  void* const block = machine.Security().Allocate(24);
  EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, block), 24u);
  machine.Security().Free(block);
}

TEST_F(WindowsMachine, AnImpersonatingThreadActsAsItsProcessAgain) {
  ASSERT_TRUE(::ImpersonateSelf(SecurityImpersonation));
  EXPECT_TRUE(machine.Security().Revert());
  HANDLE acting = nullptr;
  EXPECT_FALSE(::OpenThreadToken(::GetCurrentThread(), TOKEN_QUERY, TRUE, &acting));
  EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_NO_TOKEN));
}

TEST_F(WindowsMachine, TheProcessMovesBetweenStationsThatCanBeClosed) {
  ISecurity& security = machine.Security();
  const HWINSTA own = ::GetProcessWindowStation();
  const HWINSTA station = ::CreateWindowStationA(nullptr, 0, GENERIC_ALL, nullptr);
  ASSERT_NE(station, nullptr);
  ASSERT_TRUE(security.SetProcessStation(ToSeam<UserObject>(station)));
  const HDESK desktop = ::CreateDesktopA("Orvanta", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
  ASSERT_NE(desktop, nullptr);
  EXPECT_TRUE(security.SetProcessStation(ToSeam<UserObject>(own)));
  EXPECT_EQ(::GetProcessWindowStation(), own);
  security.CloseDesktop(ToSeam<UserObject>(desktop));
  security.CloseStation(ToSeam<UserObject>(station));
  for (const HANDLE closed : {static_cast<HANDLE>(desktop), static_cast<HANDLE>(station)}) {
    USEROBJECTFLAGS flags{};
    EXPECT_FALSE(::GetUserObjectInformationA(closed, UOI_FLAGS, &flags, sizeof flags, nullptr));
  }
}

class WindowsChild : public WindowsMachine {
 protected:
  void SetUp() override {
    ASSERT_TRUE(processes.MakePipe(&inputRead, &inputWrite, 0));
    ASSERT_TRUE(processes.MakePipe(&outputRead, &outputWrite, 65536));
    ASSERT_TRUE(processes.StopInheriting(outputRead));
    Handle inherited = inputWrite;
    ASSERT_TRUE(processes.Duplicate(inherited, &inputWrite));
    processes.Close(inherited);
  }
  void TearDown() override {
    for (const Handle handle : {inputRead, inputWrite, outputRead, child.process, child.thread}) {
      processes.Close(handle);
    }
  }

  bool Spawn(std::string commandLine, const char* environment = nullptr) {
    const StartupInfo startup{kUseStandardHandles, 1, inputRead, outputWrite, outputWrite};
    const bool started =
        processes.Spawn(nullptr, commandLine.data(), environment, R"(C:\windows)", startup, &child);
    const Win32Error error = machine.Errors().LastError();
    processes.Close(outputWrite);
    machine.Errors().SetLastError(error);
    return started;
  }

  IProcesses& processes = machine.Processes();
  Handle inputRead{}, inputWrite{}, outputRead{}, outputWrite{};
  ProcessInformation child;
};

TEST_F(WindowsChild, InheritsOnlyItsOwnPipeEnds) {
  const std::pair<Handle, DWORD> ends[] = {{inputRead, HANDLE_FLAG_INHERIT},
                                           {inputWrite, 0},
                                           {outputRead, 0},
                                           {outputWrite, HANDLE_FLAG_INHERIT}};
  for (const auto& [end, inheritable] : ends) {
    DWORD flags = 9;
    EXPECT_TRUE(::GetHandleInformation(ToSystem<HANDLE>(end), &flags));
    EXPECT_EQ(flags, inheritable);
  }
  processes.Close(outputWrite);
}

TEST_F(WindowsChild, ReadsAndWritesThroughItsPipes) {
  ASSERT_TRUE(Spawn("cmd.exe /c \"set /p word=& cd& set word& echo %TEST_VALUE%& exit 7\"",
                    "TEST_VALUE=seen\0"));
  ASSERT_TRUE(processes.Write(inputWrite, "hello\r\n", 7));
  ASSERT_EQ(processes.Wait(child.process, 60000), kWaitSignalled);
  std::uint32_t code = 0;
  EXPECT_TRUE(processes.ExitCode(child.process, &code));
  EXPECT_EQ(code, 7u);
  std::uint32_t available = 0;
  ASSERT_TRUE(processes.Peek(outputRead, &available));
  std::string output(available + 10, '#');
  std::uint32_t count = 0;
  ASSERT_TRUE(processes.Read(outputRead, output.data(), available + 10, &count));
  EXPECT_EQ(count, available);
  EXPECT_EQ(output.substr(0, count), "C:\\windows\r\nword=hello\r\nseen\r\n");
  // The other end went with the child.
  EXPECT_FALSE(processes.Read(outputRead, output.data(), 1, &count));
  EXPECT_EQ(machine.Errors().LastError(), static_cast<Win32Error>(ERROR_BROKEN_PIPE));
}

TEST_F(WindowsChild, CanBeEndedWhileItWaits) {
  ASSERT_TRUE(Spawn("cmd.exe /c \"set /p word=\""));
  EXPECT_EQ(processes.Wait(child.process, 10), kWaitTimeout);
  EXPECT_TRUE(processes.Terminate(child.process, 42));
  ASSERT_EQ(processes.Wait(child.process, 60000), kWaitSignalled);
  std::uint32_t code = 0;
  EXPECT_TRUE(processes.ExitCode(child.process, &code));
  EXPECT_EQ(code, 42u);
}

}  // namespace
}  // namespace platform::windows
