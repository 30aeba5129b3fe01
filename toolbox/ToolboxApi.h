// The table that the library's only export hands to the agent.
#pragma once

#include <cstdint>

class IAgentHost;
class IAgentMessage;

/// Constant for the life of the library.
struct ToolboxApi {
  std::uintptr_t interfaceRevision;
  /// Stores 6, 8 and 378; the pointers must be valid.
  void (*getVersion)(std::uint32_t* major, std::uint32_t* minor, std::uint32_t* build);
  /// Handles one message and returns its handler's status: 0 when there was none or it failed.
  std::int32_t (*doMagic)(IAgentMessage* message, IAgentHost* host);
};

/// Never fails.
extern "C" const ToolboxApi* GetToolboxAPI();
