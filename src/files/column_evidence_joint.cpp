#include <cmath>

#include "files/column_evidence.h"

// What inputs that are in doubt at the same time say of each other. One by one each of them may be
// ahead or not; but where their distance is known not every one of these answers goes with every
// answer of the other. Which of them go together are differences of whole numbers with bounds, so
// that the shortest ways through all of them give exactly what is left of each.
namespace tavrel {

// By how many samples more than the second one the first one can be ahead.
double ColumnEvidence::MostAheadOf(int first, int second) const {
  const double parts = bounds_.Most(second, first) - At(second).low + At(first).high;
  return std::floor(parts / (parts >= 0 ? meter_.Low() : meter_.High()));
}

// By how many samples each input in doubt can be ahead; node 0 is ahead by none. Empty where the
// looks contradict each other.
std::optional<TimeBounds> ColumnEvidence::ShiftsTogether() const {
  TimeBounds shifts;
  for (int input = 1; input <= kInputs; ++input) {
    const Shifts alone = ShiftsOf(input);
    if (IsLookedAt(input) &&
        !(shifts.Tighten(input, 0, alone.most) && shifts.Tighten(0, input, -alone.least))) {
      return std::nullopt;
    }
  }
  for (int first = 1; first <= kInputs; ++first) {
    for (int second = 1; second <= kInputs; ++second) {
      const bool is_pair = first != second && IsLookedAt(first) && IsLookedAt(second);
      if (is_pair && !shifts.Tighten(first, second, MostAheadOf(first, second))) {
        return std::nullopt;
      }
    }
  }
  return shifts;
}

// False if that decides none.
bool ColumnEvidence::JudgeTogether() {
  const auto shifts = ShiftsTogether();
  bool any = false;
  for (int input = 1; shifts && input <= kInputs; ++input) {
    if (IsLookedAt(input) && shifts->Width(input, 0) == 0) {
      Settle(input, static_cast<int>(shifts->Most(input, 0)));
      any = true;
    }
  }
  return any;
}

}  // namespace tavrel
