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

  /// What the operation throws, spelled with its way out.
  std::string Thrown(const std::function<void()>& operation) {
    try {
      operation();
      return "nothing";
    } catch (const sys::CImpersonationError& error) {
      EXPECT_EQ(error.SystemError, 5U);
      EXPECT_EQ(std::string(error.Text()).find(error.message), 0U);
      return error.Text();
    } catch (const sys::CImpersonationError* error) {
      EXPECT_EQ(error->SystemError, 8U);
      return std::string("pointer to ") + error->Text();
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
  for (const auto& c : kCases) {
    const auto before = machine_.userObjects;
    FailCall(c.call, 1);
    sys::CImpersonation user(log_, Everything());
    EXPECT_FALSE(user.RestoreDesktopRights());
    EXPECT_EQ(log_.lines.back(), c.line);
    EXPECT_EQ(machine_.userObjects, before);
    EXPECT_TRUE(user.RestoreDesktopRights()) << "it can be tried again";
    machine_.userObjects = before;
  }
}

// Every error names its reason and the operations that it left; what failed can be tried again.
TEST_F(UserContextTest, EveryErrorTellsItsWayOut) {
  const std::string desktop = "\n\tre-throw at CImpersonation::RestoreDesktopRights";
  const std::string sid = "\n\tre-throw at CSID::CSID( HANDLE hToken )" + desktop;
  const std::string object =
      "\n\tre-throw at CSecurityDescriptor::CSecurityDescriptor(HANDLE hObject)" + desktop;
  const std::string list = "\n\tre-throw at CDACL::CDACL( PACL pacl )" + desktop;
  const std::string noMemory = "pointer to Unable to allocate memory";
  const struct {
    const char* call;
    std::uint32_t nth;
    std::string text;
  } kCases[] = {
      {"security.token_user", 1, "Unexpected return value from GetTokenInformation" + sid},
      {"security.token_user", 2, "Unexpected return value from GetTokenInformation" + sid},
      {"security.allocate", 1, noMemory + sid},
      {"security.allocate", 2, noMemory + "\n\tre-throw at CSID::SetSID" + sid},
      {"security.copy_sid", 1, "Unable to copy new SID\n\tre-throw at CSID::SetSID" + sid},
      {"security.get_object", 1, "Unable to get size from GetUserObjectSecurity" + object},
      {"security.allocate", 3, noMemory + object},
      {"security.get_object", 2, "Unable to get info from GetUserObjectSecurity" + object},
      {"security.get_list", 1,
       "Unable to get the DACL from the descriptor\n\tre-throw at CSecurityDescriptor::GetDACL" +
           desktop},
      {"security.acl_size", 1,
       "Unable to get acl size info\n\tre-throw at CDACL::GetAclSizeInfo" + list},
      {"security.allocate", 4, noMemory + "\n\tre-throw at CDACL::Create" + list},
      {"security.init_acl", 1, "Unable to initialize acl\n\tre-throw at CDACL::Create" + list},
      {"security.acl_size", 2,
       "Unable to get acl size info\n\tre-throw at CDACL::GetAclSizeInfo"
       "\n\tre-throw at CDACL::CopyACL" +
           desktop},
      {"security.allocate", 5, noMemory + "\n\tre-throw at CSecurityDescriptor::Create" + desktop},
      {"security.init_descriptor", 1,
       "Unable to initialize the security descriptor\n\tre-throw at CSecurityDescriptor::Create" +
           desktop},
      {"security.set_list", 1,
       "Unable to set descriptor dacl\n\tre-throw at CSecurityDescriptor::SetDACL" + desktop},
      {"security.set_object", 1,
       "Unable to set object security\n\tre-throw at CSecurityDescriptor::SetUserObjectSecurity" +
           desktop},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.call + std::to_string(c.nth));
    const auto before = machine_.userObjects;
    FailCall(c.call, c.nth);
    sys::CImpersonation user(log_, Everything());
    EXPECT_EQ(Thrown([&] { user.RestoreDesktopRights(); }), c.text);
    EXPECT_EQ(machine_.userObjects, before);
    EXPECT_EQ(platform_.InUse(), simulated::Usage{});
    EXPECT_TRUE(user.RestoreDesktopRights());
    machine_.userObjects = before;
  }
}

TEST_F(UserContextTest, TheOtherOperationsTellTheirWayOutToo) {
  sys::CImpersonation user(log_, Everything());
  const struct {
    const char *call, *text;
    std::function<void()> operation;
  } kCases[] = {
      {"security.revert", "Unable to revert to self\n\tre-throw at CImpersonation::Revert",
       [&] { user.Revert(); }},
      {"security.unload_profile",
       "Unable to call UnloadUserProfile\n\tre-throw at CUserProfile::Unload"
       "\n\tre-throw at CImpersonation::UnloadUserProfile",
       [&] { user.UnloadUserProfile(); }},
      {"security.get_list",
       "Unable to get the DACL from the descriptor\n\tre-throw at CSecurityDescriptor::GetDACL"
       "\n\tre-throw at CImpersonation::RestoreWinstaRights",
       [&] { user.RestoreWinstaRights(); }},
      {"security.set_station",
       "Unable to restore old window station\n\tre-throw at "
       "CImpersonation::RestoreDesktopAndRights",
       [&] { user.RestoreDesktopAndRights(); }},
      {"security.valid_descriptor", "number 1338",
       [] { sys::CSecurityDescriptor(kDesktop).Size(); }},
  };
  for (const auto& c : kCases) {
    FailCall(c.call, 1);
    EXPECT_EQ(Thrown(c.operation), c.text);
    EXPECT_EQ(Thrown(c.operation), "nothing") << c.call << ": it can be tried again";
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
