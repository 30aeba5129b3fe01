#include "tool/agent/AgentMessage.h"

#include <algorithm>
#include <charconv>

#include "tool/agent/AgentHost.h"

namespace tool {
namespace {

std::string Text(const char* text) { return text != nullptr ? text : ""; }

}  // namespace

AgentMessage::AgentMessage(std::string type, std::string name, GivenValues given)
    : type_(std::move(type)), name_(std::move(name)), given_(std::move(given)) {}

AgentMessage::AgentMessage(AgentHost& maker) : maker_(&maker) {}

void AgentMessage::SetIntValue(const char* key, std::int32_t value) {
  Write(key, std::to_string(value), /*isNumber=*/true);
}

void AgentMessage::AddValue(const char* key, const char* value) {
  written_.push_back({Text(key), Text(value)});
}

void AgentMessage::SetValue(const char* key, const char* value) {
  Write(key, Text(value), /*isNumber=*/false);
}

void AgentMessage::SetTypeAndName(const char* type, const char* name) {
  type_ = Text(type);
  name_ = Text(name);
}

const char* AgentMessage::GetValue(const char* key) {
  const std::string wanted = Text(key);
  for (const MessageValue& value : written_) {
    if (value.key == wanted) return value.text.c_str();
  }
  for (const auto& [name, text] : given_) {
    if (name == wanted) return text.c_str();
  }
  return nullptr;
}

void AgentMessage::GetIntValue(const char* key, std::uint32_t* value) {
  const char* found = GetValue(key);
  if (found == nullptr) return;
  const std::string text = found;
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool fits = number >= INT32_MIN && number <= std::int64_t{UINT32_MAX};
  if (error == std::errc{} && end == text.data() + text.size() && fits) {
    *value = static_cast<std::uint32_t>(number);
  }
}

void AgentMessage::Release() {
  if (maker_ != nullptr) maker_->Destroy(this);
}

void AgentMessage::Write(const char* key, std::string text, bool isNumber) {
  MessageValue written{Text(key), std::move(text), isNumber};
  const auto same = std::find_if(written_.begin(), written_.end(), [&](const MessageValue& value) {
    return value.key == written.key;
  });
  if (same != written_.end()) {
    *same = std::move(written);
  } else {
    written_.push_back(std::move(written));
  }
}

}  // namespace tool
