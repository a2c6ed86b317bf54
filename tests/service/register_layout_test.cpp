#include "service/register_layout.h"

#include <gtest/gtest.h>

#include <map>

#include "base/text.h"
#include "service/processor_registers.h"

namespace tavrel {
namespace {

TEST(RegisterLayout, NamesAll320RegistersByLetterAndTwoDigits) {
  const RegisterLayout layout = LayoutOfType(4);
  ASSERT_EQ(layout.Rows(), 320);
  int row = 0;
  for (char letter = 'G'; letter <= 'Z'; ++letter) {
    for (int index = 0; index < 16; ++index, ++row) {
      const Register which = layout.At(5, row);
      EXPECT_EQ(which.inet, 5);
      EXPECT_EQ(which.letter, std::string(1, letter)) << row;
      EXPECT_EQ(which.index, index) << row;
      EXPECT_EQ(layout.Key(row), (std::string{letter, '0', "0123456789ABCDEF"[index]}));
    }
  }
}

TEST(RegisterLayout, OfTheSiblingsFollowsTheirRule) {
  const RegisterLayout third = LayoutOfType(3);
  EXPECT_EQ(third.Rows(), 160);
  EXPECT_EQ(third.Name, "DREM 114");
  EXPECT_EQ(third.Key(0), "G00");
  EXPECT_EQ(third.Key(8), "H00");
  EXPECT_EQ(third.Key(159), "Z07");
  for (const int type : {1, 2}) {
    const RegisterLayout layout = LayoutOfType(type);
    EXPECT_EQ(layout.Rows(), 128);
    EXPECT_EQ(layout.Key(63), "V3F");
    EXPECT_EQ(layout.Key(64), "P00");
    EXPECT_EQ(layout.Key(126), "P3E");
  }
  EXPECT_EQ(LayoutOfType(2).Name, "VELO 5");
  EXPECT_EQ(DesignationOf(3, {1, "G", 0}), "") << "nothing is said of registers that nobody knows";
}

// Of the 320 registers those that mean something, letter by letter: the index of each of them.
TEST(RegisterLayout, SaysWhatEachRegisterMeans) {
  const std::map<char, std::string> used = {{'G', "0123489ABCDEF"},
                                            {'H', "01234"},
                                            {'I', "01234"},
                                            {'J', "0123456789ABCDEF"},
                                            {'K', "0123456789ABCDEF"},
                                            {'L', "0123456789ABCDEF"},
                                            {'M', "1234"},
                                            {'N', "1234"},
                                            {'O', "0123456789ABCDEF"},
                                            {'P', "1234"},
                                            {'Q', "1234"},
                                            {'R', "0123456789ABCDEF"},
                                            {'S', "0123456789ABCDEF"},
                                            {'T', "01234"},
                                            {'U', "1234"},
                                            {'V', "123467"},
                                            {'W', "1234"},
                                            {'X', "0123456789ABCDEF"},
                                            {'Y', "0123456789ABCDEF"},
                                            {'Z', "12346789ABCDEF"}};
  const RegisterLayout layout = LayoutOfType(4);
  for (int row = 0; row < layout.Rows(); ++row) {
    const std::string key = layout.Key(row);
    const bool is_used = used.at(key[0]).find(key[2]) != std::string::npos;
    EXPECT_EQ(!DesignationOf(4, layout.At(1, row)).empty(), is_used) << key;
  }
}

TEST(RegisterLayout, QuotesTheLegendToTheLetter) {
  const RegisterLayout layout = LayoutOfType(4);
  std::map<std::string, std::string> legend;
  for (int row = 0; row < layout.Rows(); ++row) {
    legend[layout.Key(row)] = DesignationOf(4, layout.At(1, row));
  }
  EXPECT_EQ(legend["G00"], " command");
  EXPECT_EQ(legend["G01"], " (1) lower limit");
  EXPECT_EQ(legend["G08"], " command return");
  EXPECT_EQ(legend["G0F"], " *");
  EXPECT_EQ(legend["H00"], " A/D zero conversion");
  EXPECT_EQ(legend["I00"], " date of firmware");
  EXPECT_EQ(legend["J01"], " *      J = Int(JK)");
  EXPECT_EQ(legend["K01"], " * K = JK-Int(JK))*65536");
  EXPECT_EQ(legend["L06"], " *  (5=NiSil)");
  EXPECT_EQ(legend["L07"], " *");
  EXPECT_EQ(legend["M04"], " (4) *");
  EXPECT_EQ(legend["Q02"], " (2) *  (at Z=5)");
  EXPECT_EQ(legend["R00"], " buffer contents");
  EXPECT_EQ(legend["S0F"], " *");
  EXPECT_EQ(legend["T00"], " min. sampling of TAVREL");
  EXPECT_EQ(legend["V01"], " (1) derivative time ");
  EXPECT_EQ(legend["V05"], "");
  EXPECT_EQ(legend["V06"], " commtest");
  EXPECT_EQ(legend["V07"], " commtest");
  EXPECT_EQ(legend["W01"], " (1) set point");
  EXPECT_EQ(legend["X00"], " oldest actual value");
  EXPECT_EQ(legend["X01"], " *     (from buffer)");
  EXPECT_EQ(legend["Y00"], " newest actual value");
  EXPECT_EQ(legend["Z00"], "");
  EXPECT_EQ(legend["Z01"], " (1) controller status");
  EXPECT_EQ(legend["Z06"], " Serial No - high   ");
  EXPECT_EQ(legend["Z09"], " Setup:   Date dd,mm");
  EXPECT_EQ(legend["Z0F"], " Check:   Type      ");
}

TEST(ProcessorRegisters, HaveTheirNames) {
  EXPECT_EQ(SymbolOf(0x00), "CNTLA0");
  EXPECT_EQ(SymbolOf(0x0F), "RLDR0H");
  EXPECT_EQ(SymbolOf(0x10), "TCR");
  EXPECT_EQ(SymbolOf(0x11), "");
  EXPECT_EQ(SymbolOf(0x14), "TMDR1L");
  EXPECT_EQ(SymbolOf(0x18), "FRC");
  EXPECT_EQ(SymbolOf(0x2C), "IAR1H");
  EXPECT_EQ(SymbolOf(0x2D), "");
  EXPECT_EQ(SymbolOf(0x2E), "BCR1L");
  EXPECT_EQ(SymbolOf(0x36), "RCR");
  EXPECT_EQ(SymbolOf(0x3A), "CBAR");
  EXPECT_EQ(SymbolOf(0x3E), "OMCR");
  EXPECT_EQ(SymbolOf(0x49), "T2CSR2");
  EXPECT_EQ(SymbolOf(0x53), "DERA");
  EXPECT_EQ(SymbolOf(0x60), "I/ODRA");
  EXPECT_EQ(SymbolOf(0x66), "IDRG");
  EXPECT_EQ(SymbolOf(0x75), "DDRF");
  EXPECT_EQ(SymbolOf(0x7F), "");
  EXPECT_EQ(SymbolOf(-1), "");
  EXPECT_EQ(SymbolOf(128), "");
  int named = 0;
  for (int address = 0; address < kProcessorRegisters; ++address) {
    named += SymbolOf(address).empty() ? 0 : 1;
  }
  EXPECT_EQ(named, 16 + 6 + 15 + 11 + 10 + 3 + 7 + 6);
}

TEST(ProcessorRegisters, ShowTheirBitsUnderTheHead) {
  EXPECT_EQ(BitsOf(0x00), " 0  0  0  0     0  0  0  0 ");
  EXPECT_EQ(BitsOf(0xA5), " 1  0  1  0     0  1  0  1 ");
  EXPECT_EQ(BitsOf(0x180), " 1  0  0  0     0  0  0  0 ") << "the lower eight";
  EXPECT_EQ(BitsOf(-1), " 1  1  1  1     1  1  1  1 ");
  const std::string head = " 7  6  5  4     3  2  1  0 ";
  const std::string bits = BitsOf(0xFF);
  for (std::size_t place = 0; place < bits.size(); ++place) {
    EXPECT_EQ(bits[place] == '1', head[place] != ' ') << place;
  }
}

}  // namespace
}  // namespace tavrel
