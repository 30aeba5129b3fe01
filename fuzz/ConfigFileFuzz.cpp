// Feeds arbitrary texts to the configuration file reader, as one load and as two of which the
// second merges, and checks that walks, look-ups and counts agree.
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "base/LetterCase.h"
#include "fuzz/Check.h"
#include "handlers/internal/ConfigFile.h"

namespace {

void CheckEntries(ConfigFile* file, const std::string& section, bool caseSensitive) {
  std::map<std::string, std::string> firstValues;
  std::size_t count = 0;
  std::string key, value, found;
  for (auto result = file->GetFirstEntry(section, &key, &value); result == ConfigFile::kSuccess;
       result = file->GetNextEntry(&key, &value)) {
    ++count;
    const auto& first =
        firstValues.emplace(caseSensitive ? key : base::Folded(key), value).first->second;
    Check(file->ReadValue(section, key, &found) == ConfigFile::kSuccess && found == first);
  }
  Check(count == file->EntryCount(section));
  for (const auto& [folded, first] : firstValues) {
    Check(file->FindValue(caseSensitive ? section : base::Folded(section), folded) == first);
  }
  Check(!file->FindValue(section, "=").has_value());
}

void CheckAll(ConfigFile* file, bool caseSensitive) {
  std::map<std::string, int> names;
  std::string name, last;
  for (auto result = file->GetFirstSection(&name); result == ConfigFile::kSuccess;
       result = file->GetNextSection(&name)) {
    Check(names.emplace(caseSensitive ? name : base::Folded(name), 0).second);
    Check(!name.empty() || names.size() == 1);
    CheckEntries(file, name, caseSensitive);
    last = name;
  }
  if (!names.empty()) Check(file->InsertSection(last) == ConfigFile::kSectionPresent);
  Check(file->GetFirstEntry("\n", &name, &last) == ConfigFile::kNoSection);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  for (const bool caseSensitive : {false, true}) {
    ConfigFile file{caseSensitive};
    const auto whole = file.Parse(text, /*merge=*/false);
    Check(whole == ConfigFile::kSuccess || whole == ConfigFile::kUnreadable);
    CheckAll(&file, caseSensitive);

    file.Parse(text.substr(0, size / 2), /*merge=*/false);
    file.InsertSection("added");
    file.Parse(text.substr(size / 2), /*merge=*/true);
    Check(file.InsertSection("added") == ConfigFile::kSectionPresent);
    CheckAll(&file, caseSensitive);
  }
  return 0;
}
