// A node without children.
#pragma once

#include <cstddef>

#include "common/util/CompositeIterator.h"
#include "common/util/CompositeNode.h"

namespace util {

class LeafNode : public CompositeNode {
 public:
  /// Declines: the child stays the caller's and is left unchanged.
  void add(CompositeNode*) override {}
  depth_iterator depthBegin() override { return depthEnd(); }
  breadth_iterator breadthBegin() override { return breadthEnd(); }
  bool isEmpty() const override { return true; }
  void walk() override {}
  std::size_t count() override { return 1; }

 protected:
  LeafNode() = default;
};

}  // namespace util
