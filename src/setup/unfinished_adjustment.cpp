#include "setup/unfinished_adjustment.h"

#include <string>

#include "platform/file_system.h"
#include "setup/adjustment_journal.h"
#include "setup/setup_texts.h"
#include "state/user_language.h"

namespace tavrel {

void TellUnfinishedAdjustment(const RunState& state, const Clock& clock, Messages& messages) {
  AdjustmentJournal journal(JoinPath(state.DataHome, kJournalFile), clock);
  const auto run = journal.TakeUnfinished();
  if (!run) {
    return;
  }
  std::string rows;
  for (const std::string& row : run->rows) {
    rows += "\n    " + row;
  }
  messages.Report(
      0, {setup_text::kUnfinished.Text(UserLanguage(state), {run->begin, rows, journal.Path()}),
          "adjustment"});
}

}  // namespace tavrel
