#include "platform/ILibraries.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

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
};

}  // namespace

ILibraries& WindowsPlatform::Libraries() {
  static LibrariesPort port;
  return port;
}

}  // namespace platform::windows
