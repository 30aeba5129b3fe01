// Domain membership of the simulated computer, and the directory of the domains it can reach.
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>

#include "base/LetterCase.h"
#include "platform/IDirectory.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/DirectoryTree.h"
#include "platform/simulated/Ports.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

using platform::HResult;
using platform::NtStatus;
using platform::PolicyHandle;
using platform::Win32Error;

constexpr std::string_view kScheme = "LDAP://";
constexpr std::uint32_t kWrappedError = 0xC0070000;
constexpr NtStatus kStatusInvalidHandle = Com(0xC0000008);

/// A fault's answer as a status: error numbers travel wrapped, as the system wraps them itself.
NtStatus ToStatus(const Fault& fault) {
  if (fault.hresult) return *fault.hresult;
  const Win32Error error = ToWin32Error(fault);
  return error == 0 ? 0 : static_cast<NtStatus>(kWrappedError | (error & 0xFFFFU));
}

std::string WithoutScheme(const std::string& path) {
  return base::StartsWith(path, kScheme) ? path.substr(kScheme.size()) : path;
}

class Container final : public platform::IDirectoryContainer {
 public:
  Container(Simulation& simulation, std::string path)
      : simulation_(simulation), live_(simulation.usage), path_(std::move(path)) {}

  HResult MoveHere(const std::string& sourcePath) override {
    const std::string paths = sourcePath + "\n" + path_;
    const auto refused = simulation_.RefuseCom({.name = "directory.move", .text = paths});
    const HResult result = refused ? *refused : Move(WithoutScheme(sourcePath));
    Change& change = simulation_.machine.journal.emplace_back(
        Change{"directory.move", Fields{{"source", sourcePath}, {"destination", path_}}});
    if (platform::Failed(result)) change.fields.emplace_back("hresult", HResultText(result));
    return result;
  }

 private:
  HResult Move(const std::string& dn) {
    const std::string target = WithoutScheme(path_);
    DirectoryDomain* domain = FindDomainOf(simulation_.machine, target);
    Computer* computer = domain == nullptr ? nullptr : FindComputer(*domain, dn);
    const auto container = domain == nullptr ? std::nullopt : FindContainer(*domain, target);
    if (computer == nullptr || !container) return kDirectoryNoSuchObject;
    const std::string moved = computer->dn.substr(0, computer->dn.find(',')) + "," + *container;
    const Computer* present = FindComputer(*domain, moved);
    if (present != nullptr && present != computer) return kDirectoryObjectExists;
    computer->dn = moved;
    return platform::kOk;
  }

  Simulation& simulation_;
  LiveObject live_;
  std::string path_;
};

class DirectoryPort final : public platform::IDirectory {
 public:
  explicit DirectoryPort(Simulation& simulation) : simulation_(simulation) {}

  platform::NtStatus OpenPolicy(PolicyHandle* policy) override {
    if (const Fault* fault = simulation_.Strike({.name = "lsa.open"})) return ToStatus(*fault);
    policies_.insert(++nextPolicy_);
    ++simulation_.usage.policies;
    *policy = PolicyHandle{nextPolicy_};
    return 0;
  }

  platform::NtStatus QueryPrimaryDomain(PolicyHandle policy, bool* hasSid,
                                        std::string* name) override {
    if (const NtStatus status = Check({.name = "lsa.primary"}, policy)) return status;
    const Membership& membership = simulation_.machine.membership;
    if (const auto* domain = std::get_if<DomainMembership>(&membership)) {
      *hasSid = domain->hasSid;
      *name = domain->flatName;
    } else {
      *hasSid = false;
      *name = std::get<WorkgroupMembership>(membership).name;
    }
    return 0;
  }

  platform::NtStatus QueryDnsDomain(PolicyHandle policy, std::string* dnsName) override {
    if (const NtStatus status = Check({.name = "lsa.dns"}, policy)) return status;
    const auto* domain = std::get_if<DomainMembership>(&simulation_.machine.membership);
    *dnsName = domain == nullptr ? std::string() : domain->dnsName;
    return 0;
  }

  void ClosePolicy(PolicyHandle policy) override {
    simulation_.Strike({.name = "lsa.close"});
    if (policies_.erase(static_cast<std::uint64_t>(policy)) != 0) --simulation_.usage.policies;
  }

  platform::Win32Error StatusToError(NtStatus status) override {
    const auto digits = static_cast<std::uint32_t>(status);
    if ((digits & 0xFFFF0000U) == kWrappedError) return digits & 0xFFFFU;
    switch (digits) {
      case 0:
        return kSuccess;
      case 0xC0000008:
        return kInvalidHandle;
      case 0xC0000022:
        return kAccessDenied;
      default:
        return kNoTextForCode;
    }
  }

  bool LanGroup(std::string* name) override {
    if (simulation_.Fails({.name = "lsa.workgroup"})) return false;
    const Membership& membership = simulation_.machine.membership;
    const auto* domain = std::get_if<DomainMembership>(&membership);
    *name = domain != nullptr ? domain->flatName : std::get<WorkgroupMembership>(membership).name;
    return true;
  }

  bool ComputerObjectName(char* buffer, std::uint32_t* length) override {
    if (simulation_.Fails({.name = "directory.name"})) return false;
    if (std::holds_alternative<WorkgroupMembership>(simulation_.machine.membership)) {
      return simulation_.Fail(kNotDomainMember);
    }
    const Computer* account = simulation_.machine.FindOwnAccount();
    if (account == nullptr) return simulation_.Fail(kNoSuchAccount);
    const auto needed = static_cast<std::uint32_t>(account->dn.size() + 1);
    const std::uint32_t room = std::exchange(*length, needed);
    if (buffer == nullptr) return true;
    if (room < needed) return simulation_.Fail(kBufferTooSmall);
    std::memcpy(buffer, account->dn.c_str(), needed);
    return true;
  }

  platform::HResult EnterApartment() override {
    return simulation_.EnterApartment({.name = "directory.enter"}, ApartmentKind::kSingleThreaded);
  }

  void LeaveApartment() override { simulation_.LeaveApartment({.name = "directory.leave"}); }

  platform::HResult BindContainer(
      const std::string& path, const std::string& account, const std::string& password,
      std::unique_ptr<platform::IDirectoryContainer>* container) override {
    if (const auto failure = simulation_.RefuseCom({.name = "directory.bind", .text = path})) {
      return *failure;
    }
    if (!simulation_.InApartment()) return kNotInApartment;
    const std::string dn = WithoutScheme(path);
    const DirectoryDomain* domain = FindDomainOf(simulation_.machine, dn);
    if (domain == nullptr) return kDirectoryServerDown;
    if (!IsAccount(*domain, account, password)) return FromError(kLogonFailure);
    if (!FindContainer(*domain, dn)) return kDirectoryNoSuchObject;
    *container = std::make_unique<Container>(simulation_, path);
    return platform::kOk;
  }

 private:
  /// Counts a policy call; its failure, or success.
  platform::NtStatus Check(const Call& call, PolicyHandle policy) {
    if (const Fault* fault = simulation_.Strike(call)) return ToStatus(*fault);
    return policies_.contains(static_cast<std::uint64_t>(policy)) ? 0 : kStatusInvalidHandle;
  }

  Simulation& simulation_;
  std::unordered_set<std::uint64_t> policies_;
  std::uint64_t nextPolicy_ = 0;
};

}  // namespace

std::unique_ptr<platform::IDirectory> MakeDirectory(Simulation& simulation) {
  return std::make_unique<DirectoryPort>(simulation);
}

}  // namespace simulated
