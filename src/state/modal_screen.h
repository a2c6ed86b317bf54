#ifndef TAVREL_STATE_MODAL_SCREEN_H_
#define TAVREL_STATE_MODAL_SCREEN_H_

#include "base/active_view.h"
#include "base/language.h"
#include "state/run_state.h"

namespace tavrel {

// The rules of a screen that stands before the main sheet until its user or its rules close it.
// While it is open its number stands in ActiveView; then the number that was there comes back.
// Screens close in the reverse of the order in which they opened. A screen lives as long as the
// program and opens any number of times.
class ModalScreen {
 public:
  // `state` outlives the screen.
  ModalScreen(RunState& state, View view) : screen_state_(state), view_(view) {}
  virtual ~ModalScreen() { CloseScreen(); }
  ModalScreen(const ModalScreen&) = delete;
  ModalScreen& operator=(const ModalScreen&) = delete;

  // The language of the texts that have two.
  [[nodiscard]] Language TextLanguage() const {
    return LanguageOf(screen_state_.Settings.HelpLang);
  }

  // False: the form closes.
  [[nodiscard]] bool IsOpen() const { return is_open_; }

  // Escape and the close box. The screen may stay open.
  virtual void Quit() { CloseNow(); }

  // Closes without a question: the form is gone, or goes.
  virtual void CloseNow() { CloseScreen(); }

 protected:
  void OpenScreen() {
    CloseScreen();
    before_ = screen_state_.ActiveView;
    screen_state_.ActiveView = view_;
    is_open_ = true;
  }
  // No effect on a screen that is not open.
  void CloseScreen() {
    if (is_open_) {
      screen_state_.ActiveView = before_;
    }
    is_open_ = false;
  }

 private:
  RunState& screen_state_;
  View view_;
  View before_ = View::kNone;
  bool is_open_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_STATE_MODAL_SCREEN_H_
