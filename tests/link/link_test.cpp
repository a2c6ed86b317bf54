#include "link/link.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/fake_port.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;

class LinkOnALine : public testing::Test {
 protected:
  void Open(int com_mode) { link.LinkOpen({"COM3", com_mode, 4}); }

  void Ask(std::int16_t inet, const char* letter, std::int16_t index) {
    link.ComInet = inet;
    link.ComLetter = letter;
    link.ComIndex = index;
    link.ReadReg();
  }

  void Write(std::int16_t inet, const char* letter, std::int16_t index, std::int16_t value) {
    link.ComInet = inet;
    link.ComLetter = letter;
    link.ComIndex = index;
    link.ComValue = value;
    link.WriteReg();
  }

  // Lets the time pass in which a late reply of a failed exchange is waited for.
  void LetTheLineRest() { clock.AdvanceSeconds(1); }

  milliseconds Took(const std::function<void()>& exchange) {
    const auto start = clock.Elapsed();
    exchange();
    return std::chrono::duration_cast<milliseconds>(clock.Elapsed() - start);
  }

  FakeClock clock;
  FakePort port{clock};
  Link link{port, clock};
};

TEST_F(LinkOnALine, OpensThePortWithTheSettingsOfTheMode) {
  Open(0);
  ASSERT_EQ(port.opened.size(), 1U);
  EXPECT_EQ(port.opened[0].first, 3);
  EXPECT_EQ(port.opened[0].second, "4800,n,8,2");
  EXPECT_TRUE(link.PortOpen);
  EXPECT_FALSE(link.Simulated);
  EXPECT_EQ(link.PortLabel, "COM3: 4800,n,8,2");
  link.LinkOpen({" COM30 ", 2, 4});
  EXPECT_EQ(port.opened[1].first, 30);
  EXPECT_EQ(port.opened[1].second, "9600,e,8,1");
}

TEST_F(LinkOnALine, KeepsTheErrorOfAPortThatDoesNotOpen) {
  port.open_error = 2;
  port.open_text = "no such device";
  Open(0);
  EXPECT_FALSE(link.PortOpen);
  EXPECT_EQ(link.PortError, 2);
  EXPECT_EQ(link.PortErrorText, "no such device");
  port.open_error = 0;
  Open(0);
  EXPECT_TRUE(link.PortOpen);
  EXPECT_EQ(link.PortError, 0);
}

TEST_F(LinkOnALine, GivesThePortBackWhenItIsClosed) {
  Open(0);
  link.LinkClose();
  EXPECT_FALSE(port.IsOpen()) << "another program could not open it";
  EXPECT_FALSE(link.PortOpen);
  Open(2);
  EXPECT_TRUE(port.IsOpen());
  link.LinkOpen({"----", 2, 4});
  EXPECT_FALSE(port.IsOpen()) << "a simulated line needs no port";
}

// The ten-second tick is for a port that was lost, not for one that somebody has closed.
TEST_F(LinkOnALine, StaysClosedAtTheTenSecondTick) {
  const auto tick = [this] {
    link.ReopenIfLost();
    link.ReopenIfLost();
  };
  tick();
  EXPECT_TRUE(port.opened.empty()) << "nothing was ever open";
  Open(0);
  tick();
  link.LinkClose();
  tick();
  EXPECT_FALSE(link.PortOpen);
  port.open_error = 2;
  Open(0);
  tick();
  EXPECT_FALSE(link.PortOpen) << "a port that does not open is the user's to mend";
  link.LinkOpen({"----", 0, 4});
  tick();
  EXPECT_EQ(port.reopened, 0);
}

TEST_F(LinkOnALine, IsNoLongerLostOnceItIsClosed) {
  Open(0);
  port.Vanish();
  port.open_error = 2;
  link.ReopenIfLost();
  EXPECT_EQ(port.reopened, 1);
  link.LinkClose();
  port.open_error = 0;
  link.ReopenIfLost();
  EXPECT_EQ(port.reopened, 1);
  EXPECT_FALSE(link.PortOpen);
}

TEST_F(LinkOnALine, RemembersThatAPortIsInUseUntilItIsOpenedAnew) {
  port.open_error = 2;
  port.in_use = true;
  Open(0);
  EXPECT_TRUE(link.PortInUse);
  link.LinkOpen({"----", 0, 4});
  EXPECT_FALSE(link.PortInUse);
}

TEST_F(LinkOnALine, SimulatesWithoutAPortNumber) {
  for (const char* comm_port : {"----", "", "COM", "C1", "COMx", "COM0", "COM-4"}) {
    link.LinkOpen({comm_port, 0, 4});
    EXPECT_TRUE(link.Simulated) << comm_port;
    EXPECT_TRUE(link.PortOpen) << comm_port;
    EXPECT_EQ(link.PortLabel, "(simulated)") << comm_port;
  }
  EXPECT_TRUE(port.opened.empty());
}

TEST_F(LinkOnALine, ReadsAValueAndKeepsTheArguments) {
  Open(0);
  port.answer = [](const std::string&) { return "01F4\r"; };
  Ask(3, "Y", 1);
  EXPECT_EQ(port.sent, std::vector<std::string>{"Y21?"});
  EXPECT_EQ(link.ComResult, LinkResult::kGood);
  EXPECT_EQ(link.ComStatus(3), LinkResult::kGood);
  EXPECT_EQ(link.ComStatus(1), LinkResult::kNone);
  EXPECT_EQ(link.ComValue, 500);
  EXPECT_EQ(link.ReplyText, "01F4");
  EXPECT_EQ(link.ComInet, 3);
  EXPECT_EQ(link.ComLetter, "Y");
  EXPECT_EQ(link.ComIndex, 1);
}

TEST_F(LinkOnALine, ReadsFourDigitsAsSigned) {
  Open(1);
  const std::vector<std::pair<std::string, int>> replies = {
      {"FFFF\r", -1}, {"8000\r", -32768}, {"7FFF\r", 32767}, {"0012\r", 18}, {"00FF\r", 255}};
  for (const auto& [reply, value] : replies) {
    port.answer = [text = reply](const std::string&) { return text; };
    Ask(1, "Y", 1);
    EXPECT_EQ(link.ComResult, LinkResult::kGood) << reply;
    EXPECT_EQ(link.ComValue, value) << reply;
  }
}

// 0FA1 of which the first half is lost is 8.05 degrees in place of 200.05.
TEST_F(LinkOnALine, RefusesTwoDigitsOfARegister) {
  for (const int com_mode : {0, 1, 2}) {
    Open(com_mode);
    link.ComValue = 77;
    for (const char* reply : {"A1\r", "00\r", "FF\r"}) {
      port.answer = [reply](const std::string&) { return reply; };
      Ask(2, "X", 5);
      EXPECT_EQ(link.ComStatus(2), LinkResult::kLength) << reply;
      EXPECT_EQ(link.ComValue, 77) << reply;
      LetTheLineRest();
    }
  }
}

TEST_F(LinkOnALine, RefusesFourDigitsOfAPort) {
  for (const int com_mode : {0, 1}) {
    Open(com_mode);
    port.answer = [](const std::string&) { return "002A\r"; };
    link.ComInet = 1;
    link.ComLetter = "1F";
    link.ReadPort();
    EXPECT_EQ(link.ComResult, LinkResult::kLength);
    LetTheLineRest();
  }
}

TEST_F(LinkOnALine, ReadsMemoryOfFourDigitsAsSignedAndOfTwoAsUnsigned) {
  Open(1);
  const std::vector<std::pair<std::string, int>> replies = {
      {"FFFF\r", -1}, {"8000\r", -32768}, {"12\r", 18}, {"FF\r", 255}};
  for (const auto& [reply, value] : replies) {
    port.answer = [text = reply](const std::string&) { return text; };
    link.ComInet = 1;
    link.ComLetter = "8000";
    link.ReadMem();
    EXPECT_EQ(link.ComResult, LinkResult::kGood) << reply;
    EXPECT_EQ(link.ComValue, value) << reply;
  }
}

TEST_F(LinkOnALine, LeavesTheValueAloneAfterAFailure) {
  Open(0);
  link.ComValue = 77;
  for (const char* reply : {"123\r", "12G4\r", "?", ""}) {
    port.answer = [reply](const std::string&) { return std::string(reply); };
    Ask(2, "Y", 1);
    EXPECT_NE(link.ComStatus(2), LinkResult::kGood) << reply;
    EXPECT_EQ(link.ComValue, 77) << reply;
    LetTheLineRest();
  }
}

TEST_F(LinkOnALine, GivesUpASilentInstrumentAfterElevenHundredths) {
  Open(0);
  const milliseconds took = Took([this] { Ask(1, "Y", 1); });
  EXPECT_EQ(link.ComResult, LinkResult::kTimeOut);
  EXPECT_EQ(took, milliseconds(110));
}

TEST_F(LinkOnALine, TakesAnAnswerInTheLastMoment) {
  Open(0);
  port.answer = [this](const std::string&) {
    port.Arrive(milliseconds(109), "1234\r");
    return "";
  };
  Ask(1, "Y", 1);
  EXPECT_EQ(link.ComResult, LinkResult::kGood);
  EXPECT_EQ(link.ComValue, 0x1234);
}

// On a busy machine the program may stand still at any place.
TEST_F(LinkOnALine, TakesAnAnswerThatCameWhileTheProgramStoodStill) {
  Open(0);
  port.answer = [this](const std::string&) {
    port.Arrive(milliseconds(60), "1234\r");
    return "";
  };
  for (int stalled = 1; stalled <= 4; ++stalled) {
    LetTheLineRest();
    int reads = 0;
    port.after_read = [this, stalled, &reads] {
      if (++reads == stalled) {
        clock.Advance(milliseconds(150));
      }
    };
    Ask(1, "X", 5);
    EXPECT_EQ(link.ComResult, LinkResult::kGood) << "behind read " << stalled;
    EXPECT_EQ(link.ComValue, 0x1234);
  }
}

TEST_F(LinkOnALine, CollectsAnAnswerThatComesByteByByte) {
  Open(0);
  port.answer = [this](const std::string&) {
    int delay = 15;
    for (const char* character : {"0", "1", "F", "4", "\r"}) {
      port.Arrive(milliseconds(delay), character);
      delay += 15;
    }
    return "";
  };
  Ask(1, "Y", 1);
  EXPECT_EQ(link.ComResult, LinkResult::kGood);
  EXPECT_EQ(link.ComValue, 500);
}

TEST_F(LinkOnALine, WaitsTenMillisecondsEvenForAnAnswerAtOnce) {
  Open(0);
  port.answer = [](const std::string&) { return "0001\r"; };
  EXPECT_EQ(Took([this] { Ask(1, "Y", 1); }), milliseconds(10));
}

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

TEST_F(LinkOnALine, WaitsForTheAcknowledgeOfARegisterWrite) {
  Open(0);
  port.answer = [](const std::string&) { return "."; };
  Write(3, "W", 1, 1000);
  EXPECT_EQ(port.sent.back(), "W21=3E8\r");
  EXPECT_EQ(link.ComStatus(3), LinkResult::kGood);

  port.answer = [](const std::string&) { return "?"; };
  Write(3, "W", 1, 1000);
  EXPECT_EQ(link.ComStatus(3), LinkResult::kRejected);
  LetTheLineRest();

  port.answer = [](const std::string&) { return ""; };
  Write(3, "W", 1, -1);
  EXPECT_EQ(port.sent.back(), "W21=FFFF\r");
  EXPECT_EQ(link.ComStatus(3), LinkResult::kTimeOut);
}

TEST_F(LinkOnALine, CountsADirectMemoryWriteAsGoodUnseen) {
  Open(0);
  link.ComInet = 2;
  link.ComLetter = "8000";
  link.ComValue = 1;
  const milliseconds took = Took([this] { link.WriteMem(); });
  EXPECT_EQ(port.sent.back(), "8000>1\r");
  EXPECT_EQ(link.ComStatus(2), LinkResult::kGood);
  EXPECT_EQ(took, milliseconds(10));
  link.ComLetter = "1F";
  link.WritePort();
  EXPECT_EQ(port.sent.back(), "1F:1\r");
  EXPECT_EQ(link.ComStatus(2), LinkResult::kGood);
}

TEST_F(LinkOnALine, WaitsForTheAcknowledgeOfAPluginMemoryWrite) {
  Open(2);
  link.ComInet = 3;
  link.ComLetter = "8000";
  link.ComValue = 4;
  link.WriteMem();
  EXPECT_EQ(port.sent.back(), "n2m8000=4\r");
  EXPECT_EQ(link.ComStatus(3), LinkResult::kTimeOut);
  LetTheLineRest();
  port.answer = [](const std::string&) { return "."; };
  link.ComLetter = "10";
  link.WritePort();
  EXPECT_EQ(port.sent.back(), "n2o10=4\r");
  EXPECT_EQ(link.ComStatus(3), LinkResult::kGood);
}

TEST_F(LinkOnALine, ReadsMemoryAndPorts) {
  Open(1);
  port.answer = [](const std::string&) { return "2A\r"; };
  link.ComInet = 1;
  link.ComLetter = "8000";
  link.ReadMem();
  EXPECT_EQ(port.sent.back(), "nm8000?");
  EXPECT_EQ(link.ComValue, 42);
  link.ComLetter = "1F";
  link.ReadPort();
  EXPECT_EQ(port.sent.back(), "no1F?");
  EXPECT_EQ(link.ComValue, 42);
}

TEST_F(LinkOnALine, SendsEscapeOnlyOnAPluginLine) {
  Open(0);
  link.LinkAbort();
  EXPECT_TRUE(port.sent.empty());
  Open(1);
  link.LinkAbort();
  EXPECT_EQ(port.sent, std::vector<std::string>{"\x1b"});
  link.LinkOpen({"----", 1, 4});
  link.LinkAbort();
  EXPECT_EQ(port.sent.size(), 1U);
}

TEST_F(LinkOnALine, KeepsItsModeUntilItIsOpenedAnew) {
  Open(0);
  link.LinkOpen({"COM3", 7, 4});
  EXPECT_EQ(port.opened.back().second, "4800,n,8,2");
  Ask(1, "Y", 1);
  EXPECT_EQ(port.sent.back(), "Y01?");
}

TEST_F(LinkOnALine, EndsAtOnceWhenThePortVanishesInTheMiddle) {
  Open(0);
  port.answer = [this](const std::string&) {
    port.Vanish();
    return "";
  };
  const milliseconds took = Took([this] { Ask(1, "Y", 1); });
  EXPECT_EQ(link.ComResult, LinkResult::kPortError);
  EXPECT_LE(took, milliseconds(10));
  EXPECT_FALSE(link.PortOpen);
}

TEST_F(LinkOnALine, OpensALostPortAgainOnlyWhenAsked) {
  Open(0);
  port.Vanish();
  EXPECT_EQ(Took([this] { Ask(1, "Y", 1); }), milliseconds(0));
  EXPECT_EQ(link.ComResult, LinkResult::kPortError);

  port.open_error = 2;
  link.ReopenIfLost();
  EXPECT_FALSE(link.PortOpen);
  port.open_error = 0;
  link.ReopenIfLost();
  EXPECT_TRUE(link.PortOpen);
  EXPECT_EQ(port.opened.back().first, 3);
  EXPECT_EQ(port.reopened, 2);

  port.answer = [](const std::string&) { return "0001\r"; };
  LetTheLineRest();
  Ask(1, "Y", 1);
  EXPECT_EQ(link.ComResult, LinkResult::kGood);
  link.ReopenIfLost();
  EXPECT_EQ(port.opened.size(), 3U);
}

TEST_F(LinkOnALine, NoticesAPortThatVanishedBetweenExchanges) {
  Open(0);
  port.Vanish();
  link.ReopenIfLost();
  EXPECT_EQ(port.opened.size(), 2U);
  EXPECT_TRUE(link.PortOpen);
}

TEST_F(LinkOnALine, SurvivesAddressesOutsideItsTables) {
  Open(0);
  for (const std::int16_t inet : {std::int16_t{-1}, std::int16_t{8}, std::int16_t{32767}}) {
    Ask(inet, "Y", 1);
    EXPECT_EQ(link.ComStatus(inet), LinkResult::kNone);
    LetTheLineRest();
  }
}

TEST_F(LinkOnALine, GetsItsArgumentsBackFromTheKeeper) {
  link.ComInet = 4;
  link.ComLetter = "W";
  link.ComIndex = 2;
  link.ComValue = 99;
  {
    const KeepLinkArguments keep(link);
    link.ComInet = 1;
    link.ComLetter = "Y";
    link.ComIndex = 0;
    link.ComValue = 5;
  }
  EXPECT_EQ(link.ComInet, 4);
  EXPECT_EQ(link.ComLetter, "W");
  EXPECT_EQ(link.ComIndex, 2);
  EXPECT_EQ(link.ComValue, 99);
}

}  // namespace
}  // namespace tavrel
