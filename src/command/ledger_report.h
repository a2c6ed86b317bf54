#ifndef TAVREL_COMMAND_LEDGER_REPORT_H_
#define TAVREL_COMMAND_LEDGER_REPORT_H_

#include <string>

#include "files/ledger.h"

// What the command tavrel-file says of a ledger.
namespace tavrel {

// In words, without a line feed at the end; further lines are indented.
[[nodiscard]] std::string LedgerWords(const LedgerFigures& figures);

// One JSON object, with a line feed. `problem`: what is wrong with the recording or its journal,
// empty if nothing is.
[[nodiscard]] std::string LedgerJson(const std::string& file, const LedgerFigures& figures,
                                     const std::string& problem);

}  // namespace tavrel

#endif  // TAVREL_COMMAND_LEDGER_REPORT_H_
