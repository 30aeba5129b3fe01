#include "common/sys/Domain.h"
#include "common/sys/Wmi.h"
#include "tests/support/JsonText.h"
#include "tests/support/MachineTest.h"

namespace sys {

namespace {

using Texts = std::vector<std::string>;

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
  void BecomeMember() {
    machine_.membership = simulated::DomainMembership{"corp.example", "CORP", true};
    machine_.domains[0].computers = {{"PC1", "CN=PC1,OU=Europe,OU=Sales,DC=corp,DC=example"}};
  }
  /// User, OU and options of every join and unjoin in the journal.
  Texts Joins() const {
    Texts joins;
    for (const simulated::Change& change : machine_.journal) {
      const simulated::Value& arguments = change["arguments"];
      Texts parts{change["method"].Text().substr(0, 4)};
      for (const auto& [name, value] : std::get<simulated::Fields>(arguments)) {
        if (name != "Name" && name != "FUnjoinOptions") parts.push_back(support::JsonText(value));
      }
      std::string line;
      for (const std::string& part : parts) line += part + " ";
      joins.push_back(line + support::JsonText(change["result"]));
    }
    return joins;
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

TEST_F(DomainTest, TheAccountIsMadeOnlyWhenThereIsNone) {
  domain_.SetCredentials("OTHER\\joiner@corp.example", "s3cret");
  EXPECT_FALSE(domain_.JoinDomainAndOu("corp.example", "Sales", /*deferSpn=*/true));
  const std::string who = R"("corp.example\\joiner" "s3cret" "OU=Sales,DC=corp,DC=example" )";
  EXPECT_EQ(Joins(), (Texts{"Join " + who + "257 1332", "Join " + who + "259 0"}));
  ASSERT_EQ(machine_.domains[0].computers.size(), 1U);
  EXPECT_EQ(machine_.domains[0].computers[0].dn, "CN=PC1,OU=Sales,DC=corp,DC=example");

  machine_.journal.clear();
  domain_.JoinDomainAndOu("corp.example", "", /*deferSpn=*/false);
  EXPECT_EQ(Joins(), Texts{R"(Join "corp.example\\joiner" "s3cret" null 33 0)"});
}

TEST_F(DomainTest, AJoinRefusedTwiceIsAnError) {
  domain_.SetCredentials("joiner", "wrong");
  try {
    domain_.JoinDomainAndOu("corp.example", "", /*deferSpn=*/false);
    FAIL();
  } catch (const DomainError& error) {
    EXPECT_STREQ(error.message, " - JoinDomainAndOu error");
    EXPECT_EQ(error.Value, 2);
    EXPECT_EQ(error.SystemError, 1326U);
  }
  EXPECT_EQ(machine_.journal.size(), 2U);
}

TEST_F(DomainTest, AMemberLeavesItsDomainForAWorkgroup) {
  BecomeMember();
  domain_.SetCredentials("joiner", "s3cret");
  EXPECT_FALSE(domain_.JoinWorkgroup("W"));
  EXPECT_EQ(Joins(), (Texts{R"(Unjo "corp.example\\joiner" "s3cret" 0)",
                            R"(Join "joiner" "s3cret" null 0 0)"}));
  EXPECT_EQ(domain_.GetWorkgroup(), "W");
}

TEST_F(DomainTest, OnlyARefusalIsTriedAgain) {
  BecomeMember();
  domain_.SetCredentials("joiner", "wrong");
  EXPECT_THROW(domain_.JoinDomainAndOu("corp.example", "", /*deferSpn=*/true), DomainError);
  const std::string who = R"(Join "corp.example\\joiner" "wrong" null )";
  EXPECT_EQ(Joins(), (Texts{who + "289 1326", who + "291 1326"}));
  machine_.journal.clear();
  AddFault("wmi.method", static_cast<platform::HResult>(0x80041001));
  EXPECT_THROW(domain_.JoinDomainAndOu("corp.example", "", /*deferSpn=*/false), CWmiError);
  EXPECT_EQ(machine_.journal.size(), 1U);
}

TEST_F(DomainTest, AMemberWhoCannotLeaveStays) {
  BecomeMember();
  simulated::Fault fault;
  fault.call = "wmi.method";
  fault.method = "UnjoinDomainOrWorkgroup";
  fault.result = 2691;
  machine_.faults = {fault};
  try {
    domain_.JoinWorkgroup("W");
    FAIL();
  } catch (const DomainError& error) {
    EXPECT_STREQ(error.message, " - JoinWorkgroup error (unjoining domain)");
    EXPECT_EQ(error.Value, 0);
    EXPECT_EQ(error.SystemError, 2691U);
  }
  EXPECT_EQ(Joins(), Texts{"Unjo null null 2691"});
  machine_.faults[0].result = 1;
  machine_.faults[0].method = "JoinDomainOrWorkgroup";
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

TEST_F(DomainTest, MovingNamesTheObjectAndItsNewPlace) {
  EXPECT_FALSE(domain_.MoveOu("Sales")) << "no member";
  BecomeMember();
  domain_.SetCredentials("joiner", "s3cret");
  EXPECT_TRUE(domain_.MoveOu("Sales"));
  EXPECT_TRUE(domain_.MoveOu(""));
  const std::string name = R"({"call":"directory.move","source":"LDAP://CN=PC1,)";
  EXPECT_EQ(support::JsonTexts(machine_.journal),
            (Texts{name + R"(OU=Europe,OU=Sales,DC=corp,DC=example",)"
                          R"("destination":"LDAP://OU=Sales,DC=corp,DC=example"})",
                   name + R"(OU=Sales,DC=corp,DC=example",)"
                          R"("destination":"LDAP://CN=Computers,DC=corp,DC=example"})"}));
}

TEST_F(DomainTest, RefusalsNameTheirStep) {
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
    try {
      domain_.SetCredentials("joiner", "s3cret");
      domain_.MoveOu("Sales");
      ADD_FAILURE() << "went through";
    } catch (const DomainError& error) {
      EXPECT_STREQ(error.message, c.message);
      EXPECT_EQ(error.Value, c.value);
    }
  }
}

}  // namespace
}  // namespace sys
