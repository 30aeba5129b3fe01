#include "common/util/FileUtils.h"

#include "common/util/LastError.h"
#include "platform/IFiles.h"
#include "platform/IPlatform.h"

namespace util {
namespace {

constexpr char kSource[] = R"(common\util\FileUtils)";
// The blanks at the ends belong to the texts.
constexpr err::Site kDestinationExists{kSource, "Destination file exists ", 41};
constexpr err::Site kSourceMissing{kSource, "Source file does not exist ", 46};
constexpr err::Site kMoveFailed{kSource, "File Move Failed ", 51};
constexpr err::Site kCopyFailed{kSource, "Failed to copy file ", 63};
constexpr err::Site kTargetMissing{kSource, "Delete failed - target does not exist", 74};
constexpr err::Site kDeleteFailed{kSource, "Delete failed ", 79};
constexpr err::Site kNoModulePath{kSource, "Cannot find the agent's folder ", 90};
constexpr err::Site kNotCompared{kSource, "Cannot compare two files ", 97};

platform::IFiles& Files() { return platform::Current().Files(); }

[[noreturn]] void Throw(const err::Site& site) {
  throw CFileIOError{site, /*value=*/0, util::LastError()};
}

}  // namespace

bool FileExists(const std::string& path) {
  const std::uint32_t attributes = Files().Attributes(path);
  return attributes != platform::kNoAttributes && (attributes & platform::kDirectoryAttribute) == 0;
}

void Move(const std::string& source, const std::string& destination) {
  if (FileExists(destination)) Throw(kDestinationExists);
  if (!FileExists(source)) Throw(kSourceMissing);
  if (!Files().Move(source, destination)) Throw(kMoveFailed);
}

void Copy(const std::string& source, const std::string& destination, bool overwrite) {
  if (!Files().Copy(source, destination, /*failIfExists=*/!overwrite)) Throw(kCopyFailed);
}

void Delete(const std::string& path) {
  if (!FileExists(path)) Throw(kTargetMissing);
  if (!Files().Erase(path)) Throw(kDeleteFailed);
}

bool SameFile(const std::string& first, const std::string& second) {
  bool same = false;
  if (!Files().SameFile(first, second, &same)) Throw(kNotCompared);
  return same;
}

bool ReadWholeFile(const std::string& path, std::string* content) {
  return Files().ReadWhole(path, content);
}

std::string ExecutableFolder() {
  std::string path;
  if (!Files().ModulePath(&path)) Throw(kNoModulePath);
  const std::size_t separator = path.find_last_of("\\/");
  return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

std::string FileName(const std::string& path) {
  return path.substr(path.find_last_of("\\/") + 1);  // npos + 1 is 0
}

void WriteProfileEntry(const std::string& section, const std::string& key, const std::string& value,
                       const std::string& path) {
  // Deliberate: a refused entry is dropped without a word; the image is taken all the same.
  Files().WriteProfileEntry(section, key, value, path);
}

}  // namespace util
