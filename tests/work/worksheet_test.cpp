#include "work/worksheet.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/support/work_bench.h"
#include "work/work_tips.h"

namespace tavrel {
namespace {

class TheWorksheet : public testing::Test, public WorkBench {
 protected:
  void ShowTime(int sample_count, int rec_interval) {
    bench.state.SampleCount[1] = sample_count;
    bench.state.RecInterval[1] = rec_interval;
    Refresh();
  }
  // The slot's own file, looked at in row 0.
  void ViewTheSlotsFile() {
    bench.state.SlotPath[0] = bench.state.SlotPath[1];
    bench.state.SlotFile[0] = bench.state.SlotFile[1];
    bench.files.OpenRecordingFile(0);
    bench.state.SelSlot = 0;
  }
};

TEST_F(TheWorksheet, TakesTheFrontAndGivesItBack) {
  StartProgram();
  worksheet.Open();
  EXPECT_EQ(bench.state.ActiveView, View::kTavWork);
  EXPECT_TRUE(worksheet.IsOpen());
  worksheet.cmdExit_Click();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  EXPECT_FALSE(worksheet.IsOpen());
}

TEST_F(TheWorksheet, ShowsTheSlotBeforeTheFirstExchange) {
  header.UnitInputName[1].Set("product");
  header.UnitInputNote[2].Set("left wall");
  header.UnitColour[2] = 7;
  StartProgram();
  Forget();
  worksheet.Open();
  EXPECT_TRUE(bench.port.sent.empty());
  EXPECT_EQ(Shown().Caption, "Furnace");
  EXPECT_EQ(Shown().TavcNo, "Tavrel-2");
  EXPECT_EQ(Shown().TavFile, "m260314a.ovn");
  EXPECT_TRUE(Shown().OfSlot);
  EXPECT_EQ(Row(1).Prod, "product");
  EXPECT_EQ(Row(2).Comments, "left wall");
  EXPECT_EQ(Row(2).ColourCode, 7);
  EXPECT_FALSE(Row(3).Recorded);
  EXPECT_EQ(Row(3).Prod, "");
  EXPECT_FALSE(Shown().RecOnDown);
  EXPECT_FALSE(Shown().RecOffDown);
}

TEST_F(TheWorksheet, ShowsWhatTheInstrumentSays) {
  Register('Z', 3) = 2;
  Register('W', 3) = 2469;
  Register('Y', 1) = 4567;
  Register('Y', 2) = -32768;
  StartAndOpen();
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kIsotherm);
  EXPECT_EQ(Shown().Lbl_setpoint, "123.5");
  EXPECT_EQ(Row(1).Actual, "228.4");
  EXPECT_EQ(Row(2).Actual, "");
  EXPECT_TRUE(Shown().RecOffDown);
  EXPECT_FALSE(Shown().NoAnswer);
  Register('W', 3) = -32768;
  Refresh();
  EXPECT_EQ(Shown().Lbl_setpoint, "");
}

TEST_F(TheWorksheet, ShowsTheButtonOfTheControllersState) {
  StartAndOpen();
  const std::vector<std::pair<int, CtrlButton>> cases = {
      {0, CtrlButton::kOff},     {2, CtrlButton::kIsotherm}, {3, CtrlButton::kDynamic},
      {4, CtrlButton::kDynamic}, {1, CtrlButton::kNone},     {5, CtrlButton::kNone},
      {0, CtrlButton::kOff},     {-1, CtrlButton::kNone},    {-32768, CtrlButton::kNone},
      {77, CtrlButton::kNone}};
  for (const auto& [state, button] : cases) {
    Register('Z', 3) = static_cast<std::int16_t>(state);
    Refresh();
    EXPECT_EQ(Shown().CtrlDown, button) << state;
  }
}

TEST_F(TheWorksheet, AsksTwiceATickAndComesAgainFiveSecondsLater) {
  StartProgram();
  Forget();
  worksheet.Open();
  for (const std::size_t sent : {2U, 4U}) {
    bench.cycle.Tick();
    EXPECT_EQ(bench.port.sent.size(), sent);
    EXPECT_EQ(bench.state.TickRefresh.At, 0);
  }
  bench.cycle.Tick();
  EXPECT_EQ(bench.port.sent, (std::vector<std::string>{"T10?", "Z13?", "W13?", "Y11?", "Y12?"}));
  EXPECT_NEAR(bench.state.TickRefresh.At - bench.clock.Timer(), 5, 0.1);
}

TEST_F(TheWorksheet, AsksByAddressOnAPlugInLine) {
  StartProgram({}, 1);
  Forget();
  OpenSheet();
  EXPECT_EQ(bench.port.sent,
            (std::vector<std::string>{"n1vD0?", "n1p33?", "n1p3?", "n1p21?", "n1p22?"}));
}

TEST_F(TheWorksheet, EndsTheTickAtASilentExchangeAndGoesOnBehindIt) {
  StartAndOpen();
  bench.line.silent = {kInet};
  Forget();
  bench.state.TickRefresh.At = 0;
  const auto before = bench.clock.Elapsed();
  bench.cycle.Tick();
  EXPECT_EQ(bench.port.sent, (std::vector<std::string>{"T10?"}));
  EXPECT_LT(bench.clock.Elapsed() - before, std::chrono::milliseconds(120));
  bench.Run(2);
  EXPECT_EQ(bench.port.sent, (std::vector<std::string>{"T10?", "Z13?", "W13?"}));
  EXPECT_GT(bench.state.TickRefresh.At, bench.clock.Timer());
}

TEST_F(TheWorksheet, BlanksWhatASilentInstrumentSaidBefore) {
  Register('Z', 3) = 3;
  Register('W', 3) = 400;
  Register('Y', 1) = 400;
  StartAndOpen();
  EXPECT_EQ(Row(1).Actual, "20.0");
  bench.line.silent = {kInet};
  Refresh();
  EXPECT_EQ(Row(1).Actual, "");
  EXPECT_EQ(Shown().Lbl_setpoint, "");
  EXPECT_EQ(Shown().CtrlDown, CtrlButton::kNone);
  EXPECT_TRUE(Shown().NoAnswer);
  bench.line.silent.clear();
  Refresh();
  EXPECT_EQ(Row(1).Actual, "20.0");
  EXPECT_FALSE(Shown().NoAnswer);
}

TEST_F(TheWorksheet, BlanksOnlyTheFieldWhoseExchangeFails) {
  Register('T', 0) = 1;
  Register('Z', 3) = 2;
  Register('W', 3) = 400;
  Register('Y', 1) = 500;
  Register('Y', 2) = 600;
  StartAndOpen();
  for (int failing = 1; failing <= 5; ++failing) {
    Forget();
    fail_at = failing;
    Refresh();
    fail_at = 0;
    EXPECT_EQ(Shown().TavcNo, "Tavrel-2F") << failing;
    EXPECT_EQ(Shown().CtrlDown, failing == 2 ? CtrlButton::kNone : CtrlButton::kIsotherm);
    EXPECT_EQ(Shown().Lbl_setpoint, failing == 3 ? "" : "20.0");
    EXPECT_EQ(Row(1).Actual, failing == 3 || failing == 4 ? "" : "25.0") << failing;
    EXPECT_EQ(Row(2).Actual, failing == 3 || failing == 5 ? "" : "30.0") << failing;
    EXPECT_EQ(bench.port.sent.size(), failing == 3 ? 3U : 5U) << failing;
  }
}

TEST_F(TheWorksheet, ShowsTheRecordedTimeFromTheFirstSetOn) {
  StartAndOpen();
  ShowTime(0, 10);
  EXPECT_EQ(Shown().Lbl_rec, "0.00");
  ShowTime(1, 10);
  EXPECT_EQ(Shown().Lbl_rec, "0.00");
  EXPECT_EQ(Shown().RecUnit, "min   recorded");
  ShowTime(5, 10);
  EXPECT_EQ(Shown().Lbl_rec, "0.50");
  EXPECT_EQ(Shown().Lbl_sampl, "10");
}

TEST_F(TheWorksheet, GoesOverToHoursAtSixtyMinutesExactly) {
  StartAndOpen();
  ShowTime(361, 10);
  EXPECT_EQ(Shown().Lbl_rec, "59.83");
  EXPECT_EQ(Shown().RecUnit, "min   recorded");
  ShowTime(362, 10);
  EXPECT_EQ(Shown().Lbl_rec, "1.00");
  EXPECT_EQ(Shown().RecUnit, "h     recorded");
  ShowTime(32767, 36000);
  EXPECT_EQ(Shown().Lbl_rec, "327650.00");
}

TEST_F(TheWorksheet, ShowsTheStateOfTheRecordingAndItsEnd) {
  header.UnitRecOn = 1;
  StartAndOpen();
  EXPECT_TRUE(Shown().RecOnDown);
  EXPECT_FALSE(Shown().RecOffDown);
  EXPECT_EQ(Shown().RecState, "");
  bench.state.SampleLimit[1] = 3;
  bench.state.SampleCount[1] = 4;
  Unit().UnitRecOn = 0;
  Refresh();
  EXPECT_FALSE(Shown().RecOnDown);
  EXPECT_TRUE(Shown().RecOffDown);
  EXPECT_EQ(Shown().RecState, "end");
  bench.state.WriteFailed[1] = true;
  Refresh();
  EXPECT_EQ(Shown().RecState, "disk !");
}

TEST_F(TheWorksheet, SaysWhetherTheRecordingIsComplete) {
  header.UnitRecOn = 1;
  StartAndOpen({71, 72, 71, 72, 81, 82});
  EXPECT_EQ(Shown().LedgerText, "2 sets, 3 rows without a journal");
  bench.files.Journals().Note(1, "lost",
                              {{"before", 3},
                               {"sets", 2},
                               {"exact", true},
                               {"least", 2},
                               {"most", 2},
                               {"cause", "restart"}});
  ASSERT_TRUE(bench.files.AppendRow(1, std::array<std::int16_t, 2>{91, 92}, 1));
  Refresh();
  EXPECT_EQ(Shown().LedgerText.substr(0, 17), "3 sets, 2 lost on");
}

TEST_F(TheWorksheet, ReadsTheJournalOfARecordingThatIsOff) {
  header.UnitRecOn = 1;
  StartAndOpen({71, 72, 71, 72, 81, 82});
  worksheet.cmd_Rec_Click(2);
  worksheet.cmdExit_Click();
  bench.files.CloseRecordingFile(1);
  bench.files.OpenRecordingFile(1);
  OpenSheet();
  EXPECT_EQ(Shown().LedgerText, "2 sets, 3 rows without a journal");
}

TEST_F(TheWorksheet, SaysNothingOfAFileThatHasNoJournal) {
  StartAndOpen({71, 72, 71, 72});
  EXPECT_EQ(Shown().LedgerText, "");
}

TEST_F(TheWorksheet, ShowsTheNextFileAfterAnEndActionInLowerCase) {
  header.UnitRecOn = 1;
  header.UnitEndAction = 2;
  StartAndOpen();
  bench.engine.EndOfRecording(1);
  Refresh();
  EXPECT_EQ(bench.state.SlotFile[1], "M260314B.OVN");
  EXPECT_EQ(Shown().TavFile, "m260314b.ovn");
  EXPECT_TRUE(Shown().RecOnDown);
}

TEST_F(TheWorksheet, TellsAFastInstrument) {
  Register('T', 0) = 1;
  StartAndOpen();
  EXPECT_EQ(Shown().TavcNo, "Tavrel-2F");
  EXPECT_EQ(Unit().UnitFast, 1);
  Register('T', 0) = 7;
  Refresh();
  EXPECT_EQ(Shown().TavcNo, "Tavrel-2");
  EXPECT_EQ(Unit().UnitFast, 0);
}

TEST_F(TheWorksheet, KeepsTheKindOfAnInstrumentThatDoesNotAnswer) {
  header.UnitFast = 1;
  bench.line.silent = {kInet};
  StartAndOpen();
  EXPECT_EQ(Unit().UnitFast, 1);
  EXPECT_EQ(Shown().TavcNo, "Tavrel-2F");
  EXPECT_FALSE(bench.state.SlotDirty[1]);
}

// The store in memory is of no kind: what a file for a fast instrument says stays.
TEST_F(TheWorksheet, LeavesTheKindInTheHeaderWhileTheLineIsSimulated) {
  bench.state.Settings.CommPort = "----";
  header.UnitInterval = 3;
  header.UnitFast = 1;
  bench.Install(7, "M260314G.OVN", header);
  bench.Install(12, "M260314L.OVN", header);
  StartProgram();
  for (const int slot : {1, 7, 12}) {
    bench.state.SelSlot = static_cast<std::int16_t>(slot);
    OpenSheet();
    EXPECT_EQ(bench.state.Unit[slot].UnitFast, 1) << slot;
    EXPECT_EQ(bench.state.RecInterval[slot], 3) << slot;
    EXPECT_FALSE(bench.state.SlotDirty[slot]) << slot;
    EXPECT_EQ(Shown().TavcNo, "Tavrel-2F") << slot;
  }
}

TEST_F(TheWorksheet, CountsTheIntervalOfAnEmptyFileInTheUnitOfTheInstrument) {
  header.UnitInterval = 3;
  StartProgram();
  EXPECT_EQ(bench.state.RecInterval[1], 30);
  Register('T', 0) = 1;
  OpenSheet();
  EXPECT_EQ(bench.state.RecInterval[1], 3);
  EXPECT_EQ(Unit().UnitInterval, 3);
  EXPECT_EQ(Shown().Lbl_sampl, "3");
}

TEST_F(TheWorksheet, KeepsTheSecondsOfRowsThatAreInTheFile) {
  header.UnitInterval = 3;
  StartProgram({1, 2, 1, 2, 3, 4});
  Register('T', 0) = 1;
  OpenSheet();
  EXPECT_EQ(bench.state.RecInterval[1], 30);
  EXPECT_EQ(Unit().UnitFast, 1);
  EXPECT_EQ(Unit().UnitInterval, 30);
  EXPECT_TRUE(bench.state.SlotDirty[1]);
  bench.files.WriteHeader(1);
  bench.files.OpenRecordingFile(1);
  EXPECT_EQ(bench.state.RecInterval[1], 30);
}

// 3600 of either unit are the most that a header tells.
TEST_F(TheWorksheet, GoesOverToTheOtherUnitUpToItsLargestCount) {
  for (const int tens : {359, 360, 361}) {
    WorkBench fixture;
    fixture.header.UnitInterval = static_cast<std::int16_t>(tens);
    fixture.StartProgram({1, 2, 1, 2});
    fixture.Register('T', 0) = 1;
    fixture.OpenSheet();
    EXPECT_EQ(fixture.Unit().UnitFast, tens <= 360 ? 1 : 0) << tens;
    EXPECT_EQ(fixture.Unit().UnitInterval, tens <= 360 ? 10 * tens : tens);
    EXPECT_EQ(fixture.bench.state.RecInterval[1], 10 * tens);
  }
}

TEST_F(TheWorksheet, LeavesTheHeaderWhereTheOtherUnitCannotTellTheSeconds) {
  header.UnitFast = 1;
  header.UnitInterval = 25;
  StartProgram({1, 2, 1, 2});
  OpenSheet();
  EXPECT_EQ(bench.state.RecInterval[1], 25);
  EXPECT_EQ(Unit().UnitFast, 1);
  EXPECT_EQ(Unit().UnitInterval, 25);
  EXPECT_EQ(Shown().TavcNo, "Tavrel-2");
}

TEST_F(TheWorksheet, ShowsTheProgramAlsoWhileTheInstrumentIsSilent) {
  StartProgram();
  Unit().UnitProgName.Set("CURE.PRG");
  bench.state.ProgRunning[1] = true;
  bench.line.silent = {kInet};
  OpenSheet();
  EXPECT_TRUE(Shown().frProg);
  EXPECT_TRUE(Shown().ProgDown);
  EXPECT_EQ(Shown().frProgCaption, " cure.prg ");
  EXPECT_EQ(Shown().Lbl_Step, "");
  EXPECT_FALSE(Shown().cmd_setCtrlEnabled);
  Unit().UnitProgStep = 3;
  Unit().UnitProgWait = 17;
  Refresh();
  EXPECT_EQ(Shown().Lbl_Step, "3");
  EXPECT_EQ(Shown().Lbl_Time, "17");
  bench.state.ProgRunning[1] = false;
  Refresh();
  EXPECT_FALSE(Shown().frProg);
  EXPECT_FALSE(Shown().ProgDown);
  EXPECT_TRUE(Shown().cmd_setCtrlEnabled);
}

TEST_F(TheWorksheet, SendsNothingForTheViewedFile) {
  StartProgram({1, 2, 1, 2, 3, 4, 5, 6, 7, 8});
  ViewTheSlotsFile();
  Forget();
  OpenSheet();
  worksheet.cmd_Rec_Click(1);
  worksheet.cmd_Rec_Click(2);
  worksheet.cmd_New_Click();
  worksheet.cmd_SetRec_Click();
  worksheet.cmd_Ctrl_Click(0);
  worksheet.cmd_ProgOn_Click();
  worksheet.cmd_ProgOff_Click();
  EXPECT_TRUE(bench.port.sent.empty());
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_FALSE(Shown().OfSlot);
  EXPECT_FALSE(Shown().RecOffDown);
  EXPECT_EQ(Shown().Lbl_rec, "0.50");
  EXPECT_EQ(Shown().Lbl_sampl, "10");
  EXPECT_EQ(Shown().TavFile, "m260314a.ovn");
}

TEST_F(TheWorksheet, NeverWritesTheViewersHeaderOverThatOfARecording) {
  StartProgram({1, 2, 1, 2});
  ViewTheSlotsFile();
  OpenSheet();
  Unit().UnitRecOn = 1;
  worksheet.Prod_Change(1, "core");
  EXPECT_FALSE(bench.state.SlotDirty[0]);
  EXPECT_TRUE(bench.state.SlotDirty[1]);
  bench.files.WriteHeader(1);
  EXPECT_EQ(FileHeader(kName).UnitInputName[1].Get(), "core");
  EXPECT_EQ(FileHeader(kName).UnitRecOn, 1);
}

TEST_F(TheWorksheet, StoresTextsOfRecordedInputsOnly) {
  StartAndOpen();
  bench.state.OverPrepared = true;
  bench.state.SlotDirty[1] = false;
  worksheet.Prod_Change(3, "nothing");
  worksheet.Comments_Change(16, "nothing");
  EXPECT_FALSE(bench.state.SlotDirty[1]);
  worksheet.Comments_Change(2, "right wall, 2nd probe of three");
  EXPECT_EQ(Unit().UnitInputNote[2].Get(), "right wall, 2nd prob");
  EXPECT_TRUE(bench.state.SlotDirty[1]);
  EXPECT_TRUE(bench.state.OverPrepared);
  worksheet.Prod_Change(2, "wall ");
  EXPECT_EQ(Unit().UnitInputName[2].Get(), "wall");
  EXPECT_FALSE(bench.state.OverPrepared);
}

TEST_F(TheWorksheet, ServesEachRecordedInputOfTheFifteen) {
  header.UnitRole.Fill(1);
  header.UnitChannels = kInputs;
  StartAndOpen();
  dialog[View::kTavColor] = [this] { colours.PicColor_Click(4.99); };
  for (int input = 1; input <= kInputs; ++input) {
    worksheet.Color_Click(input);
    EXPECT_EQ(Unit().UnitColour[input], 5) << input;
    const std::string text = "input " + std::to_string(input);
    worksheet.Prod_Change(input, text);
    worksheet.Comments_Change(input, "of " + text);
    EXPECT_EQ(Unit().UnitInputName[input].Get(), text);
    EXPECT_EQ(Unit().UnitInputNote[input].Get(), "of " + text);
  }
  EXPECT_EQ(bench.screens.shown.size(), static_cast<std::size_t>(kInputs));
  for (const int none : {0, kInputs + 1}) {
    worksheet.Color_Click(none);
  }
  EXPECT_EQ(bench.screens.shown.size(), static_cast<std::size_t>(kInputs));
}

TEST_F(TheWorksheet, KeepsTheBlankThatAUserIsTypingOverARebuild) {
  StartAndOpen();
  worksheet.Prod_Change(1, "wall ");
  bench.state.WorkReset = false;
  Refresh();
  EXPECT_EQ(Row(1).Prod, "wall ");
}

TEST_F(TheWorksheet, TakesTheChosenColourAndForgetsThePlots) {
  StartAndOpen();
  bench.state.OverPrepared = true;
  bench.state.PartPrepared = true;
  bench.state.SlotDirty[1] = false;
  dialog[View::kTavColor] = [this] { colours.CmdCancel_Click(); };
  worksheet.Color_Click(2);
  EXPECT_FALSE(bench.state.SlotDirty[1]);
  EXPECT_TRUE(bench.state.OverPrepared);
  dialog[View::kTavColor] = [this] {
    EXPECT_EQ(bench.state.ActiveView, View::kTavColor);
    EXPECT_EQ(colours.Input(), 2);
    colours.PicColor_Click(4.99);
  };
  worksheet.Color_Click(2);
  EXPECT_EQ(Unit().UnitColour[2], 5);
  EXPECT_EQ(Row(2).ColourCode, 5);
  EXPECT_TRUE(bench.state.SlotDirty[1]);
  EXPECT_FALSE(bench.state.OverPrepared);
  EXPECT_FALSE(bench.state.PartPrepared);
  bench.screens.shown.clear();
  worksheet.Color_Click(3);
  EXPECT_TRUE(bench.screens.shown.empty());
}

TEST_F(TheWorksheet, GreysWhatTheProgramDoesNotHave) {
  StartAndOpen();
  EXPECT_FALSE(Shown().CmdOKEnabled);
  worksheet.CmdOK_Click();
  EXPECT_TRUE(bench.screens.shown.empty());
  worksheet.cmdExit_Click();
  bench.screens.built.insert(View::kTavGraph);
  OpenSheet();
  EXPECT_TRUE(Shown().CmdOKEnabled);
  worksheet.CmdOK_Click();
  EXPECT_EQ(bench.screens.shown, std::vector<View>{View::kTavGraph});
}

TEST(WorksheetTips, StandInBothLanguages) {
  EXPECT_EQ(kWorksheetTips.size(), 18U);
  EXPECT_EQ(kWorksheetTips[0].Text.In(Language::kEnglish), " start/resume data acquisition ");
  EXPECT_EQ(kWorksheetTips[17].Text.In(Language::kGerman),
            " Zeit bis zum nächsten Programmschritt ");
}

}  // namespace
}  // namespace tavrel
