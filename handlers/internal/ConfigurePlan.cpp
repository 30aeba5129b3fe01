#include "handlers/internal/ConfigurePlan.h"

#include <new>
#include <string_view>
#include <utility>

#include "base/ConfigKeys.h"
#include "base/LetterCase.h"
#include "common/logging/LogLines.h"
#include "common/sys/Registry.h"
#include "common/util/FileUtils.h"
#include "handlers/internal/NetworkDisabledFlag.h"
#include "handlers/internal/SectionTranslator.h"

namespace {

using base::Key;

constexpr char kPath[] = "internal/Configure";

/// The lines of the log calls.
enum Line : int {
  kEntered = 107,
  kFile = 115,
  kNotLoadedLine = 124,
  kEvents = 147,
  kNetworkDisabled = 152,
  kAfterDeployImage = 155,
  kAfterCreateImage = 160,
  kRun = 544,
  kNoFileLine = 629,
};

std::string GlobalValue(ConfigFile& file, Key key) {
  const std::string_view section = NameOf(base::SectionKind::kGlobal);
  return std::string(file.FindValue(section, NameOf(key)).value_or(std::string_view()));
}

ConfigurePlan::GlobalSettings ReadGlobal(ConfigFile& file) {
  return {base::SameText(GlobalValue(file, Key::kRebootAfterConfig), "false"),
          base::SameText(GlobalValue(file, Key::kConfig), base::kRestoreAfterCreate),
          GlobalValue(file, Key::kScheduleId), GlobalValue(file, Key::kTaskSequence)};
}

bool RestoreIsPending(const AgentFiles& files) {
  if (!util::FileExists(files.configuration)) return false;
  ConfigFile file(/*caseSensitive=*/false);
  // Deliberate: the result of the load is ignored; a damaged file must not hide a restore that
  // waits.
  file.Load(files.configuration, /*merge=*/false);
  return base::SameText(GlobalValue(file, Key::kConfig), base::kRestore) &&
         util::FileExists(files.restore);
}

/// Puts a flag that was taken back for the next message.
void ReturnNetworkDisabledFlag() {
  try {
    SetNetworkDisabledFlag();
  } catch (const sys::RegistryError&) {
    // Deliberate: no reply to this message would bring the flag back.
  }
}

}  // namespace

ConfigurePlan::Opening ConfigurePlan::Open(IAgentMessage& message) {
  const AgentFiles files = AgentFiles::Locate();
  OwnedMessage handOver(host_.CreateMessage());
  if (RestoreIsPending(files)) return HandOver(files, std::move(handOver));
  handOver.reset();

  networkDisabled_ = TakeNetworkDisabledFlag();
  log_.Log(logging::kProgress, "%s:%d Configure::HandleMessage", kPath, kEntered);
  const char* const fileName = message.GetValue("Filename");
  path_ = fileName == nullptr ? "" : fileName;
  log_.Log(logging::kDetail, logging::kConfigFile, kPath, kFile, path_.c_str());
  if (!util::FileExists(path_)) {
    log_.Log(logging::kFailure, logging::kNoFile, kPath, kNoFileLine, path_.c_str());
    return Opening::kNoFile;
  }
  loaded_ = file_.Load(path_, /*merge=*/false);
  if (loaded_ != ConfigFile::kSuccess) {
    // Half-understood settings are never applied; the file stays for whoever looks into it.
    log_.Log(logging::kFailure, logging::kNotLoaded, kPath, kNotLoadedLine, path_.c_str(),
             static_cast<int>(loaded_));
    if (networkDisabled_) ReturnNetworkDisabledFlag();
    return Opening::kNotLoaded;
  }
  global_ = ReadGlobal(file_);
  return Opening::kLoaded;
}

/// Puts the restore file in the place of the agent's file and posts a message that names it.
ConfigurePlan::Opening ConfigurePlan::HandOver(const AgentFiles& files, OwnedMessage message) {
  if (message == nullptr) throw std::bad_alloc();
  util::Delete(files.configuration);
  util::Move(files.restore, files.configuration);
  message->SetTypeAndName("Internal", "Configure");
  message->SetValue("Filename", files.configuration.c_str());
  const bool taken = (host_.Post(message.get()) & 0xFF) != 0;
  return taken ? Opening::kHandedOver : Opening::kHandOverRefused;
}

void ConfigurePlan::Build() {
  log_.Log(logging::kDetail, "%s:%d Configure::HandleMessage(): about to call ConfigEvent()", kPath,
           kEvents);
  if (networkDisabled_) SendEnableNetworking();
  SectionTranslator(file_, builder_, log_, host_, listener_).TranslateAll();
}

void ConfigurePlan::SendEnableNetworking() {
  log_.Log(logging::kFailure, "%s:%d Networking was disabled see if we need to go to wrk grp",
           kPath, kNetworkDisabled);
  log_.Log(logging::kFailure,
           global_.afterCreateImage
               ? "%s:%d Looks we are coming after create image, No need to go to wrk grp"
               : "%s:%d Looks we are coming after deploy image, need to go to wrk grp",
           kPath, global_.afterCreateImage ? kAfterCreateImage : kAfterDeployImage);
  const std::string leaveDomain = global_.afterCreateImage ? "false" : "true";
  const SourcedEvent event{config::EventKind::ENABLE_NETWORKING, config::Event::VALUE, leaveDomain};
  listener_.Sending(event);
  listener_.Taken(builder_.ConfigEvent(event.kind, event.phase, event.value));
}

void ConfigurePlan::Analyze(config::analyzer::Analysis* analysis) {
  log_.Log(logging::kFailure,
           "%s:%d Configure::HandleMessage(): about to call Analyze() and RunConfig()", kPath,
           kRun);
  builder_.Analyze(analysis);
}

void ConfigurePlan::PutAway() {
  const std::string destination = util::ExecutableFolder() + "\\" + util::FileName(path_);
  if (util::FileExists(destination)) {
    // A file that is there already must not be deleted to make room for itself.
    if (util::SameFile(path_, destination)) return;
    util::Delete(destination);
  }
  util::Move(path_, destination);
}
