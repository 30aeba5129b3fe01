// Walks over trees of a million nodes, from flat to deep.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "common/util/CollectionNode.h"
#include "common/util/CompositeIterator.h"
#include "common/util/LeafNode.h"

#if defined(HAS_GLIB)
#include <glib.h>
#endif

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
}

void DepthFirst(benchmark::State& state) {
  const auto tree = MakeTree(state.range(0));
  Walk(state, tree->depthBegin());
}

void BreadthFirst(benchmark::State& state) {
  const auto tree = MakeTree(state.range(0));
  Walk(state, tree->breadthBegin());
}

#if defined(HAS_GLIB)
/// The same tree of GLib's nodes.
GNode* MakeGTree(std::int64_t width) {
  const std::int64_t inner = (kNodes - 2) / width + 1;
  std::vector<GNode*> groups{g_node_new(nullptr)};
  std::vector<GNode*> last(static_cast<std::size_t>(inner));
  for (std::int64_t i = 1; i < kNodes; ++i) {
    const auto at = static_cast<std::size_t>((i - 1) / width);
    // Behind the last child: its own appending looks for that from the first.
    last[at] = g_node_insert_after(groups[at], last[at], g_node_new(nullptr));
    if (i < inner) groups.push_back(last[at]);
  }
  return groups[0];
}

void WalkG(benchmark::State& state, GTraverseType order) {
  GNode* const tree = MakeGTree(state.range(0));
  for (auto _ : state) {
    std::int64_t nodes = 0;
    const auto visit = [](GNode* node, gpointer count) -> gboolean {
      benchmark::DoNotOptimize(node);
      ++*static_cast<std::int64_t*>(count);
      return FALSE;
    };
    g_node_traverse(tree, order, G_TRAVERSE_ALL, -1, visit, &nodes);
    if (nodes != kNodes) state.SkipWithError("nodes are missing");
  }
  g_node_destroy(tree);
}
#endif

// Children per inner node: two trees, one flat collection.
const bool kRegistered = [] {
  const auto add = [](const char* name, auto function, auto... arguments) {
    return benchmark::RegisterBenchmark(name, function, arguments...);
  };
  for (const std::int64_t width : {std::int64_t{3}, std::int64_t{10}, kNodes}) {
    add("tree depth-first/orvanta", DepthFirst)->Arg(width);
    add("tree breadth-first/orvanta", BreadthFirst)->Arg(width);
#if defined(HAS_GLIB)
    add("tree depth-first/GNode", WalkG, G_PRE_ORDER)->Arg(width);
    add("tree breadth-first/GNode", WalkG, G_LEVEL_ORDER)->Arg(width);
#endif
  }
  return true;
}();

}  // namespace
