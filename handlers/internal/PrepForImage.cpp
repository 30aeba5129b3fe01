#include "handlers/internal/PrepForImage.h"

#include <cstddef>
#include <iterator>

#include "common/logging/LogLines.h"
#include "common/sys/NicInfoWriter.h"
#include "common/sys/Services.h"
#include "common/util/FileUtils.h"
#include "common/util/LastError.h"
#include "handlers/internal/AgentFiles.h"
#include "handlers/internal/NetworkDisabledFlag.h"

namespace {

constexpr char kPath[] = R"(handlers\internal\PrepForImage)";

constexpr std::int32_t kPrepared = 1;
constexpr std::int32_t kFailed = 0;

/// The lines of the log calls.
enum Line : int {
  kInvokeConfigure = 84,
  kCopyErrorLine = 97,
  kImageErrorLine = 131,
  kUnknownErrorLine = 139,
  kAddingNic = 163,
};

/// How the log names a service that is disabled, in the order of `base::kNetworkServices`.
constexpr struct {
  const char* shown;
  int line;
  int failedLine;
} kServices[] = {
    {"DHCP", 312, 317},
    {"NetBT", 330, 333},
    {"LMHOST", 344, 349},
    {"NetBIOS over NWLink", 359, 364},
};
static_assert(std::size(kServices) == std::size(base::kNetworkServices));

/// What section "Global" of the file gets: the values of a message of the host.
sys::Entries GlobalEntries(IAgentMessage& message) {
  constexpr const char* kMode = NameOf(base::Key::kConfig).data();
  constexpr const char* kRestart = NameOf(base::Key::kRebootAfterConfig).data();
  message.SetValue(kMode, base::kRestoreAfterCreate.data());
  message.SetValue(kRestart, "True");
  sys::Entries entries;
  for (const char* key : {kMode, kRestart}) {
    if (const char* value = message.GetValue(key)) entries[key] = value;
  }
  return entries;
}

}  // namespace

std::int32_t PrepForImage::HandleMessage(IAgentMessage* /*message*/, IAgentHost* host) {
  try {
    Prepare(*host);
    SetNetworkDisabledFlag();
    DisableServices();
    return kPrepared;
  } catch (const err::CGeneralError& error) {
    LogRecord(logging::kImageError, kPath, kImageErrorLine, error);
  } catch (...) {
    const std::uint32_t lastError = util::LastError();
    Log(logging::kFailure, logging::kUnknownError, kPath, kUnknownErrorLine, kPath,
        kUnknownErrorLine, lastError);
  }
  return kFailed;
}

void PrepForImage::Prepare(IAgentHost& host) {
  const AgentFiles files = AgentFiles::Locate();
  OwnedMessage global = NewMessage(host);
  const sys::Entries entries = GlobalEntries(*global);
  sys::NicList nics;
  for (const sys::NicAdapter* nic : nics.Adapters()) {
    Log(logging::kDetail, "%s:%d Adding infor for nic %d", kPath, kAddingNic, nic->Index());
  }
  sys::WriteNicInfo(entries, nics, files.restore);
  global.reset();

  const OwnedMessage message = NewMessage(host);
  Log(logging::kProgress, "%s:%d Invoke Config Handler", kPath, kInvokeConfigure);
  message->SetTypeAndName("Internal", "Configure");
  message->SetValue("Filename", files.configuration.c_str());
  host.Post(message.get());
  try {
    // The host handles the message when this one is done; by then the copy is in its place.
    util::Copy(files.restore, files.configuration, /*overwrite=*/true);
  } catch (const err::CGeneralError& error) {
    LogRecord(logging::kCopyError, kPath, kCopyErrorLine, error);
  }
}

void PrepForImage::DisableServices() {
  sys::ForEachNetworkService([this](std::size_t position, const sys::Service& service) {
    const auto& row = kServices[position];
    // Deliberate: logged before it is tried, so that a refused change logs both lines.
    Log(logging::kDetail, "%s:%d Disabled %s", kPath, row.line, row.shown);
    if (!service.SetStartType(sys::ServiceStart::kDisabled)) {
      Log(logging::kDetail, "%s:%d Failed Disabled %s", kPath, row.failedLine, row.shown);
    }
  });
}
