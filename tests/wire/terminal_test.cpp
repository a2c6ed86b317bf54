#include "service/terminal.h"

#include <gtest/gtest.h>

#include <fstream>
#include <vector>

#include "files/journal_check.h"
#include "link/frame.h"
#include "tests/truth/comparison.h"
#include "tests/truth/told_texts.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

constexpr int kSpeedUp = 5;  // ten words a second of a recording of two inputs

// A terminal beside a recording at the shortest interval, on an instrument whose oven climbs.
class TerminalOnTheWire : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(instrument.IsUp());
    UnitRecord header = BenchProgram::Header(1, 1, 2, true);
    header.UnitFast = 1;
    header.UnitInterval = 1;
    program.Start(GetParam(), kOvenFile, header);
  }
  bool HasRows(int count) const { return program.state.SampleCount[1] >= count; }
  // Types it, and the terminal is polled for so long as its form would.
  void Type(const std::string& keys, std::chrono::milliseconds time) {
    const std::size_t before = program.terminal.Term().size();
    for (const char key : keys) {
      program.terminal.KeyPress(key);
    }
    const QDeadlineTimer end(time);
    while (!end.hasExpired()) {
      program.terminal.Poll();
      program.port.WaitForData(std::chrono::milliseconds(20));
    }
    answered += program.terminal.Term().size() > before + keys.size() + 1 ? 1 : 0;
  }
  void ExpectTruth() const {
    const std::string bytes = program.home.Read(std::string("tavdat/") + kOvenFile);
    std::ifstream file(program.home.File("truth.txt"));
    const LineTruth truth = ReadLineTruth(file, {});
    const RecordedSlot slot{kOvenFile, 1, {1, 2}};
    const Findings findings = Compare(truth, slot, bytes.substr(sizeof(UnitRecord)));
    EXPECT_TRUE(findings.Agrees()) << testing::PrintToString(findings);
    EXPECT_EQ(findings.wrong, 0);
    EXPECT_EQ(findings.doubled, 0);
    EXPECT_EQ(findings.excused, 0);
    EXPECT_EQ(truth.overruns, 0);
    EXPECT_EQ(truth.lost, 0);
    EXPECT_TRUE(program.dialogs.announced.empty());
  }

  WireProgram program{kSpeedUp};
  LiveInstrument instrument{program.home,
                            GetParam(),
                            {"--speedup", std::to_string(kSpeedUp), "--line-speed", "none",
                             "--fast", "1", "--sample", "1=1", "--oven", "1.1=ramp:450:0.1"}};
  int answered = 0;
};

TEST_P(TerminalOnTheWire, CostsARecordingNoSampleInTwoMinutes) {
  constexpr int kCommands = 48;  // half a second of real time each, two minutes of the instrument
  ASSERT_TRUE(program.RunUntil([this] { return HasRows(5); }));
  {
    const MainCycle::Pause pause(program.cycle);
    program.terminal.Open();
    const auto before = program.link.Exchanges();
    for (int command = 0; command < kCommands; ++command) {
      Type(GetParam() ? "np21?" : "Y01?", std::chrono::milliseconds(500));
    }
    EXPECT_EQ(program.link.Exchanges(), before) << "nothing else uses the line";
    EXPECT_EQ(answered, kCommands);
    // The last answer comes when the terminal has closed.
    ASSERT_TRUE(instrument.Tell("fault 1 late-reply 120 times 1"));
    program.terminal.KeyPress('?');
    program.terminal.Quit();
  }
  const int rows = program.state.SampleCount[1];
  for (int turn = 0; turn < 6 && !HasRows(rows + 130); ++turn) {
    static_cast<void>(program.RunUntil([&] { return HasRows(rows + 130); }));
  }
  EXPECT_TRUE(HasRows(rows + 130)) << program.state.SampleCount[1] - rows;
  EXPECT_TRUE(program.RunUntil([this] { return !program.engine.HoldsSet(1); }));
  ExpectTruth();
}

// What is typed to a controller of a recording stands in its journal as what a button does.
TEST_P(TerminalOnTheWire, WritesToAControllerInTheJournal) {
  constexpr std::chrono::milliseconds kAnswered{400};
  const auto setpoint = [&](int controller, std::int16_t word) {
    return RegisterWriteFrame(program.link.Mode(), LineAddress{1, 0},
                              RegisterName{"W", static_cast<std::int16_t>(controller)}, word);
  };
  ASSERT_TRUE(program.RunUntil([this] { return HasRows(3); }));
  instrument.Forget();
  {
    const MainCycle::Pause pause(program.cycle);
    program.terminal.Open();
    Type(setpoint(1, 2000), kAnswered);
    Type(setpoint(2, 1800), kAnswered);  // of no test
    Type(GetParam() ? "np21?" : "Y01?", kAnswered);
    Type(setpoint(1, 2100), kAnswered);
    ASSERT_TRUE(instrument.Tell("fault 1 lost-reply on times 1"));
    Type(setpoint(1, 2200), kAnswered);
    program.terminal.Quit();
  }
  EXPECT_EQ(instrument.Telegrams(5).size(), 5U) << "each of them was on the line";
  std::vector<JournalEntry> lines;
  const std::string journal = program.home.Read(std::string("tavdat/journal/") + kOvenFile);
  for (const JournalEntry& entry : ReadJournal(journal).Entries) {
    if (entry.Kind == "controller") {
      lines.push_back(entry);
    }
  }
  ASSERT_EQ(lines.size(), 3U);
  for (std::size_t place = 0; place < lines.size(); ++place) {
    EXPECT_EQ(lines[place].Text("by"), "user");
    EXPECT_EQ(lines[place].Text("what"), "setpoint");
    EXPECT_EQ(lines[place].Number("new"), 2000 + 100 * static_cast<int>(place));
    EXPECT_EQ(lines[place].Fields.Find("acknowledged")->Truth(), place < 2);
  }
  EXPECT_EQ(lines[1].Number("old"), 2000);
  EXPECT_EQ(lines[2].Number("old"), 2100);
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, TerminalOnTheWire, testing::Bool(),
                         [](const auto& test) { return test.param ? "plugin" : "direct"; });

// A command of the user takes a sample of the recording away: no later one comes into a wrong row,
// and the user learns which value is missing.
class TerminalThatTakesASample : public testing::TestWithParam<bool> {
 protected:
  static constexpr int kFast = 10;  // a set of 10 s is made in each second

  bool RunToRows(int rows) {
    for (int turn = 0; turn < 5 && program.state.SampleCount[1] < rows; ++turn) {
      static_cast<void>(
          program.RunUntil([this, rows] { return program.state.SampleCount[1] >= rows; }));
    }
    return program.state.SampleCount[1] >= rows;
  }
  [[nodiscard]] Findings Compared() {
    std::vector<std::string> texts;
    for (const Notice& notice : program.dialogs.announced) {
      texts.push_back(notice.Text);
    }
    std::ifstream file(program.home.File("truth.txt"));
    const LineTruth truth = ReadLineTruth(file, {});
    const std::string bytes = program.home.Read(std::string("tavdat/") + kOvenFile);
    return Compare(truth, {kOvenFile, 1, {1, 2, 3}}, bytes.substr(sizeof(UnitRecord)),
                   ReadTold(texts));
  }

  WireProgram program{kFast};
  LiveInstrument instrument{
      program.home,
      GetParam(),
      {"--speedup", std::to_string(kFast), "--line-speed", "none", "--warm", "--oven",
       "1.1=ramp:450:0.1", "--oven", "1.2=ramp:400:0.1", "--oven", "1.3=ramp:450:0.1"}};
};

TEST_P(TerminalThatTakesASample, ShiftsNothingAndTellsTheRow) {
  program.screens.built.insert(View::kTavWait);
  program.screens.on_show = [this](View) {
    program.wait_bar.Open();
    EXPECT_TRUE(program.RunUntil([this] { return !program.wait_bar.IsOpen(); }));
  };
  ASSERT_TRUE(instrument.IsUp());
  UnitRecord unit = BenchProgram::Header(1, 1, 3, false);
  unit.UnitInterval = 1;
  program.Start(GetParam(), kOvenFile, unit);
  program.engine.StartRecording(1);
  ASSERT_TRUE(RunToRows(8));
  {
    const MainCycle::Pause pause(program.cycle);
    program.terminal.Open();
    ASSERT_TRUE(instrument.Tell("pass 1 25"));
    ASSERT_TRUE(instrument.Tell("fault 1 lost-reply on times 1"));
    for (const char key : std::string(GetParam() ? "np12?" : "X02?")) {
      program.terminal.KeyPress(key);
    }
    program.terminal.Quit();
  }
  ASSERT_EQ(program.dialogs.boxes.size(), 1U);
  ASSERT_TRUE(RunToRows(program.state.SampleCount[1] + 14));
  const Findings findings = Compared();
  EXPECT_TRUE(findings.Agrees()) << testing::PrintToString(findings);
  EXPECT_EQ(findings.wrong, 0);
  EXPECT_EQ(findings.shifted, 0);
  EXPECT_EQ(findings.told_filled + findings.told_uncertain, 1);
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, TerminalThatTakesASample, testing::Bool(),
                         [](const auto& test) { return test.param ? "plugin" : "direct"; });

}  // namespace
}  // namespace tavrel
