#include "base/numbered.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(Numbered, HoldsAValueForTheFirstAndTheLastNumber) {
  Numbered<int, 1, 15> table;
  table[1] = 10;
  table[15] = 150;
  EXPECT_EQ(table.Values.front(), 10);
  EXPECT_EQ(table.Values.back(), 150);
}

TEST(NumberedDeathTest, EndsTheProgramOnAnotherNumberAndTellsWhich) {
  Numbered<int, 1, 15> table;
  const Numbered<int, 0, 12> fixed;
  EXPECT_DEATH(table[0] = 1, "tavrel: 0 is none of the numbers 1..15");
  EXPECT_DEATH(table[16] = 1, "tavrel: 16 is none of the numbers 1..15");
  EXPECT_DEATH(static_cast<void>(fixed[-1]), "tavrel: -1 is none of the numbers 0..12");
  EXPECT_DEATH(static_cast<void>(fixed[13]), "tavrel: 13 is none of the numbers 0..12");
}

}  // namespace
}  // namespace tavrel
