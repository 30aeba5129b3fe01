#include <algorithm>
#include <string>
#include <string_view>

#include "base/LetterCase.h"
#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

// ---- What belongs together ----------------------------------------------------------------------

void CheckMembership(const DesiredState& desired, Findings& findings) {
  const PlacedEntry* const workgroup = desired.identity.Find(Key::kWorkgroup);
  const PlacedEntry* domain = desired.identity.Find(Key::kDomain);
  const PlacedEntry* const dnsDomain = desired.identity.Find(Key::kDnsDomain);
  if (workgroup == nullptr) {
    if (domain == nullptr) domain = dnsDomain;
    if (domain == nullptr) return;
    findings.AtValue(Code::kDomainNotJoined, *domain,
                     "without \"Workgroup\" " + std::string(domain->key) + " joins nothing");
  } else if (desired.identity.membership == Identity::Membership::kUnchanged) {
    findings.AtValue(Code::kNamelessWorkgroup, *workgroup,
                     "Workgroup is True, but \"Domain\" does not name the workgroup",
                     dnsDomain != nullptr
                         ? "write Workgroup=False to join the domain, or name the workgroup"
                         : "");
  } else if (IsTrue(workgroup->FirstLine()) && dnsDomain != nullptr) {
    findings.AtValue(Code::kDnsDomainInWorkgroup, *dnsDomain,
                     "a workgroup is joined: " + std::string(dnsDomain->key) + " is ignored");
  } else if (desired.identity.membershipName == nullptr) {
    // What is no flag is a finding of its own.
    if (!IsFalse(workgroup->FirstLine())) return;
    findings.AtValue(Code::kDefaultWorkgroup, *workgroup,
                     "neither DNSDomain nor Domain is given: the workgroup WORKGROUP is joined");
  } else if (desired.identity.IsDomain() && domain != nullptr &&
             domain != desired.identity.membershipName) {
    // A name without dots is the same domain's short one.
    const std::string_view name = domain->FirstLine();
    const std::string_view joined = desired.identity.membershipName->FirstLine();
    if (name.find('.') == std::string_view::npos || base::SameText(name, joined)) return;
    findings.AtValue(Code::kDomainTwice, *domain,
                     Quoted(name) + " is not joined: DNSDomain names " + Quoted(joined));
  }
}

void CheckWorkgroupName(const DesiredState& desired, Findings& findings) {
  const PlacedEntry* const computer = desired.identity.Find(Key::kComputerName);
  const PlacedEntry* const workgroup = desired.identity.membershipName;
  if (computer == nullptr || workgroup == nullptr) return;
  if (!desired.identity.IsWorkgroup()) return;
  if (!base::SameText(computer->FirstLine(), workgroup->FirstLine())) return;
  findings.AtValue(Code::kNameTwice, *computer,
                   Quoted(computer->FirstLine()) + " is also the name of the workgroup");
}

void CheckAccount(const DesiredState& desired, Findings& findings) {
  const PlacedEntry* const user = desired.identity.Find(Key::kDomainUsername);
  const PlacedEntry* const password = desired.identity.Find(Key::kDomainPassword);
  if ((user == nullptr) == (password == nullptr)) return;
  const bool isUser = user != nullptr;
  const std::string missing(NameOf(isUser ? Key::kDomainPassword : Key::kDomainUsername));
  const auto isMisspelled = [&missing](const PlacedEntry& entry) {
    return !entry.known && NearestKey(SectionKind::kNetworking, entry.key) == missing;
  };
  // That is a finding of its own.
  const auto& entries = desired.identity.section.entries;
  if (std::any_of(entries.begin(), entries.end(), isMisspelled)) return;
  findings.AtKey(Code::kHalfAccount, isUser ? *user : *password, missing + " is not given");
}

// ---- Traps --------------------------------------------------------------------------------------

void CheckRestart(const DesiredState& desired, Findings& findings) {
  if (!desired.suppressesRestart) return;
  const Identity& identity = desired.identity;
  const bool joins = identity.joinsDomain;
  if (!identity.renames && !joins && !identity.leavesDomain) return;
  const Section& global = desired.document.SectionOf(SectionKind::kGlobal);
  const PlacedEntry& cause = *global.Find(Key::kRebootAfterConfig);
  if (identity.renames && joins && !identity.joinFirst) {
    findings.AtValue(
        Code::kStrandedJoin, cause,
        "the run stops for the restart between the new name and the join, and then ends: "
        "the domain is never joined");
  } else {
    findings.AtValue(Code::kSuppressedRestart, cause,
                     std::string(identity.renames ? "the new name"
                                 : joins          ? "the join"
                                                  : "leaving the domain") +
                         " needs a restart: without it the run ends as a failure");
  }
}

void CheckCredentials(const DesiredState& desired, Findings& findings) {
  const PlacedEntry* const user = desired.identity.Find(Key::kDomainUsername);
  const bool hasOu = desired.identity.Find(Key::kOrganizationalUnit) != nullptr;
  if (user == nullptr) {
    const Identity& identity = desired.identity;
    if (!identity.joinsDomain || identity.Find(Key::kDomainPassword) != nullptr) return;
    findings.AtValue(desired.isOfMachine ? Code::kJoinNeedsAccount : Code::kJoinWithoutAccount,
                     *identity.membershipName,
                     desired.isOfMachine
                         ? "the machine has to join the domain, but no account is given: error 1326"
                         : "no account is given for the join");
    return;
  }
  if (desired.identity.IsDomain() && !hasOu) {
    findings.AtKey(Code::kLostCredentials, *user,
                   "without DSOrganizationalUnit the account does not reach the join");
    return;
  }
  const bool reachesOu = hasOu && !desired.identity.IsWorkgroup();
  if (reachesOu || desired.identity.Find(Key::kComputerName) != nullptr) return;
  findings.AtKey(Code::kIdleCredentials, *user, "nothing in this file uses the account");
}

void CheckOrganizationalUnit(const DesiredState& desired, Findings& findings) {
  const PlacedEntry* const ou = desired.identity.Find(Key::kOrganizationalUnit);
  if (ou == nullptr) return;
  const bool hasAccount = desired.identity.Find(Key::kDomainUsername) != nullptr;
  if (desired.identity.IsWorkgroup()) {
    findings.AtValue(Code::kOuInWorkgroup, *ou, "a workgroup is joined: the unit is ignored");
  } else if (desired.identity.movesAccount && !hasAccount) {
    const bool fails = desired.identity.isMoveKnown;
    findings.AtValue(fails ? Code::kJoinNeedsAccount : Code::kMoveWithoutAccount, *ou,
                     "no account is given for the move", KindOf(Code::kMoveWithoutAccount).hint);
  }
}

void CheckJoinOrder(const DesiredState& desired, Findings& findings) {
  if (!desired.identity.joinFirst) return;
  if (desired.identity.IsDomain() && desired.identity.Find(Key::kComputerName) != nullptr) return;
  findings.AtValue(Code::kIdleJoinOrder, *desired.identity.Find(Key::kJoinDomainBeforeNameChange),
                   "there is no join and rename to order");
}

}  // namespace

void CheckIdentity(const DesiredState& desired, Findings& findings) {
  for (const auto rule : {CheckMembership, CheckWorkgroupName, CheckAccount, CheckRestart,
                          CheckCredentials, CheckOrganizationalUnit, CheckJoinOrder}) {
    rule(desired, findings);
  }
}

}  // namespace tool::check
