#ifndef TAVREL_FILES_TIME_BOUNDS_H_
#define TAVREL_FILES_TIME_BOUNDS_H_

#include <array>

#include "state/unit_record.h"

namespace tavrel {

// What is known of the distances between some moments, in seconds: for any two nodes i and j the
// greatest value that x(i) - x(j) can have. Node 0 is the clock of the program, nodes 1..15 are
// the inputs of a recording. Every bound follows from all others: after each new one the ways
// through it are shortened.
class TimeBounds {
 public:
  static constexpr int kNodes = kInputs + 1;

  TimeBounds() { Clear(); }

  // Nothing is known any more.
  void Clear();

  // The greatest value of x(i) - x(j); infinity if there is none.
  [[nodiscard]] double Most(int i, int j) const { return most_[Place(i, j)]; }
  // The least value of x(i) - x(j).
  [[nodiscard]] double Least(int i, int j) const { return -Most(j, i); }
  // How much x(i) - x(j) is unknown by.
  [[nodiscard]] double Width(int i, int j) const { return Most(i, j) + Most(j, i); }

  // x(i) - x(j) <= `bound`. False, and nothing is changed, if what is known contradicts.
  [[nodiscard]] bool Tighten(int i, int j, double bound);

  // Nothing is known of this node any more. What it told of the others stays.
  void Free(int node);

  // The clock of the program and that of the instrument have gone on without being compared:
  // each distance to node 0 is unknown by so much more, either way.
  void Loosen(double by);

 private:
  [[nodiscard]] static std::size_t Place(int i, int j) {
    return (static_cast<std::size_t>(i) * kNodes) + static_cast<std::size_t>(j);
  }

  std::array<double, std::size_t{kNodes} * kNodes> most_{};
};

}  // namespace tavrel

#endif  // TAVREL_FILES_TIME_BOUNDS_H_
