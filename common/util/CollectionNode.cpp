#include "common/util/CollectionNode.h"

#include <iterator>
#include <utility>

#include "common/util/CompositeIterator.h"

namespace util {

CollectionNode::~CollectionNode() {
  // Each inner node hands its children over before it goes, so that no destructor calls another.
  for (std::size_t i = 0; i < children_.size(); ++i) {
    if (CollectionNode* const inner = children_[i]->asCollection()) {
      children_.insert(children_.end(), std::make_move_iterator(inner->children_.begin()),
                       std::make_move_iterator(inner->children_.end()));
      inner->children_.clear();
    }
    children_[i].reset();
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
