#ifndef TAVREL_DIALOGS_COPY_TEXTS_H_
#define TAVREL_DIALOGS_COPY_TEXTS_H_

#include "base/language.h"

// What boxes say of copying.
namespace tavrel::copy_text {

inline constexpr BothLanguages kInUse{"File is in use", "Die Datei ist in Gebrauch"};
inline constexpr BothLanguages kJournalOf{"the journal of %1", "das Journal von %1"};

}  // namespace tavrel::copy_text

#endif  // TAVREL_DIALOGS_COPY_TEXTS_H_
