#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/ToolTest.h"
#include "tool/agent/AgentHost.h"

namespace {

namespace fs = std::filesystem;
using support::Json;
using support::ReadText;
using support::Texts;

constexpr char kRename[] = "[Global]\r\nScheduleId=7\r\n[Networking]\r\nComputerName=PC-42\r\n";

constexpr char kRefusing[] = R"({"schema": 1, "faults": [
    {"call": "wmi.method", "method": "Rename", "result": 5}]})";

class SimulateTest : public support::ToolTest {
 protected:
  Json Simulate(const std::string& config, const Texts& options = {}) {
    return RunJson("simulate", config, options);
  }
};

TEST_F(SimulateTest, WhatTheUserMustMendIsOneLineAndExitCodeTwo) {
  const std::string config = Write("a.cfg", kRename);
  const std::string badMachine = Write("bad.json", R"({"schema": 1, "adapters": 7})");
  const struct {
    const char* name;
    Texts arguments;
    const char* says;
  } kCases[] = {
      {"no command", {}, "the command is missing; see orvanta-config --help"},
      {"unknown command", {"simulat", config}, "simulat: unknown command"},
      {"unknown option", {"simulate", config, "--frob"}, "--frob"},
      {"machine from standard input", {"simulate", "-", "--machine", "-"}, "--machine -"},
      {"machine to standard output",
       {"simulate", config, "--save-machine", "-"},
       "--save-machine -"},
      {"no file", {"simulate"}, "FILE is missing"},
      {"absent file", {"simulate", Path("none.cfg")}, "none.cfg: cannot be read"},
      {"folder as file", {"simulate", folder_.string()}, "is a directory"},
      {"two files", {"simulate", config, config}, "a.cfg"},
      {"unknown message", {"simulate", config, "--message", "boot"}, "boot"},
      {"value without =", {"simulate", config, "--set", "abc"}, "--set abc: has no KEY="},
      {"value without key", {"simulate", config, "--set", "=abc"}, "has no KEY="},
      {"empty place", {"simulate", config, "--at", ""}, "--at"},
      {"negative restarts", {"simulate", config, "--follow-restarts=-1"}, "--follow-restarts"},
      {"absent machine", {"simulate", config, "--machine", Path("no.json")}, "no.json: cannot be"},
      {"bad machine", {"simulate", config, "--machine", badMachine}, "adapters"},
      {"unwritable folder", {"simulate", config, "--save-machine", Path("no/m.json")}, "m.json"},
      {"folder to write", {"simulate", config, "--save-machine", folder_.string()}, "no ordinary"},
      {"file over itself", {"simulate", config, "--save-machine", config}, "itself"},
      {"line feed in a name", {"simulate", Path("a\nb.cfg")}, "a\\nb.cfg"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Run(c.arguments), 2);
    EXPECT_EQ(out_, "");
    EXPECT_TRUE(err_.starts_with("orvanta-config: ")) << err_;
    EXPECT_NE(err_.find(c.says), std::string::npos) << err_;
    EXPECT_EQ(err_.find('\n'), err_.size() - 1) << err_;
  }
  EXPECT_EQ(ReadText(config), kRename);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 2) << "something was left behind";
}

TEST_F(SimulateTest, ARenameWaitsForTheRestartAndTheFileStays) {
  const Json json = Simulate(kRename);
  EXPECT_EQ(exitCode_, 0);
  Texts fields;
  for (const auto& field : json.items()) fields.push_back(field.key());
  EXPECT_EQ(fields, (Texts{"schema", "status", "reply", "log", "changes", "sent", "posted",
                           "restarts", "machine"}));
  EXPECT_EQ(json["status"], 1);
  EXPECT_EQ(json["reply"].dump(), R"({"Schedule-ID":"7","Task-Sequence-ID":"","Result":"Reboot"})");
  EXPECT_EQ(json["log"][0]["text"],
            "Toolbox-Main:77 Toolbox::DoMagic - Finding handler for Internal=Configure");
  ASSERT_EQ(json["changes"].size(), 1U);
  EXPECT_EQ(json["changes"][0]["method"], "Rename");
  EXPECT_EQ(json["changes"][0]["arguments"]["Name"], "PC-42");
  EXPECT_EQ(json["machine"]["computer_name"], "TEMPLATE");
  EXPECT_EQ(json["machine"]["pending_computer_name"], "PC-42");
  EXPECT_EQ(json["machine"]["files"][0]["text"], kRename);
}

TEST_F(SimulateTest, FollowingRestartsEndsAtTheFirstOtherReply) {
  const Json json = Simulate(kRename, {"--follow-restarts", "3"});
  EXPECT_EQ(exitCode_, 0);
  EXPECT_EQ(json["reply"]["Result"], "Success");
  EXPECT_EQ(json["restarts"], 1);
  ASSERT_EQ(json["earlier"].size(), 1U);
  EXPECT_EQ(json["earlier"][0]["reply"]["Result"], "Reboot");
  EXPECT_EQ(json["earlier"][0]["changes"].size(), 1U);
  EXPECT_FALSE(json["earlier"][0].contains("machine"));
  EXPECT_EQ(json["machine"]["computer_name"], "PC-42");
  ASSERT_EQ(json["changes"].size(), 1U) << "the second message's own journal";
  EXPECT_EQ(json["changes"][0]["call"], "file.move");
}

TEST_F(SimulateTest, PostedMessagesAreDeliveredOnlyWhenAskedFor) {
  EXPECT_EQ(Run({"simulate", "--message", "prep-for-image", "--json"}), 0);
  const Json alone = Json::parse(out_);
  EXPECT_EQ(alone["posted"].dump(), R"([{"type":"Internal","name":"Configure","values":)"
                                    R"([["Filename","C:\\tarvo.cfg"]]}])");
  EXPECT_EQ(Run({"simulate", "--message", "prep-for-image", "--json", "--deliver-posted"}), 0);
  const Json both = Json::parse(out_);
  EXPECT_EQ(both["earlier"][0]["changes"], alone["changes"]);
  EXPECT_EQ(both["reply"]["Result"], "Success");
}

TEST_F(SimulateTest, TheExitCodeTellsHowTheMessageEnded) {
  const std::string broken = Write(
      "m.json", R"({"schema": 1, "faults": [{"call": "wmi.connect", "hresult": "0x800706BA"}]})");
  const struct {
    const char* name;
    Texts options;
    int exitCode;
    int status;
  } kCases[] = {
      {"success or reboot", {}, 0, 1},
      {"failure", {"--machine", Write("r.json", kRefusing)}, 1, 1},
      {"not handled", {"--machine", broken}, 1, 0},
      {"file that is not there", {"--set", "Filename=C:\\other.cfg"}, 1, 0},
      {"update info has no result", {"--message", "update-info"}, 0, 2},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Simulate(kRename, c.options)["status"], c.status);
    EXPECT_EQ(exitCode_, c.exitCode);
  }
}

TEST_F(SimulateTest, TheVersionIsTheLibrarys) {
  EXPECT_EQ(Run({"--version"}), 0);
  EXPECT_EQ(out_, "orvanta-config 6.8.378\n");
}

TEST_F(SimulateTest, GivenValuesCanBeReadButAreNoPartOfTheReply) {
  const Json json =
      Simulate("x=y", {"--message", "update-info", "--set", "Auto-Update-Count=3", "--set", "A=b"});
  EXPECT_EQ(json["reply"].dump(),
            R"({"Auto-Update-Current3":"orvanta-config-6.8.378.X64.dll",)"
            R"("Auto-Update-Pattern3":"agents\\tarvo\\orvanta-config-*.X64.dll",)"
            R"("Auto-Update-Count":4})");
}

TEST_F(SimulateTest, PasswordsAreNeverShownAndOnlySavedFromTheMachineFile) {
  const std::string machine = Write("m.json", R"({"schema": 1, "decrypt": {"CU": "joiner",
      "CP": "s3cret-plain"}, "directory": {"domains": [{"dns_name": "corp.example",
      "flat_name": "CORP", "accounts": [{"user": "joiner", "password": "s3cret-plain"}]}]},
      "registry": [{"name": "DefaultPassword", "type": "REG_SZ", "data": "s3cret-registry"}]})");
  const std::string config =
      "[Networking]\nWorkgroup=False\nDNSDomain=corp.example\nDSOrganizationalUnit=Sales\n"
      "DomainUsername=CU\nDomainPassword=CP\n[ConfigSettings]\nProxyPassword=s3cret-sent\n"
      "; UserPwd=s3cret-comment\n";
  const std::string saved = Path("saved.json");
  for (const char* format : {"--json", "--verbose"}) {
    SCOPED_TRACE(format);
    Run({"simulate", "-", format, "--machine", machine, "--save-machine", saved}, config);
    EXPECT_EQ(out_.find("s3cret"), std::string::npos) << out_;
    EXPECT_NE(out_.find("***"), std::string::npos) << out_;
    EXPECT_NE(out_.find("joiner"), std::string::npos) << "the join was not even tried: " << out_;
  }
  EXPECT_NE(ReadText(saved).find("s3cret-plain"), std::string::npos);
#ifndef _WIN32
  EXPECT_EQ(fs::status(saved).permissions(), fs::perms::owner_read | fs::perms::owner_write);
#endif
}

TEST_F(SimulateTest, NoTextOfTheUserIsTakenForAFormatOrSteersTheTerminal) {
  const std::string config =
      "[Networking]\nComputerName=%n%s%s%s%s\n[TCP/IP]\nSetDNSInfo=%n%s\x1B[31m\n\xFF=%s\n";
  const Json json = Simulate(config, {"--at", R"(C:\%s%n%s%n.cfg)"});
  EXPECT_NE(json["log"].dump().find("%s%n%s%n.cfg"), std::string::npos);
  Run({"simulate", "-", "--verbose", "--at", R"(C:\%s%n%s.cfg)"}, config);
  EXPECT_NE(out_.find(R"(C:\%s%n%s.cfg)"), std::string::npos);
  EXPECT_EQ(out_.find('\x1B'), std::string::npos);
}

TEST_F(SimulateTest, TheReportTellsWhatATechnicianWants) {
  const auto expectReport = [&](const Texts& arguments, int exitCode, const Texts& parts) {
    EXPECT_EQ(Run(arguments, kRename), exitCode);
    for (const std::string& part : parts) {
      EXPECT_NE(out_.find(part), std::string::npos) << part << out_;
    }
  };
  expectReport({"simulate", "-"}, 0,
               {"\n  1  rename the computer to PC-42\n", "\n  Result            Reboot\n",
                "\nWaiting for the restart\n  computer name  PC-42\n",
                "\n  computer\n    name after the restart  - -> PC-42\n"});
  expectReport({"simulate", Write("wide.cfg", "\xFF\xFE[")}, 0,
               {"\nCheck    1 error: the file is binary or in UTF-16; see orvanta-config check "});
  expectReport({"simulate", "-", "--machine", Write("m.json", kRefusing)}, 1,
               {"rename the computer to PC-42  refused: result 5 (access denied)\n",
                "\n       ChangeCompName:45 - Configuring computer name failed\n"});
  expectReport({"simulate", "--message", "prep-for-image", "--deliver-posted"}, 0,
               {"  write C:\\restore.cfg: [Interface1] Netmask=255.255.0.0\n",
                "\\NetworkDisabled to 1\n", "  service Dhcp: disabled\n",
                "\nPosted\n  Internal/Configure\n    Filename  C:\\tarvo.cfg\n",
                "\nMessage 2 of 2  Internal/Configure, Filename=C:\\tarvo.cfg\n",
                "\\NetworkDisabled\n", "  service Dhcp: start it  runs already\n",
                "\n    LmHosts  manual, running -> automatic, running\n"});
}

TEST(AgentHostTest, OnlyKnownFormatsMeetTheirArguments) {
  tool::AgentHost host;
  host.Log(1, "%s:%d Toolbox - %s", "Toolbox-Main", 77, "100%");
  host.Log(0, "internal/Configure:1 100%n %s");
  ASSERT_EQ(host.LogLines().size(), 2U);
  EXPECT_EQ(host.LogLines()[0].text, "Toolbox-Main:77 Toolbox - 100%");
  EXPECT_EQ(host.LogLines()[1].text, "internal/Configure:1 100%n %s");
}

TEST(AgentMessageTest, SettingReplacesAndAddingRepeats) {
  tool::AgentMessage message("Internal", "Configure", {{"given", "12"}, {"word", "x1"}});
  message.AddValue("a", "1");
  message.AddValue("a", "2");
  message.SetValue("a", "3");
  message.SetIntValue("given", -1);
  EXPECT_STREQ(message.GetValue("a"), "3");
  EXPECT_STREQ(message.GetValue("given"), "-1");
  EXPECT_EQ(message.GetValue("A"), nullptr);
  std::uint32_t number = 5;
  message.GetIntValue("word", &number);
  EXPECT_EQ(number, 5U);
  message.GetIntValue("given", &number);
  EXPECT_EQ(number, 0xFFFFFFFFU);
  EXPECT_EQ(message.Written().size(), 3U);
}

}  // namespace
