#include "tool/roundtrip/Roundtrip.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/Utf8.h"
#include "platform/simulated/MachineFile.h"
#include "platform/simulated/Secrets.h"
#include "tool/io/JsonText.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"
#include "tool/machine/ChangeText.h"
#include "tool/machine/MachineDifference.h"
#include "tool/machine/MachineDocument.h"
#include "tool/roundtrip/ImageRestore.h"
#include "tool/roundtrip/RestoredSettings.h"

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

// ---- JSON ---------------------------------------------------------------------------------------

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

// ---- Text ---------------------------------------------------------------------------------------

std::string CaptureText(const ImageRestore& image, const Style& style) {
  const std::string failure = CaptureFailure(image);
  if (!failure.empty()) return style.Bad("PrepForImage failed: " + Printable(failure));
  std::set<std::pair<std::string, std::string>> entries;
  for (const simulated::Change& change : image.capture.changes) {
    if (change.call != "file.write" || !Describe(change).refusal.empty()) continue;
    entries.emplace(change["section"].Text(), change["key"].Text());
  }
  if (entries.empty() || !image.captured) return style.Bad("PrepForImage recorded nothing");
  return "PrepForImage wrote " + std::to_string(entries.size()) + " entries into " +
         Printable(image.captured->path);
}

/// "Configure: file handed over, Reboot, Success".
std::string RestoreText(const ImageRestore& image, const Style& style) {
  const std::vector<Delivery>& deliveries = image.restore.deliveries;
  std::string text = "Configure: ";
  if (deliveries.front().posted.empty()) text += style.Bad("no file handed over");
  for (const Delivery& delivery : deliveries) {
    const std::string result = Printable(delivery.Result());
    if (&delivery != &deliveries.front() || delivery.posted.empty()) text += ", ";
    if (!delivery.Succeeded()) {
      text += style.Bad((result.empty() ? "not handled" : result) + " (" +
                        Printable(delivery.Failure()) + ")");
    } else {
      text += result.empty() ? "file handed over" : result;
    }
  }
  return text;
}

std::string Colored(const RestoredSetting& setting, const std::string& text, const Style& style) {
  if (!setting.IsAsBefore()) return style.Bad(text);
  return setting.outcome == Outcome::kRestored ? style.Good(text) : style.Dim(text);
}

std::string ValueText(const RestoredSetting& setting) {
  std::string before = Printable(ListText(setting.before));
  if (setting.outcome == Outcome::kGiven) return before + " -> DHCP gives it again";
  if (setting.IsAsBefore()) return before;
  return before + " -> " + Printable(ListText(setting.after));
}

std::string SettingsTable(const std::vector<RestoredSetting>& settings, const Style& style) {
  std::string text = "\n" + style.Heading("Settings, before -> after") + "\n";
  std::size_t outcomeWidth = 0;
  for (const RestoredSetting& setting : settings) {
    outcomeWidth = std::max(outcomeWidth, OutcomeName(setting.outcome).size());
  }
  for (auto first = settings.begin(); first != settings.end();) {
    const auto last = std::find_if(
        first, settings.end(), [&](const auto& other) { return other.subject != first->subject; });
    std::size_t nameWidth = 0;
    for (auto it = first; it != last; ++it)
      nameWidth = std::max(nameWidth, base::Width(it->setting));
    text += "  " + Printable(first->subject) + "\n";
    for (; first != last; ++first) {
      const std::string outcome = Padded(OutcomeName(first->outcome), outcomeWidth);
      text += "    " + Padded(Printable(first->setting), nameWidth) + "  " +
              Colored(*first, outcome, style) + "  " + ValueText(*first) + "\n";
      // One reason stands below all the settings that share it.
      const auto next = first + 1;
      const bool isShared = next != last && next->reason == first->reason;
      if (!first->reason.empty() && !isShared) {
        text += "      " + style.Notice(Printable(first->reason)) + "\n";
      }
    }
  }
  return text;
}

std::string Refused(const ImageRestore& image, const Style& style) {
  std::string text;
  const auto add = [&](const Delivery& delivery) {
    for (const simulated::Change& change : delivery.changes) {
      const ChangeText told = Describe(change);
      if (told.refusal.empty()) continue;
      text += "  " + told.words + "  " + style.Bad("refused: " + told.refusal) + "\n";
    }
  };
  add(image.capture);
  for (const Delivery& delivery : image.restore.deliveries) add(delivery);
  return text.empty() ? text : "\n" + style.Heading("Refused by the machine") + "\n" + text;
}

std::string Sum(const ImageRestore& image, const std::vector<RestoredSetting>& settings,
                const Style& style) {
  const auto lost = std::count_if(settings.begin(), settings.end(),
                                  [](const auto& setting) { return !setting.IsAsBefore(); });
  const std::string all = std::to_string(settings.size());
  if (lost > 0) {
    return style.Bad(std::to_string(lost) + " of " + all + " settings did not come back.");
  }
  return image.Succeeded() ? style.Good("Everything came back.")
                           : style.Bad("Everything came back, but a message failed.");
}

/// The two messages, every setting with what became of it, what the machine refused, and the sum.
std::string ReportText(const std::string& machineText, const ImageRestore& image,
                       const std::vector<RestoredSetting>& settings, const Style& style) {
  return Rows({{"Machine", machineText},
               {"Capture", CaptureText(image, style)},
               {"Restore", RestoreText(image, style)}},
              "") +
         SettingsTable(settings, style) + Refused(image, style) + "\n" +
         Sum(image, settings, style) + "\n";
}

}  // namespace

Command RoundtripCommand(MachineOptions& options) {
  return {"roundtrip", "capture a simulated machine's settings and restore them from its image",
          kFooter, MachineOptionRows(options)};
}

int Roundtrip(const MachineOptions& options, const Streams& streams) {
  simulated::Machine machine = LoadMachine(options.machineFile, streams);
  std::optional<PrivateFile> saved = OpenSavedMachine(options);

  ImageRestore image = RestoreFromImage(std::move(machine));
  if (saved) saved->Commit(PrintedMachine(image.after));
  const std::string machineText = MachineText(MachineName(options.machineFile), image.before);
  PutIntoUtf8(image);
  const std::vector<RestoredSetting> settings = RestoredSettings(image);
  const bool everything =
      image.Succeeded() && std::all_of(settings.begin(), settings.end(),
                                       [](const auto& setting) { return setting.IsAsBefore(); });
  if (options.json) {
    streams.out << PrintedJson(AsJson(image, settings, everything));
  } else {
    const Style style(streams.color && !options.noColor);
    streams.out << ReportText(machineText, image, settings, style);
  }
  return everything ? kDone : kFailed;
}

}  // namespace tool
