#ifndef TAVREL_SETUP_CALIBRATION_H_
#define TAVREL_SETUP_CALIBRATION_H_

#include <cstdint>
#include <optional>

#include "setup/linearisation.h"

// The arithmetic of an adjustment, in single precision. An instrument subtracts the offset from the
// raw reading and divides by the divisor J + K / 65536.
namespace tavrel {

namespace reg {
// Of an input or, with index 0, of the reference sensor:
inline constexpr const char* kDivisorWhole = "J";
inline constexpr const char* kDivisorFraction = "K";
inline constexpr const char* kSensorCode = "L";  // see sensor in setup/linearisation.h
inline constexpr const char* kOffset = "O";      // raw counts
}  // namespace reg

inline constexpr int kReadings = 10;  // of one value, whose mean is used

// Between which final values an input can be adjusted, both included; in degrees, or in steps of
// the user's own for a linear input.
struct FinalRange {
  float low = 0;
  float high = 0;

  [[nodiscard]] bool Holds(float value) const { return low <= value && value <= high; }
};

// `reference_sum` is the sum of the ten readings of the reference sensor, in steps of 0.01 degrees:
// a thermocouple has to be one degree warmer at least.
[[nodiscard]] FinalRange FinalRangeOf(int sensor_code, float reference_sum);

// The mean of ten readings, in the steps of their sum.
[[nodiscard]] float MeanOf(float sum);

// What is written to registers J and K.
struct Divisor {
  std::int16_t whole = 0;     // J
  std::int16_t fraction = 0;  // K, in 1/65536, its bits taken as a signed word

  [[nodiscard]] bool operator==(const Divisor&) const = default;
};

// Empty if the registers cannot hold it: below 0, or 32767 and more. A fraction that is rounded up
// to a whole is stored as 0, with the integer part as it is.
[[nodiscard]] std::optional<Divisor> DivisorOf(float value);

// The divisor of an input from the means of its raw readings at both ends of the span. -1, which no
// register takes, if a thermocouple was not warmed.
[[nodiscard]] float InputDivisor(int sensor_code, float raw_offset, float raw_gain,
                                 const LinearisedSpan& span);

// The same of the reference sensor between 0 and 100 degrees.
[[nodiscard]] float ReferenceDivisor(float raw_offset, float raw_gain);

// The divisor as it is shown, with both words of it.
[[nodiscard]] double ShownDivisor(const Divisor& divisor);

}  // namespace tavrel

#endif  // TAVREL_SETUP_CALIBRATION_H_
