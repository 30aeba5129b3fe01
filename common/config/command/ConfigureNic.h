// The container for the commands of one network adapter.
#pragma once

#include "common/config/command/IConfigureCommand.h"
#include "common/logging/ILogSink.h"
#include "common/sys/NicText.h"

namespace config::command {

/// Says how its adapter is to be found and holds what is to be done to it.
class ConfigureNic final : public IConfigureCommand {
 public:
  static constexpr std::uint32_t kUnset = 0xFFFFFFFF;

  /// `log` is borrowed.
  explicit ConfigureNic(logging::ILogSink& log) : log_(log) {}

  void SetMacAddress(const std::string& address) { macAddress_ = address; }
  /// How an adapter was found.
  enum class BoundBy : std::uint8_t { kNone, kPci, kMac, kNext };
  /// `kUnset` by `kNone` when no adapter could be found.
  void Bind(std::uint32_t index, BoundBy by) {
    index_ = index;
    boundBy_ = by;
  }

  const std::string& MacAddress() const { return macAddress_; }
  sys::PciLocation& Location() { return location_; }
  const sys::PciLocation& Location() const { return location_; }
  std::uint32_t Index() const { return index_; }
  BoundBy HowBound() const { return boundBy_; }

  /// The adapter's commands, in order.
  CommandList& Commands() { return commands_; }
  /// Lets one of them compare the adapter, which it gets to know now.
  Comparison CompareAdapter(IConfigureCommand& command) const;

  /// Runs the commands that are needed. Throws ConfigError (value 0) when no adapter was found; an
  /// error of a command ends the run at once.
  void Execute() override;
  /// Empty.
  std::string Describe() override { return {}; }
  /// The pauses between its commands, which are never left out.
  std::uint32_t PauseMs() const override;

 private:
  void SetIndexOf(IConfigureCommand& command) const;

  sys::PciLocation location_;
  std::string macAddress_;
  std::uint32_t index_ = kUnset;
  BoundBy boundBy_ = BoundBy::kNone;
  CommandList commands_;
  logging::ILogSink& log_;
};

}  // namespace config::command
