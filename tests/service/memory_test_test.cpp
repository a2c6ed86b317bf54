#include "service/memory_test.h"

#include <gtest/gtest.h>

#include "tests/service/failed_exchange.h"
#include "tests/service/service_line.h"

namespace tavrel {
namespace {

// The memory test, with an instrument whose firmware carries a command out at once.
// Levers: failed (address that a test finds, by command), takes (readings of the mailbox until the
// command is done, or 0), and those of the line.
class TheMemoryTest : public ServiceLine {
 protected:
  TheMemoryTest() {
    on_command = [this](const std::string& words) { Work(words); };
  }
  void Work(const std::string& words) {
    const int inet = words[1] - '0' + 1;
    if (words[0] != 'G' || words[2] != '0') {
      return;
    }
    if (words[3] == '=') {
      left = takes;
    }
    const int command = Word(inet, 'G', 0);
    if (--left < 0 && command != 0) {
      Word(inet, 'G', 8) = failed[command];
      Word(inet, 'G', 9) = version;
      Word(inet, 'G', 0) = 0;
    }
  }
  [[nodiscard]] std::string Shown() const {
    const MemoryTestValues& now = screen->Values();
    return now.ram.text + ", " + now.eprom.text + ", " + now.version + ", " + now.tests;
  }

  std::map<int, std::int16_t> failed;
  std::int16_t version = 0x0115;
  int takes = 0;
  int left = 0;
  MemoryTest* screen = &bench.memory_test;
};

TEST_F(TheMemoryTest, GoesItsRoundsOnADirectLine) {
  takes = 2;
  StartOn(0, 3);
  Open(*screen);
  EXPECT_EQ(screen->Caption(), " Tavrel-3  /  Test  of  Memory");
  EXPECT_EQ(bench.state.ActiveView, View::kAllMem);
  EXPECT_EQ(Shown(), "?, ?, ?, ?");
  const Texts round = {"G20=6\r", "G20?", "G20?", "G28?", "G20=9\r",
                       "G20?",    "G20?", "G28?", "G29?"};
  EXPECT_EQ(Pulses(9), round);
  EXPECT_EQ(Shown(), "passed, passed, 0115, 1");
  EXPECT_EQ(Pulses(9), round);
  EXPECT_EQ(Shown(), "passed, passed, 0115, 2");
}

TEST_F(TheMemoryTest, ClearsAPluginLineBeforeEachRound) {
  StartOn(2, 6);
  Open(*screen);
  const Texts round = {kEsc,       "n5v0=6\r", "n5v0?", "n5v0?", "n5v8?",
                       "n5v0=9\r", "n5v0?",    "n5v0?", "n5v8?", "n5v9?"};
  takes = 2;
  EXPECT_EQ(Pulses(9), round);
  EXPECT_EQ(Pulses(9), round);
}

TEST_F(TheMemoryTest, ShowsEachVerdictWhenItIsThere) {
  failed = {{6, 0x2F}, {9, -2}};
  version = 0x12;
  StartOn(0, 1);
  Open(*screen);
  Pulses(3);
  EXPECT_EQ(Shown(), "Failure at 2F, ?, ?, ?");
  EXPECT_EQ(screen->Values().ram.kind, MemoryVerdict::Kind::kFailed);
  EXPECT_EQ(screen->Values().eprom.kind, MemoryVerdict::Kind::kUnknown);
  Pulses(3);
  EXPECT_EQ(Shown(), "Failure at 2F, Failure at FFFE, ?, ?");
  Pulses(1);
  EXPECT_EQ(Shown(), "Failure at 2F, Failure at FFFE, 0012, 1");
  failed.clear();
  Pulses(7);
  EXPECT_EQ(Shown(), "passed, passed, 0012, 2") << "a later passed replaces it";
  EXPECT_EQ(screen->Values().ram.kind, MemoryVerdict::Kind::kPassed);
}

TEST_F(TheMemoryTest, RestsBetweenTwoRoundsForAFifthOfASecond) {
  StartOn(0, 1);
  Open(*screen);
  Pulses(6);
  ASSERT_EQ(Pulses(1), Texts{"G09?"});
  const auto end = bench.clock.Elapsed();
  EXPECT_EQ(Pulses(1), Texts{"G00=6\r"});
  const auto pause = bench.clock.Elapsed() - end;
  EXPECT_GE(pause, std::chrono::milliseconds(200));
  EXPECT_LE(pause, std::chrono::milliseconds(350));
}

class TheMemoryTestAfterAFailure : public TheMemoryTest,
                                   public testing::WithParamInterface<FailedExchange> {};

TEST_P(TheMemoryTestAfterAFailure, RepeatsTheStepAndComesToTheSameEnd) {
  failed = {{6, 0x4711}};
  takes = 2;
  StartOn(GetParam().com_mode, 4);
  Open(*screen);
  FailExchange(GetParam().exchange, GetParam().failure);
  for (int pulse = 0; pulse < 12 && screen->Values().tests == "?"; ++pulse) {
    Pulses(1);
    if (pulse == GetParam().exchange) {
      EXPECT_FALSE(screen->ComIcon());
    }
  }
  EXPECT_EQ(Shown(), "Failure at 4711, passed, 0115, 1");
  EXPECT_FALSE(screen->ComIcon());
}

INSTANTIATE_TEST_SUITE_P(EachExchange, TheMemoryTestAfterAFailure,
                         testing::ValuesIn(EachExchange({0, 1}, 9)), NameOfExchange);

TEST_F(TheMemoryTest, FallsBackToItsFirstStepWithTheThirdSilenceAndEachFurtherOne) {
  StartOn(1, 1);
  Open(*screen);
  takes = 100;
  EXPECT_EQ(Pulses(2), (Texts{kEsc, "nv0=6\r", "nv0?"}));
  bench.line.silent = {1};
  EXPECT_EQ(Pulses(5), (Texts{"nv0?", "nv0?", "nv0?", kEsc, "nv0=6\r", kEsc, "nv0=6\r"}));
  EXPECT_TRUE(screen->ComIcon());
  EXPECT_EQ(bench.link_watch.LinkMisses, 2);
  bench.line.silent.clear();
  takes = 0;
  Pulses(7);
  EXPECT_FALSE(screen->ComIcon());
  EXPECT_EQ(Shown(), "passed, passed, 0115, 1");
}

TEST_F(TheMemoryTest, WaitsForAPortThatIsPulledAndGoesOnWhenItIsBack) {
  takes = 3;
  StartOn(0, 1);
  Open(*screen);
  Pulses(2);
  bench.port.Vanish();
  bench.Run(1);
  EXPECT_FALSE(bench.link.PortOpen);
  EXPECT_EQ(Shown(), "?, ?, ?, ?");
  bench.Run(12);
  EXPECT_EQ(Shown().substr(0, 20), "passed, passed, 0115");
}

TEST_F(TheMemoryTest, SaysNothingNewWhenItIsLeftAndBeginsAnewNextTime) {
  takes = 5;
  failed = {{6, 1}};
  StartOn(0, 1);
  Open(*screen);
  Pulses(9);
  ASSERT_EQ(Shown(), "Failure at 1, ?, ?, ?");
  screen->Quit();
  EXPECT_FALSE(screen->IsOpen());
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  EXPECT_EQ(Shown(), "?, ?, ?, ?");
  EXPECT_EQ(screen->Values().ram.kind, MemoryVerdict::Kind::kUnknown);
  bench.port.sent.clear();
  screen->Step();
  EXPECT_TRUE(bench.port.sent.empty()) << "the mailbox is left alone";
  Open(*screen);
  EXPECT_EQ(Pulses(1), Texts{"G00=6\r"});
}

TEST_F(TheMemoryTest, CountsItsRoundsFromOneEachTimeItIsOpened) {
  StartOn(0, 1);
  Open(*screen);
  Pulses(14);
  ASSERT_EQ(Shown(), "passed, passed, 0115, 2");
  screen->Quit();
  Open(*screen);
  Pulses(7);
  EXPECT_EQ(Shown(), "passed, passed, 0115, 1");
}

TEST_F(TheMemoryTest, PassesAtOnceInSimulation) {
  bench.state.Settings.CommPort = "----";
  StartOn(0, 5);
  Open(*screen);
  bench.Run(0.35);
  EXPECT_EQ(Shown(), "passed, passed, 0115, 1") << "seven turns";
  bench.Run(10);
  EXPECT_GT(std::stoi(screen->Values().tests), 15);
  EXPECT_TRUE(bench.port.sent.empty());
}

// The cycle stands from 86300 s on, the test does not; what it waits for is elapsed time.
TEST_F(TheMemoryTest, GoesOnOverMidnightAndTheOtherScreensStepInTheMorning) {
  takes = 10;
  bench.clock.timer_at_start = 86290;
  StartOn(0, 2);
  Open(*screen);
  int before = 0;
  for (int part = 0; part < 13; ++part) {
    bench.Run(10);
    const int tests = std::stoi(screen->Values().tests);
    EXPECT_GT(tests, before + 2) << part;
    before = tests;
  }
  EXPECT_LT(bench.clock.Timer(), 100) << "it is the next day";
  EXPECT_EQ(Shown().substr(0, 20), "passed, passed, 0115");
  screen->Quit();
  Open(bench.communication_test);
  bench.Run(1);
  EXPECT_GT(bench.communication_test.Values().Lbl_W[0], 5U);
}

TEST_F(TheMemoryTest, InTheEveningDoesNotKeepTheScreensOfTheMorningWaiting) {
  bench.clock.timer_at_start = 86200;
  StartOn(0, 2);
  Open(*screen);
  bench.Run(50);
  screen->Quit();
  bench.clock.AdvanceSeconds(8 * 3600.0);
  Open(bench.communication_test);
  bench.Run(1);
  EXPECT_GT(bench.communication_test.Values().Lbl_W[0], 5U);
}

TEST_F(TheMemoryTest, AsksWhileTheInstrumentRecordsOrControlsAndStaysClosedAtNo) {
  bench.Install(1, "M260301A.OVN", BenchProgram::Header(2, 1, 3, true));
  bench.Install(5, "M260302A.OVN", BenchProgram::Header(2, 2, 3, false));
  bench.Install(8, "M260303A.OVN", BenchProgram::Header(2, 3, 3, false));
  bench.Install(11, "M260304A.OVN", BenchProgram::Header(3, 1, 3, true));
  bench.Install(12, "M260305A.OVN", BenchProgram::Header(2, 4, 15, true));
  bench.line.registers[{2, 'Z', 2}] = 2;
  bench.line.registers[{2, 'Z', 4}] = 3;
  StartOn(0, 2);
  bench.Run(2);
  const std::array names = {"Tube", "Chamber", "Micro", "Other", "Autoclave"};
  const std::array slots = {1, 5, 8, 11, 12};
  for (std::size_t place = 0; place < slots.size(); ++place) {
    bench.state.Unit[slots.at(place)].SetApparatusName(names.at(place));
  }
  bench.state.ProgRunning[8] = true;
  bench.dialogs.boxes.clear();
  bench.dialogs.yes = false;
  screen->Open();
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  const Notice& box = bench.dialogs.boxes.front();
  EXPECT_EQ(box.Text.substr(0, box.Text.find("During")),
            "Tavrel-2 is at work:\n\nrow 1:  Tube  (records)\nrow 5:  Chamber  (controls)\n"
            "row 8:  Micro  (controls)\nrow 12:  Autoclave  (records, controls)\n\n");
  EXPECT_TRUE(box.PresetIsNo);
  EXPECT_FALSE(screen->IsOpen());
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  bench.state.Settings.HelpLang = "German";
  screen->Open();
  const std::string& german = bench.dialogs.boxes.back().Text;
  EXPECT_EQ(german.substr(0, german.find("Während")),
            "Tavrel-2 arbeitet:\n\nZeile 1:  Tube  (zeichnet auf)\nZeile 5:  Chamber  (regelt)\n"
            "Zeile 8:  Micro  (regelt)\nZeile 12:  Autoclave  (zeichnet auf, regelt)\n\n");
  bench.dialogs.yes = true;
  bench.dialogs.on_box = [this] { bench.state.ActiveInet = 3; };
  Open(*screen);
  EXPECT_EQ(screen->Inet(), 2) << "the one that was asked about";
  EXPECT_EQ(Pulses(1).front().substr(0, 3), "G10");
}

TEST_F(TheMemoryTest, DoesNotAskAboutTestsThatAreOff) {
  bench.Install(4, "M260301A.OVN", BenchProgram::Header(2, 1, 3, false));
  bench.Install(6, "M260302A.OVN", BenchProgram::Header(1, 1, 3, true));
  StartOn(0, 2);
  bench.Run(2);
  bench.dialogs.boxes.clear();
  Open(*screen);
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_TRUE(screen->IsOpen());
}

}  // namespace
}  // namespace tavrel
