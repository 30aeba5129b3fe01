#include "handlers/internal/UpdateInfo.h"

#include <string>

#include "handlers/Version.h"

namespace {

constexpr std::int32_t kHandled = 2;
constexpr char kCountKey[] = "Auto-Update-Count";

}  // namespace

std::int32_t UpdateInfo::HandleMessage(IAgentMessage* message, IAgentHost* /*host*/) {
  std::uint32_t count = 0;
  message->GetIntValue(kCountKey, &count);
  const std::string index = std::to_string(count);

  // Deliberate: the current file has no folder, the pattern has one.
  const std::string current = version::LibraryFileName();
  const std::string pattern = R"(agents\tarvo\)" + version::LibraryFileName("*");
  message->AddValue(("Auto-Update-Current" + index).c_str(), current.c_str());
  message->AddValue(("Auto-Update-Pattern" + index).c_str(), pattern.c_str());
  message->SetIntValue(kCountKey, static_cast<std::int32_t>(count + 1));
  return kHandled;
}
