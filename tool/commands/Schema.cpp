#include "tool/commands/Schema.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "platform/simulated/MachineFile.h"
#include "tool/cli/Command.h"
#include "tool/io/EmbeddedText.h"
#include "tool/io/JsonText.h"
#include "tool/io/ToolError.h"

namespace tool {
namespace {

using simulated::Json;

constexpr char kSchemaFooter[] =
    R"(The schemas use draft 2020-12. Editors check and complete a machine file that names its
schema in "$schema".

Examples:
  orvanta-config schema machine >machine.schema.json
  orvanta-config schema plan)";

Json Parsed(const std::string& name) {
  return ParsedJson(EmbeddedText("tool/schemas/" + name + ".json"));
}

}  // namespace

Command SchemaCommand(std::string& name) {
  return {"schema",
          "write the JSON Schema of machine files or of a command's output",
          kSchemaFooter,
          {{"NAME", &name, "machine|plan|simulate|check|verify|fleet", "what the schema describes",
            /*isRequired=*/true}}};
}

int Schema(const std::string& name, const Streams& streams) {
  Json document{{"$schema", "https://json-schema.org/draft/2020-12/schema"}};
  document.update(name == "machine" ? simulated::MachineSchema() : Parsed(name));
  if (name == "plan" || name == "simulate") document["$defs"].update(Parsed("changes"));
  if (name == "simulate") document["$defs"]["machine"] = simulated::MachineSchema();
  streams.out << PrintedJson(document);
  return kDone;
}

}  // namespace tool
