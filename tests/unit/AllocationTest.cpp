// Every allocation of the reader, the builder and the tree fails once: what was there before stays
// whole, and the step can be taken again. Runs in a program of its own, whose operator new obeys.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "common/config/ConfigBuilder.h"
#include "common/config/command/ConfigureNic.h"
#include "common/logging/NullLogSink.h"
#include "common/util/CollectionNode.h"
#include "common/util/CompositeIterator.h"
#include "common/util/LeafNode.h"
#include "handlers/internal/ConfigFile.h"
#include "tests/support/ConfigModel.h"
#include "tests/support/MachineTest.h"

namespace {

/// Allocations that still succeed; below 0 all of them do.
long allowed = -1;

void* Allocate(std::size_t size) {
  if (allowed == 0) return nullptr;
  if (allowed > 0) --allowed;
  return std::malloc(size != 0 ? size : 1);
}

}  // namespace

void* operator new(std::size_t size) {
  void* const memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using support::SectionsOf;

/// Runs `step`, which may use `count` allocations; the next one throws std::bad_alloc, and a step
/// that lets it pass ends there. True when the step came to its end.
bool Survives(long count, const std::function<void()>& step) {
  allowed = count;
  bool done = true;
  try {
    step();
  } catch (const std::bad_alloc&) {
    done = false;
  }
  allowed = -1;
  return done;
}

// ---- The reader ---------------------------------------------------------------------------------

constexpr char kFirst[] = "[A]\nx=1\n  2\n; note\n[B]\ny=1\n[A]\nx=3\n";
constexpr char kSecond[] = "[A]\nx=4\nz=5\n[C]\nw=6\n 7\n 8\n";

TEST(Allocations, OfTheReaderMayFail) {
  const struct {
    const char* name;
    std::function<void(ConfigFile&)> step;
    /// What is there may be the old content in part, as far as the step has come.
    bool mayStopHalfWay;
  } kSteps[] = {
      {"merge", [](ConfigFile& file) { file.Parse(kSecond, /*merge=*/true); }, true},
      {"replace", [](ConfigFile& file) { file.Parse(kSecond, /*merge=*/false); }, true},
      {"insert", [](ConfigFile& file) { file.InsertSection("D"); }, false},
      {"look-up", [](ConfigFile& file) { file.FindValue("A", "x"); }, false},
      {"walk", [](ConfigFile& file) { SectionsOf(file); }, false},
  };
  for (const auto& step : kSteps) {
    ConfigFile whole(/*caseSensitive=*/false);
    whole.Parse(kFirst, /*merge=*/false);
    const auto before = SectionsOf(whole);
    step.step(whole);
    const auto after = SectionsOf(whole);
    bool done = false;
    for (long count = 0; !done; ++count) {
      SCOPED_TRACE(std::string(step.name) + " with " + std::to_string(count));
      ConfigFile file(/*caseSensitive=*/false);
      file.Parse(kFirst, /*merge=*/false);
      done = Survives(count, [&] { step.step(file); });
      const auto left = SectionsOf(file);
      if (done) {
        EXPECT_EQ(left, after);
      } else if (!step.mayStopHalfWay) {
        EXPECT_EQ(left, before);
      }
      file.Parse(kSecond, /*merge=*/false);
      whole.Parse(kSecond, /*merge=*/false);
      EXPECT_EQ(SectionsOf(file), SectionsOf(whole))
          << "the next load finds nothing of the old one";
    }
  }
}

TEST(Allocations, OfTheReaderAreFew) {
  std::string settings;
  for (int key = 0; key < 20; ++key) {
    settings += "Setting-Name" + std::to_string(key) + "=10.20.30.1\n";
  }
  const struct {
    int sections;
    long most;
  } kRows[] = {{5, 12}, {100'000, 150}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.sections);
    std::string text;
    for (int i = 0; i < row.sections; ++i) {
      text += "[NicEntry" + std::to_string(i) + "]\n" + settings;
    }
    EXPECT_TRUE(Survives(row.most, [&] {
      ConfigFile file{/*caseSensitive=*/false};
      file.Parse(text, /*merge=*/false);
    }));
  }
}

// ---- The builder --------------------------------------------------------------------------------

using config::Event;
using enum config::EventKind;

class AllocationsOfTheBuilder : public support::MachineTest {
 protected:
  AllocationsOfTheBuilder() { machine_ = simulated::ExampleMachine(); }

  static std::string Queue(const config::ConfigBuilder& builder) {
    std::string text;
    for (const auto& command : builder.Commands()) {
      text += command->Describe() + ";";
      auto* nic = dynamic_cast<config::command::ConfigureNic*>(command.get());
      if (nic == nullptr) continue;
      for (const auto& inner : nic->Commands()) text += inner->Describe() + ",";
    }
    return text;
  }

  logging::NullLogSink log_;
};

const struct {
  config::EventKind kind;
  Event phase;
  std::string value;
} kEvents[] = {
    {COMPUTER_NAME, Event::VALUE, "a name that needs memory of its own"},
    {DOMAIN, Event::VALUE, "a.domain.that.needs.memory.of.its.own"},
    {DOMAIN_OU, Event::VALUE, "Sales/Europe/and/more/of/them"},
    {DOMAIN_USER, Event::VALUE, "a user that needs memory of its own"},
    {DOMAIN_PASSWORD, Event::VALUE, "a password that needs memory of its own"},
    // The first scope: the list of scopes has no room yet.
    {STATIC_ROUTE, Event::BEGIN, ""},
    {IP_ADDRESS, Event::VALUE, "10.1.0.0"},
    {SUBNET_MASK, Event::VALUE, "255.255.0.0"},
    {ROUTE_GATEWAY, Event::VALUE, "10.0.0.1"},
    {NOOP, Event::END, ""},
    {NIC, Event::BEGIN, ""},
    {NIC_MAC_ADDRESS, Event::VALUE, "08-00-27-65-43-21 and too long"},
    {STATIC, Event::VALUE, ""},
    {IP_INTERFACE, Event::BEGIN, ""},
    {IP_ADDRESS, Event::VALUE, "10.0.0.5"},
    {SUBNET_MASK, Event::VALUE, "255.0.0.0"},
    {NOOP, Event::END, ""},
    {GATEWAY, Event::VALUE, "10.0.0.1"},
    {DNS_SERVER, Event::VALUE, "10.0.0.2"},
    {DNS_SUFFIX, Event::VALUE, "a.suffix.that.needs.memory.of.its.own"},
    {NOOP, Event::END, ""},
};

TEST_F(AllocationsOfTheBuilder, MayFailAtEveryEventAndTheEventIsSentAgain) {
  config::ConfigBuilder whole(log_);
  for (const auto& event : kEvents) whole.ConfigEvent(event.kind, event.phase, event.value);
  const std::string wanted = Queue(whole);
  for (const auto& disturbed : kEvents) {
    bool done = false;
    for (long count = 0; !done; ++count) {
      config::ConfigBuilder builder(log_);
      for (const auto& event : kEvents) {
        const auto send = [&] { builder.ConfigEvent(event.kind, event.phase, event.value); };
        if (&event != &disturbed) {
          send();
          continue;
        }
        const std::size_t before = builder.Commands().size();
        done = Survives(count, send);
        if (done) continue;
        EXPECT_EQ(builder.Commands().size(), before);
        send();
      }
      EXPECT_EQ(Queue(builder), wanted)
          << "event " << &disturbed - kEvents << " with " << count << " allocations";
    }
  }
}

TEST_F(AllocationsOfTheBuilder, MayFailDuringTheAnalysisWithoutTouchingTheMachine) {
  bool done = false;
  for (long count = 0; !done; count += 7) {  // there are thousands
    config::ConfigBuilder builder(log_);
    for (const auto& event : kEvents) builder.ConfigEvent(event.kind, event.phase, event.value);
    done = Survives(count, [&] { builder.Analyze(); });
    EXPECT_TRUE(machine_.journal.empty());
    EXPECT_EQ(platform_.InUse(), simulated::Usage{});
  }
}

// ---- The tree -----------------------------------------------------------------------------------

int living = 0;

template <class Base>
struct Counted : Base {
  Counted() { ++living; }
  ~Counted() override { --living; }
  void accept(util::CompositeVisitor&) override {}
};
using Group = Counted<util::CollectionNode>;
using Leaf = Counted<util::LeafNode>;

TEST(Allocations, OfTheTreeMayFail) {
  bool done = false;
  for (long count = 0; !done; ++count) {
    Group root;
    done = Survives(count, [&root] {
      for (int i = 0; i < 5; ++i) {
        auto group = std::make_unique<Group>();
        for (int j = 0; j < 5; ++j) group->add(std::make_unique<Leaf>());
        root.add(std::move(group));
      }
    });
    EXPECT_EQ(static_cast<std::size_t>(living), root.count());
    const std::size_t nodes = root.count();
    bool walked = false;
    for (long more = 0; !walked; ++more) {
      std::size_t met = 0;
      walked = Survives(more, [&] {
        met = 0;
        for (auto node = root.breadthBegin(); node != util::breadth_iterator(); ++node) ++met;
        for (auto node = root.depthBegin(); node != util::depth_iterator(); ++node) ++met;
      });
      EXPECT_EQ(root.count(), nodes);
    }
  }
  EXPECT_EQ(living, 0);
}

}  // namespace
