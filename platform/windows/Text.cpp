#include "platform/windows/Text.h"

#include "platform/windows/WindowsHeader.h"

namespace platform::windows {

std::string ToNarrow(std::wstring_view wide, unsigned codePage) {
  // The system takes an empty text for an error and would record one.
  if (wide.empty()) return {};
  const int length = static_cast<int>(wide.size());
  const int needed =
      ::WideCharToMultiByte(codePage, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(needed), '\0');
  ::WideCharToMultiByte(codePage, 0, wide.data(), length, narrow.data(), needed, nullptr, nullptr);
  return narrow;
}

std::wstring ToWide(std::string_view narrow, unsigned codePage) {
  if (narrow.empty()) return {};
  const int length = static_cast<int>(narrow.size());
  const int needed = ::MultiByteToWideChar(codePage, 0, narrow.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  ::MultiByteToWideChar(codePage, 0, narrow.data(), length, wide.data(), needed);
  return wide;
}

}  // namespace platform::windows
