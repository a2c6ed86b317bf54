#include "instrument/oven.h"

#include <gtest/gtest.h>

namespace instrument {
namespace {

constexpr double kRoom = 22.0;

// `time` in seconds.
void Heat(Oven& oven, double power, double time, double step = 0.25) {
  const auto steps = static_cast<int>(time / step);
  for (int i = 0; i < steps; ++i) {
    oven.Step(power, step);
  }
}

class EachOven : public testing::TestWithParam<int> {
 protected:
  Oven oven{OvenBehind(GetParam()), kRoom};
};
INSTANTIATE_TEST_SUITE_P(Ovens, EachOven, testing::Values(1, 2, 3, 4));

TEST_P(EachOven, StaysAtRoomTemperatureWithoutPower) {
  Heat(oven, 0.0, 3600.0);
  EXPECT_DOUBLE_EQ(oven.ControlSensor(), kRoom);
  EXPECT_DOUBLE_EQ(oven.Sample(), kRoom);
}

TEST_P(EachOven, ReachesSeveralHundredDegreesAtFullPower) {
  Heat(oven, 100.0, 8.0 * 3600.0);
  EXPECT_GT(oven.Chamber(), 400.0);
  EXPECT_LT(oven.Chamber(), 800.0);
}

TEST_P(EachOven, CoolsMoreSlowlyThanItHeats) {
  oven.SettleAt(200.0);
  Oven heated = oven;
  Heat(heated, 100.0, 900.0);
  Heat(oven, 0.0, 900.0);
  EXPECT_GT(heated.ControlSensor() - 200.0, 200.0 - oven.ControlSensor());
  EXPECT_LT(oven.ControlSensor(), 195.0);
}

TEST_P(EachOven, NeverGetsColderThanTheRoom) {
  oven.SettleAt(300.0);
  for (int second = 0; second < 48 * 3600; ++second) {
    oven.Step(0.0, 1.0);
    ASSERT_GE(oven.Chamber(), kRoom);
    ASSERT_GE(oven.Sample(), kRoom);
    ASSERT_GE(oven.Towards(2), kRoom);
  }
  EXPECT_NEAR(oven.ControlSensor(), kRoom, 1.0);
}

TEST_P(EachOven, SettledOvenHoldsWithItsOwnPower) {
  oven.SettleAt(250.0);
  Heat(oven, oven.PowerFor(250.0, 0.0), 7200.0);
  EXPECT_NEAR(oven.ControlSensor(), 250.0, 0.01);
}

TEST_P(EachOven, PowerOutsideItsRangeIsHeld) {
  Oven full = oven;
  Heat(oven, 500.0, 600.0);
  Heat(full, 100.0, 600.0);
  EXPECT_DOUBLE_EQ(oven.Chamber(), full.Chamber());
  Heat(full, -50.0, 48.0 * 3600.0, 1.0);
  EXPECT_GE(full.Chamber(), kRoom);
}

TEST_P(EachOven, SampleLagsBehindTheChamber) {
  Heat(oven, 100.0, 600.0);
  EXPECT_LT(oven.Sample(), oven.Chamber() - 2.0);
}

TEST_P(EachOven, SampleComesToTheChambersTemperature) {
  Heat(oven, 40.0, 8.0 * 3600.0);
  EXPECT_GT(oven.Sample(), 100.0);
  EXPECT_NEAR(oven.Sample(), oven.Chamber(), 0.5);
}

TEST_P(EachOven, SensorSeesTheHeatAfterItsDelay) {
  const double delay = oven.Build().sensor_delay;
  Heat(oven, 100.0, delay - 0.5);
  EXPECT_GT(oven.Chamber(), kRoom);
  EXPECT_DOUBLE_EQ(oven.ControlSensor(), kRoom);
  Heat(oven, 100.0, 30.0);
  EXPECT_GT(oven.ControlSensor(), kRoom + 0.1);
}

TEST_P(EachOven, CoarseStepsGiveTheSameHeating) {
  Oven coarse = oven;
  Heat(oven, 60.0, 3600.0, 0.25);
  Heat(coarse, 60.0, 3600.0, 1.0);
  EXPECT_NEAR(coarse.ControlSensor(), oven.ControlSensor(), 0.3);
}

}  // namespace
}  // namespace instrument
