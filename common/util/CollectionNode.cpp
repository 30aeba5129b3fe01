#include "common/util/CollectionNode.h"

#include <algorithm>
#include <utility>

#include "common/util/CompositeIterator.h"

namespace util {

CollectionNode::~CollectionNode() {
  // Goes down to childless nodes first, so that no destructor has anything left to destroy, and
  // allocates nothing. What has been entered is reversed: the first child then goes from the back.
  CollectionNode* node = this;
  std::reverse(children_.begin(), children_.end());
  for (;;) {
    if (node->children_.empty()) {
      if (node == this) return;
      node = node->CompositeNode::getParent()->asCollection();
      node->children_.pop_back();
      continue;
    }
    CollectionNode* const last = node->children_.back()->asCollection();
    if (last == nullptr || last->isEmpty()) {
      node->children_.pop_back();
    } else {
      last->CompositeNode::setParent(node);
      std::reverse(last->children_.begin(), last->children_.end());
      node = last;
    }
  }
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
