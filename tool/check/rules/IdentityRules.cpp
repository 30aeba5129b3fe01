#include <algorithm>
#include <string>
#include <string_view>

#include "common/util/Text.h"
#include "platform/simulated/Text.h"
#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

using Membership = Identity::Membership;

/// Section "Networking" while it is looked at.
struct Subject {
  const Document& document;
  const Wishes& wishes;
  const Section& section;
  Findings& findings;

  const Entry* Find(Key key) const { return section.Find(key); }
  Membership membership() const { return wishes.identity.membership; }
  bool JoinsDomain() const { return membership() == Membership::kDomain; }

  void Add(Code code, const Entry& entry, const std::string& message) const {
    findings.Add(code, document, document.ValueSpan(entry), message);
  }
};

// ---- What belongs together ----------------------------------------------------------------------

void CheckMembership(const Subject& subject) {
  const Entry* const workgroup = subject.Find(Key::kWorkgroup);
  const Entry* domain = subject.Find(Key::kDomain);
  if (workgroup == nullptr) {
    if (domain == nullptr) domain = subject.Find(Key::kDnsDomain);
    if (domain == nullptr) return;
    subject.Add(Code::kDomainNotJoined, *domain,
                "without \"Workgroup\" " + std::string(domain->key) + " joins nothing");
  } else if (subject.membership() == Membership::kUnchanged) {
    subject.Add(Code::kNamelessWorkgroup, *workgroup,
                "Workgroup is True, but \"Domain\" does not name the workgroup");
  } else if (subject.wishes.identity.membershipName == nullptr) {
    subject.Add(Code::kDefaultWorkgroup, *workgroup,
                "neither DNSDomain nor Domain is given: the workgroup WORKGROUP is joined");
  } else if (subject.JoinsDomain() && domain != nullptr &&
             domain != subject.wishes.identity.membershipName) {
    // A name without dots is the same domain's short one.
    const std::string_view name = domain->FirstLine();
    const std::string_view joined = subject.wishes.identity.membershipName->FirstLine();
    if (name.find('.') == std::string_view::npos || util::EqualsIgnoringCase(name, joined)) return;
    subject.Add(Code::kDomainTwice, *domain,
                Quoted(name) + " is not joined: DNSDomain names " + Quoted(joined));
  }
}

void CheckNames(const Subject& subject) {
  const Entry* const computer = subject.Find(Key::kComputerName);
  const Entry* const workgroup = subject.wishes.identity.membershipName;
  if (computer == nullptr || workgroup == nullptr) return;
  if (subject.membership() != Membership::kWorkgroup) return;
  if (!util::EqualsIgnoringCase(computer->FirstLine(), workgroup->FirstLine())) return;
  subject.Add(Code::kNameTwice, *computer,
              Quoted(computer->FirstLine()) + " is the name of the workgroup, too");
}

void CheckAccount(const Subject& subject) {
  const Entry* const user = subject.Find(Key::kDomainUsername);
  const Entry* const password = subject.Find(Key::kDomainPassword);
  if ((user == nullptr) == (password == nullptr)) return;
  const bool isUser = user != nullptr;
  const std::string_view missing[] = {NameOf(isUser ? Key::kDomainPassword : Key::kDomainUsername)};
  const auto isMisspelled = [&missing](const Entry& entry) {
    return !entry.known && simulated::Nearest(entry.key, missing);
  };
  // That is a finding of its own.
  const auto& entries = subject.section.entries;
  if (std::any_of(entries.begin(), entries.end(), isMisspelled)) return;
  subject.findings.Add(Code::kHalfAccount, subject.document,
                       subject.document.KeySpan(isUser ? *user : *password),
                       std::string(missing[0]) + " is not given");
}

// ---- Traps --------------------------------------------------------------------------------------

void CheckRestart(const Subject& subject) {
  if (!subject.wishes.suppressesRestart) return;
  const Identity& identity = subject.wishes.identity;
  const bool joins = identity.joinsDomain;
  if (!identity.renames && !joins && !identity.leavesDomain) return;
  const Section& global = *subject.document.FindSection(SectionKind::kGlobal);
  const Entry& cause = *global.Find(Key::kRebootAfterConfig);
  if (identity.renames && joins && !identity.joinFirst) {
    subject.Add(Code::kStrandedJoin, cause,
                "the run stops for the restart between the new name and the join, and then ends: "
                "the domain is never joined");
  } else {
    subject.Add(Code::kSuppressedRestart, cause,
                std::string(identity.renames ? "the new name"
                            : joins          ? "the join"
                                             : "leaving the domain") +
                    " needs a restart: without it the run ends as a failure");
  }
}

void CheckCredentials(const Subject& subject) {
  const Entry* const user = subject.Find(Key::kDomainUsername);
  const bool hasOu = subject.Find(Key::kOrganizationalUnit) != nullptr;
  if (user == nullptr) {
    const Identity& identity = subject.wishes.identity;
    if (!identity.joinsDomain || subject.Find(Key::kDomainPassword) != nullptr) return;
    if (subject.wishes.isOfMachine) {
      subject.Add(Code::kJoinNeedsAccount, *identity.membershipName,
                  "the machine has to join the domain, but no account is given: error 1326");
    } else {
      subject.Add(Code::kJoinWithoutAccount, *identity.membershipName,
                  "no account is given for the join");
    }
    return;
  }
  const Span key = subject.document.KeySpan(*user);
  if (subject.JoinsDomain() && !hasOu) {
    subject.findings.Add(Code::kLostCredentials, subject.document, key,
                         "without DSOrganizationalUnit the account does not reach the join");
    return;
  }
  const bool reachesOu = hasOu && subject.membership() != Membership::kWorkgroup;
  if (reachesOu || subject.Find(Key::kComputerName) != nullptr) return;
  subject.findings.Add(Code::kIdleCredentials, subject.document, key,
                       "nothing in this file uses the account");
}

void CheckOrganizationalUnit(const Subject& subject) {
  const Entry* const ou = subject.Find(Key::kOrganizationalUnit);
  if (ou == nullptr || subject.membership() != Membership::kWorkgroup) return;
  subject.Add(Code::kOuInWorkgroup, *ou, "a workgroup is joined: the unit does not count");
}

void CheckJoinOrder(const Subject& subject) {
  if (!subject.wishes.identity.joinFirst) return;
  if (subject.JoinsDomain() && subject.Find(Key::kComputerName) != nullptr) return;
  subject.Add(Code::kIdleJoinOrder, *subject.Find(Key::kJoinDomainBeforeNameChange),
              "there is no join and new name to order");
}

}  // namespace

void CheckIdentity(const Document& document, const Wishes& wishes, Findings& findings) {
  constexpr void (*kRules[])(const Subject& subject) = {
      CheckMembership,         CheckNames,     CheckAccount, CheckRestart, CheckCredentials,
      CheckOrganizationalUnit, CheckJoinOrder,
  };
  if (wishes.identity.section == nullptr) return;
  for (const auto rule : kRules) rule({document, wishes, *wishes.identity.section, findings});
}

}  // namespace tool::check
