// The Windows adapter as a library of its own, whose import table can be replaced.
#include "platform/IPlatform.h"

extern "C" __declspec(dllexport) platform::IPlatform* WindowsMachine() {
  return &platform::Default();
}
