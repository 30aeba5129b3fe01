// The shipped tool on this computer: the plug-in loaded from its file, the machine as Windows tells
// it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/simulated/MachineFile.h"
// windows.h renames what others declare, so it comes last.
#include <windows.h>

#include <nlohmann/json.hpp>

namespace {

using simulated::Json;
using std::filesystem::path;

struct Outcome {
  int exitCode;
  std::string out;
  std::string err;
};

std::string TakeText(const path& file) {
  std::string text;
  {
    std::ifstream stream(file, std::ios::binary);
    text.assign(std::istreambuf_iterator<char>(stream), {});
  }
  std::filesystem::remove(file);
  std::erase(text, '\r');
  return text;
}

Outcome RunWith(const std::vector<std::string>& arguments) {
  const path stem = std::filesystem::temp_directory_path() /
                    ("orvanta-live-" + std::to_string(GetCurrentProcessId()));
  const path out = stem.string() + ".out";
  const path err = stem.string() + ".err";
  std::string command = absolute(path(CONFIG_TOOL_PATH)).make_preferred().string();
  for (const std::string& argument : arguments) command += " \"" + argument + "\"";
  command += " >" + out.string() + " 2>" + err.string();
  const int exitCode = std::system(command.c_str());
  return {exitCode, TakeText(out), TakeText(err)};
}

TEST(LiveTool, SendHandsTheMessageToTheLibraryInTheFile) {
  const Outcome outcome = RunWith({"send", "Internal", "UpdateInfo", "--plugin",
                                   CONFIG_LIBRARY_PATH, "--set", "Auto-Update-Count=3", "--json"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  const Json json = Json::parse(outcome.out);
  EXPECT_EQ(json["status"], 2);
  EXPECT_EQ(json["reply"].dump(),
            R"({"Auto-Update-Current3":"orvanta-config-6.8.378.X64.dll",)"
            R"("Auto-Update-Pattern3":"agents\\tarvo\\orvanta-config-*.X64.dll",)"
            R"("Auto-Update-Count":4})");
  EXPECT_FALSE(json.contains("changes"));
}

TEST(LiveTool, SendTellsWhenNothingWasDone) {
  const Outcome outcome = RunWith({"send", "Internal", "Configure", "--plugin", CONFIG_LIBRARY_PATH,
                                   "--set", R"(Filename=C:\none.cfg)"});
  EXPECT_EQ(outcome.exitCode, 1) << outcome.err;
  EXPECT_NE(outcome.out.find(R"(File C:\none.cfg does not exist)"), std::string::npos);
}

TEST(LiveTool, SendRefusesWhatIsNoLibraryOfTheAgent) {
  for (const char* file : {R"(C:\none.dll)", R"(C:\windows\system32\kernel32.dll)"}) {
    const Outcome outcome = RunWith({"send", "Internal", "UpdateInfo", "--plugin", file});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(file), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find("--plugin"), std::string::npos) << outcome.err;
  }
}

TEST(LiveTool, CaptureWritesThisComputerAsAMachineFile) {
  const Outcome outcome = RunWith({"capture"});
  char name[MAX_COMPUTERNAME_LENGTH + 1];
  DWORD size = sizeof name;
  ASSERT_TRUE(GetComputerNameA(name, &size));
  const simulated::Machine machine = simulated::ParseMachine(outcome.out, "capture");
  EXPECT_EQ(machine.computerName, name);
  EXPECT_EQ(machine.operatingSystem.at("SystemDrive"), "C:");
  for (const simulated::Adapter& adapter : machine.adapters) {
    EXPECT_EQ(adapter.ipAddresses.size(), adapter.subnetMasks.size()) << adapter.index;
  }
  EXPECT_EQ(outcome.exitCode, outcome.err.empty() ? 0 : 1) << outcome.err;
  // Wine has no drivers to tell of.
  EXPECT_TRUE(outcome.err.empty() ||
              outcome.err ==
                  "orvanta-config: capture: services: the class Win32_SystemDriver cannot "
                  "be listed\n")
      << outcome.err;
}

}  // namespace
