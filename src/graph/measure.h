#ifndef TAVREL_GRAPH_MEASURE_H_
#define TAVREL_GRAPH_MEASURE_H_

#include <array>
#include <cstddef>
#include <string>

// What is measured on the plot, in numbers and texts.
namespace tavrel {

// A point of the part view or the overview.
struct PlotPoint {
  double X = 0;  // minutes
  double Y = 0;  // degrees Celsius, or the difference from the reference input

  [[nodiscard]] bool operator==(const PlotPoint&) const = default;
};

// Times below these minutes read in seconds.
inline constexpr double kSecondsBelow = 16;

// The number format of the read-outs: |v| up to 100 with two decimals, up to 1000 with one.
[[nodiscard]] std::string ValueText(double value);

// The cursor read-out, "x = " and "y = " with their values and no unit.
[[nodiscard]] std::string CursorTextX(double minutes, bool is_in_hours);
[[nodiscard]] std::string CursorTextY(double degrees);

// The difference of two points: dy, dx in seconds, minutes or hours, and the slope in that unit; no
// slope where dx is 0. Minutes or hours are chosen by dy, as in all releases.
[[nodiscard]] std::string DifferenceText(const PlotPoint& first, const PlotPoint& second);

// The curve of the legend at a height of 0 (top) to 1 (bottom), from 1; 0 for a place that is none
// of the `curve_count` curves. The rows of the legend are one 16th apart while this counts in
// 15ths: a click has to choose the curve that it has chosen in all releases.
[[nodiscard]] int LegendCurveAt(double height, int curve_count);

// The same for the rows as they are drawn, which are only looked at: the place in the list of
// curves, from 0; -1 for a place that is none of them.
[[nodiscard]] int LegendRowAt(double height, int curve_count);

// Rows of the legend in its height, one more than there are inputs.
inline constexpr double kDrawnLegendRows = 16;

// "Integral =  12 °C·min", whole part only.
[[nodiscard]] std::string IntegralText(double degree_minutes);

inline constexpr std::size_t kBaselinePoints = 5;

// The line against which a curve is integrated: five points and the segments between them. Sorted
// by X it is a function of X, in whatever order it was drawn.
struct Baseline {
  std::array<PlotPoint, kBaselinePoints> Points;

  // Ascending by X; points of equal X stay in their order.
  void Sort();

  // The height at `x`. A segment narrower than `tolerance` is a step and has the height of its
  // left point. Right of the last point the answer is `before`.
  [[nodiscard]] double At(double x, double tolerance, double before) const;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_MEASURE_H_
