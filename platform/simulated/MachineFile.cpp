#include "platform/simulated/MachineFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <concepts>
#include <functional>
#include <limits>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/FindIn.h"
#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/OperatingSystem.h"
#include "base/Services.h"
#include "platform/IRegistry.h"
#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/Ipv4.h"
#include "platform/simulated/JsonDocument.h"
#include "platform/simulated/Secrets.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

constexpr int kSchema = 1;

// Every kind of value knows how to read itself from a document, how to write itself, and which JSON
// Schema it has: a codec with `Read(cursor, value)`, `Write(value, hideSecrets)` and `Schema()`.
// What a codec writes as "discarded" is left out.
template <class Value>
struct Codec;

/// What the texts of a field mean beyond being texts: the same for the reader and for the schema.
struct Meaning {
  std::string_view field;
  bool (*holds)(const std::string& text);
  const char* pattern;
  const char* description;
};

bool IsIpv4(const std::string& text) { return ParseIpv4(text).has_value(); }
bool IsAddress(const std::string& text) {
  const bool isIpv6 = text.find(':') != std::string::npos &&
                      text.find_first_not_of("0123456789abcdefABCDEF:.%") == std::string::npos;
  return isIpv6 || IsIpv4(text);
}
bool IsMask(const std::string& text) {
  return IsIpv4(text) || base::ParseWhole<std::uint8_t>(text);
}
bool IsHexDigit(char letter) { return std::isxdigit(static_cast<unsigned char>(letter)) != 0; }
bool IsMac(const std::string& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isRight = i % 3 == 2 ? text[i] == ':' : IsHexDigit(text[i]);
    if (!isRight) return false;
  }
  return text.empty() || (text.size() % 3 == 2 && text.size() >= sizeof "08:00:27:12:34:56" - 1);
}
/// Other buses have other texts; only three numbers alone are certain to be meant as the PCI's.
bool IsLocation(const std::string& text) {
  return text.empty() || text.find_first_not_of("0123456789/,:()") != std::string::npos;
}
bool IsDn(const std::string& text) {
  const std::size_t other = text.find_first_of("=/");
  return other != std::string::npos && other > 0 && text[other] == '=' &&
         base::Find(text, "DC=", 0) != std::string::npos;
}
bool IsUser(const std::string& text) { return text.find_first_of("\\@") == std::string::npos; }

#define IPV4 "((25[0-5]|2[0-4][0-9]|1[0-9]{2}|[1-9]?[0-9])(\\.(?=[0-9])|$)){4}"
constexpr char kIpv4Pattern[] = "^" IPV4 "$";
constexpr char kAddressPattern[] = "^" IPV4 "$|^(?=.*:)[0-9A-Fa-f:.%]+$";
constexpr char kMaskPattern[] = "^" IPV4 "$|^0*(25[0-5]|2[0-4][0-9]|1[0-9]{2}|[1-9]?[0-9])$";
#undef IPV4
constexpr char kDnPattern[] = "^(?=.*[Dd][Cc]=)[^=/]+=";
constexpr char kIpv4[] = "an IPv4 address such as 10.0.0.1";
constexpr char kAddress[] = "an address alone, such as 10.0.0.5; masks stand in subnet_masks";
constexpr char kDn[] = "a distinguished name such as OU=Sales,DC=corp,DC=example";
constexpr Meaning kMeanings[] = {
    {"mac_address", IsMac, "^([0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5,})?$",
     "a MAC address such as 08:00:27:12:34:56"},
    {"location_information", IsLocation, "^$|[^0-9/,:()]",
     "a location such as PCI bus %1, device %2, function %3;(0,3,0)"},
    {"ip_addresses", IsAddress, kAddressPattern, kAddress},
    {"subnet_masks", IsMask, kMaskPattern, "a mask such as 255.255.255.0"},
    {"gateways", IsAddress, kAddressPattern, kAddress},
    {"dns_servers", IsAddress, kAddressPattern, kAddress},
    {"destination", IsIpv4, kIpv4Pattern, kIpv4},
    {"mask", IsIpv4, kIpv4Pattern, kIpv4},
    {"next_hop", IsIpv4, kIpv4Pattern, kIpv4},
    {"address", IsIpv4, kIpv4Pattern, kIpv4},
    {"user", IsUser, R"(^[^\\@]*$)", "a user without a domain; dns_name and flat_name tell it"},
    {"ous", IsDn, kDnPattern, kDn},
    {"dn", IsDn, kDnPattern, kDn}};

/// A member of a struct, its name in the file, and the codec of its value.
template <class Struct, class Member, class MemberCodec>
struct Field {
  std::string_view name;
  Member Struct::*member;
  const Meaning* meaning;
};

constexpr const Meaning* MeaningOf(std::string_view name) {
  return base::FindIn(kMeanings, [=](const Meaning& meaning) { return meaning.field == name; });
}

void RequireMeaning(const Cursor& at, const std::string& text, const Meaning& meaning) {
  if (!meaning.holds(text)) at.Fail(std::string("expected ") + meaning.description);
}
void RequireMeaning(const Cursor& at, const NullableText& text, const Meaning& meaning) {
  if (text) RequireMeaning(at, *text, meaning);
}
void RequireMeaning(const Cursor& at, const std::vector<std::string>& texts,
                    const Meaning& meaning) {
  for (std::size_t i = 0; i < texts.size(); ++i) RequireMeaning(at.Element(i), texts[i], meaning);
}

template <class Struct, class Member>
constexpr auto Plain(std::string_view name, Member Struct::*member) {
  return Field<Struct, Member, Codec<Member>>{name, member, MeaningOf(name)};
}

template <class MemberCodec, class Struct, class Member>
constexpr auto As(std::string_view name, Member Struct::*member) {
  return Field<Struct, Member, MemberCodec>{name, member, MeaningOf(name)};
}

/// The fields of a struct, in the order of the file.
template <class Struct>
constexpr auto kFields = nullptr;

/// How many members are no field of the file: what a run leaves behind or assumes, and what is
/// known to be none.
template <class Struct>
constexpr std::size_t kLeftOutMembers = 0;
template <>
constexpr std::size_t kLeftOutMembers<Machine> = 8;
template <>
constexpr std::size_t kLeftOutMembers<Fault> = 2;

template <class Struct>
concept Described = !std::same_as<decltype(kFields<Struct>), const std::nullptr_t>;

void RequireObject(const Cursor& at) {
  if (!at.Value().is_object()) at.FailType("an object");
}

/// Refuses an object with a name that is none of `known`.
void RefuseUnknown(const Cursor& at, const std::string& what,
                   std::span<const std::string_view> known) {
  for (const auto& [name, ignored] : at.Value().items()) {
    const bool isKnown = std::find(known.begin(), known.end(), name) != known.end();
    if (!isKnown) at.Field(name).FailUnknown(what, name, known);
  }
}

Json ObjectOf(Json properties) {
  return {
      {"type", "object"}, {"properties", std::move(properties)}, {"additionalProperties", false}};
}

Json OrNull(Json schema) {
  return {{"anyOf", Json::array({std::move(schema), {{"type", "null"}}})}};
}

Json Discarded() { return Json(Json::value_t::discarded); }

template <>
struct Codec<bool> {
  static void Read(const Cursor& at, bool& value) {
    if (!at.Value().is_boolean()) at.FailType("true or false");
    value = at.Value().get<bool>();
  }
  static Json Write(bool value, bool) { return value; }
  static Json Schema() { return {{"type", "boolean"}}; }
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
  static Json Schema() {
    using Limits = std::numeric_limits<Number>;
    return {{"type", "integer"}, {"minimum", Limits::min()}, {"maximum", Limits::max()}};
  }
};

template <>
struct Codec<std::string> {
  static void Read(const Cursor& at, std::string& value) {
    if (!at.Value().is_string()) at.FailType("a text");
    value = at.Value().get<std::string>();
  }
  static Json Write(const std::string& value, bool) { return value; }
  static Json Schema() { return {{"type", "string"}}; }
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
  static Json Schema() { return OrNull(Codec<Value>::Schema()); }
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
  static Json Schema() { return {{"type", "array"}, {"items", Codec<Item>::Schema()}}; }
};

// What must hold beyond the fields themselves; most structs need nothing.
template <class Struct>
void Check(const Cursor&, Struct&) {}

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
    const auto [first, isNew] = seen.emplace(base::Folded(std::invoke(keyOf, items[i])), i);
    if (isNew) continue;
    const Cursor places(at.Field(list));
    const std::string fault = "stands at " + places.Element(first->second).Path() +
                              " already; give each its own " + field;
    const Cursor item(places.Element(i));
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
  const auto hosts = at.FindField("hosts");
  machine.hostsUnknown = hosts && hosts->Value().is_null();
  machine.decryptIsNone = at.FindField("decrypt") && !machine.decrypt;
  machine.directoryIsNone = at.FindField("directory") && machine.domains.empty();
  MakeDefaultsUnique(at, "pnp_device_id", &Adapter::pnpDeviceId, machine.adapters);
  MakeDefaultsUnique(at, "setting_id", &Adapter::settingId, machine.adapters);
  RequireUnique(at, "adapters", "index", machine.adapters,
                [](const Adapter& adapter) { return std::to_string(adapter.index); });
  RequireUnique(at, "services", "name", machine.services, &Service::name);
  RequireUnique(at, "registry", "name", machine.registry,
                [](const RegistryValue& value) { return value.key + '\0' + value.name; });
  RequireUnique(at, "files", "path", machine.files,
                [](const File& file) { return FoldedPath(file.path); });
  RequireUnique(at, "hosts", "name", machine.hosts, &Host::name);
}

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
          if constexpr (requires { RequireMeaning(at, value.*field.member, *field.meaning); }) {
            if (field.meaning != nullptr) {
              RequireMeaning(*place, value.*field.member, *field.meaning);
            }
          }
        });
    if (known != at.Value().size()) RefuseUnknown(at, "field", kNames);
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

  static Json Schema() {
    Json properties = Json::object();
    ForEachField(
        [&]<class Member, class MemberCodec>(const Field<Struct, Member, MemberCodec>& field) {
          Json& property = properties[std::string(field.name)] = MemberCodec::Schema();
          if (field.meaning != nullptr) {
            property["description"] = field.meaning->description;
            // Beside other types it counts for texts only.
            Json& text = property.contains("items") ? property["items"] : property;
            text["pattern"] = field.meaning->pattern;
          }
          Json value = MemberCodec::Write(Struct().*field.member, /*hideSecrets=*/false);
          if (!value.is_discarded()) property["default"] = std::move(value);
        });
    return ObjectOf(std::move(properties));
  }

 private:
  template <class Action>
  static void ForEachField(Action action) {
    static_assert(std::tuple_size_v<decltype(kFields<Struct>)> + kLeftOutMembers<Struct> ==
                      FieldCount<Struct>(),
                  "a member without a field");
    std::apply([&](const auto&... field) { (action(field), ...); }, kFields<Struct>);
  }

  static constexpr auto kNames =
      std::apply([](const auto&... field) { return std::array{field.name...}; }, kFields<Struct>);
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

/// The name of a kind of call.
struct CallText : Codec<std::string> {
  static constexpr auto kNames = [] {
    std::array<std::string_view, std::size(kCallNames) + 1> names{"*"};
    std::copy(kCallNames.begin(), kCallNames.end(), names.begin() + 1);
    return names;
  }();
  static void Read(const Cursor& at, std::string& value) {
    Codec::Read(at, value);
    const bool isKnown = std::find(kNames.begin(), kNames.end(), value) != kNames.end();
    if (!isKnown) at.FailUnknown("call", value, kCallNames);
  }
  static Json Schema() { return {{"enum", kNames}}; }
};

struct HResultCodec {
  static void Read(const Cursor& at, std::optional<platform::HResult>& value) {
    value.reset();
    if (at.Value().is_null()) return;
    constexpr const char* kForm = "a text such as \"0x80041002\"";
    if (!at.Value().is_string()) at.FailType(kForm);
    const auto text = at.Value().get<std::string>();
    const bool isHexadecimal = text.size() > 2 && text.size() <= 10 && base::StartsWith(text, "0x");
    const auto digits =
        isHexadecimal ? base::ParseWhole<std::uint32_t>(text.substr(2), 16) : std::nullopt;
    if (!digits) at.Fail(std::string("no result code; write ") + kForm);
    value = static_cast<platform::HResult>(*digits);
  }
  static Json Write(const std::optional<platform::HResult>& value, bool) {
    return value ? Json(HResultText(*value)) : Discarded();
  }
  static Json Schema() {
    return {{"type", {"string", "null"}}, {"pattern", "^0[xX][0-9A-Fa-f]{1,8}$"}};
  }
};

constexpr char kStartType[] = "start type";
constexpr char kRegistryType[] = "registry type";
constexpr struct {
  const char* name;
  std::uint32_t value;
} kRegistryTypes[] = {{"REG_DWORD", platform::kRegDWord},
                      {"REG_SZ", platform::kRegSz},
                      {"REG_EXPAND_SZ", platform::kRegExpandSz}};

/// One of the names of a table, for the value that belongs to it; `kWhat` says what it names.
template <const auto& kRows, const char* kWhat>
struct Named {
  static void Read(const Cursor& at, auto& value) {
    std::string text;
    Codec<std::string>::Read(at, text);
    std::array<std::string_view, std::size(kRows)> known;
    std::transform(std::begin(kRows), std::end(kRows), known.begin(),
                   [](const auto& row) { return row.name; });
    const auto found = std::find(known.begin(), known.end(), text);
    if (found == known.end()) at.FailUnknown(kWhat, text, known);
    value = kRows[found - known.begin()].value;
  }
  static Json Write(auto value, bool) {
    return base::FindIn(kRows, [=](const auto& row) { return row.value == value; })->name;
  }
  static Json Schema() {
    Json names = Json::array();
    for (const auto& row : kRows) names.push_back(row.name);
    return {{"enum", std::move(names)}};
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
  static Json Schema() { return {{"type", {"integer", "string"}}}; }
};

template <>
struct Codec<Value> {
  static void Read(const Cursor& at, Value& value) {
    const auto& json = at.Value();
    if (json.is_structured()) at.FailType("a text, a number, true, false or null");
    if (json.is_boolean()) value = json.get<bool>();
    if (json.is_string()) value = json.get<std::string>();
    if (!json.is_number()) return;
    auto& number = value.emplace<std::int64_t>();
    Codec<std::int64_t>::Read(at, number);
    if (!std::in_range<std::int32_t>(number) && !std::in_range<std::uint32_t>(number)) {
      at.FailType("a number of 32 bits");
    }
  }
  static Json Write(const Value& value, bool) { return value; }
  static Json Schema() { return {{"type", {"string", "integer", "boolean", "null"}}}; }
};

/// An object whose names are the machine's to choose.
template <class Item>
struct Codec<std::map<std::string, Item>> {
  static void Read(const Cursor& at, std::map<std::string, Item>& items) {
    RequireObject(at);
    items.clear();
    for (const auto& [name, ignored] : at.Value().items()) {
      Codec<Item>::Read(at.Field(name), items[name]);
    }
  }
  static Json Write(const std::map<std::string, Item>& items, bool hideSecrets) {
    Json object = Json::object();
    for (const auto& [name, item] : items) object[name] = Codec<Item>::Write(item, hideSecrets);
    return object;
  }
  static Json Schema() {
    return {{"type", "object"}, {"additionalProperties", Codec<Item>::Schema()}};
  }
};

struct PlainTexts : Codec<std::optional<std::map<std::string, std::string>>> {
  static Json Write(const std::optional<std::map<std::string, std::string>>& value,
                    bool hideSecrets) {
    Json texts = Codec::Write(value, hideSecrets);
    if (!hideSecrets) return texts;
    for (Json& text : texts) text = kHidden;
    return texts;
  }
};

struct OperatingSystem : Codec<std::map<std::string, Value>> {
  static void Read(const Cursor& at, std::map<std::string, Value>& properties) {
    RequireObject(at);
    RefuseUnknown(at, "property", base::kSystemProperties);
    Codec::Read(at, properties);
  }
  static Json Schema() {
    Json schema = Codec::Schema();
    schema["propertyNames"] = {{"enum", base::kSystemProperties}};
    return schema;
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
    RefuseUnknown(at, "field", kKinds);
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
  static Json Schema() {
    Json schema = ObjectOf({{"workgroup", Codec<std::string>::Schema()},
                            {"domain", Codec<DomainMembership>::Schema()}});
    schema["maxProperties"] = 1;
    return schema;
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
    Plain("destination", &PersistentRoute::destination), Plain("mask", &PersistentRoute::mask),
    Plain("next_hop", &PersistentRoute::nextHop), Plain("metric", &PersistentRoute::metric)};

template <>
constexpr auto kFields<Service> =
    std::tuple{Plain("name", &Service::name),
               As<Named<base::kStartTypes, kStartType>>("start", &Service::start),
               Plain("running", &Service::running)};

template <>
constexpr auto kFields<RegistryValue> =
    std::tuple{Plain("key", &RegistryValue::key), Plain("name", &RegistryValue::name),
               As<Named<kRegistryTypes, kRegistryType>>("type", &RegistryValue::type),
               Plain("data", &RegistryValue::data)};

template <>
constexpr auto kFields<File> =
    std::tuple{Plain("path", &File::path), As<FileText>("text", &File::text)};

template <>
constexpr auto kFields<Host> =
    std::tuple{Plain("name", &Host::name), Plain("address", &Host::address)};

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

/// Null where it is not known which names resolve.
struct Hosts : Codec<std::vector<Host>> {
  static void Read(const Cursor& at, std::vector<Host>& hosts) {
    if (!at.Value().is_null()) Codec::Read(at, hosts);
  }
  static Json Schema() { return OrNull(Codec::Schema()); }
};

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
  static Json Schema() { return OrNull(Codec<Directory>::Schema()); }
};

template <>
constexpr auto kFields<Fault> = std::tuple{As<CallText>("call", &Fault::call),
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
               As<Hosts>("hosts", &Machine::hosts),
               As<PlainTexts>("decrypt", &Machine::decrypt),
               As<DirectoryCodec>("directory", &Machine::domains),
               Plain("faults", &Machine::faults)};

}  // namespace

const char* ExpectedInstead(std::string_view field, const std::string& text) {
  const Meaning* const meaning = MeaningOf(field);
  return meaning == nullptr || meaning->holds(text) ? nullptr : meaning->description;
}

std::vector<DirectoryDomain> ParseDirectory(const std::string& text, const std::string& fileName,
                                            const Encoder& encode) {
  const nlohmann::json document = ParseDocument(text, fileName, encode);
  Directory directory;
  Codec<Directory>::Read(Cursor(document, fileName), directory);
  return std::move(directory.domains);
}

Machine ParseMachine(const std::string& text, const std::string& fileName, const Encoder& encode) {
  nlohmann::json document = ParseDocument(text, fileName, encode);
  const Cursor root(document, fileName);
  RequireObject(root);
  if (!document.contains("schema")) root.Fail("no schema; add \"schema\": 1");
  int schema = 0;
  Codec<int>::Read(root.Field("schema"), schema);
  if (schema != kSchema) root.Field("schema").Fail("this version reads schema 1 only; write 1");
  if (const auto place = root.FindField("$schema")) {
    std::string ignored;
    Codec<std::string>::Read(*place, ignored);
  }
  document.erase("schema");
  document.erase("$schema");

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
  if (machine.hostsUnknown) document["hosts"] = nullptr;
  if (!machine.KnowsDecrypt()) document.erase("decrypt");
  if (!machine.KnowsDirectory()) document.erase("directory");
  for (Json& value : document["registry"]) {
    if (hideSecrets && NamesPassword(value.value("name", "")) && value["data"].is_string()) {
      value["data"] = kHidden;
    }
  }
  return document;
}

Json MachineSchema() {
  Json schema = Codec<Machine>::Schema();
  Json& properties = schema["properties"];
  properties["schema"] = {{"const", kSchema}};
  properties["$schema"] = Codec<std::string>::Schema();
  schema["required"] = Json::array({"schema"});
  for (const char* unknown : {"decrypt", "directory"}) properties[unknown].erase("default");
  Json& fault = properties["faults"]["items"]["properties"];
  for (const char* positive : {"error", "nth"}) fault[positive]["anyOf"][0]["minimum"] = 1;
  return schema;
}

void to_json(Json& json, const Value& value) {
  if (const auto* fields = std::get_if<Fields>(&value)) {
    json = Json::object();
    for (const auto& [name, item] : *fields) json[name] = item;
  } else {
    std::visit([&](const auto& own) { json = own; }, value);
  }
}

void to_json(Json& entry, const Change& change) {
  entry = {{"call", change.call}};
  for (const auto& [name, value] : change.fields) entry[name] = value;
}

}  // namespace simulated
