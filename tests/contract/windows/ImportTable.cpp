#include "tests/contract/windows/ImportTable.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace contract {
namespace {

std::vector<void**> Slots(HMODULE library) {
  auto* const base = reinterpret_cast<std::byte*>(library);
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  std::vector<void**> slots;
  for (auto* from =
           reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
       from->Name != 0; ++from) {
    auto** slot = reinterpret_cast<void**>(base + from->FirstThunk);
    for (; *slot != nullptr; ++slot) slots.push_back(slot);
  }
  return slots;
}

void Store(void** slot, void* function) {
  DWORD protection = 0;
  EXPECT_TRUE(VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection));
  *slot = function;
  EXPECT_TRUE(VirtualProtect(slot, sizeof *slot, protection, &protection));
}

}  // namespace

ImportTable::ImportTable(HMODULE library, std::span<const Substitute> substitutes) {
  const std::vector<void**> slots = Slots(library);
  for (const Substitute& substitute : substitutes) {
    // What a slot holds is the function itself, whichever library really has it.
    void* const original = reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleA(substitute.module), substitute.name));
    for (void** slot : slots) {
      if (*slot != original) continue;
      Store(slot, substitute.replacement);
      replaced_.push_back({slot, original});
    }
  }
}

ImportTable::~ImportTable() {
  for (const Replaced& replaced : replaced_) Store(replaced.slot, replaced.original);
}

}  // namespace contract
