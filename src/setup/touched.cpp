#include "setup/touched.h"

#include <optional>

#include "link/register_access.h"
#include "link/registers.h"
#include "setup/setup_texts.h"
#include "setup/variable_file.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

bool IsOn(std::int16_t status) {
  return status != controller::kOff && status != controller::kFail &&
         status != controller::kUnknown;
}

std::string StatusText(std::int16_t status) {
  const std::string_view word = controller::WordOf(status);
  return word.empty() ? std::to_string(status) : std::string(word);
}

bool Takes(const UnitRecord& unit, const Rows& rows) {
  for (int input = 1; input <= kInputs; ++input) {
    if (rows[input] && unit.UnitRole[input] >= 1) {
      return true;
    }
  }
  return false;
}

bool IsOrder(const Variable& variable) {
  const bool is_controller =
      variable.letter == 'Z' && variable.row >= 1 && variable.row <= kControllers;
  const bool is_command = variable.letter == 'G' && variable.row == 0;
  return (is_controller || is_command) && variable.word != 0;
}

}  // namespace

std::vector<std::string> ControllersAtWork(Link& link, int inet, const Rows& rows,
                                           Language language) {
  std::vector<std::string> lines;
  bool answers = true;
  for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
    if (!rows[ctrl]) {
      continue;
    }
    const std::string name = std::to_string(ctrl);
    const std::optional<std::int16_t> status =
        answers ? Read(link, Register{inet, reg::kControllerState, ctrl}).Word() : std::nullopt;
    answers = status.has_value();
    if (!status) {
      lines.push_back(setup_text::kMayBeOn.Text(language, {name}));
    } else if (IsOn(*status)) {
      lines.push_back(setup_text::kIsOn.Text(language, {name, StatusText(*status)}));
    }
  }
  return lines;
}

std::vector<std::string> RecordingsAtWork(const RunState& state, int inet, const Rows& rows) {
  std::vector<std::string> lines;
  for (int slot = 1; slot <= kSlots; ++slot) {
    const UnitRecord& unit = state.Unit[slot];
    const bool records = !state.SlotFile[slot].empty() && unit.UnitRecOn == 1;
    if (records && unit.UnitInet == inet && Takes(unit, rows)) {
      lines.push_back(setup_text::kRecording.Text(UserLanguage(state),
                                                  {state.SlotFile[slot], std::to_string(slot)}));
    }
  }
  return lines;
}

std::vector<std::string> OrdersInFile(std::string_view bytes, Language language) {
  std::vector<std::string> lines;
  VariableReader reader(bytes);
  Variable variable;
  while (reader.Next(variable) == VariableReader::Place::kReading) {
    if (IsOrder(variable)) {
      const BothLanguages& text =
          variable.letter == 'Z' ? setup_text::kSwitches : setup_text::kCommands;
      lines.push_back(text.Text(
          language, {VariableName(variable.letter, variable.row), std::to_string(variable.word)}));
    }
  }
  return lines;
}

bool MayTouch(Dialogs& dialogs, const std::vector<std::string>& lines, const std::string& title,
              Language language) {
  if (lines.empty()) {
    return true;
  }
  std::string affected;
  for (const std::string& line : lines) {
    affected += "\n    " + line;
  }
  return dialogs.AskYes(
      {setup_text::kAffects.Text(language, {affected}), title, BoxIcon::kWarning, true});
}

}  // namespace tavrel
