#include "tool/check/Fix.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>
#include <utility>

#include "platform/simulated/Secrets.h"
#include "tool/check/CheckReport.h"
#include "tool/io/Text.h"

namespace tool::check {
namespace {

/// No real file is larger, see `kLargeFile`.
constexpr std::size_t kLargestFixed = std::size_t{64} << 10U;
/// So many bytes are checked at most to fix a file, where a finding costs as much as some lines.
constexpr std::size_t kMostBytes = std::size_t{4} << 20U;
constexpr std::size_t kCostOfFinding = 100;
constexpr std::size_t kContext = 3;

/// With their line feeds.
std::vector<std::string_view> LinesIn(std::string_view text) {
  std::vector<std::string_view> lines;
  for (; !text.empty(); text.remove_prefix(lines.back().size())) {
    lines.push_back(text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1));
  }
  return lines;
}

Draft DraftOf(const std::string& text) {
  Draft draft{text, std::vector<std::size_t>(LinesIn(text).size())};
  std::iota(draft.origins.begin(), draft.origins.end(), 1);
  return draft;
}

Draft Edited(Draft draft, const Edit& edit) {
  const auto [offset, length] = edit.span;
  const std::size_t begin = offset != 0 ? draft.text.rfind('\n', offset - 1) + 1 : 0;
  const std::size_t last = offset + length - (length != 0 ? 1 : 0);
  const std::size_t end = std::min(draft.text.find('\n', last), draft.text.size() - 1) + 1;
  const std::string part = draft.text.substr(begin, offset - begin) + edit.text +
                           draft.text.substr(offset + length, end - offset - length);
  const auto count = [](std::string_view text) {
    return static_cast<std::ptrdiff_t>(LinesIn(text).size());
  };
  const std::string_view text = draft.text;
  const auto first = draft.origins.begin() + count(text.substr(0, begin));
  const auto next = draft.origins.erase(first, first + count(text.substr(begin, end - begin)));
  draft.origins.insert(next, LinesIn(part).size(), 0);
  draft.text.replace(begin, end - begin, part);
  return draft;
}

class Fixer {
 public:
  Fixer(const FileReport& report, simulated::Machine* machine, const std::set<std::string>& claimed)
      : report_(report), machine_(machine), claimed_(claimed) {
    for (const Claim& claim : report.claims) own_.insert(claim.identity);
  }

  struct State {
    Draft draft;
    FileReport report;
    std::multiset<std::string> findings;
  };

  State StateOf(Draft draft) {
    FileReport report = CheckText(report_.file, draft.text, machine_,
                                  /*most=*/std::numeric_limits<std::size_t>::max());
    LeaveOutAllowed(report);
    std::multiset<std::string> findings;
    for (const Finding& finding : report.findings) findings.insert(BaselineKey(report, finding));
    checked_ += draft.text.size() + kCostOfFinding * findings.size();
    return {std::move(draft), std::move(report), std::move(findings)};
  }

  /// Nothing when the finding has no edit, or no sound one. So many edits may follow it, of
  /// findings that it brings to light.
  std::optional<State> Fixed(const State& now, const Finding& finding, int followUps) {
    if (GaveUp() || !MayFix(finding)) return std::nullopt;
    State next = StateOf(Edited(now.draft, *finding.edit));
    const auto isNew = [&](const Finding& one) {
      return MayFix(one) && !now.findings.contains(BaselineKey(report_, one));
    };
    while (!IsSound(now, next) && !GaveUp() && followUps-- > 0) {
      const auto& findings = next.report.findings;
      const auto found = std::find_if(findings.begin(), findings.end(), isNew);
      if (found == findings.end()) return std::nullopt;
      next = StateOf(Edited(next.draft, *found->edit));
    }
    return IsSound(now, next) ? std::optional(std::move(next)) : std::nullopt;
  }

  /// The first that can be fixed, from the end.
  std::optional<State> Fixed(const State& now) {
    constexpr int kFollowUps = 20;
    const auto& findings = now.report.findings;
    std::optional<State> next;
    for (std::size_t i = findings.size(); i > 0 && !next; --i) {
      next = Fixed(now, findings[i - 1], kFollowUps);
    }
    return next;
  }

  bool GaveUp() const { return checked_ > kMostBytes || report_.text.size() > kLargestFixed; }

 private:
  bool MayFix(const Finding& finding) const {
    return finding.edit && !report_.leftOut.contains(BaselineKey(report_, finding));
  }

  bool IsSound(const State& now, const State& next) const {
    const auto isTaken = [this](const Claim& claim) {
      return claimed_.contains(claim.identity) && !own_.contains(claim.identity);
    };
    const auto& claims = next.report.claims;
    return next.findings.size() < now.findings.size() &&
           std::includes(now.findings.begin(), now.findings.end(), next.findings.begin(),
                         next.findings.end()) &&
           std::none_of(claims.begin(), claims.end(), isTaken);
  }

  const FileReport& report_;
  simulated::Machine* const machine_;
  const std::set<std::string>& claimed_;
  std::set<std::string> own_;
  std::size_t checked_ = 0;
};

struct Row {
  char sign;
  std::string_view text;
  bool isHidden = false;
};

std::vector<Row> RowsOf(std::string_view before, const Draft& after) {
  const std::vector<std::string_view> lines = LinesIn(before);
  std::vector<Row> rows;
  std::vector<Row> added;
  simulated::SecretLines secrets;
  // The lines up to that number are not in the draft.
  auto remove = [&, line = std::size_t{0}](std::size_t number) mutable {
    for (; line < number; ++line) {
      const std::string_view text = lines[line].substr(0, lines[line].find('\n'));
      rows.push_back({'-', lines[line], secrets.HiddenFrom(text) != std::string_view::npos});
    }
  };
  auto origin = after.origins.begin();
  for (const std::string_view text : LinesIn(after.text)) {
    if (*origin != 0) {
      remove(*origin - 1);
      rows.insert(rows.end(), added.begin(), added.end());
      added.clear();
      remove(*origin);
      rows.back().sign = ' ';
    } else {
      added.push_back({'+', text});
    }
    ++origin;
  }
  remove(lines.size());
  rows.insert(rows.end(), added.begin(), added.end());
  return rows;
}

}  // namespace

void KeepSoundEdits(FileReport& report, simulated::Machine* machine,
                    const std::set<std::string>& claimed) {
  Fixer fixer(report, machine, claimed);
  Fixer::State now;
  if (!fixer.GaveUp()) now = fixer.StateOf(DraftOf(report.text));
  for (Finding& finding : report.findings) {
    if (!fixer.Fixed(now, finding, /*followUps=*/0)) finding.edit.reset();
  }
}

Draft FixText(const FileReport& report, simulated::Machine* machine,
              std::set<std::string>& claimed) {
  Fixer fixer(report, machine, claimed);
  Fixer::State now;
  if (!fixer.GaveUp()) now = fixer.StateOf(DraftOf(report.text));
  while (auto next = fixer.Fixed(now)) now = std::move(*next);
  if (fixer.GaveUp()) return DraftOf(report.text);
  for (const Claim& claim : now.report.claims) claimed.insert(claim.identity);
  return std::move(now.draft);
}

std::string UnifiedDiff(const FileReport& report, const Draft& draft) {
  const std::vector<Row> rows = RowsOf(report.text, draft);
  const auto hides = [&rows](std::size_t row) { return row < rows.size() && rows[row].isHidden; };
  std::string hunks;
  std::size_t lines[2] = {};  // those of the file and of the draft that are behind us
  std::size_t at = 0;
  const auto count = [&](std::size_t end, std::string* shown) {
    for (; at < end; ++at) {
      if (rows[at].sign != '+') ++lines[0];
      if (rows[at].sign != '-') ++lines[1];
      if (shown == nullptr) continue;
      shown->append(1, rows[at].sign).append(rows[at].text);
      if (!rows[at].text.ends_with('\n')) *shown += "\n\\ No newline at end of file\n";
    }
  };
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (rows[row].sign == ' ') continue;
    std::size_t end = row + 1;
    for (std::size_t i = end; i <= end + 2 * kContext && i < rows.size() && !hides(i); ++i) {
      if (rows[i].sign != ' ') end = i + 1;
    }
    // As much before as behind: patch takes a hunk with less behind for one at the file's end.
    std::size_t context = 0;
    while (context < kContext && !hides(row - context - 1) && !hides(end + context)) ++context;
    count(row - std::min(context, row), nullptr);
    const std::size_t begin[2] = {lines[0], lines[1]};
    std::string hunk;
    count(std::min(end + context, rows.size()), &hunk);
    const auto range = [&](int side) {
      const std::size_t length = lines[side] - begin[side];
      return std::to_string(begin[side] + (length != 0 ? 1 : 0)) + "," + std::to_string(length);
    };
    hunks += "@@ -" + range(0) + " +" + range(1) + " @@\n" + hunk;
    row = end;
  }
  // A name with blanks ends at a tab.
  const bool hasBlank = report.file.find(' ') != std::string::npos;
  const std::string name = Printable(report.file) + (hasBlank ? "\t\n" : "\n");
  return hunks.empty() ? "" : "--- " + name + "+++ " + name + hunks;
}

}  // namespace tool::check
