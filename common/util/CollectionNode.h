// A node that owns an ordered list of children. An empty one allocates nothing.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "common/util/CompositeNode.h"

namespace util {

class CollectionNode : public CompositeNode {
 public:
  using Children = std::vector<std::unique_ptr<CompositeNode>>;

  /// Destroys the children from the first to the last, each with its own subtree.
  ~CollectionNode() override;

  /// Appends the child and becomes its parent.
  void add(CompositeNode* child) override;
  void add(std::unique_ptr<CompositeNode> child);

  depth_iterator depthBegin() override;
  breadth_iterator breadthBegin() override;
  bool isEmpty() const override { return children_.empty(); }
  void walk() override;
  std::size_t count() override;

  /// In the order in which they were added.
  const Children& children() const { return children_; }

 protected:
  CollectionNode() : CompositeNode(this) {}

 private:
  Children children_;
};

}  // namespace util
