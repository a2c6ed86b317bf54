#include "setup/unfinished_adjustment.h"

#include <string>

#include "platform/file_system.h"
#include "setup/adjustment_journal.h"

namespace tavrel {

void TellUnfinishedAdjustment(const RunState& state, const Clock& clock, Messages& messages) {
  AdjustmentJournal journal(JoinPath(state.DataHome, kJournalFile), clock);
  const auto run = journal.TakeUnfinished();
  if (!run) {
    return;
  }
  std::string text =
      "This adjustment ended with the program before it was complete:\n" + run->begin +
      "\n\nIts rows may have no sensor or wrong values until they are adjusted anew. "
      "As far as it is known they had before and have now:";
  for (const std::string& row : run->rows) {
    text += "\n    " + row;
  }
  text += "\n\nThe record stands in " + journal.Path();
  messages.Report(0, {text, "adjustment"});
}

}  // namespace tavrel
