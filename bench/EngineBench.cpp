// A configuration of as many adapters as a machine has: reading the file, binding, planning.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "platform/simulated/Machine.h"
#include "tools/orvanta-config/Delivery.h"

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
  state.SetComplexityN(state.range(0));
}

BENCHMARK_CAPTURE(Configure, ByLocation, true)->RangeMultiplier(10)->Range(2, 2000)->Complexity();
BENCHMARK_CAPTURE(Configure, NextFree, false)->RangeMultiplier(10)->Range(2, 2000)->Complexity();

}  // namespace
