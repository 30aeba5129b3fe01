// The rules: each function looks for one family of faults in one file and adds what it finds.
#pragma once

#include "tool/check/Document.h"
#include "tool/check/Findings.h"
#include "tool/check/Wishes.h"

namespace tool::check {

/// Lines that are not what they look like: headers, continuation lines, duplicates.
void CheckLines(const Document& document, Findings& findings);

/// Sections and keys that nobody reads.
void CheckNames(const Document& document, Findings& findings);

/// Each value for itself, by what its key takes.
void CheckValues(const Document& document, Findings& findings);

/// What does not fit together within an adapter's section.
void CheckAdapters(const Document& document, const Wishes& wishes, Findings& findings);

/// What does not fit together in the computer's identity.
void CheckIdentity(const Document& document, const Wishes& wishes, Findings& findings);

/// What goes wrong between adapters' sections.
void CheckSections(const Document& document, const Wishes& wishes, Findings& findings);

}  // namespace tool::check
