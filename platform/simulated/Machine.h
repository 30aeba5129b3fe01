// A whole computer as plain data: fill it in, run the engine on it, read it back. Its journal lists
// in order every call that changed it or paused. Members say " = {}" so that compilers take an
// initializer that leaves them out.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/IServices.h"
#include "platform/Types.h"
#include "platform/simulated/Change.h"

namespace simulated {

/// What an unknown text is deciphered to, and the address of a name of which it is unknown whether
/// it resolves, where the unknown is assumed.
inline constexpr char kUnknownText[] = "(unknown)";
/// What an unreadable address becomes on its way to the machine.
inline constexpr char kNoAddressText[] = "255.255.255.255";

/// A text property that may hold the null value.
using NullableText = std::optional<std::string>;

struct Adapter {
  /// The `Index` of both WMI classes; unique on a machine.
  std::uint32_t index = 7;
  std::string settingId = "{11111111-2222-3333-4444-555555555555}";
  bool ipEnabled = true;
  std::string pnpDeviceId = R"(PCI\VEN_8086&DEV_100E&SUBSYS_001E8086&REV_02\3&267A616A&0&18)";
  /// The registry value "LocationInformation"; without one the value is absent.
  NullableText locationInformation =
      R"(@System32\drivers\pci.sys,#65536;PCI bus %1, device %2, function %3;(0,3,0))";
  NullableText macAddress = "08:00:27:12:34:56";
  NullableText adapterType = "Ethernet 802.3";
  NullableText manufacturer = "Intel";
  NullableText caption = "[00000007] Intel(R) PRO/1000 MT Desktop Adapter";
  bool dhcpEnabled = true;
  std::vector<std::string> ipAddresses = {};
  std::vector<std::string> subnetMasks = {};
  std::vector<std::string> gateways = {};
  std::vector<std::string> dnsServers = {};
  std::vector<std::string> dnsSuffixes = {};
  NullableText dnsDomain = {};
  NullableText dnsHostName = {};
  /// The DNS servers were set by hand: the registry value "NameServer" holds them.
  bool staticDns = false;

  friend bool operator==(const Adapter&, const Adapter&) = default;
};

struct PersistentRoute {
  std::string destination = "10.1.0.0";
  std::string mask = "255.255.0.0";
  std::string nextHop = "10.0.0.1";
  std::int32_t metric = 1;
  friend bool operator==(const PersistentRoute&, const PersistentRoute&) = default;
};

struct Service {
  std::string name = "Dhcp";
  platform::ServiceStart start = platform::ServiceStart::kAutomatic;
  bool running = true;
  friend bool operator==(const Service&, const Service&) = default;
};

struct RegistryValue {
  /// Full path, for example "HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service".
  std::string key = R"(HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service)";
  std::string name = "NetworkDisabled";
  /// `kRegDWord` with a number, `kRegSz` or `kRegExpandSz` with a text.
  std::uint32_t type = 4;
  std::variant<std::uint32_t, std::string> data = std::uint32_t{1};
  friend bool operator==(const RegistryValue&, const RegistryValue&) = default;
};

struct File {
  std::string path = R"(C:\restore.cfg)";
  std::string text = "[Global]\r\nConfig=Restore\r\n";
  friend bool operator==(const File&, const File&) = default;
};

struct Host {
  std::string name = "gateway.corp.example";
  std::string address = "10.0.0.1";
  friend bool operator==(const Host&, const Host&) = default;
};

struct WorkgroupMembership {
  std::string name = "WORKGROUP";
  friend bool operator==(const WorkgroupMembership&, const WorkgroupMembership&) = default;
};

struct DomainMembership {
  /// Empty for a domain that reports no DNS name.
  std::string dnsName;
  std::string flatName;
  bool hasSid = true;
  friend bool operator==(const DomainMembership&, const DomainMembership&) = default;
};

using Membership = std::variant<WorkgroupMembership, DomainMembership>;

struct Account {
  std::string user = "joiner";
  std::string password = "s3cret";
  friend bool operator==(const Account&, const Account&) = default;
};

struct Computer {
  std::string name = "PC1";
  /// Distinguished name.
  std::string dn = "CN=PC1,OU=Europe,OU=Sales,DC=corp,DC=example";
  friend bool operator==(const Computer&, const Computer&) = default;
};

struct DirectoryDomain {
  std::string dnsName = "corp.example";
  std::string flatName = "CORP";
  std::vector<Account> accounts = {};
  /// Distinguished names of the organizational units.
  std::vector<std::string> ous = {};
  std::vector<Computer> computers = {};

  friend bool operator==(const DirectoryDomain&, const DirectoryDomain&) = default;
};

/// Makes calls to the machine fail. An absent matcher matches every call of that name; texts are
/// matched without regard to case.
struct Fault {
  /// A name as in the journal or of a read ("wmi.connect", "wmi.query", "registry.open", ...), or
  /// "*" for a call of any kind.
  std::string call = "*";
  /// Text that stands somewhere in the call's query, command line or path.
  NullableText contains = {};
  NullableText method = {};
  NullableText service = {};
  /// Name of a registry value, host, property or library.
  NullableText name = {};
  /// Adapter index in a method's path or a query's condition.
  std::optional<std::uint32_t> index = {};
  /// Only the n-th matching call fails, counted from 1.
  std::optional<std::uint32_t> nth = {};
  /// What the call answers: `hresult` for COM calls, `error` for system calls, `result` for the
  /// return value of a method or the exit code of a process that did run. A call of the other kind
  /// answers the same code in its own form; without any code it is a general failure.
  std::optional<platform::HResult> hresult = {};
  std::optional<std::uint32_t> error = {};
  std::optional<std::int32_t> result = {};
  /// How many calls have matched so far.
  std::uint32_t matched = 0;
  /// The call that it struck last, by its name; empty before the first.
  std::string struck = {};

  friend bool operator==(const Fault&, const Fault&) = default;
};

struct Machine {
  std::string computerName = "TEMPLATE";
  /// A rename that waits for the restart.
  NullableText pendingComputerName;
  Membership membership;
  /// Properties of the operating-system record: null, flag, number or text. What is absent here
  /// does not exist on this machine.
  std::map<std::string, Value> operatingSystem{{"SystemDrive", "C:"}, {"Version", "10.0.19045"}};
  std::string agentFolder = R"(C:\Program Files\Orvanta\Agent)";
  std::vector<Adapter> adapters;
  std::vector<PersistentRoute> persistentRoutes;
  std::vector<Service> services;
  std::vector<RegistryValue> registry;
  std::vector<File> files;
  std::vector<Host> hosts;
  /// What "LibCrypto.dll" deciphers; without it the library is not installed.
  std::optional<std::map<std::string, std::string>> decrypt;
  std::vector<DirectoryDomain> domains;
  /// Nothing is deciphered, and no domain is there: not unknown, which runs alike, but known.
  bool decryptIsNone = false;
  bool directoryIsNone = false;
  /// `hosts` says nothing of which names resolve.
  bool hostsUnknown = false;
  /// For a rehearsal: what is unknown answers as if all that is needed were there.
  bool assumesUnknown = false;
  /// What the call in progress took for granted; "unknown" of its journal entry tells it.
  std::string assumed;
  /// The container of the computer's account in a domain whose directory is unknown.
  std::string assumedContainer = std::string("OU=") + kUnknownText;
  /// The SIDs that window stations and desktops let in, as numbers, by the object's handle. An
  /// object that is absent lets everyone in. Machine files do not hold them.
  std::map<std::uint64_t, std::vector<std::uint64_t>> userObjects;
  std::vector<Fault> faults;

  /// Calls that changed the machine or paused, in order, whether they succeeded or not. Arguments
  /// are kept as they came: whoever shows the journal hides the passwords.
  std::vector<Change> journal;

  /// Restarts the computer: a pending name takes effect, in the domain's directory too.
  void Restart();

  /// Names and paths are compared without regard to case. Null when there is none.
  Adapter* FindAdapter(std::uint32_t index);
  Service* FindService(const std::string& name);
  File* FindFile(const std::string& path);
  /// The domain that the computer belongs to, and its account there.
  DirectoryDomain* FindOwnDomain();
  Computer* FindOwnAccount();

  bool KnowsDecrypt() const { return decrypt || decryptIsNone; }
  bool KnowsDirectory() const { return directoryIsNone || !domains.empty(); }
  /// Calls that need what is unknown go well; one that changes the machine sets `assumed`.
  bool AssumesDecrypt() const { return assumesUnknown && !KnowsDecrypt(); }
  bool AssumesDirectory() const { return assumesUnknown && !KnowsDirectory(); }
  bool AssumesHosts() const { return assumesUnknown && hostsUnknown; }

  /// Makes or replaces a file.
  void PutFile(const std::string& path, const std::string& text);
  /// Makes the `nth` call from now on fail, whatever its kind.
  void FailCall(std::uint32_t nth, platform::Win32Error error);

  friend bool operator==(const Machine&, const Machine&) = default;
};

/// The built-in example: two PCI adapters, one software adapter, member of a workgroup, and a
/// directory that it can join.
Machine ExampleMachine();

/// `path` in the one form that all its spellings share: letter case, "/", doubled separators, "."
/// and ".." make no difference.
std::string FoldedPath(std::string_view path);

}  // namespace simulated
