// The agent's side of a message: values in the order in which they were added, texts and numbers.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "handlers/IAgentMessage.h"

namespace tool {

class AgentHost;

/// A named value of a message.
struct MessageValue {
  std::string key;
  /// A number in decimal.
  std::string text;
  bool isNumber = false;
};

/// Two kinds of values live side by side: those the sender gave, which can only be read, and those
/// the library wrote, which hide a given value of the same key. A null text counts as empty.
class AgentMessage final : public IAgentMessage {
 public:
  using GivenValues = std::vector<std::pair<std::string, std::string>>;

  /// A message as the agent sends it; `Release` leaves it alone.
  AgentMessage(std::string type, std::string name, GivenValues given);
  /// An empty message that `maker` owns and that `Release` hands back to it.
  explicit AgentMessage(AgentHost& maker);
  AgentMessage(const AgentMessage&) = delete;
  AgentMessage& operator=(const AgentMessage&) = delete;
  ~AgentMessage() = default;

  /// What the library wrote, in order.
  const std::deque<MessageValue>& Written() const { return written_; }

  /// Replaces what the library wrote under the same key, else adds it.
  void SetIntValue(const char* key, std::int32_t value) override;
  /// Adds the pair even when the key is there already.
  void AddValue(const char* key, const char* value) override;
  /// Replaces what the library wrote under the same key, else adds it.
  void SetValue(const char* key, const char* value) override;
  void SetTypeAndName(const char* type, const char* name) override;
  const char* GetType() override { return type_.c_str(); }
  const char* GetName() override { return name_.c_str(); }
  /// The first value of the key. The text holds until the key is set again.
  const char* GetValue(const char* key) override;
  /// Reads decimal texts too; a value that is not a 32-bit number counts as absent.
  void GetIntValue(const char* key, std::uint32_t* value) override;
  void Release() override;

  void Reserved0() override {}
  void Reserved1() override {}
  void Reserved2() override {}
  void Reserved3() override {}
  void Reserved8() override {}
  void Reserved12() override {}
  void Reserved13() override {}
  void Reserved14() override {}
  void Reserved15() override {}
  void Reserved17() override {}
  void Reserved18() override {}
  void Reserved19() override {}
  void Reserved20() override {}
  void Reserved21() override {}
  void Reserved22() override {}
  void Reserved23() override {}
  void Reserved24() override {}
  void Reserved25() override {}

 private:
  void Write(const char* key, std::string text, bool isNumber);

  AgentHost* maker_ = nullptr;
  std::string type_;
  std::string name_;
  GivenValues given_;
  // A deque: what GetValue handed out stays valid as values are added.
  std::deque<MessageValue> written_;
};

}  // namespace tool
