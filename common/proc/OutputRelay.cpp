#include "common/proc/OutputRelay.h"

#include "platform/IPlatform.h"

namespace proc {
namespace {

using platform::Handle;
using platform::StandardStream;

constexpr std::uint32_t kLargePipe = 0x10000;
constexpr std::uint32_t kDefaultPipe = 0;
constexpr std::size_t kChunk = 4096;
constexpr StandardStream kStreams[] = {StandardStream::kOutput, StandardStream::kError,
                                       StandardStream::kInput};

platform::IProcesses& Port() { return platform::Current().Processes(); }

/// Replaces a handle by a duplicate that children do not inherit.
bool MakePrivate(Handle* handle) {
  Handle copy = Handle::kNone;
  if (!Port().Duplicate(*handle, &copy)) return false;
  Port().Close(*handle);
  *handle = copy;
  return true;
}

std::size_t At(StandardStream stream) { return static_cast<std::size_t>(stream); }

}  // namespace

OutputRelay::~OutputRelay() {
  RestoreStandardHandles();
  for (const Pipe& pipe : {input_, output_, error_}) {
    for (const Handle end : {pipe.read, pipe.write}) {
      if (end != Handle::kNone) Port().Close(end);
    }
  }
}

bool OutputRelay::Attach(platform::StartupInfo* startup) {
  if (!Port().MakePipe(&input_.read, &input_.write, kLargePipe) ||
      !Port().MakePipe(&output_.read, &output_.write, kDefaultPipe) ||
      !Port().MakePipe(&error_.read, &error_.write, kLargePipe)) {
    return false;
  }
  for (const StandardStream stream : kStreams) {
    saved_[At(stream)] = Port().GetStandardHandle(stream);
  }
  isSaved_ = true;
  if (!Port().SetStandardHandle(StandardStream::kOutput, output_.write) ||
      !Port().SetStandardHandle(StandardStream::kError, error_.write) ||
      !Port().SetStandardHandle(StandardStream::kInput, input_.read) ||
      !MakePrivate(&input_.write) || !MakePrivate(&output_.read) || !MakePrivate(&error_.read)) {
    RestoreStandardHandles();
    return false;
  }
  startup->standardError = error_.write;
  startup->standardOutput = output_.write;
  startup->standardInput = input_.read;
  startup->flags |= platform::kUseStandardHandles;
  return true;
}

void OutputRelay::RestoreStandardHandles() {
  if (!isSaved_) return;
  for (const StandardStream stream : kStreams) {
    Port().SetStandardHandle(stream, saved_[At(stream)]);
  }
  isSaved_ = false;
}

bool OutputRelay::Pump() {
  const bool output = Drain(output_, StandardStream::kOutput, &outputText_);
  const bool error = Drain(error_, StandardStream::kError, &errorText_);
  return output && error;
}

bool OutputRelay::Drain(const Pipe& pipe, StandardStream echo, std::string* text) {
  std::array<char, kChunk> buffer;
  for (;;) {
    std::uint32_t available = 0;
    if (!Port().Peek(pipe.read, &available)) return false;
    if (available == 0) return true;
    std::uint32_t read = 0;
    if (!Port().Read(pipe.read, buffer.data(), kChunk, &read)) return false;
    text->append(buffer.data(), read);  // zeros in it as well, as a child writes wide texts
    // Echoed into its own pipe, the text would come back for ever.
    const Handle target = Port().GetStandardHandle(echo);
    if (target != Handle::kNone && target != pipe.write) {
      Port().Write(target, buffer.data(), read);
    }
  }
}

}  // namespace proc
