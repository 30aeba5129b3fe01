#include "tool/roundtrip/Roundtrip.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/Pieces.h"
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

Json AsJson(const ImageRestore& image, const std::vector<RestoredSetting>& settings,
            bool everything) {
  Json list = Json::array();
  for (const RestoredSetting& setting : settings) {
    list.push_back({{"subject", setting.subject},
                    {"adapter", setting.adapter ? Json(*setting.adapter) : Json()},
                    {"setting", setting.setting},
                    {"before", setting.before},
                    {"after", setting.after},
                    {"outcome", OutcomeName(setting.outcome)},
                    {"recorded", TextOrNull(setting.recorded)},
                    {"reason", TextOrNull(setting.reason)}});
  }
  Json captured;
  if (image.captured) {
    captured = {{"path", image.captured->path},
                {"text", simulated::RedactedFile(image.captured->text)}};
  }
  Json restore = Json::array();
  for (const Delivery& delivery : image.restore.deliveries) restore.push_back(ToJson(delivery));
  return {{"schema", 1},
          {"everything_came_back", everything},
          {"settings", std::move(list)},
          {"captured", std::move(captured)},
          {"capture", ToJson(image.capture)},
          {"restore", std::move(restore)},
          {"machine", simulated::ToJson(image.after, /*hideSecrets=*/true)}};
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
  std::vector<std::string> texts;
  if (deliveries.front().posted.empty()) texts.push_back(style.Bad("no file handed over"));
  for (const Delivery& delivery : deliveries) {
    const std::string result = Printable(delivery.Result());
    texts.push_back(delivery.Succeeded() ? (result.empty() ? "file handed over" : result)
                                         : style.Bad((result.empty() ? "not handled" : result) +
                                                     " (" + Printable(delivery.Failure()) + ")"));
  }
  return "Configure: " + base::Join(texts, ", ");
}

std::string Colored(const RestoredSetting& setting, const std::string& text, const Style& style) {
  if (!setting.IsAsBefore()) return style.Bad(text);
  return setting.outcome == Outcome::kRestored ? style.Good(text) : style.Dim(text);
}

std::string ValueText(const RestoredSetting& setting) {
  const std::string before = Printable(ListText(setting.before));
  return setting.outcome == Outcome::kGiven ? before + " -> DHCP gives it again"
         : setting.IsAsBefore()             ? before
                                            : before + " -> " + Printable(ListText(setting.after));
}

std::string SettingsTable(const std::vector<RestoredSetting>& settings, const Style& style) {
  std::string text = "\n" + style.Heading("Settings, before -> after") + "\n";
  std::size_t outcomeWidth = 0;
  std::map<std::string, std::size_t> nameWidths;
  for (const RestoredSetting& setting : settings) {
    outcomeWidth = std::max(outcomeWidth, OutcomeName(setting.outcome).size());
    std::size_t& width = nameWidths[setting.subject];
    width = std::max(width, base::Width(setting.setting));
  }
  for (std::size_t i = 0; i < settings.size(); ++i) {
    const RestoredSetting& setting = settings[i];
    const auto isOfSubject = [&](std::size_t other) {
      return other < settings.size() && settings[other].subject == setting.subject;
    };
    if (!isOfSubject(i - 1)) text += "  " + Printable(setting.subject) + "\n";
    const std::string outcome = Padded(OutcomeName(setting.outcome), outcomeWidth);
    text += "    " + Padded(Printable(setting.setting), nameWidths[setting.subject]) + "  " +
            Colored(setting, outcome, style) + "  " + ValueText(setting) + "\n";
    // A reason that several settings share follows the last of them.
    const bool isShared = isOfSubject(i + 1) && settings[i + 1].reason == setting.reason;
    if (setting.reason.empty() || isShared) continue;
    text += "      " + style.Notice(Printable(setting.reason)) + "\n";
  }
  return text;
}

std::string Refused(const ImageRestore& image, const Style& style) {
  std::vector<simulated::Change> changes = image.capture.changes;
  for (const Delivery& delivery : image.restore.deliveries) {
    changes.insert(changes.end(), delivery.changes.begin(), delivery.changes.end());
  }
  std::string text;
  for (const simulated::Change& change : changes) {
    const auto& [words, refusal, note] = Describe(change);
    if (!refusal.empty()) text += "  " + words + "  " + style.Bad("refused: " + refusal) + "\n";
  }
  return text.empty() ? text : "\n" + style.Heading("Refused by the machine") + "\n" + text;
}

std::string Sum(const ImageRestore& image, const std::vector<RestoredSetting>& settings,
                const Style& style) {
  const auto lost = std::count_if(settings.begin(), settings.end(),
                                  [](const auto& setting) { return !setting.IsAsBefore(); });
  return lost > 0 ? style.Bad(std::to_string(lost) + " of " + std::to_string(settings.size()) +
                              " settings did not come back.")
         : image.Succeeded() ? style.Good("Everything came back.")
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
