#include "tool/commands/SimulateReport.h"

#include <algorithm>
#include <cstddef>

#include "base/Pieces.h"
#include "base/Utf8.h"
#include "tool/explain/LogStory.h"
#include "tool/io/CodePage.h"
#include "tool/machine/ChangeText.h"
#include "tool/machine/MachineDifference.h"

namespace tool {
namespace {

std::string MessageName(const Request& request) {
  std::string name = Printable(request.type + "/" + request.name);
  for (const auto& [key, value] : request.values) {
    if (key == "Filename") name += ", Filename=" + Printable(value);
  }
  return name;
}

std::string Header(const SimulatedRun& run) {
  std::vector<Row> rows;
  if (!run.file.empty()) rows.push_back({"File", Printable(run.file)});
  if (!run.checkRemark.empty()) rows.push_back({"Check", run.checkRemark});
  rows.push_back({"Machine", MachineText(run.machineName, run.before)});
  if (run.conversation.deliveries.size() == 1) {
    rows.push_back({"Message", MessageName(run.conversation.deliveries.front().request)});
  }
  return Rows(rows, "");
}

std::string Changes(const Delivery& delivery, const Style& style) {
  if (delivery.changes.empty()) return style.Heading("Changes") + "\n  none\n";
  std::string text = style.Heading("Changes") + "\n";
  const std::size_t digits = std::to_string(delivery.changes.size()).size();
  for (std::size_t i = 0; i < delivery.changes.size(); ++i) {
    const ChangeText change = Describe(delivery.changes[i]);
    const std::string number = std::to_string(i + 1);
    text += "  " + std::string(digits - number.size(), ' ') + number + "  " + change.words;
    if (!change.refusal.empty()) text += "  " + style.Bad("refused: " + change.refusal);
    if (!change.note.empty()) text += "  " + style.Notice(change.note);
    text += "\n";
  }
  return text;
}

std::string Messages(const char* heading, const std::vector<SentMessage>& messages,
                     const Style& style) {
  if (messages.empty()) return {};
  std::string text = style.Heading(heading) + "\n";
  for (const SentMessage& message : messages) {
    text += "  " + Printable(message.type + "/" + message.name);
    if (!message.target.empty()) text += " to " + Printable(message.target);
    text += "\n";
    std::vector<Row> rows;
    for (const MessageValue& value : message.values) {
      rows.push_back({Printable(value.key), Printable(ShownText(value))});
    }
    text += Rows(rows, "    ");
  }
  return text;
}

std::string LogLines(const Delivery& delivery, const Style& style, bool verbose) {
  std::string text;
  for (const LogLine& line : delivery.log) {
    if (!verbose && (delivery.Succeeded() || line.level != 0)) continue;
    // Reports of a caught error fill several lines, the later ones set off with a tab.
    std::string shown;
    for (const std::string& part : base::Split(line.text, "\n")) {
      shown += shown.empty() ? "" : "\n     ";
      shown += part.starts_with('\t') ? "  " + Printable(part.substr(1)) : Printable(part);
    }
    text += "  " + std::to_string(line.level) + "  " +
            (line.level == 2 ? style.Dim(shown) : shown) + "\n";
  }
  if (text.empty()) return {};
  return style.Heading(verbose ? "Log" : "Log, level 0 (--verbose shows all of it)") + "\n" + text;
}

/// Why the message failed, as its log tells it; null when that is unknown.
const explain::Reading* Why(const Delivery& delivery) {
  // A run that stopped for a restart logs no failure.
  const explain::Reading* why = explain::FindReading(explain::NumberKind::kReply, 3);
  explain::LogReader reader([&](const explain::LogStory& story) {
    if (story.failure) why = story.failure->Why();
  });
  for (const LogLine& line : delivery.log) reader.Read(line.text + "\n");
  reader.End();
  return why;
}

std::string Reply(const Delivery& delivery, const Style& style) {
  std::vector<Row> rows;
  const explain::Reading* const why = Why(delivery);
  for (const MessageValue& value : delivery.reply) {
    std::string text = Printable(ShownText(value));
    if (why != nullptr && value.key == "Status-Code") text.append(" (").append(why->meaning) += ')';
    const bool result = value.key == "Result";
    rows.push_back({Printable(value.key), !result                ? text
                                          : text == "Reboot"     ? style.Notice(text)
                                          : delivery.Succeeded() ? style.Good(text)
                                                                 : style.Bad(text)});
  }
  const std::string status = std::to_string(delivery.status);
  rows.push_back({"status", delivery.status == 0 ? style.Bad(status + ", not handled") : status});
  if (!delivery.exception.empty()) {
    rows.push_back({"exception", style.Bad(Printable(delivery.exception))});
  }
  return style.Heading("Reply") + "\n" + Rows(rows, "  ");
}

std::string Waiting(const SimulatedRun& run, const Style& style) {
  std::vector<Row> rows;
  if (run.after.pendingComputerName) {
    rows.push_back({"computer name", Printable(ToUtf8(*run.after.pendingComputerName))});
  }
  const std::string membership = MembershipText(run.after.membership);
  if (membership != MembershipText(run.conversation.confirmedMembership)) {
    rows.push_back({"member of", Printable(ToUtf8(membership))});
  }
  if (rows.empty()) return {};
  return "\n" + style.Heading("Waiting for the restart") + "\n" + Rows(rows, "  ");
}

std::string MachineTable(const SimulatedRun& run, const Style& style) {
  const std::vector<Difference> all = Differences(run.before, run.after);
  std::string text = "\n" + style.Heading("Machine, before -> after") + "\n";
  if (all.empty()) return text + "  no difference\n";
  for (auto first = all.begin(); first != all.end();) {
    const auto last = std::find_if(
        first, all.end(), [&](const auto& other) { return other.subject != first->subject; });
    std::size_t settingWidth = 0;
    std::size_t beforeWidth = 0;
    for (auto it = first; it != last; ++it) {
      settingWidth = std::max(settingWidth, base::Width(it->setting));
      beforeWidth = std::max(beforeWidth, base::Width(it->before));
    }
    text += "  " + first->subject + "\n";
    for (; first != last; ++first) {
      text += "    " + Padded(first->setting, settingWidth) + "  " +
              style.Dim(Padded(first->before, beforeWidth)) + " -> " + first->after + "\n";
    }
  }
  return text;
}

}  // namespace

std::string DeliveryReport(const Delivery& delivery, const Style& style, bool verbose) {
  return Messages("Sent", delivery.sent, style) + Messages("Posted", delivery.posted, style) +
         LogLines(delivery, style, verbose) + Reply(delivery, style);
}

std::string SimulateReport(const SimulatedRun& run, const Style& style, bool verbose) {
  std::string text = Header(run);
  const std::size_t count = run.conversation.deliveries.size();
  std::uint32_t restarts = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const Delivery& delivery = run.conversation.deliveries[i];
    text += "\n";
    if (delivery.restarts != restarts) {
      restarts = delivery.restarts;
      text += style.Notice("-- restart " + std::to_string(restarts) + " --") + "\n\n";
    }
    if (count > 1) {
      text += style.Heading("Message " + std::to_string(i + 1) + " of " + std::to_string(count)) +
              "  " + MessageName(delivery.request) + "\n";
    }
    text += Changes(delivery, style) + DeliveryReport(delivery, style, verbose);
  }
  return text + Waiting(run, style) + MachineTable(run, style);
}

}  // namespace tool
