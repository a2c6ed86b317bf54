#include "graph/measure.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(ValueText, TakesDecimalsBySize) {
  EXPECT_EQ(ValueText(0), "0.00");
  EXPECT_EQ(ValueText(100), "100.00");
  EXPECT_EQ(ValueText(100.04), "100.0");
  EXPECT_EQ(ValueText(-1000), "-1000.0");
  EXPECT_EQ(ValueText(1000.6), "1001");
}

TEST(CursorText, ShowsMinutesWithTwoDecimalsAndHoursWithOne) {
  EXPECT_EQ(CursorTextX(12.345, false), "x = 12.35");
  EXPECT_EQ(CursorTextX(345, true), "x = 5.8");  // 5.75 h
}

TEST(CursorText, ShowsDegreesWithOneDecimalFrom99On) {
  EXPECT_EQ(CursorTextY(98.99), "y = 98.99");
  EXPECT_EQ(CursorTextY(99), "y = 99.0");
  EXPECT_EQ(CursorTextY(-99), "y = -99.0");
  EXPECT_EQ(CursorTextY(-5.5), "y = -5.50");
}

TEST(DifferenceText, BelowSixteenMinutesReadsInSeconds) {
  EXPECT_EQ(DifferenceText({1, 100}, {3, 110}),
            "dy = 10.00       dx = 120.0 sec       dy/dx = 83.33 E-3");
}

TEST(DifferenceText, FromSixteenMinutesReadsInMinutesWhileDyIsSixtyAtTheMost) {
  EXPECT_EQ(DifferenceText({0, 0}, {16, 60}),
            "dy = 60.00       dx = 16.00 min       dy/dx = 3750 E-3");
}

TEST(DifferenceText, ReadsInHoursByDyAndNotByDx) {
  EXPECT_EQ(DifferenceText({0, 0}, {20, 70}),
            "dy = 70.00       dx = 0.33 h       dy/dx = 210000 E-3");
  EXPECT_EQ(DifferenceText({0, 0}, {600, 30}),
            "dy = 30.00       dx = 600.0 min       dy/dx = 50.00 E-3");
}

TEST(DifferenceText, LeavesTheSlopeOutOfAVerticalDistance) {
  EXPECT_EQ(DifferenceText({5, 10}, {5, 20}), "dy = 10.00       dx = 0.00 sec");
}

TEST(DifferenceText, HasNoSigns) {
  EXPECT_EQ(DifferenceText({3, 110}, {1, 100}), DifferenceText({1, 100}, {3, 110}));
}

TEST(LegendCurve, CountsInFifteenthsFromHalfARowOn) {
  EXPECT_EQ(LegendCurveAt(0, 15), 0);
  EXPECT_EQ(LegendCurveAt(0.49 / 15, 15), 0);
  EXPECT_EQ(LegendCurveAt(0.51 / 15, 15), 1);
  EXPECT_EQ(LegendCurveAt(1.49 / 15, 15), 1);
  EXPECT_EQ(LegendCurveAt(14.6 / 15, 15), 15);
}

TEST(LegendCurve, DriftsFromTheRowsWhichAreSixteenthsApart) {
  EXPECT_EQ(LegendCurveAt(1 / 16.0, 15), 1);
  EXPECT_EQ(LegendCurveAt(7 / 16.0, 15), 7);
  EXPECT_EQ(LegendCurveAt(8 / 16.0, 15), 8);
  EXPECT_EQ(LegendCurveAt(9 / 16.0, 15), 8);  // 8.4 fifteenths: the row of the ninth is the eighth
}

TEST(LegendCurve, IsNoneBelowTheLastRow) {
  EXPECT_EQ(LegendCurveAt(3 / 15.0, 3), 3);
  EXPECT_EQ(LegendCurveAt(4 / 15.0, 3), 0);
  EXPECT_EQ(LegendCurveAt(-1, 3), 0);
  EXPECT_EQ(LegendCurveAt(1, 15), 15);
}

TEST(IntegralText, ShowsTheWholePartOnly) {
  EXPECT_EQ(IntegralText(0), "Integral =  0 °C·min");
  EXPECT_EQ(IntegralText(1234.99), "Integral =  1234 °C·min");
}

Baseline Line(const std::array<PlotPoint, kBaselinePoints>& points) {
  return Baseline{points};
}

TEST(Baseline, IsSortedByXAndKeepsTheOrderOfEqualOnes) {
  Baseline line = Line({{{40, 1}, {10, 2}, {30, 3}, {10, 4}, {0, 5}}});
  line.Sort();
  EXPECT_EQ(line.Points,
            (std::array<PlotPoint, kBaselinePoints>{{{0, 5}, {10, 2}, {10, 4}, {30, 3}, {40, 1}}}));
}

TEST(Baseline, IsInterpolatedBetweenItsPoints) {
  const Baseline line = Line({{{0, 0}, {10, 100}, {20, 100}, {30, 50}, {40, 0}}});
  EXPECT_DOUBLE_EQ(line.At(5, 0.1, 0), 50);
  EXPECT_DOUBLE_EQ(line.At(15, 0.1, 0), 100);
  EXPECT_DOUBLE_EQ(line.At(25, 0.1, 0), 75);
  EXPECT_DOUBLE_EQ(line.At(40, 0.1, 0), 0);
}

TEST(Baseline, IsAStepWhereASegmentIsNarrowerThanTheTolerance) {
  const Baseline line = Line({{{0, 10}, {1, 50}, {20, 50}, {30, 50}, {40, 50}}});
  EXPECT_EQ(line.At(0.5, 1, 0), 10);
  EXPECT_DOUBLE_EQ(line.At(0.5, 0.99, 0), 30);
}

TEST(Baseline, KeepsTheValueBeforeRightOfItsEnd) {
  const Baseline line = Line({{{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}}});
  EXPECT_EQ(line.At(4.5, 0.1, 77), 77);
}

TEST(Baseline, OnOneVerticalLineDividesByNothing) {
  const Baseline line = Line({{{5, 1}, {5, 2}, {5, 3}, {5, 4}, {5, 5}}});
  EXPECT_EQ(line.At(5, 0.1, 0), 1);
}

}  // namespace
}  // namespace tavrel
