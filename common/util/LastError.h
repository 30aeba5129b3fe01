// The calling thread's last system error.
#pragma once

#include "platform/IErrors.h"
#include "platform/IPlatform.h"

namespace util {

inline platform::Win32Error LastError() { return platform::Current().Errors().LastError(); }

}  // namespace util
