#include "files/ledger.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "files/ledger_text.h"

namespace tavrel {
namespace {

// An instrument that makes sets by its own clock, and the lines of a journal about it.
struct Story {
  double interval = 10;
  double rate = 0;   // by which the instrument's clock is slow
  double phase = 3;  // of set 0
  double now = 0;
  std::string boot = "a";
  std::int64_t rows = 0;
  std::int64_t missing = 0;  // sets that are in no row
  std::int64_t skipped = 0;  // made while nothing was recorded
  Ledger ledger;

  explicit Story(double of_interval = 10) : interval(of_interval) {
    Line("begin", {{"interval", interval}, {"line", "direct"}});
    Line("start");
  }
  void Line(const char* kind, JsonValue::Members fields = {}) {
    fields.emplace_back("rows", rows);
    ledger.Take(kind, JsonValue(std::move(fields)), {now, boot}, "2026-03-14T02:10:00+01:00");
  }
  [[nodiscard]] std::int64_t Made() const {
    return static_cast<std::int64_t>(std::floor((now - phase) / (interval * (1 + rate)))) + 1;
  }
  // All that was made is in the file but `missing`, and the instrument says so.
  void Drain(double took = 0.05) {
    const std::int64_t sets = std::max<std::int64_t>(Made() - missing - skipped, 0);
    rows = sets > 0 ? sets + 1 : 0;
    Line("drained", {{"took", took}});
  }
  void Live(double seconds, double step = 1200) {
    for (double gone = 0; gone < seconds; gone += step) {
      now += std::min(step, seconds - gone);
      Drain();
    }
  }
  void Lost(std::int64_t before, JsonValue sets, JsonValue least, JsonValue most,
            const char* cause = "full") {
    Line("lost", {{"before", before},
                  {"sets", std::move(sets)},
                  {"least", std::move(least)},
                  {"most", std::move(most)},
                  {"cause", cause},
                  {"what", "the buffer of the instrument was full"}});
  }
  [[nodiscard]] LedgerFigures Figures() const {
    return ledger.Figures(rows, LedgerMoment{now, boot});
  }
};

TEST(Ledger, ARecordingThatIsReadAllTheTimeIsComplete) {
  for (const double interval : {1.0, 10.0, 60.0, 3600.0}) {
    Story story(interval);
    story.Live(20 * interval, interval / 3);
    const LedgerFigures figures = story.Figures();
    EXPECT_TRUE(figures.IsComplete());
    EXPECT_EQ(figures.Recorded, story.Made());
    EXPECT_EQ(figures.Live, story.Made());
    EXPECT_EQ(figures.Later, 0);
    EXPECT_EQ(figures.Segments, 1);
    EXPECT_EQ(figures.Lost, SetBounds());
  }
}

TEST(Ledger, ADriftingClockIsNoLossInAMonth) {
  constexpr double kMonth = 31 * 86400.0;
  for (const double rate : {-200e-6, -37e-6, 0.0, 200e-6}) {
    for (const double interval : {1.0, 10.0, 600.0}) {
      Story story(interval);
      story.rate = rate;
      story.Live(kMonth);
      EXPECT_TRUE(story.Figures().IsComplete()) << rate << ", " << interval << " s";
      EXPECT_EQ(story.Figures().Recorded, story.Made());
    }
  }
}

// What waited when the program was there for the first time is known, and no more than that.
TEST(Ledger, SetsThatWereCountedLetTheClockBegin) {
  for (const std::int64_t beside : {0, 1}) {
    for (const double rate : {-200e-6, 0.0, 200e-6}) {
      Story story;
      story.rate = rate;
      story.now = 84;
      const std::int64_t waits = story.Made();
      story.Line("resume");
      story.Line("counted", {{"least", waits - beside}, {"most", waits + beside}, {"took", 0.05}});
      ASSERT_TRUE(story.Figures().Waiting);
      EXPECT_LE(story.Figures().Waiting->Least, waits);
      EXPECT_GE(story.Figures().Waiting->Most, waits);
      story.now += 15000;
      story.Line("resume");
      story.missing = 600;
      story.Lost(1, 17, 0, {});
      story.Drain();
      const SetBounds lost = story.Figures().Lost;
      EXPECT_LE(lost.Least, 600) << rate;
      ASSERT_TRUE(lost.Most) << rate;
      EXPECT_GE(*lost.Most, 600) << rate;
      EXPECT_LE(*lost.Most - lost.Least, 2 + 2 * beside) << rate;
    }
  }
}

TEST(Ledger, SetsThatWereCountedSayNothingWhereTheClockIsKnownOrNoSetWaits) {
  Story story;
  story.Live(86400, 1207);
  story.now += 505;
  const auto waiting = story.Figures().Waiting;
  story.Line("counted", {{"least", 1}, {"most", 800}, {"took", 0.05}});
  EXPECT_EQ(story.Figures().Waiting, waiting);
  story.boot = "b";
  story.Line("resume");
  story.Line("counted", {{"least", 0}, {"most", 1}, {"took", 0.05}});
  EXPECT_EQ(story.Figures().Waiting, std::nullopt);
  const std::int64_t waits = story.Made() - (story.rows - 1);
  story.Line("counted", {{"least", waits}, {"most", waits}, {"took", 0.05}});
  ASSERT_TRUE(story.Figures().Waiting);
  EXPECT_NEAR(static_cast<double>(story.Figures().Waiting->Least), static_cast<double>(waits), 1);
  story.Drain();
  EXPECT_TRUE(story.Figures().IsComplete());
}

// Nobody has told it, but the clocks know.
TEST(Ledger, ASetThatIsMissingIsCountedOnce) {
  for (const double rate : {-200e-6, 0.0, 150e-6}) {
    Story story;
    story.rate = rate;
    story.Live(86400, 1207);
    story.missing = 3;
    story.Live(86400, 1207);
    const LedgerFigures figures = story.Figures();
    EXPECT_LE(figures.Lost.Least, 3);
    EXPECT_GE(figures.Lost.Least, 2);
    EXPECT_GE(figures.Lost.Most, 3);
    EXPECT_LE(figures.Lost.Most, 4);
    ASSERT_EQ(figures.Losses.size(), 1U);
    EXPECT_FALSE(figures.IsComplete());
  }
}

TEST(Ledger, WhatWasToldIsNotCountedTwice) {
  Story story;
  story.Live(86400, 1207);
  story.now += 10400;
  story.missing = 144;
  story.Line("back", {{"held", 896}});
  story.Lost(story.rows, 144, 144, 144);
  story.Drain();
  story.Live(86400, 1207);
  EXPECT_EQ(story.Figures().Lost, (SetBounds{144, 144}));
  ASSERT_EQ(story.Figures().Losses.size(), 1U);
  EXPECT_EQ(story.Figures().Losses[0].Time, "2026-03-14T02:10:00+01:00");
}

// The program was killed for longer than the buffer lasts; the computer stayed on.
TEST(Ledger, TheClockThatNobodySetsTellsWhatTheWallClockDoesNot) {
  Story story;
  story.Live(86400, 1207);
  const std::int64_t before = story.rows;
  story.now += 20000;
  story.missing = 1104;
  story.Line("resume", {{"line", "direct"}});
  story.Lost(before, 17, 0, {});
  EXPECT_EQ(story.Figures().Lost, (SetBounds{0, std::nullopt}));
  story.Drain();
  const LedgerFigures figures = story.Figures();
  EXPECT_NEAR(static_cast<double>(figures.Lost.Least), 1104, 1);
  EXPECT_LE(figures.Lost.Least, 1104);
  EXPECT_GE(figures.Lost.Most, 1104);
  EXPECT_LE(*figures.Lost.Most - figures.Lost.Least, 1);
  EXPECT_EQ(figures.Later, story.rows - before);
}

TEST(Ledger, AcrossARestartOfTheComputerOnlyWhatWasToldHolds) {
  Story story;
  story.Live(86400, 1207);
  story.boot = "b";
  story.now += 9000;
  story.Line("resume", {{"line", "direct"}});
  story.Drain();
  EXPECT_TRUE(story.Figures().IsComplete()) << "the buffer has kept all of it";
  EXPECT_EQ(story.Figures().Later, 900);
  story.boot = "c";
  story.now += 20000;
  story.missing = 1104;
  story.Line("resume", {{"line", "direct"}});
  story.Lost(story.rows, 5, 0, {});
  story.Drain();
  story.Live(86400, 1207);
  EXPECT_EQ(story.Figures().Lost, (SetBounds{0, std::nullopt}));
  ASSERT_EQ(story.Figures().Losses.size(), 1U);
  EXPECT_EQ(story.Figures().Losses[0].About, 5);
}

TEST(Ledger, FilledValuesAndThoseInQuestionAreCountedOnce) {
  Story story;
  story.Live(1000, 100);
  story.Line("values", {{"first", 0}, {"last", 1}, {"filled", true}});
  story.Line("values", {{"first", 7}, {"last", 9}, {"filled", true}});
  story.Line("values", {{"first", 8}, {"last", 10}, {"filled", true}});
  story.Live(1000, 100);
  EXPECT_EQ(story.Figures().Filled, 5);
  EXPECT_FALSE(story.Figures().IsComplete());
  story.Line("values", {{"first", 190}, {"last", 190}, {"filled", false}, {"onward", true}});
  const std::int64_t rows = story.rows;
  EXPECT_EQ(story.Figures().Questioned, rows - 190);
  story.Live(1000, 100);
  EXPECT_EQ(story.Figures().Questioned, story.rows - 190);
}

TEST(Ledger, AStopAndAStartBeginASegment) {
  Story story;
  story.Live(86400, 1207);
  const std::int64_t rows = story.rows;
  story.Line("stop", {{"by", "user"}});
  story.now += 50000;
  EXPECT_EQ(story.Figures().Waiting, SetBounds());
  story.Line("start");
  story.skipped = story.Made() - (rows - 1);
  story.Live(86400, 1207);
  EXPECT_TRUE(story.Figures().IsComplete());
  EXPECT_EQ(story.Figures().Segments, 2);
}

TEST(Ledger, WhatWaitsInTheInstrumentIsEstimated) {
  Story story;
  story.Live(86400, 1207);
  story.now += 505;
  const auto waiting = story.Figures().Waiting;
  ASSERT_TRUE(waiting);
  EXPECT_LE(waiting->Least, story.Made() - (story.rows - 1));
  EXPECT_GE(waiting->Most, story.Made() - (story.rows - 1));
  EXPECT_EQ(story.Figures().Expected(), (SetBounds{story.rows - 1, story.rows - 1} + *waiting));
  story.now += 1e6;
  EXPECT_EQ(story.Figures().Waiting, (SetBounds{896, 896}));
}

TEST(Ledger, WhyThereIsNoneIsSaidInBothLanguages) {
  const LedgerFigures none = Ledger().Figures(5);
  EXPECT_EQ(LedgerSummary(none), "no ledger: there is no journal");
  EXPECT_EQ(LedgerSummary(none, Language::kGerman), "keine Bilanz: es gibt kein Journal");
  Ledger part;
  const JsonValue::Members origin{{"interval", 10}, {"origin", JsonValue::Members{}}};
  part.Take("begin", JsonValue(origin), {1, "a"}, "");
  EXPECT_EQ(LedgerSummary(part.Figures(5), Language::kGerman),
            "keine Bilanz: sie ist ein Teil einer anderen Aufzeichnung");
  Ledger simulated;
  const JsonValue::Members line{{"interval", 10}, {"line", "simulated"}};
  simulated.Take("begin", JsonValue(line), {1, "a"}, "");
  EXPECT_EQ(LedgerSummary(simulated.Figures(5), Language::kGerman),
            "keine Bilanz: an der Leitung war kein Gerät");
}

TEST(Ledger, RowsWithoutAJournalAreSaid) {
  Ledger ledger;
  const LedgerMoment when{1, "a"};
  ledger.Take("begin", JsonValue(JsonValue::Members{{"interval", 10}, {"why", "there was none"}}),
              when, "");
  ledger.Take("adopted", JsonValue(JsonValue::Members{{"first", 0}, {"last", 41}}), when, "");
  EXPECT_EQ(ledger.Figures(50).Unwatched, 42);
  EXPECT_FALSE(ledger.Figures(50).IsComplete());
  EXPECT_FALSE(Ledger().Figures(5).IsKnown);
}

// Kills, restarts of the computer, outages within the buffer and beyond it, lost replies, stops and
// starts, in any order, with a clock that runs up to 200 ppm off.
TEST(Ledger, TheTruthLiesWithinTheBoundsWhateverHappens) {
  int exact = 0;
  constexpr int kSeeds = 200;
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    std::mt19937 random(seed);
    const auto upto = [&random](double most) {
      return most * (static_cast<double>(random()) / std::mt19937::max());
    };
    Story story(std::array{1.0, 10.0, 60.0, 600.0}.at(random() % 4));
    story.rate = 400e-6 * upto(1) - 200e-6;
    story.Live(story.interval * upto(500) + 10, story.interval * 7.3);
    bool is_unknown = false;
    for (int event = 0; event < 40; ++event) {
      const auto kind = random() % 5;
      story.Live(story.interval * upto(3000), 1200 + upto(5));
      if (kind == 0) {
        story.Line("values", {{"first", story.rows}, {"last", story.rows}, {"filled", true}});
      } else if (kind == 1) {
        story.Line("stop", {{"by", "user"}});
        story.now += upto(1e5);
        story.Line("start");
        story.skipped = story.Made() - story.missing - std::max<std::int64_t>(story.rows - 1, 0);
      } else {
        const bool is_boot = kind == 2 && random() % 4 == 0;
        story.now += story.interval * upto(2000);
        story.boot += is_boot ? "x" : "";
        story.Line(kind == 2 ? "resume" : "back");
        const std::int64_t held = story.Made() - story.missing - story.skipped -
                                  std::max<std::int64_t>(story.rows - 1, 0);
        const std::int64_t over = held - 896;
        if (over < 0 && held > 1 && random() % 2 == 0) {
          const auto beside = static_cast<std::int64_t>(random() % 2);
          story.Line("counted", {{"least", held - beside}, {"most", held + beside}, {"took", 0.3}});
        }
        if (over > 0) {
          story.missing += over;
          const bool knows = kind != 2 && random() % 2 == 0;
          story.Lost(story.rows, over, knows ? over : 0, knows ? JsonValue(over) : JsonValue());
          is_unknown = is_unknown || is_boot;
        }
      }
      story.Drain(upto(1));
      const LedgerFigures figures = story.Figures();
      ASSERT_LE(figures.Lost.Least, story.missing) << "seed " << seed << ", event " << event;
      ASSERT_TRUE(figures.Lost.Most || is_unknown) << "seed " << seed << ", event " << event;
      if (figures.Lost.Most) {
        ASSERT_GE(*figures.Lost.Most, story.missing) << "seed " << seed << ", event " << event;
      }
    }
    exact += story.Figures().Lost.IsExact() ? 1 : 0;
  }
  EXPECT_GT(exact, 0);
  RecordProperty("exact", exact);
}

TEST(Ledger, TakesAnyNumbers) {
  std::mt19937 random(17);
  const std::vector<JsonValue> values = {
      0, -1, 1, 1e300, -1e300, std::int64_t{1} << 62U, true, "words", 1e-300, {}, 896.5};
  const std::vector<const char*> kinds = {"begin",   "start",  "drained", "lost", "values", "back",
                                          "adopted", "resume", "stop",    "seal", "counted"};
  Ledger ledger;
  for (int turn = 0; turn < 5000; ++turn) {
    const auto any = [&] { return values[random() % values.size()]; };
    JsonValue::Members fields;
    for (const char* name : {"rows", "interval", "took", "sets", "least", "most", "first", "last",
                             "before", "filled", "onward", "exact", "line"}) {
      fields.emplace_back(name, any());
    }
    const auto moment = any();
    ledger.Take(kinds[random() % kinds.size()], JsonValue(fields),
                {moment.Number().value_or(0), "a"}, "");
    const LedgerFigures figures = ledger.Figures(static_cast<std::int64_t>(random() % 100000));
    EXPECT_GE(figures.Recorded, figures.Later);
  }
}

// Rows that stand behind the journal after a kill are those since the last flush and what was
// fetched meanwhile. More of them were written while the journal could not be.
TEST(Ledger, MoreRowsThanAKillExplainsAreVouchedForByNoLine) {
  for (const double interval : {1.0, 10.0, 3600.0}) {
    const auto most = static_cast<std::int64_t>(896 + 3600 / interval + 2);
    for (const std::int64_t adopted : {most, most + 1}) {
      Story story(interval);
      story.Live(20 * interval, interval);
      const std::int64_t before = story.rows;
      story.rows += adopted;
      const bool is_explained = adopted == most;
      const std::int64_t unwatched = is_explained ? 0 : adopted;
      const LedgerFigures left = story.ledger.Figures(story.rows);
      EXPECT_EQ(left.Unwatched, unwatched) << interval << " s, killed";
      EXPECT_EQ(left.IsComplete(), is_explained);
      EXPECT_EQ(story.Figures().Unwatched, 0) << "the program that runs knows its own rows";
      story.Line("resume");
      story.Line("adopted", {{"first", before}, {"last", story.rows - 1}});
      EXPECT_EQ(story.ledger.Figures(story.rows).Unwatched, unwatched) << interval << " s, goes on";
      EXPECT_EQ(story.ledger.Figures(story.rows).IsComplete(), is_explained);
      story.Line("adopted", {{"first", before}, {"last", before + most}});
      EXPECT_EQ(story.ledger.Figures(story.rows).Unwatched,
                std::min(unwatched + most + 1, story.rows))
          << "once more";
    }
  }
}

// Behind rows of which nothing is known the sets cannot be counted on.
TEST(Ledger, BehindRowsThatNoLineVouchesForTheClockBeginsAnew) {
  Story story(10);
  story.Live(2000);
  story.now += 30000;
  story.missing += 100;
  const std::int64_t before = story.rows;
  story.rows = story.Made() - story.missing + 1;
  story.Line("resume");
  story.Line("adopted", {{"first", before}, {"last", story.rows - 1}});
  story.Live(200, 10);
  EXPECT_EQ(story.Figures().Lost, SetBounds());
  EXPECT_FALSE(story.Figures().IsComplete());
  story.Live(2000, 97);
  story.missing += 1;
  story.Live(2000, 97);
  EXPECT_EQ(story.Figures().Lost, (SetBounds{1, 1})) << "and goes on";
}

TEST(Ledger, TellsOfWhichRowsTheJournalTellsSomething) {
  Story story;
  story.rows = 5;
  story.Line("back");
  story.rows = 9;
  story.Line("drained", {{"took", 0.05}});
  story.Line("values", {{"first", 7},
                        {"last", 7},
                        {"inputs", JsonValue::List{2, 15, 16, "x"}},
                        {"filled", true},
                        {"what", "gone"}});
  story.Lost(9, 3, 3, 3);
  story.Lost(9, 0, 0, 0);
  story.rows = 12;
  story.Line("values", {{"first", 11}, {"last", 11}, {"filled", false}, {"onward", true}});
  story.rows = 20;
  story.Line("resume");
  story.rows = 25;
  using Kind = ToldRows::Kind;
  const std::vector<ToldRows> told = story.ledger.Told(story.rows);
  const auto has = [&](const ToldRows& rows) {
    return std::find(told.begin(), told.end(), rows) != told.end();
  };
  EXPECT_EQ(told.size(), 6U);
  EXPECT_TRUE(has({Kind::kLater, 5, 8, {}, {}, ""}));
  EXPECT_TRUE(has({Kind::kLater, 20, 24, {}, {}, ""})) << "one that is still on";
  EXPECT_TRUE(has({Kind::kFilled, 7, 7, {}, {2, 15}, "gone"}));
  EXPECT_TRUE(has({Kind::kQuestioned, 11, 24, {}, {}, ""}));
  EXPECT_TRUE(has({Kind::kMissing, 9, 9, {3, 3}, {}, "the buffer of the instrument was full"}));
}

TEST(Ledger, TellsOfNoRowsThatTheFileDoesNotHaveNorWithoutAJournal) {
  EXPECT_TRUE(Ledger().Told(10).empty());
  Story story;
  story.rows = 30;
  story.Line("values", {{"first", 25}, {"last", 28}, {"filled", true}});
  story.Lost(29, 1, 1, 1);
  EXPECT_EQ(story.ledger.Told(27).size(), 1U);
  EXPECT_EQ(story.ledger.Told(27).front().Last, 26);
  EXPECT_TRUE(story.ledger.Told(20).empty());
}

}  // namespace
}  // namespace tavrel
