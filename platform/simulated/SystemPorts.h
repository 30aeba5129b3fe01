// The small ports of the simulated computer: waiting, the last error, libraries and host names.
#pragma once

#include <cstdint>
#include <string>

#include "platform/IClock.h"
#include "platform/IErrors.h"
#include "platform/ILibraries.h"
#include "platform/IResolver.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

/// Sleeping takes no time; the journal tells how long it would have been.
class ClockPort final : public platform::IClock {
 public:
  explicit ClockPort(Simulation& simulation) : simulation_(simulation) {}
  void Sleep(std::uint32_t milliseconds) override;

 private:
  Simulation& simulation_;
};

class ErrorsPort final : public platform::IErrors {
 public:
  explicit ErrorsPort(Simulation& simulation) : simulation_(simulation) {}
  platform::Win32Error LastError() override;
  void SetLastError(platform::Win32Error error) override;
  bool Describe(platform::HResult result, std::string* text) override;

 private:
  Simulation& simulation_;
};

/// Knows one library, "LibCrypto.dll" with its export "Decrypt", and only when the machine has it.
class LibrariesPort final : public platform::ILibraries {
 public:
  explicit LibrariesPort(Simulation& simulation) : simulation_(simulation) {}
  ~LibrariesPort() override;
  platform::LibraryHandle Load(const std::string& fileName) override;
  /// The export works on this machine until another machine hands out its own.
  platform::ExportedFunction FindExport(platform::LibraryHandle library,
                                        const std::string& name) override;
  bool Decrypt(platform::ExportedFunction function, const char* input, char* output) override;

 private:
  Simulation& simulation_;
};

class ResolverPort final : public platform::IResolver {
 public:
  explicit ResolverPort(Simulation& simulation) : simulation_(simulation) {}
  platform::Win32Error Start() override;
  bool LookUpHost(const std::string& name, std::uint32_t* address) override;
  platform::Win32Error LastError() override;
  std::uint32_t ParseDotted(const std::string& text) override;

 private:
  Simulation& simulation_;
};

}  // namespace simulated
