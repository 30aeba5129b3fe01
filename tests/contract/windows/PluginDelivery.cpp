// The road through the library as it is shipped, on Windows: each delivery of a scenario also goes
// through the library that is linked into this program, and the two must tell the same story.
#include <gtest/gtest.h>

#include <utility>

#include "platform/simulated/MachineFile.h"
#include "tests/contract/windows/MirroredCalls.h"
#include "tests/support/FreshProcess.h"
#include "tool/agent/Delivery.h"
// windows.h renames what others declare, so it comes last.
#include <windows.h>

#include <nlohmann/json.hpp>

namespace tool {
namespace {

HMODULE plugin = nullptr;

const ToolboxApi& Table() {
  if (plugin == nullptr) plugin = LoadLibraryA(CONFIG_LIBRARY_PATH);
  EXPECT_NE(plugin, nullptr) << CONFIG_LIBRARY_PATH << ": " << GetLastError();
  const FARPROC entry = GetProcAddress(plugin, "GetToolboxAPI");
  return *reinterpret_cast<const ToolboxApi* (*)()>(reinterpret_cast<void*>(entry))();
}

void ExpectSame(const simulated::Json& linked, const simulated::Json& shipped) {
  EXPECT_EQ(shipped, linked) << "the roads differ: " << simulated::Json::diff(linked, shipped);
}

}  // namespace

Delivery Deliver(Request request, simulated::Machine& machine) {
  simulated::Machine copy = machine;
  const Delivery linked = DeliverInProcess(request, copy);
  const std::size_t journalStart = machine.journal.size();
  const ToolboxApi& table = Table();
  Delivery shipped;
  {
    const contract::MirroredCalls calls(plugin, machine);
    shipped = Hand(table, std::move(request));
    shipped.stillInUse = calls.InUse();
  }
  shipped.changes = ShownChanges(machine, journalStart);
  ExpectSame(ToJson(linked), ToJson(shipped));
  EXPECT_TRUE(shipped.stillInUse == linked.stillInUse);
  EXPECT_TRUE(!machine.faults.empty() || linked.stillInUse == simulated::Usage{});
  EXPECT_EQ(shipped.unreleasedMessages + linked.unreleasedMessages, 0U);
  ExpectSame(simulated::ToJson(copy, false), simulated::ToJson(machine, false));
  return shipped;
}

}  // namespace tool

namespace support {

const bool kRoadIsSlow = true;

void StartFreshProcess() {
  ForgetProcess();
  if (tool::plugin != nullptr) FreeLibrary(tool::plugin);
  tool::plugin = nullptr;
}

}  // namespace support
