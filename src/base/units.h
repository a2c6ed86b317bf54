#ifndef TAVREL_BASE_UNITS_H_
#define TAVREL_BASE_UNITS_H_

namespace tavrel {

// Temperatures are words of 16 bits in these steps.
inline constexpr double kDegreesPerStep = 0.05;
inline constexpr double kStepsPerDegree = 20;

inline constexpr double kSecondsPerMinute = 60;
inline constexpr double kSecondsPerHour = 3600;
inline constexpr double kMinutesPerHour = 60;

}  // namespace tavrel

#endif  // TAVREL_BASE_UNITS_H_
