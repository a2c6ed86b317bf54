#ifndef TAVREL_WORK_CONTROLLER_SETTINGS_H_
#define TAVREL_WORK_CONTROLLER_SETTINGS_H_

#include <string>

#include "base/numbered.h"
#include "dialogs/checks.h"
#include "link/link.h"
#include "platform/dialogs.h"
#include "platform/screens.h"
#include "state/modal_screen.h"
#include "state/run_state.h"
#include "work/number_box.h"
#include "work/unsure_registers.h"

namespace tavrel {

inline constexpr int kControllerBoxes = 6;

// The boxes of TavCtrl by their index in TBox.
inline constexpr int kUpperBox = 0;
inline constexpr int kFinalBox = 1;
inline constexpr int kFirstIncrementBox = 2;   // the increment twice: the same value in two units
inline constexpr int kSecondIncrementBox = 3;  // this one is stored
inline constexpr int kSetpointBox = 4;
inline constexpr int kLowerBox = 5;

template <typename T>
using ByControllerBox = Numbered<T, kUpperBox, kLowerBox>;

struct ControllerField;

// TavCtrl, the settings of the controller of the selected slot: limits, setpoint, final value and
// the ramp. The values live in the instrument, are
// mirrored in the header of the slot, and are sent only if they changed.
class ControllerSettings : public ModalScreen {
 public:
  struct Parts {  // all outlive the dialog
    RunState& state;
    Link& link;
    Dialogs& dialogs;
    Screens& screens;
    UnsureRegisters& unsure;
  };

  explicit ControllerSettings(const Parts& parts)
      : ModalScreen(parts.state, View::kTavCtrl), parts_(parts) {}

  // Before the form is shown: reads the five values of SelSlot from the instrument; what it tells
  // goes into the header. What it does not tell shows as "?". Without a selected slot the dialog
  // stays closed.
  void Open();

  // What the form shows.
  [[nodiscard]] const std::string& TBox(int index) const;
  [[nodiscard]] const char* IncrementCaption(int index) const;  // of the boxes 2 and 3
  [[nodiscard]] bool HasPid() const { return parts_.screens.Has(View::kTavPid); }

  // What a box takes now: the limits of a temperature are other boxes.
  [[nodiscard]] Limits LimitsOf(int box) const;

  // The box that was refused last, -1 for none: the keyboard belongs there.
  [[nodiscard]] int RefusedBox() const { return refused_; }

  // At least one value was not told when the dialog opened.
  [[nodiscard]] bool CtrlFailed() const { return ctrl_failed_; }

  // The user changes a text; the user leaves a box. One of the increments that was changed gives
  // the other when it is left.
  void TBox_Change(int index, const std::string& text);
  void TBox_LostFocus(int index);

  // The button and the Enter key: checks the boxes, sends what changed and what the instrument is
  // not known to hold, and closes. A value that is refused, or that the instrument does not
  // acknowledge, keeps the dialog open; the header then has what was acknowledged, and what was not
  // is read back as soon as the line allows.
  void CmdOK_Click();

  void cmdPID_Click();

  void CloseNow() override;

 private:
  [[nodiscard]] bool ReadField(const ControllerField& field);
  void ShowUnknown(const ControllerField& field);
  void ShowField(const ControllerField& field, std::int16_t raw);
  [[nodiscard]] bool CheckBoxes();
  [[nodiscard]] bool Check(int box, const char* name);
  [[nodiscard]] double Value(int box) const;
  [[nodiscard]] double Limit(int box) const;
  [[nodiscard]] bool SendField(const ControllerField& field);
  void Doubt(const ControllerField& field, std::int16_t sent);
  [[nodiscard]] UnitRecord& Unit() const { return parts_.state.Unit[slot_]; }

  Parts parts_;
  int slot_ = 0;
  bool hourly_ = false;  // the instruments count the ramp by the hour
  ByControllerBox<NumberBox> boxes_;
  int edited_increment_ = -1;  // the increment box that was changed and not left yet
  int refused_ = -1;
  bool ctrl_failed_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_CONTROLLER_SETTINGS_H_
