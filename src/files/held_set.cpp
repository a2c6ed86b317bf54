#include "files/held_set.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/text.h"

namespace tavrel {

namespace {

constexpr std::array<char, 4> kWholeMark = {'T', 'A', 'V', 'I'};
constexpr std::array<char, 4> kOldMark = {'T', 'A', 'V', 'H'};
constexpr double kPart = 1.0 / 16384;      // of the interval
constexpr double kMicrosecond = 1e-6;      // in seconds
constexpr double kLongestInterval = 4000;  // seconds; more is no interval
constexpr std::uint16_t kFirstSetBit = 1;

using Comparison = ColumnMemory::Comparison;

// The file's content as it lies there.
struct Layout {
  std::array<char, 4> Mark;
  std::int32_t SampleCount;
  std::int64_t LastSet;
  std::uint32_t IntervalLow;
  std::uint32_t IntervalHigh;
  std::int16_t AskedInput;
  std::uint16_t Seen;
  std::uint16_t Uncertain;
  std::int16_t Base;
  ByInput<std::int16_t> Value;
  ByInput<std::int16_t> Least;
  ByInput<std::int16_t> Most;
  ByInput<std::uint8_t> Owed;
  ByInput<std::uint8_t> Repeats;
  std::uint8_t JournalLacksLines;
  std::uint8_t Compared;
  std::uint16_t Dropped;
  std::uint16_t Questioned;
  std::uint16_t Sum;
};
static_assert(sizeof(Layout) == kHeldSetBytes);

struct OldLayout {
  std::array<char, 4> Mark;
  std::int32_t SampleCount;
  std::int16_t AskedInput;
  std::uint16_t Seen;
  ByInput<std::int16_t> Value;
  std::uint16_t Sum;
};
static_assert(sizeof(OldLayout) == kOldHeldSetBytes);

// The sum of all words but the last one, which is the sum.
template <typename AnyLayout>
std::uint16_t SumOf(const AnyLayout& layout) {
  std::array<std::uint16_t, sizeof(AnyLayout) / 2> words{};
  std::memcpy(words.data(), &layout, sizeof layout);
  unsigned sum = 0;
  for (std::size_t place = 0; place + 1 < words.size(); ++place) {
    sum += words.at(place);
  }
  return static_cast<std::uint16_t>(sum);
}

template <typename AnyLayout>
AnyLayout LayoutOf(std::span<const std::byte> bytes) {
  AnyLayout layout{};
  std::memcpy(&layout, bytes.data(), sizeof layout);
  return layout;
}

bool IsInputOrNone(int input) {
  return input >= 0 && input <= kInputs;
}

std::uint16_t BitsOf(const ByInput<bool>& flags) {
  unsigned bits = 0;
  for (unsigned input = 1; input <= kInputs; ++input) {
    bits |= flags[input] ? 1U << input : 0U;
  }
  return static_cast<std::uint16_t>(bits);
}

ByInput<bool> FlagsOf(std::uint16_t bits) {
  ByInput<bool> flags{};
  for (unsigned input = 1; input <= kInputs; ++input) {
    flags[input] = (bits & (1U << input)) != 0;
  }
  return flags;
}

// What both layouts have.
template <typename AnyLayout>
HeldSet ValuesOf(const AnyLayout& layout) {
  HeldSet held;
  held.SampleCount = layout.SampleCount;
  held.AskedInput = layout.AskedInput;
  held.Seen = FlagsOf(layout.Seen);
  held.Value = layout.Value;
  return held;
}

// Rounded outward, so that what is kept is never sharper than what was known.
void PutOrder(const SamplingOrder& order, Layout& layout) {
  layout.Base = static_cast<std::int16_t>(order.Base);
  const double low = std::clamp(order.IntervalLow, 0.0, kLongestInterval);
  const double high = std::clamp(order.IntervalHigh, 0.0, kLongestInterval);
  layout.IntervalLow = static_cast<std::uint32_t>(std::floor(low / kMicrosecond));
  layout.IntervalHigh = static_cast<std::uint32_t>(std::ceil(high / kMicrosecond));
  for (int input = 1; input <= kInputs; ++input) {
    const double least = std::clamp<double>(order.Least[input], -1, 1);
    const double most = std::clamp<double>(order.Most[input], -1, 1);
    layout.Least[input] = static_cast<std::int16_t>(std::floor(least / kPart));
    layout.Most[input] = static_cast<std::int16_t>(std::ceil(most / kPart));
  }
}

SamplingOrder OrderOf(const Layout& layout) {
  SamplingOrder order;
  order.Base = layout.Base;
  order.IntervalLow = layout.IntervalLow * kMicrosecond;
  order.IntervalHigh = layout.IntervalHigh * kMicrosecond;
  for (int input = 1; input <= kInputs; ++input) {
    order.Least[input] = static_cast<float>(layout.Least[input] * kPart);
    order.Most[input] = static_cast<float>(layout.Most[input] * kPart);
  }
  return order;
}

// Bounds that contradict each other are none.
bool IsOrderPossible(const Layout& layout) {
  for (int input = 1; input <= kInputs; ++input) {
    if (layout.Least[input] > layout.Most[input]) {
      return false;
    }
  }
  return layout.IntervalLow <= layout.IntervalHigh && IsInputOrNone(layout.Base);
}

std::optional<HeldSet> DecodeOld(std::span<const std::byte> bytes) {
  const auto layout = LayoutOf<OldLayout>(bytes);
  const bool is_whole = layout.Mark == kOldMark && layout.Sum == SumOf(layout);
  return is_whole && IsInputOrNone(layout.AskedInput) ? std::optional(ValuesOf(layout))
                                                      : std::nullopt;
}

}  // namespace

HeldSetBytes EncodeHeldSet(const HeldSet& held) {
  Layout layout{};
  layout.Mark = kWholeMark;
  layout.SampleCount = held.SampleCount;
  layout.LastSet = held.Columns.LastSet;
  layout.AskedInput = static_cast<std::int16_t>(held.AskedInput);
  layout.Seen = BitsOf(held.Seen);
  const std::uint16_t first = held.Columns.IsFirstSet ? kFirstSetBit : std::uint16_t{0};
  layout.Uncertain = static_cast<std::uint16_t>(BitsOf(held.Columns.IsUncertain) | first);
  PutOrder(held.Columns.Order, layout);
  layout.Value = held.Value;
  layout.Owed = held.Columns.Owed;
  layout.Repeats = held.Columns.Repeats;
  layout.JournalLacksLines = held.JournalLacksLines ? 1 : 0;
  layout.Compared = static_cast<std::uint8_t>(held.Columns.Compared);
  layout.Dropped = BitsOf(held.Columns.IsDropped);
  layout.Questioned = held.Columns.Questioned;
  layout.Sum = SumOf(layout);
  HeldSetBytes bytes{};
  std::memcpy(bytes.data(), &layout, kHeldSetBytes);
  return bytes;
}

std::optional<HeldSet> DecodeHeldSet(std::span<const std::byte> bytes) {
  if (bytes.size() == kOldHeldSetBytes) {
    return DecodeOld(bytes);
  }
  if (bytes.size() != kHeldSetBytes) {
    return std::nullopt;
  }
  const auto layout = LayoutOf<Layout>(bytes);
  const bool is_whole = layout.Mark == kWholeMark && layout.Sum == SumOf(layout);
  const bool is_comparison = layout.Compared <= static_cast<std::uint8_t>(Comparison::kRestart);
  if (!is_whole || !is_comparison || !IsInputOrNone(layout.AskedInput) ||
      !IsOrderPossible(layout)) {
    return std::nullopt;
  }
  HeldSet held = ValuesOf(layout);
  held.Columns.LastSet = layout.LastSet;
  held.Columns.IsFirstSet = (layout.Uncertain & kFirstSetBit) != 0;
  held.Columns.IsUncertain = FlagsOf(layout.Uncertain);
  held.Columns.Order = OrderOf(layout);
  held.Columns.Owed = layout.Owed;
  held.Columns.Repeats = layout.Repeats;
  held.JournalLacksLines = layout.JournalLacksLines != 0;
  held.Columns.Compared = static_cast<Comparison>(layout.Compared);
  held.Columns.IsDropped = FlagsOf(layout.Dropped);
  held.Columns.Questioned = layout.Questioned;
  return held;
}

std::string HeldSetName(const std::string& file) {
  return "." + UpperCase(file) + ".set";
}

}  // namespace tavrel
