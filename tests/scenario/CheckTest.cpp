#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <istream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <streambuf>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "tests/support/ToolTest.h"

namespace {

namespace fs = std::filesystem;
using support::Json;
using support::Texts;

/// Runs `check` as a user would.
class CheckTest : public support::ToolTest {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    fs::create_directories((folder_ / name).parent_path());
    return ToolTest::Write(name, text);
  }

  int Run(Texts arguments, const std::string& input = {}) {
    arguments.insert(arguments.begin(), "check");
    return ToolTest::Run(std::move(arguments), input);
  }

  /// What the last run with --json found.
  Json Findings() const { return Json::parse(out_).at("findings"); }

  /// The findings in a text as "line:column code", in their order.
  Texts Found(const std::string& text, const std::string& machine = {}) {
    Texts arguments{"-", "--json"};
    if (!machine.empty()) arguments.insert(arguments.end(), {"--machine", machine});
    Run(arguments, text);
    EXPECT_EQ(err_, "");
    Texts found;
    for (const Json& finding : Findings()) {
      found.push_back(std::to_string(finding["line"].get<int>()) + ":" +
                      std::to_string(finding["column"].get<int>()) + " " +
                      finding["code"].get<std::string>());
    }
    return found;
  }

  /// The files of the findings, without their folder, with their codes.
  Texts FoundIn(const Texts& arguments) {
    Texts options = arguments;
    options.emplace_back("--json");
    Run(options);
    Texts found;
    for (const Json& finding : Findings()) {
      const fs::path file(finding["file"].get<std::string>());
      found.push_back(file.lexically_relative(folder_).generic_string() + " " +
                      finding["code"].get<std::string>());
    }
    return found;
  }
};

TEST_F(CheckTest, ShowsEachFindingWithItsLineACaretAndAHint) {
  const std::string written = Write("a.cfg",
                                    "[TCP/IP]\r\nDHCP=False\r\nAddress = 10.0.0.5,10.0.0.6\r\n"
                                    "\tNetmask=255.255.255.0 255.0.255.0\r\nGatway=10.0.0.1\r\n");
  const std::string file = fs::path(written).lexically_normal().string();
  EXPECT_EQ(Run({written}), 1);
  EXPECT_EQ(out_, file +
                      ":4:24: error: \"255.0.255.0\" is no mask: its ones do not all come "
                      "first [C205]\n"
                      "   Netmask=255.255.255.0 255.0.255.0\n"
                      "                         ^~~~~~~~~~~\n"
                      "  hint: write a mask whose ones all come first, such as 255.255.255.0\n" +
                      file +
                      ":5:1: error: \"Gatway\" is not read [C104]\n"
                      "  Gatway=10.0.0.1\n"
                      "  ^~~~~~\n"
                      "  hint: did you mean Gateway?\n"
                      "1 file checked: 2 errors\n");
  EXPECT_EQ(Run({"-"}, "[Global]\nScheduleId=7\n"), 0);
  EXPECT_EQ(out_, "1 file checked: nothing found\n");
}

TEST_F(CheckTest, JsonHasTheAgreedFields) {
  EXPECT_EQ(Run({"-", "--json"}, "[Printers]\n[Global]\nConfig=x\n"), 0)
      << "no finding is an error";
  EXPECT_EQ(Json::parse(out_).dump(),
            R"({"schema":1,"findings":[{"file":"standard input","line":1,"column":1,)"
            R"("severity":"note","code":"C102","message":"section \"Printers\" is not read",)"
            R"("hint":"remove it unless another program reads it"},)"
            R"({"file":"standard input","line":3,"column":8,"severity":"warning","code":"C214",)"
            R"("message":"\"x\" asks for nothing","hint":"write Restore or RestoreAfterCreate, )"
            R"(or leave it out"}],"files":1})");
}

TEST_F(CheckTest, TellsThePlaceOfEveryFinding) {
  const struct {
    const char *name, *text;
    Texts found;
  } kCases[] = {
      {"an item on a continuation line",
       "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\n  , 1bad\n\n  10.0.0.7\nNetmask=255.0.0.0;\n"
       "255.0.0.0,255.0.0.0\n",
       {"4:5 C201"}},
      {"a continuation goes to the first of two keys",
       "[TCP/IP]\nDHCP=False\nNetmask=255.0.0.0\nAddress=10.0.0.5\nAddress=10.0.0.6\n 10.0.0.300\n",
       {"3:9 C208", "5:1 C010", "6:2 C201"}},
      {"lines that look like entries are no items",
       "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask 255.0.0.0\nGateway: 10.0.0.1\n",
       {"2:6 C307", "4:1 C007", "5:1 C007"}},
      {"nor are lines that look like a password",
       "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\nGateway=10.0.0.1\nPassword: x\n",
       {"6:1 C007"}},
      {"a line that belongs to nothing", "stray\n[Global]\nScheduleId=1\n", {"1:1 C008"}},
      {"a value goes on behind a header",
       "[Global]\nScheduleId=1\n[Networking]\n2\nComputerName=A\n",
       {"4:1 C008"}},
      {"a comment may go on", "[Global]\n; a comment\nthat goes on\nScheduleId=1\n", {"3:1 C019"}},
      {"a comment takes a list's lines",
       "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\n; a\n; b\n10.0.0.6\n10.0.0.7\nNetmask=255.0.0.0\n"
       "SetDNSInfo=True\nDNS-SuffixSearchOrder=a.example\n# more\nb.example\n[Networking]\n;\nx\n",
       {"6:1 C018", "12:1 C018", "15:1 C019"}},
      {"a blank file", " \r\n\n", {"1:1 C020"}},
      {"an adapter named by its location and its MAC address, or by one of them",
       "[TCP/IP]\nPCIBus=0\nPCIDevice=3\nPCIFunction=0\nMACAddress=080027123456\n"
       "[NicEntry2]\nMACAddress=08:00:27:12:34:56\n"
       "[NicEntry3]\nPCIBus=0\nPCIDevice=4\nPCIFunction=0\nMACAddress=080027123456\n",
       {"6:1 C314"}},
      {"metrics",
       "[TCP/IP]\nStatic-Route-Count=5\nRoute0=10.1.0.0 255.255.0.0 10.0.0.1 0 99999999999\n"
       "Route1=10.2.0.0 255.255.0.0 10.0.0.1\nRoute2=10.3.0.0 255.255.0.0 10.0.0.1 0 0\n"
       "Route3=10.4.0.0 255.255.0.0 10.0.0.1 0 10000\nRoute4=10.5.0.0 255.255.0.0 10.0.0.1 0 "
       "9999\n",
       {"3:40 C210", "4:8 C230", "5:40 C230", "6:40 C210"}},
      {"an empty route is none",
       "[TCP/IP]\nMACAddress=080027000001\nStatic-Route-Count=1\nRoute0=\n[NicEntry2]\n"
       "MACAddress=080027000002\nStatic-Route-Count=1\nRoute0=010.1.0.0 255.255.0.0 10.0.0.1 0 5\n",
       {"4:1 C222", "8:8 C203"}},
      {"one mistake, one finding",
       "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5/24\nStatic-Route-Count=1\n"
       "Route1=10.1.0.0/16 10.0.0.1\n[NicEntry2]\nDHCP=False\nAddress=10.0.0.6\nNetmask=24\n"
       "[Networking]\nComputerName=A\nDomainUser=1\nDomainPassword=2\n",
       {"3:9 C201", "5:8 C201", "9:9 C201", "12:1 C104"}},
      {"what an adapter with DHCP reaches is not known",
       "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\nStatic-Route-Count=1\n"
       "Route0=10.1.0.0 255.255.0.0 11.0.0.1 0 "
       "5\n[NicEntry2]\nMACAddress=080027000002\nDHCP=True\n",
       {"1:1 C315"}},
      {"the same suffixes twice, and a short name of the domain",
       "[NicEntry1]\nMACAddress=080027000001\nSetDNSInfo=True\nDNS-SuffixSearchOrder=a.b c.d\n"
       "[NicEntry2]\nMACAddress=080027000002\nSetDNSInfo=True\nDNS-SuffixSearchOrder=a.b, c.d\n"
       "[Networking]\nWorkgroup=False\nDomain=CORP\nDNSDomain=corp.example\n",
       {"12:11 C317"}},
      {"after an open header all goes on",
       "[Global\nConfig=x\n[TCP/IP\nDHCP=1\n",
       {"1:1 C006", "2:8 C214", "3:1 C006", "4:6 C213"}},
      {"columns count characters",
       "[Networking]\nDSOrganizationalUnit=K\xC3\xB6ln/Caf\xC3\xA9\\x\n",
       {"2:22 C219", "2:22 C015"}},
      {"settings of the agent are its own",
       "[ConfigSettings]\nServer=a\nServer=b\nand more\n=\n",
       {}},
      {"recorded keys are known",
       "[TCP/IP]\nDHCP=True\nVendorID=1\nDeviceID=2\nDNS-Domain=\nDNS-Hostname=A\n"
       "DNS-Enabled=False\nDNS-Server-Count=0\nAddress=0.0.0.0\n",
       {"9:9 C309"}},
      {"empty values ask for nothing",
       "[TCP/IP]\nDHCP=\nPCIBus=\nAddress=\nDNS-Server0=\n[Networking]\nComputerName=\n",
       {}},
      {"any NicEntry is an adapter", "[my nicentry #1]\nDHCP=True\nX=1\n", {"3:1 C106"}},
      {"numbers are written plainly",
       "[TCP/IP]\nSetDNSInfo=True\nDNS-Server-Count=1\nDNS-Server00=10.0.0.2\n",
       {"3:18 C221", "4:1 C104"}},
      {"numbers beyond the entries are never tried",
       "[TCP/IP]\nStatic-Route-Count=1\nRoute7=10.2.0.0 255.255.0.0 10.0.0.1 0 5\n",
       {"3:1 C220"}},
      {"a mask of a route may be whole or empty",
       "[TCP/IP]\nStatic-Route-Count=1\nRoute0=10.2.0.7 255.255.255.255 10.0.0.1 0 x\n",
       {"3:44 C210"}},
      {"an unknown location is none",
       "[TCP/IP]\nPCIBus=4294967295\nPCIDevice=3\nPCIFunction=8\n",
       {"4:13 C210"}},
      {"the join may come first",
       "[Global]\nRebootAfterConfig=false\n[Networking]\nComputerName=A-1\nWorkgroup=no\n"
       "Domain=CORP\nDSOrganizationalUnit=OU=Sales\nDomainUsername=1\nDomainPassword=2\n"
       "JoinDomainBeforeNameChange=TRUE\n",
       {"2:19 C301", "5:11 C213"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Found(c.text), c.found);
  }
}

TEST_F(CheckTest, NoSecretIsEverShown) {
  const std::string text =
      "[Networking]\nDomainPassword=s3cret1\ns3cret2\ns3cret3==\nDomainPasword s3cret4\n"
      "DomainUsername=s3cret5\nDomainPassword=s3cret6\nDomainUser : s3cret7\ns3cret8\n"
      "[ConfigSettings]\n[Networking]\nProxyPwd=s3cret9\n; my password: s3cretA\n=s3cret B\n"
      "[TCP/IP]\nDescription=secret=s3cretC\nDescription2 secret s3cretD\nDHCP s3cretE\n"
      "[Global]\nDomainPassword\ns3cretF\nScheduleId=\n";
  Write("a.cfg", "[Networking]\nComputerName=pass s3cret\n");
  for (const char* format : {"--no-color", "--json", "--sarif"}) {
    SCOPED_TRACE(format);
    Run({Write("b.cfg",
               "[Networking]\nDomainUsername=AB12\nDomainPassword=9F31\nMyPass-s3cret\n"
               "DNSDomain=x\n[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\n"
               "Gateway=10.0.0.1\nPassword: s3cret\nRoute0=pwd s3cret\n"
               "Static-Route-Count=1\nDNS-Server=pass=s3cret\nDNS-Server0: s3cret pass\n"),
         Write("c.cfg", "[Networking]\nComputerName=pass s3cret\n"), Path("a.cfg"), format});
    EXPECT_EQ(out_.find("s3cret"), std::string::npos) << out_;
    EXPECT_NE(out_.find("***"), std::string::npos);
    EXPECT_EQ(Run({"-", format}, text), 1);
    for (std::size_t at = out_.find("s3cret"); at != std::string::npos;
         at = out_.find("s3cret", at + 1)) {
      // Only what follows a key that holds no secret.
      EXPECT_TRUE(out_.compare(at, 7, "s3cretE") == 0 || out_.compare(at, 7, "s3cret ") == 0)
          << out_.substr(at > 60 ? at - 60 : 0, 100);
    }
  }
  Run({"-"}, "[Networking]\nDomainPassword=s3cret\nDomainPassword=other\n");
  EXPECT_NE(out_.find("\n  DomainPassword=***\n"), std::string::npos) << out_;
}

TEST_F(CheckTest, NothingOfAFileSteersTheTerminal) {
  Run({"-"}, "[Glob\x1B[31mal]\nA\tB\x07=%s%n\n[Global]\nConfig=\x1B[31m\n");
  EXPECT_EQ(out_.find('\x1B'), std::string::npos);
  EXPECT_EQ(out_.find('\x07'), std::string::npos);
  EXPECT_NE(out_.find(R"(Config=\x1B[31m)"), std::string::npos) << out_;
}

TEST_F(CheckTest, LongLinesAreCutRoundTheCaret) {
  const std::string much(5000, 'x');
  Run({"-"}, "[Networking]\nComputerName=" + much + "\nDSOrganizationalUnit=" + much + "\\a\n");
  for (std::size_t start = 0; start < out_.size();) {
    const std::size_t end = out_.find('\n', start);
    EXPECT_LT(end - start, 200U) << out_.substr(start, 200);
    start = end + 1;
  }
}

TEST_F(CheckTest, BadInputIsAFindingOrExitCodeTwo) {
  const struct {
    const char* name;
    std::string text;
    Texts found;
  } kTexts[] = {
      {"empty", "", {"1:1 C002"}},
      {"binary", std::string("[Global]\nA=\0\x01", 12), {"1:1 C004"}},
      {"too large", std::string((4U << 20U) + 1, 'x'), {"1:1 C003"}},
      {"one line", std::string(4U << 20U, 'x'), {"1:1 C008"}},
      {"endless continuation lines",
       "[Global]\nScheduleId=1\n" +
           [] {
             std::string lines;
             for (int i = 0; i < 1000000; ++i) lines += "x\n";
             return lines;
           }(),
       {"3:1 C008"}},
  };
  for (const auto& c : kTexts) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Found(c.text), c.found);
  }

  const std::string large = Write("large.cfg", "[Global]\n");
  fs::resize_file(large, 100U << 20U);
  fs::create_directories(folder_ / "empty");
  EXPECT_EQ(FoundIn({large}), Texts{"large.cfg C003"});
  const struct {
    const char* name;
    Texts arguments;
    const char* says;
  } kArguments[] = {
      {"no file", {}, "FILE is missing"},
      {"absent file", {large, Path("none.cfg")}, "none.cfg: cannot be read"},
      {"a name in brackets", {"[none]"}, "[none]: cannot be read"},
      {"empty folder", {Path("empty")}, "holds no file that ends in .cfg"},
      {"pattern without a file", {Path("x*.cfg")}, "fits no file"},
      {"two formats", {large, "--json", "--sarif"}, "--sarif"},
      {"absent machine", {large, "--machine", Path("m.json")}, "m.json: cannot be read"},
  };
  for (const auto& c : kArguments) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Run(c.arguments), 2);
    EXPECT_EQ(out_, "");
    EXPECT_NE(err_.find(c.says), std::string::npos) << err_;
    EXPECT_EQ(err_.find('\n'), err_.size() - 1) << err_;
  }
}

TEST_F(CheckTest, ShowsAHundredFindingsOfASeverityAtMost) {
  std::string text = "[Global]\n";
  for (int i = 0; i < 150; ++i) text += "Oddity" + std::to_string(i) + "=1\n";
  text += "ComputerName=A\n";
  const Texts found = Found(text);
  EXPECT_EQ(found.size(), 102U);
  EXPECT_EQ(found.front(), "1:1 C016");
  EXPECT_EQ(found.back(), "152:1 C105") << "an error is not lost behind warnings";
  EXPECT_NE(out_.find("50 more findings"), std::string::npos);
}

TEST_F(CheckTest, TakesFoldersAndPatternsAndSortsTheFiles) {
  for (const char* name : {"site/b.cfg", "site/a.CFG", "site/deep/er/c.cfg", "site/other.txt"}) {
    Write(name, "[Printers]\n");
  }
  const struct {
    const char* name;
    Texts arguments;
    Texts found;
  } kCases[] = {
      {"a folder",
       {Path("site")},
       {"site/a.CFG C102", "site/b.cfg C102", "site/deep/er/c.cfg C102"}},
      {"a pattern", {Path("site/?.cfg")}, {"site/a.CFG C102", "site/b.cfg C102"}},
      {"stars", {Path("s*e/*o*h*r*.t*t")}, {"site/other.txt C102"}},
      {"any folders", {Path("**/c.*")}, {"site/deep/er/c.cfg C102"}},
      {"a folder by a pattern", {Path("site/d*p")}, {"site/deep/er/c.cfg C102"}},
      {"a file named in two ways",
       {Path("site/b.cfg"), folder_.string() + "/site/../site/b.cfg", Path("*/b*")},
       {"site/b.cfg C102"}},
      {"any file when it is named", {Path("site/other.txt")}, {"site/other.txt C102"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(FoundIn(c.arguments), c.found);
  }
}

TEST_F(CheckTest, WhatCannotBeReadInAFolderIsAFinding) {
  Write("site/a.cfg", "[Printers]\n");
  std::error_code error;
  fs::create_symlink(folder_ / "nowhere", folder_ / "site" / "b.cfg", error);
  if (error) GTEST_SKIP() << "no links on this system: " << error.message();
  fs::create_directory_symlink(folder_ / "site", folder_ / "site" / "loop");
  EXPECT_EQ(FoundIn({Path("site")}), (Texts{"site/a.cfg C102", "site/b.cfg C001"}));
  EXPECT_EQ(Run({Path("site/b.cfg")}), 2) << "it was named itself";
}

TEST_F(CheckTest, FilesAreComparedWithEachOther) {
  const std::string adapter = "[TCP/IP]\nDHCP=False\nNetmask=255.0.0.0\nAddress=";
  Write("a.cfg",
        "[Networking]\nComputerName=PC-1\n" + adapter + "10.0.0.5\nMACAddress=080027000001\n");
  Write("b.cfg", adapter + "10.0.0.6\nMACAddress=08:00:27:00:00:01\n");
  Write("c.cfg", "[Networking]\nComputerName=pc-1\n" + adapter + "10.0.0.6\n");
  EXPECT_EQ(FoundIn({Path("*.cfg")}), (Texts{"b.cfg C403", "c.cfg C401", "c.cfg C402"}));
  EXPECT_NE(out_.find("a.cfg:2, too"), std::string::npos) << out_;
  EXPECT_NE(out_.find("b.cfg:4, too"), std::string::npos) << out_;
  // With DHCP an address is only a record.
  Write("b.cfg", "[TCP/IP]\nDHCP=True\nAddress=10.0.0.6\nNetmask=255.0.0.0\n");
  EXPECT_EQ(FoundIn({Path("b.cfg"), Path("c.cfg")}), Texts{"b.cfg C309"});
}

TEST_F(CheckTest, AValueIsRefusedForWhatIsWrongWithIt) {
  const std::string adapter = "[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\n";
  const std::string identity = "[Networking]\n";
  const struct {
    std::string text;
    const char* code;
    const char* says;
  } kCases[] = {
      {adapter + "MACAddress=010027123456\n", "C212", "is no address of a single adapter"},
      {adapter + "MACAddress=000000000000\n", "C212", "is no address of a single adapter"},
      {identity + "ComputerName=4711\n", "C216", "is made of digits alone"},
      {identity + "ComputerName=-PC\n", "C216", "a hyphen at its start"},
      {identity + "ComputerName=PC-\n", "C216", "a hyphen at its end"},
      {identity + "Workgroup=True\nDomain=SIXTEEN-LETTERS-\n", "C217", "has 16 characters"},
      {identity + "DNSDomain=corp.example\nDSOrganizationalUnit=ou=Sales\n", "C219",
       "it is taken for a path"},
      {"[TCP/IP]\nDHCP=False\nAddress=127.0.0.1\nNetmask=255.0.0.0\n", "C204",
       "is a loopback address"},
      {"[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.00\n", "C203",
       "is read as another mask"},
      {"[TCP/IP]\nDHCP=False\nAddress=10.0.0.5\nNetmask=0.0.0.0\n", "C205", "it is empty"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Run({"-"}, c.text), 1);
    const std::size_t code = out_.find(std::string(" [") + c.code + "]");
    ASSERT_NE(code, std::string::npos) << out_;
    EXPECT_NE(out_.find(c.says), std::string::npos) << out_;
  }
}

TEST_F(CheckTest, OneFileUnderTwoNamesIsOne) {
  const std::string file = Write("a.cfg", "[Networking]\nComputerName=PC-1\n");
  EXPECT_EQ(FoundIn({file, Path("./a.cfg")}), Texts{});
  std::error_code error;
  fs::create_symlink(file, Path("b.cfg"), error);
  if (error) GTEST_SKIP() << "no links on this system: " << error.message();
  EXPECT_EQ(FoundIn({folder_.string()}), Texts{});
  EXPECT_EQ(Json::parse(out_)["files"], 1);
}

TEST_F(CheckTest, AMachineDecidesWhatChanges) {
  const std::string member =
      R"({"schema":1,"computer_name":"PC1","membership":{"domain":{"dns_name":"corp.example",)"
      R"("flat_name":"CORP","has_sid":true}},"directory":{"domains":[{"dns_name":"corp.example",)"
      R"("flat_name":"CORP","ous":["OU=Sales,DC=corp,DC=example"]}]}})";
  const std::string off = "[Global]\nRebootAfterConfig=False\n[Networking]\n";
  const std::string join = "Workgroup=False\nDomain=CORP\n";
  const std::string account =
      "[Networking]\nDomain=CORP\nWorkgroup=False\nDomainUsername=A\nDomainPassword=B\n";
  const struct {
    const char* name;
    std::string text, machine;
    Texts found;
    const char* says = "";
  } kCases[] = {
      {"leaving", off + "Workgroup=True\nDomain=WG\n", member, {"2:19 C301"}, "leaving the domain"},
      {"a member of no domain", off + "Workgroup=True\nDomain=WG\n", R"({"schema":1})", {}},
      {"the name is there", off + "ComputerName=pc1\n", member, {}},
      {"a new name", off + "ComputerName=PC2\n", member, {"2:19 C301"}},
      {"the domain is joined", off + join, member, {}},
      {"the join comes", off + join, R"({"schema":1})", {"2:19 C301", "5:8 C512"}},
      {"a directory without domains",
       off + join,
       R"({"schema":1,"directory":null})",
       {"2:19 C301", "5:8 C512", "5:8 C504"}},
      {"unknown texts", account, R"({"schema":1,"directory":null})", {"2:8 C504", "4:1 C303"}},
      {"no texts",
       account,
       R"({"schema":1,"decrypt":null})",
       {"4:1 C303", "4:16 C507"},
       "does not have LibCrypto.dll"},
      {"an adapter off the bus",
       "[TCP/IP]\nMACAddress=02004C4F4F50\n",
       R"({"schema":1,"adapters":[{"index":1,"pnp_device_id":"ROOT\\NET\\0000",)"
       R"("location_information":null,"mac_address":"02:00:4C:4F:4F:50"},{"index":7}]})",
       {"1:1 C502"},
       "adapter 1, which is not on the PCI bus"},
      {"a second default route",
       "[TCP/IP]\nStatic-Route-Count=1\nRoute0=10.2.0.0 255.255.0.0 10.0.0.1 0 5\n",
       R"({"schema":1,"adapters":[{"index":7}],"persistent_routes":[)"
       R"({"destination":"0.0.0.0","mask":"0.0.0.0","next_hop":"10.0.0.1","metric":5},)"
       R"({"destination":"0.0.0.0","mask":"0.0.0.0","next_hop":"10.0.0.2","metric":5}]})",
       {"3:8 C508"},
       "two default routes"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Found(c.text, Write("m.json", c.machine)), c.found);
    EXPECT_NE(out_.find(c.says), std::string::npos) << out_;
  }
}

TEST_F(CheckTest, SarifHasWhatCodeReviewToolsAskFor) {
  Write("a b/50% #1.cfg", "[TCP/IP]\nDHCP=No\nPCIBus=1\n");
  Write("a b/empty.cfg", "");
  EXPECT_EQ(Run({Path("a b"), "--sarif"}), 1);
  const Json sarif = Json::parse(out_);
  EXPECT_EQ(sarif["version"], "2.1.0");
  ASSERT_EQ(sarif["runs"].size(), 1U);
  const Json& run = sarif["runs"][0];
  EXPECT_EQ(run["columnKind"], "unicodeCodePoints");
  const Json& driver = run["tool"]["driver"];
  EXPECT_EQ(driver["name"], "orvanta-config");
  EXPECT_EQ(driver["version"], "6.8.378");
  ASSERT_EQ(run["results"].size(), 3U);
  for (const Json& result : run["results"]) {
    const Json& rule = driver["rules"][result["ruleIndex"].get<std::size_t>()];
    EXPECT_EQ(rule["id"], result["ruleId"]);
    EXPECT_EQ(rule["defaultConfiguration"]["level"], result["level"]);
    EXPECT_FALSE(rule["shortDescription"]["text"].get<std::string>().empty());
    EXPECT_FALSE(result["message"]["text"].get<std::string>().empty());
    ASSERT_EQ(result["locations"].size(), 1U);
  }
  const Json& place = run["results"][0]["locations"][0]["physicalLocation"];
  const std::string uri = place["artifactLocation"]["uri"];
  EXPECT_TRUE(uri.starts_with("file:///")) << uri;
  EXPECT_TRUE(uri.ends_with("/a%20b/50%25%20%231.cfg")) << uri;
  EXPECT_EQ(place["region"].dump(), R"({"startLine":2,"startColumn":6,"endColumn":8})");
  const Json& whole = run["results"][2]["locations"][0]["physicalLocation"];
  EXPECT_FALSE(whole.contains("region")) << "an empty file has no line";

  Write("x/1.cfg", "[Networking]\nComputerName=PC-1\n");
  Write("x/2.cfg", "[Networking]\nComputerName=PC-1\n");
  Run({Path("x"), "--sarif"});
  const Json related =
      Json::parse(out_)["runs"][0]["results"][0]["relatedLocations"][0]["physicalLocation"];
  EXPECT_TRUE(related["artifactLocation"]["uri"].get<std::string>().ends_with("/x/1.cfg"));
  EXPECT_EQ(related["region"]["startLine"], 2);
}

/// An input that takes its time.
class LateInput : public std::stringbuf {
 public:
  using std::stringbuf::stringbuf;

 private:
  std::streamsize xsgetn(char* to, std::streamsize size) override {
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    return std::stringbuf::xsgetn(to, size);
  }
};

TEST_F(CheckTest, ShowsOnATerminalHowFarItIs) {
  LateInput late("[Global]\nScheduleId=7\n");
  std::istream in(&late);
  std::ostringstream out;
  std::ostringstream err;
  const Texts arguments{"check", "-", "examples/server.cfg"};
  EXPECT_EQ(tool::RunTool(arguments, {in, out, err, false, /*progress=*/true}), 0);
  EXPECT_EQ(err.str(), "\rchecked 1 of 2 files\r\x1B[K") << "the line is taken away again";
  EXPECT_EQ(out.str(), "2 files checked: nothing found\n");
}

TEST_F(CheckTest, AMachineWithAllThatIsNeededAddsNothing) {
  for (const std::string example : {"office-pc", "laptop", "server"}) {
    SCOPED_TRACE(example);
    const std::string base = "examples/" + example;
    EXPECT_EQ(Run({base + ".cfg", "--machine", base + ".machine.json"}), 0);
    EXPECT_EQ(out_, "1 file checked: nothing found\n");
  }
}

TEST_F(CheckTest, TheExamplesAreCleanTogether) {
  EXPECT_EQ(Run({"examples"}), 0);
  EXPECT_EQ(out_, "4 files checked: nothing found\n");
}

}  // namespace
