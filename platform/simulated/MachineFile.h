// The machine file: a whole simulated computer as one JSON document, and what of it may be shown.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/simulated/Json.h"
#include "platform/simulated/Machine.h"

namespace simulated {

/// A machine file that cannot be used. `what()` is one line: the file, the place in it (line and
/// column, or a JSON path such as `$.adapters[1].index`), the fault and the mend.
class MachineFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Turns a text of the file, which is UTF-8, into the machine's bytes; nothing when it cannot.
using Encoder = std::function<std::optional<std::string>(std::string_view text)>;

/// Reads a machine file. `fileName` is only named in errors. Without `encode` texts stay UTF-8.
/// Scalars that are left out take their defaults, lists that are left out are empty. Throws
/// `MachineFileError`.
Machine ParseMachine(const std::string& text, const std::string& fileName,
                     const Encoder& encode = nullptr);

/// The same for a document that is a machine file's `directory`.
std::vector<DirectoryDomain> ParseDirectory(const std::string& text, const std::string& fileName,
                                            const Encoder& encode = nullptr);

/// What a field of machine files ("mac_address", of a list each item) should hold when it cannot
/// hold this text: "a MAC address such as ..."; null when it can.
const char* ExpectedInstead(std::string_view field, const std::string& text);

/// The machine file that `ParseMachine` reads back as this machine, secrets included; its journal
/// is not part of it. Bytes that are no UTF-8 are replaced. With `hideSecrets` passwords of
/// accounts, deciphered texts and what is secret in files read "***".
std::string PrintMachine(const Machine& machine, bool hideSecrets = false);

/// The same document.
Json ToJson(const Machine& machine, bool hideSecrets);

/// The JSON Schema (draft 2020-12) of machine files, without its "$schema".
Json MachineSchema();

/// An entry of the journal, as it is; also what `Json(change)` calls.
void to_json(Json& entry, const Change& change);
void to_json(Json& json, const Value& value);

}  // namespace simulated
