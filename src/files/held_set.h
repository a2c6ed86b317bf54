#ifndef TAVREL_FILES_HELD_SET_H_
#define TAVREL_FILES_HELD_SET_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "files/unit_record.h"

// What the pump holds of a set that is not complete yet, as a small hidden file beside the
// recording. An instrument hands each value over only once: without this file the values of a
// half-read set would be gone with the program, and their inputs would run one set ahead of the
// others from then on.
namespace tavrel {

// The part of a set that has arrived. It belongs behind row SampleCount - 1 of the recording; a
// held set whose SampleCount is not the file's is out of date and means nothing.
struct HeldSet {
  std::int32_t SampleCount = 0;
  int AskedInput = 0;  // input whose value was asked for and has not been judged; 0 for none
  std::array<bool, kInputs + 1> Seen{};           // by input 1..15
  std::array<std::int16_t, kInputs + 1> Value{};  // raw temperatures

  [[nodiscard]] bool operator==(const HeldSet&) const = default;
};

//   bytes 0..3    "TAVH"
//   bytes 4..7    SampleCount
//   bytes 8..9    AskedInput
//   bytes 10..11  seen, one bit an input, bit 1 is input 1
//   bytes 12..41  values of inputs 1..15
//   bytes 42..43  sum of the words before, 16 bits
inline constexpr int kHeldSetBytes = 44;
using HeldSetBytes = std::array<std::byte, kHeldSetBytes>;

[[nodiscard]] HeldSetBytes EncodeHeldSet(const HeldSet& held);

// Empty for anything that EncodeHeldSet does not make.
[[nodiscard]] std::optional<HeldSet> DecodeHeldSet(std::span<const std::byte> bytes);

// The name of the file beside the recording `file`. Hidden, so that no list of recordings shows
// it.
[[nodiscard]] std::string HeldSetName(const std::string& file);

}  // namespace tavrel

#endif  // TAVREL_FILES_HELD_SET_H_
