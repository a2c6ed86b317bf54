#ifndef TAVREL_SERVICE_INSTRUMENT_USE_H_
#define TAVREL_SERVICE_INSTRUMENT_USE_H_

#include <functional>
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

// The tests of the instrument that record, control or both, one a line: "row 3:  Oven  (records,
// controls)"; empty: none does. A test controls if its program runs or its controller is on as far
// as `is_controller_on` knows.
[[nodiscard]] std::string TestsAtWork(const RunState& state, int inet,
                                      const std::function<bool(int slot)>& is_controller_on);

// As a line of these texts.
[[nodiscard]] std::string NameOfTest(const RunState& state, int slot);

}  // namespace tavrel

#endif  // TAVREL_SERVICE_INSTRUMENT_USE_H_
