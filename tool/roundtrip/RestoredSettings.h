// What an image gave back of a machine's settings, and why not all of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/roundtrip/ImageRestore.h"

namespace tool {

enum class Outcome {
  kStayed,    ///< as before, and nothing had to be done for it
  kRestored,  ///< cleared, and set again
  kGiven,     ///< no setting of the machine: DHCP gives it again
  kLost,      ///< cleared, and not set again
  kChanged,   ///< neither as before nor as it was cleared
};

/// For example "restored".
std::string_view OutcomeName(Outcome outcome);

struct RestoredSetting {
  /// As in `Difference`, for example "adapter 7, Intel(R) PRO/1000 MT Desktop Adapter".
  std::string subject;
  /// The adapter's index; none for a setting of the machine as a whole.
  std::optional<std::uint32_t> adapter;
  std::string setting;
  /// Empty where a state has no such setting.
  std::vector<std::string> before;
  std::vector<std::string> after;
  Outcome outcome = Outcome::kStayed;
  /// The entries of the captured file, for example "Gateway=10.0.0.1"; empty when it has none.
  std::string recorded = {};
  /// Of what is lost or changed: what was recorded of it and what was made of that. Else empty.
  std::string reason = {};

  bool IsAsBefore() const { return outcome != Outcome::kLost && outcome != Outcome::kChanged; }
};

/// The settings of the computer and of every adapter, the persistent routes, the services that were
/// touched and the flag, in this order. Left out is what the machine has neither before nor after,
/// and what no image keeps: link-local addresses. Texts come from files: print them with care.
std::vector<RestoredSetting> RestoredSettings(const ImageRestore& image);

/// Why the capture failed, with the address that it could not read if that is why; empty when it
/// succeeded.
std::string CaptureFailure(const ImageRestore& image);

}  // namespace tool
