#ifndef TAVREL_TESTS_SWEEP_SWEEP_BENCH_H_
#define TAVREL_TESTS_SWEEP_SWEEP_BENCH_H_

#include <string>
#include <vector>

namespace tavrel {

// What the job of a sweep records, all on instrument 1.
struct SweptSlot {
  std::string first_file;
  std::string ext;
  std::vector<int> inputs;
  bool goes_on = false;  // in a next file when it is full, which is after ten rows
};

inline const std::vector<SweptSlot>& SweptSlots() {
  static const std::vector<SweptSlot> slots = {{"M260314A.TUB", "TUB", {1, 5}, true},
                                               {"M260314B.CHA", "CHA", {2, 6, 9}, false}};
  return slots;
}

inline constexpr int kSweepInterval = 6;  // seconds between two sets
inline constexpr int kSweepBacklog = 5;   // sets that wait at the start

}  // namespace tavrel

#endif  // TAVREL_TESTS_SWEEP_SWEEP_BENCH_H_
