#include "tests/contract/windows/MsvcAgentBooks.h"

#include <gtest/gtest.h>

#include <cstdio>

extern "C" {

void OnSendTo(HostBook* book, const char* target, MessageBook* message) {
  book->sent.emplace_back(target, *message);
}

int32_t OnPost(HostBook* book, MessageBook* message) {
  book->posted.push_back(*message);
  return book->postAnswer;
}

void OnLog(HostBook* book, uint32_t level, const char* format, va_list arguments) {
  char line[2048];
  std::vsnprintf(line, sizeof line, format, arguments);
  book->log.push_back(std::to_string(level) + " " + line);
}

MessageBook* OnCreateMessage(HostBook* book) {
  return &book->messages.emplace_back(MessageBook{book, {}, {}, {}, {}});
}

void OnSetIntValue(MessageBook* book, const char* key, int32_t value) {
  book->written.push_back(std::string("SetIntValue ") + key + "=" + std::to_string(value));
}

void OnAddValue(MessageBook* book, const char* key, const char* value) {
  book->written.push_back(std::string("AddValue ") + key + "=" + value);
}

void OnSetValue(MessageBook* book, const char* key, const char* value) {
  book->written.push_back(std::string("SetValue ") + key + "=" + value);
}

void OnSetTypeAndName(MessageBook* book, const char* type, const char* name) {
  book->type = type;
  book->name = name;
}

const char* OnGetType(MessageBook* book) { return book->type.c_str(); }

const char* OnGetName(MessageBook* book) { return book->name.c_str(); }

const char* OnGetValue(MessageBook* book, const char* key) {
  const auto found = book->given.find(key);
  return found == book->given.end() ? nullptr : found->second.c_str();
}

void OnGetIntValue(MessageBook* book, const char* key, uint32_t* value) {
  const auto found = book->given.find(key);
  if (found != book->given.end()) *value = static_cast<uint32_t>(std::stoul(found->second));
}

void OnMessageEnd(MessageBook* book) {
  book->host->messages.remove_if([book](const MessageBook& message) { return &message == book; });
}

void OnForbiddenSlot(const char* object, int32_t slot) {
  ADD_FAILURE() << "the library called slot " << slot << " of the " << object;
}
}
