// What became of each computer of a fleet, and what that comes to for all of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iosfwd>
#include <string>
#include <vector>

#include "tool/io/Text.h"

namespace tool::fleet {

enum class Outcome : std::uint8_t {
  kSettled,    ///< nothing is left to change
  kFails,      ///< a run fails, or ends with something of the file not true
  kLoops,      ///< a start finds everything as an earlier one did
  kNoFile,     ///< the configuration file cannot be read
  kNoMachine,  ///< the machine file cannot be used
  kBadRow,     ///< the inventory's row cannot be used
};

/// As JSON names it: "no_file".
const char* TextOf(Outcome outcome);

/// Why computers did not settle.
struct Cause {
  std::string text;
  /// Of the finding that explains it; empty for none.
  std::string code;
};

struct Computer {
  std::size_t row = 0;
  std::string file;
  Outcome outcome = Outcome::kSettled;
  std::uint32_t restarts = 0;
  std::uint64_t pauseMs = 0;
  /// A position in `FleetReport::causes`; of a computer that settled none.
  std::size_t cause = 0;
  // What tells it from others in the end; empty for what only the common machine says.
  std::string computerName;
  std::vector<std::string> macAddresses;
  std::vector<std::string> ipAddresses;
  /// Columns of the inventory that mean nothing here, as a JSON object, which is the smallest;
  /// empty for none.
  std::string columns;
};

struct FleetReport {
  /// No vector, which holds twice as many while it grows.
  std::deque<Computer> computers;
  std::vector<Cause> causes;

  /// The computer did not settle, for this cause.
  void Blame(Computer& computer, Outcome outcome, const Cause& cause);
  bool AllSettled() const;
};

/// How the restarts are spread over time.
struct RollOut {
  /// Computers that are worked on at the same time; at least one.
  std::uint32_t atOnce = 1;
  std::uint32_t restartMinutes = 3;
};

std::string ReportText(const FleetReport& report, const RollOut& rollOut, const Style& style);
void PrintJson(const FleetReport& report, const RollOut& rollOut, std::ostream& out);
/// A page that needs no network.
std::string ReportPage(const FleetReport& report, const RollOut& rollOut);

/// Adds the computers of a report in JSON, by their rows. Throws ToolError, which names `name`, for
/// any other text.
void Merge(const std::string& name, const std::string& json, FleetReport* report);

}  // namespace tool::fleet
