#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>

#include "platform/windows/Text.h"
#include "platform/windows/WindowsHeader.h"
#include "tool/io/HostSystem.h"
// After the header that it builds on.
#include <shellapi.h>

namespace tool {
namespace {

using platform::windows::ToNarrow;
using platform::windows::ToWide;

std::wstring WideOfUtf8(std::string_view text) { return ToWide(text, CP_UTF8); }

UINT consoleCodePage = 0;

}  // namespace

bool RunsWindows() { return true; }

std::vector<std::string> ProgramArguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  wchar_t** const wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(ToNarrow(wide[i], CP_UTF8));
  ::LocalFree(wide);
  return arguments;
}

bool IsTerminal(int stream) {
  // Older consoles print the control codes as text; the ones that do not announce themselves.
  const bool obeys = std::getenv("WT_SESSION") != nullptr || std::getenv("TERM") != nullptr;
  return obeys && _isatty(stream) != 0;
}

void PrepareStreams() {
  _setmode(0, _O_BINARY);
  _setmode(1, _O_BINARY);
  consoleCodePage = ::GetConsoleOutputCP();
  if (consoleCodePage == 0) return;
  // The console stays after this program.
  std::atexit([] { ::SetConsoleOutputCP(consoleCodePage); });
  ::SetConsoleOutputCP(CP_UTF8);
}

std::filesystem::path PathOf(const std::string& name) { return WideOfUtf8(name); }

std::string NameOf(const std::filesystem::path& path) { return ToNarrow(path.native(), CP_UTF8); }

std::FILE* CreatePrivateFile(const std::filesystem::path& path) {
  const int file =
      _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
  return file >= 0 ? _fdopen(file, "wb") : nullptr;
}

void* LoadFunction(const std::string& library, const char* function, std::uint32_t* error) {
  *error = 0;
  const HMODULE module = ::LoadLibraryW(WideOfUtf8(library).c_str());
  if (module == nullptr) {
    *error = ::GetLastError();
    return nullptr;
  }
  return reinterpret_cast<void*>(::GetProcAddress(module, function));
}

std::string ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD size = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (size < path.size()) {
      path.resize(size);
      return NameOf(std::filesystem::path(path).parent_path());
    }
    path.resize(2 * path.size());
  }
}

std::uint32_t SystemCodePage() { return ::GetACP(); }

bool IsCodePage(std::uint32_t codePage) {
  return codePage > CP_THREAD_ACP && ::IsValidCodePage(codePage) != 0;
}

std::string DecodeBytes(std::uint32_t codePage, std::string_view bytes) {
  return ToNarrow(ToWide(bytes, codePage), CP_UTF8);
}

std::optional<std::string> EncodeText(std::uint32_t codePage, std::string_view text) {
  std::string bytes = ToNarrow(WideOfUtf8(text), codePage);
  // Without this, a character becomes the one that looks most like it, or "?".
  if (DecodeBytes(codePage, bytes) != text) return std::nullopt;
  return bytes;
}

}  // namespace tool
