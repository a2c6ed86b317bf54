#ifndef TAVREL_TESTS_TRUTH_TOLD_TEXTS_H_
#define TAVREL_TESTS_TRUTH_TOLD_TEXTS_H_

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace tavrel {

// Rows of a recording of which the program told its user that a value is not what the
// instrument sampled, or may not be.
struct ToldDoubt {
  enum class Kind { kFilled, kUncertain };
  static constexpr int kOpen = std::numeric_limits<int>::max();

  std::string file;
  Kind kind = Kind::kUncertain;
  int first_row = 0;        // rows of the file, from 0
  int last_row = kOpen;     // the same row, or kOpen: all from the first one on
  std::vector<int> inputs;  // none: all of the recording
};

// Sets that the program told its user are lost.
struct ToldLoss {
  std::string file;
  std::optional<int> sets;  // none: nobody knows how many
  bool is_about = false;    // the count is as good as the clocks
};

struct Told {
  std::vector<ToldDoubt> doubts;
  std::vector<ToldLoss> losses;
};

// Reads the program's texts, one a row with "\n" for its line breaks. What they say of other
// matters is passed over.
[[nodiscard]] Told ReadTold(const std::vector<std::string>& texts);

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_TOLD_TEXTS_H_
