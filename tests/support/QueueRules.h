// What the analysis may do to a queue of commands.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "common/config/ConfigBuilder.h"

namespace support {

/// Made before the analysis, on the machine that the analysis then asks as well.
class QueueRules {
 public:
  /// Asks every command whether it is needed; throws what that throws.
  explicit QueueRules(const config::ConfigBuilder& builder);

  /// The first rule that the analysis broke; empty when it kept them all: what is needed stays,
  /// and nothing else does; only join and rename may change places; the restart and the pauses
  /// stand where they must, and no others were added.
  std::string Broken(const config::ConfigBuilder& builder, bool joinFirst) const;

 private:
  using Queue = std::vector<const config::command::IConfigureCommand*>;

  Queue needed_;
  /// What each adapter's commands were.
  std::map<const config::command::IConfigureCommand*, Queue> adapters_;
  bool restarts_ = false;
};

}  // namespace support
