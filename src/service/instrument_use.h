#ifndef TAVREL_SERVICE_INSTRUMENT_USE_H_
#define TAVREL_SERVICE_INSTRUMENT_USE_H_

#include <string>
#include <vector>

#include "state/run_state.h"

// What the installed tests do with an instrument, for screens that may disturb them.
namespace tavrel {

// Slots whose recording is on and that record that input, from slot 1 on. Several tests may be
// bound to one input by mistake.
[[nodiscard]] std::vector<int> SlotsThatRecord(const RunState& state, int inet, int input);

// The tests of the instrument that record, one a line: "row 3:  Oven"; empty: none does.
[[nodiscard]] std::string TestsThatRecord(const RunState& state, int inet);

// As a line of these texts.
[[nodiscard]] std::string NameOfTest(const RunState& state, int slot);

}  // namespace tavrel

#endif  // TAVREL_SERVICE_INSTRUMENT_USE_H_
