// JSON documents as texts. Here alone they are parsed and printed, which takes long to compile.
#pragma once

#include <string>
#include <string_view>

#include "platform/simulated/Json.h"

namespace tool {

/// A document whose texts and keys are bytes of the code page, as UTF-8.
simulated::Json DecodedJson(const simulated::Json& bytes);

/// The document of UTF-8 texts as it is printed, on one line or indented, with a line feed at its
/// end. What is not UTF-8 in it, as the name of a file may be, is replaced.
std::string PrintedJson(const simulated::Json& document, bool indented = true);

/// Throws nlohmann::json::exception.
simulated::Json ParsedJson(std::string_view text);

}  // namespace tool
