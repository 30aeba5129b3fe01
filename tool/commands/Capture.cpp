#include "tool/commands/Capture.h"

#include <optional>
#include <ostream>

#include "platform/simulated/MachineFile.h"
#include "tool/io/Files.h"
#include "tool/io/HostSystem.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"
#include "tool/machine/LiveMachine.h"

namespace tool {
namespace {

constexpr char kFooter[] =
    R"(Without --machine: this computer, where it runs Windows, else the built-in example.
Nothing is changed. What this computer does not tell is named on standard error.
Passwords are shown as "***"; only --save-machine keeps those of a machine file.

Exit codes:
  0  the machine was captured
  1  some of it could not be read; it stands at its default
  2  unusable arguments or files, with one line on standard error

Examples:
  orvanta-config capture > this-pc.json
  orvanta-config capture --machine lab.json --save-machine lab-full.json)";

}  // namespace

Command CaptureCommand(MachineOptions& options) {
  return {"capture", "write a machine as a machine file", kFooter, MachineOptionRows(options)};
}

int Capture(const MachineOptions& options, const Streams& streams) {
  std::optional<PrivateFile> saved = OpenSavedMachine(options);
  const bool live = !options.machineFile && RunsWindows();
  const CapturedMachine captured =
      live ? CaptureMachine() : CapturedMachine{LoadMachine(options), {}};
  if (saved) saved->Commit(simulated::PrintMachine(captured.machine));
  // Texts of a machine may hold any bytes.
  streams.out << simulated::PrintMachine(captured.machine, /*hideSecrets=*/true);
  for (const std::string& gap : captured.gaps) {
    streams.err << "orvanta-config: capture: " << Printable(gap) << '\n';
  }
  return captured.gaps.empty() ? kDone : kFailed;
}

}  // namespace tool
