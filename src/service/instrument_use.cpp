#include "service/instrument_use.h"

#include "service/service_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

bool IsInstalled(const RunState& state, int slot, int inet) {
  return !state.SlotFile[slot].empty() && state.Unit[slot].UnitInet == inet;
}

bool Records(const RunState& state, int slot, int inet) {
  return IsInstalled(state, slot, inet) && state.Unit[slot].UnitRecOn == 1;
}

const BothLanguages& WorkOf(bool records, bool controls) {
  if (records && controls) {
    return service_text::kRecordsAndControls;
  }
  return records ? service_text::kRecords : service_text::kControls;
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

std::string TestsAtWork(const RunState& state, int inet,
                        const std::function<bool(int slot)>& is_controller_on) {
  std::string tests;
  for (int slot = 1; slot <= kSlots; ++slot) {
    const bool records = Records(state, slot, inet);
    const bool controls =
        IsInstalled(state, slot, inet) && (state.ProgRunning[slot] || is_controller_on(slot));
    if (records || controls) {
      tests += (tests.empty() ? "" : "\n") + NameOfTest(state, slot) + "  (" +
               WorkOf(records, controls).Text(UserLanguage(state)) + ")";
    }
  }
  return tests;
}

std::string NameOfTest(const RunState& state, int slot) {
  return service_text::kTest.Text(UserLanguage(state),
                                  {std::to_string(slot), state.Unit[slot].ApparatusName()});
}

}  // namespace tavrel
