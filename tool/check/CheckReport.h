// What `check` found, as text for people, JSON for scripts and SARIF for code-review tools.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "tool/check/FileCheck.h"
#include "tool/io/Text.h"

namespace tool::check {

/// Each finding as `file:line:column: severity: message [code]` with its line, a caret under what
/// it is about and the hint; a line with the sums at the end.
std::string TextReport(const std::vector<FileReport>& reports, const Style& style);

/// The findings of a document that `JsonReport` made, each as `BaselineKey` names it. Throws
/// ToolError when the file `name` is none.
std::multiset<std::string> ReadBaseline(const std::string& name, const std::string& document);

/// Code, file and message without numbers of lines: what stays when the lines above change.
std::string BaselineKey(const std::string& file, const std::string& code,
                        const std::string& message);
std::string BaselineKey(const FileReport& report, const Finding& finding);

std::string JsonReport(const std::vector<FileReport>& reports);

/// A log of SARIF 2.1.0.
std::string SarifReport(const std::vector<FileReport>& reports);

}  // namespace tool::check
