// The user's own files: read whole, written whole or not at all.
#pragma once

#include <cstdio>
#include <iosfwd>
#include <string>

namespace tool {

/// The bytes of the file; of `in` when the path is "-". Throws ToolError.
std::string ReadInput(const std::string& path, std::istream& in);

/// A file that only its owner can read and that takes its place in one step: until `Commit` a file
/// of that name stays as it was.
class PrivateFile {
 public:
  /// Makes sure that the file can be written. Throws ToolError.
  explicit PrivateFile(const std::string& path);
  PrivateFile(const PrivateFile&) = delete;
  PrivateFile& operator=(const PrivateFile&) = delete;
  /// Without a `Commit` nothing is left behind.
  ~PrivateFile();

  /// Writes the file with this content. Throws ToolError.
  void Commit(const std::string& content);

 private:
  std::string path_;
  std::string target_;
  std::string temporary_;
  std::FILE* file_ = nullptr;
};

}  // namespace tool
