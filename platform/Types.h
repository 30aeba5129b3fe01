// The plain values that cross the seam between the engine and the machine.
#pragma once

#include <cstdint>

namespace platform {

/// Result of a COM call: negative values are failures.
using HResult = std::int32_t;

/// Result of an NT call of the local security authority: negative values are failures.
using NtStatus = std::int32_t;

/// Error number of the operating system; 0 is success.
using Win32Error = std::uint32_t;

constexpr HResult kOk = 0;
/// The enumerator has no further row (`WBEM_S_FALSE`).
constexpr HResult kNoMoreRows = 1;
/// Wait without limit (`WBEM_INFINITE`, `INFINITE`).
constexpr std::int32_t kForever = -1;

constexpr bool Failed(HResult result) { return result < 0; }

}  // namespace platform
