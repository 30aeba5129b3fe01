// The registry of the simulated computer: the values of its machine file, and those that mirror its
// adapters.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/FindIn.h"
#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "platform/IRegistry.h"
#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

using platform::RegistryKey;
using platform::Win32Error;

// Rights that allow writing values: set value, generic write, generic all, maximum allowed.
constexpr std::uint32_t kWriteAccess = 0x52000002;

/// True when `path` is `key` or a key above it.
bool IsAtOrAbove(std::string_view path, std::string_view key) {
  return base::StartsWith(key, path) && (key.size() == path.size() || key[path.size()] == '\\');
}

RegistryValue* FindValue(std::vector<RegistryValue>& values, const std::string& path,
                         const std::string& name) {
  return base::FindIn(values, [&](const RegistryValue& value) {
    return base::SameText(value.key, path) && base::SameText(value.name, name);
  });
}

class RegistryPort final : public Port<platform::IRegistry> {
 public:
  using Port::Port;

  platform::Win32Error Open(RegistryKey root, const std::string& subkey, std::uint32_t access,
                            RegistryKey* key) override {
    return OpenOrCreate(root, subkey, access, /*create=*/false, key);
  }

  platform::Win32Error Create(RegistryKey root, const std::string& subkey, std::uint32_t access,
                              RegistryKey* key) override {
    return OpenOrCreate(root, subkey, access, /*create=*/true, key);
  }

  platform::Win32Error Query(RegistryKey key, const char* name, std::uint32_t* type, void* data,
                             std::uint32_t* size) override {
    const auto path = PathOf(key);
    const std::string valueName = name == nullptr ? "" : name;
    if (const auto error = simulation_.Refuse(
            {.name = "registry.query", .text = path.value_or(""), .item = valueName})) {
      return *error;
    }
    if (!path) return kInvalidHandle;
    if (data != nullptr && size == nullptr) return kInvalidParameter;
    const auto value = Read(*path, valueName);
    if (!value) return kFileNotFound;

    const auto* number = std::get_if<std::uint32_t>(&value->data);
    const auto* text = std::get_if<std::string>(&value->data);
    const void* const bytes = number != nullptr ? static_cast<const void*>(number) : text->c_str();
    const auto needed =
        static_cast<std::uint32_t>(number != nullptr ? sizeof *number : text->size() + 1);
    if (data != nullptr && *size < needed) return kMoreData;
    if (type != nullptr) *type = value->type;
    if (size != nullptr) *size = needed;
    if (data != nullptr) std::memcpy(data, bytes, needed);
    return kSuccess;
  }

  platform::Win32Error Set(RegistryKey key, const std::string& name, std::uint32_t type,
                           const void* data, std::uint32_t size) override {
    std::string path;
    Win32Error error = WritablePath(key, &path);
    RegistryValue value{path, name, type, {}};
    if (type == platform::kRegDWord && size == sizeof(std::uint32_t)) {
      std::memcpy(&value.data.emplace<std::uint32_t>(), data, size);
    } else if (type == platform::kRegSz || type == platform::kRegExpandSz) {
      std::string& text = value.data.emplace<std::string>(static_cast<const char*>(data), size);
      if (text.ends_with('\0')) text.pop_back();
    } else if (error == kSuccess) {
      error = kInvalidParameter;
    }
    Fields fields{{"key", path}, {"name", name}};
    std::visit([&](const auto& content) { fields.emplace_back("data", content); }, value.data);
    return simulation_.Commit({.name = "registry.set", .text = path, .item = name},
                              std::move(fields), error, [&] {
                                auto& values = simulation_.machine.registry;
                                RegistryValue* found = FindValue(values, path, name);
                                if (found == nullptr) found = &values.emplace_back(value);
                                found->type = type;
                                found->data = std::move(value.data);
                              });
  }

  platform::Win32Error Erase(RegistryKey key, const std::string& name) override {
    std::string path;
    Win32Error error = WritablePath(key, &path);
    auto& values = simulation_.machine.registry;
    const RegistryValue* found = FindValue(values, path, name);
    if (error == kSuccess && found == nullptr) error = kFileNotFound;
    return simulation_.Commit({.name = "registry.delete", .text = path, .item = name},
                              {{"key", path}, {"name", name}}, error, [&] {
                                values.erase(values.begin() + (found - values.data()));
                                emptyKeys_.insert(base::Folded(path));
                              });
  }

  platform::Win32Error Close(RegistryKey key) override {
    if (const auto error = simulation_.Refuse({"registry.close"})) return *error;
    if (open_.erase(key) == 0) return kInvalidHandle;
    --simulation_.usage.registryKeys;
    return kSuccess;
  }

 private:
  struct OpenKey {
    std::string path;
    std::uint32_t access;
  };

  platform::Win32Error OpenOrCreate(RegistryKey root, const std::string& subkey,
                                    std::uint32_t access, bool create, RegistryKey* key) {
    const auto rootPath = PathOf(root);
    std::string path = rootPath.value_or("");
    if (!subkey.empty()) path += "\\" + subkey;
    while (path.ends_with('\\')) path.pop_back();
    if (const auto error = simulation_.Refuse({"registry.open", path})) return *error;
    if (!rootPath) return kInvalidHandle;
    if (!Exists(path)) {
      if (!create) return kFileNotFound;
      emptyKeys_.insert(base::Folded(path));
    }
    nextHandle_ += 4;
    *key = RegistryKey{nextHandle_};
    open_.emplace(*key, OpenKey{std::move(path), access});
    ++simulation_.usage.registryKeys;
    return kSuccess;
  }

  /// The full path of a root or an open key.
  std::optional<std::string> PathOf(RegistryKey key) const {
    if (key == platform::kLocalMachine) return "HKEY_LOCAL_MACHINE";
    const auto found = open_.find(key);
    if (found == open_.end()) return std::nullopt;
    return found->second.path;
  }

  /// The path of an open key that may be written to, or why it may not.
  platform::Win32Error WritablePath(RegistryKey key, std::string* path) const {
    const auto found = open_.find(key);
    if (found == open_.end()) return kInvalidHandle;
    *path = found->second.path;
    return (found->second.access & kWriteAccess) == 0 ? kAccessDenied : kSuccess;
  }

  bool Exists(const std::string& path) {
    if (path.find('\\') == std::string::npos || emptyKeys_.contains(base::Folded(path))) {
      return true;
    }
    const auto [home, adapter] = AdapterAt(path);
    if (adapter != nullptr || IsAtOrAbove(path, kDeviceKeys) || IsAtOrAbove(path, kInterfaceKeys)) {
      return true;
    }
    return std::any_of(simulation_.machine.registry.begin(), simulation_.machine.registry.end(),
                       [&](const RegistryValue& value) { return IsAtOrAbove(path, value.key); }) ||
           std::any_of(emptyKeys_.begin(), emptyKeys_.end(),
                       [&](const std::string& key) { return IsAtOrAbove(path, key); });
  }

  /// The adapter whose device or interface key this is, and which of the two.
  std::pair<Home, const Adapter*> AdapterAt(const std::string& path) {
    const bool isDevice = base::StartsWith(path, kDeviceKeys);
    if (!isDevice && !base::StartsWith(path, kInterfaceKeys)) return {};
    const std::string id = path.substr((isDevice ? kDeviceKeys : kInterfaceKeys).size());
    return {isDevice ? Home::kDeviceKey : Home::kInterfaceKey,
            simulation_.AdapterById(isDevice ? &Adapter::pnpDeviceId : &Adapter::settingId, id)};
  }

  /// A value that stands for a field of an adapter.
  NullableText Mirrored(const std::string& path, const std::string& name) {
    const auto [home, adapter] = AdapterAt(path);
    if (adapter == nullptr) return std::nullopt;
    for (const AdapterField& field : kAdapterFields) {
      if (field.home != home || !base::SameText(field.property, name)) continue;
      const auto* const text = std::get_if<AdapterMember<NullableText>>(&field.member);
      if (text != nullptr) return adapter->**text;
      return adapter->staticDns ? base::Join(adapter->dnsServers, ",") : std::string();
    }
    return std::nullopt;
  }

  std::optional<RegistryValue> Read(const std::string& path, const std::string& name) {
    if (const auto* found = FindValue(simulation_.machine.registry, path, name)) return *found;
    const NullableText mirrored = Mirrored(path, name);
    if (mirrored) return RegistryValue{path, name, platform::kRegSz, *mirrored};
    return std::nullopt;
  }

  std::unordered_map<RegistryKey, OpenKey> open_;
  std::uint64_t nextHandle_ = 0x100;
  /// Keys that exist without a value, folded.
  std::unordered_set<std::string> emptyKeys_;
};

}  // namespace

platform::IRegistry& SimulatedPlatform::Registry() { return Made<RegistryPort>(&registry_); }

}  // namespace simulated
