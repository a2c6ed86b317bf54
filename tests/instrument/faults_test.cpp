#include "instrument/faults.h"

#include <gtest/gtest.h>

#include "tests/instrument/line_fixture.h"

namespace instrument {
namespace {

class FaultyLine : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(bench.Say("W01=3E8\r"), ".");
    ASSERT_EQ(bench.Say("S11=1\r"), ".");
    bench.Pass(5);
  }
  void Set(int inet, Fault fault, std::string_view level = "on") {
    const auto parsed = ParseLevel(fault, level);
    ASSERT_TRUE(parsed);
    bench.line.FaultsOf(inet)->Set(fault, *parsed);
  }
  int Stored() { return WordOf(bench.Say("R11?")); }

  LineBench bench{LineMode::kDirect};
};

TEST_F(FaultyLine, SilenceConcernsOnlyItsInstrument) {
  Set(1, Fault::kSilence);
  EXPECT_EQ(bench.Say("W01?"), "");
  EXPECT_EQ(bench.Say("W01=1\r"), "");
  EXPECT_EQ(bench.Say("W11?"), "0000\r");
  bench.line.FaultsOf(1)->Clear();
  EXPECT_EQ(bench.Say("W01?"), "03E8\r");
}

TEST_F(FaultyLine, LostRequestIsNotCarriedOut) {
  Set(1, Fault::kLostRequest);
  EXPECT_EQ(bench.Say("W01=1\r"), "");
  Set(1, Fault::kLostRequest, "off");
  EXPECT_EQ(bench.Say("W01?"), "03E8\r");
}

TEST_F(FaultyLine, LostReplyIsCarriedOutAndTheSampleIsGone) {
  Set(2, Fault::kLostReply);
  EXPECT_EQ(bench.Say("X11?"), "");
  EXPECT_EQ(bench.truth.rows.back(), "handed 2 1 1 fate 1");
  bench.line.FaultsOf(2)->Clear();
  EXPECT_EQ(Stored(), 4);
}

TEST_F(FaultyLine, LateReplyIsHeldBack) {
  Set(2, Fault::kLateReply, "200");
  EXPECT_EQ(bench.Say("X11?").size(), 5U);
  EXPECT_EQ(bench.last->delay.count(), 200);
  EXPECT_EQ(bench.truth.rows.back(), "handed 2 1 1 fate 3");
}

TEST_F(FaultyLine, NoValueConcernsPresentValuesAlone) {
  Set(2, Fault::kNoValue);
  EXPECT_EQ(bench.Say("Y11?"), "8000\r");
  EXPECT_EQ(bench.Say("Y1F?"), "8000\r");
  EXPECT_NE(bench.Say("X11?"), "8000\r");
  EXPECT_EQ(bench.Say("W11?"), "0000\r");
  EXPECT_NE(bench.Say("Y01?"), "8000\r") << "another instrument";
  bench.line.FaultsOf(2)->Clear();
  EXPECT_NE(bench.Say("Y11?"), "8000\r");
}

TEST_F(FaultyLine, ByteByByteHasPauses) {
  Set(1, Fault::kByteByByte, "12");
  EXPECT_EQ(bench.Say("W01?"), "03E8\r");
  EXPECT_EQ(bench.last->pause.count(), 12);
}

TEST_F(FaultyLine, WrongLengthHasThreeDigits) {
  Set(1, Fault::kWrongLength);
  EXPECT_EQ(bench.Say("W01?"), "3E8\r");
  EXPECT_EQ(bench.Say("1F@"), "000\r");
  EXPECT_EQ(bench.Say("W01=1\r"), ".");
}

TEST_F(FaultyLine, CutValueKeepsTheLastHalfOfItsDigits) {
  Set(1, Fault::kCutValue);
  EXPECT_EQ(bench.Say("W01?"), "E8\r");
  EXPECT_EQ(bench.Say("1F@"), "0\r");
  EXPECT_EQ(bench.Say("W01=1\r"), ".");
}

TEST_F(FaultyLine, NonHexPutsALetterBeyondF) {
  Set(2, Fault::kNonHex);
  const std::string reply = bench.Say("X11?");
  EXPECT_EQ(reply.size(), 5U);
  EXPECT_NE(reply.find('G'), std::string::npos);
  EXPECT_EQ(bench.truth.rows.back(), "handed 2 1 1 fate 2");
}

TEST_F(FaultyLine, RefusalCarriesNothingOut) {
  Set(2, Fault::kRefusal);
  EXPECT_EQ(bench.Say("X11?"), "?");
  bench.line.FaultsOf(2)->Clear();
  EXPECT_EQ(Stored(), 5);
}

TEST_F(FaultyLine, StaleReplyComesAhead) {
  bench.Say("W01?");
  Set(1, Fault::kStale);
  EXPECT_EQ(bench.Say("W02?"), "03E8\r0000\r");
  EXPECT_EQ(bench.Say("W01?"), "0000\r03E8\r");
}

TEST_F(FaultyLine, GarbageIsTwoBytesThatMeanNothing) {
  Set(1, Fault::kGarbage);
  for (int i = 0; i < 50; ++i) {
    const std::string reply = bench.Say("W01?");
    ASSERT_EQ(reply.size(), 7U);
    EXPECT_EQ(reply.substr(2), "03E8\r");
    EXPECT_EQ(reply.substr(0, 2).find_first_of("\r\x1B.?"), std::string::npos);
  }
}

TEST_F(FaultyLine, ProbabilityStrikesInItsShare) {
  Set(1, Fault::kLostReply, "0.2");
  int lost = 0;
  for (int i = 0; i < 2000; ++i) {
    lost += bench.Say("W01?").empty() ? 1 : 0;
  }
  EXPECT_NEAR(lost, 400, 80);
}

TEST_F(FaultyLine, LateReplyStrikesInItsShare) {
  Set(1, Fault::kLateReply, "150/0.2");
  int late = 0;
  for (int i = 0; i < 2000; ++i) {
    EXPECT_EQ(bench.Say("W01?").size(), 5U);
    late += bench.last->delay.count() == 150 ? 1 : 0;
  }
  EXPECT_NEAR(late, 400, 80);
  EXPECT_EQ(bench.line.FaultsOf(1)->Text(), "late-reply=150/0.2");
}

TEST_F(FaultyLine, LimitedFaultEndsByItself) {
  auto level = ParseLevel(Fault::kRefusal, "on");
  level->times = 2;
  bench.line.FaultsOf(1)->Set(Fault::kRefusal, *level);
  EXPECT_EQ(bench.Say("W01?W01?W01?"), "??03E8\r");
}

TEST(FaultLevel, KnowsItsRanges) {
  EXPECT_FALSE(ParseLevel(Fault::kLostReply, "1.5"));
  EXPECT_FALSE(ParseLevel(Fault::kLostReply, "-1"));
  EXPECT_FALSE(ParseLevel(Fault::kLostReply, "often"));
  EXPECT_FALSE(ParseLevel(Fault::kLateReply, "60001"));
  EXPECT_FALSE(ParseLevel(Fault::kLostReply, "nan"));
  EXPECT_FALSE(ParseLevel(Fault::kLateReply, "150/2"));
  EXPECT_FALSE(ParseLevel(Fault::kLateReply, "150/"));
  EXPECT_EQ(ParseLevel(Fault::kLateReply, "0")->probability, 0.0);
  EXPECT_EQ(ParseLevel(Fault::kLateReply, "on")->time.count(), 150);
}

TEST(FaultNames, LeadBackToTheirFaults) {
  for (int i = 0; i < kFaultCount; ++i) {
    const auto fault = static_cast<Fault>(i);
    EXPECT_EQ(FaultNamed(NameOf(fault)), fault);
  }
  EXPECT_FALSE(FaultNamed("tired"));
}

}  // namespace
}  // namespace instrument
