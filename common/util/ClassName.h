// The run-time class name of an object as the log spells it.
#pragma once

#include <string>
#include <typeinfo>

namespace util {

/// "class config::command::SetDhcp", with every compiler.
std::string ClassName(const std::type_info& type);

}  // namespace util
