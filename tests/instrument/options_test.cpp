#include "instrument/options.h"

#include <gtest/gtest.h>

namespace instrument {
namespace {

std::optional<Options> Parse(const std::vector<std::string>& arguments) {
  std::string error;
  auto options = ParseOptions(arguments, error);
  EXPECT_EQ(options.has_value(), error.empty());
  return options;
}

TEST(Options, WithoutAnyOneInstrumentHangsOnADirectLine) {
  const auto options = Parse({});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->mode, LineMode::kDirect);
  EXPECT_EQ(options->baud, 4800);
  ASSERT_EQ(options->instruments.size(), 1U);
  EXPECT_EQ(options->instruments[0].inet, 1);
}

TEST(Options, PluginLineRunsAt9600UnlessToldOtherwise) {
  EXPECT_EQ(Parse({"--mode", "plugin"})->baud, 9600);
  EXPECT_EQ(Parse({"--line-speed", "none", "--mode", "plugin"})->baud, 0);
  EXPECT_EQ(Parse({"--line-speed", "1200"})->baud, 1200);
}

TEST(Options, NumbersComeAsACountOrAList) {
  EXPECT_EQ(Parse({"--instruments", "3"})->instruments.size(), 3U);
  const auto options = Parse({"--inet", "5,2", "--fast", "5", "--ovens", "2=1"});
  ASSERT_EQ(options->instruments.size(), 2U);
  EXPECT_EQ(options->instruments[0].inet, 2);
  EXPECT_EQ(options->instruments[0].ovens, 1);
  EXPECT_FALSE(options->instruments[0].fast);
  EXPECT_TRUE(options->instruments[1].fast);
}

TEST(Options, TestsOfTheFirmwareGiveWhatTheyAreTold) {
  const auto options = Parse({"--inet", "2,4", "--ram-test-clears", "4", "--selftest", "ram=4660",
                              "--selftest", "4:watchdog=hang", "--selftest", "2:eprom=-1"});
  ASSERT_TRUE(options);
  EXPECT_FALSE(options->instruments[0].ram_test_clears);
  EXPECT_TRUE(options->instruments[1].ram_test_clears);
  ASSERT_EQ(options->tests.size(), 3U);
  EXPECT_EQ(options->tests[0].inet, 0);
  EXPECT_EQ(options->tests[0].command, SelfTest::kRam);
  EXPECT_EQ(options->tests[0].result.word, 4660);
  EXPECT_EQ(options->tests[1].inet, 4);
  EXPECT_EQ(options->tests[1].command, SelfTest::kWatchdog);
  EXPECT_TRUE(options->tests[1].result.hangs);
  EXPECT_EQ(options->tests[2].result.word, -1);
}

TEST(Options, OvensBeginAsTold) {
  const auto options = Parse(
      {"--warm", "--oven", "1.1=hold:200", "--oven", "1.2=ramp:300:0.08", "--oven", "1.3=off"});
  ASSERT_TRUE(options);
  ASSERT_EQ(options->ovens.size(), 3U);
  EXPECT_EQ(options->ovens[0].start.kind, OvenStart::Kind::kHold);
  EXPECT_TRUE(options->ovens[0].start.warm);
  EXPECT_EQ(options->ovens[1].start.controller, 2);
  EXPECT_DOUBLE_EQ(options->ovens[1].start.rate, 0.08);
  EXPECT_EQ(options->ovens[2].start.kind, OvenStart::Kind::kOff);
}

TEST(Options, SensorsClimb) {
  const auto options = Parse({"--instruments", "2", "--climb", "2=0.003"});
  ASSERT_TRUE(options);
  ASSERT_EQ(options->climbs.size(), 1U);
  EXPECT_EQ(options->climbs[0].inet, 2);
  EXPECT_DOUBLE_EQ(options->climbs[0].rate, 0.003);
}

TEST(Options, SamplingOfAllInputsOrOne) {
  const auto options = Parse({"--sample", "1=10", "--sample", "1.7=20", "--backlog", "1=500"});
  ASSERT_EQ(options->sampling.size(), 2U);
  EXPECT_FALSE(options->sampling[0].input);
  EXPECT_EQ(options->sampling[1].input, 7);
  EXPECT_EQ(options->backlog.at(0).sets, 500);
}

TEST(Options, InputsAreSampledTogetherUnlessToldOtherwise) {
  EXPECT_EQ(Parse({})->instruments[0].scan.order, SamplingOrder::kTogether);
  EXPECT_EQ(Parse({})->instruments[0].scan.distance, std::chrono::milliseconds(0));
}

TEST(Options, OrderAndDistanceOfSamplingForAllOrOneInstrument) {
  const auto options =
      Parse({"--instruments", "3", "--sampling-order", "descending", "--sampling-distance", "30",
             "--sampling-order", "2:random", "--sampling-distance", "3:500"});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->instruments[0].scan.order, SamplingOrder::kDescending);
  EXPECT_EQ(options->instruments[0].scan.distance, std::chrono::milliseconds(30));
  EXPECT_EQ(options->instruments[1].scan.order, SamplingOrder::kRandom);
  EXPECT_EQ(options->instruments[1].scan.distance, std::chrono::milliseconds(30));
  EXPECT_EQ(options->instruments[2].scan.order, SamplingOrder::kDescending);
  EXPECT_EQ(options->instruments[2].scan.distance, std::chrono::milliseconds(500));
  EXPECT_EQ(Parse({"--sampling-order", "ascending"})->instruments[0].scan.order,
            SamplingOrder::kAscending);
}

TEST(Options, RefusesASamplingTimeIntoWhichTheInputsDoNotFit) {
  std::string error;
  EXPECT_FALSE(ParseOptions({"--fast", "1", "--sampling-order", "ascending", "--sampling-distance",
                             "500", "--sample", "1.3=7"},
                            error));
  EXPECT_EQ(error,
            "the inputs of instrument 1 are sampled within 7000 ms, which does not fit into 7 s");
  EXPECT_TRUE(
      Parse({"--sampling-order", "ascending", "--sampling-distance", "500", "--sample", "1=10"}));
  EXPECT_TRUE(Parse({"--sampling-distance", "500", "--fast", "1", "--sample", "1=1"}));
}

TEST(Options, FaultsForAllOrOneInstrument) {
  const auto options = Parse({"--instruments", "2", "--fault", "lost-reply=0.2", "--fault",
                              "2:silence", "--fault", "1:late-reply=300"});
  ASSERT_EQ(options->faults.size(), 3U);
  EXPECT_EQ(options->faults[0].inet, 0);
  EXPECT_DOUBLE_EQ(options->faults[0].level.probability, 0.2);
  EXPECT_EQ(options->faults[1].inet, 2);
  EXPECT_EQ(options->faults[2].level.time.count(), 300);
}

TEST(Options, SpeedupWidensTheHostsPace) {
  EXPECT_DOUBLE_EQ(Parse({})->instruments[0].host_pace, 1.0);
  EXPECT_DOUBLE_EQ(Parse({"--speedup", "60"})->instruments[0].host_pace, 30.0);
}

TEST(Options, ClientJoinsItsWords) {
  const auto options = Parse({"--send", "/tmp/socket", "fault", "1", "silence"});
  EXPECT_EQ(options->control_path, "/tmp/socket");
  EXPECT_EQ(options->command, "fault 1 silence");
}

TEST(Options, RefusesWhatMakesNoSense) {
  const std::vector<std::vector<std::string>> bad{{"--mode", "usb"},
                                                  {"--instruments", "7"},
                                                  {"--instruments", "0"},
                                                  {"--inet", "1,,2"},
                                                  {"--inet", "0"},
                                                  {"--fast"},
                                                  {"--ram-test-clears", "x"},
                                                  {"--selftest", "ram"},
                                                  {"--selftest", "disk=0"},
                                                  {"--selftest", "ram=65536"},
                                                  {"--selftest", "7:ram=0"},
                                                  {"--selftest", "2:ram=0"},
                                                  {"--oven", "1.5=off"},
                                                  {"--oven", "1.1=hold"},
                                                  {"--oven", "1.1=ramp:300"},
                                                  {"--oven", "1.1=ramp:300:0.004"},
                                                  {"--oven", "2.1=off"},
                                                  {"--climb", "1"},
                                                  {"--climb", "1=0"},
                                                  {"--climb", "2=0.1"},
                                                  {"--oven", "1.1=hold:nan"},
                                                  {"--sample", "1=0"},
                                                  {"--sample", "1.16=10"},
                                                  {"--backlog", "1=897"},
                                                  {"--sampling-order", "sideways"},
                                                  {"--sampling-order", "7:random"},
                                                  {"--sampling-distance", "501"},
                                                  {"--sampling-distance", "-1"},
                                                  {"--sampling-distance", "1:"},
                                                  {"--speedup", "0"},
                                                  {"--speedup", "inf"},
                                                  {"--fault", "tired"},
                                                  {"--fault", "3:silence"},
                                                  {"--line-speed", "1"},
                                                  {"--start-temp", "warm"},
                                                  {"--seed", "-1"},
                                                  {"--drift", "101"},
                                                  {"--drift", "some"},
                                                  {"--link", ""},
                                                  {"--unknown", "x"},
                                                  {"--send", "/tmp/socket"},
                                                  {"--ovens", "1=5"},
                                                  {"--fault", "lost-reply=1.1"},
                                                  {"--link"}};
  for (const auto& arguments : bad) {
    std::string error;
    EXPECT_FALSE(ParseOptions(arguments, error)) << arguments[0] << ' ' << arguments.back();
    EXPECT_FALSE(error.empty());
  }
}

}  // namespace
}  // namespace instrument
