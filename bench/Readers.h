// The reader of configuration files and those that people would use instead.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace bench {

/// A file in memory, as one library keeps it.
class Reader {
 public:
  virtual ~Reader() = default;
  virtual bool Load(const std::string& text) = 0;
  virtual bool LoadFile(const std::string& path) = 0;
  /// Copies the value of an existing pair.
  virtual bool Find(const std::string& section, const std::string& key, std::string* value) = 0;
};

struct NamedReader {
  const char* name;
  std::unique_ptr<Reader> (*make)();
};

/// Ours first; then every other that was found when this program was built.
const std::vector<NamedReader>& Readers();

}  // namespace bench
