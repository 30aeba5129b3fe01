// Feeds arbitrary texts to the configuration file reader, as one load and as two of which the
// second merges; walks, look-ups and counts must tell what the plain rules tell.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Check.h"
#include "tests/support/ConfigModel.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  ConfigFile file{/*caseSensitive=*/false};
  support::ConfigModel model;
  const auto load = [&](const std::string& part, bool merge) {
    Check(file.Parse(part, merge) == model.Parse(part, merge));
    Check(support::Disagreement(file, model).empty());
  };
  load(text, /*merge=*/false);
  load(text.substr(0, size / 2), /*merge=*/false);
  load(text.substr(size / 2), /*merge=*/true);
  return 0;
}
