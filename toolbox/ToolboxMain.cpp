#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "common/logging/LogLines.h"
#include "common/util/Finally.h"
#include "common/util/Wiping.h"
#include "handlers/Version.h"
#include "handlers/internal/Configure.h"
#include "handlers/internal/DefaultHandler.h"
#include "handlers/internal/PrepForImage.h"
#include "handlers/internal/UpdateInfo.h"
#include "toolbox/ToolboxApi.h"

namespace {

constexpr char kSource[] = "Toolbox-Main";

/// The message entry's own error.
struct CTBXAPIError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;
};
constexpr err::Site kNullArgument{kSource, "DoMagic - Bad Parameter (NULL)", 71};
constexpr int kFindingHandlerLine = 77;
constexpr int kUnhandledLine = 103;

// ---- Which handler a message gets ---------------------------------------------------------------

using HandlerFactory = CMessageHandler* (*)();

template <typename Handler>
CMessageHandler* Make() {
  return new (std::nothrow) Handler;
}

/// The first row that fits counts; one without a name takes any name.
constexpr struct {
  const char* type;
  const char* name;
  HandlerFactory make;
} kHandlers[] = {
    {"Request", nullptr, Make<DefaultHandler>},       {"Reply", nullptr, Make<DefaultHandler>},
    {"Internal", "UpdateInfo", Make<UpdateInfo>},     {"Internal", "Configure", Make<Configure>},
    {"Internal", "PrepForImage", Make<PrepForImage>}, {"Internal", nullptr, Make<DefaultHandler>}};

/// Compares byte by byte. Null when no row matches or memory runs out.
std::unique_ptr<CMessageHandler> FindHandler(std::string_view type, std::string_view name) {
  for (const auto& row : kHandlers) {
    if (row.type == type && (row.name == nullptr || row.name == name)) {
      return std::unique_ptr<CMessageHandler>(row.make());
    }
  }
  return nullptr;
}

// ---- The table ----------------------------------------------------------------------------------

void GetVersion(std::uint32_t* major, std::uint32_t* minor, std::uint32_t* build) {
  *major = version::kMajor;
  *minor = version::kMinor;
  *build = version::kBuild;
}

std::int32_t Dispatch(IAgentMessage* message, IAgentHost* host) {
  if (message == nullptr || host == nullptr) {
    throw CTBXAPIError{kNullArgument, /*value=*/0, /*systemError=*/0};
  }
  const std::string type = message->GetType();
  const std::string name = message->GetName();
  host->Log(logging::kProgress, logging::kFindingHandler, kSource, kFindingHandlerLine,
            type.c_str(), name.c_str());
  // Deliberate: the look-up asks the message again, for the name first.
  const char* const soughtName = message->GetName();
  const char* const soughtType = message->GetType();
  const std::unique_ptr<CMessageHandler> handler = FindHandler(soughtType, soughtName);
  if (handler == nullptr) return 0;
  handler->SetHost(host);
  return handler->HandleMessage(message, host);
}

std::int32_t DoMagic(IAgentMessage* message, IAgentHost* host) {
  // When a message ends, no secret of it stays in memory; see also the plug-in's heap.
  const util::Finally wipe(util::WipeFreedStack);
  try {
    return Dispatch(message, host);
  } catch (const err::CGeneralError& error) {
    // Other exceptions pass to the agent.
    if (host != nullptr) {
      host->Log(logging::kFailure, logging::kUnhandled, kSource, kUnhandledLine);
      host->Log(logging::kFailure, logging::kExceptionDetails, error.file, error.line,
                error.message, error.SystemError);
    }
    return 0;
  }
}

constexpr ToolboxApi kApi{/*interfaceRevision=*/1, GetVersion, DoMagic};

}  // namespace

extern "C" const ToolboxApi* GetToolboxAPI() { return &kApi; }
