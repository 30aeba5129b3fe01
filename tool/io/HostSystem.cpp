#include "tool/io/HostSystem.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace tool {

#ifdef _WIN32

namespace {

/// Older consoles print the control codes as text; the ones that do not announce themselves.
bool ObeysControlCodes(int stream) {
  const bool obeys = std::getenv("WT_SESSION") != nullptr || std::getenv("TERM") != nullptr;
  return obeys && _isatty(stream) != 0;
}

}  // namespace

bool RunsWindows() { return true; }

bool IsColorTerminal() { return ObeysControlCodes(1); }

bool IsProgressTerminal() { return ObeysControlCodes(2); }

void UseBinaryStreams() {
  _setmode(0, _O_BINARY);
  _setmode(1, _O_BINARY);
}

std::FILE* CreatePrivateFile(const std::string& path) {
  const int file =
      _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
  return file >= 0 ? _fdopen(file, "wb") : nullptr;
}

#else

bool RunsWindows() { return false; }

bool IsColorTerminal() { return isatty(STDOUT_FILENO) != 0; }

bool IsProgressTerminal() { return isatty(STDERR_FILENO) != 0; }

void UseBinaryStreams() {}

std::FILE* CreatePrivateFile(const std::string& path) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  return file >= 0 ? fdopen(file, "wb") : nullptr;
}

#endif

}  // namespace tool
