#include <gtest/gtest.h>

#include <string>

#include "tests/link/link_on_a_line.h"

// What the link makes of replies that come late, in pieces or twice.
namespace tavrel {
namespace {

using std::chrono::milliseconds;

TEST_F(LinkOnALine, DoesNotTakeALateReplyForTheNextAnswer) {
  Open(0);
  port.answer = [this](const std::string&) {
    port.Arrive(milliseconds(200), "1111\r");
    return "";
  };
  Ask(1, "X", 5);
  EXPECT_EQ(link.ComResult, LinkResult::kTimeOut);

  clock.AdvanceSeconds(0.2);
  port.answer = [](const std::string&) { return "2222\r"; };
  Ask(1, "X", 6);
  EXPECT_EQ(link.ComResult, LinkResult::kLength);
  EXPECT_EQ(port.sent.size(), 1U);

  Ask(1, "X", 6);
  EXPECT_EQ(link.ComResult, LinkResult::kGood);
  EXPECT_EQ(link.ComValue, 0x2222);
}

// One digit of an older answer is enough to spoil the next one.
TEST_F(LinkOnALine, SendsNothingBehindASingleStaleCharacter) {
  for (const int com_mode : {0, 1, 2}) {
    Open(com_mode);
    port.answer = [](const std::string&) { return "01F4\r"; };
    for (const char* stale : {"0", "\r", "?", "xy", "01F4\r"}) {
      port.sent.clear();
      port.Arrive({}, stale);
      Ask(1, "Y", 1);
      EXPECT_EQ(link.ComResult, LinkResult::kLength) << stale;
      EXPECT_TRUE(port.sent.empty()) << stale;
      LetTheLineRest();
      Ask(1, "Y", 1);
      EXPECT_EQ(link.ComResult, LinkResult::kGood) << stale;
      EXPECT_EQ(link.ComValue, 500) << stale;
    }
  }
}

TEST_F(LinkOnALine, WaitsForALateReplyBeforeTheNextCommand) {
  Open(0);
  port.answer = [this](const std::string&) {
    port.Arrive(milliseconds(125), "1111\r");
    return "";
  };
  Ask(1, "X", 5);
  port.answer = [](const std::string&) { return ""; };
  Ask(2, "Y", 1);
  EXPECT_EQ(link.ComStatus(2), LinkResult::kLength);
  EXPECT_EQ(port.sent.size(), 1U);
}

TEST_F(LinkOnALine, WaitsForAReplyThatIsAQuarterOfASecondLate) {
  Open(0);
  port.answer = [this](const std::string&) {
    port.Arrive(milliseconds(250), "1111\r");
    return "";
  };
  Ask(1, "X", 5);
  EXPECT_FALSE(link.IsSettled());
  port.answer = [](const std::string&) { return "2222\r"; };
  Ask(1, "X", 6);
  EXPECT_EQ(link.ComResult, LinkResult::kLength);
  EXPECT_EQ(port.sent.size(), 1U);
}

TEST_F(LinkOnALine, IsSettledAgainAfterATime) {
  Open(0);
  EXPECT_TRUE(link.IsSettled());
  Ask(1, "Y", 1);
  clock.AdvanceSeconds(0.149);
  EXPECT_EQ(link.SettleTime(), milliseconds(1));
  clock.AdvanceSeconds(0.0005);
  EXPECT_FALSE(link.IsSettled());
  clock.AdvanceSeconds(0.001);
  EXPECT_TRUE(link.IsSettled());
}

TEST_F(LinkOnALine, IsUnsettledByEveryKindOfFailure) {
  Open(0);
  for (const char* reply : {"", "?", "123\r", "12G4\r"}) {
    LetTheLineRest();
    port.answer = [reply](const std::string&) { return reply; };
    Ask(1, "Y", 1);
    EXPECT_FALSE(link.IsSettled()) << reply;
  }
}

// What an instrument refuses it has answered: only that nothing follows has to be seen.
TEST_F(LinkOnALine, IsSettledSoonBehindALoneRefusal) {
  Open(0);
  port.answer = [](const std::string&) { return "?"; };
  Ask(1, "Y", 1);
  EXPECT_EQ(link.SettleTime(), milliseconds(15));
  EXPECT_TRUE(link.EndsWithRefusal());
  EXPECT_TRUE(link.IsSettled());
  for (const char* reply : {"\x1B", "?\r", "1?"}) {
    LetTheLineRest();
    port.answer = [reply](const std::string&) { return reply; };
    Ask(1, "Y", 1);
    EXPECT_EQ(link.SettleTime(), milliseconds(150)) << reply;
  }
}

TEST_F(LinkOnALine, CountsItsExchanges) {
  Open(0);
  Ask(1, "Y", 1);
  Ask(2, "Y", 15);
  EXPECT_EQ(link.Exchanges(), 2U);
  link.LinkOpen({"----", 0, 4});
  Ask(6, "Y", 1);
  link.WriteReg();
  EXPECT_EQ(link.Exchanges(), 4U);
}

// A reply that comes in pieces spoils one exchange and not each one in which a piece arrives.
TEST_F(LinkOnALine, GathersAllPiecesOfALateReply) {
  Open(0);
  port.answer = [this](const std::string&) {
    port.Arrive(milliseconds(250), "11");
    port.Arrive(milliseconds(275), "1");
    port.Arrive(milliseconds(300), "1\r");
    return "";
  };
  Ask(1, "X", 5);
  Ask(1, "X", 6);
  EXPECT_EQ(link.ComResult, LinkResult::kLength);
  port.answer = [](const std::string&) { return "2222\r"; };
  Ask(1, "X", 6);
  EXPECT_EQ(link.ComResult, LinkResult::kGood);
  EXPECT_EQ(link.ComValue, 0x2222);
}

TEST_F(LinkOnALine, TakesALineForQuietAfterFortyMilliseconds) {
  Open(0);
  port.Arrive({}, "x");
  EXPECT_EQ(Took([this] { Ask(1, "Y", 1); }), milliseconds(40));
  EXPECT_EQ(link.ComResult, LinkResult::kLength);
}

// Characters that come every 30 ms, one after the other for ever.
TEST_F(LinkOnALine, GathersForElevenHundredthsOfASecondAtMost) {
  Open(0);
  for (int piece = 0; piece < 100; ++piece) {
    port.Arrive(milliseconds(30 * piece), "x");
  }
  EXPECT_EQ(Took([this] { Ask(1, "Y", 1); }), milliseconds(110));
  EXPECT_EQ(link.ComResult, LinkResult::kLength);
}

// The pause behind a failed exchange is for a late reply, which no port can bring any more.
TEST_F(LinkOnALine, WaitsForNothingOnAPortThatIsGone) {
  Open(0);
  Ask(1, "Y", 1);
  ASSERT_EQ(link.ComResult, LinkResult::kTimeOut);
  port.Vanish();
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(Took([this] { Ask(1, "Y", 1); }), milliseconds(0));
    EXPECT_EQ(link.ComResult, LinkResult::kPortError);
  }
}

TEST_F(LinkOnALine, GathersAllPiecesOfASecondReply) {
  Open(0);
  port.answer = [this](const std::string&) {
    port.Arrive(milliseconds(22), "22");
    port.Arrive(milliseconds(50), "22\r");
    return "1111\r";
  };
  Ask(1, "X", 5);
  EXPECT_FALSE(link.NoTrailingBytes());
  port.answer = [](const std::string&) { return "3333\r"; };
  Ask(1, "X", 6);
  EXPECT_EQ(link.ComValue, 0x3333);
}

TEST_F(LinkOnALine, IsNotUnsettledByAPortThatIsGone) {
  Open(0);
  port.Vanish();
  Ask(1, "Y", 1);
  EXPECT_EQ(link.ComResult, LinkResult::kPortError);
  EXPECT_TRUE(link.IsSettled());
}

TEST_F(LinkOnALine, SeesThatASecondReplyFollowsAGoodOne) {
  Open(0);
  port.answer = [this](const std::string&) {
    port.Arrive(milliseconds(22), "2222\r");
    return "1111\r";
  };
  Ask(1, "X", 5);
  ASSERT_EQ(link.ComResult, LinkResult::kGood);
  EXPECT_FALSE(link.NoTrailingBytes());
  EXPECT_EQ(link.ComStatus(1), LinkResult::kLength);
}

TEST_F(LinkOnALine, TrustsAReplyThatStandsAlone) {
  Open(0);
  port.answer = [](const std::string&) { return "1111\r"; };
  Ask(1, "X", 5);
  EXPECT_EQ(Took([this] { EXPECT_TRUE(link.NoTrailingBytes()); }), milliseconds(15));
  EXPECT_EQ(link.ComValue, 0x1111);
}

TEST_F(LinkOnALine, WatchesAFasterLineForALittleShorter) {
  Open(2);
  port.answer = [](const std::string&) { return "1111\r"; };
  Ask(1, "X", 5);
  EXPECT_EQ(Took([this] { EXPECT_TRUE(link.NoTrailingBytes()); }), milliseconds(12));
}

TEST_F(LinkOnALine, EndsOnALineThatNeverFallsSilent) {
  Open(0);
  for (int at = 0; at < 5000; at += 5) {
    port.Arrive(milliseconds(at), "#");
  }
  const milliseconds took = Took([this] { Ask(1, "Y", 1); });
  EXPECT_EQ(link.ComResult, LinkResult::kLength);
  EXPECT_LE(took, milliseconds(110));
}

}  // namespace
}  // namespace tavrel
