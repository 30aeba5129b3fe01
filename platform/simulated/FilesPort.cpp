// The files of the simulated computer. Folders are those of its files, its system drive's root and
// the agent's.
#include <algorithm>
#include <string>
#include <utility>

#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "platform/IFiles.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

using platform::Win32Error;

constexpr std::uint32_t kArchiveAttribute = 0x20;
constexpr std::string_view kLineEnd = "\r\n";

/// One line of a text: where it starts, where its content ends, and where the next one starts.
struct Line {
  std::size_t start;
  std::size_t contentEnd;
  std::size_t next;
};

Line LineAt(const std::string& text, std::size_t start) {
  const std::size_t feed = text.find('\n', start);
  if (feed == std::string::npos) return {start, text.size(), text.size()};
  const bool hasReturn = feed > start && text[feed - 1] == '\r';
  return {start, hasReturn ? feed - 1 : feed, feed + 1};
}

std::string_view ContentOf(const std::string& text, const Line& line) {
  return base::Trimmed(std::string_view(text).substr(line.start, line.contentEnd - line.start));
}

/// The start of the first header line at or after `from`; npos when there is none.
std::size_t FindHeader(const std::string& text, std::size_t from) {
  // Headers are rare in a long text, so their brackets are looked for rather than its lines.
  for (std::size_t at = text.find('[', from); at != std::string::npos;
       at = text.find('[', at + 1)) {
    std::size_t start = at;
    while (start > from && (text[start - 1] == ' ' || text[start - 1] == '\t')) --start;
    if (start == from || text[start - 1] == '\n') return start;
  }
  return std::string::npos;
}

/// True when the header line that starts at `header` names `section`.
bool IsHeaderOf(const std::string& text, std::size_t header, std::string_view section) {
  const std::size_t name = text.find_first_not_of(" \t", text.find('[', header) + 1);
  if (name == std::string::npos) return false;
  if (!base::SameText(std::string_view(text).substr(name, section.size()), section)) return false;
  const std::size_t end = text.find_first_not_of(" \t", name + section.size());
  return end != std::string::npos && text[end] == ']';
}

/// Writes `key=value` below the first header of `section`, making what is missing and touching
/// nothing else.
void PutEntry(std::string& text, const std::string& section, const std::string& key,
              const std::string& value) {
  std::size_t header = FindHeader(text, 0);
  while (header != std::string::npos && !IsHeaderOf(text, header, section)) {
    header = FindHeader(text, LineAt(text, header).next);
  }
  if (header == std::string::npos) {
    if (!text.empty() && text.back() != '\n') text += kLineEnd;
    header = text.size();
    text.append("[").append(section).append("]").append(kLineEnd);
  }

  std::size_t insertAt = LineAt(text, header).next;
  const std::size_t end = std::min(FindHeader(text, insertAt), text.size());
  for (std::size_t at = insertAt; at < end;) {
    const Line line = LineAt(text, at);
    const std::string_view content = ContentOf(text, line);
    const std::size_t equals = content.find('=');
    if (equals != std::string_view::npos &&
        base::SameText(base::Trimmed(content.substr(0, equals)), key)) {
      const std::string entry = std::string(base::Trimmed(content.substr(0, equals))) + "=" + value;
      text.replace(line.start, line.contentEnd - line.start, entry);
      return;
    }
    if (!content.empty()) insertAt = line.next;
    at = line.next;
  }
  std::string entry = key + "=" + value + std::string(kLineEnd);
  if (text[insertAt - 1] != '\n') entry.insert(0, kLineEnd);
  text.insert(insertAt, entry);
}

/// The folder part of a path; empty for a name alone, which stands in the current folder.
std::string FolderOf(const std::string& path) {
  const std::size_t separator = path.find_last_of("\\/");
  return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

class FilesPort final : public Port<platform::IFiles> {
 public:
  using Port::Port;

  std::uint32_t Attributes(const std::string& path) override {
    if (simulation_.Fails({"file.attributes", path})) return platform::kNoAttributes;
    const Win32Error error = ReadError(path);
    if (error == kAccessDenied) return platform::kDirectoryAttribute;
    if (simulation_.Answer(error)) return kArchiveAttribute;
    return platform::kNoAttributes;
  }

  bool ReadWhole(const std::string& path, std::string* content) override {
    if (simulation_.Fails({"file.read", path})) return false;
    if (const Win32Error error = ReadError(path)) return simulation_.Answer(error);
    *content = simulation_.machine.FindFile(path)->text;
    return true;
  }

  bool Move(const std::string& source, const std::string& destination) override {
    const bool sameFile = FoldedPath(source) == FoldedPath(destination);
    const Win32Error present = sameFile ? kSuccess : kAlreadyExists;
    return Transfer("file.move", source, destination, present,
                    [&] { simulation_.machine.FindFile(source)->path = destination; });
  }

  bool Copy(const std::string& source, const std::string& destination, bool failIfExists) override {
    const bool sameFile = FoldedPath(source) == FoldedPath(destination);
    const Win32Error present = failIfExists ? kFileExists : sameFile ? kSharingViolation : kSuccess;
    return Transfer("file.copy", source, destination, present, [&] {
      const std::string text = simulation_.machine.FindFile(source)->text;
      simulation_.machine.PutFile(destination, text);
    });
  }

  bool Erase(const std::string& path) override {
    return simulation_.Answer(
        simulation_.Commit({"file.delete", path}, {{"path", path}}, ReadError(path), [&] {
          auto& files = simulation_.machine.files;
          files.erase(files.begin() + (simulation_.machine.FindFile(path) - files.data()));
        }));
  }

  bool SameFile(const std::string& first, const std::string& second, bool* same) override {
    const std::string paths = first + "\n" + second;
    if (simulation_.Fails({"file.same", paths})) return false;
    for (const std::string& path : {first, second}) {
      if (const Win32Error error = ReadError(path)) return simulation_.Answer(error);
    }
    *same = FoldedPath(first) == FoldedPath(second);
    return true;
  }

  bool ModulePath(std::string* path) override {
    if (simulation_.Fails({"file.module"})) return false;
    *path = simulation_.machine.agentFolder;
    if (!path->ends_with('\\')) *path += '\\';
    *path += "agent.exe";
    return true;
  }

  bool WriteProfileEntry(const std::string& section, const std::string& key,
                         const std::string& value, const std::string& path) override {
    return simulation_.Answer(simulation_.Commit(
        {.name = "file.write", .text = path, .item = key},
        {{"path", path}, {"section", section}, {"key", key}, {"value", value}}, MakeError(path),
        [&] {
          if (simulation_.machine.FindFile(path) == nullptr) simulation_.machine.PutFile(path, "");
          PutEntry(simulation_.machine.FindFile(path)->text, section, key, value);
        }));
  }

 private:
  bool IsFolder(const std::string& path) const {
    const std::string folder = FoldedPath(path);
    const auto holds = [&](const std::string& other) {
      const std::string inner = FoldedPath(other);
      return inner == folder || inner.starts_with(folder + "\\");
    };
    const Machine& machine = simulation_.machine;
    const auto drive = machine.operatingSystem.find("SystemDrive");
    const bool isSystemDrive =
        drive != machine.operatingSystem.end() && FoldedPath(drive->second.Text()) == folder;
    return folder.empty() || isSystemDrive || holds(machine.agentFolder) ||
           std::any_of(machine.files.begin(), machine.files.end(),
                       [&](const File& file) { return holds(FolderOf(file.path)); });
  }

  /// Why a file cannot be read, or made, at `path`; `kSuccess` when it can.
  platform::Win32Error ReadError(const std::string& path) {
    if (simulation_.machine.FindFile(path) != nullptr) return kSuccess;
    const Win32Error error = MakeError(path);
    return error == kSuccess ? kFileNotFound : error;
  }

  platform::Win32Error MakeError(const std::string& path) {
    if (simulation_.machine.FindFile(path) != nullptr) return kSuccess;
    if (IsFolder(path)) return kAccessDenied;
    return IsFolder(FolderOf(path)) ? kSuccess : kPathNotFound;
  }

  /// Moves or copies a file; `present` is the answer where the destination is there already.
  template <class Action>
  bool Transfer(CallName call, const std::string& source, const std::string& destination,
                Win32Error present, Action transfer) {
    Win32Error error = ReadError(source);
    if (error == kSuccess) error = MakeError(destination);
    if (error == kSuccess && simulation_.machine.FindFile(destination) != nullptr) error = present;
    return simulation_.Answer(simulation_.Commit({call, source + "\n" + destination},
                                                 {{"source", source}, {"destination", destination}},
                                                 error, transfer));
  }
};

}  // namespace

platform::IFiles& SimulatedPlatform::Files() { return Made<FilesPort>(&files_); }

}  // namespace simulated
