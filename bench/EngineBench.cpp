// A configuration of as many adapters as a machine has: reading the file, binding, planning.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "common/config/ConfigBuilder.h"
#include "common/logging/NullLogSink.h"
#include "platform/ScopedPlatform.h"
#include "platform/simulated/Machine.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tool/agent/Delivery.h"

namespace {

simulated::Machine MakeMachine(std::int64_t adapters) {
  simulated::Machine machine;
  for (std::int64_t i = 0; i < adapters; ++i) {
    const std::string number = std::to_string(i);
    simulated::Adapter& adapter = machine.adapters.emplace_back();
    adapter.index = static_cast<std::uint32_t>(i);
    adapter.settingId = "{" + number + "}";
    adapter.pnpDeviceId += number;
    adapter.locationInformation = "PCI bus " + number + ", device 0, function 0";
    adapter.macAddress = number;
  }
  return machine;
}

/// A section for each adapter, which finds it by its location, or takes the next.
std::string MakeFile(std::int64_t adapters, bool byLocation) {
  std::string text;
  for (std::int64_t i = 0; i < adapters; ++i) {
    text += "[NicEntry" + std::to_string(i) + "]\nDHCP=True\n";
    if (byLocation) {
      text += "PCIBus=" + std::to_string(i) + "\nPCIDevice=0\nPCIFunction=0\n";
    }
  }
  return text;
}

void Configure(benchmark::State& state, bool byLocation) {
  const simulated::Machine blank = MakeMachine(state.range(0));
  const std::string text = MakeFile(state.range(0), byLocation);
  for (auto _ : state) {
    simulated::Machine machine = blank;
    machine.files = {{"C:\\tarvo.cfg", text}};
    const tool::Delivery delivery =
        tool::Deliver({"Internal", "Configure", {{"Filename", "C:\\tarvo.cfg"}}}, machine);
    if (delivery.Result() != "Success") state.SkipWithError("the run failed");
  }
}

/// The events of as many adapters, each with a static address, become commands.
void SendEvents(benchmark::State& state) {
  using config::Event;
  using enum config::EventKind;
  simulated::Machine machine = MakeMachine(0);
  simulated::SimulatedPlatform platform(machine);
  const platform::ScopedPlatform scope(platform);
  logging::NullLogSink log;
  for (auto _ : state) {
    config::ConfigBuilder builder(log);
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      builder.ConfigEvent(NIC, Event::BEGIN, "");
      builder.ConfigEvent(NIC_MAC_ADDRESS, Event::VALUE, "080027123456");
      builder.ConfigEvent(STATIC, Event::VALUE, "");
      builder.ConfigEvent(IP_INTERFACE, Event::BEGIN, "");
      builder.ConfigEvent(IP_ADDRESS, Event::VALUE, "10.0.0.5");
      builder.ConfigEvent(SUBNET_MASK, Event::VALUE, "255.0.0.0");
      builder.ConfigEvent(NOOP, Event::END, "");
      builder.ConfigEvent(NOOP, Event::END, "");
    }
    benchmark::DoNotOptimize(builder.Commands().size());
  }
}

const bool kRegistered = [] {
  const auto add = [](const char* name, auto function, auto... arguments) {
    auto* const benchmark = benchmark::RegisterBenchmark(name, function, arguments...);
    for (const int adapters : {1, 20, 200, 2000}) benchmark->Arg(adapters);
  };
  add("events/orvanta", SendEvents);
  add("configure by location/orvanta", Configure, true);
  add("configure the next free/orvanta", Configure, false);
  return true;
}();

}  // namespace
