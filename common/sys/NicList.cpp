#include "common/sys/NicList.h"

#include <cstdint>
#include <memory>
#include <utility>

#include "common/sys/Wmi.h"

namespace sys {

NicList::NicList() {
  std::vector<std::int32_t> indexes;
  Wmi::GetIpEnabledNetworkDevices(&indexes);
  PersistentRoutes routes;
  for (const std::int32_t index : indexes) {
    auto adapter = std::make_unique<NicAdapter>(static_cast<std::uint32_t>(index), routes);
    adapters_.push_back(adapter.get());
    if (adapter->IsPci()) {
      if (adapter->Location().IsKnown()) byLocation_.emplace(adapter->Location(), adapter.get());
      byMac_.emplace(NormalizedMac(adapter->MacAddress()), adapter.get());
    }
    add(std::move(adapter));
  }
  byMac_.erase("");  // an adapter without an address is found by none
}

const NicAdapter* NicList::FindByPciLocation(const PciLocation& location) const {
  const auto found = byLocation_.find(location);
  return found != byLocation_.end() ? found->second : nullptr;
}

const NicAdapter* NicList::FindByMac(const std::string& address) const {
  const auto found = byMac_.find(NormalizedMac(address));
  return found != byMac_.end() ? found->second : nullptr;
}

}  // namespace sys
