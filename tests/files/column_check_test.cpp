#include "files/column_check.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// Plays the counts of a round: base, input, base, and so on.
class Counting {
 public:
  explicit Counting(std::vector<int> doubted) { check.Begin(15, std::move(doubted)); }

  void Take(int count) { check.Take(static_cast<std::int16_t>(count), now); }
  void LetTimePass() { now += ColumnCheck::kBetweenRounds; }

  ColumnCheck check;
  nanoseconds now{};
};

TEST(ColumnCheck, AsksForTheBaseBeforeAndAfterEachInput) {
  Counting counting({7, 3});
  std::vector<int> asked;
  for (int step = 0; step < 5; ++step) {
    asked.push_back(counting.check.NextInput(counting.now));
    counting.Take(4);
  }
  EXPECT_EQ(asked, (std::vector<int>{15, 7, 15, 3, 15}));
}

TEST(ColumnCheck, NeedsTwoRoundsThatAgree) {
  Counting counting({7});
  for (const int count : {4, 3, 4}) {
    counting.Take(count);
  }
  EXPECT_FALSE(counting.check.IsDone());
  EXPECT_EQ(counting.check.NextInput(counting.now), 0);
  counting.now += ColumnCheck::kBetweenRounds - milliseconds(1);
  EXPECT_EQ(counting.check.NextInput(counting.now), 0);
  counting.now += milliseconds(1);
  EXPECT_EQ(counting.check.NextInput(counting.now), 15);
  for (const int count : {5, 4, 5}) {
    counting.Take(count);
  }
  EXPECT_TRUE(counting.check.HasVerdict());
  EXPECT_EQ(counting.check.Surplus(7), -1);
  EXPECT_EQ(counting.check.Surplus(3), 0);
}

TEST(ColumnCheck, ReadsAnInputAgainIfASampleWasTakenMeanwhile) {
  Counting counting({7});
  for (const int count : {4, 4, 5}) {
    counting.Take(count);
  }
  EXPECT_EQ(counting.check.NextInput(counting.now), 7);
  for (const int count : {5, 5}) {
    counting.Take(count);
  }
  EXPECT_EQ(counting.check.NextInput(counting.now), 0) << "the round is over";
}

TEST(ColumnCheck, DoesNotBelieveACountInTheMiddleOfASet) {
  Counting counting({7});
  for (const int count : {5, 4, 5}) {
    counting.Take(count);
  }
  counting.LetTimePass();
  for (const int count : {5, 5, 5}) {
    counting.Take(count);
  }
  EXPECT_FALSE(counting.check.IsDone());
  counting.LetTimePass();
  for (const int count : {5, 5, 5}) {
    counting.Take(count);
  }
  EXPECT_TRUE(counting.check.HasVerdict());
  EXPECT_EQ(counting.check.Surplus(7), 0);
}

TEST(ColumnCheck, GivesUpOnInputsThatNeverAgree) {
  Counting counting({7});
  int base = 0;
  while (!counting.check.IsDone()) {
    ASSERT_LT(base, 100);
    for (const int count : {base, 0, base}) {
      counting.Take(count);
    }
    ++base;
    counting.LetTimePass();
  }
  EXPECT_EQ(base, ColumnCheck::kMostRounds);
  EXPECT_FALSE(counting.check.HasVerdict());
}

TEST(ColumnCheck, IsOverAtOnceWithNothingToDoubt) {
  const Counting counting({});
  EXPECT_TRUE(counting.check.IsDone());
  EXPECT_FALSE(counting.check.HasVerdict());
}

}  // namespace
}  // namespace tavrel
