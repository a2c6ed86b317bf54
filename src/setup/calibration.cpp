#include "setup/calibration.h"

#include <cmath>

#include "base/number.h"

namespace tavrel {
namespace {

constexpr FinalRange kLinearRange{1, 1000};
constexpr float kHottest = 500;            // degrees: the end of the tables
constexpr double kHundredthsOfSum = 1000;  // ten readings of 0.01 degrees in one degree
constexpr float kReferenceSpan = 10000;    // 100 degrees in steps of 0.01
constexpr float kPartsOfWhole = 65536;     // steps of K
constexpr float kDivisorsEnd = 32767;

}  // namespace

// The sum of whole steps is exact; rounded once, the bound is the number that the user reads and
// types.
FinalRange FinalRangeOf(int sensor_code, float reference_sum) {
  if (sensor_code == sensor::kLinear) {
    return kLinearRange;
  }
  return {static_cast<float>(double{reference_sum} / kHundredthsOfSum + 1), kHottest};
}

float MeanOf(float sum) {
  return sum / static_cast<float>(kReadings);
}

std::optional<Divisor> DivisorOf(float value) {
  if (!(value >= 0 && value < kDivisorsEnd)) {
    return std::nullopt;
  }
  const float whole = std::floor(value);
  // To the nearest, ties to even; beyond 32767 the word is negative, and 65536 becomes 0.
  const auto parts = static_cast<std::int32_t>(std::lrint((value - whole) * kPartsOfWhole));
  return Divisor{ToWord(whole), static_cast<std::int16_t>(parts)};
}

float InputDivisor(int sensor_code, float raw_offset, float raw_gain, const LinearisedSpan& span) {
  const float raw_span = raw_gain - raw_offset;
  if (sensor_code == sensor::kLinear) {
    return raw_span / span.final_counts;
  }
  const float distance = span.final_counts - span.reference_counts +
                         static_cast<float>(span.reference_correction) -
                         static_cast<float>(span.final_correction);
  return distance == 0 ? -1 : raw_span / distance;
}

float ReferenceDivisor(float raw_offset, float raw_gain) {
  return (raw_gain - raw_offset) / kReferenceSpan;
}

double ShownDivisor(const Divisor& divisor) {
  const double parts = double(divisor.fraction) / double{kPartsOfWhole};
  return divisor.whole + parts + (divisor.fraction < 0 ? 1 : 0);
}

}  // namespace tavrel
