// The version of the plug-in, for its table, its file name and its update entry.
#pragma once

#include <cstdint>
#include <string>

namespace version {

inline constexpr std::uint32_t kMajor = 6;
inline constexpr std::uint32_t kMinor = 8;
inline constexpr std::uint32_t kBuild = 378;

/// "6.8.378".
inline std::string Text() {
  return std::to_string(kMajor) + "." + std::to_string(kMinor) + "." + std::to_string(kBuild);
}

/// The file name of this library with a version, or a pattern for one, in it.
inline std::string LibraryFileName(const std::string& version = Text()) {
  return "orvanta-config-" + version + ".X64.dll";
}

}  // namespace version
