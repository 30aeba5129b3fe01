// Which files the arguments of `check` name.
#pragma once

#include <string>
#include <vector>

namespace tool::check {

struct Input {
  std::string path;
  /// Named as it stands, not found in a folder or by a pattern.
  bool isNamed = false;
  /// Why a folder that should have been searched cannot be; empty for a file.
  std::string fault;
};

/// Every file once, whatever names and links lead to it, in the order of their paths. An argument
/// is a file, "-", a folder (all *.cfg in it and below) or a pattern with "*" and "?" ("**" for any
/// folders below). Throws ToolError when one names nothing.
std::vector<Input> FindInputs(const std::vector<std::string>& arguments);

}  // namespace tool::check
