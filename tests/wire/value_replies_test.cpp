#include <gtest/gtest.h>

#include "link/link.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/system_clock.h"
#include "tests/wire/live_instrument.h"

namespace tavrel {
namespace {

// A link to instrument 2 on both kinds of line.
class ValueReplies : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(instrument.IsUp());
    link.LinkOpen({"COM1", GetParam() ? 2 : 0, 4});
    ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
    link.ComInet = 2;
  }

  // The value that is read while the first half of each reply's digits is lost; empty if the
  // exchange fails, as it must then leave the value before alone.
  std::optional<int> ReadCut(void (Link::*access)(), const char* letter, std::int16_t index) {
    EXPECT_TRUE(instrument.Tell("fault all cut-value on"));
    link.ComLetter = letter;
    link.ComIndex = index;
    link.ComValue = 77;
    (link.*access)();
    EXPECT_TRUE(instrument.Tell("fault all none"));
    if (link.IsGood(2)) {
      return link.ComValue;
    }
    EXPECT_EQ(link.ComStatus(2), LinkResult::kLength);
    EXPECT_EQ(link.ComValue, 77);
    return std::nullopt;
  }

  TemporaryDirectory home;
  LiveInstrument instrument{home, GetParam(), {"--inet", "2"}};
  SystemClock clock;
  QtSerialPort port{home.Path()};
  Link link{port, clock};
};

TEST_P(ValueReplies, OfARegisterAreNotTakenWithoutTheirFirstHalf) {
  for (const char* letter : {"X", "Y", "R", "Z"}) {
    for (const std::int16_t index : {std::int16_t{1}, std::int16_t{9}, std::int16_t{15}}) {
      EXPECT_EQ(ReadCut(&Link::ReadReg, letter, index), std::nullopt) << letter << index;
      link.ReadReg();
      EXPECT_TRUE(link.IsGood(2)) << letter << index;
      EXPECT_EQ(link.ReplyText.size(), 4U) << letter << index;
    }
  }
}

TEST_P(ValueReplies, OfAPortHaveTwoDigits) {
  EXPECT_EQ(ReadCut(&Link::ReadPort, "1F", 0), std::nullopt);
  link.ReadPort();
  EXPECT_TRUE(link.IsGood(2));
  EXPECT_EQ(link.ReplyText.size(), 2U);
}

// Some processors answer a byte of memory by two digits.
TEST_P(ValueReplies, OfMemoryHaveFourDigitsOrTwo) {
  EXPECT_NE(ReadCut(&Link::ReadMem, "8000", 0), std::nullopt);
  link.ReadMem();
  EXPECT_TRUE(link.IsGood(2));
  EXPECT_EQ(link.ReplyText.size(), 4U);
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, ValueReplies, testing::Bool(), [](const auto& kind) {
  return std::string(kind.param ? "plugin" : "direct");
});

}  // namespace
}  // namespace tavrel
