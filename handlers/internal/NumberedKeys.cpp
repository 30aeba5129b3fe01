#include "handlers/internal/NumberedKeys.h"

#include "base/Numbers.h"

std::vector<std::size_t> NumberedKeys(ConfigFile& file, std::string_view section,
                                      base::Key numbered, base::Key count) {
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
