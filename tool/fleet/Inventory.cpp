#include "tool/fleet/Inventory.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "tool/io/ToolError.h"

namespace tool::fleet {
namespace {

using simulated::Json;

Json Text(const std::string& cell) { return cell; }
Json List(const std::string& cell) { return Json::array({cell}); }
Json Off(const std::string&) { return false; }
Json Workgroup(const std::string& cell) { return {{"workgroup", cell}}; }
/// The flat name is mostly the first label.
Json Domain(const std::string& cell) {
  std::string flat = cell.substr(0, cell.find('.'));
  base::ToUpper(flat);
  return {{"domain", {{"dns_name", cell}, {"flat_name", flat}}}};
}
Json Location(const std::string& cell) {
  const std::vector<std::string> numbers = base::Split(cell, "/");
  if (numbers.size() != 3) return cell;
  return "PCI bus " + numbers[0] + ", device " + numbers[1] + ", function " + numbers[2];
}

/// What a column says, and where that goes in a machine file. An adapter is the machine's first.
constexpr struct {
  std::string_view column;
  const char* place;
  Json (*value)(const std::string& cell);
} kColumns[] = {
    {"computer_name", "/computer_name", Text},
    {"workgroup", "/membership", Workgroup},
    {"domain", "/membership", Domain},
    {"mac_address", "/adapters/0/mac_address", Text},
    {"pci_location", "/adapters/0/location_information", Location},
    {"ip_address", "/adapters/0/ip_addresses", List},
    {"ip_address", "/adapters/0/dhcp_enabled", Off},
    {"subnet_mask", "/adapters/0/subnet_masks", List},
    {"gateway", "/adapters/0/gateways", List},
};

}  // namespace

Inventory::Inventory(const std::string& name, std::string_view text) : reader_(text) {
  const std::optional<CsvRecord> header = reader_.Next();
  if (!header) throw ToolError(name, "is empty", "begin with a row of column names");
  if (!header->fault.empty()) throw ToolError(name, "row 1, " + header->fault, "mend the header");
  for (const std::string& field : header->fields) {
    const std::string column(base::Trimmed(field));
    if (std::find(header_.begin(), header_.end(), column) != header_.end()) {
      throw ToolError(name, "has the column \"" + column + "\" twice", "remove one of them");
    }
    header_.push_back(column);
  }
  if (std::find(header_.begin(), header_.end(), "file") == header_.end()) {
    throw ToolError(name, "has no column \"file\"",
                    "name each computer's configuration file in a column \"file\"");
  }
}

std::optional<InventoryRow> Inventory::Next() {
  std::optional<CsvRecord> record = reader_.Next();
  if (!record) return std::nullopt;
  InventoryRow row;
  row.number = ++number_;
  row.fault = record->fault;
  if (row.fault.empty() && record->fields.size() != header_.size()) {
    row.fault = base::Counted(record->fields.size(), "field") + " where the header has " +
                std::to_string(header_.size());
  }
  const std::size_t fields = std::min(record->fields.size(), header_.size());
  for (std::size_t i = 0; i < fields; ++i) {
    const std::string cell(base::Trimmed(record->fields[i]));
    const std::string& column = header_[i];
    if (column == "file") {
      row.file = cell;
    } else if (column == "machine") {
      row.machine = cell;
    } else {
      bool isFact = false;
      for (const auto& [name, place, value] : kColumns) {
        if (name != column) continue;
        isFact = true;
        if (!cell.empty()) row.facts.emplace_back(place, value(cell));
      }
      if (!isFact) row.others.emplace_back(column, cell);
    }
  }
  if (row.fault.empty() && row.file.empty()) row.fault = "column file: is empty";
  return row;
}

}  // namespace tool::fleet
