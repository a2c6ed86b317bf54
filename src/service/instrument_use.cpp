#include "service/instrument_use.h"

namespace tavrel {
namespace {

bool Records(const RunState& state, int slot, int inet) {
  const UnitRecord& unit = state.Unit[slot];
  return !state.SlotFile[slot].empty() && unit.UnitInet == inet && unit.UnitRecOn == 1;
}

}  // namespace

std::vector<int> SlotsThatRecord(const RunState& state, int inet, int input) {
  std::vector<int> slots;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (IsInput(input) && Records(state, slot, inet) && state.Unit[slot].IsRecorded(input)) {
      slots.push_back(slot);
    }
  }
  return slots;
}

std::string TestsThatRecord(const RunState& state, int inet) {
  std::string tests;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (Records(state, slot, inet)) {
      tests += (tests.empty() ? "" : "\n") + NameOfTest(state, slot);
    }
  }
  return tests;
}

std::string NameOfTest(const RunState& state, int slot) {
  return "row " + std::to_string(slot) + ":  " + state.Unit[slot].ApparatusName();
}

}  // namespace tavrel
