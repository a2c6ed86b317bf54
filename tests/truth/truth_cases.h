#ifndef TAVREL_TESTS_TRUTH_TRUTH_CASES_H_
#define TAVREL_TESTS_TRUTH_TRUTH_CASES_H_

#include <functional>
#include <vector>

#include "tests/truth/truth_run.h"

namespace tavrel {

// One bad day: what is done, for how long, and on what kind of bench.
struct TruthCase {
  const char* name;
  // Carries it out; `amount` is kShort or kLong, in the action's own unit.
  std::function<void(TruthRun&, int amount)> action;
  int short_amount;  // 0: only in a long run
  int long_amount;
  Bench bench;
  // In a long run it goes over each order of sampling once instead of over all distances.
  bool is_heavy = false;
};

[[nodiscard]] const std::vector<TruthCase>& TruthCases();

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_TRUTH_CASES_H_
