#include "common/config/analyzer/AdapterBinding.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

#include "common/config/command/ConfigureNic.h"
#include "common/sys/NicAdapter.h"
#include "common/sys/NicList.h"

namespace config::analyzer {
namespace {

using command::ConfigureNic;

/// The adapters of the machine and which of them are taken.
class Adapters {
 public:
  /// The index of the adapter for `nic`, which is taken from then on.
  std::uint32_t Take(const ConfigureNic& nic) {
    const sys::NicAdapter* adapter = Find(nic);
    if (adapter == nullptr) adapter = NextFree();
    if (adapter == nullptr) return ConfigureNic::kUnset;
    taken_.insert(adapter->Index());
    return adapter->Index();
  }

 private:
  const sys::NicAdapter* Find(const ConfigureNic& nic) const {
    const sys::NicAdapter* adapter = nullptr;
    if (nic.HasPciLocation()) {
      adapter = adapters_.FindByPciLocation({nic.PciBus(), nic.PciDevice(), nic.PciFunction()});
    }
    if (adapter == nullptr && !nic.MacAddress().empty()) {
      adapter = adapters_.FindByMac(nic.MacAddress());
    }
    return adapter;
  }

  /// Adapters once passed over stay taken, so the search goes on where it last stood.
  const sys::NicAdapter* NextFree() {
    const auto& all = adapters_.Adapters();
    while (next_ < all.size() && (!all[next_]->IsPci() || taken_.contains(all[next_]->Index()))) {
      ++next_;
    }
    return next_ < all.size() ? all[next_] : nullptr;
  }

  sys::NicList adapters_;
  std::unordered_set<std::uint32_t> taken_;
  std::size_t next_ = 0;
};

}  // namespace

void BindAdapters(command::CommandList& commands) {
  std::optional<Adapters> adapters;
  for (const auto& command : commands) {
    auto* nic = dynamic_cast<ConfigureNic*>(command.get());
    if (nic == nullptr) continue;
    if (!adapters) adapters.emplace();
    nic->SetIndex(adapters->Take(*nic));
  }
}

}  // namespace config::analyzer
