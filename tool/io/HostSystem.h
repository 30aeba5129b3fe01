// What the language's library does not offer of this computer itself (never of a simulated one):
// one source a system. Names and texts are UTF-8 on every system.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// This computer is one that the library works on.
bool RunsWindows();

/// The arguments after the program's name, whatever the code page.
std::vector<std::string> ProgramArguments(int argc, char** argv);

/// Standard output (1) or standard error (2) is a terminal that obeys control codes.
bool IsTerminal(int stream);

/// From now on standard input and output carry bytes as they are, and a console shows UTF-8.
void PrepareStreams();

std::filesystem::path PathOf(const std::string& name);
/// The name that `PathOf` turns into `path`; what is not Unicode is replaced.
std::string NameOf(const std::filesystem::path& path);

/// Makes a new file that only its owner can read (on Windows: whoever may read its folder). Null
/// with the reason in `errno` when it cannot be made or exists already. The caller closes it.
std::FILE* CreatePrivateFile(const std::filesystem::path& path);

/// A function of a library, which stays loaded. Null when there is no such library or function,
/// with the system's error number in `*error`, which is 0 when only the function is missing.
void* LoadFunction(const std::string& library, const char* function, std::uint32_t* error);
/// The folder that this program lies in.
std::string ProgramFolder();

/// The system's ANSI code page; 1252 where there is none.
std::uint32_t SystemCodePage();
/// The system converts this code page.
bool IsCodePage(std::uint32_t codePage);
/// A byte that the code page leaves open becomes the character that Windows makes of it, or U+FFFD.
std::string DecodeBytes(std::uint32_t codePage, std::string_view bytes);
/// Nothing when the code page lacks one of the characters.
std::optional<std::string> EncodeText(std::uint32_t codePage, std::string_view text);

}  // namespace tool
