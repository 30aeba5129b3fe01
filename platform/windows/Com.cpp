#include "platform/windows/Com.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/windows/Text.h"

namespace platform::windows {
namespace {

struct SafeArrayCloser {
  void operator()(SAFEARRAY* array) const noexcept {
    const LastErrorKeeper keeper;
    ::SafeArrayDestroy(array);
  }
};

using OwnedSafeArray = std::unique_ptr<SAFEARRAY, SafeArrayCloser>;

/// The elements of a one-dimensional array of COM strings. Nobody else knows the array, so it is
/// used without locking it.
std::span<BSTR> Elements(const SAFEARRAY& array) {
  return {static_cast<BSTR*>(array.pvData), array.rgsabound[0].cElements};
}

OwnedSafeArray MakeArray(const std::vector<std::string>& items) {
  OwnedSafeArray array(::SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(items.size())));
  if (!array) throw std::bad_alloc();
  const std::span<BSTR> elements = Elements(*array);
  for (std::size_t i = 0; i < items.size(); ++i) elements[i] = MakeBstr(items[i]).release();
  return array;
}

TextArray ToTextArray(SAFEARRAY* array) {
  TextArray result;
  result.dimensions = ::SafeArrayGetDim(array);
  if (result.dimensions == 1) {
    for (BSTR element : Elements(*array)) result.items.push_back(TextOf(element));
  }
  return result;
}

/// Stores an alternative of the seam's variant into an empty VARIANT.
struct Store {
  VARIANT& target;

  void operator()(Empty) const {}
  void operator()(Null) const { target.vt = VT_NULL; }
  void operator()(RawBool value) const {
    target.vt = VT_BOOL;
    target.boolVal = value.bits;
  }
  void operator()(std::int32_t value) const {
    target.vt = VT_I4;
    target.lVal = value;
  }
  void operator()(const std::string& value) const {
    target.bstrVal = MakeBstr(value).release();
    target.vt = VT_BSTR;
  }
  void operator()(const TextArray& value) const {
    target.parray = MakeArray(value.items).release();
    target.vt = VT_ARRAY | VT_BSTR;
  }
};

}  // namespace

Bstr MakeBstr(const std::string& narrow) {
  Bstr text(::SysAllocString(ToWide(narrow).c_str()));
  if (!text) throw std::bad_alloc();
  return text;
}

std::string TextOf(BSTR text) { return ToNarrow({text, ::SysStringLen(text)}); }

OwnedVariant::OwnedVariant(const Variant& value) : OwnedVariant() {
  std::visit(Store{value_}, value);
}

OwnedVariant::~OwnedVariant() {
  if (value_.vt == VT_BSTR) {
    const Bstr text(value_.bstrVal);
    return;
  }
  const LastErrorKeeper keeper;
  ::VariantClear(&value_);
}

Variant OwnedVariant::ToSeamValue() const {
  switch (value_.vt) {
    case VT_NULL:
      return Null{};
    case VT_BOOL:
      return RawBool{value_.boolVal};
    case VT_I1:
      return std::int32_t{value_.cVal};
    case VT_UI1:
      return std::int32_t{value_.bVal};
    case VT_I2:
      return std::int32_t{value_.iVal};
    case VT_UI2:
      return std::int32_t{value_.uiVal};
    case VT_I4:
    case VT_INT:
      return std::int32_t{value_.lVal};
    case VT_UI4:
    case VT_UINT:
      return static_cast<std::int32_t>(value_.ulVal);
    case VT_BSTR:
      return TextOf(value_.bstrVal);
    case VT_ARRAY | VT_BSTR:
      return ToTextArray(value_.parray);
    default:
      return Empty{};
  }
}

}  // namespace platform::windows
