#include "files/buffer_fill.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr seconds kTen{10};
constexpr nanoseconds kStart = hours(30);  // a machine is not started with the program

BufferFill Held(int sets, seconds interval = kTen) {
  BufferFill fill;
  fill.TakeReading(sets, interval, kStart);
  return fill;
}

TEST(BufferFill, KnowsNothingBeforeItsFirstReading) {
  BufferFill fill;
  fill.TakeSet(kStart);
  EXPECT_FALSE(fill.IsKnown());
  EXPECT_EQ(fill.MostWaiting(kStart), std::nullopt);
  EXPECT_EQ(fill.LeastRoom(kStart), std::nullopt);
  EXPECT_EQ(fill.MostWithoutLimit(kStart), std::nullopt);
  EXPECT_FALSE(fill.IsInDanger(kStart));
  EXPECT_FALSE(fill.MayHaveBeenFull(kStart));
}

TEST(BufferFill, HoldsWhatWasReadAtThatMoment) {
  const BufferFill fill = Held(860);
  EXPECT_TRUE(fill.IsKnown());
  EXPECT_EQ(fill.MostWaiting(kStart), 860);
  EXPECT_EQ(fill.LeastRoom(kStart), 36);
}

TEST(BufferFill, CountsASetWithTheFirstMomentOfEachInterval) {
  const BufferFill fill = Held(5);
  EXPECT_EQ(fill.MostWaiting(kStart + nanoseconds(1)), 6);
  EXPECT_EQ(fill.MostWaiting(kStart + milliseconds(9990)), 6);
  EXPECT_EQ(fill.MostWaiting(kStart + milliseconds(10010)), 7);
  EXPECT_EQ(fill.MostWaiting(kStart + milliseconds(99900)), 15);
}

TEST(BufferFill, AllowsForAClockThatRunsFasterThanThis) {
  const BufferFill fill = Held(0, seconds(1));
  // 800 s at 200 ppm are 0.16 s more.
  EXPECT_EQ(fill.MostWaiting(kStart + milliseconds(799900)), 801);
  EXPECT_EQ(fill.MostWaiting(kStart + milliseconds(799800)), 800);
}

TEST(BufferFill, TakesSetsOff) {
  BufferFill fill = Held(860, seconds(3600));
  for (int set = 0; set < 30; ++set) {
    fill.TakeSet(kStart);
  }
  EXPECT_EQ(fill.MostWaiting(kStart), 830);
  EXPECT_EQ(fill.MostWaiting(kStart + hours(2) - seconds(2)), 832);
}

TEST(BufferFill, KeepsThePlaceInTheIntervalWhenASetIsTaken) {
  BufferFill fill = Held(100);
  for (int set = 1; set <= 50; ++set) {
    fill.TakeSet(kStart + milliseconds(100) * set);
  }
  EXPECT_EQ(fill.MostWaiting(kStart + seconds(9)), 51) << "one interval makes one set";
}

TEST(BufferFill, IsInDangerWithRoomForFewerThanSixtyFour) {
  EXPECT_FALSE(Held(832).IsInDanger(kStart));  // room for 64
  EXPECT_TRUE(Held(833).IsInDanger(kStart));
  EXPECT_TRUE(Held(896).IsInDanger(kStart));
  EXPECT_TRUE(Held(832).IsInDanger(kStart + milliseconds(1)));
  EXPECT_FALSE(Held(0).IsInDanger(kStart + kTen * 830));
  EXPECT_TRUE(Held(0).IsInDanger(kStart + kTen * 834));
}

TEST(BufferFill, NeverHoldsMoreThanTheBufferNorLessThanNothing) {
  BufferFill fill = Held(5000);
  EXPECT_EQ(fill.MostWaiting(kStart), 896);
  fill = Held(-32768);
  EXPECT_EQ(fill.MostWaiting(kStart), 0);
  fill.TakeSet(kStart);
  fill.TakeSet(kStart);
  EXPECT_EQ(fill.MostWaiting(kStart), 0);
  EXPECT_EQ(fill.LeastRoom(kStart), 896);
  EXPECT_EQ(fill.MostWaiting(kStart + seconds(9)), 1) << "sets that were not known count nothing";
  EXPECT_EQ(Held(1).MostWaiting(kStart + hours(200000)), 896);
}

TEST(BufferFill, SaysThatTheBufferMayHaveBeenFullAtTheReading) {
  BufferFill fill = Held(896);
  EXPECT_TRUE(fill.MayHaveBeenFull(kStart));
  fill.TakeSet(kStart);
  EXPECT_TRUE(fill.MayHaveBeenFull(kStart)) << "it has been";
  fill.ForgetFull();
  EXPECT_FALSE(fill.MayHaveBeenFull(kStart));
  EXPECT_FALSE(Held(895).MayHaveBeenFull(kStart));
}

TEST(BufferFill, SaysThatTheBufferMayHaveBecomeFullWithTime) {
  BufferFill fill = Held(890);
  EXPECT_FALSE(fill.MayHaveBeenFull(kStart + milliseconds(49900)));
  EXPECT_TRUE(fill.MayHaveBeenFull(kStart + milliseconds(50100)));
  fill.TakeSet(kStart + milliseconds(50100));
  fill.TakeReading(3, kTen, kStart + milliseconds(50200));
  EXPECT_TRUE(fill.MayHaveBeenFull(kStart + milliseconds(50200)));
}

TEST(BufferFill, StaysFullWhileItMayBeFull) {
  BufferFill fill = Held(896);
  fill.ForgetFull();
  EXPECT_TRUE(fill.MayHaveBeenFull(kStart));
}

TEST(BufferFill, KnowsWhatANextReadingHidesOfATimeInWhichItWasFull) {
  BufferFill fill = Held(0);
  fill.TakeReading(700, kTen, kStart + kTen * 1000);
  EXPECT_TRUE(fill.MayHaveBeenFull(kStart + kTen * 1000));
  EXPECT_EQ(fill.MostWaiting(kStart + kTen * 1000), 700);
}

TEST(BufferFill, TellsHowManySetsDidNotFitInAtMost) {
  BufferFill fill = Held(860);
  EXPECT_EQ(fill.MostWithoutLimit(kStart + kTen * 100), 961);
  fill.TakeSet(kStart + kTen * 100);
  EXPECT_EQ(fill.MostWithoutLimit(kStart + kTen * 100), 895)
      << "what was dropped does not wait any more";
}

TEST(BufferFill, TakesAReadingForWhatItIsWhateverItThoughtBefore) {
  BufferFill fill = Held(400);
  fill.TakeReading(0, seconds(1), kStart + seconds(5));  // the instrument was switched off
  EXPECT_EQ(fill.MostWaiting(kStart + seconds(5)), 0);
  EXPECT_EQ(fill.MostWaiting(kStart + seconds(7)), 3);
}

TEST(BufferFill, BearsAnIntervalBelowASecond) {
  BufferFill fill;
  fill.TakeReading(1, seconds(0), kStart);
  EXPECT_EQ(fill.MostWaiting(kStart + milliseconds(900)), 2);
}

}  // namespace
}  // namespace tavrel
