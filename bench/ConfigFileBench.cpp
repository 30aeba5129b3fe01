// How fast configuration files are read and looked up in, compared with other readers and with a
// mere scan for line ends.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "bench/Readers.h"

namespace {

constexpr int kKeysPerSection = 20;

/// What a text can have much of.
enum class Shape { kSections, kKeys, kComments, kContinuations, kDuplicates };

/// The texts that all readers load; the first three are typical, with so many sections each.
enum Size : int { kSmall, kMegabyte, kFiftyMegabytes, kOneSection };
constexpr const char* kSizeNames[] = {"2.6 KB", "1 MB", "50 MB", "200,000 keys"};
constexpr int kSectionsOf[] = {5, 2000, 100000};

std::string SectionName(int section) { return "NicEntry" + std::to_string(section); }
std::string KeyName(int key) { return "Setting-Name" + std::to_string(key); }

/// Sections of 20 settings and a comment, about 500 bytes each.
std::string TypicalText(int sections) {
  std::string text;
  for (int section = 0; section < sections; ++section) {
    text.append("[").append(SectionName(section)).append("]\n# one adapter\n");
    for (int key = 0; key < kKeysPerSection; ++key) {
      text.append(KeyName(key)).append("=10.20.").append(std::to_string(key)).append(".1\n");
    }
  }
  return text;
}

/// A text with `count` of what makes its shape.
std::string ShapedText(Shape shape, int count) {
  std::string text = "[Global]\nDNS-Server0=10.0.0.1\n";
  for (int i = 0; i < count; ++i) {
    switch (shape) {
      case Shape::kSections:
        text.append("[").append(SectionName(i)).append("]\n");
        [[fallthrough]];
      case Shape::kKeys:
        text.append(KeyName(i)).append("=").append(std::to_string(i)).append("\n");
        break;
      case Shape::kComments:
        text.append("# what this is for, told in one line\n");
        break;
      case Shape::kContinuations:
        text.append("  10.20.30.").append(std::to_string(i % 256)).append("\n");
        break;
      case Shape::kDuplicates:
        text.append("Server=").append(std::to_string(i)).append("\n");
        break;
    }
  }
  return text;
}

/// Made once.
const std::string& TextOf(int size) {
  static const std::string texts[] = {
      TypicalText(kSectionsOf[kSmall]), TypicalText(kSectionsOf[kMegabyte]),
      TypicalText(kSectionsOf[kFiftyMegabytes]), ShapedText(Shape::kKeys, 200000)};
  return texts[size];
}

/// Construct, load and destroy.
void Load(benchmark::State& state, const bench::NamedReader& reader, int size) {
  const std::string& text = TextOf(size);
  for (auto _ : state) {
    if (!reader.make()->Load(text)) state.SkipWithError("not loaded");
  }
}

void ScanNewlines(benchmark::State& state, int size) {
  const std::string& text = TextOf(size);
  for (auto _ : state) {
    const char* at = text.data();
    const char* const end = at + text.size();
    std::size_t lines = 0;
    while (const void* found = std::memchr(at, '\n', static_cast<std::size_t>(end - at))) {
      at = static_cast<const char*>(found) + 1;
      ++lines;
    }
    benchmark::DoNotOptimize(lines);
  }
}

/// A file on disk for as long as the program runs.
const std::string& SmallFile() {
  struct File {
    std::string path = (std::filesystem::temp_directory_path() / "orvanta-bench.cfg").string();
    File() { std::ofstream(path, std::ios::binary) << TextOf(kSmall); }
    ~File() { std::filesystem::remove(path); }
  };
  static const File file;
  return file.path;
}

void LoadFile(benchmark::State& state, const bench::NamedReader& reader) {
  const std::string& path = SmallFile();
  for (auto _ : state) {
    if (!reader.make()->LoadFile(path)) state.SkipWithError("not loaded");
  }
}

/// Looks up existing pairs in random order; in capital letters with `capitals`.
void LookUp(benchmark::State& state, const bench::NamedReader& reader, int size, bool capitals) {
  const auto file = reader.make();
  file->Load(TextOf(size));
  std::mt19937 random(1);
  std::vector<std::pair<std::string, std::string>> pairs(1 << 16);
  for (auto& [section, key] : pairs) {
    section = SectionName(static_cast<int>(random() % static_cast<unsigned>(kSectionsOf[size])));
    key = KeyName(static_cast<int>(random() % kKeysPerSection));
    if (!capitals) continue;
    for (std::string* text : {&section, &key}) {
      for (char& c : *text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    }
  }
  std::string value;
  std::size_t at = 0;
  for (auto _ : state) {
    const auto& [section, key] = pairs[at++ % pairs.size()];
    if (!file->Find(section, key, &value)) {
      state.SkipWithError("a pair is missing");
      break;
    }
    benchmark::DoNotOptimize(value.data());
  }
}

void Grow(benchmark::State& state, Shape shape) {
  const std::string text = ShapedText(shape, static_cast<int>(state.range(0)));
  for (auto _ : state) {
    if (!bench::Readers()[0].make()->Load(text)) state.SkipWithError("not loaded");
  }
}

constexpr std::pair<const char*, Shape> kShapes[] = {
    {"sections", Shape::kSections},         {"keys in one section", Shape::kKeys},
    {"comments", Shape::kComments},         {"continuation lines", Shape::kContinuations},
    {"duplicate keys", Shape::kDuplicates},
};

// The names are columns of the report: what, by whom, of which size.
const bool kRegistered = [] {
  const auto add = [](const std::string& name, auto function, auto... arguments) {
    return benchmark::RegisterBenchmark(name.c_str(), function, arguments...);
  };
  for (int size = kSmall; size <= kOneSection; ++size) {
    const std::string suffix = std::string("/") + kSizeNames[size];
    for (const bench::NamedReader& reader : bench::Readers()) {
      add("load/" + std::string(reader.name) + suffix, Load, reader, size);
      if (size == kOneSection) continue;
      add("look up/" + std::string(reader.name) + suffix, LookUp, reader, size, false);
    }
    add("load/newline scan" + suffix, ScanNewlines, size);
    if (size == kOneSection) continue;
    add("look up/other letter case" + suffix, LookUp, bench::Readers()[0], size, true);
  }
  for (const bench::NamedReader& reader : bench::Readers()) {
    add("load file/" + std::string(reader.name) + "/2.6 KB", LoadFile, reader);
  }
  for (const auto& [name, shape] : kShapes) {
    for (const int count : {2000, 20000, 200000}) {
      add("grow/" + std::string(name), Grow, shape)->Arg(count);
    }
  }
  return true;
}();

}  // namespace

BENCHMARK_MAIN();
