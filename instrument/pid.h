#ifndef TAVREL_INSTRUMENT_PID_H_
#define TAVREL_INSTRUMENT_PID_H_

namespace instrument {

// What a controller is tuned by.
struct PidSettings {
  double band = 0.0;             // proportional band in degrees; 0 switches between 0 and 100 %
  double integral_time = 0.0;    // seconds; 0 means no integral action
  double derivative_time = 0.0;  // seconds
};

// A heating controller: output in percent, 0..100. The derivative looks at the measured value
// only, so that a new setpoint gives no kick; the integral stands still while the output is at
// an end and would be driven further into it.
class Pid {
 public:
  // Forgets the past. The integral begins at `integral` percent, the derivative at rest.
  void Reset(double measured, double integral);

  // One control cycle of `seconds`.
  [[nodiscard]] double Step(const PidSettings& settings, double setpoint, double measured,
                            double seconds);

 private:
  double Derivative(const PidSettings& settings, double gain, double measured, double seconds);

  double integral_ = 0.0;           // percent
  double smoothed_measured_ = 0.0;  // degrees, the derivative's own smoothing
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_PID_H_
