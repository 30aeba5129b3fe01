// Files of the machine. Each operation is one system call (or one fixed sequence) and decides
// nothing; operations that answer false leave their reason in `IErrors::LastError`.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// What `Attributes` answers for a path that does not exist (`INVALID_FILE_ATTRIBUTES`).
constexpr std::uint32_t kNoAttributes = 0xFFFFFFFF;
constexpr std::uint32_t kDirectoryAttribute = 0x10;

class IFiles {
 public:
  virtual ~IFiles() = default;
  virtual std::uint32_t Attributes(const std::string& path) = 0;
  /// Reads a whole file without newline translation. False when it cannot be opened or a read
  /// comes up short; `*content` is then unspecified. Throws std::bad_alloc when memory runs out.
  virtual bool ReadWhole(const std::string& path, std::string* content) = 0;
  virtual bool Move(const std::string& source, const std::string& destination) = 0;
  virtual bool Copy(const std::string& source, const std::string& destination,
                    bool failIfExists) = 0;
  virtual bool Erase(const std::string& path) = 0;
  /// Whether two paths, however they are written, name one existing file. False when one of them
  /// cannot be looked at; `*same` then keeps its value.
  virtual bool SameFile(const std::string& first, const std::string& second, bool* same) = 0;
  /// Full path of the running executable: the agent's, not this library's.
  virtual bool ModulePath(std::string* path) = 0;
  /// Writes one entry of a sectioned file in place, keeping everything else
  /// (`WritePrivateProfileStringA`).
  virtual bool WriteProfileEntry(const std::string& section, const std::string& key,
                                 const std::string& value, const std::string& path) = 0;
};

}  // namespace platform
