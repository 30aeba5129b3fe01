#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <string>

#include "common/util/CollectionNode.h"
#include "common/util/CompositeIterator.h"
#include "common/util/LeafNode.h"

namespace {

static_assert(std::forward_iterator<util::depth_iterator>);
static_assert(std::forward_iterator<util::breadth_iterator>);

std::string gone;  // the names of the destroyed nodes

struct NameCollector : util::CompositeVisitor {
  std::string names;
};

template <typename Base>
struct Named : Base {
  explicit Named(char nodeName) : name(nodeName) {}
  ~Named() override { gone += name; }
  void accept(util::CompositeVisitor& visitor) override {
    dynamic_cast<NameCollector&>(visitor).names += name;
  }
  char name;
};

using Group = Named<util::CollectionNode>;
using Leaf = Named<util::LeafNode>;

/// Builds the tree that `text` spells: "A(b c(d))"; a name with brackets is a collection.
std::unique_ptr<util::CompositeNode> Build(const char*& text) {
  const char name = *text++;
  if (*text != '(') return std::make_unique<Leaf>(name);
  auto group = std::make_unique<Group>(name);
  for (++text; *text != ')';) {
    if (*text == ' ') ++text;
    group->add(Build(text));
  }
  ++text;
  return group;
}

template <typename Iterator>
std::string Order(Iterator node, Iterator end) {
  NameCollector collector;
  for (; node != end; ++node) (*node)->accept(collector);
  return collector.names;
}

TEST(Composite, YieldsTheSubtreeInBothOrders) {
  constexpr struct {
    const char *name, *tree, *depth, *breadth;
    std::size_t count;
  } kTrees[] = {
      {"a leaf yields nothing, though it counts", "a", "", "", 1},
      {"an empty collection yields itself", "A()", "A", "A", 1},
      {"two groups", "L(A(a b) B(c))", "LAabBc", "LABabc", 6},
      {"empty groups are passed", "L(A() B(C()) D())", "LABCD", "LABDC", 5},
      {"subtrees of unequal depth", "L(a B(C(D(e) f) g) h I(j))", "LaBCDefghIj", "LaBhICgjDfe", 11},
  };
  for (const auto& c : kTrees) {
    SCOPED_TRACE(c.name);
    const char* text = c.tree;
    const auto tree = Build(text);
    EXPECT_EQ(Order(tree->depthBegin(), tree->depthEnd()), c.depth);
    EXPECT_EQ(Order(tree->breadthBegin(), tree->breadthEnd()), c.breadth);
    EXPECT_EQ(tree->count(), c.count);
  }
}

TEST(Composite, IteratorsCompareTheirNodesOnlyAndStayAtTheEnd) {
  const char* text = "L(A(a))";
  const auto tree = Build(text);
  util::CompositeNode& inner = *tree->asCollection()->children().front();
  auto outerWalk = tree->depthBegin();
  EXPECT_EQ(*outerWalk++, tree.get());
  EXPECT_EQ(outerWalk, inner.depthBegin()) << "other root";
  EXPECT_EQ(outerWalk, inner.breadthBegin()) << "other order";
  EXPECT_NE(outerWalk, tree->depthBegin());
  std::advance(outerWalk, 5);
  EXPECT_EQ(outerWalk, tree->depthEnd());
}

TEST(Composite, ALeafDeclinesAChild) {
  const char* text = "L(a)";
  const auto tree = Build(text);
  util::CompositeNode& leaf = *tree->asCollection()->children().front();
  Leaf declined('d');
  declined.setParent(tree.get());
  leaf.add(&declined);
  EXPECT_TRUE(leaf.isEmpty());
  EXPECT_EQ(declined.getParent(), leaf.getParent());
}

TEST(Composite, DestroysTheChildrenFromTheFirstToTheLast) {
  const char* text = "L(A(a b) B(C(c d)) e)";
  auto tree = Build(text);
  gone.clear();
  tree.reset();
  EXPECT_EQ(gone, "LAabBCcde");
}

}  // namespace
