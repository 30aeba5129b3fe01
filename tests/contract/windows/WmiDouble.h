// Windows Management Instrumentation as COM objects that answer from a `platform::IWmi`, so that an
// unmodified library in this process meets a machine of the test's choice.
#pragma once

#include "platform/IWmi.h"

namespace contract {

/// Registers the double as this process's `CLSID_WbemLocator` for its own lifetime; `machine` is
/// borrowed, and who calls the library sees to its apartment. A call with arguments other than the
/// ones the library owes, and a COM object that is still alive at the end, are test failures. For
/// one thread at a time.
class WmiDouble {
 public:
  explicit WmiDouble(platform::IWmi& machine);
  ~WmiDouble();
  WmiDouble(const WmiDouble&) = delete;
  WmiDouble& operator=(const WmiDouble&) = delete;

 private:
  unsigned long registration_ = 0;
};

}  // namespace contract
