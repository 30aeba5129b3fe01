#include "tool/fleet/Inventory.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "base/FindIn.h"
#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "platform/simulated/Json.h"
#include "platform/simulated/MachineFile.h"
#include "tool/io/CodePage.h"
#include "tool/io/JsonText.h"
#include "tool/io/ToolError.h"

namespace tool::fleet {
namespace {

using simulated::Json;
using simulated::Machine;

simulated::Adapter& FirstAdapter(Machine& machine) {
  if (machine.adapters.empty()) machine.adapters.emplace_back();
  return machine.adapters.front();
}

void SetDomain(Machine& machine, const std::string& cell) {
  // The flat name is mostly the first label.
  std::string flat = cell.substr(0, cell.find('.'));
  base::ToUpper(flat);
  machine.membership = simulated::DomainMembership{cell, flat};
}

void SetLocation(Machine& machine, const std::string& cell) {
  const std::vector<std::string> numbers = base::Split(cell, "/");
  FirstAdapter(machine).locationInformation =
      "PCI bus " + numbers[0] + ", device " + numbers[1] + ", function " + numbers[2];
}

void SetAddress(Machine& machine, const std::string& cell) {
  FirstAdapter(machine).ipAddresses = {cell};
  FirstAdapter(machine).dhcpEnabled = false;
}

/// A column that says something of the machine. What it means is that of a machine file's field,
/// except where that is empty.
struct Column {
  std::string_view name;
  std::string_view field;
  void (*set)(Machine& machine, const std::string& cell);
};
constexpr Column kColumns[] = {
    {"computer_name", "computer_name",
     [](Machine& machine, const std::string& cell) { machine.computerName = cell; }},
    {"workgroup", "membership",
     [](Machine& machine, const std::string& cell) {
       machine.membership = simulated::WorkgroupMembership{cell};
     }},
    {"domain", "membership", SetDomain},
    {"mac_address", "mac_address",
     [](Machine& machine, const std::string& cell) { FirstAdapter(machine).macAddress = cell; }},
    {"pci_location", "", SetLocation},
    {"ip_address", "ip_addresses", SetAddress},
    {"subnet_mask", "subnet_masks",
     [](Machine& machine, const std::string& cell) { FirstAdapter(machine).subnetMasks = {cell}; }},
    {"gateway", "gateways",
     [](Machine& machine, const std::string& cell) { FirstAdapter(machine).gateways = {cell}; }},
};

/// Why the cell cannot stand in the column; empty when it can.
std::string FaultOf(const Column& column, const std::string& cell) {
  const char* expected = simulated::ExpectedInstead(column.field, cell);
  if (column.name == "pci_location") {
    const std::vector<std::string> numbers = base::Split(cell, "/");
    const bool areNumbers = std::all_of(numbers.begin(), numbers.end(), [](const auto& number) {
      return base::ParseWhole<std::uint16_t>(number).has_value();
    });
    if (numbers.size() != 3 || !areNumbers) expected = "bus/device/function such as 0/25/0";
  }
  return expected != nullptr ? std::string("expected ") + expected : "";
}

}  // namespace

Inventory::Inventory(const std::string& name, std::string_view text) : reader_(text) {
  const std::optional<CsvRecord> header = reader_.Next();
  if (!header) throw ToolError(name, "is empty", "begin with a row of column names");
  const std::string row = "row " + std::to_string(header->number) + ", ";
  if (!header->fault.empty()) throw ToolError(name, row + header->fault, "mend the header");
  for (const std::string& field : header->fields) {
    const std::string column(base::Trimmed(field));
    if (!column.empty() && std::find(header_.begin(), header_.end(), column) != header_.end()) {
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
  const std::optional<CsvRecord> record = reader_.Next();
  if (!record) return std::nullopt;
  InventoryRow row{record->number, record->fault, {}, {}, {}, {}};
  if (row.fault.empty() && record->fields.size() != header_.size()) {
    row.fault = base::Counted(record->fields.size(), "field") + " where the header has " +
                std::to_string(header_.size());
  }
  const auto blame = [&](const std::string& column, const std::string& fault) {
    if (row.fault.empty() && !fault.empty()) row.fault = "column " + column + ": " + fault;
  };
  Json others = Json::object();
  bool hasMembership = false;
  const std::size_t fields = std::min(record->fields.size(), header_.size());
  for (std::size_t i = 0; i < fields; ++i) {
    const std::string cell(base::Trimmed(record->fields[i]));
    const std::string& name = header_[i];
    const Column* const column =
        base::FindIn(kColumns, [&](const Column& known) { return known.name == name; });
    if (name == "file") {
      row.file = cell;
      if (cell.empty()) blame(name, "is empty");
    } else if (name == "machine") {
      row.machine = cell;
    } else if (column == nullptr) {
      if (!name.empty()) others[name] = cell;
    } else if (!cell.empty()) {
      const std::optional<std::string> bytes = FromUtf8(cell);
      if (!bytes) blame(name, "cannot be written in the machine's code page");
      blame(name, FaultOf(*column, bytes.value_or("")));
      if (column->field == "membership" && std::exchange(hasMembership, true)) {
        blame(name, "the row has a workgroup and a domain");
      }
      row.facts.emplace_back(column->set, bytes.value_or(""));
    }
  }
  if (!others.empty()) row.columns = PrintedJson(others, /*indented=*/false);
  return row;
}

}  // namespace tool::fleet
