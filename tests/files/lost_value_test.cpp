#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <numeric>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "files/reasons.h"
#include "link/registers.h"
#include "tests/files/announced_rows.h"
#include "tests/files/recording_bench.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Texts = std::vector<std::string>;

constexpr const char* kBefore = ": lost on the line; the value before it stands in its place";
constexpr const char* kNext = ": lost on the line; the next value stands in its place";

std::string Told(const std::string& where, const std::string& what) {
  return "Read  Tavrel | " + std::string(kName) + ": " + where + what;
}

class SampledLine : public testing::TestWithParam<Sampling> {};

INSTANTIATE_TEST_SUITE_P(Orders, SampledLine,
                         testing::Values(Sampling{"together", 0}, Sampling{"ascending", 30},
                                         Sampling{"ascending", 200}, Sampling{"ascending", 500},
                                         Sampling{"descending", 30}, Sampling{"descending", 200},
                                         Sampling{"descending", 500}, Sampling{"random", 200},
                                         Sampling{"random", 500}),
                         [](const auto& each) {
                           return each.param.order + std::to_string(each.param.distance);
                         });

TEST_P(SampledLine, InventsNothingWhereNothingWasLost) {
  RecordingBench bench(GetParam(), AllInputs());
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(40));
  bench.ExpectRows();
  EXPECT_EQ(bench.fixture.Announced(), Texts());
}

TEST_P(SampledLine, InventsNothingWhereRequestsWereLost) {
  RecordingBench bench(GetParam(), AllInputs());
  bench.Start();
  int row = 3;
  for (const int input : {15, 1, 8, 12, 3}) {
    ASSERT_TRUE(bench.RunToRows(row += 4));
    bench.FailNext(input, false);
  }
  ASSERT_TRUE(bench.RunToRows(row + 6));
  bench.ExpectRows();
  EXPECT_EQ(bench.fixture.Announced(), Texts());
}

TEST_P(SampledLine, FillsALostValueWithTheOneBeforeAndShiftsNothing) {
  for (const int input : {15, 7, 1}) {
    RecordingBench bench(GetParam(), AllInputs());
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(6));
    bench.FailNext(input, true);
    ASSERT_TRUE(bench.RunToRows(12));
    const auto announced = bench.fixture.Announced();
    ASSERT_EQ(announced.size(), 1U);
    const std::string where = announced[0].substr(announced[0].find("row ") + 4);
    const int row = std::stoi(where);
    bench.ExpectRows(row, input, row - 1);
    EXPECT_EQ(announced[0],
              Told("row " + std::to_string(row) + ", input " + std::to_string(input), kBefore));
  }
}

TEST(LostValue, IsToldForEveryRowWithoutStoppingTheCycle) {
  RecordingBench bench;
  bench.Start();
  for (int row = 6; row <= 12; row += 3) {
    ASSERT_TRUE(bench.RunToRows(row));
    bench.FailNext(3, true);
  }
  ASSERT_TRUE(bench.RunToRows(18));
  EXPECT_EQ(bench.fixture.Announced().size(), 3U);
  EXPECT_TRUE(bench.fixture.dialogs.boxes.empty());
}

TEST(LostValue, OfOneInputAloneIsFoundByTime) {
  for (const bool is_lost : {false, true}) {
    RecordingBench bench({"together", 0}, {9});
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(6));
    bench.FailNext(9, is_lost);
    ASSERT_TRUE(bench.RunToRows(12));
    const auto announced = bench.fixture.Announced();
    ASSERT_EQ(announced.size(), is_lost ? 1U : 0U);
    bench.ExpectRows(is_lost ? 6 : -1, 9, 5);
  }
}

// With a backlog of hours the present value is of another time altogether.
TEST(LostValue, OfTheVeryFirstSetTakesTheNextOne) {
  RecordingBench bench;
  bench.fixture.line.registers[{1, 'Y', 2}] = 777;
  bench.Start();
  bench.FailNext(2, true);
  ASSERT_TRUE(bench.RunToRows(6));
  EXPECT_EQ(bench.Rows()[0], (std::vector<int>{1, 2, 1}));
  bench.ExpectRows(1, 2, 2);
  EXPECT_EQ(bench.fixture.Announced(), Texts{Told("rows 0 and 1, input 2", kNext)});
}

TEST(LostValue, OfTheVeryFirstSetTakesTheNextOneThoughTheProgramIsKilledMeanwhile) {
  RecordingBench bench;
  bench.Start();
  bench.FailNext(3, true);
  while (bench.fixture.state.Columns[kSlot].Owed[3] == 0) {
    bench.Run(0.05);
    ASSERT_LT(bench.ticks, 20000);
  }
  bench.KillAndStart();
  ASSERT_TRUE(bench.RunToRows(6));
  bench.ExpectRows(1, 3, 2);
}

TEST(LostValue, IsFoundThoughCountingFailsAtFirst) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(6));
  bench.FailNext(2, true);
  bench.line.dropped = {"R02?", "R03?", "R01?"};
  ASSERT_TRUE(bench.RunToRows(12));
  bench.ExpectRows(6, 2, 5);
}

TEST(LostValue, DoesNotHoldUpARecordingWhoseInstrumentCannotCount) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(6));
  bench.line.refused = {'R'};
  bench.line.dropped = {"X02?"};
  ASSERT_TRUE(bench.RunToRows(12));
  bench.ExpectRows();
  EXPECT_EQ(bench.fixture.Announced().size(), 1U) << "that nobody can know it";
}

TEST(LostValue, IsNotSuspectedIfTheInstrumentRefuses) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(6));
  bench.line.refused = {'X'};
  bench.Run(12);
  EXPECT_FALSE(bench.fixture.state.ColumnsInDoubt[kSlot]);
  bench.line.refused.clear();
  ASSERT_TRUE(bench.RunToRows(12));
  bench.ExpectRows();
}

TEST(LostValue, IsSuspectedIfARefusalIsNotAlone) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(6));
  const auto answer = bench.fixture.port.answer;
  bench.fixture.port.answer = [answer](const std::string& command) {
    return command == "X03?" ? "?" + answer(command) : answer(command);
  };
  bench.Run(10.5);
  EXPECT_TRUE(bench.fixture.state.ColumnsInDoubt[kSlot]);
  EXPECT_EQ(bench.fixture.state.AskedInput[kSlot], 3);
}

TEST(LostValue, ByAnInstrumentThatWasRestartedInTheMiddleOfASet) {
  for (const int backlog : {1, 4}) {
    RecordingBench bench;
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(8));
    bench.fixture.clock.Advance(seconds(10 * backlog));
    bench.fixture.engine.TenSecondTick();
    bench.fixture.engine.PumpOnce();
    ASSERT_TRUE(bench.fixture.engine.HoldsSet(kSlot));
    bench.line.Restart(seconds(14));
    ASSERT_TRUE(bench.RunToRows(14));
    const auto rows = bench.Rows();
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const auto told = row == 7 ? std::vector<int>{rows[6][0], rows[6][1], 8}
                                 : std::vector<int>(3, rows[row][0]);
      EXPECT_EQ(rows[row], told) << "row " << row + 1;
    }
    const auto announced = bench.fixture.Announced();
    ASSERT_EQ(announced.size(), 3U);
    EXPECT_EQ(announced[0], Told("row 8, inputs 1, 2", kBefore));
    EXPECT_NE(announced[2].find("rows 6 to 7, inputs 1, 2: "), std::string::npos)
        << "nobody knows whether it was earlier: " << announced[2];
    EXPECT_NE(announced[1].find(": row 9: the instrument was switched off and on; before this row "
                                "about "),
              std::string::npos)
        << announced[1];
  }
}

// A recording that the program has only taken up: it has not seen the first samples, and knows
// neither the order of the inputs nor the interval.
TEST(LostValue, ByARestartOfAnInstrumentThatIsNotKnownWell) {
  for (int phase = 0; phase < 24; ++phase) {
    RecordingBench bench({"descending", 30}, {2, 6}, 1);
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(3));
    std::filesystem::remove(bench.fixture.directory.File(kHeldName));
    bench.KillAndStart();
    while (bench.fixture.state.SampleCount[kSlot] < 8) {
      bench.Run(0.05);
    }
    bench.Run(0.05 * phase);
    const bool is_half_read = bench.fixture.engine.HoldsSet(kSlot);
    const std::size_t row = static_cast<std::size_t>(bench.fixture.state.SampleCount[kSlot]);
    bench.line.Restart(seconds(1) + milliseconds(400));
    ASSERT_TRUE(bench.RunToRows(40));
    const auto rows = bench.Rows();
    for (std::size_t place = 0; place < rows.size(); ++place) {
      const bool is_mended = is_half_read && place + 1 == row;
      EXPECT_EQ(rows[place][0] == rows[place][1], !is_mended) << "row " << place + 1;
    }
    const auto announced = bench.fixture.Announced();
    const auto filled = std::count_if(announced.begin(), announced.end(), [](const auto& text) {
      return text.find(kBefore) != std::string::npos;
    });
    EXPECT_EQ(filled, is_half_read ? 1 : 0) << "phase " << phase;
    // Besides, the sets that were forgotten, and once the rows that may stand too early.
    EXPECT_LE(announced.size(), is_half_read ? 3U : 1U) << "phase " << phase;
  }
}

TEST(LostValue, OfAHalfReadSetDoesNotHappenWhenTheProgramIsKilled) {
  RecordingBench bench({"descending", 500});
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(4));
  for (int kill = 0; kill < 40; ++kill) {
    bench.Run(1.35);
    bench.KillAndStart();
  }
  ASSERT_TRUE(bench.RunToRows(14));
  bench.ExpectRows();
  EXPECT_EQ(bench.fixture.Announced(), Texts());
}

// Killed while the reply was on the line: the file beside the recording says only that the value
// was asked for.
TEST(LostValue, InAReplyThatNoProgramWasThereToTakeIsJudgedByTheOrderThatWasLearned) {
  for (const int input : {1, 2, 3}) {
    for (const bool is_lost : {false, true}) {
      RecordingBench bench({"ascending", 500});
      bench.Start();
      ASSERT_TRUE(bench.RunToRows(6));
      bench.FailNext(input, is_lost);
      ASSERT_TRUE(bench.RunToDoubt());
      ASSERT_EQ(bench.Held().AskedInput, input);
      ASSERT_NE(bench.Held().Columns.Order.Base, 0);
      bench.KillAndStart();
      ASSERT_TRUE(bench.RunToRows(12));
      bench.ExpectRows(is_lost ? 6 : -1, input, 5);
    }
  }
}

// What the clock says of an open doubt ends with the program: no other input stands beside it.
TEST(LostValue, OfOneInputAloneIsUncertainWhenTheProgramIsKilledMeanwhile) {
  for (const bool is_lost : {false, true}) {
    for (const int away : {0, 5, 40, 4000}) {
      RecordingBench bench({"together", 0}, {9});
      bench.Start();
      ASSERT_TRUE(bench.RunToRows(6));
      bench.FailNext(9, is_lost);
      ASSERT_TRUE(bench.RunToDoubt());
      bench.fixture.clock.Advance(seconds(away));
      bench.KillAndStart();
      ASSERT_TRUE(bench.RunToRows(12));
      EXPECT_EQ(bench.fixture.Announced(),
                Texts{Told("row 6, input 9", ": " + std::string(reason::kMayBeLost.English))})
          << is_lost << " " << away;
      const auto rows = bench.Rows();
      EXPECT_EQ(rows[5][0], is_lost ? 7 : 6);
    }
  }
}

// Five values are cleared by hand, and the program is killed before they are made up for.
TEST(LostValue, ByHandIsToldWhenTheProgramIsKilledMeanwhile) {
  RecordingBench bench({"ascending", 500});
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(6));
  while (bench.fixture.engine.HoldsSet(kSlot)) {
    bench.Run(0.05);
  }
  bench.fixture.clock.Advance(seconds(50));
  bench.line.on_command = [&](const std::string& each) {
    if (each.starts_with("R02=")) {
      bench.line.buffers[{1, 2}].clear();
      bench.line.dropped.insert(each);
    }
  };
  RecordingEngine::SeriesWrite write;
  write.takers = {kSlot};
  write.to = {1, reg::kBuffered, 2};
  write.stored = 5;
  EXPECT_FALSE(IsGood(bench.fixture.engine.WriteSeries(write)));
  bench.KillAndStart();
  ASSERT_TRUE(bench.RunToRows(20));
  const auto announced = bench.fixture.Announced();
  ASSERT_EQ(announced.size(), 1U);
  EXPECT_NE(announced[0].find("input 2: nobody can know whether more values were dropped"),
            std::string::npos)
      << announced[0];
  EXPECT_EQ(FirstMixedRow(bench), 0);
}

TEST(LostValue, IsNotSoughtWithTheHeldSetOfAnEarlierRow) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(4));
  HeldSet held = bench.Held();
  held.SampleCount = 1;
  held.AskedInput = 2;
  bench.Hold(held);
  bench.KillAndStart();
  EXPECT_FALSE(bench.fixture.state.ColumnsInDoubt[kSlot]);
  EXPECT_EQ(bench.fixture.state.Columns[kSlot].Order, held.Columns.Order) << "but that stays";
}

TEST(LostValue, IsNotSoughtForAnInputThatIsNotRecorded) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(4));
  HeldSet held = bench.Held();
  held.SampleCount = bench.fixture.state.SampleCount[kSlot];
  held.Seen = {};
  held.Seen[9] = true;
  held.AskedInput = 9;
  bench.Hold(held);
  bench.KillAndStart();
  EXPECT_FALSE(bench.fixture.state.ColumnsInDoubt[kSlot]);
  EXPECT_FALSE(bench.fixture.state.SampleSeen[kSlot][9]);
}

TEST(LostValue, IsPreparedForBeforeTheValueIsAskedFor) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(4));
  std::vector<std::pair<std::string, int>> asked;
  bench.line.on_command = [&](const std::string& command) {
    if (command[0] == 'X') {
      asked.emplace_back(command, bench.Held().AskedInput);
    }
  };
  ASSERT_TRUE(bench.RunToRows(8));
  for (const auto& [command, input] : asked) {
    EXPECT_EQ(command, "X0" + std::to_string(input) + "?");
  }
  EXPECT_GE(asked.size(), 6U);
}

// The values that are held belong behind the rows that are gone: the instrument has handed them
// over, and will not do so again.
TEST(LostRows, AreToldAndShiftNothing) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(8));
  while (!bench.fixture.engine.HoldsSet(kSlot)) {
    bench.Run(0.05);
  }
  const int rows = bench.fixture.state.SampleCount[kSlot];
  const std::string bytes = bench.fixture.directory.Read(kName);
  for (RandomFile& file : bench.fixture.state.SlotFileNo) {
    file.Close();
  }
  bench.fixture.directory.Write(kName, bytes.substr(0, bytes.size() - std::size_t{3 * 6}));
  bench.KillAndStart();
  bench.fixture.messages.ShowKept();
  ASSERT_EQ(bench.fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.fixture.dialogs.boxes[0].Text,
            std::string(kName) + ": 3 rows were lost with the power, before row " +
                std::to_string(rows - 3));
  ASSERT_TRUE(bench.RunToRows(rows + 3));
  const auto all = bench.Rows();
  for (std::size_t row = 0; row < all.size(); ++row) {
    const int its_set = static_cast<int>(row) + 1 + (static_cast<int>(row) + 1 >= rows - 3 ? 3 : 0);
    EXPECT_EQ(all[row], std::vector<int>(3, its_set)) << "row " << row + 1;
  }
}

TEST(HeldSetFile, GoesWithTheRecording) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(4));
  EXPECT_TRUE(bench.fixture.directory.Exists(kHeldName));
  bench.fixture.engine.StopRecording(kSlot);
  EXPECT_FALSE(bench.fixture.directory.Exists(kHeldName));
}

TEST(HeldSetFile, StaysAtTheEndOfTheProgramOnlyWhereSomethingIsHeld) {
  for (const bool is_held : {false, true}) {
    RecordingBench bench;
    bench.fixture.Open(kSlot, kName, BytesOf(Running(bench.Header())));
    bench.line.Begin(seconds(1));
    bench.Run(6);
    ASSERT_TRUE(bench.fixture.directory.Exists(kHeldName));
    bench.fixture.state.SampleSeen[kSlot][3] = is_held;
    bench.fixture.files.ReleaseHeldSet(kSlot);
    bench.fixture.files.CloseRecordingFile(kSlot);
    EXPECT_EQ(bench.fixture.directory.Exists(kHeldName), is_held);
  }
}

TEST(HeldSetFile, KeepsTheOrderThatWasLearnedAtTheEndOfTheProgram) {
  RecordingBench bench({"ascending", 500});
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(6));
  const SamplingOrder order = bench.fixture.state.Columns[kSlot].Order;
  ASSERT_NE(order.Base, 0);
  EXPECT_LT(order.Most[3] - order.Least[3], 0.2F);
  bench.fixture.files.ReleaseHeldSet(kSlot);
  bench.KillAndStart();
  EXPECT_EQ(bench.fixture.state.Columns[kSlot].Order.Base, order.Base);
}

TEST(LostValue, DoubtGoesAlongIntoTheNextFile) {
  for (const bool is_lost : {false, true}) {
    RecordingBench bench({"ascending", 500});
    UnitRecord unit = bench.Header();
    unit.UnitEndAction = 2;
    bench.fixture.Open(kSlot, kName, BytesOf(unit));
    bench.fixture.engine.StartRecording(kSlot);
    ASSERT_TRUE(bench.RunToRows(6));
    bench.FailNext(2, is_lost);
    ASSERT_TRUE(bench.RunToDoubt());
    bench.fixture.engine.EndOfRecording(kSlot);
    ASSERT_EQ(bench.fixture.state.SlotFile[kSlot], "M260314B.OVN");
    EXPECT_TRUE(bench.fixture.state.ColumnsInDoubt[kSlot]);
    ASSERT_TRUE(bench.RunToRows(5));
    const auto rows = bench.Rows("M260314B.OVN");
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const int its_set = static_cast<int>(row) + 6;
      const int second = is_lost && row == 0 ? its_set + 1 : its_set;
      EXPECT_EQ(rows[row], (std::vector<int>{its_set, second, its_set}));
    }
  }
}

// An outage longer than the buffer, and the moment in which the first set is read does not matter.
TEST_P(SampledLine, StandsSideBySideAfterAFullBuffer) {
  for (const int phase : {0, 1300, 2900, 4700, 6100, 7900, 9300}) {
    RecordingBench bench(GetParam(), AllInputs());
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(10));
    const int read = bench.fixture.state.SampleCount[kSlot] - 1;
    bench.fixture.clock.Advance(seconds(10 * 1000) + milliseconds(phase));
    ASSERT_TRUE(bench.RunToRows(40));
    const auto rows = bench.Rows();
    int jump = 0;
    const auto announced = bench.fixture.Announced();
    ASSERT_GE(announced.size(), 1U) << phase;
    const bool is_half_read = announced[0].find(kBefore) != std::string::npos;
    ASSERT_EQ(announced.size(), is_half_read ? 2U : 1U) << announced.back();
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const std::string name = "row " + std::to_string(row + 1) + ", input";
      const bool is_told = is_half_read && announced[0].find(name) != std::string::npos;
      EXPECT_TRUE(is_told || rows[row] == std::vector<int>(15, rows[row][0]))
          << testing::PrintToString(rows[row]) << name << " at " << phase;
      const int before = row == 0 ? 0 : rows[row - 1][14];
      const int step = (rows[row][14] - before + SetLine::kCycle) % SetLine::kCycle;
      jump = std::max(jump, step - 1);
      EXPECT_TRUE(step == 1 || static_cast<int>(row) >= read - 1) << "row " << row + 1;
    }
    // 1000 intervals by two clocks that differ: the number may be one beside, and says so then.
    const std::size_t about = announced.back().find("about ");
    const bool is_exact = about == std::string::npos;
    const std::size_t place = announced.back().find("before this row ") + 16 + (is_exact ? 0 : 6);
    EXPECT_NEAR(std::stoi(announced.back().substr(place)), jump, is_exact ? 0 : 1)
        << announced.back();
  }
}

// The journal stays English.
TEST(LostValue, IsToldInGermanToAGermanUser) {
  RecordingBench bench({"ascending", 200}, AllInputs());
  bench.fixture.state.Settings.HelpLang = "German";
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(6));
  bench.FailNext(7, true);
  ASSERT_TRUE(bench.RunToRows(12));
  const auto announced = bench.fixture.Announced();
  ASSERT_EQ(announced.size(), 1U);
  EXPECT_TRUE(announced[0].starts_with("Tavrel lesen | " + std::string(kName) + ": Zeile "))
      << announced[0];
  EXPECT_TRUE(announced[0].ends_with(
      ", Eingang 7: auf der Leitung verloren; der Wert davor steht an seiner Stelle"))
      << announced[0];
  bench.fixture.files.CloseRecordingFile(kSlot);
  const std::string journal =
      bench.fixture.directory.Read(std::string(kJournalDirectory) + "/" + kName);
  EXPECT_NE(journal.find(kBefore + 2), std::string::npos);
}

}  // namespace
}  // namespace tavrel
