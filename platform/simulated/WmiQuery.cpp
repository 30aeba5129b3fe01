#include <algorithm>
#include <array>

#include "base/LetterCase.h"
#include "base/Services.h"
#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/Text.h"
#include "platform/simulated/WmiClasses.h"

namespace simulated {
namespace {

using platform::HResult;
using platform::Variant;

template <class Row>
struct Column {
  std::string_view name;
  Variant (*read)(const Row&);
};

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

constexpr Column<Machine> kComputerSystem[] = {
    {"Name", [](const Machine& m) -> Variant { return m.computerName; }}};

template <std::size_t kRow>
Variant ReadField(const Adapter& adapter) {
  constexpr AnyAdapterMember kMember = kAdapterFields[kRow].member;
  return AsVariant(adapter.*std::get<kMember.index()>(kMember));
}

/// The fields that one of the adapter's two classes holds.
template <Home kHome>
constexpr auto kAdapterColumns = [] {
  constexpr auto kIsIn = [](const AdapterField& field) {
    return field.home == kHome || field.home == Home::kBoth;
  };
  std::array<Column<Adapter>,
             static_cast<std::size_t>(std::ranges::count_if(kAdapterFields, kIsIn))>
      columns{};
  auto next = columns.begin();
  const auto add = [&]<std::size_t kRow>() {
    if (kIsIn(kAdapterFields[kRow])) *next++ = {kAdapterFields[kRow].property, ReadField<kRow>};
  };
  [&]<std::size_t... kRows>(std::index_sequence<kRows...>) {
    (add.template operator()<kRows>(), ...);
  }
  (std::make_index_sequence<std::size(kAdapterFields)>());
  return columns;
}();

constexpr Column<PersistentRoute> kPersistedRoute[] = {
    {"Destination", [](const PersistentRoute& r) -> Variant { return r.destination; }},
    {"Mask", [](const PersistentRoute& r) -> Variant { return r.mask; }},
    {"NextHop", [](const PersistentRoute& r) -> Variant { return r.nextHop; }},
    {"Metric1", [](const PersistentRoute& r) -> Variant { return r.metric; }}};

/// The services whose program is a driver; they are instances of a class of their own.
bool IsDriver(const Service& service) {
  return std::any_of(std::begin(base::kNetworkServices), std::end(base::kNetworkServices),
                     [&](const auto& known) {
                       return known.isDriver && base::SameText(service.name, known.name);
                     });
}

constexpr Column<Service> kService[] = {
    {"Name", [](const Service& s) -> Variant { return s.name; }},
    {"StartMode", [](const Service& s) -> Variant { return base::TypeOf(s.start).mode; }},
    {"State", [](const Service& s) -> Variant { return s.running ? "Running" : "Stopped"; }}};

struct Condition {
  std::string_view property;
  std::string_view literal;
};

/// A query's parts; they live as long as its text.
struct Query {
  std::string_view className;
  /// Empty: all of them.
  std::vector<std::string_view> properties;
  std::optional<Condition> condition;
};

bool IsWordLetter(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
         (letter >= '0' && letter <= '9') || letter == '_' || letter == '-' || letter == '.';
}

/// Splits a query into words, quoted texts and single signs; blanks only separate.
std::vector<std::string_view> Tokens(std::string_view query) {
  std::vector<std::string_view> tokens;
  tokens.reserve(16);
  for (std::size_t at = 0; at < query.size();) {
    std::size_t length = 1;
    if (IsWordLetter(query[at])) {
      while (at + length < query.size() && IsWordLetter(query[at + length])) ++length;
    } else if (query[at] == '\'' || query[at] == '"') {
      const std::size_t end = query.find(query[at], at + 1);
      length = end == std::string_view::npos ? query.size() - at : end - at + 1;
    }
    if (query[at] != ' ' && query[at] != '\t') tokens.push_back(query.substr(at, length));
    at += length;
  }
  return tokens;
}

/// Reads a query token by token; every step fails for good once the tokens do not fit.
class QueryReader {
 public:
  explicit QueryReader(std::string_view query) : tokens_(Tokens(query)) {}

  std::optional<Query> Read() {
    Query query;
    Expect("select");
    do {
      query.properties.push_back(Word());
    } while (Accept(","));
    Expect("from");
    query.className = Word();
    if (Accept("where")) {
      query.condition = Condition{Word(), {}};
      Expect("=");
      query.condition->literal = Next();
    }
    if (!fits_ || next_ != tokens_.size()) return std::nullopt;
    return query;
  }

 private:
  bool Accept(std::string_view token) {
    const bool accepted = next_ < tokens_.size() && base::SameText(tokens_[next_], token);
    if (accepted) ++next_;
    return accepted;
  }

  void Expect(std::string_view token) {
    if (!Accept(token)) fits_ = false;
  }

  std::string_view Next() {
    if (next_ < tokens_.size()) return tokens_[next_++];
    fits_ = false;
    return {};
  }

  std::string_view Word() {
    const std::string_view word = Next();
    if (word.empty() || !IsWordLetter(word.front())) fits_ = false;
    return word;
  }

  std::vector<std::string_view> tokens_;
  std::size_t next_ = 0;
  bool fits_ = true;
};

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
HResult Select(const Query& query, std::span<const Column<Row>> table, std::span<const Row> rows,
               std::vector<Properties>* result) {
  const auto find = [&](std::string_view name) {
    const auto found = std::find_if(table.begin(), table.end(), [&](const auto& column) {
      return base::SameText(column.name, name);
    });
    return found == table.end() ? nullptr : &*found;
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

HResult SelectComputer(Simulation& simulation, const Query& query, std::vector<Properties>* rows) {
  return Select<Machine>(query, kComputerSystem, {&simulation.machine, 1}, rows);
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

HResult SelectConfiguration(Simulation& simulation, const Query& query,
                            std::vector<Properties>* rows) {
  return Select<Adapter>(query, kAdapterColumns<Home::kConfiguration>,
                         Candidates(simulation, query), rows);
}

HResult SelectAdapter(Simulation& simulation, const Query& query, std::vector<Properties>* rows) {
  return Select<Adapter>(query, kAdapterColumns<Home::kHardware>, Candidates(simulation, query),
                         rows);
}

HResult SelectRoute(Simulation& simulation, const Query& query, std::vector<Properties>* rows) {
  return Select<PersistentRoute>(query, kPersistedRoute, simulation.machine.persistentRoutes, rows);
}

HResult SelectServices(Simulation& simulation, const Query& query, bool drivers,
                       std::vector<Properties>* rows) {
  std::vector<Service> services = simulation.machine.services;
  std::erase_if(services, [&](const Service& service) { return IsDriver(service) != drivers; });
  return Select<Service>(query, kService, services, rows);
}

HResult SelectService(Simulation& simulation, const Query& query, std::vector<Properties>* rows) {
  return SelectServices(simulation, query, /*drivers=*/false, rows);
}

HResult SelectDriver(Simulation& simulation, const Query& query, std::vector<Properties>* rows) {
  return SelectServices(simulation, query, /*drivers=*/true, rows);
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
HResult SelectOperatingSystem(Simulation& simulation, const Query& query,
                              std::vector<Properties>* rows) {
  Properties record;
  for (const auto& [name, value] : simulation.machine.operatingSystem) {
    record.emplace_back(name, ToVariant(value));
  }
  if (query.properties.empty()) {
    rows->push_back(std::move(record));
    return platform::kOk;
  }
  Properties selected;
  for (const std::string_view name : query.properties) {
    const Variant* value = FindProperty(record, name);
    if (value == nullptr) return kWmiInvalidQuery;
    selected.emplace_back(std::string(name), *value);
  }
  const Variant* filtered =
      query.condition ? FindProperty(record, query.condition->property) : nullptr;
  if (query.condition && filtered == nullptr) return kWmiInvalidQuery;
  if (filtered == nullptr || Equals(*filtered, query.condition->literal)) {
    rows->push_back(std::move(selected));
  }
  return platform::kOk;
}

constexpr struct {
  std::string_view name;
  HResult (*select)(Simulation&, const Query&, std::vector<Properties>*);
} kClasses[] = {{"Win32_ComputerSystem", SelectComputer},
                {"Win32_NetworkAdapterConfiguration", SelectConfiguration},
                {"Win32_NetworkAdapter", SelectAdapter},
                {"Win32_IP4PersistedRouteTable", SelectRoute},
                {"Win32_Service", SelectService},
                {"Win32_SystemDriver", SelectDriver},
                {"Win32_OperatingSystem", SelectOperatingSystem}};

HResult Run(Simulation& simulation, const Query& query, std::vector<Properties>* rows) {
  for (const auto& known : kClasses) {
    if (base::SameText(known.name, query.className)) return known.select(simulation, query, rows);
  }
  return kWmiInvalidClass;
}

}  // namespace

const Variant* FindProperty(const Properties& properties, std::string_view name) {
  for (const auto& [known, value] : properties) {
    if (base::SameText(known, name)) return &value;
  }
  return nullptr;
}

HResult RunQuery(Simulation& simulation, const std::string& query, std::vector<Properties>* rows) {
  const auto parsed = QueryReader(query).Read();
  return parsed ? Run(simulation, *parsed, rows) : kWmiInvalidQuery;
}

HResult ListInstances(Simulation& simulation, const std::string& className,
                      std::vector<Properties>* rows) {
  return Run(simulation, {className, {}, {}}, rows);
}

bool IsWmiClass(std::string_view name) {
  return std::any_of(std::begin(kClasses), std::end(kClasses),
                     [&](const auto& known) { return base::SameText(known.name, name); });
}

}  // namespace simulated
