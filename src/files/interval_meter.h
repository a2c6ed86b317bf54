#ifndef TAVREL_FILES_INTERVAL_METER_H_
#define TAVREL_FILES_INTERVAL_METER_H_

#include <array>
#include <cstdint>

#include "state/unit_record.h"

namespace tavrel {

// How long the sampling interval of an instrument is on the clock of the program. What the header
// says is believed only when the counts agree with it; an instrument whose time runs at another
// pace is measured. All times are seconds.
class IntervalMeter {
 public:
  // The crystals of the two clocks differ by less than this.
  static constexpr double kDrift = 200e-6;

  // Begins anew with what the header says; nothing is measured.
  void Begin(double nominal);

  // What an earlier run of the program has measured; 0 and 0 if it had nothing.
  void Resume(double low, double high);

  // The counts begin anew, or the clock was set: what was noted does not belong to what comes. The
  // interval itself stays known.
  void ForgetCounts() { anchors_ = {}; }

  // The instrument's clock is not what it was thought to be: all is measured anew.
  void Forget();

  // As ForgetCounts() for one input, whose count is no longer the one that it was.
  void ForgetCount(int input) { anchors_[input] = {}; }

  // The input had made `made` samples, no more and no less, at some moment between the two.
  void NoteExact(int input, std::int64_t made, double asked, double answered);

  // The input had made at least `made` samples at the latest at that moment.
  void NoteAtLeast(int input, std::int64_t made, double answered);

  [[nodiscard]] bool IsKnown() const { return high_ > 0; }
  [[nodiscard]] double Low() const { return low_; }    // 0 while it is not known
  [[nodiscard]] double High() const { return high_; }  // 0 while it is not known
  [[nodiscard]] double Middle() const { return (low_ + high_) / 2; }
  [[nodiscard]] double Nominal() const { return nominal_; }

 private:
  // A moment at which the number of samples was exactly known.
  struct Anchor {
    std::int64_t made = 0;  // 0: none yet
    double asked = 0;
    double answered = 0;
  };

  void Judge();

  double nominal_ = 0;
  double least_ = 0;  // as measured
  double most_ = 0;   // as measured; 0 for none
  double low_ = 0;    // as believed
  double high_ = 0;
  ByInput<Anchor> anchors_{};
};

}  // namespace tavrel

#endif  // TAVREL_FILES_INTERVAL_METER_H_
