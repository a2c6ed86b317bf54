// Values that are lost on the way from an instrument that samples its inputs one after another.
#include <algorithm>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "tests/truth/comparison.h"
#include "tests/truth/told_texts.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

constexpr int kLossesSpeedUp = 10;  // a set of 10 s is made in each second

struct Sampling {
  std::string order;
  int distance;  // milliseconds of the instrument's time
};

class LostValues : public testing::TestWithParam<Sampling> {
 protected:
  LostValues() {
    program.screens.built.insert(View::kTavWait);
    program.screens.on_show = [this](View) {
      program.wait_bar.Open();
      EXPECT_TRUE(program.RunUntil([this] { return !program.wait_bar.IsOpen(); }));
    };
  }

  static std::vector<std::string> Options() {
    std::vector<std::string> options = {"--speedup", std::to_string(kLossesSpeedUp), "--warm"};
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
    ASSERT_EQ(program.state.Unit[1].UnitRecOn, 1);
  }

  bool RunToRows(int rows) {
    for (int turn = 0; turn < 8 && program.state.SampleCount[1] < rows; ++turn) {
      static_cast<void>(
          program.RunUntil([this, rows] { return program.state.SampleCount[1] >= rows; }));
    }
    return program.state.SampleCount[1] >= rows;
  }

  // What the user was told.
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

  WireProgram program{kLossesSpeedUp};
  LiveInstrument instrument{program.home, true, Options()};
};

INSTANTIATE_TEST_SUITE_P(Orders, LostValues,
                         testing::Values(Sampling{"together", 0}, Sampling{"ascending", 500},
                                         Sampling{"descending", 500}, Sampling{"random", 500}),
                         [](const auto& each) { return each.param.order; });

TEST_P(LostValues, AreNotSeenOnALineWithoutAFault) {
  Start();
  ASSERT_TRUE(RunToRows(12));
  const Findings findings = Compared();
  EXPECT_TRUE(findings.Agrees()) << testing::PrintToString(findings);
  EXPECT_EQ(findings.excused, 0);
  EXPECT_EQ(Told(), std::vector<std::string>());
}

TEST_P(LostValues, AreFilledInAndToldAndShiftNothing) {
  Start();
  ASSERT_TRUE(RunToRows(6));
  for (const char* fault : {"lost-reply 0.1", "lost-request 0.1"}) {
    ASSERT_TRUE(instrument.Tell(std::string("fault all ") + fault));
    ASSERT_TRUE(RunToRows(program.state.SampleCount[1] + 12));
  }
  ASSERT_TRUE(instrument.Tell("fault all none"));
  ASSERT_TRUE(RunToRows(program.state.SampleCount[1] + 12));
  const Findings findings = Compared();
  EXPECT_TRUE(findings.Agrees()) << testing::PrintToString(findings);
  RecordProperty("told_filled", findings.told_filled);
  RecordProperty("told_uncertain", findings.told_uncertain);
  EXPECT_GT(findings.told_filled, 0);
}

}  // namespace
}  // namespace tavrel
