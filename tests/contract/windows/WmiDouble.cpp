#include "tests/contract/windows/WmiDouble.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "platform/windows/Com.h"
#include "platform/windows/Text.h"
#include "tests/contract/windows/ComDouble.h"

namespace contract {
namespace {

using platform::IWmiLocator;
using platform::IWmiObject;
using platform::IWmiRows;
using platform::IWmiServices;
using platform::windows::OwnedVariant;
using platform::windows::TextOf;
using platform::windows::ToNarrow;
using Object = ComObject<IWmiObject>;

/// The caller clears it.
VARIANT MakeVariant(const platform::Variant& answer) {
  VARIANT value;
  const auto* const array = std::get_if<platform::TextArray>(&answer);
  if (array != nullptr && array->dimensions != 1) {
    std::vector<SAFEARRAYBOUND> bounds(array->dimensions, {1, 0});
    value.vt = VT_ARRAY | VT_BSTR;
    value.parray =
        bounds.empty() ? nullptr : SafeArrayCreate(VT_BSTR, array->dimensions, bounds.data());
    return value;
  }
  OwnedVariant made(answer);
  value = *made.Address();
  VariantInit(made.Address());
  return value;
}

HRESULT WINAPI Get(Object* self, LPCWSTR property, LONG flags, VARIANT* value, CIMTYPE*, LONG*) {
  EXPECT_EQ(flags, 0);
  platform::Variant answer;
  const HRESULT result = self->port->Get(ToNarrow(property), &answer);
  const auto odd = oddAnswers.find(ToNarrow(property));
  if (SUCCEEDED(result)) *value = MakeVariant(odd == oddAnswers.end() ? answer : odd->second);
  return result;
}

HRESULT WINAPI Put(Object* self, LPCWSTR property, LONG flags, VARIANT* value, CIMTYPE type) {
  EXPECT_TRUE(flags == 0 && type == 0);
  OwnedVariant given;
  EXPECT_EQ(VariantCopy(given.Address(), value), S_OK);
  return self->port->Put(ToNarrow(property), given.ToSeamValue());
}

const Slots& ObjectSlots();

HRESULT WINAPI GetMethod(Object* self, LPCWSTR method, LONG flags, void** in, void** out) {
  EXPECT_TRUE(flags == 0 && out == nullptr);
  return Wrap<IWmiObject>(ObjectSlots(), in, [&](auto* definition) {
    return self->port->GetMethod(ToNarrow(method), definition);
  });
}

HRESULT WINAPI SpawnInstance(Object* self, LONG flags, void** instance) {
  EXPECT_EQ(flags, 0);
  return Wrap<IWmiObject>(ObjectSlots(), instance,
                          [&](auto* spawned) { return self->port->SpawnInstance(spawned); });
}

const Slots& ObjectSlots() {
  static const Slots slots = MakeSlots<IWmiObject>({{4, AddressOf(&Get)},
                                                    {5, AddressOf(&Put)},
                                                    {15, AddressOf(&SpawnInstance)},
                                                    {19, AddressOf(&GetMethod)}});
  return slots;
}

HRESULT WINAPI Next(ComObject<IWmiRows>* self, LONG timeout, ULONG count, void** row,
                    ULONG* returned) {
  EXPECT_TRUE(timeout == platform::kForever || timeout == 0) << timeout;
  EXPECT_EQ(count, 1u);
  std::uint32_t fetched = 0;
  const HRESULT result = Wrap<IWmiObject>(ObjectSlots(), row, [&](auto* made) {
    return self->port->Next(static_cast<std::int32_t>(timeout), made, &fetched);
  });
  *returned = fetched;
  return result;
}

const Slots kRows = MakeSlots<IWmiRows>({{4, AddressOf(&Next)}});

using Services = ComObject<IWmiServices>;

HRESULT WINAPI GetObjectOf(Services* self, BSTR path, LONG flags, void* context, void** object,
                           void**) {
  EXPECT_TRUE(flags == 0 && context == nullptr);
  return Wrap<IWmiObject>(ObjectSlots(), object,
                          [&](auto* made) { return self->port->FetchClass(TextOf(path), made); });
}

HRESULT WINAPI CreateInstanceEnum(Services* self, BSTR name, LONG flags, void* context,
                                  void** rows) {
  EXPECT_TRUE(flags == 0 && context == nullptr);
  return Wrap<IWmiRows>(
      kRows, rows, [&](auto* made) { return self->port->CreateInstanceEnum(TextOf(name), made); });
}

HRESULT WINAPI ExecQuery(Services* self, BSTR language, BSTR query, LONG flags, void* context,
                         void** rows) {
  EXPECT_STREQ(language, L"WQL");
  EXPECT_TRUE(flags == 0x30 && context == nullptr);
  return Wrap<IWmiRows>(kRows, rows, [&](auto* made) {
    return self->port->ExecQuery(TextOf(query), static_cast<std::int32_t>(flags), made);
  });
}

HRESULT WINAPI ExecMethod(Services* self, BSTR path, BSTR method, LONG flags, void* context,
                          Object* parameters, void** result, void**) {
  EXPECT_TRUE(flags == 0 && context == nullptr);
  return Wrap<IWmiObject>(ObjectSlots(), result, [&](auto* made) {
    return self->port->ExecMethod(TextOf(path), TextOf(method),
                                  parameters == nullptr ? nullptr : parameters->port.get(), made);
  });
}

const Slots kServices = MakeSlots<IWmiServices>({{6, AddressOf(&GetObjectOf)},
                                                 {18, AddressOf(&CreateInstanceEnum)},
                                                 {20, AddressOf(&ExecQuery)},
                                                 {24, AddressOf(&ExecMethod)}});

HRESULT WINAPI ConnectServer(ComObject<IWmiLocator>* self, BSTR nameSpace, BSTR user, BSTR password,
                             BSTR locale, LONG flags, BSTR authority, void* context,
                             void** services) {
  for (BSTR absent : {user, password, locale, authority}) EXPECT_EQ(absent, nullptr);
  EXPECT_TRUE(flags == 0 && context == nullptr);
  return Wrap<IWmiServices>(kServices, services, [&](auto* made) {
    return self->port->ConnectServer(TextOf(nameSpace), made);
  });
}

const Slots kLocator = MakeSlots<IWmiLocator>({{3, AddressOf(&ConnectServer)}});

platform::IWmi* answering = nullptr;

HRESULT WINAPI MakeInstance(REFCLSID id, LPUNKNOWN outer, DWORD context, REFIID iid,
                            LPVOID* object) {
  EXPECT_TRUE(id == CLSID_WbemLocator && iid == IID_IWbemLocator);
  EXPECT_EQ(outer, nullptr);
  EXPECT_EQ(context, DWORD{CLSCTX_INPROC_SERVER});
  return Wrap<IWmiLocator>(kLocator, object,
                           [](auto* made) { return answering->MakeLocator(made); });
}

HRESULT WINAPI SetProxyBlanket(IUnknown* proxy, DWORD authentication, DWORD authorization,
                               OLECHAR* principal, DWORD level, DWORD impersonation,
                               RPC_AUTH_IDENTITY_HANDLE identity, DWORD capabilities) {
  EXPECT_EQ(std::tuple(authentication, authorization, level, impersonation, capabilities),
            std::tuple(10u, 0u, 3u, 3u, 0u));
  EXPECT_TRUE(principal == nullptr && identity == nullptr);
  return reinterpret_cast<Services*>(proxy)->port->SecureProxy();
}

const Substitute kSubstitutes[] = {
    {"ole32.dll", "CoCreateInstance", AddressOf(&MakeInstance)},
    {"ole32.dll", "CoSetProxyBlanket", AddressOf(&SetProxyBlanket)},
};

}  // namespace

WmiDouble::WmiDouble(HMODULE module, platform::IWmi& machine) : imports_(module, kSubstitutes) {
  answering = &machine;
}

WmiDouble::~WmiDouble() {
  EXPECT_EQ(liveComObjects, 0) << "COM objects outlive the module's calls";
  liveComObjects = 0;
  oddAnswers.clear();
}

}  // namespace contract
