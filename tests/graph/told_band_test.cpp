#include "graph/told_band.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = ToldRows::Kind;

// A view of the rows from `first` to `last` of a file with `channels` inputs.
ViewFrame RowsOf(int first, int last, int channels) {
  ViewFrame view;
  view.RecFirst = RecordOfRow(first, channels);
  view.RecLast = RecordOfRow(last, channels);
  return view;
}

ToldRows Missing(std::int64_t before, SetBounds sets = {3, 3}) {
  return {Kind::kMissing, before, before, sets, {}, "the buffer was full"};
}

TEST(ToldBand, NothingIsDrawnWhereTheJournalTellsOfNothing) {
  const ViewFrame view = RowsOf(1, 101, 3);
  EXPECT_THAT(BandRuns({}, {view, 3, 1001}), IsEmpty());
  EXPECT_EQ(BandTip({}, {view, 3, 1001}, 500, Language::kEnglish), "");
}

TEST(ToldBand, RowsStandInTheColumnsOfTheirCurve) {
  for (int channels = 1; channels <= kInputs; ++channels) {
    const ViewFrame view = RowsOf(1, 101, channels);
    const std::vector<ToldRows> told = {
        {Kind::kLater, 21, 30, {}, {}, ""}, {Kind::kFilled, 51, 51, {}, {2}, "lost"}, Missing(71)};
    EXPECT_THAT(
        BandRuns(told, {view, channels, 1001}),
        ElementsAre(BandRun{BandKind::kLater, 195, 295}, BandRun{BandKind::kFilled, 495, 505},
                    BandRun{BandKind::kMissing, 694, 696}))
        << channels;
  }
}

TEST(ToldBand, FollowsTheView) {
  const std::vector<ToldRows> told = {{Kind::kLater, 21, 30, {}, {}, ""}};
  EXPECT_THAT(BandRuns(told, {RowsOf(25, 35, 4), 4, 101}),
              ElementsAre(BandRun{BandKind::kLater, 0, 55}));
  EXPECT_THAT(BandRuns(told, {RowsOf(22, 28, 4), 4, 101}),
              ElementsAre(BandRun{BandKind::kLater, 0, 100}));
  EXPECT_THAT(BandRuns(told, {RowsOf(31, 60, 4), 4, 101}), IsEmpty());
  EXPECT_THAT(BandRuns(told, {RowsOf(1, 20, 4), 4, 101}), IsEmpty());
}

TEST(ToldBand, APlaceBetweenTwoRowsIsSeenWithEachOfThem) {
  const std::vector<ToldRows> told = {Missing(30)};
  EXPECT_THAT(BandRuns(told, {RowsOf(30, 60, 4), 4, 101}),
              ElementsAre(BandRun{BandKind::kMissing, 0, 2}));
  EXPECT_THAT(BandRuns(told, {RowsOf(1, 29, 4), 4, 101}),
              ElementsAre(BandRun{BandKind::kMissing, 98, 100}));
  EXPECT_THAT(BandRuns(told, {RowsOf(31, 60, 4), 4, 101}), IsEmpty());
  EXPECT_THAT(BandRuns(told, {RowsOf(1, 28, 4), 4, 101}), IsEmpty());
}

TEST(ToldBand, SetsThatAreMissingBeforeTheFirstRowAreSeen) {
  for (const int before : {0, 1}) {
    const std::vector<ToldRows> told = {Missing(before)};
    EXPECT_EQ(BandRuns(told, {RowsOf(1, 60, 4), 4, 101}).size(), before == 0 ? 0U : 1U);
  }
}

TEST(ToldBand, TheWorseCoversTheBetter) {
  const ViewFrame view = RowsOf(0, 100, 2);
  const std::vector<ToldRows> told = {
      Missing(50), {Kind::kQuestioned, 40, 60, {}, {1}, ""}, {Kind::kLater, 10, 90, {}, {}, ""}};
  EXPECT_THAT(BandRuns(told, {view, 2, 101}),
              ElementsAre(BandRun{BandKind::kLater, 9, 38}, BandRun{BandKind::kFilled, 39, 47},
                          BandRun{BandKind::kMissing, 48, 50}, BandRun{BandKind::kFilled, 51, 60},
                          BandRun{BandKind::kLater, 61, 90}));
}

TEST(ToldBand, OneRowOfManyIsThreeColumnsWide) {
  const ViewFrame view = RowsOf(1, 32000, 1);
  for (const int row : {1, 2, 16000, 31999, 32000}) {
    const std::vector<ToldRows> told = {{Kind::kFilled, row, row, {}, {1}, ""}};
    const auto runs = BandRuns(told, {view, 1, 800});
    ASSERT_EQ(runs.size(), 1U);
    EXPECT_EQ(runs[0].Last - runs[0].First, 2) << row;
  }
}

TEST(ToldBand, HowMuchIsDrawnIsBoundedByTheColumns) {
  std::mt19937 random(7);
  std::vector<ToldRows> told;
  for (int place = 0; place < 20000; ++place) {
    const auto row = static_cast<std::int64_t>(random() % 32000);
    told.push_back({static_cast<Kind>(random() % 4), row, row, {1, 1}, {1}, ""});
  }
  for (const int columns : {1, 2, 3, 500, 3840}) {
    const auto runs = BandRuns(told, {RowsOf(1, 32000, 1), 1, columns});
    EXPECT_LE(runs.size(), static_cast<std::size_t>(columns));
    for (std::size_t place = 0; place < runs.size(); ++place) {
      EXPECT_GE(runs[place].First, place == 0 ? 0 : runs[place - 1].Last + 1);
      EXPECT_LE(runs[place].First, runs[place].Last);
      EXPECT_LT(runs[place].Last, columns);
    }
  }
  EXPECT_THAT(BandRuns(told, {RowsOf(1, 32000, 1), 1, 0}), IsEmpty());
}

TEST(ToldBand, AnyNumbersOfADamagedJournalAreHeld) {
  constexpr std::int64_t kMost = 2147483647;
  const std::vector<ToldRows> told = {{Kind::kLater, 0, kMost, {}, {}, ""},
                                      {Kind::kFilled, 9, 3, {}, {}, ""},
                                      {Kind::kFilled, kMost, kMost, {}, {}, ""},
                                      Missing(kMost)};
  for (const int last : {5, 6, 32000}) {
    for (const int columns : {1, 4, 800}) {
      for (const BandRun& run : BandRuns(told, {RowsOf(5, last, 1), 1, columns})) {
        EXPECT_GE(run.First, 0);
        EXPECT_LT(run.Last, columns);
      }
    }
  }
}

TEST(ToldBand, TheColoursDifferInBrightnessToo) {
  std::vector<double> bright = {255};  // the paper
  for (const BandKind kind : {BandKind::kLater, BandKind::kFilled, BandKind::kMissing}) {
    const Colour ink = BandColour(kind);
    bright.push_back(0.299 * ink.Red + 0.587 * ink.Green + 0.114 * ink.Blue);
    EXPECT_GE(bright[bright.size() - 2] - bright.back(), 50);
    EXPECT_LE(BandHeight(kind), 1);
  }
}

TEST(ToldBand, TheTipSaysWhichRowsAndWhy) {
  const ViewFrame view = RowsOf(1, 101, 3);
  const BandView in{view, 3, 1001};
  const std::vector<ToldRows> told = {{Kind::kLater, 21, 30, {}, {}, ""},
                                      {Kind::kFilled, 51, 51, {}, {2}, "lost on the line"},
                                      {Kind::kQuestioned, 61, 62, {}, {2, 15}, "a restart"},
                                      Missing(71),
                                      Missing(81, {1, 1}),
                                      Missing(91, {0, std::nullopt})};
  const auto tip = [&](int column, Language language = Language::kEnglish) {
    return BandTip(told, in, column, language);
  };
  EXPECT_EQ(tip(250), "rows 21 to 30: fetched later from the instrument's buffer");
  EXPECT_EQ(tip(500), "row 51, input 2: a value stands in place of a lost one (lost on the line)");
  EXPECT_EQ(tip(600), "rows 61 to 62, inputs 2, 15: values may stand in a wrong row (a restart)");
  EXPECT_EQ(tip(695), "before row 71: 3 sets are missing (the buffer was full)");
  EXPECT_EQ(tip(795), "before row 81: 1 set is missing (the buffer was full)");
  EXPECT_EQ(tip(895), "before row 91: 0 or more sets are missing (the buffer was full)");
  EXPECT_EQ(tip(695, Language::kGerman), "vor Zeile 71: 3 Sätze fehlen (the buffer was full)");
  EXPECT_EQ(tip(250, Language::kGerman),
            "Zeilen 21 bis 30: später aus dem Puffer des Geräts geholt");
  EXPECT_EQ(tip(400), "");
}

TEST(ToldBand, TheTipTellsTheWorstFirstAndHowManyMoreThereAre) {
  std::vector<ToldRows> told = {{Kind::kLater, 1, 32000, {}, {}, ""}};
  for (int row = 16000; row < 16010; ++row) {
    told.push_back({Kind::kFilled, row, row, {}, {1}, ""});
  }
  told.push_back(Missing(16004));
  const ViewFrame view = RowsOf(1, 32000, 1);
  const std::string tip = BandTip(told, {view, 1, 801}, 400, Language::kEnglish);
  EXPECT_EQ(tip.find("before row 16004: 3 sets are missing"), 0U);
  EXPECT_EQ(std::count(tip.begin(), tip.end(), '\n'), 4);
  EXPECT_THAT(tip, HasSubstr("\n8 more places"));
}

TEST(ToldBand, TheReasonIsInTheLanguageOfTheTip) {
  std::vector<ToldRows> told = {Missing(30)};
  told.front().Why = "the buffer of the instrument was full";
  const std::string tip = BandTip(told, {RowsOf(30, 60, 4), 4, 101}, 0, Language::kGerman);
  EXPECT_THAT(tip, HasSubstr("Sätze fehlen (der Puffer des Geräts war voll)"));
}

}  // namespace
}  // namespace tavrel
