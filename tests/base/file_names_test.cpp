#include "base/file_names.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(IsDataFileName, TakesAnyThreeLettersBehindThePoint) {
  EXPECT_TRUE(IsDataFileName("M260314A.OVE"));
  EXPECT_TRUE(IsDataFileName("M260314[.TAV"));
  EXPECT_TRUE(IsDataFileName(".OVE"));
}

TEST(IsDataFileName, RefusesANameWithoutAPoint) {
  EXPECT_FALSE(IsDataFileName("M260314A"));
  EXPECT_FALSE(IsDataFileName(""));
}

TEST(IsDataFileName, RefusesANameThatEndsWithItsFirstPoint) {
  EXPECT_FALSE(IsDataFileName("M260314A."));
}

TEST(IsDataFileName, RefusesExtensionsOfOtherKindsOfFilesWhateverTheirCase) {
  for (const char* const name :
       {"a.BAS", "a.BAT", "a.BMP", "a.COM", "a.CMD", "a.DOC", "a.EXE", "a.FRM",
        "a.FRX", "a.GIF", "a.ICO", "a.JPG", "a.PDF", "a.PRG", "a.RTF", "a.TXT",
        "a.USR", "a.VAR", "a.VBP", "a.VBW", "a.ZIP", "a.ZMK", "a.txt", "a.Prg"}) {
    EXPECT_FALSE(IsDataFileName(name)) << name;
  }
}

TEST(IsDataFileName, TakesExtensionsThatOnlyBeginLikeOthers) {
  EXPECT_TRUE(IsDataFileName("a.TXT1"));
  EXPECT_TRUE(IsDataFileName("a.EX"));
  EXPECT_TRUE(IsDataFileName("a.asc1"));
}

// What the graph exports is called after its recording: the whole name and the extension.
TEST(IsDataFileName, RefusesATextThatWasExported) {
  for (const char* const name :
       {"a.asc", "a.ASC", "M260314A.OVN.ASC", "M260314A.OVN.asc", "a..Asc"}) {
    EXPECT_FALSE(IsDataFileName(name)) << name;
  }
  EXPECT_TRUE(IsDataFileName("M260314A.ASC.OVN"));
  EXPECT_TRUE(IsDataFileName("M260314A.XASC"));
}

TEST(IsDataFileName, TakesANameWithTwoPointsBecauseAllBehindTheFirstCounts) {
  EXPECT_TRUE(IsDataFileName("a.b.TXT"));
  EXPECT_TRUE(IsDataFileName("a..TXT"));
}

TEST(IsDefaultFileName, TakesEachLetterInItsPlace) {
  EXPECT_TRUE(IsDefaultFileName("M011111A.NEW"));
  EXPECT_TRUE(IsDefaultFileName("m011111z.new"));
  EXPECT_TRUE(IsDefaultFileName("M011111[.NEW"));
  for (const char* other : {"M011112A.NEW", "M01111AA.NEW", "M011111A.OVN", "M011111", ""}) {
    EXPECT_FALSE(IsDefaultFileName(other)) << other;
  }
}

}  // namespace
}  // namespace tavrel
