#ifndef TAVREL_TESTS_TRUTH_STANDING_MACHINE_H_
#define TAVREL_TESTS_TRUTH_STANDING_MACHINE_H_

#include <atomic>
#include <chrono>
#include <thread>

namespace tavrel {

// Sees when the machine stands still, as long as it lives: then replies come too late although the
// line is in order.
class StandingMachine {
 public:
  StandingMachine();

  // The longest time for which it stood still so far.
  [[nodiscard]] std::chrono::milliseconds Longest() const { return longest_; }

 private:
  void Watch(const std::stop_token& end);

  std::atomic<std::chrono::milliseconds> longest_{};
  std::jthread watch_;  // the last member: it ends before the others
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_STANDING_MACHINE_H_
