// Documents of the source tree that are built into the tool.
#pragma once

#include <string_view>

namespace tool {

/// The text of a document by its path, "docs/findings.md" or one of tool/schemas/; empty for any
/// other. Its source is made by the build.
std::string_view EmbeddedText(std::string_view document);

}  // namespace tool
