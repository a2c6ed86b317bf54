#include "graph/view_frame.h"

#include <gmock/gmock.h>

#include <limits>

namespace tavrel {
namespace {

ViewFrame FrameWithFactors(double left, double right, double bottom, double top) {
  ViewFrame view;
  view.XLeft = left;
  view.XRight = right;
  view.YBottom = bottom;
  view.YTop = top;
  SetFactors(view);
  return view;
}

UnitRecord Unit(int channels, int resolution = 0) {
  UnitRecord unit{};
  unit.UnitChannels = static_cast<std::int16_t>(channels);
  unit.UnitRes = static_cast<std::int16_t>(resolution);
  return unit;
}

TEST(PlaceCode, RunsFrom7689To29211AndFrom4692To28083) {
  const ViewFrame view = FrameWithFactors(10, 110, -50, 950);
  EXPECT_EQ(CodeX(view, 10), 7689);
  EXPECT_EQ(CodeX(view, 110), 29211);
  EXPECT_EQ(CodeY(view, -50), 4692);
  EXPECT_EQ(CodeY(view, 950), 28083);
}

TEST(PlaceCode, ComesBackAsTheSamePlaceWithinAStepOfTheCode) {
  const ViewFrame view = FrameWithFactors(0, 500, 0, 1200);
  EXPECT_NEAR(DecodeX(view, CodeX(view, 123.4)), 123.4, 0.5 * 500 / 21522);
  EXPECT_NEAR(DecodeY(view, CodeY(view, 987.6)), 987.6, 0.5 * 1200 / 23391);
}

TEST(PlaceCode, RoundsTiesToTheEvenCode) {
  const ViewFrame view = FrameWithFactors(0, 21522, 0, 23391);  // a unit is a step
  EXPECT_EQ(CodeX(view, 0.5), 7690);                            // 7689.5
  EXPECT_EQ(CodeX(view, 1.5), 7690);                            // 7690.5
}

TEST(PlaceCode, IsHeldAt16Bits) {
  const ViewFrame view = FrameWithFactors(0, 1, 0, 1);
  EXPECT_EQ(CodeX(view, 100), 32767);
  EXPECT_EQ(CodeY(view, -100), -32768);
}

TEST(PlaceCode, BelowTheOffsetIsTheLowerLimitAndAboveTheEndTheUpperOne) {
  const ViewFrame view = FrameWithFactors(20, 80, 100, 900);
  EXPECT_EQ(DecodeX(view, 7600), 20);
  EXPECT_EQ(DecodeY(view, 4600), 100);
  EXPECT_EQ(DecodeX(view, 32767), 80);
  EXPECT_EQ(DecodeY(view, 32767), 900);
  EXPECT_EQ(DecodeX(view, -32768), 20);
}

TEST(PlaceCode, OfANewHeaderIsASmallRectangleAtTheLowerLeft) {
  const ViewFrame view = FrameWithFactors(0, 600, 0, 1000);
  EXPECT_EQ(DecodeX(view, 7600), 0);
  EXPECT_EQ(DecodeY(view, 4600), 0);
  EXPECT_NEAR(DecodeX(view, 10000), 2311.0 / 21522 * 600, 1e-9);
  EXPECT_NEAR(DecodeY(view, 10000), 5308.0 / 23391 * 1000, 1e-9);
}

TEST(PlaceCode, StaysInsideAnUpsideDownView) {
  const ViewFrame view = FrameWithFactors(0, 10, 500, 100);
  EXPECT_EQ(DecodeY(view, 4692), 500);
  EXPECT_EQ(DecodeY(view, 28083), 100);
  EXPECT_EQ(DecodeY(view, 0), 500);
  EXPECT_EQ(DecodeY(view, 32767), 100);
}

TEST(PlaceCode, OfAViewWithoutWidthIsItsEdge) {
  const ViewFrame view = FrameWithFactors(5, 5, 7, 7);
  EXPECT_EQ(CodeX(view, 5), 7689);
  EXPECT_EQ(DecodeX(view, 12345), 5);
  EXPECT_EQ(DecodeY(view, 12345), 7);
}

TEST(RowBounds, StartAtRowOneBecauseRowZeroIsNeverDrawn) {
  EXPECT_EQ(RowAt(0, 60, 3), 1);
  EXPECT_EQ(RowAt(0.25, 60, 3), 0.25);
}

TEST(RowBounds, AreHeldAtTheMaximalRow) {
  EXPECT_EQ(MaxRow(15), 2146);
  EXPECT_EQ(MaxRow(1), 32200);
  EXPECT_EQ(RowAt(32767, 1, 15), 2146);
}

TEST(RowBounds, OfAViewFromTheLeftEdge) {
  ViewFrame view = FrameWithFactors(0, 100, 0, 1000);
  EXPECT_TRUE(SetRecords(view, Unit(3), 60, 51));
  EXPECT_EQ(view.RecFirst, 500 + 3);
  EXPECT_EQ(view.RecLast, 500 + 300);
  EXPECT_EQ(view.RecEnd, 500 + 150);
  EXPECT_EQ(view.RecDrawn, 503);
  EXPECT_EQ(view.RecNow, 503);
  EXPECT_EQ(view.RecStep, 3);
}

TEST(RowBounds, OfOneRowEndWhereTheyStart) {
  ViewFrame view = FrameWithFactors(0, 100, 0, 1000);
  SetRecords(view, Unit(3), 60, 2);
  EXPECT_EQ(view.RecEnd, view.RecFirst);
}

TEST(RowBounds, RoundHalfARowToTheEvenOne) {
  EXPECT_EQ(RecordOfRow(2.5, 4), 508);
  EXPECT_EQ(RecordOfRow(3.5, 4), 516);
}

TEST(RowBounds, EndAtTheRightEdgeOfTheViewHoweverLongTheRecordingIs) {
  ViewFrame view = FrameWithFactors(0, 20, 0, 1000);
  SetRecords(view, Unit(3), 60, 5000);
  EXPECT_EQ(view.RecEnd, 560);
}

TEST(RowBounds, OfANegativeAxisHoldNoRow) {
  ViewFrame view = FrameWithFactors(0, -32768, 0, 1000);
  SetRecords(view, Unit(15), 1, 2000);
  EXPECT_LT(view.RecEnd, view.RecFirst);
}

TEST(Resolution, LowDrawsAHundredthOfTheRows) {
  ViewFrame view = FrameWithFactors(0, 1000, 0, 1000);
  EXPECT_FALSE(SetRecords(view, Unit(3, 54), 60, 1000));
  EXPECT_EQ(view.RecStep, 3 * 9);  // 999 rows
}

TEST(Resolution, LowOnLessThanTwoHundredRowsHasAStepOfOneAndIsStillLow) {
  ViewFrame view = FrameWithFactors(0, 199, 0, 1000);
  EXPECT_FALSE(SetRecords(view, Unit(3, 53), 60, 1000));
  EXPECT_EQ(view.RecStep, 3);
  EXPECT_TRUE(SetRecords(view, Unit(3, 52), 60, 1000));
}

TEST(RowTime, IsTheRowTimesTheInterval) {
  EXPECT_DOUBLE_EQ(MinutesOfRecord(500 + 7 * 3, 10, 3), 7 * 10 / 60.0);
  EXPECT_DOUBLE_EQ(MinutesOfRecord(500, 3600, 15), 0);
}

}  // namespace
}  // namespace tavrel
