#include "tests/contract/windows/WmiDouble.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tests/contract/windows/ComDouble.h"
#include "tests/contract/windows/WmiStubs.h"

namespace contract {
namespace {

/// The caller frees it.
BSTR MakeBstr(const std::string& text) {
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
  BSTR wide = SysAllocStringLen(nullptr, static_cast<UINT>(length));
  MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide, length);
  return wide;
}

void Store(platform::Empty, VARIANT*) {}
void Store(platform::Null, VARIANT* value) { value->vt = VT_NULL; }
void Store(platform::RawBool flag, VARIANT* value) {
  value->vt = VT_BOOL;
  value->boolVal = flag.bits;
}
void Store(std::int32_t number, VARIANT* value) {
  value->vt = VT_I4;
  value->lVal = number;
}
void Store(const std::string& text, VARIANT* value) {
  value->vt = VT_BSTR;
  value->bstrVal = MakeBstr(text);
}
void Store(const platform::TextArray& array, VARIANT* value) {
  value->vt = VT_ARRAY | VT_BSTR;
  value->parray = nullptr;
  if (array.dimensions == 0) return;
  std::vector<SAFEARRAYBOUND> bounds(array.dimensions, {static_cast<ULONG>(array.items.size()), 0});
  value->parray = SafeArrayCreate(VT_BSTR, array.dimensions, bounds.data());
  auto* texts = static_cast<BSTR*>(value->parray->pvData);
  for (const std::string& item : array.items) *texts++ = MakeBstr(item);
}

/// A parameter of a method call: a text, an array of texts, a number or null.
platform::Variant Load(const VARIANT& value) {
  switch (value.vt) {
    case VT_NULL:
      return platform::Null{};
    case VT_I4:
      return std::int32_t{value.lVal};
    case VT_BSTR:
      return Narrow(value.bstrVal);
    case VT_ARRAY | VT_BSTR: {
      platform::TextArray array;
      EXPECT_EQ(SafeArrayGetDim(value.parray), 1u);
      const SAFEARRAYBOUND& bound = value.parray->rgsabound[0];
      EXPECT_EQ(bound.lLbound, 0);
      const auto* texts = static_cast<const BSTR*>(value.parray->pvData);
      for (ULONG i = 0; i < bound.cElements; ++i) array.items.push_back(Narrow(texts[i]));
      return array;
    }
  }
  ADD_FAILURE() << "parameter of VARIANT type " << value.vt;
  return platform::Empty{};
}

class ClassObject final : public Fronts<ClassObjectStub, platform::IWmiObject> {
 public:
  using Fronts::Fronts;

  HRESULT Get(LPCWSTR property, LONG flags, VARIANT* value, CIMTYPE*, LONG*) override {
    EXPECT_EQ(flags, 0);
    platform::Variant answer;
    const HRESULT result = Machine().Get(Narrow(property), &answer);
    if (FAILED(result)) return result;
    VariantInit(value);
    std::visit([value](const auto& held) { Store(held, value); }, answer);
    return result;
  }
  HRESULT Put(LPCWSTR property, LONG flags, VARIANT* value, CIMTYPE type) override {
    EXPECT_EQ(flags, 0);
    EXPECT_EQ(type, 0);
    return Machine().Put(Narrow(property), Load(*value));
  }
  HRESULT GetMethod(LPCWSTR method, LONG flags, Object** in, Object** out) override {
    EXPECT_EQ(flags, 0);
    if (out != nullptr) *out = nullptr;
    return Wrap<ClassObject>(
        in, [&](auto* definition) { return Machine().GetMethod(Narrow(method), definition); });
  }
  HRESULT SpawnInstance(LONG flags, Object** instance) override {
    EXPECT_EQ(flags, 0);
    return Wrap<ClassObject>(instance,
                             [&](auto* spawned) { return Machine().SpawnInstance(spawned); });
  }
};

class RowsObject final : public Fronts<RowsStub, platform::IWmiRows> {
 public:
  using Fronts::Fronts;

  HRESULT Next(LONG timeout, ULONG count, Object** row, ULONG* returned) override {
    EXPECT_TRUE(timeout == platform::kForever || timeout == 0) << timeout;
    EXPECT_EQ(count, 1u);
    std::uint32_t fetched = 0;
    const HRESULT result =
        Wrap<ClassObject>(row, [&](auto* made) { return Machine().Next(timeout, made, &fetched); });
    *returned = fetched;
    return result;
  }
};

class ServicesObject final : public Fronts<ServicesStub, platform::IWmiServices> {
 public:
  using Fronts::Fronts;

  HRESULT SetBlanket(IUnknown* proxy, DWORD authentication, DWORD authorization, OLECHAR* principal,
                     DWORD level, DWORD impersonation, void* identity,
                     DWORD capabilities) override {
    EXPECT_EQ(proxy, static_cast<IWbemServices*>(this));
    EXPECT_EQ(authentication, 10u);
    EXPECT_EQ(authorization, 0u);
    EXPECT_EQ(principal, nullptr);
    EXPECT_EQ(level, 3u);
    EXPECT_EQ(impersonation, 3u);
    EXPECT_EQ(identity, nullptr);
    EXPECT_EQ(capabilities, 0u);
    return Machine().SecureProxy();
  }
  HRESULT GetObject(BSTR path, LONG flags, Context* context, Object** object, Result**) override {
    EXPECT_EQ(flags, 0);
    EXPECT_EQ(context, nullptr);
    return Wrap<ClassObject>(object,
                             [&](auto* made) { return Machine().FetchClass(Narrow(path), made); });
  }
  HRESULT CreateInstanceEnum(BSTR name, LONG flags, Context* context, Rows** rows) override {
    EXPECT_EQ(flags, 0);
    EXPECT_EQ(context, nullptr);
    return Wrap<RowsObject>(
        rows, [&](auto* made) { return Machine().CreateInstanceEnum(Narrow(name), made); });
  }
  HRESULT ExecQuery(BSTR language, BSTR query, LONG flags, Context* context, Rows** rows) override {
    EXPECT_STREQ(language, L"WQL");
    EXPECT_EQ(flags, 0x30);
    EXPECT_EQ(context, nullptr);
    return Wrap<RowsObject>(
        rows, [&](auto* made) { return Machine().ExecQuery(Narrow(query), flags, made); });
  }
  HRESULT ExecMethod(BSTR path, BSTR method, LONG flags, Context* context, Object* parameters,
                     Object** result, Result**) override {
    EXPECT_EQ(flags, 0);
    EXPECT_EQ(context, nullptr);
    platform::IWmiObject* ports =
        parameters == nullptr ? nullptr : &static_cast<ClassObject*>(parameters)->Machine();
    return Wrap<ClassObject>(result, [&](auto* made) {
      return Machine().ExecMethod(Narrow(path), Narrow(method), ports, made);
    });
  }
};

class Locator final : public Fronts<ComObject<IWbemLocator>, platform::IWmiLocator> {
 public:
  using Fronts::Fronts;

  HRESULT ConnectServer(BSTR nameSpace, BSTR user, BSTR password, BSTR locale, LONG flags,
                        BSTR authority, Context* context, Services** services) override {
    EXPECT_STREQ(nameSpace, LR"(root\cimv2)");
    for (BSTR absent : {user, password, locale, authority}) EXPECT_EQ(absent, nullptr);
    EXPECT_EQ(flags, 0);
    EXPECT_EQ(context, nullptr);
    return Wrap<ServicesObject>(
        services, [&](auto* made) { return Machine().ConnectServer(Narrow(nameSpace), made); });
  }
};

class Factory final : public ComObject<IClassFactory> {
 public:
  explicit Factory(platform::IWmi& machine) : machine_(machine) {}

  HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    EXPECT_EQ(outer, nullptr);
    IWbemLocator* locator = nullptr;
    HRESULT result =
        Wrap<Locator>(&locator, [&](auto* made) { return machine_.MakeLocator(made); });
    if (FAILED(result) || locator == nullptr) return result;
    result = locator->QueryInterface(iid, object);
    locator->Release();
    return result;
  }
  HRESULT LockServer(BOOL) override { return S_OK; }

 private:
  platform::IWmi& machine_;
};

}  // namespace

WmiDouble::WmiDouble(platform::IWmi& machine) {
  // The registration lives in the apartment, which would end with the library's own last leave.
  EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
  auto* factory = new Factory(machine);
  EXPECT_EQ(CoRegisterClassObject(CLSID_WbemLocator, factory, CLSCTX_INPROC_SERVER,
                                  REGCLS_MULTIPLEUSE, &registration_),
            S_OK);
  factory->Release();
}

WmiDouble::~WmiDouble() {
  EXPECT_EQ(CoRevokeClassObject(registration_), S_OK);
  CoUninitialize();
  EXPECT_EQ(liveComObjects, 0) << "COM objects outlive the library's calls";
  liveComObjects = 0;
}

}  // namespace contract
