// The stories that a log tells: the library's own lines, found among those of others by the formats
// that write them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tool/explain/ErrorNumbers.h"

namespace tool::explain {

/// What ended a message, as far as the log has it.
struct LoggedFailure {
  /// The place in the library, for example "SetGateway" and 52.
  std::string source;
  std::int32_t line = 0;
  std::string text;
  /// Of an error record, or of a file that was not loaded.
  std::optional<std::int32_t> value;
  std::optional<std::uint32_t> systemError;

  /// What the machine answered: one of the two, by the source; 0 for nothing.
  std::uint32_t Answer() const;
  /// What the answer means, or else `value` of this source; null when neither is known.
  const Reading* Why() const;
};

/// One message. Texts are UTF-8, and to be printed with care.
struct LogStory {
  /// Both empty when the message began before the log.
  std::string type;
  std::string name;
  /// The configuration file; empty when none was named.
  std::string file;
  /// What was begun, in order: "SetDhcp (DHCP) on adapter 7".
  std::vector<std::string> steps;
  std::optional<LoggedFailure> failure;
};

/// Reads a log block by block; holds one line and one story at a time.
class LogReader {
 public:
  using Teller = std::function<void(const LogStory&)>;

  /// `tell` gets each story when it has ended.
  explicit LogReader(Teller tell) : tell_(std::move(tell)) {}

  /// Reads on; a line may continue in the next block.
  void Read(std::string_view block);
  /// The log ends here.
  void End();

 private:
  void ReadLine(std::string_view line);
  /// The rest of a report that fills several lines. False when the line is no part of it.
  bool ReadDetail(std::string_view line);

  Teller tell_;
  std::string carried_;
  std::optional<LogStory> story_;
  std::string adapter_;
  /// What is still to come of the failure's report, a format a line.
  std::string_view details_;
  std::size_t foreignLines_ = 0;
};

}  // namespace tool::explain
