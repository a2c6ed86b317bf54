#include "instrument/controller.h"

#include <gtest/gtest.h>

namespace instrument {
namespace {

ControllerSettings Settings() {
  ControllerSettings settings;
  settings.pid = {.band = 10.0, .integral_time = 100.0, .derivative_time = 0.0};
  settings.upper_limit = 500.0;
  settings.final_value = 200.0;
  settings.increment = 0.1;
  return settings;
}

TEST(Pid, ProportionalBandIsTheErrorForFullOutput) {
  Pid pid;
  pid.Reset(100.0, 0.0);
  const PidSettings settings{.band = 20.0, .integral_time = 0.0, .derivative_time = 0.0};
  EXPECT_DOUBLE_EQ(pid.Step(settings, 110.0, 100.0, 1.0), 50.0);
  EXPECT_DOUBLE_EQ(pid.Step(settings, 120.0, 100.0, 1.0), 100.0);
  EXPECT_DOUBLE_EQ(pid.Step(settings, 90.0, 100.0, 1.0), 0.0);
}

TEST(Pid, IntegralRepeatsTheProportionalPartInItsTime) {
  Pid pid;
  pid.Reset(100.0, 0.0);
  const PidSettings settings{.band = 100.0, .integral_time = 50.0, .derivative_time = 0.0};
  for (int second = 0; second < 50; ++second) {
    static_cast<void>(pid.Step(settings, 110.0, 100.0, 1.0));
  }
  EXPECT_NEAR(pid.Step(settings, 110.0, 100.0, 1.0), 20.0, 1e-6);
}

TEST(Pid, IntegralStandsStillWhileTheOutputIsFull) {
  Pid pid;
  pid.Reset(20.0, 0.0);
  const PidSettings settings{.band = 10.0, .integral_time = 10.0, .derivative_time = 0.0};
  for (int second = 0; second < 10000; ++second) {
    EXPECT_DOUBLE_EQ(pid.Step(settings, 200.0, 20.0, 1.0), 100.0);
  }
  EXPECT_LT(pid.Step(settings, 200.0, 201.0, 1.0), 1.0);
}

TEST(Pid, DerivativeWorksAgainstARisingValue) {
  Pid pid;
  pid.Reset(100.0, 50.0);
  const PidSettings settings{.band = 100.0, .integral_time = 0.0, .derivative_time = 20.0};
  const double still = pid.Step(settings, 150.0, 100.0, 1.0);
  EXPECT_LT(pid.Step(settings, 150.0, 101.0, 1.0), still - 1.0);
}

TEST(Pid, BandOfZeroSwitches) {
  Pid pid;
  EXPECT_DOUBLE_EQ(pid.Step({}, 100.0, 99.9, 1.0), 100.0);
  EXPECT_DOUBLE_EQ(pid.Step({}, 100.0, 100.1, 1.0), 0.0);
}

TEST(Controller, RefusesAStatusThatDoesNotExist) {
  Controller controller(20.0);
  EXPECT_FALSE(controller.SetStatus(6));
  EXPECT_FALSE(controller.SetStatus(-1));
  EXPECT_EQ(controller.Status(), 0);
}

TEST(Controller, RampMovesTheSetpointByTheIncrementEachSecond) {
  Controller controller(20.0);
  controller.SetSetpoint(100.0);
  ASSERT_TRUE(controller.SetStatus(kDynamic));
  for (int second = 0; second < 30; ++second) {
    controller.Step(Settings(), 100.0, false, 1.0);
  }
  EXPECT_NEAR(controller.Setpoint(), 103.0, 1e-9);
  EXPECT_EQ(controller.Status(), kDynamic);
}

TEST(Controller, RampStartsFromASetpointWrittenAfterTheStatus) {
  Controller controller(20.0);
  controller.SetSetpoint(200.0);
  ASSERT_TRUE(controller.SetStatus(kDynamic));
  controller.Step(Settings(), 50.0, false, 1.0);
  controller.SetSetpoint(50.0);
  for (int second = 0; second < 100; ++second) {
    controller.Step(Settings(), 50.0, false, 1.0);
  }
  EXPECT_NEAR(controller.Setpoint(), 60.0, 1e-9);
  EXPECT_EQ(controller.Status(), kDynamic);
}

TEST(Controller, RampAtItsFinalValueBecomesIsothermAfterItsPatience) {
  Controller controller(20.0);
  controller.SetSetpoint(200.0);
  ASSERT_TRUE(controller.SetStatus(kDynamic));
  for (int second = 0; second < 20; ++second) {
    controller.Step(Settings(), 200.0, false, 1.0);
    EXPECT_EQ(controller.Status(), kDynamic);
  }
  controller.Step(Settings(), 200.0, false, 1.0);
  EXPECT_EQ(controller.Status(), kIsotherm);
}

TEST(Controller, SetpointIsHeldBetweenTheLimits) {
  ControllerSettings settings = Settings();
  settings.pid = {.band = 100.0, .integral_time = 0.0, .derivative_time = 0.0};
  settings.lower_limit = 40.0;
  Controller controller(20.0);
  controller.SetSetpoint(10.0);
  ASSERT_TRUE(controller.SetStatus(kIsotherm));
  controller.Step(settings, 30.0, false, 1.0);
  EXPECT_DOUBLE_EQ(controller.Output(), 10.0);
}

TEST(Controller, SetpointFilterRisesWithItsTime) {
  ControllerSettings settings = Settings();
  settings.pid = {.band = 100.0, .integral_time = 0.0, .derivative_time = 0.0};
  settings.filter_time = 100.0;
  Controller controller(20.0);
  controller.SetSetpoint(150.0);
  ASSERT_TRUE(controller.SetStatus(kIsotherm));
  for (int second = 0; second < 100; ++second) {
    controller.Step(settings, 100.0, false, 1.0);
  }
  EXPECT_NEAR(controller.Output(), 50.0 * (1.0 - 1.0 / 2.718), 0.5);
}

TEST(Controller, NothingReachesTheHeaterWhenOff) {
  Controller controller(20.0);
  controller.SetOutput(100.0);
  EXPECT_DOUBLE_EQ(controller.HeaterPower(), 0.0);
}

}  // namespace
}  // namespace instrument
