#include <QComboBox>
#include <fstream>

#include "main/forms/tavrel.h"
#include "tests/forms/modal_bench.h"
#include "tests/support/form_screens.h"
#include "tests/support/wait_until.h"
#include "tests/truth/comparison.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

constexpr int kFormsSpeedUp = 20;  // a set of ten seconds comes every half second
constexpr int kInet = 1;
const std::vector<int> kRecorded = {1, 5, 9};
const std::size_t kRowBytes = 2 * kRecorded.size();

// The main form, the worksheet and its dialogs, driven by mouse and keys beside a virtual
// instrument whose oven climbs, so that no two sets are alike.
class RecordingForms : public ModalDeeds, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(instrument.IsUp());
    program.screens.built = {View::kTavWork, View::kTavRec, View::kTavWait};
    program.screens.on_show = [this](View view) { screens.Run(view); };
    program.cycle.SetHandlers(screens.Handlers());
    UnitRecord header = BenchProgram::Header(kInet, 1, 3, false);
    header.UnitRole.Fill(0);
    for (const int input : kRecorded) {
      header.UnitRole[input] = 1;
    }
    header.UnitRef = 5;
    header.UnitInterval = 1;
    header.SetApparatusName("Furnace");
    program.PrepareStart(GetParam(), kOvenFile, header);
    ASSERT_TRUE(program.start_up.MainFormLoad());
    form = std::make_unique<Tavrel>(
        Tavrel::Parts{program.sheet, program.commands, program.cycle, program.start_up}, 1);
    form->show();
    ASSERT_TRUE(WaitUntil([this] { return program.cycle.IsEnabled(); }));
  }

  // Opens the worksheet from the main form and returns when it has closed.
  void RunWorksheet() {
    QTest::mouseClick(form->findChild<QWidget*>("cmd_Work_1"), Qt::LeftButton);
  }

  // In the worksheet.
  void WaitForRows(int count) {
    EXPECT_TRUE(WaitUntil([this, count] { return program.state.SampleCount[1] >= count; }))
        << program.state.SampleCount[1] << " rows";
  }
  // The user answers the box between two sets: what is half read belongs to no row.
  void StopBetweenSets() {
    program.dialogs.on_box = [this] {
      EXPECT_TRUE(WaitUntil([this] { return !program.engine.HoldsSet(1); }));
    };
    Click("cmd_Rec_2");
    program.dialogs.on_box = [] {};
  }
  void SetEnd(const char* hours, int action) {
    Then("TavRec", [hours, action] {
      QTest::keyClicks(QApplication::focusWidget(), hours);
      Find<QComboBox>("Cbo_Func")->setCurrentIndex(action);
      Key(Qt::Key_Return);
    });
    Click("cmd_SetRec");
  }

  std::string Samples(const std::string& name) const {
    const std::string bytes = program.home.Read("tavdat/" + name);
    return bytes.substr(std::min(sizeof(UnitRecord), bytes.size()));
  }
  UnitRecord FileHeader(const std::string& name) const {
    UnitRecord unit{};
    const std::string bytes = program.home.Read("tavdat/" + name);
    std::memcpy(&unit, bytes.data(), std::min(sizeof unit, bytes.size()));
    return unit;
  }
  static int RowsIn(const std::string& samples) {
    return static_cast<int>(samples.size() / kRowBytes);
  }
  // What was recorded in one file, or in files one behind the other, is what was sampled: each
  // file begins with its first set twice.
  void ExpectTruth(const std::vector<std::string>& files) const {
    std::string all;
    for (const std::string& name : files) {
      const std::string samples = Samples(name);
      ASSERT_GE(RowsIn(samples), 2) << name;
      EXPECT_EQ(samples.substr(0, kRowBytes), samples.substr(kRowBytes, kRowBytes)) << name;
      all += all.empty() ? samples : samples.substr(kRowBytes);
    }
    std::ifstream file(program.home.File("truth.txt"));
    const LineTruth truth = ReadLineTruth(file, {});
    const Findings findings = Compare(truth, {files.front(), kInet, kRecorded}, all);
    EXPECT_TRUE(findings.Agrees()) << testing::PrintToString(findings);
    EXPECT_EQ(findings.excused, 0);
    EXPECT_EQ(truth.overruns, 0);
    EXPECT_EQ(HandedSets(truth, {files.front(), kInet, kRecorded}), RowsIn(all) - 1);
  }
  int State() {
    Link& link = program.link;
    link.ComInet = kInet;
    link.ComLetter = "Z";
    link.ComIndex = 1;
    link.ReadReg();
    return link.IsGood(kInet) ? link.ComValue : kNoData;
  }

  WireProgram program{kFormsSpeedUp};
  LiveInstrument instrument{program.home,
                            GetParam(),
                            {"--speedup", std::to_string(kFormsSpeedUp), "--line-speed", "none",
                             "--warm", "--oven", "1.1=ramp:450:0.1"}};
  std::unique_ptr<Tavrel> form;
  // The worksheet is a child of the main form and has to go before it.
  FormScreens screens{program};
};

TEST_P(RecordingForms, RecordStopAndGoOnInTheSameFile) {
  Then("TavWork", [this] {
    Click("cmd_Rec_1");
    EXPECT_EQ(FileHeader(kOvenFile).UnitRecOn, 1);
    WaitForRows(5);
    StopBetweenSets();
    EXPECT_EQ(FileHeader(kOvenFile).UnitRecOn, 0);
    const int rows = program.state.SampleCount[1];
    Click("cmd_Rec_1");
    WaitForRows(rows + 3);
    StopBetweenSets();
    Key(Qt::Key_Escape);
  });
  RunWorksheet();
  ExpectTruth({kOvenFile});
}

TEST_P(RecordingForms, GoOnInANewFileWithAnotherSamplingTime) {
  std::string name;
  Then("TavWork", [this, &name] {
    Click("cmd_Rec_1");
    WaitForRows(4);
    Then("TavRec", [] {
      QTest::keyClicks(QApplication::focusWidget(), "20");
      Key(Qt::Key_Return);
    });
    program.dialogs.on_box = [this] {
      EXPECT_TRUE(WaitUntil([this] { return !program.engine.HoldsSet(1); }));
    };
    Click("cmd_New");
    program.dialogs.on_box = [] {};
    name = program.state.SlotFile[1];
    EXPECT_NE(name, kOvenFile);
    EXPECT_EQ(FileHeader(kOvenFile).UnitRecOn, 0);
    EXPECT_EQ(FileHeader(name).UnitRecOn, 0) << "not before the user starts it";
    Click("cmd_Rec_1");
    WaitForRows(4);
    StopBetweenSets();
    Key(Qt::Key_Escape);
  });
  RunWorksheet();
  EXPECT_EQ(FileHeader(name).UnitInterval, 2);
  ExpectTruth({kOvenFile, name});
}

// 0.02 hours are one minute, six rows of ten seconds, and the end is reached with the row beyond.
constexpr const char* kHours = "0,02";
constexpr int kRowsAtEnd = 7;

TEST_P(RecordingForms, StopAtTheLengthLimit) {
  Then("TavWork", [this] {
    SetEnd(kHours, 0);
    Click("cmd_Rec_1");
    EXPECT_TRUE(WaitUntil([this] { return program.state.Unit[1].UnitRecOn == 0; }));
    EXPECT_TRUE(WaitUntil([] { return TextOf("Lbl_RecState") == "end"; }));
    Click("cmd_Rec_1");
    Key(Qt::Key_Escape);
  });
  RunWorksheet();
  EXPECT_EQ(program.dialogs.boxes.back().Text, "max. length of file");
  EXPECT_EQ(RowsIn(Samples(kOvenFile)), kRowsAtEnd);
  EXPECT_EQ(FileHeader(kOvenFile).UnitRecOn, 0);
  EXPECT_EQ(FileHeader(kOvenFile).UnitMaxMinutes, 1);
  EXPECT_EQ(State(), 3) << "the controller goes on";
  ExpectTruth({kOvenFile});
}

TEST_P(RecordingForms, SwitchTheControllerOffAtTheLengthLimit) {
  Then("TavWork", [this] {
    SetEnd(kHours, 1);
    Click("cmd_Rec_1");
    EXPECT_TRUE(WaitUntil([this] { return program.state.Unit[1].UnitRecOn == 0; }));
    EXPECT_TRUE(WaitUntil([] { return Find<GlyphButton>("cmd_Ctrl_2")->IsLatched(); }));
    Key(Qt::Key_Escape);
  });
  RunWorksheet();
  EXPECT_EQ(RowsIn(Samples(kOvenFile)), kRowsAtEnd);
  EXPECT_EQ(State(), 0);
  EXPECT_EQ(FileHeader(kOvenFile).UnitCtrlState, 0);
  ExpectTruth({kOvenFile});
}

TEST_P(RecordingForms, GoOnInTheNextFileAtTheLengthLimit) {
  constexpr const char* kNext = "M260314B.OVN";
  Then("TavWork", [this] {
    SetEnd(kHours, 2);
    Click("cmd_Rec_1");
    EXPECT_TRUE(WaitUntil([this] { return program.state.SlotFile[1] == kNext; }));
    WaitForRows(4);
    EXPECT_EQ(TextOf("TavFile"), "m260314b.ovn");
    EXPECT_TRUE(Find<GlyphButton>("cmd_Rec_1")->IsLatched());
    StopBetweenSets();
    Key(Qt::Key_Escape);
  });
  RunWorksheet();
  EXPECT_EQ(RowsIn(Samples(kOvenFile)), kRowsAtEnd);
  EXPECT_EQ(FileHeader(kOvenFile).UnitRecOn, 0);
  EXPECT_EQ(State(), 3);
  ExpectTruth({kOvenFile, kNext});
}

// The end of the program comes while the wait bar is shown. The instrument samples already.
TEST_P(RecordingForms, LoseNothingIfTheProgramEndsDuringTheStart) {
  Then("TavWork", [] {
    Click("cmd_Rec_1");
    Key(Qt::Key_Escape);
  });
  Then("TavWait", [this] {
    EXPECT_FALSE(form->close());
    EXPECT_TRUE(form->isVisible());
    EXPECT_FALSE(program.commands.HasEnded());
  });
  program.state.SettingsChanged = true;  // as they were given by the test, not read from a file
  RunWorksheet();
  form->findChild<QTimer*>("Timer_Main")->stop();  // its next tick would end this process
  program.commands.Close();
  ASSERT_TRUE(program.commands.HasEnded());
  EXPECT_EQ(FileHeader(kOvenFile).UnitRecOn, 1);

  ProgramLogic next(program.All());
  next.state.AppPath = program.state.AppPath;
  next.state.DataHome = program.state.DataHome;
  next.settings.SettingsLoad();
  ASSERT_TRUE(next.start_up.MainFormLoad());
  next.start_up.MainFormShow();
  ASSERT_EQ(next.state.SlotFile[1], kOvenFile);
  EXPECT_TRUE(WaitUntil([&next] {
    next.cycle.Tick();
    return next.state.SampleCount[1] >= 6;
  }));
  next.commands.Close();
  ExpectTruth({kOvenFile});
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, RecordingForms, testing::Bool(),
                         [](const auto& test) { return test.param ? "plugin" : "direct"; });

}  // namespace
}  // namespace tavrel
