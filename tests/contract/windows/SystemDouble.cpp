#include "tests/contract/windows/SystemDouble.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/windows/Com.h"
#include "platform/windows/Text.h"
#include "tests/contract/World.h"
#include "tests/contract/windows/ComDouble.h"
#include "tests/contract/windows/ImportTable.h"
#include "tests/contract/windows/WmiDouble.h"

namespace contract {
namespace {

using platform::Handle;
using platform::IDirectoryContainer;
using platform::IPlatform;
using platform::PolicyHandle;
using platform::RegistryKey;
using platform::ServiceHandle;
using platform::windows::TextOf;
using platform::windows::ToNarrow;

/// A file that is open for reading, or for a look at its identity; then `content` is its path.
struct OpenFile {
  std::string content;
  std::size_t at = 0;
  DWORD index = 0;
};

struct Double {
  Double(HMODULE module, simulated::Machine& newMachine);

  simulated::Machine& machine;
  simulated::SimulatedPlatform model{machine};
  std::map<HANDLE, OpenFile> files;
  std::uintptr_t lastFile = 0;
  /// Whether the apartments that were entered are the directory's, innermost last.
  std::vector<bool> apartments;
  /// Answers of the security authority and of the workstation that were not freed.
  int answers = 0;
  std::function<void()> duringSleep;
  WmiDouble wmi;
  ImportTable imports;
};

std::unique_ptr<Double> current;

/// The machine for the time of one call, whose last error is the thread's own.
class Asked {
 public:
  Asked() { current->model.Errors().SetLastError(GetLastError()); }
  ~Asked() { SetLastError(current->model.Errors().LastError()); }
  Asked(const Asked&) = delete;
  Asked& operator=(const Asked&) = delete;
  IPlatform* operator->() const { return &current->model; }
};

// Handles of the machine lie where none of the system's do.
constexpr std::uintptr_t kOurs = 0x0D0B'0000'0000;
constexpr std::uintptr_t kOurFiles = 0x0D0C'0000'0000;

bool IsOurs(const void* handle) { return reinterpret_cast<std::uintptr_t>(handle) >> 32 == 0x0D0B; }

/// A value of the system as a port knows it, or the other way round.
template <class To, class From>
To As(From value) {
  if constexpr (std::is_enum_v<To> && std::is_pointer_v<From>) {
    const auto number = reinterpret_cast<std::uintptr_t>(value);
    return To{IsOurs(reinterpret_cast<const void*>(value)) ? number - kOurs : number};
  } else if constexpr (std::is_pointer_v<To> && std::is_enum_v<From>) {
    const auto number = static_cast<std::uintptr_t>(value);
    return reinterpret_cast<To>(number + 1 > 1 ? number + kOurs : number);
  } else if constexpr (std::is_pointer_v<To> && std::is_pointer_v<From>) {
    return reinterpret_cast<To>(value);
  } else {
    return static_cast<To>(value);
  }
}

/// A function of the system whose arguments are those of an operation.
template <auto port, auto operation, class Function>
struct Forward;
template <auto port, class Port, class Answer, class... Wanted,
          Answer (Port::*operation)(Wanted...), class Result, class... Given>
struct Forward<port, operation, Result(Given...)> {
  static Result WINAPI Call(Given... given) {
    const Asked asked;
    Port& asks = ((*asked.operator->()).*port)();
    if constexpr (std::is_void_v<Answer>) {
      (asks.*operation)(As<std::remove_cvref_t<Wanted>>(given)...);
      return std::is_same_v<Result, BOOL> ? Result{TRUE} : Result{};
    } else {
      return As<Result>((asks.*operation)(As<std::remove_cvref_t<Wanted>>(given)...));
    }
  }
};

// Files.

/// Two files are looked at for every question; the machine is asked when the second is opened.
bool Identify(const std::string& path, OpenFile* file) {
  *file = {path, 0, 1};
  for (const auto& [handle, first] : current->files) {
    bool same = false;
    if (!Asked()->Files().SameFile(first.content, path, &same)) return false;
    if (!same) file->index = 2;
  }
  return true;
}

HANDLE WINAPI OnCreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES,
                            DWORD disposition, DWORD, HANDLE) {
  const bool isForReading = access == GENERIC_READ;
  EXPECT_TRUE(isForReading || access == 0) << access;
  EXPECT_EQ(share & ~DWORD{FILE_SHARE_DELETE}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE});
  EXPECT_EQ(disposition, DWORD{OPEN_EXISTING});
  OpenFile file;
  const bool opened =
      isForReading ? Asked()->Files().ReadWhole(path, &file.content) : Identify(path, &file);
  if (!opened) return INVALID_HANDLE_VALUE;
  const auto handle = reinterpret_cast<HANDLE>(kOurFiles + ++current->lastFile);
  current->files[handle] = std::move(file);
  return handle;
}

BOOL WINAPI OnGetFileSizeEx(HANDLE handle, PLARGE_INTEGER size) {
  size->QuadPart = static_cast<LONGLONG>(current->files.at(handle).content.size());
  return TRUE;
}

BOOL WINAPI OnGetFileInformationByHandle(HANDLE handle, LPBY_HANDLE_FILE_INFORMATION information) {
  information->nFileIndexLow = current->files.at(handle).index;
  return TRUE;
}

BOOL WINAPI OnReadFile(HANDLE handle, LPVOID buffer, DWORD size, LPDWORD read,
                       LPOVERLAPPED overlapped) {
  const auto file = current->files.find(handle);
  if (file == current->files.end()) return ReadFile(handle, buffer, size, read, overlapped);
  *read = static_cast<DWORD>(
      file->second.content.copy(static_cast<char*>(buffer), size, file->second.at));
  file->second.at += *read;
  return TRUE;
}

DWORD WINAPI OnGetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size) {
  if (module != nullptr) return GetModuleFileNameA(module, buffer, size);
  std::string path;
  if (!Asked()->Files().ModulePath(&path) || path.size() >= size) return 0;
  std::memcpy(buffer, path.c_str(), path.size() + 1);
  return static_cast<DWORD>(path.size());
}

// The registry.

/// The system extends the sign of its predefined keys.
RegistryKey KeyOf(HKEY key) {
  return key == HKEY_LOCAL_MACHINE ? platform::kLocalMachine : As<RegistryKey>(key);
}

/// Opens or creates a key, for all that can be done with it or for reading only, in the view of
/// either kind of program.
LSTATUS Open(decltype(&platform::IRegistry::Open) open, HKEY root, LPCSTR subkey, REGSAM access,
             PHKEY key) {
  const REGSAM rights = access & ~REGSAM{KEY_WOW64_64KEY};
  EXPECT_TRUE(rights == GENERIC_READ || rights == KEY_ALL_ACCESS) << std::hex << access;
  RegistryKey opened{};
  const auto result = (Asked()->Registry().*open)(KeyOf(root), subkey, access, &opened);
  if (result == ERROR_SUCCESS) *key = As<HKEY>(opened);
  return static_cast<LSTATUS>(result);
}

LSTATUS WINAPI OnRegOpenKeyExA(HKEY root, LPCSTR subkey, DWORD options, REGSAM access, PHKEY key) {
  EXPECT_EQ(options, 0u);
  return Open(&platform::IRegistry::Open, root, subkey, access, key);
}

LSTATUS WINAPI OnRegCreateKeyExA(HKEY root, LPCSTR subkey, DWORD, LPSTR, DWORD options,
                                 REGSAM access, LPSECURITY_ATTRIBUTES security, PHKEY key,
                                 LPDWORD) {
  EXPECT_TRUE(options == REG_OPTION_NON_VOLATILE && security == nullptr);
  return Open(&platform::IRegistry::Create, root, subkey, access, key);
}

LSTATUS WINAPI OnRegQueryValueExA(HKEY key, LPCSTR name, LPDWORD, LPDWORD type, LPBYTE data,
                                  LPDWORD size) {
  std::uint32_t found[2] = {0, size != nullptr ? *size : 0};
  const auto result = static_cast<LSTATUS>(Asked()->Registry().Query(
      KeyOf(key), name, &found[0], data, size != nullptr ? &found[1] : nullptr));
  if (type != nullptr) *type = found[0];
  if (size != nullptr) *size = found[1];
  return result;
}

LSTATUS WINAPI OnRegSetValueExA(HKEY key, LPCSTR name, DWORD, DWORD type, const BYTE* data,
                                DWORD size) {
  return static_cast<LSTATUS>(Asked()->Registry().Set(KeyOf(key), name, type, data, size));
}

// Services.

SC_HANDLE WINAPI OnOpenSCManagerA(LPCSTR computer, LPCSTR database, DWORD access) {
  EXPECT_TRUE(computer == nullptr && database == nullptr && access == SC_MANAGER_ALL_ACCESS);
  return As<SC_HANDLE>(Asked()->Services().OpenManager());
}

SC_HANDLE WINAPI OnOpenServiceA(SC_HANDLE manager, LPCSTR name, DWORD access) {
  EXPECT_EQ(access, DWORD{SERVICE_ALL_ACCESS});
  return As<SC_HANDLE>(Asked()->Services().OpenService(As<ServiceHandle>(manager), name));
}

BOOL WINAPI OnChangeServiceConfigA(SC_HANDLE service, DWORD type, DWORD start, DWORD errorControl,
                                   LPCSTR path, LPCSTR group, LPDWORD tag, LPCSTR dependencies,
                                   LPCSTR account, LPCSTR password, LPCSTR displayName) {
  EXPECT_TRUE(type == SERVICE_NO_CHANGE && errorControl == SERVICE_NO_CHANGE && tag == nullptr);
  for (LPCSTR kept : {path, group, dependencies, account, password, displayName}) {
    EXPECT_EQ(kept, nullptr);
  }
  return Asked()->Services().SetStartType(As<ServiceHandle>(service),
                                          static_cast<platform::ServiceStart>(start));
}

BOOL WINAPI OnStartServiceA(SC_HANDLE service, DWORD count, LPCSTR* arguments) {
  EXPECT_TRUE(count == 0 && arguments == nullptr);
  return Asked()->Services().Start(As<ServiceHandle>(service));
}

// Child processes. Handles that are not the machine's are the runtime library's own.

BOOL WINAPI OnCreatePipe(PHANDLE read, PHANDLE write, LPSECURITY_ATTRIBUTES security, DWORD size) {
  EXPECT_TRUE(security->bInheritHandle);
  Handle ends[2] = {};
  const bool made = Asked()->Processes().MakePipe(&ends[0], &ends[1], size);
  *read = As<HANDLE>(ends[0]);
  *write = As<HANDLE>(ends[1]);
  return made;
}

BOOL WINAPI OnSetHandleInformation(HANDLE handle, DWORD mask, DWORD flags) {
  EXPECT_TRUE(mask == HANDLE_FLAG_INHERIT && flags == 0);
  return Asked()->Processes().StopInheriting(As<Handle>(handle));
}

BOOL WINAPI OnCreateProcessA(LPCSTR application, LPSTR commandLine, LPSECURITY_ATTRIBUTES process,
                             LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags,
                             LPVOID environment, LPCSTR folder, LPSTARTUPINFOA startup,
                             LPPROCESS_INFORMATION information) {
  EXPECT_TRUE(process == nullptr && thread == nullptr && inherit && flags == 0);
  EXPECT_EQ(startup->cb, sizeof *startup);
  platform::ProcessInformation spawned;
  if (!Asked()->Processes().Spawn(
          application, commandLine, static_cast<const char*>(environment), folder,
          {startup->dwFlags, startup->wShowWindow, As<Handle>(startup->hStdInput),
           As<Handle>(startup->hStdOutput), As<Handle>(startup->hStdError)},
          &spawned)) {
    return FALSE;
  }
  *information = {As<HANDLE>(spawned.process), As<HANDLE>(spawned.thread), spawned.processId,
                  spawned.threadId};
  return TRUE;
}

DWORD WINAPI OnWaitForSingleObject(HANDLE handle, DWORD timeoutMs) {
  if (!IsOurs(handle)) return WaitForSingleObject(handle, timeoutMs);
  return Asked()->Processes().Wait(As<Handle>(handle), timeoutMs);
}

BOOL WINAPI OnCloseHandle(HANDLE handle) {
  if (current->files.erase(handle) != 0) return TRUE;
  if (!IsOurs(handle)) return CloseHandle(handle);
  Asked()->Processes().Close(As<Handle>(handle));
  return TRUE;
}

// Membership and the directory.

NTSTATUS WINAPI OnLsaOpenPolicy(PLSA_UNICODE_STRING computer, PLSA_OBJECT_ATTRIBUTES,
                                ACCESS_MASK access, PLSA_HANDLE handle) {
  EXPECT_TRUE(computer == nullptr && access == POLICY_VIEW_LOCAL_INFORMATION);
  PolicyHandle policy{};
  const NTSTATUS status = Asked()->Directory().OpenPolicy(&policy);
  if (status >= 0) *handle = As<LSA_HANDLE>(policy);
  return status;
}

/// A zeroed answer with room behind it for `text`, which the caller lets it point to.
template <class Answer>
std::pair<Answer*, wchar_t*> MakeAnswer(const std::string& text) {
  ++current->answers;
  const std::wstring wide(text.begin(), text.end());
  const std::size_t size = (wide.size() + 1) * sizeof(wchar_t);
  auto* const answer = static_cast<Answer*>(std::calloc(1, sizeof(Answer) + size));
  return {answer, static_cast<wchar_t*>(std::memcpy(answer + 1, wide.c_str(), size))};
}

LSA_UNICODE_STRING LsaText(wchar_t* text) {
  const auto length = static_cast<USHORT>(std::wcslen(text) * sizeof(wchar_t));
  return {length, length, text};
}

NTSTATUS WINAPI OnLsaQueryInformationPolicy(LSA_HANDLE handle, POLICY_INFORMATION_CLASS kind,
                                            PVOID* information) {
  const auto policy = As<PolicyHandle>(handle);
  const bool isDns = kind == PolicyDnsDomainInformation;
  EXPECT_TRUE(isDns || kind == PolicyPrimaryDomainInformation) << kind;
  std::string name;
  bool hasSid = false;
  const NTSTATUS status = isDns ? Asked()->Directory().QueryDnsDomain(policy, &name)
                                : Asked()->Directory().QueryPrimaryDomain(policy, &hasSid, &name);
  if (status < 0) return status;
  if (isDns) {
    const auto [answer, text] = MakeAnswer<POLICY_DNS_DOMAIN_INFO>(name);
    answer->DnsDomainName = LsaText(text);
    *information = answer;
  } else {
    const auto [answer, text] = MakeAnswer<POLICY_PRIMARY_DOMAIN_INFO>(name);
    answer->Name = LsaText(text);
    if (hasSid) answer->Sid = answer;  // nobody looks at more than whether there is one
    *information = answer;
  }
  return status;
}

NTSTATUS WINAPI OnLsaFreeMemory(PVOID buffer) {
  --current->answers;
  std::free(buffer);
  return 0;
}

NET_API_STATUS WINAPI OnNetWkstaGetInfo(LMSTR server, DWORD level, LPBYTE* buffer) {
  EXPECT_TRUE(server == nullptr && level == 100);
  std::string name;
  if (!Asked()->Directory().LanGroup(&name)) return ERROR_ACCESS_DENIED;
  const auto [answer, text] = MakeAnswer<WKSTA_INFO_100>(name);
  answer->wki100_langroup = text;
  *buffer = reinterpret_cast<LPBYTE>(answer);
  return 0;
}

NET_API_STATUS WINAPI OnNetApiBufferFree(LPVOID buffer) {
  if (buffer != nullptr) OnLsaFreeMemory(buffer);
  return 0;
}

BOOLEAN WINAPI OnGetComputerObjectNameA(EXTENDED_NAME_FORMAT format, LPSTR buffer, PULONG length) {
  EXPECT_EQ(format, NameFullyQualifiedDN);
  std::uint32_t count = *length;
  const bool done = Asked()->Directory().ComputerObjectName(buffer, &count);
  *length = count;
  return done ? TRUE : FALSE;
}

HRESULT WINAPI MoveHere(ComObject<IDirectoryContainer>* self, BSTR source, BSTR name,
                        void** moved) {
  EXPECT_EQ(name, nullptr) << "the object keeps its name";
  const HRESULT result = self->port->MoveHere(TextOf(source));
  *moved = nullptr;
  if (SUCCEEDED(result)) {
    ++self->references;  // any object will do: it is only released
    *moved = self;
  }
  return result;
}

const Slots kContainer = MakeSlots<IDirectoryContainer>({{17, AddressOf(&MoveHere)}});

HRESULT WINAPI OnADsOpenObject(LPCWSTR path, LPCWSTR account, LPCWSTR password, DWORD options,
                               REFIID iid, void** object) {
  EXPECT_EQ(options, DWORD{ADS_SECURE_AUTHENTICATION});
  EXPECT_TRUE(iid == IID_IADsContainer);
  return Wrap<IDirectoryContainer>(kContainer, object, [&](auto* made) {
    return Asked()->Directory().BindContainer(ToNarrow(path), ToNarrow(account), ToNarrow(password),
                                              made);
  });
}

// WMI.

HRESULT WINAPI OnCoInitializeEx(LPVOID, DWORD kind) {
  EXPECT_EQ(kind, DWORD{COINIT_MULTITHREADED});
  current->apartments.push_back(false);
  return Asked()->Wmi().EnterApartment();
}

HRESULT WINAPI OnCoInitialize(LPVOID) {
  current->apartments.push_back(true);
  return Asked()->Directory().EnterApartment();
}

void WINAPI OnCoUninitialize() {
  ASSERT_FALSE(current->apartments.empty()) << "left more apartments than entered";
  const bool isDirectorys = current->apartments.back();
  current->apartments.pop_back();
  if (isDirectorys) {
    Asked()->Directory().LeaveApartment();
  } else {
    Asked()->Wmi().LeaveApartment();
  }
}

HRESULT WINAPI OnCoInitializeSecurity(PSECURITY_DESCRIPTOR descriptor, LONG services,
                                      SOLE_AUTHENTICATION_SERVICE*, void*, DWORD level,
                                      DWORD impersonation, void*, DWORD capabilities, void*) {
  EXPECT_TRUE(descriptor == nullptr && services == -1 && capabilities == 0);
  EXPECT_TRUE(level == RPC_C_AUTHN_LEVEL_CONNECT && impersonation == RPC_C_IMP_LEVEL_IMPERSONATE);
  return Asked()->Wmi().SecureProcess();
}

// Host names, libraries, time and texts.

int WINAPI OnWSAStartup(WORD version, LPWSADATA) {
  EXPECT_EQ(version, MAKEWORD(2, 2));
  return static_cast<int>(Asked()->Resolver().Start());
}

hostent* WINAPI Ongethostbyname(const char* name) {
  static std::uint32_t address;
  static char* addresses[] = {reinterpret_cast<char*>(&address), nullptr};
  static hostent answer{nullptr, nullptr, AF_INET, sizeof address, addresses};
  return Asked()->Resolver().LookUpHost(name, &address) ? &answer : nullptr;
}

FARPROC WINAPI OnGetProcAddress(HMODULE library, LPCSTR name) {
  if (!IsOurs(library)) return GetProcAddress(library, name);
  return reinterpret_cast<FARPROC>(
      Asked()->Libraries().FindExport(As<platform::LibraryHandle>(library), name));
}

void WINAPI OnSleep(DWORD milliseconds) {
  Asked()->Clock().Sleep(milliseconds);
  if (current->duringSleep) current->duringSleep();
}

DWORD WINAPI OnFormatMessageA(DWORD flags, LPCVOID, DWORD result, DWORD, LPSTR message, DWORD,
                              va_list*) {
  EXPECT_EQ(flags, DWORD{FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM});
  std::string text;
  if (!Asked()->Errors().Describe(static_cast<HRESULT>(result), &text)) return 0;
  void* const copy = LocalAlloc(LMEM_FIXED, text.size() + 1);
  *reinterpret_cast<void**>(message) = std::memcpy(copy, text.c_str(), text.size() + 1);
  return static_cast<DWORD>(text.size());
}

// User contexts: what Wine has only in name. A SID is a number here as well.

struct NumberedSid {
  SID_IDENTIFIER_AUTHORITY authority{{0, 0, 0, 0, 0, 22}};
  BYTE bytes[SECURITY_MAX_SID_SIZE];
  explicit NumberedSid(std::uint64_t number) {
    EXPECT_TRUE(InitializeSid(bytes, &authority, 1));
    *GetSidSubAuthority(bytes, 0) = static_cast<DWORD>(number);
  }
};

BOOL WINAPI OnGetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID buffer,
                                  DWORD size, PDWORD needed) {
  EXPECT_EQ(kind, TokenUser);
  NumberedSid sid(reinterpret_cast<std::uintptr_t>(token));
  *needed = static_cast<DWORD>(sizeof(TOKEN_USER)) + GetLengthSid(sid.bytes);
  if (size < *needed) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return FALSE;
  }
  auto* const user = static_cast<TOKEN_USER*>(buffer);
  *user = {{user + 1, 0}};
  return CopySid(GetLengthSid(sid.bytes), user + 1, sid.bytes);
}

BOOL WINAPI OnGetUserObjectSecurity(HANDLE object, PSECURITY_INFORMATION wanted,
                                    PSECURITY_DESCRIPTOR descriptor, DWORD size, LPDWORD needed) {
  EXPECT_EQ(*wanted, SECURITY_INFORMATION{DACL_SECURITY_INFORMATION});
  alignas(DWORD) BYTE buffer[512];
  auto* const list = reinterpret_cast<PACL>(buffer);
  EXPECT_TRUE(InitializeAcl(list, sizeof buffer, ACL_REVISION));
  for (const std::uint64_t number :
       current->machine.userObjects.at(reinterpret_cast<std::uintptr_t>(object))) {
    EXPECT_TRUE(AddAccessAllowedAce(list, ACL_REVISION, GENERIC_READ, NumberedSid(number).bytes));
  }
  SECURITY_DESCRIPTOR whole;
  EXPECT_TRUE(InitializeSecurityDescriptor(&whole, SECURITY_DESCRIPTOR_REVISION));
  EXPECT_TRUE(SetSecurityDescriptorDacl(&whole, TRUE, list, FALSE));
  *needed = size;
  return MakeSelfRelativeSD(&whole, descriptor, needed);
}

BOOL WINAPI OnSetUserObjectSecurity(HANDLE object, PSECURITY_INFORMATION given,
                                    PSECURITY_DESCRIPTOR descriptor) {
  EXPECT_EQ(*given, SECURITY_INFORMATION{DACL_SECURITY_INFORMATION});
  BOOL is = FALSE;
  PACL list = nullptr;
  EXPECT_TRUE(GetSecurityDescriptorDacl(descriptor, &is, &list, &is));
  auto& numbers = current->machine.userObjects[reinterpret_cast<std::uintptr_t>(object)];
  numbers.clear();
  ACCESS_ALLOWED_ACE* entry = nullptr;
  for (DWORD i = 0; GetAce(list, i, reinterpret_cast<void**>(&entry)); ++i) {
    numbers.push_back(*GetSidSubAuthority(&entry->SidStart, 0));
  }
  return TRUE;
}

#define BY_HAND(module, name) \
  { module ".dll", #name, AddressOf(static_cast<decltype(&name)>(&On##name)) }
#define BY_PORT(module, name, port, operation)                                                     \
  {                                                                                                \
    module ".dll", #name,                                                                          \
        AddressOf(&Forward<&IPlatform::port, &platform::I##port::operation, decltype(name)>::Call) \
  }

const Substitute kSubstitutes[] = {
    BY_HAND("activeds", ADsOpenObject),
    BY_HAND("advapi32", ChangeServiceConfigA),
    BY_HAND("advapi32", GetTokenInformation),
    BY_PORT("advapi32", CloseServiceHandle, Services, Close),
    BY_PORT("advapi32", LsaClose, Directory, ClosePolicy),
    BY_HAND("advapi32", LsaFreeMemory),
    BY_HAND("advapi32", LsaOpenPolicy),
    BY_HAND("advapi32", LsaQueryInformationPolicy),
    BY_HAND("advapi32", OpenSCManagerA),
    BY_HAND("advapi32", OpenServiceA),
    BY_PORT("advapi32", RegCloseKey, Registry, Close),
    BY_HAND("advapi32", RegCreateKeyExA),
    BY_PORT("advapi32", RegDeleteValueA, Registry, Erase),
    BY_HAND("advapi32", RegOpenKeyExA),
    BY_HAND("advapi32", RegQueryValueExA),
    BY_HAND("advapi32", RegSetValueExA),
    BY_PORT("advapi32", RevertToSelf, Security, Revert),
    BY_HAND("advapi32", StartServiceA),
    BY_HAND("kernel32", CloseHandle),
    BY_PORT("kernel32", CopyFileA, Files, Copy),
    BY_HAND("kernel32", CreateFileA),
    BY_HAND("kernel32", CreatePipe),
    BY_HAND("kernel32", CreateProcessA),
    BY_PORT("kernel32", DeleteFileA, Files, Erase),
    BY_HAND("kernel32", FormatMessageA),
    BY_PORT("kernel32", GetExitCodeProcess, Processes, ExitCode),
    BY_PORT("kernel32", GetFileAttributesA, Files, Attributes),
    BY_HAND("kernel32", GetFileInformationByHandle),
    BY_HAND("kernel32", GetFileSizeEx),
    BY_HAND("kernel32", GetModuleFileNameA),
    BY_HAND("kernel32", GetProcAddress),
    BY_PORT("kernel32", LoadLibraryA, Libraries, Load),
    BY_PORT("kernel32", MoveFileA, Files, Move),
    BY_HAND("kernel32", ReadFile),
    BY_HAND("kernel32", SetHandleInformation),
    BY_HAND("kernel32", Sleep),
    BY_HAND("kernel32", WaitForSingleObject),
    BY_PORT("kernel32", WritePrivateProfileStringA, Files, WriteProfileEntry),
    BY_HAND("netapi32", NetApiBufferFree),
    BY_HAND("netapi32", NetWkstaGetInfo),
    BY_HAND("ole32", CoInitialize),
    BY_HAND("ole32", CoInitializeEx),
    BY_HAND("ole32", CoInitializeSecurity),
    BY_HAND("ole32", CoUninitialize),
    BY_HAND("secur32", GetComputerObjectNameA),
    BY_PORT("user32", CloseDesktop, Security, CloseDesktop),
    BY_PORT("user32", CloseWindowStation, Security, CloseStation),
    BY_HAND("user32", GetUserObjectSecurity),
    BY_PORT("user32", SetProcessWindowStation, Security, SetProcessStation),
    BY_HAND("user32", SetUserObjectSecurity),
    BY_PORT("userenv", UnloadUserProfile, Security, UnloadProfile),
    BY_HAND("ws2_32", WSAStartup),
    BY_HAND("ws2_32", gethostbyname),
    BY_PORT("ws2_32", inet_addr, Resolver, ParseDotted),
};

Double::Double(HMODULE module, simulated::Machine& newMachine)
    : machine(newMachine), wmi(module, model.Wmi()), imports(module, kSubstitutes) {}

}  // namespace

SystemDouble::SystemDouble(HMODULE module, simulated::Machine& machine) {
  current = std::make_unique<Double>(module, machine);
}

SystemDouble::~SystemDouble() {
  EXPECT_EQ(current->answers, 0) << "answers of the system were not freed";
  EXPECT_TRUE(current->files.empty()) << "a file was not closed";
  current.reset();
}

const simulated::Usage& SystemDouble::InUse() const { return current->model.InUse(); }

void SystemDouble::DuringSleep(std::function<void()> action) {
  current->duringSleep = std::move(action);
}

}  // namespace contract
