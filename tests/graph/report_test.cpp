#include "graph/report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "graph/graph_output.h"
#include "tests/graph/report_fixture.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

TEST_F(TheReport, ChoosesTheLayoutByTheShapeOfThePaper) {
  EXPECT_EQ(LayoutOf({0, 0, 570, 820}).Height, 52);
  EXPECT_EQ(LayoutOf({0, 0, 820, 570}).Height, 34);
  EXPECT_EQ(LayoutOf({0, 0, 600, 600}).Height, 34);
  EXPECT_EQ(LayoutOf({10, 800, 580, 0}).Height, 52);
  EXPECT_EQ(LayoutOf({500, 500, 1070, 1320}).Height, 52);
  EXPECT_EQ(LayoutOf({1320, 500, 500, 1070}).Height, 34);
}

TEST_F(TheReport, PutsThePlotWhereTheLayoutSays) {
  const PaperSurface& page = PrintSlopes();
  const auto boxes = page.Of(StrokeKind::kBox);
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].At, (Segment{10, 600, 60, 100, kBlack}));
  EXPECT_NEAR(page.PointsX(10), 570.0 * 10 / 96, 1e-9);
  EXPECT_NEAR(page.PointsX(60), 570.0 * 78 / 96, 1e-9);
  EXPECT_NEAR(page.PointsY(600), 820.0 * 5 / 52, 1e-9);
  EXPECT_NEAR(page.PointsY(100), 820.0 * 27 / 52, 1e-9);
}

TEST_F(TheReport, PutsThePlotOfALandscapePageRightOfTheLegend) {
  const PaperSurface& page = PrintSlopes(kLandscapePaper);
  EXPECT_NEAR(page.PointsX(10), 820.0 * 27 / 100, 1e-9);
  EXPECT_NEAR(page.PointsX(60), 820.0 * 84 / 100, 1e-9);
  EXPECT_NEAR(page.PointsY(600), 570.0 * 5 / 34, 1e-9);
  EXPECT_NEAR(page.PointsY(100), 570.0 * 27 / 34, 1e-9);
}

TEST_F(TheReport, DrawsTheHeaderBoxWithItsShadow) {
  const PaperSurface& page = PrintSlopes();
  const auto fills = page.Of(StrokeKind::kFill);
  ASSERT_EQ(fills.size(), 3U);
  ExpectAt(In(kPortrait, fills[0]), {10, 2, 84.7, 3.85});
  ExpectAt(In(kPortrait, fills[1]), {10, 4, 84.7, 3.85});
  ExpectAt(In(kPortrait, fills[2]), {85, 2, 84.7, 4});
  EXPECT_EQ(fills[0].At.Ink, (Colour{0xE0, 0xE0, 0xE0}));
  EXPECT_EQ(fills[1].At.Ink, kGrid);
  EXPECT_EQ(fills[2].At.Ink, kGrid);
}

TEST_F(TheReport, DrawsAWiderHeaderBoxInLandscape) {
  const PaperSurface& page = PrintSlopes(kLandscapePaper);
  const auto fills = page.Of(StrokeKind::kFill);
  ASSERT_EQ(fills.size(), 3U);
  ExpectAt(In(kLandscape, fills[0]), {5, 2, 89.7, 3.85});
}

TEST_F(TheReport, NamesCompanyApparatusAndFile) {
  const PaperSurface& page = PrintSlopes();
  const PrintedText& plant = TextOn(page, "Ofenbau");
  const PrintedText& name = TextOn(page, "Furnace 7");
  const PrintedText& file = TextOn(page, "m260314a.ovn");
  EXPECT_NEAR(Column(page, kPortrait, plant.Left), 12, 1e-9);
  EXPECT_NEAR(Column(page, kPortrait, (name.Left + name.Right) / 2), 47.5, 1e-9);
  EXPECT_NEAR(Column(page, kPortrait, file.Right), 83, 1e-9);
  EXPECT_TRUE(name.IsBold);
  EXPECT_FALSE(plant.IsBold);
  EXPECT_FALSE(file.IsBold);
  for (const char* text : {"Ofenbau", "Furnace 7", "m260314a.ovn"}) {
    EXPECT_NEAR(Row(page, kPortrait, text), 3, 1e-9);
  }
}

TEST_F(TheReport, DrawsTheGridInsideThePlotOnly) {
  const PaperSurface& page = PrintSlopes();
  std::vector<double> columns;
  std::vector<double> rows;
  for (const Stroke& line : page.LinesOf(kGrid)) {
    (line.At.X1 == line.At.X2 ? columns : rows)
        .push_back(line.At.X1 == line.At.X2 ? line.At.X1 : line.At.Y1);
    EXPECT_TRUE(line.At.X1 == line.At.X2 || (line.At.X1 == 10 && line.At.X2 == 60));
    EXPECT_TRUE(line.At.Y1 == line.At.Y2 || (line.At.Y1 == 100 && line.At.Y2 == 600));
  }
  EXPECT_THAT(columns, ElementsAre(10, 20, 30, 40, 50, 60));
  EXPECT_THAT(rows, ElementsAre(100, 200, 300, 400, 500, 600));
}

TEST_F(TheReport, LabelsBothAxes) {
  const PaperSurface& page = PrintSlopes();
  EXPECT_THAT(page.Texts(),
              IsSupersetOf({"20", "30", "40", "50", "min", "200", "300", "400", "500"}));
  const PrintedText& minutes = TextOn(page, "20");
  EXPECT_NEAR((minutes.Left + minutes.Right) / 2, page.PointsX(20), 1e-9);
  EXPECT_NEAR(Row(page, kPortrait, "20"), 28, 1e-9);
  const PrintedText& degrees = TextOn(page, "200");
  EXPECT_NEAR((degrees.Top + degrees.Bottom) / 2, page.PointsY(200), 1e-9);
  EXPECT_NEAR(Column(page, kPortrait, degrees.Right), 9, 1e-9);
  EXPECT_NEAR(Column(page, kPortrait, TextOn(page, "min").Left), 78.5, 1e-9);
}

TEST_F(TheReport, LabelsALongViewInHours) {
  header.UnitXmax = 1000;
  ShowView(Slopes(80), {10, 100}, {600, 600});
  const PaperSurface& page = Print();
  EXPECT_THAT(page.Texts(), IsSupersetOf({"2", "4", "6", "8", "h"}));
}

TEST_F(TheReport, DrawsTheCurvesFromTheFile) {
  const PaperSurface& page = PrintSlopes();
  const auto lines = page.LinesOf(kRed);
  // The sample of the legend, and 49 lines: the row at which the view ends is not drawn.
  ASSERT_EQ(lines.size(), 50U);
  EXPECT_EQ(lines[1].At, (Segment{10, 210, 11, 211, kRed}));
  EXPECT_EQ(lines[49].At, (Segment{58, 258, 59, 259, kRed}));
  EXPECT_EQ(lines[1].With, (Pen{PenMode::kCopy, PenStyle::kSolid, 3}));
}

TEST_F(TheReport, DrawsAsManyPointsAsTheScreen) {
  header.UnitRes = 54;
  header.UnitXmax = 1000;
  ShowView(Slopes(600), {0, 100}, {500, 900});
  const PaperSurface& page = Print();
  // The sample of the legend, and lines between the rows 1, 5, 9 .. 497.
  const auto lines = page.LinesOf(kRed);
  ASSERT_EQ(lines.size(), 1U + 124);
  EXPECT_DOUBLE_EQ(lines[1].At.Y1, 201);
  EXPECT_DOUBLE_EQ(lines[1].At.Y2, 205);
}

TEST_F(TheReport, CutsACurveAtThePlotAndGoesOnWhenItIsBack) {
  header.UnitColour = {2};
  // Input 1 in the rows 0..9.
  std::vector<double> degrees;
  for (const double value : {0, 50, 60, 101, 999, 100, 0, -1, 70, 80}) {
    degrees.insert(degrees.end(), {value, 0, 0});
  }
  header.UnitYmin = -100;
  ShowView(GraphBench::Words(degrees), {1, 0}, {9, 100});
  std::vector<Stroke> lines = Print().LinesOf(kRed);
  ASSERT_EQ(lines.size(), 1U + 4);
  const auto is = [&](std::size_t k, double x1, double y1, double x2, double y2) {
    EXPECT_NEAR(lines[k].At.X1, x1, 0.001);
    EXPECT_NEAR(lines[k].At.Y1, y1, 0.001);
    EXPECT_NEAR(lines[k].At.X2, x2, 0.001);
    EXPECT_NEAR(lines[k].At.Y2, y2, 0.001);
  };
  is(1, 1, 50, 2, 60);
  is(2, 2, 60, 5, 100);  // 101 and 999 are left out, 100 is on the edge
  is(3, 5, 100, 6, 0);
  is(4, 6, 0, 8, 70);
}

// Row 40 is the first that the cut file does not have.
TEST_F(TheReport, EndsACurveWhereTheFileCannotBeRead) {
  ShowView(Slopes(80));
  std::filesystem::resize_file(program.home.File(std::string("tavdat/") + kName), 1000 + 40 * 6);
  program.graph_output.MnuGraph_Click();
  const auto lines = program.clipboard.picture->LinesOf(kRed);
  EXPECT_EQ(lines.size(), 1U + 29);  // that of the legend first
  EXPECT_NEAR(lines.back().At.X2, 39, 1e-9);
}

TEST_F(TheReport, DrawsDifferencesAndTheZeroLineInARelativeView) {
  ShowView(Slopes(80));
  graph.CboXY_Click(1);
  Tick();
  const PaperSurface& page = Print();
  const ViewFrame& view = View(kPartView);
  EXPECT_DOUBLE_EQ(view.YTop, 250);
  const auto red = page.LinesOf(kRed);  // the reference itself
  EXPECT_EQ(red[1].At, (Segment{10, 0, 11, 0, kRed}));
  const auto green = page.LinesOf({0, 0xAA, 0});
  EXPECT_EQ(green[1].At, (Segment{10, 100, 11, 100, {0, 0xAA, 0}}));
  const auto black = page.LinesOf(kBlack);
  EXPECT_TRUE(std::ranges::any_of(black, [](const Stroke& line) {
    return line.At == Segment{10, 0, 60, 0, kBlack} && line.With == Pen();
  }));
}

TEST_F(TheReport, PutsTheReferenceBeneathThePlot) {
  ShowView(Slopes(80));
  graph.CboXY_Click(2);
  Tick();
  const ReferenceTicks& ticks = graph.State().AxisTicks;
  ASSERT_GT(ticks.AxisTickCount, 3);
  const PaperSurface& page = Print();
  EXPECT_THAT(page.Texts(), IsSupersetOf({"°C", "220", "230", "240"}));
  const PrintedText& label = TextOn(page, "220");
  EXPECT_NEAR((label.Left + label.Right) / 2, page.PointsX(20), 1e-9);  // row 20
  ExpectNothingOverlaps(page);
}

TEST_F(TheReport, LeavesOutReferenceLabelsThatHaveNoRoom) {
  ShowView(Slopes(80));
  graph.CboXY_Click(2);
  Tick();
  const auto labels = [](const PaperSurface& page) {
    return std::ranges::count_if(page.printed, [&page](const PrintedText& text) {
      return std::abs((text.Top + text.Bottom) / 2 / page.dots_high * 52 - 28) < 0.01;
    });
  };
  const auto roomy = labels(Print());
  const auto narrow = labels(Print({150, 820}));
  EXPECT_LT(narrow, roomy);
}

TEST_F(TheReport, ListsTheShownCurvesLeftOfALandscapePlot) {
  header.UnitColour = {1, 0, 3};
  const PaperSurface& page = PrintSlopes(kLandscapePaper);
  EXPECT_NEAR(Column(page, kLandscape, TextOn(page, "input 1").Left), 12, 1e-9);
  EXPECT_NEAR(Row(page, kLandscape, "input 1"), 6, 1e-9);
  EXPECT_NEAR(Row(page, kLandscape, "input 3"), 7, 1e-9);
  const auto green = page.LinesOf({0, 0xAA, 0});
  ExpectAt(In(kLandscape, green[0]), {5, 7, 10, 7});
  EXPECT_EQ(green[0].With.Width, 3);
  const auto texts = page.Texts();
  EXPECT_EQ(std::ranges::count(texts, "input 2"), 0);
}

TEST_F(TheReport, ListsAllInputsBeneathAPortraitPlot) {
  header.UnitColour = {1, 0, 3};
  const PaperSurface& page = PrintSlopes();
  EXPECT_NEAR(Row(page, kPortrait, "input 1"), 30, 1e-9);
  EXPECT_NEAR(Row(page, kPortrait, "input 3"), 32, 1e-9);
  EXPECT_NEAR(Column(page, kPortrait, TextOn(page, "input 3").Left), 28, 1e-9);
  EXPECT_NEAR(Row(page, kPortrait, "F"), 44, 1e-9);
  EXPECT_NEAR(Column(page, kPortrait, TextOn(page, "F").Left), 12, 1e-9);
  EXPECT_NEAR(Row(page, kPortrait, "not recorded"), 34, 1e-9);
  EXPECT_NEAR(Column(page, kPortrait, TextOn(page, "not recorded").Left), 56, 1e-9);
  ExpectAt(In(kPortrait, page.LinesOf({0, 0xAA, 0})[0]), {18, 32, 25, 32});
  const auto texts = page.Texts();
  EXPECT_EQ(std::ranges::count(texts, "input 2"), 0);
  EXPECT_THAT(texts, IsSupersetOf({"1", "2", "9", "A", "B", "C", "D", "E", "F"}));
}

TEST_F(TheReport, EndsWithAFoot) {
  const PaperSurface& page = PrintSlopes();
  EXPECT_NEAR(Row(page, kPortrait, "Tavrel-2"), 46, 1e-9);
  EXPECT_NEAR(Column(page, kPortrait, TextOn(page, "Tavrel-2").Left), 10, 1e-9);
  EXPECT_NEAR(Row(page, kPortrait, "14/03/2026"), 46, 1e-9);
  EXPECT_NEAR(Column(page, kPortrait, TextOn(page, "14/03/2026").Right), 85, 1e-9);
  int lines = 0;
  for (const Stroke& line : page.LinesOf(kBlack)) {
    const Placed at = In(kPortrait, line);
    const bool is_wide = std::abs(at.x1 - 10) < 1e-9 && std::abs(at.x2 - 85) < 1e-9;
    lines += is_wide && (std::abs(at.y1 - 29) < 1e-9 || std::abs(at.y1 - 45) < 1e-9) ? 1 : 0;
  }
  EXPECT_EQ(lines, 2);
}

TEST_F(TheReport, TellsAFastInstrumentInTheFoot) {
  header.UnitFast = 1;
  header.UnitInterval = 60;
  const PaperSurface& page = PrintSlopes(kLandscapePaper);
  EXPECT_NEAR(Row(page, kLandscape, "Tavrel-2F"), 30, 1e-9);
  EXPECT_NEAR(Column(page, kLandscape, TextOn(page, "Tavrel-2F").Left), 5, 1e-9);
  EXPECT_NEAR(Column(page, kLandscape, TextOn(page, "14/03/2026").Right), 90, 1e-9);
}

TEST_F(TheReport, PrintsTheMarks) {
  ShowView(Slopes(80));
  graph.PbMark_Click(1);
  Click({20, 300});
  Click({30, 400});
  const PaperSurface& page = Print();
  const PrintedText& label = TextOn(page, " 300.0 / 20.00 min ");
  EXPECT_NEAR(label.Left, page.PointsX(30.5), 1);
  const auto black = page.LinesOf(kBlack);
  EXPECT_TRUE(std::ranges::any_of(black, [](const Stroke& line) {
    return std::abs(line.At.X1 - (20 - 50.0 / 70)) < 0.01 && line.At.Y1 == line.At.Y2 &&
           std::abs(line.At.Y1 - 300) < 0.1;
  }));
}

TEST_F(TheReport, TellsCurvesOnABlackPrinterByPatterns) {
  const std::vector<std::pair<int, PenStyle>> cases = {
      {1, PenStyle::kSolid},       {2, PenStyle::kDash},       {3, PenStyle::kDot},
      {4, PenStyle::kDashDot},     {5, PenStyle::kDashDotDot}, {6, PenStyle::kDash},
      {7, PenStyle::kDot},         {8, PenStyle::kDashDot},    {9, PenStyle::kDashDotDot},
      {10, PenStyle::kDash},       {11, PenStyle::kDot},       {12, PenStyle::kDashDot},
      {13, PenStyle::kDashDotDot}, {14, PenStyle::kSolid},     {15, PenStyle::kSolid},
      {32767, PenStyle::kSolid}};
  ReportStyle black;
  black.IsColour = false;
  black.DrawWidth = 4;
  for (const auto& [code, style] : cases) {
    EXPECT_EQ(PenOfCurve(code, black), (Pen{PenMode::kCopy, style, 1})) << code;
  }
  black.IsColour = true;
  EXPECT_EQ(PenOfCurve(5, black), (Pen{PenMode::kCopy, PenStyle::kSolid, 4}));
  black.DrawWidth = 0;
  EXPECT_EQ(PenOfCurve(5, black).Width, 2);
}

TEST_F(TheReport, HasNoInkButBlackOnABlackPrinter) {
  const PaperSurface& page = PrintSlopes(kPortraitPaper, false);
  EXPECT_THAT(page.LinesOf(kRed), IsEmpty());
  int dashes = 0;
  for (const Stroke& line : page.LinesOf(kBlack)) {
    dashes += line.With == Pen{PenMode::kCopy, PenStyle::kDash, 1} ? 1 : 0;
  }
  EXPECT_EQ(dashes, 50);
}

TEST_F(TheReport, KeepsThePrintersFontIfTheSettingsNameNone) {
  program.state.Settings.PFontName = "";
  program.state.Settings.PFontSize = 0;
  const PaperSurface& page = PrintSlopes();
  EXPECT_EQ(page.family, "");
  EXPECT_DOUBLE_EQ(TextOn(page, "200").Points, 11);  // found by the height of a line
}

TEST_F(TheReport, UsesTheFontOfTheSettings) {
  const PaperSurface& page = PrintSlopes();
  EXPECT_EQ(page.family, "Arial");
  EXPECT_DOUBLE_EQ(TextOn(page, "200").Points, 11);
}

// What is on a page: curves, the length of all texts, the size of the font.
struct Fill {
  int curves;
  bool is_long;
  float points;
};

TEST_F(TheReport, LetsNothingOverlap) {
  for (const Fill& fill : {Fill{1, false, 11}, Fill{8, true, 8}, Fill{15, true, 11},
                           Fill{15, true, 24}, Fill{15, false, 72}}) {
    graph.CloseNow();
    header = BenchProgram::Header(2, 3, 15, false);
    header.UnitInterval = 6;
    header.UnitXmax = 100;
    header.UnitYmax = 30000;
    header.UnitRes = 0;
    header.UnitDesignation.Set(fill.is_long ? "OVN:WWWWWWWWWWWWWWWW" : "OVN:Oven");
    program.state.Settings.Plant = std::string(fill.is_long ? 60 : 5, 'W');
    program.state.Settings.PFontSize = fill.points;
    for (std::size_t input = 0; input < kInputs; ++input) {
      header.UnitColour[input + 1] =
          static_cast<std::int16_t>(static_cast<int>(input) < fill.curves ? input % 14 + 1 : 0);
      header.UnitInputName[input + 1].Set(std::string(fill.is_long ? 20 : 4, 'W'));
      header.UnitInputNote[input + 1].Set(std::string(fill.is_long ? 20 : 4, 'M'));
    }
    program.state.OverPrepared = false;
    program.state.PartPrepared = false;
    ShowView(std::vector<std::int16_t>(1200, 2000), {10, 100}, {60, 20000});
    for (const auto& paper : {kPortraitPaper, kLandscapePaper, {400.0, 560.0}, {280.0, 400.0}}) {
      SCOPED_TRACE(testing::Message() << fill.curves << " curves, " << fill.points << " points, "
                                      << paper.first << " wide");
      ExpectNothingOverlaps(Print(paper));
    }
    program.graph_output.MnuGraph_Click();
    ExpectNothingOverlaps(*program.clipboard.picture);
  }
}

TEST_F(TheReport, IsThePictureForTheClipboardWithoutHeaderAndFoot) {
  ShowView(Slopes(80));
  program.graph_output.MnuGraph_Click();
  ASSERT_TRUE(program.clipboard.picture);
  const PaperSurface& picture = *program.clipboard.picture;
  EXPECT_NEAR(picture.PointsX(10), 1200.0 * 25 / 100, 1e-9);
  EXPECT_NEAR(picture.PointsX(60), 1200.0 * 90 / 100, 1e-9);
  EXPECT_NEAR(picture.PointsY(600), 675.0 * 1 / 30, 1e-9);
  EXPECT_NEAR(picture.PointsY(100), 675.0 * 27 / 30, 1e-9);
  EXPECT_THAT(picture.Of(StrokeKind::kFill), IsEmpty());
  EXPECT_NEAR(Row(picture, kPicture, "input 1"), 2, 1e-9);
  const auto texts = picture.Texts();
  EXPECT_EQ(std::ranges::count(texts, "Tavrel-2"), 0);
  EXPECT_EQ(picture.LinesOf(kRed).size(), 50U);
  EXPECT_LT(TextOn(picture, "input 3").Right, TextOn(picture, "200").Left);
}

TEST_F(TheReport, ShowsPlotAndAxesOfAViewInFrontOfTheRecording) {
  ShowView(Slopes(5));
  const PaperSurface& page = Print();
  EXPECT_EQ(page.LinesOf(kRed).size(), 1U);  // the legend
  EXPECT_EQ(page.Of(StrokeKind::kBox).size(), 1U);
}

TEST_F(TheReport, DrawsNoReferenceTickOutsideOfThePlot) {
  ShowView(Slopes(80));
  ReferenceTicks ticks;
  for (const int row : {0, 9, 10, 30, 60, 61, 5000}) {
    ticks.Add(500 + 3 * row, std::to_string(row));
  }
  UnitRecord unit = Unit();
  unit.UnitGraphMode = kReferenceMode;
  PaperSurface page(570, 820);
  DrawReport({unit, graph.State().Curves, View(kPartView), ticks, program.state.SlotFileNo[kSlot],
              kName, "", ""},
             {}, kPortrait, page);
  std::vector<double> columns;
  for (const Stroke& line : page.LinesOf(kGrid)) {
    if (line.At.X1 == line.At.X2) {
      columns.push_back(line.At.X1);
    }
  }
  EXPECT_THAT(columns, ElementsAre(10, 30, 60));
  const auto texts = page.Texts();
  EXPECT_EQ(std::ranges::count(texts, "61"), 0);
  EXPECT_EQ(std::ranges::count(texts, "5000"), 0);
}

// Above the labels of the Y axis, whatever stands beneath the X axis.
TEST_F(TheReport, NamesTheUnitOfTheValueAxis) {
  ShowView(Slopes(80));
  for (const int mode : {0, 1, 2}) {
    graph.CboXY_Click(mode);
    Tick();
    program.graph_output.MnuGraph_Click();
    for (const auto& [layout, page] :
         {std::pair<const PageLayout&, const PaperSurface&>{kPortrait, Print(kPortraitPaper)},
          {kLandscape, Print(kLandscapePaper)},
          {kPicture, *program.clipboard.picture}}) {
      const auto is_unit = [](const PrintedText& text) { return text.Text == "°C"; };
      ASSERT_EQ(std::ranges::count_if(page.printed, is_unit), mode == 2 ? 2 : 1) << mode;
      const auto unit = std::ranges::min_element(
          page.printed, {}, [&, wide = page.dots_wide](const PrintedText& text) {
            return is_unit(text) ? text.Left : wide;
          });
      EXPECT_NEAR(Column(page, layout, unit->Right), layout.PlotLeft - 1, 1e-6);
      EXPECT_NEAR((unit->Top + unit->Bottom) / 2 / page.dots_high * layout.Height, layout.PlotTop,
                  1e-6);
      ExpectNothingOverlaps(page);
    }
  }
}

TEST_F(TheReport, ShrinksALongCompanyAlone) {
  program.state.Settings.Plant = std::string(60, 'W');
  const PaperSurface& page = PrintSlopes();
  EXPECT_LT(TextOn(page, program.state.Settings.Plant).Points, 10);
  EXPECT_DOUBLE_EQ(TextOn(page, "Furnace 7").Points, 11);
  EXPECT_DOUBLE_EQ(TextOn(page, "m260314a.ovn").Points, 11);
  ExpectNothingOverlaps(page);
}

// A size that nobody can read, or that no page has room for, is held.
TEST_F(TheReport, HoldsTheSizeOfTheFontWhereItCanBeRead) {
  ShowView(Slopes(80));
  for (const double size : {1e9, 1e-30, 1e38, 0.5, 1000.0}) {
    program.state.Settings.PFontSize = static_cast<float>(size);
    for (const auto& paper : {kPortraitPaper, kLandscapePaper}) {
      const PaperSurface& page = Print(paper);
      EXPECT_GE(TextOn(page, "200").Points, 4) << size;
      EXPECT_LE(TextOn(page, "200").Points, 14) << size;
      EXPECT_LE(page.largest_asked, 100) << size;
      ExpectNothingOverlaps(page);
    }
  }
}

}  // namespace
}  // namespace tavrel
