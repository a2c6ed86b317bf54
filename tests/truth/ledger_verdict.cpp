#include "tests/truth/ledger_verdict.h"

#include <algorithm>
#include <set>

namespace tavrel {
namespace {

std::string Text(const SetBounds& sets) {
  return std::to_string(sets.Least) + ".." + (sets.Most ? std::to_string(*sets.Most) : "any");
}

bool Holds(const SetBounds& sets, std::int64_t truth) {
  return sets.Least <= truth && (!sets.Most || truth <= *sets.Most);
}

// Different rows of which the user was told so; row 0 is row 1.
std::int64_t RowsToldOf(const Told& told, const std::string& file, ToldDoubt::Kind kind,
                        std::int64_t rows) {
  std::set<std::int64_t> all;
  for (const ToldDoubt& doubt : told.doubts) {
    const std::int64_t last = std::min<std::int64_t>(doubt.last_row, rows - 1);
    for (std::int64_t row = std::max(doubt.first_row, 1);
         doubt.file == file && doubt.kind == kind && row <= last; ++row) {
      all.insert(row);
    }
  }
  return static_cast<std::int64_t>(all.size());
}

// Collects what is wrong with the ledger of one recording.
class LedgerComparer {
 public:
  LedgerComparer(const RecordedSlot& slot, const LedgerFigures& figures)
      : name_(slot.file), figures_(figures) {}

  void Expect(bool is_right, const std::string& what) {
    if (!is_right) {
      verdict_.problems.push_back(name_ + ": the ledger says " + what);
    }
  }
  void ExpectSame(std::int64_t figure, std::int64_t truth, const std::string& what) {
    Expect(figure == truth, std::to_string(figure) + " " + what + ", not " + std::to_string(truth));
  }
  // Where values are in question the clocks say nothing.
  void TakeWidths() {
    for (const LedgerLoss& loss : figures_.Losses) {
      const bool is_restart = loss.What.find("switched off and on") != std::string::npos;
      const std::int64_t most =
          is_restart ? LedgerVerdict::kWidestOfRestart : LedgerVerdict::kWidest;
      const bool is_bounded = loss.Sets.Most.has_value();
      const std::int64_t width = loss.Sets.Most.value_or(loss.Sets.Least) - loss.Sets.Least;
      const bool is_in_question = figures_.Questioned > 0;
      Expect(is_in_question || (is_bounded && width <= most),
             Text(loss.Sets) + " lost, too wide: " + loss.What);
      verdict_.width = std::max(verdict_.width, width);
    }
  }
  [[nodiscard]] LedgerVerdict Take() && { return std::move(verdict_); }

 private:
  std::string name_;
  const LedgerFigures& figures_;
  LedgerVerdict verdict_;
};

}  // namespace

void LedgerVerdict::Add(const LedgerVerdict& other) {
  width = std::max(width, other.width);
  problems.insert(problems.end(), other.problems.begin(), other.problems.end());
}

std::string LedgerVerdict::Text() const {
  if (!Agrees()) {
    return "OTHER";
  }
  return width == 0 ? "same" : "in " + std::to_string(width);
}

LedgerVerdict CompareLedger(const RecordedSlot& slot, const LedgerFigures& figures,
                            const Findings& found, int made, const Told& told) {
  LedgerComparer comparer(slot, figures);
  comparer.Expect(figures.IsKnown, "nothing: " + figures.Why);
  if (!figures.IsKnown) {
    return std::move(comparer).Take();
  }
  using Kind = ToldDoubt::Kind;
  comparer.ExpectSame(figures.Rows, found.rows, "rows");
  comparer.ExpectSame(figures.Recorded, std::max(found.rows - 1, 0), "sets");
  comparer.ExpectSame(figures.Live + figures.Later, figures.Recorded, "sets live and later");
  comparer.ExpectSame(figures.Filled, RowsToldOf(told, slot.file, Kind::kFilled, figures.Rows),
                      "rows filled in");
  comparer.ExpectSame(figures.Questioned,
                      RowsToldOf(told, slot.file, Kind::kUncertain, figures.Rows),
                      "rows in question");
  comparer.Expect(Holds(figures.Lost, found.lost),
                  Text(figures.Lost) + " sets lost, not " + std::to_string(found.lost));
  const bool is_whole = found.lost == 0 && found.excused == 0 && found.wrong == 0;
  comparer.Expect(is_whole || !figures.IsComplete(), "complete");
  comparer.Expect(figures.Expected().Least <= made,
                  Text(figures.Expected()) + " sets expected, not " + std::to_string(made));
  comparer.TakeWidths();
  return std::move(comparer).Take();
}

}  // namespace tavrel
