#ifndef TAVREL_DIALOGS_MESSAGE_BOX_LOGIC_H_
#define TAVREL_DIALOGS_MESSAGE_BOX_LOGIC_H_

#include <array>
#include <optional>
#include <string>

#include "base/language.h"
#include "platform/screens.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

// A text for ALL_MSG and how it is shown.
struct MessageRequest {
  std::string Text;  // up to three lines
  std::string Title;
  bool Img_Attention = false;
  bool Img_Question = false;
  bool CmdCancel = false;  // the button shows, and Escape answers
};

// ALL_MSG, a message box with one or two answers: what its form shows. One instance for the life of
// the program; the form is open at most once. The boxes of this program are those of the platform;
// the form is kept for the instruments that need it.
class MessageBoxLogic : public ModalScreen {
 public:
  static constexpr BothLanguages kOkTip{" ok   (enter-key)", " Ja  (Eingabe-Taste) "};
  static constexpr BothLanguages kCancelTip = BothLanguages::Same(" cancel  (esc-key) ");

  // All outlive this.
  MessageBoxLogic(RunState& state, Screens& screens)
      : ModalScreen(state, View::kAllMsg), state_(state), screens_(screens) {}

  // Shows the form and gives AskResult.
  bool Ask(const MessageRequest& request);

  [[nodiscard]] const MessageRequest& Request() const { return request_; }

  // The text at its first two line ends split (CR, LF or both together); the rest is the third
  // line. Lines that the text does not have are empty.
  [[nodiscard]] const std::array<std::string, 3>& Msg() const { return msg_; }
  [[nodiscard]] Language TipLanguage() const { return LanguageOf(state_.Settings.HelpLang); }

  // The answer: true after OK.
  [[nodiscard]] bool AskResult() const { return ask_result_; }

  // The button and the Enter key.
  void CmdOK_Click();

  // The button, the Escape key and the close box; no effect while the button is hidden.
  void CmdCancel_Click();
  void Quit() override { CmdCancel_Click(); }

 private:
  void Answer(bool result);

  RunState& state_;
  Screens& screens_;
  MessageRequest request_;
  std::array<std::string, 3> msg_;
  bool ask_result_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_MESSAGE_BOX_LOGIC_H_
