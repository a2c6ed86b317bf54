#include "setup/numbering.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>

#include "tests/setup/setup_bench.h"
#include "tests/support/plugin_line.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;

// Instruments on a plug-in line, as far as their numbers go.
// Levers: inets (numbers on the line), replies (what comes in place of the next answers, in their
// order; "-" is a command that is carried out without its answer).
class NumberLine {
 public:
  std::set<int> inets;
  std::deque<std::string> replies;

  std::string Answer(const std::string& command) {
    const std::string answer = Carry(command);
    if (replies.empty()) {
      return answer;
    }
    const std::string reply = replies.front();
    replies.pop_front();
    if (reply == "lost reply") {
      return "";
    }
    return reply == "good" ? answer : reply;
  }

 private:
  // A command that is to be lost or refused on its way is not carried out.
  [[nodiscard]] bool Arrives() const {
    return replies.empty() || replies.front() == "good" || replies.front() == "lost reply";
  }
  std::string Carry(const std::string& command) {
    const bool numbered = command[1] != 'm';
    const int inet = numbered ? command[1] - '0' + 1 : 1;
    const std::string rest = command.substr(numbered ? 2 : 1);
    if (inets.count(inet) == 0 || rest.substr(0, 5) != "m8000") {
      return "";
    }
    if (rest[5] == '?') {
      return "000" + std::to_string(inet - 1) + "\r";
    }
    const int to = rest[6] - '0' + 1;
    if (Arrives()) {
      inets.erase(inet);
      inets.insert(to);
    }
    return ".";
  }
};

class TavNum : public testing::Test {
 protected:
  void Start(int com_mode = 1) {
    bench.state.Settings.ComMode = com_mode;
    if (com_mode != 0) {
      bench.port.answer = [this](const std::string& command) {
        const bool is_number = command.find("m8000") != std::string::npos;
        return is_number ? line.Answer(command) : bench.line.Answer(InDirectWords(command));
      };
    }
    bench.Start();
    bench.port.sent.clear();
  }
  void Open() {
    turn.reset();
    form->Open();
    turn = std::make_unique<SteppedScreens::Turn>(bench.stepped, View::kTavNum,
                                                  [this] { form->Step(); });
  }
  // One pulse that makes an exchange, with those before it in which the line settles.
  Texts Pulse() {
    bench.port.sent.clear();
    for (int tick = 0; tick < 8 && bench.port.sent.empty(); ++tick) {
      bench.cycle.Tick();
      bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
    }
    return bench.port.sent;
  }
  Texts Pulses(int count) {
    Texts all;
    for (int pulse = 0; pulse < count; ++pulse) {
      for (const std::string& sent : Pulse()) {
        all.push_back(sent);
      }
    }
    return all;
  }
  [[nodiscard]] std::string Buttons() const {
    std::string enabled;
    for (int number = 1; number <= kInets; ++number) {
      const bool is_enabled = form->Values().cmd_TavNo[number];
      enabled += is_enabled ? std::to_string(number) : "-";
    }
    return enabled;
  }

  BenchProgram bench;
  NumberLine line;
  Numbering* form = &bench.numbering;
  std::unique_ptr<SteppedScreens::Turn> turn;
};

TEST_F(TavNum, AsksOneNumberInAPulseAndShowsTheResultAtOnce) {
  line.inets = {2, 5};
  Start();
  bench.state.ActiveInet = 5;
  Open();
  EXPECT_EQ(bench.state.ActiveView, View::kTavNum);
  const Texts asked = {"nm8000?", "n1m8000?", "n2m8000?", "n3m8000?", "n4m8000?", "n5m8000?"};
  for (std::size_t number = 0; number < asked.size(); ++number) {
    EXPECT_TRUE(form->Values().cboTavNo.empty());
    EXPECT_FALSE(form->Values().IsListEnabled);
    EXPECT_EQ(Pulse(), Texts{asked.at(number)});
  }
  EXPECT_EQ(form->Values().cboTavNo, (std::vector<int>{2, 5}));
  EXPECT_EQ(form->Values().Selected, 1) << "the selected instrument";
  EXPECT_TRUE(form->Values().IsListEnabled);
  EXPECT_EQ(Buttons(), "1-34-6");
  EXPECT_TRUE(form->Values().ComIcon) << "the last number did not answer";
  EXPECT_EQ(Pulse(), Texts{"n4m8000?"});
  EXPECT_FALSE(form->Values().ComIcon);
  EXPECT_EQ(Pulse(), Texts{"n4m8000?"});
  form->cboTavNo_Click(0);
  EXPECT_EQ(Pulse(), Texts{"n1m8000?"});
}

TEST_F(TavNum, SelectsTheFirstIfTheSelectedInstrumentIsNotThere) {
  for (const int inet : {0, 3}) {
    line.inets = {1, 4, 6};
    if (!bench.cycle.IsEnabled()) {
      Start();
    }
    bench.state.ActiveInet = inet;
    Open();
    Pulses(6);
    EXPECT_EQ(form->Values().Selected, 0);
    EXPECT_FALSE(form->Values().ComIcon) << "the last number answers";
    EXPECT_EQ(Buttons(), "-23-5-");
  }
}

TEST_F(TavNum, ScansAgainAndAgainUntilAnInstrumentIsPluggedIn) {
  Start();
  Open();
  Pulses(6);
  EXPECT_EQ(Buttons(), "123456");
  EXPECT_TRUE(form->Values().ComIcon);
  bench.dialogs.boxes.clear();
  form->cmd_TavNo_Click(3);
  EXPECT_EQ(Pulses(2), (Texts{"nm8000?", "n1m8000?"})) << "the buttons do nothing";
  line.inets = {1};
  Pulses(4);
  EXPECT_TRUE(form->Values().cboTavNo.empty()) << "number 1 has been asked before";
  Pulses(6);
  EXPECT_EQ(form->Values().cboTavNo, std::vector<int>{1});
}

TEST_F(TavNum, GivesTheSelectedInstrumentANewNumber) {
  line.inets = {1, 4};
  Start();
  ASSERT_TRUE(bench.output_records.Load());
  ASSERT_EQ(bench.output_records.Put(4, {{4, 2, 0}}), "");
  bench.state.ActiveInet = 4;
  Open();
  Pulses(6);
  form->cmd_TavNo_Click(4);  // in use
  form->cmd_TavNo_Click(0);
  form->cmd_TavNo_Click(7);
  EXPECT_EQ(Pulse(), Texts{"n3m8000?"});
  form->cmd_TavNo_Click(6);
  EXPECT_FALSE(form->Values().IsListEnabled);
  form->cboTavNo_Click(0);
  EXPECT_EQ(Pulse(), Texts{"n3m8000=5\r"});
  EXPECT_EQ(Pulses(6).front(), "nm8000?");
  EXPECT_EQ(form->Values().cboTavNo, (std::vector<int>{1, 6}));
  EXPECT_EQ(form->Values().Selected, 1) << "under its new number";
  EXPECT_TRUE(bench.output_records.Has(6)) << "a test of its outputs is ended there";
  EXPECT_EQ(Buttons(), "-2345-");
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  form->Quit();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

TEST_F(TavNum, SendsNumberOneAsNought) {
  line.inets = {3};
  Start();
  Open();
  Pulses(6);
  form->cmd_TavNo_Click(1);
  EXPECT_EQ(Pulse(), Texts{"n2m8000=0\r"});
}

// The command has not arrived: the old number still answers, the new one is silent.
TEST_F(TavNum, RepeatsAnAssignmentThatWasNotCarriedOut) {
  for (const std::string fate : {"", "?", ".?"}) {
    line.inets = {1};
    if (!bench.cycle.IsEnabled()) {
      Start();
    }
    Open();
    Pulses(6);
    form->cmd_TavNo_Click(3);
    if (fate == ".?") {
      continue;  // an acknowledge is one, whatever follows
    }
    line.replies = {fate};
    EXPECT_EQ(Pulse(), Texts{"nm8000=2\r"});
    EXPECT_EQ(line.inets, std::set<int>{1});
    EXPECT_EQ(Pulses(3), (Texts{"n2m8000?", "n2m8000?", "n2m8000?"})) << "three silences";
    EXPECT_EQ(Pulse(), Texts{"nm8000?"});
    EXPECT_EQ(Pulse(), Texts{"nm8000=2\r"});
    EXPECT_EQ(line.inets, std::set<int>{3});
  }
}

// The acknowledge is lost: the new number answers, and nothing is repeated.
TEST_F(TavNum, DoesNotRepeatAnAssignmentThatWasCarriedOut) {
  line.inets = {1};
  Start();
  Open();
  Pulses(6);
  form->cmd_TavNo_Click(3);
  line.replies = {"lost reply"};
  EXPECT_EQ(Pulse(), Texts{"nm8000=2\r"});
  EXPECT_FALSE(form->Values().IsListEnabled);
  EXPECT_FALSE(form->Values().lbl_State.empty());
  line.inets.insert(1);  // the next fresh instrument is put to the line at this moment
  EXPECT_EQ(Pulse(), Texts{"n2m8000?"});
  Pulses(6);
  EXPECT_EQ(form->Values().cboTavNo, (std::vector<int>{1, 3}));
  EXPECT_EQ(line.inets, (std::set<int>{1, 3}));
}

TEST_F(TavNum, BelievesOneSilenceOnALostReplyNoMore) {
  line.inets = {1};
  Start();
  Open();
  Pulses(6);
  form->cmd_TavNo_Click(3);
  line.replies = {"lost reply", "lost reply", "00G2\r", "lost reply"};
  Pulse();
  line.inets.insert(1);
  EXPECT_EQ(Pulses(4), (Texts{"n2m8000?", "n2m8000?", "n2m8000?", "n2m8000?"}));
  Pulses(6);
  EXPECT_EQ(line.inets, (std::set<int>{1, 3})) << "the other instrument has kept its number";
}

TEST_F(TavNum, GoesOnLookingWhileNeitherNumberAnswers) {
  line.inets = {1};
  Start();
  Open();
  Pulses(6);
  form->cmd_TavNo_Click(3);
  line.inets.clear();
  EXPECT_EQ(Pulses(8), (Texts{"nm8000=2\r", "n2m8000?", "n2m8000?", "n2m8000?", "nm8000?",
                              "nm8000?", "nm8000?", "n2m8000?"}));
  EXPECT_TRUE(form->Values().ComIcon);
  line.inets = {1};
  EXPECT_EQ(Pulses(4), (Texts{"n2m8000?", "n2m8000?", "nm8000?", "nm8000=2\r"}));
  EXPECT_EQ(line.inets, std::set<int>{3});
}

TEST_F(TavNum, SaysWhatNobodyKnowsWhenItIsLeftMeanwhile) {
  line.inets = {1};
  Start();
  Open();
  Pulses(6);
  form->cmd_TavNo_Click(3);
  line.replies = {"lost reply"};
  Pulse();
  bench.dialogs.boxes.clear();
  form->Quit();
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text,
            "Tavrel 1 has not acknowledged its new number 3.\nIt may have either of them.");
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(TavNum, LeavesAtOnceInEachStep) {
  line.inets = {1};
  Start();
  for (int pulses = 0; pulses <= 9; ++pulses) {
    Open();
    Pulses(pulses);
    form->Quit();
    EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  }
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

// The count of misses is cleared by an assignment or a scan only: behind a scan the first silence
// shows.
TEST_F(TavNum, ShowsTheFirstSilenceBehindAScan) {
  line.inets = {6};
  Start();
  Open();
  Pulses(6);
  EXPECT_FALSE(form->Values().ComIcon);
  line.inets.clear();
  Pulse();
  EXPECT_TRUE(form->Values().ComIcon);
  line.inets = {6};
  Pulse();
  EXPECT_FALSE(form->Values().ComIcon);
  line.inets.clear();
  Pulse();
  EXPECT_TRUE(form->Values().ComIcon);
  line.replies = {"?"};
  Pulse();
  EXPECT_FALSE(form->Values().ComIcon) << "a refusal is no silence";
  EXPECT_EQ(form->Values().cboTavNo, std::vector<int>{6}) << "it is watched on";
}

TEST_F(TavNum, AsksWhereAnInstalledTestUsesEitherNumber) {
  bench.Install(7, "M260314A.OVN", TestHeader(1, 1, 5));
  bench.Install(9, "M260314B.OVN", TestHeader(3, 2, 6));
  bench.Install(11, "M260314C.OVN", TestHeader(6, 2, 6));
  line.inets = {1, 2};
  Start();
  Open();
  Pulses(6);
  bench.dialogs.boxes.clear();
  bench.dialogs.ok = false;
  form->cmd_TavNo_Click(3);
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_NE(bench.dialogs.boxes[0].Text.find("row 7:  Oven  (Tavrel 1)"), std::string::npos);
  EXPECT_NE(bench.dialogs.boxes[0].Text.find("row 9:  Oven  (Tavrel 3)"), std::string::npos);
  EXPECT_EQ(bench.dialogs.boxes[0].Text.find("row 11"), std::string::npos);
  EXPECT_TRUE(bench.dialogs.boxes[0].PresetIsNo);
  EXPECT_EQ(Pulse(), Texts{"nm8000?"}) << "nothing was assigned";
  form->cboTavNo_Click(1);
  form->cmd_TavNo_Click(4);
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U) << "no test has 2 or 4";
  EXPECT_EQ(Pulse(), Texts{"n1m8000=3\r"});
}

TEST_F(TavNum, DoesNothingWhenItWasLeftBeneathTheQuestion) {
  bench.Install(7, "M260314A.OVN", TestHeader(1, 1, 5));
  line.inets = {1};
  Start();
  Open();
  Pulses(6);
  bench.dialogs.on_box = [this] {
    if (form->IsOpen()) {
      form->Quit();
    }
  };
  form->cmd_TavNo_Click(3);
  bench.port.sent.clear();
  form->Step();
  EXPECT_TRUE(bench.port.sent.empty());
}

// The orders of end actions belong to the instrument.
TEST_F(TavNum, TakesTheOrdersToSwitchOffAlong) {
  line.inets = {1};
  Start();
  bench.engine.Orders().Give(1, 1, 2);
  bench.engine.Orders().Give(2, 3, 4);
  Open();
  Pulses(6);
  form->cmd_TavNo_Click(3);
  Pulse();
  EXPECT_TRUE(bench.engine.Orders().IsWaiting(3, 2));
  EXPECT_FALSE(bench.engine.Orders().IsWaiting(1, 2));
  EXPECT_FALSE(bench.engine.Orders().IsWaiting(3, 4)) << "that was for another instrument";
}

TEST_F(TavNum, ShowsHowLongTheSmallestBufferLasts) {
  bench.Install(4, "M260314A.OVN", TestHeader(1, 1, 5, {}, true));
  UnitRecord slow = TestHeader(2, 2, 6, {}, true);
  slow.UnitInterval = 360;
  bench.Install(8, "M260314B.OVN", slow);
  Start(0);
  bench.Run(15);
  Open();
  EXPECT_EQ(form->Values().lbl_Buffer, "recordings wait in the instruments, at least for:  24 h");
  bench.clock.AdvanceSeconds(88'000);
  form->Step();
  const std::string text = form->Values().lbl_Buffer;
  EXPECT_NE(text.find(" min"), std::string::npos) << text;
  bench.clock.AdvanceSeconds(88'000);
  form->Step();
  EXPECT_EQ(form->Values().lbl_Buffer, "recordings wait in the instruments, at least for:  0 s");
}

TEST_F(TavNum, SaysNothingOfBuffersWhenNothingRecords) {
  bench.Install(4, "M260314A.OVN", TestHeader(1, 1, 5));
  Start();
  Open();
  Pulse();
  EXPECT_EQ(form->Values().lbl_Buffer, "");
}

// A register has an address on a direct line, memory has none.
TEST_F(TavNum, NeedsASingleInstrumentOnADirectLine) {
  Start(0);
  std::string memory;
  bench.port.answer = [&](const std::string& command) {
    if (command.substr(0, 5) == "8000>") {
      memory = command;
      bench.line.silent = {1, 2, 3, 4, 6};
      return std::string();
    }
    return bench.line.Answer(command);
  };
  bench.line.silent = {2, 3, 5, 6};
  Open();
  EXPECT_EQ(Pulses(6), (Texts{"T00?", "T10?", "T20?", "T30?", "T40?", "T50?"}));
  EXPECT_EQ(form->Values().cboTavNo, (std::vector<int>{1, 4}));
  EXPECT_EQ(Buttons(), "------");
  EXPECT_EQ(form->Values().lbl_Note,
            "direct line:  numbering needs the plug-in line or a single instrument");
  form->cmd_TavNo_Click(5);
  EXPECT_EQ(Pulse(), Texts{"T00?"});
  form->Quit();

  bench.line.silent = {1, 2, 3, 5, 6};
  Open();
  Pulses(6);
  EXPECT_EQ(Buttons(), "123-56");
  form->cmd_TavNo_Click(5);
  EXPECT_EQ(Pulse(), Texts{"8000>4\r"});
  EXPECT_EQ(memory, "8000>4\r");
  EXPECT_EQ(Pulse(), Texts{"T40?"}) << "nobody has seen an acknowledge";
  Pulses(6);
  EXPECT_EQ(form->Values().cboTavNo, std::vector<int>{5});
}

TEST_F(TavNum, HasNothingToAssignInSimulation) {
  bench.state.Settings.CommPort = "----";
  bench.dialogs.ok = false;
  bench.Start();
  Open();
  for (int pulse = 0; pulse < 7; ++pulse) {
    form->Step();
  }
  EXPECT_EQ(form->Values().cboTavNo.size(), 6U);
  EXPECT_EQ(Buttons(), "------");
  EXPECT_EQ(form->Values().lbl_Note, "Tavrel is simulated:  there is no number to assign");
}

TEST_F(TavNum, OpensALostPortAgain) {
  line.inets = {1};
  Start();
  Open();
  Pulses(6);
  bench.port.Vanish();
  bench.port.open_error = 1;
  for (int tick = 0; tick < 100; ++tick) {
    bench.cycle.Tick();
    bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
  }
  EXPECT_TRUE(form->Values().ComIcon);
  bench.port.open_error = 0;
  bench.port.sent.clear();
  for (int tick = 0; tick < 220; ++tick) {
    bench.cycle.Tick();
    bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
  }
  EXPECT_LE(bench.port.reopened, 3);
  EXPECT_FALSE(form->Values().ComIcon);
  EXPECT_FALSE(bench.port.sent.empty());
}

TEST_F(TavNum, SpeaksGerman) {
  bench.state.Settings.HelpLang = "German";
  Start(0);
  Open();
  EXPECT_EQ(form->TipLanguage(), Language::kGerman);
  EXPECT_EQ(form->Values().lbl_State, "Geräte werden gesucht ...");
  EXPECT_EQ(form->Values().lbl_Note,
            "direkte Leitung:  Nummern brauchen die Plug-in-Leitung oder ein einzelnes Gerät");
}

}  // namespace
}  // namespace tavrel
