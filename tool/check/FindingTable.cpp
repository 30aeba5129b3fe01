#include "tool/check/FindingTable.h"

#include <cstddef>

namespace tool::check {
namespace {

constexpr FindingKind kKinds[] = {
#define FINDING(name, severity, id, title, hint) {Severity::k##severity, id, title, hint},
#include "tool/check/FindingList.def"
#undef FINDING
};

}  // namespace

const char* TextOf(Severity severity) {
  constexpr const char* kNames[] = {"error", "warning", "note"};
  return kNames[static_cast<std::size_t>(severity)];
}

const FindingKind& KindOf(Code code) { return kKinds[static_cast<std::size_t>(code)]; }

std::span<const FindingKind> AllKinds() { return kKinds; }

}  // namespace tool::check
