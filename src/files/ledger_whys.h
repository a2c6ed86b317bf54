#ifndef TAVREL_FILES_LEDGER_WHYS_H_
#define TAVREL_FILES_LEDGER_WHYS_H_

#include "base/language.h"

// Why there is no ledger, see LedgerFigures::Why, which is the English text.
namespace tavrel::no_ledger {

inline constexpr BothLanguages kNoJournal{"there is no journal", "es gibt kein Journal"};
inline constexpr BothLanguages kPart{"it is a part of another recording",
                                     "sie ist ein Teil einer anderen Aufzeichnung"};
inline constexpr BothLanguages kSimulated{"no instrument was on the line",
                                          "an der Leitung war kein Gerät"};
inline constexpr BothLanguages kAll[] = {kNoJournal, kPart, kSimulated};

}  // namespace tavrel::no_ledger

#endif  // TAVREL_FILES_LEDGER_WHYS_H_
