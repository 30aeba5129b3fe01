#include <algorithm>
#include <functional>
#include <span>

#include "base/FindIn.h"
#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "base/Services.h"
#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/WmiClasses.h"

namespace simulated {
namespace {

using platform::HResult;
using platform::Variant;

/// A property of a class, and how a row tells it.
template <class Row>
struct Column {
  std::string_view name;
  std::function<Variant(const Row&)> read;
};
template <class Row>
using Columns = std::vector<Column<Row>>;

Variant AsVariant(bool flag) { return flag ? platform::kVariantTrue : platform::kVariantFalse; }
Variant AsVariant(std::uint32_t number) { return static_cast<std::int32_t>(number); }
Variant AsVariant(const std::string& text) { return text; }
Variant AsVariant(const NullableText& text) {
  return text ? Variant(*text) : Variant(platform::Null{});
}
/// Deliberate: an empty list is the null value, as real adapters answer it.
Variant AsVariant(const std::vector<std::string>& items) {
  if (items.empty()) return platform::Null{};
  return platform::TextArray{items};
}

/// The fields that one of the adapter's two classes holds.
Columns<Adapter> AdapterColumns(Home home) {
  Columns<Adapter> columns;
  ForEachAdapterField([&](const AdapterField& field, auto member) {
    if (field.home != home && field.home != Home::kBoth) return;
    columns.push_back(
        {field.property, [=](const Adapter& adapter) { return AsVariant(adapter.*member); }});
  });
  return columns;
}

/// The services whose program is a driver; they are instances of a class of their own.
bool IsDriver(const Service& service) {
  const auto* known = base::FindIn(base::kNetworkServices, [&](const auto& row) {
    return base::SameText(service.name, row.name);
  });
  return known != nullptr && known->isDriver;
}

struct Condition {
  std::string_view property;
  std::string_view literal;
};

/// A query's parts; they live as long as its text.
struct Query {
  std::string_view className;
  /// Empty: all of them.
  std::vector<std::string> properties;
  std::optional<Condition> condition;
};

/// What stands before `word`, which is taken off `rest` with it; none when the word is not there.
std::optional<std::string_view> TakeUpTo(std::string_view word, std::string_view& rest) {
  const std::size_t at = base::Find(rest, word);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view taken = rest.substr(0, at);
  rest.remove_prefix(at + word.size());
  return taken;
}

std::optional<Query> Parse(std::string_view text) {
  if (TakeUpTo("select ", text) != "") return std::nullopt;
  const auto properties = TakeUpTo(" from ", text);
  if (!properties) return std::nullopt;
  Query query{{}, base::Split(*properties, ", "), std::nullopt};
  if (const auto className = TakeUpTo(" where ", text)) {
    const auto property = TakeUpTo("=", text);
    if (!property) return std::nullopt;
    query.condition = Condition{base::Trimmed(*property), base::Trimmed(text)};
    query.className = base::Trimmed(*className);
  } else {
    query.className = base::Trimmed(text);
  }
  return query.properties.empty() ? std::nullopt : std::optional(query);
}

bool Equals(const Variant& value, std::string_view literal) {
  if (const auto* flag = std::get_if<platform::RawBool>(&value)) {
    return base::SameText(literal, flag->bits == platform::kVariantTrue.bits ? "true" : "false");
  }
  if (const auto* number = std::get_if<std::int32_t>(&value)) {
    return ParseIndex(literal) == static_cast<std::uint32_t>(*number);
  }
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr && literal.size() >= 2 &&
         base::SameText(literal.substr(1, literal.size() - 2), *text);
}

template <class Row>
HResult Select(const Query& query, const Columns<Row>& table, std::span<const Row> rows,
               WmiRows* result) {
  const auto find = [&](std::string_view name) {
    return base::FindIn(table,
                        [&](const auto& column) { return base::SameText(column.name, name); });
  };
  std::vector<const Column<Row>*> columns;
  for (const std::string_view name : query.properties) columns.push_back(find(name));
  if (query.properties.empty()) {
    for (const auto& column : table) columns.push_back(&column);
  }
  const Column<Row>* filter = query.condition ? find(query.condition->property) : nullptr;
  if (std::find(columns.begin(), columns.end(), nullptr) != columns.end() ||
      (query.condition && filter == nullptr)) {
    return kWmiInvalidQuery;
  }
  for (const Row& row : rows) {
    if (filter != nullptr && !Equals(filter->read(row), query.condition->literal)) continue;
    Properties& properties = result->emplace_back();
    properties.reserve(columns.size());
    for (const auto* column : columns) {
      properties.emplace_back(std::string(column->name), column->read(row));
    }
  }
  return platform::kOk;
}

HResult SelectComputer(Simulation& simulation, const Query& query, WmiRows* rows) {
  static const Columns<Machine> kColumns{
      {"Name", [](const Machine& machine) { return machine.computerName; }}};
  return Select<Machine>(query, kColumns, {&simulation.machine, 1}, rows);
}

/// The adapters a query can concern: one of them when it asks for an index, else all.
std::span<const Adapter> Candidates(Simulation& simulation, const Query& query) {
  if (!query.condition || !base::SameText(query.condition->property, "Index")) {
    return simulation.machine.adapters;
  }
  const auto index = ParseIndex(query.condition->literal);
  const Adapter* adapter = index ? simulation.AdapterByIndex(*index) : nullptr;
  if (adapter == nullptr) return {};
  return {adapter, 1};
}

template <Home kHome>
HResult SelectAdapter(Simulation& simulation, const Query& query, WmiRows* rows) {
  static const Columns<Adapter> kColumns = AdapterColumns(kHome);
  return Select<Adapter>(query, kColumns, Candidates(simulation, query), rows);
}

HResult SelectRoute(Simulation& simulation, const Query& query, WmiRows* rows) {
  static const Columns<PersistentRoute> kColumns{{"Destination", &PersistentRoute::destination},
                                                 {"Mask", &PersistentRoute::mask},
                                                 {"NextHop", &PersistentRoute::nextHop},
                                                 {"Metric1", &PersistentRoute::metric}};
  return Select<PersistentRoute>(query, kColumns, simulation.machine.persistentRoutes, rows);
}

template <bool kDrivers>
HResult SelectService(Simulation& simulation, const Query& query, WmiRows* rows) {
  static const Columns<Service> kColumns{
      {"Name", &Service::name},
      {"StartMode", [](const Service& service) { return base::TypeOf(service.start).mode; }},
      {"State", [](const Service& service) { return service.running ? "Running" : "Stopped"; }}};
  std::vector<Service> services = simulation.machine.services;
  std::erase_if(services, [&](const Service& service) { return IsDriver(service) != kDrivers; });
  return Select<Service>(query, kColumns, services, rows);
}

Variant ToVariant(const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return AsVariant(*flag);
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    return AsVariant(static_cast<std::uint32_t>(*number));
  }
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return platform::Null{};
}

/// The one record whose properties are the machine's to choose.
HResult SelectOperatingSystem(Simulation& simulation, const Query& query, WmiRows* rows) {
  Columns<Machine> columns;
  for (const auto& property : simulation.machine.operatingSystem) {
    columns.push_back(
        {property.first, [&property](const Machine&) { return ToVariant(property.second); }});
  }
  return Select<Machine>(query, columns, {&simulation.machine, 1}, rows);
}

constexpr struct {
  std::string_view name;
  HResult (*select)(Simulation&, const Query&, WmiRows*);
} kClasses[] = {{"Win32_ComputerSystem", SelectComputer},
                {"Win32_NetworkAdapterConfiguration", SelectAdapter<Home::kConfiguration>},
                {"Win32_NetworkAdapter", SelectAdapter<Home::kHardware>},
                {"Win32_IP4PersistedRouteTable", SelectRoute},
                {"Win32_Service", SelectService<false>},
                {"Win32_SystemDriver", SelectService<true>},
                {"Win32_OperatingSystem", SelectOperatingSystem}};

const auto* FindClass(std::string_view name) {
  return base::FindIn(kClasses,
                      [&](const auto& known) { return base::SameText(known.name, name); });
}

HResult Run(Simulation& simulation, const Query& query, WmiRows* rows) {
  const auto* known = FindClass(query.className);
  return known != nullptr ? known->select(simulation, query, rows) : kWmiInvalidClass;
}

}  // namespace

const Variant* FindProperty(const Properties& properties, std::string_view name) {
  const auto* found = base::FindIn(
      properties, [&](const auto& property) { return base::SameText(property.first, name); });
  return found == nullptr ? nullptr : &found->second;
}

HResult RunQuery(Simulation& simulation, const std::string& query, WmiRows* rows) {
  const auto parsed = Parse(query);
  return parsed ? Run(simulation, *parsed, rows) : kWmiInvalidQuery;
}

HResult ListInstances(Simulation& simulation, const std::string& className, WmiRows* rows) {
  return Run(simulation, {className, {}, {}}, rows);
}

bool IsWmiClass(std::string_view name) { return FindClass(name) != nullptr; }

}  // namespace simulated
