// The registry. Each operation is one system call and decides nothing.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Types.h"

namespace platform {

/// A predefined root or an open key.
enum class RegistryKey : std::uint64_t {};
constexpr RegistryKey kLocalMachine{0x80000002};

constexpr std::uint32_t kRegSz = 1;
constexpr std::uint32_t kRegExpandSz = 2;
constexpr std::uint32_t kRegDWord = 4;

/// Returns each call's own result; on failure the outputs keep their values. Names are narrow
/// texts.
class IRegistry {
 public:
  virtual ~IRegistry() = default;
  /// Opens `subkey` below `root`. The caller closes `*key`.
  virtual Win32Error Open(RegistryKey root, const std::string& subkey, std::uint32_t access,
                          RegistryKey* key) = 0;
  /// As `Open`, creating the key when it does not exist.
  virtual Win32Error Create(RegistryKey root, const std::string& subkey, std::uint32_t access,
                            RegistryKey* key) = 0;
  /// Reads type and data of a value; a null `name` is the key's default value. With a null `data`
  /// only type and size (bytes) are answered; otherwise `*size` is the room in `data` on entry and
  /// the bytes stored on return. `type` and `size` may be null where they are not wanted.
  virtual Win32Error Query(RegistryKey key, const char* name, std::uint32_t* type, void* data,
                           std::uint32_t* size) = 0;
  virtual Win32Error Set(RegistryKey key, const std::string& name, std::uint32_t type,
                         const void* data, std::uint32_t size) = 0;
  virtual Win32Error Erase(RegistryKey key, const std::string& name) = 0;
  virtual Win32Error Close(RegistryKey key) = 0;
};

}  // namespace platform
