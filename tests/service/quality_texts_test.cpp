#include "service/quality_texts.h"

#include <gtest/gtest.h>

#include "tests/support/fake_output.h"

namespace tavrel {
namespace {

std::string Read(const std::string& text, const std::string& form = "dd.MM.yy") {
  FakeRegional regional;
  regional.form = form;
  return ReadDate(text, regional).value_or("none");
}

std::string Shown(const std::string& digits, const std::string& form = "dd.MM.yyyy") {
  FakeRegional regional;
  regional.date.clear();
  regional.form = form;
  return ShownDate(digits, regional);
}

TEST(ADateOfTheInstrument, IsShownInTheRegionsForm) {
  EXPECT_EQ(Shown("120324"), "12.03.2024");
  EXPECT_EQ(Shown("120324", "M/d/yy"), "3/12/24");
  EXPECT_EQ(Shown("120324", "yyyy-MM-dd"), "2024-03-12");
  EXPECT_EQ(Shown("70324"), "07.03.2024") << "its leading zero is lost";
}

TEST(ADateOfTheInstrument, HasAYearFrom1980To2079) {
  EXPECT_EQ(Shown("010179"), "01.01.2079");
  EXPECT_EQ(Shown("010180"), "01.01.1980");
  EXPECT_EQ(Shown("311299"), "31.12.1999");
  EXPECT_EQ(Shown("010100"), "01.01.2000");
}

TEST(ADateOfTheInstrument, IsALineIfItIsNone) {
  for (const char* digits :
       {"", "-", "000000", "310424", "290223", "290281", "001224", "321224", "011324", "010024",
        "1234", "1203245", "-12034", "12a324", "12032024"}) {
    EXPECT_EQ(Shown(digits), "-") << digits;
  }
  EXPECT_EQ(Shown("290224"), "29.02.2024");
  EXPECT_EQ(Shown("290200"), "29.02.2000") << "a year of four digits is tested";
}

TEST(ATypedDate, IsReadInTheRegionsForm) {
  EXPECT_EQ(Read("12.03.24"), "120324");
  EXPECT_EQ(Read(" 1.3.24 "), "010324");
  EXPECT_EQ(Read("3/12/24", "M/d/yy"), "120324");
  EXPECT_EQ(Read("2024-03-12", "yyyy-MM-dd"), "120324");
  EXPECT_EQ(Read("24-3-12", "yyyy-MM-dd"), "120324");
  EXPECT_EQ(Read("12.3.2024", "d. M. yyyy"), "120324") << "blanks may be missing";
  EXPECT_EQ(Read("2024. 03. 12.", "yyyy. MM. dd."), "120324");
  EXPECT_EQ(Read("12.03.24 y.", "d.MM.yy 'y.'"), "120324");
}

TEST(ATypedDate, IsReadInTheProgramsOwnFormsToo) {
  for (const char* form : {"M/d/yy", "yyyy-MM-dd", "dd-MMM-yy", "", "'", "MMMM"}) {
    EXPECT_EQ(Read("12.03.24", form), "120324") << form;
    EXPECT_EQ(Read("12.03.2024", form), "120324") << form;
  }
  EXPECT_EQ(Read("01.02.26", "M/d/yy"), "010226") << "other signs, another order";
  EXPECT_EQ(Read("01.02.26", "MM.dd.yy"), "020126") << "the region's form goes first";
  EXPECT_EQ(Read("13.02.26", "MM.dd.yy"), "130226") << "no date in the region's form";
}

TEST(ATypedDate, HasAYearOfFourDigitsBeforeItIsTested) {
  EXPECT_EQ(Read("29.02.00"), "290200");
  EXPECT_EQ(Read("29.02.24"), "290224");
  EXPECT_EQ(Read("29.02.80"), "290280");
  EXPECT_EQ(Read("29.02.79"), "none");
  EXPECT_EQ(Read("31.12.79"), "311279");
  EXPECT_EQ(Read("31.12.2079"), "311279");
  EXPECT_EQ(Read("01.01.1980"), "010180");
  EXPECT_EQ(Read("31.12.1979"), "none") << "it would come back as 2079";
  EXPECT_EQ(Read("01.01.2080"), "none");
}

TEST(ATypedDate, IsNoneIfItMakesNoSense) {
  for (const char* text : {"",
                           "-",
                           " ",
                           "12",
                           "12.03",
                           "12.03.",
                           "12.03.2",
                           "12.03.202",
                           "12.03.20244",
                           "32.01.24",
                           "00.01.24",
                           "01.00.24",
                           "01.13.24",
                           "30.02.24",
                           "12/03/24",
                           "12.03.24x",
                           "a.b.c",
                           "1e1.03.24",
                           "-1.03.24",
                           "123.03.24",
                           "12.03.24 2",
                           "\xff",
                           "99999999999999999999.1.24"}) {
    EXPECT_EQ(Read(text), "none") << text;
  }
}

TEST(Today, IsKeptAsSixDigits) {
  EXPECT_EQ(DateDigits({2026, 3, 4, 10, 0, 0}), "040326");
  EXPECT_EQ(DateDigits({1999, 12, 31, 23, 59, 59}), "311299");
}

TEST(AName, IsPackedIntoOneNumber) {
  EXPECT_EQ(NameWord("AB"), 6566);
  EXPECT_EQ(NameWord("KH"), 7572);
  EXPECT_EQ(NameWord("A"), 6532);
  EXPECT_EQ(NameWord(""), 3232);
}

TEST(AName, IsUnpackedAgain) {
  EXPECT_EQ(NameText(6566), "AB");
  EXPECT_EQ(NameText(3399), "!c");
  EXPECT_EQ(NameText(6532), "") << "one letter";
  EXPECT_EQ(NameText(3265), "");
  EXPECT_EQ(NameText(3232), "");
  for (const int word : {0, 5, 65, 656, -1, -6566, -32768, 32767, 19666}) {
    const std::string name = NameText(static_cast<std::int16_t>(word));
    EXPECT_TRUE(name.empty() || IsInitials(name)) << word;
  }
  EXPECT_EQ(NameText(656), "");
  EXPECT_EQ(NameText(-6566), "");
}

TEST(AName, IsUnpackedAsItWasPackedForEachPairOfCharacters) {
  for (char first = '!'; first <= 'c'; ++first) {
    for (char second = '!'; second <= 'c'; ++second) {
      const std::string name = {first, second};
      EXPECT_TRUE(IsInitials(name));
      EXPECT_EQ(NameText(NameWord(name)), name);
    }
  }
}

TEST(AName, HasOneOrTwoCharactersThatCanBeKept) {
  EXPECT_TRUE(IsInitials("A"));
  EXPECT_TRUE(IsInitials("A1"));
  EXPECT_FALSE(IsInitials(""));
  EXPECT_FALSE(IsInitials("ABC"));
  EXPECT_FALSE(IsInitials("Ä"));
  EXPECT_FALSE(IsInitials("ÄB"));
  EXPECT_FALSE(IsInitials("A}"));
  EXPECT_FALSE(IsInitials("A "));
  EXPECT_FALSE(IsInitials("A\x7f"));
  EXPECT_FALSE(IsInitials("\xff"));
}

}  // namespace
}  // namespace tavrel
