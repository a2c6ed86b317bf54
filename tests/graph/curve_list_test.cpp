#include "graph/curve_list.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

// Inputs 2, 4 and 5 are recorded; 2 and 5 are shown.
UnitRecord Unit() {
  UnitRecord unit{};
  unit.UnitRole = {0, 1, 0, 1, 2};
  unit.UnitColour = {3, 2, 3, 0, 4};
  unit.UnitRef = 5;
  return unit;
}

TEST(CurveList, CountsColumnsOfRecordedInputsAndCurvesOfColouredOnes) {
  CurveList list;
  BuildCurveList(Unit(), list);
  EXPECT_EQ(list.ColumnCount, 3);
  ASSERT_EQ(list.CurveCount, 2);
  EXPECT_EQ(list.At(0).CurveInput, 2);
  EXPECT_EQ(list.At(0).CurveColumn, 1);
  EXPECT_EQ(list.At(0).CurveColorNo, 12);
  EXPECT_EQ(list.At(0).CurveColor, (Colour{0xFF, 0, 0}));
  EXPECT_EQ(list.At(1).CurveInput, 5);
  EXPECT_EQ(list.At(1).CurveColumn, 3);
  EXPECT_EQ(list.RefColumn, 3);
}

TEST(CurveList, DoesNotFindAHiddenReference) {
  UnitRecord unit = Unit();
  unit.UnitRef = 4;
  CurveList list;
  BuildCurveList(unit, list);
  EXPECT_EQ(list.RefColumn, 0);
}

TEST(CurveList, KeepsTheColumnOfTheReferenceBeforeWhenItIsHiddenNow) {
  CurveList list;
  BuildCurveList(Unit(), list);
  UnitRecord unit = Unit();
  unit.UnitColour[5] = 0;
  BuildCurveList(unit, list);
  EXPECT_EQ(list.RefColumn, 3);
}

TEST(CurveList, ShowsAnUnknownCodeInTheColourOfThePlaceBlackAtFirst) {
  UnitRecord unit = Unit();
  unit.UnitColour[2] = 15;
  CurveList list;
  BuildCurveList(unit, list);
  EXPECT_EQ(list.At(0).CurveColorNo, kNoPaletteNumber);
  EXPECT_EQ(list.At(0).CurveColor, (Colour{0, 0, 0}));
  BuildCurveList(Unit(), list);
  BuildCurveList(unit, list);
  EXPECT_EQ(list.At(0).CurveColor, (Colour{0xFF, 0, 0}));
}

TEST(CurveList, MayBeEmpty) {
  UnitRecord unit = Unit();
  unit.UnitColour = {};
  CurveList list;
  BuildCurveList(unit, list);
  EXPECT_EQ(list.CurveCount, 0);
  EXPECT_EQ(list.ColumnCount, 3);
}

TEST(CurveList, HoldsFifteenCurves) {
  UnitRecord unit{};
  unit.UnitRole.Fill(1);
  unit.UnitColour.Fill(1);
  unit.UnitRef = 15;
  CurveList list;
  BuildCurveList(unit, list);
  EXPECT_EQ(list.CurveCount, 15);
  EXPECT_EQ(list.RefColumn, 15);
}

}  // namespace
}  // namespace tavrel
