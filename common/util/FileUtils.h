// Files of the machine. A path exists as a file when it exists and is not a directory.
#pragma once

#include <string>

#include "common/err/GeneralError.h"

namespace util {

/// Value 0; `SystemError` is the system's last error.
struct CFileIOError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;
};

bool FileExists(const std::string& path);

/// Throws CFileIOError when the destination exists as a file (tested first), when the source does
/// not, or when the system refuses.
void Move(const std::string& source, const std::string& destination);

/// Throws CFileIOError when the system refuses.
void Copy(const std::string& source, const std::string& destination, bool overwrite);

/// Throws CFileIOError when `path` does not exist as a file or the system refuses.
void Delete(const std::string& path);

/// Whether two paths, however they are written, name one file. Throws CFileIOError when one of them
/// cannot be looked at.
bool SameFile(const std::string& first, const std::string& second);

/// False when the file cannot be opened or not be read in full. Throws std::bad_alloc when memory
/// runs out.
bool ReadWholeFile(const std::string& path, std::string* content);

/// Folder of the running executable, the agent's, without a separator at its end. Throws
/// CFileIOError when the system does not report it.
std::string ExecutableFolder();

/// What follows the last "\" or "/" of `path`.
std::string FileName(const std::string& path);

/// Writes one entry of a sectioned file in place and keeps the rest. A refusal is ignored.
void WriteProfileEntry(const std::string& section, const std::string& key, const std::string& value,
                       const std::string& path);

}  // namespace util
