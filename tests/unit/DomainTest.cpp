#include "common/sys/Domain.h"
#include "common/sys/Wmi.h"
#include "tests/support/MachineTest.h"

namespace sys {

namespace {

TEST(BuildDn, CombinesOuAndDomain) {
  constexpr struct {
    const char *name, *domain, *ou, *dn;
  } kCases[] = {
      {"path is reversed", "corp.local", "Sales/Europe", "OU=Europe,OU=Sales,DC=corp,DC=local"},
      {"fragment is kept", "corp.local", "OU=X", "OU=X,DC=corp,DC=local"},
      {"full name is kept", "corp.local", "OU=X,DC=a,DC=b", "OU=X,DC=a,DC=b"},
      {"domain is a name already", "DC=a,DC=b", "X", "OU=X,DC=a,DC=b"},
      {"no domain", "", "Sales/Europe", "OU=Europe,OU=Sales"},
      {"no OU", "corp.local", "", "DC=corp,DC=local"},
      {"nothing", "", "", ""},
      {"nothing but separators", "corp.local", "//", "DC=corp,DC=local"},
      {"stray separators", "corp..local.", "/Sales//Europe/",
       "OU=Europe,OU=Sales,DC=corp,DC=local"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(BuildDn(c.domain, c.ou), c.dn);
  }
}

TEST(DnToOuPath, ReadsFromTheTopDownwards) {
  EXPECT_EQ(DnToOuPath("CN=PC1,OU=Europe,OU=Sales,DC=corp,DC=local"), "Sales/Europe");
  EXPECT_EQ(DnToOuPath("CN=PC1,CN=Computers,DC=corp"), "");
  EXPECT_EQ(DnToOuPath("OU=Last"), "Last");
  EXPECT_EQ(DnToOuPath("OU="), "");
}

class DomainTest : public support::MachineTest {
 protected:
  DomainTest() {
    machine_.computerName = "PC1";
    machine_.domains = {{"corp.example",
                         "CORP",
                         {{"joiner", "s3cret"}},
                         {"OU=Sales,DC=corp,DC=example", "OU=Europe,OU=Sales,DC=corp,DC=example"},
                         {}}};
  }
  void BecomeMember() { support::JoinCorp(machine_, "OU=Europe,OU=Sales"); }

  /// Checks what `operation` throws.
  template <class Operation>
  void ExpectRefusal(Operation operation, const char* message, std::int32_t value) {
    try {
      operation();
      ADD_FAILURE() << "went through";
    } catch (const DomainError& error) {
      EXPECT_STREQ(error.message, message);
      EXPECT_EQ(error.Value, value);
    }
  }

  Domain& domain_ = Domain::Instance();
};

TEST_F(DomainTest, MembershipIsReadAfresh) {
  EXPECT_FALSE(domain_.IsDomainMember());
  EXPECT_EQ(domain_.GetWorkgroup(), "WORKGROUP");
  BecomeMember();
  EXPECT_TRUE(domain_.IsDomainMember());
  EXPECT_EQ(domain_.GetDnsDomainName(), "corp.example");
  EXPECT_EQ(domain_.GetDomainName(), "CORP");
  EXPECT_EQ(domain_.GetWorkgroup(), "") << "the workgroup was left";
  EXPECT_EQ(domain_.GetOu(/*asDn=*/false), "Sales/Europe");
  EXPECT_EQ(domain_.GetOu(/*asDn=*/true), "OU=Europe,OU=Sales");
  machine_.membership = simulated::DomainMembership{"", "OLD", true};
  EXPECT_TRUE(domain_.IsDomainMember()) << "a SID is enough";
  machine_.membership = simulated::WorkgroupMembership{"W"};
  EXPECT_EQ(domain_.GetDnsDomainName() + domain_.GetDomainName(), "") << "the domain was left";
}

TEST_F(DomainTest, OnlyARefusalIsTriedAgain) {
  domain_.SetCredentials("OTHER\\joiner@corp.example", "wrong");
  const auto join = [&] { domain_.JoinDomainAndOu("corp.example", "", /*deferSpn=*/true); };
  ExpectRefusal(join, " - JoinDomainAndOu error", 2);
  ASSERT_EQ(machine_.journal.size(), 2U);
  for (const simulated::Change& change : machine_.journal) {
    EXPECT_EQ(change["arguments"]["UserName"].Text(), "corp.example\\joiner");
  }
  machine_.journal.clear();
  AddFault("wmi.method", static_cast<platform::HResult>(0x80041001));
  EXPECT_THROW(join(), CWmiError);
  EXPECT_EQ(machine_.journal.size(), 1U);
}

TEST_F(DomainTest, AMemberWhoCannotLeaveStays) {
  constexpr std::pair<const char*, const char*> kSteps[] = {
      {"UnjoinDomainOrWorkgroup", " - JoinWorkgroup error (unjoining domain)"},
      {"JoinDomainOrWorkgroup", " - JoinWorkgroup error"}};
  simulated::Fault& fault = machine_.faults.emplace_back();
  fault.call = "wmi.method";
  fault.result = 2691;
  for (const auto& [method, message] : kSteps) {
    BecomeMember();
    machine_.journal.clear();
    fault.method = method;
    ExpectRefusal([&] { domain_.JoinWorkgroup("W"); }, message, 0);
    EXPECT_EQ(machine_.journal.back()["method"], method);
  }
  fault.result = 1;
  EXPECT_TRUE(domain_.JoinWorkgroup("W")) << "done after a restart";
}

TEST_F(DomainTest, WhatCannotBeReadStaysAsItWas) {
  BecomeMember();
  EXPECT_TRUE(domain_.IsDomainMember());
  machine_.membership = simulated::WorkgroupMembership{};
  AddFault("lsa.primary", static_cast<platform::HResult>(0xC0000022));
  AddFault("lsa.dns", static_cast<platform::HResult>(0xC0000022));
  EXPECT_TRUE(domain_.IsDomainMember());
  EXPECT_EQ(platform_.InUse(), simulated::Usage{});
  machine_.faults.clear();
  AddFault("lsa.workgroup", static_cast<platform::HResult>(0x80070005));
  EXPECT_FALSE(domain_.IsDomainMember());
  stillInUse_.policies = 1;  // left open on purpose
}

TEST_F(DomainTest, RefusalsNameTheirStep) {
  EXPECT_FALSE(domain_.MoveOu("Sales")) << "no member";
  BecomeMember();
  constexpr struct {
    const char* call;
    std::uint32_t nth;
    const char* message;
    std::int32_t value;
  } kCases[] = {
      {"lsa.open", 1, " - IsDomainMember returned error ", 0},
      {"directory.name", 2, "GetOu() failed calling GetComputerObjectName()", 0},
      {"directory.bind", 1, "Unable to bind to destination OU", 1},
      {"directory.move", 1, "Unable to locate computer at source OU", 1},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.call);
    machine_.faults.clear();
    AddFault(c.call, static_cast<platform::HResult>(0x80070005));
    machine_.faults[0].nth = c.nth;
    domain_.SetCredentials("joiner", "s3cret");
    ExpectRefusal([&] { domain_.MoveOu("Sales"); }, c.message, c.value);
  }
  machine_.faults.clear();
  EXPECT_TRUE(domain_.MoveOu("Sales"));
}

}  // namespace
}  // namespace sys
