// Dynamic libraries. What answers false or null leaves its reason in `IErrors::LastError`.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// A loaded library; it stays loaded until the process ends.
enum class LibraryHandle : std::uint64_t { kNone = 0 };

/// An export of a library, to be cast to its real type by the caller.
using ExportedFunction = void (*)();

class ILibraries {
 public:
  virtual ~ILibraries() = default;
  /// Loads by the system's normal search; `kNone` on failure.
  virtual LibraryHandle Load(const std::string& fileName) = 0;
  /// Null when the library has no such export.
  virtual ExportedFunction FindExport(LibraryHandle library, const std::string& name) = 0;
};

}  // namespace platform
