#include "work/pid_parameters.h"

#include <gmock/gmock.h>

#include <optional>
#include <ostream>

#include "tests/support/control_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void FillRegisters(ControlBench& control) {
  control.Register('P') = 2000;
  control.Register('N') = 900;
  control.Register('V') = 160;
  control.Register('T') = 0;
  control.Register('Z') = 2;
}

class Pid : public testing::Test, public ControlBench {
 protected:
  Pid() { FillRegisters(*this); }
  PidParameters& Open() {
    dialog.Open();
    Count();
    return dialog;
  }
  std::vector<std::string> Boxes() const {
    return {dialog.TBox(1), dialog.TBox(2), dialog.TBox(3), dialog.TBox(4)};
  }
  std::string Ok(int box, const std::string& text) {
    bench.dialogs.boxes.clear();
    Open().TBox_Change(box, text);
    dialog.CmdOK_Click();
    return LastBox();
  }

  PidParameters& dialog = bench.pid_parameters;
};

TEST_F(Pid, ShowsWhatTheInstrumentTells) {
  Open();
  EXPECT_THAT(Boxes(), ElementsAre("100.0", "900", "160", "0"));
  EXPECT_EQ(dialog.Cbo(), 0);
  EXPECT_EQ(bench.state.ActiveView, View::kTavPid);
}

TEST_F(Pid, AsksASilentInstrumentOnce) {
  bench.line.silent = {kInet};
  Count();
  dialog.Open();
  EXPECT_EQ(Sent().size(), 1U);
  EXPECT_THAT(Boxes(), ElementsAre("?", "?", "?", "?"));
}

TEST_F(Pid, AsksForEachParameterOfAnInstrumentThatRefusesOne) {
  fail_at = 2;
  Open();
  EXPECT_THAT(Boxes(), ElementsAre("100.0", "?", "160", "0"));
}

TEST_F(Pid, AsksThoughTheExchangeBeforeItFoundNobody) {
  bench.link.ComInet = 5;
  bench.link.ComLetter = "Y";
  bench.line.silent = {5};
  bench.link.ReadReg();
  Open();
  EXPECT_THAT(Boxes(), ElementsAre("100.0", "900", "160", "0"));
}

TEST_F(Pid, FillsTheBoxesFromTheList) {
  PidParameters& now = Open();
  now.Cbo_Click(1);
  EXPECT_THAT(Boxes(), ElementsAre("100.0", "900", "160", "0"));
  now.Cbo_Click(2);
  EXPECT_THAT(Boxes(), ElementsAre("13.0", "400", "20", "0"));
  now.Cbo_Click(3);
  EXPECT_THAT(Boxes(), ElementsAre("12.0", "600", "30", "0"));
  now.Cbo_Click(4);
  EXPECT_THAT(Boxes(), ElementsAre("25.0", "780", "40", "0"));
  now.Cbo_Click(5);
  EXPECT_THAT(Boxes(), ElementsAre("90.0", "1050", "180", "1300"));
  now.Cbo_Click(0);
  EXPECT_THAT(Boxes(), ElementsAre("90.0", "1050", "180", "1300")) << "the first line clears none";
  EXPECT_THAT(Sent(), IsEmpty());
  now.Cbo_Click(6);
  now.Cbo_Click(-1);
  EXPECT_EQ(now.Cbo(), 0);
}

TEST_F(Pid, ClosesWithoutAQuestionIfNothingChanged) {
  Register('P') = 2001;  // 100.05 shows as 100.1
  Open().CmdOK_Click();
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_THAT(bench.dialogs.boxes, IsEmpty());
  EXPECT_THAT(Sent(), IsEmpty());
  EXPECT_EQ(bench.state.ActiveView, View::kTavWork);
}

TEST_F(Pid, ChecksTheRanges) {
  EXPECT_EQ(Ok(1, "0"), "check: proportional:\n1 ... 500");
  EXPECT_EQ(Ok(1, "0.9"), "check: proportional:\n1 ... 500");
  EXPECT_EQ(Ok(1, "500.1"), "check: proportional:\n1 ... 500");
  EXPECT_EQ(Ok(2, "-1"), "check: integral:\n0 ... 10000");
  EXPECT_EQ(Ok(2, "10001"), "check: integral:\n0 ... 10000");
  EXPECT_EQ(Ok(3, "10001"), "check: derivative:\n0 ... 10000");
  EXPECT_EQ(Ok(4, "10001"), "check: filter for setpoint:\n0 ... 10000");
  EXPECT_EQ(dialog.RefusedBox(), 4);
  EXPECT_TRUE(dialog.IsOpen());
  EXPECT_THAT(Sent(), IsEmpty());
  EXPECT_EQ(Ok(1, "500"), "controller: new parameters");
  EXPECT_EQ(Register('P'), 10000);
  EXPECT_EQ(Ok(1, "1,25"), "controller: new parameters");
  EXPECT_EQ(Register('P'), 25);
}

TEST_F(Pid, SendsNothingOnCancel) {
  bench.dialogs.ok = false;
  EXPECT_EQ(Ok(2, "800"), "controller: new parameters");
  EXPECT_EQ(bench.dialogs.boxes.back().Icon, BoxIcon::kQuestion);
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(Pid, SendsOnlyWhatChanged) {
  EXPECT_EQ(Ok(3, "200"), "controller: new parameters");
  EXPECT_THAT(Sent(), ElementsAre("Z22?", "Z22=0\r", "V22=C8\r", "Z22=2\r"));
  EXPECT_THAT(bench.screens.shown, ElementsAre(View::kTavWait));
}

TEST_F(Pid, SwitchesOnAgainBeforeTheProgramEnds) {
  bench.screens.on_show = [this](View) {
    bench.commands.Close();
    EXPECT_FALSE(bench.commands.HasEnded()) << "the controller is off";
  };
  Ok(3, "200");
  EXPECT_EQ(Register('Z'), 2);
  bench.commands.Close();
  EXPECT_TRUE(bench.commands.HasEnded());
}

TEST_F(Pid, LeavesAControllerOffThatWasOff) {
  Register('Z') = 0;
  Open().TBox_Change(3, "200");
  fail_from = 4;
  dialog.CmdOK_Click();
  EXPECT_THAT(Sent(), ElementsAre("Z22?", "Z22=0\r", "V22=C8\r", "Z22=0\r", "Z22=0\r"));
  EXPECT_EQ(LastBox(), "controller: new parameters") << "no alarm: it is off as it was before";
}

TEST_F(Pid, RefusesAnUnknownValueByItsOwnName) {
  exchanges = 0;
  fail_at = 2;
  PidParameters& now = Open();
  EXPECT_EQ(now.TBox(2), "?");
  fail_at = 0;
  now.CmdOK_Click();
  EXPECT_EQ(LastBox(), "check: integral:\n0 ... 10000");
}

TEST_F(Pid, StaysOffIfTheRecordingEndedDuringTheWait) {
  Unit().UnitRecOn = 1;
  Unit().UnitEndAction = 1;
  bench.screens.on_show = [this](View) {
    Unit().UnitRecOn = 0;
    Register('Z') = 0;
  };
  Ok(3, "200");
  EXPECT_THAT(Sent(), ElementsAre("Z22?", "Z22=0\r", "V22=C8\r"));
  EXPECT_EQ(Register('Z'), 0);
}

TEST_F(Pid, SendsTheOldParameterAgainAfterALostAcknowledge) {
  const std::vector<std::tuple<int, char, const char*, const char*, int>> parameters = {
      {1, 'P', "100.0", "90", 2000},
      {2, 'N', "900", "800", 900},
      {3, 'V', "160", "150", 160},
      {4, 'T', "0", "30", 0}};
  for (const auto& [box, letter, old_text, new_text, old_raw] : parameters) {
    for (const bool is_read_back : {false, true}) {
      bench.clock.AdvanceSeconds(1);
      Greet();
      Open().TBox_Change(box, new_text);
      lose_at = 3;
      dialog.CmdOK_Click();
      lose_at = 0;
      ASSERT_TRUE(dialog.IsOpen());
      EXPECT_NE(Register(letter), old_raw);
      if (is_read_back) {
        Tick(1);
      }
      dialog.TBox_Change(box, old_text);
      dialog.CmdOK_Click();
      EXPECT_EQ(Register(letter), old_raw) << letter;
      EXPECT_FALSE(dialog.IsOpen());
    }
  }
  EXPECT_THAT(Announced(), IsEmpty());
}

TEST_F(Pid, TellsBehindEscapeWhatTheInstrumentTookAllTheSame) {
  Open().TBox_Change(1, "90");
  lose_at = 3;
  dialog.CmdOK_Click();
  lose_at = 0;
  dialog.Quit();
  Tick(1);
  EXPECT_THAT(Announced(),
              ElementsAre("check: proportional:\n90.0 was not acknowledged, Tavrel has "
                          "90.0"));
}

// The state that the controller had before the dialog switched it off is still owed to it.
TEST_F(Pid, BringsBackTheStateOfBeforeTheFirstTry) {
  Open().TBox_Change(3, "200");
  fail_from = 3;
  dialog.CmdOK_Click();
  EXPECT_EQ(Register('Z'), 0);
  ASSERT_TRUE(dialog.IsOpen());
  fail_from = 0;
  bench.clock.AdvanceSeconds(1);
  Greet();
  dialog.CmdOK_Click();
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_EQ(Register('V'), 200);
  EXPECT_EQ(Register('Z'), 2);
}

TEST_F(Pid, LeavesAControllerOffThatAnEndActionHasSwitchedOffBetweenTwoTries) {
  Unit().UnitRecOn = 1;
  Unit().UnitEndAction = 1;
  Open().TBox_Change(3, "200");
  fail_from = 3;
  dialog.CmdOK_Click();
  fail_from = 0;
  Unit().UnitRecOn = 0;
  bench.clock.AdvanceSeconds(1);
  Greet();
  dialog.CmdOK_Click();
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_EQ(Register('Z'), 0);
}

// The order to switch off is repeated in the ticks beneath the wait bar, and acknowledged.
TEST_F(Pid, LeavesAControllerOffThatAnOlderOrderSwitchesOff) {
  for (const bool is_repeated : {true, false}) {
    Register('Z') = 2;
    Unit().UnitEndAction = 1;
    fail_from = 1;
    bench.engine.EndOfRecording(1);
    fail_from = 0;
    bench.clock.AdvanceSeconds(1);
    Greet();
    bench.screens.on_show = [this, is_repeated](View) { Tick(is_repeated ? 11 : 0); };
    Ok(3, is_repeated ? "200" : "210");
    EXPECT_FALSE(dialog.IsOpen());
    EXPECT_EQ(Register('Z'), 0);
    EXPECT_EQ(bench.engine.Orders().IsWaiting(kInet, kCtrl), !is_repeated);
  }
}

TEST_F(Pid, TakesNoValueForNoState) {
  Register('Z') = kNoData;
  EXPECT_EQ(Ok(3, "200"), "check: Tavrel connected ?");
  EXPECT_THAT(Sent(), ElementsAre("Z22?"));
}

struct PidLine {
  bool plugin;
  std::vector<std::string> reads;
  std::vector<std::string> writes;  // the state read and written, four parameters, the state
  LineFailure failure = LineFailure::kRefusal;
};

std::ostream& operator<<(std::ostream& out, const PidLine& line) {
  return out << (line.plugin ? "plugin_" : "direct_") << NameOf(line.failure);
}

class PidOnTheWire : public testing::TestWithParam<PidLine> {
 protected:
  PidOnTheWire() : control(GetParam().plugin) {
    FillRegisters(control);
    control.failure = GetParam().failure;
    control.bench.screens.on_show = [this](View) { before_wait = control.Sent().size(); };
    Open();
  }
  void Open() {
    dialog.CloseNow();
    control.Count();
    dialog.Open();
  }
  void Ok() {
    dialog.Cbo_Click(5);
    control.Count();
    control.bench.dialogs.boxes.clear();
    dialog.CmdOK_Click();
  }
  // The first `count` telegrams, then those of `more` by their places.
  static std::vector<std::string> Telegrams(std::size_t count, std::vector<std::size_t> more) {
    const auto& all = GetParam().writes;
    std::vector<std::string> some(all.begin(), all.begin() + static_cast<long>(count));
    for (const std::size_t place : more) {
      some.push_back(all.at(place));
    }
    return some;
  }

  ControlBench control;
  PidParameters& dialog = control.bench.pid_parameters;
  std::size_t before_wait = 0;
};

TEST_P(PidOnTheWire, SwitchesOffWritesWaitsAndSwitchesOnAgain) {
  EXPECT_EQ(control.Sent(), GetParam().reads);
  Ok();
  EXPECT_EQ(control.Sent(), GetParam().writes);
  EXPECT_EQ(before_wait, 6U) << "all but the last telegram";
  EXPECT_FALSE(dialog.IsOpen());
}

TEST_P(PidOnTheWire, WritesNothingWithoutTheState) {
  control.fail_at = 1;
  Ok();
  EXPECT_EQ(control.Sent(), Telegrams(1, {}));
  EXPECT_EQ(control.LastBox(), "check: Tavrel connected ?");
  EXPECT_TRUE(dialog.IsOpen());
}

TEST_P(PidOnTheWire, BringsTheStateBackIfItCannotSwitchOff) {
  control.fail_at = 2;
  Ok();
  EXPECT_EQ(control.Sent(), Telegrams(2, {6}));
  EXPECT_EQ(before_wait, 0U) << "nothing to wait for";
  EXPECT_EQ(control.LastBox(), "check: Tavrel connected ?");
  EXPECT_TRUE(dialog.IsOpen());
}

TEST_P(PidOnTheWire, StopsAtTheFirstParameterAndGoesOnFromThere) {
  for (std::size_t exchange = 3; exchange <= 6; ++exchange) {
    FillRegisters(control);
    control.fail_at = 0;
    Open();
    control.fail_at = static_cast<int>(exchange);
    Ok();
    EXPECT_EQ(control.Sent(), Telegrams(exchange, {6})) << exchange;
    EXPECT_EQ(before_wait, exchange);
    EXPECT_EQ(control.LastBox(), "check: Tavrel connected ?");
    ASSERT_TRUE(dialog.IsOpen());
    EXPECT_EQ(control.Register('Z'), 2);

    control.fail_at = 0;
    control.Count();
    dialog.CmdOK_Click();
    std::vector<std::string> rest = Telegrams(2, {});
    rest.insert(rest.end(), GetParam().writes.begin() + static_cast<long>(exchange) - 1,
                GetParam().writes.end());
    EXPECT_EQ(control.Sent(), rest);
    EXPECT_FALSE(dialog.IsOpen());
  }
}

TEST_P(PidOnTheWire, TriesTheLastTelegramTwice) {
  control.fail_at = 7;
  Ok();
  EXPECT_EQ(control.Sent(), Telegrams(7, {6}));
  EXPECT_EQ(control.LastBox(), "controller: new parameters");
  EXPECT_EQ(control.Register('Z'), 2);
  EXPECT_FALSE(dialog.IsOpen());
}

TEST_P(PidOnTheWire, TellsThatTheControllerIsOff) {
  control.fail_from = 7;
  Ok();
  EXPECT_EQ(control.Sent(), Telegrams(7, {6}));
  EXPECT_EQ(control.LastBox(), "controller: controller is off");
  EXPECT_EQ(control.Register('Z'), IsCarriedOut(GetParam().failure) ? 2 : 0);
  EXPECT_FALSE(dialog.IsOpen());
}

INSTANTIATE_TEST_SUITE_P(
    BothKindsOfLine, PidOnTheWire,
    testing::ValuesIn(WithEachFailure<PidLine>(
        {PidLine{false,
                 {"P22?", "N22?", "V22?", "T22?"},
                 {"Z22?", "Z22=0\r", "P22=708\r", "N22=41A\r", "V22=B4\r", "T22=514\r", "Z22=2\r"}},
         PidLine{true,
                 {"n2v92?", "n2v72?", "n2vF2?", "n2vD2?"},
                 {"n2p32?", "n2p32=0\r", "n2v92=708\r", "n2v72=41A\r", "n2vF2=B4\r", "n2vD2=514\r",
                  "n2p32=2\r"}}})),
    testing::PrintToStringParamName());

}  // namespace
}  // namespace tavrel
