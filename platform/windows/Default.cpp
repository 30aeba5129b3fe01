#include "platform/IPlatform.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform {

IPlatform& Default() {
  static windows::WindowsPlatform machine;
  return machine;
}

}  // namespace platform
