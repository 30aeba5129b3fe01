#include "common/config/command/Sleep.h"

#include "common/sys/Pause.h"
#include "common/util/Format.h"

namespace config::command {

void Sleep::Execute() { sys::Pause(milliseconds_); }

std::string Sleep::Describe() { return util::Format("Duration=%u milliseconds", milliseconds_); }

}  // namespace config::command
