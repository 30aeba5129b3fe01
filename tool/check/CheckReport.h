// What `check` found, as text for people, JSON for scripts and SARIF for code-review tools.
#pragma once

#include <string>
#include <vector>

#include "platform/simulated/Json.h"
#include "tool/check/FileCheck.h"
#include "tool/io/Text.h"

namespace tool::check {

/// Each finding as `file:line:column: severity: message [code]` with its line, a caret under what
/// it is about and the hint; a line with the sums at the end.
std::string ReportText(const std::vector<FileReport>& reports, const Style& style);

simulated::Json ReportJson(const std::vector<FileReport>& reports);

/// A log of SARIF 2.1.0. Texts and file names that are no UTF-8 must be replaced when it is
/// written.
simulated::Json ReportSarif(const std::vector<FileReport>& reports);

}  // namespace tool::check
