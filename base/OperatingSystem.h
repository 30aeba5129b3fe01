// The properties of `Win32_OperatingSystem`.
#pragma once

#include "base/Words.h"

namespace base {

inline constexpr char kSystemText[] =
    "BootDevice BuildNumber BuildType CodeSet CountryCode CSDVersion Debug Description "
    "Distributed EncryptionLevel Locale Manufacturer MaxNumberOfProcesses Name "
    "NumberOfLicensedUsers NumberOfProcesses NumberOfUsers OperatingSystemSKU Organization "
    "OSArchitecture OSLanguage OSProductSuite OtherTypeDescription Primary ProductType "
    "QuantumLength QuantumType RegisteredUser SerialNumber ServicePackMajorVersion "
    "ServicePackMinorVersion SuiteMask SystemDevice SystemDirectory SystemDrive Version "
    "WindowsDirectory";
/// The properties that are read, in the order in which they are.
inline constexpr auto kSystemProperties = Words<kSystemText>();

}  // namespace base
