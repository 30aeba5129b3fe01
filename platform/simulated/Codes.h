// The system's result codes that the simulated computer answers with.
#pragma once

#include <cstdint>

#include "platform/Types.h"

namespace simulated {

/// Error numbers of system calls.
enum Error : platform::Win32Error {
  kSuccess = 0,
  kFileNotFound = 2,
  kPathNotFound = 3,
  kAccessDenied = 5,
  kInvalidHandle = 6,
  kGeneralFailure = 31,
  kSharingViolation = 32,
  kFileExists = 80,
  kInvalidParameter = 87,
  kBrokenPipe = 109,
  kBufferTooSmall = 122,
  kModuleNotFound = 126,
  kProcedureNotFound = 127,
  kAlreadyExists = 183,
  kMoreData = 234,
  kNoTextForCode = 317,
  kServiceAlreadyRunning = 1056,
  kServiceDisabled = 1058,
  kServiceUnknown = 1060,
  kLogonFailure = 1326,
  kNoSuchAccount = 1332,
  kAllottedSpaceExceeded = 1344,
  kNotDomainMember = 1351,
  kNoSuchDomain = 1355,
  kAlreadyJoined = 2691,
  kNotJoined = 2692,
  kSocketsNotStarted = 10093,
  kHostNotFound = 11001,
};

/// A COM result by the digits under which it is known.
constexpr platform::HResult Com(std::uint32_t digits) {
  return static_cast<platform::HResult>(digits);
}

/// The COM form of an error number.
constexpr platform::HResult FromError(platform::Win32Error error) {
  return error == 0 || error > 0xFFFF ? Com(error) : Com(0x80070000U | error);
}

constexpr platform::HResult kFailure = Com(0x80004005);
constexpr platform::HResult kNotInApartment = Com(0x800401F0);
constexpr platform::HResult kOtherApartmentKind = Com(0x80010106);
constexpr platform::HResult kAlreadySecured = Com(0x80010119);
constexpr platform::HResult kWmiNotFound = Com(0x80041002);
constexpr platform::HResult kWmiInvalidNamespace = Com(0x8004100E);
constexpr platform::HResult kWmiInvalidClass = Com(0x80041010);
constexpr platform::HResult kWmiInvalidOperation = Com(0x80041016);
constexpr platform::HResult kWmiInvalidQuery = Com(0x80041017);
constexpr platform::HResult kWmiInvalidMethod = Com(0x8004102E);
constexpr platform::HResult kWmiInvalidParameters = Com(0x8004102F);
constexpr platform::HResult kWmiInvalidPath = Com(0x8004103A);
constexpr platform::HResult kDirectoryNoSuchObject = Com(0x80072030);
constexpr platform::HResult kDirectoryServerDown = Com(0x8007203A);
constexpr platform::HResult kDirectoryObjectExists = Com(0x80071392);

}  // namespace simulated
