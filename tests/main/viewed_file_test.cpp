#include <gtest/gtest.h>

#include <filesystem>

#include "tests/files/recording_fixture.h"
#include "tests/support/bench_program.h"

namespace tavrel {
namespace {

// cmd_Open of the main sheet. In place of the dialog stands what the user chooses in it.
class ViewedFile : public testing::Test {
 protected:
  ViewedFile() {
    bench.screens.built = {View::kAllOpen, View::kTavWork};
    bench.screens.on_show = [this](View view) {
      if (view == View::kAllOpen) {
        header_at_opening = Header();
        pending_at_opening = bench.state.PendingFile;
        bench.state.Settings.OpenFile = choice;
        bench.state.Settings.OpenPath = path;
      }
    };
    std::filesystem::permissions(bench.home.Path(), std::filesystem::perms(0755));
    bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
    WriteOld("M250101A.OVN", 5, "Old oven", 38);
    WriteOld("M250102A.OVN", 6, "Other oven", 2);
  }

  void WriteOld(const std::string& name, int inet, const std::string& apparatus, int rows) const {
    UnitRecord unit = BenchProgram::Header(inet, 1, 2, false);
    unit.SetApparatusName(apparatus);
    bench.home.Write("tavdat/" + name,
                     BytesOf(unit) + std::string(static_cast<std::size_t>(4 * rows), '\1'));
  }
  void Open(const std::string& name) {
    choice = name;
    bench.sheet.cmd_Open_Click();
  }
  // The header of the first old file as it is on the disk.
  [[nodiscard]] std::string Header() const {
    return bench.home.Read("tavdat/M250101A.OVN").substr(0, kHeaderBytes);
  }

  BenchProgram bench;
  RunState& state = bench.state;
  std::string path = bench.home.File("tavdat");
  std::string choice;
  std::string header_at_opening;
  std::string pending_at_opening;
};

TEST_F(ViewedFile, ShowsTheChosenFileInRowZeroAndOpensItsWorksheet) {
  bench.Start();
  state.WorkReset = state.OverPrepared = state.PartPrepared = true;
  Open("M250101A.OVN");
  EXPECT_EQ(bench.screens.shown, (std::vector<View>{View::kAllOpen, View::kTavWork}));
  EXPECT_EQ(state.SelSlot, 0);
  EXPECT_FALSE(state.WorkReset || state.OverPrepared || state.PartPrepared);
  EXPECT_EQ(state.SlotFile[0], "M250101A.OVN");
  EXPECT_EQ(state.SlotPath[0], path);
  EXPECT_TRUE(state.SlotFileNo[0].IsOpen());
  const SheetRow& row = bench.Row(0);
  EXPECT_TRUE(row.Sheet);
  EXPECT_EQ(row.tx_Des, "Old oven");
  EXPECT_TRUE(row.tx_DesEnabled);
  EXPECT_EQ(row.lb_TavNo, "5");
  EXPECT_EQ(row.lb_File, "m250101a.ovn");
  EXPECT_EQ(row.lb_Rec, "1.00");
  EXPECT_EQ(row.lb_Cstat + row.lb_Rstat + row.lb_Ctrl + row.lb_Ref, "");
  EXPECT_EQ(row.sh_TavNo, kGrey);
  EXPECT_EQ(row.sh_Cstat, kGrey);
  EXPECT_EQ(row.sh_Rstat, kGrey);
  EXPECT_TRUE(row.cmd_WorkEnabled);
}

TEST_F(ViewedFile, ShowsTheRowWithAGreyButtonWithoutAWorksheet) {
  bench.screens.built = {View::kAllOpen};
  bench.Start();
  Open("M250101A.OVN");
  EXPECT_EQ(bench.screens.shown, std::vector<View>{View::kAllOpen});
  EXPECT_TRUE(bench.Row(0).Sheet);
  EXPECT_FALSE(bench.Row(0).cmd_WorkEnabled);
}

TEST_F(ViewedFile, HandsTheLastNameToTheDialog) {
  bench.Start();
  state.Settings.OpenFile = "M250102A.OVN";
  Open("M250101A.OVN");
  EXPECT_EQ(pending_at_opening, "M250102A.OVN");
}

TEST_F(ViewedFile, LeavesRowZeroAsItWasOnCancel) {
  bench.Start();
  Open("M250101A.OVN");
  bench.screens.shown.clear();
  state.SelSlot = 1;
  state.WorkReset = true;
  Open("");
  EXPECT_EQ(bench.screens.shown, std::vector<View>{View::kAllOpen});
  EXPECT_EQ(state.SlotFile[0], "M250101A.OVN");
  EXPECT_TRUE(state.SlotFileNo[0].IsOpen());
  EXPECT_TRUE(bench.Row(0).Sheet);
  EXPECT_EQ(bench.Row(0).lb_File, "m250101a.ovn");
  EXPECT_EQ(state.SelSlot, 1);
  EXPECT_TRUE(state.WorkReset);
}

TEST_F(ViewedFile, RowStaysHiddenWhenTheFirstChoiceIsCancelled) {
  bench.Start();
  Open("");
  EXPECT_FALSE(bench.Row(0).Sheet);
  EXPECT_EQ(state.SlotFile[0], "");
}

TEST_F(ViewedFile, WritesAnEditedNameBeforeTheDialogComes) {
  bench.Start();
  Open("M250101A.OVN");
  bench.sheet.tx_Des_Change(0, " New name ");
  EXPECT_TRUE(state.SlotDirty[0]);
  EXPECT_FALSE(state.IndexValid);
  EXPECT_EQ(Header().substr(204, 8), "Old oven");
  Open("M250102A.OVN");
  EXPECT_EQ(header_at_opening.substr(204, 9), "New name ");
  EXPECT_EQ(bench.Row(0).tx_Des, "Other oven");
  EXPECT_EQ(bench.Row(0).lb_TavNo, "6");
  EXPECT_FALSE(state.SlotDirty[0]);
}

// It is the slot's header then, and is written with that.
TEST_F(ViewedFile, RenamesTheTestWhoseFileItIs) {
  bench.Start();
  Open("M260314A.OVN");
  bench.sheet.tx_Des_Change(0, "New name");
  EXPECT_EQ(bench.Row(0).tx_Des, "New name");
  EXPECT_EQ(bench.Row(1).tx_Des, "New name");
  EXPECT_FALSE(state.SlotDirty[0]);
  Open("M250102A.OVN");
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  bench.engine.FlushFiles();
  EXPECT_EQ(bench.home.Read("tavdat/M260314A.OVN").substr(204, 8), "New name");
}

TEST_F(ViewedFile, WritesNoHeaderThatWasNotEdited) {
  bench.Start();
  Open("M250101A.OVN");
  state.Unit[0].UnitYmax = 77;
  Open("");
  EXPECT_EQ(header_at_opening, Header());
  EXPECT_NE(Header(), BytesOf(state.Unit[0]));
}

TEST_F(ViewedFile, HidesItsRowWhenTheFileIsRefused) {
  bench.home.Write("tavdat/STRANGE.OVN", std::string(1000, '\0'));
  bench.Start();
  Open("M250101A.OVN");
  bench.screens.shown.clear();
  Open("STRANGE.OVN");
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "STRANGE.OVN  is not a Tavrel-file !");
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "Read  file");
  EXPECT_EQ(bench.screens.shown, std::vector<View>{View::kAllOpen});
  EXPECT_FALSE(bench.Row(0).Sheet);
  EXPECT_EQ(state.SlotFile[0], "");
  EXPECT_FALSE(state.SlotFileNo[0].IsOpen());
}

TEST_F(ViewedFile, SaysThatAFileHasGone) {
  bench.Start();
  Open("M240101A.OVN");
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "M240101A.OVN  not found !");
  EXPECT_FALSE(bench.Row(0).Sheet);
}

TEST_F(ViewedFile, OpensAFileThatCannotBeWritten) {
  bench.Start();
  const ReadOnlyMedium medium(path, bench.home.File("tavdat/M250101A.OVN"));
  Open("M250101A.OVN");
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_TRUE(bench.Row(0).Sheet);
  EXPECT_EQ(bench.Row(0).tx_Des, "Old oven");
}

TEST_F(ViewedFile, HidesItsRowWhenItsEditedHeaderCannotBeWritten) {
  bench.Start();
  Open("M250101A.OVN");
  bench.sheet.tx_Des_Change(0, "New name");
  const ReadOnlyMedium medium(path, bench.home.File("tavdat/M250101A.OVN"));
  Open("");
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "Write  file");
  EXPECT_FALSE(bench.Row(0).Sheet);
}

TEST_F(ViewedFile, OpensTheSameFileAgain) {
  bench.Start();
  Open("M250101A.OVN");
  Open("M250101A.OVN");
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_EQ(bench.Row(0).tx_Des, "Old oven");
  EXPECT_TRUE(state.SlotFileNo[0].IsOpen());
}

TEST_F(ViewedFile, DoesNotResumeARecordingByViewingIt) {
  UnitRecord unit = BenchProgram::Header(2, 1, 2, true);
  bench.home.Write("tavdat/M250103A.OVN", BytesOf(unit));
  bench.Start();
  Open("M250103A.OVN");
  EXPECT_EQ(state.ReadState[0], ReadState::kIdle);
  EXPECT_EQ(bench.Row(0).lb_Rstat, "");
}

TEST_F(ViewedFile, DoesNotDisturbTheSlotsThatRecord) {
  bench.line.registers[{1, 'Y', 2}] = 2000;
  bench.Start();
  bench.Run(6);
  const SheetRow before = bench.Row(1);
  EXPECT_EQ(before.lb_Ref, "100.0");
  Open("M250101A.OVN");
  bench.Run(6);
  EXPECT_EQ(bench.Row(1).lb_Ref, before.lb_Ref);
  EXPECT_EQ(bench.Row(1).lb_Rstat, "on");
  EXPECT_EQ(bench.Row(0).lb_Ref, "");
  EXPECT_EQ(bench.Row(0).lb_File, "m250101a.ovn");
}

TEST_F(ViewedFile, LeavesNoValuesOfAnInstrumentThatDiesWhileItIsLookedAt) {
  bench.line.registers[{1, 'Y', 2}] = 504;
  bench.line.registers[{1, 'Y', 1}] = 20000;
  bench.Start();
  bench.Run(6);
  ASSERT_EQ(bench.Row(1).lb_Ref + bench.Row(1).lb_Ctrl, "25.21000.0");
  bench.screens.on_show = [this](View view) {
    if (view == View::kAllOpen) {
      bench.state.Settings.OpenFile = "M250101A.OVN";
      bench.state.Settings.OpenPath = path;
    } else {
      bench.line.silent = {1};
    }
  };
  bench.sheet.cmd_Open_Click();
  bench.Run(6);
  EXPECT_EQ(bench.Row(1).sh_TavNo, kOrange);
  EXPECT_EQ(bench.Row(1).lb_Ref + bench.Row(1).lb_Ctrl + bench.Row(1).lb_Cstat, "");
  EXPECT_EQ(bench.Row(0).lb_File, "m250101a.ovn") << "the viewed file is served by no pass";
  EXPECT_EQ(bench.Row(0).lb_TavNo, "5");
}

TEST_F(ViewedFile, IsSavedAndClosedAtTheEndOfTheProgram) {
  bench.Start();
  Open("M250101A.OVN");
  bench.sheet.tx_Des_Change(0, "Last name");
  bench.commands.Close();
  EXPECT_EQ(Header().substr(204, 9), "Last name");
  EXPECT_FALSE(state.SlotFileNo[0].IsOpen());
}

// ---- A file that is named from outside: on the command line, by a file manager.

TEST_F(ViewedFile, NamedFromOutsideIsShownLikeAChosenOne) {
  bench.Start();
  std::filesystem::create_directory(bench.home.File("old years"));
  std::filesystem::rename(bench.home.File("tavdat/M250102A.OVN"),
                          bench.home.File("old years/M250102A.OVN"));
  state.SettingsChanged = false;
  ASSERT_TRUE(bench.sheet.MayShowFile());
  bench.sheet.ShowFile(bench.home.File("old years/M250102A.OVN"));
  EXPECT_EQ(bench.screens.shown, (std::vector<View>{View::kTavWork}));
  EXPECT_EQ(state.SelSlot, 0);
  EXPECT_EQ(state.SlotPath[0], bench.home.File("old years"));
  EXPECT_EQ(bench.Row(0).tx_Des, "Other oven");
  EXPECT_EQ(state.Settings.OpenFile, "M250102A.OVN");
  EXPECT_EQ(state.Settings.OpenPath, bench.home.File("old years"));
  EXPECT_TRUE(state.SettingsChanged);
}

TEST_F(ViewedFile, NamedFromOutsideKeepsWhatWasEditedOnTheOneBefore) {
  bench.Start();
  Open("M250101A.OVN");
  bench.sheet.tx_Des_Change(0, "Renamed");
  bench.sheet.ShowFile(bench.home.File("tavdat/M250102A.OVN"));
  EXPECT_NE(Header().find("Renamed"), std::string::npos);
  EXPECT_EQ(bench.Row(0).tx_Des, "Other oven");
}

TEST_F(ViewedFile, NamedFromOutsideButMissingIsToldAsOpenTellsIt) {
  bench.Start();
  bench.sheet.ShowFile(bench.home.File("tavdat/M250109A.OVN"));
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "M250109A.OVN  not found !");
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "Read  file");
  EXPECT_FALSE(bench.Row(0).Sheet);
  EXPECT_TRUE(bench.screens.shown.empty());
}

// Opening deletes a partial file, which can only be a recording that was never made; behind a name
// from outside anything may stand.
TEST_F(ViewedFile, NamedFromOutsideIsNeverDeleted) {
  bench.Start();
  for (const std::size_t size : {0U, 1U, 300U, 499U, 500U, 700U, 999U, 1000U, 5000U}) {
    for (const char* name : {"tavdat/NOTES.TXT", "tavdat/M250103A.OVN", "NOTES"}) {
      const std::string bytes(size, 'x');
      bench.home.Write(name, bytes);
      bench.dialogs.boxes.clear();
      bench.sheet.ShowFile(bench.home.File(name));
      EXPECT_EQ(bench.home.Read(name), bytes) << name << " of " << size;
      ASSERT_EQ(bench.dialogs.boxes.size(), 1U) << name << " of " << size;
      EXPECT_NE(bench.dialogs.boxes[0].Text.find("  is not a Tavrel-file !"), std::string::npos);
      EXPECT_EQ(bench.dialogs.boxes[0].Title, "Read  file");
      EXPECT_FALSE(bench.Row(0).Sheet);
    }
  }
}

TEST_F(ViewedFile, NamedFromOutsideMayBeADirectory) {
  bench.Start();
  bench.sheet.ShowFile(bench.home.File("tavdat"));
  bench.sheet.ShowFile("/");
  EXPECT_EQ(bench.dialogs.boxes.size(), 2U);
  EXPECT_TRUE(bench.screens.shown.empty());
}

TEST_F(ViewedFile, NamedFromOutsideThatATestRecordsOpensItsWorksheet) {
  for (const int slot : {3, 12}) {
    bench.Install(slot, "M26031" + std::to_string(slot % 10) + "B.OVN",
                  BenchProgram::Header(2, slot % 4 + 1, 2, true));
  }
  bench.Start();
  for (const int slot : {1, 12, 3}) {
    bench.screens.shown.clear();
    bench.sheet.ShowFile(bench.home.File("tavdat/" + state.SlotFile[slot]));
    EXPECT_EQ(state.SelSlot, slot);
    EXPECT_EQ(bench.screens.shown, (std::vector<View>{View::kTavWork}));
    EXPECT_FALSE(bench.Row(0).Sheet);
  }
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

TEST_F(ViewedFile, NamedFromOutsideWaitsForTheStartAndForScreens) {
  EXPECT_FALSE(bench.sheet.MayShowFile());
  bench.Start();
  EXPECT_TRUE(bench.sheet.MayShowFile());
  state.ActiveView = View::kTavGraph;
  EXPECT_FALSE(bench.sheet.MayShowFile());
}

}  // namespace
}  // namespace tavrel
