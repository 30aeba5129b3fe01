#include "tool/machine/ChangeText.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "base/FindIn.h"
#include "tool/explain/ErrorNumbers.h"
#include "tool/io/Text.h"

namespace tool {
namespace {

using simulated::Change;
using simulated::Value;

constexpr char kAdapterClass[] = "Win32_NetworkAdapterConfiguration";

std::string ValueText(const Value& value);

/// Named values, for example "(A=1, B=2)".
std::string FieldsText(const simulated::Fields& fields) {
  std::string list;
  for (const auto& [name, value] : fields) {
    list += (list.empty() ? "" : ", ") + Printable(name) + "=" + ValueText(value);
  }
  return "(" + list + ")";
}

std::string ValueText(const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return Printable(*text);
  if (const auto* fields = std::get_if<simulated::Fields>(&value)) return FieldsText(*fields);
  std::string list;
  if (const auto* items = std::get_if<std::vector<std::string>>(&value)) {
    for (const std::string& item : *items) list += (list.empty() ? "" : ", ") + Printable(item);
  }
  return list.empty() ? "nothing" : list;
}

std::string AdapterOf(const Change& change) {
  const std::string path = ValueText(change["path"]);
  const std::size_t index = path.rfind(".Index=");
  return index == std::string::npos ? path : "adapter " + path.substr(index + 7);
}

std::string As(const Value& arguments) {
  const Value& user = arguments["UserName"];
  return user.IsNull() ? "" : " as " + ValueText(user);
}

std::string Addresses(const Value& arguments) {
  const auto* addresses = std::get_if<std::vector<std::string>>(&arguments["IPAddress"]);
  const auto* masks = std::get_if<std::vector<std::string>>(&arguments["SubNetMask"]);
  if (addresses == nullptr || masks == nullptr || addresses->size() != masks->size()) {
    return ValueText(arguments["IPAddress"]) + " with masks " + ValueText(arguments["SubNetMask"]);
  }
  std::string text;
  for (std::size_t i = 0; i < addresses->size(); ++i) {
    text += (text.empty() ? "" : ", ") + Printable((*addresses)[i] + "/" + (*masks)[i]);
  }
  return text.empty() ? "none" : text;
}

std::string Join(const Value& arguments) {
  const auto* options = std::get_if<std::int64_t>(&arguments["FJoinOptions"]);
  const std::int64_t bits = options != nullptr ? *options : 0;
  const std::string name = ValueText(arguments["Name"]);
  if ((bits & 1) == 0) return "join the workgroup " + name + As(arguments);
  std::string text = "join the domain " + name + As(arguments);
  const Value& unit = arguments["AccountOU"];
  if (!unit.IsNull()) text += " in " + ValueText(unit);
  return (bits & 2) != 0 ? text + ", making the computer account" : text;
}

std::string Pause(const Change& change) {
  const auto* milliseconds = std::get_if<std::int64_t>(&change["milliseconds"]);
  if (milliseconds == nullptr) return "pause";
  return *milliseconds % 1000 == 0 ? "pause " + std::to_string(*milliseconds / 1000) + " s"
                                   : "pause " + std::to_string(*milliseconds) + " ms";
}

/// What a change is told as, by its call or its method; "{name}" stands for a field or an argument.
constexpr struct {
  std::string_view name;
  std::string_view words;
} kWords[] = {
    {"EnableDHCP", "{adapter}: turn DHCP on"},
    {"EnableStatic", "{adapter}: addresses {addresses}"},
    {"SetGateways", "{adapter}: gateways {DefaultIPGateway}"},
    {"SetDNSServerSearchOrder", "{adapter}: DNS servers {DNSServerSearchOrder}"},
    {"SetDNSSuffixSearchOrder", "every adapter: DNS suffixes {DNSDomainSuffixSearchOrder}"},
    {"Rename", "rename the computer to {Name}{as}"},
    {"JoinDomainOrWorkgroup", "{join}"},
    {"UnjoinDomainOrWorkgroup", "leave the domain{as}"},
    {"sleep", "{pause}"},
    {"process.run", "run {command}"},
    {"service.start_type", "service {service}: {start}"},
    {"service.start", "service {service}: start it"},
    {"registry.set", "registry: set {key}\\{name} to {data}"},
    {"registry.delete", "registry: delete {key}\\{name}"},
    {"file.move", "move {source} to {destination}"},
    {"file.copy", "copy {source} to {destination}"},
    {"file.delete", "delete {path}"},
    {"file.write", "write {path}: [{section}] {key}={value}"},
    {"directory.move", "directory: move {source} to {destination}"}};

std::string Part(std::string_view name, const Change& change) {
  const Value& arguments = change["arguments"];
  if (name == "adapter") return AdapterOf(change);
  if (name == "addresses") return Addresses(arguments);
  if (name == "as") return As(arguments);
  if (name == "join") return Join(arguments);
  if (name == "pause") return Pause(change);
  const Value& value = change[name].IsNull() ? arguments[name] : change[name];
  return name == "DNSServerSearchOrder" && value.IsNull() ? "from DHCP" : ValueText(value);
}

std::string Words(const Change& change) {
  const bool isMethod = change.call == "wmi.method";
  const std::string name = isMethod ? ValueText(change["method"]) : change.call;
  const auto* row = base::FindIn(kWords, [&](const auto& words) { return words.name == name; });
  if (row == nullptr) {
    return isMethod ? name + ValueText(change["arguments"]) + " on " + ValueText(change["path"])
                    : name + FieldsText(change.fields);
  }
  std::string text;
  for (std::string_view rest = row->words; !rest.empty();) {
    const std::size_t open = std::min(rest.find('{'), rest.size());
    const std::size_t close = std::min(rest.find('}'), rest.size());
    text += rest.substr(0, open);
    if (open < close) text += Part(rest.substr(open + 1, close - open - 1), change);
    rest.remove_prefix(std::min(close + 1, rest.size()));
  }
  return text;
}

/// The code with its meaning: "1326 (wrong user or password)".
std::string CodeText(const Value& code, bool isOfAdapter = false) {
  const std::string text = ValueText(code);
  const auto number = explain::ParseNumber(text);
  const explain::Reading* const reading =
      number ? explain::FindAnswer(*number, isOfAdapter) : nullptr;
  return reading == nullptr ? text : text + " (" + reading->meaning + ")";
}

/// What an answer says that is no refusal; empty for plain success.
std::string Note(const Change& change) {
  const std::string result = ValueText(change["result"]);
  if (change.call == "wmi.method" && result == "1") return "takes effect at the restart";
  // Starting what runs already is refused by the system, and as good.
  if (change.call == "service.start" && result == "1056") return "runs already";
  return {};
}

std::string Refusal(const Change& change) {
  if (const Value& hresult = change["hresult"]; !hresult.IsNull()) return CodeText(hresult);
  if (const Value& error = change["error"]; !error.IsNull()) return "error " + CodeText(error);
  const Value& result = change["result"];
  if (result.IsNull() || result == Value(0) || !Note(change).empty()) return {};
  if (change.call == "process.run") return "exit code " + ValueText(result);
  const bool isOfAdapter = ValueText(change["path"]).starts_with(kAdapterClass);
  return "result " + CodeText(result, isOfAdapter);
}

}  // namespace

ChangeText Describe(const Change& change) {
  ChangeText text{Words(change), Refusal(change), {}};
  if (text.refusal.empty()) text.note = Note(change);
  return text;
}

}  // namespace tool
