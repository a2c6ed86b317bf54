// The tests of the service and the quality data against virtual instruments.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <sstream>

#include "tests/truth/comparison.h"
#include "tests/truth/told_texts.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

using Telegrams = std::vector<std::string>;

constexpr int kOwner = 6;  // instrument of the installed test, which is not on the line

class ServiceOnTheWire : public testing::Test {
 protected:
  void Start(bool plugin, const std::vector<std::string>& options) {
    std::vector<std::string> all = {"--line-speed", "none"};
    all.insert(all.end(), options.begin(), options.end());
    instrument = std::make_unique<LiveInstrument>(program.home, plugin, all);
    ASSERT_TRUE(instrument->IsUp());
    program.regional.date.clear();
    program.Start(plugin, kOvenFile, BenchProgram::Header(kOwner, 1, 2, false));
  }
  void Open(ServiceScreen& screen, int inet) {
    program.state.ActiveInet = inet;
    turn.reset();
    screen.Open();
    ASSERT_TRUE(screen.IsOpen());
    instrument->Forget();
    turn = std::make_unique<SteppedScreens::Turn>(program.stepped, screen.Number(),
                                                  [&screen] { screen.Step(); });
  }
  // The commands for the screen: another instrument is asked for the sheet and by the pump.
  [[nodiscard]] Telegrams Sent(std::size_t count, const std::string& of_others = "") {
    Telegrams telegrams = instrument->Telegrams(count);
    std::erase_if(telegrams, [&](const std::string& telegram) {
      return !of_others.empty() && telegram.find(of_others) != std::string::npos;
    });
    telegrams.resize(std::min(telegrams.size(), count));
    return telegrams;
  }
  [[nodiscard]] bool RunUntil(const std::function<bool()>& is_over) {
    return program.RunUntil(is_over);
  }

  WireProgram program{1};
  std::unique_ptr<LiveInstrument> instrument;
  std::unique_ptr<SteppedScreens::Turn> turn;
};

// On a direct line and on a plug-in line.
class ServiceOnEitherLine : public ServiceOnTheWire, public testing::WithParamInterface<bool> {};

INSTANTIATE_TEST_SUITE_P(Lines, ServiceOnEitherLine, testing::Bool(),
                         [](const auto& each) { return each.param ? "plugin" : "direct"; });

// Commands of which those for the mailbox may be repeated until it reads 0.
Telegrams WithoutRepeats(Telegrams telegrams) {
  telegrams.erase(std::unique(telegrams.begin(), telegrams.end()), telegrams.end());
  return telegrams;
}

TEST_P(ServiceOnEitherLine, CommunicationTestFindsNoFaultOnAGoodLine) {
  const bool plugin = GetParam();
  Start(plugin, {"--inet", "1,3"});
  const CommunicationValues& now = program.communication_test.Values();
  Open(program.communication_test, 3);
  ASSERT_TRUE(RunUntil([&] { return now.Lbl_R[0] >= 50; }));
  Telegrams sent = Sent(4);
  if (plugin) {
    EXPECT_EQ(sent.front()[0], '\x1b');
    sent.front().erase(0, 1);
  }
  const std::string word = plugin ? "n2vF7" : "V26";
  ASSERT_EQ(sent.size(), 4U);
  EXPECT_EQ(sent[0].substr(0, word.size() + 1), word + "=");
  EXPECT_EQ(sent[1], word + "?");
  EXPECT_EQ(sent[2].substr(0, word.size() + 1), word + "=");
  EXPECT_EQ(sent[3], word + "?");
  EXPECT_NE(sent[0], sent[2]);
  EXPECT_EQ(now.Lbl_F, 0U);
  for (std::size_t fault = 1; fault < now.Lbl_R.size(); ++fault) {
    EXPECT_EQ(now.Lbl_R.at(fault), 0U) << fault;
  }
  turn.reset();
  program.communication_test.Quit();
}

TEST_F(ServiceOnTheWire, CommunicationTestCountsEachKindOfFault) {
  struct Fault {
    const char* name;
    std::size_t counter;
    const char* reply;  // the end of what is shown
  };
  Start(true, {});
  const CommunicationValues& now = program.communication_test.Values();
  for (const Fault& fault :
       {Fault{"refusal", 3, ""}, Fault{"lost-reply", 1, ""}, Fault{"lost-request", 1, ""},
        Fault{"wrong-length", 5, "!"}, Fault{"cut-value", 5, "!"}, Fault{"non-hex", 4, "!"}}) {
    Open(program.communication_test, 1);
    ASSERT_TRUE(RunUntil([&] { return now.Lbl_R[0] >= 3; }));
    ASSERT_TRUE(instrument->Tell(std::string("fault 1 ") + fault.name + " on times 4"));
    const auto counted = [&] {
      const bool has_writes = fault.counter < now.Lbl_W.size();
      return now.Lbl_R.at(fault.counter) + (has_writes ? now.Lbl_W.at(fault.counter) : 0);
    };
    EXPECT_TRUE(RunUntil([&] { return counted() >= 4; })) << fault.name;
    const auto reads = now.Lbl_R[0];
    EXPECT_TRUE(RunUntil([&] { return now.Lbl_R[0] >= reads + 5; }));
    EXPECT_EQ(counted(), 4U) << fault.name;
    EXPECT_EQ(now.Lbl_F, 0U) << fault.name;
    EXPECT_EQ(
        now.Lbl_reply.substr(now.Lbl_reply.size() - std::min<std::size_t>(1, now.Lbl_reply.size())),
        fault.reply)
        << fault.name;
    turn.reset();
    program.communication_test.Quit();
  }
}

TEST_P(ServiceOnEitherLine, MemoryTestGoesItsRounds) {
  const bool plugin = GetParam();
  Start(plugin, {"--inet", "2,5", "--speedup", "20", "--selftest", "5:ram=4660"});
  const MemoryTestValues& now = program.memory_test.Values();
  Open(program.memory_test, 5);
  ASSERT_TRUE(RunUntil([&] { return now.tests == "1"; }));
  EXPECT_EQ(now.ram.text, "Failure at 1234");
  EXPECT_EQ(now.eprom.text, "passed");
  EXPECT_EQ(now.version, "0115");
  const Telegrams direct = {"G40=6\r", "G40?", "G48?", "G40=9\r", "G40?", "G48?", "G49?"};
  const Telegrams numbered = {"\x1bn4v0=6\r", "n4v0?", "n4v8?", "n4v0=9\r",
                              "n4v0?",        "n4v8?", "n4v9?"};
  EXPECT_EQ(WithoutRepeats(Sent(1000)), plugin ? numbered : direct);
  ASSERT_TRUE(instrument->Tell("selftest 5 ram 0"));
  ASSERT_TRUE(instrument->Tell("selftest 5 eprom -2"));
  ASSERT_TRUE(RunUntil([&] { return now.tests == "3"; }));
  EXPECT_EQ(now.ram.text, "passed");
  EXPECT_EQ(now.eprom.text, "Failure at FFFE");
  turn.reset();
  program.memory_test.Quit();
}

TEST_F(ServiceOnTheWire, MemoryTestComesToItsEndOnABadLine) {
  Start(true, {"--speedup", "20", "--selftest", "ram=85", "--fault", "lost-reply=0.1", "--fault",
               "lost-request=0.1", "--fault", "refusal=0.1", "--fault", "late-reply=130/0.1"});
  const MemoryTestValues& now = program.memory_test.Values();
  Open(program.memory_test, 1);
  ASSERT_TRUE(RunUntil([&] { return now.tests == "1"; }));
  EXPECT_EQ(now.ram.text, "Failure at 55");
  EXPECT_EQ(now.eprom.text, "passed");
  EXPECT_EQ(now.version, "0115");
}

TEST_F(ServiceOnTheWire, MemoryTestGoesOnWhenThePortIsPluggedInAgain) {
  Start(false, {"--speedup", "20"});
  const MemoryTestValues& now = program.memory_test.Values();
  Open(program.memory_test, 1);
  ASSERT_TRUE(RunUntil([&] { return now.ram.text == "passed"; }));
  ASSERT_TRUE(instrument->Tell("unplug"));
  ASSERT_TRUE(RunUntil([&] { return !program.link.PortOpen; }));
  ASSERT_TRUE(instrument->Tell("plug"));
  program.clock.Advance(std::chrono::seconds(11));
  const std::string before = now.tests;
  ASSERT_TRUE(RunUntil([&] { return now.tests != before && now.tests != "?"; }));
  EXPECT_EQ(now.ram.text, "passed");
}

TEST_F(ServiceOnTheWire, WatchdogTestMeasuresThePeriodAtItsLimitsAndGivesUpOneThatHangs) {
  struct Period {
    const char* result;
    const char* shown;
    bool is_error;
  };
  Start(true, {"--inet", "1,4", "--selftest", "4:watchdog=99"});
  const WatchdogTestValues& now = program.watchdog_test.Values();
  Open(program.watchdog_test, 4);
  for (const Period& period : {Period{"99", "990", true}, Period{"100", "1000", false},
                               Period{"225", "2250", false}, Period{"226", "2260", true},
                               Period{"hang", "> 3000", true}, Period{"160", "1600", false}}) {
    ASSERT_TRUE(instrument->Tell(std::string("selftest 4 watchdog ") + period.result));
    program.watchdog_test.Cmd_again_Click();
    ASSERT_TRUE(RunUntil([&] { return now.Cmd_again; })) << period.result;
    EXPECT_EQ(now.Lbl_delay, period.shown);
    EXPECT_EQ(now.Lbl_error, period.is_error) << period.result;
    EXPECT_EQ(program.events.pointers.back(), Pointer::kNormal);
  }
}

TEST_F(ServiceOnTheWire, WatchdogTestIsToldByItsTelegrams) {
  Start(false, {"--speedup", "10", "--selftest", "watchdog=120"});
  Open(program.watchdog_test, 1);
  ASSERT_TRUE(RunUntil([&] { return program.watchdog_test.Values().Cmd_again; }));
  EXPECT_EQ(program.watchdog_test.Values().Lbl_delay, "1200");
  EXPECT_EQ(WithoutRepeats(Sent(1000)), (Telegrams{"G00=A\r", "G00?", "G08?"}));
  turn.reset();
  program.watchdog_test.Quit();
  ASSERT_TRUE(instrument->Tell("selftest 1 watchdog hang"));
  Open(program.watchdog_test, 1);
  ASSERT_TRUE(RunUntil([&] { return program.watchdog_test.Values().Cmd_again; }));
  EXPECT_EQ(WithoutRepeats(Sent(1000)), (Telegrams{"G00=A\r", "G00?", "G00=0\r"}));
}

TEST_P(ServiceOnEitherLine, QualityDataAreReadWrittenAndKeptWithoutPower) {
  const bool plugin = GetParam();
  Start(plugin, {"--inet", "1,3"});
  program.regional.form = "dd.MM.yyyy";
  QualityData& screen = program.quality_data;
  const QualityValues& now = screen.Values();
  Open(screen, 3);
  ASSERT_TRUE(RunUntil([&] { return now.IsEditable; }));
  EXPECT_EQ(now.Text_Serial, "14003");
  EXPECT_EQ(now.setup.Text_Date, "12.03.2024");
  EXPECT_EQ(now.setup.Text_Name, "KH");
  EXPECT_EQ(now.check.Text_Date, "04.06.2025");
  const Telegrams direct = {"G20=0\r", "Z26?", "Z27?", "Z28?", "Z29?", "Z2A?",
                            "Z2B?",    "Z2C?", "Z2D?", "Z2E?", "Z2F?"};
  const Telegrams numbered = {"\x1bn2v0=0\r", "n2p36?", "n2p37?", "n2p38?", "n2p39?", "n2p3A?",
                              "n2p3B?",       "n2p3C?", "n2p3D?", "n2p3E?", "n2p3F?"};
  EXPECT_EQ(Sent(11), plugin ? numbered : direct);
  instrument->Forget();
  screen.Text_Serial_Change("765432");
  screen.Text_Date_Change(2, "29.02.80");
  screen.Text_Name_Change(2, "xy");
  EXPECT_EQ(screen.Cmd_Update_Click(), "");
  ASSERT_TRUE(RunUntil([&] { return now.IsEditable; }));
  const Telegrams writes = {"=4C\r",   "=1538\r", "=67\r", "=4B3\r",  "=18\r",
                            "=1D94\r", "=B56\r",  "=50\r", "=22B9\r", "=0\r"};
  Telegrams expected;
  for (std::size_t place = 0; place < writes.size(); ++place) {
    const char digit = "6789ABCDEF"[place];
    expected.push_back((plugin ? std::string("n2p3") : std::string("Z2")) + digit +
                       writes.at(place));
  }
  EXPECT_EQ(Sent(10), expected);
  screen.Quit();
  ASSERT_TRUE(instrument->Tell("restart 3"));
  Open(screen, 3);
  ASSERT_TRUE(RunUntil([&] { return now.IsEditable; }));
  EXPECT_EQ(now.Text_Serial, "765432");
  EXPECT_EQ(now.check.Text_Date, "29.02.1980");
  EXPECT_EQ(now.check.Text_Name, "XY");
  turn.reset();
  screen.Quit();
}

TEST_F(ServiceOnTheWire, QualityDataArriveWholeOnABadLine) {
  Start(true, {"--fault", "lost-reply=0.1", "--fault", "lost-request=0.1", "--fault",
               "refusal=0.05", "--fault", "late-reply=130/0.1", "--fault", "stale=0.05"});
  program.regional.form = "dd.MM.yyyy";
  QualityData& screen = program.quality_data;
  const QualityValues& now = screen.Values();
  Open(screen, 1);
  ASSERT_TRUE(RunUntil([&] { return now.IsEditable; }));
  EXPECT_EQ(now.Text_Serial, "14001");
  EXPECT_EQ(now.check.Text_Date, "04.06.2025");
  screen.Text_Unit_Change("4321");
  EXPECT_EQ(screen.Cmd_Update_Click(), "");
  ASSERT_TRUE(RunUntil([&] { return now.IsEditable; }));
  EXPECT_EQ(now.Text_Serial, "14001");
  EXPECT_EQ(now.Text_Unit, "4321");
  EXPECT_EQ(now.setup.Text_Date, "12.03.2024");
  EXPECT_EQ(now.check.Text_Name, "KH");
}

// ---- A recording beneath a test of the RAM that costs the samples.

struct Sampling {
  const char* order;
  int distance;  // milliseconds of the instrument's time
};

class RecordingBeneathAMemoryTest : public testing::TestWithParam<Sampling> {
 protected:
  static constexpr int kSpeedUp = 10;

  RecordingBeneathAMemoryTest() {
    program.screens.built.insert(View::kTavWait);
    program.screens.on_show = [this](View) {
      program.wait_bar.Open();
      EXPECT_TRUE(program.RunUntil([this] { return !program.wait_bar.IsOpen(); }));
    };
  }
  static std::vector<std::string> Options() {
    std::vector<std::string> options = {"--speedup", std::to_string(kSpeedUp), "--warm",
                                        "--ram-test-clears", "1"};
    // Every value has to differ from the one before it, or a shift would not show.
    for (const char* oven :
         {"1.1=ramp:450:0.1", "1.2=ramp:400:0.1", "1.3=ramp:450:0.1", "1.4=ramp:350:0.1"}) {
      options.insert(options.end(), {"--oven", oven});
    }
    options.insert(options.end(), {"--sampling-order", GetParam().order, "--sampling-distance",
                                   std::to_string(GetParam().distance)});
    return options;
  }
  void Start() {
    ASSERT_TRUE(instrument.IsUp());
    UnitRecord unit = BenchProgram::Header(1, 1, 4, false);
    unit.UnitInterval = 1;
    program.Start(true, kOvenFile, unit);
    program.engine.StartRecording(1);
    ASSERT_EQ(program.state.Unit[1].UnitRecOn, 1)
        << (program.dialogs.boxes.empty() ? "" : program.dialogs.boxes.back().Text);
    program.dialogs.boxes.clear();
  }
  bool RunToRows(int rows) {
    for (int turn = 0; turn < 8 && program.state.SampleCount[1] < rows; ++turn) {
      static_cast<void>(
          program.RunUntil([this, rows] { return program.state.SampleCount[1] >= rows; }));
    }
    return program.state.SampleCount[1] >= rows;
  }
  // Until so many more samples of input 1 are in the truth file, with the cycle standing still.
  bool WaitForSamples(int count) {
    const int wanted = Samples() + count;
    const MainCycle::Pause pause(program.cycle);
    return program.RunUntil([&] { return Samples() >= wanted; });
  }
  [[nodiscard]] int Samples() const {
    std::ifstream file(program.home.File("truth.txt"));
    int count = 0;
    for (std::string line; std::getline(file, line);) {
      std::istringstream words(line);
      std::string kind;
      std::string seconds;
      int inet = 0;
      int input = 0;
      words >> kind >> seconds >> inet >> input;
      count += kind == "sample" && input == 1 ? 1 : 0;
    }
    return count;
  }
  bool RunFor(std::chrono::milliseconds time) {
    const QDeadlineTimer end(time);
    return program.RunUntil([&] { return end.hasExpired(); });
  }
  bool TestMemory(const char* rounds) {
    program.state.ActiveInet = 1;
    MemoryTest& screen = program.memory_test;
    screen.Open();
    const SteppedScreens::Turn turn(program.stepped, screen.Number(), [&] { screen.Step(); });
    const bool is_done = program.RunUntil([&] { return screen.Values().tests == rounds; });
    screen.Quit();
    return is_done;
  }
  [[nodiscard]] std::vector<std::string> Told() {
    program.messages.ShowKept();
    std::vector<std::string> texts;
    for (const Notice& notice : program.dialogs.announced) {
      texts.push_back(notice.Text);
    }
    return texts;
  }
  [[nodiscard]] Findings Compared() {
    std::ifstream file(program.home.File("truth.txt"));
    const LineTruth truth = ReadLineTruth(file, {});
    const std::string bytes = program.home.Read("tavdat/" + std::string(kOvenFile));
    return Compare(truth, {kOvenFile, 1, {1, 2, 3, 4}}, bytes.substr(sizeof(UnitRecord)),
                   ReadTold(Told()));
  }

  void ExpectTruth() {
    ASSERT_TRUE(RunToRows(program.state.SampleCount[1] + 6));
    const Findings findings = Compared();
    const std::string told = testing::PrintToString(Told());
    EXPECT_TRUE(findings.Agrees()) << testing::PrintToString(findings) << "\n" << told;
    EXPECT_EQ(findings.wrong, 0) << told;
    EXPECT_EQ(findings.shifted, 0) << told;
    EXPECT_EQ(findings.torn, 0) << told;
    RecordProperty("lost", findings.lost);
    RecordProperty("told_lost", findings.told_lost);
    RecordProperty("told_uncertain", findings.told_uncertain);
  }

  WireProgram program{kSpeedUp};
  LiveInstrument instrument{program.home, true, Options()};
};

INSTANTIATE_TEST_SUITE_P(Orders, RecordingBeneathAMemoryTest,
                         testing::Values(Sampling{"together", 0}, Sampling{"random", 500}),
                         [](const auto& each) { return std::string(each.param.order); });

TEST_P(RecordingBeneathAMemoryTest, IsToldWhatItHasLostAndShiftsNothing) {
  Start();
  ASSERT_TRUE(RunToRows(8));
  for (const int delay : {350, 750}) {
    ASSERT_TRUE(RunFor(std::chrono::milliseconds(delay)));
    ASSERT_TRUE(TestMemory("1"));
    ASSERT_TRUE(RunToRows(program.state.SampleCount[1] + 4));
  }
  EXPECT_EQ(program.dialogs.boxes.size(), 2U) << "each test asks first";
  ExpectTruth();
}

// The program has stood still, and the test ends while it reads what has gathered.
TEST_P(RecordingBeneathAMemoryTest, CountsTheSetsThatWereWaiting) {
  Start();
  ASSERT_TRUE(RunToRows(8));
  ASSERT_TRUE(WaitForSamples(7));
  ASSERT_TRUE(TestMemory("1"));
  ExpectTruth();
  EXPECT_GT(Compared().told_lost, 3);
  EXPECT_NE(testing::PrintToString(Told()).find("; before this row"), std::string::npos);
}

}  // namespace
}  // namespace tavrel
