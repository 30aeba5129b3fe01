#include "platform/ILibraries.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

using DecryptFunction = bool (*)(const char* input, char* output);

/// In GuardedCall.c, which tells what it is for.
extern "C" bool GuardedDecrypt(DecryptFunction decrypt, const char* input, char* output);

namespace platform::windows {
namespace {

class LibrariesPort final : public ILibraries {
 public:
  LibraryHandle Load(const std::string& fileName) override {
    return ToSeam<LibraryHandle>(::LoadLibraryA(fileName.c_str()));
  }

  ExportedFunction FindExport(LibraryHandle library, const std::string& name) override {
    return reinterpret_cast<ExportedFunction>(
        ::GetProcAddress(ToSystem<HMODULE>(library), name.c_str()));
  }

  bool Decrypt(ExportedFunction function, const char* input, char* output) override {
    return ::GuardedDecrypt(reinterpret_cast<DecryptFunction>(function), input, output);
  }
};

}  // namespace

ILibraries& WindowsPlatform::Libraries() {
  static LibrariesPort port;
  return port;
}

}  // namespace platform::windows
