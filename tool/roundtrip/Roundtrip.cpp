#include "tool/roundtrip/Roundtrip.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/simulated/MachineFile.h"
#include "platform/simulated/Secrets.h"
#include "tool/io/JsonText.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineDifference.h"
#include "tool/machine/MachineDocument.h"
#include "tool/roundtrip/ImageRestore.h"
#include "tool/roundtrip/RestoredSettings.h"
#include "tool/roundtrip/RoundtripReport.h"

namespace tool {
namespace {

using simulated::Json;

constexpr char kFooter[] =
    R"(An image of the machine is prepared, all adapters are reset to DHCP, and Configure
restores them from the recorded file, restarts included. Addresses, gateways and DNS
settings that DHCP provides again count as restored.

Exit codes:
  0  everything was restored
  1  a setting was not restored, or a message failed
  2  an argument or a file cannot be used; one line on standard error says why

Examples:
  orvanta-config roundtrip --machine my-pc.json
  orvanta-config roundtrip --machine my-pc.json --json)";

Json TextOrNull(const std::string& text) { return text.empty() ? Json() : Json(text); }

Json AsJson(const RestoredSetting& setting) {
  return {{"subject", setting.subject},
          {"adapter", setting.adapter ? Json(*setting.adapter) : Json()},
          {"setting", setting.setting},
          {"before", setting.before},
          {"after", setting.after},
          {"outcome", OutcomeName(setting.outcome)},
          {"recorded", TextOrNull(setting.recorded)},
          {"reason", TextOrNull(setting.reason)}};
}

Json AsJson(const ImageRestore& image, const std::vector<RestoredSetting>& settings,
            bool everything) {
  Json json;
  json["schema"] = 1;
  json["everything_came_back"] = everything;
  Json& list = json["settings"] = Json::array();
  for (const RestoredSetting& setting : settings) list.push_back(AsJson(setting));
  Json& captured = json["captured"] = nullptr;
  if (image.captured) {
    captured = {{"path", image.captured->path},
                {"text", simulated::RedactedFile(image.captured->text)}};
  }
  json["capture"] = ToJson(image.capture);
  Json& restore = json["restore"] = Json::array();
  for (const Delivery& delivery : image.restore.deliveries) restore.push_back(ToJson(delivery));
  json["machine"] = simulated::ToJson(image.after, /*hideSecrets=*/true);
  return json;
}

}  // namespace

Command RoundtripCommand(MachineOptions& options) {
  return {"roundtrip", "capture a simulated machine's settings and restore them from its image",
          kFooter, MachineOptionRows(options)};
}

int Roundtrip(const MachineOptions& options, const Streams& streams) {
  simulated::Machine machine = LoadMachine(options);
  std::optional<PrivateFile> saved = OpenSavedMachine(options);

  ImageRestore image = RestoreFromImage(std::move(machine));
  if (saved) saved->Commit(PrintedMachine(image.after));
  const std::string machineText =
      MachineText(options.machineFile.value_or("built-in example"), image.before);
  PutIntoUtf8(image);
  const std::vector<RestoredSetting> settings = RestoredSettings(image);
  const bool everything =
      image.Succeeded() && std::all_of(settings.begin(), settings.end(),
                                       [](const auto& setting) { return setting.IsAsBefore(); });
  if (options.json) {
    streams.out << PrintedJson(AsJson(image, settings, everything));
  } else {
    const Style style(streams.color && !options.noColor);
    streams.out << RoundtripReport(machineText, image, settings, style);
  }
  return everything ? kDone : kFailed;
}

}  // namespace tool
