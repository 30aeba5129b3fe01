// What can be typed, as plain data: the parser, the help, the completion scripts and the manual
// page are all made of it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tool {

/// Where the parser puts an option's value; it must outlive the parse. A `bool` makes the option a
/// flag, a vector one that may be repeated. Empty for what the parser answers itself.
using OptionTarget = std::variant<std::monostate, bool*, std::string*, std::optional<std::string>*,
                                  std::vector<std::string>*, std::optional<std::uint32_t>*>;

/// The option that the parser answers with the version; any other without a target with the help.
constexpr char kVersionOption[] = "--version";

struct Option {
  /// "--machine", "-h,--help", or a word such as "FILE" for a positional argument.
  std::string name;
  OptionTarget target;
  /// Placeholder of the value, "M.json"; "a|b" allows these words only.
  std::string value{};
  std::string description{};
  bool isRequired = false;
  /// The largest number allowed, for a number.
  std::uint32_t most = 0;
  /// The name of an option that cannot be combined with this one.
  std::string excludes{};

  /// "-h" and "--help".
  std::vector<std::string> Names() const;
  bool IsPositional() const { return !name.starts_with('-'); }
  bool IsList() const { return std::holds_alternative<std::vector<std::string>*>(target); }
  bool TakesValue() const;
  /// The words that the value may be; empty when any text may.
  std::vector<std::string> Choices() const;
  /// The value is one of the user's files.
  bool TakesFile() const;
};

struct Command {
  std::string name;
  std::string description;
  /// Notes, exit codes and examples, below the options in the help.
  std::string footer;
  std::vector<Option> options;
  /// Does the work with the values that the parser stored; returns the exit code.
  std::function<int()> run{};

  void Add(const std::vector<Option>& more) {
    options.insert(options.end(), more.begin(), more.end());
  }
  /// The option that is called `wanted`; null when there is none.
  const Option* Find(std::string_view wanted) const;
};

}  // namespace tool
