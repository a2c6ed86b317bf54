#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "files/journal_check.h"
#include "files/recording_format.h"
#include "files/row_times.h"
#include "graph/graph_output.h"
#include "tests/files/recording_fixture.h"
#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;

// Inputs 1 to 3, column c of row r is 100 c + r degrees, rows of a minute, reference 2; the part
// view is 10..60 minutes.
class TheSubfileCommand : public testing::Test, public GraphBench {
 protected:
  void SetUp() override { ShowRows(80); }
  void ShowRows(int rows) {
    program.state.Settings.DefPath = program.home.File("tavdat");
    LoadAndOpen(Slopes(rows));
    ShowPart({10, 100}, {60, 600});
    program.dialogs.boxes.clear();
    source = FileBytes(kName);
    program.dialogs.on_box = [this] { idle_in_box = program.state.GraphIdle && Shown().TimerOn; };
  }
  std::string FileBytes(const std::string& name) { return program.home.Read("tavdat/" + name); }
  bool Exists(const std::string& name) { return program.home.Exists("tavdat/" + name); }
  void Save(const std::string& name) {
    program.dialogs.chosen_file = program.home.File("tavdat/" + name);
    program.graph_output.MnuSubFile_Click();
  }
  std::vector<std::string> Boxes() const {
    std::vector<std::string> texts;
    for (const Notice& box : program.dialogs.boxes) {
      texts.push_back(box.Title + "|" + box.Text);
    }
    return texts;
  }
  // Opens the file for viewing and shows it in the graph.
  void View(const std::string& name) {
    graph.CloseNow();
    RunState& state = program.state;
    state.SlotPath[kViewedFile] = program.home.File("tavdat");
    state.SlotFile[kViewedFile] = name;
    program.files.OpenRecordingFile(kViewedFile);
    state.SelSlot = kViewedFile;
    state.OverPrepared = false;
    state.PartPrepared = false;
    graph.Open();
    Tick();
    graph.cmdPart_Click();
    Tick();
  }
  std::string Export() {
    program.dialogs.chosen_file = program.home.File("tavdat/OUT.ASC");
    program.graph_output.MnuASCII_Click();
    return FileBytes("OUT.ASC");
  }

  std::string source;
  bool idle_in_box = false;
};

TEST_F(TheSubfileCommand, OffersTheNameWithAnS) {
  program.graph_output.MnuSubFile_Click();
  ASSERT_EQ(program.dialogs.file_dialogs.size(), 1U);
  const FileChoice& asked = program.dialogs.file_dialogs[0];
  EXPECT_EQ(asked.Title, "Create a Subfile ...");
  EXPECT_EQ(asked.FileName, "S260314A.OVN");
  EXPECT_EQ(asked.DefaultExtension, "OVN");
  EXPECT_EQ(asked.Filter, "(S*.*)  all subfiles|S*.*");
  EXPECT_EQ(asked.Mode, FileMode::kSave);
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(TheSubfileCommand, WritesHeaderAndRows) {
  Save("S260314A.OVN");
  const std::string bytes = FileBytes("S260314A.OVN");
  ASSERT_EQ(bytes.size(), 1000U + 2 * 3 * 51);
  UnitRecord written{};
  std::memcpy(&written, bytes.data(), sizeof written);
  EXPECT_EQ(written.UnitXmax, 50);
  EXPECT_EQ(written.UnitOrigin.Get(), kName);
  EXPECT_EQ(bytes.substr(1000, 12), tavrel::Words({2200, 4200, 6200, 2220, 4220, 6220}));
  EXPECT_EQ(bytes.substr(bytes.size() - 6), tavrel::Words({3200, 5200, 7200}));
  EXPECT_EQ(program.state.Unit[13].UnitOrigin.Get(), kName);
  EXPECT_FALSE(program.state.IndexValid);
  EXPECT_TRUE(Boxes().empty());
  EXPECT_EQ(FileBytes(kName), source);
}

TEST_F(TheSubfileCommand, BeginsAJournalThatNamesItsSource) {
  program.state.Unit[program.state.SelSlot].UnitRecOn = 1;
  program.files.WriteHeader(program.state.SelSlot);
  Save("S260314A.OVN");
  const auto journal_of = [this](const std::string& name) {
    return ReadJournal(FileBytes("journal/" + name));
  };
  const JournalReading journal = journal_of("S260314A.OVN");
  ASSERT_FALSE(journal.Entries.empty());
  const std::string file = FileBytes("S260314A.OVN");
  EXPECT_EQ(CheckRecording(std::as_bytes(std::span(file)), journal).Verdict, Verdict::kIntact);
  const JsonValue* const origin = journal.Entries.front().Fields.Find("origin");
  ASSERT_NE(origin, nullptr);
  EXPECT_EQ(*origin->Find("file")->Text(), kName);
  const auto rows = *origin->Find("last")->Whole() - *origin->Find("first")->Whole() + 1;
  EXPECT_EQ(rows, SampleCountOf(static_cast<std::int64_t>(file.size()), 3));
  const auto first = static_cast<std::size_t>(*origin->Find("first")->Whole());
  EXPECT_EQ(file.substr(1000, 6), source.substr(1000 + first * 6, 6));
  ASSERT_NE(origin->Find("id"), nullptr);
  EXPECT_EQ(*origin->Find("id")->Text(), journal_of(kName).Id());
  ASSERT_NE(origin->Find("seal"), nullptr);
  EXPECT_EQ(origin->Find("seal")->Find("data")->Text()->size(), 64U);
}

// A part of a recording with a stop, a loss and the end of summer time in it.
TEST_F(TheSubfileCommand, HasTheTimeOfDayOfItsSource) {
  JournalChain chain;
  std::string text;
  const auto add = [&](const WallTime& wall, const char* kind, JsonValue::Members fields) {
    JournalStamp stamp;
    stamp.Wall = wall;
    text += chain.Line(stamp, kind, fields);
  };
  const WallTime summer{2026, 10, 25, 2, 20, 30, 120};
  const WallTime winter{2026, 10, 25, 2, 50, 0, 60};
  add(summer, "begin", {{"id", std::string(32, 'a')}, {"interval", 60}, {"line", "direct"}});
  add(summer, "start", {{"rows", 0}});
  add(summer, "lost", {{"before", 30}, {"sets", 5}, {"exact", true}, {"rows", 30}});
  add(winter, "start", {{"rows", 40}});
  std::filesystem::create_directories(program.home.File("tavdat/journal"));
  program.home.Write(std::string("tavdat/journal/") + kName, text);
  Save("S260314A.OVN");
  const JournalReading journal = ReadJournal(FileBytes("journal/S260314A.OVN"));
  ASSERT_FALSE(journal.Entries.empty());
  const auto first = static_cast<std::int32_t>(
      *journal.Entries.front().Fields.Find("origin")->Find("first")->Whole());
  const RowTimes part(journal, 60);
  const RowTimes whole(ReadJournal(text), 60);
  const auto size = static_cast<std::int64_t>(FileBytes("S260314A.OVN").size());
  const std::int32_t rows = SampleCountOf(size, 3);
  ASSERT_LT(first, 30);
  ASSERT_GT(first + rows, 40);
  for (std::int32_t row = 0; row < rows; ++row) {
    ASSERT_TRUE(part.Local(row)) << row;
    EXPECT_EQ(part.Local(row), whole.Local(first + row)) << row;
    EXPECT_EQ(part.Utc(row), whole.Utc(first + row)) << row;
  }
}

TEST_F(TheSubfileCommand, MakesANewNameInCapitals) {
  Save("sCut.ovn");
  EXPECT_TRUE(Exists("SCUT.OVN"));
  EXPECT_FALSE(Exists("sCut.ovn"));
}

TEST_F(TheSubfileCommand, ReplacesAFileWhateverTheCaseOfItsName) {
  program.home.Write("tavdat/scut.Ovn", std::string(5000, 'x'));
  Save("SCUT.OVN");
  EXPECT_FALSE(Exists("SCUT.OVN"));
  EXPECT_EQ(FileBytes("scut.Ovn").size(), 1000U + 2 * 3 * 51);
}

TEST_F(TheSubfileCommand, AsksForAnS) {
  Save("X260314A.OVN");
  EXPECT_THAT(Boxes(), ElementsAre("Subfile|Filename must start with 'S'"));
  EXPECT_FALSE(Exists("X260314A.OVN"));
}

TEST_F(TheSubfileCommand, OpensAsARecording) {
  Save("SCUT.OVN");
  View("SCUT.OVN");
  EXPECT_EQ(program.state.SlotFile[kViewedFile], "SCUT.OVN");
  EXPECT_EQ(program.state.SampleCount[kViewedFile], 51);
  EXPECT_TRUE(graph.IsOpen());
  EXPECT_DOUBLE_EQ(graph.State().Views[kOverview].XRight, 50);
  EXPECT_DOUBLE_EQ(graph.State().Views[kPartView].XLeft, 0);
  EXPECT_DOUBLE_EQ(graph.State().Views[kPartView].XRight, 50);
}

// The graph of a file begins at its row 1, so the export of the subfile lacks the first row.
TEST_F(TheSubfileCommand, ExportsTheSameValuesAsItsSource) {
  const auto values = [](const std::string& text) {
    std::vector<std::string> rows;
    std::istringstream lines(text.substr(text.rfind("-\"\r\n") + 4));
    for (std::string line; std::getline(lines, line);) {
      rows.push_back(line.substr(line.find("; ")));
    }
    return rows;
  };
  const std::vector<std::string> of_source = values(Export());
  ASSERT_EQ(of_source.size(), 51U);
  Save("SCUT.OVN");
  View("SCUT.OVN");
  const std::vector<std::string> of_subfile = values(Export());
  EXPECT_EQ(of_subfile, std::vector<std::string>(of_source.begin() + 1, of_source.end()));
}

TEST_F(TheSubfileCommand, ShowsTheSameCurvesAsItsSource) {
  const std::vector<Stroke> of_source = ImgC(kPartView).LinesOf({0xFF, 0, 0});
  Save("SCUT.OVN");
  View("SCUT.OVN");
  const std::vector<Stroke> of_subfile = ImgC(kPartView).LinesOf({0xFF, 0, 0});
  // Row 1 of the subfile is row 11 of the source.
  ASSERT_EQ(of_subfile.size() + 1, of_source.size());
  for (std::size_t k = 1; k < of_subfile.size(); ++k) {
    EXPECT_EQ(of_subfile[k].At.Y1, of_source[k + 1].At.Y1) << k;
    EXPECT_EQ(of_subfile[k].At.Y2, of_source[k + 1].At.Y2) << k;
    EXPECT_EQ(of_subfile[k].At.X2 + 30, of_source[k + 1].At.X2) << k;
  }
}

TEST_F(TheSubfileCommand, KeepsAHiddenReferenceWithItsColumn) {
  graph.CloseNow();
  header.UnitColour[2] = 0;
  header.UnitColour[3] = 0;
  program.state.OverPrepared = false;
  program.state.PartPrepared = false;
  ShowRows(80);
  Save("SCUT.OVN");
  const std::string bytes = FileBytes("SCUT.OVN");
  ASSERT_EQ(bytes.size(), 1000U + 2 * 2 * 51);
  EXPECT_EQ(bytes.substr(1000, 8), tavrel::Words({2200, 4200, 2220, 4220}));
}

TEST_F(TheSubfileCommand, RefusesTheDefaultNameOfAViewedSubfile) {
  Save("S260314A.OVN");
  View("S260314A.OVN");
  program.dialogs.boxes.clear();
  const std::string before = FileBytes("S260314A.OVN");
  Save("S260314A.OVN");
  EXPECT_EQ(program.dialogs.file_dialogs.back().FileName, "S260314A.OVN");
  EXPECT_THAT(Boxes(), ElementsAre("write subfile|S260314A.OVN\nFile is in use"));
  EXPECT_EQ(FileBytes("S260314A.OVN"), before);
  EXPECT_TRUE(idle_in_box);
}

TEST_F(TheSubfileCommand, LeavesEverythingAsItWasOnAFullDisk) {
  program.home.Write("tavdat/SCUT.OVN", "old");
  {
    const FullDisk full(1100);
    Save("SCUT.OVN");
  }
  EXPECT_THAT(Boxes(), ElementsAre("write subfile|File too large\nSCUT.OVN"));
  EXPECT_EQ(FileBytes("SCUT.OVN"), "old");
  EXPECT_EQ(FileBytes(kName), source);
  EXPECT_TRUE(idle_in_box);
  EXPECT_TRUE(program.state.GraphIdle);
  EXPECT_TRUE(Shown().TimerOn);
  EXPECT_EQ(program.events.pointers.back(), Pointer::kNormal);
}

TEST_F(TheSubfileCommand, WritesNothingOfAFileThatWasCut) {
  std::filesystem::resize_file(program.home.File(std::string("tavdat/") + kName), 1000 + 6 * 40);
  Save("SCUT.OVN");
  EXPECT_THAT(Boxes(), ElementsAre("write subfile|M260314A.OVN cannot be read to its end."));
  EXPECT_FALSE(Exists("SCUT.OVN"));
  EXPECT_TRUE(program.state.GraphIdle);
  EXPECT_TRUE(idle_in_box);
}

TEST_F(TheSubfileCommand, TellsOfADirectoryThatCannotBeWritten) {
  {
    const ReadOnlyMedium medium(program.home.File("tavdat"),
                                program.home.File(std::string("tavdat/") + kName));
    Save("SCUT.OVN");
  }
  EXPECT_THAT(Boxes(), ElementsAre("write subfile|Permission denied\nSCUT.OVN"));
  EXPECT_FALSE(Exists("SCUT.OVN"));
  EXPECT_EQ(FileBytes(kName), source);
  EXPECT_TRUE(program.state.GraphIdle);
}

TEST_F(TheSubfileCommand, HoldsTheCycleOffTheFileOnlyWhileItWrites) {
  bool idle_in_dialog = false;
  program.dialogs.on_box = [&] { idle_in_dialog = program.state.GraphIdle; };
  Save("XCUT.OVN");
  EXPECT_TRUE(idle_in_dialog);
  EXPECT_TRUE(program.events.pointers.empty() ||
              program.events.pointers.back() == Pointer::kNormal);
}

TEST_F(TheSubfileCommand, TellsThatItsJournalCannotBeWritten) {
  program.home.Write("tavdat/journal", "no directory");
  Save("S260314A.OVN");
  EXPECT_TRUE(Exists("S260314A.OVN"));
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Boxes()[0].find("write subfile|S260314A.OVN: the journal cannot be written ("), 0U)
      << Boxes()[0];
  EXPECT_TRUE(Boxes()[0].ends_with("); the subfile is without it"));
}

}  // namespace
}  // namespace tavrel
