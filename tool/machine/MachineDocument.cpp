#include "tool/machine/MachineDocument.h"

#include <nlohmann/json.hpp>

#include "platform/simulated/MachineFile.h"
#include "tool/io/CodePage.h"
#include "tool/io/JsonText.h"
#include "tool/io/ToolError.h"

namespace tool {

using simulated::Machine;

namespace {

template <class Parse>
auto Read(Parse parse, const std::string& text, const std::string& fileName) {
  try {
    return parse(text, fileName, FromUtf8);
  } catch (const simulated::MachineFileError& error) {
    throw ToolError(error.what());
  }
}

}  // namespace

Machine ReadMachine(const std::string& text, const std::string& fileName) {
  return Read(simulated::ParseMachine, text, fileName);
}

std::vector<simulated::DirectoryDomain> ReadDirectory(const std::string& text,
                                                      const std::string& fileName) {
  return Read(simulated::ParseDirectory, text, fileName);
}

std::string PrintedMachine(const Machine& machine, bool hideSecrets) {
  return PrintedJson(DecodedJson(simulated::ToJson(machine, hideSecrets)));
}

simulated::Json ShownMachine(const Machine& machine) {
  return DecodedJson(simulated::ToJson(machine, /*hideSecrets=*/true));
}

Machine ToUtf8(const Machine& machine) {
  return simulated::ParseMachine(PrintedMachine(machine), "machine");
}

}  // namespace tool
