// The user's own files: read whole, written whole or not at all. Their names are UTF-8.
#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <system_error>

namespace tool {

/// Hands over the bytes of the file, or of `in` when the name is "-", block by block. Throws
/// ToolError.
void ReadBlocks(const std::string& name, std::istream& in,
                const std::function<void(std::string_view)>& take);

/// The same of a text for the tool itself, such as a log or a machine file: UTF-16 behind a byte
/// order mark becomes UTF-8.
void ReadTextBlocks(const std::string& name, std::istream& in,
                    const std::function<void(std::string_view)>& take);

/// The bytes or the text in one piece.
std::string ReadInput(const std::string& name, std::istream& in,
                      decltype(ReadBlocks)* read = ReadBlocks);

/// The system's reason for refusing a file.
std::string Reason(std::error_code error);

/// A file that only its owner can read and that takes its place in one step: until `Commit` a file
/// of that name stays unchanged, and no other file appears.
class PrivateFile {
 public:
  /// Makes sure that the file can be written. Throws ToolError.
  explicit PrivateFile(const std::string& name);

  /// Writes the file with this content. Throws ToolError.
  void Commit(const std::string& content) const;

 private:
  std::string name_;
  std::filesystem::path target_;
};

}  // namespace tool
