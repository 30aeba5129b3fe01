// Tells the configuration builder, as events, what the sections of a configuration file ask for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/config/ConfigBuilder.h"
#include "common/logging/ILogSink.h"
#include "handlers/IAgentHost.h"
#include "handlers/internal/ConfigFile.h"

/// Works through one file. Keys that are absent or empty send no event.
class SectionTranslator {
 public:
  /// Everything is borrowed.
  SectionTranslator(ConfigFile& file, config::ConfigBuilder& builder, logging::ILogSink& log,
                    IAgentHost& host)
      : file_(file), builder_(builder), log_(log), host_(host) {}

  /// Translates all sections in file order; sections it does not know are passed over. Throws what
  /// the builder throws.
  void TranslateAll();

 private:
  struct Credentials {
    bool given = false;
    std::string user;
    std::string password;
  };

  void Translate(const std::string& section);
  void SendAgentSettings(const std::string& section);

  void TranslateNetworking(const std::string& section);
  Credentials ReadCredentials(const std::string& section);
  bool SendMembership(const std::string& section);
  void SendWithCredentials(config::EventKind kind, const std::string& value,
                           const Credentials& credentials);

  void TranslateAdapter(const std::string& section);
  void SendAddressing(const std::string& section);
  void SendDns(const std::string& section);
  void SendRoutes(const std::string& section);

  /// Empty when the key is absent.
  std::string Value(const std::string& section, std::string_view key);
  /// The pieces of a value that holds a list.
  std::vector<std::string> List(const std::string& section, std::string_view key);
  /// The indexes of the first keys made of `prefix` and a number that are present, as many as the
  /// key `countKey` says.
  std::vector<std::size_t> Indexes(const std::string& section, std::string_view prefix,
                                   std::string_view countKey);

  void Send(config::EventKind kind, const std::string& value);
  void SendEach(config::EventKind kind, const std::vector<std::string>& values);
  void SendIfPresent(config::EventKind kind, const std::string& section, std::string_view key);
  void Begin(config::EventKind kind, const std::string& value);
  void End(config::EventKind kind);

  ConfigFile& file_;
  config::ConfigBuilder& builder_;
  logging::ILogSink& log_;
  IAgentHost& host_;
};
