#include "platform/simulated/DirectoryTree.h"

#include <algorithm>

#include "base/FindIn.h"
#include "base/LetterCase.h"

namespace simulated {
namespace {

bool IsNameOf(const DirectoryDomain& domain, std::string_view name) {
  return !name.empty() &&
         (base::SameText(domain.dnsName, name) || base::SameText(domain.flatName, name));
}

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && base::SameText(text.substr(text.size() - end.size()), end);
}

/// A distinguished name without the blanks that may stand around its separators.
std::string Compact(std::string_view dn) {
  std::string compact;
  for (const char letter : dn) {
    const bool separates = letter == ',' || letter == '=';
    while (separates && compact.ends_with(' ')) compact.pop_back();
    const bool follows = compact.empty() || compact.back() == ',' || compact.back() == '=';
    if (letter != ' ' || !follows) compact += letter;
  }
  while (compact.ends_with(' ')) compact.pop_back();
  return compact;
}

bool SameDn(std::string_view left, std::string_view right) {
  return base::SameText(Compact(left), Compact(right));
}

}  // namespace

DirectoryDomain* FindDomain(Machine& machine, const std::string& name) {
  return base::FindIn(machine.domains, [&](const auto& domain) { return IsNameOf(domain, name); });
}

DirectoryDomain* FindDomainOf(Machine& machine, const std::string& dn) {
  const std::string name = "," + Compact(dn);
  return base::FindIn(machine.domains,
                      [&](const auto& domain) { return EndsWith(name, "," + DomainDn(domain)); });
}

std::string DomainDn(const DirectoryDomain& domain) {
  std::string dn = "DC=" + domain.dnsName;
  for (std::size_t dot = dn.find('.'); dot != std::string::npos; dot = dn.find('.')) {
    dn.replace(dot, 1, ",DC=");
  }
  return dn;
}

std::optional<std::string> FindContainer(const DirectoryDomain& domain, const std::string& dn) {
  const std::string root = DomainDn(domain);
  for (const std::string& container : {root, "CN=Computers," + root}) {
    if (SameDn(container, dn)) return container;
  }
  const auto* ou = base::FindIn(domain.ous, [&](const auto& known) { return SameDn(known, dn); });
  return ou != nullptr ? std::optional(*ou) : std::nullopt;
}

Computer* FindComputer(DirectoryDomain& domain, const std::string& nameOrDn) {
  return base::FindIn(domain.computers, [&](const Computer& computer) {
    return base::SameText(computer.name, nameOrDn) || SameDn(computer.dn, nameOrDn);
  });
}

bool IsAccount(const DirectoryDomain& domain, const std::string& user,
               const std::string& password) {
  const std::size_t backslash = user.find('\\');
  if (backslash != std::string::npos && !IsNameOf(domain, user.substr(0, backslash))) return false;
  const std::string bare = backslash == std::string::npos ? user : user.substr(backslash + 1);
  return std::any_of(domain.accounts.begin(), domain.accounts.end(), [&](const Account& account) {
    return base::SameText(account.user, bare) && account.password == password;
  });
}

bool MayUse(Machine& machine, const DirectoryDomain& domain, const std::string& user,
            const std::string& password) {
  if (IsAccount(domain, user, password)) return true;
  if (!machine.AssumesDecrypt() || password != kUnknownText) return false;
  machine.assumed = "decrypt";
  return true;
}

}  // namespace simulated
