#include "instrument/controller.h"

#include <algorithm>
#include <cmath>

namespace instrument {

bool Controller::SetStatus(int status) {
  if (status < kOff || status > kTest) {
    return false;
  }
  if (!Controls()) {
    fresh_ = true;
  }
  if (status == kDynamic || status == kDynamicFalling) {
    since_ramp_ = 0.0;
  }
  status_ = status;
  return true;
}

void Controller::Settle(double measured, double percent) {
  pid_.Reset(measured, percent);
  smooth_setpoint_ = setpoint_;
  output_ = percent;
  fresh_ = false;
}

void Controller::Step(const ControllerSettings& settings, double measured, bool broken,
                      double seconds) {
  if (status_ == kFail) {
    return;
  }
  if (status_ != kOff && (broken || measured > settings.upper_limit)) {
    status_ = kFail;
    output_ = 0.0;
    return;
  }
  if (status_ == kDynamic || status_ == kDynamicFalling) {
    MoveSetpoint(settings, seconds);
  }
  if (Controls()) {
    Regulate(settings, measured, seconds);
    return;
  }
  output_ = status_ == kTest ? std::clamp(settings.test_power, 0.0, 100.0) : 0.0;
}

void Controller::MoveSetpoint(const ControllerSettings& settings, double seconds) {
  since_ramp_ += seconds;
  const double way = settings.final_value - setpoint_;
  const double step = std::max(settings.increment, 0.0) * seconds;
  if (std::abs(way) > step) {
    status_ = way < 0.0 ? kDynamicFalling : kDynamic;
    setpoint_ += std::copysign(step, way);
    return;
  }
  setpoint_ = settings.final_value;
  if (since_ramp_ > start_patience_) {
    status_ = kIsotherm;
  }
}

void Controller::Regulate(const ControllerSettings& settings, double measured, double seconds) {
  const double held = std::max(std::min(setpoint_, settings.upper_limit), settings.lower_limit);
  if (fresh_) {
    pid_.Reset(measured, 0.0);
    smooth_setpoint_ = measured;
    fresh_ = false;
  }
  const double share = settings.filter_time > seconds ? seconds / settings.filter_time : 1.0;
  smooth_setpoint_ += share * (held - smooth_setpoint_);
  output_ = pid_.Step(settings.pid, smooth_setpoint_, measured, seconds);
}

double Controller::HeaterPower() const {
  return IsContactClosed() ? output_ : 0.0;
}

}  // namespace instrument
