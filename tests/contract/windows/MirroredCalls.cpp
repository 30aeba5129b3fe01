#include "tests/contract/windows/MirroredCalls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/IClock.h"
#include "platform/IDirectory.h"
#include "platform/IErrors.h"
#include "platform/IFiles.h"
#include "platform/ILibraries.h"
#include "platform/IProcesses.h"
#include "platform/IRegistry.h"
#include "platform/IResolver.h"
#include "platform/IServices.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tests/contract/windows/ComDouble.h"
#include "tests/contract/windows/ImportTable.h"
#include "tests/contract/windows/LaidOutMachine.h"
#include "tests/contract/windows/WmiDouble.h"
#include "tests/contract/windows/standin/LibCrypto.h"

// The headers declare the interface without its identity.
__CRT_UUID_DECL(IADsContainer, 0x001677d0, 0xfd16, 0x11ce, 0xab, 0xc4, 0x02, 0x60, 0x8c, 0x9e, 0x75,
                0x53)

namespace contract {
namespace {

using platform::Handle;
using platform::LibraryHandle;
using platform::PolicyHandle;
using platform::RegistryKey;
using platform::ServiceHandle;

constexpr char kRouteBook[] = "ORVANTA_ROUTE_BOOK";
constexpr char kRouteExitCode[] = "ORVANTA_ROUTE_EXIT_CODE";

/// Which `CoUninitialize` answers which entry.
struct Apartment {
  bool isDirectorys;
  bool enteredForReal;
};

/// What the two sides of the mirror know of each other.
struct Mirror {
  Mirror(HMODULE library, simulated::Machine& newMachine);

  /// True when a failure of the machine may be a fault's doing, of which Windows knows nothing.
  bool MayBeFault() const { return !machine.faults.empty(); }

  simulated::Machine& machine;
  const std::size_t journalStart = machine.journal.size();
  simulated::SimulatedPlatform model{machine};
  LaidOutMachine windows{machine};
  WmiDouble wmi{model.Wmi()};
  std::map<HKEY, RegistryKey> keys{{HKEY_LOCAL_MACHINE, platform::kLocalMachine}};
  std::map<SC_HANDLE, ServiceHandle> services;
  std::map<HANDLE, Handle> handles;
  std::vector<Apartment> apartments;
  std::optional<std::pair<HMODULE, LibraryHandle>> crypto;
  /// Answers of the security authority and of the workstation that were not freed.
  int answers = 0;
  const std::filesystem::path routeBook =
      std::filesystem::temp_directory_path() /
      ("orvanta-routes-" + std::to_string(GetCurrentProcessId()));
  ImportTable imports;
};

std::unique_ptr<Mirror> mirror;

/// Asks Windows what the machine answered already. Failures answer with the machine's error number,
/// which Windows must share.
template <class Ask>
BOOL Both(const char* name, bool expected, Ask ask) {
  const DWORD error = mirror->model.Errors().LastError();
  if (expected || !mirror->MayBeFault()) {
    SetLastError(ERROR_SUCCESS);
    const bool done = ask() != FALSE;
    const DWORD windowsError = GetLastError();
    EXPECT_EQ(done, expected) << name << ": " << windowsError;
    if (!done && !expected) {
      EXPECT_EQ(windowsError, error) << name;
    }
  }
  SetLastError(error);
  return expected ? TRUE : FALSE;
}

/// As `Both`, for calls that answer their error number.
template <class Ask>
LSTATUS BothCodes(const char* name, platform::Win32Error expected, Ask ask) {
  if (expected == ERROR_SUCCESS || !mirror->MayBeFault()) {
    EXPECT_EQ(ask(), static_cast<LSTATUS>(expected)) << name;
  }
  return static_cast<LSTATUS>(expected);
}

// Files.

platform::IFiles& Files() { return mirror->model.Files(); }

DWORD WINAPI OnGetFileAttributes(LPCSTR path) {
  const std::uint32_t expected = Files().Attributes(path);
  DWORD found = INVALID_FILE_ATTRIBUTES;
  Both("GetFileAttributesA", expected != platform::kNoAttributes, [&] {
    found = GetFileAttributesA(path);
    return found != INVALID_FILE_ATTRIBUTES;
  });
  if (found != INVALID_FILE_ATTRIBUTES) {
    EXPECT_EQ(found & FILE_ATTRIBUTE_DIRECTORY, expected & FILE_ATTRIBUTE_DIRECTORY) << path;
  }
  return expected;
}

HANDLE WINAPI OnCreateFile(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                           DWORD disposition, DWORD flags, HANDLE model) {
  std::string content;
  HANDLE file = INVALID_HANDLE_VALUE;
  Both("CreateFileA", Files().ReadWhole(path, &content), [&] {
    file = CreateFileA(path, access, share, security, disposition, flags, model);
    return file != INVALID_HANDLE_VALUE;
  });
  return file;
}

BOOL WINAPI OnMoveFile(LPCSTR source, LPCSTR destination) {
  return Both("MoveFileA", Files().Move(source, destination),
              [&] { return MoveFileA(source, destination); });
}

BOOL WINAPI OnCopyFile(LPCSTR source, LPCSTR destination, BOOL failIfExists) {
  return Both("CopyFileA", Files().Copy(source, destination, failIfExists != FALSE),
              [&] { return CopyFileA(source, destination, failIfExists); });
}

BOOL WINAPI OnDeleteFile(LPCSTR path) {
  return Both("DeleteFileA", Files().Erase(path), [&] { return DeleteFileA(path); });
}

BOOL WINAPI OnWriteProfileString(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR path) {
  return Both("WritePrivateProfileStringA", Files().WriteProfileEntry(section, key, value, path),
              [&] { return WritePrivateProfileStringA(section, key, value, path); });
}

DWORD WINAPI OnGetModuleFileName(HMODULE module, LPSTR buffer, DWORD size) {
  EXPECT_EQ(module, nullptr);
  std::string path;
  if (!Files().ModulePath(&path) || path.size() >= size) {
    SetLastError(mirror->model.Errors().LastError());
    return 0;
  }
  std::memcpy(buffer, path.c_str(), path.size() + 1);
  return static_cast<DWORD>(path.size());
}

// The registry.

platform::IRegistry& Registry() { return mirror->model.Registry(); }

RegistryKey KeyOf(HKEY key) {
  const auto found = mirror->keys.find(key);
  EXPECT_NE(found, mirror->keys.end()) << "an unknown registry key";
  return found == mirror->keys.end() ? RegistryKey{} : found->second;
}

LSTATUS WINAPI OnOpenKey(HKEY root, LPCSTR subkey, DWORD options, REGSAM access, PHKEY key) {
  RegistryKey opened{};
  const platform::Win32Error expected = Registry().Open(KeyOf(root), subkey, access, &opened);
  // The name servers follow the WMI methods.
  mirror->windows.WriteAdapters();
  const LSTATUS result = BothCodes(
      "RegOpenKeyExA", expected, [&] { return RegOpenKeyExA(root, subkey, options, access, key); });
  if (result == ERROR_SUCCESS) mirror->keys[*key] = opened;
  return result;
}

LSTATUS WINAPI OnCreateKey(HKEY root, LPCSTR subkey, DWORD reserved, LPSTR className, DWORD options,
                           REGSAM access, LPSECURITY_ATTRIBUTES security, PHKEY key,
                           LPDWORD disposition) {
  RegistryKey opened{};
  const platform::Win32Error expected = Registry().Create(KeyOf(root), subkey, access, &opened);
  const LSTATUS result = BothCodes("RegCreateKeyExA", expected, [&] {
    return RegCreateKeyExA(root, subkey, reserved, className, options, access, security, key,
                           disposition);
  });
  if (result == ERROR_SUCCESS) mirror->keys[*key] = opened;
  return result;
}

LSTATUS WINAPI OnQueryValue(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                            LPDWORD size) {
  std::uint32_t expectedType = 0;
  std::uint32_t expectedSize = size != nullptr ? *size : 0;
  std::vector<BYTE> expectedData(expectedSize);
  const platform::Win32Error expected =
      Registry().Query(KeyOf(key), name, &expectedType,
                       data != nullptr ? expectedData.data() : nullptr, &expectedSize);
  const LSTATUS result = BothCodes("RegQueryValueExA", expected, [&] {
    return RegQueryValueExA(key, name, reserved, type, data, size);
  });
  if (result != ERROR_SUCCESS) return result;
  if (type != nullptr) {
    EXPECT_EQ(*type, expectedType) << name;
  }
  if (size != nullptr) {
    EXPECT_EQ(*size, expectedSize) << name;
  }
  if (data != nullptr) {
    EXPECT_TRUE(std::equal(data, data + expectedSize, expectedData.begin())) << name;
  }
  return result;
}

LSTATUS WINAPI OnSetValue(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                          DWORD size) {
  return BothCodes("RegSetValueExA", Registry().Set(KeyOf(key), name, type, data, size),
                   [&] { return RegSetValueExA(key, name, reserved, type, data, size); });
}

LSTATUS WINAPI OnDeleteValue(HKEY key, LPCSTR name) {
  return BothCodes("RegDeleteValueA", Registry().Erase(KeyOf(key), name),
                   [&] { return RegDeleteValueA(key, name); });
}

LSTATUS WINAPI OnCloseKey(HKEY key) {
  const platform::Win32Error expected = Registry().Close(KeyOf(key));
  EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
  mirror->keys.erase(key);
  return static_cast<LSTATUS>(expected);
}

// Services.

platform::IServices& Services() { return mirror->model.Services(); }

template <class Ask>
SC_HANDLE OpenBoth(const char* name, ServiceHandle opened, Ask ask) {
  SC_HANDLE handle = nullptr;
  Both(name, opened != ServiceHandle::kNone, [&] { return (handle = ask()) != nullptr; });
  if (handle != nullptr) mirror->services[handle] = opened;
  return handle;
}

SC_HANDLE WINAPI OnOpenManager(LPCSTR computer, LPCSTR database, DWORD access) {
  EXPECT_EQ(computer, nullptr);
  EXPECT_EQ(access, static_cast<DWORD>(SC_MANAGER_ALL_ACCESS));
  mirror->windows.NeedServices();
  return OpenBoth("OpenSCManagerA", Services().OpenManager(),
                  [&] { return OpenSCManagerA(computer, database, access); });
}

SC_HANDLE WINAPI OnOpenService(SC_HANDLE manager, LPCSTR name, DWORD access) {
  return OpenBoth("OpenServiceA", Services().OpenService(mirror->services[manager], name),
                  [&] { return OpenServiceA(manager, name, access); });
}

BOOL WINAPI OnChangeServiceConfig(SC_HANDLE service, DWORD type, DWORD start, DWORD errorControl,
                                  LPCSTR path, LPCSTR group, LPDWORD tag, LPCSTR dependencies,
                                  LPCSTR account, LPCSTR password, LPCSTR displayName) {
  const auto startType = static_cast<platform::ServiceStart>(start);
  return Both("ChangeServiceConfigA", Services().SetStartType(mirror->services[service], startType),
              [&] {
                return ChangeServiceConfigA(service, type, start, errorControl, path, group, tag,
                                            dependencies, account, password, displayName);
              });
}

BOOL WINAPI OnStartService(SC_HANDLE service, DWORD count, LPCSTR* arguments) {
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(arguments, nullptr);
  return Both("StartServiceA", Services().Start(mirror->services[service]),
              [&] { return StartLaidOutService(service); });
}

BOOL WINAPI OnCloseService(SC_HANDLE handle) {
  Services().Close(mirror->services[handle]);
  EXPECT_EQ(mirror->services.erase(handle), 1u) << "a handle that was not open";
  return CloseServiceHandle(handle);
}

// Child processes. Calls for handles that the machine does not know are the runtime library's own.

platform::IProcesses& Processes() { return mirror->model.Processes(); }

Handle* Known(HANDLE handle) {
  const auto found = mirror->handles.find(handle);
  return found == mirror->handles.end() ? nullptr : &found->second;
}

BOOL WINAPI OnCreatePipe(PHANDLE read, PHANDLE write, LPSECURITY_ATTRIBUTES security, DWORD size) {
  Handle ends[2] = {};
  const BOOL made = Both("CreatePipe", Processes().MakePipe(&ends[0], &ends[1], size),
                         [&] { return CreatePipe(read, write, security, size); });
  if (made) {
    mirror->handles[*read] = ends[0];
    mirror->handles[*write] = ends[1];
  }
  return made;
}

BOOL WINAPI OnSetHandleInformation(HANDLE handle, DWORD mask, DWORD flags) {
  EXPECT_NE(Known(handle), nullptr);
  return Both("SetHandleInformation", Processes().StopInheriting(*Known(handle)),
              [&] { return SetHandleInformation(handle, mask, flags); });
}

BOOL WINAPI OnCreateProcess(LPCSTR application, LPSTR commandLine, LPSECURITY_ATTRIBUTES process,
                            LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags,
                            LPVOID environment, LPCSTR folder, LPSTARTUPINFOA startup,
                            LPPROCESS_INFORMATION information) {
  EXPECT_TRUE(inherit);
  EXPECT_EQ(flags, 0u);
  platform::ProcessInformation spawned;
  const bool expected = Processes().Spawn(
      application, commandLine, static_cast<const char*>(environment), folder, {}, &spawned);
  if (expected) {
    const auto exitCode = std::get<std::int64_t>(mirror->machine.journal.back()["result"]);
    SetEnvironmentVariableA(kRouteExitCode,
                            std::to_string(static_cast<std::uint32_t>(exitCode)).c_str());
  }
  const BOOL done = Both("CreateProcessA", expected, [&] {
    return CreateProcessA(application, commandLine, process, thread, inherit, flags, environment,
                          folder, startup, information);
  });
  if (done) {
    mirror->handles[information->hProcess] = spawned.process;
    mirror->handles[information->hThread] = spawned.thread;
  }
  return done;
}

DWORD WINAPI OnWait(HANDLE handle, DWORD timeoutMs) {
  const Handle* const known = Known(handle);
  if (known == nullptr) return WaitForSingleObject(handle, timeoutMs);
  const std::uint32_t expected = Processes().Wait(*known, timeoutMs);
  // The machine's children end at once; the real one gets the time it needs.
  if (expected == platform::kWaitSignalled) {
    EXPECT_EQ(WaitForSingleObject(handle, 60'000), expected);
  }
  return expected;
}

BOOL WINAPI OnGetExitCode(HANDLE process, LPDWORD exitCode) {
  std::uint32_t expected = 0;
  const BOOL done = Both("GetExitCodeProcess", Processes().ExitCode(*Known(process), &expected),
                         [&] { return GetExitCodeProcess(process, exitCode); });
  if (done) {
    EXPECT_EQ(*exitCode, expected);
  }
  return done;
}

BOOL WINAPI OnCloseHandle(HANDLE handle) {
  if (const Handle* known = Known(handle)) {
    Processes().Close(*known);
    mirror->handles.erase(handle);
  }
  const BOOL closed = CloseHandle(handle);
  EXPECT_TRUE(closed) << "a handle that was not open";
  return closed;
}

// Membership and the directory, which Wine lacks.

platform::IDirectory& Directory() { return mirror->model.Directory(); }

NTSTATUS WINAPI OnLsaOpenPolicy(PLSA_UNICODE_STRING computer, PLSA_OBJECT_ATTRIBUTES attributes,
                                ACCESS_MASK access, PLSA_HANDLE handle) {
  EXPECT_EQ(computer, nullptr);
  EXPECT_NE(attributes, nullptr);
  EXPECT_EQ(access, static_cast<ACCESS_MASK>(POLICY_VIEW_LOCAL_INFORMATION));
  PolicyHandle policy{};
  const NTSTATUS status = Directory().OpenPolicy(&policy);
  if (status >= 0) *handle = reinterpret_cast<LSA_HANDLE>(static_cast<std::uintptr_t>(policy));
  return status;
}

/// A zeroed answer with `text` behind it, which `text_of` points to; freed with the answer.
template <class Answer>
Answer* MakeAnswer(const std::string& text, LSA_UNICODE_STRING Answer::*member) {
  ++mirror->answers;
  const std::wstring wide(text.begin(), text.end());
  const std::size_t size = (wide.size() + 1) * sizeof(wchar_t);
  auto* const answer = static_cast<Answer*>(std::calloc(1, sizeof(Answer) + size));
  auto* const buffer = reinterpret_cast<wchar_t*>(answer + 1);
  std::memcpy(buffer, wide.c_str(), size);
  const auto length = static_cast<USHORT>(size - sizeof(wchar_t));
  answer->*member = {length, static_cast<USHORT>(size), buffer};
  return answer;
}

NTSTATUS WINAPI OnLsaQuery(LSA_HANDLE handle, POLICY_INFORMATION_CLASS kind, PVOID* information) {
  const auto policy = static_cast<PolicyHandle>(reinterpret_cast<std::uintptr_t>(handle));
  std::string name;
  if (kind == PolicyDnsDomainInformation) {
    const NTSTATUS status = Directory().QueryDnsDomain(policy, &name);
    if (status >= 0) *information = MakeAnswer(name, &POLICY_DNS_DOMAIN_INFO::DnsDomainName);
    return status;
  }
  EXPECT_EQ(kind, PolicyPrimaryDomainInformation);
  bool hasSid = false;
  const NTSTATUS status = Directory().QueryPrimaryDomain(policy, &hasSid, &name);
  if (status >= 0) {
    auto* const answer = MakeAnswer(name, &POLICY_PRIMARY_DOMAIN_INFO::Name);
    if (hasSid) answer->Sid = answer;  // nobody looks at more than whether there is one
    *information = answer;
  }
  return status;
}

NTSTATUS WINAPI OnLsaFreeMemory(PVOID buffer) {
  --mirror->answers;
  std::free(buffer);
  return 0;
}

NTSTATUS WINAPI OnLsaClose(LSA_HANDLE handle) {
  Directory().ClosePolicy(static_cast<PolicyHandle>(reinterpret_cast<std::uintptr_t>(handle)));
  return 0;
}

ULONG WINAPI OnLsaNtStatusToWinError(NTSTATUS status) {
  const platform::Win32Error expected = Directory().StatusToError(status);
  EXPECT_EQ(LsaNtStatusToWinError(status), expected) << status;
  return expected;
}

NET_API_STATUS WINAPI OnNetWkstaGetInfo(LMSTR server, DWORD level, LPBYTE* buffer) {
  EXPECT_EQ(server, nullptr);
  EXPECT_EQ(level, 100u);
  std::string name;
  if (!Directory().LanGroup(&name)) return ERROR_ACCESS_DENIED;
  const std::wstring wide(name.begin(), name.end());
  const std::size_t size = (wide.size() + 1) * sizeof(wchar_t);
  ++mirror->answers;
  auto* const answer = static_cast<WKSTA_INFO_100*>(std::calloc(1, sizeof(WKSTA_INFO_100) + size));
  answer->wki100_langroup = reinterpret_cast<wchar_t*>(answer + 1);
  std::memcpy(answer + 1, wide.c_str(), size);
  *buffer = reinterpret_cast<LPBYTE>(answer);
  return 0;
}

NET_API_STATUS WINAPI OnNetApiBufferFree(LPVOID buffer) {
  --mirror->answers;
  std::free(buffer);
  return 0;
}

BOOLEAN WINAPI OnGetComputerObjectName(EXTENDED_NAME_FORMAT format, LPSTR buffer, PULONG length) {
  EXPECT_EQ(format, NameFullyQualifiedDN);
  std::uint32_t count = *length;
  const bool done = Directory().ComputerObjectName(buffer, &count);
  *length = count;
  SetLastError(mirror->model.Errors().LastError());
  return done ? TRUE : FALSE;
}

class ContainerObject final
    : public Fronts<ComObject<IADsContainer>, platform::IDirectoryContainer> {
 public:
  using Fronts::Fronts;

  HRESULT MoveHere(BSTR source, BSTR name, IDispatch** moved) override {
    EXPECT_EQ(name, nullptr) << "the object keeps its name";
    *moved = nullptr;
    const HRESULT result = Machine().MoveHere(Narrow(source));
    if (SUCCEEDED(result)) {
      AddRef();  // any object will do: it is only released
      *moved = this;
    }
    return result;
  }

  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }
  HRESULT get_Count(LONG*) override { return E_NOTIMPL; }
  HRESULT get__NewEnum(IUnknown**) override { return E_NOTIMPL; }
  HRESULT get_Filter(VARIANT*) override { return E_NOTIMPL; }
  HRESULT put_Filter(VARIANT) override { return E_NOTIMPL; }
  HRESULT get_Hints(VARIANT*) override { return E_NOTIMPL; }
  HRESULT put_Hints(VARIANT) override { return E_NOTIMPL; }
  HRESULT GetObject(BSTR, BSTR, IDispatch**) override { return E_NOTIMPL; }
  HRESULT Create(BSTR, BSTR, IDispatch**) override { return E_NOTIMPL; }
  HRESULT Delete(BSTR, BSTR) override { return E_NOTIMPL; }
  HRESULT CopyHere(BSTR, BSTR, IDispatch**) override { return E_NOTIMPL; }
};

HRESULT WINAPI OnADsOpenObject(LPCWSTR path, LPCWSTR account, LPCWSTR password, DWORD options,
                               REFIID iid, void** object) {
  EXPECT_EQ(options, static_cast<DWORD>(ADS_SECURE_AUTHENTICATION));
  EXPECT_TRUE(iid == IID_IADsContainer);
  return Wrap<ContainerObject>(reinterpret_cast<IADsContainer**>(object), [&](auto* made) {
    return Directory().BindContainer(Narrow(path), Narrow(account), Narrow(password), made);
  });
}

// Apartments. Wine never refuses process security, and the test itself holds an apartment, so what
// these calls answer is the machine's.

HRESULT WINAPI OnCoInitializeEx(LPVOID reserved, DWORD kind) {
  EXPECT_EQ(kind, static_cast<DWORD>(COINIT_MULTITHREADED));
  const HRESULT result = mirror->model.Wmi().EnterApartment();
  if (SUCCEEDED(result)) {
    EXPECT_GE(CoInitializeEx(reserved, kind), S_OK);
  }
  mirror->apartments.push_back({false, SUCCEEDED(result)});
  return result;
}

HRESULT WINAPI OnCoInitialize(LPVOID) {
  mirror->apartments.push_back({true, false});
  return Directory().EnterApartment();
}

void WINAPI OnCoUninitialize() {
  ASSERT_FALSE(mirror->apartments.empty()) << "left more apartments than entered";
  const Apartment left = mirror->apartments.back();
  mirror->apartments.pop_back();
  if (left.isDirectorys) {
    Directory().LeaveApartment();
  } else {
    mirror->model.Wmi().LeaveApartment();
  }
  if (left.enteredForReal) CoUninitialize();
}

HRESULT WINAPI OnCoInitializeSecurity(PSECURITY_DESCRIPTOR descriptor, LONG services,
                                      SOLE_AUTHENTICATION_SERVICE*, void*, DWORD level,
                                      DWORD impersonation, void*, DWORD capabilities, void*) {
  EXPECT_EQ(descriptor, nullptr);
  EXPECT_EQ(services, -1);
  EXPECT_EQ(capabilities, 0u);
  EXPECT_EQ(level, static_cast<DWORD>(RPC_C_AUTHN_LEVEL_CONNECT));
  EXPECT_EQ(impersonation, static_cast<DWORD>(RPC_C_IMP_LEVEL_IMPERSONATE));
  return mirror->model.Wmi().SecureProcess();
}

// Host names, libraries, time, and the last error: COM and the handling of exceptions leave numbers
// behind of which no machine knows, so what is read is the machine's. That both sides of a failed
// call agree on its number was seen before.

DWORD WINAPI OnGetLastError() { return mirror->model.Errors().LastError(); }

void WINAPI OnSetLastError(DWORD error) {
  mirror->model.Errors().SetLastError(error);
  SetLastError(error);
}

platform::IResolver& Resolver() { return mirror->model.Resolver(); }

int WINAPI OnWsaStartup(WORD version, LPWSADATA data) {
  return static_cast<int>(BothCodes("WSAStartup", Resolver().Start(), [&] {
    return static_cast<LSTATUS>(WSAStartup(version, data));
  }));
}

hostent* WINAPI OnGetHostByName(const char* name) {
  static std::uint32_t address;
  static char* addresses[] = {reinterpret_cast<char*>(&address), nullptr};
  static hostent answer{nullptr, nullptr, AF_INET, sizeof address, addresses};
  const bool found = Resolver().LookUpHost(name, &address);
  WSASetLastError(static_cast<int>(Resolver().LastError()));
  return found ? &answer : nullptr;
}

unsigned long WINAPI OnInetAddr(const char* text) {
  const std::uint32_t expected = Resolver().ParseDotted(text);
  if (!mirror->MayBeFault()) {
    EXPECT_EQ(inet_addr(text), expected) << text;
  }
  return expected;
}

platform::ILibraries& Libraries() { return mirror->model.Libraries(); }

HMODULE WINAPI OnLoadLibrary(LPCSTR name) {
  const LibraryHandle loaded = Libraries().Load(name);
  HMODULE library = nullptr;
  // The stand-in always lies beside the program; where the machine has none, it is not asked for.
  if (loaded != LibraryHandle::kNone) {
    library = LoadLibraryA(name);
    EXPECT_NE(library, nullptr) << name << ": " << GetLastError();
    mirror->crypto.emplace(library, loaded);
  }
  SetLastError(mirror->model.Errors().LastError());
  return library;
}

FARPROC WINAPI OnGetProcAddress(HMODULE library, LPCSTR name) {
  if (!mirror->crypto || library != mirror->crypto->first) return GetProcAddress(library, name);
  const platform::ExportedFunction expected = Libraries().FindExport(mirror->crypto->second, name);
  FARPROC found = nullptr;
  Both("GetProcAddress", expected != nullptr,
       [&] { return (found = GetProcAddress(library, name)) != nullptr; });
  if (found != nullptr) {
    const FARPROC tell = GetProcAddress(library, "TellDecrypt");
    reinterpret_cast<decltype(&TellDecrypt)>(reinterpret_cast<void*>(tell))(
        reinterpret_cast<DecryptFunction>(expected));
  }
  return found;
}

void WINAPI OnSleep(DWORD milliseconds) { mirror->model.Clock().Sleep(milliseconds); }

/// `Function` is the type that the replacement must have.
template <class Function>
Substitute Instead(const char* module, const char* name, Function* replacement) {
  return {module, name, reinterpret_cast<void*>(replacement)};
}

/// Calls of the system that no machine answers (memory, threads, conversions, the pipes' bytes)
/// stay as they are.
const Substitute kSubstitutes[] = {
    Instead<decltype(ADsOpenObject)>("activeds.dll", "ADsOpenObject", &OnADsOpenObject),
    Instead<decltype(ChangeServiceConfigA)>("advapi32.dll", "ChangeServiceConfigA",
                                            &OnChangeServiceConfig),
    Instead<decltype(CloseServiceHandle)>("advapi32.dll", "CloseServiceHandle", &OnCloseService),
    Instead<decltype(LsaClose)>("advapi32.dll", "LsaClose", &OnLsaClose),
    Instead<decltype(LsaFreeMemory)>("advapi32.dll", "LsaFreeMemory", &OnLsaFreeMemory),
    Instead<decltype(LsaNtStatusToWinError)>("advapi32.dll", "LsaNtStatusToWinError",
                                             &OnLsaNtStatusToWinError),
    Instead<decltype(LsaOpenPolicy)>("advapi32.dll", "LsaOpenPolicy", &OnLsaOpenPolicy),
    Instead<decltype(LsaQueryInformationPolicy)>("advapi32.dll", "LsaQueryInformationPolicy",
                                                 &OnLsaQuery),
    Instead<decltype(OpenSCManagerA)>("advapi32.dll", "OpenSCManagerA", &OnOpenManager),
    Instead<decltype(OpenServiceA)>("advapi32.dll", "OpenServiceA", &OnOpenService),
    Instead<decltype(RegCloseKey)>("advapi32.dll", "RegCloseKey", &OnCloseKey),
    Instead<decltype(RegCreateKeyExA)>("advapi32.dll", "RegCreateKeyExA", &OnCreateKey),
    Instead<decltype(RegDeleteValueA)>("advapi32.dll", "RegDeleteValueA", &OnDeleteValue),
    Instead<decltype(RegOpenKeyExA)>("advapi32.dll", "RegOpenKeyExA", &OnOpenKey),
    Instead<decltype(RegQueryValueExA)>("advapi32.dll", "RegQueryValueExA", &OnQueryValue),
    Instead<decltype(RegSetValueExA)>("advapi32.dll", "RegSetValueExA", &OnSetValue),
    Instead<decltype(StartServiceA)>("advapi32.dll", "StartServiceA", &OnStartService),
    Instead<decltype(CloseHandle)>("kernel32.dll", "CloseHandle", &OnCloseHandle),
    Instead<decltype(CopyFileA)>("kernel32.dll", "CopyFileA", &OnCopyFile),
    Instead<decltype(CreateFileA)>("kernel32.dll", "CreateFileA", &OnCreateFile),
    Instead<decltype(CreatePipe)>("kernel32.dll", "CreatePipe", &OnCreatePipe),
    Instead<decltype(CreateProcessA)>("kernel32.dll", "CreateProcessA", &OnCreateProcess),
    Instead<decltype(DeleteFileA)>("kernel32.dll", "DeleteFileA", &OnDeleteFile),
    Instead<decltype(GetExitCodeProcess)>("kernel32.dll", "GetExitCodeProcess", &OnGetExitCode),
    Instead<decltype(GetFileAttributesA)>("kernel32.dll", "GetFileAttributesA",
                                          &OnGetFileAttributes),
    Instead<decltype(GetLastError)>("kernel32.dll", "GetLastError", &OnGetLastError),
    Instead<decltype(GetModuleFileNameA)>("kernel32.dll", "GetModuleFileNameA",
                                          &OnGetModuleFileName),
    Instead<decltype(GetProcAddress)>("kernel32.dll", "GetProcAddress", &OnGetProcAddress),
    Instead<decltype(LoadLibraryA)>("kernel32.dll", "LoadLibraryA", &OnLoadLibrary),
    Instead<decltype(MoveFileA)>("kernel32.dll", "MoveFileA", &OnMoveFile),
    Instead<decltype(SetHandleInformation)>("kernel32.dll", "SetHandleInformation",
                                            &OnSetHandleInformation),
    Instead<decltype(SetLastError)>("kernel32.dll", "SetLastError", &OnSetLastError),
    Instead<decltype(Sleep)>("kernel32.dll", "Sleep", &OnSleep),
    Instead<decltype(WaitForSingleObject)>("kernel32.dll", "WaitForSingleObject", &OnWait),
    Instead<decltype(WritePrivateProfileStringA)>("kernel32.dll", "WritePrivateProfileStringA",
                                                  &OnWriteProfileString),
    Instead<decltype(NetApiBufferFree)>("netapi32.dll", "NetApiBufferFree", &OnNetApiBufferFree),
    Instead<decltype(NetWkstaGetInfo)>("netapi32.dll", "NetWkstaGetInfo", &OnNetWkstaGetInfo),
    Instead<decltype(CoInitialize)>("ole32.dll", "CoInitialize", &OnCoInitialize),
    Instead<decltype(CoInitializeEx)>("ole32.dll", "CoInitializeEx", &OnCoInitializeEx),
    Instead<decltype(CoInitializeSecurity)>("ole32.dll", "CoInitializeSecurity",
                                            &OnCoInitializeSecurity),
    Instead<decltype(CoUninitialize)>("ole32.dll", "CoUninitialize", &OnCoUninitialize),
    Instead<decltype(GetComputerObjectNameA)>("secur32.dll", "GetComputerObjectNameA",
                                              &OnGetComputerObjectName),
    Instead<decltype(WSAStartup)>("ws2_32.dll", "WSAStartup", &OnWsaStartup),
    Instead<decltype(gethostbyname)>("ws2_32.dll", "gethostbyname", &OnGetHostByName),
    Instead<decltype(inet_addr)>("ws2_32.dll", "inet_addr", &OnInetAddr),
};

Mirror::Mirror(HMODULE library, simulated::Machine& newMachine)
    : machine(newMachine), imports(library, kSubstitutes) {
  SetEnvironmentVariableA(kRouteBook, routeBook.string().c_str());
}

/// The command lines that children were really started with.
std::vector<std::string> StartedCommands(const std::filesystem::path& book) {
  std::vector<std::string> commands;
  std::ifstream file(book);
  for (std::string line; std::getline(file, line);) commands.push_back(line);
  return commands;
}

std::vector<std::string> RunCommands(const simulated::Machine& machine, std::size_t from) {
  std::vector<std::string> commands;
  for (std::size_t i = from; i < machine.journal.size(); ++i) {
    const simulated::Change& change = machine.journal[i];
    if (change.call == "process.run" && !change["result"].IsNull()) {
      commands.push_back(change["command"].Text());
    }
  }
  return commands;
}

}  // namespace

MirroredCalls::MirroredCalls(HMODULE library, simulated::Machine& machine) {
  mirror = std::make_unique<Mirror>(library, machine);
}

const simulated::Usage& MirroredCalls::InUse() const { return mirror->model.InUse(); }

MirroredCalls::~MirroredCalls() {
  mirror->windows.ExpectEqual();
  EXPECT_EQ(mirror->answers, 0) << "answers of the system were not freed";
  EXPECT_EQ(StartedCommands(mirror->routeBook), RunCommands(mirror->machine, mirror->journalStart));
  std::error_code ignored;
  std::filesystem::remove(mirror->routeBook, ignored);
  mirror.reset();
}

}  // namespace contract
