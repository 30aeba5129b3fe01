#include "handlers/internal/ConfigKeys.h"

#include "base/LetterCase.h"
#include "base/Numbers.h"

SectionKind KindOfSection(std::string_view name) {
  for (const KnownSection& known : kKnownSections) {
    if (base::SameText(name, known.name)) return known.kind;
  }
  return name.find(kAdapterMark) != std::string_view::npos ? SectionKind::kAdapter
                                                           : SectionKind::kUnknown;
}

std::vector<std::size_t> NumberedKeys(ConfigFile& file, std::string_view section, Key numbered,
                                      Key count) {
  const std::size_t wanted =
      base::ParseUnsigned(file.FindValue(section, NameOf(count)).value_or(std::string_view()));
  // Numbering may start at 0 or at 1. A section cannot hold more numbers than it has entries, so a
  // huge count costs nothing.
  const std::size_t entries = file.EntryCount(section);
  std::vector<std::size_t> numbers;
  for (std::size_t number = 0; number < entries && numbers.size() < wanted; ++number) {
    if (file.FindValue(section, NameOf(numbered, number))) numbers.push_back(number);
  }
  return numbers;
}
