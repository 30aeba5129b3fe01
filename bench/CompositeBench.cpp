// Walks over trees of a million nodes, from flat to deep.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "common/util/CollectionNode.h"
#include "common/util/CompositeIterator.h"
#include "common/util/LeafNode.h"

namespace {

constexpr std::int64_t kNodes = 1'000'000;

struct Group final : util::CollectionNode {
  void accept(util::CompositeVisitor&) override {}
};

struct Leaf final : util::LeafNode {
  void accept(util::CompositeVisitor&) override {}
};

/// A tree of `kNodes` nodes, filled level by level; inner nodes have `width` children.
std::unique_ptr<Group> MakeTree(std::int64_t width) {
  auto root = std::make_unique<Group>();
  const std::int64_t inner = (kNodes - 2) / width + 1;
  std::vector<Group*> groups{root.get()};
  groups.reserve(static_cast<std::size_t>(inner));
  for (std::int64_t i = 1; i < kNodes; ++i) {
    Group& parent = *groups[static_cast<std::size_t>((i - 1) / width)];
    if (i < inner) {
      auto group = std::make_unique<Group>();
      groups.push_back(group.get());
      parent.add(std::move(group));
    } else {
      parent.add(std::make_unique<Leaf>());
    }
  }
  return root;
}

template <typename Iterator>
void Walk(benchmark::State& state, Iterator begin) {
  for (auto _ : state) {
    std::int64_t nodes = 0;
    for (Iterator node = begin, end; node != end; ++node) {
      benchmark::DoNotOptimize(*node);
      ++nodes;
    }
    if (nodes != kNodes) state.SkipWithError("nodes are missing");
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}

void DepthFirst(benchmark::State& state) {
  const auto tree = MakeTree(state.range(0));
  Walk(state, tree->depthBegin());
}

void BreadthFirst(benchmark::State& state) {
  const auto tree = MakeTree(state.range(0));
  Walk(state, tree->breadthBegin());
}

void BuildAndDestroy(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(MakeTree(state.range(0)));
  state.SetItemsProcessed(state.iterations() * kNodes);
}

// Children per inner node: a chain, two trees, one flat collection.
BENCHMARK(DepthFirst)->Arg(1)->Arg(3)->Arg(10)->Arg(kNodes)->Unit(benchmark::kMillisecond);
BENCHMARK(BreadthFirst)->Arg(1)->Arg(3)->Arg(10)->Arg(kNodes)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildAndDestroy)->Arg(1)->Arg(3)->Arg(10)->Arg(kNodes)->Unit(benchmark::kMillisecond);

}  // namespace
