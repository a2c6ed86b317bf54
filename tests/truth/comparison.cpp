#include "tests/truth/comparison.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <optional>

namespace tavrel {
namespace {

constexpr std::size_t kMostDetails = 6;
constexpr int kWidestShift = 5;  // rows

using Row = std::vector<std::int16_t>;

// The samples of one instant, one place for each column; an input that was not sampled then has
// none.
using TruthSet = std::vector<std::optional<TakenSample>>;

bool WasHanded(const std::optional<TakenSample>& sample) {
  return sample && sample->fate != SampleFate::kWaiting && sample->fate != SampleFate::kForgotten;
}

bool IsWaiting(const std::optional<TakenSample>& sample) {
  return sample && sample->fate == SampleFate::kWaiting;
}

// A word whose reply arrived for certain has to stand in its place.
bool IsBinding(const std::optional<TakenSample>& sample) {
  return sample && sample->fate == SampleFate::kGood;
}

std::vector<TruthSet> SetsOf(const LineTruth& truth, const RecordedSlot& slot) {
  std::map<double, TruthSet> sets;
  for (std::size_t column = 0; column < slot.inputs.size(); ++column) {
    const auto found = truth.inputs.find({slot.inet, slot.inputs[column]});
    if (found == truth.inputs.end()) {
      continue;
    }
    for (const TakenSample& sample : found->second) {
      TruthSet& set = sets[sample.seconds];
      set.resize(slot.inputs.size());
      set[column] = sample;
    }
  }
  std::vector<TruthSet> in_order;
  for (auto& [seconds, set] : sets) {
    in_order.push_back(std::move(set));
  }
  return in_order;
}

// What has to stand in the file: every set of which something was handed over. A set of which
// the rest still waits is half read.
struct Expected {
  std::vector<TruthSet> rows;
  int half_read = 0;
};

Expected ExpectedOf(const LineTruth& truth, const RecordedSlot& slot) {
  Expected expected;
  for (TruthSet& set : SetsOf(truth, slot)) {
    if (!std::any_of(set.begin(), set.end(), WasHanded)) {
      continue;
    }
    if (std::any_of(set.begin(), set.end(), IsWaiting)) {
      ++expected.half_read;
    } else {
      expected.rows.push_back(std::move(set));
    }
  }
  return expected;
}

std::vector<Row> RowsOf(const std::string& bytes, std::size_t columns) {
  std::vector<Row> rows;
  const std::size_t row_bytes = 2 * columns;
  for (std::size_t start = 0; start + row_bytes <= bytes.size(); start += row_bytes) {
    Row row(columns);
    std::memcpy(row.data(), bytes.data() + start, row_bytes);
    rows.push_back(std::move(row));
  }
  return rows;
}

int WrongWords(const Row& row, const TruthSet& set) {
  int wrong = 0;
  for (std::size_t column = 0; column < row.size(); ++column) {
    wrong += IsBinding(set[column]) && row[column] != set[column]->word ? 1 : 0;
  }
  return wrong;
}

int ExcusedWords(const Row& row, const TruthSet& set) {
  int excused = 0;
  for (std::size_t column = 0; column < row.size(); ++column) {
    const bool differs = set[column] && row[column] != set[column]->word;
    excused += differs && !IsBinding(set[column]) ? 1 : 0;
  }
  return excused;
}

// The words of `rows` in a column that are right if the column is `shift` rows away.
int RightWords(const std::vector<Row>& rows, const std::vector<TruthSet>& sets, std::size_t column,
               int shift) {
  int right = 0;
  for (std::size_t row = 1; row < rows.size(); ++row) {
    const auto place = static_cast<std::ptrdiff_t>(row) - 1 + shift;
    if (place < 0 || place >= static_cast<std::ptrdiff_t>(sets.size())) {
      continue;
    }
    const auto& sample = sets[static_cast<std::size_t>(place)][column];
    right += sample && sample->word == rows[row][column] ? 1 : 0;
  }
  return right;
}

// Columns that fit the truth better in another place than the first column does, which moves
// along if whole rows are missing.
int BestShift(const std::vector<Row>& rows, const std::vector<TruthSet>& sets, std::size_t column) {
  int best = 0;
  int most = RightWords(rows, sets, column, 0);
  for (int shift = -kWidestShift; shift <= kWidestShift; ++shift) {
    const int right = RightWords(rows, sets, column, shift);
    if (right > most) {
      most = right;
      best = shift;
    }
  }
  return best;
}

int ShiftedColumns(const std::vector<Row>& rows, const std::vector<TruthSet>& sets,
                   std::size_t columns) {
  int shifted = 0;
  for (std::size_t column = 1; column < columns; ++column) {
    shifted += BestShift(rows, sets, column) != BestShift(rows, sets, 0) ? 1 : 0;
  }
  return shifted;
}

std::string Text(const RecordedSlot& slot, std::size_t row, const Row& words, const TruthSet& set) {
  std::string text = slot.file + " row " + std::to_string(row) + ":";
  for (std::size_t column = 0; column < words.size(); ++column) {
    text += " " + std::to_string(words[column]);
    if (set[column] && set[column]->word != words[column]) {
      constexpr std::array<const char*, 5> kFates = {"waits", "good", "cut", "lost", "forgotten"};
      text += "(" + std::to_string(set[column]->word) + " " +
              kFates.at(static_cast<std::size_t>(set[column]->fate)) + ")";
    }
  }
  return text;
}

class Comparer {
 public:
  Comparer(const RecordedSlot& slot, std::vector<Row> rows, Expected expected)
      : slot_(slot), rows_(std::move(rows)), expected_(std::move(expected)) {}

  Findings Run() {
    findings_.rows = static_cast<int>(rows_.size());
    CompareFirst();
    std::size_t set = 0;
    for (std::size_t row = 1; row < rows_.size(); ++row) {
      set = CompareRow(row, set);
    }
    findings_.lost += static_cast<int>(expected_.rows.size() - set);
    findings_.shifted = ShiftedColumns(rows_, expected_.rows, slot_.inputs.size());
    // One set may be half read at the end; more of them are columns that ran ahead.
    findings_.shifted += expected_.half_read > 1 ? 1 : 0;
    return findings_;
  }

 private:
  void CompareFirst() {
    if (rows_.size() == 1 || (rows_.size() > 1 && rows_[0] != rows_[1])) {
      ++findings_.torn;
    }
  }

  // The set that belongs to the next row.
  std::size_t CompareRow(std::size_t row, std::size_t set) {
    if (set < expected_.rows.size() && IsRight(row, set)) {
      findings_.excused += ExcusedWords(rows_[row], expected_.rows[set]);
      return set + 1;
    }
    if (set >= expected_.rows.size() || (set > 0 && IsRight(row, set - 1))) {
      ++findings_.doubled;
      Tell(slot_.file + " row " + std::to_string(row) + " stands there twice");
      return set;
    }
    if (set + 1 < expected_.rows.size() && IsRight(row, set + 1)) {
      ++findings_.lost;
      Tell(slot_.file + " before row " + std::to_string(row) + " a set is missing");
      return set + 2;
    }
    const int wrong = WrongWords(rows_[row], expected_.rows[set]);
    findings_.wrong += wrong;
    findings_.torn += wrong < static_cast<int>(slot_.inputs.size()) ? 1 : 0;
    Tell(Text(slot_, row, rows_[row], expected_.rows[set]));
    return set + 1;
  }

  [[nodiscard]] bool IsRight(std::size_t row, std::size_t set) const {
    return WrongWords(rows_[row], expected_.rows[set]) == 0;
  }

  void Tell(std::string text) {
    if (findings_.details.size() < kMostDetails) {
      findings_.details.push_back(std::move(text));
    }
  }

  const RecordedSlot& slot_;
  std::vector<Row> rows_;
  Expected expected_;
  Findings findings_;
};

}  // namespace

void Findings::Add(const Findings& other) {
  rows += other.rows;
  wrong += other.wrong;
  excused += other.excused;
  torn += other.torn;
  lost += other.lost;
  doubled += other.doubled;
  shifted += other.shifted;
  details.insert(details.end(), other.details.begin(), other.details.end());
}

int HandedSets(const LineTruth& truth, const RecordedSlot& slot) {
  return static_cast<int>(ExpectedOf(truth, slot).rows.size());
}

Findings Compare(const LineTruth& truth, const RecordedSlot& slot, const std::string& bytes) {
  const std::size_t columns = slot.inputs.size();
  Findings findings = Comparer(slot, RowsOf(bytes, columns), ExpectedOf(truth, slot)).Run();
  findings.torn += bytes.size() % (2 * columns) != 0 ? 1 : 0;
  return findings;
}

}  // namespace tavrel
