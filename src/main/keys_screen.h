#ifndef TAVREL_MAIN_KEYS_SCREEN_H_
#define TAVREL_MAIN_KEYS_SCREEN_H_

#include "base/language.h"
#include "state/modal_screen.h"

namespace tavrel {

// TavKeys, the table of all keys (main/key_table.h). Nothing can be changed on it.
class KeysScreen : public ModalScreen {
 public:
  // `state` outlives this.
  explicit KeysScreen(RunState& state) : ModalScreen(state, View::kTavKeys), state_(state) {}

  void Open() { OpenScreen(); }
  [[nodiscard]] Language TipLanguage() const { return LanguageOf(state_.Settings.HelpLang); }

 private:
  RunState& state_;
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_KEYS_SCREEN_H_
