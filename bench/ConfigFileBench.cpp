// How fast configuration files are read and looked up in: beside other readers, and beside the time
// that merely copying the text, finding its line ends or reading the file takes.
#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "bench/Readers.h"
#include "bench/Texts.h"
#include "handlers/internal/ConfigFile.h"

namespace {

using bench::TextOf;

void Finish(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) *
                          static_cast<std::int64_t>(state.iterations()));
}

/// Construct, load and destroy.
void Load(benchmark::State& state, const bench::NamedReader& reader, int size) {
  const std::string& text = TextOf(size);
  for (auto _ : state) {
    if (!reader.make()->Load(text)) state.SkipWithError("not loaded");
  }
  Finish(state, text);
}

void Copy(benchmark::State& state, int size) {
  const std::string& text = TextOf(size);
  for (auto _ : state) {
    std::string copy = text;
    benchmark::DoNotOptimize(copy.data());
  }
  Finish(state, text);
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
  Finish(state, text);
}

/// A file on disk for as long as the program runs.
const std::string& SmallFile() {
  struct File {
    std::string path = (std::filesystem::temp_directory_path() / "orvanta-bench.cfg").string();
    File() { std::ofstream(path, std::ios::binary) << TextOf(bench::kSmall); }
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

void OpenReadClose(benchmark::State& state) {
  const std::string& path = SmallFile();
  std::array<char, 4096> buffer;
  for (auto _ : state) {
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    benchmark::DoNotOptimize(std::fread(buffer.data(), 1, buffer.size(), file));
    std::fclose(file);
  }
}

/// Looks up existing pairs in random order; in capital letters with `capitals`.
void LookUp(benchmark::State& state, const bench::NamedReader& reader, int size, bool capitals) {
  const auto file = reader.make();
  file->Load(TextOf(size));
  std::mt19937 random(1);
  std::vector<std::pair<std::string, std::string>> pairs(1 << 16);
  for (auto& [section, key] : pairs) {
    section = bench::SectionName(
        static_cast<int>(random() % static_cast<unsigned>(bench::kSectionsOf[size])));
    key = bench::KeyName(static_cast<int>(random() % bench::kKeysPerSection));
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

void Grow(benchmark::State& state, bench::Shape shape) {
  const std::string text = bench::ShapedText(shape, static_cast<int>(state.range(0)));
  for (auto _ : state) {
    if (!bench::Readers()[0].make()->Load(text)) state.SkipWithError("not loaded");
  }
}

/// Reads every entry in file order.
void Walk(benchmark::State& state, int size) {
  ConfigFile file{/*caseSensitive=*/false};
  file.Parse(TextOf(size), /*merge=*/false);
  std::string section;
  std::string key;
  std::string value;
  for (auto _ : state) {
    for (auto found = file.GetFirstSection(&section); found == ConfigFile::kSuccess;
         found = file.GetNextSection(&section)) {
      for (auto entry = file.GetFirstEntry(section, &key, &value); entry == ConfigFile::kSuccess;
           entry = file.GetNextEntry(&key, &value)) {
        benchmark::DoNotOptimize(value.data());
      }
    }
  }
  Finish(state, TextOf(size));
}

constexpr std::pair<const char*, bench::Shape> kShapes[] = {
    {"sections", bench::Shape::kSections},
    {"keys in one section", bench::Shape::kKeys},
    {"comments", bench::Shape::kComments},
    {"continuation lines", bench::Shape::kContinuations},
    {"duplicate keys", bench::Shape::kDuplicates},
};

// The names are columns of the report: what, by whom, of which size.
const bool kRegistered = [] {
  const auto add = [](const std::string& name, auto function, auto... arguments) {
    return benchmark::RegisterBenchmark(name.c_str(), function, arguments...);
  };
  for (int size = bench::kSmall; size <= bench::kOneSection; ++size) {
    const std::string suffix = std::string("/") + bench::kSizeNames[size];
    for (const bench::NamedReader& reader : bench::Readers()) {
      add("load/" + std::string(reader.name) + suffix, Load, reader, size);
      if (size == bench::kOneSection) continue;
      add("look up/" + std::string(reader.name) + suffix, LookUp, reader, size, false);
    }
    add("load/copy" + suffix, Copy, size);
    add("load/newline scan" + suffix, ScanNewlines, size);
    add("walk/orvanta" + suffix, Walk, size);
    if (size == bench::kOneSection) continue;
    add("look up/other letter case" + suffix, LookUp, bench::Readers()[0], size, true);
  }
  for (const bench::NamedReader& reader : bench::Readers()) {
    add("load file/" + std::string(reader.name) + "/2.6 KB", LoadFile, reader);
  }
  add("load file/open, read, close/2.6 KB", OpenReadClose);
  for (const auto& [name, shape] : kShapes) {
    for (const int count : {2000, 20000, 200000}) {
      add("grow/" + std::string(name), Grow, shape)->Arg(count);
    }
  }
  return true;
}();

}  // namespace

BENCHMARK_MAIN();
