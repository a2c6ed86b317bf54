#ifndef TAVREL_TESTS_GRAPH_REPORT_FIXTURE_H_
#define TAVREL_TESTS_GRAPH_REPORT_FIXTURE_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "graph/report.h"
#include "tests/support/colours.h"
#include "tests/support/graph_bench.h"

namespace tavrel {

inline constexpr Colour kGrid{0xC0, 0xC0, 0xC0};
inline constexpr std::pair<double, double> kPortraitPaper{570, 820};
inline constexpr std::pair<double, double> kLandscapePaper{820, 570};

// A stroke in logical units of its page.
struct Placed {
  double x1;
  double y1;
  double x2;
  double y2;
};

// Inputs 1 to 3, column c of row r is 100 c + r degrees, rows of a minute, reference 2; the part
// view is 10..60 minutes and 100..600 degrees. Printed as a colour page in portrait.
class TheReport : public testing::Test, public GraphBench {
 protected:
  void SetUp() override {
    header.UnitInet = 2;
    header.UnitInputNote[5].Set("not recorded");
    program.state.Settings.Plant = "Ofenbau";
    program.state.Settings.PFontName = "Arial";
    program.state.Settings.PFontSize = 11;
    program.state.Settings.PDrawWidth = 3;
  }
  void ShowView(const std::vector<std::int16_t>& words, PlotPoint from = {10, 100},
                PlotPoint to = {60, 600}) {
    LoadAndOpen(words);
    ShowPart(from, to);
  }
  PaperSurface& Print(std::pair<double, double> paper = kPortraitPaper, bool is_colour = true) {
    program.printer.paper = paper;
    program.printer.chosen->IsColour = is_colour;
    program.graph_output.MnuPrint_Click();
    return program.printer.pages.back();
  }
  PaperSurface& PrintSlopes(std::pair<double, double> paper = kPortraitPaper,
                            bool is_colour = true) {
    ShowView(Slopes(80));
    return Print(paper, is_colour);
  }
  Placed In(const PageLayout& layout, const Stroke& stroke) {
    const ViewFrame& view = View(kPartView);
    const double per_x = (view.XRight - view.XLeft) / (layout.PlotRight - layout.PlotLeft);
    const double per_y = (view.YTop - view.YBottom) / (layout.PlotBottom - layout.PlotTop);
    const auto x = [&](double at) { return layout.PlotLeft + (at - view.XLeft) / per_x; };
    const auto y = [&](double at) { return layout.PlotTop + (view.YTop - at) / per_y; };
    return {x(stroke.At.X1), y(stroke.At.Y1), x(stroke.At.X2), y(stroke.At.Y2)};
  }
  static const PrintedText& TextOn(const PaperSurface& page, const std::string& text) {
    static const PrintedText kNone;
    const auto found = std::ranges::find(page.printed, text, &PrintedText::Text);
    EXPECT_NE(found, page.printed.end()) << text;
    return found == page.printed.end() ? kNone : *found;
  }
  // Where the middle of a text is, in logical rows.
  static double Row(const PaperSurface& page, const PageLayout& layout, const std::string& text) {
    const PrintedText& found = TextOn(page, text);
    return (found.Top + found.Bottom) / 2 / page.dots_high * layout.Height;
  }
  static double Column(const PaperSurface& page, const PageLayout& layout, double points) {
    return points / page.dots_wide * layout.Width;
  }
  static void ExpectNothingOverlaps(const PaperSurface& page) {
    for (std::size_t k = 0; k < page.printed.size(); ++k) {
      const PrintedText& text = page.printed[k];
      EXPECT_GE(text.Left, -1e-9) << text.Text;
      EXPECT_GE(text.Top, -1e-9) << text.Text;
      EXPECT_LE(text.Right, page.dots_wide + 1e-9) << text.Text;
      EXPECT_LE(text.Bottom, page.dots_high + 1e-9) << text.Text;
      for (std::size_t other = k + 1; other < page.printed.size(); ++other) {
        EXPECT_FALSE(text.Overlaps(page.printed[other]))
            << text.Text << " / " << page.printed[other].Text;
      }
    }
  }
  static void ExpectAt(const Placed& is, const Placed& expected) {
    EXPECT_NEAR(is.x1, expected.x1, 1e-9);
    EXPECT_NEAR(is.y1, expected.y1, 1e-9);
    EXPECT_NEAR(is.x2, expected.x2, 1e-9);
    EXPECT_NEAR(is.y2, expected.y2, 1e-9);
  }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_GRAPH_REPORT_FIXTURE_H_
