// The built library as the agent meets it: loaded from its file, called from code of the agent's
// compiler with that compiler's objects, on a machine whose WMI is a double.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/simulated/SimulatedPlatform.h"
#include "tests/contract/windows/ImportTable.h"
#include "tests/contract/windows/MsvcAgent.h"
#include "tests/contract/windows/ScratchLocalMachine.h"
#include "tests/contract/windows/WmiDouble.h"
#include "tests/contract/windows/standin/LibCrypto.h"
// windows.h renames what others declare, so it comes last.
#include <windows.h>

// What the agent's objects remember, for tests to fill in and to read back.

struct MessageBook {
  HostBook* host;
  std::string type;
  std::string name;
  /// The values that the message answers.
  std::map<std::string, std::string> given;
  /// The values that the library wrote, in order: "AddValue Key=value".
  std::vector<std::string> written;
};

struct HostBook {
  /// What `Post` answers.
  int32_t postAnswer = 1;
  /// The finished lines: "1 Toolbox-Main:77 ...".
  std::vector<std::string> log;
  /// The messages as they were when they were handed over, and to whom.
  std::vector<std::pair<std::string, MessageBook>> sent;
  std::vector<MessageBook> posted;
  /// The messages that live; their places do not move.
  std::list<MessageBook> messages;
};

extern "C" {

void OnSendTo(HostBook* book, const char* target, MessageBook* message) {
  book->sent.emplace_back(target, *message);
}

int32_t OnPost(HostBook* book, MessageBook* message) {
  book->posted.push_back(*message);
  return book->postAnswer;
}

void OnLog(HostBook* book, uint32_t level, const char* format, va_list arguments) {
  char line[2048];
  std::vsnprintf(line, sizeof line, format, arguments);
  book->log.push_back(std::to_string(level) + " " + line);
}

MessageBook* OnCreateMessage(HostBook* book) {
  return &book->messages.emplace_back(MessageBook{book, {}, {}, {}, {}});
}

void OnSetIntValue(MessageBook* book, const char* key, int32_t value) {
  OnWrite(book, "SetInt", key, std::to_string(value).c_str());
}

void OnWrite(MessageBook* book, const char* how, const char* key, const char* value) {
  book->written.push_back(std::string(how) + "Value " + key + "=" + value);
}

void OnSetTypeAndName(MessageBook* book, const char* type, const char* name) {
  book->type = type;
  book->name = name;
}

const char* OnGetType(MessageBook* book) { return book->type.c_str(); }

const char* OnGetName(MessageBook* book) { return book->name.c_str(); }

const char* OnGetValue(MessageBook* book, const char* key) {
  const auto found = book->given.find(key);
  return found == book->given.end() ? nullptr : found->second.c_str();
}

void OnGetIntValue(MessageBook* book, const char* key, uint32_t* value) {
  const auto found = book->given.find(key);
  if (found != book->given.end()) *value = static_cast<uint32_t>(std::stoul(found->second));
}

void OnMessageEnd(MessageBook* book) {
  book->host->messages.remove_if([book](const MessageBook& message) { return &message == book; });
}

void OnForbiddenSlot(const char* object, int32_t slot) {
  ADD_FAILURE() << "the library called slot " << slot << " of the " << object;
}
}

namespace contract {
namespace {

using Texts = std::vector<std::string>;

const ToolboxApi* TableOf(HMODULE library) {
  const FARPROC entry = GetProcAddress(library, "GetToolboxAPI");
  return reinterpret_cast<const ToolboxApi* (*)()>(reinterpret_cast<void*>(entry))();
}

HMODULE Shipped() {
  static const HMODULE library = LoadLibraryA(CONFIG_LIBRARY_PATH);
  EXPECT_NE(library, nullptr) << CONFIG_LIBRARY_PATH << ": " << GetLastError();
  return library;
}

/// An agent with one received message, which ends with the test.
class AgentContract : public testing::Test {
 protected:
  AgentContract() : host_(NewMsvcHost(&agent)), message_(NewMsvcMessage(&received)) {}
  ~AgentContract() override {
    EXPECT_EQ(agent.messages.size(), 1u) << "a message of the library was not released";
    DeleteMsvcObject(message_);
    DeleteMsvcObject(host_);
  }

  int32_t Deliver(const char* type, const char* name) {
    received.type = type;
    received.name = name;
    return MsvcDoMagic(TableOf(library), message_, host_);
  }

  HMODULE library = Shipped();
  HostBook agent;
  MessageBook& received = *OnCreateMessage(&agent);

 private:
  IAgentHost* host_;
  IAgentMessage* message_;
};

TEST_F(AgentContract, TableHasRevisionOneAndTellsItsVersion) {
  uint32_t version[3] = {};
  EXPECT_EQ(MsvcInterfaceRevision(TableOf(library)), 1u);
  MsvcGetVersion(TableOf(library), &version[0], &version[1], &version[2]);
  EXPECT_EQ(std::vector(std::begin(version), std::end(version)),
            (std::vector<uint32_t>{6, 8, 378}));
}

TEST_F(AgentContract, UpdateInfoAppendsThisLibraryToTheList) {
  received.given["Auto-Update-Count"] = "3";
  EXPECT_EQ(Deliver("Internal", "UpdateInfo"), 2);
  EXPECT_EQ(agent.log,
            Texts{"1 Toolbox-Main:77 Toolbox::DoMagic - Finding handler for Internal=UpdateInfo"});
  EXPECT_EQ(received.written,
            (Texts{"AddValue Auto-Update-Current3=orvanta-config-6.8.378.X64.dll",
                   R"(AddValue Auto-Update-Pattern3=agents\tarvo\orvanta-config-*.X64.dll)",
                   "SetIntValue Auto-Update-Count=4"}));
}

/// A machine with the example's WMI, its system drive in a scratch folder and an empty
/// HKEY_LOCAL_MACHINE.
class ConfigureContract : public AgentContract {
 protected:
  ConfigureContract() {
    std::filesystem::create_directories(folder);
    machine.operatingSystem["SystemDrive"] = folder.string();
  }
  ~ConfigureContract() override { std::filesystem::remove_all(folder); }

  /// Writes a file of the scratch folder; its path.
  std::string Write(const char* name, const char* text) {
    const std::filesystem::path path = folder / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  int32_t Configure(const std::string& file) {
    received.given["Filename"] = file;
    simulated::SimulatedPlatform platform(machine);
    EXPECT_EQ(platform.Wmi().EnterApartment(), platform::kOk);
    const WmiDouble wmi(library, platform.Wmi());
    return Deliver("Internal", "Configure");
  }

  static std::string ReadBack(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  // Other tests run at the same time.
  const std::string own = "config-contract-" + std::to_string(GetCurrentProcessId());
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / own;
  simulated::Machine machine = simulated::ExampleMachine();

 private:
  const ScratchLocalMachine localMachine_;
};

TEST_F(ConfigureContract, RestoreFileReplacesTheAgentFileAndIsPosted) {
  // Only the low byte of the agent's answer counts.
  constexpr std::pair<int32_t, int32_t> kAnswers[] = {{1, 1}, {0x100, 0}, {-1, 1}};
  for (const auto& [answer, status] : kAnswers) {
    SCOPED_TRACE(answer);
    const std::string agentFile = Write("tarvo.cfg", "[Global]\r\nConfig=restore\r\n");
    const std::string restoreFile = Write("restore.cfg", "restored");
    agent.postAnswer = answer;
    agent.posted.clear();
    EXPECT_EQ(Configure("unused"), status);
    ASSERT_EQ(agent.posted.size(), 1u);
    EXPECT_EQ(agent.posted[0].type + "/" + agent.posted[0].name, "Internal/Configure");
    EXPECT_EQ(agent.posted[0].written, Texts{"SetValue Filename=" + agentFile});
    EXPECT_EQ(ReadBack(agentFile), "restored");
    EXPECT_FALSE(std::filesystem::exists(restoreFile));
    EXPECT_EQ(received.written, Texts{});
  }
}

TEST_F(ConfigureContract, TheReplyAndTheAgentsSettingsAreWritten) {
  EXPECT_EQ(Configure(Write("new.cfg",
                            "[Global]\r\nScheduleId=12\r\nTaskSequence=7\r\n"
                            "[ConfigSettings]\r\nServer=agent.corp.example\r\nServer=second\r\n"
                            "[Networking]\r\nComputerName=NEWNAME\r\n")),
            1);
  EXPECT_EQ(received.written, (Texts{"SetValue Schedule-ID=12", "SetValue Task-Sequence-ID=7",
                                     "SetValue Result=Reboot"}));
  EXPECT_EQ(machine.pendingComputerName, "NEWNAME");
  ASSERT_EQ(agent.sent.size(), 1u);
  const auto& [target, settings] = agent.sent[0];
  EXPECT_EQ(target + ": " + settings.type + "/" + settings.name,
            "SetAgentSettings: Settings/Included");
  EXPECT_EQ(settings.written,
            (Texts{"AddValue Server=agent.corp.example", "AddValue Server=second"}));
}

/// What this process holds of things that a module may forget to give back.
struct Footprint {
  static Footprint Now() {
    Footprint now;
    std::vector<HANDLE> heaps(100);
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    for (const HANDLE heap : heaps) {
      PROCESS_HEAP_ENTRY entry{};
      while (HeapWalk(heap, &entry)) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) ++now.heapBlocks;
      }
    }
    // A new handle takes the lowest place that is free, so open ones push it up.
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(event);
    now.handles = reinterpret_cast<uintptr_t>(event);
    std::vector<DWORD> indexes;
    for (DWORD index = TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = TlsAlloc()) {
      indexes.push_back(index);
    }
    for (const DWORD index : indexes) TlsFree(index);
    now.freeTlsIndexes = indexes.size();
    return now;
  }

  std::size_t heapBlocks = 0;
  uintptr_t handles = 0;
  std::size_t freeTlsIndexes = 0;
};

int childrenStarted = 0;

/// A child that has ended already.
BOOL WINAPI StartNothing(LPCSTR, LPSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD,
                         LPVOID, LPCSTR, LPSTARTUPINFOA, LPPROCESS_INFORMATION child) {
  ++childrenStarted;
  *child = {CreateEventA(nullptr, TRUE, TRUE, nullptr), CreateEventA(nullptr, TRUE, TRUE, nullptr),
            1, 1};
  return TRUE;
}

BOOL WINAPI EndedWell(HANDLE, LPDWORD exitCode) {
  *exitCode = 0;
  return TRUE;
}

const Substitute kNoChildren[] = {
    {"kernel32", "CreateProcessA", reinterpret_cast<void*>(&StartNothing)},
    {"kernel32", "GetExitCodeProcess", reinterpret_cast<void*>(&EndedWell)}};

/// Hands over a file with four routes, again and again.
class Endurance : public ConfigureContract {
 protected:
  ~Endurance() override {
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, sizeof program);
    const auto moved = std::filesystem::path(program).parent_path() / (own + ".cfg");
    EXPECT_TRUE(std::filesystem::remove(moved)) << "the file is put away beside the agent";
  }

  void ConfigureRoutes() {
    const ImportTable imports(library, kNoChildren);
    childrenStarted = 0;
    ASSERT_EQ(Configure(Write((own + ".cfg").c_str(),
                              "[NicEntry0]\r\nMACAddress=080027123456\r\nDHCP=True\r\n"
                              "Static-Route-Count=4\r\nRoute1=10.2.0.0 255.255.0.0 10.1.0.1 0 5\r\n"
                              "Route2=10.3.0.0 255.255.0.0 10.1.0.1 0 5\r\n"
                              "Route3=10.4.0.0 255.255.0.0 10.1.0.1 0 5\r\n"
                              "Route4=10.5.0.0 255.255.0.0 10.1.0.1 0 5\r\n")),
              1);
    ASSERT_EQ(childrenStarted, 4);
    machine.journal.clear();
    agent.log.clear();
    received.written.clear();
  }

  /// The first rounds make what is made once.
  void ExpectFlat(int rounds, const std::function<void()>& round) {
    for (int i = 0; i < 5; ++i) round();
    const Footprint before = Footprint::Now();
    for (int i = 0; i < rounds && !HasFatalFailure(); ++i) round();
    const Footprint after = Footprint::Now();
    EXPECT_LT(after.heapBlocks, before.heapBlocks + static_cast<std::size_t>(rounds) / 20);
    EXPECT_LE(after.handles, before.handles);
    EXPECT_EQ(after.freeTlsIndexes, before.freeTlsIndexes);
  }
};

TEST_F(Endurance, AThousandMessagesKeepNothing) {
  ExpectFlat(1000, [this] { ConfigureRoutes(); });
}

TEST_F(Endurance, FifteenHundredLoadsKeepNothing) {
  // A module of its own, which no other test holds.
  const std::string copy = (folder / "copy.dll").string();
  ASSERT_TRUE(CopyFileA(CONFIG_LIBRARY_PATH, copy.c_str(), FALSE));
  ExpectFlat(1500, [&] {
    library = LoadLibraryA(copy.c_str());
    ASSERT_NE(library, nullptr) << GetLastError();
    ConfigureRoutes();
    ASSERT_TRUE(FreeLibrary(library));
    ASSERT_EQ(GetModuleHandleA(copy.c_str()), nullptr);
  });
}

TEST_F(ConfigureContract, NoAnswerOfAForeignLibraryEndsTheAgent) {
  constexpr struct {
    const char* input;
    std::size_t size;
  } kUsers[] = {{kThrowsAsVisualCpp, 0}, {kThrowsAsGcc, 0}, {kAnswersGarbage, kPlainTextRoom - 1}};
  for (const auto& user : kUsers) {
    SCOPED_TRACE(user.input);
    machine.journal.clear();
    Configure(
        Write("new.cfg", (std::string("[Networking]\r\nComputerName=NEWNAME\r\nDomainUsername=") +
                          user.input + "\r\n")
                             .c_str()));
    ASSERT_FALSE(machine.journal.empty());
    const auto& rename = machine.journal.back();
    EXPECT_EQ(rename["method"], "Rename");
    EXPECT_EQ(rename["arguments"]["UserName"].Text().size(), user.size);
  }
}

// Passwords as they lie in this program, each character one too high: no scan of its memory shall
// find them by themselves.
constexpr char kCodedPasswords[][32] = {"dbobsz.pg.uif.mpoh.qbttxpse", "Lbobsj.8"};
constexpr char kCodedUser[] = "kpjofs";
volatile char codeStep = 1;
const char* codedPassword = nullptr;

bool Decipher(const char* input, char* output) {
  const std::string_view coded = input == std::string_view("CU") ? kCodedUser : codedPassword;
  for (const char c : coded) *output++ = static_cast<char>(c - codeStep);
  *output = '\0';
  return true;
}

/// How often the writable memory of this process holds what is coded, as bytes or as 16-bit
/// characters.
int CountInMemory(std::string_view coded) {
  int found = 0;
  const auto holds = [&](const char* at, std::size_t width) {
    for (std::size_t i = 0; i != coded.size(); ++i) {
      if (at[i * width] != static_cast<char>(coded[i] - codeStep)) return false;
      if (width == 2 && at[i * width + 1] != 0) return false;
    }
    return true;
  };
  MEMORY_BASIC_INFORMATION region;
  for (const char* next = nullptr; VirtualQuery(next, &region, sizeof region) != 0;) {
    const auto* const start = static_cast<const char*>(region.BaseAddress);
    next = start + region.RegionSize;
    constexpr DWORD kWritable =
        PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    const bool isWritable = region.State == MEM_COMMIT && (region.Protect & kWritable) != 0 &&
                            (region.Protect & PAGE_GUARD) == 0;
    if (!isWritable || region.RegionSize < 2 * coded.size()) continue;
    for (const char* at = start; at + 2 * coded.size() <= next; ++at) {
      if (holds(at, 1) || holds(at, 2)) ++found;
    }
  }
  return found;
}

TEST_F(ConfigureContract, NoPasswordStaysInMemory) {
  const HMODULE crypto = LoadLibraryA("LibCrypto.dll");
  ASSERT_NE(crypto, nullptr);
  const FARPROC tell = GetProcAddress(crypto, "TellDecrypt");
  reinterpret_cast<decltype(&TellDecrypt)>(reinterpret_cast<void*>(tell))(Decipher);
  const std::string credentials =
      "[Networking]\r\nDomainUsername=CU\r\nDomainPassword=CP\r\nWorkgroup=False\r\n";
  constexpr const char* kUses[] = {
      "ComputerName=NEWNAME\r\n",
      "DNSDomain=corp.example\r\nDSOrganizationalUnit=Sales\r\n",
  };
  for (const char* const password : kCodedPasswords) {
    SCOPED_TRACE(password);
    codedPassword = password;
    for (const char* const use : kUses) {
      SCOPED_TRACE(use);
      Configure(Write("new.cfg", (credentials + use).c_str()));
      EXPECT_GT(CountInMemory(password), 0) << "WMI was told the password";
      // The machine is the test's own, and so is what it was told.
      machine.journal.clear();
      EXPECT_EQ(CountInMemory(password), 0);
    }
  }
  FreeLibrary(crypto);
}

}  // namespace
}  // namespace contract
