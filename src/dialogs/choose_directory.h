#ifndef TAVREL_DIALOGS_CHOOSE_DIRECTORY_H_
#define TAVREL_DIALOGS_CHOOSE_DIRECTORY_H_

#include <optional>
#include <string>

#include "base/language.h"
#include "platform/directory_lists.h"
#include "platform/screens.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

// ALL_DIR, the choice of a directory: what its form shows, and the choice for the rule that asks
// for one. One instance for the life of the program; the form is open at most once.
class DirectoryChoice : public ModalScreen {
 public:
  static constexpr BothLanguages kOkTip{" ok  (enter-key)  ", " Auswählen  (Eingabe-Taste) "};

  // All outlive this.
  DirectoryChoice(RunState& state, Screens& screens,
                  DirectoryLists::ListPlaces list_places = MountedPlaces)
      : ModalScreen(state, View::kAllDir),
        state_(state),
        screens_(screens),
        lists_(std::move(list_places)) {}

  // Shows the form, beginning with `directory`. The chosen directory without a separator at its
  // end, or nothing if the user left without a choice.
  [[nodiscard]] std::optional<std::string> Ask(const std::string& directory);

  // The lists of the form.
  [[nodiscard]] DirectoryLists& Lists() { return lists_; }
  [[nodiscard]] Language TipLanguage() const { return LanguageOf(state_.Settings.HelpLang); }

  // The button and the Enter key: the path of the lists is chosen.
  void CmdOK_Click();

 private:
  RunState& state_;
  Screens& screens_;
  DirectoryLists lists_;
  std::optional<std::string> chosen_;
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_CHOOSE_DIRECTORY_H_
