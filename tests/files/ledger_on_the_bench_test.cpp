#include <gtest/gtest.h>

#include <filesystem>

#include "files/ledger.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "tests/files/recording_bench.h"

// The ledger of recordings that the engine makes.
namespace tavrel {
namespace {

LedgerFigures FiguresOf(const RecordingBench& bench) {
  const std::string journal = bench.fixture.directory.Read("journal/" + std::string(kName));
  return LedgerOf(ReadJournal(journal), bench.fixture.state.SampleCount[kSlot]);
}

// Sets that stand in no row, by the values.
std::int64_t MissingIn(const RecordingBench& bench) {
  const auto rows = bench.Rows();
  std::int64_t missing = 0;
  for (std::size_t row = 1; row < rows.size(); ++row) {
    missing += (rows[row][0] - rows[row - 1][0] - 1 + SetLine::kCycle) % SetLine::kCycle;
  }
  return missing;
}

constexpr const char* kJournalName = "journal/M260314A.OVN";

std::vector<std::string> KindsIn(const RecordingBench& bench) {
  std::vector<std::string> kinds;
  for (const JournalEntry& entry :
       ReadJournal(bench.fixture.directory.Read(kJournalName)).Entries) {
    kinds.push_back(entry.Kind);
  }
  return kinds;
}

// The program is killed and started again, and asks how many sets wait, as it does at its start.
void TakeUp(RecordingBench& bench) {
  bench.KillAndStart();
  const auto asked = bench.fixture.clock.Elapsed();
  const Reading count = Read(bench.fixture.link,
                             Register{1, reg::kBuffered, bench.fixture.state.Unit[kSlot].UnitRef});
  bench.fixture.engine.TakeUp(kSlot, count.Word(), asked);
}

bool RunToNoHeldSet(RecordingBench& bench) {
  for (int turn = 0; turn < 100 && bench.fixture.engine.HoldsSet(kSlot); ++turn) {
    bench.Run(0.05);
  }
  return !bench.fixture.engine.HoldsSet(kSlot);
}

TEST(LedgerOnTheBench, AQuietRecordingIsCompleteAndCostsFewLines) {
  for (const int interval : {1, 10}) {
    RecordingBench bench({"descending", 10}, {2, 9, 15}, interval);
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(100));
    const LedgerFigures figures = FiguresOf(bench);
    EXPECT_TRUE(figures.IsComplete());
    EXPECT_EQ(figures.Recorded, 99);
    EXPECT_EQ(figures.Live, 99);
    const JournalReading journal =
        ReadJournal(bench.fixture.directory.Read("journal/" + std::string(kName)));
    EXPECT_LE(std::ranges::count(journal.Entries, "drained", &JournalEntry::Kind), 3);
    EXPECT_GE(std::ranges::count(journal.Entries, "drained", &JournalEntry::Kind), 1);
  }
}

TEST(LedgerOnTheBench, AnOutageBeyondTheBufferIsCountedToTheSet) {
  for (const int outage : {950, 1007, 1180}) {
    RecordingBench bench({"descending", 500}, {3, 11}, 10);
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(20));
    bench.fixture.clock.Advance(std::chrono::seconds(10 * outage));
    ASSERT_TRUE(bench.RunToRows(21 + 900));
    bench.Run(200);
    const LedgerFigures figures = FiguresOf(bench);
    const std::int64_t missing = MissingIn(bench);
    EXPECT_LE(figures.Lost.Least, missing);
    ASSERT_TRUE(figures.Lost.Most);
    EXPECT_GE(*figures.Lost.Most, missing);
    EXPECT_LE(*figures.Lost.Most - figures.Lost.Least, 1);
    EXPECT_EQ(figures.Losses.size(), 1U);
  }
}

TEST(LedgerOnTheBench, AKillWithAnOutageBeyondTheBufferHasBounds) {
  RecordingBench bench({"descending", 500}, {3, 11}, 10);
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(20));
  bench.fixture.clock.Advance(std::chrono::seconds(10 * 1007));
  bench.KillAndStart();
  ASSERT_TRUE(bench.RunToRows(21 + 900));
  bench.Run(200);
  const LedgerFigures figures = FiguresOf(bench);
  const std::int64_t missing = MissingIn(bench);
  EXPECT_LE(figures.Lost.Least, missing);
  ASSERT_TRUE(figures.Lost.Most) << "the clock that nobody sets has gone on";
  EXPECT_GE(*figures.Lost.Most, missing);
  EXPECT_LE(*figures.Lost.Most - figures.Lost.Least, 2);
  EXPECT_GT(figures.Later, 880);
}

// The program is killed while it still fetches what has waited from the beginning on: no set in the
// file and no "no more data" says when those were made that come next.
TEST(LedgerOnTheBench, AKillBeforeTheInstrumentWasDrainedHasBounds) {
  struct Case {
    std::vector<int> inputs;
    int reference;
    int widest;
  };
  for (const Case& each : {Case{{7}, 7, 2}, Case{{3, 11}, 11, 2}, Case{{3, 11}, 3, 4}}) {
    RecordingBench bench({"descending", 500}, each.inputs, 10);
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(20));  // the order of the inputs is known
    bench.fixture.state.Unit[kSlot].UnitRef = static_cast<std::int16_t>(each.reference);
    bench.fixture.files.WriteHeader(kSlot);
    std::filesystem::remove(bench.fixture.directory.File(kJournalName));
    bench.fixture.clock.Advance(std::chrono::seconds(10 * 40));
    TakeUp(bench);
    ASSERT_TRUE(bench.RunToRows(40));
    const auto kinds = KindsIn(bench);
    ASSERT_EQ(std::ranges::count(kinds, "drained"), 0);
    ASSERT_EQ(std::ranges::count(kinds, "counted"), 1);
    ASSERT_TRUE(RunToNoHeldSet(bench));
    bench.fixture.clock.Advance(std::chrono::seconds(10 * 1150));
    TakeUp(bench);
    ASSERT_TRUE(bench.RunToRows(41 + 900));
    bench.Run(200);
    const LedgerFigures figures = FiguresOf(bench);
    const std::int64_t missing = MissingIn(bench);
    ASSERT_GT(missing, 0);
    EXPECT_LE(figures.Lost.Least, missing);
    ASSERT_TRUE(figures.Lost.Most) << "the clock that nobody sets has gone on";
    EXPECT_GE(*figures.Lost.Most, missing);
    EXPECT_LE(*figures.Lost.Most - figures.Lost.Least, each.widest);
    EXPECT_EQ(figures.Losses.size(), 1U);
  }
}

TEST(LedgerOnTheBench, ALostReplyIsAFilledRow) {
  for (const int input : {3, 11}) {
    RecordingBench bench({"descending", 500}, {3, 11}, 10);
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(20));
    bench.FailNext(input, true);
    ASSERT_TRUE(bench.RunToRows(60));
    const LedgerFigures figures = FiguresOf(bench);
    EXPECT_EQ(figures.Filled + figures.Questioned, 1);
    EXPECT_TRUE(figures.Lost.IsNone());
  }
}

TEST(LedgerOnTheBench, TheProgramCarriesTheSameFigures) {
  RecordingBench bench({"descending", 500}, {3, 11}, 10);
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(20));
  bench.fixture.clock.Advance(std::chrono::seconds(10 * 1007));
  bench.KillAndStart();
  ASSERT_TRUE(bench.RunToRows(950));
  const LedgerFigures carried = bench.fixture.files.Journals().Figures(kSlot);
  const LedgerFigures read = FiguresOf(bench);
  EXPECT_EQ(carried.Lost, read.Lost);
  EXPECT_EQ(carried.Later, read.Later);
  EXPECT_EQ(carried.Recorded, read.Recorded);
}

}  // namespace
}  // namespace tavrel
