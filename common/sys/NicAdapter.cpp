#include "common/sys/NicAdapter.h"

#include <memory>

#include "common/sys/Registry.h"

namespace sys {
namespace {

constexpr char kDevicesKey[] = R"(SYSTEM\CurrentControlSet\Enum\)";

PciLocation ReadLocation(const std::string& pnpDeviceId) {
  try {
    Registry key;
    key.SetSubkey(kDevicesKey + pnpDeviceId);
    key.OpenForReading(/*view64=*/false);
    std::string text;
    key.ReadString("LocationInformation", &text);
    return ParseLocationInformation(text);
  } catch (const RegistryError&) {
    return {};
  }
}

}  // namespace

NicAdapter::NicAdapter(std::uint32_t index, PersistentRoutes& routes) : index_(index) {
  std::string pnpDeviceId;
  Wmi::GetPnpDeviceId(index, &pnpDeviceId);
  pnp_ = ParsePnpDeviceId(pnpDeviceId);
  if (!pnp_.isPci) return;
  location_ = ReadLocation(pnpDeviceId);
  Wmi::IsDhcpEnabled(index, &isDhcpEnabled_);
  Wmi::GetMacAddress(index, &macAddress_);
  Wmi::GetNicTypeAndManufacturer(index, &adapterType_, &manufacturer_);
  Wmi::GetNicCaption(index, &caption_);
  add(std::make_unique<IP>(index, routes));
  add(std::make_unique<Gateway>(index));
  add(std::make_unique<DNS>(index));
}

}  // namespace sys
