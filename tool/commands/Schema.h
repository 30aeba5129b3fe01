// The command `schema`: the JSON Schemas of machine files and of the other commands' output.
#pragma once

#include <string>

#include "tool/cli/Command.h"
#include "tool/io/Streams.h"

namespace tool {

/// The command; the parser stores in `name` what the schema is of.
Command SchemaCommand(std::string& name);

/// Writes the schema. Returns the exit code.
int Schema(const std::string& name, const Streams& streams);

}  // namespace tool
