// The operating-system record: every property of the one `Win32_OperatingSystem` instance.
#pragma once

#include <cstdint>
#include <string>

#include "common/err/GeneralError.h"

namespace sys {

/// Value 1; `SystemError` is the HRESULT or the system's last error.
struct OsVersionError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;
};

/// A property that cannot be read or has no value leaves its field empty, zero or false.
struct OsVersion {
  std::string BootDevice, BuildNumber, BuildType, CodeSet, CountryCode, CSDVersion;
  bool Debug = false;
  std::string Description;
  bool Distributed = false;
  std::uint32_t EncryptionLevel = 0;
  std::string Locale, Manufacturer;
  std::uint32_t MaxNumberOfProcesses = 0;
  std::string Name;
  std::uint32_t NumberOfLicensedUsers = 0, NumberOfProcesses = 0, NumberOfUsers = 0;
  std::uint32_t OperatingSystemSKU = 0;
  std::string Organization, OSArchitecture;
  std::uint32_t OSLanguage = 0, OSProductSuite = 0;
  std::string OtherTypeDescription;
  bool Primary = false;
  std::uint32_t ProductType = 0;
  std::uint8_t QuantumLength = 0, QuantumType = 0;
  std::string RegisteredUser, SerialNumber;
  std::uint16_t ServicePackMajorVersion = 0, ServicePackMinorVersion = 0;
  std::uint32_t SuiteMask = 0;
  std::string SystemDevice, SystemDirectory, SystemDrive, Version, WindowsDirectory;

  /// Fills the fields from WMI. Throws OsVersionError when there is no connection or no instance.
  void Query();

  void GetSystemDrive(std::string* drive) const;
  /// The system drive as WMI reports it, with a "\" at its end unless it has one (or a "/").
  std::string SystemFolder() const;
};

}  // namespace sys
