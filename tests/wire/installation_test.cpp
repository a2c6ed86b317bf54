#include <QAction>
#include <QLineEdit>
#include <fstream>

#include "main/forms/tavrel.h"
#include "tests/forms/modal_bench.h"
#include "tests/setup/setup_bench.h"
#include "tests/support/form_screens.h"
#include "tests/support/wait_until.h"
#include "tests/truth/comparison.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"
#include "widgets/edit_grid.h"

namespace tavrel {
namespace {

constexpr int kSpeedUp = 5;     // a set of ten seconds comes every two: 36 exchanges
constexpr int kFirstInput = 2;  // column of the grid
constexpr int kNumber = 17;

// Six instruments with two tests each, all of which record.
class InstallationOnTheWire : public ModalDeeds, public testing::WithParamInterface<bool> {
 protected:
  static int InetOf(int slot) { return (slot + 1) / 2; }
  static int CtrlOf(int slot) { return slot % 2 == 1 ? 1 : 2; }
  static std::vector<int> InputsOf(int slot) {
    return slot % 2 == 1 ? std::vector<int>{1, 5, 9} : std::vector<int>{2, 6, 10};
  }
  static std::string NameOf(int slot) {
    return std::string("M26010") + "1" + static_cast<char>('A' + slot) + ".OVN";
  }

  void SetUp() override {
    ASSERT_TRUE(instrument.IsUp());
    program.screens.built = {View::kTavInst};
    program.screens.on_show = [this](View view) { screens.Run(view); };
    program.cycle.SetHandlers(screens.Handlers());
    program.state.Settings.DefPath = program.home.File("tavdat");
    for (int slot = 1; slot <= kSlots; ++slot) {
      UnitRecord header =
          TestHeader(InetOf(slot), CtrlOf(slot), CtrlOf(slot) + 4, {CtrlOf(slot) + 8});
      header.UnitInterval = 1;
      program.PrepareStart(GetParam(), NameOf(slot), header);
      program.state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = NameOf(slot);
    }
    program.state.Settings.ActiveFiles[0] = NameOf(1);
    ASSERT_TRUE(program.start_up.MainFormLoad());
    form = std::make_unique<Tavrel>(
        Tavrel::Parts{program.sheet, program.commands, program.cycle, program.start_up}, kSlots);
    form->show();
    ASSERT_TRUE(WaitUntil([this] { return program.cycle.IsEnabled(); }));
    program.timer_main.start(10);
    for (int slot = 1; slot <= kSlots; ++slot) {
      program.engine.StartRecording(slot);
      ASSERT_EQ(program.state.Unit[slot].UnitRecOn, 1) << slot;
    }
  }
  // In all recordings that are on. A busy machine may take a while.
  void WaitForRows(int count) {
    const auto have_come = [this, count] {
      for (int slot = 1; slot <= kSlots; ++slot) {
        if (program.state.Unit[slot].UnitRecOn == 1 && program.state.SampleCount[slot] < count) {
          return false;
        }
      }
      return true;
    };
    EXPECT_TRUE(WaitUntil(have_come) || WaitUntil(have_come) || WaitUntil(have_come));
  }
  UnitRecord FileHeader(const std::string& name) const {
    UnitRecord unit{};
    const std::string bytes = program.home.Read("tavdat/" + name);
    std::memcpy(static_cast<void*>(&unit), bytes.data(), std::min(sizeof unit, bytes.size()));
    return unit;
  }
  Findings FindingsOf(int slot) const {
    std::ifstream file(program.home.File("truth.txt"));
    const LineTruth truth = ReadLineTruth(file, {});
    EXPECT_EQ(truth.overruns, 0);
    const std::string bytes = program.home.Read("tavdat/" + NameOf(slot));
    return Compare(truth, {NameOf(slot), InetOf(slot), InputsOf(slot)},
                   bytes.substr(std::min(sizeof(UnitRecord), bytes.size())));
  }

  WireProgram program{kSpeedUp};
  LiveInstrument instrument{program.home,
                            GetParam(),
                            {"--instruments", "6", "--speedup", std::to_string(kSpeedUp),
                             "--line-speed", "none", "--warm", "--oven", "1.1=ramp:450:0.1",
                             "--oven", "3.2=ramp:450:0.1", "--oven", "6.1=ramp:450:0.1"}};
  std::unique_ptr<Tavrel> form;
  FormScreens screens{program};
};

TEST_P(InstallationOnTheWire, ChangesThreeTestsAndTheNineOthersLoseNothing) {
  WaitForRows(4);
  Then("TavInst", [this] {
    auto* grid = Find<EditGrid>("Sheet");
    const auto go = [grid](int row, int column) {
      grid->setCurrentCell(row - 1, column);
      grid->setFocus();
    };
    QTest::keyClick(Find("Test_Des_3"), Qt::Key_End);
    QTest::keyClicks(Find("Test_Des_3"), " new");
    go(6, kFirstInput + 13);
    QTest::keyClicks(grid, "M");
    go(12, kNumber);
    QTest::keyClick(grid, Qt::Key_Delete);
    const int rows = program.state.SampleCount[1];
    EXPECT_TRUE(WaitUntil([&] { return program.state.SampleCount[1] >= rows + 2; }))
        << "recordings go on beneath the form";
    QTest::keyClick(grid, Qt::Key_Return);
  });
  form->findChild<QAction*>("MnuInst")->trigger();
  EXPECT_EQ(program.dialogs.boxes.back().Text, "new installation");
  EXPECT_TRUE(program.dialogs.announced.empty());
  WaitForRows(program.state.SampleCount[1] + 3);
  program.cycle.Stop();

  for (int slot = 1; slot <= kSlots; ++slot) {
    const bool is_changed = slot == 3 || slot == 6 || slot == 12;
    const UnitRecord header = FileHeader(NameOf(slot));
    const Findings findings = FindingsOf(slot);
    EXPECT_EQ(header.UnitRecOn, is_changed ? 0 : 1) << slot;
    EXPECT_EQ(findings.wrong + findings.torn + findings.shifted + findings.doubled, 0) << slot;
    EXPECT_GE(findings.rows, 4) << slot;
    if (!is_changed) {
      EXPECT_TRUE(findings.Agrees()) << slot << testing::PrintToString(findings);
      EXPECT_EQ(program.state.SlotFile[slot], NameOf(slot));
    } else {
      EXPECT_LE(findings.lost, 1) << "no more than the set that was half read";
    }
  }
  EXPECT_NE(program.state.SlotFile[3], NameOf(3));
  EXPECT_EQ(program.state.Unit[3].ApparatusName(), "Oven new");
  EXPECT_EQ(program.state.Unit[6].UnitChannels, 4);
  EXPECT_EQ(program.state.SlotFile[12], "");
}

INSTANTIATE_TEST_SUITE_P(BothLines, InstallationOnTheWire, testing::Bool(),
                         [](const auto& param) { return param.param ? "plugin" : "direct"; });

}  // namespace
}  // namespace tavrel
