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

TEST(PortList, SaysWhatIsBehindAPortAndWhetherItIsThere) {
  const PortDescription adapter{"/dev/ttyUSB0", true, "FTDI", "FT232R USB UART", "A9007XYZ"};
  EXPECT_EQ(PortItem(5, adapter, Language::kEnglish),
            " COM5   /dev/ttyUSB0,  FTDI,  FT232R USB UART,  A9007XYZ");
  const PortDescription nameless{"/dev/ttyUSB0", true, "FTDI", "", "A9007XYZ"};
  EXPECT_EQ(PortItem(5, nameless, Language::kGerman), " COM5   /dev/ttyUSB0,  FTDI,  A9007XYZ");
  const PortDescription own{"/dev/ttyS0", true, "", "", ""};
  EXPECT_EQ(PortItem(1, own, Language::kEnglish), " COM1   /dev/ttyS0");
  const PortDescription missing{"/dev/ttyS29", false, "", "", ""};
  EXPECT_EQ(PortItem(30, missing, Language::kEnglish), " COM30   /dev/ttyS29  (not present)");
  EXPECT_EQ(PortItem(30, missing, Language::kGerman), " COM30   /dev/ttyS29  (nicht vorhanden)");
}

TEST(PortList, CutsWhatAnAdapterSaysAtLength) {
  const PortDescription adapter{"/dev/ttyUSB0", true, std::string(200, 'M'), "", ""};
  EXPECT_EQ(PortItem(5, adapter, Language::kEnglish),
            " COM5   /dev/ttyUSB0,  " + std::string(32, 'M'));
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
