// Pauses after static addressing.
#pragma once

#include "common/config/analyzer/Analyzer.h"

namespace config::analyzer {

class WindowsVistaAnalyzer final : public Analyzer {
 public:
  /// `next` is borrowed.
  explicit WindowsVistaAnalyzer(Analyzer& next) : next_(next) {}

  /// Inserts a pause after the first SetStatic of every adapter, then lets the next analyzer edit.
  void Reorder(command::CommandList& commands) override;

 private:
  Analyzer& next_;
};

}  // namespace config::analyzer
