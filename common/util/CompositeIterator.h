// Forward iterators over the nodes of a composite tree. They own nothing, and a change to the tree
// makes them invalid.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

#include "common/util/CollectionNode.h"
#include "common/util/CompositeNode.h"

namespace util {

/// Yields node pointers. Which frame is the top one makes the order.
class abstract_composite_iterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using difference_type = std::ptrdiff_t;
  using value_type = CompositeNode*;
  using pointer = void;
  using reference = CompositeNode*;

  virtual ~abstract_composite_iterator() = default;

  /// The current node; null at the end.
  CompositeNode* operator*() const { return current_; }

  /// Compares the current nodes only, wherever the iterators were started.
  friend bool operator==(const abstract_composite_iterator& left,
                         const abstract_composite_iterator& right) {
    return left.current_ == right.current_;
  }

 protected:
  /// The children of an entered collection that are still to come, at least one.
  struct Frame {
    const std::unique_ptr<CompositeNode>* next;
    const std::unique_ptr<CompositeNode>* end;
  };

  /// Stands on `start`, or at the end when that is null.
  explicit abstract_composite_iterator(CompositeNode* start) : current_(start) {}

  virtual Frame& topFrame() = 0;
  virtual void removeTopFrame() = 0;
  virtual void addFrame(const Frame& frame) = 0;
  virtual bool noFramesLeft() const = 0;

 public:
  /// True when a subtree is finished before the next sibling, false when nodes come by level.
  virtual bool isDepthFirst() const = 0;

 protected:
  /// One step of `self`; at the end it stays there. Knowing the final class, it calls the frame
  /// operations directly.
  template <typename Self>
  static void Advance(Self& self) {
    if (self.current_ == nullptr) return;
    const CollectionNode* const entered = self.current_->asCollection();
    if (entered != nullptr && !entered->children().empty()) {
      const std::unique_ptr<CompositeNode>* const first = entered->children().data();
      // cppcheck-suppress nullPointerArithmetic; the collection is not empty
      self.addFrame({first, first + entered->children().size()});
    }
    if (self.noFramesLeft()) {
      self.current_ = nullptr;
      return;
    }
    Frame& top = self.topFrame();
    self.current_ = (top.next++)->get();
    if (top.next == top.end) self.removeTopFrame();
  }

  CompositeNode* current_;
  std::vector<Frame> frames_;
};

/// Pre-order: each node before its descendants, a subtree finished before the next sibling.
class depth_iterator final : public abstract_composite_iterator {
 public:
  explicit depth_iterator(CompositeNode* start = nullptr) : abstract_composite_iterator(start) {}

  bool isDepthFirst() const override { return true; }

  depth_iterator& operator++() {
    Advance(*this);
    return *this;
  }
  depth_iterator operator++(int) {
    depth_iterator before = *this;
    Advance(*this);
    return before;
  }

 private:
  friend abstract_composite_iterator;

  Frame& topFrame() override { return frames_.back(); }
  void removeTopFrame() override { frames_.pop_back(); }
  void addFrame(const Frame& frame) override { frames_.push_back(frame); }
  bool noFramesLeft() const override { return frames_.empty(); }
};

/// Level order: all children of the start, then the children of its first collection, and so on.
class breadth_iterator final : public abstract_composite_iterator {
 public:
  explicit breadth_iterator(CompositeNode* start = nullptr) : abstract_composite_iterator(start) {}

  bool isDepthFirst() const override { return false; }

  breadth_iterator& operator++() {
    Advance(*this);
    return *this;
  }
  breadth_iterator operator++(int) {
    breadth_iterator before = *this;
    Advance(*this);
    return before;
  }

 private:
  friend abstract_composite_iterator;

  Frame& topFrame() override { return *(frames_.begin() + front_); }
  void removeTopFrame() override {
    ++front_;
    // Closing the gap once it is half of the queue keeps the cost per frame constant.
    if (2 * front_ >= std::ssize(frames_)) {
      frames_.erase(frames_.begin(), frames_.begin() + front_);
      front_ = 0;
    }
  }
  void addFrame(const Frame& frame) override { frames_.push_back(frame); }
  bool noFramesLeft() const override { return front_ == std::ssize(frames_); }

  std::ptrdiff_t front_ = 0;
};

}  // namespace util
