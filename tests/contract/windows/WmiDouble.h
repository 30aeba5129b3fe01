// Windows Management Instrumentation as COM objects that answer from a `platform::IWmi`.
#pragma once

#include <map>
#include <string>

#include "platform/IWmi.h"
#include "tests/contract/windows/ImportTable.h"

namespace contract {

/// What every object answers for a property, whatever the machine holds; forgotten with the double.
inline std::map<std::string, platform::Variant> oddAnswers;

/// Gives `module` the double for its own lifetime. A call with arguments other than the ones that
/// the library owes, and a COM object that is still alive at the end, are test failures. One object
/// and one thread at a time.
class WmiDouble {
 public:
  /// `machine` is borrowed.
  WmiDouble(HMODULE module, platform::IWmi& machine);
  ~WmiDouble();
  WmiDouble(const WmiDouble&) = delete;
  WmiDouble& operator=(const WmiDouble&) = delete;

 private:
  ImportTable imports_;
};

}  // namespace contract
