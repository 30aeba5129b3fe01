// Clean-up at the end of a scope.
#pragma once

#include <utility>

namespace util {

/// Runs its action, which throws nothing, when it is destroyed.
template <typename Action>
class Finally {
 public:
  explicit Finally(Action action) : action_(std::move(action)) {}
  ~Finally() { action_(); }
  Finally& operator=(Finally&&) = delete;

 private:
  Action action_;
};

}  // namespace util
