// The journal of a simulated machine in words.
#pragma once

#include <string>

#include "platform/simulated/Change.h"

namespace tool {

struct ChangeText {
  /// What was asked of the machine, with its exact values.
  std::string words;
  /// The code with which the machine refused it; empty when it did it.
  std::string refusal;
  /// What else is to be known of it, for example that it takes effect at the restart only.
  std::string note;
};

/// Tells one entry of the journal, whose passwords must be hidden already. An entry of an unknown
/// kind is told by its fields.
ChangeText Describe(const simulated::Change& change);

}  // namespace tool
