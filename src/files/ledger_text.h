#ifndef TAVREL_FILES_LEDGER_TEXT_H_
#define TAVREL_FILES_LEDGER_TEXT_H_

#include <string>

#include "base/language.h"
#include "files/ledger.h"

namespace tavrel {

// "3", "3 to 5", "0 or more".
[[nodiscard]] std::string BoundsText(const SetBounds& sets, Language language = Language::kEnglish);

// One line: "2134 sets, complete", "2134 sets, 3 lost on 14.03. at 02:10", "no ledger: there is no
// journal".
[[nodiscard]] std::string LedgerSummary(const LedgerFigures& figures,
                                        Language language = Language::kEnglish);

}  // namespace tavrel

#endif  // TAVREL_FILES_LEDGER_TEXT_H_
