#include "files/pump_order.h"

#include <gtest/gtest.h>

#include <vector>

namespace tavrel {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr nanoseconds kNow = hours(50);
constexpr seconds kHour{3600};

class Order : public testing::Test {
 protected:
  Order() { read_state.Fill(ReadState::kReading); }

  void Hold(int slot, int sets) { order.TakeReading(slot, sets, kHour, kNow); }
  std::vector<int> First() const { return order.First(read_state, kNow); }

  PumpOrder order;
  BySlot<ReadState> read_state{};
};

TEST_F(Order, SaysNothingWhileNothingIsKnown) {
  EXPECT_TRUE(First().empty());
}

TEST_F(Order, SaysNothingWhileNoBufferIsInDanger) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    Hold(slot, 832);
  }
  EXPECT_TRUE(First().empty());
}

TEST_F(Order, NamesThoseInDangerDownwardFromTheOneWhoseTurnItIs) {
  for (const int slot : {12, 9, 4, 1}) {
    Hold(slot, 850);
  }
  EXPECT_EQ(First(), (std::vector<int>{12, 9, 4, 1}));
  order.TakeSet(12, kNow);
  EXPECT_EQ(First(), (std::vector<int>{9, 4, 1, 12}));
  order.TakeSet(9, kNow);
  EXPECT_EQ(First(), (std::vector<int>{4, 1, 12, 9}));
  order.TakeSet(4, kNow);
  order.TakeSet(1, kNow);
  EXPECT_EQ(First(), (std::vector<int>{12, 9, 4, 1}));
}

TEST_F(Order, StaysWithASlotUntilItsSetIsWhole) {
  Hold(7, 850);
  Hold(3, 850);
  order.TakeAnswer(7);
  EXPECT_EQ(First(), (std::vector<int>{7, 3}));
}

TEST_F(Order, DropsASlotWithRoomForSixtyFourSets) {
  Hold(7, 834);
  order.TakeSet(7, kNow);
  EXPECT_EQ(First(), (std::vector<int>{7}));
  order.TakeSet(7, kNow);
  EXPECT_TRUE(First().empty());
}

TEST_F(Order, LeavesOutSlotsThatWaitOrTakeTheirLastSetOrAreIdle) {
  for (const int slot : {12, 11, 10, 9}) {
    Hold(slot, 896);
    order.WantReading(slot - 4);
  }
  read_state[12] = read_state[8] = ReadState::kWaiting;
  read_state[11] = read_state[7] = ReadState::kLastSet;
  read_state[10] = read_state[6] = ReadState::kIdle;
  EXPECT_EQ(First(), (std::vector<int>{5, 9}));
}

TEST_F(Order, NamesSlotsToBeCountedBeforeAllOthers) {
  Hold(12, 896);
  order.WantReading(3);
  order.WantReading(5);
  EXPECT_EQ(First(), (std::vector<int>{5, 3, 12}));
  Hold(5, 10);
  order.TakeRefusal(3);
  EXPECT_EQ(First(), (std::vector<int>{12}));
}

TEST_F(Order, WantsACountAfterAnOutageOfAMinute) {
  Hold(5, 10);
  order.TakeFailure(5, kNow);
  order.TakeFailure(5, kNow + seconds(50));
  EXPECT_FALSE(order.WantsReading(5, kNow + milliseconds(59999)));
  EXPECT_TRUE(order.WantsReading(5, kNow + seconds(60)));
  EXPECT_FALSE(order.WantsReading(6, kNow + seconds(60)));
  order.TakeReading(5, 16, seconds(10), kNow + seconds(61));
  EXPECT_FALSE(order.WantsReading(5, kNow + seconds(200)));
}

TEST_F(Order, WantsNoCountAfterFailuresWithAnswersBetween) {
  Hold(5, 10);
  order.TakeFailure(5, kNow);
  order.TakeAnswer(5);
  order.TakeFailure(5, kNow + seconds(40));
  EXPECT_FALSE(order.WantsReading(5, kNow + seconds(99)));
  EXPECT_TRUE(order.WantsReading(5, kNow + seconds(100)));
}

TEST_F(Order, AsksAnInstrumentThatRefusesToCountAgainOnlyAfterTheNextOutage) {
  order.TakeFailure(5, kNow);
  order.TakeRefusal(5);
  EXPECT_FALSE(order.WantsReading(5, kNow + seconds(500)));
  order.TakeFailure(5, kNow + seconds(500));
  EXPECT_TRUE(order.WantsReading(5, kNow + seconds(560)));
}

TEST_F(Order, TriesAgainForAWhileWhatFailsInDanger) {
  Hold(5, 850);
  Hold(4, 850);
  Hold(6, 800);
  EXPECT_FALSE(order.MayTryAgain(5, kNow));
  order.TakeFailure(6, kNow);
  order.TakeFailure(5, kNow);
  EXPECT_EQ(First(), (std::vector<int>{4, 5})) << "the other one has its turn";
  EXPECT_TRUE(order.MayTryAgain(5, kNow + milliseconds(4999)));
  EXPECT_FALSE(order.MayTryAgain(5, kNow + seconds(5)));
  EXPECT_FALSE(order.MayTryAgain(4, kNow));
  EXPECT_FALSE(order.MayTryAgain(6, kNow)) << "not in danger";
  order.TakeAnswer(5);
  EXPECT_FALSE(order.MayTryAgain(5, kNow));
}

TEST_F(Order, KnowsTheFillOfEachSlot) {
  Hold(5, 10);
  EXPECT_EQ(order.Fill(5).MostWaiting(kNow), 10);
  EXPECT_FALSE(order.Fill(6).IsKnown());
}

}  // namespace
}  // namespace tavrel
