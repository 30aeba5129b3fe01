#include "common/sys/DllProxy.h"

#include <array>

#include "common/util/LastError.h"
#include "common/util/Wiping.h"
#include "platform/IPlatform.h"

namespace sys {
namespace {

constexpr char kSource[] = R"(common\sys\DllProxy)";
constexpr err::Site kNoFileName{kSource, "DllProxy::Load - No Filename", 43};
constexpr err::Site kLoadFailed{kSource, "DllProxy::Load - Load Library Failed", 50};
constexpr err::Site kExportMissing{kSource, "DllProxy::GetProcAddress - GetProcAddress Failed", 66};

[[noreturn]] void Throw(const err::Site& site, std::int32_t value) {
  throw CDllProxyError{site, value, util::LastError()};
}

}  // namespace

void DllProxy::Load() {
  if (fileName_.empty()) Throw(kNoFileName, 0);
  module_ = platform::Current().Libraries().Load(fileName_);
  if (module_ == platform::LibraryHandle::kNone) Throw(kLoadFailed, 0);
}

void DllProxy::GetProcAddress(platform::ExportedFunction* slot, const std::string& name) {
  if (module_ == platform::LibraryHandle::kNone) Load();
  const platform::ExportedFunction function =
      platform::Current().Libraries().FindExport(module_, name);
  if (function == nullptr) Throw(kExportMissing, 1);
  *slot = function;
}

bool CryptoDll::TryLoad() {
  try {
    Load();
    return true;
  } catch (const CDllProxyError&) {
    return false;
  }
}

bool CryptoDll::Decrypt(const char* input, char* output) {
  try {
    if (decrypt_ == nullptr) GetProcAddress(&decrypt_, "Decrypt");
    return platform::Current().Libraries().Decrypt(decrypt_, input, output);
  } catch (...) {
    return false;  // the library is foreign: any exception means that nothing was deciphered
  }
}

std::string CryptoDll::PlainText(const std::string& cipherText) {
  std::array<char, kPlainTextSize> buffer{};
  const bool deciphered = Decrypt(cipherText.c_str(), buffer.data());
  buffer.back() = '\0';
  std::string plainText = deciphered ? buffer.data() : "";
  util::Wipe(buffer.data(), buffer.size());
  return plainText;
}

}  // namespace sys
