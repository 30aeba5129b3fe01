// The registry, the operating-system record, WMI and the utilities on a simulated machine.
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "base/Utf8.h"
#include "common/ipc/IpAddress.h"
#include "common/sys/DllProxy.h"
#include "common/sys/OsVersion.h"
#include "common/sys/Registry.h"
#include "common/sys/Wmi.h"
#include "common/util/CheckHResult.h"
#include "common/util/FileUtils.h"
#include "handlers/internal/FoldedText.h"
#include "tests/support/JsonText.h"
#include "tests/support/MachineTest.h"

namespace {

using Texts = std::vector<std::string>;
constexpr auto kRefused = static_cast<platform::HResult>(0x80070005);

/// The record that `operation` throws.
template <typename Error>
Error Caught(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return Error{err::Site{"", "", 0}, 0, 0};
}

class SysTest : public support::MachineTest {};

// ---- Registry -----------------------------------------------------------------------------------

TEST_F(SysTest, RegistryRefusalsTellTheirKind) {
  machine_.registry = {{R"(HKEY_LOCAL_MACHINE\Software\X)", "number", platform::kRegDWord, 2u},
                       {R"(HKEY_LOCAL_MACHINE\Software\X)", "text", platform::kRegSz, "hello"},
                       {R"(HKEY_LOCAL_MACHINE\Software\X)", "", platform::kRegSz, "default"}};
  sys::Registry key;
  std::string text;
  std::uint32_t number = 7;
  bool flag = true;
  struct Refusal {
    const char* message;
    std::int32_t value;
    std::function<void()> operation;
  };
  const auto expectRefusals = [](const std::vector<Refusal>& refusals) {
    for (const Refusal& refusal : refusals) {
      const auto error = Caught<sys::RegistryError>(refusal.operation);
      EXPECT_STREQ(error.message, refusal.message);
      EXPECT_EQ(error.Value, refusal.value) << refusal.message;
    }
  };
  key.SetSubkey("Software\\None");
  expectRefusals({
      {"ReadString() - Key not open, cannot read.", 8, [&] { key.ReadString("text", &text); }},
      {"ReadDWord() - Key not open, cannot read.", 8, [&] { key.ReadBool("number", &flag); }},
      {"WriteDWord() - Key not open, cannot write.", 8, [&] { key.WriteBool("number", true); }},
      {"DeleteValue() - Key not open, cannot delete.", 8, [&] { key.DeleteValue("text"); }},
      {"Close() - Registry key not open, cannot close", 8, [&] { key.Close(); }},
      {"OpenIntern() - Cannot open key.", 3, [&] { key.OpenForReading(false); }},
  });
  EXPECT_EQ(Caught<sys::RegistryError>([&] { key.OpenForReading(false); }).SystemError, 2U);

  key.SetKey(platform::kLocalMachine, "Software\\X");
  key.OpenForReading(false);
  EXPECT_EQ(Caught<sys::RegistryError>([&] { key.WriteDWord("n", 1); }).Value, 7);
  key.Close();
  key.Open(/*create=*/false, /*readOnly=*/false, /*view64=*/true);
  constexpr char kSetKeys[] =
      "SetKey( HKEY hKey, const std::string& subkey ) - Registry key already open, cannot set key.";
  expectRefusals({
      {"OpenIntern() - Registry key already open, cannot set subkey.", 1,
       [&] { key.OpenForReading(false); }},
      {"SetKey( HKEY hKey ) - Registry key already open, cannot set key.", 1,
       [&] { key.SetKey(platform::kLocalMachine); }},
      {kSetKeys, 1, [&] { key.SetKey(platform::kLocalMachine, "Y"); }},
      {"SetSubkey() - Registry key already open, cannot set subkey.", 1,
       [&] { key.SetSubkey(""); }},
      {"ReadString() - Incorrect data type.", 9, [&] { key.ReadString("number", &text); }},
      {"ReadString() - Read failed.", 6, [&] { key.ReadString("absent", &text); }},
      {"ReadDWord() - Incorrect data type.", 9, [&] { key.ReadDWord("text", &number); }},
      {"ReadDWord() - Read failed.", 6, [&] { key.ReadBool("absent", &flag); }},
      {"DeleteValue() - Delete failed.", 5, [&] { key.DeleteValue("absent"); }},
  });
  EXPECT_EQ(number, 7U);
  EXPECT_TRUE(flag);
  key.ReadBool("number", &flag);
  EXPECT_FALSE(flag) << "2 is not true";
  key.ReadString("text", &text);
  EXPECT_EQ(text, "hello");
  key.ReadString("x", &text);
  EXPECT_EQ(text, "default") << "one character means the default value";
  AddFault("registry.set", kRefused);
  EXPECT_EQ(Caught<sys::RegistryError>([&] { key.WriteDWord("n", 1); }).Value, 7);
  AddFault("registry.close", kRefused);
  EXPECT_EQ(Caught<sys::RegistryError>([&] { key.Close(); }).Value, 2);
  machine_.faults.clear();
}

// ---- Operating system ---------------------------------------------------------------------------

TEST_F(SysTest, TheRecordTakesWhatThereIs) {
  machine_.operatingSystem = {{"SystemDrive", "D:"},
                              {"Debug", true},
                              {"Primary", false},
                              {"QuantumType", 300},
                              {"ServicePackMajorVersion", 3},
                              {"ServicePackMinorVersion", 1},
                              {"Version", nullptr}};
  sys::OsVersion system;
  system.Version = "kept";
  system.Query();
  EXPECT_EQ(system.SystemFolder(), "D:\\");
  EXPECT_TRUE(system.Debug);
  EXPECT_EQ(system.QuantumType, 300 % 256);
  EXPECT_EQ(system.ServicePackMajorVersion, 0) << "both numbers land in the minor field";
  EXPECT_EQ(system.ServicePackMinorVersion, 1);
  EXPECT_EQ(system.Version, "kept");
  system.SystemDrive = "E:/";
  EXPECT_EQ(system.SystemFolder(), "E:/");
}

// ---- WMI ----------------------------------------------------------------------------------------

TEST_F(SysTest, AMissingRowLeavesTheOutputs) {
  bool enabled = true;
  std::string text = "kept";
  ipc::IPv4Address address("10.0.0.1");
  std::vector<ipc::IPv4Address> list;
  EXPECT_EQ(sys::Wmi::IsDhcpEnabled(5, &enabled), 0);
  EXPECT_EQ(sys::Wmi::GetMacAddress(5, &text), 0);
  EXPECT_EQ(sys::Wmi::GetIpAddressAndMask(5, &address, &address), 0);
  EXPECT_EQ(sys::Wmi::GetGateways(5, &list), 0);
  EXPECT_TRUE(enabled && text == "kept" && list.empty());
  EXPECT_EQ(address.ToString(), "10.0.0.1");
}

TEST_F(SysTest, APropertyThatCannotBeReadIsOnlyAnswered) {
  machine_.adapters.emplace_back().gateways = {"10.0.0.1"};
  AddFault("wmi.get", kRefused);
  bool enabled = true;
  std::vector<ipc::IPv4Address> gateways;
  EXPECT_EQ(sys::Wmi::GetGateways(7, &gateways), kRefused);
  EXPECT_TRUE(gateways.empty());
  EXPECT_EQ(sys::Wmi::IsDhcpEnabled(7, &enabled), kRefused);
  EXPECT_FALSE(enabled) << "what is not VARIANT_TRUE is false";
}

TEST_F(SysTest, ParametersAreNullAbsentOrEmptyAsEachMethodWantsThem) {
  machine_.adapters.emplace_back();
  sys::Wmi::SetComputerName("PC2", "", "secret");
  sys::Wmi::SetGateways(7, {});
  sys::Wmi::SetDNSServerSearchOrder(7, {});
  sys::Wmi::SetDNSSuffixSearchOrder({});
  sys::Wmi::EnableDHCP(7);
  Texts arguments;
  for (const auto& change : machine_.journal)
    arguments.push_back(simulated::Json(change)["arguments"].dump());
  EXPECT_EQ(arguments, (Texts{R"({"Name":"PC2","UserName":null,"Password":null})",
                              R"({"DefaultIPGateway":null})", "{}",
                              R"({"DNSDomainSuffixSearchOrder":[]})", "{}"}));
  EXPECT_EQ(machine_.journal[0]["path"], R"(Win32_ComputerSystem.Name="TEMPLATE")");
}

// ---- Utilities ----------------------------------------------------------------------------------

TEST_F(SysTest, FilesTellWhatStandsInTheWay) {
  machine_.files = {{"C:\\a", "1"}, {"C:\\b", "2"}};
  const struct {
    const char* message;
    std::function<void()> operation;
  } kCases[] = {
      {"Destination file exists ", [] { util::Move("C:\\none", "C:\\b"); }},
      {"Source file does not exist ", [] { util::Move("C:\\none", "C:\\c"); }},
      {"Failed to copy file ", [] { util::Copy("C:\\a", "C:\\b", /*overwrite=*/false); }},
      {"Delete failed - target does not exist", [] { util::Delete("C:\\"); }},
      {"Cannot compare two files ", [] { util::SameFile("C:\\a", "C:\\none"); }},
  };
  for (const auto& c : kCases) {
    EXPECT_STREQ(Caught<util::CFileIOError>(c.operation).message, c.message);
  }
  util::Copy("C:\\a", "C:\\B", /*overwrite=*/true);
  EXPECT_EQ(machine_.files[1].text, "1");
  AddFault("file.move", kRefused);
  AddFault("file.delete", kRefused);
  EXPECT_STREQ(Caught<util::CFileIOError>([] { util::Move("C:\\a", "C:\\c"); }).message,
               "File Move Failed ");
  EXPECT_STREQ(Caught<util::CFileIOError>([] { util::Delete("C:\\a"); }).message, "Delete failed ");
}

TEST_F(SysTest, AddressesAreDottedOrResolved) {
  machine_.hosts = {{"gate.example", "10.0.0.1"}};
  EXPECT_EQ(ipc::IPv4Address("gate.example").ToString(), "10.0.0.1");
  for (const char* host : {"1host", "@", "[", "`", "{"}) {
    EXPECT_EQ(ipc::IPv4Address(host).ToString(), "255.255.255.255");
  }
  for (const char* host : {"A", "Z", "a", "z"}) {
    EXPECT_THROW(ipc::IPv4Address{host}, ipc::CIPAddressError) << "only letters begin a name";
  }
  EXPECT_EQ(ipc::IPv4Address().ToString(), "0.0.0.0");
  EXPECT_LT(ipc::IPv4Address("9.255.255.255"), ipc::IPv4Address("10.0.0.0"));
  FailCall("host.start", 1);
  EXPECT_EQ(ipc::IPv4Address("gate.example").ToString(), "10.0.0.1");
  EXPECT_EQ(machine_.faults[0].matched, 0U) << "one start serves the process";
  support::StartFreshProcess();
  const auto unstarted = Caught<ipc::CIPAddressError>([] { ipc::IPv4Address("gate.example"); });
  EXPECT_EQ(unstarted.SystemError, 10093U);
  for (int tries = 2; tries <= 3; ++tries) {
    EXPECT_EQ(ipc::IPv4Address("gate.example").ToString(), "10.0.0.1");
    EXPECT_EQ(machine_.faults[0].matched, 2U) << "a failed start is tried again";
  }
  const auto error = Caught<ipc::CIPAddressError>([] { ipc::IPv4Address("nowhere.example"); });
  EXPECT_STREQ(error.message, "IPAddress::Connect Name Resolution Error");
  EXPECT_EQ(error.SystemError, 11001U);
}

TEST_F(SysTest, ALibraryNeedsAName) {
  sys::DllProxy nameless("");
  EXPECT_STREQ(Caught<sys::CDllProxyError>([&] { nameless.Load(); }).message,
               "DllProxy::Load - No Filename");
}

TEST_F(SysTest, FailedResultsBecomeReadable) {
  EXPECT_NO_THROW(util::CheckHResult(1));
  EXPECT_THROW(util::CheckHResult(kRefused), std::runtime_error);
}

TEST(TextTest, SplitsTrimsAndParses) {
  EXPECT_EQ(base::Split(" a,;b\n\nc ", ",; \n"), (Texts{"a", "b", "c"}));
  EXPECT_EQ(base::Split("", ","), Texts{});
  EXPECT_EQ(base::Trimmed(" \t a b\t"), "a b");
  EXPECT_EQ(base::Trimmed(" \t"), "");
  EXPECT_EQ(base::ParseUnsigned("12abc"), 12U);
  EXPECT_EQ(base::ParseUnsigned("-1"), 0U);
  EXPECT_EQ(base::ParseUnsigned("99999999999"), 4294967295U);
  std::string text = "@`azZ{\xE4";
  base::ToUpper(text);
  EXPECT_EQ(text, "@`AZZ{\xE4");
}

TEST(TextTest, Utf8IsWhatUnicodeAllows) {
  for (const char* valid :
       {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
        "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_TRUE(base::IsUtf8(valid)) << valid;
    EXPECT_EQ(base::ValidUtf8(valid), valid);
  }
  for (const char* wrong :
       {"\x80", "\xC1\xBF", "\xC2", "\xC2 ", "\xE0\x9F\xBF", "\xE1\x80", "\xED\xA0\x80",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
    EXPECT_FALSE(base::IsUtf8(wrong)) << wrong;
  }
}

TEST(TextTest, TheReaderFoldsWordsAsEverybodyFoldsLetters) {
  for (std::size_t size = 1; size <= 17; ++size) {
    const std::string text(size, 'k');
    for (std::size_t at = 0; at < size; ++at) {
      std::string folded = text, other = text;
      folded[at] = 'K';
      other[at] = 'l';
      EXPECT_TRUE(SameText(text, folded, /*caseSensitive=*/false));
      EXPECT_EQ(HashText(text, 1, /*caseSensitive=*/false),
                HashText(folded, 1, /*caseSensitive=*/false));
      EXPECT_FALSE(SameText(text, folded, /*caseSensitive=*/true));
      EXPECT_FALSE(SameText(text, other, /*caseSensitive=*/false)) << at << " of " << size;
    }
  }
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      const std::string left(8, static_cast<char>(a));
      const std::string right(8, static_cast<char>(b));
      ASSERT_EQ(SameText(left, right, /*caseSensitive=*/false), base::SameText(left, right))
          << a << " and " << b;
    }
  }
}

}  // namespace
