// Loads arbitrary texts as machine files: each is refused in one line, or reads back as it prints.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/Check.h"
#include "platform/simulated/MachineFile.h"

namespace {

constexpr std::size_t kLongestRefusal = 16384;

bool IsPrintable(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  simulated::Machine machine;
  try {
    machine = simulated::ParseMachine(text, "m.json");
  } catch (const simulated::MachineFileError& error) {
    const std::string_view refusal = error.what();
    Check(refusal.starts_with("m.json:") && refusal.size() < kLongestRefusal);
    Check(IsPrintable(refusal));
    return 0;
  }
  const std::string printed = simulated::PrintMachine(machine);
  const simulated::Machine again = simulated::ParseMachine(printed, "m.json");
  Check(simulated::PrintMachine(again) == printed);
  // What is shown of it is a machine file, too.
  simulated::ParseMachine(simulated::PrintMachine(machine, /*hideSecrets=*/true), "m.json");
  return 0;
}
