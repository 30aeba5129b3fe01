#include "common/util/CheckHResult.h"

#include <stdexcept>
#include <string>

#include "platform/IErrors.h"
#include "platform/IPlatform.h"

namespace util {

void CheckHResult(platform::HResult result) {
  if (!platform::Failed(result)) return;
  std::string text;
  if (!platform::Current().Errors().Describe(result, &text)) {
    text = "COM operation failed. HRESULT is " + std::to_string(result);
  }
  throw std::runtime_error(text);
}

}  // namespace util
