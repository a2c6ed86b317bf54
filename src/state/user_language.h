#ifndef TAVREL_STATE_USER_LANGUAGE_H_
#define TAVREL_STATE_USER_LANGUAGE_H_

#include "base/language.h"
#include "state/run_state.h"

namespace tavrel {

// The language in which the user wants to be spoken to.
[[nodiscard]] inline Language UserLanguage(const RunState& state) {
  return LanguageOf(state.Settings.HelpLang);
}

}  // namespace tavrel

#endif  // TAVREL_STATE_USER_LANGUAGE_H_
