// The shipped program with real arguments: names of files in and outside of the system's code page.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>
// windows.h renames what others declare, so it comes last.
#include <windows.h>

namespace {

namespace fs = std::filesystem;

std::string ReadText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class ExeTest : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / L"exe-Zürich-日本";
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  fs::path Write(const wchar_t* name, const std::string& text) {
    std::ofstream(folder_ / name, std::ios::binary) << text;
    return folder_ / name;
  }

  /// Starts the program as a shell does; both of its streams end up in `said_`.
  DWORD Run(const std::vector<std::wstring>& arguments) {
    std::wstring line = L"\"" CONFIG_TOOL_PATH L"\"";
    for (const std::wstring& argument : arguments) line += L" \"" + argument + L"\"";
    const fs::path said = folder_.parent_path() / L"said.txt";
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = ::CreateFileW(said.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                       CREATE_ALWAYS, 0, nullptr);
    startup.hStdError = startup.hStdOutput;
    PROCESS_INFORMATION process{};
    EXPECT_TRUE(::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                 folder_.c_str(), &startup, &process));
    ::CloseHandle(startup.hStdOutput);
    ::WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 99;
    ::GetExitCodeProcess(process.hProcess, &exitCode);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    said_ = ReadText(said);
    return exitCode;
  }

  bool Says(const std::string& part) const { return said_.find(part) != std::string::npos; }

  fs::path folder_;
  std::string said_;
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
    EXPECT_EQ(Run({L"check", name}), 0U) << said_;
    EXPECT_TRUE(Says(std::string(utf8) + ":1:")) << said_;
    const std::wstring machine = fs::path(name).stem().native() + L"\\m.json";
    fs::create_directories(folder_ / fs::path(name).stem());
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(Run({L"simulate", name, L"--save-machine", machine}), 0U) << said_;
    }
    EXPECT_EQ(Run({L"plan", name, L"--machine", machine, L"--save-machine", machine, L"--html",
                   machine + L".html"}),
              0U)
        << said_;
    EXPECT_EQ(std::distance(fs::directory_iterator((folder_ / machine).parent_path()), {}), 2)
        << "something was left behind";
    EXPECT_EQ(Run({L"check", L"no" + std::wstring(name)}), 2U);
    EXPECT_TRUE(Says(std::string("no") + utf8 + ": cannot be read")) << said_;
  }
  EXPECT_EQ(Run({L"check", L".", L"--json"}), 0U);
  for (const auto& [name, utf8] : kNames) EXPECT_TRUE(Says(utf8)) << said_;
  EXPECT_EQ(Run({L"check", L"?????.cfg"}), 2U) << said_;
  EXPECT_EQ(Run({L"check", L"??????.cfg"}), 0U) << "a letter is one character";
  EXPECT_TRUE(Says("Zürich.cfg:1:")) << said_;
}

TEST_F(ExeTest, ReadsFilesInTheSystemsCodePage) {
  const fs::path file = Write(L"a.cfg", "[Networking]\nComputerName=\xCC\n");
  const bool isCyrillic = ::GetACP() == 1251;
  const std::string name = isCyrillic ? "М" : "Ì";
  EXPECT_EQ(Run({L"plan", L"a.cfg"}), 0U);
  EXPECT_TRUE(Says("-> " + name)) << said_;
  EXPECT_EQ(Run({L"plan", L"a.cfg", L"--code-page", L"1253"}), 0U);
  EXPECT_TRUE(Says("-> Μ")) << said_;  // the Greek letter
  const std::wstring set = L"Filename=C:\\" + std::wstring(isCyrillic ? L"ü" : L"ж") + L".cfg";
  EXPECT_EQ(Run({L"send", L"Internal", L"Configure", L"--set", set}), 2U);
  EXPECT_TRUE(Says("Filename=")) << said_;
}

}  // namespace
