#ifndef TAVREL_FILES_SET_IN_HAND_H_
#define TAVREL_FILES_SET_IN_HAND_H_

#include "state/run_state.h"

// What the pump holds of the next set of a slot, in SampleSeen and SampleValue.
namespace tavrel {

// True if every recorded input of the set has arrived. Such a set stays in hand only where the
// disk has refused it.
[[nodiscard]] bool HoldsWholeSet(const RunState& state, int slot);

// True if at least one has.
[[nodiscard]] bool HoldsAnyOfSet(const RunState& state, int slot);

}  // namespace tavrel

#endif  // TAVREL_FILES_SET_IN_HAND_H_
