// The machine of a binary that has no real one to work on: a blank simulated computer.
#include "platform/IPlatform.h"
#include "platform/simulated/SimulatedPlatform.h"

platform::IPlatform& platform::Default() {
  static simulated::Machine machine;
  static simulated::SimulatedPlatform blank(machine);
  return blank;
}
