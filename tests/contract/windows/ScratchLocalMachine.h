// An empty HKEY_LOCAL_MACHINE.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/windows/WindowsHeader.h"

namespace contract {

/// Puts an empty key in the place of HKEY_LOCAL_MACHINE of this process, for its own lifetime.
class ScratchLocalMachine {
 public:
  ScratchLocalMachine() {
    EXPECT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, path_.c_str(), &scratch_), ERROR_SUCCESS);
    EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, scratch_), ERROR_SUCCESS);
  }
  ~ScratchLocalMachine() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(scratch_);
    RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str());
  }
  ScratchLocalMachine(const ScratchLocalMachine&) = delete;
  ScratchLocalMachine& operator=(const ScratchLocalMachine&) = delete;

 private:
  // One key for each process, since tests run side by side.
  const std::string path_ =
      R"(Software\Orvanta Contract Scratch )" + std::to_string(GetCurrentProcessId());
  HKEY scratch_ = nullptr;
};

}  // namespace contract
