// What the user must mend before a command can do its work.
#pragma once

#include <stdexcept>
#include <string>

namespace tool {

/// One line for the user: the file, option or command at fault, what is wrong, and the mend. Ends
/// the program with `kUnusable`.
class ToolError : public std::runtime_error {
 public:
  ToolError(const std::string& where, const std::string& fault, const std::string& mend)
      : std::runtime_error((where.empty() ? "\"\"" : where) + ": " + fault + "; " + mend),
        fault_(fault) {}
  /// A line that says all of this already.
  explicit ToolError(const std::string& line) : std::runtime_error(line), fault_(line) {}

  /// What is wrong, without where and without the mend.
  const std::string& Fault() const { return fault_; }

 private:
  std::string fault_;
};

/// Exit codes of every command.
enum ExitCode : int { kDone = 0, kFailed = 1, kUnusable = 2 };

}  // namespace tool
