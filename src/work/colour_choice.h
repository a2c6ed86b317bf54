#ifndef TAVREL_WORK_COLOUR_CHOICE_H_
#define TAVREL_WORK_COLOUR_CHOICE_H_

#include <optional>

#include "platform/screens.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

// TavColor, the choice of the colour of a curve: one line sample in each row, and an empty row
// for none. One instance for the life of the program; its form is open at most once.
class ColourChoice : public ModalScreen {
 public:
  static constexpr int kRows = 15;  // codes 1..14 and the empty row; the height of PicColor

  // All outlive this.
  ColourChoice(RunState& state, Screens& screens)
      : ModalScreen(state, View::kTavColor), screens_(screens) {}

  // Shows the form for `input`, whose code is `code`. The chosen code, 0 for no colour; nothing
  // if the user left without a choice.
  [[nodiscard]] std::optional<int> Ask(int input, int code);

  // The input and its code as asked.
  [[nodiscard]] int Input() const { return input_; }
  [[nodiscard]] int PresentCode() const { return present_code_; }

  // A click at height `y` of the picture, 0 at its top and kRows at its bottom. Nothing is
  // chosen outside of it.
  void PicColor_Click(double y);

  // The button, as the Escape key and the close box: nothing is chosen.
  void CmdCancel_Click() { Quit(); }

 private:
  Screens& screens_;
  std::optional<int> chosen_;
  int input_ = 0;
  int present_code_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_COLOUR_CHOICE_H_
