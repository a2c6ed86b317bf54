#include "platform/scale_map.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace tavrel {
namespace {

constexpr DotBox kBox{0, 0, 99, 49};
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(ScaleMap, PutsTheEdgesOfTheScaleOnTheEdgesOfTheDots) {
  const ScaleMap map({10, 500, 60, -100}, kBox);
  EXPECT_DOUBLE_EQ(map.DotX(10), 0);
  EXPECT_DOUBLE_EQ(map.DotX(60), 99);
  EXPECT_DOUBLE_EQ(map.DotY(500), 0);
  EXPECT_DOUBLE_EQ(map.DotY(-100), 49);
  EXPECT_LT(map.DotsPerY(), 0);
}

TEST(ScaleMap, ComesBackFromDots) {
  const ScaleMap map({10, 500, 60, -100}, kBox);
  EXPECT_NEAR(map.UserX(map.DotX(17.25)), 17.25, 1e-9);
  EXPECT_NEAR(map.UserY(map.DotY(-33.5)), -33.5, 1e-9);
}

TEST(ScaleMap, TakesAScaleWithoutExtentForOneUnit) {
  const ScaleMap map({7, 3, 7, 3}, kBox);
  EXPECT_DOUBLE_EQ(map.DotX(7), 0);
  EXPECT_DOUBLE_EQ(map.DotX(8), 99);
  EXPECT_DOUBLE_EQ(map.DotY(4), 49);
}

TEST(ScaleMap, StaysInvertibleOnASurfaceOfOneDot) {
  const ScaleMap map({0, 1, 1, 0}, {0, 0, 0, 0});
  EXPECT_TRUE(std::isfinite(map.UserX(0)));
  EXPECT_TRUE(std::isfinite(map.UserY(0)));
}

TEST(CutLine, LeavesALineInsideAlone) {
  DotLine line{3, 4, 90, 40};
  ASSERT_TRUE(CutLine(line, kBox));
  EXPECT_DOUBLE_EQ(line.X1, 3);
  EXPECT_DOUBLE_EQ(line.Y1, 4);
  EXPECT_DOUBLE_EQ(line.X2, 90);
  EXPECT_DOUBLE_EQ(line.Y2, 40);
}

TEST(CutLine, CutsAtBothEdges) {
  DotLine line{-50, -25, 150, 75};
  ASSERT_TRUE(CutLine(line, kBox));
  EXPECT_NEAR(line.X1, 0, 1e-9);
  EXPECT_NEAR(line.Y1, 0, 1e-9);
  EXPECT_NEAR(line.X2, 98, 1e-9);
  EXPECT_NEAR(line.Y2, 49, 1e-9);
}

// A line that comes nearer to an edge by less than a dot is cut there as any other one.
TEST(CutLine, CutsShortLinesToo) {
  for (const double half : {0.25, 0.5, 0.75, 4.0}) {
    for (const auto& [inside, outside] :
         {std::pair(99 - half, 99 + half), std::pair(half, -half)}) {
      const double edge = outside > 0 ? 99 : 0;
      DotLine out{inside, 10, outside, 10};
      DotLine in{outside, 10, inside, 10};
      ASSERT_TRUE(CutLine(out, kBox) && CutLine(in, kBox)) << half;
      EXPECT_DOUBLE_EQ(out.X1, inside) << half;
      EXPECT_NEAR(out.X2, edge, 1e-9) << half;
      EXPECT_NEAR(in.X1, edge, 1e-9) << half;
      EXPECT_DOUBLE_EQ(in.X2, inside) << half;
    }
    DotLine down{10, 49 - half, 10, 49 + half};
    DotLine up{10, half, 10, -half};
    ASSERT_TRUE(CutLine(down, kBox) && CutLine(up, kBox)) << half;
    EXPECT_NEAR(down.Y2, 49, 1e-9) << half;
    EXPECT_NEAR(up.Y2, 0, 1e-9) << half;
  }
}

TEST(CutLine, SeesThatALinePassesACornerOutside) {
  DotLine line{-10, 5, 5, -10};
  EXPECT_FALSE(CutLine(line, kBox));
}

TEST(CutLine, KeepsAPointOnTheEdge) {
  DotLine line{99, 49, 99, 49};
  EXPECT_TRUE(CutLine(line, kBox));
  DotLine beyond{100, 49, 100, 49};
  EXPECT_FALSE(CutLine(beyond, kBox));
}

TEST(CutLine, RefusesWhatIsNotANumber) {
  for (int place = 0; place < 4; ++place) {
    DotLine line{1, 1, 5, 5};
    (place == 0 ? line.X1 : place == 1 ? line.Y1 : place == 2 ? line.X2 : line.Y2) = kNan;
    EXPECT_FALSE(CutLine(line, kBox)) << place;
  }
}

TEST(CutLine, HoldsInfiniteEndsInside) {
  DotLine line{-kInfinity, 10, kInfinity, 10};
  ASSERT_TRUE(CutLine(line, kBox));
  EXPECT_NEAR(line.X1, 0, 1e-6);
  EXPECT_NEAR(line.X2, 99, 1e-6);
  EXPECT_DOUBLE_EQ(line.Y1, 10);
}

TEST(CutLine, GivesEndsInsideForAnyNumber) {
  const double ends[] = {-kInfinity, -1e300, -1e9, -1, 0, 17.5, 49, 99, 1e5, 1e300, kInfinity};
  for (const double x1 : ends) {
    for (const double y1 : ends) {
      for (const double x2 : ends) {
        DotLine line{x1, y1, x2, 20};
        if (CutLine(line, kBox)) {
          EXPECT_TRUE(line.X1 >= 0 && line.X1 <= 99 && line.X2 >= 0 && line.X2 <= 99);
          EXPECT_TRUE(line.Y1 >= 0 && line.Y1 <= 49 && line.Y2 >= 0 && line.Y2 <= 49);
        }
      }
    }
  }
}

}  // namespace
}  // namespace tavrel
