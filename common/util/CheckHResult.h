// Turns a failed HRESULT into an exception that a person can read.
#pragma once

#include "platform/Types.h"

namespace util {

/// Does nothing for `result` at or above 0. Otherwise throws std::runtime_error with the system's
/// text for it, or with its number when the system has none.
void CheckHResult(platform::HResult result);

}  // namespace util
