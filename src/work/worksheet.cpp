#include "work/worksheet.h"

#include "base/number.h"
#include "base/text.h"
#include "base/units.h"
#include "files/buffers_last.h"
#include "files/ledger_text.h"
#include "files/recording_format.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "state/state_words.h"

namespace tavrel {
namespace {

// At 4800 baud two exchanges of 20.6 ms fill a tick of 50 ms, and a key that is pressed when the
// first of them begins and the second finds nobody there (110 ms) waits no longer than 131 ms.
constexpr int kExchangesPerTick = 2;
constexpr std::int32_t kStepSeconds = 10;     // a normal instrument counts in tens of seconds
constexpr std::int32_t kLargestCount = 3600;  // of UnitInterval

std::string Degrees(std::int16_t raw, std::string_view mask) {
  return raw == kNoData ? std::string() : FormatMask(raw * kDegreesPerStep, mask);
}

// What the user has typed stays as long as the header holds the same but for blanks at the end.
void ShowHeaderText(std::string& shown, const HeaderText& text) {
  const std::string wanted = text.Get();
  if (TrimRight(shown) != wanted) {
    shown = wanted;
  }
}

}  // namespace

void Worksheet::Open() {
  if (parts_.state.ActiveView == View::kTavWork) {
    return;
  }
  OpenScreen();
  const int focus_calls = values_.ProgOffFocusCalls;
  values_ = WorksheetValues();
  values_.ProgOffFocusCalls = focus_calls;
  parts_.state.WorkReset = false;
  parts_.state.TickRefresh.MakeDue();
  ShowSheet();
  parts_.events.SetPointer(Pointer::kNormal);
}

// All that stands in the header. The fields that a refresh brings follow with the next one.
void Worksheet::ShowSheet() {
  const RunState& state = parts_.state;
  values_.Caption = Unit().ApparatusName();
  values_.OfSlot = !IsViewed();
  values_.TavFile = LowerCase(state.SlotFile[Slot()]);
  values_.TipLanguage = LanguageOf(state.Settings.HelpLang);
  ShowTitle(Unit().UnitFast == 1);
  ShowButtons();
  ShowProgram();
  ShowRows();
}

void Worksheet::ShowTitle(bool is_fast) {
  values_.TavcNo = "Tavrel-" + FormatMask(Unit().UnitInet, "0") + (is_fast ? "F" : "");
}

void Worksheet::ShowButtons() {
  values_.CmdOKEnabled = parts_.screens.Has(View::kTavGraph);
  values_.cmd_CoordEnabled = parts_.screens.Has(View::kTavCoord);
}

void Worksheet::ShowRows() {
  for (int input = 1; input <= kInputs; ++input) {
    WorksheetRow& row = Row(input);
    row.Recorded = Unit().IsRecorded(input);
    if (!row.Recorded) {
      row = WorksheetRow();
      continue;
    }
    ShowHeaderText(row.Prod, Unit().UnitInputName[input]);
    ShowHeaderText(row.Comments, Unit().UnitInputNote[input]);
    row.ColourCode = Unit().UnitColour[input];
  }
}

void Worksheet::Refresh() {
  RunState& state = parts_.state;
  if (!state.WorkReset) {
    state.WorkReset = true;
    shown_ = ShownRaw();
    next_step_ = kKind;
    ShowSheet();
  }
  ShowRecording();
  ShowRecordedTime();
  ShowProgram();
  if (!IsSlotInUse()) {
    EndRefresh();
    return;
  }
  AskInstrument();
}

void Worksheet::AskInstrument() {
  exchanges_ = 0;
  while (next_step_ < kSteps) {
    const bool is_done = TakeStep(next_step_++);
    const bool is_enough = !is_done || exchanges_ == kExchangesPerTick;
    if (is_enough && next_step_ < kSteps) {
      return;
    }
  }
  values_.NoAnswer = !answers_;
  EndRefresh();
}

void Worksheet::EndRefresh() {
  next_step_ = kKind;
  parts_.state.TickRefresh.SetIn(kRefreshSeconds, parts_.clock);
}

// False if an exchange was made and failed.
bool Worksheet::TakeStep(int step) {
  switch (step) {
    case kKind:
      return ReadKind();
    case kState:
      return ReadController();
    case kSetpoint:
      return ReadSetpoint();
    default:
      return ReadInput(step - kFirstInput + 1);
  }
}

// No value if the exchange fails.
std::int16_t Worksheet::ReadFrom(const char* letter, int index) {
  ++exchanges_;
  return Read(parts_.link, Register{Unit().UnitInet, letter, index}).WordOr(kNoData);
}

// The store of a simulated line is of no kind, the title says what the header says.
bool Worksheet::ReadKind() {
  if (parts_.link.Simulated) {
    return true;
  }
  const bool is_fast = ReadFrom(reg::kKind, 0) == 1;
  if (!Answers()) {
    return false;
  }
  TakeKind(is_fast);
  ShowTitle(is_fast);
  return true;
}

// The interval of the rows that are in a file already cannot change. So the header of a file
// with rows tells the same seconds in the unit of the other kind of instrument; where it cannot,
// it stays as it was.
void Worksheet::TakeKind(bool is_fast) {
  RunState& state = parts_.state;
  UnitRecord& unit = Unit();
  if ((unit.UnitFast == 1) == is_fast) {
    return;
  }
  if (state.SampleCount[Slot()] > 0) {
    const std::int32_t seconds = state.RecInterval[Slot()];
    const bool is_whole = is_fast || seconds % kStepSeconds == 0;
    const std::int32_t count = is_fast ? seconds : seconds / kStepSeconds;
    if (!is_whole || count > kLargestCount) {
      return;
    }
    unit.UnitInterval = static_cast<std::int16_t>(count);
  }
  unit.UnitFast = is_fast ? 1 : 0;
  state.SlotDirty[Slot()] = true;
  if (state.SampleCount[Slot()] == 0) {
    state.RecInterval[Slot()] = RecIntervalOf(unit);
    state.SampleLimit[Slot()] = SampleLimitOf(unit);
    ShowRecordedTime();
  }
}

bool Worksheet::ReadController() {
  values_.CtrlDown = CtrlButtonOf(ReadFrom(reg::kControllerState, Unit().UnitCtrl));
  return Answers();
}

bool Worksheet::ReadSetpoint() {
  values_.Lbl_setpoint = Degrees(ReadFrom(reg::kSetpoint, Unit().UnitCtrl), "####0.0");
  answers_ = Answers();
  return answers_;
}

// The value of an instrument that has gone silent is not shown any more.
bool Worksheet::ReadInput(int input) {
  WorksheetRow& row = Row(input);
  if (!answers_ || !row.Recorded) {
    row.Actual.clear();
    return true;
  }
  row.Actual = Degrees(ReadFrom(reg::kPresentValue, input), "#####0.0");
  return Answers();
}

void Worksheet::ShowRecording() {
  const RunState& state = parts_.state;
  const int slot = Slot();
  const int rec_on = Unit().UnitRecOn;
  values_.RecOnDown = !IsViewed() && rec_on == 1;
  values_.RecOffDown = !IsViewed() && rec_on == 0;
  const bool is_full = rec_on == 0 && state.SampleCount[slot] >= state.SampleLimit[slot];
  values_.BufferText = SilentBufferText(parts_.engine, slot, values_.TipLanguage);
  if (state.WriteFailed[slot]) {
    values_.RecState = state_word::kFile.In(values_.TipLanguage);
  } else {
    values_.RecState = is_full && !IsViewed() ? "end" : "";
  }
}

void Worksheet::ShowRecordedTime() {
  const std::int32_t sample_count = parts_.state.SampleCount[Slot()];
  const std::int32_t rec_interval = parts_.state.RecInterval[Slot()];
  if (shown_.sample_count == sample_count && shown_.rec_interval == rec_interval) {
    return;
  }
  shown_.sample_count = sample_count;
  shown_.rec_interval = rec_interval;
  const double hours = RecordedHours(sample_count, rec_interval);
  const bool in_minutes = (sample_count - 2.0) * rec_interval < kSecondsPerHour;
  values_.Lbl_rec = FormatMask(in_minutes ? hours * kMinutesPerHour : hours, "####0.00");
  values_.RecUnit = in_minutes ? "min   recorded" : "h     recorded";
  values_.Lbl_sampl = std::to_string(rec_interval);
  values_.LedgerText = LedgerText();
}

std::string Worksheet::LedgerText() const {
  const LedgerFigures figures = parts_.journals.Figures(Slot());
  return figures.IsKnown && figures.Recorded > 0 ? LedgerSummary(figures, values_.TipLanguage) : "";
}

// The step and its time are empty until the first step has gone out.
void Worksheet::ShowProgram() {
  const bool is_running = !IsViewed() && parts_.state.ProgRunning[Slot()];
  values_.ProgDown = is_running;
  values_.cmd_setCtrlEnabled = !is_running && parts_.screens.Has(View::kTavCtrl);
  values_.frProg = is_running;
  if (!is_running) {
    return;
  }
  values_.ProgText = parts_.programs.ProgressText(parts_.state.SelSlot, values_.TipLanguage);
  const bool has_step = Unit().UnitProgStep > 0;
  values_.frProgCaption = " " + LowerCase(Unit().UnitProgName.Get()) + " ";
  values_.Lbl_Step = has_step ? std::to_string(Unit().UnitProgStep) : "";
  values_.Lbl_Time = has_step ? std::to_string(Unit().UnitProgWait) : "";
}

// A slot, with a file: only then there is an instrument to ask.
bool Worksheet::IsSlotInUse() const {
  return !IsViewed() && !parts_.state.SlotFile[Slot()].empty();
}

}  // namespace tavrel
