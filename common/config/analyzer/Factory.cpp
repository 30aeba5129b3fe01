#include "common/config/analyzer/Factory.h"

namespace config::analyzer {

Factory& Factory::Instance() {
  static struct {
    DefaultFactory spare;
    WindowsVistaFactory inUse;
  } factories;
  return factories.inUse;
}

Analyzer& WindowsVistaFactory::GetAnalyzer(const bool* joinDomainBeforeNameChange) {
  settings_.SetFlag(joinDomainBeforeNameChange);
  return head_;
}

}  // namespace config::analyzer
