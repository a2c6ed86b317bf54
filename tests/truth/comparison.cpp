#include "tests/truth/comparison.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>

#include "tests/truth/alignment.h"

namespace tavrel {
namespace {

constexpr std::size_t kMostDetails = 6;
constexpr int kWidestShift = 5;  // rows

using Row = std::vector<std::int16_t>;

// The samples of one set, one place for each column; an input that was not sampled has none.
using TruthSet = std::vector<std::optional<TakenSample>>;

bool Has(const TruthSet& set, SampleFate fate) {
  return std::any_of(set.begin(), set.end(),
                     [fate](const auto& sample) { return sample && sample->fate == fate; });
}

bool WasHanded(const std::optional<TakenSample>& sample) {
  return sample && (sample->fate == SampleFate::kGood || sample->fate == SampleFate::kCut ||
                    sample->fate == SampleFate::kLost);
}

// Its value may not have arrived.
bool IsLoss(const std::optional<TakenSample>& sample) {
  return sample && (sample->fate == SampleFate::kCut || sample->fate == SampleFate::kLost);
}

// A sample of the set is still to come: it waits in the instrument or is not taken yet.
bool IsUnderWay(const TruthSet& set, bool may_be_taken_yet) {
  return Has(set, SampleFate::kWaiting) ||
         (may_be_taken_yet &&
          std::any_of(set.begin(), set.end(), [](const auto& sample) { return !sample; }));
}

// By the count of clearings and the number.
using Sets = std::map<std::pair<int, int>, TruthSet>;

Sets SetsOf(const LineTruth& truth, const RecordedSlot& slot) {
  Sets sets;
  for (std::size_t column = 0; column < slot.inputs.size(); ++column) {
    const auto found = truth.inputs.find({slot.inet, slot.inputs[column]});
    if (found == truth.inputs.end()) {
      continue;
    }
    for (const TakenSample& sample : found->second) {
      TruthSet& set = sets[{sample.epoch, sample.number}];
      set.resize(slot.inputs.size());
      set[column] = sample;
    }
  }
  return sets;
}

// What has to stand in the file: every set of which something was handed over or was pushed out
// of a full buffer. A set of which the rest still waits is half read.
struct Expected {
  std::vector<TruthSet> rows;
  std::vector<TruthSet> half_read;
  int forgotten = 0;  // sets that went with a restart of the instrument, whole
};

Expected ExpectedOf(const LineTruth& truth, const RecordedSlot& slot) {
  Expected expected;
  const Sets sets = SetsOf(truth, slot);
  for (const auto& [place, set] : sets) {
    const bool was_handed = std::any_of(set.begin(), set.end(), WasHanded);
    if (!was_handed && !Has(set, SampleFate::kOverrun)) {
      expected.forgotten += Has(set, SampleFate::kForgotten) ? 1 : 0;
      continue;
    }
    if (was_handed && IsUnderWay(set, place.first == sets.rbegin()->first.first)) {
      expected.half_read.push_back(set);
    } else {
      expected.rows.push_back(set);
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

bool Differs(const std::optional<TakenSample>& sample, std::int16_t word) {
  return !sample || sample->word != word;
}

// The words of `rows` in a column that are right if the column is `shift` rows away.
int RightWords(const std::vector<Row>& rows, const std::vector<TruthSet>& sets, std::size_t column,
               int shift) {
  int right = 0;
  for (std::size_t row = 1; row < rows.size(); ++row) {
    const auto place = static_cast<std::ptrdiff_t>(row) - 1 + shift;
    if (place >= 0 && place < static_cast<std::ptrdiff_t>(sets.size())) {
      right += Differs(sets[static_cast<std::size_t>(place)][column], rows[row][column]) ? 0 : 1;
    }
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

std::string Text(const TakenSample& sample) {
  constexpr std::array<const char*, 7> kFates = {"waits",   "good",      "cut",    "lost",
                                                 "overrun", "forgotten", "cleared"};
  return std::to_string(sample.word) + " " + kFates.at(static_cast<std::size_t>(sample.fate));
}

std::string Text(const TruthSet& set) {
  std::string text;
  for (const auto& sample : set) {
    text += " (" + (sample ? Text(*sample) : "nothing") + ")";
  }
  return text;
}

std::string Text(const RecordedSlot& slot, int row, const Row& words, const TruthSet& set) {
  std::string text = slot.file + " row " + std::to_string(row) + ":";
  for (std::size_t column = 0; column < words.size(); ++column) {
    text += " " + std::to_string(words[column]);
    if (set[column] && set[column]->word != words[column]) {
      text += "(" + Text(*set[column]) + ")";
    }
  }
  return text;
}

// What the user was told of one recording.
class ToldOfFile {
 public:
  ToldOfFile(const Told& told, const std::string& file) {
    for (const ToldDoubt& doubt : told.doubts) {
      if (doubt.file == file) {
        doubts_.push_back(doubt);
      }
    }
    for (const ToldLoss& loss : told.losses) {
      if (loss.file == file) {
        losses_.push_back(loss);
      }
    }
  }

  [[nodiscard]] bool Covers(int row, int input) const {
    return std::any_of(doubts_.begin(), doubts_.end(),
                       [&](const ToldDoubt& doubt) { return IsOf(doubt, row, input); });
  }
  [[nodiscard]] bool Covers(int row, int input, ToldDoubt::Kind kind) const {
    return std::any_of(doubts_.begin(), doubts_.end(), [&](const ToldDoubt& doubt) {
      return doubt.kind == kind && IsOf(doubt, row, input);
    });
  }
  [[nodiscard]] int Count(ToldDoubt::Kind kind) const {
    return static_cast<int>(
        std::count_if(doubts_.begin(), doubts_.end(),
                      [kind](const ToldDoubt& doubt) { return doubt.kind == kind; }));
  }
  [[nodiscard]] const std::vector<ToldLoss>& Losses() const { return losses_; }

 private:
  static bool IsOf(const ToldDoubt& doubt, int row, int input) {
    const bool is_input =
        doubt.inputs.empty() ||
        std::find(doubt.inputs.begin(), doubt.inputs.end(), input) != doubt.inputs.end();
    return is_input && row >= doubt.first_row && row <= doubt.last_row;
  }

  std::vector<ToldDoubt> doubts_;
  std::vector<ToldLoss> losses_;
};

// Where the user was told that nobody knows how many sets are lost.
constexpr int kAnyNumber = 100'000;

// Costs of an explanation, see Align: a word that differs in a column that may stand in another
// row, as the user was told. In a certain column it costs as much as a whole row of these.
constexpr int kDoubtedWordCost = 2;

class Comparer {
 public:
  Comparer(const RecordedSlot& slot, std::vector<Row> rows, Expected expected, const Told& told)
      : slot_(slot),
        rows_(std::move(rows)),
        expected_(std::move(expected)),
        told_(told, slot.file),
        ahead_(slot.inputs.size()) {}

  Findings Run() {
    findings_.rows = static_cast<int>(rows_.size());
    findings_.lost = expected_.forgotten;
    CompareFirst();
    int row = 1;
    for (const AlignedPair& pair : AlignRows()) {
      Take(pair, row);
      row += pair.row == AlignedPair::kNone ? 0 : 1;
    }
    if (findings_.wrong > 0) {
      findings_.shifted = ShiftedColumns(rows_, expected_.rows, slot_.inputs.size());
    }
    // One set may be half read at the end; more of them are columns that ran ahead.
    const bool is_told = told_.Count(ToldDoubt::Kind::kUncertain) > 0;
    findings_.shifted += expected_.half_read.size() > 1 && !is_told ? 1 : 0;
    TakeTold();
    return findings_;
  }

 private:
  void CompareFirst() {
    if (rows_.size() == 1 || (rows_.size() > 1 && rows_[0] != rows_[1])) {
      ++findings_.torn;
    }
  }

  // Rows from 1 on, which is row 0 of the alignment.
  [[nodiscard]] std::vector<AlignedPair> AlignRows() const {
    const int columns = static_cast<int>(slot_.inputs.size());
    const int row_cost = kDoubtedWordCost * columns * columns;
    const auto word_costs = WordCosts();
    AlignmentCosts costs;
    costs.differing = [&](int row, int set) {
      const auto place = static_cast<std::size_t>(row) + 1;
      return Cost(rows_[place], SetAt(set), word_costs[place]);
    };
    // A word of a certain column says more about which sets are missing than their fate does.
    costs.missing = [&](int set) {
      return Has(SetAt(set), SampleFate::kOverrun) ? 1 : kDoubtedWordCost * columns;
    };
    costs.superfluous = row_cost + 2;
    return Align(std::max(0, static_cast<int>(rows_.size()) - 1),
                 static_cast<int>(expected_.rows.size()), costs);
  }

  // By row and column. A value that was filled in says nothing of the set that its row is of.
  [[nodiscard]] std::vector<std::vector<int>> WordCosts() const {
    const std::size_t columns = slot_.inputs.size();
    const int certain = kDoubtedWordCost * static_cast<int>(columns);
    std::vector<std::vector<int>> costs(rows_.size(), std::vector<int>(columns, certain));
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      for (std::size_t column = 0; column < columns; ++column) {
        if (told_.Covers(static_cast<int>(row), slot_.inputs[column], ToldDoubt::Kind::kFilled)) {
          costs[row][column] = 0;
        } else if (told_.Covers(static_cast<int>(row), slot_.inputs[column],
                                ToldDoubt::Kind::kUncertain)) {
          costs[row][column] = kDoubtedWordCost;
        }
      }
    }
    return costs;
  }

  static int Cost(const Row& row, const TruthSet& set, const std::vector<int>& word_costs) {
    int cost = 0;
    for (std::size_t column = 0; column < row.size(); ++column) {
      cost += Differs(set[column], row[column]) ? word_costs[column] : 0;
    }
    return cost;
  }

  // `row` is the one of the pair, or the one before which a set is missing.
  void Take(const AlignedPair& pair, int row) {
    if (pair.set == AlignedPair::kNone && IsOfHalfReadSet(row)) {
      findings_.excused += static_cast<int>(slot_.inputs.size());
    } else if (pair.set == AlignedPair::kNone) {
      ++findings_.doubled;
      Tell(slot_.file + " row " + std::to_string(row) + " stands there twice");
    } else if (pair.row == AlignedPair::kNone) {
      TakeMissing(row, SetAt(pair.set));
    } else {
      TakePair(row, SetAt(pair.set));
    }
  }

  void TakeMissing(int row, const TruthSet& set) {
    if (Has(set, SampleFate::kForgotten) || Has(set, SampleFate::kCleared)) {
      return;  // half read when the rest was gone
    }
    if (IsInDoubt(row, set) || IsInHand(row)) {
      findings_.excused += static_cast<int>(set.size());
      return;
    }
    ++findings_.lost;
    findings_.given_up += Has(set, SampleFate::kOverrun) ? 0 : 1;
    if (!Has(set, SampleFate::kOverrun)) {
      Tell(slot_.file + " has no row of the set with" + Text(set) + ", before row " +
           std::to_string(row));
    }
  }

  void TakePair(int row, const TruthSet& set) {
    int wrong = 0;
    int right = 0;
    const Row& words = rows_[static_cast<std::size_t>(row)];
    for (std::size_t column = 0; column < words.size(); ++column) {
      const int input = slot_.inputs[column];
      TakeLoss(row, column, set[column]);
      if (!Differs(set[column], words[column])) {
        ++right;
      } else if (told_.Covers(row, input)) {
        ++findings_.excused;
        const bool had_arrived = set[column] && set[column]->fate == SampleFate::kGood;
        const bool was_filled = told_.Covers(row, input, ToldDoubt::Kind::kFilled);
        const bool is_in_place = !told_.Covers(row, input, ToldDoubt::Kind::kUncertain);
        findings_.invented += had_arrived && was_filled && is_in_place ? 1 : 0;
      } else {
        ++wrong;
      }
    }
    findings_.wrong += wrong;
    findings_.torn += wrong > 0 && right > 0 ? 1 : 0;
    if (wrong > 0) {
      Tell(Text(slot_, row, words, set));
    }
  }

  // Every column has lost a value and runs ahead from there on, and the user was told so of each:
  // there is one row less than there are sets.
  [[nodiscard]] bool IsInDoubt(int row, const TruthSet& set) {
    for (std::size_t column = 0; column < set.size(); ++column) {
      TakeLoss(row, column, set[column]);
    }
    const int least = *std::min_element(ahead_.begin(), ahead_.end());
    const bool is_absent = least > absent_;
    absent_ += is_absent ? 1 : 0;
    return is_absent;
  }

  // Of the last set nothing but the column that runs ahead is in a row: the others are in hand.
  [[nodiscard]] bool IsInHand(int row) {
    const int most = *std::max_element(ahead_.begin(), ahead_.end());
    const bool is_behind_all = row == static_cast<int>(rows_.size());
    return is_behind_all && most > absent_ && std::exchange(has_hand_, false);
  }

  // The last rows may hold sets of which a column that runs behind, as the user was told, has not
  // been read yet.
  [[nodiscard]] bool IsOfHalfReadSet(int row) const {
    const std::size_t behind = rows_.size() - static_cast<std::size_t>(row);
    if (behind > expected_.half_read.size()) {
      return false;
    }
    const TruthSet& set = expected_.half_read[expected_.half_read.size() - behind];
    const Row& words = rows_[static_cast<std::size_t>(row)];
    bool is_told = false;
    for (std::size_t column = 0; column < words.size(); ++column) {
      if (told_.Covers(row, slot_.inputs[column], ToldDoubt::Kind::kUncertain)) {
        is_told = true;
      } else if (Differs(set[column], words[column])) {
        return false;
      }
    }
    return is_told;
  }

  void TakeLoss(int row, std::size_t column, const std::optional<TakenSample>& sample) {
    if (!IsLoss(sample)) {
      return;
    }
    ++findings_.losses;
    if (told_.Covers(row, slot_.inputs[column], ToldDoubt::Kind::kUncertain)) {
      ++findings_.in_doubt;
      ++ahead_[column];
    }
  }

  void TakeTold() {
    findings_.told_filled = told_.Count(ToldDoubt::Kind::kFilled);
    findings_.told_uncertain = told_.Count(ToldDoubt::Kind::kUncertain);
    for (const ToldLoss& loss : told_.Losses()) {
      findings_.told_lost += loss.sets.value_or(0);
      const int about = loss.sets ? std::max(2, *loss.sets / 10) : kAnyNumber;
      findings_.about += loss.is_about ? about : 0;
    }
  }

  [[nodiscard]] const TruthSet& SetAt(int set) const {
    return expected_.rows[static_cast<std::size_t>(set)];
  }

  void Tell(std::string text) {
    if (findings_.details.size() < kMostDetails) {
      findings_.details.push_back(std::move(text));
    }
  }

  const RecordedSlot& slot_;
  std::vector<Row> rows_;
  Expected expected_;
  ToldOfFile told_;
  std::vector<int> ahead_;  // by column: values that were lost, told as uncertain
  int absent_ = 0;          // sets without a row since all columns run ahead
  bool has_hand_ = true;    // one set may be in hand at the end
  Findings findings_;
};

}  // namespace

bool Findings::HoldsTheTruth() const {
  return wrong == 0 && torn == 0 && shifted == 0;
}

bool Findings::Agrees() const {
  return HoldsTheTruth() && doubled == 0 && invented == 0 && std::abs(lost - told_lost) <= about;
}

void Findings::Add(const Findings& other) {
  rows += other.rows;
  wrong += other.wrong;
  excused += other.excused;
  told_filled += other.told_filled;
  told_uncertain += other.told_uncertain;
  invented += other.invented;
  torn += other.torn;
  lost += other.lost;
  given_up += other.given_up;
  told_lost += other.told_lost;
  about += other.about;
  doubled += other.doubled;
  shifted += other.shifted;
  losses += other.losses;
  in_doubt += other.in_doubt;
  details.insert(details.end(), other.details.begin(), other.details.end());
}

void PrintTo(const Findings& findings, std::ostream* out) {
  const std::array<std::pair<const char*, int>, 15> numbers{{
      {"rows", findings.rows},
      {"wrong", findings.wrong},
      {"excused", findings.excused},
      {"told_filled", findings.told_filled},
      {"told_uncertain", findings.told_uncertain},
      {"invented", findings.invented},
      {"torn", findings.torn},
      {"lost", findings.lost},
      {"given_up", findings.given_up},
      {"told_lost", findings.told_lost},
      {"about", findings.about},
      {"doubled", findings.doubled},
      {"shifted", findings.shifted},
      {"losses", findings.losses},
      {"in_doubt", findings.in_doubt},
  }};
  for (const auto& [name, number] : numbers) {
    if (number != 0) {
      *out << name << " " << number << ", ";
    }
  }
  for (const std::string& detail : findings.details) {
    *out << "\n  " << detail;
  }
}

int HandedSets(const LineTruth& truth, const RecordedSlot& slot) {
  const Expected expected = ExpectedOf(truth, slot);
  return static_cast<int>(std::count_if(
      expected.rows.begin(), expected.rows.end(),
      [](const TruthSet& set) { return std::any_of(set.begin(), set.end(), WasHanded); }));
}

int MadeSets(const LineTruth& truth, const RecordedSlot& slot) {
  return static_cast<int>(SetsOf(truth, slot).size());
}

Findings Compare(const LineTruth& truth, const RecordedSlot& slot, const std::string& bytes,
                 const Told& told) {
  const std::size_t columns = slot.inputs.size();
  Findings findings = Comparer(slot, RowsOf(bytes, columns), ExpectedOf(truth, slot), told).Run();
  findings.torn += bytes.size() % (2 * columns) != 0 ? 1 : 0;
  return findings;
}

}  // namespace tavrel
