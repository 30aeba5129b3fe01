#include "tool/agent/AgentHost.h"

#include <cstdarg>
#include <string_view>

#include "common/util/Format.h"

namespace tool {
namespace {

SentMessage Copy(const char* target, IAgentMessage& message) {
  // Every message the library can hold was made by this program.
  const auto& written = static_cast<AgentMessage&>(message).Written();
  return {target, message.GetType(), message.GetName(), {written.begin(), written.end()}};
}

/// Finished texts begin with the source path of the line, so they never look like one of these.
bool HasArguments(std::string_view format) {
  return format.starts_with("%s:%d ") || format.starts_with("Exception Details: %s:%d");
}

}  // namespace

void AgentHost::Destroy(const AgentMessage* message) {
  std::erase_if(created_, [=](const auto& owned) { return owned.get() == message; });
}

void AgentHost::SendTo(const char* target, IAgentMessage* message) {
  sent_.push_back(Copy(target, *message));
}

std::int32_t AgentHost::Post(IAgentMessage* message) {
  posted_.push_back(Copy("", *message));
  return 1;
}

void AgentHost::Log(std::uint32_t level, const char* format, ...) {
  std::string text = format;
  if (HasArguments(text)) {
    std::va_list arguments;
    va_start(arguments, format);
    text = util::FormatArguments(format, arguments);
    va_end(arguments);
  }
  log_.push_back({level, std::move(text)});
}

IAgentMessage* AgentHost::CreateMessage() {
  return created_.emplace_back(std::make_unique<AgentMessage>(*this)).get();
}

}  // namespace tool
