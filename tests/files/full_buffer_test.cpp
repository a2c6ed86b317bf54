#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <string>

#include "tests/files/recording_bench.h"

namespace tavrel {
namespace {

using std::chrono::seconds;

// The sets that the user was told are lost, of each text that tells of some.
std::vector<int> LossesIn(const std::vector<std::string>& texts) {
  const std::string before = "before this row ";
  std::vector<int> losses;
  for (const std::string& text : texts) {
    const std::size_t place = text.find(before);
    if (place != std::string::npos) {
      const std::string count = text.substr(place + before.size());
      losses.push_back(std::stoi(count.starts_with("about ") ? count.substr(6) : count));
    }
  }
  return losses;
}

// The wall clock stands still in this test: a set is as old as there are sets waiting behind it.
TEST(FullBuffer, IsCountedFromTheSetThatWasWrittenLast) {
  RecordingBench bench({"descending", 500});
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(8));
  const std::int64_t steady = bench.fixture.state.Columns[kSlot].LastSet;
  bench.fixture.clock.Advance(seconds(3000));
  ASSERT_TRUE(bench.RunToRows(9));
  const std::int32_t rows = bench.fixture.state.SampleCount[kSlot];
  const std::int64_t waiting = (steady - bench.fixture.state.Columns[kSlot].LastSet) / 10;
  EXPECT_NEAR(static_cast<double>(waiting), 308 - rows, 1);
}

// The first row of which a value is not of the set behind that of the row before; 0 for none.
int RowBehindTheGap(const RecordingBench& bench, std::size_t column) {
  const auto rows = bench.Rows();
  for (std::size_t place = 1; place < rows.size(); ++place) {
    const int step = rows[place][column] - rows[place - 1][column] + SetLine::kCycle;
    if (step % SetLine::kCycle != 1) {
      return static_cast<int>(place) + 1;
    }
  }
  return 0;
}

// Half of a set is in hand when the machine goes off: it becomes a row before the lost ones.
TEST(FullBuffer, NamesTheRowBehindTheGap) {
  for (const bool is_known : {true, false}) {
    for (const int interval : {2, 10}) {
      RecordingBench bench({"descending", 500}, {1, 3}, interval);
      bench.Start();
      ASSERT_TRUE(bench.RunToRows(is_known ? 8 : 3));
      if (!is_known) {
        std::filesystem::remove(bench.fixture.directory.File(kHeldName));
        bench.KillAndStart();
        ASSERT_TRUE(bench.RunToRows(8));
      }
      const auto& seen = bench.fixture.state.SampleSeen[kSlot];
      for (int turn = 0; turn < 400 && seen[1] == seen[3]; ++turn) {
        bench.Run(0.05);
      }
      ASSERT_NE(seen[1], seen[3]);
      const std::size_t read = seen[1] ? 0 : 1;
      bench.fixture.clock.Advance(seconds(950 * interval));
      bench.fixture.clock.wall.Hour += 950 * interval / 3600;
      bench.fixture.clock.wall.Minute += 950 * interval % 3600 / 60;
      bench.KillAndStart();
      bench.fixture.engine.TakeUp(kSlot, std::nullopt);
      ASSERT_TRUE(bench.RunToRows(40));
      const std::string row = ": row " + std::to_string(RowBehindTheGap(bench, read)) + ":";
      int named = 0;
      for (const std::string& text : bench.fixture.Announced()) {
        const bool is_loss = text.find("before this row") != std::string::npos;
        named += is_loss && text.find(row) != std::string::npos ? 1 : 0;
      }
      EXPECT_GE(named, 1) << row << " each " << interval << " s, order known: " << is_known;
    }
  }
}

// It is full again behind each value of the first set, whose rest is lost once and not each time.
TEST(FullBuffer, BeforeTheFirstSetFillsEachInputInOnce) {
  constexpr int kRowsWanted = 20;
  for (const int interval : {2, 3, 4, 5, 30}) {
    RecordingBench bench({"ascending", 200}, AllInputs(), 300);
    UnitRecord unit = bench.Header();
    unit.UnitRecOn = 1;
    bench.line.interval = seconds(interval);
    bench.line.Begin(seconds(0));
    bench.fixture.clock.Advance(seconds(900 * interval));
    bench.fixture.Open(kSlot, kName, BytesOf(unit));
    bench.fixture.engine.TakeUp(kSlot, 896, bench.fixture.clock.Elapsed());
    ASSERT_TRUE(bench.RunToRows(kRowsWanted));
    int filled = 0;
    for (const std::string& text : bench.fixture.Announced()) {
      filled += text.find("lost on the line") != std::string::npos ? 1 : 0;
    }
    EXPECT_LE(filled, 1) << interval;
    const auto rows = bench.Rows();
    for (std::size_t row = 2; row < rows.size(); ++row) {
      for (std::size_t column = 0; column < rows[row].size(); ++column) {
        EXPECT_EQ(rows[row][column], rows[row - 1][column] + 1) << interval << ", row " << row;
      }
    }
  }
}

// Where the order is not known the columns cannot be compared before the buffer is full again. It
// is then met full a second time, with the other column given up: no more room is made.
TEST(FullBuffer, IsNotGivenRoomAgainAndAgainWhereTheColumnsCannotBeCompared) {
  RecordingBench bench({"descending", 200}, {3, 11}, 2);
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(3));
  std::filesystem::remove(bench.fixture.directory.File(kHeldName));
  bench.KillAndStart();
  ASSERT_TRUE(bench.RunToRows(8));
  const std::int32_t rows = bench.fixture.state.SampleCount[kSlot];
  bench.fixture.clock.Advance(seconds(2 * 950));
  int taken = 0;
  bench.line.on_command = [&](const std::string& each) {
    taken += each == "X0B?" && !bench.line.buffers[{1, 11}].empty() ? 1 : 0;
  };
  ASSERT_TRUE(bench.RunToRows(rows + 20));
  const int written = bench.fixture.state.SampleCount[kSlot] - rows;
  EXPECT_GE(taken, written);
  EXPECT_LE(taken - written, FullBuffer::kMostSets + 1) << "one may be in hand";
  EXPECT_EQ(LossesIn(bench.fixture.Announced()).size(), 1U);
}

// Nothing stands beside it that it could be compared with.
TEST(FullBuffer, OfOneInputCostsNoSetAndIsToldOnce) {
  for (const int interval : {1, 2, 10}) {
    for (const int input : {1, 9, 15}) {
      RecordingBench bench({"together", 0}, {input}, interval);
      bench.Start();
      ASSERT_TRUE(bench.RunToRows(8));
      const int rows = bench.fixture.state.SampleCount[kSlot];
      bench.fixture.clock.Advance(seconds(950 * interval) + std::chrono::milliseconds(300));
      int taken = 0;
      bench.line.on_command = [&](const std::string& each) {
        const bool is_there = !bench.line.buffers[{1, input}].empty();
        taken += each == RecordingBench::Question(input) && is_there ? 1 : 0;
      };
      ASSERT_TRUE(bench.RunToRows(rows + 20));
      const auto all = bench.Rows();
      int lost = 0;
      for (std::size_t row = 1; row < all.size(); ++row) {
        lost += (all[row][0] - all[row - 1][0] - 1 + SetLine::kCycle) % SetLine::kCycle;
      }
      EXPECT_EQ(taken, bench.fixture.state.SampleCount[kSlot] - rows) << interval << " s";
      const auto told = LossesIn(bench.fixture.Announced());
      ASSERT_EQ(told.size(), 1U);
      EXPECT_NEAR(told[0], lost, 1);
    }
  }
}

// Killed before the buffer is empty: what waited then is what a second outage pushes out.
TEST(FullBuffer, OfOneInputIsCountedAnewAfterAKillInTheBacklog) {
  RecordingBench bench({"together", 0}, {9});
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(8));
  int read = 0;
  for (const auto& [hour, minute, second] : {std::array{12, 38, 20}, std::array{15, 16, 40}}) {
    const int rows = bench.fixture.state.SampleCount[kSlot];
    bench.fixture.clock.Advance(seconds(10 * 950));
    bench.fixture.clock.wall.Hour = hour;
    bench.fixture.clock.wall.Minute = minute;
    bench.fixture.clock.wall.Second = second;
    bench.KillAndStart();
    bench.fixture.engine.TakeUp(kSlot, std::nullopt);
    ASSERT_TRUE(bench.RunToRows(rows + 20));
    read = read == 0 ? bench.fixture.state.SampleCount[kSlot] - rows : read;
  }
  const auto told = LossesIn(bench.fixture.Announced());
  ASSERT_EQ(told.size(), 2U);
  EXPECT_NEAR(told[0], 54, 2);
  EXPECT_NEAR(told[1], 950 - read, 2);
}

}  // namespace
}  // namespace tavrel
