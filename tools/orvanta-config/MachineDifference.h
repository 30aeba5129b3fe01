// What differs between two states of one simulated machine.
#pragma once

#include <string>
#include <vector>

#include "platform/simulated/Machine.h"

namespace tool {

struct Difference {
  /// For example "computer", "adapter 7, Intel(R) PRO/1000 MT Desktop Adapter" or "services".
  std::string subject;
  std::string setting;
  /// "-" where a state has no such setting.
  std::string before;
  std::string after;
};

/// Every setting that differs, the ones of a subject side by side. Holds no password and no text
/// of a file; every text is safe to print.
std::vector<Difference> Differences(const simulated::Machine& before,
                                    const simulated::Machine& after);

/// For example "workgroup WORKGROUP" or "domain corp.example".
std::string MembershipText(const simulated::Membership& membership);

}  // namespace tool
