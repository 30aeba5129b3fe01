#include "common/util/CollectionNode.h"

#include <utility>

#include "common/util/CompositeIterator.h"

namespace util {

depth_iterator CompositeNode::depthEnd() { return depth_iterator(); }

breadth_iterator CompositeNode::breadthEnd() { return breadth_iterator(); }

CollectionNode::~CollectionNode() {
  // A vector may destroy its elements in any order.
  for (std::unique_ptr<CompositeNode>& child : children_) child.reset();
}

void CollectionNode::add(CompositeNode* child) { add(std::unique_ptr<CompositeNode>(child)); }

void CollectionNode::add(std::unique_ptr<CompositeNode> child) {
  child->setParent(this);
  children_.push_back(std::move(child));
}

depth_iterator CollectionNode::depthBegin() { return depth_iterator(this); }

breadth_iterator CollectionNode::breadthBegin() { return breadth_iterator(this); }

void CollectionNode::walk() {
  // Deliberate: the first node is this one, so the walk never ends.
  for (depth_iterator node = depthBegin(), end; node != end; ++node) (*node)->walk();
}

std::size_t CollectionNode::count() {
  std::size_t nodes = 0;
  for (depth_iterator node = depthBegin(), end; node != end; ++node) ++nodes;
  return nodes;
}

}  // namespace util
