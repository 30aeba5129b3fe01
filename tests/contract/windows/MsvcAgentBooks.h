// What the agent's objects of MsvcAgent.h remember, for tests to fill in and to read back.
#pragma once

#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/contract/windows/MsvcAgent.h"

struct MessageBook {
  HostBook* host;
  std::string type;
  std::string name;
  /// The values that the message answers.
  std::map<std::string, std::string> given;
  /// The values that the library wrote, in order: "AddValue Key=value".
  std::vector<std::string> written;
};

struct HostBook {
  /// What `Post` answers.
  int32_t postAnswer = 1;
  /// The finished lines: "1 Toolbox-Main:77 ...".
  std::vector<std::string> log;
  /// The messages as they were when they were handed over, and to whom.
  std::vector<std::pair<std::string, MessageBook>> sent;
  std::vector<MessageBook> posted;
  /// The messages that live; their places do not move.
  std::list<MessageBook> messages;
};
