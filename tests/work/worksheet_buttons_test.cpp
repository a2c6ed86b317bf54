#include <gtest/gtest.h>

#include "tests/support/start_telegrams.h"
#include "tests/support/work_bench.h"
#include "work/worksheet.h"

namespace tavrel {
namespace {

using Telegrams = std::vector<std::string>;

// A button, what it sends on either line, and what the ramp's start reads.
struct ButtonCase {
  const char* name;
  std::function<void(Worksheet&)> press;
  Telegrams direct;
  Telegrams plug_in;
  Telegrams boxes;           // by the exchange that fails
  std::size_t switches = 0;  // the exchange that switches the controller, 0: none
  std::int16_t state = 0;    // to which state
};

constexpr const char* kNotConnected = "check|Tavrel connected ?";
constexpr const char* kNotStarted = "start recording|failed";

std::vector<ButtonCase> Buttons() {
  return {{"isothermal",
           [](Worksheet& sheet) { sheet.cmd_Ctrl_Click(0); },
           {"Z13=2\r"},
           {"n1p33=2\r"},
           {kNotConnected},
           1,
           2},
          {"ramp",
           [](Worksheet& sheet) { sheet.cmd_Ctrl_Click(1); },
           {"Y13?", "Z13=3\r", "Y13?", "W13=1C9\r"},
           {"n1p23?", "n1p33=3\r", "n1p23?", "n1p3=1C9\r"},
           {kNotConnected, kNotConnected,
            "controller|controller is on,\nthe setpoint is still the old one",
            "controller|controller is on,\nthe setpoint was not acknowledged"},
           2,
           3},
          {"off",
           [](Worksheet& sheet) { sheet.cmd_Ctrl_Click(2); },
           {"Z13=0\r"},
           {"n1p33=0\r"},
           {kNotConnected},
           1,
           0},
          {"start",
           [](Worksheet& sheet) { sheet.cmd_Rec_Click(1); },
           {"T10?", "S11=1\r", "R11=0\r", "S12=1\r", "R12=0\r"},
           {"n1vD0?", "n1vC1=1\r", "n1vB1=0\r", "n1vC2=1\r", "n1vB2=0\r"},
           Telegrams(5, kNotStarted)},
          {"stop", [](Worksheet& sheet) { sheet.cmd_Rec_Click(2); }, {}, {}, {}}};
}

// Room for one button on one kind of line.
class ButtonBench : public WorkBench {
 public:
  explicit ButtonBench(int com_mode, std::int16_t state = 0) {
    Register('Z', 3) = state;
    header.UnitIncrement = 5;
    header.UnitFinal = 2000;
    Register('Y', 3) = 0x1C9;
    StartProgram({}, com_mode);
    OpenSheet();
    Forget();
  }
};

// What the button has sent on that kind of line.
Telegrams SentBy(const ButtonCase& button, int com_mode) {
  ButtonBench line(com_mode);
  button.press(line.worksheet);
  const bool is_start = std::string(button.name) == "start";
  return is_start ? WithoutCounts(line.bench.port.sent) : line.bench.port.sent;
}

TEST(WorksheetButton, SendsItsTelegramsInTheirOrderOnBothKindsOfLine) {
  for (const ButtonCase& button : Buttons()) {
    EXPECT_EQ(SentBy(button, 0), button.direct) << button.name;
    for (const int com_mode : {1, 2}) {
      EXPECT_EQ(SentBy(button, com_mode), button.plug_in) << button.name << com_mode;
    }
  }
}

class FailingButton : public testing::TestWithParam<std::tuple<int, LineFailure>> {};

TEST_P(FailingButton, StopsAtTheFirstExchangeThatFails) {
  const auto& [com_mode, failure] = GetParam();
  for (const ButtonCase& button : Buttons()) {
    const Telegrams& telegrams = com_mode == 0 ? button.direct : button.plug_in;
    for (std::size_t failing = 1; failing <= telegrams.size(); ++failing) {
      const std::int16_t before = button.state == 2 ? 0 : 2;
      ButtonBench bench(com_mode, before);
      bench.failure = failure;
      const bool is_switched = button.switches > 0 && failing > button.switches;
      const bool has_state = is_switched || (failing == button.switches && IsCarriedOut(failure));
      const CtrlButton expected = is_switched ? CtrlButton::kDynamic : bench.Shown().CtrlDown;
      bench.fail_at = static_cast<int>(failing);
      button.press(bench.worksheet);
      const auto end = telegrams.begin() + static_cast<std::ptrdiff_t>(failing);
      EXPECT_EQ(bench.bench.port.sent, Telegrams(telegrams.begin(), end)) << button.name;
      EXPECT_EQ(bench.Shown().CtrlDown, expected) << button.name << failing;
      EXPECT_EQ(bench.BoxTexts(), Telegrams{button.boxes.at(failing - 1)}) << button.name;
      EXPECT_EQ(bench.Register('Z', 3), has_state ? button.state : before) << button.name;
      EXPECT_FALSE(bench.Shown().RecOnDown) << button.name << failing;
      EXPECT_EQ(bench.FileHeader(WorkBench::kName).UnitRecOn, 0);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, FailingButton,
                         testing::Combine(testing::Values(0, 2), testing::ValuesIn(kLineFailures)),
                         [](const auto& test) {
                           const std::string line =
                               std::get<0>(test.param) == 0 ? "direct_" : "plugin_";
                           return line + NameOf(std::get<1>(test.param));
                         });

TEST(WorksheetButton, AsksForTheConnectionFirst) {
  std::vector<std::function<void(Worksheet&)>> presses;
  for (const ButtonCase& button : Buttons()) {
    presses.push_back(button.press);
  }
  presses.push_back([](Worksheet& sheet) { sheet.cmd_New_Click(); });
  presses.push_back([](Worksheet& sheet) { sheet.cmd_ProgOn_Click(); });
  for (const auto& press : presses) {
    ButtonBench bench(0);
    bench.bench.line.silent = {WorkBench::kInet};
    bench.Refresh();
    bench.Forget();
    press(bench.worksheet);
    EXPECT_TRUE(bench.bench.port.sent.empty());
    EXPECT_EQ(bench.BoxTexts(), Telegrams{"check|Tavrel connected ?"});
    EXPECT_TRUE(bench.bench.screens.shown.empty());
  }
}

class WorksheetButtons : public testing::Test, public WorkBench {
 protected:
  void Open() {
    StartAndOpen();
    Forget();
  }
};

TEST_F(WorksheetButtons, ShowTheControllerAtOnceWhenItAnswered) {
  header.UnitIncrement = 1;
  header.UnitFinal = 1;
  Open();
  worksheet.cmd_Ctrl_Click(0);
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kIsotherm);
  worksheet.cmd_Ctrl_Click(1);
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kDynamic);
  worksheet.cmd_Ctrl_Click(2);
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kOff);
  worksheet.cmd_Ctrl_Click(3);
  worksheet.cmd_Ctrl_Click(-1);
  EXPECT_EQ(bench.port.sent.size(), 6U);
}

// A ramp to 100 degrees; the controller is on hold before.
class WorksheetRamp : public WorksheetButtons {
 protected:
  WorksheetRamp() {
    header.UnitIncrement = 5;
    header.UnitFinal = 2000;
    Register('Z', 3) = 2;
    Register('Y', 3) = 0x1C9;
    Register('W', 3) = 1600;
  }
  // What is still sent when exchange `failing` gets no answer.
  void Press(int failing) {
    Refresh();
    bench.clock.AdvanceSeconds(1);
    Forget();
    fail_at = failing;
    worksheet.cmd_Ctrl_Click(1);
  }
};

TEST_F(WorksheetRamp, IsNotBegunWithoutAnActualValue) {
  Open();
  Register('Y', 3) = kNoData;
  Press(0);
  EXPECT_EQ(bench.port.sent, Telegrams{"Y13?"});
  Register('Y', 3) = 0x1C9;
  Press(1);
  EXPECT_EQ(bench.port.sent, Telegrams{"Y13?"});
  EXPECT_EQ(BoxTexts(), Telegrams{"check|Tavrel connected ?"});
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kIsotherm);
  EXPECT_EQ(Register('Z', 3), 2);
}

TEST_F(WorksheetRamp, KeepsTheSetpointIfTheActualValueIsGoneMeanwhile) {
  Open();
  const auto answer = bench.port.answer;
  bench.port.answer = [this, answer](const std::string& command) {
    Register('Y', 3) = command == "Z13=3\r" ? kNoData : Register('Y', 3);
    return answer(command);
  };
  Press(0);
  EXPECT_EQ(bench.port.sent, (Telegrams{"Y13?", "Z13=3\r", "Y13?"}));
  EXPECT_EQ(Register('W', 3), 1600);
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kDynamic);
  EXPECT_EQ(BoxTexts(),
            Telegrams{"controller|controller is on,\nthe setpoint is still the old one"});
}

TEST_F(WorksheetRamp, TellsWhatOfItIsMissing) {
  Open();
  Press(2);
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kIsotherm);
  EXPECT_EQ(BoxTexts(), Telegrams{"check|Tavrel connected ?"});
  Press(3);
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kDynamic);
  EXPECT_EQ(BoxTexts(),
            Telegrams{"controller|controller is on,\nthe setpoint is still the old one"});
  Press(4);
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kDynamic);
  EXPECT_EQ(BoxTexts(),
            Telegrams{"controller|controller is on,\nthe setpoint was not acknowledged"});
}

TEST_F(WorksheetRamp, IsShownBeneathTheBoxThatTellsWhatIsMissing) {
  Open();
  CtrlButton beneath = CtrlButton::kNone;
  bench.dialogs.on_box = [&] {
    bench.clock.AdvanceSeconds(1);
    bench.Run(0.5);
    beneath = Shown().CtrlDown;
  };
  Press(4);
  EXPECT_EQ(beneath, CtrlButton::kDynamic);
}

// What the instrument has acknowledged is the user's last word, however the rest of it went.
TEST_F(WorksheetRamp, MakesAnOlderOrderToSwitchOffVoidEvenIfItIsNotComplete) {
  header.UnitEndAction = 1;
  Open();
  bench.line.refused = {'Z'};
  bench.engine.EndOfRecording(bench.state.SelSlot);
  bench.line.refused.clear();
  Press(4);
  EXPECT_FALSE(bench.state.StopPending[bench.state.SelSlot]);
}

TEST_F(WorksheetButtons, TellThatASwitchWasNotAcknowledged) {
  for (const int index : {0, 2}) {
    WorkBench fixture;
    fixture.StartAndOpen();
    fixture.Register('Z', 3) = index == 0 ? 0 : 2;
    fixture.Refresh();
    const CtrlButton before = fixture.Shown().CtrlDown;
    fixture.Forget();
    fixture.fail_at = 1;
    fixture.worksheet.cmd_Ctrl_Click(index);
    EXPECT_EQ(fixture.BoxTexts(), Telegrams{"check|Tavrel connected ?"}) << index;
    EXPECT_EQ(fixture.Shown().CtrlDown, before) << index;
    EXPECT_EQ(fixture.bench.state.TickRefresh.At, 0) << "the state is looked at again at once";
  }
}

TEST_F(WorksheetButtons, AreTheLastWordBeforeAStopThatWasNotAcknowledged) {
  header.UnitEndAction = 1;
  Open();
  bench.line.refused = {'Z'};
  bench.engine.EndOfRecording(bench.state.SelSlot);
  ASSERT_TRUE(bench.state.StopPending[bench.state.SelSlot]);
  bench.line.refused.clear();
  bench.clock.AdvanceSeconds(1);
  Refresh();
  worksheet.cmd_Ctrl_Click(0);
  Forget();
  bench.engine.TenSecondTick();
  bench.engine.PumpOnce();
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(WorksheetButtons, RefuseARampWithoutIncrementOrFinalValue) {
  header.UnitIncrement = 0;
  header.UnitFinal = 0;
  Open();
  worksheet.cmd_Ctrl_Click(1);
  EXPECT_EQ(BoxTexts(), Telegrams{"Check settings:|increment ?"});
  Unit().UnitIncrement = 1;
  Forget();
  worksheet.cmd_Ctrl_Click(1);
  EXPECT_EQ(BoxTexts(), Telegrams{"Check settings:|final value ?"});
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(WorksheetButtons, BeepDuringAProgramAndPointToItsEnd) {
  Open();
  bench.state.ProgRunning[1] = true;
  worksheet.cmd_Ctrl_Click(0);
  EXPECT_EQ(bench.events.beeps, 1);
  EXPECT_EQ(Shown().ProgOffFocusCalls, 1);
  worksheet.cmd_ProgOn_Click();
  EXPECT_EQ(bench.events.beeps, 2);
  EXPECT_EQ(Shown().ProgOffFocusCalls, 2);
  worksheet.cmd_setCtrl_Click();
  EXPECT_TRUE(bench.screens.shown.empty());
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(WorksheetButtons, EndAProgramOnlyAfterTheQuestion) {
  Open();
  bench.state.ProgRunning[1] = true;
  Refresh();
  Forget();
  bench.dialogs.ok = false;
  worksheet.cmd_ProgOff_Click();
  EXPECT_TRUE(Shown().frProg);
  bench.dialogs.ok = true;
  worksheet.cmd_ProgOff_Click();
  EXPECT_EQ(BoxTexts(), (Telegrams{" |terminate program", " |terminate program"}));
  EXPECT_FALSE(Shown().frProg);
  EXPECT_TRUE(Shown().cmd_setCtrlEnabled);
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(WorksheetButtons, StartARecordingBehindTheWaitBar) {
  Open();
  const auto before = bench.clock.Elapsed();
  worksheet.cmd_Rec_Click(1);
  EXPECT_EQ(bench.screens.shown, std::vector<View>{View::kTavWait});
  EXPECT_GE(bench.clock.Elapsed() - before, std::chrono::seconds(10));
  EXPECT_LE(bench.clock.Elapsed() - before, std::chrono::seconds(12));
  EXPECT_TRUE(Shown().RecOnDown);
  EXPECT_FALSE(Shown().RecOffDown);
  EXPECT_EQ(FileHeader(kName).UnitRecOn, 1);
  EXPECT_EQ(bench.state.ActiveView, View::kTavWork);
}

TEST_F(WorksheetButtons, FinishAStartBeforeTheProgramEnds) {
  Open();
  bool has_ended = true;
  dialog[View::kTavWait] = [&] {
    bench.commands.Close();
    has_ended = bench.commands.HasEnded();
  };
  worksheet.cmd_Rec_Click(1);
  EXPECT_FALSE(has_ended) << "the instrument samples, and the file does not tell it yet";
  EXPECT_EQ(FileHeader(kName).UnitRecOn, 1);
  for (int input = 1; input <= 2; ++input) {
    bench.line.buffers[{kInet, input}] = {7, 8};
  }
  bench.commands.Close();
  EXPECT_TRUE(bench.commands.HasEnded());
  EXPECT_EQ(FileHeader(kName).UnitRecOn, 1) << "the next start goes on with it";
  EXPECT_EQ(bench.Samples(kName), (std::vector<std::int16_t>{7, 7, 7, 7}));
  EXPECT_FALSE(bench.state.SlotFileNo[1].IsOpen());
}

TEST_F(WorksheetButtons, DoNotHoldUpTheEndAfterAStartThatFailed) {
  Open();
  bench.line.refused = {'R'};
  worksheet.cmd_Rec_Click(1);
  bench.commands.Close();
  EXPECT_TRUE(bench.commands.HasEnded());
  EXPECT_EQ(FileHeader(kName).UnitRecOn, 0);
}

TEST_F(WorksheetButtons, StayUpWhenARecordingDoesNotStart) {
  Open();
  bench.line.refused = {'R'};
  worksheet.cmd_Rec_Click(1);
  EXPECT_EQ(BoxTexts(), Telegrams{"start recording|failed"});
  EXPECT_FALSE(Shown().RecOnDown);
  EXPECT_TRUE(Shown().RecOffDown);
  EXPECT_TRUE(bench.screens.shown.empty());
}

TEST_F(WorksheetButtons, TellThatAFileIsFull) {
  Open();
  bench.state.SampleCount[1] = 8;
  bench.state.SampleLimit[1] = 8;
  worksheet.cmd_Rec_Click(1);
  EXPECT_EQ(BoxTexts(), Telegrams{"Check:|max. length of file"});
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(WorksheetButtons, StopARecordingOnlyAfterTheQuestion) {
  header.UnitRecOn = 1;
  Open();
  bench.dialogs.ok = false;
  worksheet.cmd_Rec_Click(2);
  EXPECT_EQ(BoxTexts(), Telegrams{" |stop acquisition"});
  EXPECT_TRUE(Shown().RecOnDown);
  bench.dialogs.ok = true;
  worksheet.cmd_Rec_Click(2);
  EXPECT_FALSE(Shown().RecOnDown);
  EXPECT_TRUE(Shown().RecOffDown);
  EXPECT_EQ(FileHeader(kName).UnitRecOn, 0);
}

TEST_F(WorksheetButtons, ShowWhatTheCycleDidBeneathABox) {
  header.UnitRecOn = 1;
  header.UnitEndAction = 2;
  Open();
  bench.dialogs.ok = false;
  bench.dialogs.on_box = [this] { bench.engine.EndOfRecording(1); };
  worksheet.cmd_Rec_Click(2);
  EXPECT_EQ(Shown().TavFile, "m260314b.ovn");
  EXPECT_TRUE(Shown().RecOnDown);
}

TEST_F(WorksheetButtons, OpenTheDialogsOfTheSlot) {
  Open();
  std::vector<bool> faces;
  dialog[View::kTavRec] = [&] {
    EXPECT_EQ(bench.state.ActiveView, View::kTavRec);
    faces.push_back(recording.Values().RecNewMode);
  };
  worksheet.cmd_New_Click();
  worksheet.cmd_SetRec_Click();
  worksheet.cmd_Coord_Click();
  worksheet.cmd_setCtrl_Click();
  EXPECT_EQ(faces, (std::vector<bool>{true, false}));
  EXPECT_EQ(bench.screens.shown,
            (std::vector<View>{View::kTavRec, View::kTavRec, View::kTavCoord, View::kTavCtrl}));
  EXPECT_EQ(bench.state.ActiveView, View::kTavWork);
}

// Beneath each of them the recording may have gone on in another file.
TEST_F(WorksheetButtons, ShowTheSlotAnewBehindEachDialog) {
  header.UnitRole.Fill(1);
  header.UnitChannels = kInputs;
  Open();
  bench.screens.built.insert({View::kTavGraph, View::kTavCtrl, View::kTavColor});
  bench.dialogs.chosen_file = "";
  const std::vector<std::function<void()>> commands = {
      [this] { worksheet.cmd_New_Click(); },    [this] { worksheet.cmd_SetRec_Click(); },
      [this] { worksheet.cmd_Coord_Click(); },  [this] { worksheet.cmd_setCtrl_Click(); },
      [this] { worksheet.cmd_ProgOn_Click(); }, [this] { worksheet.cmd_ProgOff_Click(); },
      [this] { worksheet.Color_Click(15); }};
  int number = 0;
  const auto go_on = [&] {
    bench.state.SlotFile[1] = "M26031" + std::to_string(number) + "A.OVN";
    bench.state.TickRefresh.At = 99999;
  };
  for (const View view : {View::kTavRec, View::kTavCoord, View::kTavCtrl, View::kTavColor}) {
    dialog[view] = go_on;
  }
  bench.dialogs.on_file_dialog = go_on;
  bench.dialogs.on_box = go_on;
  for (const auto& command : commands) {
    ++number;
    bench.state.ProgRunning[1] = number == 6;
    command();
    EXPECT_EQ(Shown().TavFile, "m26031" + std::to_string(number) + "a.ovn");
    EXPECT_EQ(bench.state.TickRefresh.At, 0) << number;
  }
}

TEST_F(WorksheetButtons, ServeASlotWithoutAFileNoMore) {
  Open();
  bench.state.SlotFile[1].clear();
  worksheet.cmd_Rec_Click(1);
  worksheet.cmd_New_Click();
  worksheet.cmd_Ctrl_Click(0);
  Refresh();
  EXPECT_TRUE(bench.port.sent.empty());
  EXPECT_TRUE(bench.screens.shown.empty());
}

}  // namespace
}  // namespace tavrel
