#include "link/link.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/link/link_on_a_line.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;

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
