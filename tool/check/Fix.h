// `check --fix`: the edits of the findings, made in a text and shown as a difference.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tool/check/FileCheck.h"

namespace tool::check {

/// A text and, for each of its lines, the number of the line of the file that it is; 0 for a new
/// one.
struct Draft {
  std::string text;
  std::vector<std::size_t> origins;
};

/// Takes the edits from the report's findings that on their own would not leave fewer findings, or
/// would bring a new one. `machine` is as for `CheckText`; `claimed` holds the identities of all
/// files' claims, as a claim of two files is a finding, too.
void KeepSoundEdits(FileReport& report, simulated::Machine* machine,
                    const std::set<std::string>& claimed);

/// Makes one sound edit after the other, until there is none: fixing the result changes nothing.
/// Where an edit brings findings to light that can be fixed, it is sound with their edits. Adds
/// what the file claims then. A file so large that this takes too long stays as it is.
Draft FixText(const FileReport& report, simulated::Machine* machine,
              std::set<std::string>& claimed);

/// How the report's file becomes the draft, for `patch -p0`; empty when nothing changes. A line
/// that holds a secret is in no difference: the lines around it have less context.
std::string UnifiedDiff(const FileReport& report, const Draft& draft);

}  // namespace tool::check
