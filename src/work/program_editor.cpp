#include "work/program_editor.h"

#include <algorithm>

#include "base/element.h"
#include "base/number.h"
#include "base/text.h"
#include "dialogs/checks.h"
#include "dialogs/program_file.h"
#include "link/registers.h"
#include "platform/file_system.h"
#include "state/box_titles.h"
#include "state/open_slots.h"
#include "state/user_language.h"
#include "work/work_texts.h"

namespace tavrel {
namespace {

constexpr const char* kWriteProgramTitle = "Write file";

constexpr Colour kGreenCell{0xC0, 0xFF, 0xC0};
constexpr Colour kWhiteCell{0xFF, 0xFF, 0xFF};

// A column of numbers: how its words are shown and what may be typed.
struct NumberColumn {
  const char* name = "";  // in the box of the range check
  double per_unit = 1;    // steps of the word in a shown unit
  const char* mask = "";
  double upper = 0;  // in shown units; the lower limit is 0
  Colour background;
};

constexpr NumberColumn kTimeNumbers{"time", 1, "#####0", 30000, kYellow};
constexpr NumberColumn kSetpointNumbers{"setpoint", 20, "###0.0", 500, kWhiteCell};
constexpr NumberColumn kIncrementNumbers{"increment", 100, "#0.00", 1, kGrey};

const NumberColumn& NumbersOf(int column) {
  switch (column) {
    case kTimeColumn:
      return kTimeNumbers;
    case kSetpointColumn:
      return kSetpointNumbers;
    default:
      return kIncrementNumbers;
  }
}

ProgramCell NumberCell(std::int16_t word, const NumberColumn& column) {
  if (word < 1) {
    return {};
  }
  return {FormatMask(word / column.per_unit, column.mask), column.background};
}

// The controller's states that a program may give, in the order of the list.
constexpr std::array<std::int16_t, kStatusItems.size()> kStatusOfLine = {
    kEmptyCell, controller::kOff, controller::kIsotherm, controller::kDynamic};

int LineOf(std::int16_t status) {
  const auto* const found = std::find(kStatusOfLine.begin(), kStatusOfLine.end(), status);
  return found == kStatusOfLine.end() ? 0 : static_cast<int>(found - kStatusOfLine.begin());
}

// A status that the list does not have comes from a file of another origin. It would go out as
// it is, so it is not hidden.
ProgramCell StatusCell(std::int16_t status) {
  switch (status) {
    case controller::kOff:
      return {std::string(controller::WordOf(status)), kOrange};
    case controller::kIsotherm:
    case controller::kDynamic:
      return {std::string(controller::WordOf(status)), kGreenCell};
    default:
      return status < 0 ? ProgramCell{} : ProgramCell{std::to_string(status), kWhiteCell};
  }
}

bool IsCell(int row, int column) {
  return row >= 1 && row <= kProgramRows && column >= kTimeColumn && column <= kIncrementColumn;
}

}  // namespace

void ProgramEditor::Open() {
  rows_ = {};
  caption_ = " Controller  program";
  edit_ = {};
  prog_changed_ = false;
  OpenScreen();
}

Language ProgramEditor::TipLanguage() const {
  return LanguageOf(parts_.state.Settings.HelpLang);
}

std::int16_t& ProgramEditor::WordAt(int row, int column) {
  ProgramStep& step = rows_.at(static_cast<std::size_t>(row - 1));
  switch (column) {
    case kTimeColumn:
      return step.Time;
    case kSetpointColumn:
      return step.Setpoint;
    case kStatusColumn:
      return step.Status;
    default:
      return step.Increment;
  }
}

ProgramCell ProgramEditor::Cell(int row, int column) const {
  if (!IsCell(row, column)) {
    return {};
  }
  const ProgramStep& step = rows_.at(static_cast<std::size_t>(row - 1));
  switch (column) {
    case kTimeColumn:
      return NumberCell(step.Time, kTimeNumbers);
    case kSetpointColumn:
      return NumberCell(step.Setpoint, kSetpointNumbers);
    case kStatusColumn:
      return StatusCell(step.Status);
    default:
      return NumberCell(step.Increment, kIncrementNumbers);
  }
}

void ProgramEditor::Grid_Click(int row, int column) {
  const bool is_here = edit_.Row == row && edit_.Column == column;
  if (is_here || !CloseEdit() || !IsCell(row, column)) {
    return;
  }
  text_before_ = column == kStatusColumn ? "" : Cell(row, column).Text;
  line_before_ = column == kStatusColumn ? LineOf(WordAt(row, column)) : 0;
  edit_ = {row, column, text_before_, line_before_};
}

void ProgramEditor::MoveEdit(int rows, int columns) {
  if (!edit_.IsOpen()) {
    return;
  }
  const CellInEdit from = edit_;
  if (!CloseEdit()) {
    return;
  }
  constexpr int kCellsOfRow = kIncrementColumn - kTimeColumn + 1;
  const int place =
      (from.Row + rows - 1) * kCellsOfRow + (from.Column - kTimeColumn) + columns;  // from 0
  if (place >= 0 && place < kProgramRows * kCellsOfRow) {
    Grid_Click(place / kCellsOfRow + 1, place % kCellsOfRow + kTimeColumn);
  }
}

// True if no value is left that was refused.
bool ProgramEditor::CloseEdit() {
  if (!edit_.IsOpen()) {
    return true;
  }
  if (edit_.IsList()) {
    TakeStatus();
  } else if (!TakeNumber()) {
    return false;
  }
  edit_ = {};
  return true;
}

void ProgramEditor::TakeStatus() {
  const std::int16_t* status = ElementAt(kStatusOfLine, edit_.Cstat);
  if (status != nullptr && edit_.Cstat != line_before_) {
    Store(*status);
  }
}

// A text that was not changed keeps its word to the last step; one that was deleted empties the
// cell.
bool ProgramEditor::TakeNumber() {
  if (edit_.txtEdit == text_before_) {
    return true;
  }
  if (Trim(edit_.txtEdit).empty()) {
    Store(kEmptyCell);
    return true;
  }
  const NumberColumn& column = NumbersOf(edit_.Column);
  const double value = ReadNumber(edit_.txtEdit);
  if (!CheckRange(parts_.dialogs, column.name, value, 0, column.upper)) {
    return false;
  }
  Store(ToWord(value * column.per_unit));
  return true;
}

void ProgramEditor::Store(std::int16_t word) {
  std::int16_t& stored = WordAt(edit_.Row, edit_.Column);
  prog_changed_ = prog_changed_ || stored != word;
  stored = word;
}

void ProgramEditor::cmdNew_Click() {
  if (!CloseEdit() || !MayGoOn()) {
    return;
  }
  rows_ = {};
  caption_ = " new program";
  prog_changed_ = false;
}

void ProgramEditor::cmdOpen_Click() {
  if (CloseEdit() && MayGoOn() &&
      ChooseProgramFile(parts_.state, parts_.dialogs, FileMode::kOpen)) {
    OpenProgram();
  }
}

void ProgramEditor::cmdSave_Click() {
  if (CloseEdit()) {
    static_cast<void>(Save());
  }
}

// Changes are saved if the user wants so; false if that came to nothing, or if the user goes on
// with the program.
bool ProgramEditor::MayGoOn() {
  if (!prog_changed_) {
    return true;
  }
  switch (parts_.dialogs.AskSave({"Save Program ?", "program", BoxIcon::kQuestion})) {
    case SaveAnswer::kSave:
      return Save();
    case SaveAnswer::kDiscard:
      return true;
    case SaveAnswer::kStay:
      break;
  }
  return false;
}

void ProgramEditor::OpenProgram() {
  const SettingsValues& settings = parts_.state.Settings;
  const ProgramFile file = ReadProgramFile(JoinPath(settings.ProgPath, settings.ProgFile));
  std::string objection;
  if (!file.Problem.empty()) {
    objection = ": " + file.Problem;
  } else if (file.Records < 1 || file.Records > kProgramRecords) {
    objection = "  is not a program file !";
  }
  if (!objection.empty()) {
    parts_.dialogs.Message({settings.ProgFile + objection, kReadTitle, BoxIcon::kWarning});
    return;
  }
  Take(file);
  caption_ = " " + LowerCase(settings.ProgFile);
}

void ProgramEditor::Take(const ProgramFile& file) {
  rows_ = {};
  std::copy(file.Steps.begin(), file.Steps.end(), rows_.begin());
  prog_changed_ = false;
}

bool ProgramEditor::Check() {
  const auto finding = ProgramFinding(rows_);
  if (!finding) {
    return true;
  }
  parts_.dialogs.Message({*finding, kProgramCheckTitle, BoxIcon::kWarning});
  prog_changed_ = prog_changed_ && !IsEmptyProgram(rows_);
  return false;
}

bool ProgramEditor::Save() {
  if (!Check() || !ChooseProgramFile(parts_.state, parts_.dialogs, FileMode::kSave)) {
    return false;
  }
  const SettingsValues& settings = parts_.state.Settings;
  const std::string path = FindFile(settings.ProgPath, settings.ProgFile)
                               .value_or(JoinPath(settings.ProgPath, settings.ProgFile));
  std::string problem;
  if (IsOpenInSlot(parts_.state, path)) {
    problem = work_text::kInUse.Text(UserLanguage(parts_.state));
  } else {
    problem = ReplaceFile(path, ProgramFileBytes(rows_));
  }
  if (!problem.empty()) {
    parts_.dialogs.Message(
        {settings.ProgFile + ": " + problem, kWriteProgramTitle, BoxIcon::kWarning});
    return false;
  }
  caption_ = " " + LowerCase(settings.ProgFile);
  prog_changed_ = false;
  return true;
}

void ProgramEditor::Quit() {
  if (CloseEdit() && MayGoOn()) {
    CloseScreen();
  }
}

}  // namespace tavrel
