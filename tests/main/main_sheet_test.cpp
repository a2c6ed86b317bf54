#include "main/main_sheet.h"

#include <gtest/gtest.h>

#include "main/main_menu.h"
#include "tests/support/bench_program.h"

namespace tavrel {
namespace {

class Sheet : public testing::Test {
 protected:
  void StartThreeSlots() {
    bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, false));
    bench.Install(3, "M260314B.ACL", BenchProgram::Header(2, 1, 2, false));
    bench.Install(4, "M260314C.TUB", BenchProgram::Header(2, 2, 2, false));
    bench.Start();
  }
  // One whole pass over the rows.
  void Pass() {
    bench.state.TickRefresh.At = 0;
    bench.state.SheetSlot = 0;
    do {
      bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
      bench.cycle.Tick();
    } while (bench.state.SheetSlot != 0);
  }
  void Set(int inet, char letter, int index, int value) {
    bench.line.registers[{inet, letter, index}] = static_cast<std::int16_t>(value);
  }

  BenchProgram bench;
};

TEST_F(Sheet, ShowsValuesInTenthsOfADegree) {
  StartThreeSlots();
  Set(1, 'Y', 2, 4567);
  Set(1, 'Y', 1, -1);
  Pass();
  EXPECT_EQ(bench.Row(1).lb_Ref, "228.4");
  EXPECT_EQ(bench.Row(1).lb_Ctrl, "-0.1");
  Set(1, 'Y', 2, -32768);
  Pass();
  EXPECT_EQ(bench.Row(1).lb_Ref, "");
}

// The mark comes with the next set. Behind a restart the clocks say nothing against it.
TEST_F(Sheet, MarksARecordingThatLacksSets) {
  for (const Language language : {Language::kEnglish, Language::kGerman}) {
    for (const int slot : {1, 12}) {
      BenchProgram program;
      program.state.Settings.HelpLang = language == Language::kGerman ? "German" : "English";
      program.Install(slot, "M260314A.OVN", BenchProgram::Header(1, 1, 1, true), {7, 7, 8});
      program.Start();
      program.Run(10);
      EXPECT_EQ(program.Row(slot).lb_Rstat, "on");
      EXPECT_EQ(program.Row(slot).RstatNote, "");
      program.files.Journals().Note(slot, "lost",
                                    {{"before", 3},
                                     {"sets", 3},
                                     {"exact", true},
                                     {"least", 3},
                                     {"most", 3},
                                     {"cause", "restart"}});
      const std::array<std::int16_t, 1> words = {9};
      ASSERT_TRUE(program.files.AppendRow(slot, words, 1));
      program.Run(10);
      EXPECT_EQ(program.Row(slot).lb_Rstat, "on !");
      const std::string note = program.Row(slot).RstatNote;
      const bool is_german = language == Language::kGerman;
      EXPECT_EQ(note.find(is_german ? " 3 Sätze, 3 verloren am 14.03. um "
                                    : " 3 sets, 3 lost on 14.03. at "),
                0U)
          << note;
    }
  }
}

struct StateCase {
  int z;
  const char* word;
  Colour colour;
};

TEST_F(Sheet, TellsTheControllerByWordAndColour) {
  StartThreeSlots();
  const std::vector<StateCase> cases = {
      {2, "iso", kGreen},  {-1, "", kGrey},      {1, "fail", kOrange}, {3, "dyn", kGreen},
      {4, "dyn-", kGreen}, {5, "test", kOrange}, {0, "off", kGrey},    {6, "?", kOrange},
      {-32768, "", kGrey}, {77, "?", kOrange}};
  for (const StateCase& param : cases) {
    Set(1, 'Z', 1, param.z);
    Pass();
    EXPECT_EQ(bench.Row(1).lb_Cstat, param.word) << param.z;
    EXPECT_EQ(bench.Row(1).sh_Cstat, param.colour) << param.z;
  }
}

TEST_F(Sheet, ShowsASilentInstrumentInOrangeAndAsksItOnlyOnceARow) {
  StartThreeSlots();
  Set(2, 'Y', 2, 400);
  Set(2, 'Z', 1, 2);
  Pass();
  EXPECT_EQ(bench.Row(3).sh_TavNo, kYellow);
  EXPECT_EQ(bench.Row(3).lb_Ref, "20.0");

  bench.line.silent = {2};
  bench.port.sent.clear();
  Pass();
  EXPECT_EQ(bench.port.sent, (std::vector<std::string>{"Y02?", "Y01?", "Z01?", "Y12?", "Y12?"}));
  EXPECT_EQ(bench.Row(3).sh_TavNo, kOrange);
  EXPECT_EQ(bench.Row(3).lb_TavNo, "2");
  EXPECT_EQ(bench.Row(3).lb_Ref, "");
  EXPECT_EQ(bench.Row(3).lb_Ctrl, "");
  EXPECT_EQ(bench.Row(3).lb_Cstat, "");
  EXPECT_EQ(bench.Row(1).sh_TavNo, kYellow);

  bench.line.silent.clear();
  Pass();
  EXPECT_EQ(bench.Row(3).sh_TavNo, kYellow);
  EXPECT_EQ(bench.Row(3).lb_Ref, "20.0");
  EXPECT_EQ(bench.Row(3).lb_Cstat, "iso");
}

TEST_F(Sheet, ShowsAControllerThatHasNotAcknowledgedThatItIsOff) {
  StartThreeSlots();
  Set(2, 'Z', 1, 2);
  Set(2, 'Z', 2, 2);
  bench.state.Unit[3].UnitEndAction = 1;
  Pass();
  bench.line.refused = {'Z'};
  bench.engine.EndOfRecording(3);
  bench.line.refused.clear();
  bench.clock.AdvanceSeconds(1);
  Pass();
  EXPECT_EQ(bench.Row(3).lb_Cstat, "off ?");
  EXPECT_EQ(bench.Row(3).sh_Cstat, kOrange);
  EXPECT_EQ(bench.Row(3).CstatNote.substr(0, 44), " the end of the recording switches the contr");
  EXPECT_EQ(bench.Row(4).lb_Cstat, "iso") << "another controller of the same instrument";
  bench.line.silent = {2};
  Pass();
  EXPECT_EQ(bench.Row(3).lb_Cstat, "off ?") << "also of an instrument that is away";
  bench.state.Settings.HelpLang = "german";
  bench.sheet.SetCaptionAndTips();
  bench.state.SheetReset = false;
  Pass();
  EXPECT_EQ(bench.Row(3).CstatNote.substr(0, 41), " das Ende der Aufzeichnung schaltet den R");
  bench.line.silent.clear();
  bench.Run(12);
  Pass();
  EXPECT_EQ(bench.Row(3).lb_Cstat, "off");
  EXPECT_EQ(bench.Row(3).sh_Cstat, kGrey);
  EXPECT_EQ(bench.Row(3).CstatNote, "");
}

// What the sheet remembers as shown is dropped whenever a slot's file changes or a screen is
// rebuilt. The cells must not outlive it.
TEST_F(Sheet, ShowsNoValuesOfASilentInstrumentAfterItForgetsWhatItHasShown) {
  StartThreeSlots();
  for (const int slot : {1, 3, 4}) {
    const int inet = slot == 1 ? 1 : 2;
    const int ctrl = slot == 4 ? 2 : 1;
    bench.line.silent.clear();
    Set(inet, 'Y', 2, 504);
    Set(inet, 'Y', 1, 20000);
    Set(inet, 'Z', ctrl, 2);
    Pass();
    ASSERT_EQ(bench.Row(slot).lb_Ref, "25.2");
    ASSERT_FALSE(bench.Row(slot).lb_Ctrl.empty());
    ASSERT_EQ(bench.Row(slot).lb_Cstat, "iso");
    bench.state.SheetReset = false;
    bench.line.silent = {inet};
    Pass();
    EXPECT_EQ(bench.Row(slot).sh_TavNo, kOrange);
    EXPECT_EQ(bench.Row(slot).lb_Ref, "") << slot;
    EXPECT_EQ(bench.Row(slot).lb_Ctrl, "") << slot;
    EXPECT_EQ(bench.Row(slot).lb_Cstat, "") << slot;
    EXPECT_EQ(bench.Row(slot).sh_Cstat, kGrey) << slot;
  }
}

TEST_F(Sheet, ShowsNoStateOfAControllerThatHasNoneAfterItForgetsWhatItHasShown) {
  StartThreeSlots();
  Set(1, 'Z', 1, 2);
  Set(1, 'Y', 2, 504);
  Pass();
  Set(1, 'Z', 1, -1);
  Set(1, 'Y', 2, -32768);
  bench.state.SheetReset = false;
  Pass();
  EXPECT_EQ(bench.Row(1).lb_Cstat, "");
  EXPECT_EQ(bench.Row(1).sh_Cstat, kGrey);
  EXPECT_EQ(bench.Row(1).lb_Ref, "");
}

TEST_F(Sheet, KeepsWhatIsNoValueWhenItForgetsWhatItHasShown) {
  StartThreeSlots();
  Pass();
  bench.sheet.tx_Des_Change(1, " half typed");
  bench.state.SheetReset = false;
  Pass();
  EXPECT_TRUE(bench.Row(1).Sheet);
  EXPECT_EQ(bench.Row(1).tx_Des, " half typed");
  EXPECT_TRUE(bench.Row(1).tx_DesEnabled);
  EXPECT_TRUE(bench.Row(1).imgTavSel);
  EXPECT_EQ(bench.Row(1).lb_File, "m260314a.ovn");
  EXPECT_EQ(bench.Row(1).lb_TavNo, "1");
}

TEST_F(Sheet, TellsTheRecordingByWordAndColour) {
  StartThreeSlots();
  bench.state.SampleLimit[1] = 100;
  bench.state.SampleCount[1] = 99;
  Pass();
  EXPECT_EQ(bench.Row(1).lb_Rstat, "off");
  EXPECT_EQ(bench.Row(1).sh_Rstat, kGrey);
  bench.state.SampleCount[1] = 100;
  Pass();
  EXPECT_EQ(bench.Row(1).lb_Rstat, "end");
  EXPECT_EQ(bench.Row(1).sh_Rstat, kYellow);
  bench.state.Unit[1].UnitRecOn = 1;
  Pass();
  EXPECT_EQ(bench.Row(1).lb_Rstat, "on");
  EXPECT_EQ(bench.Row(1).sh_Rstat, kGreen);
  bench.state.WriteFailed[1] = true;
  Pass();
  EXPECT_EQ(bench.Row(1).lb_Rstat, "disk !");
  EXPECT_EQ(bench.Row(1).sh_Rstat, kOrange);
  EXPECT_EQ(bench.Row(1).RstatNote,
            " the last set could not be written, it is kept and tried again ");
  bench.state.Settings.HelpLang = "German";
  bench.sheet.SetCaptionAndTips();
  Pass();
  EXPECT_EQ(bench.Row(1).lb_Rstat, "Datei !");
  EXPECT_EQ(bench.Row(1).RstatNote,
            " der letzte Satz konnte nicht geschrieben werden, er wird behalten und neu versucht ");
  bench.state.WriteFailed[1] = false;
  bench.state.Unit[1].UnitRecOn = 7;
  Pass();
  EXPECT_EQ(bench.Row(1).lb_Rstat, "");
  EXPECT_EQ(bench.Row(1).sh_Rstat, kGrey);
  EXPECT_EQ(bench.Row(1).RstatNote, "");
}

TEST_F(Sheet, ShowsRecordedHoursFromTheFirstSetOn) {
  StartThreeSlots();
  bench.state.RecInterval[1] = 100;
  const std::vector<std::pair<int, const char*>> cases = {
      {0, "0.00"}, {1, "0.00"}, {2, "0.00"}, {38, "1.00"}, {39, "1.03"}, {32767, "910.14"}};
  for (const auto& [count, hours] : cases) {
    bench.state.SampleCount[1] = count;
    Pass();
    EXPECT_EQ(bench.Row(1).lb_Rec, hours) << count;
  }
}

TEST_F(Sheet, ShowsTheFirstTwelveCharactersOfTheFileInLowerCase) {
  StartThreeSlots();
  Pass();
  EXPECT_EQ(bench.Row(1).lb_File, "m260314a.ovn");
  bench.state.SlotFile[1] = "M260314[.OVNXYZ";
  Pass();
  EXPECT_EQ(bench.Row(1).lb_File, "m260314[.ovn");
}

TEST_F(Sheet, SelectsTheInstrumentOfTheFirstRowByItself) {
  StartThreeSlots();
  Pass();
  EXPECT_EQ(bench.state.ActiveInet, 1);
  EXPECT_TRUE(bench.Row(1).imgTavSel);
  EXPECT_FALSE(bench.Row(3).imgTavSel);
}

TEST_F(Sheet, MovesTheSelectionToAllRowsOfAnInstrument) {
  StartThreeSlots();
  Pass();
  bench.sheet.lb_TavNo_Click(3);
  EXPECT_EQ(bench.state.ActiveInet, 2);
  EXPECT_FALSE(bench.Row(1).imgTavSel);
  EXPECT_TRUE(bench.Row(3).imgTavSel);
  EXPECT_TRUE(bench.Row(4).imgTavSel);
  EXPECT_FALSE(bench.Row(5).imgTavSel);
  bench.sheet.lb_TavNo_Click(5);
  bench.sheet.lb_TavNo_Click(0);
  bench.sheet.lb_TavNo_Click(13);
  EXPECT_EQ(bench.state.ActiveInet, 2);
}

TEST_F(Sheet, KeepsTheExtensionLettersWhenTheApparatusIsRenamed) {
  StartThreeSlots();
  bench.state.Unit[1].UnitDesignation.Set("OVN: Default");
  bench.sheet.tx_Des_Change(1, "  Ofen Süd ");
  EXPECT_EQ(bench.state.Unit[1].UnitDesignation.Get(), "OVN:Ofen Süd");
  EXPECT_TRUE(bench.state.SlotDirty[1]);
  EXPECT_FALSE(bench.state.SlotDirty[3]);
  EXPECT_EQ(bench.Row(1).tx_Des, "  Ofen Süd ");
}

TEST_F(Sheet, MarksCurvesStaleOnlyForTheSelectedSlot) {
  StartThreeSlots();
  bench.state.SelSlot = 3;
  bench.state.WorkReset = bench.state.OverPrepared = bench.state.PartPrepared = true;
  bench.sheet.tx_Des_Change(1, "other");
  EXPECT_TRUE(bench.state.WorkReset && bench.state.OverPrepared && bench.state.PartPrepared);
  bench.sheet.tx_Des_Change(3, "other");
  EXPECT_FALSE(bench.state.WorkReset || bench.state.OverPrepared || bench.state.PartPrepared);
}

TEST_F(Sheet, PreparesTheCurvesAnewForAnotherSlotOnly) {
  StartThreeSlots();
  bench.state.SelSlot = 3;
  bench.screens.built = {View::kTavWork};
  bench.screens.on_show = [this](View) {
    EXPECT_EQ(bench.state.TickRefresh.At, 0) << "the worksheet is filled at once";
    EXPECT_EQ(bench.events.pointers.back(), Pointer::kHourglass);
    bench.state.TickRefresh.At = 99999;
    bench.state.SheetSlot = 5;
  };
  for (const int slot : {3, 4, 1, 0, 4, 4}) {
    bench.state.TickRefresh.At = 99999;
    const bool is_other = slot != bench.state.SelSlot;
    bench.state.WorkReset = bench.state.OverPrepared = bench.state.PartPrepared = true;
    bench.sheet.cmd_Work_Click(slot);
    EXPECT_EQ(bench.state.SelSlot, slot);
    EXPECT_EQ(bench.state.WorkReset, !is_other) << slot;
    EXPECT_EQ(bench.state.OverPrepared, !is_other) << slot;
    EXPECT_EQ(bench.state.PartPrepared, !is_other) << slot;
    EXPECT_EQ(bench.state.TickRefresh.At, 0) << "and the sheet behind it";
    EXPECT_EQ(bench.state.SheetSlot, 0);
  }
}

// A row that went dark with its file shows everything again when the file is back, although
// nothing of it has changed.
TEST_F(Sheet, FillsARowThatReturns) {
  for (const int slot : {1, 3, 12}) {
    BenchProgram other;
    const UnitRecord header = BenchProgram::Header(2, 1, 2, false);
    other.Install(slot, "M260314A.OVN", header, {7, 8, 7, 8});
    other.line.registers[{2, 'Y', 2}] = 4567;
    other.line.registers[{2, 'Y', 1}] = 400;
    other.line.registers[{2, 'Z', 1}] = 2;
    other.Start();
    other.Run(6);
    const SheetRow before = other.Row(slot);
    EXPECT_EQ(before.lb_Ref, "228.4");
    other.sheet.HideRow(slot);
    EXPECT_FALSE(other.Row(slot).Sheet);
    EXPECT_EQ(other.Row(slot).lb_Ref, "");
    for (const bool waited : {false, true}) {
      if (waited) {
        other.sheet.ShowWaitingRow(slot);
      }
      other.sheet.ShowRow(slot);
      other.Run(6);
      const SheetRow& after = other.Row(slot);
      EXPECT_EQ(after.lb_Ref, before.lb_Ref) << slot;
      EXPECT_EQ(after.lb_Ctrl, "20.0") << slot;
      EXPECT_EQ(after.lb_Cstat, "iso") << slot;
      EXPECT_EQ(after.lb_TavNo, "2") << slot;
      EXPECT_EQ(after.lb_File, "m260314a.ovn") << slot;
      EXPECT_EQ(after.lb_Rstat, "off") << slot;
      EXPECT_EQ(after.lb_Rec, before.lb_Rec) << slot;
      EXPECT_NE(after.lb_Rec, "") << slot;
    }
  }
}

TEST_F(Sheet, IsUpToDateTwelveTicksAfterTheWorksheetCloses) {
  bench.screens.built = {View::kTavWork};
  StartThreeSlots();
  Pass();
  EXPECT_TRUE(bench.Row(1).cmd_WorkEnabled);
  Set(1, 'Y', 2, 1000);
  bench.sheet.cmd_Work_Click(4);
  EXPECT_EQ(bench.screens.shown, std::vector<View>{View::kTavWork});
  EXPECT_EQ(bench.state.SelSlot, 4);
  for (int tick = 0; tick < 12; ++tick) {
    bench.cycle.Tick();
  }
  EXPECT_EQ(bench.Row(1).lb_Ref, "50.0");
}

TEST_F(Sheet, GreysWhatTheProgramDoesNotHave) {
  StartThreeSlots();
  EXPECT_FALSE(bench.Row(1).cmd_WorkEnabled);
  EXPECT_FALSE(bench.sheet.Values().cmd_OpenEnabled);
  EXPECT_TRUE(bench.sheet.Values().picActual);
}

TEST_F(Sheet, MarksAPassByItsIndicator) {
  StartThreeSlots();
  bench.cycle.Tick();
  EXPECT_TRUE(bench.sheet.Values().Indicator);
  Pass();
  EXPECT_FALSE(bench.sheet.Values().Indicator);
  EXPECT_TRUE(bench.state.SheetReset) << "what is shown is remembered";
}

TEST_F(Sheet, SaysWhenTheLinkIsSimulated) {
  StartThreeSlots();
  EXPECT_EQ(bench.sheet.Values().Caption, " TAVREL  6.1");
  bench.state.Settings.CommPort = "----";
  bench.commands.LinkOpen();
  EXPECT_EQ(bench.sheet.Values().Caption, " TAVREL  6.1   (simulated)");
  bench.state.Settings.HelpLang = "German";
  bench.commands.LinkOpen();
  EXPECT_EQ(bench.sheet.Values().Caption, " TAVREL  6.1   (simuliert)");
}

TEST_F(Sheet, ForgetsTheBacklogLineWhenTheFormLeavesTheFront) {
  StartThreeSlots();
  for (const int count : {40, 1}) {
    bench.state.BacklogCount = count;
    bench.state.lbl_Info = "reading from Tavrel:  " + std::to_string(count);
    bench.sheet.LeaveFront();
    bench.cycle.Tick();
    EXPECT_EQ(bench.sheet.Values().lbl_Info, "");
    EXPECT_EQ(bench.state.BacklogCount, 0);
  }
}

TEST_F(Sheet, IsNotDisturbedByTheViewedFile) {
  StartThreeSlots();
  bench.state.SlotFile[0] = "M250101A.OLD";
  bench.state.Unit[0].UnitInet = 5;
  bench.port.sent.clear();
  Pass();
  for (const std::string& command : bench.port.sent) {
    EXPECT_NE(command[1], '4') << command;
  }
}

}  // namespace
}  // namespace tavrel
