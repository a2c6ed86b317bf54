#ifndef TAVREL_FILES_HELD_SET_H_
#define TAVREL_FILES_HELD_SET_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "state/column_memory.h"
#include "state/unit_record.h"

// What the pump holds of a set that is not complete yet, as a small hidden file beside the
// recording. An instrument hands each value over only once: without this file the values of a
// half-read set would be gone with the program, and their inputs would run one set ahead of the
// others from then on.
namespace tavrel {

// The part of a set that has arrived. It belongs behind row SampleCount - 1 of the recording; a
// held set whose SampleCount is not the file's is out of date and means nothing.
struct HeldSet {
  std::int32_t SampleCount = 0;
  int AskedInput = 0;    // input whose value was asked for and has not been judged; 0 for none
  ByInput<bool> Seen{};  // by input 1..15
  ByInput<std::int16_t> Value{};  // raw temperatures
  ColumnMemory Columns{};         // IsOpened is not kept
  // The journal could not be written, and what it lacks counts for how complete the recording is.
  bool JournalLacksLines = false;

  [[nodiscard]] bool operator==(const HeldSet&) const = default;
};

//   bytes 0..3      "TAVI"
//   bytes 4..7      SampleCount
//   bytes 8..15     LastSet
//   bytes 16..23    interval on the program's clock, at the least and at the most, microseconds
//   bytes 24..25    AskedInput
//   bytes 26..27    seen, one bit an input, bit 1 is input 1
//   bytes 28..29    uncertain inputs in the same way; bit 0: no set has been written since the
//   start bytes 30..31    base of the order in which the inputs are sampled, 0 for none
//   bytes 32..61    values of inputs 1..15
//   bytes 62..91    time from the base to inputs 1..15 at the least, 1/16384 of the interval
//   bytes 92..121   the same at the most
//   bytes 122..136  Owed of inputs 1..15, a byte each
//   bytes 137..151  Repeats in the same way
//   byte  152       1 if the journal lacks lines
//   byte  153       1 if the columns are compared behind a full buffer, 2 behind a restart
//   bytes 154..155  inputs of which the user has made the instrument drop values, as those seen
//   bytes 156..157  rows before the set in hand that the restart may have mixed
//   bytes 158..159  sum of the words before, 16 bits
//
// Earlier programs have kept 44 bytes: "TAVH", SampleCount, AskedInput, seen, values, sum. What
// they held is taken over; of the order in which the inputs are sampled they know nothing.
inline constexpr int kHeldSetBytes = 160;
inline constexpr int kOldHeldSetBytes = 44;
using HeldSetBytes = std::array<std::byte, kHeldSetBytes>;

[[nodiscard]] HeldSetBytes EncodeHeldSet(const HeldSet& held);

// Empty for anything that EncodeHeldSet, or an earlier program, does not make.
[[nodiscard]] std::optional<HeldSet> DecodeHeldSet(std::span<const std::byte> bytes);

// The name of the file beside the recording `file`. Hidden, so that no list of recordings shows
// it.
[[nodiscard]] std::string HeldSetName(const std::string& file);

}  // namespace tavrel

#endif  // TAVREL_FILES_HELD_SET_H_
