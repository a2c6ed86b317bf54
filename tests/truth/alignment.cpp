#include "tests/truth/alignment.h"

#include <algorithm>

namespace tavrel {
namespace {

enum class Step : std::uint8_t { kPair, kMissing, kSuperfluous };

// The table of least costs, for the rows and sets from `begin` on: up to there all words are
// equal.
class Table {
 public:
  Table(int begin, int rows, int sets, const AlignmentCosts& costs)
      : begin_(begin), rows_(rows), sets_(sets), costs_(costs) {
    const auto width = static_cast<std::size_t>(sets - begin + 1);
    steps_.assign(static_cast<std::size_t>(rows - begin + 1) * width, Step::kPair);
    Fill(width);
  }

  // From the end backwards.
  [[nodiscard]] std::vector<AlignedPair> Path() const {
    std::vector<AlignedPair> pairs;
    int row = rows_;
    int set = sets_;
    while (row > begin_ || set > begin_) {
      const Step step = steps_[CellOf(row, set)];
      AlignedPair pair;
      pair.row = step == Step::kMissing ? AlignedPair::kNone : --row;
      pair.set = step == Step::kSuperfluous ? AlignedPair::kNone : --set;
      pairs.push_back(pair);
    }
    std::reverse(pairs.begin(), pairs.end());
    return pairs;
  }

 private:
  void Fill(std::size_t width) {
    std::vector<int> above(width);
    for (int set = begin_ + 1; set <= sets_; ++set) {
      const auto place = static_cast<std::size_t>(set - begin_);
      above[place] = above[place - 1] + costs_.missing(set - 1);
      steps_[CellOf(begin_, set)] = Step::kMissing;
    }
    for (int row = begin_ + 1; row <= rows_; ++row) {
      above = NextRow(row, above);
    }
  }

  std::vector<int> NextRow(int row, const std::vector<int>& above) {
    std::vector<int> least(above.size());
    least[0] = above[0] + costs_.superfluous;
    steps_[CellOf(row, begin_)] = Step::kSuperfluous;
    for (int set = begin_ + 1; set <= sets_; ++set) {
      const auto place = static_cast<std::size_t>(set - begin_);
      const int pair = above[place - 1] + costs_.differing(row - 1, set - 1);
      const int missing = least[place - 1] + costs_.missing(set - 1);
      const int superfluous = above[place] + costs_.superfluous;
      least[place] = std::min({pair, missing, superfluous});
      // Of equal explanations the one whose rows come early.
      steps_[CellOf(row, set)] = least[place] == missing ? Step::kMissing
                                 : least[place] == pair  ? Step::kPair
                                                         : Step::kSuperfluous;
    }
    return least;
  }

  [[nodiscard]] std::size_t CellOf(int row, int set) const {
    const auto width = static_cast<std::size_t>(sets_ - begin_ + 1);
    return static_cast<std::size_t>(row - begin_) * width + static_cast<std::size_t>(set - begin_);
  }

  int begin_;
  int rows_;
  int sets_;
  const AlignmentCosts& costs_;
  std::vector<Step> steps_;
};

}  // namespace

std::vector<AlignedPair> Align(int rows, int sets, const AlignmentCosts& costs) {
  std::vector<AlignedPair> pairs;
  int begin = 0;
  while (begin < std::min(rows, sets) && costs.differing(begin, begin) == 0) {
    pairs.push_back({begin, begin});
    ++begin;
  }
  const auto rest = Table(begin, rows, sets, costs).Path();
  pairs.insert(pairs.end(), rest.begin(), rest.end());
  return pairs;
}

}  // namespace tavrel
