#include "service/communication_test.h"

#include <gtest/gtest.h>

#include <deque>

#include "tests/service/service_line.h"

namespace tavrel {
namespace {

// Levers: numbers (what the random numbers are, in their order; 0.5 behind them), and those of the
// line.
class TheCommunicationTest : public ServiceLine {
 protected:
  double Next() {
    if (numbers.empty()) {
      return 0.5;
    }
    const double number = numbers.front();
    numbers.pop_front();
    return number;
  }
  [[nodiscard]] std::vector<std::uint32_t> Writes() const {
    return {screen.Values().Lbl_W.begin(), screen.Values().Lbl_W.end()};
  }
  [[nodiscard]] std::vector<std::uint32_t> Reads() const {
    return {screen.Values().Lbl_R.begin(), screen.Values().Lbl_R.end()};
  }

  using Counts = std::vector<std::uint32_t>;
  std::deque<double> numbers;
  CommunicationTest screen{bench.service, [this] { return Next(); }};
};

TEST_F(TheCommunicationTest, WritesAndReadsTheWordOfADirectLine) {
  StartOn(0, 3);
  numbers = {0, 0.5, 0.99999};
  Open(screen);
  EXPECT_EQ(bench.state.ActiveView, View::kAllCom);
  EXPECT_EQ(screen.Caption(), " Tavrel-3  /  COM1: 4800,n,8,2");
  screen.Step();  // no ESC on a direct line
  EXPECT_EQ(Pulses(6), (Texts{"V26=8000\r", "V26?", "V26=FFFF\r", "V26?", "V26=7FFE\r", "V26?"}));
  EXPECT_EQ(Writes(), (Counts{3, 0, 0, 0}));
  EXPECT_EQ(Reads(), (Counts{3, 0, 0, 0, 0, 0}));
  EXPECT_EQ(screen.Values().Lbl_F, 0U);
  EXPECT_EQ(bench.events.beeps, 0);
}

TEST_F(TheCommunicationTest, HasAnotherWordOnEachPluginLineAndClearsTheLineFirst) {
  for (const int com_mode : {1, 2}) {
    StartOn(com_mode, com_mode);
    Open(screen);
    const std::string address = com_mode == 1 ? "nvF7" : "n1vF7";
    EXPECT_EQ(Pulses(3), (Texts{kEsc, address + "=FFFF\r", address + "?"})) << com_mode;
    EXPECT_EQ(screen.Caption(), " Tavrel-" + std::to_string(com_mode) + "  /  COM1: 9600,e,8,1");
    screen.CloseNow();
  }
}

TEST_F(TheCommunicationTest, TakesTheFirstInstrumentWhileNoneIsSelected) {
  StartOn(0, 0);
  Open(screen);
  screen.Step();
  EXPECT_EQ(Pulses(1), Texts{"V06=FFFF\r"});
}

TEST_F(TheCommunicationTest, WritesAnotherValueWhenAWriteFailed) {
  StartOn(0, 1);
  numbers = {0, 0.25, 0.75, 0.5};
  Open(screen);
  screen.Step();
  replies = {"", "?", "good"};
  EXPECT_EQ(Pulses(4), (Texts{"V06=8000\r", "V06=BFFF\r", "V06=3FFF\r", "V06?"}));
  EXPECT_EQ(Writes(), (Counts{3, 1, 0, 1}));
  EXPECT_EQ(Reads(), (Counts{1, 0, 0, 0, 0, 0}));
  EXPECT_EQ(screen.Values().Lbl_F, 0U);
}

TEST_F(TheCommunicationTest, RepeatsOnlyTheReadingThatFailed) {
  StartOn(0, 1);
  numbers = {0.75, 0.25};
  Open(screen);
  screen.Step();
  replies = {"good", "", "?", "3GFF\r", "3FF\r", "", "good"};
  EXPECT_EQ(Pulses(8),
            (Texts{"V06=3FFF\r", "V06?", "V06?", "V06?", "V06?", "V06?", "V06?", "V06=BFFF\r"}));
  EXPECT_EQ(Writes(), (Counts{2, 0, 0, 0}));
  EXPECT_EQ(Reads(), (Counts{6, 2, 0, 1, 1, 1}));
  EXPECT_EQ(screen.Values().Lbl_F, 0U);
  EXPECT_FALSE(screen.ComIcon());
}

struct Reply {
  const char* characters;
  const char* shown;
  std::size_t counter;
};

class TheCommunicationTestShows : public TheCommunicationTest,
                                  public testing::WithParamInterface<Reply> {};

TEST_P(TheCommunicationTestShows, AReplyThatIsNoValue) {
  StartOn(1, 6);
  Open(screen);
  replies = {"good", GetParam().characters};
  Pulses(3);
  EXPECT_EQ(screen.Values().Lbl_reply, GetParam().shown);
  Counts counts = {1, 0, 0, 0, 0, 0};
  counts.at(GetParam().counter) = 1;
  EXPECT_EQ(Reads(), counts);
  EXPECT_EQ(Pulses(1), Texts{"n5vF7?"}) << "the step stays";
  EXPECT_EQ(screen.Values().Lbl_reply, GetParam().shown) << "the last one stands";
}

INSTANTIATE_TEST_SUITE_P(Replies, TheCommunicationTestShows,
                         testing::Values(Reply{"12G4\r", "12G4!", 4}, Reply{"ab12\r", "ab12!", 4},
                                         Reply{"123\r", "123!", 5}, Reply{"12\r", "12!", 5},
                                         Reply{"\r", "!", 5}, Reply{"12345\r", "12345!", 5},
                                         Reply{"1234\r1234\r", "1234!1234\\0D", 5},
                                         Reply{"\x1b"
                                               "12\r",
                                               "#12!", 5},
                                         Reply{"\xff~1234\r", "\\FF~1234!", 5},
                                         Reply{"\x1b\x1b\r", "#\\1B!", 5}));

TEST_F(TheCommunicationTest, KeepsTheLastValueThatDiffersUntilItIsReset) {
  StartOn(0, 1);
  numbers = {0.75, 0.25, 0.5, 0};
  Open(screen);
  screen.Step();
  replies = {"good", "3FFE\r", "good", "good", "good", "0001\r"};
  Pulses(2);
  EXPECT_EQ(screen.Values().Lbl_F, 1U);
  EXPECT_EQ(screen.Values().Lbl_is, "3FFE");
  EXPECT_EQ(screen.Values().Lbl_should, "3FFF");
  EXPECT_EQ(bench.events.beeps, 1);
  Pulses(2);
  EXPECT_EQ(screen.Values().Lbl_is, "3FFE") << "a good value does not clear it";
  Pulses(2);
  EXPECT_EQ(screen.Values().Lbl_F, 2U);
  EXPECT_EQ(screen.Values().Lbl_is, "1");
  EXPECT_EQ(screen.Values().Lbl_should, "FFFF");
  EXPECT_EQ(bench.events.beeps, 2);
  screen.CmdReset_Click();
  EXPECT_EQ(screen.Values().Lbl_is, "");
  EXPECT_EQ(screen.Values().Lbl_should, "");
  EXPECT_EQ(screen.Values().Lbl_F, 0U);
  EXPECT_EQ(Writes(), (Counts{0, 0, 0, 0}));
  EXPECT_EQ(Reads(), (Counts{0, 0, 0, 0, 0, 0}));
}

TEST_F(TheCommunicationTest, BeginsWithItsFirstStepAfterAResetAndAnOpening) {
  StartOn(1, 1);
  Open(screen);
  EXPECT_EQ(Pulses(2), (Texts{kEsc, "nvF7=FFFF\r"}));
  screen.CmdReset_Click();
  EXPECT_EQ(Pulses(2), (Texts{kEsc, "nvF7=FFFF\r"}));
  screen.Quit();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  Open(screen);
  EXPECT_EQ(Writes(), (Counts{0, 0, 0, 0}));
  EXPECT_EQ(Pulses(2), (Texts{kEsc, "nvF7=FFFF\r"}));
}

// Behind the silence that says so the count goes on from 1: every second one says so again.
TEST_F(TheCommunicationTest, FallsBackToItsFirstStepWithTheThirdSilenceAndEachSecondOneBehindIt) {
  StartOn(1, 1);
  Open(screen);
  replies = {"good"};
  Pulses(2);
  bench.line.silent = {1};
  EXPECT_EQ(Pulses(9), (Texts{"nvF7?", "nvF7?", "nvF7?", kEsc, "nvF7=FFFF\r", "nvF7=FFFF\r", kEsc,
                              "nvF7=FFFF\r", "nvF7=FFFF\r"}));
  EXPECT_TRUE(screen.ComIcon());
  EXPECT_EQ(bench.link_watch.LinkMisses, 1);
  EXPECT_EQ(Writes(), (Counts{5, 4, 0, 0}));
  EXPECT_EQ(Reads(), (Counts{3, 3, 0, 0, 0, 0}));
  bench.line.silent.clear();
  EXPECT_EQ(Pulses(3), (Texts{kEsc, "nvF7=FFFF\r", "nvF7?"}));
  EXPECT_FALSE(screen.ComIcon());
  EXPECT_EQ(bench.link_watch.LinkMisses, 0);
}

TEST_F(TheCommunicationTest, HidesTheSignBehindEveryAnswerThatIsNoSilence) {
  for (const char* answer : {"?", "12\r", "12G4\r", "\x1b"}) {
    StartOn(1, 1);
    Open(screen);
    Pulses(2);
    bench.line.silent = {1};
    Pulses(3);
    ASSERT_TRUE(screen.ComIcon());
    bench.line.silent.clear();
    replies = {"good", answer};
    Pulses(2);
    EXPECT_FALSE(screen.ComIcon()) << "the write";
    Pulses(1);
    EXPECT_FALSE(screen.ComIcon()) << answer;
    screen.CloseNow();
  }
}

TEST_F(TheCommunicationTest, CountsAPortThatIsPulledAndGoesOnWhenItIsBack) {
  StartOn(0, 2);
  Open(screen);
  screen.Step();
  Pulses(1);
  bench.port.Vanish();
  screen.Step();
  EXPECT_EQ(Reads(), (Counts{1, 0, 1, 0, 0, 0}));
  EXPECT_EQ(screen.Caption(), " Tavrel-2  /  COM1: (lost)");
  screen.Step();
  EXPECT_EQ(Reads(), (Counts{1, 0, 1, 0, 0, 0})) << "the port is not usable";
  bench.Run(11);
  EXPECT_GT(Reads().front(), 2U);
  EXPECT_EQ(Reads()[1] + Reads()[2], 1U);
  EXPECT_EQ(screen.Values().Lbl_F, 0U);
}

TEST_F(TheCommunicationTest, CountsAPortThatIsPulledBeforeAWrite) {
  StartOn(0, 2);
  Open(screen);
  screen.Step();
  bench.port.Vanish();
  screen.Step();
  EXPECT_EQ(Writes(), (Counts{1, 0, 1, 0}));
  EXPECT_EQ(Reads(), (Counts{0, 0, 0, 0, 0, 0}));
}

TEST_F(TheCommunicationTest, CountsALateReplyOnceAndWithTheWriteThatItKeepsBack) {
  StartOn(0, 1);
  Open(screen);
  screen.Step();
  replies = {"good", ""};
  Pulses(1);
  bench.port.Arrive(std::chrono::milliseconds(150), "FFFF\r");
  Pulses(1);
  EXPECT_EQ(Reads(), (Counts{1, 1, 0, 0, 0, 0}));
  bench.Run(0.4);
  EXPECT_EQ(Reads()[5], 1U) << "the late one is in the way of the next";
  EXPECT_EQ(screen.Values().Lbl_reply, "FFFF!");
  EXPECT_EQ(screen.Values().Lbl_F, 0U);
}

TEST_F(TheCommunicationTest, GoesOnInSimulation) {
  bench.state.Settings.CommPort = "----";
  StartOn(0, 4);
  Open(screen);
  EXPECT_EQ(screen.Caption(), " Tavrel-4  /  (simulated)");
  bench.Run(1.05);  // 21 turns, the first of which clears the line
  EXPECT_EQ(Writes(), (Counts{10, 0, 0, 0}));
  EXPECT_EQ(Reads(), (Counts{10, 0, 0, 0, 0, 0}));
  EXPECT_EQ(screen.Values().Lbl_F, 0U);
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(TheCommunicationTest, GoesOnWhileTheCycleStandsAtMidnight) {
  bench.clock.timer_at_start = 86300;
  StartOn(0, 1);
  Open(screen);
  bench.Run(120);
  EXPECT_GT(Writes().front(), 900U);
  EXPECT_EQ(screen.Values().Lbl_F, 0U);
}

TEST(RandomNumbers, AreTheSameForTheSameSeed) {
  const auto first = RandomNumbers(7);
  const auto second = RandomNumbers(7);
  const auto other = RandomNumbers(8);
  int differences = 0;
  for (int number = 0; number < 1000; ++number) {
    const double value = first();
    EXPECT_GE(value, 0);
    EXPECT_LT(value, 1);
    EXPECT_EQ(value, second());
    differences += value == other() ? 0 : 1;
  }
  EXPECT_GT(differences, 900);
}

}  // namespace
}  // namespace tavrel
