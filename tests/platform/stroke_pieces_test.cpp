#include "platform/stroke_pieces.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tavrel {
namespace {

StrokePoints Noise(int points, double wide, double high) {
  std::mt19937 random(7);
  StrokePoints noise;
  for (int k = 0; k < points; ++k) {
    noise.push_back({wide * k / points, high * static_cast<double>(random() % 1000) / 1000});
  }
  return noise;
}

double LengthOf(const StrokePoints& points) {
  double length = 0;
  for (std::size_t k = 1; k < points.size(); ++k) {
    length += std::hypot(points[k].X - points[k - 1].X, points[k].Y - points[k - 1].Y);
  }
  return length;
}

TEST(WithoutUnseen, KeepsFourPointsOfAColumn) {
  const StrokePoints points = {{0.1, 5}, {0.2, 9}, {0.4, 1}, {0.9, 4}, {1.5, 3}};
  EXPECT_EQ(WithoutUnseen(points, 1), points);
}

TEST(WithoutUnseen, TakesColumnsAsWideAsTheyAreTold) {
  const StrokePoints points = {{0, 5}, {1, 9}, {2, 6}, {3, 1}, {4, 4}, {5, 2}, {6, 3}};
  EXPECT_EQ(WithoutUnseen(points, 0.5), points);
  EXPECT_EQ(WithoutUnseen(points, 10), (StrokePoints{{0, 5}, {1, 9}, {3, 1}, {6, 3}}));
}

TEST(WithoutUnseen, KeepsTheFirstTheExtremesAndTheLastInTheirOrder) {
  const StrokePoints points = {{3.0, 5}, {3.1, 6}, {3.2, 1}, {3.3, 4},
                               {3.4, 9}, {3.5, 8}, {3.6, 7}, {4, 2}};
  const StrokePoints kept = {{3.0, 5}, {3.2, 1}, {3.4, 9}, {3.6, 7}, {4, 2}};
  EXPECT_EQ(WithoutUnseen(points, 1), kept);
}

TEST(WithoutUnseen, KeepsAPointOnceThatIsFirstAndLowest) {
  const StrokePoints points = {{0, 1}, {0.1, 2}, {0.2, 5}, {0.3, 4}, {0.4, 9}};
  const StrokePoints kept = {{0, 1}, {0.4, 9}};
  EXPECT_EQ(WithoutUnseen(points, 1), kept);
}

TEST(WithoutUnseen, LeavesNoMorePointsThanThePageHasColumns) {
  for (const double wide : {1.0, 100.0, 1040.0}) {
    const StrokePoints seen = WithoutUnseen(Noise(32000, wide, 600), 1);
    EXPECT_LE(seen.size(), 4 * (static_cast<std::size_t>(wide) + 1));
    EXPECT_GT(LengthOf(seen), 300 * wide);
  }
}

TEST(WithoutUnseen, WorksFromRightToLeftAndLeftOfTheOrigin) {
  StrokePoints points = Noise(5000, 50, 600);
  for (StrokePoint& point : points) {
    point.X = -20 - point.X;
  }
  EXPECT_LE(WithoutUnseen(points, 1).size(), 4U * 51);
}

TEST(WithoutUnseen, KeepsAllWithoutAWidth) {
  const StrokePoints points = Noise(100, 1, 600);
  EXPECT_EQ(WithoutUnseen(points, 0), points);
  EXPECT_EQ(WithoutUnseen(points, std::nan("")), points);
  EXPECT_TRUE(WithoutUnseen({}, 1).empty());
}

TEST(InPieces, LeavesAShortLineWhole) {
  const StrokePoints points = {{0, 0}, {30, 40}, {60, 80}};
  const auto pieces = InPieces(points, 101);
  ASSERT_EQ(pieces.size(), 1U);
  EXPECT_EQ(pieces[0].Points, points);
  EXPECT_EQ(pieces[0].Before, 0);
  EXPECT_TRUE(InPieces({}, 100).empty());
}

TEST(InPieces, BeginsEachWhereTheOneBeforeEnded) {
  const auto pieces = InPieces({{0, 0}, {30, 40}, {60, 80}, {60, 90}}, 100);
  ASSERT_EQ(pieces.size(), 2U);
  EXPECT_EQ(pieces[0].Points, (StrokePoints{{0, 0}, {30, 40}, {60, 80}}));
  EXPECT_EQ(pieces[1].Points, (StrokePoints{{60, 80}, {60, 90}}));
  EXPECT_EQ(pieces[0].Length, 100);
  EXPECT_EQ(pieces[1].Before, 100);
  EXPECT_EQ(pieces[1].Length, 10);
}

TEST(InPieces, BoundsTheLinesAndTheLengthOfEach) {
  for (const double high : {0.0, 2.0, 600.0}) {
    const StrokePoints points = Noise(4000, 1000, high);
    const auto pieces = InPieces(points, 5000);
    std::size_t lines = 0;
    for (const StrokePiece& piece : pieces) {
      EXPECT_LE(piece.Points.size(), 129U);
      EXPECT_LE(LengthOf(piece.Points), 5000 + 601);
      lines += piece.Points.size() - 1;
    }
    EXPECT_EQ(lines, points.size() - 1);
    EXPECT_EQ(pieces.back().Points.back(), points.back());
  }
}

}  // namespace
}  // namespace tavrel
