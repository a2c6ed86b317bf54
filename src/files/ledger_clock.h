#ifndef TAVREL_FILES_LEDGER_CLOCK_H_
#define TAVREL_FILES_LEDGER_CLOCK_H_

#include <cstdint>
#include <vector>

namespace tavrel {

// What the moments at which an instrument had no more data tell of its clock: the set number k
// counted from 0 is made at p + k T, and every pair of p and T that fits all of these moments is
// possible. T is the interval as the computer's clock measures it, up to 200 ppm beside the nominal
// one. Pure rules; times are seconds on a clock that nobody sets.
class LedgerClock {
 public:
  static constexpr double kRate = 200e-6;     // by which two clocks may differ
  static constexpr double kRounding = 0.002;  // s: of times that are written in thousandths

  // `interval`: seconds between two sets, more than 0.
  explicit LedgerClock(double interval);

  // A moment: something was so at some time from `asked` to `answered`.
  struct Moment {
    double asked = 0;
    double answered = 0;
  };

  // Numbers of sets.
  struct Range {
    std::int64_t least = 0;
    std::int64_t most = 0;
  };

  // The next set that is made is number 0, and it was not made at that moment, but all before were.
  // Nothing else is known of p; what is known of T stays.
  void Begin(const Moment& moment) { Begin(moment, {0, 0}); }

  // The same where at that moment so many sets had been made from number 0 on.
  void Begin(const Moment& moment, const Range& made);

  // How many sets have been made since Begin() at that moment.
  [[nodiscard]] Range MadeAt(const Moment& moment) const;

  // So many had been made at that moment, no more and no fewer. False if that cannot be: nothing is
  // known any more then, and Begin() is to be called.
  [[nodiscard]] bool Learn(const Moment& moment, std::int64_t made);

 private:
  struct Point {
    double p = 0;  // seconds since origin_
    double t = 0;  // seconds
  };
  static constexpr std::size_t kMostCorners = 64;

  void Clip(double factor_p, double factor_t, double least);
  void SetBox(double least_p, double most_p, double least_t, double most_t);
  void Simplify();

  double interval_;
  double origin_ = 0;
  std::vector<Point> corners_;  // of the convex area of all that is possible, in their order
};

}  // namespace tavrel

#endif  // TAVREL_FILES_LEDGER_CLOCK_H_
