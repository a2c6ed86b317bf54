#include "instrument/measuring.h"

#include <cmath>
#include <numbers>

namespace instrument {
namespace {

constexpr double kThermocoupleNoise = 0.03;  // degrees
constexpr double kReferenceNoise = 0.008;    // degrees
constexpr double kClimbFrom = 100.0;         // degrees
constexpr double kClimbTo = 1000.0;
constexpr double kGainDrift = 1e-4;  // for each step of the drift
// Inputs up to this one have FeCuNi thermocouples, the others NiCrNi.
constexpr int kLastFeCuNi = 8;

std::uint64_t KeyOf(std::uint64_t seed, int input, std::int64_t second) {
  return (seed * kInputCount + static_cast<std::uint64_t>(input)) * 0x100000000U +
         static_cast<std::uint64_t>(second);
}

}  // namespace

Measuring::Measuring(std::uint64_t seed, int drift) : seed_(seed) {
  for (int input = 0; input < kInputCount; ++input) {
    InputNature& nature = natures_.at(static_cast<std::size_t>(input));
    nature.thermocouple = input == 0 ? kResistance : input <= kLastFeCuNi ? kFeCuNi : kNiCrNi;
    nature.offset = std::round(8.0 * NoiseOf(KeyOf(seed, input, -1)));
    nature.gain = 1.2 + 0.01 * NoiseOf(KeyOf(seed, input, -2));
    factory_.at(static_cast<std::size_t>(input)) = nature;
    nature.offset += drift * nature.gain;
    nature.gain *= 1.0 + kGainDrift * drift;
  }
}

double Measuring::TerminalDegrees(std::int64_t second) const {
  const double turn = 2.0 * std::numbers::pi * static_cast<double>(second);
  const double phase = static_cast<double>(seed_ % 7U);
  return 25.0 + 0.6 * std::sin(turn / 5400.0 + phase) + 0.1 * std::sin(turn / 1700.0);
}

double ClimbingDegrees(double rate, std::int64_t second) {
  return kClimbFrom + std::fmod(rate * static_cast<double>(second), kClimbTo - kClimbFrom);
}

double Measuring::Signal(int input, double degrees, std::int64_t second) const {
  const Connection& connection = At(input);
  if (connection.kind == Connection::Kind::kShorted) {
    return 0.0;
  }
  if (connection.kind == Connection::Kind::kLevel) {
    return connection.value;
  }
  const bool held = connection.kind == Connection::Kind::kTemperature;
  const bool climbs = connection.kind == Connection::Kind::kClimb;
  const double at_sensor = climbs ? ClimbingDegrees(connection.value, second)
                           : held ? connection.value
                                  : degrees;
  if (input == 0) {
    return kReferenceStepsPerDegree * (held || climbs ? at_sensor : TerminalDegrees(second));
  }
  const int code = Nature(input).thermocouple;
  const double hot = LinearDegrees(code, at_sensor);
  return kStepsPerDegree * (hot - LinearDegrees(code, TerminalDegrees(second)));
}

int Measuring::Raw(int input, double degrees, std::int64_t second) const {
  if (IsBroken(input)) {
    return kFullScale;
  }
  const double deviation = input == 0 ? kReferenceNoise * kReferenceStepsPerDegree
                                      : kThermocoupleNoise * kStepsPerDegree;
  const double noise = deviation * NoiseOf(KeyOf(seed_, input, second));
  return RawReading(Nature(input), Signal(input, degrees, second) + noise);
}

Calibration Measuring::Factory(int input) const {
  const InputNature& nature = factory_.at(static_cast<std::size_t>(input));
  return CalibrationFor(nature, nature.thermocouple);
}

void Measuring::Connect(int input, const Connection& connection) {
  connections_.at(static_cast<std::size_t>(input)) = connection;
}

bool Measuring::IsBroken(int input) const {
  return At(input).kind == Connection::Kind::kBroken;
}

}  // namespace instrument
