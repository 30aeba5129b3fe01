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

/// The machine's persistent routes. They are the same for every adapter, so they are read once,
/// when the first one asks.
class PersistentRoutes {
 public:
  /// Throws CWmiError, or ipc::CIPAddressError for what is no IPv4 address.
  const std::vector<RouteRecord>& Get();

 private:
  std::optional<std::vector<RouteRecord>> routes_;
};

/// One persistent route of the machine.
class StaticRoute final : public NicNode<StaticRoute, util::LeafNode> {
 public:
  explicit StaticRoute(const RouteRecord& route) : route_(route) {}
  const RouteRecord& Route() const { return route_; }

 private:
  RouteRecord route_;
};

/// First address and mask (0.0.0.0 without one), DNS names, and the persistent routes, which are
/// the machine's and stand below every adapter.
class IP final : public NicNode<IP, util::CollectionNode> {
 public:
  /// Reads the adapter. Throws CWmiError, or ipc::CIPAddressError for what is no IPv4 address.
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

class GatewayEntry final : public NicNode<GatewayEntry, util::LeafNode> {
 public:
  explicit GatewayEntry(const ipc::IPv4Address& address) : address_(address) {}
  const ipc::IPv4Address& Address() const { return address_; }

 private:
  ipc::IPv4Address address_;
};

/// The default gateways.
class Gateway final : public NicNode<Gateway, util::CollectionNode> {
 public:
  /// Reads the adapter; throws as `IP` does.
  explicit Gateway(std::uint32_t index);
};

class DNSServer final : public NicNode<DNSServer, util::LeafNode> {
 public:
  explicit DNSServer(std::string address) : address_(std::move(address)) {}
  const std::string& Address() const { return address_; }

 private:
  std::string address_;
};

class DNSSuffix final : public NicNode<DNSSuffix, util::LeafNode> {
 public:
  explicit DNSSuffix(std::string suffix) : suffix_(std::move(suffix)) {}
  const std::string& Suffix() const { return suffix_; }

 private:
  std::string suffix_;
};

/// The servers, then the suffixes.
class DNS final : public NicNode<DNS, util::CollectionNode> {
 public:
  /// Reads the adapter; throws as `IP` does.
  explicit DNS(std::uint32_t index);

  /// True when the servers were set by hand; false also when that cannot be told.
  bool IsEnabled() const { return enabled_; }

 private:
  bool enabled_;
};

}  // namespace sys
