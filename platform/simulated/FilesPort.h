// The files of the simulated computer. Folders are those of its files, its system drive's root and
// the agent's.
#pragma once

#include <string>

#include "platform/IFiles.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

class FilesPort final : public platform::IFiles {
 public:
  explicit FilesPort(Simulation& simulation) : simulation_(simulation) {}

  std::uint32_t Attributes(const std::string& path) override;
  bool ReadWhole(const std::string& path, std::string* content) override;
  bool Move(const std::string& source, const std::string& destination) override;
  bool Copy(const std::string& source, const std::string& destination, bool failIfExists) override;
  bool Erase(const std::string& path) override;
  bool SameFile(const std::string& first, const std::string& second, bool* same) override;
  bool ModulePath(std::string* path) override;
  bool WriteProfileEntry(const std::string& section, const std::string& key,
                         const std::string& value, const std::string& path) override;

 private:
  bool IsFolder(const std::string& path) const;
  /// Why a file cannot be read, or made, at `path`; `kSuccess` when it can.
  platform::Win32Error ReadError(const std::string& path);
  platform::Win32Error MakeError(const std::string& path);
  /// Journals a change and tells whether it succeeded.
  bool Finish(Change change, platform::Win32Error error);

  Simulation& simulation_;
};

}  // namespace simulated
