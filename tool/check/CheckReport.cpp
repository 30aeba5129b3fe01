#include "tool/check/CheckReport.h"

#include <array>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string_view>

#include "base/Numbers.h"

namespace tool::check {
namespace {

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

}  // namespace

std::string ReportText(const std::vector<FileReport>& reports, const Style& style) {
  std::string text;
  for (const FileReport& report : reports) {
    for (const Finding& finding : report.findings) {
      text += FindingText(report.file, finding, style);
    }
  }
  return text + SumText(reports);
}

simulated::Json ReportJson(const std::vector<FileReport>& reports) {
  simulated::Json findings = simulated::Json::array();
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
  return {{"schema", 1}, {"findings", std::move(findings)}, {"files", reports.size()}};
}

}  // namespace tool::check
