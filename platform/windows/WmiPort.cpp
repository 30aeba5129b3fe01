#include <utility>

#include "platform/IWmi.h"
#include "platform/windows/Com.h"
#include "platform/windows/Handles.h"
#include "platform/windows/Text.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

static_assert(kOk == S_OK);
static_assert(kNoMoreRows == WBEM_S_FALSE);
static_assert(kForever == static_cast<std::int32_t>(WBEM_INFINITE));

/// Hands over what a successful call answered: an object of the seam for the interface, or null for
/// none. After a failure `*object` keeps its value; the interface is never leaked.
template <class Object, class Port, class Interface>
HResult Answer(HRESULT result, Interface* answered, std::unique_ptr<Port>* object) {
  ComPointer<Interface> owner(answered);
  if (SUCCEEDED(result)) {
    *object = owner ? std::make_unique<Object>(std::move(owner)) : nullptr;
  }
  return result;
}

class WmiObject final : public IWmiObject {
 public:
  explicit WmiObject(ComPointer<IWbemClassObject> object) : object_(std::move(object)) {}

  IWbemClassObject* Interface() const { return object_.get(); }

  HResult Get(const std::string& property, Variant* value) override {
    OwnedVariant found;
    const HRESULT result =
        object_->Get(ToWide(property).c_str(), 0, found.Address(), nullptr, nullptr);
    if (SUCCEEDED(result)) *value = found.ToSeamValue();
    return result;
  }

  HResult Put(const std::string& property, const Variant& value) override {
    OwnedVariant stored(value);
    return object_->Put(ToWide(property).c_str(), 0, stored.Address(), 0);
  }

  HResult GetMethod(const std::string& method, std::unique_ptr<IWmiObject>* definition) override {
    IWbemClassObject* in = nullptr;
    const HRESULT result = object_->GetMethod(ToWide(method).c_str(), 0, &in, nullptr);
    return Answer<WmiObject>(result, in, definition);
  }

  HResult SpawnInstance(std::unique_ptr<IWmiObject>* instance) override {
    IWbemClassObject* spawned = nullptr;
    const HRESULT result = object_->SpawnInstance(0, &spawned);
    return Answer<WmiObject>(result, spawned, instance);
  }

 private:
  ComPointer<IWbemClassObject> object_;
};

class WmiRows final : public IWmiRows {
 public:
  explicit WmiRows(ComPointer<IEnumWbemClassObject> rows) : rows_(std::move(rows)) {}

  HResult Next(std::int32_t timeoutMs, std::unique_ptr<IWmiObject>* row,
               std::uint32_t* returned) override {
    IWbemClassObject* object = nullptr;
    ULONG count = 0;
    const HRESULT result = rows_->Next(timeoutMs, 1, &object, &count);
    *returned = count;
    return Answer<WmiObject>(result, object, row);
  }

 private:
  ComPointer<IEnumWbemClassObject> rows_;
};

class WmiServices final : public IWmiServices {
 public:
  explicit WmiServices(ComPointer<IWbemServices> services) : services_(std::move(services)) {}

  HResult SecureProxy() override {
    return ::CoSetProxyBlanket(services_.get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr,
                               RPC_C_AUTHN_LEVEL_CALL, RPC_C_IMP_LEVEL_IMPERSONATE, nullptr,
                               EOAC_NONE);
  }

  HResult ExecQuery(const std::string& query, std::int32_t flags,
                    std::unique_ptr<IWmiRows>* rows) override {
    IEnumWbemClassObject* found = nullptr;
    const HRESULT result =
        services_->ExecQuery(MakeBstr("WQL").get(), MakeBstr(query).get(), flags, nullptr, &found);
    return Answer<WmiRows>(result, found, rows);
  }

  HResult CreateInstanceEnum(const std::string& className,
                             std::unique_ptr<IWmiRows>* rows) override {
    IEnumWbemClassObject* found = nullptr;
    const HRESULT result =
        services_->CreateInstanceEnum(MakeBstr(className).get(), 0, nullptr, &found);
    return Answer<WmiRows>(result, found, rows);
  }

  HResult FetchClass(const std::string& className, std::unique_ptr<IWmiObject>* object) override {
    IWbemClassObject* found = nullptr;
    const HRESULT result =
        services_->GetObject(MakeBstr(className).get(), 0, nullptr, &found, nullptr);
    return Answer<WmiObject>(result, found, object);
  }

  HResult ExecMethod(const std::string& path, const std::string& method, IWmiObject* parameters,
                     std::unique_ptr<IWmiObject>* result) override {
    // Every object that a caller can have was made by this adapter.
    IWbemClassObject* in =
        parameters != nullptr ? static_cast<WmiObject*>(parameters)->Interface() : nullptr;
    IWbemClassObject* out = nullptr;
    const HRESULT called = services_->ExecMethod(MakeBstr(path).get(), MakeBstr(method).get(), 0,
                                                 nullptr, in, &out, nullptr);
    return Answer<WmiObject>(called, out, result);
  }

 private:
  ComPointer<IWbemServices> services_;
};

class WmiLocator final : public IWmiLocator {
 public:
  explicit WmiLocator(ComPointer<IWbemLocator> locator) : locator_(std::move(locator)) {}

  HResult ConnectServer(const std::string& nameSpace,
                        std::unique_ptr<IWmiServices>* services) override {
    IWbemServices* connected = nullptr;
    const HRESULT result = locator_->ConnectServer(MakeBstr(nameSpace).get(), nullptr, nullptr,
                                                   nullptr, 0, nullptr, nullptr, &connected);
    return Answer<WmiServices>(result, connected, services);
  }

 private:
  ComPointer<IWbemLocator> locator_;
};

class WmiPort final : public IWmi {
 public:
  HResult EnterApartment() override { return ::CoInitializeEx(nullptr, COINIT_MULTITHREADED); }

  void LeaveApartment() override {
    const LastErrorKeeper keeper;
    ::CoUninitialize();
  }

  HResult SecureProcess() override {
    return ::CoInitializeSecurity(nullptr, -1, nullptr, nullptr, RPC_C_AUTHN_LEVEL_CONNECT,
                                  RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE, nullptr);
  }

  HResult MakeLocator(std::unique_ptr<IWmiLocator>* locator) override {
    void* made = nullptr;
    const HRESULT result = ::CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER,
                                              IID_IWbemLocator, &made);
    return Answer<WmiLocator>(result, static_cast<IWbemLocator*>(made), locator);
  }
};

}  // namespace

IWmi& WindowsPlatform::Wmi() {
  static WmiPort port;
  return port;
}

}  // namespace platform::windows
