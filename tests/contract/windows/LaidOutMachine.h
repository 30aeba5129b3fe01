// A simulated machine's files, registry and services as the real ones of this computer.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/simulated/Machine.h"

namespace contract {

/// `StartServiceA`, again when Wine's manager says that it stumbled, as it does at times when
/// services of one name come and go quickly.
BOOL StartLaidOutService(SC_HANDLE service);

/// Lays a machine out on this computer for its own lifetime: files under their own paths, the
/// registry in a scratch key in the place of HKEY_LOCAL_MACHINE, services of the same names with
/// stand-ins for their programs. What stood there before is a test failure, or left alone.
class LaidOutMachine {
 public:
  /// `machine` is borrowed.
  explicit LaidOutMachine(simulated::Machine& machine);
  /// Takes everything away again.
  ~LaidOutMachine();
  LaidOutMachine(const LaidOutMachine&) = delete;
  LaidOutMachine& operator=(const LaidOutMachine&) = delete;

  /// Brings the values that describe the adapters up to date.
  void WriteAdapters();
  /// Makes the services, unless they are there: starting them takes a while, and few messages need
  /// them.
  void NeedServices();

  /// Every difference between this computer and the machine is a test failure. Files that Windows
  /// wrote entry by entry may differ from the machine's in blanks and line ends.
  void ExpectEqual();

 private:
  void WriteFiles();
  void WriteRegistry();
  void RemoveServices();

  simulated::Machine& machine_;
  const std::string scratchKey_;
  HKEY localMachine_ = nullptr;
  /// The folders that hold the machine's files, and what they held before.
  std::vector<std::filesystem::path> folders_;
  std::vector<std::filesystem::path> foreign_;
  /// Folders that were made, inner ones last.
  std::vector<std::filesystem::path> made_;
  std::vector<std::string> services_;
  bool servicesNeeded_ = false;
};

}  // namespace contract
