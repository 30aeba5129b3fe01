// Dynamic libraries. What answers false or null leaves its reason in `IErrors::LastError`.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// A loaded library; it stays loaded until the process ends.
enum class LibraryHandle : std::uint64_t { kNone = 0 };

/// An export of a library, of whatever real type.
using ExportedFunction = void (*)();

class ILibraries {
 public:
  virtual ~ILibraries() = default;
  /// Loads by the system's normal search; `kNone` on failure.
  virtual LibraryHandle Load(const std::string& fileName) = 0;
  /// Null when the library has no such export.
  virtual ExportedFunction FindExport(LibraryHandle library, const std::string& name) = 0;
  /// Calls an export that is `bool(const char* input, char* output)`; its answer. False also when
  /// it throws what a `catch` of this program's compiler would not see; all else passes.
  virtual bool Decrypt(ExportedFunction function, const char* input, char* output) = 0;
};

}  // namespace platform
