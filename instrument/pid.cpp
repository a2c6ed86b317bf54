#include "instrument/pid.h"

#include <algorithm>

namespace instrument {
namespace {

// The derivative is smoothed with this share of its own time, so that the steps of the
// measured value do not toss the output about.
constexpr double kDerivativeSmoothing = 1.0 / 4.0;

}  // namespace

void Pid::Reset(double measured, double integral) {
  integral_ = integral;
  smoothed_measured_ = measured;
}

double Pid::Derivative(const PidSettings& settings, double gain, double measured, double seconds) {
  const double smoothing = std::max(settings.derivative_time * kDerivativeSmoothing, seconds);
  const double rate = (measured - smoothed_measured_) / smoothing;
  smoothed_measured_ += rate * seconds;
  return -gain * settings.derivative_time * rate;
}

double Pid::Step(const PidSettings& settings, double setpoint, double measured, double seconds) {
  const double error = setpoint - measured;
  if (settings.band <= 0.0) {
    Reset(measured, 0.0);
    return error > 0.0 ? 100.0 : 0.0;
  }
  const double gain = 100.0 / settings.band;  // percent per degree
  const double derivative = Derivative(settings, gain, measured, seconds);
  const double wanted = gain * error + integral_ + derivative;
  const bool driven_further = (wanted >= 100.0 && error > 0.0) || (wanted <= 0.0 && error < 0.0);
  if (settings.integral_time <= 0.0) {
    integral_ = 0.0;
  } else if (!driven_further) {
    integral_ += gain * error / settings.integral_time * seconds;
    integral_ = std::clamp(integral_, 0.0, 100.0);
  }
  return std::clamp(wanted, 0.0, 100.0);
}

}  // namespace instrument
