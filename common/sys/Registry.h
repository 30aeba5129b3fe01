// One registry key: a root, a path below it, and the handle once it is open.
#pragma once

#include <cstdint>
#include <string>

#include "common/err/GeneralError.h"
#include "platform/IRegistry.h"

namespace sys {

/// What failed, by `Value`; `SystemError` is the system's last error.
struct RegistryError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;

  enum Code : std::int32_t {
    kUnknown = 0,
    kAlreadyOpen = 1,
    kCloseFailed = 2,
    kOpenFailed = 3,
    kDeleteFailed = 5,
    kReadFailed = 6,
    kWriteFailed = 7,
    kNotOpen = 8,
    kWrongType = 9,
  };
};

/// All operations throw RegistryError and then leave the object as it was.
class Registry {
 public:
  /// Closes the key if it is open; a failure to close is dropped.
  virtual ~Registry();
  Registry& operator=(Registry&&) = delete;

  /// Only while no key is open.
  void SetKey(platform::RegistryKey root);
  void SetKey(platform::RegistryKey root, const std::string& subkey);
  void SetSubkey(const std::string& subkey);

  /// Opens the key, creating it on request, for reading or for everything; `view64` chooses the
  /// 64-bit view instead of the process's own.
  void Open(bool create, bool readOnly, bool view64);
  void OpenForReading(bool view64);
  void Close();

  /// Reads a text; an expandable one comes unexpanded. A name of one character or less means the
  /// key's default value.
  void ReadString(const std::string& name, std::string* value);
  void ReadDWord(const std::string& name, std::uint32_t* value);
  void WriteDWord(const std::string& name, std::uint32_t value);
  /// True for a stored 1 only.
  void ReadBool(const std::string& name, bool* value);
  void WriteBool(const std::string& name, bool value);
  void DeleteValue(const std::string& name);

 private:
  void OpenIntern(std::uint32_t access, bool create);

  bool isOpen_ = false;
  platform::RegistryKey handle_{};
  platform::RegistryKey root_ = platform::kLocalMachine;
  std::string subkey_;
};

/// Where the library keeps its flag, below the local machine's root.
inline constexpr char kClientServiceKey[] = R"(Software\Orvanta\Client Service)";
/// The flag: networking was switched off for an image.
inline constexpr char kNetworkDisabledValue[] = "NetworkDisabled";

}  // namespace sys
