#include "tool/io/Files.h"

#include <cerrno>
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

std::string ReadAll(std::istream& in, const std::string& name) {
  std::string text;
  char block[1 << 16];
  while (in.read(block, sizeof block), in.gcount() > 0) {
    text.append(block, static_cast<std::size_t>(in.gcount()));
    if (text.size() > kLargestInput) {
      throw ToolError(name, "is larger than 1 GiB", "name a configuration or machine file");
    }
  }
  if (in.bad()) throw ToolError(name, "cannot be read to its end", "check the file and its disk");
  return text;
}

/// A file beside another, which is removed unless it takes the other's place.
class TemporaryFile {
 public:
  /// Throws std::system_error.
  explicit TemporaryFile(const fs::path& target) {
    for (int attempt = 0; attempt < 100 && file_ == nullptr; ++attempt) {
      path_ = target;
      path_ += "." + std::to_string(attempt) + ".tmp";
      file_ = CreatePrivateFile(path_);
      if (file_ == nullptr && errno != EEXIST) break;
    }
    if (file_ == nullptr) throw std::system_error(LastError());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (file_ != nullptr) std::fclose(file_);
    std::error_code ignored;
    if (!path_.empty()) fs::remove(path_, ignored);
  }

  /// Throws std::system_error.
  void Replace(const fs::path& target, const std::string& content) {
    const bool isWritten = std::fwrite(content.data(), 1, content.size(), file_) == content.size();
    const bool isClosed = std::fclose(std::exchange(file_, nullptr)) == 0;
    if (!isWritten || !isClosed) throw std::system_error(LastError());
    fs::rename(path_, target);
    path_.clear();
  }

 private:
  fs::path path_;
  std::FILE* file_ = nullptr;
};

}  // namespace

std::string Reason(std::error_code error) {
  // The system's own words would be in its language and code page.
  return error.default_error_condition().message();
}

std::string ReadInput(const std::string& name, std::istream& in) {
  if (name == "-") return ReadAll(in, "standard input");
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
  return ReadAll(file, name);
}

PrivateFile::PrivateFile(const std::string& name) : name_(name), target_(PathOf(name)) {
  std::error_code error;
  const fs::file_status status = fs::status(target_, error);
  if (fs::exists(status)) {
    if (!fs::is_regular_file(status)) {
      throw ToolError(name, "is no ordinary file", "name a file to write");
    }
    // A link stays a link: the file that it leads to is replaced.
    const fs::path whole = fs::canonical(target_, error);
    if (!error) target_ = whole;
  }
  try {
    const TemporaryFile trial(target_);
  } catch (const std::system_error& refusal) {
    throw ToolError(name, "cannot be written: " + Reason(refusal.code()),
                    "name a file in a folder that you can write to");
  }
}

void PrivateFile::Commit(const std::string& content) const {
  try {
    TemporaryFile(target_).Replace(target_, content);
  } catch (const std::system_error& refusal) {
    throw ToolError(name_, "cannot be written: " + Reason(refusal.code()),
                    "check the folder and its free space");
  }
}

}  // namespace tool
