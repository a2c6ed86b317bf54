#ifndef TAVREL_TESTS_TRUTH_COMPARISON_H_
#define TAVREL_TESTS_TRUTH_COMPARISON_H_

#include <ostream>
#include <string>
#include <vector>

#include "tests/truth/told_texts.h"
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
  int rows = 0;            // compared
  int wrong = 0;           // words that differ and of which the user was told nothing
  int excused = 0;         // words that differ in rows of which the user was told
  int told_filled = 0;     // doubts that the user was told as filled in
  int told_uncertain = 0;  // the same as uncertain
  int invented = 0;        // words told as filled in although the right ones had arrived
  int torn = 0;            // rows of which a part is right and a part is wrong, and a cut end
  int lost = 0;            // sets that stand in no row although the instrument took them
  int given_up = 0;        // of these, sets that no full buffer had pushed out
  int told_lost = 0;       // sets that the user was told are lost
  int about = 0;           // by how many these may differ, for the user was told a rough number
  int doubled = 0;         // rows that belong to no set
  int shifted = 0;         // columns that run ahead of the others or behind them, untold
  int losses = 0;          // values that were lost on the line, or perhaps were by a cut
  int in_doubt = 0;        // of these, those whose place the user was told as uncertain
  std::vector<std::string> details;  // the first differences, in words

  // No value of the recording differs from the right one in its place but where the user was told.
  [[nodiscard]] bool HoldsTheTruth() const;

  // That, nothing is missing or twice but what the user was told, and what he was told is so.
  [[nodiscard]] bool Agrees() const;
  void Add(const Findings& other);
};

// All numbers that are not 0, with their names; for the message of a test that fails.
void PrintTo(const Findings& findings, std::ostream* out);

// The whole sets that the instrument has handed over for a slot so far.
[[nodiscard]] int HandedSets(const LineTruth& truth, const RecordedSlot& slot);

// All sets of a slot of which the instrument has taken a sample so far.
[[nodiscard]] int MadeSets(const LineTruth& truth, const RecordedSlot& slot);

// Compares the samples of a recording, `bytes` behind its header, word by word. Row 0 is the
// first set a second time; row r is set r, as long as no set is lost.
[[nodiscard]] Findings Compare(const LineTruth& truth, const RecordedSlot& slot,
                               const std::string& bytes, const Told& told = {});

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_COMPARISON_H_
