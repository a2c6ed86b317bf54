#include "files/reasons.h"

#include <gtest/gtest.h>

#include "files/journal_check.h"

namespace tavrel {
namespace {

TEST(Reasons, AreShownInTheLanguageOfTheUser) {
  EXPECT_EQ(ReasonIn(Language::kGerman, reason::kLostNextStands.English),
            reason::kLostNextStands.German);
  EXPECT_EQ(ReasonIn(Language::kEnglish, reason::kLostNextStands.English),
            reason::kLostNextStands.English);
}

TEST(Reasons, KeepTheirNumbers) {
  EXPECT_EQ(ReasonIn(Language::kGerman, "rows 20 to 21 behind the last seal"),
            "Zeilen 20 bis 21 stehen hinter dem letzten Siegel");
  EXPECT_EQ(ReasonIn(Language::kGerman, "row 7 is missing"), "Zeile 7 fehlt");
  EXPECT_EQ(ReasonIn(Language::kEnglish, "row 7 is missing"), "row 7 is missing");
}

TEST(Reasons, WordsOfTheSystemStayAsTheyAre) {
  for (const char* words : {"", "No space left on device", "row x is missing", "row 7 is missing !",
                            "row  is missing"}) {
    EXPECT_EQ(ReasonIn(Language::kGerman, words), words);
  }
}

TEST(Reasons, OfAJournalAreTranslatedBehindItsName) {
  EXPECT_EQ(ReasonIn(Language::kGerman, "its journal: too long"), "ihr Journal: zu lang");
  EXPECT_EQ(ReasonIn(Language::kGerman, "its journal: Permission denied"),
            "ihr Journal: Permission denied");
}

TEST(Reasons, FindingsOfARecordingWithoutAJournalAreTranslated) {
  const RecordingCheck check = CheckRecording({}, std::optional<std::string>());
  ASSERT_EQ(check.Findings.size(), 1U);
  EXPECT_EQ(ReasonIn(Language::kGerman, check.Findings.front()), "es gibt kein Journal");
}

}  // namespace
}  // namespace tavrel
