// The agent's side of a call: records what the library logs, sends and posts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "handlers/IAgentHost.h"
#include "tool/agent/AgentMessage.h"

namespace tool {

struct LogLine {
  std::uint32_t level = 0;
  std::string text;
};

/// A copy of a message as it was when the library handed it over.
struct SentMessage {
  /// The component it was sent to; empty for a posted message.
  std::string target;
  std::string type;
  std::string name;
  std::vector<MessageValue> values;
};

/// Owns every message that the library creates and does not release. Serves one call of the
/// library.
class AgentHost final : public IAgentHost {
 public:
  AgentHost() = default;
  AgentHost(const AgentHost&) = delete;
  AgentHost& operator=(const AgentHost&) = delete;
  ~AgentHost() = default;

  const std::vector<LogLine>& LogLines() const { return log_; }
  const std::vector<SentMessage>& Sent() const { return sent_; }
  const std::vector<SentMessage>& Posted() const { return posted_; }
  /// Messages that the library made and has not released.
  std::size_t Unreleased() const { return created_.size(); }

  /// Ends a message that `CreateMessage` made; any other is left alone.
  void Destroy(const AgentMessage* message);

  void SendTo(const char* target, IAgentMessage* message) override;
  /// Accepts every message and answers 1.
  std::int32_t Post(IAgentMessage* message) override;
  /// Formats only the lines that the library passes with arguments; any other format is a finished
  /// text and is kept unchanged, whatever "%" it holds.
  void Log(std::uint32_t level, const char* format, ...) override;
  IAgentMessage* CreateMessage() override;

  void Reserved0() override {}

 private:
  std::vector<std::unique_ptr<AgentMessage>> created_;
  std::vector<LogLine> log_;
  std::vector<SentMessage> sent_;
  std::vector<SentMessage> posted_;
};

}  // namespace tool
