#include "tool/check/FileCheck.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "tool/check/rules/Rules.h"
#include "tool/io/Text.h"

namespace tool::check {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsPlainText(std::string_view text) {
  return !text.starts_with("\xFF\xFE") && !text.starts_with("\xFE\xFF") &&
         text.find('\0') == std::string_view::npos;
}

FileReport OneFinding(const std::string& file, Code code, const std::string& message) {
  return {file, {FindingOfFile(code, message)}, {}};
}

}  // namespace

FileReport CheckText(const std::string& file, std::string text, simulated::Machine* machine,
                     std::size_t most) {
  std::string whole = text;
  if (text.empty()) return OneFinding(file, Code::kEmptyFile, "the file is empty");
  if (text.size() > kLargestFile) return TooLarge(file);
  if (!IsPlainText(text)) {
    return OneFinding(file, Code::kNoPlainText, "the file is binary or in UTF-16");
  }
  const bool hasMark = text.starts_with(kByteOrderMark);
  if (hasMark) text.erase(0, kByteOrderMark.size());
  Document document(std::move(text));
  Findings findings(document, most);
  if (hasMark) {
    findings.OfFile(Code::kByteOrderMark,
                    "the file begins with a byte-order mark, which becomes part of its first line");
  }
  DesiredState desired = ReadDesiredState(document);
  if (machine != nullptr) CompareIdentity(desired, *machine);
  for (const auto rules :
       {CheckLines, CheckNames, CheckValues, CheckAdapters, CheckIdentity, CheckSections}) {
    rules(desired, findings);
  }
  if (machine != nullptr) CheckOnMachine(desired, *machine, findings);
  std::vector<Allowance> allowances = AllowancesOf(document, findings);
  FileReport report{file, findings.Take(), ClaimsOf(desired), std::move(allowances)};
  for (Finding& finding : report.findings) {
    if (hasMark && finding.edit) finding.edit->span.offset += kByteOrderMark.size();
    if (finding.code == Code::kByteOrderMark && document.LinesOf({0, 0})) {
      finding.edit = Edit{{0, kByteOrderMark.size()}, "", {}, {}};
    }
  }
  if (std::any_of(report.findings.begin(), report.findings.end(),
                  [](const Finding& finding) { return finding.edit.has_value(); })) {
    report.text = std::move(whole);
  }
  return report;
}

void LeaveOutAllowed(FileReport& report) {
  for (Allowance& allowance : report.allowances) {
    const auto left = std::erase_if(report.findings, [&](const Finding& finding) {
      const auto& codes = allowance.codes;
      return finding.place.line >= allowance.first && finding.place.line <= allowance.last &&
             std::find(codes.begin(), codes.end(), KindOf(finding.code).id) != codes.end();
    });
    if (left == 0) report.findings.push_back(std::move(allowance.idle));
  }
  SortByPlace(report.findings);
}

FileReport Unreadable(const std::string& file, const std::string& reason) {
  return OneFinding(file, Code::kUnreadableFile, reason);
}

FileReport TooLarge(const std::string& file) {
  return OneFinding(file, Code::kLargeFile,
                    "the file is larger than " + std::to_string(kLargestFile >> 20U) +
                        " MiB and was not checked");
}

std::string Remark(const std::string& path, const std::string& text) {
  FileReport report = CheckText(path, text, /*machine=*/nullptr);
  LeaveOutAllowed(report);
  const auto first = std::find_if(report.findings.begin(), report.findings.end(), IsError);
  const auto count = std::count_if(first, report.findings.end(), IsError);
  if (count == 0) return {};
  std::string remark = count == 1 ? "1 error" : std::to_string(count) + " errors, the first";
  // A finding about no line is one about the file.
  if (!first->excerpt.text.empty()) remark += " on line " + std::to_string(first->place.line);
  return Printable(remark + ": " + first->message + "; see orvanta-config check " + path);
}

}  // namespace tool::check
