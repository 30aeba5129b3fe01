// The pages of docs/findings.md, which the build puts into the program.
#pragma once

#include <string_view>

namespace tool::explain {

/// The section of a finding such as "C303", from its title on; empty when there is none.
std::string_view FindingPage(std::string_view code);

}  // namespace tool::explain
