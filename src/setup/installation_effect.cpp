#include "setup/installation_effect.h"

#include <algorithm>

#include "base/text.h"
#include "files/set_in_hand.h"

namespace tavrel {
namespace {

constexpr BothLanguages kEnds{"ends the recording:  ", "beendet die Aufzeichnung:  "};
constexpr BothLanguages kEndsProgram{"ends the controller program:  ",
                                     "beendet das Regler-Programm:  "};
constexpr BothLanguages kBegins{"begins a file:  ", "beginnt eine Datei:  "};
constexpr BothLanguages kRemoves{"deletes the empty file:  ", "löscht die leere Datei:  "};
constexpr BothLanguages kRemovesTest{"removes the test:  ", "entfernt den Test:  "};
constexpr BothLanguages kLeavesOut{"is left out, for it has no number:  ",
                                   "bleibt weg, weil die Nummer fehlt:  "};
constexpr BothLanguages kLoses{"a controller that is on loses its test:  ",
                               "ein Regler, der ein ist, verliert seinen Test:  "};
constexpr BothLanguages kRow{"row ", "Zeile "};
constexpr BothLanguages kController{" controller ", " Regler "};

const UnitRecord& UnitOf(const RunState& state, int slot) {
  return state.Unit[slot];
}

bool IsChanged(const RunState& state, const TestRows& rows, int slot) {
  TestRow row = rows[slot];
  if (row.IsKept()) {
    return false;
  }
  if (row.IsInstalled()) {
    CollectTexts(row);
  }
  return IsOtherTest(UnitOf(state, slot), row.Unit);
}

// Something is typed into a row that is free and stays so.
bool IsLeftOut(const RunState& state, const TestRows& rows, int slot) {
  const TestRow& row = rows[slot];
  if (row.IsInstalled() || row.IsKept() || !state.SlotFile[slot].empty()) {
    return false;
  }
  bool has_role = false;
  for (int input = 1; input <= kInputs; ++input) {
    has_role = has_role || RoleOf(row.Unit, input) != Role::kNotUsed;
  }
  return has_role || !Trim(row.Test_Des).empty() || !Trim(row.Test_Ext).empty();
}

// One of the rows has that controller.
bool IsControlled(const TestRows& rows, int inet, int controller) {
  return std::any_of(rows.begin(), rows.end(), [=](const TestRow& row) {
    return row.Unit.UnitInet == inet && InputWith(row.Unit, Role::kController) == controller;
  });
}

// What the test of the slot leaves behind when it goes.
void AddEnd(const RunState& state, int slot, InstallationEffect& effect) {
  if (state.ProgRunning[slot]) {
    effect.EndedPrograms.push_back(slot);
  }
  if (state.SlotFile[slot].empty()) {
    return;
  }
  if (UnitOf(state, slot).UnitRecOn == 1) {
    effect.EndedRecordings.push_back(slot);
  }
  if (state.SampleCount[slot] == 0 && !HoldsWholeSet(state, slot)) {
    effect.RemovedFiles.push_back(slot);
  }
}

// The controller of the slot's test, if it is on and no test of the rows has it.
bool LosesController(const RunState& state, const TestRows& rows, int slot, bool is_on) {
  const UnitRecord& unit = UnitOf(state, slot);
  return !state.SlotFile[slot].empty() && (is_on || state.ProgRunning[slot]) &&
         !IsControlled(rows, unit.UnitInet, unit.UnitCtrl);
}

bool IsTold(const InstallationEffect& effect, int slot) {
  const auto names = [slot](const std::vector<int>& slots) {
    return std::find(slots.begin(), slots.end(), slot) != slots.end();
  };
  return names(effect.EndedRecordings) || names(effect.EndedPrograms) || names(effect.NewFiles) ||
         names(effect.RemovedFiles) ||
         (!effect.Controllers.empty() && effect.Controllers.back().Slot == slot);
}

std::string RowNumbers(const RunState& state, const std::vector<int>& slots, Language language) {
  std::string text;
  for (const int slot : slots) {
    text += text.empty() ? "" : ",  ";
    text += std::string(kRow.In(language)) + std::to_string(slot) + "  " +
            LowerCase(state.SlotFile[slot]);
  }
  return text;
}

std::string Numbers(const std::vector<int>& rows, Language language) {
  std::string text;
  for (const int row : rows) {
    text += (text.empty() ? "" : ",  ") + std::string(kRow.In(language)) + std::to_string(row);
  }
  return text;
}

std::string NewOnes(const TestRows& rows, const std::vector<int>& slots, Language language) {
  std::string text;
  for (const int slot : slots) {
    text += text.empty() ? "" : ",  ";
    text += std::string(kRow.In(language)) + std::to_string(slot) + "  (" +
            LowerCase(Trim(rows[slot].Test_Ext)) + ")";
  }
  return text;
}

std::string Controllers(const std::vector<LostController>& controllers, Language language) {
  std::string text;
  for (const LostController& lost : controllers) {
    text += text.empty() ? "" : ",  ";
    text += "Tavrel " + std::to_string(lost.Inet) + std::string(kController.In(language)) +
            std::to_string(lost.Controller) + "  (" + std::string(kRow.In(language)) +
            std::to_string(lost.Slot) + ")";
  }
  return text;
}

}  // namespace

InstallationEffect EffectOf(const RunState& state, const TestRows& rows,
                            const std::function<bool(int slot)>& is_controller_on) {
  InstallationEffect effect;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (IsLeftOut(state, rows, slot)) {
      effect.RowsWithoutNumber.push_back(slot);
    }
    if (!IsChanged(state, rows, slot)) {
      continue;
    }
    AddEnd(state, slot, effect);
    if (rows[slot].IsInstalled()) {
      effect.NewFiles.push_back(slot);
    }
    if (LosesController(state, rows, slot, is_controller_on(slot))) {
      const UnitRecord& unit = UnitOf(state, slot);
      effect.Controllers.push_back({slot, unit.UnitInet, unit.UnitCtrl});
    }
    if (!state.SlotFile[slot].empty() && !IsTold(effect, slot)) {
      effect.RemovedTests.push_back(slot);
    }
  }
  return effect;
}

std::vector<std::string> EffectLines(const RunState& state, const TestRows& rows,
                                     const InstallationEffect& effect, Language language) {
  std::vector<std::string> lines;
  const auto add = [&](const BothLanguages& what, const std::string& which) {
    if (!which.empty()) {
      lines.push_back(std::string(what.In(language)) + which);
    }
  };
  add(kLoses, Controllers(effect.Controllers, language));
  add(kEnds, RowNumbers(state, effect.EndedRecordings, language));
  add(kEndsProgram, RowNumbers(state, effect.EndedPrograms, language));
  add(kRemovesTest, RowNumbers(state, effect.RemovedTests, language));
  add(kBegins, NewOnes(rows, effect.NewFiles, language));
  add(kRemoves, RowNumbers(state, effect.RemovedFiles, language));
  add(kLeavesOut, Numbers(effect.RowsWithoutNumber, language));
  return lines;
}

}  // namespace tavrel
