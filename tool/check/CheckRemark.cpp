#include "tool/check/CheckRemark.h"

#include <algorithm>

#include "tool/check/FileCheck.h"
#include "tool/io/Text.h"

namespace tool {

std::string CheckRemark(const std::string& path, const std::string& text) {
  const check::FileReport report = text.size() > check::kLargestFile
                                       ? check::TooLarge(path)
                                       : check::CheckText(path, text, /*machine=*/nullptr);
  const auto isError = [](const check::Finding& finding) {
    return check::KindOf(finding.code).severity == check::Severity::kError;
  };
  const auto first = std::find_if(report.findings.begin(), report.findings.end(), isError);
  const auto count = std::count_if(first, report.findings.end(), isError);
  if (count == 0) return {};
  std::string remark = count == 1 ? "1 error" : std::to_string(count) + " errors, the first";
  // A finding about no line is one about the file.
  if (!first->excerpt.text.empty()) remark += " on line " + std::to_string(first->place.line);
  return Printable(remark + ": " + first->message + "; see orvanta-config check " + path);
}

}  // namespace tool
