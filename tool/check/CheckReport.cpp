#include "tool/check/CheckReport.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "handlers/Version.h"
#include "tool/io/CodePage.h"
#include "tool/io/HostSystem.h"
#include "tool/io/JsonText.h"
#include "tool/io/ToolError.h"

namespace tool::check {
namespace {

using simulated::Json;

// ---- Text ---------------------------------------------------------------------------------------

std::string PlaceText(const std::string& file, const Place& place) {
  return Printable(file) + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
}

std::string SeverityText(Severity severity, const Style& style) {
  const std::string text = TextOf(severity);
  if (severity == Severity::kError) return style.Bad(text);
  return severity == Severity::kWarning ? style.Notice(text) : style.Dim(text);
}

std::string FindingText(const std::string& file, const Finding& finding, const Style& style) {
  const FindingKind& kind = KindOf(finding.code);
  std::string text = style.Heading(PlaceText(file, finding.place)) + ": " +
                     SeverityText(kind.severity, style) + ": " + Printable(finding.message) + " [" +
                     kind.id + "]\n";
  const Excerpt& excerpt = finding.excerpt;
  if (!excerpt.text.empty()) {
    text += "  " + excerpt.text + "\n  " + std::string(excerpt.caret, ' ') +
            style.Good("^" + std::string(excerpt.caretLength - 1, '~')) + "\n";
  }
  return text + "  hint: " + Printable(finding.hint) + "\n";
}

std::string SumText(const std::vector<FileReport>& reports) {
  std::array<std::size_t, 3> counts{};
  for (const FileReport& report : reports) {
    for (const Finding& finding : report.findings) {
      ++counts[static_cast<std::size_t>(KindOf(finding.code).severity)];
    }
  }
  std::string sums;
  for (const Severity severity : {Severity::kError, Severity::kWarning, Severity::kNote}) {
    const std::size_t count = counts[static_cast<std::size_t>(severity)];
    if (count > 0) sums += (sums.empty() ? "" : ", ") + base::Counted(count, TextOf(severity));
  }
  return base::Counted(reports.size(), "file") +
         " checked: " + (sums.empty() ? "nothing found" : sums) + "\n";
}

// ---- SARIF --------------------------------------------------------------------------------------

/// A path as a URI: relative as it was given, or with the scheme "file".
std::string UriOf(const std::string& file) {
  constexpr char kHex[] = "0123456789ABCDEF";
  const std::filesystem::path path = PathOf(file);
  const std::string generic = NameOf(path.generic_string<std::filesystem::path::value_type>());
  std::string uri;
  if (path.is_absolute()) uri = generic.starts_with('/') ? "file://" : "file:///";
  for (const char c : generic) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isPlain = byte < 0x80 && (std::isalnum(byte) != 0 || c == '/' || c == '.' ||
                                         c == '-' || c == '_' || c == '~');
    // The colon of a drive stays; in a relative name it would end a scheme.
    if (isPlain || (c == ':' && path.is_absolute())) {
      uri += c;
    } else {
      uri += {'%', kHex[byte >> 4], kHex[byte & 0xF]};
    }
  }
  return uri;
}

/// What a renderer of the document makes of the heading of the code.
std::string AnchorOf(const FindingKind& kind) {
  std::string anchor;
  for (const char c :
       base::Folded(std::string(kind.id) + " " + kind.title + " " + TextOf(kind.severity))) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_') anchor += c;
    if (c == ' ') anchor += '-';
  }
  return anchor;
}

Json Rules() {
  Json rules = Json::array();
  for (const FindingKind& kind : kFindingKinds) {
    rules.push_back({{"id", kind.id},
                     {"shortDescription", {{"text", kind.title}}},
                     {"help", {{"text", kind.hint}}},
                     {"helpUri", "docs/findings.md#" + AnchorOf(kind)},
                     {"defaultConfiguration", {{"level", TextOf(kind.severity)}}}});
  }
  return rules;
}

Json Location(const std::string& file, const Place* place) {
  Json physical{{"artifactLocation", {{"uri", UriOf(file)}}}};
  if (place != nullptr) {
    physical["region"] = {{"startLine", place->line},
                          {"startColumn", place->column},
                          {"endColumn", place->endColumn}};
  }
  return {{"physicalLocation", std::move(physical)}};
}

Json Fix(const std::string& file, const Finding& finding) {
  const Edit& edit = *finding.edit;
  // The byte-order mark is in no line.
  const bool isText = finding.code != Code::kByteOrderMark;
  Json replacement;
  replacement["deletedRegion"] =
      isText ? Json{{"startLine", edit.begin.line},
                    {"startColumn", edit.begin.column},
                    {"endLine", edit.end.line},
                    {"endColumn", edit.end.column}}
             : Json{{"byteOffset", edit.span.offset}, {"byteLength", edit.span.length}};
  if (!edit.text.empty()) replacement["insertedContent"] = {{"text", ToUtf8(edit.text)}};
  const Json change{{"artifactLocation", {{"uri", UriOf(file)}}},
                    {"replacements", Json::array({replacement})}};
  return {{"description", {{"text", finding.hint}}}, {"artifactChanges", Json::array({change})}};
}

Json Result(const std::string& file, const Finding& finding) {
  const FindingKind& kind = KindOf(finding.code);
  const Place* const place = finding.excerpt.text.empty() ? nullptr : &finding.place;
  Json result{{"ruleId", kind.id},
              {"ruleIndex", static_cast<int>(finding.code)},
              {"level", TextOf(kind.severity)},
              {"message", {{"text", finding.message + "; " + finding.hint}}},
              {"locations", Json::array({Location(file, place)})}};
  if (const auto& related = finding.related) {
    result["relatedLocations"] = Json::array({Location(related->file, &related->place)});
  }
  if (finding.edit) result["fixes"] = Json::array({Fix(file, finding)});
  return result;
}

}  // namespace

std::string TextReport(const std::vector<FileReport>& reports, const Style& style) {
  std::string text;
  for (const FileReport& report : reports) {
    for (const Finding& finding : report.findings) {
      text += FindingText(report.file, finding, style);
    }
  }
  return text + SumText(reports);
}

std::string BaselineKey(const std::string& file, const std::string& code,
                        const std::string& message) {
  constexpr std::string_view kDigits = "0123456789";
  std::string key = code + "\n" + file + "\n" + message;
  for (const std::string_view mark : {" line ", ".cfg:"}) {
    for (std::size_t at = key.find(mark); at != std::string::npos; at = key.find(mark, at)) {
      at += mark.size();
      key.erase(at, std::min(key.find_first_not_of(kDigits, at), key.size()) - at);
    }
  }
  return key;
}

std::string BaselineKey(const FileReport& report, const Finding& finding) {
  return BaselineKey(report.file, KindOf(finding.code).id, finding.message);
}

std::multiset<std::string> ReadBaseline(const std::string& name, const std::string& document) {
  std::multiset<std::string> keys;
  try {
    const Json report = ParsedJson(document);
    for (const Json& finding : report.at("findings")) {
      keys.insert(BaselineKey(finding.at("file"), finding.at("code"), finding.at("message")));
    }
  } catch (const Json::exception&) {
    throw ToolError(name, "holds no findings",
                    "write it with orvanta-config check FILE... --json > " + name);
  }
  return keys;
}

std::string JsonReport(const std::vector<FileReport>& reports) {
  Json findings = Json::array();
  for (const FileReport& report : reports) {
    for (const Finding& finding : report.findings) {
      const FindingKind& kind = KindOf(finding.code);
      findings.push_back({{"file", report.file},
                          {"line", finding.place.line},
                          {"column", finding.place.column},
                          {"severity", TextOf(kind.severity)},
                          {"code", kind.id},
                          {"message", finding.message},
                          {"hint", finding.hint}});
    }
  }
  return PrintedJson({{"schema", 1}, {"findings", std::move(findings)}, {"files", reports.size()}});
}

std::string SarifReport(const std::vector<FileReport>& reports) {
  Json results = Json::array();
  for (const FileReport& report : reports) {
    for (const Finding& finding : report.findings) {
      results.push_back(Result(report.file, finding));
    }
  }
  const Json driver{{"name", "orvanta-config"}, {"version", version::Text()}, {"rules", Rules()}};
  const Json run{{"tool", {{"driver", driver}}},
                 {"columnKind", "unicodeCodePoints"},
                 {"results", std::move(results)}};
  return PrintedJson({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                      {"version", "2.1.0"},
                      {"runs", Json::array({run})}});
}

}  // namespace tool::check
