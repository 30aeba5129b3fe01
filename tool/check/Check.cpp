#include "tool/check/Check.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <ostream>
#include <set>
#include <sstream>
#include <system_error>
#include <utility>

#include "tool/check/CheckReport.h"
#include "tool/check/Fix.h"
#include "tool/check/Inputs.h"
#include "tool/check/rules/Rules.h"
#include "tool/io/Files.h"
#include "tool/io/HostSystem.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineOptions.h"

namespace tool {
namespace {

using check::FileReport;
using check::Input;
using simulated::Machine;

constexpr char kFooter[] =
    R"(Each FILE may be a folder (all *.cfg in it and below) or a pattern such as "pc-*.cfg"
or "site/**/*.cfg". Several files are also compared with each other. See
docs/findings.md for the meaning of each code, with an example.

A comment allows a finding in the next entry, or above the first section in the whole
file: "; orvanta: allow C202 because ...".

--fix makes only edits that leave fewer findings and no new one, and none on a line that
holds a password or an account. Without --write the report is on standard error.

Exit codes:
  0  no finding is an error
  1  a finding is an error, or with --strict a warning
  2  an argument or a file cannot be used; one line on standard error says why

Examples:
  orvanta-config check tarvo.cfg
  orvanta-config check configs/ --sarif > findings.sarif
  orvanta-config check "site/**/*.cfg" --json > findings.json
  orvanta-config check "site/**/*.cfg" --strict --baseline findings.json
  orvanta-config check configs/ --fix | patch -p0
  orvanta-config check tarvo.cfg --machine my-pc.json)";

constexpr auto kProgressInterval = std::chrono::milliseconds(200);

FileReport CheckInput(const Input& input, Machine* machine, std::istream& in) {
  if (!input.fault.empty()) return check::Unreadable(input.path, input.fault);
  const std::string name = input.path == "-" ? "standard input" : input.path;
  std::error_code unknown;
  const auto size = std::filesystem::file_size(PathOf(input.path), unknown);
  if (!unknown && size > check::kLargestFile) return check::TooLarge(name);
  try {
    return check::CheckText(name, ReadInput(input.path, in), machine);
  } catch (const ToolError& error) {
    if (input.isNamed) throw;
    return check::Unreadable(name, "the file " + error.Fault());
  }
}

std::vector<FileReport> CheckAll(const std::vector<Input>& inputs, Machine* machine,
                                 const Streams& streams) {
  std::vector<FileReport> reports;
  auto told = std::chrono::steady_clock::now();
  bool isShown = false;
  for (const Input& input : inputs) {
    const auto now = std::chrono::steady_clock::now();
    if (streams.progress && now - told >= kProgressInterval) {
      // Whatever is written next, such as an error, takes the line's place.
      streams.err << "checked " << reports.size() << " of " << inputs.size() << " files\r"
                  << std::flush;
      told = now;
      isShown = true;
    }
    reports.push_back(CheckInput(input, machine, streams.in));
  }
  if (isShown) streams.err << "\x1B[K" << std::flush;
  return reports;
}

/// Leaves out what the options and comments ask for.
void LeaveOut(const CheckOptions& options, std::vector<FileReport>& reports) {
  std::multiset<std::string> known;
  std::istringstream none;
  if (options.baseline) {
    known =
        check::ReadBaseline(*options.baseline, ReadInput(*options.baseline, none, ReadTextBlocks));
  }
  for (FileReport& report : reports) {
    check::LeaveOutAllowed(report);
    std::erase_if(report.findings, [&](const check::Finding& finding) {
      const std::string key = check::BaselineKey(report, finding);
      const auto old = known.find(key);
      const bool isOld = old != known.end();
      if (isOld) known.erase(old);
      const auto& ignored = options.ignored;
      const bool isOut = isOld || std::find(ignored.begin(), ignored.end(),
                                            check::KindOf(finding.code).id) != ignored.end();
      if (isOut) report.leftOut.insert(key);
      return isOut;
    });
  }
}

/// Shows what would be fixed or, with `--write`, writes it.
void Fix(const CheckOptions& options, const std::vector<FileReport>& reports, Machine* machine,
         std::set<std::string> claimed, std::ostream& out) {
  std::vector<std::pair<const FileReport*, std::string>> fixed;
  for (const FileReport& report : reports) {
    if (report.text.empty()) continue;
    check::Draft draft = check::FixText(report, machine, claimed);
    if (!options.write) out << check::UnifiedDiff(report, draft);
    if (draft.text != report.text) fixed.emplace_back(&report, std::move(draft.text));
  }
  if (!options.write) return;
  // What cannot be written is told before anything is.
  for (const auto& [report, text] : fixed) PrivateFile(report->file);
  for (const auto& [report, text] : fixed) {
    const std::filesystem::path path = PathOf(report->file);
    std::error_code error;
    const auto access = std::filesystem::status(path, error).permissions();
    PrivateFile(report->file).Commit(text);
    if (!error) std::filesystem::permissions(path, access, error);
    if (error) {
      throw ToolError(report->file,
                      "is fixed, but only its owner can read it now: " + Reason(error),
                      "give others access again");
    }
  }
}

void RefuseOddCombinations(const CheckOptions& options) {
  const auto& files = options.files;
  if (options.write && !options.fix) {
    throw ToolError("--write", "needs --fix", "write check FILE... --fix --write");
  }
  if (options.write && std::find(files.begin(), files.end(), "-") != files.end()) {
    throw ToolError("--write", "cannot change standard input", "name files only");
  }
  if (options.fix && !options.write && (options.json || options.sarif)) {
    throw ToolError("--fix", "needs --write when --json or --sarif is given",
                    "add it, or leave out the other");
  }
}

}  // namespace

Command CheckCommand(CheckOptions& options) {
  Option sarif{"--sarif", &options.sarif, "", "one SARIF 2.1.0 document, for code-review tools"};
  sarif.excludes = "--json";
  return {"check",
          "find faults in configuration files",
          kFooter,
          {{"FILE", &options.files, "",
            "configuration files, folders or patterns, or - for standard input",
            /*isRequired=*/true},
           {"--machine", &options.machineFile, "M.json",
            "also look for what the files need on this machine (- and live as for plan)"},
           {"--ignore", &options.ignored, "CODE", "leave out findings of this code; repeatable"},
           {"--baseline", &options.baseline, "FINDINGS.json",
            "leave out the findings of an earlier --json"},
           {"--fix", &options.fix, "", "print the certain fixes as a difference for patch -p0"},
           {"--write", &options.write, "", "with --fix: make them, then check again"},
           {"--strict", &options.strict, "", "count warnings as errors"},
           {"--json", &options.json, "", "one JSON document on standard output"},
           sarif,
           NoColorOption(options.noColor)}};
}

int Check(const CheckOptions& options, const Streams& streams) {
  for (const std::string& code : options.ignored) {
    if (check::CodeOf(code) != nullptr) continue;
    throw ToolError("--ignore " + code, "is no finding's code", "write a code such as C202");
  }
  RefuseOddCombinations(options);
  const std::vector<Input> inputs = check::FindInputs(options.files);
  std::optional<Machine> loaded;
  if (options.machineFile) loaded = LoadMachine(options.machineFile, streams, options.files);
  Machine* const machine = loaded ? &*loaded : nullptr;
  std::vector<FileReport> reports;
  std::set<std::string> claimed;
  const auto check = [&] {
    reports = CheckAll(inputs, machine, streams);
    check::CheckFleet(reports);
    LeaveOut(options, reports);
    for (const FileReport& report : reports) {
      for (const check::Claim& claim : report.claims) claimed.insert(claim.identity);
    }
  };
  check();
  if (options.fix) Fix(options, reports, machine, claimed, streams.out);
  if (options.write) check();
  if (options.json) {
    streams.out << check::JsonReport(reports);
  } else if (options.sarif) {
    for (FileReport& report : reports) {
      if (!report.text.empty()) check::KeepSoundEdits(report, machine, claimed);
    }
    streams.out << check::SarifReport(reports);
  } else {
    const bool isAside = options.fix && !options.write;  // of the files as they still are
    const Style style(streams.color && !options.noColor && !isAside);
    (isAside ? streams.err : streams.out) << check::TextReport(reports, style);
  }
  const auto fails = [&options](const check::Finding& finding) {
    return check::KindOf(finding.code).severity == check::Severity::kWarning
               ? options.strict
               : check::IsError(finding);
  };
  const auto hasFaults = [&fails](const FileReport& report) {
    return std::any_of(report.findings.begin(), report.findings.end(), fails);
  };
  return std::any_of(reports.begin(), reports.end(), hasFaults) ? kFailed : kDone;
}

}  // namespace tool
