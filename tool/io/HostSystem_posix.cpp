#include <fcntl.h>
#include <iconv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

#include "tool/io/HostSystem.h"

namespace tool {
namespace {

constexpr std::uint32_t kUtf8 = 65001;

std::string EncodingName(std::uint32_t codePage) {
  return codePage == kUtf8 ? "UTF-8" : "CP" + std::to_string(codePage);
}

/// A conversion between two encodings; every call starts anew.
class Conversion {
 public:
  Conversion(const std::string& to, const std::string& from)
      : handle_(iconv_open(to.c_str(), from.c_str())) {}
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;
  ~Conversion() {
    if (IsOpen()) iconv_close(handle_);
  }

  bool IsOpen() const { return reinterpret_cast<std::intptr_t>(handle_) != -1; }

  /// Converts what it can, takes that off `text` and returns it.
  std::string Convert(std::string_view& text) const {
    std::string converted;
    char block[256];
    std::size_t result = 0;
    do {
      char* in = const_cast<char*>(text.data());
      std::size_t left = text.size();
      char* out = block;
      std::size_t room = sizeof block;
      result = iconv(handle_, &in, &left, &out, &room);
      converted.append(block, sizeof block - room);
      text.remove_prefix(text.size() - left);
    } while (result == static_cast<std::size_t>(-1) && errno == E2BIG);
    // Some code pages hold a letter back until they know that no accent follows.
    char* out = block;
    std::size_t room = sizeof block;
    iconv(handle_, nullptr, nullptr, &out, &room);
    return converted.append(block, sizeof block - room);
  }

 private:
  iconv_t handle_;
};

}  // namespace

bool RunsWindows() { return false; }

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

bool IsTerminal(int stream) { return isatty(stream) != 0; }

void PrepareStreams() {}

std::filesystem::path PathOf(const std::string& name) { return name; }

std::string NameOf(const std::filesystem::path& path) { return path.string(); }

std::FILE* CreatePrivateFile(const std::filesystem::path& path) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  return file >= 0 ? fdopen(file, "wb") : nullptr;
}

// No library of the agent's is for this system.
void* LoadFunction(const std::string& /*library*/, const char* /*function*/,
                   std::uint32_t* /*error*/) {
  return nullptr;
}

std::string ProgramFolder() { return "."; }

std::uint32_t SystemCodePage() { return 1252; }

bool IsCodePage(std::uint32_t codePage) {
  return Conversion("UTF-8", EncodingName(codePage)).IsOpen();
}

std::string DecodeBytes(std::uint32_t codePage, std::string_view bytes) {
  const Conversion conversion("UTF-8", EncodingName(codePage));
  std::string text = conversion.Convert(bytes);
  while (!bytes.empty()) {
    const char byte = bytes.front();
    bytes.remove_prefix(1);
    // As Windows has it: U+0080 to U+009F for what a code page of single bytes leaves open there.
    const bool isControl = codePage != kUtf8 && (byte & 0xE0) == 0x80;
    text += isControl ? std::string{'\xC2', byte} : "\xEF\xBF\xBD";
    text += conversion.Convert(bytes);
  }
  return text;
}

std::optional<std::string> EncodeText(std::uint32_t codePage, std::string_view text) {
  const Conversion conversion(EncodingName(codePage), "UTF-8");
  std::string bytes = conversion.Convert(text);
  while (!text.empty()) {
    // What the decoder made of an open byte is that byte.
    const bool isControl =
        text.size() > 1 && codePage != kUtf8 && text[0] == '\xC2' && (text[1] & 0xE0) == 0x80;
    if (!isControl) return std::nullopt;
    bytes += text[1];
    text.remove_prefix(2);
    bytes += conversion.Convert(text);
  }
  return bytes;
}

}  // namespace tool
