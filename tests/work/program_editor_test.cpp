#include "work/program_editor.h"

#include <gmock/gmock.h>

#include <random>

#include "tests/support/control_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Editor : public testing::Test {
 protected:
  Editor() {
    bench.state.ActiveView = View::kMainSheet;
    editor.Open();
  }
  void Type(int row, int column, const std::string& text) {
    editor.Grid_Click(row, column);
    editor.txtEdit_Change(text);
    editor.Grid_Click(0, 0);
  }
  void Choose(int row, int line) {
    editor.Grid_Click(row, kStatusColumn);
    editor.Cstat_Click(line);
    editor.Grid_Click(0, 0);
  }
  void TypeStep(int row) {
    Type(row, kTimeColumn, "30");
    Type(row, kSetpointColumn, "200");
    Choose(row, 2);
  }
  std::vector<std::string> Row(int row) const {
    std::vector<std::string> texts;
    for (int column = kTimeColumn; column <= kIncrementColumn; ++column) {
      texts.push_back(editor.Cell(row, column).Text);
    }
    return texts;
  }
  void Open(const std::string& name) {
    bench.dialogs.chosen_file = bench.home.File(name);
    editor.cmdOpen_Click();
  }
  std::string LastBox() const {
    const std::vector<Notice>& boxes = bench.dialogs.boxes;
    return boxes.empty() ? "" : boxes.back().Title + ": " + boxes.back().Text;
  }

  BenchProgram bench;
  ProgramEditor& editor = bench.program_editor;
};

TEST_F(Editor, BeginsEmpty) {
  EXPECT_EQ(editor.Caption(), " Controller  program");
  EXPECT_EQ(bench.state.ActiveView, View::kTavProg);
  EXPECT_THAT(Row(1), ElementsAre("", "", "", ""));
  EXPECT_THAT(Row(50), ElementsAre("", "", "", ""));
  EXPECT_FALSE(editor.ProgChanged());
  editor.Quit();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  EXPECT_THAT(bench.dialogs.boxes, IsEmpty());
}

TEST_F(Editor, StoresAndDrawsEachColumn) {
  Type(1, kTimeColumn, "90.4");
  Type(1, kSetpointColumn, "250,55");
  Choose(1, 3);
  Type(1, kIncrementColumn, "0.256");
  EXPECT_THAT(Row(1), ElementsAre("90", "250.6", "dyn", "0.26"));
  EXPECT_EQ(editor.Cell(1, kTimeColumn).Background, (Colour{0xFF, 0xFF, 0xC0}));
  EXPECT_EQ(editor.Cell(1, kSetpointColumn).Background, (Colour{0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(editor.Cell(1, kStatusColumn).Background, (Colour{0xC0, 0xFF, 0xC0}));
  EXPECT_EQ(editor.Cell(1, kIncrementColumn).Background, (Colour{0xE0, 0xE0, 0xE0}));
  EXPECT_EQ(editor.Cell(2, kTimeColumn).Background, (Colour{0xFF, 0xFF, 0xFF}));
  EXPECT_TRUE(editor.ProgChanged());
  Choose(2, 1);
  Choose(3, 2);
  EXPECT_EQ(editor.Cell(2, kStatusColumn), (ProgramCell{"off", {0xFF, 0xE0, 0xC0}}));
  EXPECT_EQ(editor.Cell(3, kStatusColumn), (ProgramCell{"iso", {0xC0, 0xFF, 0xC0}}));
  Choose(3, 0);
  EXPECT_EQ(editor.Cell(3, kStatusColumn), ProgramCell{});
}

TEST_F(Editor, PutsTheTextOfTheCellIntoTheBox) {
  Type(3, kSetpointColumn, "120");
  editor.Grid_Click(3, kSetpointColumn);
  EXPECT_EQ(editor.Edit().txtEdit, "120.0");
  EXPECT_FALSE(editor.Edit().IsList());
  Choose(3, 2);
  editor.Grid_Click(3, kStatusColumn);
  EXPECT_TRUE(editor.Edit().IsList());
  EXPECT_EQ(editor.Edit().Cstat, 2);
}

TEST_F(Editor, RefusesWhatIsOutOfRange) {
  const std::vector<std::tuple<int, std::string, std::string>> values = {
      {kTimeColumn, "30001", "check: time:\n0 ... 30000"},
      {kTimeColumn, "-1", "check: time:\n0 ... 30000"},
      {kSetpointColumn, "500.1", "check: setpoint:\n0 ... 500"},
      {kIncrementColumn, "1.01", "check: increment:\n0 ... 1"}};
  for (const auto& [column, text, box] : values) {
    Type(1, column, text);
    EXPECT_EQ(LastBox(), box);
    EXPECT_EQ(editor.Edit().Row, 1) << "stays in edit";
    EXPECT_EQ(editor.Edit().txtEdit, text);
    EXPECT_EQ(editor.Cell(1, column).Text, "");
    EXPECT_FALSE(editor.ProgChanged());
    editor.DropEdit();
  }
}

TEST_F(Editor, TakesTheUpperLimits) {
  Type(1, kTimeColumn, "30000");
  Type(1, kSetpointColumn, "500");
  Type(1, kIncrementColumn, "1");
  EXPECT_THAT(Row(1), ElementsAre("30000", "500.0", "", "1.00"));
}

TEST_F(Editor, KeepsTheWordBehindATextThatWasNotTouched) {
  bench.home.Write("A.PRG", ProgramBytes({{2, 5, 4001, 30}}));
  Open("A.PRG");
  EXPECT_EQ(editor.Cell(1, kSetpointColumn).Text, "200.1") << "200.05";
  Type(1, kSetpointColumn, "200.1");
  Choose(1, 2);
  EXPECT_FALSE(editor.ProgChanged());
  editor.cmdSave_Click();
  EXPECT_EQ(bench.home.Read("A.PRG"), ProgramBytes({{2, 5, 4001, 30}}));
}

TEST_F(Editor, EmptiesACellWhoseTextWasDeleted) {
  TypeStep(1);
  Type(1, kTimeColumn, "");
  EXPECT_EQ(editor.Cell(1, kTimeColumn), ProgramCell{});
  editor.cmdSave_Click();
  EXPECT_EQ(LastBox(), "check of program: missing: time on row 1");
}

TEST_F(Editor, DropsAnEditOnEscape) {
  Type(1, kTimeColumn, "5");
  editor.Grid_Click(1, kTimeColumn);
  editor.txtEdit_Change("99999");
  editor.DropEdit();
  EXPECT_EQ(editor.Cell(1, kTimeColumn).Text, "5");
  EXPECT_FALSE(editor.Edit().IsOpen());
  EXPECT_THAT(bench.dialogs.boxes, IsEmpty());
}

TEST_F(Editor, GoesOnToTheNextRowWithEnter) {
  editor.Grid_Click(1, kTimeColumn);
  editor.txtEdit_Change("10");
  editor.MoveEdit(1, 0);
  EXPECT_EQ(editor.Edit().Row, 2);
  EXPECT_EQ(editor.Edit().Column, kTimeColumn);
  EXPECT_EQ(editor.Cell(1, kTimeColumn).Text, "10");
  editor.txtEdit_Change("x");
  editor.txtEdit_Change("99999");
  editor.MoveEdit(1, 0);
  EXPECT_EQ(editor.Edit().Row, 2) << "a refused value is corrected first";
  editor.DropEdit();
  editor.Grid_Click(50, kTimeColumn);
  editor.txtEdit_Change("7");
  editor.MoveEdit(1, 0);
  EXPECT_FALSE(editor.Edit().IsOpen()) << "there is no row 51";
  EXPECT_EQ(editor.Cell(50, kTimeColumn).Text, "7");
}

TEST_F(Editor, GoesOnToTheNextCellWithTab) {
  editor.Grid_Click(1, kIncrementColumn);
  editor.MoveEdit(0, 1);
  EXPECT_EQ(editor.Edit().Row, 2);
  EXPECT_EQ(editor.Edit().Column, kTimeColumn);
  editor.MoveEdit(0, -1);
  EXPECT_EQ(editor.Edit().Row, 1);
  EXPECT_EQ(editor.Edit().Column, kIncrementColumn);
  editor.Grid_Click(1, kTimeColumn);
  editor.MoveEdit(0, -1);
  EXPECT_FALSE(editor.Edit().IsOpen());
  editor.MoveEdit(0, 1);
  EXPECT_FALSE(editor.Edit().IsOpen()) << "nothing was in edit";
}

TEST_F(Editor, TakesClicksBesideTheCellsForTheEndOfAnEdit) {
  for (const auto& [row, column] :
       std::vector<std::pair<int, int>>{{0, 1}, {51, 1}, {1, 0}, {1, 5}, {-1, -1}}) {
    editor.Grid_Click(1, kTimeColumn);
    editor.Grid_Click(row, column);
    EXPECT_FALSE(editor.Edit().IsOpen());
  }
}

TEST_F(Editor, SavesWhatOpensAgain) {
  TypeStep(1);
  Type(2, kTimeColumn, "60");
  Type(2, kSetpointColumn, "400");
  Choose(2, 3);
  Type(2, kIncrementColumn, "0.25");
  bench.dialogs.chosen_file = bench.home.File("Anneal.PRG");
  editor.cmdSave_Click();
  EXPECT_EQ(bench.home.Read("Anneal.PRG"), ProgramBytes({{2, -1, 4000, 30}, {3, 25, 8000, 60}}));
  EXPECT_EQ(editor.Caption(), " anneal.prg");
  EXPECT_FALSE(editor.ProgChanged());
  EXPECT_EQ(bench.state.Settings.ProgFile, "Anneal.PRG");
  EXPECT_EQ(bench.state.Settings.ProgPath, bench.home.Path() + "/");
  EXPECT_TRUE(bench.state.SettingsChanged);
  const FileChoice& asked = bench.dialogs.file_dialogs.back();
  EXPECT_EQ(asked.Mode, FileMode::kSave);
  EXPECT_EQ(asked.DefaultExtension, "prg");
  EXPECT_EQ(asked.Filter, "program  (*.prg)|*.prg");
  editor.cmdNew_Click();
  EXPECT_EQ(editor.Caption(), " new program");
  EXPECT_THAT(Row(2), ElementsAre("", "", "", ""));
  Open("Anneal.PRG");
  EXPECT_THAT(Row(1), ElementsAre("30", "200.0", "iso", ""));
  EXPECT_THAT(Row(2), ElementsAre("60", "400.0", "dyn", "0.25"));
  EXPECT_EQ(editor.Caption(), " anneal.prg");
}

TEST_F(Editor, LeavesNoTailOfALongerFile) {
  bench.home.Write("A.PRG", std::string(400, '\1'));
  TypeStep(1);
  bench.dialogs.chosen_file = bench.home.File("A.PRG");
  editor.cmdSave_Click();
  EXPECT_EQ(bench.home.Read("A.PRG").size(), 16U);
}

TEST_F(Editor, ChecksBeforeItAsksForAName) {
  editor.cmdSave_Click();
  EXPECT_EQ(LastBox(), "check of program: program is empty");
  EXPECT_EQ(bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
  Type(1, kIncrementColumn, "0.5");
  editor.cmdSave_Click();
  EXPECT_EQ(LastBox(), "check of program: missing: status on row 1");
  EXPECT_TRUE(editor.ProgChanged());
  EXPECT_THAT(bench.dialogs.file_dialogs, IsEmpty());
}

TEST_F(Editor, ForgetsTheChangesOfAProgramThatIsEmptyAgain) {
  Choose(1, 2);
  Choose(1, 0);
  EXPECT_TRUE(editor.ProgChanged());
  editor.Quit();
  EXPECT_EQ(LastBox(), "check of program: program is empty");
  EXPECT_TRUE(editor.IsOpen());
  editor.Quit();
  EXPECT_FALSE(editor.IsOpen());
}

TEST_F(Editor, AsksToSaveBeforeChangesAreLost) {
  TypeStep(1);
  bench.dialogs.yes = true;
  bench.dialogs.chosen_file.clear();
  editor.Quit();
  EXPECT_EQ(LastBox(), "program: Save Program ?");
  EXPECT_TRUE(editor.IsOpen()) << "the file box was cancelled";
  editor.cmdNew_Click();
  EXPECT_THAT(Row(1), ElementsAre("30", "200.0", "iso", ""));
  bench.dialogs.yes = false;
  editor.cmdNew_Click();
  EXPECT_THAT(Row(1), ElementsAre("", "", "", ""));
  TypeStep(2);
  editor.Quit();
  EXPECT_FALSE(editor.IsOpen());
}

TEST_F(Editor, GoesOnWithTheProgramOnCancel) {
  TypeStep(1);
  bench.dialogs.stays = true;
  editor.Quit();
  editor.cmdNew_Click();
  bench.home.Write("ONE.PRG", std::string(8, '\0'));
  Open("ONE.PRG");
  EXPECT_EQ(bench.dialogs.boxes.size(), 3U);
  EXPECT_TRUE(editor.IsOpen());
  EXPECT_TRUE(editor.ProgChanged());
  EXPECT_THAT(Row(1), ElementsAre("30", "200.0", "iso", ""));
}

TEST_F(Editor, StaysOpenIfTheCheckFailsOnLeaving) {
  Type(1, kTimeColumn, "5");
  editor.Quit();
  EXPECT_EQ(LastBox(), "check of program: missing: status on row 1");
  EXPECT_TRUE(editor.IsOpen());
}

TEST_F(Editor, EndsEachActionAtARefusedValue) {
  TypeStep(1);
  Type(1, kTimeColumn, "99999");
  editor.cmdSave_Click();
  editor.cmdOpen_Click();
  editor.cmdNew_Click();
  editor.Quit();
  EXPECT_TRUE(editor.IsOpen());
  EXPECT_THAT(bench.dialogs.file_dialogs, IsEmpty());
  EXPECT_EQ(LastBox(), "check: time:\n0 ... 30000");
}

TEST_F(Editor, RefusesFilesByTheirLengthAlone) {
  bench.home.Write("EMPTY.PRG", "");
  Open("EMPTY.PRG");
  EXPECT_EQ(LastBox(), "Read  file: EMPTY.PRG  is not a program file !");
  bench.home.Write("BIG.PRG", std::string(408, '\0'));
  Open("BIG.PRG");
  EXPECT_EQ(LastBox(), "Read  file: BIG.PRG  is not a program file !");
  EXPECT_EQ(bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
  Open("NONE.PRG");
  EXPECT_EQ(LastBox(), "Read  file: NONE.PRG: No such file or directory");
  EXPECT_EQ(editor.Caption(), " Controller  program");
}

TEST_F(Editor, OpensAFileOfOneRecordAsAnEmptyProgram) {
  TypeStep(1);
  bench.dialogs.yes = false;
  bench.home.Write("ONE.PRG", std::string(8, '\0'));
  Open("ONE.PRG");
  EXPECT_EQ(editor.Caption(), " one.prg");
  EXPECT_THAT(Row(1), ElementsAre("", "", "", ""));
}

TEST_F(Editor, WritesAFullGridThatItRefusesToRead) {
  for (int row = 1; row <= 50; ++row) {
    TypeStep(row);
  }
  bench.dialogs.chosen_file = bench.home.File("FULL.PRG");
  editor.cmdSave_Click();
  EXPECT_EQ(bench.home.Read("FULL.PRG").size(), 408U);
  Open("FULL.PRG");
  EXPECT_EQ(LastBox(), "Read  file: FULL.PRG  is not a program file !");
}

TEST_F(Editor, TellsWhyItCannotWrite) {
  TypeStep(1);
  bench.dialogs.chosen_file = bench.home.File("nowhere/A.PRG");
  editor.cmdSave_Click();
  EXPECT_EQ(LastBox(), "Write file: A.PRG: No such file or directory");
  EXPECT_TRUE(editor.ProgChanged());
}

TEST_F(Editor, NeverWritesOntoTheRecordingOfASlot) {
  TypeStep(1);
  bench.home.Write("tavdat/M260314A.OVN", "samples");
  bench.state.SlotFile[3] = "M260314A.OVN";
  bench.state.SlotPath[3] = bench.home.File("tavdat");
  bench.dialogs.chosen_file = bench.home.File("tavdat/M260314A.OVN");
  editor.cmdSave_Click();
  EXPECT_EQ(bench.home.Read("tavdat/M260314A.OVN"), "samples");
  EXPECT_TRUE(bench.dialogs.boxes.back().Title == "Write file");
}

TEST_F(Editor, ShowsAStatusThatItsListDoesNotHave) {
  bench.home.Write("A.PRG", ProgramBytes({{4, 5, 400, 30}}));
  Open("A.PRG");
  EXPECT_EQ(editor.Cell(1, kStatusColumn).Text, "4");
  editor.Grid_Click(1, kStatusColumn);
  EXPECT_EQ(editor.Edit().Cstat, 0);
  editor.Grid_Click(0, 0);
  EXPECT_EQ(editor.Cell(1, kStatusColumn).Text, "4");
}

TEST_F(Editor, OpensOrRefusesEveryTruncationAndAnyBytes) {
  std::mt19937 random(4);
  for (int round = 0; round < 1400; ++round) {
    std::string bytes(round <= 408 ? static_cast<std::size_t>(round) : random() % 500, '\0');
    for (char& byte : bytes) {
      byte = static_cast<char>(random());
    }
    bench.home.Write("A.PRG", bytes);
    bench.dialogs.boxes.clear();
    Open("A.PRG");
    const auto records = RecordsOf(static_cast<std::int64_t>(bytes.size()));
    if (records >= 1 && records <= 50) {
      ASSERT_THAT(bench.dialogs.boxes, IsEmpty());
      ASSERT_EQ(editor.Caption(), " a.prg");
      ASSERT_THAT(Row(50), ElementsAre("", "", "", ""));
    } else {
      ASSERT_EQ(LastBox(), "Read  file: A.PRG  is not a program file !");
    }
  }
}

// A recording is 1000 bytes and more, a program of one step 16: the one must never become the
// other, whatever the disk, the slot and the user call the file.
TEST_F(Editor, NeverSavesOverAFileInUse) {
  const std::string recording(1000, 'x');
  for (const int slot : {kViewedFile, 1, 7, 12}) {
    for (const char* const chosen :
         {"tavdat/m260314a.ovn", "tavdat/M260314A.OVN", "tavdat/./m260314a.ovn", "way/m260314a.ovn",
          "LINK.PRG", "tavdat/HARD.PRG"}) {
      BenchProgram program;
      program.home.Write("tavdat/m260314a.ovn", recording);
      std::filesystem::create_directory_symlink("tavdat", program.home.File("way"));
      std::filesystem::create_symlink("tavdat/m260314a.ovn", program.home.File("LINK.PRG"));
      std::filesystem::create_hard_link(program.home.File("tavdat/m260314a.ovn"),
                                        program.home.File("tavdat/HARD.PRG"));
      program.state.SlotPath[slot] = program.home.File("tavdat");
      program.state.SlotFile[slot] = "M260314A.OVN";
      ProgramEditor& saving = program.program_editor;
      saving.Open();
      saving.Grid_Click(1, kTimeColumn);
      saving.txtEdit_Change("30");
      saving.Grid_Click(1, kSetpointColumn);
      saving.txtEdit_Change("200");
      saving.Grid_Click(1, kStatusColumn);
      saving.Cstat_Click(2);
      saving.Grid_Click(0, 0);
      program.dialogs.chosen_file = program.home.File(chosen);
      saving.cmdSave_Click();
      EXPECT_EQ(program.home.Read("tavdat/m260314a.ovn"), recording) << slot << " " << chosen;
      EXPECT_EQ(std::string(chosen) == "tavdat/M260314A.OVN", !program.home.Exists(chosen))
          << chosen;
      ASSERT_EQ(program.dialogs.boxes.size(), 1U) << slot << " " << chosen;
      EXPECT_TRUE(
          program.dialogs.boxes[0].Text.ends_with(": The file is in use as a recording file."));
      EXPECT_TRUE(saving.ProgChanged());
    }
  }
}

}  // namespace
}  // namespace tavrel
