// Files and values of any size end in bounded time, with an answer like any other, and messages at
// the same time leave each other alone.
#include <ctime>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "common/sys/Domain.h"
#include "tests/support/ConfigModel.h"
#include "tests/support/DeliveryRules.h"
#include "tests/support/MachineTest.h"

namespace {

constexpr char kFile[] = R"(C:\tarvo.cfg)";

/// What `prepare` makes of the numbers from 0 on, one behind the other.
template <class Prepare>
std::string Numbered(int times, Prepare prepare) {
  std::string text;
  for (int i = 0; i < times; ++i) text += prepare(std::to_string(i));
  return text;
}

std::string Repeated(int times, std::string_view part) {
  std::string text;
  while (times-- > 0) text += part;
  return text;
}

/// Processor time that is never needed, unless it grows faster than the input.
class Bounded {
 public:
  ~Bounded() { EXPECT_LT((std::clock() - start_) / CLOCKS_PER_SEC, 20); }

 private:
  std::clock_t start_ = std::clock();
};

TEST(Limits, ReadingTakesNoLongerThanTheTextIs) {
  constexpr int kMany = 100'000;
  for (const std::string_view part : {"[", "]", "[a]\n", "[a", "a\n", "a=b\n", "=\n", ";\n", "\r",
                                      "[a]\nb=c\nd\n", "a=\n b", "\xFF\xFE", " "}) {
    SCOPED_TRACE(part);
    const Bounded bounded;
    const std::string text = Repeated(kMany, part);
    ConfigFile file(/*caseSensitive=*/false);
    const auto whole = file.Parse(text, /*merge=*/false);
    file.Parse(text, /*merge=*/true);
    EXPECT_EQ(whole == ConfigFile::kUnreadable, part.starts_with("[") && !part.ends_with("\n"));
    support::SectionsOf(file);
  }
}

/// A machine on which something happens whenever a thread turns to WMI.
class Interrupted final : public simulated::SimulatedPlatform {
 public:
  Interrupted(simulated::Machine& machine, std::function<void()> interruption)
      : SimulatedPlatform(machine), interruption_(std::move(interruption)) {}
  platform::IWmi& Wmi() override {
    interruption_();
    return SimulatedPlatform::Wmi();
  }

 private:
  std::function<void()> interruption_;
};

class Messages : public support::MachineTest {};

TEST_F(Messages, LeaveARunningJoinItsAccountWhichEndsWithItsOwn) {
  const ToolboxApi& library = *GetToolboxAPI();
  const auto interrupt = [&] {
    if (machine_.journal.size() != 1) return;  // between the first attempt and the next
    std::thread([&] {
      EXPECT_EQ(tool::Deliver(library, {"Internal", "UpdateInfo", {}}).status, 2);
      EXPECT_EQ(tool::Deliver(library, {"Event", "Configure", {}}).status, 0);
    }).join();
  };
  for (const std::string password : {"s3cret", "wrong"}) {
    SCOPED_TRACE(password);
    support::StartFreshProcess();
    machine_ = simulated::ExampleMachine();
    machine_.decrypt = {{"CU", "joiner"}, {"CP", password}};
    machine_.PutFile(kFile,
                     "[Networking]\nWorkgroup=False\nDNSDomain=corp.example\nDomainUsername=CU\n"
                     "DomainPassword=CP\nDSOrganizationalUnit=Sales\n");
    AddFault("file.move", -1);  // an error that is answered no more
    Interrupted interrupted(machine_, interrupt);
    const platform::ScopedPlatform scope(interrupted);
    const tool::Delivery delivery =
        tool::Deliver(library, {"Internal", "Configure", {{"Filename", kFile}}});
    EXPECT_EQ(delivery.status, password == "wrong" ? 0 : 1);
    ASSERT_GE(machine_.journal.size(), 2U);
    for (const std::size_t attempt : {0U, 1U}) {
      EXPECT_EQ(machine_.journal[attempt]["arguments"]["Password"].Text(), password);
    }
    machine_.membership = simulated::WorkgroupMembership{"W"};
    sys::Domain::Instance().JoinWorkgroup("V");
    EXPECT_TRUE(machine_.journal.back()["arguments"]["Password"].IsNull());
    EXPECT_TRUE(machine_.journal.back()["arguments"]["UserName"].IsNull());
  }
}

TEST_F(Messages, TypeAndNameChooseTheHandler) {
  const std::map<std::int32_t, std::vector<std::string>> kMessages = {
      {2, {"Request=", "Request=Configure", "Reply=anything", "Internal=", "Internal=configure"}},
      {0, {"INTERNAL=Configure", "internal=UpdateInfo", "Event=of 100%% %s", "="}}};
  for (const auto& [status, messages] : kMessages) {
    for (const std::string& message : messages) {
      const std::size_t sign = message.find('=');
      const tool::Delivery delivery =
          tool::Deliver(*GetToolboxAPI(), {message.substr(0, sign), message.substr(sign + 1), {}});
      EXPECT_EQ(delivery.status, status) << message;
      ASSERT_EQ(delivery.log.size(), 1U);
      EXPECT_TRUE(delivery.log[0].text.ends_with("Finding handler for " + message));
      EXPECT_TRUE(delivery.reply.empty());
    }
  }
}

TEST_F(Messages, NullArgumentsAreLoggedWhereThereIsAHost) {
  const auto deliver = GetToolboxAPI()->doMagic;
  tool::AgentHost host;
  tool::AgentMessage message("Internal", "UpdateInfo", {});
  EXPECT_EQ(deliver(nullptr, &host) + deliver(&message, nullptr) + deliver(nullptr, nullptr), 0);
  ASSERT_EQ(host.LogLines().size(), 2U);
  EXPECT_EQ(host.LogLines()[1].text,
            "Exception Details: Toolbox-Main:71 - DoMagic - Bad Parameter (NULL) (error = 0) ");
}

class ConfigureLimits : public support::MachineTest {
 protected:
  tool::Delivery Configure(const std::string& file, const std::string& path = kFile) {
    machine_ = simulated::ExampleMachine();
    machine_.PutFile(kFile, file);
    tool::Delivery delivery =
        tool::Deliver({"Internal", "Configure", {{"Filename", path}}}, machine_);
    EXPECT_EQ(support::BrokenRule(delivery, machine_), "");
    return delivery;
  }
};

TEST_F(ConfigureLimits, AFileOfAnySizeIsAnswered) {
  const struct {
    const char* name;
    std::string file;
    const char* result;
  } kCases[] = {
      {"sections", Numbered(20'000, [](auto i) { return "[NicEntry" + i + "]\nDHCP=1\n"; }),
       "Failure"},  // so many adapters there are not
      {"addresses",
       "[TCP/IP]\nDHCP=False\nAddress=" + Repeated(50'000, "10.0.0.5,") +
           "\nNetmask=" + Repeated(50'000, "255.0.0.0 "),
       "Success"},
      {"routes",
       "[TCP/IP]\nStatic-Route-Count=2000\n" +
           Numbered(2000,
                    [](auto i) {
                      return "Route" + i + "=10.1." + std::to_string(std::stoi(i) % 250) +
                             ".0 255.255.0.0 10.0.0." + std::to_string(1 + std::stoi(i) / 250) +
                             "\n";
                    }),
       "Success"},
      {"agent settings",
       "[ConfigSettings]\n" + Numbered(50'000, [](auto i) { return "k" + i + "=v\n"; }), "Success"},
      {"a count beyond all entries",
       "[TCP/IP]\nSetDNSInfo=True\nDNS-Server-Count=4294967295\nStatic-Route-Count=99999999999\n",
       "Success"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    const Bounded bounded;
    EXPECT_EQ(Configure(c.file).Result(), c.result);
  }
}

TEST_F(ConfigureLimits, AFileNameOfAnySizeIsNoFile) {
  const Bounded bounded;
  const tool::Delivery delivery = Configure("[Global]\n", std::string(4 << 20, 'x'));
  EXPECT_EQ(delivery.status, 0);
  EXPECT_EQ(delivery.Result(), "");
  EXPECT_TRUE(delivery.changes.empty());
}

}  // namespace
