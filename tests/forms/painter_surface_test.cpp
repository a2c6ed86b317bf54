#include "platform/qt/painter_surface.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QSvgGenerator>
#include <QXmlStreamReader>
#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include "tests/support/colours.h"

namespace tavrel {
namespace {

constexpr QRectF kPlace(20, 10, 100, 50);

// A page of 160 x 80 units with a surface on a part of it, one unit to the point.
class PaintedPage : public testing::Test {
 protected:
  PaintedPage() { page.fill(Qt::gray); }

  QColor At(int x, int y) const { return page.pixelColor(x, y); }
  int Count(const QColor& ink) const {
    int count = 0;
    for (int y = 0; y < page.height(); ++y) {
      for (int x = 0; x < page.width(); ++x) {
        count += page.pixelColor(x, y) == ink ? 1 : 0;
      }
    }
    return count;
  }

  QImage page{160, 80, QImage::Format_RGB32};
  QPainter painter{&page};
  PainterSurface surface{painter, kPlace, 1};
};

TEST_F(PaintedPage, ClearsItsPartOfThePageOnly) {
  surface.Clear();
  EXPECT_EQ(Count(Qt::white), 100 * 50);
  EXPECT_EQ(At(20, 10), QColor(Qt::white));
  EXPECT_EQ(At(19, 10), QColor(Qt::gray));
}

TEST_F(PaintedPage, DrawsInTheUserScale) {
  surface.Clear();
  surface.SetScale({0, 100, 10, 0});
  surface.FillBox({5, 100, 10, 50, kRed});
  EXPECT_EQ(At(69, 12), QColor(Qt::white));
  EXPECT_EQ(At(70, 12), QColor(Qt::red));
  EXPECT_EQ(At(119, 34), QColor(Qt::red));
  EXPECT_EQ(At(119, 35), QColor(Qt::white));
  EXPECT_EQ(Count(Qt::red), 50 * 25);
}

TEST_F(PaintedPage, CutsStrokesAtItsEdges) {
  surface.SetScale({0, 0, 100, 50});
  surface.Line({-500, 25.5, 500, 25.5, kBlue});
  EXPECT_EQ(At(18, 35), QColor(Qt::gray));
  EXPECT_EQ(At(21, 35), QColor(Qt::blue));
  EXPECT_EQ(At(118, 35), QColor(Qt::blue));
  EXPECT_EQ(At(122, 35), QColor(Qt::gray));
}

TEST_F(PaintedPage, DrawsEachLineInItsInk) {
  surface.SetScale({0, 0, 100, 50});
  const std::array<Segment, 2> lines = {{{10, 10.5, 20, 10.5, kRed}, {10, 20.5, 20, 20.5, kBlue}}};
  surface.Lines(lines);
  EXPECT_EQ(At(35, 20), QColor(Qt::red));
  EXPECT_EQ(At(35, 30), QColor(Qt::blue));
}

TEST_F(PaintedPage, DrawsTheOutlineOfABox) {
  surface.SetScale({0, 0, 100, 50});
  surface.Box({60.5, 30.5, 10.5, 10.5, kRed});
  EXPECT_EQ(At(55, 20), QColor(Qt::red));
  EXPECT_EQ(At(55, 40), QColor(Qt::red));
  EXPECT_EQ(At(30, 30), QColor(Qt::red));
  EXPECT_EQ(At(80, 30), QColor(Qt::red));
  EXPECT_EQ(At(55, 30), QColor(Qt::gray));
}

TEST_F(PaintedPage, MeasuresThePenInPoints) {
  PainterSurface fine(painter, kPlace, 3);
  fine.SetScale({0, 0, 100, 50});
  fine.SetPen({PenMode::kCopy, PenStyle::kSolid, 2});
  fine.Line({10, 25, 90, 25, kRed});
  EXPECT_EQ(At(60, 31), QColor(Qt::gray));
  EXPECT_EQ(At(60, 32), QColor(Qt::red));
  EXPECT_EQ(At(60, 37), QColor(Qt::red));
  EXPECT_EQ(At(60, 38), QColor(Qt::gray));
}

TEST_F(PaintedPage, LeavesGapsInADottedLine) {
  surface.SetScale({0, 0, 100, 50});
  surface.SetPen({PenMode::kCopy, PenStyle::kDot, 1});
  surface.Line({0, 25.5, 100, 25.5, kRed});
  const int inked = Count(Qt::red);
  EXPECT_GT(inked, 20);
  EXPECT_LT(inked, 80);
}

TEST_F(PaintedPage, DrawsNothingForWhatIsNotANumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  surface.Line({nan, 0, 1, 1, kRed});
  surface.Box({nan, 0, 1, nan, kRed});
  surface.FillBox({0, 0, nan, 1, kRed});
  surface.Print(nan, 0, "X");
  surface.Print(std::numeric_limits<double>::infinity(), 0, "X");
  EXPECT_EQ(Count(Qt::gray), 160 * 80);
}

TEST_F(PaintedPage, PlacesTextByItsUpperLeftCorner) {
  surface.Clear();
  surface.SetScale({0, 50, 100, 0});
  surface.SetFont("DejaVu Sans", 12);
  surface.Print(30, 40, "Hg");
  const QImage text = page.copy(50, 20, 30, 20);
  EXPECT_NE(text, page.copy(90, 20, 30, 20));
  for (int x = 20; x < 120; ++x) {
    EXPECT_EQ(At(x, 19), QColor(Qt::white)) << x;
  }
}

TEST_F(PaintedPage, CutsTextAtItsEdges) {
  surface.SetScale({0, 0, 100, 50});
  surface.SetFont("", 20);
  surface.Print(90, 40, "WWWW");
  EXPECT_NE(page.copy(110, 50, 10, 10), page.copy(0, 0, 10, 10));
  EXPECT_EQ(page.copy(120, 0, 40, 80), page.copy(120, 0, 40, 1).scaled(40, 80));
}

TEST_F(PaintedPage, MeasuresTextInTheScale) {
  surface.SetFont("DejaVu Sans", 10);
  surface.SetScale({0, 0, 100, 50});
  const double width = surface.TextWidth("12345");
  const double height = surface.TextHeight();
  EXPECT_GT(width, 20);
  EXPECT_LT(width, 60);
  EXPECT_GT(height, 8);
  surface.SetScale({10, 500, 0, 0});
  EXPECT_NEAR(surface.TextWidth("12345"), width / 10, 1e-9);
  EXPECT_NEAR(surface.TextHeight(), -height * 10, 1e-9);
}

TEST_F(PaintedPage, HasTextOfTheSizeInPoints) {
  surface.SetScale({0, 0, 100, 50});
  surface.SetFont("DejaVu Sans", 10);
  const double height = surface.TextHeight();
  PainterSurface fine(painter, kPlace, 4);
  fine.SetScale({0, 0, 100, 50});
  fine.SetFont("DejaVu Sans", 10);
  EXPECT_NEAR(fine.TextHeight(), 4 * height, 4);
}

TEST_F(PaintedPage, LetsTheCallersPainterAsItWas) {
  painter.setPen(QPen(Qt::green, 7));
  const QFont font = painter.font();
  surface.Line({0, 0, 1, 1, kRed});
  surface.SetFont("DejaVu Sans", 30);
  surface.Print(0, 0, "X");
  EXPECT_EQ(painter.pen(), QPen(Qt::green, 7));
  EXPECT_EQ(painter.font(), font);
  EXPECT_FALSE(painter.hasClipping());
}

TEST(PainterSurface, KeepsTextAsTextInAnSvg) {
  QBuffer buffer;
  QSvgGenerator svg;
  svg.setOutputDevice(&buffer);
  svg.setSize(QSize(200, 100));
  {
    QPainter painter(&svg);
    PainterSurface surface(painter, QRectF(0, 0, 200, 100), 1);
    surface.SetBold(true);
    surface.Print(0.1, 0.1, "Ofen 1, 20 °C");
    surface.Line({0, 0, 1, 1, kRed});
  }
  const QString picture = QString::fromUtf8(buffer.data());
  EXPECT_TRUE(picture.contains(QString::fromUtf8("Ofen 1, 20 °C</text>")));
  EXPECT_TRUE(picture.contains("font-weight=\"700\""));
  EXPECT_TRUE(picture.contains("<polyline"));
  EXPECT_TRUE(picture.contains("#ff0000"));
}

// The points of each polyline that the surface gives a page of 1600 x 900 units for a curve of
// noise between `least` and `most` of 900.
std::vector<int> PointsOfNoise(int points, unsigned least, unsigned most, const Pen& pen) {
  std::mt19937 random(3);
  std::vector<Segment> lines;
  double last = 0;
  for (int k = 1; k < points; ++k) {
    const double next = least + static_cast<double>(random() % (most - least + 1));
    lines.push_back({1600.0 * (k - 1) / points, last, 1600.0 * k / points, next, kRed});
    last = next;
  }
  QBuffer buffer;
  QSvgGenerator svg;
  svg.setOutputDevice(&buffer);
  svg.setSize(QSize(1600, 900));
  {
    QPainter painter(&svg);
    PainterSurface surface(painter, QRectF(0, 0, 1600, 900), 1);
    surface.SetScale({0, 0, 1600, 900});
    surface.SetPen(pen);
    surface.Lines(lines);
  }
  std::vector<int> found;
  QXmlStreamReader reader(buffer.data());
  while (!reader.atEnd()) {
    reader.readNext();
    if (reader.isStartElement() && reader.name() == u"polyline") {
      found.push_back(static_cast<int>(reader.attributes().value("points").count(u',')));
    }
  }
  return found;
}

// A painter's work grows with the square of the size of a shape.
TEST(PainterSurface, DrawsACurveOfNoiseInSmallPieces) {
  for (const int points : {600, 8000, 32000}) {
    for (const PenStyle style : {PenStyle::kSolid, PenStyle::kDashDot}) {
      const auto pieces = PointsOfNoise(points, 0, 899, {PenMode::kCopy, style, 2});
      ASSERT_FALSE(pieces.empty());
      EXPECT_LE(std::ranges::max(pieces), 32) << points;
      EXPECT_LE(std::accumulate(pieces.begin(), pieces.end(), 0), 2 * 4 * 1600) << points;
    }
  }
}

TEST(PainterSurface, DrawsAFlatCurveOfNoiseInPieces) {
  for (const int points : {600, 8000, 32000}) {
    const auto pieces = PointsOfNoise(points, 450, 452, {});
    ASSERT_FALSE(pieces.empty());
    EXPECT_LE(std::ranges::max(pieces), 129) << points;
    EXPECT_LE(std::accumulate(pieces.begin(), pieces.end(), 0), 4 * 1600 + 100) << points;
  }
}

// The dots of a picture that are neither ink nor paper.
int SoftDots(int lines) {
  QImage page(200, 100, QImage::Format_RGB32);
  page.fill(Qt::white);
  QPainter painter(&page);
  painter.setRenderHint(QPainter::Antialiasing);
  PainterSurface surface(painter, page.rect(), 1);
  surface.SetScale({0, 0, 200, 100});
  std::vector<Segment> curve;
  for (int k = 0; k < lines; ++k) {
    const double from = 60.0 * k / lines;
    curve.push_back({from, k % 2 * 99.0, from + 60.0 / lines, (k + 1) % 2 * 99.0, kRed});
  }
  surface.Lines(curve);
  int soft = 0;
  for (int y = 0; y < page.height(); ++y) {
    for (int x = 0; x < page.width(); ++x) {
      const QColor dot = page.pixelColor(x, y);
      soft += dot == QColor(Qt::white) || dot == QColor(Qt::red) ? 0 : 1;
    }
  }
  return soft;
}

TEST(PainterSurface, DrawsSoftEdgesWhereACurveIsNotAnArea) {
  EXPECT_GT(SoftDots(2), 100);
  EXPECT_EQ(SoftDots(120), 0);  // all of it in pieces of four lines
}

TEST(PainterSurface, DrawsASparseCurveInOneStrokeOfAllItsPoints) {
  EXPECT_EQ(PointsOfNoise(120, 450, 452, {}), std::vector<int>{120});
}

}  // namespace
}  // namespace tavrel
