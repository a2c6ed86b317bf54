#include <gmock/gmock.h>

#include "tests/support/colours.h"
#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// Reference 2 rises a degree a row from 100; inputs 1 and 3 are 50 above and 20 below it.
std::vector<std::int16_t> Rising(int rows, double by = 1) {
  std::vector<double> degrees;
  for (int row = 0; row < rows; ++row) {
    const double reference = 100 + by * row;
    degrees.insert(degrees.end(), {reference + 50, reference, reference - 20});
  }
  return GraphBench::Words(degrees);
}

void OpenPart(GraphBench& bench, int mode, const std::vector<std::int16_t>& samples) {
  bench.header.UnitView = {7689, 4692, 29211, 28083};
  bench.header.UnitRef = 2;
  bench.header.UnitGraphMode = static_cast<std::int16_t>(mode);
  bench.LoadAndOpen(samples);
  bench.Tick();
  bench.graph.cmdPart_Click();
  bench.Tick();
}

TEST(RelativeMode, CentresTheSpanOfTheSelectionOnZero) {
  GraphBench bench;
  OpenPart(bench, 1, Rising(20));
  EXPECT_EQ(bench.View(kPartView).YTop, 500);
  EXPECT_EQ(bench.View(kPartView).YBottom, -500);
  EXPECT_EQ(bench.View(kOverview).YBottom, 0);
}

TEST(RelativeMode, SubtractsTheReferenceRowByRowAndLaysItOnZero) {
  GraphBench bench;
  OpenPart(bench, 1, Rising(20));
  const auto black = bench.ImgC(kPartView).LinesOf(kBlack);
  EXPECT_EQ(black.front().At, (Segment{0, 0, 100, 0, kBlack}));  // the zero line
  EXPECT_EQ(black.back().At, (Segment{500 + 3 * 17, 50, 500 + 3 * 18, 50, kBlack}));
  for (const Stroke& stroke : bench.ImgC(kPartView).LinesOf(kRed)) {
    EXPECT_EQ(stroke.At.Y1, 0);
    EXPECT_EQ(stroke.At.Y2, 0);
  }
}

TEST(RelativeMode, LeavesTheOverviewAbsolute) {
  GraphBench bench;
  OpenPart(bench, 1, Rising(20));
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kRed).front().At.Y1, 101);
}

TEST(RelativeMode, OfAHiddenReferenceSubtractsTheLastWordOfTheRowBefore) {
  GraphBench bench;
  bench.header.UnitColour[2] = 0;
  OpenPart(bench, 1, Rising(20));
  // Column 0 of row r is input 3 of row r - 1, 21 degrees below the reference of row r.
  EXPECT_EQ(bench.ImgC(kPartView).LinesOf(kBlack).back().At.Y2, 71);
}

TEST(ReferenceMode, PrintsTheReferenceAtTheRowsThatReachIt) {
  GraphBench bench;
  OpenPart(bench, 2, Rising(90));
  // 101..188 degrees are drawn: steps of 10 from 100 on, which is half of 20.
  EXPECT_EQ(bench.Shown().LblAxis[kPartView], "°C ");
  EXPECT_THAT(bench.PicX(kPartView).Texts(),
              ElementsAre("110 ", "120 ", "130 ", "140 ", "150 ", "160 ", "170 ", "180 "));
  const Stroke label = bench.PicX(kPartView).Of(StrokeKind::kText).front();
  EXPECT_EQ(label.In, (Scale{503, 0, 800, 10}));
  EXPECT_DOUBLE_EQ(label.At.X1, 530 - 4 * 7 / 700.0 * 297 / 2);
  EXPECT_EQ(bench.PicX(kPartView).LinesOf(kBlack).front().At, (Segment{530, 8, 530, 10, kBlack}));
  const ReferenceTicks& ticks = bench.graph.State().AxisTicks;
  EXPECT_EQ(ticks.AxisTickCount, 8);
  EXPECT_EQ(ticks.AxisTickX[7], 500 + 3 * 80);
  EXPECT_EQ(ticks.AxisTickText[7], "180 ");
}

TEST(ReferenceMode, LeavesOutALabelThatWouldTouchTheOneBefore) {
  GraphBench bench;
  bench.pic_x[1].dots_wide = 200;  // a label is 28 dots, a step of 10 rows 20 dots
  OpenPart(bench, 2, Rising(90));
  EXPECT_THAT(bench.PicX(kPartView).Texts(), ElementsAre("110 ", "130 ", "150 ", "170 "));
}

TEST(ReferenceMode, DrawsItsGridInPlaceOfTheTimeGrid) {
  GraphBench bench;
  OpenPart(bench, 2, Rising(90));
  std::vector<double> upright;
  for (const Stroke& stroke : bench.ImgC(kPartView).LinesOf(kGridColour)) {
    if (stroke.At.X1 == stroke.At.X2) {
      EXPECT_EQ(stroke.In, (Scale{503, 500, 800, -500}));
      upright.push_back(stroke.At.X1);
    }
  }
  // The tick at 100 comes at the first row, 101 degrees, where there is no room for its label.
  EXPECT_THAT(upright, ElementsAre(503, 530, 560, 590, 620, 650, 680, 710, 740));
}

TEST(ReferenceMode, OfAFallingReferencePrintsNothing) {
  GraphBench bench;
  OpenPart(bench, 2, Rising(90, -1));
  EXPECT_THAT(bench.PicX(kPartView).Texts(), IsEmpty());
  EXPECT_EQ(bench.Shown().LblAxis[kPartView], "°C ");
  EXPECT_EQ(bench.graph.State().AxisTicks.AxisTickCount, 0);
}

TEST(ReferenceMode, OfAFlatReferencePrintsNothing) {
  GraphBench bench;
  OpenPart(bench, 2, Rising(90, 0));
  EXPECT_THAT(bench.PicX(kPartView).Texts(), IsEmpty());
}

TEST(ReferenceMode, TakesADecimalWhereTheStepIsNotWhole) {
  GraphBench bench;
  OpenPart(bench, 2, Rising(90, 0.05));  // 100.05 .. 104.4: steps of a half
  EXPECT_THAT(bench.PicX(kPartView).Texts(), testing::Contains("100.5 "));
}

TEST(ReferenceMode, SpendsOneTickToARowOfAFastRise) {
  GraphBench bench;
  std::vector<double> degrees;
  for (int row = 0; row < 30; ++row) {
    const double reference = row < 10 ? 100 : 300;
    degrees.insert(degrees.end(), {0, reference, 0});
  }
  OpenPart(bench, 2, GraphBench::Words(degrees));
  // Steps of 25: 100 at the first row, then 125, 150 ... in the rows from the tenth on.
  std::vector<double> places;
  for (const Stroke& stroke : bench.ImgC(kPartView).LinesOf(kGridColour)) {
    if (stroke.At.X1 == stroke.At.X2) {
      places.push_back((stroke.At.X1 - 500) / 3);
    }
  }
  EXPECT_THAT(places, ElementsAre(1, 10, 11, 12, 13, 14, 15, 16, 17));
}

TEST(ReferenceMode, KeepsTheFirstTwentyTicksForThePage) {
  GraphBench bench;
  bench.header.UnitXmax = 2000;
  for (StrokeSurface& strip : bench.pic_x) {
    strip.dots_wide = 7000;
  }
  std::vector<double> degrees;
  for (int row = 0; row < 1900; ++row) {
    degrees.insert(degrees.end(), {0, 100 + 0.5 * row, 0});
  }
  OpenPart(bench, 2, GraphBench::Words(degrees));  // 950 degrees in steps of 100
  EXPECT_THAT(bench.PicX(kPartView).Texts(), SizeIs(9));
  degrees.clear();
  for (int row = 0; row < 1900; ++row) {
    degrees.insert(degrees.end(), {0, -1200 + 1.55 * row, 0});  // 2945 degrees in steps of 250
  }
  GraphBench wide;
  wide.header.UnitXmax = 2000;
  wide.pic_x[1].dots_wide = 70000;
  OpenPart(wide, 2, GraphBench::Words(degrees));
  EXPECT_LE(wide.graph.State().AxisTicks.AxisTickCount, kMaxAxisTicks);
}

TEST(ReferenceMode, HoldsTheTicksOfTheLastDrawingOnly) {
  GraphBench bench;
  OpenPart(bench, 2, Rising(90));
  const std::vector<std::int16_t> row = GraphBench::Words({200, 190, 170});
  ASSERT_TRUE(bench.program.files.AppendRow(GraphBench::kSlot, row, 1));
  bench.Tick();
  EXPECT_EQ(bench.graph.State().AxisTicks.AxisTickCount, 0);
  EXPECT_THAT(bench.PicX(kPartView).Texts(), SizeIs(8));
}

TEST(ChangeOfMode, GivesUpTheMarksAndPaintsThePartViewAnew) {
  GraphBench bench;
  OpenPart(bench, 0, Rising(20));
  bench.Unit().UnitMarks = 3;
  bench.graph.CboXY_Click(1);
  EXPECT_EQ(bench.Unit().UnitMarks, 0);
  EXPECT_EQ(bench.Unit().UnitGraphMode, 1);
  EXPECT_TRUE(bench.program.state.SlotDirty[GraphBench::kSlot]);
  EXPECT_EQ(bench.Shown().CboXY, 1);
  bench.Tick();
  EXPECT_EQ(bench.View(kPartView).YBottom, -500);
}

TEST(ChangeOfMode, ToTheModeThatIsThereChangesNothing) {
  GraphBench bench;
  OpenPart(bench, 1, Rising(20));
  bench.Unit().UnitMarks = 3;
  bench.graph.CboXY_Click(1);
  bench.graph.CboXY_Click(-1);
  bench.graph.CboXY_Click(3);
  EXPECT_EQ(bench.Unit().UnitMarks, 3);
  EXPECT_FALSE(bench.program.state.SlotDirty[GraphBench::kSlot]);
}

TEST(ChangeOfMode, WaitsWhileADrawingGoesOn) {
  GraphBench bench;
  bench.header.UnitView = {7689, 4692, 29211, 28083};
  bench.LoadAndOpen(Rising(20));
  bench.Tick();
  bench.graph.cmdPart_Click();
  bench.program.events.on_pump = [&bench] { bench.graph.CboXY_Click(1); };
  bench.Tick();
  EXPECT_EQ(bench.Unit().UnitGraphMode, 0);
}

TEST(ModeOfTheHeader, BeyondTheListIsShownAsItsNearestEntry) {
  GraphBench bench;
  OpenPart(bench, 7, Rising(20));
  EXPECT_EQ(bench.Shown().CboXY, 2);
  GraphBench negative;
  OpenPart(negative, -1, Rising(20));
  EXPECT_EQ(negative.Shown().CboXY, 0);
  EXPECT_EQ(negative.View(kPartView).YBottom, 0);
}

// Nothing that belongs to the old frame is seen or goes out until the next tick.
TEST(ChangeOfMode, IsInForceAtOnce) {
  GraphBench bench;
  OpenPart(bench, 0, Rising(60));
  for (const int mode : {2, 0, 1}) {
    bench.graph.CboXY_Click(mode);
    EXPECT_EQ(bench.View(kPartView).YBottom, mode == 0 ? 0 : -500) << mode;
    EXPECT_TRUE(bench.program.state.PartPrepared) << mode;
    EXPECT_EQ(bench.View(kPartView).RecNow, bench.View(kPartView).RecEnd) << mode;
    EXPECT_EQ(bench.graph.State().AxisTicks.AxisTickCount > 0, mode == 2) << mode;
    EXPECT_TRUE(bench.Shown().TimerOn) << mode;
    EXPECT_TRUE(bench.Shown().CboXYShown) << mode;
  }
}

TEST(ChangeOfMode, GoesOutAsItIsSeen) {
  GraphBench bench;
  OpenPart(bench, 0, Rising(60));
  bench.graph.CboXY_Click(2);
  bench.program.graph_output.MnuGraph_Click();
  ASSERT_TRUE(bench.program.clipboard.picture);
  const auto texts = bench.program.clipboard.picture->Texts();
  EXPECT_THAT(texts, testing::IsSupersetOf({"110", "120", "-400", "400"}));
  EXPECT_EQ(std::ranges::count(texts, "900"), 0);
}

// Pictures of another size make the overview unpainted, behind the part view.
TEST(ChangeOfMode, TakesTheOldReadingAway) {
  GraphBench bench;
  OpenPart(bench, 0, Rising(60));
  for (const bool is_resized : {false, true}) {
    if (is_resized) {
      bench.graph.Resized();
      bench.Tick();
    }
    bench.graph.PicC_MouseMove({20, 600});
    EXPECT_NE(bench.Shown().lbY, "");
    bench.graph.CboXY_Click(is_resized ? 0 : 1);
    EXPECT_EQ(bench.Shown().lbX, "") << is_resized;
    EXPECT_EQ(bench.Shown().lbY, "") << is_resized;
  }
}

TEST(ReferenceMode, HasNoTicksOfAnotherRecordingWhereItsViewHasNoRows) {
  GraphBench bench;
  OpenPart(bench, 2, Rising(60));
  ASSERT_GT(bench.graph.State().AxisTicks.AxisTickCount, 0);
  bench.program.state.SampleCount[GraphBench::kSlot] = 0;
  bench.program.state.PartPrepared = false;
  bench.Tick();
  EXPECT_EQ(bench.graph.State().AxisTicks.AxisTickCount, 0);
}

}  // namespace
}  // namespace tavrel
