// The groups below a network adapter and their entries, as they are at the moment they are made.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/ipc/IpAddress.h"
#include "common/sys/NicInfoVisitor.h"
#include "common/sys/Wmi.h"
#include "common/util/CollectionNode.h"
#include "common/util/LeafNode.h"

namespace sys {

/// The machine's persistent routes, which are the same for every adapter; none until they are read.
using PersistentRoutes = std::optional<std::vector<RouteRecord>>;

/// An entry of a group: a leaf with a value.
template <typename Node, typename Content>
class NicEntry : public NicNode<Node, util::LeafNode> {
 public:
  explicit NicEntry(Content value) : value_(std::move(value)) {}
  const Content& Value() const { return value_; }

 private:
  Content value_;
};

class GatewayEntry final : public NicEntry<GatewayEntry, ipc::IPv4Address> {
  using NicEntry::NicEntry;
};

class DNSServer final : public NicEntry<DNSServer, std::string> {
  using NicEntry::NicEntry;
};

class DNSSuffix final : public NicEntry<DNSSuffix, std::string> {
  using NicEntry::NicEntry;
};

/// One persistent route of the machine.
class StaticRoute final : public NicEntry<StaticRoute, RouteRecord> {
  using NicEntry::NicEntry;
};

/// First address and mask (0.0.0.0 without one), DNS names, and the persistent routes, which are
/// the machine's and appear below every adapter.
class IP final : public NicNode<IP, util::CollectionNode> {
 public:
  /// Reads the adapter, and the routes if they have not been read yet. Throws CWmiError, or
  /// ipc::CIPAddressError for an invalid IPv4 address.
  IP(std::uint32_t index, PersistentRoutes& routes);

  const ipc::IPv4Address& Address() const { return address_; }
  const ipc::IPv4Address& Mask() const { return mask_; }
  const std::string& DnsDomain() const { return dnsDomain_; }
  const std::string& DnsHostName() const { return dnsHostName_; }

 private:
  ipc::IPv4Address address_;
  ipc::IPv4Address mask_;
  std::string dnsDomain_;
  std::string dnsHostName_;
};

/// The default gateways.
class Gateway final : public NicNode<Gateway, util::CollectionNode> {
 public:
  /// Reads the adapter; throws as `IP` does.
  explicit Gateway(std::uint32_t index);
};

/// The servers, then the suffixes.
class DNS final : public NicNode<DNS, util::CollectionNode> {
 public:
  /// Reads the adapter; throws as `IP` does.
  explicit DNS(std::uint32_t index);

  /// True when the servers were set by hand; false also when that cannot be read.
  bool IsEnabled() const { return enabled_; }

 private:
  bool enabled_;
};

}  // namespace sys
