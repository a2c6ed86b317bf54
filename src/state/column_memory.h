#ifndef TAVREL_STATE_COLUMN_MEMORY_H_
#define TAVREL_STATE_COLUMN_MEMORY_H_

#include <algorithm>
#include <array>
#include <cstdint>

#include "state/numbers.h"
#include "state/unit_record.h"

namespace tavrel {

// What is known of the order and the distance in time in which an instrument samples the inputs
// of a recording: of each input how long it is sampled after the base, in parts of the interval,
// at the least and at the most. It holds for as long as the instrument is not switched off.
struct SamplingOrder {
  int Base = 0;            // input 1..15; 0: nothing is known
  double IntervalLow = 0;  // seconds on the program's clock; 0 if it is not known
  double IntervalHigh = 0;
  ByInput<float> Least{};  // by input 1..15, -1..1; both 0 for the base
  ByInput<float> Most{};

  [[nodiscard]] bool operator==(const SamplingOrder&) const = default;
};

// What a recording has to remember about its columns beyond the values of the set in hand. Kept
// beside the file, for a restart of the program.
struct ColumnMemory {
  bool IsOpened = false;        // the file was opened since: what is known begins with this
  bool IsFirstSet = false;      // no set has been written since the recording was started
  ByInput<bool> IsUncertain{};  // by input: a doubt of it was given up

  // Why the columns are being compared. What a comparison has found and done so far ends with the
  // program: the next one compares anew.
  enum class Comparison : std::uint8_t { kNone, kFullBuffer, kRestart };
  Comparison Compared = Comparison::kNone;
  std::uint16_t Questioned = 0;  // rows before the set in hand that a restart may have mixed
  // By input: the user has made the instrument drop values of it, and nothing is made up for yet.
  ByInput<bool> IsDropped{};

  // By input: so many values of the first sets were lost, and the next one stands for them too.
  ByInput<std::uint8_t> Owed{};
  // By input: the value of the set in hand stands in so many further sets.
  ByInput<std::uint8_t> Repeats{};

  // When the last set was made that is written or was told to be lost, by the wall clock, in
  // seconds of some count; 0: not known.
  std::int64_t LastSet = 0;

  SamplingOrder Order;

  // True if it says anything that a restart of the program has to know.
  [[nodiscard]] bool IsNeeded() const {
    constexpr auto is_set = [](const auto& value) { return value != 0; };
    return Order.Base != 0 || Compared != Comparison::kNone ||
           std::any_of(IsDropped.begin(), IsDropped.end(), is_set) ||
           std::any_of(IsUncertain.begin(), IsUncertain.end(), is_set) ||
           std::any_of(Owed.begin(), Owed.end(), is_set) ||
           std::any_of(Repeats.begin(), Repeats.end(), is_set);
  }

  [[nodiscard]] bool operator==(const ColumnMemory&) const = default;
};

}  // namespace tavrel

#endif  // TAVREL_STATE_COLUMN_MEMORY_H_
