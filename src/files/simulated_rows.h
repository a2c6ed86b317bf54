#ifndef TAVREL_FILES_SIMULATED_ROWS_H_
#define TAVREL_FILES_SIMULATED_ROWS_H_

#include "link/link.h"
#include "platform/dialogs.h"
#include "state/run_state.h"

// Without a port the store in memory answers, and its values would be written behind the samples
// of an instrument, where nobody could tell them apart later.
namespace tavrel {

// True if the line is simulated and the slot's file holds rows from before, or the first values of
// one, while the user has not said that simulated ones may follow them. The pump leaves such a slot
// alone.
[[nodiscard]] bool NeedsConsentToSimulate(const RunState& state, const Link& link, int slot);

// The same for a slot whose recording is on: it stands still.
[[nodiscard]] bool StandsStillInSimulation(const RunState& state, const Link& link, int slot);

// What to ask the user about such slots; their answer is SimulatedRowsAllowed.
[[nodiscard]] Notice ConsentQuestion(const RunState& state, const Link& link);

}  // namespace tavrel

#endif  // TAVREL_FILES_SIMULATED_ROWS_H_
