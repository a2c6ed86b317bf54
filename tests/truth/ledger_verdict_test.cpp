#include "tests/truth/ledger_verdict.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

const RecordedSlot kSlotOfAll{"M260314A.TUB", 1, {1, 15}};

LedgerFigures Complete() {
  LedgerFigures figures;
  figures.IsKnown = true;
  figures.Rows = 21;
  figures.Recorded = 20;
  figures.Live = 20;
  figures.Waiting = SetBounds{0, 1};
  return figures;
}

Findings Found(int lost = 0) {
  Findings found;
  found.rows = 21;
  found.lost = lost;
  return found;
}

std::string VerdictOf(const LedgerFigures& figures, const Findings& found, const Told& told = {},
                      int made = 20) {
  return CompareLedger(kSlotOfAll, figures, found, made, told).Text();
}

LedgerFigures Lossy(const SetBounds& sets, const std::string& what = "a buffer was full") {
  LedgerFigures figures = Complete();
  figures.Lost = sets;
  figures.Losses = {{4, sets, {}, "", what}};
  return figures;
}

TEST(LedgerVerdict, FiguresOfTheTruthAreTheSame) {
  EXPECT_EQ(VerdictOf(Complete(), Found()), "same");
  EXPECT_EQ(VerdictOf(Lossy({3, 3}), Found(3), {}, 23), "same");
}

TEST(LedgerVerdict, BoundsHaveToHoldTheTruthAndToBeNarrow) {
  EXPECT_EQ(VerdictOf(Lossy({2, 4}), Found(3), {}, 23), "in 2");
  EXPECT_EQ(VerdictOf(Lossy({2, 4}), Found(5), {}, 25), "OTHER");
  EXPECT_EQ(VerdictOf(Lossy({2, 4}), Found(1), {}, 25), "OTHER");
  EXPECT_EQ(VerdictOf(Lossy({2, 5}), Found(3), {}, 23), "OTHER") << "too wide";
  EXPECT_EQ(VerdictOf(Lossy({2, std::nullopt}), Found(3), {}, 23), "OTHER") << "no bound";
  EXPECT_EQ(VerdictOf(Lossy({2, 5}, "the instrument was switched off and on"), Found(3), {}, 23),
            "in 3");
}

TEST(LedgerVerdict, BoundsMayBeOpenWhereValuesAreInQuestion) {
  const Told told{{{kSlotOfAll.file, ToldDoubt::Kind::kUncertain, 4, ToldDoubt::kOpen, {}}}, {}};
  LedgerFigures figures = Lossy({2, std::nullopt});
  figures.Questioned = 17;
  EXPECT_EQ(VerdictOf(figures, Found(3), told, 23), "same");
  EXPECT_EQ(VerdictOf(figures, Found(1), told, 23), "OTHER") << "they hold the truth";
}

TEST(LedgerVerdict, EachFigureCounts) {
  EXPECT_EQ(VerdictOf(Complete(), Found(1)), "OTHER");
  EXPECT_EQ(VerdictOf(Lossy({1, 1}), Found()), "OTHER");
  EXPECT_EQ(VerdictOf(Complete(), Found(), {}, 19), "OTHER") << "more than were made";
  EXPECT_EQ(VerdictOf(LedgerFigures(), Found()), "OTHER") << "there is none";
  Findings more = Found();
  more.rows = 22;
  EXPECT_EQ(VerdictOf(Complete(), more), "OTHER");
  Findings excused = Found();
  excused.excused = 1;
  EXPECT_EQ(VerdictOf(Complete(), excused), "OTHER") << "not complete";
}

TEST(LedgerVerdict, RowsThatTheUserWasToldOfAreCountedOnce) {
  using Kind = ToldDoubt::Kind;
  const Told told{{{kSlotOfAll.file, Kind::kFilled, 0, 1, {1}},
                   {kSlotOfAll.file, Kind::kFilled, 1, 1, {15}},
                   {kSlotOfAll.file, Kind::kUncertain, 19, ToldDoubt::kOpen, {}},
                   {"M260314B.CHA", Kind::kFilled, 7, 7, {}}},
                  {}};
  LedgerFigures figures = Complete();
  figures.Filled = 1;
  figures.Questioned = 2;
  EXPECT_EQ(VerdictOf(figures, Found(), told), "same");
  figures.Questioned = 1;
  EXPECT_EQ(VerdictOf(figures, Found(), told), "OTHER");
  figures.Questioned = 2;
  figures.Filled = 2;
  EXPECT_EQ(VerdictOf(figures, Found(), told), "OTHER");
}

}  // namespace
}  // namespace tavrel
