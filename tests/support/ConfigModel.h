// What a configuration file holds, as the reader tells it and as it must be.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "handlers/internal/ConfigFile.h"

namespace support {

using Entries = std::vector<std::pair<std::string, std::string>>;
using Sections = std::vector<std::pair<std::string, Entries>>;

inline Sections SectionsOf(ConfigFile& file) {
  Sections sections;
  std::string name, key, value;
  for (auto section = file.GetFirstSection(&name); section == ConfigFile::kSuccess;
       section = file.GetNextSection(&name)) {
    Entries& entries = sections.emplace_back(name, Entries()).second;
    for (auto entry = file.GetFirstEntry(name, &key, &value); entry == ConfigFile::kSuccess;
         entry = file.GetNextEntry(&key, &value)) {
      entries.emplace_back(key, value);
    }
  }
  return sections;
}

/// The rules of the reader once more, in the plainest form.
class ConfigModel {
 public:
  ConfigFile::Result Parse(std::string text, bool merge) {
    if (text.empty()) return ConfigFile::kUnreadable;
    if (!merge) sections.clear();
    std::string current;
    std::pair<std::string, std::string> previous;
    auto result = ConfigFile::kSuccess;
    while (!text.empty()) {
      std::string line = text.substr(0, text.find('\n'));
      text.erase(0, line.size() + 1);
      const auto at = line.find('\r');
      lineEnding = at == line.npos ? "\n" : "\r\n";
      if (at != line.npos) line.erase(at, 1);
      line = Trim(line);
      if (line.empty()) continue;
      const auto equals = line.find('=');
      if (line[0] == '[') {
        if (line.find(']') == line.npos) return ConfigFile::kUnreadable;
        line.erase(line.find(']'), 1);
        Open(current = Trim(line.substr(1)));
      } else if (line[0] == ';' || line[0] == '#') {
        Open(current).push_back(previous = {"", line});
      } else if (equals != line.npos) {
        previous = {Trim(line.substr(0, equals)), Trim(line.substr(equals + 1))};
        std::string* const stored = merge ? Find(current, previous.first) : nullptr;
        if (stored == nullptr) {
          Open(current).push_back(previous);
        } else if (Lower(*stored) != Lower(previous.second)) {
          *stored = previous.second;
          result = ConfigFile::kReplaced;
        }
      } else {
        previous.second += "\n" + line;
        if (std::string* const stored = Find(current, previous.first)) {
          *stored = previous.second;
        } else {
          Open(current).push_back(previous);
        }
      }
    }
    return result;
  }

  std::string* Find(const std::string& section, const std::string& key) {
    for (auto& [name, entries] : sections) {
      if (Lower(name) != Lower(section)) continue;
      for (auto& [entryKey, value] : entries) {
        if (Lower(entryKey) == Lower(key)) return &value;
      }
    }
    return nullptr;
  }

  Sections sections;
  std::string lineEnding = "\n";

 private:
  static std::string Trim(const std::string& text) {
    const auto begin = text.find_first_not_of(" \t");
    return begin == text.npos ? "" : text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
  }

  static std::string Lower(std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return text;
  }

  Entries& Open(const std::string& name) {
    for (auto& section : sections) {
      if (Lower(section.first) == Lower(name)) return section.second;
    }
    const auto where = name.empty() ? sections.begin() : sections.end();
    return sections.insert(where, {name, {}})->second;
  }
};

/// The first answer of `file` that is not the model's; empty when they agree.
inline std::string Disagreement(ConfigFile& file, ConfigModel& model) {
  if (SectionsOf(file) != model.sections) return "the entries differ";
  if (file.LineEnding() != model.lineEnding) return "the line endings differ";
  for (const auto& [name, entries] : model.sections) {
    if (file.EntryCount(name) != entries.size()) return "the counts differ in " + name;
    for (const auto& [key, first] : entries) {
      const std::string& wanted = *model.Find(name, key);
      std::string value;
      const bool isRead = file.ReadValue(name, key, &value) == ConfigFile::kSuccess;
      if (!isRead || value != wanted || file.FindValue(name, key) != wanted)
        return key + " is wrong";
    }
    if (file.FindValue(name, "=").has_value()) return "there is no such key";
  }
  return {};
}

}  // namespace support
