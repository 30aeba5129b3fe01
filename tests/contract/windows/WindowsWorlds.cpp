// The Windows adapter twice: linked into this program, on the system itself, and in a library whose
// calls a simulated machine answers.
#include "tests/contract/World.h"
#include "tests/contract/windows/ScratchLocalMachine.h"
#include "tests/contract/windows/SystemDouble.h"

namespace contract {
namespace {

const ScratchLocalMachine kLocalMachine;

}  // namespace

const std::vector<std::string> kDescribedWorlds{"double"};
const std::vector<std::string> kEveryWorld{"windows", "double"};

World MakeWorld(const std::string& name, simulated::Machine& described) {
  if (name == "windows") return {platform::Default(), [] { return simulated::Usage{}; }, nullptr};
  static const HMODULE adapter = LoadLibraryA(CONFIG_ADAPTER_PATH);
  EXPECT_NE(adapter, nullptr) << CONFIG_ADAPTER_PATH << ": " << GetLastError();
  const FARPROC entry = GetProcAddress(adapter, "WindowsMachine");
  const auto windows = std::make_shared<SystemDouble>(adapter, described);
  return {*reinterpret_cast<platform::IPlatform* (*)()>(reinterpret_cast<void*>(entry))(),
          [windows] { return windows->InUse(); }, windows};
}

}  // namespace contract
