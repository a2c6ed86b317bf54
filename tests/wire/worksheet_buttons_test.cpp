#include <array>

#include "tests/support/control_bench.h"
#include "tests/wire/button_fixture.h"
#include "work/controller_settings.h"

namespace tavrel {
namespace {

class WorksheetOnTheWire : public ButtonsOnTheWire {};

TEST_P(WorksheetOnTheWire, SwitchesTheControllerIsothermalAndOff) {
  const std::vector<std::tuple<int, Telegrams, CtrlButton, int>> buttons = {
      {0, Of({"Z13=2\r"}, {"n1p33=2\r"}), CtrlButton::kIsotherm, 2},
      {2, Of({"Z13=0\r"}, {"n1p33=0\r"}), CtrlButton::kOff, 0}};
  for (const auto& [index, telegrams, shown, state] : buttons) {
    const int before = state == 0 ? 2 : 0;
    Give({{"Z", before}});
    OpenSheet();
    const CtrlButton shown_before = Shown().CtrlDown;
    Forget();
    fail_at = Fails() ? 1 : 0;
    program.worksheet.cmd_Ctrl_Click(index);
    ExpectTelegrams(telegrams);
    EXPECT_EQ(Shown().CtrlDown, Fails() ? shown_before : shown);
    EXPECT_EQ(Register("Z"), HowItFails().is_carried_out ? state : before);
  }
}

const Telegrams kOldSetpoint = {"controller: controller is on,\nthe setpoint is still the old one"};
const Telegrams kUnsureSetpoint = {
    "controller: controller is on,\nthe setpoint was not acknowledged"};
const Telegrams kNotConnected = {"check: Tavrel connected ?"};

TEST_P(WorksheetOnTheWire, StartsARampFromTheActualValue) {
  const Telegrams telegrams = Of({"Y13?", "Z13=3\r", "Y13?"}, {"n1p23?", "n1p33=3\r", "n1p23?"});
  const std::string setpoint = Of({"W13="}, {"n1p3="}).front();
  const std::array<Telegrams, 5> boxes = {Telegrams{}, kNotConnected, kNotConnected, kOldSetpoint,
                                          kUnsureSetpoint};
  for (int failing = Fails() ? 1 : 0; failing <= (Fails() ? 4 : 0); ++failing) {
    Give({{"Z", 0}, {"W", 1600}});
    OpenSheet();
    fail_at = failing;
    program.worksheet.cmd_Ctrl_Click(1);
    const int sent = Fails() ? failing : 4;
    Telegrams expected = First(telegrams, std::min(sent, 3));
    const std::string actual = instrument.LastReply(telegrams.back());
    if (sent == 4) {
      expected.push_back(setpoint + actual.substr(actual.find_first_not_of('0')) + "\r");
    }
    ExpectTelegrams(expected);
    const bool is_acknowledged = failing == 0 || failing > 2;
    EXPECT_EQ(Shown().CtrlDown, is_acknowledged ? CtrlButton::kDynamic : CtrlButton::kOff)
        << failing;
    EXPECT_EQ(Boxes(), boxes.at(static_cast<std::size_t>(failing))) << failing;
    const bool has_state = is_acknowledged || (failing == 2 && HowItFails().is_carried_out);
    EXPECT_EQ(Register("Z"), has_state ? 3 : 0) << failing;
  }
}

// An instrument that answers, but has no value to start a ramp from.
class RampWithoutAValue : public ButtonsOnTheWire {};

TEST_P(RampWithoutAValue, IsNotBegunOrKeepsItsSetpoint) {
  const Telegrams telegrams = Of({"Y13?", "Z13=3\r", "Y13?"}, {"n1p23?", "n1p33=3\r", "n1p23?"});
  for (const int failing : {1, 3}) {
    Give({{"Z", 0}, {"W", 1600}});
    OpenSheet();
    fail_at = failing;
    program.worksheet.cmd_Ctrl_Click(1);
    ExpectTelegrams(First(telegrams, failing));
    const bool is_on = failing == 3;
    EXPECT_EQ(Shown().CtrlDown, is_on ? CtrlButton::kDynamic : CtrlButton::kOff);
    EXPECT_EQ(Boxes(), is_on ? kOldSetpoint : kNotConnected);
    EXPECT_GE(Register("W"), 1600) << "never the 8000 of no value";
    EXPECT_EQ(Register("Z"), is_on ? 3 : 0);
  }
}

TEST_P(RampWithoutAValue, OfAProgramIsRepeatedWithoutABox) {
  const Telegrams telegrams = Of({"M13=1F40\r", "Y13?"}, {"n1v63=1F40\r", "n1p23?"});
  program.home.Write("A.PRG", ProgramBytes({{3, 25, 8000, 10}}));
  program.dialogs.chosen_file = program.home.File("A.PRG");
  ASSERT_EQ(program.runner.Start(1), ProgramStart::kStarted);
  for (int minute = 0; minute < 2; ++minute) {
    Forget();
    fail_at = 2;
    program.runner.StepProgram(1);
    ExpectTelegrams(telegrams);
    EXPECT_EQ(Unit().UnitProgStep, 0);
    EXPECT_EQ(Register("W"), 1600);
    EXPECT_EQ(Register("Z"), 2);
  }
  Greet();
  program.runner.StepProgram(1);
  EXPECT_EQ(Unit().UnitProgStep, 1);
  EXPECT_EQ(Register("Z"), 3);
  EXPECT_TRUE(Boxes().empty());
}

TEST_P(WorksheetOnTheWire, StartsARecordingOnlyIfAllIsAcknowledged) {
  const Telegrams telegrams = Of({"T10?", "S11=1\r", "R11=0\r", "S12=1\r", "R12=0\r"},
                                 {"n1vD0?", "n1vC1=1\r", "n1vB1=0\r", "n1vC2=1\r", "n1vB2=0\r"});
  for (int failing = Fails() ? 1 : 0; failing <= (Fails() ? 5 : 0); ++failing) {
    OpenSheet();
    fail_at = failing;
    program.worksheet.cmd_Rec_Click(1);
    ExpectTelegramsOfAStart(Fails() ? First(telegrams, failing) : telegrams);
    EXPECT_EQ(Boxes(), Fails() ? Telegrams{"start recording: failed"} : Telegrams{});
    EXPECT_EQ(Shown().RecOnDown, !Fails());
    EXPECT_EQ(Shown().RecOffDown, Fails());
    EXPECT_EQ(FileHeader(kName).UnitRecOn, Fails() ? 0 : 1);
    EXPECT_EQ(telegrams_before_wait, Fails() ? 0 : 5);
  }
}

TEST_P(WorksheetOnTheWire, SendsTheChangedSettingsOfTheController) {
  const Telegrams reads = Of({"W13?", "H13?", "M13?", "I13?", "G13?"},
                             {"n1p3?", "n1v13?", "n1v63?", "n1v23?", "n1v3?"});
  const Telegrams writes =
      Of({"H13=1B58\r", "M13=1388\r", "I13=32\r", "W13=FA0\r", "G13=C8\r"},
         {"n1v13=1B58\r", "n1v63=1388\r", "n1v23=32\r", "n1p3=FA0\r", "n1v3=C8\r"});
  const std::array<const char*, 6> texts = {"350", "250", "30", "0.5", "200", "10"};
  for (int failing = Fails() ? 1 : 0; failing <= (Fails() ? 5 : 0); ++failing) {
    Give(kSettings);
    dialog = [&] {
      Forget();
      ControllerSettings& settings = program.controller_settings;
      settings.Open();
      ExpectTelegrams(reads);
      for (int box = 0; box < 6; ++box) {
        settings.TBox_Change(box, texts.at(static_cast<std::size_t>(box)));
      }
      Forget();
      fail_at = failing;
      settings.CmdOK_Click();
      if (!Fails()) {
        ExpectTelegrams(writes);
        EXPECT_FALSE(settings.IsOpen());
        EXPECT_TRUE(Boxes().empty());
        return;
      }
      ExpectTelegrams(First(writes, failing));
      EXPECT_EQ(Boxes(), Telegrams{"check: Tavrel connected ?"}) << failing;
      ASSERT_TRUE(settings.IsOpen());
      // It answers again; nothing but the dialog itself can find that out.
      instrument.Forget();
      settings.CmdOK_Click();
      Telegrams rest = Of({"T10?"}, {"n1vD0?"});
      rest.insert(rest.end(), writes.begin() + failing - 1, writes.end());
      ExpectTelegrams(rest);
      EXPECT_FALSE(settings.IsOpen());
    };
    program.worksheet.cmd_setCtrl_Click();
    EXPECT_EQ(Register("H"), 7000);
    EXPECT_EQ(Register("M"), 5000);
    EXPECT_EQ(Register("I"), 50);
    EXPECT_EQ(Register("W"), 4000);
    EXPECT_EQ(Register("G"), 200);
  }
}

// A write of TavCtrl is not acknowledged: nobody knows what the instrument holds.
class UnsureOnTheWire : public ButtonsOnTheWire {
 protected:
  struct Value {
    int box;
    const char* letter;
    int raw;
    const char* text;
    const char* other_text;
  };
  inline static const std::vector<Value> kValues = {{kUpperBox, "H", 6000, "300", "350"},
                                                    {kFinalBox, "M", 2000, "100", "120"},
                                                    {kSecondIncrementBox, "I", 5, "0.05", "0.5"},
                                                    {kSetpointBox, "W", 1600, "80", "90"},
                                                    {kLowerBox, "G", 100, "5", "10"}};

  // Types another value; its exchange fails as this test is for. `then` is what the user does.
  void TypeInVain(const Value& value, const std::function<void(ControllerSettings&)>& then) {
    Give(kSettings);
    dialog = [&] {
      ControllerSettings& settings = program.controller_settings;
      settings.Open();
      settings.TBox_Change(value.box, value.other_text);
      Forget();
      fail_at = 1;
      settings.CmdOK_Click();
      EXPECT_EQ(Boxes(), kNotConnected) << value.letter;
      ASSERT_TRUE(settings.IsOpen());
      fail_at = 0;
      then(settings);
    };
    program.worksheet.cmd_setCtrl_Click();
  }
};

TEST_P(UnsureOnTheWire, SendsTheOldValueAgain) {
  for (const Value& value : kValues) {
    for (const bool is_read_back : {false, true}) {
      TypeInVain(value, [&](ControllerSettings& settings) {
        if (is_read_back) {
          instrument.Forget();
          EXPECT_TRUE(program.RunUntil([&] { return !instrument.Telegrams(0).empty(); }));
        }
        settings.TBox_Change(value.box, value.text);
        settings.CmdOK_Click();
        EXPECT_FALSE(settings.IsOpen());
      });
      EXPECT_EQ(Register(value.letter), value.raw) << value.letter << is_read_back;
    }
  }
}

TEST_P(UnsureOnTheWire, ReadsBackBehindEscapeAndTellsWhatIsOtherThanBefore) {
  TypeInVain(kValues.front(), [](ControllerSettings& settings) { settings.Quit(); });
  const std::string read = Of({"H13?"}, {"n1v13?"}).front();
  EXPECT_TRUE(program.RunUntil([&] { return instrument.LastTime(read) > 0; }));
  const bool differs = HowItFails().is_carried_out;
  EXPECT_TRUE(program.RunUntil([&] { return Unit().UnitUpper == (differs ? 7000 : 6000); }));
  EXPECT_EQ(Register("H"), Unit().UnitUpper);
  ASSERT_EQ(program.dialogs.announced.size(), differs ? 1U : 0U);
  if (differs) {
    EXPECT_EQ(program.dialogs.announced.front().Text,
              "upper limit:\n350.0 was not acknowledged, Tavrel has 350.0");
  }
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, UnsureOnTheWire,
                         testing::Combine(testing::Bool(), testing::Values(kLostRequest, kLostReply,
                                                                           kRefusal, kLateReply)),
                         [](const auto& test) { return NameOf(test.param); });
INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, WorksheetOnTheWire,
                         testing::Combine(testing::Bool(), testing::Values(kNone)),
                         [](const auto& test) { return NameOf(test.param); });
INSTANTIATE_TEST_SUITE_P(EachFailure, WorksheetOnTheWire, testing::ValuesIn(EachFailureOnce()),
                         [](const auto& test) { return NameOf(test.param); });
INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, RampWithoutAValue,
                         testing::Combine(testing::Bool(), testing::Values(kNoValueToRead)),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace tavrel
