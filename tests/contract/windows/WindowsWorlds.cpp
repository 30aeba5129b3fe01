// The Windows adapter twice: linked into this program, on the system itself, and in a library whose
// calls a simulated machine answers.
#include <gtest/gtest.h>

#include "tests/contract/World.h"
#include "tests/contract/windows/SystemDouble.h"

namespace contract {
namespace {

/// An empty HKEY_LOCAL_MACHINE for the whole program.
class ScratchLocalMachine final : public testing::Environment {
 public:
  void SetUp() override {
    ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, path_.c_str(), &scratch_), ERROR_SUCCESS);
    ASSERT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, scratch_), ERROR_SUCCESS);
  }
  void TearDown() override {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(scratch_);
    RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str());
  }

 private:
  // One key for each process, since tests run side by side.
  const std::string path_ =
      R"(Software\Orvanta Contract Scratch )" + std::to_string(GetCurrentProcessId());
  HKEY scratch_ = nullptr;
};

[[maybe_unused]] const auto* const registered =
    testing::AddGlobalTestEnvironment(new ScratchLocalMachine);

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
