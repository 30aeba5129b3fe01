#include "tool/check/Check.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <ostream>
#include <set>
#include <sstream>
#include <system_error>

#include "tool/check/CheckReport.h"
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

Exit codes:
  0  no finding is an error
  1  a finding is an error, or with --strict a warning
  2  an argument or a file cannot be used; one line on standard error says why

Examples:
  orvanta-config check tarvo.cfg
  orvanta-config check configs/ --sarif > findings.sarif
  orvanta-config check "site/**/*.cfg" --json > findings.json
  orvanta-config check "site/**/*.cfg" --strict --baseline findings.json
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
    known = check::ReadBaseline(*options.baseline, ReadInput(*options.baseline, none));
  }
  for (FileReport& report : reports) {
    check::LeaveOutAllowed(report);
    std::erase_if(report.findings, [&](const check::Finding& finding) {
      const std::string code = check::KindOf(finding.code).id;
      const auto old = known.find(check::BaselineKey(report.file, code, finding.message));
      const bool isOld = old != known.end();
      if (isOld) known.erase(old);
      const auto& ignored = options.ignored;
      return isOld || std::find(ignored.begin(), ignored.end(), code) != ignored.end();
    });
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
  const std::vector<Input> inputs = check::FindInputs(options.files);
  std::optional<Machine> machine;
  if (options.machineFile) machine = LoadMachine(options.machineFile, streams, options.files);
  std::vector<FileReport> reports = CheckAll(inputs, machine ? &*machine : nullptr, streams);
  check::CheckFleet(reports);
  LeaveOut(options, reports);
  if (options.json) {
    streams.out << check::JsonReport(reports);
  } else if (options.sarif) {
    streams.out << check::SarifReport(reports);
  } else {
    const Style style(streams.color && !options.noColor);
    streams.out << check::TextReport(reports, style);
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
