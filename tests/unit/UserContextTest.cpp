// What is taken for a run as another user is given back, whichever step fails.
#include <cstdarg>
#include <functional>
#include <string>
#include <vector>

#include "common/sys/Dacl.h"
#include "common/sys/ExecuteAsUser.h"
#include "common/sys/Impersonation.h"
#include "common/sys/ImpersonationError.h"
#include "common/sys/SecurityDescriptor.h"
#include "common/sys/Sid.h"
#include "common/sys/UserProfile.h"
#include "common/util/Format.h"
#include "tests/support/JsonText.h"
#include "tests/support/MachineTest.h"

namespace {

using platform::Profile;
using platform::Token;
using platform::UserObject;
using Texts = std::vector<std::string>;

constexpr std::uint64_t kUser = 7;
constexpr UserObject kDesktop{20};
constexpr UserObject kStation{30};
constexpr UserObject kOldStation{31};

class LogLines final : public logging::ILogSink {
 public:
  void Log(std::uint32_t level, const char* format, ...) override {
    std::va_list arguments;
    va_start(arguments, format);
    lines.push_back(std::to_string(level) + ' ' + util::FormatArguments(format, arguments));
    va_end(arguments);
  }

  Texts lines;
};

class UserContextTest : public support::MachineTest {
 protected:
  UserContextTest() {
    machine_.userObjects = {{20, {1, kUser, 2, kUser}}, {30, {kUser, 3}}, {31, {4}}};
  }

  /// A context that took everything.
  sys::UserContext Everything() const {
    return {Token{kUser}, true, Profile{50}, kDesktop, kStation, kOldStation};
  }

  /// What the operation throws, with "|" for what leads in each operation that it left.
  static std::string Thrown(const std::function<void()>& operation) {
    const auto spelled = [](std::string text) {
      constexpr std::string_view kLead = "\n\tre-throw at ";
      for (auto at = text.find(kLead); at != text.npos; at = text.find(kLead)) {
        text.replace(at, kLead.size(), "|");
      }
      return text;
    };
    try {
      operation();
      return "nothing";
    } catch (const sys::CImpersonationError& error) {
      EXPECT_EQ(error.SystemError, 5U);
      EXPECT_TRUE(std::string(error.Text()).starts_with(error.message));
      return spelled(error.Text());
    } catch (const sys::CImpersonationError* error) {
      EXPECT_EQ(error->SystemError, 8U);
      return spelled(std::string("pointer to ") + error->Text());
    } catch (std::int32_t number) {
      return "number " + std::to_string(number);
    }
  }

  LogLines log_;
};

TEST_F(UserContextTest, EverythingIsGivenBackInOrder) {
  { const sys::CImpersonation user(log_, Everything()); }
  EXPECT_EQ(support::JsonTexts(machine_.journal),
            (Texts{R"({"call":"security.revert","handle":0})",
                   R"({"call":"security.unload_profile","handle":50})",
                   R"({"call":"security.set_station","handle":31})",
                   R"({"call":"security.set_object","handle":20})",
                   R"({"call":"security.close","handle":20})",
                   R"({"call":"security.set_object","handle":30})",
                   R"({"call":"security.close","handle":30})",
                   R"({"call":"security.close","handle":7})"}));
  EXPECT_EQ(machine_.userObjects,
            (decltype(machine_.userObjects){{20, {1, 2}}, {30, {3}}, {31, {4}}}));
  EXPECT_EQ(log_.lines, Texts(3, R"(2 common\sys\DACL:125 CDACL::CopyACL(): Removing a sid!)"));
}

TEST_F(UserContextTest, WhatIsGivenBackByHandIsNotGivenBackAgain) {
  {
    sys::CImpersonation user(log_, Everything());
    user.Revert();
    user.UnloadUserProfile();
    EXPECT_TRUE(user.RestoreDesktopAndRights());
    EXPECT_EQ(machine_.journal.size(), 7U);
    user.Revert();
    user.UnloadUserProfile();
    EXPECT_TRUE(user.RestoreDesktopAndRights());
  }
  EXPECT_EQ(machine_.journal.size(), 8U) << "only the token was left";
}

TEST_F(UserContextTest, ARunThatIsNotDoneAsksNothingOfTheMachine) {
  { const sys::CExecuteAsUser user(log_); }
  EXPECT_EQ(platform_.CallCount(), 0U);
}

TEST_F(UserContextTest, AnObjectThatLetsEveryoneInStaysSo) {
  machine_.userObjects.clear();
  sys::CImpersonation user(log_, Everything());
  EXPECT_TRUE(user.RestoreDesktopAndRights());
  EXPECT_TRUE(machine_.userObjects.empty());
}

TEST_F(UserContextTest, AListThatCannotBeCopiedLeavesTheRights) {
  constexpr struct {
    const char *call, *line;
  } kCases[] = {
      {"security.get_entry", R"(0 common\sys\DACL:117 CDACL::CopyACL(): Cannot get ace from acl!)"},
      {"security.add_entry", R"(0 common\sys\DACL:132 CDACL::CopyACL(): Cannot add ace to acl!)"}};
  using User = sys::CImpersonation;
  for (const auto& c : kCases) {
    for (const auto restore : {&User::RestoreDesktopRights, &User::RestoreWinstaRights}) {
      const auto before = machine_.userObjects;
      FailCall(c.call, 1);
      User user(log_, Everything());
      EXPECT_FALSE((user.*restore)());
      EXPECT_EQ(log_.lines.back(), c.line);
      EXPECT_EQ(machine_.userObjects, before);
      EXPECT_TRUE((user.*restore)()) << "it can be tried again";
      machine_.userObjects = before;
    }
  }
}

// Every error names its reason and the operations that it left; what failed can be tried again.
TEST_F(UserContextTest, EveryErrorTellsItsWayOut) {
  const std::string noMemory = "pointer to Unable to allocate memory";
  const std::string token = "Unexpected return value from GetTokenInformation";
  const std::string sid = "|CSID::CSID( HANDLE hToken )";
  const std::string object = "|CSecurityDescriptor::CSecurityDescriptor(HANDLE hObject)";
  const std::string size = "Unable to get acl size info|CDACL::GetAclSizeInfo";
  const std::string list = "|CDACL::CDACL( PACL pacl )";
  const std::string dacl =
      "Unable to get the DACL from the descriptor|CSecurityDescriptor::GetDACL";
  const std::string create = "|CSecurityDescriptor::Create";
  using User = sys::CImpersonation;
  const struct {
    const char* call;
    std::uint32_t nth;
    std::string text;
    std::function<void(User&)> operation = nullptr;  // none: the desktop's rights are restored
  } kCases[] = {
      {"token_user", 1, token + sid},
      {"token_user", 2, token + sid},
      {"allocate", 1, noMemory + sid},
      {"allocate", 2, noMemory + "|CSID::SetSID" + sid},
      {"copy_sid", 1, "Unable to copy new SID|CSID::SetSID" + sid},
      {"get_object", 1, "Unable to get size from GetUserObjectSecurity" + object},
      {"allocate", 3, noMemory + object},
      {"get_object", 2, "Unable to get info from GetUserObjectSecurity" + object},
      {"get_list", 1, dacl},
      {"acl_size", 1, size + list},
      {"allocate", 4, noMemory + "|CDACL::Create" + list},
      {"init_acl", 1, "Unable to initialize acl|CDACL::Create" + list},
      {"acl_size", 2, size + "|CDACL::CopyACL"},
      {"allocate", 5, noMemory + create},
      {"init_descriptor", 1, "Unable to initialize the security descriptor" + create},
      {"set_list", 1, "Unable to set descriptor dacl|CSecurityDescriptor::SetDACL"},
      {"set_object", 1, "Unable to set object security|CSecurityDescriptor::SetUserObjectSecurity"},
      {"revert", 1, "Unable to revert to self|CImpersonation::Revert", &User::Revert},
      {"unload_profile", 1,
       "Unable to call UnloadUserProfile|CUserProfile::Unload|CImpersonation::UnloadUserProfile",
       &User::UnloadUserProfile},
      {"get_list", 1, dacl + "|CImpersonation::RestoreWinstaRights", &User::RestoreWinstaRights},
      {"set_station", 1,
       "Unable to restore old window station|CImpersonation::RestoreDesktopAndRights",
       &User::RestoreDesktopAndRights},
      {"valid_descriptor", 1, "number 1338",
       [](User&) { sys::CSecurityDescriptor(kDesktop).Size(); }},
  };
  const auto before = machine_.userObjects;
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.call + std::to_string(c.nth));
    machine_.userObjects = before;
    FailCall(std::string("security.") + c.call, c.nth);
    User user(log_, Everything());
    const auto operate = [&] {
      c.operation ? c.operation(user) : void(user.RestoreDesktopRights());
    };
    EXPECT_EQ(Thrown(operate),
              c.text + (c.operation ? "" : "|CImpersonation::RestoreDesktopRights"));
    EXPECT_EQ(platform_.InUse(), simulated::Usage{});
    EXPECT_TRUE(c.operation || machine_.userObjects == before);
    EXPECT_EQ(Thrown(operate), "nothing") << "it can be tried again";
  }
}

TEST_F(UserContextTest, NoFailureStopsTheOthersFromBeingGivenBack) {
  const auto taken = machine_.userObjects;
  for (std::uint32_t nth = 1;; ++nth) {
    SCOPED_TRACE(nth);
    machine_.userObjects = taken;
    machine_.journal.clear();
    machine_.faults.clear();
    machine_.FailCall(nth, 5);
    const std::uint32_t before = platform_.CallCount();
    { const sys::CImpersonation user(log_, Everything()); }
    EXPECT_EQ(platform_.InUse(), simulated::Usage{});
    int closed = 0;
    for (const auto& change : machine_.journal) closed += change.call == "security.close";
    EXPECT_EQ(closed, 3);
    // One failed call costs one object its restoration at most, and nobody else's right ever.
    const auto& desktop = machine_.userObjects.at(20);
    const auto& station = machine_.userObjects.at(30);
    const bool desktopDone = desktop == std::vector<std::uint64_t>{1, 2};
    const bool stationDone = station == std::vector<std::uint64_t>{3};
    EXPECT_TRUE(desktopDone || desktop == taken.at(20));
    EXPECT_TRUE(stationDone || station == taken.at(30));
    EXPECT_TRUE(desktopDone || stationDone);
    if (platform_.CallCount() - before < nth) break;
  }
}

TEST_F(UserContextTest, AFailedReplacementKeepsTheSid) {
  sys::CSID user(Token{kUser});
  const sys::CSID other(Token{8});
  FailCall("security.copy_sid", 1);
  EXPECT_NE(Thrown([&] { user.SetSID(other.Get()); }), "nothing");
  EXPECT_TRUE(platform_.Security().SameSid(user.Get(), sys::CSID(Token{kUser}).Get()));
  user.SetSID(other.Get());
  EXPECT_TRUE(platform_.Security().SameSid(user.Get(), other.Get()));
}

// ---- The error record ---------------------------------------------------------------------------

TEST(ImpersonationErrorTest, IsARecordOfTheFamilyBehindItsVirtualTable) {
  constexpr err::Site kSite{"file", "message", 12};
  const sys::CImpersonationError error(kSite, 5);
  const err::CGeneralError& record = error;
  EXPECT_EQ(reinterpret_cast<const char*>(&record) - reinterpret_cast<const char*>(&error),
            static_cast<std::ptrdiff_t>(sizeof(void*)));
}

TEST(ImpersonationErrorTest, ATextThatIsFullStaysWhole) {
  constexpr err::Site kSite{"file", "message", 12};
  sys::CImpersonationError error(kSite, 5);
  for (int i = 0; i < 50; ++i) error.AppendRethrow("CSome::Operation");
  const sys::CImpersonationError copy = error;
  const std::string text = copy.Text();
  EXPECT_TRUE(text.starts_with("message\n\tre-throw at CSome::Operation\n\tre-throw at CSome"));
  EXPECT_LT(text.size(), sizeof copy);
  EXPECT_STREQ(copy.message, "message");
}

}  // namespace
