#include "service/buffer_watch.h"

#include <gtest/gtest.h>

#include "tests/service/service_line.h"

namespace tavrel {
namespace {

// Recordings of instrument 2 in slot 3 (inputs 1 to 3) and in slot 12 (inputs 1 to 15), one of
// instrument 5 in slot 7.
class TheBufferWatch : public ServiceLine {
 protected:
  void StartRecordings(int com_mode = 0) {
    bench.Install(3, "M260301A.OVN", BenchProgram::Header(2, 1, 3, true));
    UnitRecord others = BenchProgram::Header(2, 2, 15, true);
    for (int input = 1; input <= 9; ++input) {
      others.UnitRole[input] = 0;
    }
    others.UnitChannels = 6;
    bench.Install(12, "M260302A.OVN", others);
    bench.Install(7, "M260303A.OVN", BenchProgram::Header(5, 1, 2, true));
    StartOn(com_mode, 2);
    for (const int slot : {3, 7, 12}) {
      bench.state.ReadState[slot] = ReadState::kWaiting;
    }
    bench.port.sent.clear();
  }
  void Store(int inet, int input, int sets) {
    auto& buffer = bench.line.buffers[{inet, input}];
    buffer.assign(static_cast<std::size_t>(sets), 100);
  }
  // The looks of a while, and what they ask.
  Texts Looks(int count) {
    bench.port.sent.clear();
    for (int look = 0; look < count; ++look) {
      static_cast<void>(bench.buffers.Look());
      bench.clock.Advance(std::chrono::milliseconds(110));
    }
    return bench.port.sent;
  }
  [[nodiscard]] bool InDoubt(int slot) const { return bench.state.ColumnsInDoubt[slot]; }
};

TEST_F(TheBufferWatch, AsksNothingBeforeATestAndForTenSecondsBehindIt) {
  StartRecordings();
  EXPECT_TRUE(Looks(3).empty());
  bench.buffers.Begin(2);
  EXPECT_EQ(Looks(4), (Texts{"R11?", "R1A?", "R11?", "R1A?"})) << "one input of each recording";
  bench.clock.AdvanceSeconds(10);
  EXPECT_TRUE(Looks(3).empty());
  bench.buffers.Begin(4);
  EXPECT_TRUE(Looks(3).empty()) << "nothing records there";
}

TEST_F(TheBufferWatch, AsksOnAPluginLineToo) {
  StartRecordings(1);
  bench.buffers.Begin(5);
  EXPECT_EQ(Looks(2), (Texts{"n4vB1?", "n4vB1?"}));
}

TEST_F(TheBufferWatch, AsksAFewTimesASecondOnly) {
  StartRecordings();
  bench.buffers.Begin(2);
  EXPECT_TRUE(bench.buffers.Look());
  bench.clock.Advance(std::chrono::milliseconds(20));
  EXPECT_FALSE(bench.buffers.Look());
}

TEST_F(TheBufferWatch, SeesSamplesThatTheInstrumentHasThrownAway) {
  StartRecordings();
  Store(2, 1, 4);
  Store(2, 10, 4);
  bench.buffers.Begin(2);
  Looks(2);
  Store(2, 1, 5);
  Store(2, 10, 5);
  Looks(2);
  EXPECT_FALSE(InDoubt(3));
  Store(2, 1, 0);
  Looks(2);
  EXPECT_TRUE(InDoubt(3));
  EXPECT_FALSE(InDoubt(12)) << "its buffers are as they were";
  EXPECT_FALSE(InDoubt(7));
  EXPECT_EQ(Looks(4), (Texts{"R1A?", "R1A?"})) << "what is in doubt already is left to the pump";
}

TEST_F(TheBufferWatch, CountsWhatTheProgramHasReadItself) {
  StartRecordings();
  Store(2, 1, 4);
  bench.buffers.Begin(2);
  Looks(2);
  bench.line.buffers[{2, 1}].pop_front();
  bench.state.SampleSeen[3][1] = true;
  Looks(2);
  EXPECT_FALSE(InDoubt(3));
  bench.state.SampleSeen[3][1] = false;
  ++bench.state.SampleCount[3];
  Looks(2);
  EXPECT_FALSE(InDoubt(3));
  bench.line.buffers[{2, 1}].pop_front();
  Looks(2);
  EXPECT_TRUE(InDoubt(3));
}

TEST_F(TheBufferWatch, TakesNoWrongAnswerForALoss) {
  StartRecordings();
  Store(5, 1, 4);
  bench.buffers.Begin(5);
  Looks(1);
  for (const char* reply : {"", "?", "000\r", "00G0\r", "0000\r0000\r"}) {
    replies = {reply};
    bench.clock.AdvanceSeconds(1);
    Looks(1);
    EXPECT_FALSE(InDoubt(7)) << reply;
  }
}

TEST_F(TheBufferWatch, IsBegunByTheTestsOfTheFirmware) {
  StartRecordings();
  bench.clock.AdvanceSeconds(1);
  Open(bench.watchdog_test);
  ASSERT_TRUE(bench.watchdog_test.IsOpen());
  bench.watchdog_test.Step();
  EXPECT_EQ(Looks(1), Texts{"R11?"});
  bench.watchdog_test.Quit();
  EXPECT_EQ(Looks(1), Texts{"R1A?"}) << "the firmware goes on with it";
}

TEST_F(TheBufferWatch, RestsOnASimulatedLink) {
  bench.state.Settings.CommPort = "----";
  StartRecordings();
  bench.buffers.Begin(2);
  EXPECT_FALSE(bench.buffers.Look());
}

}  // namespace
}  // namespace tavrel
