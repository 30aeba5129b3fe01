// The configuration events that describe a wanted machine. The numbers are a contract and must not
// change.
#pragma once

// <cmath> may define the macro DOMAIN, which would rewrite the enumerator.
#include <cmath>
#include <cstdint>
#undef DOMAIN

namespace config {

enum class Event : std::uint32_t {
  BEGIN = 0,  ///< opens a scope for NIC, IP_INTERFACE and STATIC_ROUTE; otherwise the same as VALUE
  END = 1,    ///< closes the innermost scope, of any kind
  VALUE = 2,  ///< a setting for the innermost scope
};

enum class EventKind : std::uint32_t {
  COMPUTER_NAME = 0,
  WORKGROUP = 1,
  DOMAIN = 2,
  DOMAIN_USER = 3,
  DOMAIN_PASSWORD = 4,
  DOMAIN_OU = 5,
  NIC = 6,
  DHCP = 7,
  STATIC = 8,
  IP_INTERFACE = 9,
  IP_ADDRESS = 10,
  SUBNET_MASK = 11,
  GATEWAY = 12,
  DNS_SERVER = 13,
  DNS_SUFFIX = 14,
  DNS_DHCP = 15,
  STATIC_ROUTE = 16,
  ROUTE_GATEWAY = 17,
  ROUTE_FOURTH_FIELD = 18,
  ROUTE_METRIC = 19,
  NOOP = 20,
  NIC_MAC_ADDRESS = 21,
  NIC_PCI_BUS = 22,
  NIC_PCI_DEVICE = 23,
  NIC_PCI_FUNCTION = 24,
  ENABLE_NETWORKING = 25,
};

}  // namespace config
