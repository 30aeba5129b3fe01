// What differs between two states of one simulated machine, and its settings in words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/Machine.h"

namespace tool {

struct Difference {
  /// For example "computer", "adapter 7, Intel(R) PRO/1000 MT Desktop Adapter" or "services".
  std::string subject;
  std::string setting;
  /// "-" where a state has no such setting.
  std::string before;
  std::string after;
};

/// Every setting that differs, the ones of a subject side by side. Holds no password and no text
/// of a file; every text is safe to print.
std::vector<Difference> Differences(const simulated::Machine& before,
                                    const simulated::Machine& after);

/// For example "workgroup WORKGROUP" or "domain corp.example".
std::string MembershipText(const simulated::Membership& membership);

/// For example "pc.json: PC-1, workgroup WORKGROUP, 2 adapters"; safe to print.
std::string MachineText(const std::string& name, const simulated::Machine& machine);

/// For example "adapter 7, Intel(R) PRO/1000 MT Desktop Adapter".
std::string AdapterName(const simulated::Adapter& adapter);

/// A field as it is told, for example "10.0.0.5/255.0.0.0" for each address with its mask; empty
/// for none.
std::vector<std::string> FieldTexts(const simulated::Adapter& adapter,
                                    const simulated::AdapterField& field);
/// The addresses in that form.
std::vector<std::string> Addresses(const simulated::Adapter& adapter);

/// An address that the library takes for the name of a host, such as "fe80::1", and its adapter.
struct UnknownHost {
  std::string text;
  std::uint32_t adapter;
};
/// The first such address that reading the adapters fails for; nothing when it can be read.
std::optional<UnknownHost> FindUnknownHost(const simulated::Machine& machine);

/// For example "10.1.0.0/255.255.0.0 via 10.0.0.1".
std::string RouteText(const simulated::PersistentRoute& route);

/// For example "manual, stopped".
std::string ServiceText(const simulated::Service& service);

}  // namespace tool
