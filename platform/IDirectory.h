// Domain membership as the local security authority and the workstation service tell it, and the
// directory over LDAP. Each operation is one system call and decides nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Types.h"

namespace platform {

/// An open policy of the local security authority.
enum class PolicyHandle : std::uint64_t { kNone = 0 };

/// A bound directory container (`IADsContainer`); destroying it releases the interface.
class IDirectoryContainer {
 public:
  virtual ~IDirectoryContainer() = default;
  /// Moves the object at `sourcePath` into this container under its own name.
  virtual HResult MoveHere(const std::string& sourcePath) = 0;
};

/// On failure the outputs keep their values.
class IDirectory {
 public:
  virtual ~IDirectory() = default;
  /// Opens the local policy for viewing. The caller closes `*policy`.
  virtual NtStatus OpenPolicy(PolicyHandle* policy) = 0;
  /// The primary domain: whether it has a SID, and its flat name (a workgroup's when it has none).
  virtual NtStatus QueryPrimaryDomain(PolicyHandle policy, bool* hasSid, std::string* name) = 0;
  /// The DNS name of the domain; empty when there is none.
  virtual NtStatus QueryDnsDomain(PolicyHandle policy, std::string* dnsName) = 0;
  virtual void ClosePolicy(PolicyHandle policy) = 0;
  /// `LsaNtStatusToWinError`.
  virtual Win32Error StatusToError(NtStatus status) = 0;
  /// The LAN group of the workstation service at level 100; false when it answers no buffer.
  virtual bool LanGroup(std::string* name) = 0;
  /// `GetComputerObjectNameA` with the fully qualified form: with a null `buffer` it stores the
  /// length needed, the closing NUL included, else it fills `buffer` of `*length` bytes. False on
  /// failure, with the reason in `IErrors::LastError`.
  virtual bool ComputerObjectName(char* buffer, std::uint32_t* length) = 0;
  /// `CoInitialize`.
  virtual HResult EnterApartment() = 0;
  /// `CoUninitialize`.
  virtual void LeaveApartment() = 0;
  /// Binds to a container with secure authentication; a success may answer none. Throws
  /// std::bad_alloc when the texts cannot be converted for lack of memory.
  virtual HResult BindContainer(const std::string& path, const std::string& account,
                                const std::string& password,
                                std::unique_ptr<IDirectoryContainer>* container) = 0;
};

}  // namespace platform
