// Where the agent's configuration files are.
#pragma once

#include <string>

/// Paths on the system drive.
struct AgentFiles {
  /// What the agent configures from.
  std::string configuration;
  /// What an image brings along to be configured from after its restore.
  std::string restore;

  /// Asks the operating system for its drive. Throws sys::OsVersionError.
  static AgentFiles Locate();
};
