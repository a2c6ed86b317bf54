#include "platform/qt/plot_surface.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <random>
#include <vector>

#include "tests/support/colours.h"

namespace tavrel {
namespace {

constexpr Pen kInvertPen{PenMode::kInvert, PenStyle::kSolid, 1};

int CountNotWhite(const PlotSurface& surface) {
  const QImage& picture = surface.Picture();
  int count = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      count += picture.pixel(x, y) != qRgb(255, 255, 255) ? 1 : 0;
    }
  }
  return count;
}

class OnThePlot : public testing::Test {
 protected:
  OnThePlot() {
    surface.Resize(QSize(101, 51), 1);
    surface.SetScale({0, 50, 100, 0});
  }
  QColor At(int x, int y) const { return surface.Picture().pixelColor(x, y); }

  PlotSurface surface;
};

TEST_F(OnThePlot, PutsTheEdgesOfTheScaleOnTheOutermostDots) {
  surface.Line({0, 0, 0, 0, kRed});
  surface.Line({100, 50, 100, 50, kBlue});
  EXPECT_EQ(At(0, 50), QColor(Qt::red));
  EXPECT_EQ(At(100, 0), QColor(Qt::blue));
  EXPECT_EQ(CountNotWhite(surface), 2);
}

TEST_F(OnThePlot, DrawsALineWithBothEnds) {
  surface.Line({10, 20, 30, 20, kRed});
  EXPECT_EQ(At(10, 30), QColor(Qt::red));
  EXPECT_EQ(At(30, 30), QColor(Qt::red));
  EXPECT_EQ(CountNotWhite(surface), 21);
}

TEST_F(OnThePlot, DrawsEqualStrokesAloneOrInARow) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> place(-80, 180);
  std::vector<Segment> lines;
  for (int n = 0; n < 500; ++n) {
    const Colour ink = n % 2 == 0 ? kRed : kBlue;
    lines.push_back({place(random), place(random), place(random), place(random), ink});
  }
  PlotSurface alone;
  alone.Resize(QSize(101, 51), 1);
  alone.SetScale({0, 50, 100, 0});
  surface.Lines(lines);
  for (const Segment& line : lines) {
    alone.Line(line);
  }
  EXPECT_EQ(alone.Picture(), surface.Picture());
}

TEST_F(OnThePlot, DrawsAHatchedAreaLikeItsLines) {
  std::vector<Segment> lines;
  for (int n = 0; n < 2000; ++n) {
    const double x = n / 20.0;
    const Colour ink = n % 300 < 150 ? kRed : kBlue;
    const double gap = n % 7 == 0 ? 20 : 0;
    lines.push_back({x, 10 + gap + n % 13, x, 12 + gap + n % 5, ink});
  }
  for (const double width : {1.0, 3.0}) {
    PlotSurface alone;
    alone.Resize(QSize(101, 51), 1);
    alone.SetScale({0, 50, 100, 0});
    alone.SetPen({PenMode::kCopy, PenStyle::kSolid, width});
    surface.SetPen({PenMode::kCopy, PenStyle::kSolid, width});
    surface.Lines(lines);
    for (const Segment& line : lines) {
      alone.Line(line);
    }
    EXPECT_EQ(alone.Picture(), surface.Picture());
  }
}

TEST_F(OnThePlot, LeavesTheGapBetweenTwoUprightLines) {
  const std::array<Segment, 4> lines = {{{50, 20, 50, 30, kRed},
                                         {50, 32, 50, 40, kRed},
                                         {60, 32, 60, 40, kRed},
                                         {60, 20, 60, 30, kRed}}};
  surface.Lines(lines);
  EXPECT_EQ(At(50, 50 - 31), QColor(Qt::white));
  EXPECT_EQ(At(60, 50 - 31), QColor(Qt::white));
  EXPECT_EQ(CountNotWhite(surface), 2 * (11 + 9));
}

TEST_F(OnThePlot, ComesBackFromTwoInvertingStrokes) {
  surface.FillBox({20, 40, 60, 10, kRed});
  const QImage before = surface.Seen().copy();
  surface.SetPen(kInvertPen);
  for (int pass = 0; pass < 2; ++pass) {
    surface.Line({-20, 3, 70.5, 44, kBlue});
    surface.Box({33.3, -10, 77.7, 21, kBlue});
    surface.Line({100, 0, 100, 50, kRed});
    if (pass == 0) {
      EXPECT_NE(surface.Seen(), before);
    }
  }
  EXPECT_EQ(surface.Seen(), before);
}

TEST_F(OnThePlot, TurnsADotIntoItsOpposite) {
  surface.FillBox({0, 50, 50, 0, kRed});
  surface.SetPen(kInvertPen);
  surface.Line({0, 25, 100, 25, kBlue});
  EXPECT_EQ(surface.Seen().pixelColor(10, 25), QColor(Qt::cyan));
  EXPECT_EQ(surface.Seen().pixelColor(90, 25), QColor(Qt::black));
  EXPECT_EQ(At(10, 25), QColor(Qt::red));
}

TEST_F(OnThePlot, ComesBackAlsoFromWhatWasDrawnBeneathAnInvertingStroke) {
  surface.SetPen(kInvertPen);
  surface.Box({10, 10, 90, 40, kBlue});
  surface.SetPen(Pen{});
  surface.Line({0, 25, 100, 25, kRed});
  surface.SetPen(kInvertPen);
  surface.Box({10, 10, 90, 40, kBlue});
  EXPECT_EQ(surface.Seen().pixelColor(10, 25), QColor(Qt::red));
  EXPECT_EQ(surface.Seen().pixelColor(10, 30), QColor(Qt::white));
}

TEST_F(OnThePlot, GivesItsInvertingStrokesAwayWithItsPicture) {
  PlotSurface other;
  other.Resize(QSize(101, 51), 1);
  surface.SetPen(kInvertPen);
  surface.Box({10, 10, 90, 40, kBlue});
  other.TakePicture(surface);
  EXPECT_EQ(other.Seen(), surface.Seen());
  EXPECT_NE(other.Seen(), other.Picture());
  surface.Clear();
  EXPECT_EQ(surface.Seen(), surface.Picture());
}

TEST_F(OnThePlot, SurvivesAnyNumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const std::array<double, 8> values = {nan, infinity, -infinity, 1e300, -1e300, 1e9, -1, 50};
  for (const double x1 : values) {
    for (const double y1 : values) {
      for (const double x2 : values) {
        const Segment line{x1, y1, x2, y1, kRed};
        surface.SetPen(Pen{});
        surface.Line(line);
        surface.Box(line);
        surface.FillBox(line);
        surface.SetPen({PenMode::kInvert, PenStyle::kDot, 3});
        surface.Line(line);
        surface.Box(line);
        surface.Print(x1, y1, "text");
      }
    }
  }
  surface.Clear();
  surface.SetPen(Pen{});
  surface.Line({nan, 0, 100, 50, kRed});
  surface.Box({0, nan, 100, 50, kRed});
  surface.FillBox({0, 0, 100, nan, kRed});
  EXPECT_EQ(CountNotWhite(surface), 0);
}

TEST_F(OnThePlot, SurvivesAnyScale) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Scale& scale : {Scale{5, 5, 5, 5}, Scale{nan, 0, 1, nan}, Scale{-1e308, 0, 1e308, 1},
                             Scale{0, 1e-320, 1e-320, 0}}) {
    surface.SetScale(scale);
    surface.Line({0, 0, 5, 5, kRed});
    surface.Box({0, 0, 5, 5, kRed});
    surface.Print(0, 0, "text");
    EXPECT_GE(surface.TextWidth("text"), 0);
  }
}

TEST_F(OnThePlot, CutsWhatLiesOutside) {
  surface.Line({-1000, 25, 1000, 25, kRed});
  EXPECT_EQ(CountNotWhite(surface), 101);
  surface.Line({-10, 40, -1, 45, kRed});
  EXPECT_EQ(CountNotWhite(surface), 101);
  surface.Box({-10, 60, 110, -10, kRed});
  EXPECT_EQ(CountNotWhite(surface), 101);
}

TEST_F(OnThePlot, TellsWhatChanged) {
  int calls = 0;
  surface.Watch([&] { ++calls; }, [] {});
  static_cast<void>(surface.TakeChanges());
  surface.Line({10, 20, 30, 20, kRed});
  surface.Line({40, 20, 50, 25, kRed});
  EXPECT_EQ(calls, 1);
  const QRect changes = surface.TakeChanges();
  EXPECT_TRUE(changes.contains(QRect(QPoint(10, 25), QPoint(50, 30))));
  EXPECT_LE(changes.width(), 45);
  EXPECT_LE(changes.height(), 10);
  EXPECT_TRUE(surface.TakeChanges().isEmpty());
  surface.Print(1, 30, "text");
  EXPECT_EQ(calls, 2);
}

TEST_F(OnThePlot, ChangesNothingByStrokesOutside) {
  static_cast<void>(surface.TakeChanges());
  surface.Line({-10, 40, -1, 45, kRed});
  EXPECT_TRUE(surface.TakeChanges().isEmpty());
}

TEST_F(OnThePlot, TakesThePictureOfAnother) {
  PlotSurface other;
  other.Resize(QSize(101, 51), 1);
  other.SetScale({0, 50, 100, 0});
  other.FillBox({0, 50, 50, 0, kBlue});
  surface.Line({0, 0, 100, 50, kRed});
  surface.TakePicture(other);
  EXPECT_EQ(surface.Picture(), other.Picture());
  EXPECT_EQ(surface.TakeChanges(), QRect(0, 0, 101, 51));
  surface.Line({0, 0, 100, 50, kRed});
  EXPECT_NE(surface.Picture(), other.Picture());
}

TEST_F(OnThePlot, RefusesThePictureOfAnotherSize) {
  PlotSurface other;
  other.Resize(QSize(99, 51), 1);
  surface.Line({0, 0, 100, 50, kRed});
  const QImage before = surface.Picture().copy();
  surface.TakePicture(other);
  EXPECT_EQ(surface.Picture(), before);
}

TEST_F(OnThePlot, KeepsAPictureThatWasCopiedAsItWas) {
  const QImage taken = surface.Picture();
  surface.Line({0, 0, 100, 50, kRed});
  EXPECT_NE(taken, surface.Picture());
}

TEST_F(OnThePlot, PlacesTextByItsUpperLeftCorner) {
  surface.SetFont("DejaVu Sans", 10);
  static_cast<void>(surface.TakeChanges());
  surface.Print(20, 30, "Hg");
  const QImage& picture = surface.Picture();
  for (int y = 0; y < 20; ++y) {
    for (int x = 0; x < 101; ++x) {
      ASSERT_EQ(picture.pixel(x, y), qRgb(255, 255, 255));
    }
  }
  EXPECT_GT(CountNotWhite(surface), 20);
  EXPECT_TRUE(surface.TakeChanges().contains(QRect(20, 20, 10, 10)));
}

TEST_F(OnThePlot, MeasuresTextInTheScale) {
  surface.SetFont("DejaVu Sans", 10);
  const double width = surface.TextWidth("12345");
  const double height = surface.TextHeight();
  EXPECT_GT(width, 25);
  EXPECT_LT(height, -10);
  surface.SetScale({0, 0, 10, 5});
  EXPECT_NEAR(surface.TextWidth("12345"), width / 10, 1e-9);
  EXPECT_NEAR(surface.TextHeight(), -height / 10, 1e-9);
  surface.SetBold(true);
  EXPECT_GT(surface.TextWidth("12345"), width / 10);
}

TEST(PlotSurface, DrawsALineOfOneUnitWithTwoDotsAtTwiceTheScale) {
  PlotSurface surface;
  surface.Resize(QSize(202, 102), 2);
  surface.SetScale({0, 0, 201, 101});
  surface.Line({10, 20, 109, 20, kRed});
  EXPECT_EQ(CountNotWhite(surface), 200);
  surface.Clear();
  surface.SetPen({PenMode::kCopy, PenStyle::kSolid, 0});
  surface.Line({10, 20, 109, 20, kRed});
  EXPECT_EQ(CountNotWhite(surface), 100);
}

TEST(PlotSurface, HasTextOfTheSameSizeAtEachScale) {
  PlotSurface fine;
  fine.Resize(QSize(400, 200), 2);
  PlotSurface plain;
  plain.Resize(QSize(200, 100), 1);
  EXPECT_NEAR(fine.TextWidth("some text"), plain.TextWidth("some text"), 0.01);
}

TEST(PlotSurface, HasItsBottomAboveWhenItHangsUpsideDown) {
  PlotSurface surface(PlotSurface::Upright::kUpsideDown);
  surface.Resize(QSize(101, 51), 1);
  surface.SetScale({0, 0, 100, 10});
  surface.Line({50, 8, 50, 10, kRed});
  EXPECT_EQ(surface.Picture().pixelColor(50, 0), QColor(Qt::red));
  EXPECT_EQ(surface.Picture().pixelColor(50, 10), QColor(Qt::red));
  EXPECT_EQ(CountNotWhite(surface), 11);
  EXPECT_LT(surface.TextHeight(), 0);
}

TEST(PlotSurface, StartsAnewWithAnotherSize) {
  PlotSurface surface;
  surface.Resize(QSize(10, 10), 1);
  surface.SetScale({0, 0, 9, 9});
  surface.FillBox({0, 0, 9, 9, kRed});
  surface.Resize(QSize(20, 20), 1);
  EXPECT_EQ(CountNotWhite(surface), 0);
  surface.FillBox({0, 0, 9, 9, kRed});
  EXPECT_EQ(CountNotWhite(surface), 400);
  surface.Resize(QSize(0, -5), 1);
  surface.Line({0, 0, 9, 9, kRed});
  EXPECT_EQ(surface.Picture().size(), QSize(1, 1));
}

}  // namespace
}  // namespace tavrel
