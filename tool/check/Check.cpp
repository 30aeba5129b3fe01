#include "tool/check/Check.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <ostream>
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

Exit codes:
  0  no finding is an error
  1  a finding is an error
  2  an argument or a file cannot be used; one line on standard error says why

Examples:
  orvanta-config check tarvo.cfg
  orvanta-config check configs/ --sarif > findings.sarif
  orvanta-config check "site/**/*.cfg" --json
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

bool HasErrors(const FileReport& report) {
  return std::any_of(report.findings.begin(), report.findings.end(), check::IsError);
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
           {"--json", &options.json, "", "one JSON document on standard output"},
           sarif,
           NoColorOption(options.noColor)}};
}

int Check(const CheckOptions& options, const Streams& streams) {
  const std::vector<Input> inputs = check::FindInputs(options.files);
  std::optional<Machine> machine;
  if (options.machineFile) machine = LoadMachine(options.machineFile, streams, options.files);
  std::vector<FileReport> reports = CheckAll(inputs, machine ? &*machine : nullptr, streams);
  check::CheckFleet(reports);
  if (options.json) {
    streams.out << check::JsonReport(reports);
  } else if (options.sarif) {
    streams.out << check::SarifReport(reports);
  } else {
    const Style style(streams.color && !options.noColor);
    streams.out << check::TextReport(reports, style);
  }
  return std::any_of(reports.begin(), reports.end(), HasErrors) ? kFailed : kDone;
}

}  // namespace tool
