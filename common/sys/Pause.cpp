#include "common/sys/Pause.h"

#include "platform/IClock.h"
#include "platform/IPlatform.h"

namespace sys {

void Pause(std::uint32_t milliseconds) { platform::Current().Clock().Sleep(milliseconds); }

}  // namespace sys
