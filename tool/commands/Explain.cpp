#include "tool/commands/Explain.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <utility>

#include "platform/simulated/Simulation.h"
#include "tool/check/FindingTable.h"
#include "tool/explain/ErrorNumbers.h"
#include "tool/explain/LogStory.h"
#include "tool/io/EmbeddedText.h"
#include "tool/io/Files.h"
#include "tool/io/JsonText.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineOptions.h"

namespace tool {
namespace {

using explain::LogStory;
using explain::Reading;
using simulated::Json;

constexpr char kExplainFooter[] =
    R"(WHAT is the code of a finding, such as C303; a number with which the library or the
machine answered, in decimal or hexadecimal; or else a log file, "-" for standard input.
Of a number every reading is listed, the library's own first. A log may hold lines of
other programs, and may begin or end anywhere.

Exit codes:
  0  everything was explained
  1  a code or number is unknown, or a log holds nothing of the library
  2  an argument or a file cannot be used, with one line on standard error

Examples:
  orvanta-config explain C303
  orvanta-config explain 1326 0x80041003
  orvanta-config explain -2147023570
  orvanta-config explain agent.log)";

/// True for every number and every code of a finding, whether it exists or not.
bool IsCodeOrNumber(std::string_view what) {
  const bool isHex = what.starts_with("0x") || what.starts_with("0X");
  what.remove_prefix(isHex ? 2 : what.find_first_not_of("-Cc") == 1 ? 1 : 0);
  const char* const digits = isHex ? "0123456789ABCDEFabcdef" : "0123456789";
  return !what.empty() && what.find_first_not_of(digits) == std::string_view::npos;
}

/// What is known, in the form that was asked for.
class Explanation {
 public:
  Explanation(const ExplainOptions& options, const Streams& streams)
      : in_(streams.in),
        out_(streams.out),
        json_(options.json),
        style_(streams.color && !options.noColor) {}

  /// False when nothing is known.
  bool Add(const std::string& what) {
    const bool isFile = !IsCodeOrNumber(what);
    const auto number = explain::ParseNumber(what);
    bool isKnown = false;
    if (isFile) {
      isKnown = AddLog(what);
    } else if (number) {
      for (const Reading& reading : explain::ReadNumber(*number)) {
        isKnown = true;
        AddCode({what + ", " + TextOf(reading.kind), what, reading.name, reading.meaning,
                 reading.remedy});
      }
    } else {
      isKnown = AddFinding("C" + what.substr(1));
    }
    if (!isKnown && !json_) {
      out_ << Printable(what) << (isFile ? ": no line of the library in it\n" : ": unknown\n");
    }
    return isKnown;
  }

  void Finish() {
    if (!json_) return;
    out_ << PrintedJson({{"schema", 1}, {"codes", codes_}, {"messages", messages_}});
  }

 private:
  struct CodeText {
    std::string heading, code, name, meaning, remedy;
  };

  void AddCode(const CodeText& text) {
    if (json_) {
      codes_.push_back({{"code", text.code},
                        {"name", text.name},
                        {"meaning", text.meaning},
                        {"remedy", text.remedy}});
    } else {
      out_ << std::exchange(separator_, "\n") << style_.Heading(text.heading + ": " + text.name)
           << '\n'
           << text.meaning << (text.meaning.ends_with('\n') ? "" : "\n")
           << "Remedy: " << text.remedy << '\n';
    }
  }

  bool AddFinding(const std::string& code) {
    const auto* const kind =
        std::find_if(std::begin(check::kFindingKinds), std::end(check::kFindingKinds),
                     [&](const auto& each) { return code == each.id; });
    if (kind == std::end(check::kFindingKinds)) return false;
    const std::string_view document = EmbeddedText("docs/findings.md");
    const std::size_t title = document.find("\n### " + code + " ") + 1;
    const std::size_t body = document.find_first_not_of('\n', document.find('\n', title));
    const std::size_t end = document.find("\n##", title);
    const std::string page(document.substr(body, end - body));
    AddCode({code + " (" + TextOf(kind->severity) + ")", code, kind->title, page, kind->hint});
    return true;
  }

  bool AddLog(const std::string& name) {
    bool isKnown = false;
    explain::LogReader reader([&](const LogStory& story) {
      isKnown = true;
      if (json_) {
        messages_.push_back(AsJson(story));
      } else {
        Tell(story);
      }
    });
    ReadTextBlocks(name, in_, [&](std::string_view block) { reader.Read(block); });
    reader.End();
    return isKnown;
  }

  static Json AsJson(const LogStory& story) {
    Json failedAt;
    if (const auto& failure = story.failure) {
      const Reading* const why = failure->Why();
      failedAt = {{"source", failure->source},
                  {"line", failure->line},
                  {"text", failure->text},
                  {"value", failure->value ? Json(*failure->value) : Json()},
                  {"system_error", failure->systemError ? Json(*failure->systemError) : Json()},
                  {"meaning", why != nullptr ? Json(why->meaning) : Json()},
                  {"remedy", why != nullptr ? Json(why->remedy) : Json()}};
    }
    return {{"type", story.type},
            {"name", story.name},
            {"file", story.file.empty() ? Json() : Json(story.file)},
            {"outcome", story.failure ? "failed" : "no failure logged"},
            {"failed_at", std::move(failedAt)}};
  }

  void Tell(const LogStory& story) {
    const std::string title =
        story.type.empty() ? "a message that began before the log" : story.type + "/" + story.name;
    // No log tells that a step or a message is done. A file is put away behind the last step.
    const bool isOfStep = story.failure && !story.failure->source.ends_with("FileUtils");
    const char* const ending = isOfStep ? "failed" : "last begun";
    std::vector<Row> rows;
    for (const std::string& step : story.steps) {
      const bool isLast = &step == &story.steps.back();
      rows.push_back({isLast ? ending : rows.empty() ? "did" : "", Printable(step)});
    }
    if (const auto& failure = story.failure) {
      rows.push_back({"at", Printable(failure->source + ":" + std::to_string(failure->line) +
                                      (failure->text.empty() ? "" : " - " + failure->text))});
      const Reading* const why = failure->Why();
      const std::uint32_t answer = failure->Answer();
      std::string text = why != nullptr ? why->meaning : "";
      if (answer != 0 && (why == nullptr || why->kind == explain::NumberKind::kRecord)) {
        text += text.empty() ? "the machine answered " : "; the machine answered ";
        text += answer >= 0x80000000U ? simulated::HResultText(static_cast<std::int32_t>(answer))
                                      : std::to_string(answer);
      }
      if (why != nullptr) text += std::string(" (") + why->name + ")";
      if (!text.empty()) rows.push_back({"why", text});
      if (why != nullptr) rows.push_back({"remedy", why->remedy});
    }
    out_ << std::exchange(separator_, "\n") << style_.Heading(Printable(title))
         << (story.file.empty() ? "" : " of " + Printable(story.file)) << ": "
         << (story.failure ? style_.Bad("failed") : style_.Good("no failure logged")) << '\n'
         << Rows(rows, "  ");
  }

  std::istream& in_;
  std::ostream& out_;
  bool json_;
  Style style_;
  /// What separates an answer from the one before.
  const char* separator_ = "";
  Json codes_ = Json::array();
  Json messages_ = Json::array();
};

}  // namespace

Command ExplainCommand(ExplainOptions& options) {
  return {"explain",
          "tell what a finding, an error number or a log means",
          kExplainFooter,
          {{"WHAT", &options.what, "", "a finding's code, a number, or a log file",
            /*isRequired=*/true},
           {"--json", &options.json, "", "one JSON document on standard output"},
           NoColorOption(options.noColor)}};
}

int Explain(const ExplainOptions& options, const Streams& streams) {
  Explanation explanation(options, streams);
  bool isAllKnown = true;
  for (const std::string& what : options.what) isAllKnown = explanation.Add(what) && isAllKnown;
  explanation.Finish();
  return isAllKnown ? kDone : kFailed;
}

}  // namespace tool
