#ifndef TAVREL_SETUP_UNFINISHED_ADJUSTMENT_H_
#define TAVREL_SETUP_UNFINISHED_ADJUSTMENT_H_

#include "platform/clock.h"
#include "state/messages.h"
#include "state/run_state.h"

namespace tavrel {

// At the start: reports, once, an adjustment that ended with the program, with what its rows had
// before. Until they are adjusted anew they may have no sensor, and record no temperature.
void TellUnfinishedAdjustment(const RunState& state, const Clock& clock, Messages& messages);

}  // namespace tavrel

#endif  // TAVREL_SETUP_UNFINISHED_ADJUSTMENT_H_
