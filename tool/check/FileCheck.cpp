#include "tool/check/FileCheck.h"

#include <string_view>
#include <utility>

#include "tool/check/rules/FleetRules.h"
#include "tool/check/rules/MachineRules.h"
#include "tool/check/rules/Rules.h"

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

FileReport CheckText(const std::string& file, std::string text, simulated::Machine* machine) {
  if (text.empty()) return OneFinding(file, Code::kEmptyFile, "the file is empty");
  if (text.size() > kLargestFile) return TooLarge(file);
  if (!IsPlainText(text)) {
    return OneFinding(file, Code::kNoPlainText, "the file is binary or in UTF-16");
  }
  const bool hasMark = text.starts_with(kByteOrderMark);
  if (hasMark) text.erase(0, kByteOrderMark.size());
  Document document(std::move(text));
  Findings findings(document);
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
  return {file, findings.Take(), ClaimsOf(desired)};
}

FileReport Unreadable(const std::string& file, const std::string& reason) {
  return OneFinding(file, Code::kUnreadableFile, reason);
}

FileReport TooLarge(const std::string& file) {
  return OneFinding(file, Code::kLargeFile,
                    "the file is larger than " + std::to_string(kLargestFile >> 20U) +
                        " MiB and was not checked");
}

}  // namespace tool::check
