// The registry of the simulated computer: the values of its machine file, and those that mirror its
// adapters.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "platform/IRegistry.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

class RegistryPort final : public platform::IRegistry {
 public:
  explicit RegistryPort(Simulation& simulation) : simulation_(simulation) {}

  platform::Win32Error Open(platform::RegistryKey root, const std::string& subkey,
                            std::uint32_t access, platform::RegistryKey* key) override;
  platform::Win32Error Create(platform::RegistryKey root, const std::string& subkey,
                              std::uint32_t access, platform::RegistryKey* key) override;
  platform::Win32Error Query(platform::RegistryKey key, const char* name, std::uint32_t* type,
                             void* data, std::uint32_t* size) override;
  platform::Win32Error Set(platform::RegistryKey key, const std::string& name, std::uint32_t type,
                           const void* data, std::uint32_t size) override;
  platform::Win32Error Erase(platform::RegistryKey key, const std::string& name) override;
  platform::Win32Error Close(platform::RegistryKey key) override;

 private:
  struct OpenKey {
    std::string path;
    std::uint32_t access;
  };

  platform::Win32Error OpenOrCreate(platform::RegistryKey root, const std::string& subkey,
                                    std::uint32_t access, bool create, platform::RegistryKey* key);
  /// The full path of a root or an open key.
  std::optional<std::string> PathOf(platform::RegistryKey key) const;
  /// The path of an open key that may be written to, or why it may not.
  platform::Win32Error WritablePath(platform::RegistryKey key, std::string* path) const;
  /// Journals a change and passes its result on.
  platform::Win32Error Finish(Change change, platform::Win32Error error);
  bool Exists(const std::string& path);
  std::optional<RegistryValue> Read(const std::string& path, const std::string& name);

  Simulation& simulation_;
  std::unordered_map<std::uint64_t, OpenKey> open_;
  std::uint64_t nextHandle_ = 0x100;
  /// Keys that exist without a value, folded.
  std::unordered_set<std::string> emptyKeys_;
};

}  // namespace simulated
