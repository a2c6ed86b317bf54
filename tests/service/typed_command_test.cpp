#include "service/typed_command.h"

#include <gtest/gtest.h>

#include "link/frame.h"

namespace tavrel {
namespace {

using Command = std::optional<BufferCommand>;

TEST(ATypedCommand, ThatReadsXIsKnownOnBothKindsOfLine) {
  for (int inet = 1; inet <= 6; ++inet) {
    for (int input = 0; input <= 15; ++input) {
      char direct[8];
      char plugin[8];
      const std::string number = inet == 1 ? "" : std::to_string(inet - 1);
      std::snprintf(direct, sizeof direct, "X%d%X?", inet - 1, static_cast<unsigned>(input));
      std::snprintf(plugin, sizeof plugin, "n%sp%X?", number.c_str(),
                    static_cast<unsigned>(16 + input));
      EXPECT_EQ(BufferCommandIn(direct), (Command{{'X', inet, input, true}})) << direct;
      EXPECT_EQ(BufferCommandIn(plugin), (Command{{'X', inet, input, true}})) << plugin;
    }
  }
}

TEST(ATypedCommand, ThatWritesROrSIsKnownOnBothKindsOfLine) {
  EXPECT_EQ(BufferCommandIn("R21=0\r"), (Command{{'R', 3, 1, false}}));
  EXPECT_EQ(BufferCommandIn("S5F=A\r"), (Command{{'S', 6, 15, false}}));
  EXPECT_EQ(BufferCommandIn("n2vB1=0\r"), (Command{{'R', 3, 1, false}}));
  EXPECT_EQ(BufferCommandIn("n5vCF=A\r"), (Command{{'S', 6, 15, false}}));
  EXPECT_EQ(BufferCommandIn("nvC0=1\r"), (Command{{'S', 1, 0, false}}));
}

TEST(ATypedCommand, IsKnownInEverySpelling) {
  for (const char* text : {"n2p1F?", "N2P1F?", "n2P1f?", "n02p1F?", "n2p001F?", "x2f?", "X2f?",
                           "X002F?", "noise n2p1F?", "Zn2p1F?", "~X2F?"}) {
    EXPECT_EQ(BufferCommandIn(text), (Command{{'X', 3, 15, true}})) << text;
  }
  EXPECT_EQ(BufferCommandIn("XF?"), (Command{{'X', 1, 15, true}})) << "no number is the first";
  EXPECT_EQ(BufferCommandIn("n0p1F?"), (Command{{'X', 1, 15, true}}));
  EXPECT_EQ(BufferCommandIn("r21=0000\r"), (Command{{'R', 3, 1, false}}));
  EXPECT_EQ(BufferCommandIn("R21=\r"), (Command{{'R', 3, 1, false}}));
}

using Write = std::optional<RegisterWrite>;

TEST(ATypedCommand, ThatWritesARegisterIsKnownOnBothKindsOfLine) {
  for (int inet = 1; inet <= 6; ++inet) {
    for (const std::string letter : {"G", "W", "Z", "Q"}) {
      for (const int index : {0, 1, 4, 15}) {
        const LineAddress address{static_cast<std::int16_t>(inet), 0};
        const RegisterName name{letter, static_cast<std::int16_t>(index)};
        const std::int16_t word = letter == "G" ? -2 : 1000;
        const RegisterWrite expected{letter.front(), inet, index, word};
        for (const LineMode& mode : {LineMode{4, "", true, true}, LineMode{4, "", false, true}}) {
          const std::string text = RegisterWriteFrame(mode, address, name, word);
          EXPECT_EQ(RegisterWriteIn(text), Write(expected)) << text;
          EXPECT_EQ(RegisterWriteIn("noise " + text), Write(expected)) << text;
        }
      }
    }
  }
  EXPECT_EQ(RegisterWriteIn("w21=003e8\r"), (Write{{'W', 3, 1, 1000}}));
  EXPECT_EQ(RegisterWriteIn("W1=\r"), (Write{{'W', 1, 1, 0}}));
  for (const char* text :
       {"W21?", "W21=3E8", "W21=3G8\r", "W21=10000\r", "8000>4\r", "=4\r", "W=4\r", "\r", ""}) {
    EXPECT_EQ(RegisterWriteIn(text), std::nullopt) << text;
  }
}

TEST(ATypedCommand, ThatLeavesTheBuffersAloneIsNotHeldUp) {
  for (const char* text :
       {"",         "?",         "\r",     "X2F",      "X?",       "n2p1F",
        "n2p2F?",   "n2pF?",     "n2vB1?", "R21?",     "S21?",     "Y21?",
        "X21=5\r",  "n2p1F=5\r", "8000<",  "8000>4\r", "n2m8000?", "n2o1F?",
        "Z21=2\r",  "p1F?",      "=\r",    "nv?",      "n2v1F?",   "n2pFFFFFFFFFFFFFFFFFFFFB1?",
        "W21=3E8\r"}) {
    EXPECT_EQ(BufferCommandIn(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace tavrel
