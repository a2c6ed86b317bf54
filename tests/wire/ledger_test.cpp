// The figures of a recording by its journal, beside what the instrument has made.
#include "files/ledger.h"

#include <fstream>
#include <string>
#include <vector>

#include "tests/truth/comparison.h"
#include "tests/truth/told_texts.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

constexpr int kLedgerSpeedUp = 10;  // a set of 10 s is made in each second

// On a direct line and on a plug-in line.
class LedgerOnTheWire : public testing::TestWithParam<bool> {
 protected:
  LedgerOnTheWire() {
    program.screens.built.insert(View::kTavWait);
    program.screens.on_show = [this](View) {
      program.wait_bar.Open();
      EXPECT_TRUE(program.RunUntil([this] { return !program.wait_bar.IsOpen(); }));
    };
  }
  static std::vector<std::string> Options() {
    std::vector<std::string> options = {
        "--speedup",           "10", "--warm", "--sampling-order", "descending",
        "--sampling-distance", "500"};
    for (const char* oven : {"1.1=ramp:450:0.1", "1.2=ramp:400:0.1", "1.3=ramp:450:0.1"}) {
      options.insert(options.end(), {"--oven", oven});
    }
    return options;
  }
  void Start() {
    ASSERT_TRUE(instrument.IsUp());
    UnitRecord unit = BenchProgram::Header(1, 1, 3, false);
    unit.UnitInterval = 1;
    program.Start(GetParam(), kOvenFile, unit);
    program.engine.StartRecording(1);
    ASSERT_EQ(program.state.Unit[1].UnitRecOn, 1);
  }
  bool RunToRows(int rows) {
    for (int turn = 0; turn < 4 && program.state.SampleCount[1] < rows; ++turn) {
      static_cast<void>(
          program.RunUntil([this, rows] { return program.state.SampleCount[1] >= rows; }));
    }
    return program.state.SampleCount[1] >= rows;
  }
  [[nodiscard]] Findings Compared() {
    program.messages.ShowKept();
    std::vector<std::string> texts;
    for (const Notice& notice : program.dialogs.announced) {
      texts.push_back(notice.Text);
    }
    std::ifstream file(program.home.File("truth.txt"));
    const std::string bytes = program.home.Read("tavdat/" + std::string(kOvenFile));
    return Compare(ReadLineTruth(file, {}), {kOvenFile, 1, {1, 2, 3}},
                   bytes.substr(sizeof(UnitRecord)), ReadTold(texts));
  }
  [[nodiscard]] LedgerFigures Figures() const {
    const std::string journal = program.home.Read("tavdat/journal/" + std::string(kOvenFile));
    return LedgerOf(ReadJournal(journal), program.state.SampleCount[1]);
  }

  WireProgram program{kLedgerSpeedUp};
  LiveInstrument instrument{program.home, GetParam(), Options()};
};

INSTANTIATE_TEST_SUITE_P(Lines, LedgerOnTheWire, testing::Bool(),
                         [](const auto& each) { return each.param ? "plugin" : "direct"; });

TEST_P(LedgerOnTheWire, SaysWhatTheInstrumentHasMade) {
  Start();
  ASSERT_TRUE(RunToRows(6));
  EXPECT_TRUE(Figures().IsComplete());
  EXPECT_EQ(Figures().Recorded, Compared().rows - 1);
  ASSERT_TRUE(instrument.Tell("fault all lost-reply on times 1"));
  ASSERT_TRUE(RunToRows(program.state.SampleCount[1] + 6));
  ASSERT_TRUE(instrument.Tell("fault all none"));
  const Findings doubts = Compared();
  EXPECT_TRUE(doubts.Agrees()) << testing::PrintToString(doubts);
  EXPECT_EQ(Figures().Filled, doubts.told_filled);
  EXPECT_TRUE(Figures().Lost.IsNone());
  ASSERT_TRUE(instrument.Tell("restart 1"));
  ASSERT_TRUE(RunToRows(program.state.SampleCount[1] + 4));
  const Findings findings = Compared();
  const LedgerFigures figures = Figures();
  EXPECT_EQ(figures.Recorded, findings.rows - 1);
  EXPECT_LE(figures.Lost.Least, findings.lost);
  ASSERT_TRUE(figures.Lost.Most);
  EXPECT_GE(*figures.Lost.Most, findings.lost);
  EXPECT_LE(*figures.Lost.Most - figures.Lost.Least, 3);
}

}  // namespace
}  // namespace tavrel
