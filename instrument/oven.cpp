#include "instrument/oven.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace instrument {
namespace {

constexpr double kTransportCell = 0.25;  // seconds

constexpr std::array<OvenBuild, 4> kOvens{{
    {.name = "tube oven",
     .heater_power = 800.0,
     .heater_capacity = 400.0,
     .chamber_capacity = 1500.0,
     .sample_capacity = 60.0,
     .heater_to_chamber = 14.0,
     .chamber_to_sample = 1.0,
     .loss = 1.3,
     .sensor_delay = 4.0,
     .sensor_lag = 4.0,
     .band = 13.0,
     .integral_time = 400.0,
     .derivative_time = 20.0,
     .upper_limit = 600.0},
    {.name = "chamber oven",
     .heater_power = 2000.0,
     .heater_capacity = 1500.0,
     .chamber_capacity = 8000.0,
     .sample_capacity = 300.0,
     .heater_to_chamber = 40.0,
     .chamber_to_sample = 2.0,
     .loss = 3.0,
     .sensor_delay = 8.0,
     .sensor_lag = 6.0,
     .band = 15.0,
     .integral_time = 780.0,
     .derivative_time = 40.0,
     .upper_limit = 550.0},
    {.name = "autoclave",
     .heater_power = 2200.0,
     .heater_capacity = 3000.0,
     .chamber_capacity = 12000.0,
     .sample_capacity = 1500.0,
     .heater_to_chamber = 30.0,
     .chamber_to_sample = 5.0,
     .loss = 3.2,
     .sensor_delay = 20.0,
     .sensor_lag = 15.0,
     .band = 18.0,
     .integral_time = 1500.0,
     .derivative_time = 60.0,
     .upper_limit = 350.0},
    {.name = "micro oven",
     .heater_power = 300.0,
     .heater_capacity = 100.0,
     .chamber_capacity = 450.0,
     .sample_capacity = 15.0,
     .heater_to_chamber = 6.0,
     .chamber_to_sample = 0.4,
     .loss = 0.6,
     .sensor_delay = 2.0,
     .sensor_lag = 3.0,
     .band = 12.0,
     .integral_time = 300.0,
     .derivative_time = 15.0,
     .upper_limit = 450.0},
}};

}  // namespace

const OvenBuild& OvenBehind(int controller) {
  const int last = static_cast<int>(kOvens.size()) - 1;
  return kOvens.at(static_cast<std::size_t>(std::clamp(controller - 1, 0, last)));
}

Oven::Oven(const OvenBuild& build, double ambient)
    : build_(build),
      ambient_(ambient),
      heater_(ambient),
      chamber_(ambient),
      sample_(ambient),
      sensor_(ambient),
      transport_(static_cast<std::size_t>(std::max(build.sensor_delay / kTransportCell, 1.0)),
                 ambient) {}

void Oven::Step(double power, double seconds) {
  const double watts = std::clamp(power, 0.0, 100.0) / 100.0 * build_.heater_power;
  const double to_chamber = build_.heater_to_chamber * (heater_ - chamber_);
  const double to_sample = build_.chamber_to_sample * (chamber_ - sample_);
  const double to_room = build_.loss * (chamber_ - ambient_);
  heater_ += seconds * (watts - to_chamber) / build_.heater_capacity;
  chamber_ += seconds * (to_chamber - to_sample - to_room) / build_.chamber_capacity;
  sample_ += seconds * to_sample / build_.sample_capacity;
  const double arrived = transport_[transport_at_];
  const auto cells = static_cast<int>(std::lround(seconds / kTransportCell));
  for (int i = 0; i < cells; ++i) {
    transport_[transport_at_] = chamber_;
    transport_at_ = (transport_at_ + 1) % transport_.size();
  }
  sensor_ += (arrived - sensor_) * std::min(seconds / build_.sensor_lag, 1.0);
}

void Oven::SettleAt(double degrees) {
  chamber_ = std::max(degrees, ambient_);
  heater_ = chamber_ + build_.loss * (chamber_ - ambient_) / build_.heater_to_chamber;
  sample_ = chamber_;
  sensor_ = chamber_;
  std::fill(transport_.begin(), transport_.end(), chamber_);
}

double Oven::PowerFor(double degrees, double rate) const {
  const double capacity = build_.heater_capacity + build_.chamber_capacity + build_.sample_capacity;
  const double watts = build_.loss * (degrees - ambient_) + capacity * rate;
  return std::clamp(watts / build_.heater_power * 100.0, 0.0, 100.0);
}

double Oven::Towards(int place) const {
  // Each place towards the door loses a little more to the room.
  const double share = 0.012 * (place + 1);
  return chamber_ - share * (chamber_ - ambient_);
}

}  // namespace instrument
