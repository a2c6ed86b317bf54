#include "main/line_state.h"

#include <gtest/gtest.h>

#include "tests/support/bench_program.h"

namespace tavrel {
namespace {

constexpr WallTime kNow{2026, 3, 14, 15, 2, 9};

std::string English(const LineState& line) {
  return LineStateText(line, kNow, Language::kEnglish);
}
std::string German(const LineState& line) {
  return LineStateText(line, kNow, Language::kGerman);
}

LineState Good() {
  LineState line;
  line.PortOpen = true;
  line.Port = "COM1";
  line.Device = "/dev/ttyUSB0";
  line.Speed = "4800";
  line.Answered = 52;
  return line;
}

TEST(LineState, SaysPortDeviceSpeedAndAnswers) {
  EXPECT_EQ(English(Good()),
            "COM1 = /dev/ttyUSB0  ·  4800 baud  ·  52 exchanges answered in the last minute");
  EXPECT_EQ(German(Good()),
            "COM1 = /dev/ttyUSB0  ·  4800 Baud  ·  52 Abfragen in der letzten Minute beantwortet");
}

TEST(LineState, CountsOneInItsOwnWords) {
  LineState line = Good();
  line.Answered = 1;
  line.Device.clear();
  line.Speed = "9600";
  EXPECT_EQ(English(line), "COM1  ·  9600 baud  ·  1 exchange answered in the last minute");
  EXPECT_EQ(German(line), "COM1  ·  9600 Baud  ·  1 Abfrage in der letzten Minute beantwortet");
}

TEST(LineState, SaysThatItIsSimulatedAndNothingElse) {
  LineState line = Good();
  line.Simulated = true;
  EXPECT_EQ(English(line), "simulated  ·  no port, no instrument");
  EXPECT_EQ(German(line), "simuliert  ·  keine Schnittstelle, kein Gerät");
}

TEST(LineState, SaysSinceWhenTheLineIsGoneAndWhenItIsTriedAgain) {
  LineState line = Good();
  line.PortOpen = false;
  line.GoneSince = WallTime{2026, 3, 14, 14, 2, 5};
  line.NextTry = 7;
  EXPECT_EQ(English(line), "COM1 = /dev/ttyUSB0  ·  line gone since 14:02:05  ·  next try in 7 s");
  EXPECT_EQ(German(line),
            "COM1 = /dev/ttyUSB0  ·  Leitung weg seit 14:02:05  ·  nächster Versuch in 7 s");
  line.NextTry.reset();
  EXPECT_EQ(English(line), "COM1 = /dev/ttyUSB0  ·  line gone since 14:02:05");
}

TEST(LineState, SaysTheDateOfAnotherDay) {
  LineState line = Good();
  line.SilentSince = WallTime{2026, 3, 13, 23, 59, 58};
  line.Answered = 0;
  EXPECT_EQ(English(line),
            "COM1 = /dev/ttyUSB0  ·  4800 baud  ·  0 exchanges answered in the last minute  ·  "
            "no answer since 2026-03-13 23:59:58");
  EXPECT_NE(German(line).find("keine Antwort seit 2026-03-13 23:59:58"), std::string::npos);
}

TEST(LineState, SaysThatAPortIsNotOpen) {
  LineState line = Good();
  line.PortOpen = false;
  EXPECT_EQ(English(line), "COM1 = /dev/ttyUSB0  ·  the port is not open");
}

TEST(LineState, SaysHowLongTheBuffersLastOnlyWhileNobodyReadsThem) {
  LineState line = Good();
  line.Buffers = "at least for:  12 min";
  EXPECT_EQ(English(line).find("12 min"), std::string::npos);
  line.SilentSince = WallTime{2026, 3, 14, 14, 2, 5};
  EXPECT_TRUE(English(line).ends_with("no answer since 14:02:05  ·  at least for:  12 min"));
  line.PortOpen = false;
  line.GoneSince = WallTime{2026, 3, 14, 14, 2, 5};
  line.NextTry = 7;
  EXPECT_TRUE(English(line).ends_with("next try in 7 s  ·  at least for:  12 min"));
}

// The line of the sheet on the bench: the same words from the program's own state.
class LineAtTheFoot : public testing::Test {
 protected:
  LineAtTheFoot() {
    bench.Install(1, "M260314A.OVN", BenchProgram::Header(2, 1, 2, false));
    bench.Start();
    bench.Run(1);
  }
  std::string Text() {
    bench.sheet.RefreshState();
    return bench.sheet.Values().lbl_State;
  }

  BenchProgram bench;
};

TEST_F(LineAtTheFoot, CountsWhatTheCycleAsks) {
  bench.Run(20);
  const std::string text = Text();
  EXPECT_EQ(text.substr(0, 4), "COM1");
  EXPECT_NE(text.find(std::to_string(bench.link.AnsweredInLastMinute()) + " exchanges answered"),
            std::string::npos)
      << text;
  EXPECT_GT(bench.link.AnsweredInLastMinute(), 5);
}

TEST_F(LineAtTheFoot, SendsNothing) {
  const auto sent = bench.port.sent.size();
  for (int turn = 0; turn < 100; ++turn) {
    static_cast<void>(Text());
  }
  EXPECT_EQ(bench.port.sent.size(), sent);
}

TEST_F(LineAtTheFoot, CountsTheSecondsToTheNextTry) {
  bench.port.open_error = 5;
  bench.port.Vanish();
  bench.Run(6);
  for (const int second : {1, 4, 9}) {
    bench.state.TickTen.SetIn(static_cast<float>(second), bench.clock);
    EXPECT_NE(Text().find("next try in " + std::to_string(second) + " s"), std::string::npos)
        << Text();
  }
  EXPECT_NE(Text().find("line gone since 10:00:00"), std::string::npos) << Text();
  bench.port.open_error = 0;
  bench.Run(11);
  EXPECT_EQ(Text().find("gone"), std::string::npos) << Text();
}

// Sets of 20 s in a buffer of 896: what the line says goes down with the time.
TEST(LineOfARecording, CountsDownWhatTheBufferStillHolds) {
  BenchProgram bench;
  UnitRecord unit = BenchProgram::Header(2, 1, 2, true);
  unit.UnitInterval = 2;
  bench.Install(12, "M260314A.OVN", unit);
  bench.Start();
  bench.Run(60);
  const auto text = [&] {
    bench.sheet.RefreshState();
    return bench.sheet.Values().lbl_State;
  };
  EXPECT_EQ(text().find("at least for"), std::string::npos) << text();
  bench.port.open_error = 5;
  bench.port.Vanish();
  bench.Run(6);
  EXPECT_NE(text().find("recordings wait in the instruments, at least for:  4 h"),
            std::string::npos)
      << text();
  bench.clock.Advance(std::chrono::hours(3));
  EXPECT_NE(text().find("at least for:  11"), std::string::npos) << text();
  bench.clock.Advance(std::chrono::hours(3));
  EXPECT_NE(text().find("at least for:  0 s"), std::string::npos) << text();
}

TEST_F(LineAtTheFoot, FollowsTheLanguage) {
  bench.state.Settings.HelpLang = "German";
  bench.sheet.SetCaptionAndTips();
  EXPECT_NE(Text().find("in der letzten Minute"), std::string::npos) << Text();
}

}  // namespace
}  // namespace tavrel
