#include "common/sys/Domain.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "base/Pieces.h"
#include "common/sys/Wmi.h"
#include "common/util/Finally.h"
#include "common/util/LastError.h"
#include "common/util/Wiping.h"
#include "platform/IDirectory.h"
#include "platform/IPlatform.h"

namespace sys {
namespace {

constexpr char kSource[] = "Domain";
constexpr err::Site kPolicyRefused{kSource, " - IsDomainMember returned error ", 121};
constexpr err::Site kNoObjectName{kSource, "GetOu() failed calling GetComputerObjectName()", 248};
// Each check has two places: one for a failed call, one for a method that refused.
struct Check {
  err::Site failed;
  err::Site refused;
  std::int32_t value;
};
constexpr Check kUnjoin{{kSource, " - JoinWorkgroup error (unjoining domain)", 301},
                        {kSource, " - JoinWorkgroup error (unjoining domain)", 305},
                        0};
constexpr Check kJoinWorkgroup{
    {kSource, " - JoinWorkgroup error", 318}, {kSource, " - JoinWorkgroup error", 322}, 0};
constexpr Check kJoinDomain{
    {kSource, " - JoinDomainAndOu error", 371}, {kSource, " - JoinDomainAndOu error", 375}, 2};
constexpr err::Site kNotBound{kSource, "Unable to bind to destination OU", 468};
constexpr err::Site kNotMoved{kSource, "Unable to locate computer at source OU", 472};
constexpr std::int32_t kMoveValue = 1;

constexpr std::uint32_t kOptionJoinDomain = 0x01;
constexpr std::uint32_t kOptionCreateAccount = 0x02;
constexpr std::uint32_t kOptionJoinIfJoined = 0x20;
constexpr std::uint32_t kOptionDeferSpn = 0x100;

constexpr std::int32_t kDone = 0;
constexpr std::int32_t kDoneAfterRestart = 1;

/// True when the method is done after a restart only.
bool CheckResult(std::int32_t result, const Check& check) {
  if (result == kDone || result == kDoneAfterRestart) return result == kDoneAfterRestart;
  throw DomainError{platform::Failed(result) ? check.failed : check.refused, check.value,
                    static_cast<std::uint32_t>(result)};
}

platform::IDirectory& Directory() { return platform::Current().Directory(); }

/// The pieces of `path`, each after `attribute`.
std::vector<std::string> NameParts(std::string_view path, std::string_view separator,
                                   std::string_view attribute) {
  std::vector<std::string> parts = base::Split(path, separator);
  for (std::string& part : parts) part.insert(0, attribute);
  return parts;
}

/// "DC=corp,DC=local" for "corp.local".
std::string DomainDn(std::string_view domain) {
  if (domain.find("DC=") != std::string_view::npos) return std::string(domain);
  return base::Join(NameParts(domain, ".", "DC="), ",");
}

/// "OU=Europe,OU=Sales" for "Sales/Europe".
std::string OuDn(std::string_view path) {
  std::vector<std::string> parts = NameParts(path, "/", "OU=");
  std::reverse(parts.begin(), parts.end());
  return base::Join(parts, ",");
}

/// "LDAP://" and the parts that are present, with commas between them.
std::string LdapPath(std::vector<std::string> parts) {
  std::erase(parts, "");
  return "LDAP://" + base::Join(parts, ",");
}

std::string DefaultContainer(const std::string& ou) { return ou.empty() ? "CN=Computers" : ""; }

/// Binds and moves within one apartment. Throws DomainError.
void MoveObject(const std::string& source, const std::string& destination,
                const std::string& account, const std::string& password) {
  Directory().EnterApartment();
  const util::Finally leave([] { Directory().LeaveApartment(); });
  std::unique_ptr<platform::IDirectoryContainer> container;
  const platform::HResult bound =
      Directory().BindContainer(destination, account, password, &container);
  if (platform::Failed(bound) || container == nullptr) {
    throw DomainError{kNotBound, kMoveValue, static_cast<std::uint32_t>(bound)};
  }
  const platform::HResult moved = container->MoveHere(source);
  if (platform::Failed(moved)) {
    throw DomainError{kNotMoved, kMoveValue, static_cast<std::uint32_t>(moved)};
  }
}

}  // namespace

std::string BuildDn(std::string_view domain, std::string_view ou) {
  std::string dn;
  if (!ou.empty()) {
    const bool isDn = ou.find("OU=") != std::string_view::npos;
    if (isDn && ou.find("DC=") != std::string_view::npos) return std::string(ou);
    dn = isDn ? std::string(ou) : OuDn(ou);
  }
  if (!dn.empty() && !domain.empty()) dn += ",";
  return dn + DomainDn(domain);
}

std::string DnToOuPath(std::string_view dn) {
  constexpr std::string_view kOu = "OU=";
  std::string path;
  for (std::size_t at = dn.find(kOu); at != std::string_view::npos; at = dn.find(kOu, at)) {
    at += kOu.size();
    const std::string_view name = dn.substr(at, dn.find(',', at) - at);
    path.insert(0, path.empty() ? std::string(name) : std::string(name) + "/");
  }
  return path;
}

Domain& Domain::Instance() {
  static Domain domain;
  return domain;
}

void Domain::SetCredentials(const std::string& account, const std::string& password) {
  std::size_t start = account.find('\\');
  if (start == std::string::npos) start = account.find('/');
  user_ = start == std::string::npos ? account : account.substr(start + 1);
  user_.resize(std::min(user_.find('@'), user_.size()));
  password_ = password;
}

void Domain::ForgetCredentials() noexcept {
  util::Wipe(user_);
  util::Wipe(password_);
}

Domain& Domain::Refreshed() {
  platform::PolicyHandle policy{};
  const platform::NtStatus status = Directory().OpenPolicy(&policy);
  if (platform::Failed(status)) {
    throw DomainError{kPolicyRefused, /*value=*/0, Directory().StatusToError(status)};
  }
  bool leftOpen = false;
  const util::Finally close([&] {
    if (!leftOpen) Directory().ClosePolicy(policy);
  });
  bool hasSid = false;
  std::string name;
  if (!platform::Failed(Directory().QueryPrimaryDomain(policy, &hasSid, &name))) {
    isMember_ = hasSid;
    if (isMember_) domainName_ = name;
  }
  std::string dnsName;
  if (!platform::Failed(Directory().QueryDnsDomain(policy, &dnsName)) && !dnsName.empty()) {
    isMember_ = true;
    dnsDomainName_ = dnsName;
  }
  if (isMember_) {
    workgroup_.clear();  // a workgroup that was left must not be taken for the current one
  } else {
    // Nor must a domain that was left.
    domainName_.clear();
    dnsDomainName_.clear();
    // Deliberate: the policy stays open when the workstation service returns nothing.
    leftOpen = !Directory().LanGroup(&workgroup_);
  }
  return *this;
}

std::string Domain::AccountName(const std::string& domain) const {
  return domain.empty() ? user_ : domain + "\\" + user_;
}

const std::string& Domain::CurrentDomain() const {
  return dnsDomainName_.empty() ? domainName_ : dnsDomainName_;
}

bool Domain::IsDomainMember() { return Refreshed().isMember_; }

std::string Domain::GetDnsDomainName() { return Refreshed().dnsDomainName_; }

std::string Domain::GetDomainName() { return Refreshed().domainName_; }

std::string Domain::GetWorkgroup() { return Refreshed().workgroup_; }

std::string Domain::GetOu(bool asDn) {
  if (!IsDomainMember()) return ou_;
  ou_.clear();
  std::uint32_t length = 0;
  Directory().ComputerObjectName(nullptr, &length);
  std::string dn;
  if (length != 0) {
    std::vector<char> buffer(std::size_t{length} + 1, '\0');
    if (!Directory().ComputerObjectName(buffer.data(), &length)) {
      throw DomainError{kNoObjectName, /*value=*/0, util::LastError()};
    }
    dn = buffer.data();
  }
  ou_ = DnToOuPath(dn);
  if (asDn) ou_ = BuildDn("", ou_);
  return ou_;
}

bool Domain::JoinWorkgroup(const std::string& workgroup) {
  if (IsDomainMember()) {
    const std::string account = user_.empty() ? "" : AccountName(CurrentDomain());
    CheckResult(Wmi::UnjoinDomainOrWorkgroup(password_, account, /*options=*/0), kUnjoin);
  }
  return CheckResult(
      Wmi::JoinDomainOrWorkgroup(workgroup, password_, user_, /*accountOu=*/"", /*options=*/0),
      kJoinWorkgroup);
}

bool Domain::JoinDomainAndOu(const std::string& domain, const std::string& ou, bool deferSpn) {
  const std::string accountOu = ou.empty() ? "" : BuildDn(domain, ou);
  const std::string account = AccountName(domain);
  const std::uint32_t options = kOptionJoinDomain | (IsDomainMember() ? kOptionJoinIfJoined : 0) |
                                (deferSpn ? kOptionDeferSpn : 0);
  const auto join = [&](std::uint32_t joinOptions) {
    return CheckResult(
        Wmi::JoinDomainOrWorkgroup(domain, password_, account, accountOu, joinOptions),
        kJoinDomain);
  };
  try {
    return join(options);
  } catch (const DomainError&) {
    // Deliberate: an account is created only when there is none to join with.
    return join(options | kOptionCreateAccount);
  }
}

bool Domain::MoveOu(const std::string& targetOu) {
  if (!IsDomainMember()) return false;
  const std::string sourceOu = GetOu(/*asDn=*/true);
  std::string computerName;
  Wmi::GetComputerName(&computerName);
  const std::string source =
      LdapPath({computerName.empty() ? "" : "CN=" + computerName, DefaultContainer(sourceOu),
                BuildDn(dnsDomainName_, sourceOu)});
  const std::string destination =
      LdapPath({DefaultContainer(targetOu), BuildDn(dnsDomainName_, targetOu)});
  MoveObject(source, destination, AccountName(CurrentDomain()), password_);
  return true;
}

}  // namespace sys
