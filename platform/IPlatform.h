// The seam: everything the engine asks of a machine goes through one of these ports. Adapters
// report codes and decide nothing; names keep clear of the macros of <windows.h>.
#pragma once

#include <memory>

namespace platform {

class IClock;
class ICriticalSection;
class IDirectory;
class IErrors;
class IFiles;
class ILibraries;
class IProcesses;
class IRegistry;
class IResolver;
class ISecurity;
class IServices;
class IWmi;

/// One machine. The ports live as long as it does.
class IPlatform {
 public:
  virtual ~IPlatform() = default;
  virtual IClock& Clock() = 0;
  virtual IDirectory& Directory() = 0;
  virtual IErrors& Errors() = 0;
  virtual IFiles& Files() = 0;
  virtual ILibraries& Libraries() = 0;
  virtual IProcesses& Processes() = 0;
  virtual IRegistry& Registry() = 0;
  virtual IResolver& Resolver() = 0;
  virtual ISecurity& Security() = 0;
  virtual IServices& Services() = 0;
  virtual IWmi& Wmi() = 0;
  /// A lock of this process, free. No call to the machine: nothing is noted and nothing can fail.
  virtual std::unique_ptr<ICriticalSection> MakeCriticalSection() = 0;
};

/// The machine that all work goes to: the innermost `ScopedPlatform`, else `Default()`.
IPlatform& Current();

/// The machine a binary works on when nothing else is chosen. Every binary compiles the body of
/// exactly one adapter: the real machine in the DLL, a blank simulated one elsewhere.
IPlatform& Default();

}  // namespace platform
