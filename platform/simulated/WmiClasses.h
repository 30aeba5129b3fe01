// The management classes of the simulated computer: what their instances tell, and the queries and
// methods over them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Types.h"
#include "platform/Variant.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

/// Properties of an instance, or arguments of a method, in their order.
using Properties = std::vector<std::pair<std::string, platform::Variant>>;
using WmiRows = std::vector<Properties>;

/// The value of a property, whose name is compared without regard to case; null when it is absent.
const platform::Variant* FindProperty(const Properties& properties, std::string_view name);

/// Runs "select A, B from CLASS" with an optional "where PROPERTY=VALUE". The rows stand in the
/// machine's order and hold the selected properties only.
platform::HResult RunQuery(Simulation& simulation, const std::string& query, WmiRows* rows);
/// All instances of a class with all their properties.
platform::HResult ListInstances(Simulation& simulation, const std::string& className,
                                WmiRows* rows);
bool IsWmiClass(std::string_view name);

/// A method of a class, which may change the machine.
struct WmiMethod {
  std::string_view className;
  std::string_view name;
  /// What the path of its object names behind the class, up to the value; empty for the class.
  std::string_view key;
  /// Their names, separated by blanks.
  std::string_view parameters;
  /// Runs the method and answers its return value. `adapter` is null unless it is the target.
  std::uint32_t (*run)(Machine& machine, Adapter* adapter, const Properties& arguments);
};

/// Null when the class has no such method.
const WmiMethod* FindMethod(std::string_view className, std::string_view method);
/// Runs a method of the object or class that `path` names. `arguments` may be null for a method
/// without parameters. On failure the machine is as it was.
platform::HResult RunMethod(Simulation& simulation, const std::string& path,
                            const std::string& method, const Properties* arguments,
                            std::int32_t* returnValue);

}  // namespace simulated
