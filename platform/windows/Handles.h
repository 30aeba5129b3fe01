// Handles and memory of the system: their spelling at the seam, and their owners. Closing keeps the
// thread's last error, which belongs to the call that failed before it.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/windows/WindowsHeader.h"

namespace platform::windows {

static_assert(sizeof(HANDLE) == sizeof(std::uint64_t), "handles cross the seam as 64-bit values");

/// The system's spelling of a handle of the seam.
template <class SystemHandle, class SeamHandle>
SystemHandle ToSystem(SeamHandle handle) {
  return reinterpret_cast<SystemHandle>(static_cast<std::uintptr_t>(handle));
}

/// The seam's spelling of a handle of the system.
template <class SeamHandle>
SeamHandle ToSeam(const void* handle) {
  return static_cast<SeamHandle>(reinterpret_cast<std::uintptr_t>(handle));
}

/// Puts the thread's last error back at the end of the scope.
class LastErrorKeeper {
 public:
  LastErrorKeeper() : error_(::GetLastError()) {}
  ~LastErrorKeeper() { ::SetLastError(error_); }
  LastErrorKeeper(const LastErrorKeeper&) = delete;
  LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;

 private:
  DWORD error_;
};

struct KernelHandleCloser {
  void operator()(HANDLE handle) const noexcept {
    const LastErrorKeeper keeper;
    ::CloseHandle(handle);
  }
};

/// Owns a valid kernel handle.
using KernelHandle = std::unique_ptr<void, KernelHandleCloser>;

struct LocalMemoryCloser {
  void operator()(void* memory) const noexcept {
    const LastErrorKeeper keeper;
    ::LocalFree(memory);
  }
};

/// Owns a text that the system allocated with `LocalAlloc`.
using LocalText = std::unique_ptr<char, LocalMemoryCloser>;

struct LsaMemoryCloser {
  void operator()(void* memory) const noexcept {
    const LastErrorKeeper keeper;
    ::LsaFreeMemory(memory);
  }
};

/// Owns an answer of the local security authority.
template <class Answer>
using LsaAnswer = std::unique_ptr<Answer, LsaMemoryCloser>;

struct NetBufferCloser {
  void operator()(void* buffer) const noexcept {
    const LastErrorKeeper keeper;
    ::NetApiBufferFree(buffer);
  }
};

/// Owns an answer of the network management functions.
template <class Answer>
using NetAnswer = std::unique_ptr<Answer, NetBufferCloser>;

}  // namespace platform::windows
