// Domain and workgroup membership: who the machine belongs to, and how that is changed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/err/GeneralError.h"

namespace sys {

/// `SystemError` is a system error, an HRESULT or a method's result.
struct DomainError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;
};

/// The distinguished name of an OU in a domain. The OU is a path from the top of the domain
/// downwards ("Sales/Europe") or a distinguished name or a piece of one ("OU=..."); one that names
/// its domain too ("DC=...") is the result. The domain is a DNS name or "DC=..." already.
std::string BuildDn(std::string_view domain, std::string_view ou);

/// The path from the top of the domain downwards of the OUs in a distinguished name:
/// "CN=PC1,OU=Europe,OU=Sales,DC=corp,DC=local" gives "Sales/Europe".
std::string DnToOuPath(std::string_view dn);

/// One for the process. Every operation but those on credentials reads the membership afresh and
/// throws DomainError when it cannot. Not safe for use by several threads.
class Domain {
 public:
  static Domain& Instance();

  /// Keeps the bare user of `account` (without a domain before "\" or "/", or after "@") and the
  /// password for the operations that follow.
  void SetCredentials(const std::string& account, const std::string& password);
  /// Wipes both.
  void ForgetCredentials() noexcept;

  bool IsDomainMember();
  std::string GetDnsDomainName();
  /// The flat (NetBIOS) name.
  std::string GetDomainName();
  /// Empty for a member.
  std::string GetWorkgroup();
  /// The OU of the computer's account, as a path or (with `asDn`) as "OU=Europe,OU=Sales"; what it
  /// was last when the machine is not a member. Throws DomainError.
  std::string GetOu(bool asDn);

  /// Leaves the domain if a member, then joins the workgroup. True when the result is "done after a
  /// restart". Throws DomainError, or CWmiError when a method cannot be run.
  bool JoinWorkgroup(const std::string& workgroup);
  /// Joins a domain, with the computer's account in `ou` (empty: the directory's default). Tries
  /// once more with an account to be created when the first try is refused. `deferSpn` leaves the
  /// service principal names for the rename that follows. Result and errors as `JoinWorkgroup`.
  bool JoinDomainAndOu(const std::string& domain, const std::string& ou, bool deferSpn);
  /// Moves the computer's account; an empty OU is the default container. False when the machine is
  /// no member. Throws DomainError with value 1.
  bool MoveOu(const std::string& targetOu);

  Domain& operator=(Domain&&) = delete;
  virtual ~Domain() = default;

 private:
  friend struct DomainTestAccess;

  Domain() = default;
  /// Itself, with the membership read afresh.
  Domain& Refreshed();
  std::string AccountName(const std::string& domain) const;
  /// The DNS name of the current domain, otherwise its flat name.
  const std::string& CurrentDomain() const;

  std::string workgroup_;
  std::string domainName_;
  std::string dnsDomainName_;
  std::string ou_;
  std::string user_;
  std::string password_;
  bool isMember_ = false;
};

}  // namespace sys
