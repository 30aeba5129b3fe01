#include "handlers/internal/Configure.h"

#include <new>
#include <string>

#include "common/config/ConfigBuilder.h"
#include "common/config/ConfigError.h"
#include "common/sys/Registry.h"
#include "common/util/FileUtils.h"
#include "common/util/Text.h"
#include "handlers/internal/AgentFiles.h"
#include "handlers/internal/ConfigFile.h"
#include "handlers/internal/SectionTranslator.h"

namespace {

constexpr char kPath[] = "internal/Configure";

constexpr std::int32_t kAnswered = 1;
constexpr std::int32_t kNotAnswered = 0;
/// "Status-Code" of a run that stopped without an error.
constexpr std::int32_t kRunStopped = 3;

/// The lines of the log calls.
enum Line : int {
  kEntered = 107,
  kFile = 115,
  kNotLoaded = 124,
  kEvents = 147,
  kNetworkDisabled = 152,
  kAfterDeployImage = 155,
  kAfterCreateImage = 160,
  kRun = 544,
  kConfigError = 581,
  kGeneralError = 607,
  kNoFile = 629,
};

/// What section "Global" says.
struct GlobalSettings {
  bool noReboot = false;
  bool afterCreateImage = false;
  std::string scheduleId;
  std::string taskSequence;
};

std::string GlobalValue(ConfigFile& file, std::string_view key) {
  return std::string(file.FindValue("Global", key).value_or(std::string_view()));
}

GlobalSettings ReadGlobal(ConfigFile& file) {
  return {util::EqualsIgnoringCase(GlobalValue(file, "RebootAfterConfig"), "false"),
          util::EqualsIgnoringCase(GlobalValue(file, "Config"), "RestoreAfterCreate"),
          GlobalValue(file, "ScheduleId"), GlobalValue(file, "TaskSequence")};
}

bool RestoreIsPending(const AgentFiles& files) {
  if (!util::FileExists(files.configuration)) return false;
  ConfigFile file(/*caseSensitive=*/false);
  if (file.Load(files.configuration, /*merge=*/false) != ConfigFile::kSuccess) return false;
  return util::EqualsIgnoringCase(GlobalValue(file, "Config"), "Restore") &&
         util::FileExists(files.restore);
}

/// Puts the restore file in the place of the agent's file and posts a message that names it.
std::int32_t HandOver(const AgentFiles& files, OwnedMessage message, IAgentHost& host) {
  if (message == nullptr) throw std::bad_alloc();
  util::Delete(files.configuration);
  util::Move(files.restore, files.configuration);
  message->SetTypeAndName("Internal", "Configure");
  message->SetValue("Filename", files.configuration.c_str());
  const bool taken = (host.Post(message.get()) & 0xFF) != 0;
  return taken ? kAnswered : kNotAnswered;
}

/// Reads and clears the flag that the preparation of an image leaves. False when it is not there or
/// not to be had.
bool TakeNetworkDisabledFlag() {
  try {
    sys::Registry key;
    key.SetSubkey(sys::kClientServiceKey);
    key.Open(/*create=*/false, /*readOnly=*/false, /*view64=*/false);
    bool disabled = false;
    key.ReadBool(sys::kNetworkDisabledValue, &disabled);
    key.DeleteValue(sys::kNetworkDisabledValue);
    return disabled;
  } catch (const sys::RegistryError&) {
    return false;
  }
}

void MoveToAgentFolder(const std::string& path) {
  const std::string destination = util::ExecutableFolder() + "\\" + util::FileName(path);
  // A file that is there already must not be deleted to make room for itself.
  if (util::EqualsIgnoringCase(path, destination)) return;
  if (util::FileExists(destination)) util::Delete(destination);
  util::Move(path, destination);
}

void WriteStatus(IAgentMessage& message, const char* module, std::int32_t code) {
  message.SetValue("Status-Module", module);
  message.SetValue("Status-Code", std::to_string(code).c_str());
}

void WriteResult(IAgentMessage& message, const char* result) { message.SetValue("Result", result); }

std::int32_t StatusCode(const err::CGeneralError& error) {
  return static_cast<std::int32_t>(error.SystemError);
}

}  // namespace

std::int32_t Configure::HandleMessage(IAgentMessage* message, IAgentHost* host) {
  const AgentFiles files = AgentFiles::Locate();
  OwnedMessage handOver(host->CreateMessage());
  if (RestoreIsPending(files)) return HandOver(files, std::move(handOver), *host);
  handOver.reset();

  const bool networkDisabled = TakeNetworkDisabledFlag();
  Log(logging::kProgress, "%s:%d Configure::HandleMessage", kPath, kEntered);
  const char* const fileName = message->GetValue("Filename");
  const std::string path = fileName == nullptr ? "" : fileName;
  Log(logging::kDetail, "%s:%d Configure::HandleMessage(): config file=%s", kPath, kFile,
      path.c_str());
  if (!util::FileExists(path)) {
    Log(logging::kFailure, "%s:%d Configure::HandleMessage(): File %s does not exist", kPath,
        kNoFile, path.c_str());
    return kNotAnswered;
  }

  ConfigFile file(/*caseSensitive=*/false);
  const ConfigFile::Result loaded = file.Load(path, /*merge=*/false);
  if (loaded != ConfigFile::kSuccess) {
    // Half-understood settings are never applied; the file stays for whoever looks into it.
    Log(logging::kFailure, "%s:%d Configure::HandleMessage(): cannot load %s (code %d)", kPath,
        kNotLoaded, path.c_str(), static_cast<int>(loaded));
    WriteResult(*message, "Failure");
    WriteStatus(*message, "Tarvo", loaded);
    return kAnswered;
  }
  const GlobalSettings global = ReadGlobal(file);
  message->SetValue("Schedule-ID", global.scheduleId.c_str());
  message->SetValue("Task-Sequence-ID", global.taskSequence.c_str());

  Log(logging::kDetail, "%s:%d Configure::HandleMessage(): about to call ConfigEvent()", kPath,
      kEvents);
  config::ConfigBuilder builder(*this);
  if (networkDisabled) SendEnableNetworking(builder, global.afterCreateImage);
  try {
    SectionTranslator(file, builder, *this, *host).TranslateAll();
    Run(builder, global.noReboot, path, *message);
  } catch (const config::ConfigError& error) {
    WriteResult(*message, "Failure");
    LogRecord(
        "%s:%d Configure::HandleMessage(): caught win32 error\n\t%s:%d - %s\n\tValue=%d, "
        "SystemError=0x%08X",
        kPath, kConfigError, error);
    WriteStatus(*message, "Win32", StatusCode(error));
    MoveToAgentFolder(path);
  } catch (const err::CGeneralError& error) {
    LogRecord(
        "%s:%d Configure::HandleMessage(): caught general (win32) error\n\t%s:%d - "
        "%s\n\tValue=%d, SystemError=0x%08X",
        kPath, kGeneralError, error);
    WriteResult(*message, "Failure");
    WriteStatus(*message, "Win32", StatusCode(error));
    MoveToAgentFolder(path);
  }
  return kAnswered;
}

void Configure::SendEnableNetworking(config::ConfigBuilder& builder, bool afterCreateImage) {
  Log(logging::kFailure, "%s:%d Networking was disabled see if we need to go to wrk grp", kPath,
      kNetworkDisabled);
  if (afterCreateImage) {
    Log(logging::kFailure, "%s:%d Looks we are coming after create image, No need to go to wrk grp",
        kPath, kAfterCreateImage);
  } else {
    Log(logging::kFailure, "%s:%d Looks we are coming after deploy image, need to go to wrk grp",
        kPath, kAfterDeployImage);
  }
  builder.ConfigEvent(config::EventKind::ENABLE_NETWORKING, config::Event::VALUE,
                      afterCreateImage ? "false" : "true");
}

void Configure::Run(config::ConfigBuilder& builder, bool noReboot, const std::string& path,
                    IAgentMessage& message) {
  Log(logging::kFailure,
      "%s:%d Configure::HandleMessage(): about to call Analyze() and RunConfig()", kPath, kRun);
  builder.Analyze();
  bool reboot = false;
  const bool finished = builder.RunConfig(&reboot);
  // Deliberate: a suppressed restart does not turn a run that stopped for it into a success.
  if (reboot && !noReboot) {
    WriteResult(message, "Reboot");
    return;
  }
  WriteResult(message, finished ? "Success" : "Failure");
  if (!finished) WriteStatus(message, "Tarvo", kRunStopped);
  MoveToAgentFolder(path);
}
