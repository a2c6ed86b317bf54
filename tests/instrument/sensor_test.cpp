#include "instrument/sensor.h"

#include <gtest/gtest.h>

#include <cmath>

#include "instrument/measuring.h"

namespace instrument {
namespace {

TEST(Sensor, CurveAndItsInverseFit) {
  for (const int code : {int{kFeCuNi}, int{kNiCrNi}, int{kNiSil}, int{kLinear}}) {
    for (int degrees = -300; degrees < 900; degrees += 7) {
      EXPECT_NEAR(TrueDegrees(code, LinearDegrees(code, degrees)), degrees, 1e-9) << code;
    }
  }
}

TEST(Sensor, CurveRunsThroughItsTellingRows) {
  EXPECT_NEAR(TrueDegrees(kFeCuNi, 116.0), 119.85, 1e-9);
  EXPECT_NEAR(TrueDegrees(kNiCrNi, 292.0), 296.35, 1e-9);
}

// A point each 0.8 degrees on the line, straight between two of them.
TEST(Sensor, CurvesAreAsFineAsTheirTables) {
  EXPECT_NEAR(TrueDegrees(kFeCuNi, 0.8), 0.8, 1e-9);
  EXPECT_NEAR(TrueDegrees(kFeCuNi, 1.6), 1.65, 1e-9);
  EXPECT_NEAR(TrueDegrees(kFeCuNi, 2.0), 2.075, 1e-9);
  EXPECT_NEAR(TrueDegrees(kFeCuNi, 400.0), 402.15, 1e-9);
  EXPECT_NEAR(TrueDegrees(kNiCrNi, 116.0), 116.85, 1e-9);
  EXPECT_NEAR(TrueDegrees(kNiCrNi, 400.0), 402.85, 1e-9);
  EXPECT_NEAR(TrueDegrees(kNiCrNi, 500.0), 500.05, 1e-9);
  double fecuni = 0;
  double nicrni = 0;
  for (int i = 1; i <= 625; ++i) {
    fecuni += TrueDegrees(kFeCuNi, i * 0.8) - i * 0.8;
    nicrni += TrueDegrees(kNiCrNi, i * 0.8) - i * 0.8;
  }
  EXPECT_NEAR(fecuni, 31329 / 20.0, 1e-6);
  EXPECT_NEAR(nicrni, 29786 / 20.0, 1e-6);
}

TEST(Measuring, DriftMakesValuesWrong) {
  for (const int drift : {-20, 20}) {
    const Measuring measuring(7, drift);
    const Measuring factory(7);
    const double cold = measuring.TerminalDegrees(100);
    for (int input = 1; input < kInputCount; ++input) {
      EXPECT_EQ(measuring.Factory(input).offset, factory.Factory(input).offset);
      const int shown = ShownWord(measuring.Factory(input), measuring.Raw(input, cold, 100), cold);
      const int right = ShownWord(factory.Factory(input), factory.Raw(input, cold, 100), cold);
      EXPECT_NEAR(shown - right, drift, 1.5) << input;
      const int hot = ShownWord(measuring.Factory(input), measuring.Raw(input, 400.0, 100), cold);
      EXPECT_GT(std::abs(hot - 8000), std::abs(drift)) << input;
    }
  }
}

TEST(Sensor, FactoryCalibrationShowsTheTrueTemperature) {
  const Measuring measuring(7);
  for (int input = 1; input < kInputCount; ++input) {
    const double cold = measuring.TerminalDegrees(100);
    const int raw = measuring.Raw(input, 333.0, 100);
    EXPECT_NEAR(ShownWord(measuring.Factory(input), raw, cold) / 20.0, 333.0, 0.2) << input;
  }
  const int raw = measuring.Raw(0, 0.0, 100);
  EXPECT_NEAR(ShownWord(measuring.Factory(0), raw, 0.0) / 100.0, measuring.TerminalDegrees(100),
              0.05);
}

TEST(Sensor, CodeZeroShowsTheRawReading) {
  Calibration calibration{.offset = 5, .divisor_whole = 2, .divisor_fraction = 0, .code = 0};
  EXPECT_EQ(ShownWord(calibration, 1234, 25.0), 1234);
  calibration.code = kLinear;
  EXPECT_EQ(ShownWord(calibration, 1205, 25.0), 600);
}

TEST(Sensor, NeverShowsTheWordForNoValue) {
  const Calibration calibration{
      .offset = 32767, .divisor_whole = 0, .divisor_fraction = 1, .code = kLinear};
  EXPECT_EQ(ShownWord(calibration, -32767, 25.0), -32767);
  EXPECT_EQ(
      ShownWord({.offset = 0, .divisor_whole = 0, .divisor_fraction = 0, .code = kLinear}, 1, 25.0),
      32767);
}

TEST(Measuring, ClimbingSensorHasNoTwoSamplesAlike) {
  EXPECT_DOUBLE_EQ(ClimbingDegrees(0.003, 0), 100.0);
  EXPECT_DOUBLE_EQ(ClimbingDegrees(0.003, 100000), 400.0);
  EXPECT_NEAR(ClimbingDegrees(0.003, 300001), 100.003, 1e-6) << "from 1000 degrees down again";
  Measuring measuring(7);
  for (int input = 1; input < kInputCount; ++input) {
    measuring.Connect(input, {Connection::Kind::kClimb, 0.006});
    for (std::int64_t second = 0; second < 149900; second += 100) {
      ASSERT_GT(measuring.Raw(input, 20.0, second + 100) - measuring.Raw(input, 20.0, second), 2)
          << "input " << input << " after " << second << " s";
    }
  }
}

TEST(Measuring, ShortedInputReadsItsOffset) {
  Measuring measuring(7);
  measuring.Connect(3, {Connection::Kind::kShorted, 0.0});
  EXPECT_NEAR(measuring.Raw(3, 500.0, 10), measuring.Factory(3).offset, 3);
}

TEST(Measuring, OpenThermocoupleReadsFullScale) {
  Measuring measuring(7);
  measuring.Connect(3, {Connection::Kind::kBroken, 0.0});
  EXPECT_EQ(measuring.Raw(3, 20.0, 10), kFullScale);
  EXPECT_TRUE(measuring.IsBroken(3));
}

TEST(Measuring, NoiseIsAFewStepsAndTheSameForTheSameSeed) {
  const Measuring one(7);
  const Measuring same(7);
  const Measuring other(8);
  int differences = 0;
  for (std::int64_t second = 0; second < 1000; ++second) {
    const double cold = one.TerminalDegrees(second);
    const int raw = one.Raw(1, 200.0, second);
    EXPECT_EQ(raw, same.Raw(1, 200.0, second));
    EXPECT_NEAR(ShownWord(one.Factory(1), raw, cold), 4000, 4);
    differences += raw != other.Raw(1, 200.0, second) ? 1 : 0;
  }
  EXPECT_GT(differences, 500);
}

TEST(Noise, HasMeanZeroAndDeviationOne) {
  double sum = 0.0;
  double squares = 0.0;
  constexpr int kDraws = 20000;
  for (std::uint64_t key = 0; key < kDraws; ++key) {
    const double noise = NoiseOf(key);
    sum += noise;
    squares += noise * noise;
  }
  EXPECT_NEAR(sum / kDraws, 0.0, 0.03);
  EXPECT_NEAR(std::sqrt(squares / kDraws), 1.0, 0.03);
}

}  // namespace
}  // namespace instrument
