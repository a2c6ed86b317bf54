#ifndef TAVREL_TESTS_TRUTH_COMPARISON_H_
#define TAVREL_TESTS_TRUTH_COMPARISON_H_

#include <string>
#include <vector>

#include "tests/truth/truth_file.h"

namespace tavrel {

// A slot as it was installed: its file and what it records.
struct RecordedSlot {
  std::string file;
  int inet = 0;
  std::vector<int> inputs;  // ascending, as the columns of the file
};

// What a comparison of recordings with the truth found; sums of several slots can be added.
struct Findings {
  int rows = 0;     // compared
  int wrong = 0;    // words that differ though their reply was good
  int excused = 0;  // words that differ because their reply was lost
  int torn = 0;     // rows of which a part is right and a part is wrong, and a cut end
  int lost = 0;     // sets that were handed over and stand in no row
  int doubled = 0;  // rows of a set that stands in a row already, beyond the first one
  int shifted = 0;  // columns that run ahead of the others or behind them
  std::vector<std::string> details;  // the first differences, in words

  [[nodiscard]] bool IsTrue() const {
    return wrong == 0 && torn == 0 && lost == 0 && doubled == 0 && shifted == 0;
  }
  void Add(const Findings& other);
};

// The whole sets that the instrument has handed over for a slot so far.
[[nodiscard]] int HandedSets(const LineTruth& truth, const RecordedSlot& slot);

// Compares the samples of a recording, `bytes` behind its header, word by word. Row 0 is the
// first set a second time; row r is set r.
[[nodiscard]] Findings Compare(const LineTruth& truth, const RecordedSlot& slot,
                               const std::string& bytes);

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_COMPARISON_H_
