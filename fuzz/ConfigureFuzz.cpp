// Sends "Configure" to the library on a simulated machine. An input is a machine file (faults
// included), a line "---", and the configuration file; without that line all of it is the file. A
// machine that is refused is the built-in example.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "fuzz/Check.h"
#include "platform/simulated/MachineFile.h"
#include "tests/support/DeliveryRules.h"
#include "tests/support/FreshProcess.h"
#include "tool/agent/Conversation.h"

namespace {

using simulated::Machine;

constexpr char kFile[] = R"(C:\tarvo.cfg)";
constexpr std::string_view kSeparator = "---\n";
/// Beyond these an input only takes longer.
constexpr std::size_t kMostAdapters = 16;
constexpr std::size_t kMostFaults = 8;

// An account that every domain knows; the file holds it enciphered.
constexpr char kUser[] = "joiner";
constexpr char kUserCipher[] = "USER";
constexpr char kPassword[] = "Ov9plainZq";
constexpr char kPasswordCipher[] = "SEALED";

Machine MachineFrom(const std::string& text) {
  Machine machine = simulated::ExampleMachine();
  try {
    machine = simulated::ParseMachine(text, "machine");
  } catch (const simulated::MachineFileError&) {
  }
  machine.adapters.resize(std::min(machine.adapters.size(), kMostAdapters));
  machine.faults.resize(std::min(machine.faults.size(), kMostFaults));
  if (machine.decrypt) {
    (*machine.decrypt)[kUserCipher] = kUser;
    (*machine.decrypt)[kPasswordCipher] = kPassword;
  }
  for (auto& domain : machine.domains) domain.accounts.push_back({kUser, kPassword});
  return machine;
}

/// The password comes from nowhere but the key that is meant for it.
bool HasSecret(const std::string& input) {
  constexpr std::string_view kEntry = "\nDomainPassword=SEALED\n";
  const std::size_t at = input.find(kPasswordCipher);
  return input.find(kPassword) == std::string::npos && at == input.rfind(kPasswordCipher) &&
         input.find(kEntry) != std::string::npos;
}

bool Shows(const simulated::Json& json) {
  const std::string text =
      json.dump(-1, ' ', /*ensure_ascii=*/false, simulated::Json::error_handler_t::replace);
  return text.find(kPassword) != std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(data, data + size);
  const std::size_t separator = input.find(kSeparator);
  const bool split = separator != std::string::npos;
  Machine machine = MachineFrom(split ? input.substr(0, separator) : "");
  machine.PutFile(kFile, split ? input.substr(separator + kSeparator.size()) : input);

  support::StartFreshProcess();
  const tool::Conversation conversation =
      tool::Converse({"Internal", "Configure", {{"Filename", kFile}}},
                     {/*deliverPosted=*/true, /*restarts=*/3}, machine);

  for (const tool::Delivery& delivery : conversation.deliveries) {
    const std::string broken = support::BrokenRule(delivery, machine);
    if (!broken.empty()) std::fprintf(stderr, "%s\n", broken.c_str());
    Check(broken.empty());
    if (HasSecret(input)) Check(!Shows(tool::ToJson(delivery)));
  }
  if (HasSecret(input)) Check(!Shows(simulated::ToJson(machine, /*hideSecrets=*/true)));
  // What a run leaves can be saved and read again.
  const std::string saved = simulated::PrintMachine(machine);
  Check(simulated::PrintMachine(simulated::ParseMachine(saved, "saved")) == saved);
  return 0;
}
