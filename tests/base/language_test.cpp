#include "base/language.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

constexpr BothLanguages kOvens{"oven %2 of %1", "Ofen %2 von %1"};

TEST(BothLanguages, AreFilledInInTheOrderOfEach) {
  EXPECT_EQ(kOvens.Text(Language::kEnglish, {"lab", "3"}), "oven 3 of lab");
  EXPECT_EQ(kOvens.Text(Language::kGerman, {"Labor", "3"}), "Ofen 3 von Labor");
}

TEST(BothLanguages, LeaveWhatAValueHoldsAsItIs) {
  EXPECT_EQ(kOvens.Text(Language::kEnglish, {"%2 %1 %", "%9"}), "oven %9 of %2 %1 %");
}

TEST(BothLanguages, KeepPlacesWithoutAValueAndLonePercentSigns) {
  EXPECT_EQ(FilledIn("%1 and %2", {"one"}), "one and %2");
  EXPECT_EQ(FilledIn("100 % of %0, %1%", {"it"}), "100 % of %0, it%");
  EXPECT_EQ(FilledIn("input 1 of %1", {"it"}), "input 1 of it");
}

TEST(BothLanguages, MayBeTheSameWhereThatIsSaid) {
  constexpr BothLanguages kKey = BothLanguages::Same("F5");
  EXPECT_EQ(kKey.In(Language::kEnglish), kKey.In(Language::kGerman));
}

}  // namespace
}  // namespace tavrel
