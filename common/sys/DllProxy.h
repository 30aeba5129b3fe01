// Late binding of a dynamic library, and its one use: the decryption library.
#pragma once

#include <string>

#include "common/err/GeneralError.h"
#include "platform/ILibraries.h"

namespace sys {

/// Value 0 for a library that cannot be loaded, 1 for a missing export.
struct CDllProxyError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;
};

/// One library, loaded on first need and never unloaded.
class DllProxy {
 public:
  explicit DllProxy(std::string fileName) : fileName_(std::move(fileName)) {}

  /// Loads the library by the system's normal search. Throws CDllProxyError.
  void Load();
  /// Stores an export's address in `*slot`, loading the library first if needed. Throws
  /// CDllProxyError; `*slot` then keeps its value.
  void GetProcAddress(platform::ExportedFunction* slot, const std::string& name);

 private:
  std::string fileName_;
  platform::LibraryHandle module_ = platform::LibraryHandle::kNone;
};

/// "LibCrypto.dll", which deciphers the account and password of the configuration file.
class CryptoDll : private DllProxy {
 public:
  CryptoDll() : DllProxy("LibCrypto.dll") {}

  /// Loads the library; false when it is not installed.
  bool TryLoad();

  /// Calls the export "Decrypt". `output` has room for `kPlainTextSize` bytes and keeps what the
  /// library wrote. False when the library or its export is missing or the call fails.
  bool Decrypt(const char* input, char* output);

  /// The plain text of `cipherText`, empty when `Decrypt` is false. Leaves no other copy of it in
  /// memory.
  std::string PlainText(const std::string& cipherText);

  static constexpr std::size_t kPlainTextSize = 4096;

 private:
  platform::ExportedFunction decrypt_ = nullptr;
};

}  // namespace sys
