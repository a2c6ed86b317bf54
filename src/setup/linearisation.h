#ifndef TAVREL_SETUP_LINEARISATION_H_
#define TAVREL_SETUP_LINEARISATION_H_

#include <cstdint>

// Thermocouples as tables. A count is 0.05 degrees. The voltage of a thermocouple, put on a
// straight line through 0 and 500 degrees, is its linear value; what has to be added to give the
// true temperature is its correction. The tables serve the adjustment of an input alone:
// instruments have linearisations of their own, chosen by register L.
namespace tavrel {

// What register L of an input says.
namespace sensor {
inline constexpr std::int16_t kNone = 0;  // register Y shows the raw reading
inline constexpr std::int16_t kLinear = 1;
inline constexpr std::int16_t kRtd = 2;  // the reference sensor
inline constexpr std::int16_t kFeCuNi = 3;
inline constexpr std::int16_t kNiCrNi = 4;
inline constexpr std::int16_t kNiSil = 5;  // known to instruments alone
}  // namespace sensor

inline constexpr int kCorrections = 625;         // entries of a table, counted from 1
inline constexpr int kCountsPerCorrection = 16;  // linear counts from one entry to the next

// Entry `index` of the table of `sensor_code`, in counts: the correction at the linear value of
// `index` times 16 counts. 0 for an index outside 1..625 and for a sensor without a table.
[[nodiscard]] int CorrectionAt(int sensor_code, int index);

// The correction, in counts, at a true temperature in counts. It is looked up twice: the table
// is entered with the linear value, which is known only with the correction. Nothing is
// interpolated: a value between two entries takes the lower one.
[[nodiscard]] int CorrectionOfTrue(int sensor_code, float true_counts);

// Reference and final temperature of an adjustment in counts, with their corrections. Only
// final_counts is set for a sensor without a table.
struct LinearisedSpan {
  float final_counts = 0;
  float reference_counts = 0;
  int final_correction = 0;
  int reference_correction = 0;
};

// `reference_hundredths` is the reference sensor's mean reading in steps of 0.01 degrees,
// `final_degrees` what the user typed. Single precision throughout.
[[nodiscard]] LinearisedSpan LookUpSpan(int sensor_code, float reference_hundredths,
                                        float final_degrees);

}  // namespace tavrel

#endif  // TAVREL_SETUP_LINEARISATION_H_
