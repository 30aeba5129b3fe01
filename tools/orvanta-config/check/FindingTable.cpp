#include "tools/orvanta-config/check/FindingTable.h"

#include <cstddef>
#include <iterator>

namespace tool::check {
namespace {

constexpr Severity kError = Severity::kError;
constexpr Severity kWarning = Severity::kWarning;
constexpr Severity kNote = Severity::kNote;

constexpr FindingKind kKinds[] = {
    {Code::kUnreadableFile, kError, "C001", "the file cannot be read",
     "make it readable, or leave it out"},
    {Code::kEmptyFile, kError, "C002", "the file is empty",
     "an empty file fails the run with code 3; write a section, or remove the file"},
    {Code::kLargeFile, kError, "C003", "the file is too large to be a configuration",
     "name a configuration file; no real one is larger than a few KiB"},
    {Code::kNoPlainText, kError, "C004", "the file is no plain text",
     "save it as plain text in the ANSI code page, not in UTF-16"},
    {Code::kByteOrderMark, kError, "C005", "a byte-order mark hides the first line",
     "save the file without a byte-order mark"},
    {Code::kOpenHeader, kError, "C006", "a section header has no \"]\"",
     "close it with \"]\"; with it as it is the whole file is refused (code 3)"},
    {Code::kBrokenKey, kError, "C007", "a key has no \"=\"", "write KEY=VALUE"},
    {Code::kStrayLine, kError, "C008", "a line has no \"=\" and adds to a value of one line",
     "write KEY=VALUE, or begin it with \";\" as a comment"},
    {Code::kBeforeFirstHeader, kError, "C009", "an entry stands before the first header",
     "move it below the header of its section"},
    {Code::kDuplicateKey, kError, "C010", "a key stands twice, and only the first counts",
     "keep the one that is meant"},
    {Code::kRepeatedKey, kNote, "C011", "a key is repeated with the same value", "keep one"},
    {Code::kTextAfterHeader, kError, "C012", "text after \"]\" becomes part of the section's name",
     "put the text on a line of its own that begins with \";\""},
    {Code::kSectionAgain, kWarning, "C013", "a section comes twice and counts as one",
     "give a second adapter a section of its own, such as [NicEntry2]; join the others"},
    {Code::kNoKey, kError, "C014", "an entry has no key", "write KEY=VALUE, or remove the line"},
    {Code::kUtf8Text, kWarning, "C015", "a value is in UTF-8, but is read in the ANSI code page",
     "save the file in the ANSI code page of the computer, or use ASCII letters"},
    {Code::kManyFindings, kNote, "C016", "the file has more findings than are shown",
     "mend these first and check again"},
    {Code::kBrokenHeader, kError, "C017", "a section header has no \"[\"",
     "begin it with \"[\"; as it is, the entries below belong to the section above"},

    {Code::kMisspelledSection, kError, "C101", "a section's name is misspelled",
     "correct the name; nothing of this section is applied"},
    {Code::kUnknownSection, kNote, "C102", "a section is not read",
     "remove it unless another program reads it"},
    {Code::kUnreadAdapter, kError, "C103", "an adapter's section is not read",
     "name it [TCP/IP], or give it a name with \"NicEntry\" in it, such as [NicEntry2]"},
    {Code::kMisspelledKey, kError, "C104", "a key is misspelled", "correct the key"},
    {Code::kKeyOfAnotherSection, kError, "C105", "a key stands in the wrong section",
     "move it to its own section"},
    {Code::kUnknownKey, kWarning, "C106", "a key is not read", "remove it or correct its name"},

    {Code::kNoAddress, kError, "C201", "a value is no IPv4 address",
     "write four decimal numbers from 0 to 255 with dots between them"},
    {Code::kHostName, kWarning, "C202", "a host name stands for an address",
     "write the address: names can be resolved only while the network still works"},
    {Code::kLeadingZero, kError, "C203", "a part of an address begins with 0 and is read as octal",
     "leave out the leading zeros"},
    {Code::kUnusableAddress, kError, "C204", "an address cannot be used here",
     "give an address of a computer in the network"},
    {Code::kBadMask, kError, "C205", "a mask is not contiguous",
     "write a mask whose ones all come first, such as 255.255.255.0"},
    {Code::kGatewayOutside, kError, "C206", "a gateway is outside the adapter's subnets",
     "give a gateway in a subnet of \"Address\" and \"Netmask\", or mend those"},
    {Code::kGatewayIsOwnAddress, kError, "C207", "a gateway is the adapter's own address",
     "give the router's address"},
    {Code::kAddressAndMaskCounts, kError, "C208", "addresses and masks do not match in number",
     "give one mask for each address, in the same order"},
    {Code::kAddressTwice, kError, "C209", "an address is given twice", "give it once"},
    {Code::kNoNumber, kError, "C210", "a value is no number that fits",
     "write a decimal number without any other sign"},
    {Code::kPartialLocation, kWarning, "C211", "a PCI location is incomplete and is not used",
     "give PCIBus, PCIDevice and PCIFunction together, or none of them"},
    {Code::kNoMacAddress, kError, "C212", "a value is no MAC address of an adapter",
     R"(write twelve hexadecimal digits, with or without ":" or "-")"},
    {Code::kNoFlag, kError, "C213", "a value is neither True nor False", "write True or False"},
    {Code::kUnknownMode, kWarning, "C214", "\"Config\" has a value without a meaning",
     "write Restore or RestoreAfterCreate, or leave it out"},
    {Code::kLongComputerName, kError, "C215", "a computer name is too long for NetBIOS",
     "use at most 15 characters"},
    {Code::kComputerNameLetters, kError, "C216", "a computer name that Windows refuses",
     "use letters, digits and hyphens, not digits alone, and no hyphen at an end"},
    {Code::kBadWorkgroupName, kError, "C217", "a workgroup name that Windows refuses",
     R"(use at most 15 characters, and none of " / \ [ ] : ; | = , + * ? < >)"},
    {Code::kBadDomainName, kError, "C218", "a value is no domain name",
     "write a name such as corp.example"},
    {Code::kBadOrganizationalUnit, kError, "C219", "an organizational unit is not understood",
     "write a path with \"/\" such as Sales/Europe, or OU=Europe,OU=Sales"},
    {Code::kNumberedKeyNotRead, kError, "C220", "a numbered key is beyond the count and not read",
     "make the count as large as the number of keys, and number them from 0 or 1 without gaps"},
    {Code::kCountTooLarge, kWarning, "C221", "a count is larger than the number of keys",
     "add the missing keys, or correct the count"},
    {Code::kShortRoute, kError, "C222", "a route is incomplete",
     "write destination, mask, gateway, any fourth field and metric"},
    {Code::kLongRoute, kWarning, "C223", "a route has more than five fields",
     "write destination, mask, gateway, any fourth field and metric; the rest is not read"},
    {Code::kRouteHostBits, kError, "C224", "a route's destination has bits outside its mask",
     "write the network's own address; the route tool refuses any other"},
    {Code::kNamelessWorkgroup, kError, "C225", "a workgroup is to be joined, but has no name",
     "give its name as Domain=NAME; as it is nothing is joined"},
    {Code::kDomainNotJoined, kError, "C226", "a domain is named, but nothing is joined",
     "add Workgroup=False to join a domain, or Workgroup=True for a workgroup"},
    {Code::kDefaultWorkgroup, kWarning, "C227", "no domain is named: WORKGROUP is joined",
     "give DNSDomain=NAME, or remove \"Workgroup\""},
    {Code::kHalfAccount, kError, "C228", "an account lacks its user or its password",
     "give DomainUsername and DomainPassword together"},
    {Code::kNameTwice, kError, "C229", "computer and workgroup have the same name",
     "give them different names; Windows refuses this"},

    {Code::kSuppressedRestart, kError, "C301", "without its restart the run ends as a failure",
     "remove RebootAfterConfig=False, or remove what needs the restart"},
    {Code::kStrandedJoin, kError, "C302", "without its restart the domain is never joined",
     "remove RebootAfterConfig=False, or add JoinDomainBeforeNameChange=True"},
    {Code::kLostCredentials, kError, "C303", "the account does not reach the join",
     "add DSOrganizationalUnit=...; only behind it the account is handed to the join"},
    {Code::kIdleCredentials, kWarning, "C304", "an account is given, but nothing uses it",
     "remove DomainUsername and DomainPassword, or add what they are for"},
    {Code::kOuInWorkgroup, kWarning, "C305", "a workgroup has no organizational units",
     "remove DSOrganizationalUnit, or join a domain"},
    {Code::kIdleJoinOrder, kNote, "C306", "JoinDomainBeforeNameChange has nothing to order",
     "it matters only when a domain is joined and ComputerName is given"},
    {Code::kStaticWithoutAddress, kError, "C307", "static addressing lacks an address or a mask",
     "give Address and Netmask, or DHCP=True"},
    {Code::kAddressesWithoutDhcpKey, kError, "C308", "addresses are given, but not applied",
     "add DHCP=False"},
    {Code::kAddressesWithDhcp, kNote, "C309", "addresses do not count with DHCP",
     "write DHCP=False to apply them, or remove them"},
    {Code::kDnsNotSet, kError, "C310", "DNS settings are given, but not applied",
     "add SetDNSInfo=True"},
    {Code::kDnsFromDhcp, kWarning, "C311", "DNS settings do not count with DNS-Use-DHCP",
     "write DNS-Use-DHCP=False and SetDNSInfo=True to apply them, or remove them"},
    {Code::kRoutesTwice, kError, "C312", "routes of one section delete those of another",
     "give all routes of the computer in one section"},
    {Code::kSharedDestination, kWarning, "C313", "two routes share a destination",
     "a route is deleted by its destination alone: replacing one of them later takes the other "
     "along; give them different destinations"},
    {Code::kSameAdapter, kError, "C314", "two sections mean the same adapter",
     "correct the location or MAC address of one of them, or join the sections"},
    {Code::kUnlocatedAdapter, kWarning, "C315", "a section may take the adapter of a later one",
     "give it a PCI location or MAC address, or move it behind the sections that have one"},
    {Code::kDefaultRoute, kWarning, "C316", "a default route is given as a static route",
     "give it as Gateway; the default route that exists is not compared, so it is added each time"},
    {Code::kJoinWithoutAccount, kWarning, "C317", "a domain is joined without an account",
     "add DomainUsername, DomainPassword and DSOrganizationalUnit"},

    {Code::kFleetComputerName, kError, "C401", "two files give the same computer name",
     "give every computer a name of its own"},
    {Code::kFleetAddress, kError, "C402", "two files give the same address",
     "give every computer addresses of its own"},
    {Code::kFleetMacAddress, kError, "C403", "two files mean the adapter with the same MAC address",
     "correct the MAC address in one of them"},

    {Code::kNoAdapterLeft, kError, "C501", "the machine has no adapter for a section",
     "remove the section, or add a PCI adapter to the machine"},
    {Code::kAdapterNotFound, kWarning, "C502", "the machine lacks the adapter; another is taken",
     "correct PCIBus, PCIDevice and PCIFunction or MACAddress"},
    {Code::kSameAdapterOnMachine, kError, "C503", "two sections take the same adapter",
     "give each section the location or MAC address of its own adapter"},
    {Code::kNoSuchDomain, kError, "C504", "the directory has no such domain",
     "correct the name, or add the domain to the machine file"},
    {Code::kNoSuchOu, kError, "C505", "the domain has no such organizational unit",
     "correct the path, or make the unit first"},
    {Code::kBadAccount, kError, "C506", "the domain does not accept the account",
     "correct DomainUsername and DomainPassword"},
    {Code::kNoDecryption, kError, "C507", "the machine cannot decipher the account",
     "install LibCrypto.dll (\"decrypt\" in the machine file), or encipher them anew"},
    {Code::kRouteLost, kError, "C508", "deleting a route takes a wanted one along",
     "delete the unwanted route by hand first"},
    {Code::kHostNotFound, kError, "C509", "the machine cannot resolve a host name",
     "write the address"},
    {Code::kSilentMachine, kError, "C510", "the machine does not tell its adapters",
     "mend what the message names"},
    {Code::kDeletedTwice, kError, "C511", "two unwanted routes share a destination",
     "delete both by hand first: the second deletion finds nothing, which fails the run"},
};

constexpr bool IsInOrder() {
  for (std::size_t i = 0; i < std::size(kKinds); ++i) {
    if (kKinds[i].code != static_cast<Code>(i)) return false;
  }
  return std::size(kKinds) == static_cast<std::size_t>(Code::kDeletedTwice) + 1;
}
static_assert(IsInOrder());

}  // namespace

const char* TextOf(Severity severity) {
  constexpr const char* kNames[] = {"error", "warning", "note"};
  return kNames[static_cast<std::size_t>(severity)];
}

const FindingKind& KindOf(Code code) { return kKinds[static_cast<std::size_t>(code)]; }

std::span<const FindingKind> AllKinds() { return kKinds; }

}  // namespace tool::check
