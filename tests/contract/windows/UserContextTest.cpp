// The user-context classes on the real machine: its tokens, access lists, window stations and heap.
#include <gtest/gtest.h>

#include <cstring>
#include <iterator>

#include "common/logging/NullLogSink.h"
#include "common/sys/Dacl.h"
#include "common/sys/Impersonation.h"
#include "common/sys/ImpersonationError.h"
#include "common/sys/SecurityDescriptor.h"
#include "common/sys/Sid.h"
#include "platform/IPlatform.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"

namespace platform::windows {
namespace {

/// A token of this process's user; who takes it over closes it.
HANDLE OpenOwnToken() {
  HANDLE token = nullptr;
  EXPECT_TRUE(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token));
  return token;
}

struct WellKnownSid {
  explicit WellKnownSid(WELL_KNOWN_SID_TYPE type) {
    DWORD size = sizeof bytes;
    EXPECT_TRUE(::CreateWellKnownSid(type, nullptr, bytes, &size));
  }
  const Sid* Get() const { return reinterpret_cast<const Sid*>(bytes); }

  alignas(DWORD) unsigned char bytes[SECURITY_MAX_SID_SIZE];
};

class WindowsUserContext : public ::testing::Test {
 protected:
  logging::NullLogSink log;
  KernelHandle token{OpenOwnToken()};
  sys::CSID user{ToSeam<Token>(token.get())};
};

TEST_F(WindowsUserContext, BlocksComeFromTheProcessHeap) {
  void* const block = Default().Security().Allocate(24);
  EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, block), 24u);
  Default().Security().Free(block);
}

TEST_F(WindowsUserContext, TheSidIsTheUsersOwnCopy) {
  alignas(TOKEN_USER) unsigned char buffer[256];
  DWORD size = 0;
  ASSERT_TRUE(::GetTokenInformation(token.get(), ::TokenUser, buffer, sizeof buffer, &size));
  const PSID own = reinterpret_cast<TOKEN_USER*>(buffer)->User.Sid;
  token.reset();
  EXPECT_TRUE(Default().Security().SameSid(user.Get(), static_cast<const Sid*>(own)));
  WellKnownSid everyone(WinWorldSid);
  user.SetSID(everyone.Get());
  EXPECT_TRUE(::EqualSid(const_cast<Sid*>(user.Get()), everyone.bytes));
}

TEST_F(WindowsUserContext, ATokenThatIsNoneHasNoSid) {
  try {
    const sys::CSID none(Token{0x7FFF0});
    ADD_FAILURE() << "nothing was thrown";
  } catch (const sys::CImpersonationError& error) {
    EXPECT_EQ(error.SystemError, static_cast<DWORD>(ERROR_INVALID_HANDLE));
  }
}

TEST_F(WindowsUserContext, OnlyTheEntriesOfTheUserAreLeftOut) {
  WellKnownSid everyone(WinWorldSid);
  WellKnownSid system(WinLocalSystemSid);
  const PSID own = const_cast<Sid*>(user.Get());
  alignas(DWORD) unsigned char buffer[512];
  auto* const source = reinterpret_cast<PACL>(buffer);
  ASSERT_TRUE(::InitializeAcl(source, sizeof buffer, ACL_REVISION));
  ASSERT_TRUE(::AddAccessDeniedAce(source, ACL_REVISION, 1, system.bytes));
  ASSERT_TRUE(::AddAccessDeniedAce(source, ACL_REVISION, 2, own));
  ASSERT_TRUE(::AddAccessAllowedAceEx(source, ACL_REVISION, CONTAINER_INHERIT_ACE, 4, own));
  ASSERT_TRUE(
      ::AddAccessAllowedAceEx(source, ACL_REVISION, NO_PROPAGATE_INHERIT_ACE, 8, everyone.bytes));
  ASSERT_TRUE(::AddAccessAllowedAce(source, ACL_REVISION, 16, own));

  const auto* const list = reinterpret_cast<const Acl*>(source);
  sys::CDACL rest(list, log);
  EXPECT_TRUE(rest.CopyACL(list, user));

  constexpr int kKept[] = {0, 3};
  ASSERT_EQ(sys::CDACL::GetAclSizeInfo(rest.Get()).entryCount, std::size(kKept));
  for (DWORD i = 0; i < std::size(kKept); ++i) {
    void* before = nullptr;
    void* after = nullptr;
    ASSERT_TRUE(::GetAce(source, static_cast<DWORD>(kKept[i]), &before));
    ASSERT_TRUE(::GetAce(reinterpret_cast<PACL>(rest.Get()), i, &after));
    EXPECT_EQ(std::memcmp(before, after, static_cast<ACE_HEADER*>(before)->AceSize), 0) << i;
  }

  sys::CSecurityDescriptor descriptor;
  const std::uint32_t bare = descriptor.Size();
  descriptor.SetDACL(rest);
  EXPECT_EQ(descriptor.GetDACL(), rest.Get());
  EXPECT_GT(descriptor.Size(), bare);
}

TEST_F(WindowsUserContext, AnImpersonatingThreadActsAsItsProcessAgain) {
  ASSERT_TRUE(::ImpersonateSelf(SecurityImpersonation));
  sys::CImpersonation taken(log, {.isImpersonated = true});
  HANDLE acting = nullptr;
  ASSERT_TRUE(::OpenThreadToken(::GetCurrentThread(), TOKEN_QUERY, TRUE, &acting));
  ::CloseHandle(acting);
  taken.Revert();
  EXPECT_FALSE(::OpenThreadToken(::GetCurrentThread(), TOKEN_QUERY, TRUE, &acting));
  EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_NO_TOKEN));
}

TEST_F(WindowsUserContext, TheProcessReturnsToItsStationAndTheOthersAreClosed) {
  const HWINSTA own = ::GetProcessWindowStation();
  const HWINSTA station = ::CreateWindowStationA(nullptr, 0, GENERIC_ALL, nullptr);
  ASSERT_NE(station, nullptr);
  ASSERT_TRUE(::SetProcessWindowStation(station));
  const HDESK desktop = ::CreateDesktopA("Orvanta", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
  ASSERT_NE(desktop, nullptr);

  sys::UserContext context;
  context.token = ToSeam<Token>(OpenOwnToken());
  context.desktop = ToSeam<UserObject>(desktop);
  context.station = ToSeam<UserObject>(station);
  context.oldStation = ToSeam<UserObject>(own);
  { const sys::CImpersonation taken(log, context); }

  EXPECT_EQ(::GetProcessWindowStation(), own);
  for (const HANDLE closed : {static_cast<HANDLE>(desktop), static_cast<HANDLE>(station)}) {
    USEROBJECTFLAGS flags{};
    EXPECT_FALSE(::GetUserObjectInformationA(closed, UOI_FLAGS, &flags, sizeof flags, nullptr));
  }
  DWORD flags = 0;
  EXPECT_FALSE(::GetHandleInformation(ToSystem<HANDLE>(context.token), &flags));
}

}  // namespace
}  // namespace platform::windows
