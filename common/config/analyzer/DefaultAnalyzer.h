// The analyzer without an ordering of its own.
#pragma once

#include "common/config/analyzer/Analyzer.h"

namespace config::analyzer {

class DefaultAnalyzer final : public Analyzer {
 public:
  void Reorder(command::CommandList& /*commands*/) override {}
};

}  // namespace config::analyzer
