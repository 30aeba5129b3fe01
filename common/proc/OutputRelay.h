// Gives a child process pipes of its own and keeps what it writes.
#pragma once

#include <array>
#include <string>

#include "platform/IProcesses.h"

namespace proc {

/// Serves one run of a child. While it is attached the process's own standard handles are the
/// child's pipe ends.
class OutputRelay {
 public:
  /// Puts back the standard handles it replaced and closes its pipes.
  ~OutputRelay();
  OutputRelay& operator=(OutputRelay&&) = delete;

  /// Makes the three pipes and puts the child's ends into `startup`. False when a step fails; the
  /// standard handles are then restored.
  bool Attach(platform::StartupInfo* startup);

  /// Takes what the child has written so far and echoes it to the current standard output and
  /// error, unless those are the relay's own pipes. False when a pipe cannot be read.
  bool Pump();

  const std::string& OutputText() const { return outputText_; }
  const std::string& ErrorText() const { return errorText_; }

 private:
  struct Pipe {
    platform::Handle read = platform::Handle::kNone;
    platform::Handle write = platform::Handle::kNone;
  };

  void RestoreStandardHandles();
  bool Drain(const Pipe& pipe, platform::StandardStream echo, std::string* text);

  Pipe input_, output_, error_;
  /// In the order of `platform::StandardStream`.
  std::array<platform::Handle, 3> saved_{};
  bool isSaved_ = false;
  std::string outputText_;
  std::string errorText_;
};

}  // namespace proc
