#include "tests/truth/told_texts.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(ToldTexts, KnowAValueThatWasFilledIn) {
  const Told told = ReadTold(
      {R"(10:12:13   Read  Tavrel\nM260314A.TUB: row 17, inputs 3, 15: lost on the line; the value before it stands in its place)"});
  ASSERT_EQ(told.doubts.size(), 1U);
  EXPECT_EQ(told.doubts[0].file, "M260314A.TUB");
  EXPECT_EQ(told.doubts[0].kind, ToldDoubt::Kind::kFilled);
  EXPECT_EQ(told.doubts[0].first_row, 17);
  EXPECT_EQ(told.doubts[0].last_row, 17);
  EXPECT_EQ(told.doubts[0].inputs, (std::vector<int>{3, 15}));
}

TEST(ToldTexts, KnowTheFirstSetWithItsTwoRows) {
  const Told told = ReadTold(
      {R"(Read  Tavrel\nM260314A.TUB: rows 0 and 1, input 7: lost on the line; the next value stands in its place)"});
  ASSERT_EQ(told.doubts.size(), 1U);
  EXPECT_EQ(told.doubts[0].first_row, 0);
  EXPECT_EQ(told.doubts[0].last_row, 1);
  EXPECT_EQ(told.doubts[0].kind, ToldDoubt::Kind::kFilled);
}

TEST(ToldTexts, KnowAColumnThatIsUncertainFromARowOn) {
  const Told told = ReadTold(
      {R"(Read  Tavrel\nM260314B.CHA: row 40, input 2: nobody can know whether a value was lost on the line; nothing was filled in, from here on the values may stand one row too early)"});
  ASSERT_EQ(told.doubts.size(), 1U);
  EXPECT_EQ(told.doubts[0].kind, ToldDoubt::Kind::kUncertain);
  EXPECT_EQ(told.doubts[0].first_row, 40);
  EXPECT_EQ(told.doubts[0].last_row, ToldDoubt::kOpen);
}

TEST(ToldTexts, KnowSetsThatAFullBufferLost) {
  const std::string head =
      R"(Read  Tavrel\nM260314B.CHA: row 9: the buffer of the instrument was full; before this row )";
  const Told told =
      ReadTold({head + "604 sets were lost", head + "about 12 sets were lost",
                head + "1 set was lost", head + "an unknown number of sets was lost"});
  ASSERT_EQ(told.losses.size(), 4U);
  EXPECT_EQ(told.losses[0].sets, 604);
  EXPECT_FALSE(told.losses[0].is_about);
  EXPECT_EQ(told.losses[1].sets, 12);
  EXPECT_TRUE(told.losses[1].is_about);
  EXPECT_EQ(told.losses[2].sets, 1);
  EXPECT_FALSE(told.losses[3].sets);
  EXPECT_TRUE(told.losses[3].is_about);
}

TEST(ToldTexts, KnowRowsThatARestartedInstrumentHasMixed) {
  const Told told = ReadTold(
      {R"(Read  Tavrel\nM260314B.CHA: rows 12 to 15, inputs 2, 6: the instrument was switched off and on; the values may stand one row too early)",
       R"(Read  Tavrel\nM260314B.CHA: row 16: the instrument was switched off and on; before this row about 3 sets were lost)"});
  ASSERT_EQ(told.doubts.size(), 1U);
  EXPECT_EQ(told.doubts[0].kind, ToldDoubt::Kind::kUncertain);
  EXPECT_EQ(told.doubts[0].first_row, 12);
  EXPECT_EQ(told.doubts[0].last_row, 15);
  EXPECT_EQ(told.doubts[0].inputs, (std::vector<int>{2, 6}));
  ASSERT_EQ(told.losses.size(), 1U);
  EXPECT_EQ(told.losses[0].sets, 3);
}

TEST(ToldTexts, PassOverWhatTheySayOfOtherMatters) {
  const Told told = ReadTold({R"(Open M260314A.TUB\nNo such file or directory)", "", "row 5"});
  EXPECT_TRUE(told.doubts.empty());
  EXPECT_TRUE(told.losses.empty());
}

}  // namespace
}  // namespace tavrel
