// COM objects of this process that answer from a port: reference counting, and the hand-over of
// what a port makes.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <utility>

namespace contract {

/// Number of COM objects alive in this process.
inline int liveComObjects = 0;

// COM interfaces have no destructor at all; an object is only ever deleted as a `ComObject`.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// Starts with one reference and deletes itself with the last one.
template <class First, class... More>
class ComObject : public First, public More... {
 public:
  ComObject() { ++liveComObjects; }
  virtual ~ComObject() { --liveComObjects; }
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(First)) *object = static_cast<First*>(this);
    ((iid == __uuidof(More) ? * object = static_cast<More*>(this) : nullptr), ...);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG AddRef() override { return ++references_; }
  ULONG Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 private:
  ULONG references_ = 1;
};

#pragma GCC diagnostic pop

/// The text in the system's code page.
std::string Narrow(const wchar_t* text);

/// A stub that owns the port that answers for it.
template <class Stub, class PortType>
class Fronts : public Stub {
 public:
  using Port = PortType;
  explicit Fronts(std::unique_ptr<Port> port) : port_(std::move(port)) {}
  Port& Machine() const { return *port_; }

 private:
  std::unique_ptr<Port> port_;
};

/// Answers what `ask(&port)` answers, and stores the port it made, if any, as a new `Com` object.
template <class Com, class Interface, class Ask>
HRESULT Wrap(Interface** object, Ask ask) {
  std::unique_ptr<typename Com::Port> port;
  const HRESULT result = ask(&port);
  *object = port == nullptr ? nullptr : new Com(std::move(port));
  return result;
}

}  // namespace contract
