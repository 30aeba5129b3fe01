// Windows services: their start types, and those of networking that an image switches off.
#pragma once

#include <cstdint>

namespace base {

/// Start types by their system numbers.
enum class ServiceStart : std::uint32_t {
  kBoot = 0,
  kSystem = 1,
  kAutomatic = 2,
  kManual = 3,
  kDisabled = 4
};

struct StartType {
  const char* name;
  ServiceStart value;
  /// `StartMode` of the management classes.
  const char* mode;
};

/// By their numbers.
inline constexpr StartType kStartTypes[] = {{"boot", ServiceStart::kBoot, "Boot"},
                                            {"system", ServiceStart::kSystem, "System"},
                                            {"automatic", ServiceStart::kAutomatic, "Auto"},
                                            {"manual", ServiceStart::kManual, "Manual"},
                                            {"disabled", ServiceStart::kDisabled, "Disabled"}};

constexpr const StartType& TypeOf(ServiceStart start) {
  return kStartTypes[static_cast<std::uint32_t>(start)];
}

struct NetworkService {
  const char* name;
  /// How it starts on a computer that uses it.
  ServiceStart start;
  /// Its program is a driver, so it is an instance of another management class.
  bool isDriver;
};

/// In the order in which they are switched.
inline constexpr NetworkService kNetworkServices[] = {{"Dhcp", ServiceStart::kAutomatic, false},
                                                      {"NetBT", ServiceStart::kSystem, true},
                                                      {"LmHosts", ServiceStart::kAutomatic, false},
                                                      {"NwlnkNb", ServiceStart::kAutomatic, true}};

}  // namespace base
