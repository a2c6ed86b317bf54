#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "graph/graph_output.h"
#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;

constexpr const char* kProblem = "There was a problem printing to your printer.";

// The part view 10..60 minutes of a recording of 80 rows.
class ThePrint : public testing::Test, public GraphBench {
 protected:
  void SetUp() override {
    LoadAndOpen(Slopes(80));
    ShowPart({10, 100}, {60, 600});
    program.dialogs.boxes.clear();
    program.events.pointers.clear();
    program.state.SettingsChanged = false;
    program.printer.chosen->PrinterName = "office";
    program.dialogs.on_box = [this] { idle_in_box = program.state.GraphIdle && Shown().TimerOn; };
  }
  void Print() { program.graph_output.MnuPrint_Click(); }
  std::vector<std::string> Boxes() const {
    std::vector<std::string> texts;
    for (const Notice& box : program.dialogs.boxes) {
      texts.push_back(box.Text);
    }
    return texts;
  }
  void ExpectAllIsBack() {
    EXPECT_TRUE(program.state.GraphIdle);
    EXPECT_TRUE(Shown().TimerOn);
    EXPECT_TRUE(Shown().PbPrintEnabled);
    if (!program.events.pointers.empty()) {
      EXPECT_EQ(program.events.pointers.back(), Pointer::kNormal);
    }
  }
  Colour InkOfInput2() {
    const auto red = program.printer.pages.back().LinesOf({0xFF, 0, 0});
    return red.empty() ? kBlack : red.front().At.Ink;
  }

  bool idle_in_box = false;
};

TEST_F(ThePrint, OffersTheLastPrinterAndNamesTheDocument) {
  program.state.Settings.PrintName = "laboratory";
  Print();
  ASSERT_EQ(program.printer.offered.size(), 1U);
  EXPECT_EQ(program.printer.offered[0].PrinterName, "laboratory");
  EXPECT_EQ(program.printer.offered[0].Document, "M260314A.OVN");
}

TEST_F(ThePrint, PrintsOnePage) {
  Print();
  EXPECT_EQ(program.printer.pages.size(), 1U);
  EXPECT_EQ(program.printer.jobs, 1);
  EXPECT_TRUE(Boxes().empty());
  EXPECT_THAT(program.events.pointers, ElementsAre(Pointer::kHourglass, Pointer::kNormal));
  ExpectAllIsBack();
}

TEST_F(ThePrint, DrawsEveryCopyAfresh) {
  program.printer.chosen->Copies = 3;
  Print();
  ASSERT_EQ(program.printer.pages.size(), 3U);
  EXPECT_EQ(program.printer.pages.front().strokes, program.printer.pages.back().strokes);
  EXPECT_GT(program.printer.pages.back().strokes.size(), 100U);
  EXPECT_EQ(program.printer.jobs, 1);
}

TEST_F(ThePrint, EndsOnCancelAndKeepsTheSettings) {
  program.printer.chosen.reset();
  Print();
  EXPECT_TRUE(program.printer.pages.empty());
  EXPECT_EQ(program.state.Settings.PrintName, "");
  EXPECT_FALSE(program.state.SettingsChanged);
  EXPECT_TRUE(program.events.pointers.empty());
  ExpectAllIsBack();
}

TEST_F(ThePrint, KeepsThePrinterInTheSettings) {
  Print();
  EXPECT_EQ(program.state.Settings.PrintName, "office");
  EXPECT_EQ(program.state.Settings.PColorType, 2);
  EXPECT_TRUE(program.state.SettingsChanged);
  program.state.SettingsChanged = false;
  Print();
  EXPECT_FALSE(program.state.SettingsChanged);
  program.printer.chosen->IsColour = false;
  Print();
  EXPECT_EQ(program.state.Settings.PColorType, 1);
  EXPECT_TRUE(program.state.SettingsChanged);
}

TEST_F(ThePrint, GoesByThePrintersOwnColours) {
  program.state.Settings.PColorType = 1;
  Print();
  EXPECT_EQ(InkOfInput2(), (Colour{0xFF, 0, 0}));
  program.printer.chosen->IsColour = false;
  Print();
  EXPECT_EQ(InkOfInput2(), kBlack);
}

TEST_F(ThePrint, TakesAPrinterWithAcroInItsNameForAColourPrinter) {
  program.printer.chosen->IsColour = false;
  program.printer.chosen->PrinterName = "My Acro Writer";
  Print();
  EXPECT_EQ(InkOfInput2(), (Colour{0xFF, 0, 0}));
  EXPECT_EQ(program.state.Settings.PColorType, 2);
}

TEST_F(ThePrint, StopsAtAPageThatFails) {
  program.printer.chosen->Copies = 3;
  program.printer.fail_page = 2;
  Print();
  EXPECT_EQ(program.printer.pages.size(), 2U);
  EXPECT_THAT(Boxes(), ElementsAre(kProblem));
  EXPECT_EQ(program.dialogs.boxes[0].Icon, BoxIcon::kWarning);
  EXPECT_EQ(program.printer.jobs, 1);
  EXPECT_TRUE(idle_in_box);
  ExpectAllIsBack();
}

TEST_F(ThePrint, StopsAtAPageThatCannotBeBegun) {
  program.printer.chosen->Copies = 3;
  program.printer.no_page = 2;
  Print();
  EXPECT_EQ(program.printer.pages.size(), 1U);
  EXPECT_THAT(Boxes(), ElementsAre(kProblem));
  ExpectAllIsBack();
}

TEST_F(ThePrint, TellsOfAJobThatCannotEnd) {
  program.printer.fail_job = true;
  Print();
  EXPECT_THAT(Boxes(), ElementsAre(kProblem));
  EXPECT_TRUE(idle_in_box);
  ExpectAllIsBack();
}

TEST_F(ThePrint, NeverPrintsIntoAFileThatASlotHasOpen) {
  const std::string path = program.home.File(std::string("tavdat/") + kName);
  const std::string before = program.home.Read(std::string("tavdat/") + kName);
  program.printer.chosen->OutputFile = path;
  Print();
  EXPECT_TRUE(program.printer.pages.empty());
  EXPECT_THAT(Boxes(), ElementsAre(path + "\nFile is in use"));
  EXPECT_EQ(program.home.Read(std::string("tavdat/") + kName), before);
  ExpectAllIsBack();
}

TEST_F(ThePrint, CancelsAToolFirst) {
  graph.PbMark_Click(1);
  ASSERT_EQ(ToolState(), Tool::kMarkPoint);
  Print();
  EXPECT_EQ(ToolState(), Tool::kNone);
  EXPECT_FALSE(Shown().Lbl_InstrShown);
}

// Rows that arrive meanwhile come with the next tick, as ever.
TEST_F(ThePrint, LeavesThePartViewAsItWas) {
  const auto before = PicC(kPartView).Seen();
  Print();
  Tick();
  EXPECT_EQ(PicC(kPartView).Seen(), before);
  EXPECT_EQ(Shown().frCurve, kPartView);
}

// The dialog may stand open for hours.
TEST_F(ThePrint, HoldsTheCycleOffTheFileOnlyWhileItPrints) {
  std::vector<bool> idle;
  program.printer.on_choose = [&] { idle.push_back(program.state.GraphIdle); };
  program.printer.on_page = [&] { idle.push_back(program.state.GraphIdle); };
  Print();
  EXPECT_THAT(idle, ElementsAre(true, false));
}

}  // namespace
}  // namespace tavrel
