#include "work/controller_settings.h"

#include <gmock/gmock.h>

#include <optional>
#include <ostream>

#include "tests/support/control_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Settings : public testing::Test, public ControlBench {
 protected:
  Settings() {
    Register('H') = 20 * 300;
    Register('M') = 20 * 250;
    Register('I') = 37;
    Register('W') = 20 * 200;
    Register('G') = 20 * 5;
  }
  ControllerSettings& Open() {
    dialog.Open();
    Count();
    return dialog;
  }
  // Opens, types, presses OK; the last box.
  std::string Ok(const std::vector<std::pair<int, std::string>>& typed) {
    bench.dialogs.boxes.clear();
    ControllerSettings& now = Open();
    for (const auto& [box, text] : typed) {
      now.TBox_Change(box, text);
      now.TBox_LostFocus(box);
    }
    now.CmdOK_Click();
    return LastBox();
  }

  ControllerSettings& dialog = bench.controller_settings;
};

TEST_F(Settings, ShowsWhatTheInstrumentTells) {
  const ControllerSettings& now = Open();
  EXPECT_EQ(now.TBox(kUpperBox), "300.0");
  EXPECT_EQ(now.TBox(kFinalBox), "250.0");
  EXPECT_EQ(now.TBox(kFirstIncrementBox), "22.20");
  EXPECT_EQ(now.TBox(kSecondIncrementBox), "0.37");
  EXPECT_EQ(now.TBox(kSetpointBox), "200.0");
  EXPECT_EQ(now.TBox(kLowerBox), "5.0");
  EXPECT_FALSE(now.CtrlFailed());
  EXPECT_EQ(Unit().UnitSetpoint, 4000);
  EXPECT_EQ(Unit().UnitIncrement, 37);
  EXPECT_FALSE(bench.state.SlotDirty[1]);
  EXPECT_EQ(bench.state.ActiveView, View::kTavCtrl);
}

TEST_F(Settings, CountsTheRampByTheHourForInstrumentsOfThatKind) {
  bench.state.Settings.VerType = "H-series";
  Register('I') = 123;
  const ControllerSettings& now = Open();
  EXPECT_EQ(now.TBox(kFirstIncrementBox), "12.3");
  EXPECT_EQ(now.TBox(kSecondIncrementBox), "0.205");
  EXPECT_STREQ(now.IncrementCaption(kFirstIncrementBox), "increment     °C / h");
  EXPECT_STREQ(now.IncrementCaption(kSecondIncrementBox), "increment     °C / min");
}

TEST_F(Settings, KeepsBothIncrementsTogether) {
  ControllerSettings& now = Open();
  now.TBox_Change(kFirstIncrementBox, "30");
  EXPECT_EQ(now.TBox(kSecondIncrementBox), "0.37") << "not before the box is left";
  now.TBox_LostFocus(kFirstIncrementBox);
  EXPECT_EQ(now.TBox(kSecondIncrementBox), "0.50");
  now.TBox_Change(kSecondIncrementBox, "0,25");
  now.TBox_LostFocus(kSecondIncrementBox);
  EXPECT_EQ(now.TBox(kFirstIncrementBox), "15.00");
}

TEST_F(Settings, KeepsBothIncrementsTogetherByTheHour) {
  bench.state.Settings.VerType = "H";
  ControllerSettings& now = Open();
  now.TBox_Change(kFirstIncrementBox, "0.1");
  now.TBox_LostFocus(kFirstIncrementBox);
  EXPECT_EQ(now.TBox(kSecondIncrementBox), "0.002");
  now.TBox_Change(kSecondIncrementBox, "0.5");
  now.TBox_LostFocus(kSecondIncrementBox);
  EXPECT_EQ(now.TBox(kFirstIncrementBox), "30.0");
  Register('I') = 3000;
  EXPECT_EQ(Open().TBox(kFirstIncrementBox), "300.0");
  EXPECT_EQ(dialog.TBox(kSecondIncrementBox), "5.000");
  Register('I') = -3000;
  EXPECT_EQ(Open().TBox(kSecondIncrementBox), "-5.000");
}

TEST_F(Settings, StoresTheIncrementThroughTheSecondUnit) {
  EXPECT_EQ(Ok({{kFirstIncrementBox, "30.4"}}), "");
  EXPECT_EQ(Register('I'), 51) << "30.4 / 60 shows as 0.51";
  bench.state.Settings.VerType = "H";
  EXPECT_EQ(Ok({{kSecondIncrementBox, "0.002"}}), "");
  EXPECT_EQ(Register('I'), 1) << "0.002 x 600 = 1.2";
}

TEST_F(Settings, TakesAnIncrementThatIsStillInEdit) {
  ControllerSettings& now = Open();
  now.TBox_Change(kFirstIncrementBox, "30");
  now.CmdOK_Click();
  EXPECT_EQ(Register('I'), 50);
}

TEST_F(Settings, SendsNothingWhenNothingWasTouched) {
  Register('W') = 4001;  // 200.05 shows as 200.1
  Register('I') = 1;
  const UnitRecord before = Unit();
  EXPECT_EQ(Ok({}), "");
  EXPECT_THAT(Sent(), IsEmpty());
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_EQ(bench.state.ActiveView, View::kTavWork);
  EXPECT_EQ(Unit().UnitSetpoint, 4001);
  EXPECT_EQ(Unit().UnitRole, before.UnitRole);
}

TEST_F(Settings, LimitsTheSetpointByTheUpperLimit) {
  Register('M') = 20 * 900;
  EXPECT_EQ(Ok({{kUpperBox, "1100"}, {kSetpointBox, "1000"}}), "");
  EXPECT_EQ(Register('W'), 20000);
  EXPECT_EQ(Ok({{kUpperBox, "1005"}}), "check: setpoint:\n15 ... 995");
  EXPECT_EQ(Ok({{kUpperBox, "1100"}, {kSetpointBox, "1000.1"}}), "check: setpoint:\n15 ... 1000");
  EXPECT_EQ(dialog.RefusedBox(), kSetpointBox);
  EXPECT_TRUE(dialog.IsOpen());
  EXPECT_EQ(Ok({{kSetpointBox, "14.9"}}), "check: setpoint:\n15 ... 1000");
  EXPECT_EQ(Ok({{kUpperBox, "1100.1"}}), "check: upper limit:\n910 ... 1100");
}

TEST_F(Settings, WantsTheUpperLimitAboveAFinalValueThatIsNotUsed) {
  EXPECT_EQ(Ok({{kUpperBox, "259.9"}}), "check: upper limit:\n260 ... 1100");
  EXPECT_EQ(Ok({{kUpperBox, "260"}}), "");
  EXPECT_EQ(Register('H'), 5200);
}

TEST_F(Settings, HoldsTheFinalValueBetweenTheLimits) {
  EXPECT_EQ(Ok({{kFinalBox, "14.9"}}), "check: final value:\n15 ... 290");
  EXPECT_EQ(Ok({{kFinalBox, "15"}}), "");
  EXPECT_EQ(Ok({{kFinalBox, "290.1"}}), "check: upper limit:\n300.1 ... 1100");
}

TEST_F(Settings, AllowsALowerLimitOfMinus500AndNotATenthBelow) {
  Register('W') = 20 * 20;
  EXPECT_EQ(Ok({{kLowerBox, "-500"}}), "");
  EXPECT_EQ(Register('G'), -10000);
  EXPECT_EQ(Ok({{kLowerBox, "-500.1"}}), "check: lower limit:\n-500 ... 10");
  EXPECT_EQ(Ok({{kLowerBox, "10.1"}}), "check: setpoint:\n20.1 ... 290");
}

TEST_F(Settings, HoldsTheIncrementBetweenNothingAndOne) {
  EXPECT_EQ(Ok({{kSecondIncrementBox, "1.01"}}), "check: increment (°C/sec):\n0 ... 1");
  EXPECT_EQ(Ok({{kSecondIncrementBox, "1"}}), "");
  EXPECT_EQ(Ok({{kSecondIncrementBox, "-0.01"}}), "check: increment (°C/sec):\n0 ... 1");
  bench.state.Settings.VerType = "H";
  EXPECT_EQ(Ok({{kSecondIncrementBox, "1.001"}}), "check: increment (°C/h):\n0 ... 1");
}

TEST_F(Settings, RefusesAnUnknownValueByItsOwnName) {
  const std::vector<std::pair<int, std::string>> names = {{1, "setpoint:\n15 ... 290"},
                                                          {2, "upper limit:\n260 ... 1100"},
                                                          {3, "final value:\n15 ... 290"},
                                                          {4, "increment (°C/sec):\n0 ... 1"},
                                                          {5, "lower limit:\n-500 ... 190"}};
  for (const auto& [exchange, text] : names) {
    exchanges = 0;
    fail_at = exchange;
    ControllerSettings& now = Open();
    fail_at = 0;
    Greet();
    EXPECT_TRUE(now.CtrlFailed());
    now.CmdOK_Click();
    EXPECT_EQ(LastBox(), "check: " + text);
    EXPECT_TRUE(now.IsOpen());
  }
  EXPECT_EQ(Ok({{kSetpointBox, "?"}}), "check: setpoint:\n15 ... 290");
}

TEST_F(Settings, SendsAValueThatWasNotToldEvenIfTheHeaderHasIt) {
  Unit().UnitSetpoint = 3000;
  exchanges = 0;
  fail_at = 1;
  ControllerSettings& now = Open();
  fail_at = 0;
  EXPECT_EQ(now.TBox(kSetpointBox), "?");
  EXPECT_EQ(Unit().UnitSetpoint, 3000);
  now.TBox_Change(kSetpointBox, "150");
  now.CmdOK_Click();
  EXPECT_THAT(Sent(), ElementsAre("W22=BB8\r"));
  EXPECT_EQ(Register('W'), 3000);
}

TEST_F(Settings, AsksForTheInstrumentBeforeAnythingElse) {
  fail_from = 1;
  EXPECT_EQ(Ok({}), "check: Tavrel connected ?");
  EXPECT_THAT(Sent(), ElementsAre("T20?", "T20?")) << "it may answer again by now";
  EXPECT_TRUE(dialog.IsOpen());
}

TEST_F(Settings, ChangesNothingOnEscape) {
  ControllerSettings& now = Open();
  now.TBox_Change(kSetpointBox, "100");
  now.Quit();
  EXPECT_THAT(Sent(), IsEmpty());
  EXPECT_EQ(bench.state.ActiveView, View::kTavWork);
  EXPECT_EQ(Unit().UnitSetpoint, 4000);
}

TEST_F(Settings, OpensThePidParameters) {
  ControllerSettings& now = Open();
  EXPECT_TRUE(now.HasPid());
  now.cmdPID_Click();
  EXPECT_THAT(bench.screens.shown, ElementsAre(View::kTavPid));
}

TEST_F(Settings, AsksASilentInstrumentOnce) {
  bench.line.silent = {kInet};
  Count();
  dialog.Open();
  EXPECT_EQ(Sent().size(), 1U);
  for (const int box :
       {kUpperBox, kFinalBox, kFirstIncrementBox, kSecondIncrementBox, kSetpointBox, kLowerBox}) {
    EXPECT_EQ(dialog.TBox(box), "?") << box;
  }
  EXPECT_TRUE(dialog.CtrlFailed());
}

TEST_F(Settings, AsksNoMoreOnceTheInstrumentFallsSilent) {
  lose_at = 3;
  Count();
  dialog.Open();
  EXPECT_EQ(Sent().size(), 3U);
  EXPECT_EQ(dialog.TBox(kSetpointBox), "200.0");
  EXPECT_EQ(dialog.TBox(kUpperBox), "300.0");
  EXPECT_EQ(dialog.TBox(kFinalBox), "?");
  EXPECT_EQ(dialog.TBox(kLowerBox), "?");
}

TEST_F(Settings, TouchesNothingForTheViewedFile) {
  bench.state.SelSlot = kViewedFile;
  dialog.Open();
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_THAT(Sent(), IsEmpty());
}

// A value of the dialog: its box and register, what the instrument has, and what the user types.
struct TypedValue {
  int box;
  char letter;
  int old_raw;
  const char* old_text;
  int new_raw;
  const char* new_text;
  const char* name;
};

constexpr std::array kTypedValues = {
    TypedValue{kUpperBox, 'H', 6000, "300.0", 7000, "350.0", "upper limit"},
    TypedValue{kFinalBox, 'M', 5000, "250.0", 4400, "220.0", "final value"},
    TypedValue{kSecondIncrementBox, 'I', 37, "0.37", 50, "0.50", "increment"},
    TypedValue{kSetpointBox, 'W', 4000, "200.0", 5200, "260.0", "setpoint"},
    TypedValue{kLowerBox, 'G', 100, "5.0", 200, "10.0", "lower limit"}};

// A write of the dialog goes wrong. Nobody knows then what the instrument holds.
class Unsure : public Settings {
 protected:
  Unsure() { Register('Z') = 2; }

  // Types the new value; its write is carried out or not, and in no case acknowledged.
  void TypeInVain(const TypedValue& value, bool is_carried_out) {
    bench.dialogs.announced.clear();
    fail_at = lose_at = 0;
    Register(value.letter) = static_cast<std::int16_t>(value.old_raw);
    bench.clock.AdvanceSeconds(1);
    Greet();
    Open().TBox_Change(value.box, value.new_text);
    (is_carried_out ? lose_at : fail_at) = 1;
    dialog.CmdOK_Click();
    EXPECT_EQ(LastBox(), "check: Tavrel connected ?");
    EXPECT_TRUE(dialog.IsOpen());
    fail_at = lose_at = 0;
  }
  static std::string Told(const TypedValue& value, const std::string& held) {
    return std::string("check: ") + value.name + ":\n" + value.new_text +
           " was not acknowledged, Tavrel has " + held;
  }
};

TEST_F(Unsure, SendsTheOldValueAgainWhetherOrNotItWasReadBack) {
  for (const TypedValue& value : kTypedValues) {
    for (const bool is_carried_out : {true, false}) {
      for (const double seconds : {0.0, 1.0}) {
        TypeInVain(value, is_carried_out);
        Tick(seconds);
        bench.clock.AdvanceSeconds(1);
        dialog.TBox_Change(value.box, value.old_text);
        dialog.CmdOK_Click();
        EXPECT_EQ(Register(value.letter), value.old_raw) << value.name << seconds;
        EXPECT_FALSE(dialog.IsOpen());
      }
    }
  }
}

TEST_F(Unsure, SendsTheNewValueAgainOnlyIfTheInstrumentDoesNotHaveIt) {
  for (const TypedValue& value : kTypedValues) {
    for (const bool is_carried_out : {true, false}) {
      TypeInVain(value, is_carried_out);
      Tick(1);
      EXPECT_EQ(dialog.TBox(value.box), value.new_text) << "what is typed stays";
      Count();
      dialog.CmdOK_Click();
      EXPECT_EQ(Sent().size(), is_carried_out ? 0U : 1U) << value.name;
      EXPECT_EQ(Register(value.letter), value.new_raw);
      EXPECT_FALSE(dialog.IsOpen());
    }
  }
}

TEST_F(Unsure, TellsItInGermanToAGermanUser) {
  bench.state.Settings.HelpLang = "German";
  const TypedValue& value = kTypedValues.front();
  TypeInVain(value, false);
  Tick(1);
  EXPECT_THAT(Announced(), testing::ElementsAre(testing::AllOf(
                               testing::HasSubstr(" wurde nicht bestätigt, Tavrel hat "),
                               testing::HasSubstr(value.new_text))));
}

TEST_F(Unsure, TellsIfTheInstrumentHasAnotherValueThanTheDialogShows) {
  for (const TypedValue& value : kTypedValues) {
    TypeInVain(value, true);
    Tick(1);
    EXPECT_THAT(Announced(), IsEmpty()) << value.name;
    TypeInVain(value, false);
    Tick(1);
    EXPECT_THAT(Announced(), ElementsAre(Told(value, value.old_text)));
  }
}

TEST_F(Unsure, TellsBehindEscapeIfTheInstrumentHasNotTheValueOfBefore) {
  for (const TypedValue& value : kTypedValues) {
    TypeInVain(value, true);
    dialog.Quit();
    dialog.CloseNow();
    Tick(1);
    EXPECT_THAT(Announced(), ElementsAre(Told(value, value.new_text)));
    TypeInVain(value, false);
    dialog.CloseNow();
    Tick(1);
    EXPECT_THAT(Announced(), IsEmpty()) << value.name;
  }
}

TEST_F(Unsure, KeepsTheHeaderAsTheInstrumentIs) {
  TypeInVain(kTypedValues[3], true);
  EXPECT_EQ(Unit().UnitSetpoint, 4000) << "what was acknowledged last";
  bench.state.SlotDirty[1] = false;
  bench.state.TickFlush.At = 80000;
  dialog.CloseNow();
  Tick(1);
  EXPECT_EQ(Unit().UnitSetpoint, 5200);
  EXPECT_TRUE(bench.state.SlotDirty[1]);
}

TEST_F(Unsure, LeavesTheHeaderOfAnotherControllerAlone) {
  TypeInVain(kTypedValues[3], true);
  dialog.CloseNow();
  Unit().UnitCtrl = 4;
  Tick(1);
  EXPECT_EQ(Unit().UnitSetpoint, 4000);
  EXPECT_EQ(Announced().size(), 1U);
}

TEST_F(Unsure, AsksAgainEveryTenSecondsWhileTheInstrumentIsAway) {
  TypeInVain(kTypedValues[0], true);
  dialog.CloseNow();
  bench.line.silent = {kInet};
  Count();
  Tick(25);
  EXPECT_THAT(Sent(), ElementsAre("H22?", "H22?", "H22?"));
  EXPECT_THAT(Announced(), IsEmpty());
  bench.line.silent.clear();
  Tick(10);
  EXPECT_THAT(Announced(), ElementsAre(Told(kTypedValues[0], "350.0")));
  Count();
  Tick(20);
  EXPECT_THAT(Sent(), IsEmpty()) << "it is known now";
}

// On a ramp the setpoint moves by itself, so that it tells nothing about the write.
TEST_F(Unsure, DoesNotJudgeTheSetpointOnARamp) {
  for (const int state : {3, 4}) {
    TypeInVain(kTypedValues[3], true);
    Register('Z') = static_cast<std::int16_t>(state);
    Register('W') = 4321;
    Count();
    Tick(12);
    EXPECT_THAT(Sent(), ElementsAre("Z22?")) << state;
    EXPECT_THAT(Announced(), IsEmpty());
    dialog.TBox_Change(kSetpointBox, "200.0");
    dialog.CmdOK_Click();
    EXPECT_EQ(Register('W'), 4000) << "it is not known, so it is sent";
    Register('Z') = 2;
  }
}

TEST_F(Unsure, ReadsTheSetpointBackOnceTheStateIsKnown) {
  for (const int state : {0, 1, 2, 5, -1}) {
    TypeInVain(kTypedValues[3], true);
    dialog.CloseNow();
    Register('Z') = static_cast<std::int16_t>(state);
    Count();
    lose_at = 1;
    Tick(12);
    lose_at = 0;
    EXPECT_THAT(Sent(), ElementsAre("Z22?", "Z22?", "W22?")) << state;
    EXPECT_EQ(Announced().size(), 1U);
  }
}

TEST_F(Unsure, IsSureAgainOnceTheDialogIsOpenedAnew) {
  TypeInVain(kTypedValues[3], true);
  Open();
  EXPECT_EQ(dialog.TBox(kSetpointBox), "260.0");
  Tick(1);
  EXPECT_THAT(Sent(), IsEmpty());
  EXPECT_THAT(Announced(), IsEmpty());
}

TEST_F(Unsure, ComparesWithWhatWasKnownBeforeTheFirstOfSeveralFailures) {
  TypeInVain(kTypedValues[3], false);
  fail_from = 1;
  dialog.TBox_Change(kSetpointBox, "210.0");
  dialog.CmdOK_Click();
  fail_from = 0;
  dialog.CloseNow();
  Tick(12);
  EXPECT_THAT(Announced(), IsEmpty()) << "it has the value of before";
}

// The telegrams of an opening and of an OK that changes all values.
struct SettingsLine {
  bool plugin;
  std::vector<std::string> reads;
  std::vector<std::string> writes;
  std::string greeting;  // asks an instrument whether it answers again
  LineFailure failure = LineFailure::kRefusal;
};

std::ostream& operator<<(std::ostream& out, const SettingsLine& line) {
  return out << (line.plugin ? "plugin_" : "direct_") << NameOf(line.failure);
}

class SettingsOnTheWire : public testing::TestWithParam<SettingsLine> {
 protected:
  SettingsOnTheWire() : control(GetParam().plugin) {
    control.failure = GetParam().failure;
    control.Register('H') = 6000;
    control.Register('M') = 5000;
    control.Register('I') = 37;
    control.Register('W') = 4000;
    control.Register('G') = 100;
  }
  void Open() {
    control.Count();
    dialog.Open();
  }
  void TypeAll() {
    dialog.TBox_Change(kUpperBox, "500");
    dialog.TBox_Change(kFinalBox, "400");
    dialog.TBox_Change(kSecondIncrementBox, "0.5");
    dialog.TBox_Change(kSetpointBox, "300");
    dialog.TBox_Change(kLowerBox, "-10");
  }

  ControlBench control;
  ControllerSettings& dialog = control.bench.controller_settings;
};

TEST_P(SettingsOnTheWire, ReadsAndWritesInTheirOrder) {
  Open();
  EXPECT_EQ(control.Sent(), GetParam().reads);
  TypeAll();
  control.Count();
  dialog.CmdOK_Click();
  EXPECT_EQ(control.Sent(), GetParam().writes);
  EXPECT_TRUE(control.bench.state.SlotDirty[1]);
  EXPECT_EQ(control.Unit().UnitLower, -200);
}

TEST_P(SettingsOnTheWire, ShowsAQuestionMarkForEachReadThatFails) {
  constexpr std::array kBoxes = {kSetpointBox, kUpperBox, kFinalBox, kSecondIncrementBox,
                                 kLowerBox};
  control.failure = LineFailure::kRefusal;  // an answer, so that the next one may be good
  for (int exchange = 1; exchange <= 5; ++exchange) {
    control.fail_at = exchange;
    dialog.CloseNow();
    Open();
    EXPECT_EQ(control.Sent(), GetParam().reads);
    for (int read = 1; read <= 5; ++read) {
      const bool failed = dialog.TBox(kBoxes.at(static_cast<std::size_t>(read - 1))) == "?";
      EXPECT_EQ(failed, read == exchange) << exchange;
    }
  }
}

TEST_P(SettingsOnTheWire, StopsAtTheFirstWriteThatIsNotAcknowledged) {
  const auto copies = [this] {
    const UnitRecord& unit = control.Unit();
    return std::vector<int>{unit.UnitUpper, unit.UnitFinal, unit.UnitIncrement, unit.UnitSetpoint,
                            unit.UnitLower};
  };
  const std::vector<int> old = {6000, 5000, 37, 4000, 100};
  const std::vector<int> wanted = {10000, 8000, 50, 6000, -200};
  const std::vector<std::string>& all = GetParam().writes;
  for (int exchange = 1; exchange <= 5; ++exchange) {
    control.Register('H') = 6000;
    control.Register('M') = 5000;
    control.Register('I') = 37;
    control.Register('W') = 4000;
    control.Register('G') = 100;
    control.fail_at = 0;
    dialog.CloseNow();
    Open();
    TypeAll();
    control.Count();
    control.fail_at = exchange;
    dialog.CmdOK_Click();
    EXPECT_EQ(control.Sent(), std::vector<std::string>(all.begin(), all.begin() + exchange));
    EXPECT_EQ(control.LastBox(), "check: Tavrel connected ?");
    ASSERT_TRUE(dialog.IsOpen());
    std::vector<int> expected = wanted;
    std::copy(old.begin() + exchange - 1, old.end(), expected.begin() + exchange - 1);
    EXPECT_EQ(copies(), expected) << exchange;

    control.fail_at = 0;
    control.Count();
    dialog.CmdOK_Click();
    std::vector<std::string> rest = {GetParam().greeting};
    rest.insert(rest.end(), all.begin() + exchange - 1, all.end());
    EXPECT_EQ(control.Sent(), rest);
    EXPECT_EQ(copies(), wanted);
    EXPECT_FALSE(dialog.IsOpen());
  }
}

INSTANTIATE_TEST_SUITE_P(
    BothKindsOfLine, SettingsOnTheWire,
    testing::ValuesIn(WithEachFailure<SettingsLine>(
        {SettingsLine{false,
                      {"W22?", "H22?", "M22?", "I22?", "G22?"},
                      {"H22=2710\r", "M22=1F40\r", "I22=32\r", "W22=1770\r", "G22=FF38\r"},
                      "T20?"},
         SettingsLine{true,
                      {"n2p2?", "n2v12?", "n2v62?", "n2v22?", "n2v2?"},
                      {"n2v12=2710\r", "n2v62=1F40\r", "n2v22=32\r", "n2p2=1770\r", "n2v2=FF38\r"},
                      "n2vD0?"}})),
    testing::PrintToStringParamName());

}  // namespace
}  // namespace tavrel
