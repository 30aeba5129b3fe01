#include "handlers/internal/AgentFiles.h"

#include "common/sys/OsVersion.h"

AgentFiles AgentFiles::Locate() {
  sys::OsVersion system;
  system.Query();
  const std::string folder = system.SystemFolder();
  return {folder + "tarvo.cfg", folder + "restore.cfg"};
}
