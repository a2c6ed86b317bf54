#include "files/held_set.h"

#include <algorithm>
#include <cstring>

#include "common/text.h"

namespace tavrel {

namespace {

constexpr std::array<char, 4> kMark = {'T', 'A', 'V', 'H'};

// The file's content as it lies there.
struct Layout {
  std::array<char, 4> Mark;
  std::int32_t SampleCount;
  std::int16_t AskedInput;
  std::uint16_t Seen;
  std::array<std::int16_t, kInputs> Value;
  std::uint16_t Sum;
};
static_assert(sizeof(Layout) == kHeldSetBytes);

std::uint16_t SumOf(const Layout& layout) {
  std::array<std::uint16_t, (kHeldSetBytes - 2) / 2> words{};
  std::memcpy(words.data(), &layout, kHeldSetBytes - 2);
  unsigned sum = 0;
  for (const std::uint16_t word : words) {
    sum += word;
  }
  return static_cast<std::uint16_t>(sum);
}

}  // namespace

HeldSetBytes EncodeHeldSet(const HeldSet& held) {
  Layout layout{};
  layout.Mark = kMark;
  layout.SampleCount = held.SampleCount;
  layout.AskedInput = static_cast<std::int16_t>(held.AskedInput);
  for (int input = 1; input <= kInputs; ++input) {
    const int bit = held.Seen[input] ? 1 << input : 0;
    layout.Seen = static_cast<std::uint16_t>(layout.Seen | bit);
    layout.Value[input - 1] = held.Value[input];
  }
  layout.Sum = SumOf(layout);
  HeldSetBytes bytes{};
  std::memcpy(bytes.data(), &layout, kHeldSetBytes);
  return bytes;
}

std::optional<HeldSet> DecodeHeldSet(std::span<const std::byte> bytes) {
  if (bytes.size() != kHeldSetBytes) {
    return std::nullopt;
  }
  Layout layout{};
  std::memcpy(&layout, bytes.data(), kHeldSetBytes);
  const bool is_whole = layout.Mark == kMark && layout.Sum == SumOf(layout);
  if (!is_whole || layout.AskedInput < 0 || layout.AskedInput > kInputs) {
    return std::nullopt;
  }
  HeldSet held;
  held.SampleCount = layout.SampleCount;
  held.AskedInput = layout.AskedInput;
  for (int input = 1; input <= kInputs; ++input) {
    held.Seen[input] = (layout.Seen & (1U << input)) != 0;
    held.Value[input] = layout.Value[input - 1];
  }
  return held;
}

std::string HeldSetName(const std::string& file) {
  return "." + UpperCase(file) + ".set";
}

}  // namespace tavrel
