// How fast configuration files are read and looked up in, beside the time that merely copying the
// text and finding its line ends takes.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "handlers/internal/ConfigFile.h"

namespace {

constexpr int kKeysPerSection = 20;

std::string SectionName(int section) { return "NicEntry" + std::to_string(section); }
std::string KeyName(int key) { return "Setting-Name" + std::to_string(key); }

/// A section takes about 500 bytes.
std::string TypicalText(int sections) {
  std::string text;
  for (int section = 0; section < sections; ++section) {
    text.append("[").append(SectionName(section)).append("]\n; one adapter\n");
    for (int key = 0; key < kKeysPerSection; ++key) {
      text.append(KeyName(key)).append("=10.20.").append(std::to_string(key)).append(".1\n");
    }
  }
  return text;
}

std::string OneSectionText(int keys) {
  std::string text = "[Global]\n";
  for (int key = 0; key < keys; ++key) {
    text.append(KeyName(key)).append("=").append(std::to_string(key)).append("\n");
  }
  return text;
}

enum Text : std::int64_t { kSmall, kMegabyte, kFiftyMegabytes, kOneSection };

const std::string& TextOf(std::int64_t which) {
  static const std::string texts[] = {TypicalText(5), TypicalText(2000), TypicalText(100000),
                                      OneSectionText(200000)};
  return texts[which];
}

void Finish(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) *
                          static_cast<std::int64_t>(state.iterations()));
  state.counters["bytes"] = static_cast<double>(text.size());
}

/// Construct, load and destroy; the copy of the text that the reader takes over is included.
void Load(benchmark::State& state) {
  const std::string& text = TextOf(state.range(0));
  for (auto _ : state) {
    ConfigFile file{/*caseSensitive=*/false};
    benchmark::DoNotOptimize(file.Parse(text, /*merge=*/false));
  }
  Finish(state, text);
}

void Copy(benchmark::State& state) {
  const std::string& text = TextOf(state.range(0));
  for (auto _ : state) {
    std::string copy = text;
    benchmark::DoNotOptimize(copy.data());
  }
  Finish(state, text);
}

void ScanNewlines(benchmark::State& state) {
  const std::string& text = TextOf(state.range(0));
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

/// Looks up existing pairs in random order. The second argument asks for other letter case.
void LookUp(benchmark::State& state) {
  constexpr int kSections[] = {5, 2000, 100000};
  ConfigFile file{/*caseSensitive=*/false};
  file.Parse(TextOf(state.range(0)), /*merge=*/false);
  std::mt19937 random(1);
  std::vector<std::pair<std::string, std::string>> pairs(1 << 16);
  for (auto& [section, key] : pairs) {
    section =
        SectionName(static_cast<int>(random() % static_cast<unsigned>(kSections[state.range(0)])));
    key = KeyName(static_cast<int>(random() % kKeysPerSection));
    if (state.range(1) != 0) {
      for (char& c : section) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
      for (char& c : key) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    }
  }
  std::string value;
  std::size_t at = 0;
  for (auto _ : state) {
    const auto& [section, key] = pairs[at++ % pairs.size()];
    if (file.ReadValue(section, key, &value) != ConfigFile::kSuccess) {
      state.SkipWithError("a pair is missing");
      break;
    }
    benchmark::DoNotOptimize(value.data());
  }
}

BENCHMARK(Load)->DenseRange(kSmall, kOneSection);
BENCHMARK(Copy)->DenseRange(kSmall, kOneSection);
BENCHMARK(ScanNewlines)->DenseRange(kSmall, kOneSection);
BENCHMARK(LookUp)->ArgsProduct({{kSmall, kMegabyte, kFiftyMegabytes}, {0, 1}});

}  // namespace

BENCHMARK_MAIN();
