// Everything that `check` can find, as a table: a stable code, how bad it is, and what helps.
#pragma once

#include <cstdint>
#include <span>

namespace tool::check {

enum class Severity : std::uint8_t {
  kError,    ///< the run fails, a setting is lost or wrong, or the computer is stranded
  kWarning,  ///< probably not wanted
  kNote,     ///< worth knowing
};

/// "error", "warning" or "note".
const char* TextOf(Severity severity);

/// In the order of the table.
enum class Code : std::uint8_t {
  // The file and its lines.
  kUnreadableFile,
  kEmptyFile,
  kLargeFile,
  kNoPlainText,
  kByteOrderMark,
  kOpenHeader,
  kBrokenKey,
  kStrayLine,
  kBeforeFirstHeader,
  kDuplicateKey,
  kRepeatedKey,
  kTextAfterHeader,
  kSectionAgain,
  kNoKey,
  kUtf8Text,
  kManyFindings,
  kBrokenHeader,
  kLostListLine,
  kCommentGoesOn,
  kAsksNothing,
  // Names.
  kMisspelledSection,
  kUnknownSection,
  kUnreadAdapter,
  kMisspelledKey,
  kKeyOfAnotherSection,
  kUnknownKey,
  kRecordedOnly,
  // Values.
  kNoAddress,
  kHostName,
  kLeadingZero,
  kUnusableAddress,
  kBadMask,
  kGatewayOutside,
  kGatewayIsOwnAddress,
  kAddressAndMaskCounts,
  kAddressTwice,
  kNoNumber,
  kPartialLocation,
  kNoMacAddress,
  kNoFlag,
  kUnknownMode,
  kLongComputerName,
  kComputerNameLetters,
  kBadWorkgroupName,
  kBadDomainName,
  kBadOrganizationalUnit,
  kNumberedKeyNotRead,
  kCountTooLarge,
  kShortRoute,
  kLongRoute,
  kRouteHostBits,
  kNamelessWorkgroup,
  kDomainNotJoined,
  kDefaultWorkgroup,
  kHalfAccount,
  kNameTwice,
  kNoMetric,
  // Traps of the format.
  kSuppressedRestart,
  kStrandedJoin,
  kLostCredentials,
  kIdleCredentials,
  kOuInWorkgroup,
  kIdleJoinOrder,
  kStaticWithoutAddress,
  kAddressesWithoutDhcpKey,
  kAddressesWithDhcp,
  kDnsNotSet,
  kDnsFromDhcp,
  kRoutesTwice,
  kSharedDestination,
  kSameAdapter,
  kUnlocatedAdapter,
  kDefaultRoute,
  kJoinWithoutAccount,
  kSuffixesTwice,
  kDomainTwice,
  kRouteGatewayOutside,
  // Several files.
  kFleetComputerName,
  kFleetAddress,
  kFleetMacAddress,
  // A machine.
  kNoAdapterLeft,
  kAdapterNotFound,
  kSameAdapterOnMachine,
  kNoSuchDomain,
  kNoSuchOu,
  kBadAccount,
  kNoDecryption,
  kRouteLost,
  kHostNotFound,
  kSilentMachine,
  kDeletedTwice,
  kJoinNeedsAccount,
  kOuWithoutDomain,
  kNoComputerAccount,
};

struct FindingKind {
  Code code;
  Severity severity;
  /// Never changes and is never used for anything else, so that scripts may name it.
  const char* id;
  /// A name in one phrase, without a full stop.
  const char* title;
  /// What helps when the finding itself knows nothing better.
  const char* hint;
};

const FindingKind& KindOf(Code code);
std::span<const FindingKind> AllKinds();

}  // namespace tool::check
