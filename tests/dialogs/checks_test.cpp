#include "dialogs/checks.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"
#include "tests/support/fake_screen.h"

namespace tavrel {
namespace {

TEST(CheckRange, TakesBothLimits) {
  FakeDialogs dialogs;
  EXPECT_TRUE(CheckRange(dialogs, "setpoint", 0, 0, 400));
  EXPECT_TRUE(CheckRange(dialogs, "setpoint", 400, 0, 400));
  EXPECT_TRUE(CheckRange(dialogs, "setpoint", -7.5, -10, -5));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST(CheckRange, NamesTheLimitsOfARefusedValue) {
  FakeDialogs dialogs;
  EXPECT_FALSE(CheckRange(dialogs, "setpoint", 400.05, 0.5, 400));
  EXPECT_FALSE(CheckRange(dialogs, "setpoint", 0.45, 0.5, 400));
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].Text, "setpoint:\n0.5 ... 400");
  EXPECT_EQ(dialogs.boxes[0].Title, "check");
}

TEST(CheckRange, RefusesWhatIsNoNumber) {
  FakeDialogs dialogs;
  EXPECT_FALSE(CheckRange(dialogs, "rate", std::numeric_limits<double>::quiet_NaN(), -1, 1));
  EXPECT_FALSE(CheckRange(dialogs, "rate", std::numeric_limits<double>::infinity(), -1, 1));
  EXPECT_EQ(dialogs.boxes.size(), 2U);
}

TEST(CheckConnected, IsTrueForAGoodStatusOnly) {
  FakeClock clock;
  FakePort port{clock};
  Link link{port, clock};
  FakeDialogs dialogs;
  link.LinkOpen({"----", 0, 4});
  link.ComInet = 2;
  link.ComLetter = "Y";
  link.ReadReg();
  EXPECT_TRUE(CheckConnected(dialogs, link, 2));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_FALSE(CheckConnected(dialogs, link, 3));
  EXPECT_FALSE(CheckConnected(dialogs, link, 99));
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].Text, "Tavrel connected ?");
  EXPECT_EQ(dialogs.boxes[0].Title, "check");
  EXPECT_EQ(dialogs.boxes[0].Icon, BoxIcon::kQuestion);
}

// An instrument that is silent for the first exchanges.
class CheckAnswersOf : public testing::Test {
 protected:
  CheckAnswersOf() {
    link.LinkOpen({"COM1", 0, 4});
    port.answer = [this](const std::string&) {
      return port.sent.size() <= silent_exchanges ? "" : "000A\r";
    };
  }

  FakeClock clock;
  FakePort port{clock};
  Link link{port, clock};
  FakeDialogs dialogs;
  std::size_t silent_exchanges = 0;
};

TEST_F(CheckAnswersOf, AsksNothingIfTheLastExchangeWasGood) {
  link.ComInet = 3;
  link.ComLetter = "Y";
  link.ReadReg();
  port.sent.clear();
  EXPECT_TRUE(CheckAnswers(dialogs, link, 3));
  EXPECT_TRUE(port.sent.empty());
}

TEST_F(CheckAnswersOf, AsksTwiceAtMost) {
  EXPECT_TRUE(CheckAnswers(dialogs, link, 3));
  EXPECT_EQ(port.sent, std::vector<std::string>{"T20?"});
  port.sent.clear();
  silent_exchanges = 1;
  EXPECT_TRUE(CheckAnswers(dialogs, link, 2));
  EXPECT_EQ(port.sent, (std::vector<std::string>{"T10?", "T10?"}));
  EXPECT_TRUE(dialogs.boxes.empty());
  port.sent.clear();
  silent_exchanges = 2;
  EXPECT_FALSE(CheckAnswers(dialogs, link, 1));
  EXPECT_EQ(port.sent.size(), 2U);
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].Text, "Tavrel connected ?");
}

TEST(ShowMessage, HasTheIconOfItsKind) {
  FakeDialogs dialogs;
  for (const int kind : {1, 2, 0, 3}) {
    ShowMessage(dialogs, "text", "title", kind);
  }
  ASSERT_EQ(dialogs.boxes.size(), 4U);
  EXPECT_EQ(dialogs.boxes[0].Icon, BoxIcon::kQuestion);
  EXPECT_EQ(dialogs.boxes[1].Icon, BoxIcon::kWarning);
  EXPECT_EQ(dialogs.boxes[2].Icon, BoxIcon::kInformation);
  EXPECT_EQ(dialogs.boxes[3].Icon, BoxIcon::kInformation);
}

}  // namespace
}  // namespace tavrel
