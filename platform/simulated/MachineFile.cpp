#include "platform/simulated/MachineFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <concepts>
#include <limits>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/LetterCase.h"
#include "base/OperatingSystem.h"
#include "base/Services.h"
#include "platform/IRegistry.h"
#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/JsonDocument.h"
#include "platform/simulated/Secrets.h"
#include "platform/simulated/Simulation.h"
#include "platform/simulated/Text.h"

namespace simulated {
namespace {

constexpr int kSchema = 1;

// Every kind of value knows how to read itself from a document and how to write itself: a codec
// with `Read(cursor, value)` and `Write(value, hideSecrets)`. What a codec writes as "discarded" is
// left out.
template <class Value>
struct Codec;

/// A member of a struct, its name in the file, and the codec of its value.
template <class Struct, class Member, class MemberCodec>
struct Field {
  std::string_view name;
  Member Struct::*member;
};

template <class Struct, class Member>
constexpr auto Plain(std::string_view name, Member Struct::*member) {
  return Field<Struct, Member, Codec<Member>>{name, member};
}

template <class MemberCodec, class Struct, class Member>
constexpr auto As(std::string_view name, Member Struct::*member) {
  return Field<Struct, Member, MemberCodec>{name, member};
}

/// The fields of a struct, in the order of the file.
template <class Struct>
constexpr auto kFields = nullptr;

/// How many members are no field of the file: what a run leaves behind, and what is known to be
/// none.
template <class Struct>
constexpr std::size_t kLeftOutMembers = 0;
template <>
constexpr std::size_t kLeftOutMembers<Machine> = 4;
template <>
constexpr std::size_t kLeftOutMembers<Fault> = 2;

template <class Struct>
concept Described = !std::same_as<decltype(kFields<Struct>), const std::nullptr_t>;

void RequireObject(const Cursor& at) {
  if (!at.Value().is_object()) at.FailType("an object");
}

Json Discarded() { return Json(Json::value_t::discarded); }

template <>
struct Codec<bool> {
  static void Read(const Cursor& at, bool& value) {
    if (!at.Value().is_boolean()) at.FailType("true or false");
    value = at.Value().get<bool>();
  }
  static Json Write(bool value, bool) { return value; }
};

template <std::integral Number>
struct Codec<Number> {
  static void Read(const Cursor& at, Number& value) {
    using Limits = std::numeric_limits<Number>;
    const auto& json = at.Value();
    const bool fits =
        json.is_number_unsigned()
            ? std::in_range<Number>(json.get<std::uint64_t>())
            : json.is_number_integer() && std::in_range<Number>(json.get<std::int64_t>());
    if (!fits) {
      at.FailType("a whole number from " + std::to_string(Limits::min()) + " to " +
                  std::to_string(Limits::max()));
    }
    value = json.get<Number>();
  }
  static Json Write(Number value, bool) { return value; }
};

template <>
struct Codec<std::string> {
  static void Read(const Cursor& at, std::string& value) {
    if (!at.Value().is_string()) at.FailType("a text");
    value = at.Value().get<std::string>();
  }
  static Json Write(const std::string& value, bool) { return value; }
};

template <class Value>
struct Codec<std::optional<Value>> {
  static void Read(const Cursor& at, std::optional<Value>& value) {
    value.reset();
    if (!at.Value().is_null()) Codec<Value>::Read(at, value.emplace());
  }
  static Json Write(const std::optional<Value>& value, bool hideSecrets) {
    return value ? Codec<Value>::Write(*value, hideSecrets) : Json(nullptr);
  }
};

template <class Item>
struct Codec<std::vector<Item>> {
  static void Read(const Cursor& at, std::vector<Item>& items) {
    if (!at.Value().is_array()) at.FailType("a list");
    items.resize(at.Value().size());
    for (std::size_t i = 0; i < items.size(); ++i) Codec<Item>::Read(at.Element(i), items[i]);
  }
  static Json Write(const std::vector<Item>& items, bool hideSecrets) {
    Json list = Json::array();
    for (const Item& item : items) list.push_back(Codec<Item>::Write(item, hideSecrets));
    return list;
  }
};

// What must hold beyond the fields themselves; most structs need nothing.
template <class Struct>
void Check(const Cursor&, Struct&) {}
void Check(const Cursor& at, RegistryValue& value);
void Check(const Cursor& at, Fault& fault);
void Check(const Cursor& at, Machine& machine);

template <Described Struct>
struct Codec<Struct> {
  static void Read(const Cursor& at, Struct& value) {
    RequireObject(at);
    std::size_t known = 0;
    ForEachField(
        [&]<class Member, class MemberCodec>(const Field<Struct, Member, MemberCodec>& field) {
          const auto place = at.FindField(field.name);
          if (!place) return;
          ++known;
          MemberCodec::Read(*place, value.*field.member);
        });
    if (known != at.Value().size()) RefuseUnknownFields(at);
    Check(at, value);
  }

  static Json Write(const Struct& value, bool hideSecrets) {
    Json object = Json::object();
    ForEachField(
        [&]<class Member, class MemberCodec>(const Field<Struct, Member, MemberCodec>& field) {
          Json written = MemberCodec::Write(value.*field.member, hideSecrets);
          if (!written.is_discarded()) object[std::string(field.name)] = std::move(written);
        });
    return object;
  }

 private:
  template <class Action>
  static void ForEachField(Action action) {
    static_assert(std::tuple_size_v<decltype(kFields<Struct>)> + kLeftOutMembers<Struct> ==
                      FieldCount<Struct>(),
                  "a member without a field");
    std::apply([&](const auto&... field) { (action(field), ...); }, kFields<Struct>);
  }

  static void RefuseUnknownFields(const Cursor& at) {
    static constexpr auto kNames =
        std::apply([](const auto&... field) { return std::array{field.name...}; }, kFields<Struct>);
    for (const auto& [name, ignored] : at.Value().items()) {
      if (std::find(kNames.begin(), kNames.end(), name) == kNames.end()) {
        at.Field(name).FailUnknown("field", name, kNames);
      }
    }
  }
};

/// A value that is left out of the file when there is none.
template <class Value>
struct LeftOut : Codec<std::optional<Value>> {
  static Json Write(const std::optional<Value>& value, bool hideSecrets) {
    return value ? Codec<Value>::Write(*value, hideSecrets) : Discarded();
  }
};

struct Secret : Codec<std::string> {
  static Json Write(const std::string& value, bool hideSecrets) {
    return hideSecrets ? std::string(kHidden) : value;
  }
};

struct FileText : Codec<std::string> {
  static Json Write(const std::string& value, bool hideSecrets) {
    return hideSecrets ? RedactedFile(value) : value;
  }
};

struct Ipv4Text : Codec<std::string> {
  static void Read(const Cursor& at, std::string& value) {
    Codec<std::string>::Read(at, value);
    if (!ParseIpv4(value)) at.Fail("no IPv4 address; write it as four numbers such as 10.0.0.1");
  }
};

struct HResultCodec {
  static void Read(const Cursor& at, std::optional<platform::HResult>& value) {
    value.reset();
    if (at.Value().is_null()) return;
    constexpr const char* kForm = "a text such as \"0x80041002\"";
    if (!at.Value().is_string()) at.FailType(kForm);
    const auto text = at.Value().get<std::string>();
    std::uint32_t digits = 0;
    const char* const end = text.data() + text.size();
    const bool isHexadecimal = text.size() > 2 && text.size() <= 10 && base::StartsWith(text, "0x");
    if (!isHexadecimal || std::from_chars(text.data() + 2, end, digits, 16).ptr != end) {
      at.Fail(std::string("no result code; write ") + kForm);
    }
    value = static_cast<platform::HResult>(digits);
  }
  static Json Write(const std::optional<platform::HResult>& value, bool) {
    return value ? Json(HResultText(*value)) : Discarded();
  }
};

/// Reads one of a few names as the value that belongs to it.
template <class Row, std::size_t kCount, class Value>
void ReadName(const Cursor& at, const Row (&names)[kCount], const std::string& what, Value& value) {
  std::string text;
  Codec<std::string>::Read(at, text);
  std::array<std::string_view, kCount> known;
  for (std::size_t i = 0; i < kCount; ++i) {
    known[i] = names[i].name;
    if (known[i] != text) continue;
    value = names[i].value;
    return;
  }
  at.FailUnknown(what, text, known);
}

template <>
struct Codec<platform::ServiceStart> {
  static void Read(const Cursor& at, platform::ServiceStart& value) {
    ReadName(at, base::kStartTypes, "start type", value);
  }
  static Json Write(platform::ServiceStart value, bool) {
    return std::string(base::TypeOf(value).name);
  }
};

struct RegistryType {
  static constexpr struct {
    std::string_view name;
    std::uint32_t value;
  } kTypes[] = {{"REG_DWORD", platform::kRegDWord},
                {"REG_SZ", platform::kRegSz},
                {"REG_EXPAND_SZ", platform::kRegExpandSz}};

  static void Read(const Cursor& at, std::uint32_t& value) {
    ReadName(at, kTypes, "registry type", value);
  }
  static Json Write(std::uint32_t value, bool) {
    const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                     [=](const auto& type) { return type.value == value; });
    return std::string(found->name);
  }
};

template <>
struct Codec<std::variant<std::uint32_t, std::string>> {
  using Value = std::variant<std::uint32_t, std::string>;
  static void Read(const Cursor& at, Value& value) {
    if (at.Value().is_string()) {
      Codec<std::string>::Read(at, value.emplace<std::string>());
    } else {
      Codec<std::uint32_t>::Read(at, value.emplace<std::uint32_t>());
    }
  }
  static Json Write(const Value& value, bool) {
    return std::visit([](const auto& data) { return Json(data); }, value);
  }
};

/// An object whose keys are the machine's to choose.
struct PlainTexts {
  using Value = std::optional<std::map<std::string, std::string>>;
  static void Read(const Cursor& at, Value& value) {
    value.reset();
    if (at.Value().is_null()) return;
    RequireObject(at);
    value.emplace();
    for (const auto& [name, ignored] : at.Value().items()) {
      Codec<std::string>::Read(at.Field(name), (*value)[name]);
    }
  }
  static Json Write(const Value& value, bool hideSecrets) {
    if (!value) return nullptr;
    Json::object_t object;
    for (const auto& [name, text] : *value) object.emplace_back(name, hideSecrets ? kHidden : text);
    return object;
  }
};

/// A value of any kind, which is written only.
template <>
struct Codec<Fields> {
  static Json Write(const Fields& fields) {
    Json object = Json::object();
    for (const auto& [name, value] : fields) object[name] = Write(value);
    return object;
  }
  static Json Write(const Value& value) {
    if (const auto* fields = std::get_if<Fields>(&value)) return Write(*fields);
    return std::visit(
        []<class Kind>(const Kind& own) -> Json {
          if constexpr (std::same_as<Kind, Fields>)
            return nullptr;
          else
            return own;
        },
        value);
  }
};

struct OperatingSystem {
  using Properties = std::map<std::string, Value>;

  static void Read(const Cursor& at, Properties& properties) {
    RequireObject(at);
    properties.clear();
    for (const auto& [name, json] : at.Value().items()) {
      const auto& known = base::kSystemProperties;
      if (std::find(std::begin(known), std::end(known), name) == std::end(known)) {
        at.Field(name).FailUnknown("property", name, known);
      }
      const Cursor place = at.Field(name);
      Value& value = properties[name];
      if (json.is_number()) {
        auto& number = value.emplace<std::int64_t>();
        Codec<std::int64_t>::Read(place, number);
        if (!std::in_range<std::int32_t>(number) && !std::in_range<std::uint32_t>(number)) {
          place.FailType("a number of 32 bits");
        }
      } else if (json.is_boolean()) {
        value = json.get<bool>();
      } else if (json.is_string()) {
        value = json.get<std::string>();
      } else if (json.is_structured()) {
        place.FailType("a text, a number, true, false or null");
      }
    }
  }
  static Json Write(const Properties& properties, bool) {
    Json object = Json::object();
    for (const auto& [name, value] : properties) object[name] = Codec<Fields>::Write(value);
    return object;
  }
};

template <>
constexpr auto kFields<DomainMembership> = std::tuple{
    Plain("dns_name", &DomainMembership::dnsName), Plain("flat_name", &DomainMembership::flatName),
    Plain("has_sid", &DomainMembership::hasSid)};

template <>
struct Codec<Membership> {
  static void Read(const Cursor& at, Membership& value) {
    static constexpr std::string_view kKinds[] = {"workgroup", "domain"};
    RequireObject(at);
    for (const auto& [name, ignored] : at.Value().items()) {
      if (name != "workgroup" && name != "domain")
        at.Field(name).FailUnknown("field", name, kKinds);
    }
    if (at.Value().size() > 1) at.Fail("both a workgroup and a domain; keep one");
    if (at.Value().contains("domain")) {
      Codec<DomainMembership>::Read(at.Field("domain"), value.emplace<DomainMembership>());
    } else {
      auto& workgroup = value.emplace<WorkgroupMembership>();
      if (!at.Value().empty()) Codec<std::string>::Read(at.Field("workgroup"), workgroup.name);
    }
  }
  static Json Write(const Membership& value, bool hideSecrets) {
    if (const auto* domain = std::get_if<DomainMembership>(&value)) {
      return {{"domain", Codec<DomainMembership>::Write(*domain, hideSecrets)}};
    }
    return {{"workgroup", std::get<WorkgroupMembership>(value).name}};
  }
};

template <>
constexpr auto kFields<Adapter> = []<std::size_t... kRows>(std::index_sequence<kRows...>) {
  return std::tuple{
      Plain(kAdapterFields[kRows].name,
            std::get<kAdapterFields[kRows].member.index()>(kAdapterFields[kRows].member))...};
}
(std::make_index_sequence<std::size(kAdapterFields)>());

template <>
constexpr auto kFields<PersistentRoute> = std::tuple{
    As<Ipv4Text>("destination", &PersistentRoute::destination),
    As<Ipv4Text>("mask", &PersistentRoute::mask),
    As<Ipv4Text>("next_hop", &PersistentRoute::nextHop), Plain("metric", &PersistentRoute::metric)};

template <>
constexpr auto kFields<Service> =
    std::tuple{Plain("name", &Service::name), Plain("start", &Service::start),
               Plain("running", &Service::running)};

template <>
constexpr auto kFields<RegistryValue> =
    std::tuple{Plain("key", &RegistryValue::key), Plain("name", &RegistryValue::name),
               As<RegistryType>("type", &RegistryValue::type), Plain("data", &RegistryValue::data)};

template <>
constexpr auto kFields<File> =
    std::tuple{Plain("path", &File::path), As<FileText>("text", &File::text)};

template <>
constexpr auto kFields<Host> =
    std::tuple{Plain("name", &Host::name), As<Ipv4Text>("address", &Host::address)};

template <>
constexpr auto kFields<Account> =
    std::tuple{Plain("user", &Account::user), As<Secret>("password", &Account::password)};

template <>
constexpr auto kFields<Computer> =
    std::tuple{Plain("name", &Computer::name), Plain("dn", &Computer::dn)};

template <>
constexpr auto kFields<DirectoryDomain> = std::tuple{
    Plain("dns_name", &DirectoryDomain::dnsName), Plain("flat_name", &DirectoryDomain::flatName),
    Plain("accounts", &DirectoryDomain::accounts), Plain("ous", &DirectoryDomain::ous),
    Plain("computers", &DirectoryDomain::computers)};

/// The domains stand one level deeper in the file than in the machine.
struct Directory {
  std::vector<DirectoryDomain> domains;
};

template <>
constexpr auto kFields<Directory> = std::tuple{Plain("domains", &Directory::domains)};

struct DirectoryCodec {
  static void Read(const Cursor& at, std::vector<DirectoryDomain>& domains) {
    Directory directory;
    if (!at.Value().is_null()) Codec<Directory>::Read(at, directory);
    domains = std::move(directory.domains);
  }
  static Json Write(const std::vector<DirectoryDomain>& domains, bool hideSecrets) {
    if (domains.empty()) return nullptr;
    return Codec<Directory>::Write({domains}, hideSecrets);
  }
};

template <>
constexpr auto kFields<Fault> = std::tuple{Plain("call", &Fault::call),
                                           As<LeftOut<std::string>>("contains", &Fault::contains),
                                           As<LeftOut<std::string>>("method", &Fault::method),
                                           As<LeftOut<std::string>>("service", &Fault::service),
                                           As<LeftOut<std::string>>("name", &Fault::name),
                                           As<LeftOut<std::uint32_t>>("index", &Fault::index),
                                           As<LeftOut<std::uint32_t>>("nth", &Fault::nth),
                                           As<HResultCodec>("hresult", &Fault::hresult),
                                           As<LeftOut<std::uint32_t>>("error", &Fault::error),
                                           As<LeftOut<std::int32_t>>("result", &Fault::result)};

template <>
constexpr auto kFields<Machine> =
    std::tuple{Plain("computer_name", &Machine::computerName),
               Plain("pending_computer_name", &Machine::pendingComputerName),
               Plain("membership", &Machine::membership),
               As<OperatingSystem>("operating_system", &Machine::operatingSystem),
               Plain("agent_folder", &Machine::agentFolder),
               Plain("adapters", &Machine::adapters),
               Plain("persistent_routes", &Machine::persistentRoutes),
               Plain("services", &Machine::services),
               Plain("registry", &Machine::registry),
               Plain("files", &Machine::files),
               Plain("hosts", &Machine::hosts),
               As<PlainTexts>("decrypt", &Machine::decrypt),
               As<DirectoryCodec>("directory", &Machine::domains),
               Plain("faults", &Machine::faults)};

void Check(const Cursor& at, RegistryValue& value) {
  const bool wantsNumber = value.type == platform::kRegDWord;
  if (!wantsNumber && !at.Value().contains("data")) value.data = std::string();
  if (wantsNumber != std::holds_alternative<std::uint32_t>(value.data)) {
    at.Field("data").FailType(wantsNumber ? "a number, as type REG_DWORD says"
                                          : "a text, as the type says");
  }
  if (!base::StartsWith(value.key, "HKEY_")) {
    at.Fail("key names no root; begin it with HKEY_LOCAL_MACHINE\\");
  }
}

void Check(const Cursor& at, Fault& fault) {
  const bool isKnown = fault.call == "*" || std::find(std::begin(kCallNames), std::end(kCallNames),
                                                      fault.call) != std::end(kCallNames);
  if (!isKnown) at.Field("call").FailUnknown("call", fault.call, kCallNames);
  if (fault.error == 0U) at.Field("error").Fail("0 is no error; write the number of one");
  if (fault.hresult && !platform::Failed(*fault.hresult)) {
    at.Field("hresult").Fail("is no failure; write one from 0x80000000 on");
  }
  if (fault.nth == 0U) at.Field("nth").Fail("calls are counted from 1; write 1 or more");
}

/// Refuses a list in which two items have the same key.
template <class Item, class KeyOf>
void RequireUnique(const Cursor& at, const std::string& list, const std::string& field,
                   const std::vector<Item>& items, KeyOf keyOf) {
  std::unordered_map<std::string, std::size_t> seen;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const auto [first, isNew] = seen.emplace(keyOf(items[i]), i);
    if (isNew) continue;
    const Cursor places(at.Field(list));
    const std::string place = places.Path() + "[" + std::to_string(first->second) + "]";
    const Cursor item(places.Element(i));
    const std::string fault = "stands at " + place + " already; give each its own " + field;
    if (item.Value().contains(field)) item.Field(field).Fail(fault);
    item.Fail(field + " " + fault);
  }
}

/// Appends its index to the default of every adapter that leaves out a text which is unique on a
/// computer, but for the first to have that text.
void MakeDefaultsUnique(const Cursor& at, std::string_view field, std::string Adapter::*member,
                        std::vector<Adapter>& adapters) {
  std::unordered_set<std::string> taken;
  for (std::size_t i = 0; i < adapters.size(); ++i) {
    std::string& text = adapters[i].*member;
    const bool isDefault = !at.Field("adapters").Element(i).FindField(field);
    if (isDefault && taken.contains(text)) text += "_" + std::to_string(adapters[i].index);
    taken.insert(text);
  }
}

void Check(const Cursor& at, Machine& machine) {
  machine.decryptIsNone = at.FindField("decrypt") && !machine.decrypt;
  machine.directoryIsNone = at.FindField("directory") && machine.domains.empty();
  MakeDefaultsUnique(at, "pnp_device_id", &Adapter::pnpDeviceId, machine.adapters);
  MakeDefaultsUnique(at, "setting_id", &Adapter::settingId, machine.adapters);
  RequireUnique(at, "adapters", "index", machine.adapters,
                [](const Adapter& adapter) { return std::to_string(adapter.index); });
  RequireUnique(at, "services", "name", machine.services,
                [](const Service& service) { return base::Folded(service.name); });
  RequireUnique(at, "registry", "name", machine.registry, [](const RegistryValue& value) {
    return base::Folded(value.key + '\0' + value.name);
  });
  RequireUnique(at, "files", "path", machine.files,
                [](const File& file) { return FoldedPath(file.path); });
  RequireUnique(at, "hosts", "name", machine.hosts,
                [](const Host& host) { return base::Folded(host.name); });
}

/// Turns all texts below `value`, which is the one at `place`, into the machine's bytes.
void Encode(nlohmann::json& value, const Cursor& place, const Encoder& encode) {
  const auto encoded = [&](const std::string& text, const Cursor& at) {
    std::optional<std::string> bytes = encode(text);
    if (!bytes) at.Fail("cannot be written in the machine's code page; use its characters");
    return *std::move(bytes);
  };
  if (value.is_string()) {
    value = encoded(value.get_ref<const std::string&>(), place);
  } else if (value.is_array()) {
    for (std::size_t i = 0; i < value.size(); ++i) Encode(value[i], place.Element(i), encode);
  } else if (value.is_object()) {
    std::map<std::string, std::string> renamed;
    for (auto& [name, item] : value.items()) {
      Encode(item, place.Field(name), encode);
      if (std::string bytes = encoded(name, place.Field(name)); bytes != name) {
        renamed.emplace(name, std::move(bytes));
      }
    }
    for (const auto& [name, bytes] : renamed) {
      value[bytes] = std::move(value[name]);
      value.erase(name);
    }
  }
}

}  // namespace

Machine ParseMachine(const std::string& text, const std::string& fileName, const Encoder& encode) {
  nlohmann::json document = ParseDocument(text, fileName);
  const Cursor root(document, fileName);
  if (encode) Encode(document, root, encode);
  RequireObject(root);
  if (!document.contains("schema")) root.Fail("no schema; add \"schema\": 1");
  int schema = 0;
  Codec<int>::Read(root.Field("schema"), schema);
  if (schema != kSchema) root.Field("schema").Fail("this version reads schema 1 only; write 1");
  document.erase("schema");

  Machine machine;
  Codec<Machine>::Read(root, machine);
  return machine;
}

std::string PrintMachine(const Machine& machine, bool hideSecrets) {
  return ToJson(machine, hideSecrets)
             .dump(2, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace) +
         "\n";
}

Json ToJson(const Machine& machine, bool hideSecrets) {
  Json document{{"schema", kSchema}};
  document.update(Codec<Machine>::Write(machine, hideSecrets));
  if (!machine.KnowsDecrypt()) document.erase("decrypt");
  if (!machine.KnowsDirectory()) document.erase("directory");
  for (Json& value : document["registry"]) {
    if (hideSecrets && NamesPassword(value.value("name", "")) && value["data"].is_string()) {
      value["data"] = kHidden;
    }
  }
  return document;
}

void to_json(Json& entry, const Change& change) {
  entry = {{"call", change.call}};
  entry.update(Codec<Fields>::Write(change.fields));
}

}  // namespace simulated
