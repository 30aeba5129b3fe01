#include "tool/io/Files.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <istream>
#include <utility>

#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

// Far above any real file; it only stops devices and pipes that never end.
constexpr std::size_t kLargestInput = std::size_t{1} << 30;

std::error_code LastError() { return {errno, std::generic_category()}; }

void ReadAll(std::istream& in, const std::string& name,
             const std::function<void(std::string_view)>& take) {
  char block[1 << 16];
  while (in.read(block, sizeof block), in.gcount() > 0) {
    take({block, static_cast<std::size_t>(in.gcount())});
  }
  if (in.bad()) throw ToolError(name, "cannot be read to the end", "check the file and its disk");
}

void AppendUtf8(std::string& text, std::uint32_t code) {
  const unsigned following = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  const unsigned lead = following > 0 ? 0xFF00U >> (following + 1) : 0;
  text += static_cast<char>(lead | code >> (6 * following));
  for (unsigned i = following; i-- > 0;) text += static_cast<char>(0x80 | (code >> (6 * i) & 0x3F));
}

/// Writes a file beside `target` and puts it in its place; without content, only tries to make it.
/// Leaves nothing else behind.
std::error_code Replace(const fs::path& target, const std::string* content) {
  fs::path path;
  std::FILE* file = nullptr;
  for (int attempt = 0; attempt < 100 && file == nullptr; ++attempt) {
    path = target;
    path += "." + std::to_string(attempt) + ".tmp";
    file = CreatePrivateFile(path);
    if (file == nullptr && errno != EEXIST) break;
  }
  if (file == nullptr) return LastError();
  const std::string nothing;
  const std::string& bytes = content != nullptr ? *content : nothing;
  const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  std::error_code error = isWritten ? std::error_code() : LastError();
  if (std::fclose(file) != 0 && !error) error = LastError();
  if (content != nullptr && !error) fs::rename(path, target, error);
  std::error_code ignored;
  if (content == nullptr || error) fs::remove(path, ignored);
  return error;
}

}  // namespace

std::string Reason(std::error_code error) {
  // The system's own words would be in its language and code page.
  return error.default_error_condition().message();
}

void ReadBlocks(const std::string& name, std::istream& in,
                const std::function<void(std::string_view)>& take) {
  if (name == "-") return ReadAll(in, "standard input", take);
  const fs::path path = PathOf(name);
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) {
    throw ToolError(name, "is a directory", "name a file in it");
  }
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw ToolError(name, "cannot be read: " + Reason(LastError()),
                    "name a file that you can read");
  }
  ReadAll(file, name, take);
}

void ReadTextBlocks(const std::string& name, std::istream& in,
                    const std::function<void(std::string_view)>& take) {
  bool isWide = false;
  bool isStart = true;
  std::size_t high = 0;     // where the high byte of a unit of UTF-16 stands
  std::uint32_t first = 0;  // half a pair, whose other half may stand in the next block
  ReadBlocks(name, in, [&](std::string_view block) {
    if (std::exchange(isStart, false)) {
      isWide = block.starts_with("\xFF\xFE") || block.starts_with("\xFE\xFF");
      high = block.starts_with('\xFF') ? 1 : 0;
    }
    if (!isWide) return take(block);
    std::string text;
    // Each block but the last holds whole units.
    for (; block.size() > 1; block.remove_prefix(2)) {
      std::uint32_t code = static_cast<unsigned char>(block[1 - high]);
      code |= static_cast<std::uint32_t>(static_cast<unsigned char>(block[high])) << 8U;
      const bool isSecond = first != 0 && (code & 0xFC00) == 0xDC00;
      if (isSecond) code += 0x10000 - 0xDC00 + ((first - 0xD800) << 10U);
      first = (code & 0xFFFFFC00) == 0xD800 ? code : 0;
      if (first == 0) AppendUtf8(text, code);
    }
    take(text);
  });
}

std::string ReadInput(const std::string& name, std::istream& in, decltype(ReadBlocks)* read) {
  std::string text;
  read(name, in, [&](std::string_view block) {
    text.append(block);
    if (text.size() > kLargestInput) {
      throw ToolError(name == "-" ? "standard input" : name, "is larger than 1 GiB",
                      "name a configuration or machine file");
    }
  });
  return text;
}

PrivateFile::PrivateFile(const std::string& name) : name_(name), target_(PathOf(name)) {
  std::error_code error;
  const fs::file_status status = fs::status(target_, error);
  if (fs::exists(status)) {
    if (!fs::is_regular_file(status)) {
      throw ToolError(name, "is not a regular file", "name a file to write");
    }
    // A link stays a link: the file that it leads to is replaced.
    const fs::path whole = fs::canonical(target_, error);
    if (!error) target_ = whole;
  }
  error = Replace(target_, nullptr);
  if (error) {
    throw ToolError(name, "cannot be written: " + Reason(error),
                    "name a file in a folder that you can write to");
  }
}

void PrivateFile::Commit(const std::string& content) const {
  const std::error_code error = Replace(target_, &content);
  if (error) {
    throw ToolError(name_, "cannot be written: " + Reason(error),
                    "check the folder and its free space");
  }
}

}  // namespace tool
