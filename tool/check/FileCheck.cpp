#include "tool/check/FileCheck.h"

#include <string_view>
#include <utility>

#include "platform/simulated/Text.h"
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
  Findings findings;
  findings.Add(code, message);
  return {file, findings.Take(), {}};
}

}  // namespace

FileReport CheckText(const std::string& file, std::string text, simulated::Machine* machine) {
  if (text.empty()) return OneFinding(file, Code::kEmptyFile, "the file is empty");
  if (text.size() > kLargestFile) return TooLarge(file);
  if (!IsPlainText(text)) {
    return OneFinding(file, Code::kNoPlainText, "the file is binary or in UTF-16");
  }
  Findings findings;
  if (text.starts_with(kByteOrderMark)) {
    findings.Add(Code::kByteOrderMark,
                 "the file begins with a byte-order mark, which becomes part of its first line");
    text.erase(0, kByteOrderMark.size());
  }
  Document document(std::move(text));
  Wishes wishes = ReadWishes(document);
  if (machine != nullptr) CompareIdentity(wishes, *machine);
  CheckLines(document, findings);
  CheckNames(document, findings);
  CheckValues(document, findings);
  CheckAdapters(document, wishes, findings);
  CheckIdentity(document, wishes, findings);
  CheckSections(document, wishes, findings);
  if (machine != nullptr) CheckOnMachine(document, wishes, *machine, findings);
  return {file, findings.Take(), ClaimsOf(document, wishes)};
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
