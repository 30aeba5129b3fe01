// The import table of a loaded library: what it calls of the system can be replaced without
// touching its code.
#pragma once

#include <span>
#include <vector>

#include "platform/windows/WindowsHeader.h"

namespace contract {

/// A function of the system and what stands in for it.
struct Substitute {
  const char* module;
  const char* name;
  void* replacement;
};

/// Puts substitutes in the places of what `library` imports, for its own lifetime.
class ImportTable {
 public:
  ImportTable(HMODULE library, std::span<const Substitute> substitutes);
  ~ImportTable();
  ImportTable(const ImportTable&) = delete;
  ImportTable& operator=(const ImportTable&) = delete;

 private:
  struct Replaced {
    void** slot;
    void* original;
  };
  std::vector<Replaced> replaced_;
};

}  // namespace contract
