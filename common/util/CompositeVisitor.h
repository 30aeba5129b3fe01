// The root of all visitors of a composite tree.
#pragma once

namespace util {

/// A node family derives its own visitor from this one; its nodes ask at run time whether the
/// visitor they are given belongs to them.
class CompositeVisitor {
 public:
  virtual ~CompositeVisitor() = default;
};

}  // namespace util
