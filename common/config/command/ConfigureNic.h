// The container for the commands of one network adapter.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "common/config/command/IConfigureCommand.h"
#include "common/logging/ILogSink.h"

namespace config::command {

/// Says how its adapter is to be found and holds what is to be done to it.
class ConfigureNic final : public IConfigureCommand {
 public:
  static constexpr std::uint32_t kUnset = 0xFFFFFFFF;

  /// `log` is borrowed.
  explicit ConfigureNic(logging::ILogSink& log) : log_(log) {}

  void SetMacAddress(const std::string& address) { macAddress_ = address; }
  void SetPciBus(std::uint32_t bus) { pciBus_ = bus; }
  void SetPciDevice(std::uint32_t device) { pciDevice_ = device; }
  void SetPciFunction(std::uint32_t function) { pciFunction_ = function; }
  /// `kUnset` when no adapter could be found.
  void SetIndex(std::uint32_t index) { index_ = index; }

  const std::string& MacAddress() const { return macAddress_; }
  std::uint32_t PciBus() const { return pciBus_; }
  std::uint32_t PciDevice() const { return pciDevice_; }
  std::uint32_t PciFunction() const { return pciFunction_; }
  bool HasPciLocation() const;
  std::uint32_t Index() const { return index_; }

  /// The adapter's commands, in order. NicCommands get the adapter's index when their turn comes.
  CommandList& Commands() { return commands_; }

  /// Runs the commands that are needed. Throws ConfigError (value 0) when no adapter was found; an
  /// error of a command ends the run at once.
  void Execute() override;
  /// Always true.
  bool IsNeeded() override;
  /// Empty.
  std::string Describe() override;

 private:
  std::uint32_t pciBus_ = kUnset;
  std::uint32_t pciDevice_ = kUnset;
  std::uint32_t pciFunction_ = kUnset;
  std::string macAddress_;
  std::uint32_t index_ = kUnset;
  CommandList commands_;
  logging::ILogSink& log_;
};

}  // namespace config::command
