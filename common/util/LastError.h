// The calling thread's last system error.
#pragma once

#include <cstdint>

namespace util {

std::uint32_t LastError();

}  // namespace util
