// The sink for callers that have no log.
#pragma once

#include "common/logging/ILogSink.h"

namespace logging {

/// Drops every line and never reads the arguments.
class NullLogSink final : public ILogSink {
 public:
  void Log(std::uint32_t /*level*/, const char* /*format*/, ...) override {}
};

}  // namespace logging
