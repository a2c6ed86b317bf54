#include "graph/measure.h"

#include <algorithm>
#include <cmath>

#include "base/number.h"
#include "graph/view_frame.h"

namespace tavrel {
namespace {

constexpr double kMinutesUpTo = 60;   // degrees: see DifferenceText
constexpr double kSlopeScale = 1000;  // the slope reads in E-3
constexpr double kLegendRows = 15;

struct Span {
  double value;
  const char* unit;
};

Span SpanOf(double dx, double dy) {
  if (dx < kSecondsBelow) {
    return {dx * kSecondsOfMinute, " sec"};
  }
  return dy <= kMinutesUpTo ? Span{dx, " min"} : Span{dx / kMinutesOfHour, " h"};
}

}  // namespace

std::string ValueText(double value) {
  const double size = std::abs(value);
  if (size <= 100) {
    return FormatMask(value, "###0.00");
  }
  return FormatMask(value, size <= 1000 ? "####0.0" : "######0");
}

std::string CursorTextX(double minutes, bool is_in_hours) {
  return "x = " + (is_in_hours ? FormatMask(minutes / kMinutesOfHour, "###0.0")
                               : FormatMask(minutes, "##0.00"));
}

std::string CursorTextY(double degrees) {
  return "y = " + FormatMask(degrees, std::abs(degrees) >= 99 ? "####0.0" : "###0.00");
}

std::string DifferenceText(const PlotPoint& first, const PlotPoint& second) {
  const double dy = std::abs(second.Y - first.Y);
  const Span dx = SpanOf(std::abs(second.X - first.X), dy);
  std::string text = "dy = " + ValueText(dy) + "       dx = " + ValueText(dx.value) + dx.unit;
  if (dx.value != 0) {
    text += "       dy/dx = " + ValueText(std::abs(dy / dx.value) * kSlopeScale) + " E-3";
  }
  return text;
}

int LegendCurveAt(double height, int curve_count) {
  const int place = IntFloor(height * kLegendRows + 0.5);
  return place >= 1 && place <= curve_count ? place : 0;
}

int LegendRowAt(double height, int curve_count) {
  const double row = std::nearbyint(height * kDrawnLegendRows) - 1;
  return row >= 0 && row < curve_count ? static_cast<int>(row) : -1;
}

std::string IntegralText(double degree_minutes) {
  return "Integral =  " + FormatMask(std::floor(degree_minutes), "0") + " °C·min";
}

void Baseline::Sort() {
  std::ranges::stable_sort(Points, {}, &PlotPoint::X);
}

double Baseline::At(double x, double tolerance, double before) const {
  for (std::size_t k = 1; k < kBaselinePoints; ++k) {
    const PlotPoint& left = Points.at(k - 1);
    const PlotPoint& right = Points.at(k);
    if (x > right.X) {
      continue;
    }
    const double width = right.X - left.X;
    if (std::abs(width) <= tolerance) {
      return left.Y;
    }
    return (right.Y - left.Y) * (x - left.X) / width + left.Y;
  }
  return before;
}

}  // namespace tavrel
