// What only the real machine can show: conversions, kept error numbers, child processes, raw files,
// services. The registry's HKEY_LOCAL_MACHINE is a scratch key for the whole program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>

#include "platform/IErrors.h"
#include "platform/IFiles.h"
#include "platform/ILibraries.h"
#include "platform/IPlatform.h"
#include "platform/IProcesses.h"
#include "platform/IResolver.h"
#include "platform/IServices.h"
#include "platform/IWmi.h"
#include "platform/windows/Com.h"
#include "platform/windows/Handles.h"
#include "platform/windows/Text.h"
#include "platform/windows/WindowsHeader.h"

namespace platform::windows {
namespace {

class ScratchLocalMachine final : public ::testing::Environment {
 public:
  void SetUp() override {
    ASSERT_EQ(::RegCreateKeyA(HKEY_CURRENT_USER, path_.c_str(), &scratch_), ERROR_SUCCESS);
    ASSERT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, scratch_), ERROR_SUCCESS);
  }
  void TearDown() override {
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    ::RegCloseKey(scratch_);
    ::RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str());
  }

 private:
  // One key for each process, since tests run side by side.
  const std::string path_ =
      R"(Software\Orvanta Contract Scratch )" + std::to_string(::GetCurrentProcessId());
  HKEY scratch_ = nullptr;
};

[[maybe_unused]] const auto* const registered =
    ::testing::AddGlobalTestEnvironment(new ScratchLocalMachine);

TEST(WindowsText, ComesBackUnchanged) {
  for (const std::wstring& wide : {std::wstring(), std::wstring(L"plain"), std::wstring(L"a\0b", 3),
                                   std::wstring(L"Z\u00FCrich"), std::wstring(70000, L'x')}) {
    EXPECT_EQ(ToWide(ToNarrow(wide)), wide);
  }
}

TEST(WindowsText, AnEmptyTextIsNoError) {
  ::SetLastError(1234);
  EXPECT_EQ(ToNarrow({}) + TextOf(nullptr), "");
  EXPECT_EQ(ToWide({}), L"");
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

TEST_F(WindowsMachine, FailedResultsHaveAText) {
  std::string text;
  EXPECT_TRUE(machine.Errors().Describe(E_ACCESSDENIED, &text));
  EXPECT_FALSE(text.empty());
}

TEST_F(WindowsMachine, ExportsAreFoundByName) {
  ILibraries& libraries = machine.Libraries();
  const LibraryHandle library = libraries.Load("kernel32.dll");
  ASSERT_NE(library, LibraryHandle::kNone);
  const ExportedFunction found = libraries.FindExport(library, "GetCurrentProcessId");
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(reinterpret_cast<DWORD(WINAPI*)()>(found)(), ::GetCurrentProcessId());
  EXPECT_EQ(libraries.FindExport(library, "OrvantaAbsent"), nullptr);
  EXPECT_EQ(machine.Errors().LastError(), static_cast<Win32Error>(ERROR_PROC_NOT_FOUND));
}

TEST_F(WindowsMachine, LocalhostResolves) {
  ASSERT_EQ(machine.Resolver().Start(), 0u);
  std::uint32_t address = 0;
  EXPECT_TRUE(machine.Resolver().LookUpHost("localhost", &address));
  EXPECT_EQ(address, 0x0100007Fu);
}

/// A file in the temporary folder, filled by hand and deleted at the end.
class RawFile {
 public:
  /// `content` stands at `offset`; before it are zeros.
  explicit RawFile(const std::string& content, std::int64_t offset = 0) {
    char folder[MAX_PATH] = "";
    char name[MAX_PATH] = "";
    ::GetTempPathA(MAX_PATH, folder);
    ::GetTempFileNameA(folder, "cfg", 0, name);
    path = name;
    const KernelHandle file(::CreateFileA(name, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER position{};
    position.QuadPart = offset;
    ::SetFilePointerEx(file.get(), position, nullptr, FILE_BEGIN);
    DWORD written = 0;
    ::WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
    ::SetEndOfFile(file.get());
  }
  ~RawFile() { ::DeleteFileA(path.c_str()); }
  RawFile(const RawFile&) = delete;
  RawFile& operator=(const RawFile&) = delete;

  std::string path;
};

TEST_F(WindowsMachine, FilesAreReadWholeAndUntranslated) {
  constexpr std::int64_t kBeyondOneRead = (1 << 24) + 5;
  const std::string bytes("a\r\nb\0\x1A\xFF\n", 8);
  for (const std::int64_t offset : {std::int64_t{0}, kBeyondOneRead}) {
    const RawFile file(bytes, offset);
    std::string content = "old";
    ASSERT_TRUE(machine.Files().ReadWhole(file.path, &content));
    EXPECT_EQ(content, std::string(static_cast<std::size_t>(offset), '\0') + bytes);
  }
  std::string content = "old";
  EXPECT_TRUE(machine.Files().ReadWhole(RawFile("").path, &content));
  EXPECT_EQ(content, "");
}

TEST_F(WindowsMachine, WhatIsNoFileOfReasonableSizeIsNotRead) {
  std::string content;
  EXPECT_FALSE(machine.Files().ReadWhole(R"(C:\windows)", &content));
  EXPECT_EQ(machine.Errors().LastError(), static_cast<Win32Error>(ERROR_ACCESS_DENIED));
  const RawFile huge("", std::int64_t{1} << 32);
  EXPECT_FALSE(machine.Files().ReadWhole(huge.path, &content));
  EXPECT_EQ(machine.Errors().LastError(), static_cast<Win32Error>(ERROR_FILE_TOO_LARGE));
}

TEST_F(WindowsMachine, ProfileEntriesLeaveCommentsAlone) {
  const RawFile file("; kept\r\n[Global]\r\nA=1\r\n; also kept\r\nB=2\r\n");
  ASSERT_TRUE(machine.Files().WriteProfileEntry("Global", "B", "3", file.path));
  std::string content;
  ASSERT_TRUE(machine.Files().ReadWhole(file.path, &content));
  EXPECT_EQ(content, "; kept\r\n[Global]\r\nA=1\r\n; also kept\r\nB=3\r\n");
}

TEST_F(WindowsMachine, OnlyTheStartTypeOfAServiceChanges) {
  constexpr char kName[] = "OrvantaContract";
  constexpr char kProgram[] = R"(C:\windows\absent.exe)";
  IServices& services = machine.Services();
  const ServiceHandle manager = services.OpenManager();
  ASSERT_NE(manager, ServiceHandle::kNone);
  const SC_HANDLE created =
      ::CreateServiceA(ToSystem<SC_HANDLE>(manager), kName, "Shown", SERVICE_ALL_ACCESS,
                       SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_SEVERE,
                       kProgram, nullptr, nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(created, nullptr);
  const ServiceHandle service = services.OpenService(manager, kName);
  EXPECT_TRUE(services.SetStartType(service, ServiceStart::kDisabled));
  EXPECT_FALSE(services.Start(service));
  EXPECT_EQ(machine.Errors().LastError(), static_cast<Win32Error>(ERROR_SERVICE_DISABLED));

  alignas(QUERY_SERVICE_CONFIGA) char buffer[8192];
  auto* config = reinterpret_cast<QUERY_SERVICE_CONFIGA*>(buffer);
  DWORD needed = 0;
  EXPECT_TRUE(::QueryServiceConfigA(created, config, sizeof buffer, &needed));
  EXPECT_EQ(config->dwStartType, static_cast<DWORD>(SERVICE_DISABLED));
  EXPECT_EQ(config->dwServiceType, static_cast<DWORD>(SERVICE_WIN32_OWN_PROCESS));
  EXPECT_EQ(config->dwErrorControl, static_cast<DWORD>(SERVICE_ERROR_SEVERE));
  EXPECT_STREQ(config->lpBinaryPathName, kProgram);
  EXPECT_STREQ(config->lpDisplayName, "Shown");

  ::DeleteService(created);
  ::CloseServiceHandle(created);
  services.Close(service);
  services.Close(manager);
}

TEST_F(WindowsMachine, AMethodTakesItsParametersAndAnswersAnArray) {
  IWmi& wmi = machine.Wmi();
  ASSERT_GE(wmi.EnterApartment(), kOk);
  {
    std::unique_ptr<IWmiLocator> locator;
    ASSERT_GE(wmi.MakeLocator(&locator), kOk);
    std::unique_ptr<IWmiServices> services;
    ASSERT_GE(locator->ConnectServer(R"(root\cimv2)", &services), kOk);
    std::unique_ptr<IWmiObject> registry, definition, parameters, result;
    ASSERT_GE(services->FetchClass("StdRegProv", &registry), kOk);
    ASSERT_GE(registry->GetMethod("EnumKey", &definition), kOk);
    ASSERT_GE(definition->SpawnInstance(&parameters), kOk);
    constexpr auto kClassesRoot = static_cast<std::int32_t>(0x80000000);
    ASSERT_GE(parameters->Put("hDefKey", kClassesRoot), kOk);
    ASSERT_GE(parameters->Put("sSubKeyName", R"(CLSID\{4590F811-1D3A-11D0-891F-00AA004B2E24})"),
              kOk);
    ASSERT_GE(services->ExecMethod("StdRegProv", "EnumKey", parameters.get(), &result), kOk);
    Variant value;
    EXPECT_GE(result->Get("ReturnValue", &value), kOk);
    EXPECT_EQ(value, Variant(0));
    EXPECT_GE(result->Get("sNames", &value), kOk);
    ASSERT_TRUE(std::holds_alternative<TextArray>(value));
    const auto& names = std::get<TextArray>(value).items;
    const auto isServer = [](const std::string& name) {
      return ::lstrcmpiA(name.c_str(), "InprocServer32") == 0;
    };
    EXPECT_EQ(std::count_if(names.begin(), names.end(), isServer), 1);
  }
  wmi.LeaveApartment();
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

TEST_F(WindowsChild, ThatCannotStartLeavesTheInformationUntouched) {
  EXPECT_FALSE(Spawn("orvanta-absent.exe"));
  EXPECT_EQ(machine.Errors().LastError(), static_cast<Win32Error>(ERROR_FILE_NOT_FOUND));
  EXPECT_EQ(child.process, Handle::kInvalid);
  EXPECT_EQ(child.processId, 0u);
}

TEST_F(WindowsMachine, StandardHandlesAreReplacedOneByOne) {
  IProcesses& processes = machine.Processes();
  for (const StandardStream stream :
       {StandardStream::kInput, StandardStream::kOutput, StandardStream::kError}) {
    const Handle before = processes.GetStandardHandle(stream);
    EXPECT_TRUE(processes.SetStandardHandle(stream, Handle{0x1230}));
    const Handle during = processes.GetStandardHandle(stream);
    EXPECT_TRUE(processes.SetStandardHandle(stream, before));
    EXPECT_EQ(during, Handle{0x1230});
    EXPECT_EQ(processes.GetStandardHandle(stream), before);
  }
}

}  // namespace
}  // namespace platform::windows
