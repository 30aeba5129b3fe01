#include "common/util/ClassName.h"

#if defined(__GNUC__)
#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#endif

namespace util {

#if defined(__GNUC__)

std::string ClassName(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  return std::string("class ") + (name ? name.get() : type.name());
}

#else

std::string ClassName(const std::type_info& type) { return type.name(); }

#endif

}  // namespace util
