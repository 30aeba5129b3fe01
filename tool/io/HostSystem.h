// The few things that the language's library does not offer, for this computer itself (never for a
// simulated one).
#pragma once

#include <cstdio>
#include <string>

namespace tool {

/// This computer is one that the library works on.
bool RunsWindows();

/// Standard output is a terminal that shows colours.
bool IsColorTerminal();
/// Standard error is a terminal that obeys control codes.
bool IsProgressTerminal();

/// From now on standard input and output carry bytes as they are, whatever the system.
void UseBinaryStreams();

/// Makes a new file that only its owner can read (on Windows: whoever may read its folder). Null
/// with the reason in `errno` when it cannot be made or exists already. The caller closes it.
std::FILE* CreatePrivateFile(const std::string& path);

}  // namespace tool
