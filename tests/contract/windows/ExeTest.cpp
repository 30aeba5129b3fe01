// The shipped program on this computer: names of files in and outside of the system's code page,
// the plug-in loaded from its file, the machine as Windows tells it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "platform/simulated/MachineFile.h"
// windows.h renames what others declare, so it comes last.
#include <windows.h>

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;

std::string ReadText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class ExeTest : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() /
              (L"exe-Zürich-日本-" + std::to_wstring(::GetCurrentProcessId()) + L"-" +
               std::to_wstring(::GetTickCount64()));
    fs::create_directories(folder_ / L"in");
  }
  void TearDown() override {
    // A service that the program woke may hold its streams for longer.
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  void Write(const wchar_t* name, const std::string& text) {
    std::ofstream(folder_ / L"in" / name, std::ios::binary) << text;
  }

  /// Starts the program as a shell does.
  DWORD Run(const std::vector<std::wstring>& arguments) {
    std::wstring line = L"\"" CONFIG_TOOL_PATH L"\"";
    for (const std::wstring& argument : arguments) line += L" \"" + argument + L"\"";
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const auto stream = [&](const wchar_t* name) {
      return ::CreateFileW((folder_ / name).c_str(), GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited,
                           CREATE_ALWAYS, 0, nullptr);
    };
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = stream(L"out");
    startup.hStdError = stream(L"err");
    PROCESS_INFORMATION process{};
    EXPECT_TRUE(::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                 (folder_ / L"in").c_str(), &startup, &process));
    DWORD exitCode = 99;
    ::WaitForSingleObject(process.hProcess, INFINITE);
    ::GetExitCodeProcess(process.hProcess, &exitCode);
    for (HANDLE handle :
         {startup.hStdOutput, startup.hStdError, process.hThread, process.hProcess}) {
      ::CloseHandle(handle);
    }
    out_ = ReadText(folder_ / L"out");
    err_ = ReadText(folder_ / L"err");
    return exitCode;
  }

  bool Says(const std::string& part) const { return (out_ + err_).find(part) != std::string::npos; }

  fs::path folder_;
  std::string out_;
  std::string err_;
};

TEST_F(ExeTest, OpensListsAndReplacesTheFilesThatAreNamed) {
  const struct {
    const wchar_t* name;
    const char* utf8;
  } kNames[] = {
      {L"Zürich.cfg", "Zürich.cfg"}, {L"Журнал.cfg", "Журнал.cfg"}, {L"日本.cfg", "日本.cfg"}};
  Write(L"ab.cfg", "[Networking]\nComputerName=AB\n");  // what "日本.cfg" is as a pattern
  for (const auto& [name, utf8] : kNames) {
    SCOPED_TRACE(utf8);
    Write(name, "[Printers]\n");
    EXPECT_EQ(Run({L"check", name}), 0U) << err_;
    EXPECT_TRUE(Says(std::string(utf8) + ":1:")) << err_;
    const std::wstring machine = fs::path(name).stem().native() + L"\\m.json";
    fs::create_directories(folder_ / L"in" / fs::path(name).stem());
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(Run({L"simulate", name, L"--save-machine", machine}), 0U) << err_;
    }
    EXPECT_EQ(Run({L"plan", name, L"--machine", machine, L"--save-machine", machine, L"--html",
                   machine + L".html"}),
              0U)
        << err_;
    EXPECT_EQ(std::distance(fs::directory_iterator((folder_ / L"in" / machine).parent_path()), {}),
              2)
        << "something was left behind";
    EXPECT_EQ(Run({L"check", L"no" + std::wstring(name)}), 2U);
    EXPECT_TRUE(Says(std::string("no") + utf8 + ": cannot be read")) << err_;
  }
  EXPECT_EQ(Run({L"check", L".", L"--json"}), 0U);
  for (const auto& [name, utf8] : kNames) EXPECT_TRUE(Says(utf8)) << err_;
  EXPECT_EQ(Run({L"check", L"?????.cfg"}), 2U) << err_;
  EXPECT_EQ(Run({L"check", L"??????.cfg"}), 0U) << "a letter is one character";
  EXPECT_TRUE(Says("Zürich.cfg:1:")) << err_;
}

TEST_F(ExeTest, ReadsFilesInTheSystemsCodePage) {
  Write(L"a.cfg", "[Networking]\nComputerName=\xCC\n");
  const bool isCyrillic = ::GetACP() == 1251;
  const std::string name = isCyrillic ? "М" : "Ì";
  EXPECT_EQ(Run({L"plan", L"a.cfg"}), 0U);
  EXPECT_TRUE(Says("-> " + name)) << err_;
  EXPECT_EQ(Run({L"plan", L"a.cfg", L"--code-page", L"1253"}), 0U);
  EXPECT_TRUE(Says("-> Μ")) << err_;  // the Greek letter
  const std::wstring set = L"Filename=C:\\" + std::wstring(isCyrillic ? L"ü" : L"ж") + L".cfg";
  EXPECT_EQ(Run({L"send", L"Internal", L"Configure", L"--set", set}), 2U);
  EXPECT_TRUE(Says("Filename=")) << err_;
}

TEST_F(ExeTest, SendHandsTheMessageToTheLibraryInTheFile) {
  EXPECT_EQ(Run({L"send", L"Internal", L"UpdateInfo", L"--plugin", CONFIG_LIBRARY_PATH, L"--set",
                 L"Auto-Update-Count=3", L"--json"}),
            0U)
      << err_;
  const auto json = simulated::Json::parse(out_);
  EXPECT_EQ(json["status"], 2);
  EXPECT_EQ(json["reply"].dump(),
            R"({"Auto-Update-Current3":"orvanta-config-6.8.378.X64.dll",)"
            R"("Auto-Update-Pattern3":"agents\\tarvo\\orvanta-config-*.X64.dll",)"
            R"("Auto-Update-Count":4})");
  EXPECT_FALSE(json.contains("changes"));
}

TEST_F(ExeTest, SendTellsWhenNothingWasDone) {
  EXPECT_EQ(Run({L"send", L"Internal", L"Configure", L"--plugin", CONFIG_LIBRARY_PATH, L"--set",
                 LR"(Filename=C:\none.cfg)"}),
            1U)
      << err_;
  EXPECT_TRUE(Says(R"(File C:\none.cfg does not exist)"));
}

TEST_F(ExeTest, SendRefusesWhatIsNoLibraryOfTheAgent) {
  for (const wchar_t* file : {LR"(C:\none.dll)", LR"(C:\windows\system32\kernel32.dll)"}) {
    EXPECT_EQ(Run({L"send", L"Internal", L"UpdateInfo", L"--plugin", file}), 2U);
    EXPECT_EQ(out_, "");
    EXPECT_TRUE(Says(fs::path(file).string()) && Says("--plugin")) << err_;
  }
}

TEST_F(ExeTest, CaptureWritesThisComputerAsAMachineFile) {
  const DWORD exitCode = Run({L"capture"});
  char name[MAX_COMPUTERNAME_LENGTH + 1];
  DWORD size = sizeof name;
  ASSERT_TRUE(GetComputerNameA(name, &size));
  const simulated::Machine machine = simulated::ParseMachine(out_, "capture");
  EXPECT_EQ(machine.computerName, name);
  EXPECT_EQ(machine.operatingSystem.at("SystemDrive"), "C:");
  for (const simulated::Adapter& adapter : machine.adapters) {
    EXPECT_EQ(adapter.ipAddresses.size(), adapter.subnetMasks.size()) << adapter.index;
  }
  std::erase(err_, '\r');
  EXPECT_EQ(exitCode, err_.empty() ? 0U : 1U) << err_;
  // Wine has no drivers to tell of.
  EXPECT_TRUE(err_.empty() ||
              err_ ==
                  "orvanta-config: capture: services: the class Win32_SystemDriver cannot "
                  "be listed\n")
      << err_;
}

}  // namespace
