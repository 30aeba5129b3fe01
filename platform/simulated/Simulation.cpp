#include "platform/simulated/Simulation.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "platform/simulated/Codes.h"

namespace simulated {
namespace {

bool Allows(const NullableText& matcher, std::string_view text) {
  return !matcher || base::SameText(*matcher, text);
}

bool Matches(const Fault& fault, const Call& call) {
  return (fault.call == "*" || fault.call == call.name.Text()) &&
         (!fault.contains || base::Find(call.text, *fault.contains) != std::string_view::npos) &&
         Allows(fault.method, call.method) && Allows(fault.service, call.service) &&
         Allows(fault.name, call.item) && (!fault.index || fault.index == IndexIn(call.text));
}

}  // namespace

const Fault* Simulation::Strike(const Call& call) {
  ++callCount;
  Fault* striking = nullptr;
  for (Fault& fault : machine.faults) {
    if (!Matches(fault, call)) continue;
    ++fault.matched;
    const bool strikes = !fault.nth || *fault.nth == fault.matched;
    if (strikes && striking == nullptr) striking = &fault;
  }
  if (striking != nullptr) striking->struck = call.name.Text();
  return striking;
}

std::optional<platform::HResult> Simulation::RefuseCom(const Call& call) {
  const Fault* fault = Strike(call);
  if (fault == nullptr) return std::nullopt;
  return ToHResult(*fault);
}

std::optional<platform::Win32Error> Simulation::Refuse(const Call& call) {
  const Fault* fault = Strike(call);
  if (fault == nullptr) return std::nullopt;
  return ToWin32Error(*fault);
}

bool Simulation::Fails(const Call& call) {
  const auto error = Refuse(call);
  if (error) lastError = *error;
  return error.has_value();
}

bool Simulation::Answer(platform::Win32Error error) {
  if (error != 0) lastError = error;
  return error == 0;
}

Change& Simulation::Journal(CallName call, Fields fields) {
  if (!machine.assumed.empty()) fields.emplace_back("unknown", std::exchange(machine.assumed, {}));
  return machine.journal.emplace_back(Change{std::string(call.Text()), std::move(fields)});
}

platform::HResult Simulation::EnterApartment(const Call& call, ApartmentKind kind) {
  ++usage.apartments;
  if (const auto failure = RefuseCom(call)) return *failure;
  if (apartmentDepth_ > 0 && apartmentKind_ != kind) return kOtherApartmentKind;
  apartmentKind_ = kind;
  return ++apartmentDepth_ > 1 ? 1 : 0;
}

void Simulation::LeaveApartment(const Call& call) {
  Strike(call);
  --usage.apartments;
  apartmentDepth_ = std::max(apartmentDepth_ - 1, 0);
  if (apartmentDepth_ == 0) processSecured_ = false;
}

platform::HResult Simulation::SecureProcess() {
  if (const auto failure = RefuseCom({"wmi.secure_process"})) return *failure;
  if (!InApartment()) return kNotInApartment;
  if (processSecured_) return kAlreadySecured;
  processSecured_ = true;
  return platform::kOk;
}

Adapter* Simulation::AdapterByIndex(std::uint32_t index) {
  return LookUp(byIndex_, index, [](const Adapter& adapter) { return adapter.index; });
}

Adapter* Simulation::AdapterById(std::string Adapter::*id, const std::string& text) {
  return LookUp(id == &Adapter::settingId ? bySettingId_ : byPnpId_, base::Folded(text),
                [=](const Adapter& adapter) { return base::Folded(adapter.*id); });
}

template <class Key, class KeyOf>
Adapter* Simulation::LookUp(Positions<Key>& positions, const Key& key, KeyOf keyOf) {
  auto& adapters = machine.adapters;
  // The adapters are anybody's to edit, so a remembered position is only believed when it fits.
  const auto remembered = positions.find(key);
  if (remembered != positions.end() && remembered->second < adapters.size() &&
      keyOf(adapters[remembered->second]) == key) {
    return &adapters[remembered->second];
  }
  positions.clear();
  for (std::size_t i = 0; i < adapters.size(); ++i) positions.emplace(keyOf(adapters[i]), i);
  const auto found = positions.find(key);
  return found == positions.end() ? nullptr : &adapters[found->second];
}

std::optional<std::uint32_t> IndexIn(std::string_view text) {
  constexpr std::string_view kIndex = "Index=";
  const std::size_t at = base::Find(text, kIndex);
  if (at == std::string_view::npos) return std::nullopt;
  return ParseIndex(text.substr(at + kIndex.size()));
}

platform::HResult ToHResult(const Fault& fault) {
  if (fault.hresult) return *fault.hresult;
  if (fault.error) return FromError(*fault.error);
  if (fault.result) return FromError(static_cast<platform::Win32Error>(*fault.result));
  return kFailure;
}

platform::Win32Error ToWin32Error(const Fault& fault) {
  if (fault.error) return *fault.error;
  if (fault.hresult) {
    const auto digits = static_cast<std::uint32_t>(*fault.hresult);
    return (digits & 0xFFFF0000U) == 0x80070000U ? digits & 0xFFFFU : digits;
  }
  if (fault.result) return static_cast<platform::Win32Error>(*fault.result);
  return kGeneralFailure;
}

std::string HResultText(platform::HResult result) {
  char text[11];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(result));
  return text;
}

bool OnlyChoosesResult(const Fault& fault) {
  return fault.result && !fault.hresult && !fault.error;
}

std::optional<std::uint32_t> ParseIndex(std::string_view text) {
  const auto number = base::ParseWhole<std::int64_t>(text);
  if (!number ||
      (!std::in_range<std::int32_t>(*number) && !std::in_range<std::uint32_t>(*number))) {
    return std::nullopt;
  }
  return static_cast<std::uint32_t>(*number);
}

}  // namespace simulated
