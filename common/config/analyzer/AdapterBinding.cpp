#include "common/config/analyzer/AdapterBinding.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_set>

#include "common/config/command/ConfigureNic.h"
#include "common/sys/NicAdapter.h"

namespace config::analyzer {
namespace {

using command::ConfigureNic;

/// Gives the adapters of the machine away.
class Binding {
 public:
  explicit Binding(const sys::NicList& adapters) : adapters_(adapters) {}

  /// Binds `nic` to its adapter, which is taken from then on.
  void Bind(ConfigureNic& nic) {
    const auto [adapter, by] = Find(nic);
    if (adapter != nullptr) taken_.insert(adapter->Index());
    nic.Bind(adapter != nullptr ? adapter->Index() : ConfigureNic::kUnset, by);
  }

 private:
  struct Found {
    const sys::NicAdapter* adapter;
    ConfigureNic::BoundBy by;
  };

  Found Find(const ConfigureNic& nic) {
    using By = ConfigureNic::BoundBy;
    if (nic.HasPciLocation()) {
      const auto* adapter =
          adapters_.FindByPciLocation({nic.PciBus(), nic.PciDevice(), nic.PciFunction()});
      if (adapter != nullptr) return {adapter, By::kPci};
    }
    if (!nic.MacAddress().empty()) {
      if (const auto* adapter = adapters_.FindByMac(nic.MacAddress())) return {adapter, By::kMac};
    }
    const auto* adapter = NextFree();
    return {adapter, adapter != nullptr ? By::kNext : By::kNone};
  }

  /// Adapters once passed over stay taken, so the search goes on where it last stood.
  const sys::NicAdapter* NextFree() {
    const auto& all = adapters_.Adapters();
    while (next_ < all.size() && (!all[next_]->IsPci() || taken_.contains(all[next_]->Index()))) {
      ++next_;
    }
    return next_ < all.size() ? all[next_] : nullptr;
  }

  const sys::NicList& adapters_;
  std::unordered_set<std::uint32_t> taken_;
  std::size_t next_ = 0;
};

}  // namespace

std::unique_ptr<sys::NicList> BindAdapters(command::CommandList& commands) {
  std::unique_ptr<sys::NicList> adapters;
  std::optional<Binding> binding;
  for (const auto& command : commands) {
    auto* nic = dynamic_cast<ConfigureNic*>(command.get());
    if (nic == nullptr) continue;
    if (!binding) {
      adapters = std::make_unique<sys::NicList>();
      binding.emplace(*adapters);
    }
    binding->Bind(*nic);
  }
  return adapters;
}

}  // namespace config::analyzer
