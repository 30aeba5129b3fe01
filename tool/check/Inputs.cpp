#include "tool/check/Inputs.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "base/LetterCase.h"
#include "base/Utf8.h"
#include "tool/io/Files.h"
#include "tool/io/HostSystem.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"

namespace tool::check {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kAnyFolders = "**";

bool IsPattern(std::string_view text) { return text.find_first_of("*?") != std::string_view::npos; }

bool SameLetter(char a, char b) {
  return base::SameText(std::string_view(&a, 1), std::string_view(&b, 1));
}

std::size_t NextLetter(std::string_view name, std::size_t at) {
  do ++at;
  while (at < name.size() && base::IsMiddleOfCharacter(name[at]));
  return at;
}

/// Whether a name fits a pattern of "*" and "?".
bool Fits(std::string_view name, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t star = std::string_view::npos;
  std::size_t afterStar = 0;
  for (std::size_t i = 0; i < name.size();) {
    if (at < pattern.size() && pattern[at] == '*') {
      star = at++;
      afterStar = i;
    } else if (at < pattern.size() && pattern[at] == '?') {
      ++at;
      i = NextLetter(name, i);
    } else if (at < pattern.size() && SameLetter(pattern[at], name[i])) {
      ++at;
      ++i;
    } else if (star != std::string_view::npos) {
      at = star + 1;  // the last star takes one letter more
      i = afterStar = NextLetter(name, afterStar);
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

class Search {
 public:
  /// Adds what fits the components of a pattern from `next` on, below `base`. A folder that fits
  /// stands for the configuration files in it and below.
  void AddFitting(const fs::path& base, const std::vector<std::string>& components,
                  std::size_t next) {
    if (next == components.size()) {
      std::error_code error;
      if (!fs::is_directory(base, error)) {
        if (fs::exists(fs::symlink_status(base, error))) Add(base);
      } else if (&components != &configurations_) {
        AddFolder(base);
      }
      return;
    }
    const std::string& component = components[next];
    if (!IsPattern(component)) {
      AddFitting(base / PathOf(component), components, next + 1);
      return;
    }
    const bool isAnyFolders = component == kAnyFolders;
    if (isAnyFolders) AddFitting(base, components, next + 1);
    ForEach(base.empty() ? fs::path(".") : base, [&](const fs::directory_entry& entry) {
      const fs::path path = base / entry.path().filename();
      if (isAnyFolders) {
        // Links to folders are not followed, so that no search runs in circles.
        std::error_code error;
        if (entry.is_directory(error) && !entry.is_symlink(error)) {
          AddFitting(path, components, next);
        }
      } else if (Fits(NameOf(entry.path().filename()), component)) {
        AddFitting(path, components, next + 1);
      }
    });
  }

  void AddFolder(const fs::path& folder) { AddFitting(folder, configurations_, 0); }

  void Add(const fs::path& path, bool isNamed = false) {
    inputs_.push_back({NameOf(path.lexically_normal()), isNamed, {}});
  }

  std::size_t Count() const { return inputs_.size(); }

  std::vector<Input> Take() {
    // Of names for the same file the first that was named stays.
    std::stable_sort(inputs_.begin(), inputs_.end(),
                     [](const Input& a, const Input& b) { return a.isNamed && !b.isNamed; });
    std::unordered_set<std::string> seen;
    const auto isSeen = [&seen](const Input& input) {
      std::error_code error;
      const fs::path file =
          input.path == "-" ? fs::path() : fs::canonical(PathOf(input.path), error);
      return !seen.insert(file.empty() ? input.path : NameOf(file)).second;
    };
    inputs_.erase(std::remove_if(inputs_.begin(), inputs_.end(), isSeen), inputs_.end());
    std::sort(inputs_.begin(), inputs_.end(),
              [](const Input& a, const Input& b) { return a.path < b.path; });
    return std::move(inputs_);
  }

 private:
  template <typename Visit>
  void ForEach(const fs::path& folder, Visit visit) {
    std::error_code error;
    fs::directory_iterator entries(folder, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) visit(*entries);
    const bool isMissing =
        error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
    if (error && !isMissing) {
      inputs_.push_back({NameOf(folder), false, "the folder cannot be read: " + Reason(error)});
    }
  }

  /// What is looked for in a folder.
  const std::vector<std::string> configurations_{std::string(kAnyFolders), "?*.cfg"};
  std::vector<Input> inputs_;
};

/// The root (or nothing) that a pattern starts from, and its components.
std::pair<fs::path, std::vector<std::string>> Split(const fs::path& pattern) {
  std::vector<std::string> components;
  for (const fs::path& part : pattern.relative_path()) components.push_back(NameOf(part));
  return {pattern.root_path(), std::move(components)};
}

void AddArgument(const std::string& argument, Search& search) {
  std::error_code error;
  const fs::path path = PathOf(argument);
  const fs::file_status status = argument == "-" ? fs::file_status() : fs::status(path, error);
  const std::size_t before = search.Count();
  if (argument == "-" || (fs::exists(status) && !fs::is_directory(status))) {
    search.Add(path, /*isNamed=*/true);
  } else if (fs::is_directory(status)) {
    search.AddFolder(path);
    if (search.Count() == before) {
      throw ToolError(argument, "contains no file that ends in .cfg",
                      "name another folder or a file");
    }
  } else if (IsPattern(argument)) {
    const auto [base, components] = Split(path);
    search.AddFitting(base, components, 0);
    if (search.Count() == before) {
      throw ToolError(argument, "matches no file", "correct the pattern, or name a file or folder");
    }
  } else {
    throw ToolError(argument, "cannot be read: " + Reason(error), "name a file that you can read");
  }
}

}  // namespace

std::vector<Input> FindInputs(const std::vector<std::string>& arguments) {
  Search search;
  for (const std::string& argument : arguments) AddArgument(argument, search);
  return search.Take();
}

}  // namespace tool::check
