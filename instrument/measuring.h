#ifndef TAVREL_INSTRUMENT_MEASURING_H_
#define TAVREL_INSTRUMENT_MEASURING_H_

#include <array>
#include <cstdint>

#include "instrument/registers.h"
#include "instrument/sensor.h"

namespace instrument {

// What is connected to an input in place of its sensor in the oven.
struct Connection {
  enum class Kind : std::uint8_t {
    kSensor,       // the sensor in the oven
    kShorted,      // a jumper across the terminals: no voltage
    kBroken,       // nothing: an open thermocouple
    kTemperature,  // a sensor at `value` degrees
    kLevel,        // a voltage source of `value` steps
    kClimb,        // a sensor that gets warmer by `value` degrees a second, see ClimbingDegrees
  };
  Kind kind = Kind::kSensor;
  double value = 0.0;
};

// From 100 degrees up to 1000, again and again, by `rate` degrees per second of the instrument's
// time: no two samples of one climb are alike.
[[nodiscard]] double ClimbingDegrees(double rate, std::int64_t second);

// The input amplifiers and sensors of one instrument: from temperatures to raw readings.
class Measuring {
 public:
  // `seed` chooses amplifiers and noise; the same seed gives the same readings. The amplifiers have
  // drifted since the maker calibrated them: a value at the temperature of the terminals is wrong
  // by `drift` steps, and the gain is greater by a ten-thousandth for each of them.
  explicit Measuring(std::uint64_t seed, int drift = 0);

  // The reading of `input` 1..15 whose sensor is at `degrees`, or of the reference sensor
  // (input 0, `degrees` is not used), in the given second of the instrument's time.
  [[nodiscard]] int Raw(int input, double degrees, std::int64_t second) const;

  // The calibration that the maker would find for the input.
  [[nodiscard]] Calibration Factory(int input) const;

  void Connect(int input, const Connection& connection);
  [[nodiscard]] bool IsBroken(int input) const;

  // The temperature of the terminals: about 25 degrees, drifting slowly.
  [[nodiscard]] double TerminalDegrees(std::int64_t second) const;

 private:
  [[nodiscard]] const InputNature& Nature(int input) const {
    return natures_.at(static_cast<std::size_t>(input));
  }
  [[nodiscard]] const Connection& At(int input) const {
    return connections_.at(static_cast<std::size_t>(input));
  }
  [[nodiscard]] double Signal(int input, double degrees, std::int64_t second) const;

  std::uint64_t seed_;
  std::array<InputNature, kInputCount> natures_{};  // as they are now
  std::array<InputNature, kInputCount> factory_{};  // as the maker found them
  std::array<Connection, kInputCount> connections_{};
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_MEASURING_H_
