// Owners of COM interfaces and OLE automation values. Releasing keeps the thread's last error.
#pragma once

#include <memory>
#include <string>

#include "platform/Variant.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"

namespace platform::windows {

struct InterfaceReleaser {
  void operator()(IUnknown* object) const noexcept {
    const LastErrorKeeper keeper;
    object->Release();
  }
};

/// Owns one reference to an interface.
template <class Interface>
using ComPointer = std::unique_ptr<Interface, InterfaceReleaser>;

/// Overwrites a COM string before it is freed, since the system keeps freed ones for later use and
/// passwords are among them.
struct BstrCloser {
  void operator()(BSTR text) const noexcept {
    const LastErrorKeeper keeper;
    ::SecureZeroMemory(text, ::SysStringByteLen(text));
    ::SysFreeString(text);
  }
};

/// Owns a COM string.
using Bstr = std::unique_ptr<OLECHAR, BstrCloser>;

/// The COM string of a narrow text up to its first zero; never null. Throws std::bad_alloc when
/// memory runs out.
Bstr MakeBstr(const std::string& narrow);

/// The narrow text of a borrowed COM string; a null one is an empty text. Throws std::bad_alloc
/// when memory runs out.
std::string TextOf(BSTR text);

/// Owns a VARIANT together with what it holds. Empty at first.
class OwnedVariant {
 public:
  OwnedVariant() { ::VariantInit(&value_); }
  /// The system's form of `value`; arrays become one-dimensional, from 0. Throws std::bad_alloc
  /// when memory runs out.
  explicit OwnedVariant(const Variant& value);
  ~OwnedVariant();
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;

  /// For a call that reads the value, or fills an empty one.
  VARIANT* Address() { return &value_; }

  /// The seam's form of the value, `Empty` for a type that the seam does not know: WMI hands out
  /// 64-bit numbers and dates as texts. Throws std::bad_alloc when memory runs out.
  Variant ToSeamValue() const;

 private:
  VARIANT value_;
};

}  // namespace platform::windows
