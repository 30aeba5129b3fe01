#include "tool/io/Files.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <istream>
#include <optional>

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

std::string Whole(decltype(ReadBlocks)* read, const std::string& name, std::istream& in) {
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

/// Reads UTF-16 block by block, in which pairs may span two blocks.
class Utf16 {
 public:
  explicit Utf16(bool isBigEndian) : high_(isBigEndian ? 0 : 1) {}

  /// Whole units, as in each block of a file but the last. The text is of use until the next call.
  std::string_view ToUtf8(std::string_view bytes) {
    text_.clear();
    for (; bytes.size() > 1; bytes.remove_prefix(2)) {
      std::uint32_t code = Byte(bytes[high_]) << 8U | Byte(bytes[1 - high_]);
      if (code >= 0xDC00 && code < 0xE000 && first_ != 0) {
        code += 0x10000 - 0xDC00 + ((first_ - 0xD800) << 10U);
      }
      const bool isFirst = code >= 0xD800 && code < 0xDC00;
      first_ = isFirst ? code : 0;
      if (!isFirst) Append(code);
    }
    return text_;
  }

 private:
  static std::uint32_t Byte(char c) { return static_cast<unsigned char>(c); }

  void Append(std::uint32_t code) {
    const unsigned following = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    const unsigned lead = following > 0 ? 0xFF00U >> (following + 1) : 0;
    text_ += static_cast<char>(lead | code >> (6 * following));
    for (unsigned i = following; i-- > 0;)
      text_ += static_cast<char>(0x80 | (code >> (6 * i) & 0x3F));
  }

  /// Where the high byte of a unit stands.
  std::size_t high_;
  /// The first half of a pair.
  std::uint32_t first_ = 0;
  std::string text_;
};

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

std::string ReadInput(const std::string& name, std::istream& in) {
  return Whole(ReadBlocks, name, in);
}

void ReadTextBlocks(const std::string& name, std::istream& in,
                    const std::function<void(std::string_view)>& take) {
  std::optional<Utf16> wide;
  bool isFirst = true;
  ReadBlocks(name, in, [&](std::string_view block) {
    if (isFirst && (block.starts_with("\xFF\xFE") || block.starts_with("\xFE\xFF"))) {
      wide.emplace(/*isBigEndian=*/block.starts_with('\xFE'));
      block.remove_prefix(2);
    }
    isFirst = false;
    take(wide ? wide->ToUtf8(block) : block);
  });
}

std::string ReadText(const std::string& name, std::istream& in) {
  return Whole(ReadTextBlocks, name, in);
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
