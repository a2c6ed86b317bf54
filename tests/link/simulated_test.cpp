#include <gtest/gtest.h>

#include <limits>

#include "link/link.h"
#include "link/simulated_store.h"
#include "tests/support/fake_port.h"

namespace tavrel {
namespace {

class SimulatedLink : public testing::Test {
 protected:
  SimulatedLink() { link.LinkOpen({"----", 0, 4}); }

  std::int16_t Read(std::int16_t inet, const char* letter, std::int16_t index) {
    Aim(inet, letter, index);
    link.ComValue = -1;
    link.ReadReg();
    return link.ComValue;
  }
  void Write(std::int16_t inet, const char* letter, std::int16_t index, std::int16_t value) {
    Aim(inet, letter, index);
    link.ComValue = value;
    link.WriteReg();
  }
  void Aim(std::int16_t inet, const char* letter, std::int16_t index) {
    link.ComInet = inet;
    link.ComLetter = letter;
    link.ComIndex = index;
  }

  FakeClock clock;
  FakePort port{clock};
  Link link{port, clock};
};

TEST(SimulatedStore, HasNothingWithoutALetter) {
  SimulatedStore store;
  for (int type_sel = 1; type_sel <= 4; ++type_sel) {
    EXPECT_EQ(store.Register(type_sel, {1, 0, "", 1}), nullptr) << type_sel;
    EXPECT_NE(store.Register(type_sel, {1, 0, "V", 1}), nullptr) << type_sel;
  }
}

TEST_F(SimulatedLink, ReadsZeroBeforeAnythingWasWritten) {
  for (std::int16_t inet = 0; inet < 8; ++inet) {
    EXPECT_EQ(Read(inet, "Z", 1), 0);
    EXPECT_TRUE(link.IsGood(inet));
    EXPECT_EQ(link.ReplyText, "0");
  }
  EXPECT_EQ(Read(1, "R", 2), 0);
}

TEST_F(SimulatedLink, KeepsEachRegisterOfEachInstrumentApart) {
  Write(1, "W", 1, 4000);
  Write(1, "W", 2, 4100);
  Write(2, "W", 1, -4200);
  Write(1, "G", 1, 7);
  EXPECT_EQ(Read(1, "W", 1), 4000);
  EXPECT_EQ(Read(1, "W", 2), 4100);
  EXPECT_EQ(Read(2, "W", 1), -4200);
  EXPECT_EQ(Read(1, "G", 1), 7);
  EXPECT_EQ(Read(1, "Z", 1), 0);
  EXPECT_EQ(link.ReplyText, "0");
}

TEST_F(SimulatedLink, TakesNoTimeAndTouchesNoPort) {
  const auto start = clock.Elapsed();
  Read(1, "Y", 1);
  Write(1, "Y", 1, 5);
  EXPECT_EQ(clock.Elapsed(), start);
  EXPECT_TRUE(port.sent.empty());
}

TEST_F(SimulatedLink, HoldsMemoryAddressesToItsPart) {
  link.ComInet = 1;
  const auto write = [this](const char* address, std::int16_t value) {
    link.ComLetter = address;
    link.ComValue = value;
    link.WriteMem();
  };
  const auto read = [this](const char* address) {
    link.ComLetter = address;
    link.ReadMem();
    return link.ComValue;
  };
  write("8000", 11);
  EXPECT_EQ(read("8640"), 11);
  EXPECT_EQ(read("0"), 0);
  write("8641", 12);
  EXPECT_EQ(read("8640"), 11);
  EXPECT_EQ(read("8641"), 12);
  write("FFFF", 13);
  EXPECT_EQ(read("8780"), 13);
  EXPECT_EQ(read("7FFF"), 13);
}

TEST_F(SimulatedLink, HoldsPortAddressesToTheirTable) {
  link.ComInet = 1;
  link.ComLetter = "FF";
  link.ComValue = 9;
  link.WritePort();
  link.ComLetter = "7F";
  link.ComValue = 0;
  link.ReadPort();
  EXPECT_EQ(link.ComValue, 9);
  link.ComLetter = "8000";
  link.ReadPort();
  EXPECT_EQ(link.ComValue, 0);
}

TEST_F(SimulatedLink, AnswersOddArgumentsWithoutHarm) {
  for (const std::int16_t index :
       {std::int16_t{-1}, std::int16_t{16}, std::numeric_limits<std::int16_t>::max()}) {
    Write(1, "W", index, 5);
    EXPECT_EQ(Read(1, "W", index), -1);
  }
  Write(100, "W", 1, 5);
  EXPECT_EQ(Read(100, "W", 1), -1);
  Write(1, "", 1, 5);
  EXPECT_EQ(Read(1, "", 1), -1);
  EXPECT_EQ(Read(1, "\xff", 1), -1);
}

TEST(SimulatedStore, UsesTwoTablesByBankInTheOlderVariants) {
  SimulatedStore store;
  *store.Register(2, {1, 0, "V", 5}) = 50;
  *store.Register(2, {1, 0, "P", 5}) = 60;
  *store.Register(1, {1, 3, "V", 5}) = 70;
  EXPECT_EQ(*store.Register(2, {1, 0, "V", 5}), 50);
  EXPECT_EQ(*store.Register(2, {1, 0, "P", 5}), 60);
  EXPECT_EQ(*store.Register(1, {1, 3, "V", 5}), 70);
  EXPECT_EQ(store.Register(2, {1, 0, "X", 5}), nullptr);
  EXPECT_EQ(store.Register(2, {1, 0, "V", 64}), nullptr);
}

TEST(SimulatedStore, KeepsEachLetterApartInTheNewerVariants) {
  for (const int type_sel : {3, 4}) {
    SimulatedStore store;
    *store.Register(type_sel, {6, 0, "G", 0}) = 10;
    *store.Register(type_sel, {6, 0, "Z", 15}) = 20;
    *store.Register(type_sel, {6, 0, "V", 15}) = 30;
    EXPECT_EQ(*store.Register(type_sel, {6, 0, "G", 0}), 10) << type_sel;
    EXPECT_EQ(*store.Register(type_sel, {6, 0, "Z", 15}), 20) << type_sel;
    EXPECT_EQ(*store.Register(type_sel, {6, 0, "V", 15}), 30) << type_sel;
    EXPECT_EQ(*store.Register(type_sel, {6, 0, "Z", 14}), 0) << type_sel;
  }
}

TEST(SimulatedStore, BeginsItsMemoryByVariant) {
  SimulatedStore store;
  *store.Memory(1, "FE81") = 1;
  EXPECT_EQ(*store.Memory(4, "8641"), 1);
  EXPECT_EQ(*store.Memory(3, "84B1"), 1);
  EXPECT_EQ(*store.Memory(2, "FE81"), 1);
}

}  // namespace
}  // namespace tavrel
