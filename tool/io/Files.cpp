#include "tool/io/Files.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <istream>
#include <system_error>

#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

// Far above any real file; it only stops devices and pipes that never end.
constexpr std::size_t kLargestInput = std::size_t{1} << 30;

std::string Reason(int code) { return std::generic_category().message(code); }

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

}  // namespace

std::string ReadInput(const std::string& path, std::istream& in) {
  if (path == "-") return ReadAll(in, "standard input");
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) {
    throw ToolError(path, "is a directory", "name a file in it");
  }
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw ToolError(path, "cannot be read: " + Reason(errno), "name a file that you can read");
  }
  return ReadAll(file, path);
}

PrivateFile::PrivateFile(const std::string& path) : path_(path), target_(path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (fs::exists(status)) {
    if (!fs::is_regular_file(status)) {
      throw ToolError(path, "is no ordinary file", "name a file to write");
    }
    // A link stays a link: the file that it leads to is replaced.
    target_ = fs::canonical(path, error).string();
    if (error) target_ = path;
  }
  for (int attempt = 0; attempt < 100 && file_ == nullptr; ++attempt) {
    temporary_ = target_ + "." + std::to_string(attempt) + ".tmp";
    file_ = CreatePrivateFile(temporary_);
    if (file_ == nullptr && errno != EEXIST) break;
  }
  if (file_ == nullptr) {
    throw ToolError(path, "cannot be written: " + Reason(errno),
                    "name a file in a folder that you can write to");
  }
}

PrivateFile::~PrivateFile() {
  if (temporary_.empty()) return;
  if (file_ != nullptr) std::fclose(file_);
  std::error_code ignored;
  fs::remove(temporary_, ignored);
}

void PrivateFile::Commit(const std::string& content) {
  const bool written = std::fwrite(content.data(), 1, content.size(), file_) == content.size();
  const bool closed = std::fclose(file_) == 0;
  file_ = nullptr;
  std::error_code error(errno, std::generic_category());
  if (written && closed) fs::rename(temporary_, target_, error);
  if (!written || !closed || error) {
    throw ToolError(path_, "cannot be written: " + error.message(),
                    "check the folder and its free space");
  }
  temporary_.clear();
}

}  // namespace tool
