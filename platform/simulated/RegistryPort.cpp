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

#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "platform/IRegistry.h"
#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/Ports.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

using platform::RegistryKey;
using platform::Win32Error;

constexpr std::pair<std::uint64_t, const char*> kRoots[] = {{0x80000000, "HKEY_CLASSES_ROOT"},
                                                            {0x80000001, "HKEY_CURRENT_USER"},
                                                            {0x80000002, "HKEY_LOCAL_MACHINE"},
                                                            {0x80000003, "HKEY_USERS"},
                                                            {0x80000005, "HKEY_CURRENT_CONFIG"}};

// Rights that allow writing values: set value, generic write, generic all, maximum allowed.
constexpr std::uint32_t kWriteAccess = 0x52000002;

/// True when `path` is `key` or a key above it.
bool IsAtOrAbove(std::string_view path, std::string_view key) {
  return base::StartsWith(key, path) && (key.size() == path.size() || key[path.size()] == '\\');
}

auto FindValue(std::vector<RegistryValue>& values, const std::string& path,
               const std::string& name) {
  return std::find_if(values.begin(), values.end(), [&](const RegistryValue& value) {
    return base::SameText(value.key, path) && base::SameText(value.name, name);
  });
}

class RegistryPort final : public platform::IRegistry {
 public:
  explicit RegistryPort(Simulation& simulation) : simulation_(simulation) {}

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
    Change change{"registry.set", {{"key", path}, {"name", name}}};
    std::visit([&](const auto& content) { change.fields.emplace_back("data", content); },
               value.data);
    const auto refused = simulation_.Refuse({.name = "registry.set", .text = path, .item = name});
    if (!refused && error == kSuccess) {
      auto& values = simulation_.machine.registry;
      const auto found = FindValue(values, path, name);
      if (found == values.end()) {
        values.push_back(std::move(value));
      } else {
        found->type = type;
        found->data = std::move(value.data);
      }
    }
    return Finish(std::move(change), refused.value_or(error));
  }

  platform::Win32Error Erase(RegistryKey key, const std::string& name) override {
    std::string path;
    Win32Error error = WritablePath(key, &path);
    auto& values = simulation_.machine.registry;
    const auto found = FindValue(values, path, name);
    if (error == kSuccess && found == values.end()) error = kFileNotFound;
    const auto refused =
        simulation_.Refuse({.name = "registry.delete", .text = path, .item = name});
    if (!refused && error == kSuccess) {
      values.erase(found);
      emptyKeys_.insert(base::Folded(path));
    }
    return Finish({"registry.delete", {{"key", path}, {"name", name}}}, refused.value_or(error));
  }

  platform::Win32Error Close(RegistryKey key) override {
    if (const auto error = simulation_.Refuse({.name = "registry.close"})) return *error;
    if (open_.erase(static_cast<std::uint64_t>(key)) == 0) return kInvalidHandle;
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
    if (const auto error = simulation_.Refuse({.name = "registry.open", .text = path}))
      return *error;
    if (!rootPath) return kInvalidHandle;
    if (!Exists(path)) {
      if (!create) return kFileNotFound;
      emptyKeys_.insert(base::Folded(path));
    }
    nextHandle_ += 4;
    open_.emplace(nextHandle_, OpenKey{std::move(path), access});
    ++simulation_.usage.registryKeys;
    *key = RegistryKey{nextHandle_};
    return kSuccess;
  }

  /// The full path of a root or an open key.
  std::optional<std::string> PathOf(RegistryKey key) const {
    const auto handle = static_cast<std::uint64_t>(key);
    for (const auto& [root, name] : kRoots) {
      if (root == handle) return name;
    }
    const auto found = open_.find(handle);
    if (found == open_.end()) return std::nullopt;
    return found->second.path;
  }

  /// The path of an open key that may be written to, or why it may not.
  platform::Win32Error WritablePath(RegistryKey key, std::string* path) const {
    const auto found = open_.find(static_cast<std::uint64_t>(key));
    if (found == open_.end()) return kInvalidHandle;
    *path = found->second.path;
    return (found->second.access & kWriteAccess) == 0 ? kAccessDenied : kSuccess;
  }

  /// Journals a change and passes its result on.
  platform::Win32Error Finish(Change change, Win32Error error) {
    if (error != kSuccess) change.fields.emplace_back("error", error);
    simulation_.machine.journal.push_back(std::move(change));
    return error;
  }

  bool Exists(const std::string& path) {
    if (path.find('\\') == std::string::npos || emptyKeys_.contains(base::Folded(path)))
      return true;
    if (base::StartsWith(path, kDeviceKeys)) {
      if (simulation_.AdapterByPnpId(path.substr(kDeviceKeys.size())) != nullptr) return true;
    } else if (base::StartsWith(path, kInterfaceKeys)) {
      if (simulation_.AdapterBySettingId(path.substr(kInterfaceKeys.size())) != nullptr)
        return true;
    } else if (IsAtOrAbove(path, kDeviceKeys) || IsAtOrAbove(path, kInterfaceKeys)) {
      return true;
    }
    return std::any_of(simulation_.machine.registry.begin(), simulation_.machine.registry.end(),
                       [&](const RegistryValue& value) { return IsAtOrAbove(path, value.key); }) ||
           std::any_of(emptyKeys_.begin(), emptyKeys_.end(),
                       [&](const std::string& key) { return IsAtOrAbove(path, key); });
  }

  /// A value that stands for a field of an adapter.
  NullableText Mirrored(const std::string& path, const std::string& name) {
    const bool isDevice = base::StartsWith(path, kDeviceKeys);
    if (!isDevice && !base::StartsWith(path, kInterfaceKeys)) return std::nullopt;
    const Adapter* adapter =
        isDevice ? simulation_.AdapterByPnpId(path.substr(kDeviceKeys.size()))
                 : simulation_.AdapterBySettingId(path.substr(kInterfaceKeys.size()));
    const auto* const field =
        std::find_if(std::begin(kAdapterFields), std::end(kAdapterFields), [&](const auto& row) {
          return row.home == (isDevice ? Home::kDeviceKey : Home::kInterfaceKey) &&
                 base::SameText(row.property, name);
        });
    if (adapter == nullptr || field == std::end(kAdapterFields)) return std::nullopt;
    const auto* const text = std::get_if<AdapterMember<NullableText>>(&field->member);
    if (text != nullptr) return adapter->**text;
    return adapter->staticDns ? base::Join(adapter->dnsServers, ",") : std::string();
  }

  std::optional<RegistryValue> Read(const std::string& path, const std::string& name) {
    auto& values = simulation_.machine.registry;
    const auto found = FindValue(values, path, name);
    if (found != values.end()) return *found;
    const NullableText mirrored = Mirrored(path, name);
    if (mirrored) return RegistryValue{path, name, platform::kRegSz, *mirrored};
    return std::nullopt;
  }

  Simulation& simulation_;
  std::unordered_map<std::uint64_t, OpenKey> open_;
  std::uint64_t nextHandle_ = 0x100;
  /// Keys that exist without a value, folded.
  std::unordered_set<std::string> emptyKeys_;
};

}  // namespace

std::unique_ptr<platform::IRegistry> MakeRegistry(Simulation& simulation) {
  return std::make_unique<RegistryPort>(simulation);
}

}  // namespace simulated
