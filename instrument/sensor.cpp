#include "instrument/sensor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <tuple>

#include "instrument/thermocouples.h"

namespace instrument {
namespace {

// A point of a thermocouple's curve: true = linear + correction.
struct CurvePoint {
  double linear;
  double correction;
};

constexpr double kDegreesApart = 0.8;  // from one correction to the next, on the line
constexpr CurvePoint kColdEnd{-200.0, -25.0};
constexpr CurvePoint kZero{0.0, 0.0};

// A point at the cold end, one at 0 degrees, one for each correction.
using FineCurve = std::array<CurvePoint, std::tuple_size_v<Corrections> + 2>;

constexpr FineCurve FineCurveOf(const Corrections& corrections) {
  FineCurve curve{kColdEnd, kZero};
  for (std::size_t i = 0; i < corrections.size(); ++i) {
    const double linear = kDegreesApart * static_cast<double>(i + 1);
    curve.at(i + 2) = {linear, corrections.at(i) / kStepsPerDegree};
  }
  return curve;
}

constexpr FineCurve kFeCuNiCurve = FineCurveOf(kFeCuNiCorrections);
constexpr FineCurve kNiCrNiCurve = FineCurveOf(kNiCrNiCorrections);
constexpr std::array<CurvePoint, 6> kNiSilCurve{
    {{-200.0, -30.0}, {0.0, 0.0}, {60.0, 9.0}, {160.0, 13.0}, {320.0, 9.0}, {500.0, 0.0}}};

std::span<const CurvePoint> CurveOf(int code) {
  switch (code) {
    case kFeCuNi:
      return kFeCuNiCurve;
    case kNiCrNi:
      return kNiCrNiCurve;
    case kNiSil:
      return kNiSilCurve;
    default:
      return {};
  }
}

double TrueAt(const CurvePoint& point) {
  return point.linear + point.correction;
}

double Divisor(const Calibration& calibration) {
  return calibration.divisor_whole + calibration.divisor_fraction / 65536.0;
}

std::int16_t HeldWord(double steps) {
  return static_cast<std::int16_t>(std::lrint(std::clamp(steps, -32767.0, 32767.0)));
}

}  // namespace

Calibration CalibrationFor(const InputNature& nature, int code) {
  Calibration calibration;
  calibration.offset = HeldWord(nature.offset);
  calibration.divisor_whole = static_cast<std::int16_t>(std::floor(nature.gain));
  calibration.divisor_fraction =
      static_cast<std::uint16_t>((nature.gain - std::floor(nature.gain)) * 65536.0);
  calibration.code = code;
  return calibration;
}

double LinearDegrees(int code, double degrees) {
  const auto curve = CurveOf(code);
  // Beyond its ends a curve runs on with its last slope of 1.
  if (curve.empty() || degrees >= TrueAt(curve.back())) {
    return curve.empty() ? degrees : degrees - curve.back().correction;
  }
  if (degrees <= TrueAt(curve.front())) {
    return degrees - curve.front().correction;
  }
  const auto end =
      std::lower_bound(curve.begin() + 1, curve.end(), degrees,
                       [](const CurvePoint& point, double value) { return TrueAt(point) < value; });
  const auto i = static_cast<std::size_t>(end - curve.begin());
  const double share = (degrees - TrueAt(curve[i - 1])) / (TrueAt(curve[i]) - TrueAt(curve[i - 1]));
  return curve[i - 1].linear + share * (curve[i].linear - curve[i - 1].linear);
}

double TrueDegrees(int code, double linear) {
  const auto curve = CurveOf(code);
  if (curve.empty() || linear >= curve.back().linear) {
    return curve.empty() ? linear : linear + curve.back().correction;
  }
  if (linear <= curve.front().linear) {
    return linear + curve.front().correction;
  }
  const auto end =
      std::lower_bound(curve.begin() + 1, curve.end(), linear,
                       [](const CurvePoint& point, double value) { return point.linear < value; });
  const auto i = static_cast<std::size_t>(end - curve.begin());
  const double share = (linear - curve[i - 1].linear) / (curve[i].linear - curve[i - 1].linear);
  return linear + curve[i - 1].correction + share * (curve[i].correction - curve[i - 1].correction);
}

int RawReading(const InputNature& nature, double signal) {
  const double reading = nature.offset + nature.gain * signal;
  return static_cast<int>(std::lrint(std::clamp(reading, -1.0 * kFullScale, 1.0 * kFullScale)));
}

std::int16_t ShownWord(const Calibration& calibration, int raw, double cold_degrees) {
  if (calibration.code == kRawReading) {
    return HeldWord(raw);
  }
  const double divisor = Divisor(calibration);
  if (divisor == 0.0) {
    return HeldWord(kFullScale);
  }
  const double steps = (raw - calibration.offset) / divisor;
  const int code = calibration.code;
  if (code < kFeCuNi || code > kNiSil) {
    return HeldWord(steps);
  }
  const double linear = steps / kStepsPerDegree + LinearDegrees(code, cold_degrees);
  return HeldWord(TrueDegrees(code, linear) * kStepsPerDegree);
}

double NoiseOf(std::uint64_t key) {
  // One step of a well-mixing generator, then the sum of four uniform shares of 16 bits each:
  // mean 2 and variance 4/12, near enough to normal for a thermocouple.
  std::uint64_t z = key + 0x9E3779B97F4A7C15U;
  z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
  z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
  z ^= z >> 31U;
  double sum = 0.0;
  for (int i = 0; i < 4; ++i) {
    sum += static_cast<double>(z & 0xFFFFU) / 65536.0;
    z >>= 16U;
  }
  return (sum - 2.0) * std::sqrt(3.0);
}

}  // namespace instrument
