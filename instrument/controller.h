#ifndef TAVREL_INSTRUMENT_CONTROLLER_H_
#define TAVREL_INSTRUMENT_CONTROLLER_H_

#include <cstdint>

#include "instrument/pid.h"

namespace instrument {

// Register Z of a controller.
enum ControllerStatus : std::uint8_t {
  kOff = 0,
  kFail = 1,
  kIsotherm = 2,
  kDynamic = 3,
  kDynamicFalling = 4,
  kTest = 5,
};

// What the registers tell a controller. Temperatures in degrees Celsius.
struct ControllerSettings {
  PidSettings pid;
  double filter_time = 0.0;  // seconds; smooths the setpoint, 0 = not
  double lower_limit = 0.0;  // the setpoint is held between the limits
  double upper_limit = 0.0;  // a measured value above it switches off with "fail"
  double increment = 0.0;    // degrees per second
  double final_value = 0.0;
  double test_power = 0.0;  // percent, in force with status "test"
};

// One of an instrument's four controllers: its status, its working setpoint and its output.
class Controller {
 public:
  // A ramp is not ended before `start_patience` seconds are over, even if it stands at its final
  // value: hosts switch to "dynamic" first and write the setpoint from which the ramp is to
  // start right after it.
  explicit Controller(double start_patience) : start_patience_(start_patience) {}

  // False: there is no such status. A ramp shows 3 or 4 by its direction, whichever is written.
  [[nodiscard]] bool SetStatus(int status);
  void SetSetpoint(double degrees) { setpoint_ = degrees; }
  // The output register; it lasts with "fail", where the safety contact keeps the heater cold,
  // and is overwritten by the next cycle in all other states.
  void SetOutput(double percent) { output_ = percent; }
  // Gives the integral what holds the present state, as if the controller had long been on.
  void Settle(double measured, double percent);

  // One control cycle of `seconds`. `broken` tells an open sensor.
  void Step(const ControllerSettings& settings, double measured, bool broken, double seconds);

  [[nodiscard]] int Status() const { return status_; }
  [[nodiscard]] double Setpoint() const { return setpoint_; }
  [[nodiscard]] double Output() const { return output_; }
  // The safety contact lets the output through to the heater; it is open with "off" and "fail".
  [[nodiscard]] bool IsContactClosed() const { return Controls() || status_ == kTest; }
  // What reaches the heater: the output behind a closed contact, else nothing.
  [[nodiscard]] double HeaterPower() const;

 private:
  [[nodiscard]] bool Controls() const { return status_ >= kIsotherm && status_ <= kDynamicFalling; }
  void MoveSetpoint(const ControllerSettings& settings, double seconds);
  void Regulate(const ControllerSettings& settings, double measured, double seconds);

  double start_patience_;
  Pid pid_;
  int status_ = kOff;
  bool fresh_ = true;        // the next cycle starts the control anew
  double since_ramp_ = 0.0;  // seconds
  double setpoint_ = 0.0;    // degrees; on a ramp it moves
  double smooth_setpoint_ = 0.0;
  double output_ = 0.0;  // percent
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_CONTROLLER_H_
