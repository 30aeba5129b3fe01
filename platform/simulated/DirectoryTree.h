// Looking things up in a simulated domain: its containers, computers and accounts. Names are
// compared without regard to case, passwords exactly.
#pragma once

#include <optional>
#include <string>

#include "platform/simulated/Machine.h"

namespace simulated {

/// The domain with this DNS or flat name; null when the directory has none.
DirectoryDomain* FindDomain(Machine& machine, const std::string& name);
/// The domain that an object with this distinguished name belongs to; null when there is none.
DirectoryDomain* FindDomainOf(Machine& machine, const std::string& dn);
/// The distinguished name of the domain itself: "DC=corp,DC=example".
std::string DomainDn(const DirectoryDomain& domain);
/// A container of the domain in the directory's own spelling: an organizational unit, the domain
/// itself or its "CN=Computers".
std::optional<std::string> FindContainer(const DirectoryDomain& domain, const std::string& dn);
/// The account of a computer by its name or distinguished name; null when it has none.
Computer* FindComputer(DirectoryDomain& domain, const std::string& nameOrDn);
/// True when the domain knows the user with this password. `user` may be qualified with the
/// domain's name and a backslash.
bool IsAccount(const DirectoryDomain& domain, const std::string& user, const std::string& password);
/// The same, and true for a password that the machine assumes.
bool MayUse(Machine& machine, const DirectoryDomain& domain, const std::string& user,
            const std::string& password);

}  // namespace simulated
