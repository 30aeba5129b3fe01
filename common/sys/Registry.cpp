#include "common/sys/Registry.h"

#include <vector>

#include "common/util/LastError.h"
#include "platform/IErrors.h"
#include "platform/IPlatform.h"

namespace sys {
namespace {

constexpr char kSource[] = R"(common\sys\Registry)";

constexpr std::uint32_t kGenericRead = 0x80000000;
constexpr std::uint32_t kAllAccess = 0xF003F;
constexpr std::uint32_t kView64 = 0x100;  // KEY_WOW64_64KEY

constexpr err::Site kSetRootOpen{
    kSource, "SetKey( HKEY hKey ) - Registry key already open, cannot set key.", 47};
constexpr err::Site kSetKeyOpen{kSource,
                                "SetKey( HKEY hKey, const std::string& subkey ) - Registry key "
                                "already open, cannot set key.",
                                60};
constexpr err::Site kSetSubkeyOpen{
    kSource, "SetSubkey() - Registry key already open, cannot set subkey.", 73};
constexpr err::Site kOpenUnknown{kSource, "Open() - Unknown error caught.", 101};
constexpr err::Site kOpenForReadingUnknown{kSource, "OpenForReading() - Unknown error caught.",
                                           118};
constexpr err::Site kOpenInternOpen{
    kSource, "OpenIntern() - Registry key already open, cannot set subkey.", 131};
constexpr err::Site kCannotOpen{kSource, "OpenIntern() - Cannot open key.", 158};
constexpr err::Site kOpenInternUnknown{kSource, "OpenIntern() - Unknown error caught.", 167};
constexpr err::Site kCloseNotOpen{kSource, "Close() - Registry key not open, cannot close", 180};
constexpr err::Site kCloseFailed{kSource, "Close() - RegCloseKey failed", 187};
constexpr err::Site kReadStringNotOpen{kSource, "ReadString() - Key not open, cannot read.", 203};
constexpr err::Site kReadStringType{kSource, "ReadString() - Incorrect data type.", 226};
constexpr err::Site kReadStringFailed{kSource, "ReadString() - Read failed.", 219};
constexpr err::Site kReadDWordNotOpen{kSource, "ReadDWord() - Key not open, cannot read.", 258};
constexpr err::Site kReadDWordType{kSource, "ReadDWord() - Incorrect data type.", 273};
constexpr err::Site kReadDWordFailed{kSource, "ReadDWord() - Read failed.", 267};
constexpr err::Site kWriteDWordNotOpen{kSource, "WriteDWord() - Key not open, cannot write.", 297};
constexpr err::Site kWriteDWordFailed{kSource, "WriteDWord() - Write failed.", 306};
constexpr err::Site kReadBoolUnknown{kSource, "ReadBool() - Unknown error caught.", 329};
constexpr err::Site kWriteBoolUnknown{kSource, "WriteBool() - Unknown error caught.", 347};
constexpr err::Site kDeleteNotOpen{kSource, "DeleteValue() - Key not open, cannot delete.", 360};
constexpr err::Site kDeleteFailed{kSource, "DeleteValue() - Delete failed.", 368};

platform::IRegistry& Port() { return platform::Current().Registry(); }

[[noreturn]] void Throw(const err::Site& site, std::int32_t value) {
  throw RegistryError{site, value, util::LastError()};
}

/// Runs `operation`; any exception becomes this module's error.
template <typename Operation>
void Guarded(const err::Site& unknown, const Operation& operation) {
  try {
    operation();
  } catch (const RegistryError&) {
    throw;
  } catch (...) {
    Throw(unknown, RegistryError::kUnknown);
  }
}

}  // namespace

Registry::~Registry() {
  if (isOpen_) Port().Close(handle_);
}

void Registry::SetKey(platform::RegistryKey root) {
  if (isOpen_) Throw(kSetRootOpen, RegistryError::kAlreadyOpen);
  root_ = root;
}

void Registry::SetKey(platform::RegistryKey root, const std::string& subkey) {
  if (isOpen_) Throw(kSetKeyOpen, RegistryError::kAlreadyOpen);
  subkey_ = subkey;
  root_ = root;
}

void Registry::SetSubkey(const std::string& subkey) {
  if (isOpen_) Throw(kSetSubkeyOpen, RegistryError::kAlreadyOpen);
  subkey_ = subkey;
}

void Registry::Open(bool create, bool readOnly, bool view64) {
  Guarded(kOpenUnknown, [&] {
    const std::uint32_t access = !create && readOnly ? kGenericRead : kAllAccess;
    OpenIntern(view64 ? access | kView64 : access, create);
  });
}

void Registry::OpenForReading(bool view64) {
  Guarded(kOpenForReadingUnknown, [&] { Open(/*create=*/false, /*readOnly=*/true, view64); });
}

void Registry::OpenIntern(std::uint32_t access, bool create) {
  if (isOpen_) Throw(kOpenInternOpen, RegistryError::kAlreadyOpen);
  Guarded(kOpenInternUnknown, [&] {
    const platform::Win32Error result = create ? Port().Create(root_, subkey_, access, &handle_)
                                               : Port().Open(root_, subkey_, access, &handle_);
    if (result != 0) {
      platform::Current().Errors().SetLastError(result);
      Throw(kCannotOpen, RegistryError::kOpenFailed);
    }
    isOpen_ = true;
  });
}

void Registry::Close() {
  if (!isOpen_) Throw(kCloseNotOpen, RegistryError::kNotOpen);
  if (Port().Close(handle_) != 0) Throw(kCloseFailed, RegistryError::kCloseFailed);
  isOpen_ = false;
}

void Registry::ReadString(const std::string& name, std::string* value) {
  if (!isOpen_) Throw(kReadStringNotOpen, RegistryError::kNotOpen);
  // Deliberate: a name of one character is taken for the default value as well.
  const char* const valueName = name.size() <= 1 ? nullptr : name.c_str();
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  if (Port().Query(handle_, valueName, &type, nullptr, &size) != 0) {
    Throw(kReadStringFailed, RegistryError::kReadFailed);
  }
  if (type != platform::kRegSz && type != platform::kRegExpandSz) {
    Throw(kReadStringType, RegistryError::kWrongType);
  }
  // The stored text need not end in a NUL; the byte added here ends it.
  std::vector<char> buffer(std::size_t{size} + 1, '\0');
  if (Port().Query(handle_, valueName, &type, buffer.data(), &size) != 0) {
    Throw(kReadStringFailed, RegistryError::kReadFailed);
  }
  *value = buffer.data();
}

void Registry::ReadDWord(const std::string& name, std::uint32_t* value) {
  if (!isOpen_) Throw(kReadDWordNotOpen, RegistryError::kNotOpen);
  std::uint32_t type = 0;
  if (Port().Query(handle_, name.c_str(), &type, nullptr, nullptr) != 0) {
    Throw(kReadDWordFailed, RegistryError::kReadFailed);
  }
  if (type != platform::kRegDWord) Throw(kReadDWordType, RegistryError::kWrongType);
  std::uint32_t stored = 0;
  std::uint32_t size = sizeof stored;
  if (Port().Query(handle_, name.c_str(), nullptr, &stored, &size) != 0) {
    Throw(kReadDWordFailed, RegistryError::kReadFailed);
  }
  *value = stored;
}

void Registry::WriteDWord(const std::string& name, std::uint32_t value) {
  if (!isOpen_) Throw(kWriteDWordNotOpen, RegistryError::kNotOpen);
  if (Port().Set(handle_, name, platform::kRegDWord, &value, sizeof value) != 0) {
    Throw(kWriteDWordFailed, RegistryError::kWriteFailed);
  }
}

void Registry::ReadBool(const std::string& name, bool* value) {
  Guarded(kReadBoolUnknown, [&] {
    std::uint32_t stored = 0;
    ReadDWord(name, &stored);
    *value = stored == 1;
  });
}

void Registry::WriteBool(const std::string& name, bool value) {
  Guarded(kWriteBoolUnknown, [&] { WriteDWord(name, value ? 1 : 0); });
}

void Registry::DeleteValue(const std::string& name) {
  if (!isOpen_) Throw(kDeleteNotOpen, RegistryError::kNotOpen);
  if (Port().Erase(handle_, name) != 0) Throw(kDeleteFailed, RegistryError::kDeleteFailed);
}

}  // namespace sys
