#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "tests/instrument/line_fixture.h"

namespace instrument {
namespace {

// One controller of instrument 1 with its oven, driven through its registers as a host would.
class EachController : public testing::TestWithParam<int> {
 protected:
  int Read(char letter) { return WordOf(bench.Say(Name(letter) + "?")); }
  double Measured() { return Read('Y') / 20.0; }
  void Write(char letter, int value) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "=%X\r", static_cast<unsigned>(value) & 0xFFFFU);
    ASSERT_EQ(bench.Say(Name(letter) + text.data()), ".") << letter;
  }
  [[nodiscard]] static std::string Name(char letter) {
    return std::string{letter, '0', static_cast<char>('0' + GetParam())};
  }
  // A start from the warm state at `degrees`, then a ramp to `final_value`.
  void StartRamp(double degrees, double final_value, int increment) {
    OvenStart start;
    start.controller = GetParam();
    start.kind = OvenStart::Kind::kHold;
    start.target = degrees;
    start.warm = true;
    bench.line.Find(1)->StartOven(start);
    Write('M', static_cast<int>(final_value * 20.0));
    Write('I', increment);
    Write('Z', 3);
  }

  LineBench bench{LineMode::kDirect};
};
INSTANTIATE_TEST_SUITE_P(Controllers, EachController, testing::Values(1, 2, 3, 4));

TEST_P(EachController, HeatsToItsSetpointWithLittleOvershoot) {
  Write('W', 200 * 20);
  Write('Z', 2);
  double highest = 0.0;
  for (int minute = 0; minute < 5 * 60; ++minute) {
    bench.Pass(60);
    highest = std::max(highest, Measured());
    const int power = Read('U');
    ASSERT_GE(power, 0);
    ASSERT_LE(power, 100);
  }
  EXPECT_NEAR(Measured(), 200.0, 1.0);
  EXPECT_LT(highest, 206.0);
  EXPECT_EQ(Read('Z'), 2);
  const double needed = bench.line.Find(1)->OvenAt(GetParam() - 1).PowerFor(200.0, 0.0);
  EXPECT_NEAR(Read('U'), needed, 8.0);
}

TEST_P(EachController, FollowsARampOfFiveDegreesAMinuteWithASmallLag) {
  StartRamp(60.0, 200.0, 8);
  double worst = 0.0;
  while (Read('Z') == 3) {
    bench.Pass(10);
    worst = std::max(worst, std::abs(Read('W') / 20.0 - Measured()));
  }
  EXPECT_EQ(Read('Z'), 2);
  EXPECT_EQ(Read('W'), 4000);
  // Tube, chamber, autoclave, micro: the heavier the oven, the further it lags.
  constexpr std::array<double, 4> kLags{5.0, 10.0, 17.0, 4.0};
  EXPECT_LT(worst, kLags.at(static_cast<std::size_t>(GetParam()) - 1));
  bench.Pass(2L * 3600);
  EXPECT_NEAR(Measured(), 200.0, 1.0);
}

TEST_P(EachController, FallingRampShowsStatusFour) {
  StartRamp(200.0, 150.0, 1);
  bench.Pass(60);
  EXPECT_EQ(Read('Z'), 4);
  EXPECT_EQ(Read('W'), 4000 - 12);
  bench.Pass(5000);
  EXPECT_EQ(Read('Z'), 2);
  EXPECT_NEAR(Measured(), 150.0, 3.0);
}

TEST_P(EachController, HoldsQuietlyFromAWarmStart) {
  StartRamp(180.0, 180.0, 0);
  for (int minute = 0; minute < 60; ++minute) {
    bench.Pass(60);
    ASSERT_NEAR(Measured(), 180.0, 0.7);
  }
}

TEST_P(EachController, CoarsePaceEndsAtTheSameTemperature) {
  Write('W', 150 * 20);
  Write('Z', 2);
  LineBench fine(LineMode::kDirect);
  fine.Say(Name('W') + "=BB8\r");
  fine.Say(Name('Z') + "=2\r");
  constexpr Instrument::Time kHalfHour = std::chrono::minutes(30);
  bench.line.Advance(kHalfHour, Instrument::Pace::kCoarse);
  fine.line.Advance(kHalfHour, Instrument::Pace::kFine);
  EXPECT_NEAR(Read('Y'), WordOf(fine.Say(Name('Y') + "?")), 0.5 * 20.0);
}

TEST_P(EachController, SwitchesOffWithFailAboveTheUpperLimit) {
  StartRamp(200.0, 200.0, 0);
  bench.Pass(60);
  ASSERT_EQ(Read('Z'), 2);
  Write('H', 190 * 20);
  bench.Pass(2);
  EXPECT_EQ(Read('Z'), 1);
  EXPECT_EQ(Read('U'), 0);
  const double before = Measured();
  bench.Pass(600);
  EXPECT_LT(Measured(), before);
}

TEST_P(EachController, OpenSensorIsAFailure) {
  Write('W', 100 * 20);
  Write('Z', 2);
  bench.Pass(30);
  bench.line.Find(1)->Connect(GetParam(), {Connection::Kind::kBroken, 0.0});
  bench.Pass(2);
  EXPECT_EQ(Read('Z'), 1);
}

TEST_P(EachController, StatusTestTakesItsPowerFromQ) {
  Write('Q', 40);
  Write('Z', 5);
  bench.Pass(2);
  EXPECT_EQ(Read('U'), 40);
  bench.Pass(600);
  EXPECT_GT(Measured(), 25.0);
}

TEST_P(EachController, FailKeepsTheOutputRegisterButNoHeat) {
  Write('U', 100);
  Write('Z', 1);
  bench.Pass(900);
  EXPECT_EQ(Read('U'), 100);
  EXPECT_NEAR(Measured(), 22.0, 0.5);
}

TEST_P(EachController, OffEndsTheHeating) {
  StartRamp(200.0, 200.0, 0);
  Write('Z', 0);
  bench.Pass(900);
  EXPECT_EQ(Read('U'), 0);
  EXPECT_LT(Measured(), 195.0);
}

}  // namespace
}  // namespace instrument
