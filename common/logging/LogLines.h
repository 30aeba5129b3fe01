// The lines of the library's log that tell the story of a message, as printf formats. Whoever reads
// a log finds them again by these very formats.
#pragma once

namespace logging {

inline constexpr char kFindingHandler[] = "%s:%d Toolbox::DoMagic - Finding handler for %s=%s";
inline constexpr char kUnhandled[] = "%s:%d Toolbox::DoMagic caught an unhandled exception";
inline constexpr char kExceptionDetails[] = "Exception Details: %s:%d - %s (error = %d) ";

inline constexpr char kConfigFile[] = "%s:%d Configure::HandleMessage(): config file=%s";
inline constexpr char kNoFile[] = "%s:%d Configure::HandleMessage(): File %s does not exist";
inline constexpr char kNotLoaded[] = "%s:%d Configure::HandleMessage(): cannot load %s (code %d)";
inline constexpr char kCommand[] = "ConfigBuilder::RunConfig(): about to execute %s (%s)";
inline constexpr char kAdapter[] =
    "ConfigureNic::Execute(): NIC index (Win32_NetworkAdapterConfiguration.Index)=%d";
inline constexpr char kAdapterCommand[] = "ConfigureNic::Execute(): about to execute %s (%s)";

// Error records: place, text, value and system error.
inline constexpr char kConfigError[] =
    "%s:%d Configure::HandleMessage(): caught win32 error\n\t%s:%d - %s\n\tValue=%d, "
    "SystemError=0x%08X";
inline constexpr char kGeneralError[] =
    "%s:%d Configure::HandleMessage(): caught general (win32) error\n\t%s:%d - %s\n\tValue=%d, "
    "SystemError=0x%08X";
inline constexpr char kImageError[] =
    "%s:%d PrepForImage::HandleMessage(): caught general error\n\t%s:%d - %s\n\tValue=%d, "
    "SystemError=0x%08X";
inline constexpr char kCopyError[] =
    "%s:%d PrepForImage::Prepare(): caught general error\n\t%s:%d - %s\n\tValue=%d, "
    "SystemError=0x%08X";
inline constexpr char kUnknownError[] =
    "%s:%d PrepForImage::HandleMessage(): caught unknown exception\n\t%s:%d - Last Error=%d";

}  // namespace logging
