#ifndef TAVREL_INSTRUMENT_OVEN_H_
#define TAVREL_INSTRUMENT_OVEN_H_

#include <cstddef>
#include <vector>

namespace instrument {

// What an oven is made of. Powers in watts, heat capacities in joules per degree, heat flows in
// watts per degree, times in seconds.
struct OvenBuild {
  const char* name = "";
  double heater_power = 0.0;
  double heater_capacity = 0.0;
  double chamber_capacity = 0.0;
  double sample_capacity = 0.0;
  double heater_to_chamber = 0.0;
  double chamber_to_sample = 0.0;
  double loss = 0.0;          // chamber to the room
  double sensor_delay = 0.0;  // transport from the chamber wall to the controller's sensor
  double sensor_lag = 0.0;    // the sensor's own time constant
  // The controller settings that suit it.
  double band = 0.0;  // proportional band, degrees
  double integral_time = 0.0;
  double derivative_time = 0.0;
  double upper_limit = 0.0;  // degrees
};

// The oven that stands behind controller 1..4: tube oven, chamber oven, autoclave, micro oven.
[[nodiscard]] const OvenBuild& OvenBehind(int controller);

// A heater, a chamber around it, a sample in the chamber, and the loss to the room. Temperatures
// in degrees Celsius. It never gets colder than the room.
class Oven {
 public:
  // At rest at room temperature.
  Oven(const OvenBuild& build, double ambient);

  // Advances by `seconds` (at most 1, so that the steps stay stable) with the heater at
  // `power` percent, held to 0..100.
  void Step(double power, double seconds);

  // Puts the whole oven at one temperature, as after hours of holding it.
  void SettleAt(double degrees);

  // The power in percent that holds `degrees`, or that follows a ramp of `rate` degrees per
  // second at this temperature.
  [[nodiscard]] double PowerFor(double degrees, double rate) const;

  [[nodiscard]] double ControlSensor() const { return sensor_; }
  [[nodiscard]] double Sample() const { return sample_; }
  [[nodiscard]] double Chamber() const { return chamber_; }
  // The temperature `place` steps (0 and up) away from the chamber's middle towards its door.
  [[nodiscard]] double Towards(int place) const;
  [[nodiscard]] const OvenBuild& Build() const { return build_; }

 private:
  OvenBuild build_;
  double ambient_;
  double heater_;
  double chamber_;
  double sample_;
  double sensor_;
  // Chamber temperatures on their way to the sensor, one for each quarter of a second.
  std::vector<double> transport_;
  std::size_t transport_at_ = 0;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_OVEN_H_
