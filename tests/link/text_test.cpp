#include <gtest/gtest.h>

#include <string>

#include "tests/link/link_on_a_line.h"

// Texts that a user types, whose answers are nobody's values.
namespace tavrel {
namespace {

using std::chrono::milliseconds;

TEST_F(LinkOnALine, SendsATextAsItIsAndHandsOverWhatComes) {
  Open(2);
  EXPECT_TRUE(link.SendText("np21?"));
  EXPECT_EQ(port.sent, std::vector<std::string>{"np21?"});
  EXPECT_EQ(link.TakeText(), "");
  port.Arrive({}, "01F4\r");
  EXPECT_EQ(link.TakeText(), "01F4\r");
  EXPECT_EQ(link.TakeText(), "");
}

TEST_F(LinkOnALine, SendsNoTextWhereNoLineIs) {
  EXPECT_FALSE(link.SendText("Y01?")) << "never opened";
  link.LinkOpen({"----", 0, 4});
  EXPECT_FALSE(link.SendText("Y01?")) << "simulated";
  Open(0);
  port.Vanish();
  EXPECT_FALSE(link.SendText("Y01?")) << "lost";
  EXPECT_EQ(link.TakeText(), "");
  EXPECT_TRUE(port.sent.empty());
  EXPECT_TRUE(link.IsSettled()) << "nothing was asked that could be answered";
}

// The answer to a text must not be taken for that to the next command.
TEST_F(LinkOnALine, WaitsBehindATextUntilNoAnswerCanComeAnyMore) {
  Open(0);
  ASSERT_TRUE(link.SendText("Y01?"));
  EXPECT_EQ(link.SettleTime(), milliseconds(260));
  EXPECT_EQ(Took([this] { link.EndText(); }), milliseconds(260));
  EXPECT_TRUE(link.IsSettled());
}

TEST_F(LinkOnALine, WaitsAtTheEndOfTextsForAQuietLineOnly) {
  Open(0);
  ASSERT_TRUE(link.SendText("Y01?"));
  LetTheLineRest();
  EXPECT_EQ(Took([this] { link.EndText(); }), milliseconds(40));
  port.Arrive(milliseconds(30), "1");
  port.Arrive(milliseconds(65), "2");
  EXPECT_EQ(Took([this] { link.EndText(); }), milliseconds(105)) << "40 ms behind the last one";
  EXPECT_EQ(link.TakeText(), "") << "what came is thrown away";
}

TEST_F(LinkOnALine, WaitsForAnAnswerThatGoesOnBehindTheTimeOfAText) {
  Open(0);
  ASSERT_TRUE(link.SendText("Y01?"));
  port.Arrive(milliseconds(10), "early");
  port.Arrive(milliseconds(250), "0");
  EXPECT_EQ(Took([this] { link.EndText(); }), milliseconds(290));
}

TEST_F(LinkOnALine, WaitsASecondAtMostForALineThatDoesNotFallSilent) {
  Open(0);
  for (int at = 0; at < 3000; at += 30) {
    port.Arrive(milliseconds(at), "#");
  }
  EXPECT_EQ(Took([this] { link.EndText(); }), milliseconds(1000));
}

TEST_F(LinkOnALine, WaitsForNoTextWhereNoLineIs) {
  link.LinkOpen({"----", 0, 4});
  EXPECT_EQ(Took([this] { link.EndText(); }), milliseconds(0));
  Open(0);
  ASSERT_TRUE(link.SendText("Y01?"));
  port.Vanish();
  EXPECT_FALSE(port.IsOpen());
  EXPECT_LE(Took([this] { link.EndText(); }), milliseconds(260));
  EXPECT_FALSE(link.PortOpen) << "the loss is noticed";
  EXPECT_EQ(Took([this] { link.EndText(); }), milliseconds(0));
}

}  // namespace
}  // namespace tavrel
