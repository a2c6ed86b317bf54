#include "base/text.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

TEST(Trim, TakesBlanksTabsAndZeroBytesFromBothEnds) {
  EXPECT_EQ(Trim(std::string_view("\0 \tab c\t \0", 10)), "ab c");
  EXPECT_EQ(Trim(" \t "), "");
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(Trim("\r\n"), "\r\n");
}

TEST(TrimRight, LeavesTheLeftEndAlone) {
  EXPECT_EQ(TrimRight(std::string_view("  ab \0", 6)), "  ab");
  EXPECT_EQ(TrimRight("   "), "");
}

TEST(UpperCase, ChangesLettersOfBothAlphabets) {
  EXPECT_EQ(UpperCase("azAZ09.[{"), "AZAZ09.[{");
  EXPECT_EQ(UpperCase("äöüéþàß÷×"), "ÄÖÜÉÞÀß÷×");
  EXPECT_EQ(UpperCase("šœžÿ"), "ŠŒŽŸ");
}

TEST(UpperCase, LeavesOtherAlphabetsAsTheyAre) {
  EXPECT_EQ(UpperCase("αя€µ"), "αя€µ");
}

TEST(LowerCase, IsTheWayBack) {
  EXPECT_EQ(LowerCase("AZaz09@`"), "azaz09@`");
  EXPECT_EQ(LowerCase("ÄÖÜÉÞÀß÷×"), "äöüéþàß÷×");
  EXPECT_EQ(LowerCase("ŠŒŽŸ"), "šœžÿ");
}

TEST(UpperCase, KeepsBrokenBytes) {
  EXPECT_EQ(UpperCase("a\xFC"
                      "b\xC3"),
            "A\xFC"
            "B\xC3");
}

TEST(EqualNoCase, ComparesUmlautsToo) {
  EXPECT_TRUE(EqualNoCase("Öfen.ove", "öFEN.OVE"));
  EXPECT_FALSE(EqualNoCase("Ofen", "Öfen"));
  EXPECT_FALSE(EqualNoCase("a", "ab"));
  EXPECT_TRUE(EqualNoCase("", ""));
}

TEST(FirstCharacters, CountsCharactersNotBytes) {
  EXPECT_EQ(FirstCharacters("Öfen", 2), "Öf");
  EXPECT_EQ(FirstCharacters("€1", 1), "€");
  EXPECT_EQ(FirstCharacters("ab", 5), "ab");
  EXPECT_EQ(FirstCharacters("ab", 0), "");
}

TEST(AfterCharacters, IsTheRest) {
  EXPECT_EQ(AfterCharacters("Öfen", 1), "fen");
  EXPECT_EQ(AfterCharacters("OVE:Ofen", 4), "Ofen");
  EXPECT_EQ(AfterCharacters("ab", 2), "");
  EXPECT_EQ(AfterCharacters("ab", 9), "");
}

TEST(FirstCharacters, CountsABrokenByteAsOneCharacter) {
  EXPECT_EQ(FirstCharacters("\xFF\xC3x", 2), "\xFF\xC3");
  EXPECT_EQ(AfterCharacters("\xE2\x82", 1), "\x82");
}

TEST(WithoutControls, PutsABlankForEachOfThem) {
  EXPECT_EQ(WithoutControls(""), "");
  EXPECT_EQ(WithoutControls("a\tb\r\nc\x7F"), "a b  c ");
  EXPECT_EQ(WithoutControls("a\u0080b\u009Fc"), "a b c");
}

TEST(WithoutControls, KeepsBrokenBytesAndTheBlankThatDoesNotBreakLines) {
  EXPECT_EQ(WithoutControls("\x80\xFF"), "\x80\xFF");
  EXPECT_EQ(WithoutControls("20\u00A0°C"), "20\u00A0°C");
}

TEST(ToWindows1252, GivesOneByteForACharacter) {
  EXPECT_EQ(ToWindows1252("Größe 5 €"),
            "Gr\xF6\xDF"
            "e 5 \x80");
  EXPECT_EQ(ToWindows1252("„Šœ™“ÿ"), "\x84\x8A\x9C\x99\x93\xFF");
}

TEST(ToWindows1252, PutsAQuestionMarkForWhatDoesNotFit) {
  EXPECT_EQ(ToWindows1252("αя😀"), "???");
  EXPECT_EQ(ToWindows1252("\xC2\x80"), "?");
}

TEST(ToWindows1252, PutsAQuestionMarkForEachBrokenByte) {
  EXPECT_EQ(ToWindows1252("a\xFFz"), "a?z");
  EXPECT_EQ(ToWindows1252("\xE2\x82"), "??");
  EXPECT_EQ(ToWindows1252("\xC3"), "?");
}

TEST(ToWindows1252, RefusesForgedForms) {
  EXPECT_EQ(ToWindows1252("\xC0\xA2"), "??");            // a quote in two bytes
  EXPECT_EQ(ToWindows1252("\xE0\x80\xA2"), "???");       // the same in three
  EXPECT_EQ(ToWindows1252("\xED\xA0\x80"), "???");       // half of a surrogate pair
  EXPECT_EQ(ToWindows1252("\xF4\x90\x80\x80"), "????");  // beyond the last code
}

TEST(FromWindows1252, KnowsTheSpecialCharacters) {
  EXPECT_EQ(FromWindows1252("Gr\xF6\xDF"
                            "e 5 \x80"),
            "Größe 5 €");
  EXPECT_EQ(FromWindows1252("\x8E\x9E\x9F"), "ŽžŸ");
}

TEST(FromWindows1252, LetsEveryByteSurviveTheWayThereAndBack) {
  EXPECT_EQ(ToWindows1252(FromWindows1252(AllBytes())), AllBytes());
}

}  // namespace
}  // namespace tavrel
