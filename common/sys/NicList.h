// The machine's IP-enabled network adapters as a tree, read once. Only adapters on the PCI bus
// qualify for being configured; the look-ups know no others.
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/sys/NicAdapter.h"

namespace sys {

class NicList final : public NicNode<NicList, util::CollectionNode> {
 public:
  /// Reads every adapter; throws as NicAdapter does.
  NicList();

  /// All adapters in the machine's order, on any bus; owned by the list.
  const std::vector<const NicAdapter*>& Adapters() const { return adapters_; }

  // Each returns the first PCI adapter that matches, null when there is none.

  const NicAdapter* FindByPciLocation(const PciLocation& location) const;
  /// Letter case and the separators ":" and "-" do not count.
  const NicAdapter* FindByMac(const std::string& address) const;

 private:
  std::vector<const NicAdapter*> adapters_;
  std::map<PciLocation, const NicAdapter*> byLocation_;
  std::unordered_map<std::string, const NicAdapter*> byMac_;
};

}  // namespace sys
