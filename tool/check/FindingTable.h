// Everything that `check` can find, as a table: a stable code, how bad it is, and what helps.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace tool::check {

enum class Severity : std::uint8_t {
  kError,    ///< the run fails, a setting is lost or wrong, or the computer is stranded
  kWarning,  ///< probably not wanted
  kNote,     ///< worth knowing
};

/// "error", "warning" or "note".
constexpr const char* TextOf(Severity severity) {
  constexpr const char* kNames[] = {"error", "warning", "note"};
  return kNames[static_cast<std::size_t>(severity)];
}

enum class Code : std::uint8_t {
#define FINDING(name, severity, id, title, hint) k##name,
#include "tool/check/FindingList.def"
#undef FINDING
};

struct FindingKind {
  Severity severity;
  /// Never changes and is never used for anything else, so that scripts may name it.
  const char* id;
  /// A name in one phrase, without a full stop.
  const char* title;
  /// What helps when the finding itself knows nothing better.
  const char* hint;
};

/// In the order of `Code`.
inline constexpr FindingKind kFindingKinds[] = {
#define FINDING(name, severity, id, title, hint) {Severity::k##severity, id, title, hint},
#include "tool/check/FindingList.def"
#undef FINDING
};
/// The kind with this code, in these letters; null when there is none.
inline const FindingKind* CodeOf(std::string_view id) {
  const auto* const found = std::find_if(std::begin(kFindingKinds), std::end(kFindingKinds),
                                         [id](const FindingKind& kind) { return kind.id == id; });
  return found != std::end(kFindingKinds) ? found : nullptr;
}
constexpr const FindingKind& KindOf(Code code) {
  return kFindingKinds[static_cast<std::size_t>(code)];
}

}  // namespace tool::check
