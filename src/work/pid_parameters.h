#ifndef TAVREL_WORK_PID_PARAMETERS_H_
#define TAVREL_WORK_PID_PARAMETERS_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "base/numbered.h"
#include "files/stop_orders.h"
#include "link/link.h"
#include "link/registers.h"
#include "platform/dialogs.h"
#include "platform/screens.h"
#include "state/modal_screen.h"
#include "state/run_state.h"
#include "work/number_box.h"
#include "work/unsure_registers.h"

namespace tavrel {

inline constexpr int kPidBoxes = 4;  // counted from 1

template <typename T>
using ByPidBox = Numbered<T, 1, kPidBoxes>;

// A line of the list of recommended values; the words are those of the registers.
struct PidPreset {
  const char* Text = nullptr;
  ByPidBox<std::int16_t> Raw;  // P, N, V, T
};

inline constexpr std::array kPidPresets = {
    PidPreset{"   ---", {0, 0, 0, 0}},
    PidPreset{"   Tarn - oven", {2000, 900, 160, 0}},
    PidPreset{"   Hesk - oven", {260, 400, 20, 0}},
    PidPreset{"   Wolm - oven", {240, 600, 30, 0}},
    PidPreset{"   Warm-hold - oven", {500, 780, 40, 0}},
    PidPreset{"   Micro-autoclave", {1800, 1050, 180, 1300}},
};

// A parameter as its box shows it.
struct PidParameter {
  const char* Label;
  const char* Unit;    // behind the box, empty for none
  const char* Letter;  // of the register
  double PerUnit;      // steps of the register in a unit of the box
  const char* Mask;
  double Lower;
  double Upper;
  const char* Name;  // in the box of the range check
};

inline constexpr ByPidBox<PidParameter> kPidParameters = {{{
    {"P:   proportional   band", "", reg::kProportional, 20, "####0.0", 1, 500, "proportional"},
    {"I:     integral time", "sec", reg::kIntegralTime, 1, "#####0", 0, 10000, "integral"},
    {"D:   derivative time", "sec", reg::kDerivativeTime, 1, "#####0", 0, 10000, "derivative"},
    {"       filter for the setpoint", "sec", reg::kSetpointFilter, 1, "#####0", 0, 10000,
     "filter for setpoint"},
}}};

// TavPid, the parameters of the controller of the selected slot. The instrument alone keeps them.
// While they are changed the controller is off, for about ten seconds.
class PidParameters : public ModalScreen {
 public:
  struct Parts {  // all outlive the dialog
    RunState& state;
    Link& link;
    Dialogs& dialogs;
    Screens& screens;
    UnsureRegisters& unsure;
    const StopOrders& stop_orders;
  };

  explicit PidParameters(const Parts& parts)
      : ModalScreen(parts.state, View::kTavPid), parts_(parts) {}

  // Before the form is shown: reads the four parameters of the controller of SelSlot; what the
  // instrument does not tell shows as "?". Without a selected slot the dialog stays closed.
  void Open();

  // What the form shows; `index` 1..4.
  [[nodiscard]] const std::string& TBox(int index) const;
  [[nodiscard]] int Cbo() const { return cbo_; }

  // The box that was refused last, 0 for none: the keyboard belongs there.
  [[nodiscard]] int RefusedBox() const { return refused_; }

  void TBox_Change(int index, const std::string& text);

  // A line of the list was chosen: its values fill the boxes. The first line changes nothing.
  void Cbo_Click(int row);

  // The button and the Enter key: checks the boxes, asks, and sends what changed and what the
  // instrument is not known to hold. The dialog stays open if a value is refused or not
  // acknowledged; that one is read back as soon as the line allows. If the controller cannot be
  // brought back to its state afterwards, a box says that it is off; the next OK of this dialog
  // brings it back. A controller that an end action has switched off meanwhile, or has still to
  // switch off, stays off.
  void CmdOK_Click();

  void CloseNow() override;

 private:
  [[nodiscard]] bool CheckBoxes();
  [[nodiscard]] bool IsChanged(int box) const;
  [[nodiscard]] bool AnyChanged() const;
  // What the controller did before the dialog switched it off.
  struct Kept {
    std::int16_t controller_state;
    bool is_recording;
  };

  [[nodiscard]] bool Transfer();
  [[nodiscard]] bool KeepState();
  [[nodiscard]] bool SendChanged();
  void Doubt(int box, std::int16_t sent);
  [[nodiscard]] bool IsToBeOff() const;
  [[nodiscard]] bool BringBack(std::int16_t controller_state);
  [[nodiscard]] bool SwitchBack(std::int16_t controller_state);
  [[nodiscard]] std::optional<std::int16_t> ReadParameter(const char* letter);
  [[nodiscard]] bool WriteParameter(const char* letter, std::int16_t value);
  [[nodiscard]] const UnitRecord& Unit() const { return parts_.state.Unit[slot_]; }

  Parts parts_;
  int slot_ = 0;
  ByPidBox<NumberBox> boxes_;
  int cbo_ = 0;
  int refused_ = 0;
  std::optional<Kept> kept_;  // empty once it is brought back
};

}  // namespace tavrel

#endif  // TAVREL_WORK_PID_PARAMETERS_H_
