// The library is linked into the program.
#include "tests/support/FreshProcess.h"

namespace support {

const bool kRoadIsSlow = false;

void StartFreshProcess() { ForgetProcess(); }

}  // namespace support
