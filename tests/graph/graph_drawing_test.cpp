#include <gmock/gmock.h>

#include <filesystem>

#include "tests/support/colours.h"
#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Colour kGreen{0, 0xAA, 0};  // light green as it is drawn

std::vector<Segment> Segments(const std::vector<Stroke>& strokes) {
  std::vector<Segment> segments;
  for (const Stroke& stroke : strokes) {
    segments.push_back(stroke.At);
  }
  return segments;
}

TEST(Overview, TakesItsFrameFromTheHeader) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(5));
  bench.Tick();
  const ViewFrame& view = bench.View(kOverview);
  EXPECT_EQ(view.XLeft, 0);
  EXPECT_EQ(view.XRight, 100);
  EXPECT_EQ(view.YTop, 1000);
  EXPECT_EQ(view.YBottom, 0);
  EXPECT_EQ(bench.Shown().lblRes, "high");
  EXPECT_EQ(bench.Shown().LblAxis[kOverview], "min");
}

TEST(Overview, RepairsEmptyAxesInTheHeader) {
  GraphBench bench;
  bench.header.UnitXmax = 0;
  bench.header.UnitYmax = 50;
  bench.header.UnitYmin = 50;
  bench.LoadAndOpen(bench.Slopes(5));
  bench.Tick();
  EXPECT_EQ(bench.Unit().UnitXmax, 1);
  EXPECT_EQ(bench.Unit().UnitYmax, 51);
  EXPECT_EQ(bench.View(kOverview).XRight, 1);
  EXPECT_EQ(bench.View(kOverview).YTop, 51);
}

TEST(Overview, SurvivesEveryWordThatAHeaderCanHold) {
  for (const int value : {-32768, -1, 0, 1, 32767}) {
    const auto word = static_cast<std::int16_t>(value);
    GraphBench bench;
    bench.header.UnitXmax = word;
    bench.header.UnitYmax = word;
    bench.header.UnitYmin = 32767;
    bench.header.UnitView.fill(word);
    bench.header.UnitGraphMode = word;
    bench.header.UnitMarks = word;
    bench.header.UnitMarkPos.fill(word);
    bench.header.UnitRes = word;
    bench.header.UnitColour.Fill(word);
    bench.header.UnitRef = 15;
    bench.LoadAndOpen(bench.Slopes(20));
    bench.Tick();
    bench.graph.cmdPart_Click();
    bench.Tick();
    EXPECT_EQ(bench.Shown().frCurve, kPartView) << word;
  }
}

TEST(Curves, RunFromRowOneToTheRowBeforeTheLast) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(4));
  bench.Tick();
  EXPECT_THAT(Segments(bench.ImgC(kOverview).LinesOf(kRed)),
              ElementsAre(Segment{503, 201, 503, 201, kRed}, Segment{503, 201, 506, 202, kRed}));
  EXPECT_THAT(Segments(bench.PicC(kOverview).LinesOf(kRed)),
              Segments(bench.ImgC(kOverview).LinesOf(kRed)));
  const Stroke stroke = bench.ImgC(kOverview).LinesOf(kGreen).front();
  EXPECT_EQ(stroke.In, (Scale{503, 1000, 800, 0}));
  EXPECT_EQ(stroke.With, Pen{});
}

TEST(Curves, OfOneRowAreNotDrawnAndTheAxesStillShow) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(2));
  bench.Tick();
  EXPECT_THAT(bench.ImgC(kOverview).LinesOf(kRed), IsEmpty());
  EXPECT_FALSE(bench.ImgC(kOverview).LinesOf(kGridColour).empty());
  EXPECT_EQ(bench.View(kOverview).RecEnd, bench.View(kOverview).RecFirst);
}

TEST(Curves, GrowByTheRowsThatHaveCome) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(4));
  bench.Tick();
  const auto before = bench.ImgC(kOverview).LinesOf(kRed).size();
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kRed).size(), before);
  const std::vector<std::int16_t> row = GraphBench::Words({150, 250, 350});
  ASSERT_TRUE(bench.program.files.AppendRow(GraphBench::kSlot, row, 1));
  bench.Tick();
  const auto grown = bench.ImgC(kOverview).LinesOf(kRed);
  ASSERT_EQ(grown.size(), before + 1);
  EXPECT_EQ(grown.back().At, (Segment{506, 202, 509, 203, kRed}));
}

TEST(Curves, GrownRowByRowAreThoseDrawnAtOnce) {
  GraphBench live;
  live.LoadAndOpen(live.Slopes(2));
  const auto all = live.Slopes(60);
  for (std::size_t row = 2; row < 60; ++row) {
    const std::span<const std::int16_t> words(all.data() + row * 3, 3);
    ASSERT_TRUE(live.program.files.AppendRow(GraphBench::kSlot, words, 1));
    live.Tick();
  }
  GraphBench whole;
  whole.LoadAndOpen(all);
  whole.Tick();
  EXPECT_EQ(live.ImgC(kOverview).strokes, whole.ImgC(kOverview).strokes);
}

TEST(Curves, BeyondTheRightEdgeAreNotDrawn) {
  GraphBench bench;
  bench.header.UnitXmax = 10;
  bench.LoadAndOpen(bench.Slopes(50));
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kRed).back().At.X2, 500 + 3 * 9);
}

TEST(Curves, InLowResolutionTakeEveryNthRow) {
  GraphBench bench;
  bench.header.UnitRes = 54;
  bench.header.UnitXmax = 1000;
  bench.LoadAndOpen(bench.Slopes(1000));
  bench.Tick();
  const auto lines = Segments(bench.ImgC(kOverview).LinesOf(kRed));
  ASSERT_EQ(lines.size(), 111U);  // rows 1, 10, ... 991
  EXPECT_EQ(lines.at(1), (Segment{503, 201, 530, 210, kRed}));
  EXPECT_EQ(bench.Shown().lblRes, "low");
}

TEST(Curves, OfAViewInsideOneRowAreNone) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(50));
  bench.Tick();
  bench.Unit().UnitView = {CodeX(bench.View(kOverview), 20), 4692, CodeX(bench.View(kOverview), 20),
                           28083};
  bench.program.state.OverPrepared = false;
  bench.Tick();
  bench.graph.cmdPart_Click();
  bench.Tick();
  const ViewFrame& view = bench.View(kPartView);
  EXPECT_EQ(view.XRight, view.XLeft + 1);  // the two equal edges are repaired
  EXPECT_THAT(bench.ImgC(kPartView).LinesOf(kGridColour).size(), testing::Gt(0U));
}

TEST(Curves, ServeEventsEveryFiveRows) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(53));
  bench.Tick();
  EXPECT_EQ(bench.program.events.pumps, 51 / 5);
}

TEST(Curves, StopAtTheNextPumpWhenAnotherViewIsWantedAndGoOnLater) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(53));
  bench.Tick();
  GraphBench whole;
  whole.LoadAndOpen(whole.Slopes(53));
  whole.Tick();

  bench.program.state.OverPrepared = false;
  bench.program.events.on_pump = [&bench] { bench.graph.cmdPart_Click(); };
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kRed).size(), 5U);
  bench.program.events.on_pump = [] {};
  bench.Tick();
  bench.graph.cmdOver_Click();
  bench.Tick();
  // The row at which it stopped is drawn once more, as a dot on itself.
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kRed).size(),
            whole.ImgC(kOverview).LinesOf(kRed).size() + 1);
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kRed).back().At,
            whole.ImgC(kOverview).LinesOf(kRed).back().At);
}

TEST(Curves, AreNeverDrawnTwiceAtATime) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(53));
  bench.program.events.on_pump = [&bench] { bench.Tick(); };
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kRed).size(), 51U);
}

// Column 1 of row 12 is the first word that the cut file does not have.
TEST(Curves, EndWhereAFileThatWasCutEnds) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(20));
  std::filesystem::resize_file(bench.program.home.File("tavdat/M260314A.OVN"), 1000 + 12 * 6);
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kRed).back().At,
            (Segment{500 + 3 * 10, 210, 500 + 3 * 11, 211, kRed}));
}

TEST(Curves, HaveAGapWhereTheFileCouldNotBeRead) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(20));
  const std::string path = bench.program.home.File("tavdat/M260314A.OVN");
  const std::string whole = bench.program.home.Read("tavdat/M260314A.OVN");
  std::filesystem::resize_file(path, 1000 + 12 * 6);
  bench.Tick();
  bench.program.home.Write("tavdat/M260314A.OVN", whole + whole.substr(1000));
  bench.program.state.SampleCount[1] = 40;
  bench.Tick();
  const std::vector<Segment> lines = Segments(bench.ImgC(kOverview).LinesOf(kRed));
  EXPECT_GT(lines.back().X2, 500 + 3 * 30);
  for (const Segment& line : lines) {
    EXPECT_TRUE(line.X2 <= 500 + 3 * 11 || line.X1 >= 500 + 3 * 19) << line.X1;
  }
}

TEST(Curves, HaveTheGapInTheRelativeModesToo) {
  for (const int mode : {1, 2}) {
    GraphBench bench;
    bench.header.UnitGraphMode = static_cast<std::int16_t>(mode);
    bench.LoadAndOpen(bench.Slopes(40));
    bench.ShowPart({0, 100}, {39, 600});
    const std::string path = bench.program.home.File("tavdat/M260314A.OVN");
    std::filesystem::resize_file(path, 1000 + 12 * 6);
    bench.program.state.PartPrepared = false;
    bench.Tick();
    const auto lines = bench.ImgC(kPartView).LinesOf(kRed);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back().At.X2, 500 + 3 * 11);
  }
}

TEST(Curves, MayBeNone) {
  GraphBench bench;
  bench.header.UnitColour = {};
  bench.LoadAndOpen(bench.Slopes(10));
  bench.Tick();
  EXPECT_FALSE(bench.ImgC(kOverview).LinesOf(kGridColour).empty());
  EXPECT_THAT(bench.legend.strokes, IsEmpty());
}

TEST(Axes, PrintLabelsCentredBelowTheirTick) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(2));
  bench.Tick();
  EXPECT_THAT(bench.PicX(kOverview).Texts(), ElementsAre("20", "40", "60", "80"));
  const Stroke label = bench.PicX(kOverview).Of(StrokeKind::kText).front();
  EXPECT_EQ(label.At.X1, 20 - 1);  // two characters of 7 dots are 2 of 100 minutes on 700 dots
  EXPECT_EQ(label.At.Y1, 6);
  EXPECT_EQ(bench.PicX(kOverview).LinesOf(kBlack).front().At, (Segment{20, 8, 20, 10, kBlack}));
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kGridColour).at(1).At,
            (Segment{20, 0, 20, 1000, kGridColour}));
}

TEST(Axes, PrintValuesRightAlignedBesideTheirTick) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(2));
  bench.PicY(kOverview).dots_wide = 70;
  bench.Tick();
  EXPECT_THAT(bench.PicY(kOverview).Texts(), ElementsAre("200", "400", "600", "800"));
  const Stroke label = bench.PicY(kOverview).Of(StrokeKind::kText).front();
  EXPECT_DOUBLE_EQ(label.At.X1, 7.5 - 3);         // three characters
  EXPECT_DOUBLE_EQ(label.At.Y1, 200 + 35.0 / 2);  // half of 14 dots of 400
  EXPECT_EQ(bench.PicY(kOverview).LinesOf(kBlack).front().At, (Segment{8.5, 200, 10, 200, kBlack}));
}

TEST(Axes, HoldALabelThatIsTooWideAtTheEdgeOfTheStrip) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(2));
  bench.PicY(kOverview).dots_wide = 20;  // three characters are 10.5 of 10
  bench.Tick();
  EXPECT_EQ(bench.PicY(kOverview).Of(StrokeKind::kText).front().At.X1, 0);
}

TEST(Axes, ArePaintedOnceAndNotAtEveryTick) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(10));
  bench.Tick();
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).clears, 1);
}

TEST(Legend, NamesTheCurvesAndShowsTheirColours) {
  GraphBench bench;
  bench.header.UnitColour[2] = 0;
  bench.LoadAndOpen(bench.Slopes(2));
  EXPECT_THAT(bench.names.Texts(), ElementsAre("1", "input 1", "3", "input 3"));
  const Stroke name = bench.names.Of(StrokeKind::kText).back();
  EXPECT_DOUBLE_EQ(name.At.X1, bench.names.TextWidth("00  "));
  const Stroke number = bench.names.Of(StrokeKind::kText).at(2);
  EXPECT_DOUBLE_EQ(number.At.X1, bench.names.TextWidth("0"));
  EXPECT_DOUBLE_EQ(number.At.Y1, name.At.Y1);
  EXPECT_DOUBLE_EQ(name.At.Y1, 2 / 16.0 - 14 / 400.0 / 2);
  EXPECT_EQ(bench.legend.LinesOf(kGreen).front().At,
            (Segment{0.2, 2 / 16.0, 0.8, 2 / 16.0, kGreen}));
}

TEST(PartFrame, IsDottedOnTheOverviewAndInvertsWhatIsThere) {
  GraphBench bench;
  bench.header.UnitView = {7689, 4692, 29211, 28083};
  bench.LoadAndOpen(bench.Slopes(2));
  bench.Tick();
  const Stroke frame = bench.PicC(kOverview).Of(StrokeKind::kBox).front();
  EXPECT_EQ(frame.At, (Segment{0, 0, 100, 1000, kBlack}));
  EXPECT_EQ(frame.With, (Pen{PenMode::kInvert, PenStyle::kDot, 1}));
}

TEST(PartView, OfTheCodedRangeHasItsExtent) {
  GraphBench bench;
  bench.header.UnitView = {18450, 16387, 29211, 28083};
  bench.LoadAndOpen(bench.Slopes(99));
  bench.Tick();
  bench.graph.cmdPart_Click();
  bench.Tick();
  const ViewFrame& view = bench.View(kPartView);
  EXPECT_NEAR(view.XLeft, 50, 0.01);
  EXPECT_EQ(view.XRight, 100);
  EXPECT_NEAR(view.YBottom, 500, 0.1);
  EXPECT_EQ(view.YTop, 1000);
  EXPECT_EQ(view.RecFirst, 500 + 150);
}

TEST(PartView, SortsARangeThatIsKeptTheOtherWayRound) {
  GraphBench bench;
  bench.header.UnitView = {29211, 28083, 7689, 4692};
  bench.LoadAndOpen(bench.Slopes(9));
  bench.Tick();
  bench.graph.cmdPart_Click();
  bench.Tick();
  EXPECT_EQ(bench.View(kPartView).RestingScale(), (Scale{0, 1000, 100, 0}));
}

TEST(UpsideDownAxis, DrawsItsCurvesAndEnds) {
  GraphBench bench;
  bench.header.UnitYmax = 0;
  bench.header.UnitYmin = 1000;
  bench.LoadAndOpen(bench.Slopes(9));
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).LinesOf(kRed).front().In, (Scale{503, 0, 800, 1000}));
  EXPECT_THAT(bench.PicY(kOverview).Texts(), IsEmpty());
}

}  // namespace
}  // namespace tavrel
