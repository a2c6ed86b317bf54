#ifndef TAVREL_WORK_WORKSHEET_H_
#define TAVREL_WORK_WORKSHEET_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "files/recording_engine.h"
#include "files/recording_journals.h"
#include "link/link.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/screens.h"
#include "state/modal_screen.h"
#include "state/run_state.h"
#include "work/colour_choice.h"
#include "work/coordinates.h"
#include "work/program_runner.h"
#include "work/recording_settings.h"
#include "work/worksheet_values.h"

namespace tavrel {

// TavWork, the form of one slot or of the viewed file: what is recorded, how it is sampled, what
// the controller does, and what each input is called and shows. One instance for the life of the
// program; it works on SelSlot. For the viewed file nothing is sent on the line.
class Worksheet : public ModalScreen {
 public:
  struct Parts {  // all outlive the worksheet
    RunState& state;
    Link& link;
    RecordingEngine& engine;
    ProgramRunner& programs;
    RecordingSettings& recording;
    RecordingJournals& journals;
    Coordinates& coordinates;
    ColourChoice& colours;
    Dialogs& dialogs;
    Screens& screens;
    Events& events;
    const Clock& clock;
  };
  explicit Worksheet(const Parts& parts)
      : ModalScreen(parts.state, View::kTavWork), parts_(parts) {}

  // Before the form is shown. No effect while the worksheet is in front.
  void Open();

  // What the form shows now. The form reads it after every event.
  [[nodiscard]] const WorksheetValues& Values() const { return values_; }

  // A tick of the cycle when TickRefresh is due: asks the instrument for what the form shows, and
  // sets TickRefresh 5 s ahead when it has asked for all of it. A tick makes two exchanges at most,
  // and one that fails ends it, for nothing may hold up the keyboard; the next tick goes on behind.
  void Refresh();

  // F5: the next tick begins a refresh.
  void RefreshNow() { parts_.state.TickRefresh.MakeDue(); }

  // The buttons.
  void cmd_Rec_Click(int index);  // 1 start, 2 stop
  void cmd_New_Click();
  void cmd_SetRec_Click();
  void cmd_Ctrl_Click(int index);  // 0 isothermal, 1 ramp, 2 off
  void cmd_setCtrl_Click();
  void cmd_ProgOn_Click();
  void cmd_ProgOff_Click();
  void cmd_Coord_Click();
  void CmdOK_Click();
  void cmdExit_Click() { Quit(); }

  // The table; `input` 1..15. A row of an input that is not recorded takes nothing.
  void Color_Click(int input);
  void Prod_Change(int input, const std::string& text);
  void Comments_Change(int input, const std::string& text);

 private:
  // The raw values behind the fields, as last shown.
  struct ShownRaw {
    std::optional<std::int32_t> sample_count;
    std::optional<std::int32_t> rec_interval;
  };

  // Steps of a refresh, one exchange each: T, Z, W, and then Y of the inputs.
  enum Step : int { kKind = 0, kState = 1, kSetpoint = 2, kFirstInput = 3 };
  static constexpr int kSteps = kFirstInput + kInputs;

  void ShowSheet();
  void ShowRows();
  void ShowButtons();
  void ShowTitle(bool is_fast);
  void ShowRecording();
  void ShowRecordedTime();
  [[nodiscard]] std::string LedgerText() const;
  void ShowProgram();
  void AskInstrument();
  [[nodiscard]] bool TakeStep(int step);
  [[nodiscard]] bool ReadKind();
  [[nodiscard]] bool ReadController();
  [[nodiscard]] bool ReadSetpoint();
  [[nodiscard]] bool ReadInput(int input);
  [[nodiscard]] std::int16_t ReadFrom(const char* letter, int index);
  [[nodiscard]] bool Answers() const { return parts_.link.IsGood(Unit().UnitInet); }
  void TakeKind(bool is_fast);
  void EndRefresh();

  [[nodiscard]] bool IsSlotInUse() const;
  [[nodiscard]] bool IsConnected();
  [[nodiscard]] bool IsProgramInTheWay();
  void CallProgOff() { ++values_.ProgOffFocusCalls; }
  void AfterDialog();
  [[nodiscard]] bool IsRowLive(int input) const;

  [[nodiscard]] int Slot() const { return parts_.state.SelSlot; }
  [[nodiscard]] bool IsViewed() const { return parts_.state.SelSlot == kViewedFile; }
  [[nodiscard]] UnitRecord& Unit() { return parts_.state.Unit[Slot()]; }
  [[nodiscard]] const UnitRecord& Unit() const { return parts_.state.Unit[Slot()]; }
  [[nodiscard]] WorksheetRow& Row(int input) { return values_.Rows[input]; }

  Parts parts_;
  WorksheetValues values_;
  ShownRaw shown_;
  int next_step_ = kKind;  // of the refresh that is going on
  int exchanges_ = 0;      // in this tick
  bool answers_ = false;   // the instrument has answered in it
};

}  // namespace tavrel

#endif  // TAVREL_WORK_WORKSHEET_H_
