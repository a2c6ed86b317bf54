#include "main/settings_lists.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(PortList, OffersNoPortAndThirtyPorts) {
  const std::vector<std::string> items = PortItems();
  ASSERT_EQ(items.size(), 31U);
  EXPECT_EQ(items[0], " ----");
  EXPECT_EQ(items[1], " COM1");
  EXPECT_EQ(items[30], " COM30");
}

TEST(PortList, FindsTheFirstNumberThatOccursAnywhere) {
  EXPECT_EQ(PortIndex("COM1"), 1);
  EXPECT_EQ(PortIndex("COM9"), 9);
  EXPECT_EQ(PortIndex("com4"), 4);
  EXPECT_EQ(PortIndex("COM12"), 1);
  EXPECT_EQ(PortIndex("COM20"), 2);
  EXPECT_EQ(PortIndex("COM30"), 3);
  EXPECT_EQ(PortIndex("COM91"), 1);
  EXPECT_EQ(PortIndex("7"), 7);
}

TEST(PortList, ShowsNoPortWhereNoNumberOccurs) {
  EXPECT_EQ(PortIndex("----"), 0);
  EXPECT_EQ(PortIndex(""), 0);
  EXPECT_EQ(PortIndex("COM0"), 0);
}

TEST(PortList, WritesThePortOfItsIndex) {
  EXPECT_EQ(PortAt(1), "COM1");
  EXPECT_EQ(PortAt(30), "COM30");
  EXPECT_EQ(PortAt(0), "----");
  EXPECT_EQ(PortAt(31), "----");
  EXPECT_EQ(PortAt(-1), "----");
}

TEST(HelpList, TakesTheFirstLetterEForEnglishAndAllElseForGerman) {
  EXPECT_EQ(HelpIndex("English"), 0);
  EXPECT_EQ(HelpIndex("english"), 0);
  EXPECT_EQ(HelpIndex("German"), 1);
  EXPECT_EQ(HelpIndex("Deutsch"), 1);
  EXPECT_EQ(HelpIndex(""), 1);
}

TEST(HelpList, WritesItsItemsWithoutTheBlank) {
  EXPECT_STREQ(kHelpItems[0], " English");
  EXPECT_STREQ(kHelpItems[1], " German");
  EXPECT_EQ(HelpAt(0), "English");
  EXPECT_EQ(HelpAt(1), "German");
}

TEST(ModeList, ShowsAnUnknownInterfaceAsDirect) {
  EXPECT_EQ(ModeIndex(0), 0);
  EXPECT_EQ(ModeIndex(2), 2);
  EXPECT_EQ(ModeIndex(3), 0);
  EXPECT_EQ(ModeIndex(-1), 0);
}

TEST(WidthList, ShowsAMissingWidthAsTwoPoints) {
  EXPECT_EQ(WidthIndex(0), 1);
  EXPECT_EQ(WidthIndex(-4), 1);
  EXPECT_EQ(WidthIndex(1), 0);
  EXPECT_EQ(WidthIndex(5), 4);
  EXPECT_EQ(WidthIndex(6), 4);
}

TEST(SettingsItems, AreQuotedWithTheirBlanks) {
  EXPECT_STREQ(kModeItems[0], " direct  (RS-232)");
  EXPECT_STREQ(kModeItems[1], " plug-in  KBL232");
  EXPECT_STREQ(kModeItems[2], " plug-in  KBL485");
  EXPECT_STREQ(kDiaItems[0], " no");
  EXPECT_STREQ(kDiaItems[1], " yes");
  EXPECT_STREQ(kWidthItems[0], "   1 pt");
  EXPECT_STREQ(kWidthItems[4], "   5 pt");
}

}  // namespace
}  // namespace tavrel
