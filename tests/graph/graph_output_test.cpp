#include "graph/graph_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/files/recording_fixture.h"
#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Inputs 1 to 3, column c of row r is 100 c + r degrees, rows of a minute; the part view
// 10..60 minutes, so the rows 10 to 60.
class TheOutput : public testing::Test, public GraphBench {
 protected:
  void SetUp() override {
    program.state.Settings.DefPath = program.home.File("tavdat");
    LoadAndOpen(Slopes(80));
    SetUpPart();
    program.dialogs.boxes.clear();
    program.events.pointers.clear();
    source = FileBytes(kName);
  }
  void SetUpPart() { ShowPart({10, 100}, {60, 600}); }
  std::string FileBytes(const std::string& name) { return program.home.Read("tavdat/" + name); }
  std::string Path(const std::string& name) { return program.home.File("tavdat/" + name); }
  bool Exists(const std::string& name) { return program.home.Exists("tavdat/" + name); }
  void Choose(const std::string& name) { program.dialogs.chosen_file = Path(name); }
  std::vector<std::string> Boxes() const {
    std::vector<std::string> texts;
    for (const Notice& box : program.dialogs.boxes) {
      texts.push_back(box.Title + "|" + box.Text);
    }
    return texts;
  }
  std::vector<std::string> FilesOfDirectory() const {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(program.home.File("tavdat"))) {
      if (entry.is_regular_file()) {
        files.push_back(entry.path().filename());
      }
    }
    std::ranges::sort(files);
    return files;
  }
  // The graph and the cycle go on.
  void ExpectAllIsBack() {
    EXPECT_TRUE(program.state.GraphIdle);
    EXPECT_TRUE(Shown().TimerOn);
    EXPECT_TRUE(Shown().PbSaveEnabled);
    EXPECT_TRUE(Shown().PbCopyEnabled);
    EXPECT_TRUE(Shown().PbPrintEnabled);
    if (!program.events.pointers.empty()) {
      EXPECT_EQ(program.events.pointers.back(), Pointer::kNormal);
    }
    EXPECT_EQ(FileBytes(kName), source);
  }
  // While a box is open the recording goes on.
  void WatchBoxes() {
    program.dialogs.on_box = [this] { idle_in_box = program.state.GraphIdle && Shown().TimerOn; };
  }

  GraphOutput& output = program.graph_output;
  std::string source;
  bool idle_in_box = false;
};

TEST_F(TheOutput, OffersANameForTheTextFile) {
  output.MnuASCII_Click();
  ASSERT_EQ(program.dialogs.file_dialogs.size(), 1U);
  const FileChoice& asked = program.dialogs.file_dialogs[0];
  EXPECT_EQ(asked.Mode, FileMode::kSave);
  EXPECT_EQ(asked.FileName, "M260314A.OVN.ASC");
  EXPECT_EQ(asked.Directory, program.home.File("tavdat"));
  EXPECT_EQ(asked.DefaultExtension, "asc");
  EXPECT_EQ(asked.Filter, "ASCII-files  (*.asc)|*.asc");
  EXPECT_THAT(FilesOfDirectory(), ElementsAre(kName));
  ExpectAllIsBack();
}

TEST_F(TheOutput, WritesTheRowsOfThePartView) {
  Choose("OUT.ASC");
  program.regional.mark = ",";
  output.MnuASCII_Click();
  const std::string text = FileBytes("OUT.ASC");
  EXPECT_THAT(text, HasSubstr("\"column 03 =  input 2             \"\r\n"));
  EXPECT_THAT(text, HasSubstr("-\"\r\n60; 110,00; 210,00; 310,00; \r\n120; 111,00;"));
  EXPECT_TRUE(text.ends_with("\r\n3060; 160,00; 260,00; 360,00; \r\n"));
  EXPECT_TRUE(Boxes().empty());
  EXPECT_THAT(program.events.pointers, ElementsAre(Pointer::kHourglass, Pointer::kNormal));
  ExpectAllIsBack();
}

TEST_F(TheOutput, WritesAllRowsAtLowResolution) {
  Unit().UnitRes = 54;
  program.state.PartPrepared = false;
  Tick();
  Choose("OUT.ASC");
  output.MnuASCII_Click();
  const std::string text = FileBytes("OUT.ASC");
  EXPECT_EQ(std::ranges::count(text, '\n'), 8 + 51);  // lines of the head, and rows
}

TEST_F(TheOutput, ReplacesATextFileWhole) {
  program.home.Write("tavdat/OUT.ASC", std::string(100000, 'x'));
  Choose("OUT.ASC");
  output.MnuASCII_Click();
  EXPECT_TRUE(FileBytes("OUT.ASC").starts_with("\"From Tavrel-file:    M260314A.OVN\"\r\n"));
  EXPECT_THAT(FilesOfDirectory(), ElementsAre(kName, "OUT.ASC"));
}

TEST_F(TheOutput, NeverWritesOnAnOpenFile) {
  Choose("m260314a.ovn");
  output.MnuASCII_Click();
  EXPECT_THAT(Boxes(), ElementsAre("ASCII - file|m260314a.ovn\nFile is in use"));
  ExpectAllIsBack();
}

TEST_F(TheOutput, KnowsAnOpenFileByAnotherName) {
  std::filesystem::create_symlink(Path(kName), Path("OUT.ASC"));
  std::filesystem::create_hard_link(Path(kName), Path("SLINK.OVN"));
  Choose("OUT.ASC");
  output.MnuASCII_Click();
  Choose("SLINK.OVN");
  output.MnuSubFile_Click();
  EXPECT_THAT(Boxes(), ElementsAre("ASCII - file|OUT.ASC\nFile is in use",
                                   "write subfile|SLINK.OVN\nFile is in use"));
  ExpectAllIsBack();
}

TEST_F(TheOutput, EndsInSilenceIfTheTextFileCannotBeOpened) {
  std::filesystem::create_directory(Path("OUT.ASC"));
  Choose("OUT.ASC");
  output.MnuASCII_Click();
  EXPECT_TRUE(Boxes().empty());
  Choose("missing/OUT.ASC");
  output.MnuASCII_Click();
  EXPECT_TRUE(Boxes().empty());
  ExpectAllIsBack();
}

TEST_F(TheOutput, SaysWhereItWentAndShowsTheFolder) {
  struct Way {
    const char* language;
    const char* text;
    const char* action;
  };
  const Way ways[] = {{"English", "The file has been written:\n\n", "Open folder"},
                      {"German", "Die Datei ist geschrieben:\n\n", "Ordner öffnen"}};
  for (const Way& way : ways) {
    program.state.Settings.HelpLang = way.language;
    for (const bool is_taken : {false, true}) {
      program.dialogs.offers.clear();
      program.shell.opened.clear();
      program.dialogs.takes_offer = is_taken;
      Choose("OUT.ASC");
      output.MnuASCII_Click();
      Choose("SOUT.OVN");
      output.MnuSubFile_Click();
      ASSERT_EQ(program.dialogs.offers.size(), 2U);
      EXPECT_EQ(program.dialogs.offers[0].notice.Title, "ASCII - file");
      EXPECT_EQ(program.dialogs.offers[0].notice.Text, way.text + Path("OUT.ASC"));
      EXPECT_EQ(program.dialogs.offers[0].action, way.action);
      EXPECT_EQ(program.dialogs.offers[1].notice.Title, "Subfile");
      EXPECT_EQ(program.dialogs.offers[1].notice.Text, way.text + Path("SOUT.OVN"));
      const std::vector<std::string> folders(is_taken ? 2 : 0, program.home.File("tavdat"));
      EXPECT_EQ(program.shell.opened, folders);
    }
  }
  ExpectAllIsBack();
}

TEST_F(TheOutput, NamesTheFolderThatNothingShows) {
  program.dialogs.takes_offer = true;
  program.shell.has_programs = false;
  Choose("OUT.ASC");
  output.MnuASCII_Click();
  ASSERT_EQ(program.dialogs.announced.size(), 1U);
  EXPECT_THAT(program.dialogs.announced[0].Text, HasSubstr("\n\n" + program.home.File("tavdat")));
}

TEST_F(TheOutput, OffersNoFolderForWhatWasNotWritten) {
  Choose("OUT.ASC");
  {
    const FullDisk full(1000);
    output.MnuASCII_Click();
    Choose("SOUT.OVN");
    output.MnuSubFile_Click();
  }
  program.dialogs.chosen_file.clear();
  output.MnuASCII_Click();
  EXPECT_TRUE(program.dialogs.offers.empty());
}

TEST_F(TheOutput, TellsOfAFullDisk) {
  WatchBoxes();
  program.home.Write("tavdat/OUT.ASC", "old");
  Choose("OUT.ASC");
  {
    const FullDisk full(1000);
    output.MnuASCII_Click();
  }
  EXPECT_THAT(Boxes(), ElementsAre("ASCII - file|OUT.ASC\nFile too large"));
  EXPECT_EQ(FileBytes("OUT.ASC"), "old");
  EXPECT_THAT(FilesOfDirectory(), ElementsAre(kName, "OUT.ASC"));
  EXPECT_TRUE(idle_in_box);
  ExpectAllIsBack();
}

TEST_F(TheOutput, WritesNoTextOfAFileThatWasCut) {
  for (const std::string& old : {std::string(), std::string("old")}) {
    program.dialogs.boxes.clear();
    if (!old.empty()) {
      program.home.Write("tavdat/OUT.ASC", old);
    }
    std::filesystem::resize_file(Path(kName), 1000 + 6 * 60 + 5);  // in the last row of the view
    source = FileBytes(kName);
    WatchBoxes();
    Choose("OUT.ASC");
    output.MnuASCII_Click();
    EXPECT_THAT(Boxes(), ElementsAre("ASCII - file|M260314A.OVN cannot be read to its end."));
    EXPECT_EQ(Exists("OUT.ASC"), !old.empty());
    EXPECT_EQ(Exists("OUT.ASC") ? FileBytes("OUT.ASC") : "", old);
    EXPECT_TRUE(idle_in_box);
    ExpectAllIsBack();
  }
}

TEST_F(TheOutput, LeavesTheClipboardAloneWhenTheFileWasCut) {
  program.clipboard.text = "old";
  std::filesystem::resize_file(Path(kName), 1000 + 6 * 20);
  source = FileBytes(kName);
  output.MnuData_Click();
  ASSERT_EQ(Boxes().size(), 2U);
  EXPECT_EQ(Boxes()[1], "clipboard|M260314A.OVN cannot be read to its end.");
  EXPECT_EQ(program.clipboard.text, "old");
  ExpectAllIsBack();
}

TEST_F(TheOutput, RefusesWithoutCurvesBeforeAnyDialog) {
  Unit().UnitColour.Fill(0);
  program.state.OverPrepared = false;
  graph.cmdExit_Click();
  Tick();
  graph.Open();
  Tick();
  graph.cmdPart_Click();
  Tick();
  program.dialogs.boxes.clear();
  output.MnuASCII_Click();
  output.MnuData_Click();
  output.MnuGraph_Click();
  EXPECT_TRUE(program.dialogs.file_dialogs.empty());
  Choose("X.OVN");
  output.MnuSubFile_Click();
  Choose("S.OVN");
  output.MnuSubFile_Click();
  EXPECT_THAT(Boxes(),
              ElementsAre("ASCII - file|no colors selected", "clipboard|no colors selected",
                          "clipboard|no colors selected", "Subfile|Filename must start with 'S'",
                          "Subfile|no colors selected"));
  for (const Notice& box : program.dialogs.boxes) {
    EXPECT_EQ(box.Icon, BoxIcon::kWarning);
  }
  EXPECT_FALSE(Exists("S.OVN"));
}

TEST_F(TheOutput, DoesNothingOutsideOfThePartView) {
  graph.cmdOver_Click();
  Tick();
  Choose("SOUT.OVN");
  output.MnuASCII_Click();
  output.MnuData_Click();
  output.MnuGraph_Click();
  output.MnuSubFile_Click();
  output.MnuPrint_Click();
  EXPECT_TRUE(program.dialogs.boxes.empty());
  EXPECT_TRUE(program.dialogs.file_dialogs.empty());
  EXPECT_TRUE(program.printer.offered.empty());
  EXPECT_FALSE(program.clipboard.picture.has_value());
  EXPECT_FALSE(Shown().PbPrintEnabled);
}

TEST_F(TheOutput, AsksBeforeItCopiesTheText) {
  output.MnuData_Click();
  ASSERT_EQ(program.dialogs.boxes.size(), 1U);
  EXPECT_EQ(program.dialogs.boxes[0].Title, "clipboard:  data");
  EXPECT_EQ(program.dialogs.boxes[0].Text, "columns · rows = 4 · 50\ncontinue ?");
  EXPECT_EQ(program.dialogs.boxes[0].Icon, BoxIcon::kQuestion);
  EXPECT_THAT(program.clipboard.text, HasSubstr("-\"\r\n60\t110.00\t210.00\t310.00\r\n"));
  EXPECT_TRUE(program.clipboard.text.ends_with("\r\n3060\t160.00\t260.00\t360.00\r\n"));
  ExpectAllIsBack();
}

TEST_F(TheOutput, LeavesTheClipboardAloneOnCancel) {
  program.clipboard.text = "old";
  program.dialogs.ok = false;
  output.MnuData_Click();
  EXPECT_EQ(program.clipboard.text, "old");
  EXPECT_TRUE(program.events.pointers.empty());
  ExpectAllIsBack();
}

TEST_F(TheOutput, LeavesTheClipboardAloneWhenThereIsTooMuch) {
  graph.CloseNow();
  header.UnitXmax = 5000;
  program.state.OverPrepared = false;
  program.state.PartPrepared = false;
  LoadAndOpen(std::vector<std::int16_t>(3 * 4000, 2000));
  ShowPart({0, 1}, {5000, 900});
  source = FileBytes(kName);
  program.clipboard.text = "old";
  program.dialogs.boxes.clear();
  WatchBoxes();
  output.MnuData_Click();
  ASSERT_EQ(program.dialogs.boxes.size(), 2U);
  EXPECT_EQ(program.dialogs.boxes[1].Title, "Clipboard");
  EXPECT_EQ(program.dialogs.boxes[1].Text, "Too much data");
  EXPECT_EQ(program.dialogs.boxes[1].Icon, BoxIcon::kCritical);
  EXPECT_EQ(program.clipboard.text, "old");
  EXPECT_TRUE(idle_in_box);
  ExpectAllIsBack();
}

TEST_F(TheOutput, GivesUpIfTheGraphClosesBeneathADialog) {
  Choose("SOUT.OVN");
  program.dialogs.on_box = [this] { graph.CloseNow(); };
  output.MnuData_Click();
  EXPECT_EQ(program.clipboard.text, "");
  EXPECT_FALSE(Shown().TimerOn);
  program.printer.on_choose = [this] { graph.CloseNow(); };
  output.MnuPrint_Click();
  EXPECT_TRUE(program.printer.pages.empty());
}

TEST_F(TheOutput, GivesUpIfTheRecordingWentOnInANextFile) {
  program.printer.on_choose = [this] { program.state.SlotFile[kSlot] = "M260314B.OVN"; };
  output.MnuPrint_Click();
  EXPECT_TRUE(program.printer.pages.empty());
  EXPECT_TRUE(Boxes().empty());
}

// The file dialog may stand open for hours, beneath which the recording goes on in another file or
// the graph is closed.
TEST_F(TheOutput, WritesNoFileIfTheGraphHasChangedBeneathItsDialog) {
  const std::vector<std::function<void()>> commands = {[this] { output.MnuASCII_Click(); },
                                                       [this] { output.MnuSubFile_Click(); }};
  for (const auto& command : commands) {
    Choose("SOUT.OVN");
    program.dialogs.on_file_dialog = [this] { program.state.SlotFile[kSlot] = "M260314B.OVN"; };
    command();
    program.state.SlotFile[kSlot] = kName;
    program.dialogs.on_file_dialog = [this] { graph.CloseNow(); };
    command();
    EXPECT_TRUE(Boxes().empty());
    EXPECT_THAT(FilesOfDirectory(), ElementsAre(kName));
    program.dialogs.on_file_dialog = [] {};
    graph.Open();
    SetUpPart();
    command();
    EXPECT_THAT(FilesOfDirectory(), ElementsAre(kName, "SOUT.OVN"));
    std::filesystem::remove(Path("SOUT.OVN"));
  }
}

// Each command is refused while another one of them has its dialog open.
TEST_F(TheOutput, BeginsNoCommandWithinAnother) {
  const auto begin_all = [this] {
    output.MnuASCII_Click();
    output.MnuData_Click();
    output.MnuGraph_Click();
    output.MnuSubFile_Click();
    output.MnuPrint_Click();
  };
  program.dialogs.ok = false;
  program.printer.chosen.reset();
  program.dialogs.on_box = begin_all;
  program.dialogs.on_file_dialog = begin_all;
  program.printer.on_choose = begin_all;
  output.MnuASCII_Click();
  EXPECT_EQ(program.dialogs.file_dialogs.size(), 1U);
  output.MnuSubFile_Click();
  EXPECT_EQ(program.dialogs.file_dialogs.size(), 2U);
  EXPECT_TRUE(Boxes().empty());
  EXPECT_TRUE(program.printer.offered.empty());
  output.MnuData_Click();
  EXPECT_EQ(Boxes().size(), 1U);
  output.MnuPrint_Click();
  EXPECT_EQ(program.printer.offered.size(), 1U);
  EXPECT_EQ(program.dialogs.file_dialogs.size(), 2U);
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_FALSE(program.clipboard.picture);
}

TEST_F(TheOutput, DoesNotBeginASecondCommandInOne) {
  program.dialogs.on_box = [this] { output.MnuPrint_Click(); };
  output.MnuData_Click();
  EXPECT_TRUE(program.printer.offered.empty());
}

TEST_F(TheOutput, DisablesTheButtonForTheTimeOfTheOutput) {
  std::vector<bool> seen;
  program.printer.on_choose = [&] {
    seen = {Shown().PbPrintEnabled, Shown().PbSaveEnabled, Shown().PbCopyEnabled};
  };
  output.MnuPrint_Click();
  EXPECT_THAT(seen, ElementsAre(false, true, true));
  ExpectAllIsBack();
}

// A view behind the rows of the file has one row less than none.
TEST_F(TheOutput, CountsNoRowsBelowNone) {
  for (const int rows : {0, 1, 5, 9}) {
    program.dialogs.boxes.clear();
    program.state.SampleCount[kSlot] = rows;
    program.state.PartPrepared = false;
    Tick();
    output.MnuData_Click();
    ASSERT_EQ(program.dialogs.boxes.size(), 1U);
    EXPECT_EQ(program.dialogs.boxes[0].Text, "columns · rows = 4 · 0\ncontinue ?") << rows;
  }
}

}  // namespace
}  // namespace tavrel
