// DNS suffix search order.
#pragma once

#include <vector>

#include "common/config/command/NicCommand.h"

namespace config::command {

/// Sets the suffix list. It is compared with the adapter's but set for the whole machine.
class SetDnsSuffix final : public NicCommand {
 public:
  void Add(const std::string& suffix) { suffixes_.push_back(suffix); }

  /// Throws ConfigError (value 4) unless the machine answers 0 or 1.
  void Execute() override;
  /// Not needed when the adapter has exactly these suffixes, letter by letter, in this order.
  bool Differs(Comparison* comparison) override;
  /// "DNS Suffixes=a.example,b.example".
  std::string Describe() override;

 private:
  std::vector<std::string> suffixes_;
};

}  // namespace config::command
