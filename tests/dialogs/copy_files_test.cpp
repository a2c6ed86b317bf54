#include "dialogs/copy_files.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "base/text.h"
#include "files/stored_recording.h"
#include "tests/files/recording_fixture.h"
#include "tests/support/file_bench.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLarge = 3 * 1024 * 1024;  // bytes

class CopyDialog : public testing::Test {
 protected:
  CopyDialog() {
    target = bench.MakeDirectory("Backup");
    state.Settings.DestPath = target;
    for (const char* name : {"M260101A.OVN", "M260102A.OVN", "M260103A.OVN"}) {
      bench.WriteFile("tavdat", name, name);
    }
    state.ActiveView = View::kMainSheet;
  }
  // Selects all files and goes to the form.
  void Open() {
    bench.open_file.Open();
    bench.open_file.Display([] {});
    bench.open_file.Select(0, {0, static_cast<int>(bench.open_file.Rows().size()) - 1});
    form.Open();
  }
  void Copy() {
    Open();
    form.cmdCopy_Click([] {});
  }
  [[nodiscard]] std::string Copied(const std::string& name) const {
    return bench.program.home.Read("Backup/" + name);
  }
  [[nodiscard]] std::string Source(const std::string& name) const {
    return bench.program.home.Read("tavdat/" + name);
  }
  [[nodiscard]] std::vector<std::string> Boxes() const {
    std::vector<std::string> texts;
    for (const Notice& box : bench.program.dialogs.boxes) {
      EXPECT_EQ(box.Title, "Copy");
      texts.push_back(box.Text);
    }
    return texts;
  }
  [[nodiscard]] std::string Question() const { return "Copy file(s) to:\n" + LowerCase(target); }

  using List = std::vector<std::string>;

  FileBench bench;
  RunState& state = bench.program.state;
  CopyFiles& form = bench.copy_files;
  std::string target;
};

TEST_F(CopyDialog, CopiesTheSelectedFilesAfterAQuestion) {
  Copy();
  EXPECT_EQ(Boxes(), (List{Question(), "3  file(s) copied"}));
  EXPECT_EQ(bench.program.dialogs.boxes[1].Icon, BoxIcon::kInformation);
  EXPECT_EQ(Copied("M260101A.OVN"), Source("M260101A.OVN"));
  EXPECT_EQ(Copied("M260103A.OVN"), Source("M260103A.OVN"));
  EXPECT_FALSE(state.IndexValid);
  EXPECT_FALSE(form.IsOpen());
  EXPECT_EQ(state.ActiveView, View::kAllOpen);
}

TEST_F(CopyDialog, CopiesTheBlockOnly) {
  Open();
  bench.open_file.Select(1, {1, 1});
  form.Open();
  EXPECT_EQ(form.Values().noFiles, "1");
  form.cmdCopy_Click([] {});
  EXPECT_EQ(Boxes().back(), "1  file(s) copied");
  EXPECT_FALSE(bench.program.home.Exists("Backup/M260101A.OVN"));
  EXPECT_TRUE(bench.program.home.Exists("Backup/M260102A.OVN"));
}

TEST_F(CopyDialog, DoesNothingOnCancel) {
  state.SettingsChanged = false;
  bench.program.dialogs.ok = false;
  Copy();
  EXPECT_EQ(Boxes(), List{Question()});
  EXPECT_TRUE(fs::is_empty(target));
  EXPECT_TRUE(form.IsOpen());
  EXPECT_TRUE(state.IndexValid);
  EXPECT_FALSE(state.SettingsChanged);
}

TEST_F(CopyDialog, WritesItsNumberAndGivesTheOldOneBack) {
  Open();
  EXPECT_EQ(state.ActiveView, View::kAllCopy);
  form.Quit();
  EXPECT_EQ(state.ActiveView, View::kAllOpen);
  EXPECT_FALSE(form.IsOpen());
}

TEST_F(CopyDialog, BeginsAtTheLastDestination) {
  Open();
  EXPECT_EQ(form.Values().lbPath, target);
  EXPECT_EQ(form.Values().noFiles, "3");
}

TEST_F(CopyDialog, BeginsSomewhereThatExistsWhenTheLastDestinationIsGone) {
  state.Settings.DestPath = "A:";
  Open();
  EXPECT_TRUE(fs::is_directory(form.Values().lbPath));
}

TEST_F(CopyDialog, RemembersTheDestination) {
  bench.MakeDirectory("Backup/Deep");
  Open();
  const auto& lines = form.Lists().Lines();
  form.Lists().SelectLine(static_cast<int>(lines.size()) - 1);
  form.Lists_Change();
  EXPECT_EQ(form.Values().lbPath, target + "/Deep");
  state.SettingsChanged = false;
  form.cmdCopy_Click([] {});
  EXPECT_EQ(state.Settings.DestPath, target + "/Deep");
  EXPECT_TRUE(state.SettingsChanged);
  EXPECT_TRUE(bench.program.home.Exists("Backup/Deep/M260102A.OVN"));
}

TEST_F(CopyDialog, RefusesEachFileOntoItself) {
  state.Settings.DestPath = bench.Data();
  target = bench.Data();
  const std::string before = Source("M260102A.OVN");
  Copy();
  EXPECT_EQ(Boxes(), (List{Question(), "Cannot copy:M260101A.OVN\nSource = Destination",
                           "Cannot copy:M260102A.OVN\nSource = Destination",
                           "Cannot copy:M260103A.OVN\nSource = Destination", "0  file(s) copied"}));
  EXPECT_EQ(Source("M260102A.OVN"), before);
  EXPECT_TRUE(form.IsOpen());
}

TEST_F(CopyDialog, SeesThroughLinksAndHardLinks) {
  fs::create_symlink(bench.Data(), bench.program.home.File("Backup/link"));
  fs::create_hard_link(bench.program.home.File("tavdat/M260101A.OVN"), target + "/M260101A.OVN");
  fs::create_symlink(bench.program.home.File("tavdat/M260102A.OVN"), target + "/M260102A.OVN");
  Copy();
  EXPECT_EQ(Boxes(), (List{Question(), "Cannot copy:M260101A.OVN\nSource = Destination",
                           "Cannot copy:M260102A.OVN\nSource = Destination", "1  file(s) copied"}));
  state.Settings.DestPath = target + "/link";
  bench.program.dialogs.boxes.clear();
  Copy();
  EXPECT_EQ(Boxes().size(), 5U);
  EXPECT_EQ(Boxes().back(), "0  file(s) copied");
}

TEST_F(CopyDialog, ReplacesAFileOfThatNameSilently) {
  bench.program.home.Write("Backup/M260101A.OVN", "old");
  bench.program.home.Write("Backup/m260102a.ovn", "old too");
  Copy();
  EXPECT_EQ(Boxes(), (List{Question(), "3  file(s) copied"}));
  EXPECT_EQ(Copied("M260101A.OVN"), Source("M260101A.OVN"));
  EXPECT_EQ(Copied("m260102a.ovn"), Source("M260102A.OVN"));
  EXPECT_FALSE(bench.program.home.Exists("Backup/M260102A.OVN"));
}

TEST_F(CopyDialog, CopiesAFileWhateverTheCaseOnTheDisk) {
  bench.WriteFile("tavdat", "m260104a.ovn", "small letters");
  Copy();
  EXPECT_EQ(Boxes().back(), "4  file(s) copied");
  EXPECT_EQ(Copied("M260104A.OVN"), Source("m260104a.ovn"));
}

TEST_F(CopyDialog, NeverReplacesAFileThatASlotHasOpen) {
  bench.WriteFile("Backup", "M260102A.OVN", "recorded to");
  bench.WriteFile("Backup", "M260103A.OVN", "looked at");
  state.SlotPath[4] = target;
  state.SlotFile[4] = "m260102a.ovn";
  state.SlotPath[0] = target + "/.";
  state.SlotFile[0] = "M260103A.OVN";
  const std::string recorded = Copied("M260102A.OVN");
  const std::string looked_at = Copied("M260103A.OVN");
  Copy();
  EXPECT_EQ(Boxes(), (List{Question(), "Cannot copy:M260102A.OVN\nFile is in use",
                           "Cannot copy:M260103A.OVN\nFile is in use", "1  file(s) copied"}));
  EXPECT_EQ(Copied("M260102A.OVN"), recorded);
  EXPECT_EQ(Copied("M260103A.OVN"), looked_at);
}

TEST_F(CopyDialog, ReplacesLinksAndSparesWhatTheyLeadTo) {
  bench.program.home.Write("kept", "kept");
  fs::create_symlink(bench.program.home.File("kept"), target + "/M260101A.OVN");
  fs::create_symlink(bench.program.home.File("nowhere"), target + "/M260102A.OVN");
  Copy();
  EXPECT_EQ(Boxes(), (List{Question(), "3  file(s) copied"}));
  EXPECT_EQ(bench.program.home.Read("kept"), "kept");
  EXPECT_FALSE(bench.program.home.Exists("nowhere"));
  EXPECT_FALSE(fs::is_symlink(target + "/M260101A.OVN"));
  EXPECT_EQ(Copied("M260101A.OVN"), Source("M260101A.OVN"));
  EXPECT_EQ(Copied("M260102A.OVN"), Source("M260102A.OVN"));
}

TEST_F(CopyDialog, NeverReplacesAFileInUseThatTheDiskSpellsOtherwise) {
  bench.WriteFile("Backup", "m260102a.ovn", "recorded to");
  state.SlotPath[12] = target + "/../Backup";
  state.SlotFile[12] = "M260102A.OVN";
  const std::string recorded = Copied("m260102a.ovn");
  Copy();
  EXPECT_EQ(Boxes(),
            (List{Question(), "Cannot copy:M260102A.OVN\nFile is in use", "2  file(s) copied"}));
  EXPECT_EQ(Copied("m260102a.ovn"), recorded);
  EXPECT_FALSE(fs::exists(target + "/M260102A.OVN"));
}

TEST_F(CopyDialog, TellsWhyAFileCannotBeCopiedAndGoesOn) {
  Open();
  fs::remove(bench.program.home.File("tavdat/M260102A.OVN"));
  form.cmdCopy_Click([] {});
  EXPECT_EQ(Boxes(), (List{Question(), "Cannot copy:M260102A.OVN\nNo such file or directory",
                           "2  file(s) copied"}));
}

TEST_F(CopyDialog, EndsAtAFailureIfTheUserHasEnough) {
  Open();
  fs::remove(bench.program.home.File("tavdat/M260101A.OVN"));
  bench.program.dialogs.on_box = [this] {
    bench.program.dialogs.ok = bench.program.dialogs.boxes.size() == 1;
  };
  form.cmdCopy_Click([] {});
  EXPECT_EQ(Boxes().back(), "0  file(s) copied");
  EXPECT_FALSE(bench.program.home.Exists("Backup/M260102A.OVN"));
}

TEST_F(CopyDialog, LeavesTheOldFileWholeOnAFullDisk) {
  bench.program.home.Write("Backup/M260101A.OVN", "old");
  Open();
  {
    const FullDisk full(500);
    form.cmdCopy_Click([] {});
  }
  EXPECT_EQ(Boxes().back(), "0  file(s) copied");
  EXPECT_EQ(Copied("M260101A.OVN"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(target), fs::directory_iterator()), 1);
}

TEST_F(CopyDialog, ServesTheProgramBetweenFilesAndMayBeStopped) {
  Open();
  bool was_copying = false;
  const auto stop_after_one = [&] {
    was_copying = was_copying || form.Values().IsCopying;
    if (bench.program.events.pumps == 1) {
      form.cmdCopy_Click([] {});
      form.Quit();
    }
  };
  form.cmdCopy_Click(stop_after_one);
  EXPECT_TRUE(was_copying);
  EXPECT_EQ(bench.program.events.pumps, 2);
  EXPECT_EQ(Boxes(), (List{Question(), "2  file(s) copied"}));
  EXPECT_FALSE(form.IsOpen());
}

// Three files of 3 MB: each is asked about before it and behind its first and second part.
TEST_F(CopyDialog, IsStoppedWithinALargeFile) {
  for (const char* name : {"M260101A.OVN", "M260102A.OVN", "M260103A.OVN"}) {
    fs::resize_file(bench.program.home.File("tavdat/" + std::string(name)), kLarge);
  }
  Open();
  bench.program.events.on_pump = [this] {
    if (bench.program.events.pumps == 5) {
      form.Quit();
    }
  };
  form.cmdCopy_Click([] {});
  EXPECT_EQ(bench.program.events.pumps, 5);
  EXPECT_EQ(Boxes(), (List{Question(), "1  file(s) copied"}));
  EXPECT_TRUE(Copied("M260101A.OVN") == Source("M260101A.OVN"));
  EXPECT_EQ(std::distance(fs::directory_iterator(target), fs::directory_iterator()), 1);
  EXPECT_FALSE(form.IsOpen());
}

TEST_F(CopyDialog, EndsWithTheProgramWithoutABox) {
  fs::resize_file(bench.program.home.File("tavdat/M260102A.OVN"), kLarge);
  Open();
  bench.program.events.on_pump = [this] {
    bench.program.events.end_is_wanted = bench.program.events.pumps == 3;
  };
  form.cmdCopy_Click([] {});
  EXPECT_EQ(bench.program.events.pumps, 3);
  EXPECT_EQ(Boxes(), List{Question()});
  EXPECT_TRUE(Copied("M260101A.OVN") == Source("M260101A.OVN"));
  EXPECT_EQ(std::distance(fs::directory_iterator(target), fs::directory_iterator()), 1);
}

TEST_F(CopyDialog, ShowsHowFarItIsWhenItTakesLong) {
  Open();
  std::vector<int> percents;
  form.cmdCopy_Click([&] {
    percents.push_back(form.Values().Progress);
    bench.program.clock.AdvanceSeconds(0.3);
  });
  EXPECT_EQ(percents, (std::vector<int>{kNoProgress, kNoProgress, 66, kNoProgress}));
}

TEST_F(CopyDialog, CopiesTheFileOfCurvesInTheVariantThatHasOne) {
  bench.program.home.Write("tavdat/K260101A.OVN", std::string(1000, 'k'));
  bench.program.home.Write("tavdat/C260101A.OVN", "curves");
  state.Settings.TypeSel = 3;
  Copy();
  EXPECT_EQ(Boxes(), (List{Question(), "1  data-file(s)\n1  curve-file(s)"}));
  EXPECT_EQ(Copied("C260101A.OVN"), "curves");
}

// A recording that slot 7 makes, which was not yet on when the list was built.
class CopyOfARecording : public CopyDialog {
 protected:
  static constexpr int kSlot = 7;
  static constexpr const char* kRecording = "M260102A.OVN";

  void Record(int rows) {
    bench.open_file.Open();
    bench.open_file.Display([] {});
    UnitRecord header = BenchProgram::Header(2, 3, 3, false);
    header.UnitRecOn = 1;
    bench.program.Install(kSlot, kRecording, header, {});
    state.SlotPath[kSlot] = bench.program.home.File("tavdat") + "/";
    state.SlotFile[kSlot] = kRecording;
    bench.program.files.OpenRecordingFile(kSlot);
    Append(rows);
  }
  void Append(int rows) {
    const std::array<std::int16_t, 3> words{1, 2, 3};
    for (int row = 0; row < rows; ++row) {
      ASSERT_TRUE(bench.program.files.AppendRow(kSlot, words, 1));
    }
  }
  void CopyIt() {
    const auto row = bench.program.index.RowOf(kRecording);
    ASSERT_TRUE(row);
    const int place = static_cast<int>(*row);
    bench.open_file.Select(place, {place, place});
    form.Open();
    form.cmdCopy_Click([] {});
  }
  [[nodiscard]] RecordingCheck Check(const std::string& directory) const {
    const StoredRecording recording =
        ReadRecording(bench.program.home.File(directory + "/" + kRecording));
    EXPECT_EQ(recording.Problem, "");
    return CheckRecording(recording.File(), recording.Journal);
  }
};

TEST_F(CopyOfARecording, TakesFileAndJournalAtOneSeal) {
  Record(5);
  Append(4);  // behind the last seal
  // Rows come while the copy is made.
  bench.program.events.on_pump = [this] { Append(1); };
  CopyIt();
  bench.program.events.on_pump = nullptr;
  const RecordingCheck check = Check("Backup");
  EXPECT_EQ(check.Verdict, Verdict::kIntact) << (check.Findings.empty() ? "" : check.Findings[0]);
  EXPECT_GE(check.CoveredRows, 9);
  Append(2);
  bench.program.files.CloseRecordingFile(kSlot);
  EXPECT_EQ(Check("tavdat").Verdict, Verdict::kIntact) << "the recording goes on with its journal";
  EXPECT_EQ(Boxes().back(), "1  file(s) copied");
}

TEST_F(CopyOfARecording, ALaterCopyTakesThePlaceOfAnEarlierOne) {
  Record(5);
  CopyIt();
  Append(3);
  CopyIt();
  EXPECT_EQ(Check("Backup").Verdict, Verdict::kIntact);
  EXPECT_EQ(Check("Backup").Rows, 8);
  EXPECT_FALSE(bench.program.home.Exists("Backup/journal/M260102A.OVN.1"))
      << "it is in the new one";
}

TEST_F(CopyOfARecording, AJournalOfAnotherRecordingIsPutAside) {
  bench.MakeDirectory("Backup/journal");
  bench.program.home.Write("Backup/journal/M260102A.OVN", "{}\n");
  Record(5);
  CopyIt();
  EXPECT_EQ(Check("Backup").Verdict, Verdict::kIntact);
  EXPECT_EQ(bench.program.home.Read("Backup/journal/M260102A.OVN.1"), "{}\n");
}

TEST_F(CopyOfARecording, ARefusedJournalCostsTheJournalAndIsTold) {
  bench.program.home.Write("Backup/journal", "no directory");
  Record(5);
  CopyIt();
  EXPECT_EQ(Copied(kRecording).size(), 1000U + 5 * 6);
  ASSERT_EQ(Boxes().size(), 3U);
  EXPECT_EQ(Boxes()[1].find("Cannot copy:the journal of M260102A.OVN\n"), 0U) << Boxes()[1];
  EXPECT_EQ(Boxes()[2], "1  file(s) copied");
}

TEST_F(CopyOfARecording, AFileWithoutAJournalStaysWithoutOneAndIsHeldAgainstNoOther) {
  bench.MakeDirectory("Backup/journal");
  bench.program.home.Write("Backup/journal/M260101A.OVN", "{}\n");
  Copy();
  EXPECT_EQ(Copied("M260101A.OVN"), Source("M260101A.OVN"));
  EXPECT_FALSE(bench.program.home.Exists("Backup/journal/M260101A.OVN"));
  EXPECT_EQ(bench.program.home.Read("Backup/journal/M260101A.OVN.1"), "{}\n");
  EXPECT_FALSE(bench.program.home.Exists("Backup/journal/M260103A.OVN"));
}

TEST_F(CopyOfARecording, ACopyThatFailsLeavesTheOldOneItsJournal) {
  bench.MakeDirectory("Backup/journal");
  bench.MakeDirectory("Backup/M260101A.OVN");  // nothing can take its place
  bench.program.home.Write("Backup/journal/M260101A.OVN", "{}\n");
  Copy();
  EXPECT_EQ(bench.program.home.Read("Backup/journal/M260101A.OVN"), "{}\n");
}

}  // namespace
}  // namespace tavrel
