#include "dialogs/checks.h"
#include "state/header_edit.h"
#include "state/user_language.h"
#include "work/worksheet.h"

// What the user does on the worksheet; what it shows is in worksheet.cpp.
namespace tavrel {

bool Worksheet::IsConnected() {
  return CheckConnected(parts_.dialogs, parts_.link, Unit().UnitInet);
}

// A program owns the controller until it ends.
bool Worksheet::IsProgramInTheWay() {
  if (!parts_.state.ProgRunning[Slot()]) {
    return false;
  }
  parts_.events.Beep();
  CallProgOff();
  return true;
}

// Beneath a box or a dialog the measuring goes on, and the slot may have got another file.
void Worksheet::AfterDialog() {
  parts_.state.WorkReset = false;
  parts_.state.TickRefresh.MakeDue();
  ShowSheet();
}

void Worksheet::cmd_Rec_Click(int index) {
  if (!IsSlotInUse() || !IsConnected()) {
    return;
  }
  if (index == 1) {
    parts_.events.SetPointer(Pointer::kHourglass);
    parts_.engine.StartRecording(parts_.state.SelSlot);
    parts_.events.SetPointer(Pointer::kNormal);
  } else {
    parts_.engine.StopRecording(parts_.state.SelSlot);
  }
  AfterDialog();
  ShowRecording();
}

void Worksheet::cmd_New_Click() {
  if (!IsSlotInUse() || !IsConnected()) {
    return;
  }
  parts_.recording.RunNewFile();
  AfterDialog();
  ShowRecording();
}

void Worksheet::cmd_SetRec_Click() {
  if (!IsSlotInUse()) {
    return;
  }
  parts_.recording.RunSettings();
  AfterDialog();
}

void Worksheet::cmd_Ctrl_Click(int index) {
  if (!IsSlotInUse() || index < 0 || index > 2 || !IsConnected() || IsProgramInTheWay()) {
    return;
  }
  const auto button = static_cast<CtrlButton>(index);
  const SwitchOutcome outcome =
      SwitchController(parts_.link, Unit(), button, UserLanguage(parts_.state));
  if (outcome.IsAcknowledged) {
    values_.CtrlDown = button;
    // The user's word is the last one: an end action that is still to switch off is over.
    parts_.engine.Orders().Drop(Unit().UnitInet, Unit().UnitCtrl);
  }
  if (outcome.Objection) {
    // What the controller really does is looked up beneath the box.
    parts_.state.TickRefresh.MakeDue();
    next_step_ = kKind;
    parts_.dialogs.Message(*outcome.Objection);
  }
}

void Worksheet::cmd_setCtrl_Click() {
  if (!IsSlotInUse() || parts_.state.ProgRunning[Slot()]) {
    return;
  }
  parts_.screens.Show(View::kTavCtrl);
  AfterDialog();
}

void Worksheet::cmd_ProgOn_Click() {
  if (!IsSlotInUse()) {
    return;
  }
  if (parts_.programs.Start(parts_.state.SelSlot) == ProgramStart::kRunsAlready) {
    CallProgOff();
  }
  AfterDialog();
}

void Worksheet::cmd_ProgOff_Click() {
  if (!IsSlotInUse()) {
    return;
  }
  static_cast<void>(parts_.programs.Stop(parts_.state.SelSlot));
  AfterDialog();
}

void Worksheet::cmd_Coord_Click() {
  parts_.coordinates.Run();
  AfterDialog();
}

void Worksheet::CmdOK_Click() {
  if (!values_.CmdOKEnabled) {
    return;
  }
  parts_.screens.Show(View::kTavGraph);
  AfterDialog();
}

bool Worksheet::IsRowLive(int input) const {
  return IsOpen() && input >= 1 && input <= kInputs && Unit().IsRecorded(input);
}

void Worksheet::Color_Click(int input) {
  if (!IsRowLive(input)) {
    return;
  }
  const std::optional<int> code = parts_.colours.Ask(input, Unit().UnitColour[input]);
  if (code) {
    EditHeader(parts_.state, parts_.state.SelSlot, [input, code](UnitRecord& header) {
      header.UnitColour[input] = static_cast<std::int16_t>(*code);
    });
    parts_.state.ForgetCurves();
  }
  AfterDialog();
}

void Worksheet::Prod_Change(int input, const std::string& text) {
  if (!IsRowLive(input) || text == Row(input).Prod) {
    return;
  }
  Row(input).Prod = text;
  EditHeader(parts_.state, parts_.state.SelSlot,
             [&](UnitRecord& header) { header.UnitInputName[input].Set(text); });
  parts_.state.OverPrepared = false;  // the legend names the input
}

void Worksheet::Comments_Change(int input, const std::string& text) {
  if (!IsRowLive(input) || text == Row(input).Comments) {
    return;
  }
  Row(input).Comments = text;
  EditHeader(parts_.state, parts_.state.SelSlot,
             [&](UnitRecord& header) { header.UnitInputNote[input].Set(text); });
}

}  // namespace tavrel
