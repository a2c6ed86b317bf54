#include "instrument/instrument.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/instrument/line_fixture.h"

namespace instrument {
namespace {

class OneInstrument : public testing::Test {
 protected:
  int Read(const std::string& name) { return WordOf(bench.Say(name + "?")); }
  LineBench bench{LineMode::kDirect};
};

TEST_F(OneInstrument, FastOneReadsOneInT0) {
  EXPECT_EQ(Read("T00"), 10);
  EXPECT_EQ(Read("T10"), 1);
}

TEST_F(OneInstrument, SamplingTimeCountsTensOfSecondsOrSeconds) {
  bench.Say("S01=2\rS11=2\r");
  bench.Pass(100);
  EXPECT_EQ(Read("R01"), 5);
  EXPECT_EQ(Read("R11"), 50);
}

TEST_F(OneInstrument, FullBufferLosesTheOldestSet) {
  bench.Say("S11=1\r");
  bench.Pass(900);
  EXPECT_EQ(Read("R11"), 896);
  EXPECT_EQ(bench.truth.Count("sample 2 1 "), 900);
  EXPECT_EQ(bench.truth.Count("overrun 2 1 "), 4);
  bench.Say("X11?");
  EXPECT_EQ(bench.truth.Count("handed 2 1 5 "), 1);
}

TEST_F(OneInstrument, WritingZeroToRClearsThatInputOnly) {
  bench.Say("S11=1\rS12=1\r");
  bench.Pass(10);
  bench.Say("R11=0\r");
  EXPECT_EQ(Read("R11"), 0);
  EXPECT_EQ(Read("R12"), 10);
  EXPECT_EQ(bench.truth.rows.back(), "clear 2 1");
  bench.Say("R12=5\r");
  EXPECT_EQ(Read("R12"), 10);
}

TEST_F(OneInstrument, SetsOfOneRecordingStayAligned) {
  for (int input = 1; input <= 9; ++input) {
    const char digit = static_cast<char>('0' + input);
    bench.Say(std::string{'S', '1', digit, '=', '3', '\r'});
    bench.Say(std::string{'R', '1', digit, '=', '0', '\r'});
    bench.Pass(1);
  }
  bench.Pass(100);
  const int count = Read("R11");
  EXPECT_GT(count, 20);
  for (int input = 1; input <= 9; ++input) {
    EXPECT_EQ(Read(std::string{'R', '1', static_cast<char>('0' + input)}), count) << input;
  }
}

TEST_F(OneInstrument, SampledWordIsTheOneShownAtThatInstant) {
  bench.Say("S11=1\r");
  bench.Pass(1);
  const int shown = Read("Y11");
  EXPECT_EQ(Read("X11"), shown);
}

TEST_F(OneInstrument, ReferenceSensorIsAtRoomTemperatureInHundredths) {
  for (int minute = 0; minute < 200; ++minute) {
    bench.Pass(60);
    EXPECT_NEAR(Read("Y00"), 2500, 100);
  }
}

TEST_F(OneInstrument, RegistersThatShowSomethingForgetWhatIsWritten) {
  const int shown = Read("Y01");
  EXPECT_EQ(bench.Say("Y01=7FFF\rX01=5\rT00=5\r"), "...");
  EXPECT_EQ(Read("Y01"), shown);
  EXPECT_EQ(Read("X01"), -32768);
  EXPECT_EQ(Read("T00"), 10);
}

TEST_F(OneInstrument, EveryOtherRegisterStores) {
  for (char letter = 'G'; letter <= 'V'; ++letter) {
    if (letter == 'R' || letter == 'S') {
      continue;
    }
    const std::string name = std::string{letter, '0', 'E'};
    ASSERT_EQ(bench.Say(name + "=8000\r"), ".") << name;
    EXPECT_EQ(Read(name), -32768) << name;
  }
  for (const char letter : {'G', 'H', 'I', 'M', 'N', 'P', 'Q', 'T', 'V', 'W'}) {
    const std::string name = std::string{letter, '0', '2'};
    ASSERT_EQ(bench.Say(name + "=8000\r"), ".") << name;
    EXPECT_EQ(Read(name), -32768) << name;
  }
}

TEST_F(OneInstrument, MailboxRunsATestAndLeavesItsResult) {
  bench.Say("G08=7\r");
  ASSERT_EQ(bench.Say("G00=6\r"), ".");
  EXPECT_EQ(Read("G00"), 6);
  bench.Pass(2);
  EXPECT_EQ(Read("G00"), 6);
  bench.Pass(2);
  EXPECT_EQ(Read("G00"), 0);
  EXPECT_EQ(Read("G08"), 0);
  EXPECT_EQ(Read("G09"), 0x115);
}

TEST_F(OneInstrument, WatchdogTestGivesItsPeriodAfterThatPeriod) {
  bench.Say("G00=A\r");
  bench.PassMilliseconds(1500);
  EXPECT_EQ(Read("G00"), 10);
  bench.PassMilliseconds(250);
  EXPECT_EQ(Read("G00"), 0);
  EXPECT_EQ(Read("G08"), 160);
}

TEST_F(OneInstrument, TestCanBeBroken) {
  bench.line.Find(1)->SetTestResult(SelfTest::kRam, {0x1234});
  bench.Say("G00=6\r");
  bench.Pass(4);
  EXPECT_EQ(Read("G08"), 0x1234);
  bench.Say("G00=6\rG00=0\r");
  EXPECT_EQ(Read("G00"), 0);
}

TEST_F(OneInstrument, RamTestLeavesTheSamplesAlone) {
  bench.Say("S01=1\rR01=0\r");
  bench.Pass(60);
  const int before = Read("R01");
  bench.Say("G00=6\r");
  bench.Pass(5);
  EXPECT_GE(Read("R01"), before);
}

TEST(RamTest, CostsTheSamplesOfAnInstrumentThatIsBuiltSo) {
  KeptTruth truth;
  InstrumentSettings settings;
  settings.ram_test_clears = true;
  Instrument one(settings, truth);
  const int stored = RegisterNumber('R', 1);
  ASSERT_TRUE(one.WriteRegister(RegisterNumber('S', 1), 1));
  one.Advance(std::chrono::seconds(60), Instrument::Pace::kFine);
  ASSERT_EQ(one.ReadRegister(stored).word, 6);
  ASSERT_TRUE(one.WriteRegister(RegisterNumber('G', 0), SelfTest::kEprom));
  one.Advance(std::chrono::seconds(4), Instrument::Pace::kFine);
  EXPECT_EQ(one.ReadRegister(stored).word, 6) << "the EPROM has no samples";
  ASSERT_TRUE(one.WriteRegister(RegisterNumber('G', 0), SelfTest::kRam));
  one.Advance(std::chrono::seconds(2), Instrument::Pace::kFine);
  EXPECT_EQ(one.ReadRegister(stored).word, 6);
  EXPECT_EQ(truth.Count("restart"), 0);
  one.Advance(std::chrono::seconds(2), Instrument::Pace::kFine);
  EXPECT_EQ(one.ReadRegister(stored).word, 0);
  EXPECT_EQ(truth.Count("restart 1"), 1);
  one.Advance(std::chrono::seconds(2), Instrument::Pace::kFine);
  EXPECT_EQ(one.ReadRegister(stored).word, 1) << "sampling goes on at its pace";
  EXPECT_EQ(truth.Count("sample 1 1 1 "), 2);
}

TEST_F(OneInstrument, UnknownMailboxCommandIsRefused) {
  EXPECT_EQ(bench.Say("G00=5\r"), "?");
  EXPECT_EQ(Read("G00"), 0);
}

TEST_F(OneInstrument, RestartKeepsWhatIsKeptWithoutPower) {
  bench.Say("P01=100\rS01=1\rZ07=1\rO03=7\rW01=3E8\rM01=5\rV06=9\rZ01=2\r");
  bench.Pass(60);
  bench.line.Find(1)->Restart();
  EXPECT_EQ(Read("P01"), 0x100);
  EXPECT_EQ(Read("S01"), 1);
  EXPECT_EQ(Read("Z07"), 1);
  EXPECT_EQ(Read("O03"), 7);
  for (const char* name : {"W01", "M01", "V06", "Z01", "R01", "U01", "G00"}) {
    EXPECT_EQ(Read(name), 0) << name;
  }
  EXPECT_EQ(bench.Say("8000<"), "0000\r");
  EXPECT_EQ(bench.truth.Count("restart 1"), 1);
  bench.Pass(30);
  EXPECT_GT(Read("R01"), 0);
}

TEST_F(OneInstrument, RestartedOvenKeepsItsHeat) {
  OvenStart start;
  start.kind = OvenStart::Kind::kHold;
  start.target = 200.0;
  start.warm = true;
  bench.line.Find(1)->StartOven(start);
  bench.Pass(1);
  bench.line.Find(1)->Restart();
  bench.Pass(1);
  EXPECT_NEAR(Read("Y01") / 20.0, 200.0, 1.0);
}

TEST_F(OneInstrument, WarmRampIsOnItsWay) {
  OvenStart start;
  start.controller = 2;
  start.kind = OvenStart::Kind::kRamp;
  start.target = 322.0;
  start.rate = 0.08;
  start.warm = true;
  bench.line.Find(1)->StartOven(start);
  bench.Pass(300);
  EXPECT_EQ(Read("Z02"), 3);
  EXPECT_EQ(Read("M02"), 6440);
  EXPECT_EQ(Read("I02"), 8);
  EXPECT_NEAR(Read("W02") / 20.0, 22.0 + 100.0 + 300 * 0.08, 0.1);
  EXPECT_NEAR(Read("Y02") / 20.0, Read("W02") / 20.0, 8.0);
}

TEST_F(OneInstrument, FillRunsUntilEachSampledInputHoldsTheSets) {
  Instrument& first = *bench.line.Find(1);
  EXPECT_FALSE(first.Fill(100));
  ASSERT_TRUE(first.StartSampling(std::nullopt, 10));
  EXPECT_FALSE(first.StartSampling(1, 15));
  ASSERT_TRUE(first.Fill(100));
  EXPECT_EQ(Read("R01"), 100);
  EXPECT_EQ(Read("R0F"), 100);
  EXPECT_EQ(Read("R00"), 0);
}

TEST_F(OneInstrument, CoarsePaceTakesTheSameSamples) {
  bench.Say("S11=3\r");
  bench.PassMilliseconds(750);
  bench.line.Advance(std::chrono::seconds(300), Instrument::Pace::kCoarse);
  EXPECT_EQ(Read("R11"), 100);
}

// An instrument whose inputs 1 to 15 are sampled one after another every 10 s, half a second
// apart: input k at k - 1 half seconds after the set's beginning.
class OneAfterAnother : public testing::Test {
 protected:
  OneAfterAnother() { EXPECT_TRUE(bench.line.Find(1)->StartSampling(std::nullopt, 10)); }
  int Read(char letter, int input) {
    return WordOf(bench.Say(std::string{letter, '0', "0123456789ABCDEF"[input], '?'}));
  }

  LineBench bench{
      LineMode::kDirect, {1}, {SamplingOrder::kAscending, std::chrono::milliseconds(500)}};
};

TEST_F(OneAfterAnother, EachInputCountsItsSampleAtItsOwnInstant) {
  bench.Pass(10);
  for (int input = 1; input <= 15; ++input) {
    EXPECT_EQ(Read('R', input), 1) << input;
    EXPECT_EQ(Read('R', std::min(input + 1, 15)), input < 15 ? 0 : 1) << input;
    bench.PassMilliseconds(499);
    EXPECT_EQ(Read('R', std::min(input + 1, 15)), input < 15 ? 0 : 1) << input;
    bench.PassMilliseconds(1);
  }
}

TEST_F(OneAfterAnother, SampledWordIsTheOneShownAtItsOwnInstant) {
  bench.Pass(10);
  for (int input = 1; input <= 15; ++input) {
    const int shown = Read('Y', input);
    EXPECT_EQ(Read('X', input), shown) << input;
    EXPECT_EQ(Read('X', input), -32768) << input;
    bench.PassMilliseconds(500);
  }
}

TEST_F(OneAfterAnother, FullBufferOfAnInputLosesItsOldestAtItsOwnInstant) {
  ASSERT_TRUE(bench.line.Find(1)->Fill(896));
  ASSERT_EQ(bench.truth.Count("overrun"), 0);
  bench.Pass(10 - 7);
  EXPECT_EQ(bench.truth.Count("overrun 1 1 1"), 1);
  EXPECT_EQ(bench.truth.Count("overrun"), 1);
  EXPECT_EQ(Read('R', 1), 896);
  // Those that are read in time lose nothing.
  EXPECT_NE(Read('X', 2), -32768);
  bench.PassMilliseconds(500);
  EXPECT_EQ(bench.truth.Count("overrun"), 1);
  bench.PassMilliseconds(500);
  EXPECT_EQ(bench.truth.Count("overrun 1 3 1"), 1);
  EXPECT_EQ(bench.truth.Count("overrun"), 2);
}

TEST_F(OneAfterAnother, FillGivesEachInputTheSameSets) {
  ASSERT_TRUE(bench.line.Find(1)->Fill(500));
  for (int input = 1; input <= 15; ++input) {
    EXPECT_EQ(Read('R', input), 500) << input;
  }
}

TEST_F(OneAfterAnother, SamplesOfASetHaveOneNumberInTheTruth) {
  bench.Pass(3000);
  for (int input = 1; input <= 15; ++input) {
    EXPECT_EQ(bench.truth.Count("sample 1 " + std::to_string(input) + " 299 "), 1);
    EXPECT_EQ(bench.truth.Count("sample 1 " + std::to_string(input) + " 300 "), input == 1 ? 1 : 0);
  }
}

TEST_F(OneAfterAnother, RestartLeavesOutTheRestOfASet) {
  bench.Pass(13);
  bench.line.Find(1)->Restart();
  bench.PassMilliseconds(6999);
  EXPECT_EQ(Read('R', 15), 0);
  bench.PassMilliseconds(1);
  EXPECT_EQ(Read('R', 1), 1);
  bench.Pass(7);
  EXPECT_EQ(Read('R', 15), 1);
}

TEST_F(OneAfterAnother, RecordingIsStartedInOneSetWhateverThePhase) {
  for (int phase = 0; phase < 20; ++phase) {
    LineBench started{
        LineMode::kDirect, {1}, {SamplingOrder::kDescending, std::chrono::milliseconds(500)}};
    started.PassMilliseconds(500 * phase);
    for (const char* commands : {"S01=1\rR01=0\r", "S07=1\rR07=0\r", "S0F=1\rR0F=0\r"}) {
      EXPECT_EQ(started.Say(commands), "..");
      started.PassMilliseconds(300);
    }
    ASSERT_TRUE(started.line.Find(1)->Fill(3));
    EXPECT_EQ(WordOf(started.Say("R01?")), 3) << phase;
    EXPECT_EQ(WordOf(started.Say("R0F?")), 3) << phase;
  }
}

TEST_F(OneAfterAnother, IntervalThatIsTooShortIsRefused) {
  LineBench fast{LineMode::kDirect, {2}, {SamplingOrder::kRandom, std::chrono::milliseconds(500)}};
  EXPECT_EQ(fast.Say("S11=7\r"), "?");
  EXPECT_EQ(WordOf(fast.Say("S11?")), 0);
  EXPECT_EQ(fast.Say("S11=8\r"), ".");
  EXPECT_EQ(WordOf(fast.Say("S11?")), 8);
}

TEST_F(OneAfterAnother, CoarsePaceSamplesAtTheSameInstants) {
  LineBench fine{
      LineMode::kDirect, {1}, {SamplingOrder::kAscending, std::chrono::milliseconds(500)}};
  ASSERT_TRUE(fine.line.Find(1)->StartSampling(std::nullopt, 10));
  bench.line.Advance(std::chrono::seconds(333), Instrument::Pace::kCoarse);
  fine.line.Advance(std::chrono::seconds(333), Instrument::Pace::kFine);
  for (int input = 1; input <= 15; ++input) {
    const std::string name = std::string{'R', '0', "0123456789ABCDEF"[input], '?'};
    EXPECT_EQ(bench.Say(name), fine.Say(name)) << input;
  }
}

TEST_F(OneInstrument, AdjustmentFindsTheDivisorThatTheMakerFound) {
  Instrument& first = *bench.line.Find(1);
  const int whole = Read("J03");
  const int fraction = Read("K03") & 0xFFFF;
  bench.Say("L03=0\r");
  first.Connect(3, {Connection::Kind::kShorted, 0.0});
  bench.Pass(1);
  const int offset = Read("Y03");
  first.Connect(3, {Connection::Kind::kTemperature, 119.85});
  bench.Pass(1);
  const int reading = Read("Y03");
  // 119.85 degrees are 116 on the straight line; the terminals are near 25 degrees.
  const double terminals = LinearDegrees(kFeCuNi, Read("Y00") / 100.0);
  const double divisor = (reading - offset) / (20.0 * (116.0 - terminals));
  EXPECT_NEAR(divisor, whole + fraction / 65536.0, 0.01);
}

TEST(OvenMap, ReferencesFollowTheControllersSensors) {
  KeptTruth truth;
  InstrumentSettings settings;
  settings.ovens = 2;
  const Instrument instrument(settings, truth);
  EXPECT_EQ(instrument.OvenOf(1), 0);
  EXPECT_EQ(instrument.OvenOf(2), 1);
  EXPECT_EQ(instrument.PlaceInOven(3), 1);
  EXPECT_EQ(instrument.OvenOf(15), 0);
}

}  // namespace
}  // namespace instrument
