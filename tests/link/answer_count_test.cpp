#include "link/answer_count.h"

#include <gtest/gtest.h>

#include "link/link.h"
#include "tests/support/fake_port.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(AnswerCount, CountsTheLastMinute) {
  AnswerCount count;
  EXPECT_EQ(count.InLastMinute(seconds(0)), 0);
  for (int second = 0; second < 60; ++second) {
    count.Note(seconds(second));
    count.Note(seconds(second) + milliseconds(999));
  }
  EXPECT_EQ(count.InLastMinute(seconds(59)), 120);
  EXPECT_EQ(count.InLastMinute(seconds(60)), 118);
  EXPECT_EQ(count.InLastMinute(seconds(118)), 2);
  EXPECT_EQ(count.InLastMinute(seconds(119)), 0);
}

TEST(AnswerCount, ForgetsWhatIsOldWhateverTheGap) {
  for (const int gap : {1, 30, 59, 60, 61, 119, 120, 86400}) {
    AnswerCount count;
    count.Note(seconds(7));
    count.Note(seconds(7 + gap));
    EXPECT_EQ(count.InLastMinute(seconds(7 + gap)), gap < 60 ? 2 : 1) << gap;
  }
}

class StateOfALine : public testing::Test {
 protected:
  void Ask() {
    link.ComInet = 2;
    link.ComLetter = "Y";
    link.ComIndex = 1;
    link.ReadReg();
    clock.AdvanceSeconds(1);
  }

  FakeClock clock;
  FakePort port{clock};
  Link link{port, clock};
};

TEST_F(StateOfALine, CountsAnswersAndNothingElse) {
  link.LinkOpen({"COM3", 0, 4});
  port.answer = [](const std::string&) { return "0A41\r"; };
  Ask();
  Ask();
  port.answer = [](const std::string&) { return "?"; };
  Ask();
  port.answer = [](const std::string&) { return ""; };
  Ask();
  EXPECT_EQ(link.AnsweredInLastMinute(), 2);
  clock.AdvanceSeconds(61);
  EXPECT_EQ(link.AnsweredInLastMinute(), 0);
}

TEST_F(StateOfALine, CountsNoWriteThatNobodyAcknowledges) {
  link.LinkOpen({"COM3", 0, 4});
  link.ComLetter = "8000";
  link.ComValue = 1;
  link.WriteMem();
  ASSERT_EQ(link.ComResult, LinkResult::kGood);
  EXPECT_EQ(link.AnsweredInLastMinute(), 0);
}

TEST_F(StateOfALine, CountsNothingInSimulation) {
  link.LinkOpen({"----", 0, 4});
  Ask();
  EXPECT_EQ(link.AnsweredInLastMinute(), 0);
  EXPECT_FALSE(link.SilentSince());
}

TEST_F(StateOfALine, IsSilentAfterThreeExchangesInARow) {
  link.LinkOpen({"COM3", 0, 4});
  clock.wall.Hour = 11;
  Ask();
  clock.wall.Hour = 12;
  Ask();
  EXPECT_FALSE(link.SilentSince());
  Ask();
  ASSERT_TRUE(link.SilentSince());
  EXPECT_EQ(link.SilentSince()->Hour, 11);
  port.answer = [](const std::string&) { return "0A41\r"; };
  Ask();
  EXPECT_FALSE(link.SilentSince());
}

TEST_F(StateOfALine, KnowsSinceWhenThePortIsLost) {
  link.LinkOpen({"COM3", 0, 4});
  EXPECT_EQ(link.PortName(), "COM3");
  EXPECT_FALSE(link.LostSince());
  port.Vanish();
  Ask();
  ASSERT_TRUE(link.LostSince());
  EXPECT_EQ(link.LostSince()->Hour, 10);
  clock.wall.Hour = 13;
  port.open_error = 5;
  link.ReopenIfLost();
  ASSERT_TRUE(link.LostSince());
  EXPECT_EQ(link.LostSince()->Hour, 10) << "a try that fails is no new loss";
  port.open_error = 0;
  link.ReopenIfLost();
  EXPECT_FALSE(link.LostSince());
}

}  // namespace
}  // namespace tavrel
