#ifndef TAVREL_DIALOGS_PROGRAM_FILE_H_
#define TAVREL_DIALOGS_PROGRAM_FILE_H_

#include "platform/dialogs.h"
#include "state/run_state.h"

namespace tavrel {

// Lets the user choose the file of a controller program: one that exists, or a name to save it
// under. True if one was chosen: the settings ProgPath (with a separator at its end) and ProgFile
// then name it, and are saved at exit if they changed. After Cancel they stay as they were.
[[nodiscard]] bool ChooseProgramFile(RunState& state, Dialogs& dialogs,
                                     FileMode mode = FileMode::kOpen);

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_PROGRAM_FILE_H_
