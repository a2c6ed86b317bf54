#include "base/number.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <memory>

namespace tavrel {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(FormatMask, RoundsTheDecimalValueHalfAwayFromZero) {
  EXPECT_EQ(FormatMask(0.05, "####0.0"), "0.1");
  EXPECT_EQ(FormatMask(0.15, "####0.0"), "0.2");
  EXPECT_EQ(FormatMask(-0.35, "####0.0"), "-0.4");
  EXPECT_EQ(FormatMask(2.5, "####0"), "3");
  EXPECT_EQ(FormatMask(3.5, "####0"), "4");
  EXPECT_EQ(FormatMask(1.005, "####0.00"), "1.01");
}

TEST(FormatMask, RoundsEachStepOfATemperatureWordAlike) {
  for (int word = 1; word <= 20000; word += 2) {
    const int tenths = (word + 1) / 2;
    const std::string expected = std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
    ASSERT_EQ(FormatMask(word * 0.05, "#####0.0"), expected) << word;
    ASSERT_EQ(FormatMask(word * -0.05, "#####0.0"), "-" + expected) << word;
  }
}

TEST(FormatMask, CarriesThroughNines) {
  EXPECT_EQ(FormatMask(9.96, "####0.0"), "10.0");
  EXPECT_EQ(FormatMask(99999.995, "###0.00"), "100000.00");
  EXPECT_EQ(FormatMask(0.95, "####0"), "1");
}

TEST(FormatMask, ShowsZerosWhereTheMaskHasZeros) {
  EXPECT_EQ(FormatMask(0.5, "####0.00"), "0.50");
  EXPECT_EQ(FormatMask(0, "####0.00"), "0.00");
  EXPECT_EQ(FormatMask(7, "000"), "007");
  EXPECT_EQ(FormatMask(7, "00.0"), "07.0");
}

TEST(FormatMask, ShowsNoBlankForANumberSign) {
  EXPECT_EQ(FormatMask(0, "#####"), "");
  EXPECT_EQ(FormatMask(0.4, "#####"), "");
  EXPECT_EQ(FormatMask(60, "#####"), "60");
  EXPECT_EQ(FormatMask(0.5, "#.##"), ".5");
  EXPECT_EQ(FormatMask(5, "#.##"), "5");
}

TEST(FormatMask, LosesNoDigitBeforeThePoint) {
  EXPECT_EQ(FormatMask(1234567, "#0"), "1234567");
  EXPECT_EQ(FormatMask(-1e20, "0"), "-100000000000000000000");
}

TEST(FormatMask, PutsNoMinusOnAZero) {
  EXPECT_EQ(FormatMask(-0.04, "####0.0"), "0.0");
  EXPECT_EQ(FormatMask(-0.0, "####0.0"), "0.0");
  EXPECT_EQ(FormatMask(-0.0004, "#####"), "");
}

TEST(FormatMask, ShowsNothingForWhatIsNoNumber) {
  EXPECT_EQ(FormatMask(kNan, "####0.0"), "");
  EXPECT_EQ(FormatMask(kInfinity, "####0.0"), "");
  EXPECT_EQ(FormatMask(-kInfinity, "####0.0"), "");
}

TEST(FormatMask, HoldsForTheSmallestAndTheLargestNumber) {
  EXPECT_EQ(FormatMask(std::numeric_limits<double>::denorm_min(), "0.0"), "0.0");
  EXPECT_EQ(FormatMask(std::numeric_limits<double>::max(), "0").size(), 309U);
  EXPECT_EQ(FormatMask(5, ""), "5");
}

TEST(FormatAuto, ChoosesTheDecimalsByTheAbsoluteValue) {
  EXPECT_EQ(FormatAuto(10), "10.00");
  EXPECT_EQ(FormatAuto(10.01F), "10.0");
  EXPECT_EQ(FormatAuto(100), "100.0");
  EXPECT_EQ(FormatAuto(-100), "-100.0");
  EXPECT_EQ(FormatAuto(100.5F), "101");
  EXPECT_EQ(FormatAuto(-10.01F), "-10.0");
  EXPECT_EQ(FormatAuto(0), "0.00");
}

TEST(FormatAuto, TakesASingleForItsDecimalValue) {
  EXPECT_EQ(FormatAuto(10.15F), "10.2");
  EXPECT_EQ(FormatAuto(2.675F), "2.68");
}

TEST(FormatAutoWide, HasItsLimitsTenTimesHigher) {
  EXPECT_EQ(FormatAutoWide(100), "100.00");
  EXPECT_EQ(FormatAutoWide(100.1F), "100.1");
  EXPECT_EQ(FormatAutoWide(1000), "1000.0");
  EXPECT_EQ(FormatAutoWide(1000.5F), "1001");
  EXPECT_EQ(FormatAutoWide(std::numeric_limits<float>::quiet_NaN()), "");
}

TEST(ShortestNumber, ShowsNoDigitThatIsNotNeeded) {
  EXPECT_EQ(ShortestNumber(11), "11");
  EXPECT_EQ(ShortestNumber(0.5), "0.5");
  EXPECT_EQ(ShortestNumber(0), "0");
  EXPECT_EQ(ShortestNumber(-0.0), "0");
  EXPECT_EQ(ShortestNumber(-3.25), "-3.25");
  EXPECT_EQ(ShortestNumber(0.1F), "0.1");
}

TEST(ShortestNumber, KeepsAtMostSevenDigits) {
  EXPECT_EQ(ShortestNumber(1.0 / 3), "0.3333333");
  EXPECT_EQ(ShortestNumber(1234567.8), "1234568");
  EXPECT_EQ(ShortestNumber(123456789), "123456800");
}

TEST(ShortestNumber, WritesAnExponentWhereFifteenPlacesDoNotDo) {
  EXPECT_EQ(ShortestNumber(1e14), "100000000000000");
  EXPECT_EQ(ShortestNumber(1e15), "1E+15");
  EXPECT_EQ(ShortestNumber(-1.5e20), "-1.5E+20");
  EXPECT_EQ(ShortestNumber(1e-15), "0.000000000000001");
  EXPECT_EQ(ShortestNumber(1e-16), "1E-16");
  EXPECT_EQ(ShortestNumber(2.5e-300), "2.5E-300");
}

TEST(ShortestNumber, ShowsNothingForWhatIsNoNumber) {
  EXPECT_EQ(ShortestNumber(kNan), "");
  EXPECT_EQ(ShortestNumber(kInfinity), "");
}

TEST(ShortestNumber, IsReadBackAsTheSameSingle) {
  for (const float value : {11.0F, 0.1F, -273.15F, 1e20F, 3.5e-20F, 16777216.0F / 3}) {
    EXPECT_FLOAT_EQ(static_cast<float>(ReadNumber(ShortestNumber(value))), value);
  }
}

TEST(ReadNumber, ReadsTheNumberAtTheStart) {
  EXPECT_EQ(ReadNumber("12.5 C"), 12.5);
  EXPECT_EQ(ReadNumber("  \t-7"), -7);
  EXPECT_EQ(ReadNumber("+3"), 3);
  EXPECT_EQ(ReadNumber(".5"), 0.5);
  EXPECT_EQ(ReadNumber("5."), 5);
  EXPECT_EQ(ReadNumber("1e3"), 1000);
  EXPECT_EQ(ReadNumber("1E-2x"), 0.01);
  EXPECT_EQ(ReadNumber("1e"), 1);
  EXPECT_EQ(ReadNumber("1e+"), 1);
}

TEST(ReadNumber, TakesTheFirstCommaForAPoint) {
  EXPECT_EQ(ReadNumber("1,5"), 1.5);
  EXPECT_EQ(ReadNumber(",25"), 0.25);
}

TEST(ReadNumber, EndsAtTheSecondComma) {
  EXPECT_EQ(ReadNumber("1,5,7"), 1.5);
  EXPECT_EQ(ReadNumber("1,234.5"), 1.234);
  EXPECT_EQ(ReadNumber("1.5,7"), 1.5);
}

TEST(ReadNumber, GivesZeroForATextThatIsNoNumber) {
  for (const char* const text : {"", " ", "abc", "-", "+", ".", ",", "-.", "e5", ".e5", "nan",
                                 "inf", "-inf", "infinity", "0x10", "--5", "+-5", "- 5"}) {
    EXPECT_EQ(ReadNumber(text), 0) << text;
  }
}

// What stands behind the text in memory is no part of it.
TEST(ReadNumber, EndsWithTheText) {
  const std::string_view whole = "123.45e2";
  const std::vector<double> values = {0, 1, 12, 123, 123, 123.4, 123.45, 123.45, 12345};
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    EXPECT_DOUBLE_EQ(ReadNumber(whole.substr(0, length)), values.at(length)) << length;
    EXPECT_DOUBLE_EQ(ReadNumber("-" + std::string(whole.substr(0, length))), -values.at(length));
  }
}

TEST(ReadNumber, HoldsANumberTooLargeAtTheLargest) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  EXPECT_EQ(ReadNumber("1e400"), kLargest);
  EXPECT_EQ(ReadNumber("-1e99999999999999999999"), -kLargest);
  EXPECT_EQ(ReadNumber("0.001e400"), kLargest);
  EXPECT_EQ(ReadNumber(std::string(400, '9')), kLargest);
}

TEST(ReadNumber, GivesZeroForANumberTooSmall) {
  EXPECT_EQ(ReadNumber("1e-400"), 0);
  EXPECT_EQ(ReadNumber("-1e-99999999999999999999"), 0);
  EXPECT_EQ(ReadNumber("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(ReadNumber("0e999999999999"), 0);
}

TEST(ReadNumber, StopsAtAZeroByte) {
  EXPECT_EQ(ReadNumber(std::string_view("12\0003", 4)), 12);
}

// How a German user's machine may be set.
class CommaPunctuation : public std::numpunct<char> {
 protected:
  [[nodiscard]] char do_decimal_point() const override { return ','; }
};

TEST(Number, DoesNotDependOnTheLocaleOfTheProcess) {
  const std::locale before = std::locale::global(
      std::locale(std::locale(), std::make_unique<CommaPunctuation>().release()));
  EXPECT_EQ(FormatMask(1.5, "0.0"), "1.5");
  EXPECT_EQ(ShortestNumber(1.5), "1.5");
  EXPECT_EQ(ReadNumber("1.5"), 1.5);
  std::locale::global(before);
}

TEST(ToWord, RoundsToTheNearestWithTiesToEven) {
  EXPECT_EQ(ToWord(0.5), 0);
  EXPECT_EQ(ToWord(1.5), 2);
  EXPECT_EQ(ToWord(2.5), 2);
  EXPECT_EQ(ToWord(-0.5), 0);
  EXPECT_EQ(ToWord(-1.5), -2);
  EXPECT_EQ(ToWord(2.51), 3);
}

TEST(ToWord, IsHeldAtTheLimitsAndNeverWraps) {
  EXPECT_EQ(ToWord(32767.4), 32767);
  EXPECT_EQ(ToWord(40000), 32767);
  EXPECT_EQ(ToWord(-40000), -32768);
  EXPECT_EQ(ToWord(kInfinity), 32767);
  EXPECT_EQ(ToWord(-kInfinity), -32768);
  EXPECT_EQ(ToWord(kNan), 0);
}

TEST(IntFloor, RoundsDownAlsoBelowZero) {
  EXPECT_EQ(IntFloor(2.9), 2);
  EXPECT_EQ(IntFloor(-0.1), -1);
  EXPECT_EQ(IntFloor(-3), -3);
}

TEST(IntFloor, IsHeldAtTheLimits) {
  EXPECT_EQ(IntFloor(1e12), 2147483647);
  EXPECT_EQ(IntFloor(-1e12), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(IntFloor(kNan), 0);
}

TEST(Hex, WritesCapitalsWithoutLeadingZeros) {
  EXPECT_EQ(Hex(0), "0");
  EXPECT_EQ(Hex(10), "A");
  EXPECT_EQ(Hex(0x1F), "1F");
  EXPECT_EQ(Hex(32767), "7FFF");
  EXPECT_EQ(Hex(-1), "FFFF");
  EXPECT_EQ(Hex(-32768), "8000");
}

TEST(ReadHex, ReadsSixteenBitsSigned) {
  EXPECT_EQ(ReadHex("8000"), -32768);
  EXPECT_EQ(ReadHex("ffFF"), -1);
  EXPECT_EQ(ReadHex("1a"), 26);
  EXPECT_EQ(ReadHex("7FFF"), 32767);
}

TEST(ReadHex, StopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(ReadHex("12G4"), 0x12);
  EXPECT_EQ(ReadHex("A@"), 10);
  EXPECT_EQ(ReadHex(" 1"), 0);
  EXPECT_EQ(ReadHex(""), 0);
  EXPECT_EQ(ReadHex("\xC1"), 0);
}

TEST(ReadHex, KeepsTheLastFourDigits) {
  EXPECT_EQ(ReadHex("12345"), 0x2345);
}

TEST(ReadHex, TakesBackWhatHexWrites) {
  for (int value = -32768; value <= 32767; ++value) {
    const auto word = static_cast<std::int16_t>(value);
    ASSERT_EQ(ReadHex(Hex(word)), word);
  }
}

}  // namespace
}  // namespace tavrel
