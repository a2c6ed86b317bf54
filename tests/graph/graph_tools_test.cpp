#include <gmock/gmock.h>

#include <filesystem>
#include <set>

#include "tests/support/colours.h"
#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A part view of 10..90 minutes, 100..900 degrees, over curves at 200, 400 and 600 degrees.
class GraphTool : public testing::Test {
 protected:
  GraphTool() {
    std::vector<double> degrees;
    for (int row = 0; row < 101; ++row) {
      degrees.insert(degrees.end(), {200, 400, 600});
    }
    bench.LoadAndOpen(GraphBench::Words(degrees));
    bench.ShowPart({10, 100}, {90, 900});
  }

  void ChooseCurve(int place) { bench.graph.PicColor_MouseUp(place / 15.0); }

  void DrawBaseline(const std::array<PlotPoint, 5>& points) {
    bench.Drag(points[0], points[1]);
    bench.Click(points[2]);
    bench.Click(points[3]);
    bench.Click(points[4]);
  }

  GraphBench bench;
};

TEST_F(GraphTool, PartRangeIsTheBandAndIsKeptInTheHeader) {
  EXPECT_NEAR(bench.View(kPartView).XLeft, 10, 1e-9);
  EXPECT_NEAR(bench.View(kPartView).YTop, 900, 1e-9);
  EXPECT_THAT(bench.Unit().UnitView, ElementsAre(9841, 7031, 27059, 25744));
  EXPECT_TRUE(bench.program.state.SlotDirty[GraphBench::kSlot]);
}

TEST_F(GraphTool, RestsInThePartView) {
  EXPECT_EQ(bench.ToolState(), Tool::kNone);
  const auto before = bench.PicC(kPartView).strokes;
  bench.Drag({20, 200}, {30, 300});
  EXPECT_EQ(bench.PicC(kPartView).strokes, before);
  EXPECT_FALSE(bench.graph.State().DragOn);
}

TEST_F(GraphTool, DifferenceTakesTwoPointsAndShowsThem) {
  bench.graph.PbEval_Click(0);
  EXPECT_EQ(bench.Shown().Lbl_Instr, "set 1st point");
  EXPECT_FALSE(bench.Shown().PbEvalEnabled[0]);
  EXPECT_TRUE(bench.Shown().PbEvalEnabled[1]);
  EXPECT_EQ(bench.ToolState(), Tool::kFirstPoint);
  bench.Click({20, 200});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "set 2nd point");
  EXPECT_EQ(bench.ToolState(), Tool::kSecondPoint);
  bench.Click({40, 270});
  EXPECT_EQ(bench.ToolState(), Tool::kResult);
  EXPECT_EQ(bench.Shown().Lbl_Instr, "dy = 70.00       dx = 0.33 h       dy/dx = 210000 E-3");
  EXPECT_TRUE(bench.Shown().PbEvalEnabled[0]);
  const auto crosses = bench.PicC(kPartView).LinesOf(kBlue);
  ASSERT_THAT(crosses, SizeIs(4));
  EXPECT_NEAR(crosses[0].At.X1, 20 - 80 / 70.0, 1e-9);
  EXPECT_NEAR(crosses[1].At.Y2, 200 + 800 / 50.0, 1e-9);
  EXPECT_THAT(bench.ImgC(kPartView).LinesOf(kBlue), IsEmpty());
}

TEST_F(GraphTool, ResultStandsUntilAButtonAndTheMouseDoesNothing) {
  bench.graph.PbEval_Click(0);
  bench.Click({20, 200});
  bench.Click({40, 270});
  bench.Click({50, 500});
  EXPECT_EQ(bench.ToolState(), Tool::kResult);
  bench.graph.cmdPart_Click();
  EXPECT_EQ(bench.ToolState(), Tool::kNone);
  EXPECT_THAT(bench.PicC(kPartView).LinesOf(kBlue), IsEmpty());
}

TEST_F(GraphTool, PositionsAreHeldInThePlot) {
  bench.graph.PbEval_Click(0);
  bench.Click({-50, -50});
  bench.Click({500, 5000});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "dy = 800.0       dx = 1.33 h       dy/dx = 600000 E-3");
}

TEST_F(GraphTool, IntegralAsksForACurveOfTheLegend) {
  bench.graph.PbEval_Click(1);
  EXPECT_EQ(bench.Shown().Lbl_Instr, "select a curve ...");
  EXPECT_TRUE(bench.Shown().Up_ArrowShown);
  bench.Click({20, 200});  // not on the plot
  EXPECT_EQ(bench.ToolState(), Tool::kChooseCurve);
  ChooseCurve(4);  // below the last row
  EXPECT_EQ(bench.ToolState(), Tool::kChooseCurve);
  ChooseCurve(0);  // above the first
  EXPECT_EQ(bench.ToolState(), Tool::kChooseCurve);
  ChooseCurve(2);
  EXPECT_EQ(bench.ToolState(), Tool::kBaseline1);
  EXPECT_FALSE(bench.Shown().Up_ArrowShown);
  EXPECT_EQ(bench.Shown().Lbl_Instr, "draw baseline part 1 of 4");
}

TEST_F(GraphTool, BaselineIsDrawnInFourPartsWithAPromptForEach) {
  bench.graph.PbEval_Click(1);
  ChooseCurve(2);
  bench.Drag({20, 300}, {30, 300});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "draw baseline part 2 of 4");
  EXPECT_EQ(bench.PicC(kPartView).LinesOf(kRed).back().At, (Segment{20, 300, 30, 300, kRed}));
  bench.Drag({70, 800}, {40, 300});  // its start does not count
  EXPECT_EQ(bench.PicC(kPartView).LinesOf(kRed).back().At, (Segment{30, 300, 40, 300, kRed}));
  EXPECT_EQ(bench.Shown().Lbl_Instr, "draw baseline part 3 of 4");
  bench.Click({50, 300});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "draw baseline part 4 of 4");
  bench.Click({60, 300});
  EXPECT_EQ(bench.ToolState(), Tool::kResult);
  EXPECT_EQ(bench.Shown().Lbl_Instr, "Integral =  4000 °C·min");  // 40 rows of 100 degrees
}

TEST_F(GraphTool, BaselineMayBeDrawnFromRightToLeft) {
  bench.graph.PbEval_Click(1);
  ChooseCurve(2);
  DrawBaseline({{{60, 300}, {50, 300}, {40, 300}, {30, 300}, {20, 300}}});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "Integral =  4000 °C·min");
}

TEST_F(GraphTool, BothSidesOfABaselineAdd) {
  bench.graph.PbEval_Click(1);
  ChooseCurve(2);
  DrawBaseline({{{20, 300}, {40, 300}, {40, 500}, {60, 500}, {60, 500}}});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "Integral =  4000 °C·min");
}

TEST_F(GraphTool, BaselineOnOneVerticalLineHasNoArea) {
  bench.graph.PbEval_Click(1);
  ChooseCurve(1);
  DrawBaseline({{{30, 200}, {30, 300}, {30, 400}, {30, 500}, {30, 600}}});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "Integral =  0 °C·min");
}

TEST_F(GraphTool, IntegralHatchesEveryRowOnTheScreenOnly) {
  const auto before = bench.ImgC(kPartView).strokes;
  bench.graph.PbEval_Click(1);
  ChooseCurve(2);
  DrawBaseline({{{20, 300}, {30, 300}, {40, 300}, {50, 300}, {60, 300}}});
  const Stroke hatch = bench.PicC(kPartView).LinesOf(kRed).back();
  EXPECT_EQ(hatch.At, (Segment{500 + 59 * 3, 300, 500 + 59 * 3, 400, kRed}));
  EXPECT_EQ(hatch.In, (Scale{530, bench.View(kPartView).YTop, 770, bench.View(kPartView).YBottom}));
  EXPECT_EQ(bench.ImgC(kPartView).strokes, before);
}

// Row 40 is the first that the cut file does not have.
TEST_F(GraphTool, IntegralLeavesOutWhatCannotBeRead) {
  std::filesystem::resize_file(bench.program.home.File("tavdat/M260314A.OVN"), 1000 + 40 * 6);
  bench.graph.PbEval_Click(1);
  ChooseCurve(2);
  DrawBaseline({{{20, 300}, {30, 300}, {40, 300}, {50, 300}, {60, 300}}});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "Integral =  2000 °C·min");  // 20 rows of 100 degrees
  const Stroke hatch = bench.PicC(kPartView).LinesOf(kRed).back();
  EXPECT_EQ(hatch.At, (Segment{500 + 39 * 3, 300, 500 + 39 * 3, 400, kRed}));
}

TEST(Integral, IsOfEveryRowInLowResolutionToo) {
  GraphBench bench;
  bench.header.UnitRes = 54;
  bench.header.UnitXmax = 1000;
  bench.header.UnitView = {7689, 4692, 29211, 28083};
  // Every tenth row is 100 degrees above the others, which the drawing of every ninth cannot see.
  std::vector<double> degrees;
  for (int row = 0; row < 1000; ++row) {
    degrees.insert(degrees.end(), {row % 10 == 0 ? 400.0 : 300.0, 0, 0});
  }
  bench.LoadAndOpen(GraphBench::Words(degrees));
  bench.Tick();
  bench.graph.cmdPart_Click();
  bench.Tick();
  bench.graph.PbEval_Click(1);
  bench.graph.PicColor_MouseUp(1 / 15.0);
  bench.Drag({100, 300}, {200, 300});
  bench.Click({300, 300});
  bench.Click({400, 300});
  bench.Click({500, 300});
  EXPECT_EQ(bench.View(kPartView).RecStep, 27);
  EXPECT_EQ(bench.Shown().Lbl_Instr, "Integral =  4000 °C·min");  // 40 rows of 100 degrees
}

TEST_F(GraphTool, IntegralOfAModeIsOfTheDifferenceFromTheReference) {
  bench.Unit().UnitRef = 2;
  bench.program.state.OverPrepared = false;
  bench.graph.CboXY_Click(1);
  bench.Tick();
  bench.graph.PbEval_Click(1);
  ChooseCurve(3);  // 200 above the reference
  DrawBaseline({{{20, 0}, {30, 0}, {40, 0}, {50, 0}, {60, 0}}});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "Integral =  8000 °C·min");
}

TEST_F(GraphTool, IntegralCountsSecondsOfTheInterval) {
  bench.program.state.RecInterval[GraphBench::kSlot] = 30;
  bench.program.state.PartPrepared = false;
  bench.Tick();
  bench.graph.PbEval_Click(1);
  ChooseCurve(2);
  DrawBaseline({{{20, 300}, {25, 300}, {30, 300}, {35, 300}, {40, 300}}});
  EXPECT_EQ(bench.Shown().Lbl_Instr, "Integral =  2000 °C·min");  // 40 rows of half a minute
}

TEST_F(GraphTool, EscapeDuringTheBaselineLeavesACleanPlot) {
  bench.graph.PbEval_Click(1);
  ChooseCurve(2);
  bench.Drag({20, 300}, {30, 300});
  bench.graph.PicC_MouseDown({30, 300});
  bench.graph.PicC_MouseMove({40, 350});
  bench.graph.KeyEscape();
  EXPECT_EQ(bench.ToolState(), Tool::kNone);
  EXPECT_EQ(bench.PicC(kPartView).Seen(), bench.ImgC(kPartView).Seen());
  EXPECT_FALSE(bench.Shown().Lbl_InstrShown);
  EXPECT_TRUE(bench.graph.IsOpen());
  bench.graph.PicC_MouseUp({40, 350});
  EXPECT_EQ(bench.ToolState(), Tool::kNone);
}

TEST_F(GraphTool, EscapeEndsATool) {
  for (const Tool tool :
       {Tool::kFirstPoint, Tool::kSecondPoint, Tool::kChooseCurve, Tool::kBaseline1,
        Tool::kBaseline2, Tool::kBaseline3, Tool::kBaseline4, Tool::kMarkPoint, Tool::kMarkLocation,
        Tool::kComment, Tool::kCommentLocation}) {
    const bool is_difference = tool <= Tool::kSecondPoint;
    if (tool < Tool::kMarkPoint) {
      bench.graph.PbEval_Click(is_difference ? 0 : 1);
    } else {
      bench.graph.PbMark_Click(tool < Tool::kComment ? 1 : 2);
    }
    for (int n = 0; bench.ToolState() != tool && n < 10; ++n) {
      if (bench.ToolState() == Tool::kChooseCurve) {
        ChooseCurve(1);
      } else if (bench.ToolState() == Tool::kComment) {
        bench.graph.Txt_for_Mark_Change("text");
        bench.graph.KeyEnter();
      } else {
        bench.Click({30, 300});
      }
    }
    ASSERT_EQ(bench.ToolState(), tool);
    bench.graph.KeyEscape();
    EXPECT_EQ(bench.ToolState(), Tool::kNone);
    EXPECT_TRUE(bench.graph.IsOpen());
    EXPECT_EQ(bench.graph.State().ViewWanted, kPartView);
  }
}

// The field of a mark's text takes the place of the reading at the cursor, until another tool
// begins.
TEST_F(GraphTool, AnotherToolBringsTheReadingBack) {
  for (const int tool : {0, 1}) {
    bench.graph.PbMark_Click(2);
    ASSERT_EQ(bench.ToolState(), Tool::kComment);
    EXPECT_FALSE(bench.Shown().picXYShown);
    EXPECT_TRUE(bench.Shown().Txt_for_MarkShown);
    bench.graph.PbEval_Click(tool);
    EXPECT_TRUE(bench.Shown().picXYShown);
    EXPECT_FALSE(bench.Shown().Txt_for_MarkShown);
    bench.graph.KeyEscape();
  }
}

TEST_F(GraphTool, EscapeAtRestLeavesTheGraph) {
  bench.graph.KeyEscape();
  bench.Tick();
  EXPECT_FALSE(bench.graph.IsOpen());
}

TEST_F(GraphTool, MouseDoesNothingWhileADrawingGoesOn) {
  bench.graph.PbEval_Click(0);
  bench.program.state.PartPrepared = false;
  bench.program.events.on_pump = [this] {
    bench.Click({20, 200});
    bench.graph.PbEval_Click(1);
    bench.graph.PicColor_MouseUp(0.1);
  };
  bench.Tick();
  EXPECT_EQ(bench.ToolState(), Tool::kFirstPoint);
}

TEST_F(GraphTool, ReadOutFollowsTheMouseAndGoesWithIt) {
  bench.graph.PicC_MouseMove({12.345, 250});
  EXPECT_EQ(bench.Shown().lbX, "x = 12.35");
  EXPECT_EQ(bench.Shown().lbY, "y = 250.0");
  bench.graph.PicC_MouseLeave();
  EXPECT_EQ(bench.Shown().lbX, "");
  EXPECT_EQ(bench.Shown().lbY, "");
}

TEST_F(GraphTool, ReadOutIsHeldInThePlot) {
  bench.graph.PicC_MouseMove({-3, 5000});
  EXPECT_EQ(bench.Shown().lbX, "x = 10.00");
  EXPECT_EQ(bench.Shown().lbY, "y = 900.0");
}

TEST_F(GraphTool, ReadOutHasNoXOnAReferenceAxis) {
  bench.graph.CboXY_Click(2);
  bench.Tick();
  bench.graph.PicC_MouseMove({12.345, 50});
  EXPECT_EQ(bench.Shown().lbX, "");
  EXPECT_EQ(bench.Shown().lbY, "y = 50.00");
}

TEST_F(GraphTool, KeyboardMovesTheCursorByPointsAndTakesThem) {
  bench.graph.MoveCursor(CursorMove::kToStart, 1);
  EXPECT_EQ(bench.Shown().lbX, "x = 10.00");
  bench.graph.MoveCursor(CursorMove::kRight, 10);
  EXPECT_EQ(bench.Shown().lbX, "x = 20.00");
  bench.graph.MoveCursor(CursorMove::kLeft, 1);
  EXPECT_EQ(bench.Shown().lbX, "x = 19.00");
  EXPECT_EQ(bench.Shown().lbY, "y = 500.0");
  bench.graph.MoveCursor(CursorMove::kUp, 10);
  EXPECT_EQ(bench.Shown().lbY, "y = 580.0");
  bench.graph.PbEval_Click(0);
  bench.graph.PressCursor();
  EXPECT_EQ(bench.ToolState(), Tool::kSecondPoint);
  bench.graph.MoveCursor(CursorMove::kToEnd, 1);
  EXPECT_TRUE(bench.Shown().KeyCursorShown);
  bench.graph.PressCursor();
  EXPECT_EQ(bench.ToolState(), Tool::kResult);
  EXPECT_EQ(bench.Shown().Lbl_Instr.substr(0, 30), "dy = 0.00       dx = 71.00 min");
  bench.graph.PicC_MouseMove({20, 200});
  EXPECT_FALSE(bench.Shown().KeyCursorShown);
}

TEST_F(GraphTool, KeyboardChoosesTheCurveNextToTheCursorAndDragsTheBaseline) {
  bench.graph.PbEval_Click(1);
  bench.graph.MoveCursor(CursorMove::kDown, 10);  // 420 degrees, next to 400
  bench.graph.PressCursor();
  EXPECT_EQ(bench.ToolState(), Tool::kBaseline1);
  bench.graph.MoveCursor(CursorMove::kToStart, 1);
  bench.graph.PressCursor();
  bench.graph.MoveCursor(CursorMove::kRight, 10);
  bench.graph.PressCursor();
  EXPECT_EQ(bench.ToolState(), Tool::kBaseline2);
  EXPECT_EQ(bench.PicC(kPartView).LinesOf(kRed).back().At, (Segment{10, 420, 20, 420, kRed}));
}

TEST_F(GraphTool, KeyboardChoosesEachCurve) {
  const std::vector<Colour> inks = {kBlack, kRed, {0, 0xAA, 0}};
  std::set<std::size_t> chosen;
  for (const auto& [move, steps] :
       {std::pair(CursorMove::kUp, 10), std::pair(CursorMove::kUp, 20),
        std::pair(CursorMove::kDown, 35), std::pair(CursorMove::kDown, 10),
        std::pair(CursorMove::kDown, 10), std::pair(CursorMove::kDown, 10)}) {
    bench.graph.PbEval_Click(1);
    bench.graph.MoveCursor(move, steps);
    const double degrees = std::stod(bench.Shown().lbY.substr(4));
    const std::size_t nearest = degrees < 300 ? 0 : degrees < 500 ? 1 : 2;
    bench.graph.PressCursor();
    ASSERT_EQ(bench.ToolState(), Tool::kBaseline1) << degrees;
    DrawBaseline({{{20, 100}, {30, 100}, {40, 100}, {50, 100}, {60, 100}}});
    EXPECT_TRUE(bench.PicC(kPartView).strokes.back().At.Ink == inks.at(nearest)) << degrees;
    chosen.insert(nearest);
  }
  EXPECT_EQ(chosen.size(), inks.size());
}

class PartRange : public testing::Test {
 protected:
  PartRange() {
    bench.header.UnitView = {7689, 4692, 29211, 28083};
    bench.LoadAndOpen(bench.Slopes(5));
    bench.Tick();
  }
  GraphBench bench;
};

TEST_F(PartRange, BandIsABoxOnTheScreenOnlyWhileItIsDrawn) {
  const auto before = bench.ImgC(kOverview).Seen();
  bench.graph.PicC_MouseDown({20, 200});
  EXPECT_THAT(bench.PicC(kOverview).Of(StrokeKind::kBox), IsEmpty());  // the old frame is gone
  bench.graph.PicC_MouseMove({30, 300});
  bench.graph.PicC_MouseMove({60, 700});
  const auto boxes = bench.PicC(kOverview).Of(StrokeKind::kBox);
  ASSERT_THAT(boxes, SizeIs(1));
  EXPECT_EQ(boxes.front().At, (Segment{20, 200, 60, 700, kBlack}));
  EXPECT_EQ(boxes.front().With, (Pen{PenMode::kInvert, PenStyle::kSolid, 1}));
  bench.graph.PicC_MouseUp({60, 700});
  const auto frames = bench.PicC(kOverview).Of(StrokeKind::kBox);
  ASSERT_THAT(frames, SizeIs(1));
  EXPECT_EQ(frames.front().With.Style, PenStyle::kDot);
  EXPECT_EQ(frames.front().At, (Segment{20, 200, 60, 700, kBlack}));
  EXPECT_EQ(bench.ImgC(kOverview).Seen().size(), before.size());
  EXPECT_EQ(bench.ToolState(), Tool::kPartRange);
}

TEST_F(PartRange, IsTakenFromTheLastMoveOfTheBand) {
  bench.graph.PicC_MouseDown({20, 200});
  bench.graph.PicC_MouseMove({60, 700});
  bench.graph.PicC_MouseUp({90, 900});
  EXPECT_EQ(bench.graph.State().PartX2, 60);
  EXPECT_EQ(bench.graph.State().PartY2, 700);
}

TEST_F(PartRange, GivesUpTheMarks) {
  bench.Unit().UnitMarks = 4;
  bench.Drag({60, 700}, {20, 200});
  EXPECT_EQ(bench.Unit().UnitMarks, 0);
  EXPECT_EQ(bench.graph.State().PartX1, 20);
  EXPECT_EQ(bench.graph.State().PartY1, 200);
  EXPECT_FALSE(bench.program.state.PartPrepared);
}

// A hand trembles while it clicks.
TEST_F(PartRange, IsLeftAloneByAMereClick) {
  for (const PlotPoint to : {PlotPoint{20, 200}, PlotPoint{20.4, 204}, PlotPoint{19.6, 196}}) {
    bench.Drag({20, 200}, to);
    EXPECT_THAT(bench.program.dialogs.boxes, SizeIs(0));
    EXPECT_EQ(bench.graph.State().PartX2, 100);
    EXPECT_THAT(bench.PicC(kOverview).Of(StrokeKind::kBox), SizeIs(1));
  }
  EXPECT_FALSE(bench.program.state.SlotDirty[GraphBench::kSlot]);
  bench.graph.PicC_MouseDown({20, 200});
  bench.graph.PicC_MouseMove({50, 700});
  bench.graph.PicC_MouseMove({20, 200});
  bench.graph.PicC_MouseUp({20, 200});
  EXPECT_THAT(bench.program.dialogs.boxes, SizeIs(1)) << "that was a drag";
}

TEST_F(PartRange, OfAMinuteOrADegreeIsTooSmallAndTheOldOneStays) {
  for (const PlotPoint to : {PlotPoint{21, 700}, PlotPoint{60, 201}}) {
    bench.program.dialogs.boxes.clear();
    bench.Unit().UnitMarks = 4;
    bench.Drag({20, 200}, to);
    ASSERT_THAT(bench.program.dialogs.boxes, SizeIs(1));
    EXPECT_EQ(bench.program.dialogs.boxes.front().Text, "too small");
    EXPECT_EQ(bench.program.dialogs.boxes.front().Title, "window");
    EXPECT_EQ(bench.program.dialogs.boxes.front().Icon, BoxIcon::kInformation);
    EXPECT_EQ(bench.Unit().UnitMarks, 4);
    EXPECT_EQ(bench.graph.State().PartX2, 100);
    EXPECT_THAT(bench.PicC(kOverview).Of(StrokeKind::kBox), SizeIs(1));
  }
  EXPECT_FALSE(bench.program.state.SlotDirty[GraphBench::kSlot]);
}

TEST_F(PartRange, BandDoesNotFollowBelowZero) {
  bench.Unit().UnitYmin = -500;
  bench.program.state.OverPrepared = false;
  bench.Tick();
  bench.graph.PicC_MouseDown({20, 200});
  bench.graph.PicC_MouseMove({60, -300});
  EXPECT_EQ(bench.PicC(kOverview).Of(StrokeKind::kBox).back().At,
            (Segment{20, 200, 60, 0, kBlack}));
}

TEST_F(PartRange, ByTheKeyboardIsBegunAndEndedByThePress) {
  bench.graph.MoveCursor(CursorMove::kToStart, 1);
  bench.graph.PressCursor();
  EXPECT_TRUE(bench.graph.State().DragOn);
  bench.graph.MoveCursor(CursorMove::kRight, 30);
  bench.graph.MoveCursor(CursorMove::kUp, 20);
  bench.graph.PressCursor();
  EXPECT_EQ(bench.graph.State().PartX2, 30);
  EXPECT_EQ(bench.graph.State().PartY1, 500);
  EXPECT_EQ(bench.graph.State().PartY2, 700);
}

// A drag wipes the old rectangle first, in the picture in memory too.
class PartRectangle : public GraphTool {
 protected:
  PartRectangle() {
    bench.graph.cmdOver_Click();
    bench.Tick();
    before_ = bench.ImgC(kOverview).Of(StrokeKind::kBox);
    bench.graph.PicC_MouseDown({20, 200});
    bench.graph.PicC_MouseMove({40, 400});
  }
  // The one rectangle, in the same place and scale, in both pictures.
  void ExpectRectangle() {
    ASSERT_THAT(before_, SizeIs(1));
    EXPECT_EQ(bench.ImgC(kOverview).Of(StrokeKind::kBox), before_);
    EXPECT_EQ(bench.PicC(kOverview).Of(StrokeKind::kBox), before_);
    EXPECT_FALSE(bench.graph.State().DragOn);
  }
  void OpenAgain() {
    bench.graph.Open();
    bench.Tick();
  }

 private:
  std::vector<Stroke> before_;
};

TEST_F(PartRectangle, StaysWhenEnterLeavesTheDrag) {
  bench.graph.KeyEnter();
  ExpectRectangle();
  bench.Tick();
  bench.graph.KeyEnter();
  bench.Tick();
  ExpectRectangle();
}

TEST_F(PartRectangle, StaysWhenEscapeLeavesTheDragAndTheGraph) {
  bench.graph.KeyEscape();
  bench.Tick();
  ExpectRectangle();
  OpenAgain();
  ExpectRectangle();
}

TEST_F(PartRectangle, StaysWhenTheGraphIsClosedBeneathTheDrag) {
  bench.graph.CloseNow();
  ExpectRectangle();
  OpenAgain();
  ExpectRectangle();
}

TEST_F(PartRectangle, IsOneAfterTheNextDrag) {
  bench.graph.KeyEnter();
  bench.Tick();
  bench.graph.KeyEnter();
  bench.Tick();
  bench.Drag({30, 300}, {60, 600});
  const auto boxes = bench.ImgC(kOverview).Of(StrokeKind::kBox);
  ASSERT_THAT(boxes, SizeIs(1));
  EXPECT_EQ(boxes[0].At, (Segment{30, 300, 60, 600, kBlack}));
}

// The scale of the pictures is that of records while curves grow.
TEST(PartRectangleOfALiveGraph, StaysInItsPlaceWhenEnterComesWhileRowsAreDrawn) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(60));
  bench.program.state.SampleCount[GraphBench::kSlot] = 20;
  bench.ShowPart({10, 100}, {90, 900});
  bench.graph.cmdOver_Click();
  bench.Tick();
  const auto before = bench.ImgC(kOverview).Of(StrokeKind::kBox);
  ASSERT_THAT(before, SizeIs(1));
  bench.graph.PicC_MouseDown({20, 200});
  bench.program.state.SampleCount[GraphBench::kSlot] = 60;
  bench.program.events.on_pump = [&bench] { bench.graph.KeyEnter(); };
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).Of(StrokeKind::kBox), before);
  EXPECT_EQ(bench.graph.State().ViewWanted, kPartView);
}

TEST_F(GraphTool, LabelOfAnAbandonedMarkGoesWhenAnotherToolBegins) {
  for (const bool by_comment : {false, true}) {
    for (const int tool : {0, 1, 2, 3, 4}) {
      if (by_comment) {
        bench.graph.PbMark_Click(2);
        bench.graph.Txt_for_Mark_Change("text");
        bench.graph.KeyEnter();
      } else {
        bench.graph.PbMark_Click(1);
        bench.Click({30, 300});
      }
      ASSERT_TRUE(bench.Shown().lbXYShown);
      tool < 2 ? bench.graph.PbEval_Click(tool) : bench.graph.PbMark_Click(tool - 2);
      EXPECT_FALSE(bench.Shown().lbXYShown) << tool;
      bench.graph.KeyEscape();
      bench.graph.CancelTool();
    }
  }
}

// While the place of a mark's text is chosen the reading is hidden.
TEST_F(GraphTool, ReadOutIsThatOfTheCursorAfterAMark) {
  bench.graph.PicC_MouseMove({20, 200});
  bench.graph.PbMark_Click(1);
  bench.Click({20, 200});
  bench.graph.PicC_MouseMove({40, 500});
  bench.graph.PicC_MouseDown({41, 510});
  bench.graph.PicC_MouseUp({42, 520});
  EXPECT_TRUE(bench.Shown().picXYShown);
  EXPECT_EQ(bench.Shown().lbX, "x = 42.00");
  EXPECT_EQ(bench.Shown().lbY, "y = 520.0");
}

TEST_F(GraphTool, ReadOutIsThatOfTheCursorAfterAnAbandonedMark) {
  bench.graph.PicC_MouseMove({20, 200});
  bench.graph.PbMark_Click(2);
  bench.graph.PicC_MouseMove({40, 500});
  bench.graph.KeyEscape();
  EXPECT_EQ(bench.Shown().lbX, "x = 40.00");
  EXPECT_EQ(bench.Shown().lbY, "y = 500.0");
}

}  // namespace
}  // namespace tavrel
