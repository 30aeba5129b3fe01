// What a Configure message asks of the machine: from the message to the ordered queue of commands.
#pragma once

#include <cstdint>
#include <string>

#include "common/config/ConfigBuilder.h"
#include "handlers/MessageHandler.h"
#include "handlers/internal/AgentFiles.h"
#include "handlers/internal/ConfigFile.h"
#include "handlers/internal/IEventListener.h"

/// Serves one message: `Open`, `Build`, `Analyze`, `PutAway`, in this order. Beyond the hand-over
/// of a restore file and the flag that the preparation of an image leaves, nothing of the machine
/// is changed.
class ConfigurePlan {
 public:
  enum class Opening : std::uint8_t {
    kLoaded,      ///< `Build` comes next
    kHandedOver,  ///< a restore file took the agent's file's place; a message naming it is posted
    kHandOverRefused,  ///< the same, but the host did not take the message
    kNoFile,           ///< there is no file of the message's "Filename"
    kNotLoaded,        ///< `Loaded` says why; no setting of the file is applied
  };

  /// What section "Global" says.
  struct GlobalSettings {
    bool noReboot = false;
    bool afterCreateImage = false;
    std::string scheduleId;
    std::string taskSequence;
  };

  /// Everything is borrowed.
  ConfigurePlan(logging::ILogSink& log, IAgentHost& host, IEventListener& listener)
      : log_(log), host_(host), listener_(listener), builder_(log) {}

  /// Finds and loads what is to be configured from. Throws what reading the operating system and
  /// handing over throws.
  Opening Open(IAgentMessage& message);
  /// Tells the builder what the file asks for. Throws what the builder throws.
  void Build();
  /// Throws as ConfigBuilder::Analyze.
  void Analyze(config::analyzer::Analysis* analysis = nullptr);
  /// Moves the file to the agent's folder when the run ends, over one of its name. Throws
  /// util::CFileIOError.
  void PutAway();

  /// The message's "Filename".
  const std::string& Path() const { return path_; }
  ConfigFile::Result Loaded() const { return loaded_; }
  ConfigFile& File() { return file_; }
  const GlobalSettings& Global() const { return global_; }
  config::ConfigBuilder& Builder() { return builder_; }

 private:
  Opening HandOver(const AgentFiles& files, OwnedMessage message);
  void SendEnableNetworking();

  logging::ILogSink& log_;
  IAgentHost& host_;
  IEventListener& listener_;
  config::ConfigBuilder builder_;
  ConfigFile file_{/*caseSensitive=*/false};
  ConfigFile::Result loaded_ = ConfigFile::kSuccess;
  std::string path_;
  bool networkDisabled_ = false;
  GlobalSettings global_;
};
