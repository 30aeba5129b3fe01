// A machine as JSON: its texts are bytes of the code page on the machine and UTF-8 in the document.
#pragma once

#include <string>
#include <vector>

#include "platform/simulated/Json.h"
#include "platform/simulated/Machine.h"

namespace tool {

/// Throws ToolError; a text that the code page cannot hold is refused with its place.
simulated::Machine ReadMachine(const std::string& text, const std::string& fileName);

/// The same of a document that is a machine file's `directory`.
std::vector<simulated::DirectoryDomain> ReadDirectory(const std::string& text,
                                                      const std::string& fileName);

/// The machine file. With `hideSecrets` as it may be shown.
std::string PrintedMachine(const simulated::Machine& machine, bool hideSecrets = false);

/// The same document, secrets hidden.
simulated::Json ShownMachine(const simulated::Machine& machine);

/// The machine with UTF-8 texts, to be compared with what is shown; without its journal.
simulated::Machine ToUtf8(const simulated::Machine& machine);

}  // namespace tool
