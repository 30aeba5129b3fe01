#include "platform/IRegistry.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

static_assert(kRegSz == REG_SZ);
static_assert(kRegExpandSz == REG_EXPAND_SZ);
static_assert(kRegDWord == REG_DWORD);

/// The system extends the sign of its predefined keys, the seam does not.
HKEY ToKey(RegistryKey key) {
  return key == kLocalMachine ? HKEY_LOCAL_MACHINE : ToSystem<HKEY>(key);
}

/// Hands an opened key over when the call succeeded.
Win32Error Answer(LSTATUS result, HKEY opened, RegistryKey* key) {
  if (result == ERROR_SUCCESS) *key = ToSeam<RegistryKey>(opened);
  return static_cast<Win32Error>(result);
}

class RegistryPort final : public IRegistry {
 public:
  Win32Error Open(RegistryKey root, const std::string& subkey, std::uint32_t access,
                  RegistryKey* key) override {
    HKEY opened = nullptr;
    const LSTATUS result = ::RegOpenKeyExA(ToKey(root), subkey.c_str(), 0, access, &opened);
    return Answer(result, opened, key);
  }

  Win32Error Create(RegistryKey root, const std::string& subkey, std::uint32_t access,
                    RegistryKey* key) override {
    char noClass[] = "";
    HKEY opened = nullptr;
    const LSTATUS result = ::RegCreateKeyExA(ToKey(root), subkey.c_str(), 0, noClass, 0, access,
                                             nullptr, &opened, nullptr);
    return Answer(result, opened, key);
  }

  Win32Error Query(RegistryKey key, const char* name, std::uint32_t* type, void* data,
                   std::uint32_t* size) override {
    DWORD foundType = 0;
    DWORD foundSize = size != nullptr ? *size : 0;
    const LSTATUS result =
        ::RegQueryValueExA(ToKey(key), name, nullptr, &foundType, static_cast<BYTE*>(data),
                           size != nullptr ? &foundSize : nullptr);
    if (result == ERROR_SUCCESS) {
      if (type != nullptr) *type = foundType;
      if (size != nullptr) *size = foundSize;
    }
    return static_cast<Win32Error>(result);
  }

  Win32Error Set(RegistryKey key, const std::string& name, std::uint32_t type, const void* data,
                 std::uint32_t size) override {
    return static_cast<Win32Error>(
        ::RegSetValueExA(ToKey(key), name.c_str(), 0, type, static_cast<const BYTE*>(data), size));
  }

  Win32Error Erase(RegistryKey key, const std::string& name) override {
    return static_cast<Win32Error>(::RegDeleteValueA(ToKey(key), name.c_str()));
  }

  Win32Error Close(RegistryKey key) override {
    return static_cast<Win32Error>(::RegCloseKey(ToKey(key)));
  }
};

}  // namespace

IRegistry& WindowsPlatform::Registry() {
  static RegistryPort port;
  return port;
}

}  // namespace platform::windows
