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
#include "platform/simulated/SimulatedPlatform.h"
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

class Container final : public ComObject<platform::IDirectoryContainer> {
 public:
  Container(Simulation& simulation, std::string path)
      : ComObject(simulation), path_(std::move(path)) {}

  HResult MoveHere(const std::string& sourcePath) override {
    const auto refused = simulation_.RefuseCom({"directory.move", sourcePath + "\n" + path_});
    const HResult result = refused ? *refused : Move(WithoutScheme(sourcePath));
    Change& change =
        simulation_.Journal("directory.move", {{"source", sourcePath}, {"destination", path_}});
    if (platform::Failed(result)) change.fields.emplace_back("hresult", HResultText(result));
    return result;
  }

 private:
  HResult Move(const std::string& dn) {
    const std::string target = WithoutScheme(path_);
    if (simulation_.machine.AssumesDirectory()) {
      simulation_.machine.assumed = "directory";
      simulation_.machine.assumedContainer = target;
      return platform::kOk;
    }
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

  std::string path_;
};

class DirectoryPort final : public Port<platform::IDirectory> {
 public:
  using Port::Port;

  platform::NtStatus OpenPolicy(PolicyHandle* policy) override {
    if (const Fault* fault = simulation_.Strike({"lsa.open"})) return ToStatus(*fault);
    *policy = *policies_.insert(PolicyHandle{++nextPolicy_}).first;
    ++simulation_.usage.policies;
    return 0;
  }

  platform::NtStatus QueryPrimaryDomain(PolicyHandle policy, bool* hasSid,
                                        std::string* name) override {
    if (const NtStatus status = Check({"lsa.primary"}, policy)) return status;
    const auto* domain = std::get_if<DomainMembership>(&simulation_.machine.membership);
    *hasSid = domain != nullptr && domain->hasSid;
    *name = GroupName();
    return 0;
  }

  platform::NtStatus QueryDnsDomain(PolicyHandle policy, std::string* dnsName) override {
    if (const NtStatus status = Check({"lsa.dns"}, policy)) return status;
    const auto* domain = std::get_if<DomainMembership>(&simulation_.machine.membership);
    *dnsName = domain == nullptr ? std::string() : domain->dnsName;
    return 0;
  }

  void ClosePolicy(PolicyHandle policy) override {
    simulation_.Strike({"lsa.close"});
    if (policies_.erase(policy) != 0) --simulation_.usage.policies;
  }

  platform::Win32Error StatusToError(NtStatus status) override {
    const auto digits = static_cast<std::uint32_t>(status);
    if ((digits & 0xFFFF0000U) == kWrappedError) return digits & 0xFFFFU;
    return digits == 0            ? kSuccess
           : digits == 0xC0000008 ? kInvalidHandle
           : digits == 0xC0000022 ? kAccessDenied
                                  : kNoTextForCode;
  }

  bool LanGroup(std::string* name) override {
    if (simulation_.Fails({"lsa.workgroup"})) return false;
    *name = GroupName();
    return true;
  }

  bool ComputerObjectName(char* buffer, std::uint32_t* length) override {
    if (simulation_.Fails({"directory.name"})) return false;
    if (std::holds_alternative<WorkgroupMembership>(simulation_.machine.membership)) {
      return simulation_.Answer(kNotDomainMember);
    }
    Machine& machine = simulation_.machine;
    const Computer* account = machine.FindOwnAccount();
    if (account == nullptr && !machine.AssumesDirectory()) {
      return simulation_.Answer(kNoSuchAccount);
    }
    const std::string dn = account != nullptr
                               ? account->dn
                               : "CN=" + machine.computerName + "," + machine.assumedContainer;
    const auto needed = static_cast<std::uint32_t>(dn.size() + 1);
    const std::uint32_t room = std::exchange(*length, needed);
    if (buffer == nullptr) return true;
    if (room < needed) return simulation_.Answer(kBufferTooSmall);
    std::memcpy(buffer, dn.c_str(), needed);
    return true;
  }

  platform::HResult EnterApartment() override {
    return simulation_.EnterApartment({"directory.enter"}, ApartmentKind::kSingleThreaded);
  }

  void LeaveApartment() override { simulation_.LeaveApartment({"directory.leave"}); }

  platform::HResult BindContainer(
      const std::string& path, const std::string& account, const std::string& password,
      std::unique_ptr<platform::IDirectoryContainer>* container) override {
    if (const auto failure = simulation_.RefuseCom({"directory.bind", path})) {
      return *failure;
    }
    if (!simulation_.InApartment()) return kNotInApartment;
    Machine& machine = simulation_.machine;
    if (machine.AssumesDirectory()) {
      *container = std::make_unique<Container>(simulation_, path);
      return platform::kOk;
    }
    const std::string dn = WithoutScheme(path);
    const DirectoryDomain* domain = FindDomainOf(simulation_.machine, dn);
    if (domain == nullptr) return kDirectoryServerDown;
    if (!MayUse(machine, *domain, account, password)) return FromError(kLogonFailure);
    if (!FindContainer(*domain, dn)) return kDirectoryNoSuchObject;
    *container = std::make_unique<Container>(simulation_, path);
    return platform::kOk;
  }

 private:
  /// What the computer belongs to.
  std::string GroupName() const {
    const Membership& membership = simulation_.machine.membership;
    const auto* domain = std::get_if<DomainMembership>(&membership);
    return domain != nullptr ? domain->flatName : std::get<WorkgroupMembership>(membership).name;
  }

  /// Counts a policy call; its failure, or success.
  platform::NtStatus Check(const Call& call, PolicyHandle policy) {
    if (const Fault* fault = simulation_.Strike(call)) return ToStatus(*fault);
    return policies_.contains(policy) ? 0 : kStatusInvalidHandle;
  }

  std::unordered_set<PolicyHandle> policies_;
  std::uint64_t nextPolicy_ = 0;
};

}  // namespace

platform::IDirectory& SimulatedPlatform::Directory() { return Made<DirectoryPort>(&directory_); }

}  // namespace simulated
