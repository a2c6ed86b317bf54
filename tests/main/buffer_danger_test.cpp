// Recordings whose buffers in the instruments come near their ends, on a line whose exchanges take
// the time that they take at 4800 baud.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/bench_program.h"
#include "tests/support/grid_run.h"
#include "tests/support/known_order.h"
#include "tests/support/sampling_line.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::nanoseconds;
using std::chrono::seconds;

class BufferDanger : public testing::Test {
 protected:
  struct Recording {
    int slot;
    int inet;
    std::vector<int> inputs;
    int interval;  // seconds
    int stored;    // sets that wait at the start
  };

  static std::string NameOf(int slot) { return std::string("M260314") + char('@' + slot) + ".OVN"; }

  static UnitRecord HeaderOf(const Recording& recording) {
    UnitRecord unit = BenchProgram::Header(recording.inet, recording.slot % 2 + 1, 0, true);
    unit.UnitChannels = static_cast<std::int16_t>(recording.inputs.size());
    for (const int input : recording.inputs) {
      unit.UnitRole[input] = 1;
    }
    const bool is_fast = recording.interval % 10 != 0;
    unit.UnitFast = is_fast ? 1 : 0;
    unit.UnitInterval =
        static_cast<std::int16_t>(is_fast ? recording.interval : recording.interval / 10);
    return unit;
  }

  // All inputs of a recording are sampled together, each recording at a phase of its own.
  void Install(const Recording& recording) {
    bench.Install(recording.slot, NameOf(recording.slot), HeaderOf(recording));
    const nanoseconds phase = seconds(recording.interval) * recording.slot / 13;
    for (const int input : recording.inputs) {
      line.Sample(recording.inet, input, seconds(recording.interval), phase, recording.stored);
    }
    recordings.push_back(recording);
  }

  // Two slots on each of six instruments, of two inputs each. Half of them record input 1.
  void InstallTwelve(int interval, int stored) {
    for (int slot = 1; slot <= kSlots; ++slot) {
      const int inet = (slot + 1) / 2;
      const std::vector<int> inputs = slot % 2 == 0 ? std::vector{1, 2} : std::vector{7, 15};
      Install({slot, inet, inputs, interval, stored});
    }
  }

  bool AllAreRead() {
    return std::ranges::all_of(recordings, [this](const Recording& recording) {
      return line.Waiting(recording.inet, recording.inputs.front()) <= 1;
    });
  }

  // Each file holds its values from the first one on, without a gap, the first set twice, and all
  // inputs of a row are of one set.
  void ExpectWholeFiles(int at_least) {
    for (const Recording& recording : recordings) {
      const auto samples = bench.Samples(NameOf(recording.slot));
      const std::size_t columns = recording.inputs.size();
      ASSERT_GE(samples.size() / columns, static_cast<std::size_t>(at_least)) << recording.slot;
      for (std::size_t word = 0; word < samples.size(); ++word) {
        const std::size_t row = word / columns;
        ASSERT_EQ(samples[word], std::max<std::size_t>(row, 1))
            << "slot " << recording.slot << ", row " << row;
      }
    }
  }

  // The commands of that letter among the last ones, in their order.
  std::vector<std::string> Sent(char letter) const {
    std::vector<std::string> commands;
    std::ranges::copy_if(bench.port.sent, std::back_inserter(commands),
                         [letter](const std::string& command) { return command[0] == letter; });
    return commands;
  }
  // How many commands to that instrument among the last ones.
  int SentTo(int inet) const {
    return static_cast<int>(std::ranges::count_if(
        bench.port.sent,
        [inet](const std::string& command) { return command[1] == '0' + inet - 1; }));
  }

  BenchProgram bench;
  SamplingLine line{bench.clock, bench.port};
  std::vector<Recording> recordings;
};

TEST_F(BufferDanger, TwelveNearlyFullBuffersLoseNoSet) {
  InstallTwelve(10, 860);
  bench.Start();
  GridRun run(bench);
  EXPECT_TRUE(run.Until([this] { return AllAreRead(); }, minutes(40)));
  EXPECT_EQ(line.Overrun(), 0);
  ExpectWholeFiles(861);
}

TEST_F(BufferDanger, ServesOneSetInTurn) {
  InstallTwelve(10, 860);
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  bench.port.sent.clear();
  GridRun(bench).For(seconds(5));
  const auto commands = Sent('X');
  ASSERT_GE(commands.size(), 30U);
  EXPECT_EQ(std::vector(commands.begin(), commands.begin() + 26),
            (std::vector<std::string>{"X52?", "X51?", "X5F?", "X57?", "X42?", "X41?", "X4F?",
                                      "X47?", "X32?", "X31?", "X3F?", "X37?", "X22?", "X21?",
                                      "X2F?", "X27?", "X12?", "X11?", "X1F?", "X17?", "X02?",
                                      "X01?", "X0F?", "X07?", "X52?", "X51?"}));
}

TEST_F(BufferDanger, TheCursorDecidesWhileThereIsRoomForSixtyFourSets) {
  // One more may be made at any moment.
  Install({12, 6, {1, 2}, 3600, 831});
  Install({11, 6, {7, 15}, 3600, 831});
  Install({3, 2, {4}, 3600, 831});
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  bench.port.sent.clear();
  GridRun(bench).For(seconds(60));
  auto commands = Sent('X');
  EXPECT_LE(commands.size(), 1200U) << "one a tick";
  EXPECT_GE(commands.size(), 1190U);
  for (std::size_t place = 0; place < commands.size(); ++place) {
    ASSERT_EQ(commands[place], place % 2 == 0 ? "X52?" : "X51?") << "slot 12 is drained whole";
  }
}

TEST_F(BufferDanger, TheCursorGoesOnWhereItWasWhenTheDangerIsOver) {
  Install({12, 6, {1, 2, 3}, 3600, 400});
  Install({5, 3, {4}, 3600, 834});
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  bench.state.PumpSlot = 5;
  bench.port.sent.clear();
  GridRun(bench).For(seconds(1));
  auto commands = Sent('X');
  ASSERT_GE(commands.size(), 8U);
  commands.resize(8);
  EXPECT_EQ(commands, (std::vector<std::string>{"X24?", "X24?", "X24?",  // room for 64 again
                                                "X24?",                  // where the cursor stood
                                                "X53?", "X52?", "X51?", "X53?"}));
}

// A line of each speed has instruments of its own: two series in one buffer would be neither.
class PaceOfTheLine : public BufferDanger, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Speeds, PaceOfTheLine, testing::Values(4800, 9600));

TEST_P(PaceOfTheLine, IsThatOfThePump) {
  line.baud = GetParam();
  InstallTwelve(10, 860);
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  bench.port.sent.clear();
  GridRun(bench).For(seconds(10));
  EXPECT_GE(Sent('X').size(), GetParam() == 4800 ? 260U : 360U);
}

TEST_F(BufferDanger, LeavesTheSheetItsRefresh) {
  InstallTwelve(10, 860);
  bench.Start();
  bench.port.sent.clear();
  GridRun run(bench);
  run.For(seconds(60));
  EXPECT_TRUE(bench.engine.IsPressed());
  EXPECT_GE(Sent('Z').size(), 9U * 12) << "a pass takes less than two seconds, then five of rest";
  EXPECT_GE(bench.port.sent.size(), 60U * 26);
  EXPECT_LE(run.LongestWait(), milliseconds(70)) << "the three exchanges of a row";
}

TEST_F(BufferDanger, AnInstrumentThatIsAwayHoldsUpNobody) {
  InstallTwelve(10, 860);
  bench.Start();
  line.silent = {5};
  GridRun run(bench);
  run.For(minutes(5));
  line.silent.clear();
  EXPECT_TRUE(run.Until([this] { return AllAreRead(); }, minutes(40)));
  EXPECT_EQ(line.Overrun(), 0) << "five minutes are less than the room for 36 sets";
  EXPECT_LE(run.LongestWait(), milliseconds(112)) << "one silence";
  ExpectWholeFiles(861);
}

TEST_F(BufferDanger, AFastInstrumentOfFifteenInputsIsKeptUpWith) {
  Install({12, 2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}, 1, 890});
  bench.Start();
  GridRun run(bench);
  run.For(minutes(20));
  EXPECT_EQ(line.Overrun(), 0);
  ExpectWholeFiles(1300);
}

// The slow one comes last in the order of the cursor, and is never in danger itself.
TEST_F(BufferDanger, TwoFastInstrumentsAreEmptiedAtThePaceOfTheLineSoThatASlowOneHasItsTurn) {
  line.baud = 9600;
  Install({12, 2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}, 1, 835});
  Install({6, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, 2, 835});
  Install({1, 1, {3, 9}, 3600, 20});
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  GridRun run(bench);
  EXPECT_TRUE(run.Until([this] { return line.Waiting(1, 3) == 0; }, minutes(21)));
  EXPECT_EQ(line.Overrun(), 0);
  ExpectWholeFiles(20);
}

TEST_F(BufferDanger, ALostReplyInDangerHoldsUpNoOtherRecording) {
  InstallTwelve(10, 860);
  bench.Start();
  const auto answer = bench.port.answer;
  int asked = 0;
  bench.port.answer = [&](const std::string& command) {
    const bool is_lost = command == "X32?" && ++asked == 3;
    const std::string reply = answer(command);
    if (is_lost) {
      bench.port.DropComing();
    }
    return reply;
  };
  GridRun run(bench);
  EXPECT_TRUE(run.Until([this] { return AllAreRead(); }, minutes(40)));
  EXPECT_EQ(line.Overrun(), 0);
}

// Two of five replies never come. By the ten-second tick alone a slot that meets one would make
// fewer exchanges than its instrument makes samples.
TEST_F(BufferDanger, ABadLineIsTriedAgainAtOnce) {
  Install({9, 4, {2, 9}, 10, 860});
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  const auto answer = bench.port.answer;
  std::uint32_t dice = 1;
  bench.port.answer = [&](const std::string& command) {
    dice = dice * 1664525 + 1013904223;
    const std::string reply = answer(command);
    if ((dice >> 16) % 5 < 2) {
      bench.port.DropComing();
    }
    return reply;
  };
  GridRun run(bench);
  run.For(minutes(60));
  EXPECT_EQ(line.Overrun(), 0);
  EXPECT_LE(run.LongestWait(), milliseconds(112)) << "one silence";
}

TEST_F(BufferDanger, ASilentInstrumentIsLeftToTheTenSecondTick) {
  Install({9, 4, {2, 9}, 10, 860});
  Install({8, 3, {2, 9}, 10, 860});
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  line.silent = {4};
  GridRun run(bench);
  bench.port.sent.clear();
  run.For(seconds(20));
  EXPECT_LE(SentTo(4), 20) << "others have their turn between two tries";
  bench.port.sent.clear();
  run.For(seconds(60));
  EXPECT_LE(SentTo(4), 6);
  EXPECT_GE(SentTo(4), 5);
}

TEST_F(BufferDanger, ALastSetAtTheEndIsOneSetOfEachRecording) {
  InstallTwelve(10, 870);
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  GridRun(bench).For(milliseconds(400));
  bench.port.sent.clear();
  bench.commands.Close();
  EXPECT_LE(Sent('X').size(), 24U);
  EXPECT_TRUE(Sent('R').empty());
  for (const Recording& recording : recordings) {
    EXPECT_LE(bench.Samples(NameOf(recording.slot)).size(), 2U * 3) << recording.slot;
    EXPECT_GE(bench.Samples(NameOf(recording.slot)).size(), 2U * 2) << recording.slot;
  }
}

TEST_F(BufferDanger, LeavesTheLineToAScreenThatOwnsIt) {
  InstallTwelve(10, 860);
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  GridRun(bench).For(seconds(1));
  ASSERT_TRUE(bench.engine.IsPressed());
  bench.cycle.Tick();
  bench.port.sent.clear();
  bench.state.ActiveView = View::kTavNum;
  EXPECT_TRUE(bench.events.RunIdle());
  EXPECT_TRUE(bench.port.sent.empty());
  bench.state.ActiveView = View::kTavGraph;
  bench.state.GraphIdle = false;
  bench.cycle.Tick();
  EXPECT_FALSE(bench.events.RunIdle() && !bench.port.sent.empty()) << "the graph draws";
  bench.state.GraphIdle = true;
  bench.cycle.Tick();
  {
    const MainCycle::Pause pause(bench.cycle);
    bench.port.sent.clear();
    EXPECT_TRUE(bench.events.RunIdle());
    EXPECT_TRUE(bench.port.sent.empty());
  }
}

TEST_F(BufferDanger, KeepsTheArgumentsOfADialogBetweenTheTicksToo) {
  InstallTwelve(10, 860);
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  GridRun(bench).For(seconds(1));
  bench.cycle.Tick();
  bench.link.ComInet = 5;
  bench.link.ComLetter = "8000";
  bench.link.ComIndex = 9;
  bench.link.ComValue = 77;
  bench.port.sent.clear();
  EXPECT_TRUE(bench.events.RunIdle());
  EXPECT_EQ(bench.port.sent.size(), 1U);
  EXPECT_EQ(bench.link.ComInet, 5);
  EXPECT_EQ(bench.link.ComLetter, "8000");
  EXPECT_EQ(bench.link.ComIndex, 9);
  EXPECT_EQ(bench.link.ComValue, 77);
}

TEST_F(BufferDanger, StandsStillAtMidnightBetweenTheTicksToo) {
  InstallTwelve(10, 860);
  bench.clock.timer_at_start = 86290;
  bench.Start();
  GridRun run(bench);
  run.For(seconds(12));
  bench.port.sent.clear();
  run.For(seconds(20));
  EXPECT_TRUE(bench.port.sent.empty());
  EXPECT_TRUE(run.Until([this] { return AllAreRead(); }, minutes(40)));
  EXPECT_EQ(line.Overrun(), 0);
}

TEST_F(BufferDanger, CountsTheBufferOfARecordedInputAtTheStart) {
  Install({12, 6, {3, 9}, 10, 850});  // reference 2 is not recorded
  Install({11, 5, {2, 9}, 10, 850});
  Install({10, 4, {5, 6}, 10, 850});
  bench.Start();
  bench.state.Columns[12].Order = KnownOrder(3);
  bench.state.Columns[11].Order = KnownOrder(2);
  bench.state.Columns[10].Order = KnownOrder(5);
  bench.state.ActiveView = View::kTavProg;
  EXPECT_EQ(Sent('R'), (std::vector<std::string>{"R32?", "R42?", "R52?"}));
  bench.port.sent.clear();
  GridRun run(bench);
  run.For(seconds(1));
  EXPECT_EQ(Sent('R'), (std::vector<std::string>{"R53?", "R35?"}));
  EXPECT_EQ(bench.port.sent[0][0], 'R');
  EXPECT_EQ(bench.port.sent[1][0], 'R');
  run.For(minutes(10));
  EXPECT_EQ(Sent('R').size(), 2U) << "and never again while the line is whole";
}

TEST_F(BufferDanger, CountsTheBufferOfAnInstrumentThatWasSilentAtTheStart) {
  Install({12, 6, {2, 9}, 10, 850});
  line.silent = {6};
  bench.Start();
  line.silent.clear();
  bench.port.sent.clear();
  bench.state.ActiveView = View::kTavProg;
  GridRun(bench).For(seconds(1));
  EXPECT_EQ(Sent('R'), (std::vector<std::string>{"R52?"}));
  EXPECT_EQ(bench.port.sent[0], "R52?");
}

TEST_F(BufferDanger, CountsTheBufferFirstAfterAnOutage) {
  Install({7, 4, {2, 9}, 10, 0});
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  GridRun run(bench);
  run.For(seconds(25));
  bench.port.Vanish();
  bench.port.open_error = 2;
  run.For(seconds(90));
  bench.port.open_error = 0;
  bench.port.sent.clear();
  run.For(seconds(21));
  EXPECT_EQ(bench.port.sent.at(0)[0], 'R');
}

TEST_F(BufferDanger, GoesOnByItsCursorWithAnInstrumentThatRefusesToCount) {
  line.refused = {'R'};
  Install({12, 6, {1, 2}, 10, 850});
  bench.Start();
  bench.state.ActiveView = View::kTavProg;
  bench.port.sent.clear();
  GridRun(bench).For(seconds(5));
  EXPECT_EQ(Sent('R').size(), 1U);
  EXPECT_GE(Sent('X').size(), 90U);
}

TEST_F(BufferDanger, CountsDownForEachRecordingWhileItsInstrumentIsSilent) {
  Install({3, 3, {2, 9}, 10, 0});
  Install({8, 4, {2, 9}, 10, 0});
  Install({9, 4, {3}, 60, 0});
  Install({12, 4, {15}, 10, 0});
  bench.Start();
  GridRun run(bench);
  run.For(minutes(2));
  const auto note = [this](int slot) {
    bench.sheet.RefreshState();
    return bench.Row(slot).TavNoNote;
  };
  for (int slot = 1; slot <= kSlots; ++slot) {
    EXPECT_EQ(note(slot), "") << slot;
  }
  line.silent = {4};
  run.For(minutes(1));
  for (const int slot : {8, 9, 12}) {
    EXPECT_EQ(note(slot).find(" no answer: its buffer lasts for  "), 0U) << slot << note(slot);
  }
  EXPECT_EQ(note(3), "") << "its instrument answers";
  EXPECT_NE(note(8), note(9)) << "each has its own";
  const auto before = bench.engine.SilentBufferLasts(8);
  ASSERT_TRUE(before);
  run.For(minutes(10));
  const auto gone = *before - bench.engine.SilentBufferLasts(8).value_or(*before);
  EXPECT_GE(gone, seconds(590));
  EXPECT_LE(gone, seconds(610));
  EXPECT_LE(bench.engine.BuffersLast(), bench.engine.SilentBufferLasts(8)) << "the smallest";
  line.silent.clear();
  run.For(minutes(1));
  EXPECT_EQ(note(8), "");
}

TEST_F(BufferDanger, SaysWhenTheBufferOfASilentInstrumentMayBeFull) {
  Install({5, 2, {1}, 1, 800});
  bench.Start();
  bench.state.Settings.HelpLang = "German";
  bench.sheet.SetCaptionAndTips();
  GridRun run(bench);
  run.For(milliseconds(500));
  line.silent = {2};
  run.For(seconds(20));
  const auto note = [this] {
    bench.sheet.RefreshState();
    return bench.Row(5).TavNoNote;
  };
  EXPECT_EQ(note().find(" keine Antwort: sein Puffer reicht noch  "), 0U) << note();
  run.For(minutes(16));
  EXPECT_EQ(note(),
            " keine Antwort: sein Puffer ist vielleicht voll, Sätze gehen vielleicht verloren ");
}

}  // namespace
}  // namespace tavrel
