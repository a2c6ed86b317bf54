#ifndef TAVREL_INSTRUMENT_SENSOR_H_
#define TAVREL_INSTRUMENT_SENSOR_H_

#include <cstdint>

namespace instrument {

// How a reading becomes a value: the codes of register L.
enum SensorCode : std::uint8_t {
  kRawReading = 0,
  kLinear = 1,
  kResistance = 2,
  kFeCuNi = 3,
  kNiCrNi = 4,
  kNiSil = 5,
};

// Steps of a value: 0.05 degrees for an input, 0.01 degrees for the reference sensor.
inline constexpr double kStepsPerDegree = 20.0;
inline constexpr double kReferenceStepsPerDegree = 100.0;

// A reading at the end of the converter's range: an open thermocouple is pulled up to it.
inline constexpr int kFullScale = 32767;

// What the input's amplifier really does: reading = offset + gain times signal. The signal is
// in steps of a value linear in the sensor's voltage.
struct InputNature {
  int thermocouple = kFeCuNi;
  double offset = 0.0;
  double gain = 1.0;
};

// What the instrument believes of it: registers O, J, K and L of the input.
struct Calibration {
  std::int16_t offset = 0;
  std::int16_t divisor_whole = 1;
  std::uint16_t divisor_fraction = 0;  // in 1/65536
  int code = kRawReading;
};

// The calibration that undoes `nature` with the sensor `code`.
[[nodiscard]] Calibration CalibrationFor(const InputNature& nature, int code);

// A thermocouple's voltage expressed as a temperature: a straight line through 0 and 500
// degrees, and back. Both ways fit each other exactly.
[[nodiscard]] double LinearDegrees(int code, double degrees);
[[nodiscard]] double TrueDegrees(int code, double linear);

// The converter's reading for a signal in steps, held at the converter's range.
[[nodiscard]] int RawReading(const InputNature& nature, double signal);

// The word that register Y shows. `cold_degrees` is the temperature of the terminals, which
// only thermocouples need. Never -32768, which means "no value".
[[nodiscard]] std::int16_t ShownWord(const Calibration& calibration, int raw, double cold_degrees);

// Normally distributed, mean 0, deviation 1, the same for the same key.
[[nodiscard]] double NoiseOf(std::uint64_t key);

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_SENSOR_H_
