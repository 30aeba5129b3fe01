#include <algorithm>
#include <string>

#include "platform/IFiles.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

static_assert(kNoAttributes == INVALID_FILE_ATTRIBUTES);
static_assert(kDirectoryAttribute == FILE_ATTRIBUTE_DIRECTORY);

constexpr std::size_t kReadChunk = std::size_t{1} << 24;
constexpr DWORD kLongestPath = 32768;

/// Where a file lies. The handle comes along: a file keeps its index only while it is open.
struct Identity {
  KernelHandle file;
  BY_HANDLE_FILE_INFORMATION place{};
};

bool Identify(const std::string& path, Identity* identity) {
  const HANDLE handle = ::CreateFileA(path.c_str(), /*dwDesiredAccess=*/0,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  identity->file.reset(handle);
  return ::GetFileInformationByHandle(handle, &identity->place) != FALSE;
}

class FilesPort final : public IFiles {
 public:
  std::uint32_t Attributes(const std::string& path) override {
    return ::GetFileAttributesA(path.c_str());
  }

  bool ReadWhole(const std::string& path, std::string* content) override {
    const HANDLE handle =
        ::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return false;
    const KernelHandle file(handle);
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(handle, &size)) return false;
    if (size.HighPart != 0) {
      ::SetLastError(ERROR_FILE_TOO_LARGE);
      return false;
    }
    content->resize(size.LowPart);
    for (std::size_t filled = 0; filled < content->size();) {
      const std::size_t wanted = std::min(kReadChunk, content->size() - filled);
      DWORD got = 0;
      if (!::ReadFile(handle, content->data() + filled, static_cast<DWORD>(wanted), &got,
                      nullptr)) {
        return false;
      }
      if (got == 0) {  // the file shrank meanwhile
        ::SetLastError(ERROR_HANDLE_EOF);
        return false;
      }
      filled += got;
    }
    return true;
  }

  bool Move(const std::string& source, const std::string& destination) override {
    return ::MoveFileA(source.c_str(), destination.c_str()) != FALSE;
  }

  bool Copy(const std::string& source, const std::string& destination, bool failIfExists) override {
    return ::CopyFileA(source.c_str(), destination.c_str(), failIfExists ? TRUE : FALSE) != FALSE;
  }

  bool Erase(const std::string& path) override { return ::DeleteFileA(path.c_str()) != FALSE; }

  bool SameFile(const std::string& first, const std::string& second, bool* same) override {
    Identity one;
    Identity other;
    if (!Identify(first, &one) || !Identify(second, &other)) return false;
    *same = one.place.dwVolumeSerialNumber == other.place.dwVolumeSerialNumber &&
            one.place.nFileIndexHigh == other.place.nFileIndexHigh &&
            one.place.nFileIndexLow == other.place.nFileIndexLow;
    return true;
  }

  bool ModulePath(std::string* path) override {
    std::string buffer(kLongestPath, '\0');
    const DWORD length = ::GetModuleFileNameA(nullptr, buffer.data(), kLongestPath);
    if (length == 0 || length == kLongestPath) return false;
    path->assign(buffer, 0, length);
    return true;
  }

  bool WriteProfileEntry(const std::string& section, const std::string& key,
                         const std::string& value, const std::string& path) override {
    return ::WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(),
                                        path.c_str()) != FALSE;
  }
};

}  // namespace

IFiles& WindowsPlatform::Files() {
  static FilesPort port;
  return port;
}

}  // namespace platform::windows
