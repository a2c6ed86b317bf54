#include "graph/axis_ticks.h"

#include <gmock/gmock.h>

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ViewFrame Frame(double left, double right, double bottom = 0, double top = 1000) {
  ViewFrame view;
  view.XLeft = left;
  view.XRight = right;
  view.YBottom = bottom;
  view.YTop = top;
  return view;
}

double NoWidth(std::string_view /*text*/) {
  return 0;
}

std::vector<double> Places(const std::vector<AxisTick>& ticks) {
  std::vector<double> places;
  places.reserve(ticks.size());
  for (const AxisTick& tick : ticks) {
    places.push_back(tick.At);
  }
  return places;
}

std::vector<std::string> Texts(const std::vector<AxisTick>& ticks) {
  std::vector<std::string> texts;
  texts.reserve(ticks.size());
  for (const AxisTick& tick : ticks) {
    texts.push_back(tick.Text);
  }
  return texts;
}

TEST(StepY, FollowsItsTable) {
  const std::vector<std::pair<double, double>> table = {
      {65535, 10000}, {30000, 10000}, {29999, 5000}, {12000, 5000}, {11999, 2000}, {6000, 2000},
      {5999, 1000},   {3000, 1000},   {2999, 500},   {1200, 500},   {1199, 200},   {600, 200},
      {599, 100},     {300, 100},     {299, 50},     {120, 50},     {119, 20},     {60, 20},
      {59, 10},       {30, 10},       {29.9, 5},     {12, 5},       {11.9, 2},     {6, 2},
      {5.9, 1},       {3, 1},         {2.9, 0.5},    {1, 0.5},      {0.99, 0.1},   {-5, 0.1}};
  for (const auto& [span, step] : table) {
    EXPECT_EQ(StepY(span), step) << span;
  }
}

TEST(StepX, FollowsItsTable) {
  const std::vector<std::pair<double, double>> table = {
      {600000, 300000}, {599999, 120000}, {300000, 120000}, {299999, 60000}, {120000, 60000},
      {119999, 30000},  {60000, 30000},   {59999, 12000},   {30000, 12000},  {29999, 6000},
      {12000, 6000},    {11999, 3000},    {6000, 3000},     {5999, 1200},    {3000, 1200},
      {2999, 600},      {1200, 600},      {1199, 300},      {600, 300},      {599, 120},
      {300, 120},       {299, 60},        {120, 60},        {119, 20},       {60, 20},
      {59, 10},         {30, 10},         {29, 5},          {-1, 5}};
  for (const auto& [span, step] : table) {
    EXPECT_EQ(StepX(span), step) << span;
  }
}

TEST(TimeTicks, At299MinutesReadInMinutes) {
  const auto ticks = TimeTicks(Frame(0, 299), NoWidth);
  EXPECT_THAT(Places(ticks), ElementsAre(0, 60, 120, 180, 240));
  EXPECT_THAT(Texts(ticks), ElementsAre("", "60", "120", "180", "240"));
  EXPECT_EQ(AxisUnit(Frame(0, 299), false), "min");
}

TEST(TimeTicks, AtExactly300MinutesReadInHoursAtWholeHours) {
  const auto ticks = TimeTicks(Frame(0, 300), NoWidth);
  EXPECT_THAT(Places(ticks), ElementsAre(0, 120, 240));
  EXPECT_THAT(Texts(ticks), ElementsAre("", "2", "4"));
  EXPECT_EQ(AxisUnit(Frame(0, 300), false), "h  ");
}

TEST(TimeTicks, ReadInHoursByTheRightEdgeAndNotByTheSpan) {
  const auto ticks = TimeTicks(Frame(290, 310), NoWidth);  // steps of 5 minutes
  EXPECT_THAT(Places(ticks), ElementsAre(300));
  EXPECT_THAT(Texts(ticks), ElementsAre("5"));
}

TEST(TimeTicks, OfHoursKeepATickOneMinutePastTheHour) {
  // No step of the table meets that minute, so the rule shows on the hour alone: 0 and 1 stay,
  // 2 and more go.
  const auto ticks = TimeTicks(Frame(355, 365), NoWidth);
  EXPECT_THAT(Places(ticks), ElementsAre(360));
}

TEST(TimeTicks, WhoseLabelWouldLeaveThePlotHaveNone) {
  const auto ten_wide = [](std::string_view /*text*/) { return 10.0; };
  const auto ticks = TimeTicks(Frame(0, 65), ten_wide);
  EXPECT_THAT(Places(ticks), ElementsAre(0, 20, 40, 60));
  EXPECT_THAT(Texts(ticks), ElementsAre("", "20", "40", ""));  // 60 + 5 is at the edge
}

TEST(TimeTicks, StartBelowTheLeftEdgeOnAWholeStep) {
  EXPECT_THAT(Places(TimeTicks(Frame(13, 43), NoWidth)), ElementsAre(10, 20, 30, 40));
}

TEST(TimeTicks, OfAnAxisThatRunsBackwardsAreNone) {
  EXPECT_THAT(TimeTicks(Frame(0, -100), NoWidth), IsEmpty());
}

TEST(ValueTicks, OfASpanBelowOneDegreeAreTenthsWithADecimal) {
  const auto ticks = ValueTicks(Frame(0, 1, 20, 20.5), 0.05, NoWidth);
  EXPECT_THAT(Texts(ticks), ElementsAre("", "20.1", "20.2", "20.3", "20.4", ""));
  EXPECT_DOUBLE_EQ(ticks[3].At, 20.3);
}

TEST(ValueTicks, OfOneDegreeAreHalves) {
  const auto ticks = ValueTicks(Frame(0, 1, 0, 1), 0.01, NoWidth);
  EXPECT_THAT(Texts(ticks), ElementsAre("", "0.5", ""));
}

TEST(ValueTicks, StartAtTheStepBelowANegativeBottom) {
  const auto ticks = ValueTicks(Frame(0, 1, -150, 150), 10, NoWidth);
  EXPECT_THAT(Places(ticks), ElementsAre(-200, -100, 0, 100));
  EXPECT_THAT(Texts(ticks), ElementsAre("", "-100", "0", "100"));
}

TEST(ValueTicks, HaveNoLabelWithinItsHeightOfTheTopAndHalfItOfTheBottom) {
  const auto at_edges = ValueTicks(Frame(0, 1, 100, 900), 100, NoWidth);
  EXPECT_THAT(Places(at_edges), ElementsAre(0, 200, 400, 600, 800));
  EXPECT_THAT(Texts(at_edges), ElementsAre("", "200", "400", "600", ""));  // 800 is at 900 - 100
  const auto low = ValueTicks(Frame(0, 1, 150, 950), 100, NoWidth);
  EXPECT_THAT(Texts(low), ElementsAre("", "", "400", "600", "800"));  // 200 is at 150 + 50
}

TEST(ValueTicks, OfAnUpsideDownAxisAreNone) {
  EXPECT_THAT(ValueTicks(Frame(0, 1, 1000, 0), 10, NoWidth), IsEmpty());
}

TEST(ValueTicks, CarryTheWidthOfTheirText) {
  const auto by_length = [](std::string_view text) { return static_cast<double>(text.size()); };
  const auto ticks = ValueTicks(Frame(0, 1, 0, 1200), 10, by_length);
  EXPECT_EQ(ticks.at(1).Text, "500");
  EXPECT_EQ(ticks.at(1).Width, 3);
  EXPECT_EQ(ticks.at(2).Width, 4);
}

TEST(AxisUnit, OfAReferenceAxisIsDegrees) {
  EXPECT_EQ(AxisUnit(Frame(0, 300), true), "°C ");
}

TEST(ReferenceTicks, KeepTheFirstTwenty) {
  ReferenceTicks ticks;
  for (int n = 0; n < 25; ++n) {
    ticks.Add(n, std::to_string(n));
  }
  EXPECT_EQ(ticks.AxisTickCount, 20);
  EXPECT_EQ(ticks.AxisTickX[19], 19);
  EXPECT_EQ(ticks.AxisTickText[19], "19");
}

}  // namespace
}  // namespace tavrel
