#include "tests/wire/button_fixture.h"
#include "work/pid_parameters.h"

namespace tavrel {
namespace {

// The button OK of TavPid with another set of parameters, beside a controller on hold.
class PidOnTheRealWire : public ButtonsOnTheWire {
 protected:
  void SetUp() override {
    ButtonsOnTheWire::SetUp();
    writes = Of({"Z13?", "Z13=0\r", "P13=708\r", "N13=41A\r", "V13=B4\r", "T13=514\r", "Z13=2\r"},
                {"n1p33?", "n1p33=0\r", "n1v93=708\r", "n1v73=41A\r", "n1vF3=B4\r", "n1vD3=514\r",
                 "n1p33=2\r"});
  }

  // Opens the form, takes the last row of the list and presses OK; the exchange `failing` of
  // those that OK makes fails, 0: none.
  void PressOk(int failing) {
    Give({{"P", 2000}, {"N", 900}, {"V", 160}, {"T", 0}, {"Z", 2}});
    Forget();
    form.Open();
    ExpectTelegrams(Of({"P13?", "N13?", "V13?", "T13?"}, {"n1v93?", "n1v73?", "n1vF3?", "n1vD3?"}));
    form.Cbo_Click(5);
    Forget();
    telegrams_before_wait = 0;
    fail_at = failing;
    form.CmdOK_Click();
  }
  // The first `count` telegrams and the one that brings the state back.
  Telegrams FirstAndLast(int count) const {
    Telegrams some = First(writes, count);
    some.push_back(writes.back());
    return some;
  }
  void ExpectAllParameters() {
    EXPECT_EQ(Register("P"), 1800);
    EXPECT_EQ(Register("N"), 1050);
    EXPECT_EQ(Register("V"), 180);
    EXPECT_EQ(Register("T"), 1300);
    EXPECT_EQ(Register("Z"), 2);
  }

  Telegrams writes;
  PidParameters& form = program.pid_parameters;
};

const Telegrams kAsked = {"controller: new parameters"};
const Telegrams kAskedInVain = {"controller: new parameters", "check: Tavrel connected ?"};

class PidOnAGoodWire : public PidOnTheRealWire {};

TEST_P(PidOnAGoodWire, SwitchesOffWritesWaitsAndSwitchesOnAgain) {
  PressOk(0);
  ExpectTelegrams(writes);
  EXPECT_EQ(telegrams_before_wait, 6) << "all but the last one";
  EXPECT_EQ(Boxes(), kAsked);
  EXPECT_FALSE(form.IsOpen());
  ExpectAllParameters();
}

TEST_P(PidOnTheRealWire, WritesNothingWithoutTheState) {
  PressOk(1);
  ExpectTelegrams(First(writes, 1));
  EXPECT_EQ(Boxes(), kAskedInVain);
  EXPECT_TRUE(form.IsOpen());
  EXPECT_EQ(Register("P"), 2000);
  EXPECT_EQ(Register("Z"), 2);
}

TEST_P(PidOnTheRealWire, BringsTheStateBackIfItCannotSwitchOff) {
  PressOk(2);
  ExpectTelegrams(FirstAndLast(2));
  EXPECT_EQ(telegrams_before_wait, 0) << "nothing to wait for";
  EXPECT_EQ(Boxes(), kAskedInVain);
  EXPECT_TRUE(form.IsOpen());
  EXPECT_EQ(Register("Z"), 2);
}

// Beneath the wait bar the parameter is read back, so that the next OK sends it again only if it
// has not arrived.
TEST_P(PidOnTheRealWire, StopsAtAParameterReadsItBackAndGoesOnFromThere) {
  const Telegrams reads =
      Of({"P13?", "N13?", "V13?", "T13?"}, {"n1v93?", "n1v73?", "n1vF3?", "n1vD3?"});
  for (int failing = 3; failing <= 6; ++failing) {
    PressOk(failing);
    Telegrams expected = First(writes, failing);
    expected.push_back(reads.at(static_cast<std::size_t>(failing - 3)));
    expected.push_back(writes.back());
    ExpectTelegrams(expected);
    EXPECT_EQ(telegrams_before_wait, failing);
    EXPECT_EQ(Boxes(), kAskedInVain);
    ASSERT_TRUE(form.IsOpen());
    EXPECT_EQ(Register("Z"), 2);
    Forget();
    form.CmdOK_Click();
    const int arrived = HowItFails().is_carried_out ? failing : failing - 1;
    Telegrams rest = First(writes, 2);
    rest.insert(rest.end(), writes.begin() + arrived, writes.end());
    ExpectTelegrams(arrived == 6 ? Telegrams{} : rest);
    EXPECT_FALSE(form.IsOpen());
    ExpectAllParameters();
  }
}

TEST_P(PidOnTheRealWire, TriesTheLastTelegramAgain) {
  PressOk(7);
  ExpectTelegrams(FirstAndLast(7));
  EXPECT_EQ(Boxes(), kAsked);
  EXPECT_FALSE(form.IsOpen());
  ExpectAllParameters();
}

TEST_P(PidOnTheRealWire, TellsThatTheControllerIsOffAfterTwoTries) {
  for_good = true;
  PressOk(7);
  ExpectTelegrams(FirstAndLast(7));
  EXPECT_EQ(Boxes(), (Telegrams{"controller: new parameters", "controller: controller is off"}));
  EXPECT_FALSE(form.IsOpen());
  EXPECT_EQ(Register("Z"), HowItFails().is_carried_out ? 2 : 0);
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, PidOnAGoodWire,
                         testing::Combine(testing::Bool(), testing::Values(kNone)),
                         [](const auto& test) { return NameOf(test.param); });
INSTANTIATE_TEST_SUITE_P(EachFailure, PidOnTheRealWire, testing::ValuesIn(EachFailureOnce()),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace tavrel
