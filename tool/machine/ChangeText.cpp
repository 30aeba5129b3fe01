#include "tool/machine/ChangeText.h"

#include <cstdint>
#include <iterator>

#include "tool/io/Text.h"

namespace tool {
namespace {

using simulated::Json;

std::string Value(const Json& value) {
  if (value.is_string()) return Printable(value.get_ref<const std::string&>());
  if (value.is_null()) return "nothing";
  if (!value.is_array()) {
    return Printable(value.dump(-1, ' ', false, Json::error_handler_t::replace));
  }
  std::string list;
  for (const Json& item : value) list += (list.empty() ? "" : ", ") + Value(item);
  return list.empty() ? "nothing" : list;
}

std::string Field(const Json& object, const char* name) {
  const auto field = object.find(name);
  return field != object.end() ? Value(*field) : "nothing";
}

/// The fields after the first `skip` ones, for example "(A=1, B=2)".
std::string Fields(const Json& object, std::ptrdiff_t skip) {
  std::string list;
  for (auto field = std::next(object.begin(), skip); field != object.end(); ++field) {
    list += (list.empty() ? "" : ", ") + Printable(field.key()) + "=" + Value(*field);
  }
  return "(" + list + ")";
}

std::string Adapter(const Json& change) {
  const std::string path = Field(change, "path");
  const std::size_t index = path.rfind(".Index=");
  return index == std::string::npos ? path : "adapter " + path.substr(index + 7);
}

std::string As(const Json& arguments) {
  const auto user = arguments.find("UserName");
  return user == arguments.end() || user->is_null() ? "" : " as " + Value(*user);
}

std::string Addresses(const Json& arguments) {
  const Json none = Json::array();
  const auto list = [&](const char* name) {
    const auto field = arguments.find(name);
    return field != arguments.end() && field->is_array() ? *field : none;
  };
  const Json addresses = list("IPAddress");
  const Json masks = list("SubNetMask");
  if (addresses.size() != masks.size()) return Value(addresses) + " with masks " + Value(masks);
  std::string text;
  for (std::size_t i = 0; i < addresses.size(); ++i) {
    text += (text.empty() ? "" : ", ") + Value(addresses[i]) + "/" + Value(masks[i]);
  }
  return text.empty() ? "none" : text;
}

std::string Join(const Json& arguments) {
  const auto options = arguments.find("FJoinOptions");
  const bool number = options != arguments.end() && options->is_number_integer();
  const std::int64_t bits = number ? options->get<std::int64_t>() : 0;
  const std::string name = Field(arguments, "Name");
  if ((bits & 1) == 0) return "join the workgroup " + name + As(arguments);
  std::string text = "join the domain " + name + As(arguments);
  const auto unit = arguments.find("AccountOU");
  if (unit != arguments.end() && !unit->is_null()) text += " in " + Value(*unit);
  return (bits & 2) != 0 ? text + ", making the computer account" : text;
}

std::string Method(const Json& change) {
  const std::string method = Field(change, "method");
  const auto given = change.find("arguments");
  const Json arguments = given != change.end() && given->is_object() ? *given : Json::object();
  if (method == "EnableDHCP") return Adapter(change) + ": turn DHCP on";
  if (method == "EnableStatic") return Adapter(change) + ": addresses " + Addresses(arguments);
  if (method == "SetGateways") {
    return Adapter(change) + ": gateways " + Field(arguments, "DefaultIPGateway");
  }
  if (method == "SetDNSServerSearchOrder") {
    return Adapter(change) + ": DNS servers " +
           (arguments.contains("DNSServerSearchOrder") ? Field(arguments, "DNSServerSearchOrder")
                                                       : "from DHCP");
  }
  if (method == "SetDNSSuffixSearchOrder") {
    return "every adapter: DNS suffixes " + Field(arguments, "DNSDomainSuffixSearchOrder");
  }
  if (method == "Rename")
    return "rename the computer to " + Field(arguments, "Name") + As(arguments);
  if (method == "JoinDomainOrWorkgroup") return Join(arguments);
  if (method == "UnjoinDomainOrWorkgroup") return "leave the domain" + As(arguments);
  return method + Fields(arguments, 0) + " on " + Field(change, "path");
}

std::string Pause(const Json& change) {
  const auto time = change.find("milliseconds");
  if (time == change.end() || !time->is_number_integer()) return "pause";
  const auto milliseconds = time->get<std::uint64_t>();
  return milliseconds % 1000 == 0 ? "pause " + std::to_string(milliseconds / 1000) + " s"
                                  : "pause " + std::to_string(milliseconds) + " ms";
}

std::string Words(const Json& change) {
  const std::string call = Field(change, "call");
  const auto field = [&](const char* name) { return Field(change, name); };
  const auto move = [&] { return field("source") + " to " + field("destination"); };
  if (call == "wmi.method") return Method(change);
  if (call == "sleep") return Pause(change);
  if (call == "process.run") return "run " + field("command");
  if (call == "service.start_type") return "service " + field("service") + ": " + field("start");
  if (call == "service.start") return "service " + field("service") + ": start it";
  if (call == "registry.set") {
    return "registry: set " + field("key") + "\\" + field("name") + " to " + field("data");
  }
  if (call == "registry.delete") {
    return "registry: delete " + field("key") + "\\" + field("name");
  }
  if (call == "file.move") return "move " + move();
  if (call == "file.copy") return "copy " + move();
  if (call == "file.delete") return "delete " + field("path");
  if (call == "file.write") {
    return "write " + field("path") + ": [" + field("section") + "] " + field("key") + "=" +
           field("value");
  }
  if (call == "directory.move") return "directory: move " + move();
  return call + Fields(change, 1);
}

/// What the usual codes mean; those below 100 are the network methods' own.
constexpr struct {
  std::int64_t code;
  const char* meaning;
} kMeanings[] = {{5, "access denied"},
                 {32, "in use"},
                 {66, "invalid address or mask"},
                 {68, "invalid or unequal lists"},
                 {71, "gateway outside the adapter's subnets"},
                 {84, "DHCP is on"},
                 {1326, "wrong user or password"},
                 {1332, "no account for the computer"},
                 {1355, "no such domain"}};

std::string Meaning(const Json& code) {
  for (const auto& known : kMeanings) {
    if (code == known.code) return std::string(" (") + known.meaning + ")";
  }
  return {};
}

/// What an answer says that is no refusal; empty for plain success.
std::string Note(const Json& change) {
  const std::string call = Field(change, "call");
  const std::string result = Field(change, "result");
  if (call == "wmi.method" && result == "1") return "takes effect at the restart";
  // Starting what runs already is refused by the system, and as good.
  if (call == "service.start" && result == "1056") return "runs already";
  return {};
}

std::string Refusal(const Json& change) {
  if (const auto hresult = change.find("hresult"); hresult != change.end()) {
    return Value(*hresult);
  }
  if (const auto error = change.find("error"); error != change.end()) {
    return "error " + Value(*error) + Meaning(*error);
  }
  const auto result = change.find("result");
  if (result == change.end() || *result == 0) return {};
  if (!Note(change).empty()) return {};
  if (Field(change, "call") == "process.run") return "exit code " + Value(*result);
  return "result " + Value(*result) + Meaning(*result);
}

}  // namespace

ChangeText Describe(const Json& change) {
  ChangeText text{Words(change), Refusal(change), {}};
  if (text.refusal.empty()) text.note = Note(change);
  return text;
}

}  // namespace tool
