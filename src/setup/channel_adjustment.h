#ifndef TAVREL_SETUP_CHANNEL_ADJUSTMENT_H_
#define TAVREL_SETUP_CHANNEL_ADJUSTMENT_H_

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "base/language.h"
#include "link/link.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "setup/adjustment_run.h"
#include "setup/channel_sheet.h"
#include "setup/channel_values.h"
#include "setup/variable_transfer.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

// TavChann: shows the sixteen channels of the selected instrument and leads through their
// adjustment. A state machine that takes one step at each tick of the form's Timer_chann; no step
// holds the window for longer than half a second, and none begins while a box is open. The
// instrument keeps all values; the program keeps none.
class ChannelAdjustment : public ModalScreen {
 public:
  static constexpr int kTickMilliseconds = 100;

  struct Parts {  // all outlive the dialog
    RunState& state;
    Link& link;
    Dialogs& dialogs;
    Events& events;
    const Clock& clock;
  };

  explicit ChannelAdjustment(const Parts& parts);

  // Before the form is shown. The instrument is the selected one, 1 while none is. If it has not
  // answered the last exchange nothing is read until the dialog is opened again.
  void Open();

  // What the form shows.
  [[nodiscard]] const ChannelValues& Values() const { return values_; }
  [[nodiscard]] Language TipLanguage() const { return LanguageOf(parts_.state.Settings.HelpLang); }

  [[nodiscard]] AdjState State() const { return adj_state_; }

  // One step.
  void Timer_chann();

  // The menus; without effect while they are disabled.
  void Mnu_FeCuNi_Click() { BeginInputs(sensor::kFeCuNi); }
  void Mnu_NiCrNi_Click() { BeginInputs(sensor::kNiCrNi); }
  void Mnu_Linear_Click() { BeginInputs(sensor::kLinear); }
  void Mnu_RTD_Click();
  // `show` copies the values to the widgets; it is called for each register.
  void Mnu_Save_Click(const std::function<void()>& show);
  void Mnu_Load_Click(const std::function<void()>& show);

  // A click on a row, 0..15: chooses it for the run. Nothing takes the choice back.
  void Sheet_Click(int row);

  void txt_Final_Change(const std::string& text) { values_.txt_Final = text; }

  // The button and the Enter key.
  void CmdOK_Click();

  // Escape and the close box: drops the run, and tells what it has written; without a run the form
  // closes.
  void Quit() override;

  // A run that is open is dropped; nothing is asked or told.
  void CloseNow() override;

 private:
  void BeginInputs(std::int16_t sensor_code);
  void DropRun();
  void Step();
  void EmptySheet();
  void ReadSensors(const StepTime& time);
  void ReadActual(const StepTime& time);
  void ReadBuffers(const StepTime& time);
  void Idle(const StepTime& time);
  void Change(bool is_over, AdjState from, AdjState to);
  void ShowConnection();
  [[nodiscard]] bool MayChooseMenu() const { return values_.MenusEnabled && !is_busy_; }

  Parts parts_;
  int inet_ = 0;
  AdjState adj_state_ = AdjState::kNoLink;
  ChannelValues values_;
  // Counts from the first opening of the form.
  std::optional<ChannelSheet> sheet_;
  std::optional<AdjustmentRun> run_;
  std::optional<VariableTransfer> transfer_;
  std::chrono::nanoseconds adj_next_{};  // of the next refresh
  bool is_refreshing_ = false;
  bool is_busy_ = false;  // within a step, a box or a transfer
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_CHANNEL_ADJUSTMENT_H_
