#include "instrument/telegram.h"

#include <gtest/gtest.h>

#include "instrument/registers.h"

namespace instrument {
namespace {

TEST(DirectTelegram, ReadOfRegisterY1OfTheFirstInstrument) {
  const Command command = ParseDirect("Y01?");
  EXPECT_TRUE(command.valid);
  EXPECT_EQ(command.inet, 1);
  EXPECT_FALSE(command.write);
  EXPECT_EQ(command.address, RegisterNumber('Y', 1));
}

TEST(DirectTelegram, WriteOfRegisterW1OfTheThirdInstrument) {
  const Command command = ParseDirect("W21=3E8");
  EXPECT_TRUE(command.valid);
  EXPECT_EQ(command.inet, 3);
  EXPECT_TRUE(command.write);
  EXPECT_EQ(command.address, RegisterNumber('W', 1));
  EXPECT_EQ(command.word, 1000);
}

TEST(DirectTelegram, MemoryAndPortsNameNoInstrument) {
  const Command memory = ParseDirect("8000<");
  EXPECT_TRUE(memory.valid);
  EXPECT_EQ(memory.inet, 0);
  EXPECT_EQ(memory.access, Access::kMemory);
  EXPECT_EQ(memory.address, 0x8000);
  const Command port = ParseDirect("1F:12");
  EXPECT_TRUE(port.valid);
  EXPECT_TRUE(port.write);
  EXPECT_EQ(port.access, Access::kPort);
  EXPECT_EQ(port.address, 0x1F);
  EXPECT_EQ(port.word, 0x12);
}

TEST(DirectTelegram, NegativeValueComesAsFourDigits) {
  EXPECT_EQ(static_cast<std::int16_t>(ParseDirect("V06=FFFF").word), -1);
  EXPECT_EQ(static_cast<std::int16_t>(ParseDirect("V06=8000").word), -32768);
}

TEST(DirectTelegram, RefusesWhatMakesNoSense) {
  for (const char* text : {"", "?", "Y", "Y?", "Y0?", "Y001?", "Y01", "Y01=", "Y01=12345", "Y01=1G",
                           "y01?", "W01=3e8", "80001<", "<", "G<", "80@", "1F:", "Y01?=1", "=="}) {
    EXPECT_FALSE(ParseDirect(text).valid) << text;
  }
}

TEST(DirectTelegram, KnowsWhoIsMeantInAnImpossibleCommand) {
  EXPECT_EQ(ParseDirect("Y2G?").inet, 3);
  EXPECT_EQ(ParseDirect("YG2?").inet, 0);
}

TEST(PluginTelegram, FirstInstrumentHasNoDigit) {
  const Command command = ParsePlugin("np21?");
  EXPECT_TRUE(command.valid);
  EXPECT_EQ(command.inet, 1);
  EXPECT_EQ(command.address, RegisterNumber('Y', 1));
}

TEST(PluginTelegram, ThirdInstrumentHasTheDigitTwo) {
  const Command command = ParsePlugin("n2p1=3E8");
  EXPECT_TRUE(command.valid);
  EXPECT_EQ(command.inet, 3);
  EXPECT_EQ(command.address, RegisterNumber('W', 1));
  EXPECT_EQ(command.word, 1000);
}

TEST(PluginTelegram, BanksEndAtTheirLastAddress) {
  EXPECT_EQ(ParsePlugin("nv0?").address, RegisterNumber('G', 0));
  EXPECT_EQ(ParsePlugin("nvFF?").address, RegisterNumber('V', 15));
  EXPECT_EQ(ParsePlugin("np3F?").address, RegisterNumber('Z', 15));
  EXPECT_TRUE(ParsePlugin("no7F?").valid);
  EXPECT_FALSE(ParsePlugin("nv100?").valid);
  EXPECT_FALSE(ParsePlugin("np40?").valid);
  EXPECT_FALSE(ParsePlugin("no80?").valid);
}

TEST(PluginTelegram, ReadsMemoryOfTheThirdInstrument) {
  const Command command = ParsePlugin("n2m8000?");
  EXPECT_TRUE(command.valid);
  EXPECT_EQ(command.access, Access::kMemory);
  EXPECT_EQ(command.inet, 3);
  EXPECT_EQ(command.address, 0x8000);
}

TEST(PluginTelegram, RefusesWhatMakesNoSense) {
  for (const char* text : {"", "n", "n?", "n2?", "np?", "nq1?", "nP1?", "n0p21?", "n22p1?", "p21?",
                           "xnp21?", "np21", "np21=", "np2a?", "Y01?", "nm8000<", "n2"}) {
    EXPECT_FALSE(ParsePlugin(text).valid) << text;
  }
}

TEST(TelegramReader, EndsAReadWithItsLastCharacterAndAWriteWithACarriageReturn) {
  TelegramReader reader(LineMode::kDirect);
  for (const char byte : std::string("Y01")) {
    EXPECT_FALSE(reader.Take(byte));
  }
  EXPECT_TRUE(reader.Take('?')->valid);
  for (const char byte : std::string("W01=3E8")) {
    EXPECT_FALSE(reader.Take(byte));
  }
  EXPECT_TRUE(reader.Take('\r')->valid);
}

TEST(TelegramReader, EscapeClearsTheCommandBeingReceived) {
  TelegramReader reader(LineMode::kPlugin);
  for (const char byte : std::string("nv7=\x1Bnp21")) {
    EXPECT_FALSE(reader.Take(byte));
  }
  EXPECT_TRUE(reader.Take('?')->valid);
}

TEST(TelegramReader, NoiseSpoilsOnlyTheCommandThatItPrecedes) {
  TelegramReader reader(LineMode::kPlugin);
  std::optional<Command> command;
  for (const char byte : std::string(1000, '#') + "np21?") {
    command = reader.Take(byte);
  }
  ASSERT_TRUE(command);
  EXPECT_FALSE(command->valid);
  for (const char byte : std::string("np21?")) {
    command = reader.Take(byte);
  }
  EXPECT_TRUE(command->valid);
}

TEST(TelegramReader, LoneCarriageReturnIsNoCommand) {
  TelegramReader reader(LineMode::kPlugin);
  EXPECT_FALSE(reader.Take('\r'));
}

TEST(ValueReply, HasFourDigitsOrTwoForAPort) {
  EXPECT_EQ(ValueReply(Access::kRegister, 0x1F4), "01F4\r");
  EXPECT_EQ(ValueReply(Access::kRegister, 0xFFFF), "FFFF\r");
  EXPECT_EQ(ValueReply(Access::kMemory, 2), "0002\r");
  EXPECT_EQ(ValueReply(Access::kPort, 0xA), "0A\r");
}

}  // namespace
}  // namespace instrument
