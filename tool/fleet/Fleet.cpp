#include "tool/fleet/Fleet.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <ostream>
#include <sstream>

#include "base/LetterCase.h"
#include "base/Utf8.h"
#include "common/sys/NicText.h"
#include "tool/fleet/FleetReport.h"
#include "tool/fleet/Inventory.h"
#include "tool/io/CodePage.h"
#include "tool/io/Files.h"
#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineDocument.h"
#include "tool/machine/MachineOptions.h"
#include "tool/plan/RestartChain.h"

namespace tool {
namespace {

using fleet::Computer;
using fleet::FleetReport;
using fleet::InventoryRow;
using fleet::Outcome;
using simulated::Machine;

/// Where the agent's file is.
constexpr char kPlace[] = R"(C:\tarvo.cfg)";
/// No deployment needs more; a loop ends much earlier.
constexpr std::uint32_t kMostRestarts = 100;
constexpr std::uint32_t kMostAtOnce = 1'000'000;
constexpr std::uint32_t kMostRestartMinutes = 10'000;
constexpr std::size_t kProgressInterval = 50;

constexpr char kFooter[] =
    R"(The inventory is a CSV with a header. The column "file" names the configuration file,
"machine" its machine file (default: that of --machine). These columns say what differs:
computer_name, workgroup, domain, and of the first adapter mac_address, pci_location
(bus/device/function), ip_address, subnet_mask, gateway. Other columns are shown with
their row. Paths are relative to the inventory.

--shard 2/8 takes the second of eight parts; "fleet --merge A.json B.json" joins the
--json reports of the parts.

Exit codes:
  0  every computer settles
  1  some do not
  2  unusable arguments or files, with one line on standard error

Examples:
  orvanta-config fleet inventory.csv --machine base.json
  orvanta-config fleet inventory.csv --directory corp.json --html fleet.html
  orvanta-config fleet inventory.csv --shard 1/4 --json > part1.json
  orvanta-config fleet --merge part1.json part2.json part3.json part4.json)";

/// Rehearses the rows of one inventory.
class InventoryRun {
 public:
  InventoryRun(const FleetOptions& options, FleetReport& report, const Streams& streams)
      : folder_(PathOf(options.files.front()).parent_path()), report_(report) {
    base_ = LoadMachine(options.machineFile, streams, options.files);
    if (options.directory) {
      domains_ = ReadDirectory(ReadInput(*options.directory, streams.in, ReadTextBlocks),
                               *options.directory);
    }
  }

  void Add(const InventoryRow& row) {
    Computer computer;
    computer.row = row.number;
    computer.file = row.file;
    computer.columns = row.columns;
    // What it comes to when the next step fails.
    Outcome stage = Outcome::kBadRow;
    try {
      if (!row.fault.empty()) throw ToolError(row.fault);
      stage = Outcome::kNoFile;
      const std::string text = Read(ReadBlocks, "file", row.file);
      stage = Outcome::kNoMachine;
      Machine machine = MachineOf(row);
      stage = Outcome::kFails;
      machine.PutFile(kPlace, text);
      const RestartChain chain = FollowRestarts(machine, kPlace, row.file, kMostRestarts);
      Tell(chain, computer);
      Identify(chain.after, row.machine.empty(), computer);
    } catch (const ToolError& error) {
      report_.Blame(computer, stage, {error.Fault(), ""});
    }
    report_.computers.push_back(std::move(computer));
  }

 private:
  /// Throws ToolError.
  std::string Read(decltype(ReadBlocks)* read, const char* what, const std::string& name) const {
    try {
      std::istringstream noInput;
      return ReadInput(NameOf(folder_ / PathOf(name)), noInput, read);
    } catch (const ToolError& error) {
      throw ToolError(std::string("the ") + what + " " + error.Fault());
    }
  }

  /// Throws ToolError.
  Machine MachineOf(const InventoryRow& row) const {
    Machine machine = base_;
    if (!row.machine.empty())
      machine = ReadMachine(Read(ReadTextBlocks, "machine file", row.machine), row.machine);
    if (domains_) {
      machine.domains = *domains_;
      machine.directoryIsNone = domains_->empty();
    }
    for (const auto& [set, bytes] : row.facts) set(machine, bytes);
    return machine;
  }

  void Tell(const RestartChain& chain, Computer& computer) {
    computer.restarts = chain.restarts;
    computer.pauseMs = chain.pauseMs;
    const std::string& code = chain.steps.back().plan.causeCode;
    if (chain.ending == ChainEnding::kLoops) {
      report_.Blame(computer, Outcome::kLoops, {EndingText(chain), code});
    } else if (chain.ending != ChainEnding::kSettled) {
      report_.Blame(computer, Outcome::kFails, {EndingText(chain), code});
    } else {
      for (const NotTrue& open : chain.notTrue) {
        // What no command came of leaves nothing to change.
        if (!open.wanted) continue;
        report_.Blame(computer, Outcome::kFails,
                      {"still not true: " + open.what + ": " + open.reason, ""});
        return;
      }
    }
  }

  /// What tells the computer from others. Of one that rows describe, what the base says is common.
  void Identify(const Machine& after, bool isOverBase, Computer& computer) const {
    const std::string& name =
        after.pendingComputerName ? *after.pendingComputerName : after.computerName;
    if (!isOverBase || !base::SameText(name, base_.computerName))
      computer.computerName = ToUtf8(name);
    for (std::size_t i = 0; i < after.adapters.size(); ++i) {
      const simulated::Adapter& adapter = after.adapters[i];
      const simulated::Adapter* const common =
          isOverBase && i < base_.adapters.size() ? &base_.adapters[i] : nullptr;
      if (adapter.macAddress && !(common != nullptr && common->macAddress == adapter.macAddress)) {
        std::string& mac =
            computer.macAddresses.emplace_back(sys::NormalizedMac(*adapter.macAddress));
        for (std::size_t at = 2; at < mac.size(); at += 3) mac.insert(at, ":");
      }
      if (!adapter.dhcpEnabled &&
          !(common != nullptr && common->ipAddresses == adapter.ipAddresses)) {
        computer.ipAddresses.insert(computer.ipAddresses.end(), adapter.ipAddresses.begin(),
                                    adapter.ipAddresses.end());
      }
    }
  }

  std::filesystem::path folder_;
  FleetReport& report_;
  Machine base_;
  std::optional<std::vector<simulated::DirectoryDomain>> domains_;
};

struct Shard {
  std::uint32_t number = 1;
  std::uint32_t of = 1;
};

/// Throws ToolError.
Shard ReadShard(const std::string& text) {
  Shard shard;
  const char* const end = text.data() + text.size();
  const auto slash = std::from_chars(text.data(), end, shard.number);
  const bool isPair = slash.ec == std::errc{} && slash.ptr != end && *slash.ptr == '/';
  shard.of = 0;
  if (!isPair || std::from_chars(slash.ptr + 1, end, shard.of).ptr != end || shard.number < 1 ||
      shard.number > shard.of) {
    throw ToolError("--shard " + text, "is not a part of a whole",
                    "write 2/8 for the second of eight");
  }
  return shard;
}

FleetReport RehearseAll(const FleetOptions& options, const Streams& streams) {
  const std::string& name = options.files.front();
  const Shard shard = ReadShard(options.shard.value_or("1/1"));
  std::string text = ReadInput(name, streams.in, ReadTextBlocks);
  if (!base::IsUtf8(text)) text = ToUtf8(text);
  fleet::Inventory inventory(name, text);
  FleetReport report;
  InventoryRun run(options, report, streams);
  while (const std::optional<InventoryRow> row = inventory.Next()) {
    if ((row->number - 2) % shard.of != shard.number - 1) continue;
    run.Add(*row);
    if (streams.progress && report.computers.size() % kProgressInterval == 0) {
      streams.err << "\rrehearsed " << report.computers.size() << " computers" << std::flush;
    }
  }
  if (streams.progress) streams.err << "\r\x1B[K" << std::flush;
  return report;
}

}  // namespace

Command FleetCommand(FleetOptions& options) {
  return {
      "fleet",
      "rehearse every computer of an inventory through its restarts",
      kFooter,
      {{"FILE", &options.files, "", "the inventory, or with --merge reports", /*isRequired=*/true},
       {"--machine", &options.machineFile, "BASE.json",
        "the machine that rows describe (default: an example)"},
       {"--directory", &options.directory, "D.json", "the directory of all machines"},
       {"--shard", &options.shard, "I/N", "only every N-th row, from the I-th on"},
       {"--merge", &options.merge, "", "join reports of shards"},
       {"--at-once", &options.atOnce, "N",
        "computers that are restarted at the same time (default: 1)",
        /*isRequired=*/false, kMostAtOnce},
       {"--restart-minutes", &options.restartMinutes, "M", "how long a restart takes (default: 3)",
        /*isRequired=*/false, kMostRestartMinutes},
       {"--json", &options.json, "", "one JSON document on standard output"},
       {"--html", &options.html, "OUT.html", "write a page about the fleet"},
       NoColorOption(options.noColor)}};
}

int Fleet(const FleetOptions& options, const Streams& streams) {
  if (!options.merge && options.files.size() != 1) {
    throw ToolError("fleet", "takes one inventory", "join several, or use --merge for reports");
  }
  if (options.atOnce == 0U) throw ToolError("--at-once 0", "is no computer", "write 1 or more");
  std::optional<PrivateFile> page = OpenOutput("--html", options.html,
                                               {{options.files.front(), "inventory"},
                                                {options.machineFile, "machine file"},
                                                {options.directory, "directory"}});
  FleetReport report;
  if (options.merge) {
    for (const std::string& name : options.files) {
      fleet::Merge(name, ReadInput(name, streams.in, ReadTextBlocks), &report);
    }
  } else {
    report = RehearseAll(options, streams);
  }
  const fleet::RollOut rollOut{options.atOnce.value_or(1), options.restartMinutes.value_or(3)};
  if (page) page->Commit(ReportPage(report, rollOut));
  if (options.json) {
    PrintJson(report, rollOut, streams.out);
  } else {
    streams.out << ReportText(report, rollOut, Style(streams.color && !options.noColor));
  }
  return report.AllSettled() ? kDone : kFailed;
}

}  // namespace tool
