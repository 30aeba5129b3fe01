// COM objects of this process that answer from a port. To their caller an object is a table of
// slots; one that nobody has any business with answers E_NOTIMPL.
#pragma once

#include <array>
#include <initializer_list>
#include <memory>
#include <utility>

#include "platform/windows/WindowsHeader.h"

namespace contract {

/// Number of COM objects alive in this process.
inline int liveComObjects = 0;

using Slots = std::array<void*, 32>;

/// Starts with one reference and deletes itself with the last one.
template <class Port>
struct ComObject {
  void* const* slots;
  std::unique_ptr<Port> port;
  ULONG references = 1;

  static HRESULT WINAPI QueryInterface(ComObject*, REFIID, void** object) {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  static ULONG WINAPI AddRef(ComObject* self) { return ++self->references; }
  static ULONG WINAPI Release(ComObject* self) {
    const ULONG left = --self->references;
    if (left == 0) {
      delete self;
      --liveComObjects;
    }
    return left;
  }
};

template <class Function>
void* AddressOf(Function* function) {
  return reinterpret_cast<void*>(function);
}

/// The table of an interface whose `own` slots are answered.
template <class Port>
Slots MakeSlots(std::initializer_list<std::pair<std::size_t, void*>> own) {
  Slots slots;
  slots.fill(AddressOf(+[]() -> HRESULT { return E_NOTIMPL; }));
  slots[0] = AddressOf(&ComObject<Port>::QueryInterface);
  slots[1] = AddressOf(&ComObject<Port>::AddRef);
  slots[2] = AddressOf(&ComObject<Port>::Release);
  for (const auto& [slot, function] : own) slots[slot] = function;
  return slots;
}

/// Answers what `ask(&port)` answers, and stores the port it made, if any, as a new COM object.
template <class Port, class Ask>
HRESULT Wrap(const Slots& slots, void** object, Ask ask) {
  std::unique_ptr<Port> port;
  const HRESULT result = ask(&port);
  *object = nullptr;
  if (port != nullptr) {
    *object = new ComObject<Port>{slots.data(), std::move(port)};
    ++liveComObjects;
  }
  return result;
}

}  // namespace contract
