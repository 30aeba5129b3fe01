// Waiting, as the commands use it.
#pragma once

#include "platform/IClock.h"
#include "platform/IPlatform.h"

namespace sys {

/// Suspends the calling thread.
inline void Pause(std::uint32_t milliseconds) { platform::Current().Clock().Sleep(milliseconds); }

}  // namespace sys
