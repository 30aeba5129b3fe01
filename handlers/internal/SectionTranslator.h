// Tells the configuration builder, as events, what the sections of a configuration file ask for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/ConfigKeys.h"
#include "common/config/ConfigBuilder.h"
#include "handlers/IAgentHost.h"
#include "handlers/internal/ConfigFile.h"
#include "handlers/internal/IEventListener.h"

/// Works through one file. Keys that are absent or empty send no event.
class SectionTranslator {
 public:
  /// Everything is borrowed.
  SectionTranslator(ConfigFile& file, config::ConfigBuilder& builder, logging::ILogSink& log,
                    IAgentHost& host, IEventListener& listener)
      : file_(file), builder_(builder), log_(log), host_(host), listener_(listener) {}

  /// Translates all sections in file order; sections it does not know are passed over. Throws what
  /// the builder throws.
  void TranslateAll();

 private:
  /// The name of a key, numbered or not; it holds as long as the text that it is made from.
  struct KeyName {
    KeyName(base::Key key) : text(NameOf(key)) {}
    KeyName(const std::string& numbered) : text(numbered) {}
    std::string_view text;
  };
  struct Credentials {
    bool given = false;
    std::string user;
    std::string password;
  };

  void SendAgentSettings();

  void TranslateNetworking();
  Credentials ReadCredentials();
  bool SendMembership();
  void SendWithCredentials(config::EventKind kind, KeyName key, const Credentials& credentials);

  void TranslateAdapter();
  void SendAddressing();
  void SendDns();
  void SendRoutes();

  /// A value of the section; empty when the key is absent.
  std::string Value(KeyName key);
  /// The pieces of a value that holds a list.
  std::vector<std::string> List(KeyName key);

  // The key is the one that asks for the event.

  void Send(config::EventKind kind, KeyName key, const std::string& value,
            config::Event phase = config::Event::VALUE);
  void SendEach(config::EventKind kind, KeyName key);
  void SendIfPresent(config::EventKind kind, KeyName key);

  ConfigFile& file_;
  config::ConfigBuilder& builder_;
  logging::ILogSink& log_;
  IAgentHost& host_;
  IEventListener& listener_;
  std::string section_;  // the one being translated
};
