#include "tool/commands/Capture.h"

#include <optional>
#include <ostream>

#include "tool/io/Files.h"
#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"
#include "tool/machine/LiveMachine.h"
#include "tool/machine/MachineDocument.h"

namespace tool {
namespace {

constexpr char kCaptureFooter[] =
    R"(Without --machine, captures this computer on Windows and the built-in example elsewhere.
Nothing is changed. What cannot be read is listed on standard error.
Passwords are shown as "***"; only --save-machine keeps those of a machine file.

Exit codes:
  0  the machine was captured
  1  something could not be read and has its default value
  2  an argument or a file cannot be used; one line on standard error says why

Examples:
  orvanta-config capture --save-machine this-pc.json
  orvanta-config capture --machine lab.json --save-machine lab-full.json)";

}  // namespace

Command CaptureCommand(MachineOptions& options) {
  return {"capture", "write a machine as a machine file", kCaptureFooter,
          MachineOptionRows(options)};
}

int Capture(const MachineOptions& options, const Streams& streams) {
  std::optional<PrivateFile> saved = OpenSavedMachine(options);
  const bool live = !options.machineFile && RunsWindows();
  const CapturedMachine captured =
      live ? CaptureMachine() : CapturedMachine{LoadMachine(options.machineFile, streams), {}};
  if (saved) saved->Commit(PrintedMachine(captured.machine));
  streams.out << PrintedMachine(captured.machine, /*hideSecrets=*/true);
  TellGaps(captured, "capture", streams);
  return captured.gaps.empty() ? kDone : kFailed;
}

}  // namespace tool
