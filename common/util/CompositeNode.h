// A node of an ordered tree whose inner nodes own their children: a CollectionNode has children, a
// LeafNode never has any. To iterate, include CompositeIterator.h.
#pragma once

#include <cstddef>

namespace util {

class breadth_iterator;
class CollectionNode;
class depth_iterator;

/// The root of all visitors. A node family derives its own visitor from this one; its nodes ask at
/// run time whether the visitor they are given belongs to them.
class CompositeVisitor {
 public:
  virtual ~CompositeVisitor() = default;
};

class CompositeNode {
 public:
  virtual ~CompositeNode() = default;
  CompositeNode& operator=(CompositeNode&&) = delete;

  /// Calls the visitor's operation for this class of node, or nothing when the visitor belongs to
  /// another family of nodes.
  virtual void accept(CompositeVisitor& visitor) = 0;
  /// A collection takes `child`, which is not null, and destroys it with itself, or at once when
  /// memory runs out. A leaf declines: the child stays the caller's and is left unchanged.
  virtual void add(CompositeNode* child) = 0;
  /// The enclosing node; null for a root.
  virtual CompositeNode* getParent() const { return parent_; }
  virtual void setParent(CompositeNode* parent) { parent_ = parent; }

  // A collection yields itself first and then its subtree: depthBegin each node before its
  // descendants, breadthBegin level by level. A leaf yields nothing, not even itself. Iterators
  // own nothing; a change to the tree makes them invalid.

  virtual depth_iterator depthBegin() = 0;
  virtual breadth_iterator breadthBegin() = 0;
  virtual depth_iterator depthEnd();
  virtual breadth_iterator breadthEnd();

  /// True when the node has no children.
  virtual bool isEmpty() const = 0;
  /// Calls walk on every node that depthBegin yields. Not to be called on a collection, which comes
  /// first among its own nodes and would call itself without end.
  virtual void walk() = 0;
  /// The number of nodes in the subtree, this one included.
  virtual std::size_t count() = 0;

  /// This node when it is a collection, otherwise null. Replaces a run-time type test, which
  /// would take most of the time of a walk.
  CollectionNode* asCollection() { return collection_; }

 protected:
  /// A collection passes itself.
  explicit CompositeNode(CollectionNode* collection = nullptr) : collection_(collection) {}

 private:
  CollectionNode* const collection_;
  CompositeNode* parent_ = nullptr;
};

}  // namespace util
