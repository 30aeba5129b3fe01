#include "tool/fleet/FleetReport.h"

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>
#include <ostream>
#include <queue>
#include <span>
#include <utility>

#include "base/Numbers.h"
#include "base/Pieces.h"
#include "platform/simulated/Json.h"
#include "tool/io/Html.h"
#include "tool/io/JsonText.h"
#include "tool/io/ToolError.h"

namespace tool::fleet {
namespace {

using simulated::Json;

constexpr std::array<const char*, 6> kOutcomes{"settled", "fails",      "loops",
                                               "no_file", "no_machine", "bad_row"};
constexpr std::size_t kRowsOfACause = 10;
/// Lines of a list on a terminal; the JSON and the page hold all.
constexpr std::size_t kMostLines = 50;
constexpr std::uint64_t kMinute = 60'000;  // milliseconds

struct CountedCause {
  const Cause* cause;
  std::size_t count = 0;
  /// The first few.
  std::vector<std::size_t> rows{};
};

struct Duplicate {
  const char* what;
  std::string_view value;
  std::vector<std::size_t> rows;
};

struct Summary {
  std::array<std::size_t, kOutcomes.size()> outcomes{};
  /// The most frequent first.
  std::vector<CountedCause> causes;
  std::vector<Duplicate> duplicates;
  std::size_t restarts = 0;
  std::uint64_t pauseMs = 0;
  /// From the first computer's start to the last one's end.
  std::uint64_t minutes = 0;
};

/// What more than one computer has of that which `valuesOf` finds, in the order of the values.
template <class ValuesOf>
void AddDuplicates(const char* what, const FleetReport& report, ValuesOf valuesOf,
                   std::vector<Duplicate>& duplicates) {
  std::vector<std::pair<std::string_view, const Computer*>> claims;
  claims.reserve(report.computers.size());
  for (const Computer& computer : report.computers) {
    for (const std::string& value : valuesOf(computer)) claims.emplace_back(value, &computer);
  }
  // The computers stay in their order.
  std::stable_sort(claims.begin(), claims.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  claims.erase(std::unique(claims.begin(), claims.end()), claims.end());
  for (auto first = claims.begin(); first != claims.end();) {
    const auto last = std::find_if(first, claims.end(),
                                   [&](const auto& claim) { return claim.first != first->first; });
    if (last - first > 1) {
      Duplicate& duplicate = duplicates.emplace_back(Duplicate{what, first->first, {}});
      std::transform(first, last, std::back_inserter(duplicate.rows),
                     [](const auto& claim) { return claim.second->row; });
    }
    first = last;
  }
}

Summary Summarize(const FleetReport& report, const RollOut& rollOut) {
  Summary summary;
  for (const Cause& cause : report.causes) summary.causes.push_back({&cause});
  // When each of the computers that are worked on at once is done; the next one takes its place.
  std::priority_queue<std::uint64_t, std::vector<std::uint64_t>, std::greater<>> done;
  std::uint64_t end = 0;
  for (const Computer& computer : report.computers) {
    ++summary.outcomes[static_cast<std::size_t>(computer.outcome)];
    summary.restarts += computer.restarts;
    summary.pauseMs += computer.pauseMs;
    if (computer.outcome != Outcome::kSettled) {
      CountedCause& cause = summary.causes[computer.cause];
      if (++cause.count <= kRowsOfACause) cause.rows.push_back(computer.row);
    }
    std::uint64_t time = computer.pauseMs;
    time += std::uint64_t{computer.restarts} * rollOut.restartMinutes * kMinute;
    if (done.size() == rollOut.atOnce) {
      time += done.top();
      done.pop();
    }
    done.push(time);
    end = std::max(end, time);
  }
  summary.minutes = (end + kMinute - 1) / kMinute;
  std::sort(summary.causes.begin(), summary.causes.end(), [](const auto& left, const auto& right) {
    return left.count != right.count ? left.count > right.count : left.rows < right.rows;
  });
  AddDuplicates(
      "computer name", report,
      [](const Computer& computer) {
        const std::string& name = computer.computerName;
        return std::span(&name, name.empty() ? 0 : 1);
      },
      summary.duplicates);
  AddDuplicates(
      "MAC address", report,
      [](const Computer& computer) { return std::span(computer.macAddresses); },
      summary.duplicates);
  AddDuplicates(
      "IP address", report,
      [](const Computer& computer) { return std::span(computer.ipAddresses); }, summary.duplicates);
  return summary;
}

std::string RowsText(const std::vector<std::size_t>& rows, std::size_t count) {
  std::string text = rows.size() == 1 ? "row " : "rows ";
  for (std::size_t i = 0; i < std::min(rows.size(), kRowsOfACause); ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(rows[i]);
  }
  return text + (count > kRowsOfACause ? ", ..." : "");
}

std::string DurationText(std::uint64_t minutes) {
  return minutes < 60
             ? std::to_string(minutes) + " min"
             : std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " min";
}

std::string CauseText(const Cause& cause) {
  return Printable(cause.text) + (cause.code.empty() ? "" : " [" + cause.code + "]");
}

std::string RollOutText(const Summary& summary, const RollOut& rollOut) {
  return base::Counted(summary.restarts, "restart") + ", " +
         DurationText((summary.pauseMs + kMinute - 1) / kMinute) + " of pauses; " +
         DurationText(summary.minutes) + " in all with " +
         base::Counted(rollOut.atOnce, "computer") + " at once and " +
         std::to_string(rollOut.restartMinutes) + " min for a restart";
}

Json ColumnsOf(const Computer& computer) {
  return computer.columns.empty() ? Json::object() : ParsedJson(computer.columns);
}

std::string ColumnsText(const Computer& computer) {
  std::string text;
  const Json columns = ColumnsOf(computer);
  for (const auto& [column, cell] : columns.items()) {
    if (cell != "") text += (text.empty() ? "" : ", ") + column + " " + cell.get<std::string>();
  }
  return Printable(text);
}

/// A list of the text and the page; its last column says which rows.
struct List {
  const char* heading;
  std::vector<const char*> columns;
  /// Between the first two columns of the text.
  const char* joint;
  std::vector<std::vector<std::string>> rows;
};

std::array<List, 2> ListsOf(const Summary& summary) {
  List causes{"Causes", {"Computers", "Cause", "Where"}, " x ", {}};
  for (const CountedCause& cause : summary.causes) {
    causes.rows.push_back(
        {std::to_string(cause.count), CauseText(*cause.cause), RowsText(cause.rows, cause.count)});
  }
  List duplicates{"Duplicates", {"What", "Value", "Where"}, " ", {}};
  for (const Duplicate& duplicate : summary.duplicates) {
    duplicates.rows.push_back({duplicate.what, Printable(duplicate.value),
                               RowsText(duplicate.rows, duplicate.rows.size())});
  }
  return {causes, duplicates};
}

Json ToJson(const Computer& computer, const FleetReport& report) {
  const bool settled = computer.outcome == Outcome::kSettled;
  return {{"row", computer.row},
          {"file", computer.file},
          {"outcome", TextOf(computer.outcome)},
          {"restarts", computer.restarts},
          {"pause_ms", computer.pauseMs},
          {"cause", settled ? Json() : Json(report.causes[computer.cause].text)},
          {"computer_name", computer.computerName},
          {"mac_addresses", computer.macAddresses},
          {"ip_addresses", computer.ipAddresses},
          {"columns", ColumnsOf(computer)}};
}

}  // namespace

const char* TextOf(Outcome outcome) { return kOutcomes[static_cast<std::size_t>(outcome)]; }

void FleetReport::Blame(Computer& computer, Outcome outcome, const Cause& cause) {
  const auto known = std::find_if(causes.begin(), causes.end(), [&](const Cause& other) {
    return other.text == cause.text && other.code == cause.code;
  });
  computer.outcome = outcome;
  computer.cause = static_cast<std::size_t>(known - causes.begin());
  if (known == causes.end()) causes.push_back(cause);
}

bool FleetReport::AllSettled() const {
  return std::all_of(computers.begin(), computers.end(), [](const Computer& computer) {
    return computer.outcome == Outcome::kSettled;
  });
}

std::string ReportText(const FleetReport& report, const RollOut& rollOut, const Style& style) {
  const Summary summary = Summarize(report, rollOut);
  std::vector<Row> outcomes;
  for (std::size_t i = 0; i < kOutcomes.size(); ++i) {
    if (summary.outcomes[i] > 0)
      outcomes.push_back({kOutcomes[i], std::to_string(summary.outcomes[i])});
  }
  std::string text = style.Heading(base::Counted(report.computers.size(), "computer")) + "\n" +
                     Rows(outcomes, "  ");
  const auto list = [&](const char* heading, std::size_t count, const auto& line) {
    if (count > 0) text += "\n" + style.Heading(heading) + "\n";
    for (std::size_t i = 0; i < std::min(count, kMostLines); ++i) text += "  " + line(i) + "\n";
    if (count > kMostLines) text += "  and " + std::to_string(count - kMostLines) + " more\n";
  };
  for (const List& each : ListsOf(summary)) {
    list(each.heading, each.rows.size(), [&](std::size_t i) {
      return each.rows[i][0] + each.joint + each.rows[i][1] + ": " + each.rows[i][2];
    });
  }
  std::vector<const Computer*> open;
  for (const Computer& computer : report.computers) {
    if (computer.outcome != Outcome::kSettled) open.push_back(&computer);
  }
  list("Not settled", open.size(), [&](std::size_t i) {
    const Computer& computer = *open[i];
    const std::string columns = ColumnsText(computer);
    return "row " + std::to_string(computer.row) + "  " + Printable(computer.file) + "  " +
           style.Bad(TextOf(computer.outcome)) + ": " + CauseText(report.causes[computer.cause]) +
           (columns.empty() ? "" : "  (" + columns + ")");
  });
  return text + "\n" + style.Heading("Roll-out") + "\n  " + RollOutText(summary, rollOut) + "\n";
}

void PrintJson(const FleetReport& report, const RollOut& rollOut, std::ostream& out) {
  const Summary summary = Summarize(report, rollOut);
  Json json{{"schema", 1}, {"rows", report.computers.size()}};
  for (std::size_t i = 0; i < kOutcomes.size(); ++i) {
    json["outcomes"][kOutcomes[i]] = summary.outcomes[i];
  }
  json["causes"] = Json::array();
  for (const CountedCause& cause : summary.causes) {
    json["causes"].push_back(
        {{"cause", cause.cause->text},
         {"code", cause.cause->code.empty() ? Json() : Json(cause.cause->code)},
         {"count", cause.count},
         {"rows", cause.rows}});
  }
  json["duplicates"] = Json::array();
  for (const Duplicate& duplicate : summary.duplicates) {
    json["duplicates"].push_back(
        {{"what", duplicate.what}, {"value", duplicate.value}, {"rows", duplicate.rows}});
  }
  json["restarts"] = summary.restarts;
  json["pause_ms"] = summary.pauseMs;
  json["minutes"] = summary.minutes;
  // A document of all computers at once would need many times their memory.
  std::string text = PrintedJson(json);
  text.resize(text.size() - 3);
  out << text << ",\n  \"computers\": [";
  const char* separator = "\n    ";
  for (const Computer& computer : report.computers) {
    text = PrintedJson(ToJson(computer, report), /*indented=*/false);
    text.pop_back();
    out << std::exchange(separator, ",\n    ") << text;
  }
  out << "\n  ]\n}\n";
}

std::string ReportPage(const FleetReport& report, const RollOut& rollOut) {
  const Summary summary = Summarize(report, rollOut);
  std::vector<std::vector<std::string>> rows;
  for (std::size_t i = 0; i < kOutcomes.size(); ++i) {
    rows.push_back({kOutcomes[i], std::to_string(summary.outcomes[i])});
  }
  std::string body = Table({"Outcome", "Computers"}, rows);
  for (List& list : ListsOf(summary)) {
    if (list.rows.empty()) continue;
    for (std::vector<std::string>& row : list.rows) row[1] = Escaped(row[1]);
    body += Element("h2", "", list.heading) + Table(list.columns, list.rows);
  }
  rows.clear();
  for (const Computer& computer : report.computers) {
    const bool settled = computer.outcome == Outcome::kSettled;
    rows.push_back({std::to_string(computer.row), Shown(computer.file),
                    Shown(computer.computerName),
                    Element("span", settled ? "good" : "bad", TextOf(computer.outcome)),
                    std::to_string(computer.restarts),
                    settled ? "" : Escaped(CauseText(report.causes[computer.cause])),
                    Escaped(ColumnsText(computer))});
  }
  body += Element("h2", "", "Computers") +
          Table({"Row", "File", "Name", "Outcome", "Restarts", "Cause", "Other columns"}, rows);
  return Page("Fleet of " + base::Counted(report.computers.size(), "computer"),
              Paragraph("soft", RollOutText(summary, rollOut)), body);
}

void Merge(const std::string& name, const std::string& json, FleetReport* report) {
  try {
    const Json document = ParsedJson(json);
    if (document.at("schema") != 1)
      throw ToolError(name, "has another schema", "name a report of fleet --json");
    std::vector<Cause> causes;
    for (const Json& cause : document.at("causes")) {
      const Json& code = cause.at("code");
      causes.push_back({cause.at("cause"), code.is_null() ? "" : code.get<std::string>()});
    }
    for (const Json& row : document.at("computers")) {
      Computer computer;
      computer.row = row.at("row");
      computer.file = row.at("file");
      computer.restarts = row.at("restarts");
      computer.pauseMs = row.at("pause_ms");
      computer.computerName = row.at("computer_name");
      row.at("mac_addresses").get_to(computer.macAddresses);
      row.at("ip_addresses").get_to(computer.ipAddresses);
      const Json& columns = row.at("columns");
      if (!columns.empty()) computer.columns = PrintedJson(columns, /*indented=*/false);
      const auto outcome =
          std::find(kOutcomes.begin(), kOutcomes.end(), row.at("outcome").get<std::string>());
      if (outcome == kOutcomes.end())
        throw ToolError(name, "has an unknown outcome", "name a report of fleet --json");
      if (!row.at("cause").is_null()) {
        const auto cause = std::find_if(causes.begin(), causes.end(), [&](const Cause& other) {
          return other.text == row.at("cause");
        });
        report->Blame(computer, static_cast<Outcome>(outcome - kOutcomes.begin()),
                      cause != causes.end() ? *cause : Cause{row.at("cause"), ""});
      }
      report->computers.push_back(std::move(computer));
    }
    std::stable_sort(report->computers.begin(), report->computers.end(),
                     [](const auto& left, const auto& right) { return left.row < right.row; });
  } catch (const Json::exception&) {
    throw ToolError(name, "is not a report of fleet --json", "name the reports of the shards");
  }
}

}  // namespace tool::fleet
