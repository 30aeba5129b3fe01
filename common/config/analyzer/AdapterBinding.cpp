#include "common/config/analyzer/AdapterBinding.h"

#include <unordered_set>

#include "common/config/command/ConfigureNic.h"

namespace config::analyzer {

using command::ConfigureNic;

std::unique_ptr<sys::NicList> BindAdapters(command::CommandList& commands) {
  using By = ConfigureNic::BoundBy;
  std::unique_ptr<sys::NicList> adapters;
  std::unordered_set<std::uint32_t> taken;
  // A skipped adapter is never free again, so the search continues where it ended.
  std::size_t next = 0;
  const auto nextFree = [&]() -> const sys::NicAdapter* {
    const auto& all = adapters->Adapters();
    while (next < all.size() && (!all[next]->IsPci() || taken.contains(all[next]->Index()))) ++next;
    return next < all.size() ? all[next] : nullptr;
  };
  for (const auto& command : commands) {
    auto* nic = dynamic_cast<ConfigureNic*>(command.get());
    if (nic == nullptr) continue;
    if (adapters == nullptr) adapters = std::make_unique<sys::NicList>();
    By by = By::kPci;
    const sys::NicAdapter* adapter = adapters->FindByPciLocation(nic->Location());
    if (adapter == nullptr) {
      by = By::kMac;
      adapter = adapters->FindByMac(nic->MacAddress());
    }
    if (adapter == nullptr) {
      by = By::kNext;
      adapter = nextFree();
    }
    if (adapter == nullptr) {
      nic->Bind(ConfigureNic::kUnset, By::kNone);
    } else {
      taken.insert(adapter->Index());
      nic->Bind(adapter->Index(), by);
    }
  }
  return adapters;
}

}  // namespace config::analyzer
