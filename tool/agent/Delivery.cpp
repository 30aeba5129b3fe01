#include "tool/agent/Delivery.h"

#include <algorithm>
#include <exception>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "base/Pieces.h"
#include "platform/ScopedPlatform.h"
#include "platform/simulated/MachineFile.h"
#include "platform/simulated/Secrets.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tool/io/CodePage.h"
#include "tool/io/JsonText.h"

namespace tool {
namespace {

using simulated::Json;

Json ToJson(const MessageValue& value) {
  return value.isNumber ? Json(std::stoi(value.text)) : Json(ShownText(value));
}

Json ToJson(const std::vector<SentMessage>& messages) {
  Json list = Json::array();
  for (const SentMessage& message : messages) {
    Json values = Json::array();
    for (const MessageValue& value : message.values) {
      values.push_back(Json::array({value.key, ToJson(value)}));
    }
    Json& entry = list.emplace_back(Json::object());
    if (!message.target.empty()) entry["target"] = message.target;
    entry["type"] = message.type;
    entry["name"] = message.name;
    entry["values"] = std::move(values);
  }
  return list;
}

void PutIntoUtf8(std::vector<MessageValue>& values) {
  for (MessageValue& value : values) {
    value.key = ToUtf8(value.key);
    value.text = ToUtf8(value.text);
  }
}

void PutIntoUtf8(std::vector<SentMessage>& messages) {
  for (SentMessage& message : messages) {
    for (std::string* text : {&message.target, &message.type, &message.name}) {
      *text = ToUtf8(*text);
    }
    PutIntoUtf8(message.values);
  }
}

void PutIntoUtf8(simulated::Value& value) {
  if (auto* text = std::get_if<std::string>(&value)) *text = ToUtf8(*text);
  if (auto* texts = std::get_if<std::vector<std::string>>(&value)) {
    for (std::string& text : *texts) text = ToUtf8(text);
  }
  if (auto* fields = std::get_if<simulated::Fields>(&value)) {
    for (auto& [name, inner] : *fields) PutIntoUtf8(inner);
  }
}

}  // namespace

std::string ShownText(const MessageValue& value) {
  if (simulated::NamesSecret(value.key)) return simulated::kHidden;
  // A comment that is passed on as a value is a whole line of the file.
  return value.key.empty() ? simulated::RedactedFile(value.text)
                           : simulated::RedactedValue(value.text);
}

std::string Delivery::Result() const {
  const auto result = std::find_if(reply.begin(), reply.end(),
                                   [](const auto& value) { return value.key == "Result"; });
  return result != reply.end() ? ShownText(*result) : "";
}

bool Delivery::Succeeded() const {
  const std::string result = Result();
  if (result.empty()) return status != 0 && exception.empty();
  return result == "Success" || result == "Reboot";
}

std::string Delivery::Failure() const {
  if (Succeeded()) return {};
  if (!exception.empty()) return exception;
  // A caught error is the second line of its report; one that nobody caught follows its lead.
  for (const std::string_view lead : {"\n\t", "Exception Details: "}) {
    for (const LogLine& line : log) {
      const std::size_t at = line.text.find(lead);
      if (line.level != 0 || at == std::string::npos) continue;
      const std::size_t start = at + lead.size();
      return std::string(
          base::Trimmed(line.text.substr(start, line.text.find('\n', start) - start)));
    }
  }
  if (status == 0 && !log.empty()) return log.back().text;
  std::string codes = "status " + std::to_string(status);
  for (const MessageValue& value : reply) {
    if (value.key.starts_with("Status-")) codes += ", " + value.key + " " + ShownText(value);
  }
  return codes;
}

Delivery Deliver(const ToolboxApi& library, Request request) {
  AgentMessage::GivenValues given;
  for (const auto& [key, value] : request.values) {
    const std::string whole = key + "=" + value;
    given.emplace_back(BytesOf(whole, key), BytesOf(whole, value));
  }
  Delivery delivery;
  delivery.request = std::move(request);
  AgentHost host;
  AgentMessage message(delivery.request.type, delivery.request.name, std::move(given));
  try {
    delivery.status = library.doMagic(&message, &host);
  } catch (const std::exception& error) {
    delivery.exception = ToUtf8(error.what());
  }
  delivery.reply.assign(message.Written().begin(), message.Written().end());
  PutIntoUtf8(delivery.reply);
  for (const LogLine& line : host.LogLines()) {
    delivery.log.push_back({line.level, ToUtf8(line.text)});
  }
  delivery.sent = host.Sent();
  PutIntoUtf8(delivery.sent);
  delivery.posted = host.Posted();
  PutIntoUtf8(delivery.posted);
  delivery.unreleasedMessages = host.Unreleased();
  return delivery;
}

std::vector<simulated::Change> ShownChanges(const simulated::Machine& machine, std::size_t from) {
  std::vector<simulated::Change> changes(
      machine.journal.begin() + static_cast<std::ptrdiff_t>(from), machine.journal.end());
  for (simulated::Change& change : changes) {
    change = simulated::Redacted(change);
    for (auto& [name, value] : change.fields) PutIntoUtf8(value);
  }
  return changes;
}

Delivery Deliver(Request request, simulated::Machine& machine) {
  const std::size_t journalStart = machine.journal.size();
  simulated::SimulatedPlatform platform(machine);
  const platform::ScopedPlatform scope(platform);
  Delivery delivery = Deliver(*GetToolboxAPI(), std::move(request));
  delivery.changes = ShownChanges(machine, journalStart);
  delivery.stillInUse = platform.InUse();
  return delivery;
}

Json ToJson(const Delivery& delivery) {
  Json reply = Json::object();
  for (const MessageValue& value : delivery.reply) reply[value.key] = ToJson(value);
  Json log = Json::array();
  for (const LogLine& line : delivery.log) {
    log.push_back({{"level", line.level}, {"text", simulated::RedactedText(line.text)}});
  }
  Json json;
  json["schema"] = 1;
  json["status"] = delivery.status;
  json["reply"] = std::move(reply);
  json["log"] = std::move(log);
  json["changes"] = delivery.changes;
  json["sent"] = ToJson(delivery.sent);
  json["posted"] = ToJson(delivery.posted);
  json["restarts"] = delivery.restarts;
  // Only there when it happened: a library that keeps its promise never lets one pass.
  if (!delivery.exception.empty()) json["exception"] = delivery.exception;
  return json;
}

std::string PrintedLiveJson(const Delivery& delivery) {
  Json json = ToJson(delivery);
  json.erase("changes");
  json.erase("restarts");
  return PrintedJson(json);
}

}  // namespace tool
