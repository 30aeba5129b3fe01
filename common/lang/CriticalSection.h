// A lock that its holder may enter again.
#pragma once

#include <memory>

#include "platform/ICriticalSection.h"
#include "platform/IPlatform.h"

namespace lang {

/// Initialised when it is made, deleted with the object. Every `Enter` is paired with one `Leave`
/// on the same thread.
class CriticalSection {
 public:
  void Enter() { section_->Enter(); }
  void Leave() { section_->Leave(); }

 private:
  std::unique_ptr<platform::ICriticalSection> section_ = platform::Current().MakeCriticalSection();
};

}  // namespace lang
