#include "setup/installation.h"

#include <gtest/gtest.h>

#include "files/held_set.h"
#include "tests/files/recording_fixture.h"
#include "tests/setup/installation_bench.h"
#include "tests/support/hindrance.h"

namespace tavrel {
namespace {

using Lines = std::vector<std::string>;

TEST_F(TavInst, ShowsTheTestsThatExist) {
  Start();
  bench.state.Unit[7].UnitInet = 3;  // a record without a file is no test
  const View before = bench.state.ActiveView;
  Open();
  EXPECT_EQ(bench.state.ActiveView, View::kTavInst);
  EXPECT_EQ(Letters(2), "C...R...M...... 1");
  EXPECT_EQ(Letters(5), ".C...R......... 2");
  EXPECT_EQ(Letters(12), "...C..........R 6");
  EXPECT_EQ(Letters(7), "............... ");
  EXPECT_EQ(Row(2).Test_Des, "Oven");
  EXPECT_EQ(Row(2).Test_Ext, "OVN");
  EXPECT_EQ(Row(2).Inputs[1].Background, (Colour{0xC0, 0xC0, 0xFF}));
  EXPECT_EQ(Row(2).Inputs[5].Background, (Colour{0xC0, 0xFF, 0xFF}));
  EXPECT_EQ(Row(2).Inputs[9].Background, (Colour{0xC0, 0xFF, 0xC0}));
  EXPECT_EQ(Row(2).Inputs[2].Background, (Colour{0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(Row(2).Number.Background, (Colour{0xFF, 0xFF, 0xC0}));
  EXPECT_EQ(Row(7).Number.Background, (Colour{0xFF, 0xFF, 0xFF}));
  EXPECT_FALSE(inst->Values().CmdOK);
  inst->Quit();
  EXPECT_TRUE(bench.dialogs.boxes.empty()) << "nothing was changed";
  EXPECT_FALSE(inst->IsOpen());
  EXPECT_EQ(bench.state.ActiveView, before);
}

TEST_F(TavInst, PlacesItsPopUpsWhereTheGridIsClicked) {
  Start();
  Open();
  const InstallationValues& now = inst->Values();
  const auto click = [&](double x, double y) {
    inst->Sheet_Click(x, y);
    return std::tuple(now.Popup, now.PopupRow, now.PopupInput);
  };
  using Popup = InstallationPopup;
  EXPECT_EQ(click(80, 0), std::tuple(Popup::kInput, 1, 1));
  EXPECT_TRUE(now.cmd_Input_1);
  EXPECT_EQ(click(89.99, 11.99), std::tuple(Popup::kInput, 12, 1));
  EXPECT_EQ(click(119.9, 4.5), std::tuple(Popup::kInput, 5, 4));
  EXPECT_TRUE(now.cmd_Input_1);
  EXPECT_EQ(click(120, 4.5), std::tuple(Popup::kInput, 5, 5));
  EXPECT_FALSE(now.cmd_Input_1) << "only inputs 1 to 4 can be controllers";
  EXPECT_EQ(click(229.9, 6), std::tuple(Popup::kInput, 7, 15));
  EXPECT_EQ(std::get<0>(click(230, 6)), Popup::kNumber);
  EXPECT_EQ(std::get<0>(click(239.9, 6)), Popup::kNumber);
  EXPECT_EQ(now.PopupRow, 7);
  EXPECT_EQ(std::get<0>(click(79.9, 6)), Popup::kNone);
  click(85, 1);
  EXPECT_EQ(std::get<0>(click(85, 12)), Popup::kNone);
  click(85, 1);
  EXPECT_EQ(std::get<0>(click(85, -0.01)), Popup::kNone);
  click(85, 1);
  EXPECT_EQ(std::get<0>(click(std::nan(""), std::nan(""))), Popup::kNone);
  click(85, 1);
  inst->Test_GotFocus();
  EXPECT_EQ(now.Popup, Popup::kNone);
}

TEST_F(TavInst, TakesWhatThePopUpsOffer) {
  Start();
  Open();
  for (int index = 0; index <= 3; ++index) {
    inst->Sheet_Click(80, 3);
    inst->cmd_Input_Click(index);
    EXPECT_EQ(Row(4).Inputs[1].Text,
              (Lines{"", "C", "R", "M"}).at(static_cast<std::size_t>(index)));
    EXPECT_EQ(inst->Values().Popup, InstallationPopup::kNone);
    EXPECT_TRUE(inst->Values().CmdOK);
  }
  for (int number = 6; number >= 0; --number) {
    inst->Sheet_Click(235, 3);
    inst->cmd_TavNo_Click(number);
    EXPECT_EQ(Row(4).Number.Text, number == 0 ? "" : std::to_string(number));
    EXPECT_EQ(inst->Values().Popup, InstallationPopup::kNone);
  }
  const std::string before = Letters(4);
  inst->cmd_Input_Click(2);  // no pop-up is open
  inst->cmd_TavNo_Click(2);
  inst->Sheet_Click(80, 3);
  inst->cmd_TavNo_Click(2);  // it is the other one
  inst->cmd_Input_Click(4);
  inst->cmd_Input_Click(-1);
  EXPECT_EQ(Letters(4), before);
  inst->PutRole(4, 5, Role::kController);
  inst->PutRole(4, 16, Role::kMeasuring);
  inst->PutRole(0, 1, Role::kMeasuring);
  inst->PutNumber(4, 7);
  inst->PutNumber(13, 1);
  EXPECT_EQ(Letters(4), before);
}

TEST_F(TavInst, ClosesPopUpsWithEscapeAndAsksBeforeChangesAreLost) {
  Start();
  Open();
  inst->Sheet_Click(80, 3);
  inst->Escape();
  EXPECT_EQ(inst->Values().Popup, InstallationPopup::kNone);
  EXPECT_TRUE(inst->IsOpen());
  inst->Sheet_Click(235, 3);
  inst->Escape();
  EXPECT_TRUE(inst->IsOpen());
  inst->Test_Des_Change(1, "x");
  bench.dialogs.ok = false;
  inst->Escape();
  EXPECT_EQ(Box(), "Installation: Installation has been changed, quit anyway ?");
  EXPECT_TRUE(inst->IsOpen());
  bench.dialogs.ok = true;
  inst->Escape();
  EXPECT_FALSE(inst->IsOpen());
  EXPECT_EQ(bench.state.Unit[1].UnitInet, 0);
}

TEST_F(TavInst, CutsLongTexts) {
  Start();
  Open();
  inst->Test_Des_Change(3, "Ä123456789ABCDEFG");
  inst->Test_Ext_Change(3, "Ö123");
  EXPECT_EQ(Row(3).Test_Des, "Ä123456789ABCDEF");
  EXPECT_EQ(Row(3).Test_Ext, "Ö12");
}

TEST_F(TavInst, CommitsNothingBeforeTheFirstChangeNorWithAFaultNorWithoutConsent) {
  Start();
  Open();
  Press();
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  inst->PutNumber(9, 4);
  Press();
  EXPECT_EQ(Box(), "check installation: error in row9:\none input must be defined as reference");
  EXPECT_TRUE(inst->IsOpen());
  EXPECT_EQ(Letters(9), "............... 4");
  Fill(9, 4, 1, 2);
  bench.dialogs.ok = false;
  Press();
  EXPECT_EQ(Box(), "Tavrel: new installation");
  EXPECT_TRUE(inst->IsOpen());
  EXPECT_EQ(bench.state.Unit[9].UnitInet, 0);
  EXPECT_EQ(bench.state.SlotFile[9], "");
}

TEST_F(TavInst, BeginsANewTestAndLeavesAllOthersAlone) {
  Start();
  const std::string recording = bench.home.Read("tavdat/M260314C.OVN");
  Open();
  Fill(9, 4, 1, 15);
  bench.state.OverPrepared = bench.state.PartPrepared = bench.state.WorkReset = true;
  bench.state.TickRefresh.At = 99999;
  Press();
  EXPECT_FALSE(inst->IsOpen());
  EXPECT_TRUE(bench.port.sent.empty()) << "installation touches no register";
  EXPECT_EQ(bench.state.SlotFile[9], "M260314A.NEW");
  EXPECT_EQ(bench.state.SlotPath[9], bench.state.Settings.DefPath);
  EXPECT_EQ(bench.state.ReadState[9], ReadState::kIdle);
  EXPECT_EQ(bench.state.SampleCount[9], 0);
  const UnitRecord unit = HeaderOf("M260314A.NEW");
  EXPECT_TRUE(IsTavrelHeader(unit));
  EXPECT_EQ(unit.UnitInet, 4);
  EXPECT_EQ(unit.UnitCtrl, 1);
  EXPECT_EQ(unit.UnitRef, 15);
  EXPECT_EQ(unit.UnitInterval, 10);
  EXPECT_EQ(unit.UnitDesignation.Get(), "NEW:Row 9");
  EXPECT_EQ(unit.UnitDate.Get(), "03-14-2026 / 10:00");
  EXPECT_TRUE(bench.Row(9).Sheet);
  EXPECT_EQ(bench.Row(9).tx_Des, "Row 9");
  EXPECT_FALSE(bench.Row(8).Sheet);
  EXPECT_EQ(bench.state.Settings.ActiveFiles[8], "M260314A.NEW");
  EXPECT_NE(bench.home.Read("TAVREL.USR").find("M260314A.NEW"), std::string::npos);
  EXPECT_FALSE(bench.state.OverPrepared || bench.state.PartPrepared || bench.state.WorkReset);
  EXPECT_EQ(bench.state.TickRefresh.At, 0);
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);

  EXPECT_EQ(bench.home.Read("tavdat/M260314C.OVN"), recording);
  EXPECT_EQ(bench.state.ReadState[5], ReadState::kWaiting);
  EXPECT_EQ(bench.state.Unit[5].UnitRecOn, 1);
  EXPECT_TRUE(bench.state.SlotFileNo[5].IsOpen());
}

TEST_F(TavInst, WritesTheNamesOfTheRolesInTheUsersLanguage) {
  Start(true);
  Open();
  EXPECT_EQ(inst->TipLanguage(), Language::kGerman);
  EXPECT_EQ(Row(2).Inputs[1].Spoken, "Regler");
  Fill(9, 4, 1, 15);
  Press();
  EXPECT_EQ(HeaderOf("M260314A.NEW").UnitInputName[1].Get(), "Regler");
  EXPECT_EQ(HeaderOf("M260314A.NEW").UnitInputName[15].Get(), "Referenz");
}

TEST_F(TavInst, EndsTheRecordingOfATestThatChanges) {
  Start();
  bench.state.ProgRunning[5] = true;
  bench.state.SampleSeen[5][6] = true;  // half a set
  bench.state.SampleValue[5][6] = 77;
  bench.state.ColumnsInDoubt[5] = true;
  bench.state.AskedInput[5] = 2;
  Open();
  inst->PutRole(5, 10, Role::kMeasuring);
  Press();
  const UnitRecord old = HeaderOf("M260314C.OVN");
  EXPECT_EQ(old.UnitRecOn, 0);
  EXPECT_EQ(bench.Samples("M260314C.OVN"), (std::vector<std::int16_t>{5, 6, 5, 6}));
  EXPECT_EQ(bench.state.SlotFile[5], "M260314D.OVN") << "one letter behind the old name of today";
  EXPECT_EQ(bench.state.Unit[5].UnitChannels, 3);
  EXPECT_EQ(bench.state.Unit[5].UnitRecOn, 0);
  EXPECT_EQ(bench.state.ReadState[5], ReadState::kIdle);
  EXPECT_FALSE(bench.state.ProgRunning[5]);
  EXPECT_FALSE(bench.state.SampleSeen[5][6]);
  EXPECT_FALSE(bench.state.ColumnsInDoubt[5]);
  EXPECT_EQ(bench.state.AskedInput[5], 0);
  EXPECT_EQ(bench.state.SampleCount[5], 0);
  EXPECT_FALSE(IsThere(HeldSetName("M260314C.OVN")));
}

TEST_F(TavInst, WritesTheCompleteSetInHandBeforeTheRecordingEnds) {
  Start();
  bench.state.SampleSeen[5][2] = bench.state.SampleSeen[5][6] = true;
  bench.state.SampleValue[5][2] = 21;
  bench.state.SampleValue[5][6] = 61;
  bench.state.WriteFailed[5] = true;
  bench.state.ReadState[5] = ReadState::kWaiting;
  Open();
  inst->Test_Des_Change(5, "Another");
  Press();
  EXPECT_EQ(bench.Samples("M260314C.OVN"), (std::vector<std::int16_t>{5, 6, 5, 6, 21, 61}));
  EXPECT_EQ(bench.state.SlotFile[5], "M260314D.OVN");
  EXPECT_FALSE(bench.state.WriteFailed[5]);
  EXPECT_EQ(HeaderOf("M260314D.OVN").ApparatusName(), "Another");
}

// A changed designation is a change by itself, and an untouched one never is.
TEST_F(TavInst, TakesAnEditedDesignationForAChange) {
  Start();
  Open();
  inst->Test_Des_Change(2, "Oven 2");
  inst->Test_Des_Change(5, " Oven ");
  inst->Test_Ext_Change(5, "ovn");
  Press();
  EXPECT_EQ(bench.state.SlotFile[2], "M260314A.OVN");
  EXPECT_EQ(HeaderOf("M260314A.OVN").ApparatusName(), "Oven 2");
  EXPECT_EQ(bench.state.SlotFile[5], "M260314C.OVN");
  EXPECT_EQ(bench.state.Unit[5].UnitRecOn, 1);
  EXPECT_TRUE(IsThere("M260101A.OVN"));
}

TEST_F(TavInst, KeepsTheFileOfAClearedTestOnlyIfItHoldsSamples) {
  Start();
  Open();
  inst->PutNumber(2, 0);
  inst->PutNumber(12, 0);
  Press();
  EXPECT_TRUE(IsThere("M260101A.OVN"));
  EXPECT_FALSE(IsThere("M260314F.OVN"));
  for (const int slot : {2, 12}) {
    EXPECT_EQ(bench.state.SlotFile[slot], "");
    EXPECT_EQ(bench.state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)), "");
    EXPECT_EQ(bench.state.Unit[slot].UnitInet, 0);
    EXPECT_FALSE(bench.state.SlotFileNo[slot].IsOpen());
    EXPECT_FALSE(bench.Row(slot).Sheet);
  }
  EXPECT_NE(bench.home.Read("TAVREL.BAK").find("M260101A.OVN"), std::string::npos)
      << "the settings that name the dropped tests are kept";
  Open();
  EXPECT_EQ(Letters(2), "............... ");
  Fill(2, 3, 2, 7);
  Press();
  EXPECT_EQ(bench.state.SlotFile[2], "M260314A.NEW");
  EXPECT_EQ(bench.state.Unit[2].UnitInterval, 10);
}

TEST_F(TavInst, LeavesAnEmptyFileToWhoeverLooksAtIt) {
  Start();
  bench.state.Settings.OpenFile = "M260314F.OVN";
  bench.state.Settings.OpenPath = bench.home.File("tavdat");
  bench.screens.built = {View::kAllOpen};
  bench.sheet.cmd_Open_Click();
  Open();
  inst->PutNumber(12, 0);
  Press();
  EXPECT_TRUE(IsThere("M260314F.OVN"));
}

// The names that the commit gives are free on the disk and among all slots, also those of before.
TEST_F(TavInst, NeverTakesTheNameOfAnotherFile) {
  Start();
  bench.home.Write("tavdat/m260314a.new", "somebody else's");
  bench.state.Settings.ActiveFiles[6] = "M260314C.NEW";  // slot 7 waits for it
  Open();
  Fill(1, 1, 2, 6);
  Fill(3, 3, 1, 5);
  Fill(4, 4, 1, 5);
  inst->Test_Ext_Change(5, "NEW");
  inst->Test_Ext_Change(12, "NEW");
  Press();
  EXPECT_EQ(bench.state.SlotFile[1], "M260314B.NEW");
  EXPECT_EQ(bench.state.SlotFile[3], "M260314D.NEW");
  EXPECT_EQ(bench.state.SlotFile[4], "M260314E.NEW");
  EXPECT_EQ(bench.state.SlotFile[5], "M260314F.NEW");
  EXPECT_EQ(bench.state.SlotFile[12], "M260314G.NEW");
  EXPECT_EQ(bench.home.Read("tavdat/m260314a.new"), "somebody else's");
}

TEST_F(TavInst, PassesOverTheFileOfASlotThatHasNone) {
  Start();
  bench.state.Unit[8] = TestHeader(3, 1, 5);
  bench.state.Unit[8].UnitInterval = 77;
  Open();
  EXPECT_EQ(Letters(8), "............... ");
  Fill(8, 5, 1, 5);
  Press();
  EXPECT_EQ(bench.state.SlotFile[8], "M260314A.NEW");
  EXPECT_EQ(bench.state.Unit[8].UnitInterval, 77) << "its record was set";
  EXPECT_TRUE(bench.dialogs.announced.empty());
}

TEST_F(TavInst, KeepsATestThatWaitsForItsFile) {
  Start();
  bench.files.CloseRecordingFile(2);
  bench.state.SlotFile[2].clear();
  std::filesystem::rename(bench.home.File("tavdat/M260101A.OVN"), bench.home.File("away"));
  Open();
  EXPECT_FALSE(Row(2).IsEditable);
  EXPECT_NE(Row(2).WhyNot.find("m260101a.ovn"), std::string::npos);
  Fill(2, 3, 1, 5);
  inst->Sheet_Click(85, 1);
  EXPECT_EQ(inst->Values().Popup, InstallationPopup::kNone);
  EXPECT_EQ(Letters(2), "............... ");
  Fill(1, 3, 1, 5);
  Press();
  EXPECT_EQ(bench.state.Settings.ActiveFiles[1], "M260101A.OVN");
  EXPECT_TRUE(bench.Row(2).Sheet);
  std::filesystem::rename(bench.home.File("away"), bench.home.File("tavdat/M260101A.OVN"));
  bench.Run(11);
  EXPECT_EQ(bench.state.SlotFile[2], "M260101A.OVN");
}

TEST_F(TavInst, ShowsATestWhoseFileHasComeMeanwhile) {
  Start();
  bench.files.CloseRecordingFile(2);
  bench.state.SlotFile[2].clear();
  Open();
  ASSERT_FALSE(Row(2).IsEditable);
  bench.Run(11);
  inst->Refresh();
  EXPECT_TRUE(Row(2).IsEditable);
  EXPECT_EQ(Letters(2), "C...R...M...... 1");
}

TEST_F(TavInst, RecordsOnWhileItIsOpen) {
  Start();
  Open();
  inst->PutNumber(9, 4);
  for (int set = 0; set < 40; ++set) {
    bench.line.buffers[{2, 2}].push_back(static_cast<std::int16_t>(100 + set));
    bench.line.buffers[{2, 6}].push_back(static_cast<std::int16_t>(200 + set));
  }
  bench.Run(25);
  EXPECT_EQ(bench.state.SampleCount[5], 42);
}

TEST_F(TavInst, TellsWhatOKWouldDo) {
  Start();
  bench.line.registers[{1, 'Z', 1}] = 2;
  bench.line.registers[{2, 'Z', 2}] = 3;
  bench.Run(8);
  Open();
  EXPECT_TRUE(inst->Values().lbl_Effect.empty());
  inst->Test_Des_Change(2, "Oven ");
  EXPECT_EQ(inst->Values().lbl_Effect, Lines{"nothing changes"});
  inst->PutNumber(2, 0);
  EXPECT_EQ(inst->Values().lbl_Effect,
            Lines{"a controller that is on loses its test:  Tavrel 1 controller 1  (row 2)"});
  inst->PutRole(5, 2, Role::kNotUsed);
  inst->PutRole(5, 3, Role::kController);
  bench.state.ProgRunning[5] = true;
  inst->PutNumber(12, 5);
  Fill(1, 1, 1, 5);  // the controller of row 2 has a test again
  EXPECT_EQ(inst->Values().lbl_Effect,
            (Lines{"a controller that is on loses its test:  Tavrel 2 controller 2  (row 5)",
                   "ends the recording:  row 5  m260314c.ovn",
                   "ends the controller program:  row 5  m260314c.ovn",
                   "removes the test:  row 2  m260101a.ovn",
                   "begins a file:  row 1  (new),  row 5  (ovn),  row 12  (ovn)",
                   "deletes the empty file:  row 12  m260314f.ovn"}));
  bench.state.SampleCount[12] = 4;  // the pump goes on beneath it
  inst->Refresh();
  EXPECT_EQ(inst->Values().lbl_Effect.size(), 5U);
}

// With a fault OK changes nothing: it tells the fault.
TEST_F(TavInst, TellsWhatOKWouldRefuse) {
  Start();
  Open();
  for (const int row : {1, 7, 11}) {
    const std::string begin = "OK will refuse:  row " + std::to_string(row) + ":  ";
    inst->PutNumber(row, 4);
    EXPECT_EQ(inst->Values().lbl_Effect, Lines{begin + "one input must be defined as reference"});
    inst->PutRole(row, row, Role::kReference);
    EXPECT_EQ(inst->Values().lbl_Effect, Lines{begin + "one input must be defined as controller"});
    inst->PutRole(row, 3, Role::kController);
    EXPECT_EQ(inst->Values().lbl_Effect, Lines{begin + "extension ?"});
    Press();
    EXPECT_EQ(Box(), "check installation: error in row" + std::to_string(row) + ":\nextension ?");
    inst->Test_Ext_Change(row, "new");
    EXPECT_EQ(inst->Values().lbl_Effect,
              Lines{"begins a file:  row " + std::to_string(row) + "  (new)"});
    inst->PutNumber(row, 1);
    inst->PutRole(row, 1, Role::kMeasuring);
    EXPECT_EQ(inst->Values().lbl_Effect,
              Lines{"OK will refuse:  row " + std::to_string(std::max(row, 2)) +
                    ":  one input is defined more than once"});
    Open();
  }
}

// What was typed into a row without a number is not installed, and nothing says so but this line.
TEST_F(TavInst, TellsOfRowsThatHaveNoNumber) {
  Start();
  Open();
  inst->PutRole(3, 15, Role::kReference);
  EXPECT_EQ(inst->Values().lbl_Effect, Lines{"is left out, for it has no number:  row 3"});
  inst->Test_Des_Change(10, "Oven");
  inst->Test_Ext_Change(11, "new");
  EXPECT_EQ(inst->Values().lbl_Effect,
            Lines{"is left out, for it has no number:  row 3,  row 10,  row 11"});
  inst->Test_Des_Change(10, "  ");
  inst->PutRole(3, 15, Role::kNotUsed);
  inst->Test_Ext_Change(11, "");
  EXPECT_EQ(inst->Values().lbl_Effect, Lines{"nothing changes"});
}

TEST_F(TavInst, TellsThatAllTestsWouldGo) {
  Start();
  Open();
  for (const int row : {2, 5, 12}) {
    inst->PutNumber(row, 0);
  }
  inst->PutRole(7, 1, Role::kController);
  EXPECT_EQ(inst->Values().lbl_Effect, Lines{"OK will refuse:  row 12:  nothing to install ?"});
}

// The test goes, its file with samples stays.
TEST_F(TavInst, TellsWhichTestsGo) {
  Start();
  bench.state.SampleCount[12] = 4;
  Open();
  inst->PutNumber(2, 0);
  inst->PutNumber(12, 0);
  EXPECT_EQ(inst->Values().lbl_Effect,
            Lines{"removes the test:  row 2  m260101a.ovn,  row 12  m260314f.ovn"});
  bench.state.SampleCount[12] = 0;
  inst->Refresh();
  EXPECT_EQ(inst->Values().lbl_Effect, (Lines{"removes the test:  row 2  m260101a.ovn",
                                              "deletes the empty file:  row 12  m260314f.ovn"}));
}

TEST_F(TavInst, TellsFaultsInGerman) {
  Start(true);
  Open();
  inst->PutNumber(7, 4);
  EXPECT_EQ(inst->Values().lbl_Effect,
            Lines{"OK lehnt ab:  Zeile 7:  one input must be defined as reference"});
  inst->PutNumber(7, 0);
  inst->PutRole(7, 9, Role::kMeasuring);
  inst->PutNumber(2, 0);
  EXPECT_EQ(inst->Values().lbl_Effect, (Lines{"entfernt den Test:  Zeile 2  m260101a.ovn",
                                              "bleibt weg, weil die Nummer fehlt:  Zeile 7"}));
}

TEST_F(TavInst, TellsItInGerman) {
  Start(true);
  Open();
  inst->PutNumber(5, 0);
  EXPECT_EQ(inst->Values().lbl_Effect, Lines{"beendet die Aufzeichnung:  Zeile 5  m260314c.ovn"});
}

}  // namespace
}  // namespace tavrel
