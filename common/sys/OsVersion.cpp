#include "common/sys/OsVersion.h"

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <variant>

#include "base/OperatingSystem.h"
#include "common/sys/Wmi.h"
#include "common/util/LastError.h"

namespace sys {
namespace {

constexpr char kSource[] = R"(common\sys\OsVersion)";
constexpr err::Site kInitThrew{kSource, "Error thrown from WMI initialization code.", 129};
// The text is reported with its placeholder.
constexpr err::Site kComNotInitialized{kSource, "COM not initialized, error = %u.", 134};
constexpr err::Site kNoNamespace{kSource, "Namespace not valid, cannot continue.", 141};
constexpr err::Site kNoClassObject{kSource, "Class object not valid, cannot continue.", 148};

using Field = std::variant<std::string OsVersion::*, bool OsVersion::*, std::uint8_t OsVersion::*,
                           std::uint16_t OsVersion::*, std::uint32_t OsVersion::*>;

/// The fields, in the order of the properties.
// Deliberate: both service-pack numbers land in the minor field, the minor one last.
constexpr Field kFields[] = {&OsVersion::BootDevice,
                             &OsVersion::BuildNumber,
                             &OsVersion::BuildType,
                             &OsVersion::CodeSet,
                             &OsVersion::CountryCode,
                             &OsVersion::CSDVersion,
                             &OsVersion::Debug,
                             &OsVersion::Description,
                             &OsVersion::Distributed,
                             &OsVersion::EncryptionLevel,
                             &OsVersion::Locale,
                             &OsVersion::Manufacturer,
                             &OsVersion::MaxNumberOfProcesses,
                             &OsVersion::Name,
                             &OsVersion::NumberOfLicensedUsers,
                             &OsVersion::NumberOfProcesses,
                             &OsVersion::NumberOfUsers,
                             &OsVersion::OperatingSystemSKU,
                             &OsVersion::Organization,
                             &OsVersion::OSArchitecture,
                             &OsVersion::OSLanguage,
                             &OsVersion::OSProductSuite,
                             &OsVersion::OtherTypeDescription,
                             &OsVersion::Primary,
                             &OsVersion::ProductType,
                             &OsVersion::QuantumLength,
                             &OsVersion::QuantumType,
                             &OsVersion::RegisteredUser,
                             &OsVersion::SerialNumber,
                             &OsVersion::ServicePackMinorVersion,
                             &OsVersion::ServicePackMinorVersion,
                             &OsVersion::SuiteMask,
                             &OsVersion::SystemDevice,
                             &OsVersion::SystemDirectory,
                             &OsVersion::SystemDrive,
                             &OsVersion::Version,
                             &OsVersion::WindowsDirectory};
static_assert(std::size(kFields) == std::size(base::kSystemProperties));

[[noreturn]] void Throw(const err::Site& site, std::uint32_t systemError) {
  throw OsVersionError{site, /*value=*/1, systemError};
}

void Connect(ScopedWmiComInit& connection) {
  platform::HResult result = platform::kOk;
  try {
    result = connection.Connect();
  } catch (...) {
    Throw(kInitThrew, 0);
  }
  if (platform::Failed(result)) Throw(kComNotInitialized, static_cast<std::uint32_t>(result));
}

std::unique_ptr<platform::IWmiObject> FetchInstance(platform::IWmiServices& services) {
  try {
    return Wmi::GetWbemClassObject(services, "Win32_OperatingSystem");
  } catch (const CWmiError& error) {
    Throw(kNoClassObject, error.SystemError);  // catching may have changed the last error
  }
}

/// None when the property cannot be read.
std::optional<platform::Variant> Read(platform::IWmiObject& instance, const std::string& property) {
  try {
    // Not by Wmi::GetVariant: a machine may lack most properties, and each error thrown takes as
    // long as a thousand reads.
    platform::Variant value;
    if (platform::Failed(instance.Get(property, &value))) return std::nullopt;
    return value;
  } catch (...) {
    return std::nullopt;
  }
}

/// Stores a value in a field of its kind; a number is cut to the field's width.
struct Store {
  OsVersion& record;
  const platform::Variant& value;

  void operator()(std::string OsVersion::*field) const {
    if (const auto* text = std::get_if<std::string>(&value)) record.*field = *text;
  }
  void operator()(bool OsVersion::*field) const {
    record.*field = value == platform::Variant(platform::kVariantTrue);
  }
  template <typename Number>
  void operator()(Number OsVersion::*field) const {
    if (const auto* number = std::get_if<std::int32_t>(&value)) {
      record.*field = static_cast<Number>(*number);
    }
  }
};

}  // namespace

void OsVersion::Query() {
  ScopedWmiComInit connection;
  Connect(connection);
  if (connection.Services() == nullptr) Throw(kNoNamespace, util::LastError());
  const std::unique_ptr<platform::IWmiObject> instance = FetchInstance(*connection.Services());
  for (std::size_t i = 0; i < std::size(kFields); ++i) {
    const auto value = Read(*instance, std::string(base::kSystemProperties[i]));
    if (!value || std::holds_alternative<platform::Null>(*value)) continue;
    std::visit(Store{*this, *value}, kFields[i]);
  }
}

void OsVersion::GetSystemDrive(std::string* drive) const { *drive = SystemDrive; }

std::string OsVersion::SystemFolder() const {
  std::string folder;
  GetSystemDrive(&folder);
  if (!folder.ends_with('\\') && !folder.ends_with('/')) folder += '\\';
  return folder;
}

}  // namespace sys
