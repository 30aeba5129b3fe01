#include "tool/check/Check.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <filesystem>
#include <mutex>
#include <nlohmann/json.hpp>
#include <ostream>
#include <system_error>
#include <thread>
#include <utility>

#include "tool/check/CheckReport.h"
#include "tool/check/Inputs.h"
#include "tool/check/rules/FleetRules.h"
#include "tool/io/Files.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineOptions.h"

namespace tool {
namespace {

using check::FileReport;
using check::Input;
using simulated::Json;
using simulated::Machine;

constexpr char kFooter[] =
    R"(Each FILE may be a folder (all *.cfg in it and below) or a pattern such as "pc-*.cfg"
or "site/**/*.cfg". Several files are also compared with each other. What each code
means, with an example, stands in docs/findings.md.

Exit codes:
  0  no finding is an error
  1  some finding is an error
  2  unusable arguments or files, with one line on standard error

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
  const auto size = std::filesystem::file_size(input.path, unknown);
  if (!unknown && size > check::kLargestFile) return check::TooLarge(name);
  try {
    return check::CheckText(name, ReadInput(input.path, in), machine);
  } catch (const ToolError& error) {
    if (input.isNamed) throw;
    return check::Unreadable(name, "the file " + error.Fault());
  }
}

/// Checks all files on all cores; with a machine on one, as only one thread may use it.
class Run {
 public:
  Run(const std::vector<Input>& inputs, Machine* machine, const Streams& streams)
      : inputs_(inputs), machine_(machine), streams_(streams), reports_(inputs.size()) {}

  /// In the order of the files. Throws what reading the first unusable one throws.
  std::vector<FileReport> Finish() {
    {
      const std::size_t cores =
          machine_ != nullptr ? 1 : std::max(1U, std::thread::hardware_concurrency());
      std::vector<std::jthread> workers;
      for (std::size_t i = 0; i < std::min(cores, inputs_.size()); ++i) {
        workers.emplace_back([this] { Work(); });
      }
      if (streams_.progress) ShowProgress();
    }
    if (fault_) std::rethrow_exception(fault_);
    return std::move(reports_);
  }

 private:
  void Work() {
    for (std::size_t i = next_++; i < inputs_.size(); i = next_++) {
      try {
        reports_[i] = CheckInput(inputs_[i], machine_, streams_.in);
      } catch (...) {
        const std::scoped_lock lock(mutex_);
        if (!fault_ || i < faultAt_) {
          fault_ = std::current_exception();
          faultAt_ = i;
        }
      }
      if (++done_ == inputs_.size()) {
        const std::scoped_lock lock(mutex_);
        finished_.notify_one();
      }
    }
  }

  void ShowProgress() {
    bool isShown = false;
    std::unique_lock lock(mutex_);
    while (
        !finished_.wait_for(lock, kProgressInterval, [this] { return done_ == inputs_.size(); })) {
      streams_.err << "\rchecked " << done_ << " of " << inputs_.size() << " files" << std::flush;
      isShown = true;
    }
    if (isShown) streams_.err << "\r\x1B[K" << std::flush;
  }

  const std::vector<Input>& inputs_;
  Machine* const machine_;
  const Streams& streams_;
  std::vector<FileReport> reports_;
  std::atomic<std::size_t> next_{0};
  std::atomic<std::size_t> done_{0};
  std::mutex mutex_;
  std::condition_variable finished_;
  std::exception_ptr fault_;
  std::size_t faultAt_ = 0;
};

bool HasErrors(const FileReport& report) {
  return std::any_of(report.findings.begin(), report.findings.end(), [](const auto& finding) {
    return check::KindOf(finding.code).severity == check::Severity::kError;
  });
}

void Print(const Json& json, std::ostream& out) {
  // Texts come from the user's files, which may hold any bytes.
  out << json.dump(2, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace) << '\n';
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
            "also look for what the files need on this simulated machine"},
           {"--json", &options.json, "", "one JSON document on standard output"},
           sarif,
           NoColorOption(options.noColor)}};
}

int Check(const CheckOptions& options, const Streams& streams) {
  const std::vector<Input> inputs = check::FindInputs(options.files);
  std::optional<Machine> machine;
  if (options.machineFile) {
    MachineOptions chosen;
    chosen.machineFile = options.machineFile;
    machine = LoadMachine(chosen);
  }
  std::vector<FileReport> reports = Run(inputs, machine ? &*machine : nullptr, streams).Finish();
  check::CheckFleet(reports);
  if (options.json) {
    Print(check::ReportJson(reports), streams.out);
  } else if (options.sarif) {
    Print(check::ReportSarif(reports), streams.out);
  } else {
    const Style style(streams.color && !options.noColor);
    streams.out << check::ReportText(reports, style);
  }
  return std::any_of(reports.begin(), reports.end(), HasErrors) ? kFailed : kDone;
}

}  // namespace tool
