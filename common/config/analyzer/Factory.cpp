#include "common/config/analyzer/Factory.h"

namespace config::analyzer {

Factory& Factory::Instance() {
  static WindowsVistaFactory factory;
  return factory;
}

Analyzer& WindowsVistaFactory::GetAnalyzer(const bool* joinDomainBeforeNameChange) {
  settings_.SetFlag(joinDomainBeforeNameChange);
  return head_;
}

}  // namespace config::analyzer
