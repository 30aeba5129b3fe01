// An inventory of computers: the rows of a CSV, each with a configuration file and what is known of
// the machine.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tool/fleet/Csv.h"

namespace tool::fleet {

struct InventoryRow {
  /// As spreadsheets count: the header is row 1.
  std::size_t number = 0;
  /// What makes the row unusable, with its column; everything else may then be missing.
  std::string fault;
  /// As the row spells it, relative to the inventory.
  std::string file;
  /// A machine file; empty for the base machine.
  std::string machine;
  /// What the row says of its machine: bytes of the machine's code page, and what puts them there.
  std::vector<std::pair<void (*)(simulated::Machine&, const std::string&), std::string>> facts;
  /// Columns that mean nothing here, as a JSON object; empty for none.
  std::string columns;
};

class Inventory {
 public:
  /// `text` is UTF-8 and outlives the object. Throws ToolError, which names `name`, for a header
  /// that is missing, lacks the column "file" or has a column twice.
  Inventory(const std::string& name, std::string_view text);

  /// Nothing at the end.
  std::optional<InventoryRow> Next();

 private:
  CsvReader reader_;
  std::vector<std::string> header_;
};

}  // namespace tool::fleet
