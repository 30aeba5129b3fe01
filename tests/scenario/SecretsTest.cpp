// A password goes through every command and every road out of the tool: nobody may see it, and no
// memory that was given back may hold it. Runs in a program of its own, with the plug-in's heap and
// AddressSanitizer's view of whatever is freed.
#include <gtest/gtest.h>
#include <sanitizer/allocator_interface.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "platform/simulated/MachineFile.h"
#include "tests/support/JsonText.h"
#include "tests/support/MachineTest.h"
#include "tests/support/ToolTest.h"
#include "tool/agent/Delivery.h"

namespace {

/// Too long for the place that a text has within itself.
constexpr std::string_view kPassword = "canary-Zq7Yx4-of-the-password";

bool HasPassword(std::string_view text) { return text.find(kPassword) != std::string_view::npos; }

int freedWithPassword = 0;

void LookIntoFreed(const volatile void* block) {
  const auto* const text = static_cast<const char*>(const_cast<const void*>(block));
  if (HasPassword({text, __sanitizer_get_allocated_size(text)})) ++freedWithPassword;
}

simulated::Machine MachineOf(bool isMember) {
  support::StartFreshProcess();
  simulated::Machine machine = simulated::ExampleMachine();
  machine.decrypt = {{"CU", "joiner"}, {"CP", std::string(kPassword)}};
  machine.domains[0].accounts = {{"joiner", std::string(kPassword)}};
  if (isMember) support::JoinCorp(machine);
  return machine;
}

constexpr char kAccount[] = "[Networking]\nDomainUsername=CU\nDomainPassword=CP\n";
constexpr char kConfig[] =
    "[Networking]\nWorkgroup=False\nDNSDomain=corp.example\nDSOrganizationalUnit=Sales/Europe\n"
    "DomainUsername=CU\nDomainPassword=CP\nComputerName=PC9\n"
    "[ConfigSettings]\nProxyPassword=CP\n";

class Secrets : public support::ToolTest {
 protected:
  static void SetUpTestSuite() {
    ASSERT_NE(__sanitizer_install_malloc_and_free_hooks([](const volatile void*, std::size_t) {},
                                                        LookIntoFreed),
              0);
  }
  Secrets() { freedWithPassword = 0; }
  ~Secrets() override {
    EXPECT_EQ(freedWithPassword, 0) << "blocks of memory were freed with the password in them";
  }
};

TEST_F(Secrets, TheHookSeesWhatTheHeapForgets) {
  void* const block = std::malloc(kPassword.size());
  kPassword.copy(static_cast<char*>(block), kPassword.size());
  std::free(block);
  EXPECT_EQ(freedWithPassword, 1);
  freedWithPassword = 0;
}

TEST_F(Secrets, NoMessageTellsThem) {
  const struct {
    const char* name;
    bool isMember;
    std::string config;
    /// What the account alone may do.
    const char* step;
  } kRows[] = {
      {"join", false,
       std::string(kAccount) +
           "Workgroup=False\nDNSDomain=corp.example\nDSOrganizationalUnit=Sales/Europe\n",
       "JoinDomainOrWorkgroup"},
      {"rename", true, std::string(kAccount) + "ComputerName=PC9\n", "Rename"},
      {"move", true,
       std::string(kAccount) +
           "Workgroup=False\nDNSDomain=corp.example\nDSOrganizationalUnit=Sales\n",
       "directory.move"},
      {"leave", true, std::string(kAccount) + "Workgroup=True\nDomain=W\n",
       "UnjoinDomainOrWorkgroup"},
  };
  for (const auto& row : kRows) {
    // With each call to the machine failing in turn, and with none.
    for (std::uint32_t nth = 1;; ++nth) {
      SCOPED_TRACE(row.name + std::to_string(nth));
      simulated::Machine machine = MachineOf(row.isMember);
      machine.FailCall(nth, 5);
      machine.PutFile(R"(C:\new.cfg)", row.config);
      const tool::Delivery delivery =
          tool::Deliver({"Internal", "Configure", {{"Filename", R"(C:\new.cfg)"}}}, machine);
      const std::string told = tool::ToJson(delivery).dump();
      EXPECT_FALSE(HasPassword(told)) << told;
      EXPECT_FALSE(HasPassword(simulated::ToJson(machine, /*hideSecrets=*/true).dump()));
      // What a route tool or any other child would be told lies open to every user of the computer.
      for (const simulated::Change& change : machine.journal) {
        if (change.call == "process.run") EXPECT_FALSE(HasPassword(support::JsonText(change)));
      }
      if (!machine.faults[0].struck.empty()) continue;
      EXPECT_GT(nth, 20U);
      EXPECT_NE(told.find(row.step), std::string::npos);
      break;
    }
  }
}

TEST_F(Secrets, NoReportOfTheToolShowsThem) {
  const std::string config = Write("pc.cfg", kConfig);
  simulated::Machine simulated = MachineOf(/*isMember=*/false);
  const std::string saved = simulated::ToJson(simulated, /*hideSecrets=*/false).dump();
  ASSERT_TRUE(HasPassword(saved));
  const std::string machine = Write("m.json", saved);
  simulated.faults.emplace_back().call = "wmi.method";
  const std::string failing =
      Write("failing.json", simulated::ToJson(simulated, /*hideSecrets=*/false).dump());
  const std::string torn = Write("torn.json", saved.substr(0, saved.find(kPassword) + 40));
  const std::string page = Path("page.html");
  const std::vector<support::Texts> kCommands = {
      {"simulate", config, "--verbose"},
      {"simulate", config, "--json"},
      {"simulate", config, "--verbose", "--deliver-posted", "--message", "prep-for-image"},
      {"plan", config, "--verbose"},
      {"plan", config, "--verbose", "--json", "--follow-restarts", "5"},
      {"plan", config, "--follow-restarts", "5", "--html", page},
      {"check", config},
      {"check", config, "--json"},
      {"check", config, "--sarif"},
      {"check", config, "--fix"},
      {"roundtrip"},
      {"roundtrip", "--json"},
  };
  for (const support::Texts& command : kCommands) {
    for (const std::string& path : {machine, failing, torn}) {
      support::Texts arguments = command;
      arguments.insert(arguments.end(), {"--machine", path});
      EXPECT_EQ(Run(arguments) == 2, path == torn) << err_;
      const std::string told = out_ + err_ + support::ReadText(page);
      EXPECT_NE(out_ + err_, "");
      EXPECT_FALSE(HasPassword(told)) << testing::PrintToString(arguments) << told;
      std::filesystem::remove(page);
    }
  }
}

}  // namespace
