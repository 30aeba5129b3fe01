// Every operation of Windows Management Instrumentation that the library never calls. What is left
// pure is what WmiDouble.cpp answers.
#pragma once

#include "tests/contract/windows/ComDouble.h"
// windows.h must come first.
#include <wbemcli.h>

namespace contract {

using Context = IWbemContext;
using Object = IWbemClassObject;
using Result = IWbemCallResult;
using Rows = IEnumWbemClassObject;
using Services = IWbemServices;
using Sink = IWbemObjectSink;

class ClassObjectStub : public ComObject<IWbemClassObject> {
 public:
  HRESULT GetQualifierSet(IWbemQualifierSet**) override { return E_NOTIMPL; }
  HRESULT Delete(LPCWSTR) override { return E_NOTIMPL; }
  HRESULT GetNames(LPCWSTR, LONG, VARIANT*, SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT BeginEnumeration(LONG) override { return E_NOTIMPL; }
  HRESULT Next(LONG, BSTR*, VARIANT*, CIMTYPE*, LONG*) override { return E_NOTIMPL; }
  HRESULT EndEnumeration() override { return E_NOTIMPL; }
  HRESULT GetPropertyQualifierSet(LPCWSTR, IWbemQualifierSet**) override { return E_NOTIMPL; }
  HRESULT Clone(Object**) override { return E_NOTIMPL; }
  HRESULT GetObjectText(LONG, BSTR*) override { return E_NOTIMPL; }
  HRESULT SpawnDerivedClass(LONG, Object**) override { return E_NOTIMPL; }
  HRESULT CompareTo(LONG, Object*) override { return E_NOTIMPL; }
  HRESULT GetPropertyOrigin(LPCWSTR, BSTR*) override { return E_NOTIMPL; }
  HRESULT InheritsFrom(LPCWSTR) override { return E_NOTIMPL; }
  HRESULT PutMethod(LPCWSTR, LONG, Object*, Object*) override { return E_NOTIMPL; }
  HRESULT DeleteMethod(LPCWSTR) override { return E_NOTIMPL; }
  HRESULT BeginMethodEnumeration(LONG) override { return E_NOTIMPL; }
  HRESULT NextMethod(LONG, BSTR*, Object**, Object**) override { return E_NOTIMPL; }
  HRESULT EndMethodEnumeration() override { return E_NOTIMPL; }
  HRESULT GetMethodQualifierSet(LPCWSTR, IWbemQualifierSet**) override { return E_NOTIMPL; }
  HRESULT GetMethodOrigin(LPCWSTR, BSTR*) override { return E_NOTIMPL; }
};

class RowsStub : public ComObject<IEnumWbemClassObject> {
 public:
  HRESULT Reset() override { return E_NOTIMPL; }
  HRESULT NextAsync(ULONG, Sink*) override { return E_NOTIMPL; }
  HRESULT Clone(Rows**) override { return E_NOTIMPL; }
  HRESULT Skip(LONG, ULONG) override { return E_NOTIMPL; }
};

class ServicesStub : public ComObject<IWbemServices, IClientSecurity> {
 public:
  HRESULT OpenNamespace(BSTR, LONG, Context*, Services**, Result**) override { return E_NOTIMPL; }
  HRESULT CancelAsyncCall(Sink*) override { return E_NOTIMPL; }
  HRESULT QueryObjectSink(LONG, Sink**) override { return E_NOTIMPL; }
  HRESULT GetObjectAsync(BSTR, LONG, Context*, Sink*) override { return E_NOTIMPL; }
  HRESULT PutClass(Object*, LONG, Context*, Result**) override { return E_NOTIMPL; }
  HRESULT PutClassAsync(Object*, LONG, Context*, Sink*) override { return E_NOTIMPL; }
  HRESULT DeleteClass(BSTR, LONG, Context*, Result**) override { return E_NOTIMPL; }
  HRESULT DeleteClassAsync(BSTR, LONG, Context*, Sink*) override { return E_NOTIMPL; }
  HRESULT CreateClassEnum(BSTR, LONG, Context*, Rows**) override { return E_NOTIMPL; }
  HRESULT CreateClassEnumAsync(BSTR, LONG, Context*, Sink*) override { return E_NOTIMPL; }
  HRESULT PutInstance(Object*, LONG, Context*, Result**) override { return E_NOTIMPL; }
  HRESULT PutInstanceAsync(Object*, LONG, Context*, Sink*) override { return E_NOTIMPL; }
  HRESULT DeleteInstance(BSTR, LONG, Context*, Result**) override { return E_NOTIMPL; }
  HRESULT DeleteInstanceAsync(BSTR, LONG, Context*, Sink*) override { return E_NOTIMPL; }
  HRESULT CreateInstanceEnumAsync(BSTR, LONG, Context*, Sink*) override { return E_NOTIMPL; }
  HRESULT ExecQueryAsync(BSTR, BSTR, LONG, Context*, Sink*) override { return E_NOTIMPL; }
  HRESULT ExecNotificationQuery(BSTR, BSTR, LONG, Context*, Rows**) override { return E_NOTIMPL; }
  HRESULT ExecNotificationQueryAsync(BSTR, BSTR, LONG, Context*, Sink*) override {
    return E_NOTIMPL;
  }
  HRESULT ExecMethodAsync(BSTR, BSTR, LONG, Context*, Object*, Sink*) override { return E_NOTIMPL; }
  HRESULT QueryBlanket(IUnknown*, DWORD*, DWORD*, OLECHAR**, DWORD*, DWORD*, void**,
                       DWORD*) override {
    return E_NOTIMPL;
  }
  HRESULT CopyProxy(IUnknown*, IUnknown**) override { return E_NOTIMPL; }
};

}  // namespace contract
