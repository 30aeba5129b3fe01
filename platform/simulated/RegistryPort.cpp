#include "platform/simulated/RegistryPort.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "platform/simulated/Codes.h"

namespace simulated {
namespace {

using platform::RegistryKey;
using platform::Win32Error;

constexpr std::pair<std::uint64_t, const char*> kRoots[] = {{0x80000000, "HKEY_CLASSES_ROOT"},
                                                            {0x80000001, "HKEY_CURRENT_USER"},
                                                            {0x80000002, "HKEY_LOCAL_MACHINE"},
                                                            {0x80000003, "HKEY_USERS"},
                                                            {0x80000005, "HKEY_CURRENT_CONFIG"}};

constexpr std::string_view kDevices = R"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\)";
constexpr std::string_view kInterfaces =
    R"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Services\Tcpip\Parameters\Interfaces\)";

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

}  // namespace

Win32Error RegistryPort::Open(RegistryKey root, const std::string& subkey, std::uint32_t access,
                              RegistryKey* key) {
  return OpenOrCreate(root, subkey, access, /*create=*/false, key);
}

Win32Error RegistryPort::Create(RegistryKey root, const std::string& subkey, std::uint32_t access,
                                RegistryKey* key) {
  return OpenOrCreate(root, subkey, access, /*create=*/true, key);
}

Win32Error RegistryPort::OpenOrCreate(RegistryKey root, const std::string& subkey,
                                      std::uint32_t access, bool create, RegistryKey* key) {
  const auto rootPath = PathOf(root);
  std::string path = rootPath.value_or("");
  if (!subkey.empty()) path += "\\" + subkey;
  while (path.ends_with('\\')) path.pop_back();
  if (const auto error = simulation_.Refuse({.name = "registry.open", .text = path})) return *error;
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

Win32Error RegistryPort::Query(RegistryKey key, const char* name, std::uint32_t* type, void* data,
                               std::uint32_t* size) {
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

Win32Error RegistryPort::Set(RegistryKey key, const std::string& name, std::uint32_t type,
                             const void* data, std::uint32_t size) {
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
  std::visit([&](const auto& content) { change.fields.emplace_back("data", content); }, value.data);
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

Win32Error RegistryPort::Erase(RegistryKey key, const std::string& name) {
  std::string path;
  Win32Error error = WritablePath(key, &path);
  auto& values = simulation_.machine.registry;
  const auto found = FindValue(values, path, name);
  if (error == kSuccess && found == values.end()) error = kFileNotFound;
  const auto refused = simulation_.Refuse({.name = "registry.delete", .text = path, .item = name});
  if (!refused && error == kSuccess) {
    values.erase(found);
    emptyKeys_.insert(base::Folded(path));
  }
  return Finish({"registry.delete", {{"key", path}, {"name", name}}}, refused.value_or(error));
}

Win32Error RegistryPort::Close(RegistryKey key) {
  if (const auto error = simulation_.Refuse({.name = "registry.close"})) return *error;
  if (open_.erase(static_cast<std::uint64_t>(key)) == 0) return kInvalidHandle;
  --simulation_.usage.registryKeys;
  return kSuccess;
}

std::optional<std::string> RegistryPort::PathOf(RegistryKey key) const {
  const auto handle = static_cast<std::uint64_t>(key);
  for (const auto& [root, name] : kRoots) {
    if (root == handle) return name;
  }
  const auto found = open_.find(handle);
  if (found == open_.end()) return std::nullopt;
  return found->second.path;
}

Win32Error RegistryPort::WritablePath(RegistryKey key, std::string* path) const {
  const auto found = open_.find(static_cast<std::uint64_t>(key));
  if (found == open_.end()) return kInvalidHandle;
  *path = found->second.path;
  return (found->second.access & kWriteAccess) == 0 ? kAccessDenied : kSuccess;
}

Win32Error RegistryPort::Finish(Change change, Win32Error error) {
  if (error != kSuccess) change.fields.emplace_back("error", error);
  simulation_.machine.journal.push_back(std::move(change));
  return error;
}

bool RegistryPort::Exists(const std::string& path) {
  if (path.find('\\') == std::string::npos || emptyKeys_.contains(base::Folded(path))) return true;
  if (base::StartsWith(path, kDevices)) {
    if (simulation_.AdapterByPnpId(path.substr(kDevices.size())) != nullptr) return true;
  } else if (base::StartsWith(path, kInterfaces)) {
    if (simulation_.AdapterBySettingId(path.substr(kInterfaces.size())) != nullptr) return true;
  } else if (IsAtOrAbove(path, kDevices) || IsAtOrAbove(path, kInterfaces)) {
    return true;
  }
  return std::any_of(simulation_.machine.registry.begin(), simulation_.machine.registry.end(),
                     [&](const RegistryValue& value) { return IsAtOrAbove(path, value.key); }) ||
         std::any_of(emptyKeys_.begin(), emptyKeys_.end(),
                     [&](const std::string& key) { return IsAtOrAbove(path, key); });
}

std::optional<RegistryValue> RegistryPort::Read(const std::string& path, const std::string& name) {
  auto& values = simulation_.machine.registry;
  const auto found = FindValue(values, path, name);
  if (found != values.end()) return *found;
  if (base::StartsWith(path, kDevices) && base::SameText(name, "LocationInformation")) {
    const Adapter* adapter = simulation_.AdapterByPnpId(path.substr(kDevices.size()));
    if (adapter != nullptr && adapter->locationInformation) {
      return RegistryValue{path, name, platform::kRegSz, *adapter->locationInformation};
    }
  }
  if (base::StartsWith(path, kInterfaces) && base::SameText(name, "NameServer")) {
    const Adapter* adapter = simulation_.AdapterBySettingId(path.substr(kInterfaces.size()));
    if (adapter != nullptr) {
      return RegistryValue{
          path, name, platform::kRegSz,
          adapter->staticDns ? base::Join(adapter->dnsServers, ",") : std::string()};
    }
  }
  return std::nullopt;
}

}  // namespace simulated
