#ifndef TAVREL_SETUP_INSTALLATION_H_
#define TAVREL_SETUP_INSTALLATION_H_

#include <functional>
#include <string>
#include <vector>

#include "base/colour.h"
#include "base/language.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "setup/installation_commit.h"
#include "setup/test_rows.h"
#include "state/modal_screen.h"
#include "state/numbers.h"
#include "state/run_state.h"

namespace tavrel {

// The grid in its own scale: 240 units wide, a row is one unit high.
inline constexpr double kApparatusLeft = 10;
inline constexpr double kExtensionLeft = 61;
inline constexpr double kInputsLeft = 80;
inline constexpr double kInputWidth = 10;
inline constexpr double kNumberLeft = kInputsLeft + kInputWidth * kInputs;  // 230
inline constexpr double kSheetWidth = 240;

// What a cell of an input or of a number shows.
struct InstallationCell {
  std::string Text;  // one character, or empty
  Colour Background{0xFF, 0xFF, 0xFF};
  std::string Spoken;  // the same in words, for who does not see it

  [[nodiscard]] bool operator==(const InstallationCell&) const = default;
};

// One row of the grid.
struct InstallationRow {
  std::string Test_Des;
  std::string Test_Ext;
  ByInput<InstallationCell> Inputs;
  InstallationCell Number;
  bool IsEditable = true;  // false: the test waits for its file
  std::string WhyNot;      // for the tool tip; else empty

  [[nodiscard]] bool operator==(const InstallationRow&) const = default;
};

// The pop-up that is open, if any.
enum class InstallationPopup { kNone, kInput, kNumber };

// What the form shows.
struct InstallationValues {
  BySlot<InstallationRow> Rows;  // 1..12
  bool CmdOK = false;            // shown
  InstallationPopup Popup = InstallationPopup::kNone;
  int PopupRow = 0;                     // the cell at which it is placed
  int PopupInput = 0;                   // of picInput
  bool cmd_Input_1 = false;             // the button "controller" is offered
  std::vector<std::string> lbl_Effect;  // what CmdOK would do, or the fault for which it refuses;
                                        // empty while nothing has changed
};

// TavInst: which tests exist. It works on a private copy of the records and talks to no instrument;
// recordings go on beneath it.
class Installation : public ModalScreen {
 public:
  struct Parts {  // all outlive this
    InstallationCommit::Parts commit;
    Dialogs& dialogs;
    Events& events;
    std::function<bool(int slot)> is_controller_on;  // as the main sheet has read it last
  };
  explicit Installation(const Parts& parts);

  // Begins with the tests that exist now.
  void Open();

  [[nodiscard]] const InstallationValues& Values() const { return values_; }
  [[nodiscard]] Language TipLanguage() const;

  // A click on the grid, in its scale.
  void Sheet_Click(double x, double y);

  // The buttons of the pop-ups: `index` is the code of the role, or the number of the instrument.
  void cmd_Input_Click(int index);
  void cmd_TavNo_Click(int index);

  // A key on a cell does the same without a pop-up. Rows 1..12, inputs 1..15, numbers 0..6; a
  // number outside these, and a controller on an input above 4, changes nothing.
  void PutRole(int row, int input, Role role);
  void PutNumber(int row, int number);

  // The text boxes: they get the keyboard, or the user types. Longer texts are cut.
  void Test_GotFocus();
  void Test_Des_Change(int row, const std::string& text);
  void Test_Ext_Change(int row, const std::string& text);

  // Checks, asks and commits. Nothing happens before the first change.
  void CmdOK_Click();

  // The Escape key: closes a pop-up, else leaves.
  void Escape();

  // The close box: asks about changes first.
  void Quit() override;

  // Measuring goes on meanwhile, so the effect of OK can change: it is worked out again.
  void Refresh();

 private:
  [[nodiscard]] RunState& State() const { return parts_.commit.state; }
  [[nodiscard]] bool IsEditable(int row) const;
  void OfferInput(int row, int input);
  void OfferNumber(int row);
  void LoadRow(int row);
  void TakeArrived();
  void HidePopup() { values_.Popup = InstallationPopup::kNone; }
  void Changed();
  void ShowRow(int row);
  void ShowEffect();
  [[nodiscard]] bool IsRefused();
  void Commit();

  Parts parts_;
  TestRows InstWork;
  InstallationValues values_;
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_INSTALLATION_H_
