#ifndef TAVREL_TESTS_TRUTH_ALIGNMENT_H_
#define TAVREL_TESTS_TRUTH_ALIGNMENT_H_

#include <cstdint>
#include <functional>
#include <vector>

namespace tavrel {

// Which row of a recording belongs to which set, where rows may be missing, stand there twice
// or hold wrong words.
struct AlignedPair {
  static constexpr int kNone = -1;
  int row = kNone;  // kNone: the set stands in no row
  int set = kNone;  // kNone: the row belongs to no set
};

// What it takes to explain a recording; the explanation that costs least is taken.
struct AlignmentCosts {
  std::function<int(int row, int set)> differing;  // words that differ
  std::function<int(int set)> missing;             // what a set costs that stands in no row
  int superfluous = 0;                             // what a row costs that belongs to no set
};

// Rows 0..rows-1 and sets 0..sets-1, both in their order. Each of them is in just one pair.
[[nodiscard]] std::vector<AlignedPair> Align(int rows, int sets, const AlignmentCosts& costs);

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_ALIGNMENT_H_
