#include "link/reply.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tavrel {
namespace {

LinkResult ResultOf(const std::string& rx_buffer, ValueDigits digits = ValueDigits::kTwoOrFour) {
  const auto verdict = JudgeValue(rx_buffer, digits);
  return verdict ? verdict->Result : LinkResult::kNone;
}

TEST(JudgeValue, TakesTwoOrFourDigits) {
  EXPECT_EQ(ResultOf("12\r"), LinkResult::kGood);
  EXPECT_EQ(JudgeValue("12\r", ValueDigits::kTwo)->ReplyText, "12");
  EXPECT_EQ(ResultOf("1234\r"), LinkResult::kGood);
  EXPECT_EQ(ResultOf("FFFF\r"), LinkResult::kGood);
}

TEST(JudgeValue, TakesOnlyTheNumberOfDigitsThatTheValueHas) {
  EXPECT_EQ(ResultOf("0FA1\r", ValueDigits::kFour), LinkResult::kGood);
  EXPECT_EQ(ResultOf("A1\r", ValueDigits::kFour), LinkResult::kLength);
  EXPECT_EQ(ResultOf("A1\r", ValueDigits::kTwo), LinkResult::kGood);
  EXPECT_EQ(ResultOf("0FA1\r", ValueDigits::kTwo), LinkResult::kLength);
  EXPECT_EQ(ResultOf("aG\r", ValueDigits::kFour), LinkResult::kLength);
  EXPECT_EQ(ResultOf("aGaG\r", ValueDigits::kFour), LinkResult::kNotHex);
}

TEST(JudgeValue, RefusesOtherNumbersOfDigitsAsWrongLength) {
  for (const char* reply : {"\r", "1\r", "123\r", "12345\r", "123456\r"}) {
    EXPECT_EQ(ResultOf(reply), LinkResult::kLength) << reply;
  }
}

TEST(JudgeValue, RefusesWhatIsNoUpperCaseHexDigit) {
  for (const char* reply : {"12G4\r", "ab\r", "1:34\r", "1@34\r", "12/4\r", " 1\r"}) {
    EXPECT_EQ(ResultOf(reply), LinkResult::kNotHex) << reply;
  }
}

TEST(JudgeValue, RefusesAGoodReplyBehindGarbage) {
  EXPECT_EQ(ResultOf("x1234\r"), LinkResult::kLength);
  EXPECT_EQ(ResultOf("12\r1234\r"), LinkResult::kLength);
}

TEST(JudgeValue, RefusesAGoodReplyWithMoreBehindIt) {
  EXPECT_EQ(ResultOf("1234\r1"), LinkResult::kLength);
  EXPECT_EQ(ResultOf("12\r123"), LinkResult::kLength);
}

TEST(JudgeValue, LetsACarriageReturnWinOverARejection) {
  EXPECT_EQ(ResultOf("12\r?"), LinkResult::kGood);
  EXPECT_EQ(ResultOf("?\r"), LinkResult::kLength);
  EXPECT_EQ(ResultOf("12?"), LinkResult::kRejected);
  EXPECT_EQ(ResultOf("\x1b"), LinkResult::kRejected);
}

TEST(JudgeValue, WaitsWhileNothingIsComplete) {
  EXPECT_FALSE(JudgeValue("", ValueDigits::kFour));
  EXPECT_FALSE(JudgeValue("1234", ValueDigits::kFour));
  EXPECT_FALSE(JudgeValue("12345678", ValueDigits::kFour));
}

TEST(JudgeValue, JudgesEveryRandomReplyWithoutHarm) {
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    std::string reply(random() % 9, ' ');
    for (char& character : reply) {
      character = static_cast<char>(random() % 256);
    }
    const auto verdict = JudgeValue(reply, ValueDigits::kTwoOrFour);
    if (verdict && verdict->Result == LinkResult::kGood) {
      ASSERT_EQ(verdict->ReplyText.find_first_not_of("0123456789ABCDEF"), std::string::npos);
      ASSERT_LT(reply.size(), 6U);
    }
  }
}

TEST(JudgeAck, TakesAPointAnywhere) {
  EXPECT_EQ(JudgeAck("."), LinkResult::kGood);
  EXPECT_EQ(JudgeAck("xy.z"), LinkResult::kGood);
  EXPECT_EQ(JudgeAck("?."), LinkResult::kGood);
}

TEST(JudgeAck, KnowsARejection) {
  EXPECT_EQ(JudgeAck("?"), LinkResult::kRejected);
  EXPECT_EQ(JudgeAck("12\x1b"), LinkResult::kRejected);
  EXPECT_FALSE(JudgeAck("1234\r"));
  EXPECT_FALSE(JudgeAck(""));
}

}  // namespace
}  // namespace tavrel
