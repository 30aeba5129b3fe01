#include "handlers/MessageHandler.h"

#include <cstdarg>
#include <new>
#include <string>

#include "common/util/Format.h"

OwnedMessage NewMessage(IAgentHost& host) {
  OwnedMessage message(host.CreateMessage());
  if (message == nullptr) throw std::bad_alloc();
  return message;
}

void CMessageHandler::Log(std::uint32_t level, const char* format, ...) {
  if (host_ == nullptr || format == nullptr) return;
  std::va_list arguments;
  va_start(arguments, format);
  const std::string text = util::FormatArguments(format, arguments);
  va_end(arguments);
  // Deliberate: the finished text goes as the format, so the host reads a "%" in it once more.
  host_->Log(level, text.c_str());
}

void CMessageHandler::LogRecord(const char* format, const char* path, int line,
                                const err::CGeneralError& error) {
  Log(logging::kFailure, format, path, line, error.file, error.line, error.message, error.Value,
      error.SystemError);
}
