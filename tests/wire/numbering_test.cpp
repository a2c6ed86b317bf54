#include <gtest/gtest.h>

#include <algorithm>

#include "setup/installation.h"
#include "setup/numbering.h"
#include "tests/setup/setup_bench.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

using Telegrams = std::vector<std::string>;

// Numbers of virtual instruments, pulse by pulse.
class NumbersOnTheWire : public testing::Test {
 protected:
  void Start(bool plugin, const std::vector<std::string>& options) {
    std::vector<std::string> all = {"--line-speed", "none"};
    all.insert(all.end(), options.begin(), options.end());
    instrument = std::make_unique<LiveInstrument>(program.home, plugin, all);
    ASSERT_TRUE(instrument->IsUp());
    program.Start(plugin, "M260101A.OVN", TestHeader(6, 4, 15));
    program.state.ActiveInet = 1;
    Open();
  }
  void Open() {
    turn.reset();
    form->Open();
    turn = std::make_unique<SteppedScreens::Turn>(program.stepped, View::kTavNum,
                                                  [this] { form->Step(); });
  }
  // Pulses until so many exchanges were made; the telegrams of them.
  Telegrams Pulses(std::size_t count) {
    instrument->Forget();
    const auto end = program.link.Exchanges() + count;
    EXPECT_TRUE(program.RunUntil([&] { return program.link.Exchanges() >= end; }));
    Telegrams telegrams = instrument->Telegrams(count);
    telegrams.resize(std::min(telegrams.size(), count));
    return telegrams;
  }
  bool FindsNumbers(const std::vector<int>& numbers) {
    return program.RunUntil(
        [&] { return form->Values().IsListEnabled && form->Values().cboTavNo == numbers; });
  }
  // The next pulse is the first one of the assignment.
  void Assign(int number) {
    ASSERT_TRUE(program.RunUntil([this] { return form->Values().IsListEnabled; }));
    form->cmd_TavNo_Click(number);
  }
  void Attach(int inet) { ASSERT_TRUE(instrument->Tell("attach " + std::to_string(inet))); }

  WireProgram program{1};
  std::unique_ptr<LiveInstrument> instrument;
  Numbering* form = &program.numbering;
  std::unique_ptr<SteppedScreens::Turn> turn;
};

const Telegrams kScan = {"nm8000?", "n1m8000?", "n2m8000?", "n3m8000?", "n4m8000?", "n5m8000?"};

TEST_F(NumbersOnTheWire, AreFoundAndGivenOnAPlugInLine) {
  Start(true, {"--inet", "1,4"});
  EXPECT_EQ(Pulses(6), kScan);
  EXPECT_EQ(form->Values().cboTavNo, (std::vector<int>{1, 4}));
  EXPECT_EQ(Pulses(2), (Telegrams{"nm8000?", "nm8000?"}));
  form->cmd_TavNo_Click(3);
  EXPECT_EQ(Pulses(7),
            (Telegrams{"nm8000=2\r", kScan[0], kScan[1], kScan[2], kScan[3], kScan[4], kScan[5]}));
  EXPECT_EQ(form->Values().cboTavNo, (std::vector<int>{3, 4}));
  EXPECT_EQ(Pulses(1), Telegrams{"n2m8000?"});
  EXPECT_EQ(instrument->LastReply("n2m8000?"), "0002");
}

TEST_F(NumbersOnTheWire, AreGivenToASingleInstrumentOnADirectLine) {
  Start(false, {"--inet", "2"});
  EXPECT_EQ(Pulses(6), (Telegrams{"T00?", "T10?", "T20?", "T30?", "T40?", "T50?"}));
  form->cmd_TavNo_Click(5);
  EXPECT_EQ(Pulses(2), (Telegrams{"8000>4\r", "T40?"}));
  EXPECT_TRUE(FindsNumbers({5}));
}

TEST_F(NumbersOnTheWire, AreNotGivenOnADirectLineOfSeveral) {
  Start(false, {"--inet", "2,3"});
  EXPECT_TRUE(FindsNumbers({2, 3}));
  form->cmd_TavNo_Click(5);
  EXPECT_EQ(Pulses(2), (Telegrams{"T10?", "T10?"}));
  EXPECT_FALSE(form->Values().lbl_Note.empty());
}

// The write fails in each way in which it can. Where it was not carried out it is repeated, once
// the new number is known to be silent; where it was, it is not.
struct FailedWrite {
  const char* fault;
  bool is_repeated;
};

class FailedAssignment : public NumbersOnTheWire,
                         public testing::WithParamInterface<FailedWrite> {};

TEST_P(FailedAssignment, IsRepeatedOnlyIfItWasNotCarriedOut) {
  Start(true, {"--inet", "1"});
  EXPECT_TRUE(FindsNumbers({1}));
  ASSERT_TRUE(instrument->Tell(std::string("fault 1 ") + GetParam().fault + " times 1"));
  form->cmd_TavNo_Click(3);
  instrument->Forget();
  EXPECT_TRUE(FindsNumbers({3}));
  const Telegrams expected =
      GetParam().is_repeated
          ? Telegrams{"nm8000=2\r", "n2m8000?", "n2m8000?", "n2m8000?", "nm8000?", "nm8000=2\r"}
          : Telegrams{"nm8000=2\r", "n2m8000?"};
  Telegrams telegrams = instrument->Telegrams(expected.size() + kScan.size());
  ASSERT_GE(telegrams.size(), expected.size() + kScan.size());
  EXPECT_EQ(Telegrams(telegrams.begin(), telegrams.begin() + static_cast<int>(expected.size())),
            expected);
  EXPECT_EQ(telegrams.at(expected.size()), kScan[0]);
}

// So do the reads behind it, one after another: the number is written as often as before.
TEST_P(FailedAssignment, IsFoundOutThoughReadsBehindItFailToo) {
  for (const int times : {2, 3}) {
    SCOPED_TRACE(times);
    Start(true, {"--inet", "1"});
    EXPECT_TRUE(FindsNumbers({1}));
    const std::string fault = std::string("fault 1 ") + GetParam().fault;
    ASSERT_TRUE(instrument->Tell(fault + " times " + std::to_string(times)));
    instrument->Forget();
    form->cmd_TavNo_Click(3);
    EXPECT_TRUE(FindsNumbers({3}));
    const Telegrams telegrams = instrument->Telegrams(kScan.size());
    EXPECT_EQ(std::count(telegrams.begin(), telegrams.end(), "nm8000=2\r"),
              GetParam().is_repeated ? 2 : 1);
    form->Quit();
    instrument.reset();
  }
}

INSTANTIATE_TEST_SUITE_P(EachFailure, FailedAssignment,
                         testing::Values(FailedWrite{"lost-request on", true},
                                         FailedWrite{"lost-reply on", false},
                                         FailedWrite{"refusal on", true},
                                         FailedWrite{"late-reply 185", false}));

// A read of the scan that fails: the number seems to be free until the next scan.
TEST_F(NumbersOnTheWire, MissAnInstrumentWhoseReplyIsLostInTheScan) {
  Start(true, {"--inet", "1,4", "--fault", "4:lost-reply"});
  EXPECT_TRUE(FindsNumbers({1}));
  ASSERT_TRUE(instrument->Tell("fault 4 none"));
  instrument->Forget();
  form->cmd_TavNo_Click(4);  // it is taken: the instrument refuses
  EXPECT_TRUE(FindsNumbers({1, 4}));
  EXPECT_EQ(instrument->Telegrams(2).at(1), "n3m8000?") << "and is found when it is looked for";
}

// Two instruments out of their boxes, both with number 1, one after the other; of the first the
// acknowledge is lost while the second is put to the line.
TEST_F(NumbersOnTheWire, AreGivenToOneInstrumentAfterTheOther) {
  Start(true, {"--inet", "6"});
  EXPECT_TRUE(FindsNumbers({6}));
  Attach(1);
  Open();
  EXPECT_TRUE(FindsNumbers({1, 6}));
  ASSERT_TRUE(instrument->Tell("fault 1 lost-reply on times 1"));
  form->cmd_TavNo_Click(2);
  Pulses(1);
  Attach(1);
  EXPECT_TRUE(FindsNumbers({1, 2, 6}));
  form->cboTavNo_Click(0);
  ASSERT_TRUE(instrument->Tell("fault 1 lost-reply on times 1"));
  form->cmd_TavNo_Click(3);
  EXPECT_TRUE(FindsNumbers({2, 3, 6}));
  EXPECT_EQ(instrument->LastReply("n1m8000?"), "0001");
  EXPECT_EQ(instrument->LastReply("n2m8000?"), "0002");
  form->Quit();
  turn.reset();

  Installation& installation = program.installation;
  installation.Open();
  for (const int row : {2, 3}) {
    installation.PutNumber(row, row);
    installation.PutRole(row, 1, Role::kController);
    installation.PutRole(row, 5, Role::kReference);
    installation.Test_Ext_Change(row, "NEW");
  }
  installation.CmdOK_Click();
  EXPECT_FALSE(installation.IsOpen());
  EXPECT_TRUE(program.RunUntil([this] {
    const auto& rows = program.sheet.Values().Rows;
    return !rows[2].lb_Ref.empty() && !rows[3].lb_Ref.empty();
  }));
  EXPECT_EQ(program.sheet.Values().Rows[2].lb_TavNo, "2");
  EXPECT_EQ(program.sheet.Values().Rows[3].lb_TavNo, "3");
  EXPECT_EQ(program.sheet.Values().Rows[3].sh_TavNo, kYellow);
}

// Instruments that share a number answer as one while they say the same, and take a new number
// together: they have to be put to the line one after the other.
TEST_F(NumbersOnTheWire, AreSharedByInstrumentsOfOneNumber) {
  Start(true, {"--inet", "1"});
  Attach(1);
  Open();
  EXPECT_TRUE(FindsNumbers({1}));
  ASSERT_TRUE(instrument->Tell("detach 1"));
  form->cmd_TavNo_Click(4);
  EXPECT_TRUE(FindsNumbers({4}));
  Attach(1);
  Open();
  EXPECT_TRUE(FindsNumbers({1, 4}));
}

}  // namespace
}  // namespace tavrel
