// Where analyzers come from.
#pragma once

#include "common/config/analyzer/SettingsAnalyzer.h"
#include "common/config/analyzer/WindowsVistaAnalyzer.h"

namespace config::analyzer {

/// The analyzer without an ordering of its own.
class DefaultAnalyzer final : public Analyzer {
 public:
  void Reorder(command::CommandList& /*commands*/) override {}
};

class Factory {
 public:
  /// The analyzer for a queue, owned by the factory. It reads the flag, which is borrowed, when it
  /// runs.
  virtual Analyzer& GetAnalyzer(const bool* joinDomainBeforeNameChange) = 0;
  virtual ~Factory() = default;

  /// The process's factory, made on first use: a WindowsVistaFactory on every version of Windows. A
  /// DefaultFactory is made with it and never used.
  static Factory& Instance();
};

/// Hands out the analyzer without an ordering of its own.
class DefaultFactory final : public Factory {
 public:
  Analyzer& GetAnalyzer(const bool* /*joinDomainBeforeNameChange*/) override { return analyzer_; }

 private:
  DefaultAnalyzer analyzer_;
};

/// Pauses after static addressing, then the order of join and rename. Holds its analyzers by value
/// and not by pointers filled on first use, so that asking for one cannot fail.
class WindowsVistaFactory final : public Factory {
 public:
  Analyzer& GetAnalyzer(const bool* joinDomainBeforeNameChange) override {
    settings_.SetFlag(joinDomainBeforeNameChange);
    return head_;
  }

 private:
  SettingsAnalyzer settings_;
  WindowsVistaAnalyzer head_{settings_};
};

inline Factory& Factory::Instance() {
  static struct {
    DefaultFactory spare;
    WindowsVistaFactory inUse;
  } factories;
  return factories.inUse;
}

}  // namespace config::analyzer
