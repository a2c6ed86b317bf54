#include "graph/mark_label.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

std::string TimeLabel(double x, double y) {
  return MarkLabel({{x, y}, 0, std::nullopt});
}

TEST(MarkLabel, TellsSecondsBelowSixteenMinutes) {
  EXPECT_EQ(TimeLabel(0, 98.5), "98.50 / 0.00 sec");
  EXPECT_EQ(TimeLabel(1.5, 98.5), "98.50 / 90.00 sec");
  EXPECT_EQ(TimeLabel(15.99, 98.5), "98.50 / 959.4 sec");
}

TEST(MarkLabel, TellsMinutesFromSixteenToBelowSixty) {
  EXPECT_EQ(TimeLabel(16, 98.5), "98.50 / 16.00 min");
  EXPECT_EQ(TimeLabel(59.99, 98.5), "98.50 / 59.99 min");
}

TEST(MarkLabel, TellsHoursFromSixtyMinutes) {
  EXPECT_EQ(TimeLabel(60, 98.5), "98.50 / 1.00 h");
  EXPECT_EQ(TimeLabel(150, 98.5), "98.50 / 2.50 h");
  EXPECT_EQ(TimeLabel(6300, 98.5), "98.50 / 105.0 h");
}

TEST(MarkLabel, ChoosesTheUnitByTheTimeAndNotByTheTemperature) {
  EXPECT_EQ(TimeLabel(20, 170), "170.0 / 20.00 min");
}

TEST(MarkLabel, ShowsNoMinusOnAZero) {
  EXPECT_EQ(TimeLabel(20, -0.001), "0.00 / 20.00 min");
  EXPECT_EQ(TimeLabel(20, -3.25), "-3.25 / 20.00 min");
}

TEST(MarkLabel, PutsTheAbsoluteValueIntoTheBracketOfARelativeView) {
  EXPECT_EQ(MarkLabel({{20, -3.25}, 1, 98.5}), "-3.25 (95.25)");
  EXPECT_EQ(MarkLabel({{20, 3.25}, 1, 98.5}), "3.25 (101.8)");
}

TEST(MarkLabel, PutsTheReferenceIntoTheBracketOfAReferenceView) {
  EXPECT_EQ(MarkLabel({{20, -3.25}, 2, 98.5}), "-3.25 (98.50)");
  EXPECT_EQ(MarkLabel({{20, -3.25}, 7, 98.5}), "-3.25 (98.50)");
}

TEST(MarkLabel, HasNoBracketWithoutAReference) {
  EXPECT_EQ(MarkLabel({{20, -3.25}, 1, std::nullopt}), "-3.25");
  EXPECT_EQ(MarkLabel({{20, -3.25}, 2, std::nullopt}), "-3.25");
}

TEST(MarkLabel, IgnoresTheReferenceInAnAbsoluteView) {
  EXPECT_EQ(MarkLabel({{20, 50}, 0, 98.5}), "50.00 / 20.00 min");
  EXPECT_EQ(MarkLabel({{20, 50}, -1, 98.5}), "50.00 / 20.00 min");
}

// Rows of two words each 30 s, drawn to row 40.
TEST(RecordAt, FindsTheNearestRowInFrontOfTheEnd) {
  ViewFrame view;
  view.RecEnd = 580;
  EXPECT_EQ(RecordAt(view, 10, 30, 2), 540);
  EXPECT_EQ(RecordAt(view, 10.2, 30, 2), 540);
  EXPECT_EQ(RecordAt(view, 10.3, 30, 2), 542);
  EXPECT_EQ(RecordAt(view, 19.5, 30, 2), 578);
  EXPECT_EQ(RecordAt(view, 20, 30, 2), std::nullopt);
  EXPECT_EQ(RecordAt(view, 21, 30, 2), std::nullopt);
}

TEST(RecordAt, TakesRowOneForTheVeryBeginning) {
  ViewFrame view;
  view.RecEnd = 580;
  EXPECT_EQ(RecordAt(view, 0, 30, 2), 502);
  EXPECT_EQ(RecordAt(view, 0.001, 30, 2), 500);
}

TEST(RecordAt, HasNoneFromTheMaximalRowOn) {
  ViewFrame view;
  view.RecEnd = 32767;
  EXPECT_EQ(RecordAt(view, 2145, 60, 15), 2145 * 15 + 500);
  EXPECT_EQ(RecordAt(view, 2146, 60, 15), std::nullopt);
  EXPECT_EQ(RecordAt(view, 5000, 60, 15), std::nullopt);
}

}  // namespace
}  // namespace tavrel
