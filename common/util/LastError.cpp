#include "common/util/LastError.h"

#include "platform/IErrors.h"
#include "platform/IPlatform.h"

namespace util {

std::uint32_t LastError() { return platform::Current().Errors().LastError(); }

}  // namespace util
