// A network adapter as the machine describes it at the moment the object is made.
#pragma once

#include <cstdint>
#include <string>

#include "common/sys/NicSettings.h"
#include "common/sys/NicText.h"

namespace sys {

/// An IP-enabled adapter. One on the PCI bus has an IP, a Gateway and a DNS as its children; any
/// other has none, is never configured, and knows only its index and the ids of its device.
class NicAdapter final : public NicNode<NicAdapter, util::CollectionNode> {
 public:
  /// Reads the adapter, except for the machine's persistent routes, which come from the caller.
  /// Throws CWmiError, or ipc::CIPAddressError for an invalid IPv4 address.
  NicAdapter(std::uint32_t index, PersistentRoutes& routes);

  /// The `Index` of its `Win32_NetworkAdapterConfiguration` instance.
  std::uint32_t Index() const { return index_; }
  bool IsPci() const { return pnp_.isPci; }
  /// 0 when unknown.
  std::uint32_t VendorId() const { return pnp_.vendorId; }
  std::uint32_t DeviceId() const { return pnp_.deviceId; }
  const PciLocation& Location() const { return location_; }
  bool IsDhcpEnabled() const { return isDhcpEnabled_; }
  const std::string& MacAddress() const { return macAddress_; }
  const std::string& AdapterType() const { return adapterType_; }
  const std::string& Manufacturer() const { return manufacturer_; }
  const std::string& Caption() const { return caption_; }
  /// The caption without its number.
  std::string Description() const { return std::string(DescriptionOf(caption_)); }

 private:
  std::uint32_t index_;
  PnpDeviceId pnp_;
  PciLocation location_;
  bool isDhcpEnabled_ = false;
  std::string macAddress_;
  std::string adapterType_;
  std::string manufacturer_;
  std::string caption_;
};

}  // namespace sys
