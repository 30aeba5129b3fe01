#include "tool/io/JsonText.h"

#include <nlohmann/json.hpp>

#include "tool/io/CodePage.h"

namespace tool {

using simulated::Json;

Json DecodedJson(const Json& bytes) {
  if (bytes.is_string()) return ToUtf8(bytes.get_ref<const std::string&>());
  if (!bytes.is_structured()) return bytes;
  Json text = bytes.is_array() ? Json::array() : Json::object();
  for (const auto& [key, value] : bytes.items()) {
    if (bytes.is_array()) {
      text.push_back(DecodedJson(value));
    } else {
      text[ToUtf8(key)] = DecodedJson(value);
    }
  }
  return text;
}

std::string PrintedJson(const Json& document, bool indented) {
  return document.dump(indented ? 2 : -1, ' ', /*ensure_ascii=*/false,
                       Json::error_handler_t::replace) +
         "\n";
}

Json ParsedJson(std::string_view text) { return Json::parse(text); }

}  // namespace tool
