// The order of domain join and computer rename.
#pragma once

#include "common/config/analyzer/Analyzer.h"

namespace config::analyzer {

/// Rename first: the join waits for the restart after it. Join first: both in one run, with a
/// pause between them.
class SettingsAnalyzer final : public Analyzer {
 public:
  /// `joinDomainBeforeNameChange` is borrowed; it is read when the queue is ordered.
  void SetFlag(const bool* joinDomainBeforeNameChange) { joinFirst_ = joinDomainBeforeNameChange; }

  void Reorder(command::CommandList& commands) override;

 private:
  const bool* joinFirst_ = nullptr;
};

}  // namespace config::analyzer
