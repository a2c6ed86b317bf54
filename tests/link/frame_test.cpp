#include "link/frame.h"

#include <gtest/gtest.h>

#include "link/registers.h"

namespace tavrel {
namespace {

LineMode Mode(int type_sel, int com_mode) {
  return ChooseLineMode({}, type_sel, com_mode);
}

struct RegisterCase {
  int type_sel;
  int com_mode;
  LineAddress address;
  RegisterName name;
  const char* read;
};

class RegisterFrame : public testing::TestWithParam<RegisterCase> {};

TEST_P(RegisterFrame, ReadsAndWritesByteForByte) {
  const RegisterCase& param = GetParam();
  const LineMode mode = Mode(param.type_sel, param.com_mode);
  EXPECT_EQ(RegisterReadFrame(mode, param.address, param.name), param.read);

  std::string write = param.read;
  write.replace(write.size() - 1, 1, "=3E8\r");
  EXPECT_EQ(RegisterWriteFrame(mode, param.address, param.name, 1000), write);
}

INSTANTIATE_TEST_SUITE_P(VariantInForce, RegisterFrame,
                         testing::Values(RegisterCase{4, 0, {1, 0}, {"Y", 1}, "Y01?"},
                                         RegisterCase{4, 0, {3, 0}, {"Y", 1}, "Y21?"},
                                         RegisterCase{4, 0, {2, 0}, {"V", 15}, "V1F?"},
                                         RegisterCase{4, 0, {1, 0}, {"W", 1}, "W01?"},
                                         RegisterCase{4, 1, {1, 0}, {"Y", 1}, "np21?"},
                                         RegisterCase{4, 2, {1, 0}, {"Y", 1}, "np21?"},
                                         RegisterCase{4, 1, {3, 0}, {"Y", 1}, "n2p21?"},
                                         RegisterCase{4, 2, {3, 0}, {"Y", 1}, "n2p21?"},
                                         RegisterCase{4, 1, {3, 0}, {"W", 1}, "n2p1?"},
                                         RegisterCase{4, 1, {3, 0}, {"X", 15}, "n2p1F?"},
                                         RegisterCase{4, 1, {1, 0}, {"G", 0}, "nv0?"},
                                         RegisterCase{4, 1, {1, 0}, {"V", 15}, "nvFF?"},
                                         RegisterCase{4, 1, {6, 0}, {"Z", 15}, "n5p3F?"}));

INSTANTIATE_TEST_SUITE_P(OtherVariants, RegisterFrame,
                         testing::Values(RegisterCase{1, 0, {1, 1}, {"V", 5}, "s1bv5?"},
                                         RegisterCase{1, 2, {3, 1}, {"V", 5}, "s3bv5?"},
                                         RegisterCase{1, 0, {3, 0}, {"V", 5}, "s3av5?"},
                                         RegisterCase{1, 1, {0, 0}, {"V", 5}, "V5?"},
                                         RegisterCase{2, 0, {1, 0}, {"V", 5}, "V5?"},
                                         RegisterCase{2, 0, {3, 0}, {"V", 5}, "V5?"},
                                         RegisterCase{2, 1, {3, 0}, {"V", 5}, "V5?"},
                                         RegisterCase{2, 2, {1, 0}, {"V", 5}, "jv5?"},
                                         RegisterCase{2, 2, {3, 0}, {"V", 5}, "j2v5?"},
                                         RegisterCase{3, 0, {1, 0}, {"X", 5}, "X5?"},
                                         RegisterCase{3, 0, {3, 0}, {"X", 5}, "X5?"},
                                         RegisterCase{3, 1, {1, 0}, {"X", 5}, "P15?"},
                                         RegisterCase{3, 2, {1, 0}, {"X", 5}, "kp15?"},
                                         RegisterCase{3, 2, {3, 0}, {"X", 5}, "k2p15?"}));

TEST(Frame, WritesNegativeValuesAsFourDigitsAndSmallOnesAsFew) {
  const LineMode mode = Mode(4, 0);
  EXPECT_EQ(RegisterWriteFrame(mode, {1, 0}, {"W", 1}, -1), "W01=FFFF\r");
  EXPECT_EQ(RegisterWriteFrame(mode, {1, 0}, {"W", 1}, 500), "W01=1F4\r");
  EXPECT_EQ(RegisterWriteFrame(mode, {1, 0}, {"W", 1}, 0), "W01=0\r");
  EXPECT_EQ(RegisterWriteFrame(mode, {1, 0}, {"W", 1}, -32768), "W01=8000\r");
}

// No choice of variant and interface makes these; the numbers belong to the variant in force.
TEST(Frame, NumbersInstrumentsOnADirectLineOnlyInTheVariantInForce) {
  LineMode mode = Mode(3, 0);
  mode.LinkPlugin = true;
  EXPECT_EQ(RegisterReadFrame(mode, {3, 0}, {"Y", 1}), "Y1?");
  mode = Mode(4, 0);
  mode.LinkPlugin = false;
  EXPECT_EQ(RegisterReadFrame(mode, {3, 0}, {"Y", 1}), "Y1?");
}

TEST(Frame, ReachesMemoryAndPortsOnADirectLineWithoutANumber) {
  const LineMode mode = Mode(4, 0);
  EXPECT_EQ(SpaceReadFrame(mode, {3, 0}, Space::kMemory, "8000"), "8000<");
  EXPECT_EQ(SpaceWriteFrame(mode, {3, 0}, Space::kMemory, "8000", 2), "8000>2\r");
  EXPECT_EQ(SpaceReadFrame(mode, {3, 0}, Space::kPort, "1F"), "1F@");
  EXPECT_EQ(SpaceWriteFrame(mode, {3, 0}, Space::kPort, "1F", 255), "1F:FF\r");
}

TEST(Frame, ReachesMemoryAndPortsOnAPluginLineByPrefix) {
  const LineMode mode = Mode(4, 2);
  EXPECT_EQ(SpaceReadFrame(mode, {3, 0}, Space::kMemory, "8000"), "n2m8000?");
  EXPECT_EQ(SpaceWriteFrame(mode, {3, 0}, Space::kMemory, "8000", 2), "n2m8000=2\r");
  EXPECT_EQ(SpaceReadFrame(mode, {1, 0}, Space::kPort, "1F"), "no1F?");
  EXPECT_EQ(SpaceWriteFrame(mode, {2, 0}, Space::kPort, "1F", -1), "n1o1F=FFFF\r");
}

TEST(Frame, HasSmallLettersInItsPrefixes) {
  const LineMode plugin = Mode(4, 2);
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const auto small = static_cast<char>(letter - 'A' + 'a');
    EXPECT_EQ(LinkPrefix(plugin, letter, {1, 0}), std::string("n") + small);
    EXPECT_EQ(LinkPrefix(plugin, small, {3, 0}), std::string("n2") + small);
  }
  for (const char other : {'@', '[', '1', '?'}) {
    EXPECT_EQ(LinkPrefix(plugin, other, {2, 0}), std::string("n1") + other);
  }
}

TEST(Frame, AddressesMemoryOfOtherVariantsByTheirPrefix) {
  EXPECT_EQ(SpaceReadFrame(Mode(1, 0), {0, 0}, Space::kMemory, "FE80"), "MFE80?");
  EXPECT_EQ(SpaceReadFrame(Mode(1, 0), {2, 3}, Space::kMemory, "FE80"), "s2dmFE80?");
  EXPECT_EQ(SpaceReadFrame(Mode(2, 1), {2, 0}, Space::kMemory, "FE80"), "MFE80?");
  EXPECT_EQ(SpaceReadFrame(Mode(3, 2), {2, 0}, Space::kPort, "10"), "k1o10?");
}

TEST(Registers, LieInTwoBanksOfSixteenWordGroups) {
  EXPECT_EQ(RegisterPlaceOf(4, "G", 0).Bank, 'V');
  EXPECT_EQ(RegisterPlaceOf(4, "G", 0).Address, 0);
  EXPECT_EQ(RegisterPlaceOf(4, "V", 15).Bank, 'V');
  EXPECT_EQ(RegisterPlaceOf(4, "V", 15).Address, 255);
  EXPECT_EQ(RegisterPlaceOf(4, "W", 0).Bank, 'P');
  EXPECT_EQ(RegisterPlaceOf(4, "W", 0).Address, 0);
  EXPECT_EQ(RegisterPlaceOf(4, "X", 5).Address, 21);
  EXPECT_EQ(RegisterPlaceOf(3, "Z", 15).Bank, 'P');
  EXPECT_EQ(RegisterPlaceOf(3, "Z", 15).Address, 63);
}

TEST(Registers, PassThroughWhatIsNoLetterOfTheirs) {
  EXPECT_EQ(RegisterPlaceOf(4, "A", 7).Bank, 'A');
  EXPECT_EQ(RegisterPlaceOf(4, "A", 7).Address, 7);
  EXPECT_EQ(RegisterPlaceOf(2, "X", 7).Bank, 'X');
  EXPECT_EQ(RegisterPlaceOf(2, "X", 7).Address, 7);
  EXPECT_EQ(RegisterPlaceOf(4, "", 7).Bank, ' ');
}

}  // namespace
}  // namespace tavrel
