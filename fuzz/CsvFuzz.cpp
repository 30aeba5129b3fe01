// Reads arbitrary texts as comma-separated values: records end, and sound ones read back as they
// are written again.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Check.h"
#include "tool/fleet/Csv.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  tool::fleet::CsvReader reader(text);
  for (std::size_t records = 0; auto record = reader.Next(); ++records) {
    Check(records <= size && !record->fields.empty());
    if (!record->fault.empty()) continue;
    std::string written;
    for (const std::string& field : record->fields) {
      written += written.empty() ? "\"" : ",\"";
      for (const char c : field) written.append(c == '"' ? 2 : 1, c);
      written += '"';
    }
    // The header tells the separator; a record of one field has no use for one.
    const std::string document = ",\n" + written;
    tool::fleet::CsvReader again(document);
    again.Next();
    Check(again.Next()->fields == record->fields);
  }
  return 0;
}
