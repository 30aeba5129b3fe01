#include <cctype>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <utility>

#include "handlers/Version.h"
#include "tool/check/CheckReport.h"
#include "tool/io/HostSystem.h"

namespace tool::check {
namespace {

using simulated::Json;

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

Json Rules() {
  Json rules = Json::array();
  for (const FindingKind& kind : AllKinds()) {
    rules.push_back({{"id", kind.id},
                     {"shortDescription", {{"text", kind.title}}},
                     {"help", {{"text", kind.hint}}},
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
  return result;
}

}  // namespace

Json ReportSarif(const std::vector<FileReport>& reports) {
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
  return {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
          {"version", "2.1.0"},
          {"runs", Json::array({run})}};
}

}  // namespace tool::check
