// The calling thread's last error, and the system's texts for result codes.
#pragma once

#include <string>

#include "platform/Types.h"

namespace platform {

class IErrors {
 public:
  virtual ~IErrors() = default;
  virtual Win32Error LastError() = 0;
  virtual void SetLastError(Win32Error error) = 0;
  /// The system's text for a failed result in the user's language; false when it has none.
  virtual bool Describe(HResult result, std::string* text) = 0;
};

}  // namespace platform
