#ifndef TAVREL_STATE_STATE_WORDS_H_
#define TAVREL_STATE_STATE_WORDS_H_

#include "base/language.h"

// Words of state that a cell of a few characters shows; its tip says more.
namespace tavrel::state_word {

inline constexpr BothLanguages kFile{"disk !", "Datei !"};  // cannot be written or opened
inline constexpr BothLanguages kSimulation = BothLanguages::Same("sim !");  // no rows for this file

}  // namespace tavrel::state_word

#endif  // TAVREL_STATE_STATE_WORDS_H_
