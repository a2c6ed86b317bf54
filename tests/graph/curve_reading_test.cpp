#include "graph/curve_reading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "state/curve_colours.h"
#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Column c of row r is 100 c + r degrees, a row is a minute.
class Reading : public testing::Test, public GraphBench {
 protected:
  std::vector<std::string> ValuesShown() const {
    std::vector<std::string> values;
    for (const LegendRow& row : Shown().Legend) {
      values.push_back(row.Value);
    }
    return values;
  }
};

TEST_F(Reading, ShowsTheValuesOfAllCurvesAtTheCursor) {
  LoadAndOpen(Slopes(50));
  Tick();
  graph.PicC_MouseMove({20.4, 500});
  EXPECT_THAT(ValuesShown(), ElementsAre("120.0", "220.0", "320.0"));
  graph.PicC_MouseMove({0, 500});
  EXPECT_THAT(ValuesShown(), ElementsAre("101.0", "201.0", "301.0"));
  graph.PicC_MouseLeave();
  EXPECT_THAT(ValuesShown(), ElementsAre("", "", ""));
}

TEST_F(Reading, HasNoValueWhereNothingIsRecorded) {
  std::vector<std::int16_t> words = Slopes(50);
  words.at(3 * 20 + 1) = kNoData;
  LoadAndOpen(words);
  Tick();
  graph.PicC_MouseMove({20, 500});
  EXPECT_THAT(ValuesShown(), ElementsAre("120.0", "", "320.0"));
  graph.PicC_MouseMove({80, 500});
  EXPECT_THAT(ValuesShown(), ElementsAre("", "", ""));
}

TEST_F(Reading, FollowsTheKeyboardToo) {
  LoadAndOpen(Slopes(80));
  Tick();
  graph.MoveCursor(CursorMove::kRight, 1);
  EXPECT_THAT(ValuesShown(), ElementsAre("151.0", "251.0", "351.0"));
}

TEST_F(Reading, IsTheDifferenceFromTheReferenceInARelativeMode) {
  header.UnitGraphMode = 1;
  LoadAndOpen(Slopes(80));
  ShowPart({10, 100}, {60, 700});
  graph.PicC_MouseMove({20, 0});
  EXPECT_THAT(ValuesShown(), ElementsAre("-100.00", "0.00", "100.00"));
}

TEST_F(Reading, LetsTheCurveUnderTheCursorStandOut) {
  LoadAndOpen(Slopes(50));
  Tick();
  EXPECT_EQ(Shown().StrongCurve, -1);
  for (int curve = 0; curve < 3; ++curve) {
    const double y = 100.0 * (curve + 1) + 20;
    graph.PicC_MouseMove({20, y + 14});
    EXPECT_EQ(Shown().StrongCurve, curve);
    graph.PicC_MouseMove({20, y - 14});
    EXPECT_EQ(Shown().StrongCurve, curve);
    graph.PicC_MouseMove({20, y + 40});
    EXPECT_EQ(Shown().StrongCurve, -1);
  }
}

TEST_F(Reading, LetsACurveStandOutThatWasChosenInTheLegend) {
  LoadAndOpen(Slopes(50));
  Tick();
  for (int curve = 0; curve < 3; ++curve) {
    graph.PicColor_MouseUp((curve + 1) / 16.0);
    EXPECT_EQ(Shown().StrongCurve, curve);
  }
  graph.PicC_MouseMove({20, 120});
  EXPECT_EQ(Shown().StrongCurve, 0) << "the cursor comes first";
  graph.PicC_MouseLeave();
  EXPECT_EQ(Shown().StrongCurve, 2);
  graph.PicColor_MouseUp(3 / 16.0);
  EXPECT_EQ(Shown().StrongCurve, -1) << "a second click lets it go";
  graph.PicColor_MouseUp(2 / 16.0);
  graph.PicColor_MouseUp(4 / 16.0);
  EXPECT_EQ(Shown().StrongCurve, -1) << "no curve is in this row";
}

TEST_F(Reading, GivesThePointsOfTheCurveThatStandsOut) {
  LoadAndOpen(Slopes(50));
  Tick();
  EXPECT_THAT(graph.StrongPoints(), IsEmpty());
  graph.PicColor_MouseUp(2 / 16.0);
  const auto points = graph.StrongPoints();
  ASSERT_EQ(points.size(), 48U) << "rows 1 to 48: the last is drawn with the next";
  EXPECT_DOUBLE_EQ(points.front()->Y, 201);
  EXPECT_DOUBLE_EQ(points.back()->Y, 248);
}

TEST_F(Reading, GivesFewPointsOfALongRecordingAndKeepsItsPeaks) {
  header = BenchProgram::Header(2, 3, 1, false);
  header.UnitInterval = 1;
  header.UnitXmax = 5300;
  header.UnitYmax = 1000;
  header.UnitRef = 1;
  header.UnitColour[1] = 1;
  std::vector<std::int16_t> words(31000, 2000);
  words.at(15003) = 10000;
  words.at(15011) = -200;
  LoadAndOpen(words);
  Tick();
  graph.PicColor_MouseUp(1 / 16.0);
  const auto points = graph.StrongPoints();
  EXPECT_LE(points.size(), 4004U);
  double least = 0;
  double most = 0;
  double before = -1;
  for (const auto& point : points) {
    ASSERT_TRUE(point);
    least = std::min(least, point->Y);
    most = std::max(most, point->Y);
    EXPECT_GE(point->X, before);
    before = point->X;
  }
  EXPECT_EQ(least, -10);
  EXPECT_EQ(most, 500);
}

TEST_F(Reading, CutsALongNameWithAnEllipsis) {
  header.UnitInputName[1].Set("a name of 20 letters");
  header.UnitInputName[2].Set("short");
  names.dots_wide = 120;
  LoadAndOpen(Slopes(5));
  ASSERT_EQ(Shown().Legend.size(), 3U);
  EXPECT_TRUE(Shown().Legend[0].IsCut);
  EXPECT_EQ(Shown().Legend[0].Name, "1  a name of 20 letters");
  EXPECT_FALSE(Shown().Legend[1].IsCut);
  const std::vector<std::string> texts = names.Texts();
  EXPECT_TRUE(texts[1].ends_with("…")) << texts[1];
  EXPECT_LE(names.TextWidth("00  ") + names.TextWidth(texts[1]), 1);
  EXPECT_EQ(texts[3], "short");
}

TEST_F(Reading, SaysHowAPartIsChosenAndWhatCannotBeSeen) {
  LoadAndOpen(Slopes(50));
  Tick();
  EXPECT_TRUE(Shown().Hint.starts_with("Draw a rectangle with the mouse"));
  ShowPart({10, 100}, {40, 700});
  EXPECT_EQ(Shown().Hint, "");
  graph.cmdOver_Click();
  ShowPart({60, 100}, {90, 700});
  EXPECT_TRUE(Shown().Hint.starts_with("Nothing has been recorded in this part"));
}

// The curves of the rows 10 to 40 lie from 110 to 140, 210 to 240 and 310 to 340 degrees.
TEST_F(Reading, SaysThatNoCurveComesIntoThePart) {
  struct Range {
    double Bottom;
    double Top;
    bool IsEmpty;
  };
  const std::vector<Range> ranges = {{2, 100, true},    {150, 205, true},  {345, 995, true},
                                     {150, 215, false}, {335, 995, false}, {2, 995, false}};
  for (const bool german : {false, true}) {
    for (const Range& range : ranges) {
      GraphBench bench;
      bench.program.state.Settings.HelpLang = german ? "German" : "English";
      bench.LoadAndOpen(bench.Slopes(50));
      bench.ShowPart({10, range.Bottom}, {40, range.Top});
      const char* begin = german ? "In diesen Ausschnitt kommt" : "No curve comes into this part";
      EXPECT_EQ(bench.Shown().Hint.starts_with(begin), range.IsEmpty) << range.Bottom;
      EXPECT_EQ(bench.Shown().Hint.empty(), !range.IsEmpty) << range.Bottom;
    }
  }
}

// The differences are drawn about 0, half the height of the part to each side. Behind a hidden
// reference stands the last word of the row before: the first curve is 199 degrees below it.
TEST_F(Reading, SaysThatNoDifferenceComesIntoThePart) {
  header.UnitGraphMode = 1;
  header.UnitColour[2] = 0;
  header.UnitColour[3] = 0;
  LoadAndOpen(Slopes(50));
  ShowPart({10, 100}, {40, 480});
  EXPECT_TRUE(Shown().Hint.starts_with("No curve comes into this part")) << Shown().Hint;
  graph.cmdOver_Click();
  ShowPart({10, 100}, {40, 520});
  EXPECT_EQ(Shown().Hint, "");
}

TEST_F(Reading, SaysThatNoInputHasAColour) {
  for (const bool german : {false, true}) {
    GraphBench bench;
    bench.program.state.Settings.HelpLang = german ? "German" : "English";
    for (int input = 1; input <= kInputs; ++input) {
      bench.header.UnitColour[input] = 0;
    }
    bench.LoadAndOpen(bench.Slopes(50));
    bench.ShowPart({10, 100}, {40, 700});
    const char* begin = german ? "Kein Eingang hat eine Farbe" : "No input has a colour";
    EXPECT_TRUE(bench.Shown().Hint.starts_with(begin)) << bench.Shown().Hint;
  }
}

// Rows that are recorded later bring the curve into the part, and the hint goes.
TEST_F(Reading, SaysNothingAnyMoreOnceACurveHasComeIn) {
  LoadAndOpen(Slopes(20));
  ShowPart({10, 125}, {40, 190});
  EXPECT_TRUE(Shown().Hint.starts_with("No curve comes into this part")) << Shown().Hint;
  for (int row = 20; row < 30; ++row) {
    const std::vector<std::int16_t> words = Words({100.0 + row, 200.0 + row, 300.0 + row});
    ASSERT_TRUE(program.files.AppendRow(kSlot, words, 1));
  }
  Tick();
  EXPECT_EQ(Shown().Hint, "");
}

TEST_F(Reading, SaysToTheKeyboardTooHowAPartIsChosen) {
  for (const bool german : {false, true}) {
    GraphBench bench;
    bench.program.state.Settings.HelpLang = german ? "German" : "English";
    bench.LoadAndOpen(bench.Slopes(50));
    bench.Tick();
    EXPECT_THAT(bench.Shown().Hint, testing::HasSubstr(german ? "Leertaste" : "space bar"));
  }
}

TEST_F(Reading, SaysThatTheRecordingGoesOnBeyondTheAxis) {
  for (const bool german : {false, true}) {
    for (const int rows : {101, 102, 103, 150}) {
      GraphBench bench;
      bench.program.state.Settings.HelpLang = german ? "German" : "English";
      bench.LoadAndOpen(bench.Slopes(rows));
      bench.Tick();
      const char* begin = german ? "Die Aufzeichnung geht" : "The recording goes on";
      EXPECT_EQ(bench.Shown().Hint.starts_with(begin), rows > 101) << rows;
    }
  }
}

TEST(PressedTools, AreThoseWhoseToolIsAtWork) {
  EXPECT_EQ(PressedTool(Tool::kFirstPoint), (ToolButton{false, 0}));
  EXPECT_EQ(PressedTool(Tool::kSecondPoint), (ToolButton{false, 0}));
  for (int tool = 5; tool <= 9; ++tool) {
    EXPECT_EQ(PressedTool(static_cast<Tool>(tool)), (ToolButton{false, 1}));
  }
  EXPECT_EQ(PressedTool(Tool::kMarkPoint), (ToolButton{true, 1}));
  EXPECT_EQ(PressedTool(Tool::kMarkLocation), (ToolButton{true, 1}));
  EXPECT_EQ(PressedTool(Tool::kComment), (ToolButton{true, 2}));
  EXPECT_EQ(PressedTool(Tool::kCommentLocation), (ToolButton{true, 2}));
  for (const int tool : {-1, 0, 2}) {
    EXPECT_EQ(PressedTool(static_cast<Tool>(tool)), std::nullopt);
  }
}

// Of the two colours, as accessibility standards count it: 1 to 21.
double Contrast(const Colour& one, const Colour& other) {
  const auto light = [](const Colour& colour) {
    const auto part = [](int value) {
      const double share = value / 255.0;
      return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.Red) + 0.7152 * part(colour.Green) + 0.0722 * part(colour.Blue);
  };
  const double lighter = std::max(light(one), light(other));
  const double darker = std::min(light(one), light(other));
  return (lighter + 0.05) / (darker + 0.05);
}

TEST(CurveColours, OfLightHuesAreSeenOnWhiteAndOnDark) {
  for (const int code : {3, 5, 6}) {
    const Colour ink = CurveColourOf(code)->Rgb;
    EXPECT_GE(Contrast(ink, {0xFF, 0xFF, 0xFF}), 3) << code;
    EXPECT_GE(Contrast(ink, {0x2B, 0x2D, 0x30}), 3) << code;
    for (int other = 1; other <= kColourCodes; ++other) {
      EXPECT_EQ(CurveColourOf(other)->Rgb == ink, other == code);
    }
  }
  EXPECT_EQ(PaletteNumberOf(3), 10);
  EXPECT_EQ(PaletteNumberOf(5), 14);
  EXPECT_EQ(PaletteNumberOf(6), 11);
}

}  // namespace
}  // namespace tavrel
