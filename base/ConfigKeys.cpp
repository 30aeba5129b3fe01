#include "base/ConfigKeys.h"

#include "base/LetterCase.h"

namespace base {

SectionKind KindOfSection(std::string_view name) {
  for (const KnownSection& known : kKnownSections) {
    if (SameText(name, known.name)) return known.kind;
  }
  return name.find(kAdapterMark) != std::string_view::npos ? SectionKind::kAdapter
                                                           : SectionKind::kUnknown;
}

}  // namespace base
