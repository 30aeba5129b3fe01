// The machine's persistent static routes.
#pragma once

#include <vector>

#include "common/config/command/IConfigureCommand.h"
#include "common/sys/Wmi.h"

namespace config::command {

/// Makes the persistent routes equal to the wanted ones; one default route that is there stays.
/// What has to be deleted and added is worked out once, at the first question asked; routes added
/// after that are not considered.
class SetStaticRoute final : public IConfigureCommand {
 public:
  void Add(const sys::RouteRecord& route) { wanted_.push_back(route); }

  /// Deletes, then adds, each with one run of the route tool. Throws ConfigError (value 5) at the
  /// first run that does not end with 0; earlier changes stay.
  void Execute() override;
  /// Not needed when nothing is to be deleted or added.
  bool Differs(Comparison* comparison) override;
  /// Empty.
  std::string Describe() override;

 private:
  void Plan();

  std::vector<sys::RouteRecord> wanted_;
  std::vector<sys::RouteRecord> toAdd_;
  std::vector<sys::RouteRecord> toDelete_;
  bool planned_ = false;
};

}  // namespace config::command
