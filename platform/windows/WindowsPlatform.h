// The computer this process runs on. Each port's file holds the body of the operation that answers
// it; the ports keep no state.
#pragma once

#include "platform/IPlatform.h"

namespace platform::windows {

/// All objects of this class are the same machine, and its ports live until the process ends.
class WindowsPlatform final : public IPlatform {
 public:
  IClock& Clock() override;
  IDirectory& Directory() override;
  IErrors& Errors() override;
  IFiles& Files() override;
  ILibraries& Libraries() override;
  IProcesses& Processes() override;
  IRegistry& Registry() override;
  IResolver& Resolver() override;
  ISecurity& Security() override;
  IServices& Services() override;
  IWmi& Wmi() override;
  std::unique_ptr<ICriticalSection> MakeCriticalSection() override;
};

}  // namespace platform::windows
