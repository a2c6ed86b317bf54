#ifndef TAVREL_BENCH_PROMISE_H_
#define TAVREL_BENCH_PROMISE_H_

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace tavrel {

// A promise of speed: what was measured, and beside it, taken in turns in the same run, the limit
// that no program could beat. scripts/bench makes a row of its table from the counters.
class Promise {
 public:
  // Unit of both figures, for the table.
  explicit Promise(std::string unit) : unit_(std::move(unit)) {}

  void Measured(double value) { measured_.push_back(value); }
  void Limit(double value) { limit_.push_back(value); }

  // The promise is kept while the median is at most `factor` times the median of the limit.
  void MustBeWithin(double factor) {
    factor_ = factor;
    must_ = Text(factor) + " x";
  }
  // The same for `slack` units beyond the limit.
  void MustBeWithinSlack(double slack) {
    slack_ = slack;
    must_ = "+ " + Text(slack);
  }
  // The promise is a figure of its own; the limit only shows how far off it is.
  void MustBeAtMost(double value) {
    most_ = value;
    must_ = Text(value);
  }

  void Report(benchmark::State& state) {
    if (measured_.empty() || limit_.empty()) {
      state.SkipWithError("nothing was measured");
      return;
    }
    const double limit = Median(limit_);
    state.counters["measured"] = Median(measured_);
    state.counters["limit"] = limit;
    state.counters["must"] = most_ > 0 ? most_ : limit * factor_ + slack_;
    state.SetLabel(unit_ + "|" + must_);
  }

 private:
  static std::string Text(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%g", value);
    return text.data();
  }
  static double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
  }

  std::string unit_;
  std::string must_;  // in words
  std::vector<double> measured_;
  std::vector<double> limit_;
  double factor_ = 1;
  double slack_ = 0;
  double most_ = 0;
};

// How long `work` takes, in units of `Period` seconds.
template <typename Period, typename Work>
[[nodiscard]] double TimeOf(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, Period>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace tavrel

#endif  // TAVREL_BENCH_PROMISE_H_
