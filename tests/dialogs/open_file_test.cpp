#include "dialogs/open_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "files/journal_check.h"
#include "files/recording_format.h"
#include "tests/support/file_bench.h"

namespace tavrel {
namespace {

using List = std::vector<std::string>;

class OpenDialog : public testing::Test {
 protected:
  void Open() {
    state.ActiveView = View::kMainSheet;
    form.Open();
    form.Display([] {});
  }
  // Goes to the directory `name` in the list of directories.
  void SelectDirectory(const std::string& name) {
    DirectoryLists& lists = form.Lists();
    for (std::size_t line = 0; line < lists.Lines().size(); ++line) {
      if (lists.Lines()[line].Name == name) {
        lists.SelectLine(static_cast<int>(line));
        return;
      }
    }
    ADD_FAILURE() << "no directory " << name;
  }
  void SelectRow(int row) { form.Select(row, {row, row}); }

  FileBench bench;
  RunState& state = bench.program.state;
  OpenFile& form = bench.open_file;
  std::vector<Notice>& boxes = bench.program.dialogs.boxes;
};

TEST_F(OpenDialog, WritesItsNumberAndGivesTheOldOneBack) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  Open();
  EXPECT_EQ(state.ActiveView, View::kAllOpen);
  EXPECT_TRUE(form.IsOpen());
  form.cmdOpen_Click();
  EXPECT_EQ(state.ActiveView, View::kMainSheet);
  EXPECT_FALSE(form.IsOpen());
  Open();
  form.cmdBack_Click();
  EXPECT_EQ(state.ActiveView, View::kMainSheet);
}

TEST_F(OpenDialog, BuildsTheIndexWhenItIsNotValidOnly) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  Open();
  EXPECT_EQ(bench.Names(), List{"M260101A.OVN"});
  EXPECT_EQ(form.Values().noFiles, "1");
  form.cmdOpen_Click();
  bench.WriteFile("tavdat", "M260102A.OVN");
  Open();
  EXPECT_EQ(form.Values().noFiles, "1");
  form.cmdOpen_Click();
  state.IndexValid = false;
  Open();
  EXPECT_EQ(bench.Names(), (List{"M260101A.OVN", "M260102A.OVN"}));
  EXPECT_EQ(form.Values().noFiles, "2");
}

// Each look at it is a tenth of a second later.
class SlowClock : public FakeClock {
 public:
  [[nodiscard]] std::chrono::nanoseconds Elapsed() const override {
    return std::chrono::milliseconds(100) * ++looks_;
  }

 private:
  mutable int looks_ = 0;
};

// A long index shows how far it is, and has no bar at the end.
TEST_F(OpenDialog, ShowsHowFarTheIndexIs) {
  for (int number = 10; number < 30; ++number) {
    bench.WriteFile("tavdat", "M2601" + std::to_string(number) + "A.OVN");
  }
  const SlowClock clock;
  FileIndex index({state, bench.program.events, clock});
  OpenFile slow({state, index, bench.program.dialogs, bench.program.screens, bench.program.events,
                 [this] { return bench.program.places; }});
  std::vector<int> progress;
  slow.Open();
  slow.Display([&] {
    progress.push_back(slow.Values().Progress);
    EXPECT_EQ(slow.Values().Revision, index.Revision());
  });
  ASSERT_GT(progress.size(), 10U);
  EXPECT_EQ(progress.front(), 25);
  EXPECT_EQ(progress.at(progress.size() - 2), 100);
  EXPECT_EQ(progress.back(), kNoProgress);
  EXPECT_EQ(bench.program.events.repaints, static_cast<int>(progress.size()) - 1);
}

TEST_F(OpenDialog, TakesTheSelectedFile) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  bench.WriteFile("tavdat", "M260102A.OVN");
  Open();
  SelectRow(1);
  state.SettingsChanged = false;
  form.cmdOpen_Click();
  EXPECT_EQ(state.Settings.OpenFile, "M260102A.OVN");
  EXPECT_EQ(state.Settings.OpenPath, bench.Data());
  EXPECT_TRUE(state.SettingsChanged);
  EXPECT_TRUE(state.IndexValid);
}

TEST_F(OpenDialog, BeginsOnTheFileOpenedLast) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  bench.WriteFile("tavdat", "M260102A.OVN");
  bench.WriteFile("tavdat", "M260103A.OVN");
  state.Settings.OpenFile = "m260102a.ovn";
  Open();
  EXPECT_EQ(form.Values().CurrentRow, 1);
  form.cmdBack_Click();
  state.SlotFile[0] = "M260103A.OVN";
  Open();
  EXPECT_EQ(form.Values().CurrentRow, 2);
  state.Settings.OpenFile = "M250101A.OVN";
  Open();
  EXPECT_EQ(form.Values().CurrentRow, 0);
}

TEST_F(OpenDialog, LeavesNoNameAfterCancel) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  state.Settings.OpenFile = "M260101A.OVN";
  Open();
  form.cmdBack_Click();
  EXPECT_EQ(state.Settings.OpenFile, "");
  EXPECT_FALSE(state.IndexValid);
  EXPECT_TRUE(state.SettingsChanged);
}

TEST_F(OpenDialog, SaysThatADirectoryIsEmptyAndStaysOpen) {
  List shown;
  bench.program.dialogs.on_box = [&] { shown.push_back(form.Values().noFiles); };
  Open();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].Text, "No data-files in  ...\n" + bench.Data());
  EXPECT_EQ(boxes[0].Title, "Open");
  EXPECT_EQ(shown, List{"0"});
  EXPECT_TRUE(form.IsOpen());
  EXPECT_EQ(form.Values().CurrentRow, -1);
  EXPECT_FALSE(form.Values().cmdCopyEnabled);
}

TEST_F(OpenDialog, TakesTheEmptyRowAsCancel) {
  state.Settings.OpenFile = "M260101A.OVN";
  Open();
  form.cmdOpen_Click();
  EXPECT_EQ(state.Settings.OpenFile, "");
  EXPECT_FALSE(form.IsOpen());
  EXPECT_FALSE(state.IndexValid);
}

TEST_F(OpenDialog, ListsAnotherDirectoryOnlyWhenAskedTo) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  const std::string other = bench.MakeDirectory("tavdat/old");
  bench.WriteFile("tavdat/old", "M250101A.OVN");
  Open();
  SelectDirectory("old");
  EXPECT_EQ(bench.Names(), List{"M260101A.OVN"});
  EXPECT_EQ(state.Settings.OpenPath, bench.Data());
  state.SettingsChanged = false;
  form.cmdNew_Click([] {});
  EXPECT_EQ(bench.Names(), List{"M250101A.OVN"});
  EXPECT_EQ(state.Settings.OpenPath, other);
  EXPECT_EQ(form.Lists().Path(), other);
  EXPECT_TRUE(state.SettingsChanged);
  EXPECT_TRUE(form.IsOpen());
}

TEST_F(OpenDialog, BuildsAnewForTheSameDirectoryToo) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  Open();
  bench.WriteFile("tavdat", "M260102A.OVN");
  form.cmdNew_Click([] {});
  EXPECT_EQ(form.Values().noFiles, "2");
}

TEST_F(OpenDialog, BeginsInTheDataDirectoryAgainAfterCancel) {
  const std::string other = bench.MakeDirectory("other");
  bench.WriteFile("tavdat", "M260101A.OVN");
  bench.WriteFile("other", "M250101A.OVN");
  state.Settings.OpenPath = other;
  Open();
  EXPECT_EQ(bench.Names(), List{"M250101A.OVN"});
  EXPECT_EQ(form.Lists().Path(), other);
  form.cmdBack_Click();
  EXPECT_EQ(state.Settings.OpenPath, bench.Data());
  Open();
  EXPECT_EQ(bench.Names(), List{"M260101A.OVN"});
}

TEST_F(OpenDialog, StaysInAnotherDirectoryAfterOpening) {
  const std::string other = bench.MakeDirectory("other");
  bench.WriteFile("other", "M250101A.OVN");
  state.Settings.OpenPath = other;
  Open();
  form.cmdOpen_Click();
  EXPECT_EQ(state.Settings.OpenPath, other);
  EXPECT_EQ(state.Settings.OpenFile, "M250101A.OVN");
}

TEST_F(OpenDialog, KeepsAnotherSpellingOfTheDataDirectoryOnCancel) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  state.Settings.OpenPath = bench.Data() + "/.";
  Open();
  form.cmdBack_Click();
  EXPECT_EQ(state.Settings.OpenPath, bench.Data() + "/.");
}

TEST_F(OpenDialog, NamesTheDataDirectoryWhenNoPathIsSet) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  state.Settings.OpenPath.clear();
  state.Settings.DefPath.clear();
  Open();
  form.cmdOpen_Click();
  EXPECT_EQ(state.Settings.OpenPath, bench.Data());
  EXPECT_EQ(state.Settings.OpenFile, "M260101A.OVN");
}

TEST_F(OpenDialog, KeepsTheFileSelectedThroughASort) {
  bench.WriteFile("tavdat", "M260101A.OVN", "Zeta");
  bench.WriteFile("tavdat", "M260102A.OVN", "Alpha");
  bench.WriteFile("tavdat", "M260103A.OVN", "Beta");
  Open();
  SelectRow(2);
  const int revision = form.Values().Revision;
  form.cmdProduct_Click();
  EXPECT_EQ(form.Values().SortKey, "PD");
  EXPECT_EQ(bench.Names(), (List{"M260101A.OVN", "M260103A.OVN", "M260102A.OVN"}));
  EXPECT_EQ(form.Values().CurrentRow, 1);
  EXPECT_GT(form.Values().Revision, revision);
  form.cmdFile_Click();
  EXPECT_EQ(form.Values().SortKey, "FD");
  EXPECT_EQ(form.Values().CurrentRow, 0);
}

TEST_F(OpenDialog, KeepsTheBlockForTheCopy) {
  for (const char* name : {"M260101A.OVN", "M260102A.OVN", "M260103A.OVN", "M260104A.OVN"}) {
    bench.WriteFile("tavdat", name);
  }
  Open();
  form.Select(2, {1, 2});
  List names;
  bench.program.screens.on_show = [&](View view) {
    EXPECT_EQ(view, View::kAllCopy);
    names = form.SelectedNames();
  };
  form.cmdCopy_Click();
  EXPECT_EQ(names, (List{"M260102A.OVN", "M260103A.OVN"}));
  EXPECT_TRUE(form.IsOpen());
}

TEST_F(OpenDialog, TakesNoRowOutsideOfTheIndex) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  bench.WriteFile("tavdat", "M260102A.OVN");
  Open();
  form.Select(7, {0, 9});
  EXPECT_EQ(form.Values().CurrentRow, -1);
  EXPECT_TRUE(form.SelectedNames().empty());
  form.Select(1, {-5, 99});
  EXPECT_EQ(form.SelectedNames(), (List{"M260101A.OVN", "M260102A.OVN"}));
  form.Select(-1, {});
  EXPECT_TRUE(form.SelectedNames().empty());
  EXPECT_FALSE(form.Values().cmdCopyEnabled);
}

TEST_F(OpenDialog, TellsItsLanguage) {
  state.Settings.HelpLang = "german";
  Open();
  EXPECT_EQ(form.Values().TipLanguage, Language::kGerman);
}

TEST_F(OpenDialog, TellsADirectoryThatHasGone) {
  bench.WriteFile("tavdat", "M260101A.OVN");
  state.Settings.OpenPath = bench.program.home.File("gone");
  Open();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].Title, "Creation of Index");
  EXPECT_EQ(form.Lists().Path(), bench.program.home.Path());
  EXPECT_TRUE(form.IsOpen());
}

// A recording of some rows, and its journal with one seal.
std::string Sealed(const std::string& file) {
  JournalChain chain;
  std::string journal = chain.Line(JournalStamp{}, "begin", {{"id", "1"}});
  const std::string rows = file.substr(kHeaderBytes);
  const JournalSeal seal{static_cast<std::int32_t>(rows.size() / 4), 2, Sha256Of(rows),
                         Sha256Of(file.substr(0, kHeaderBytes)), chain.Hash()};
  return journal + chain.Line(JournalStamp{}, "seal", seal.Fields());
}

class Verifying : public OpenDialog {
 protected:
  Verifying() {
    bench.MakeDirectory("tavdat/journal");
    for (const char* day : {"1", "2", "3", "4"}) {
      const std::string name = "M26010" + std::string(day) + "A.OVN";
      bench.WriteFile("tavdat", name);
      bench.program.home.Write("tavdat/" + name, File());
      bench.program.home.Write("tavdat/journal/" + name, Sealed(File()));
    }
    state.Settings.SortKey = "FA";
  }
  static std::string File() {
    const UnitRecord header = BenchProgram::Header(2, 3, 2, false);
    std::string bytes(kHeaderBytes, '\0');
    std::memcpy(bytes.data(), &header, sizeof header);
    return bytes + std::string(40, 'x');
  }
  void SelectAll() { form.Select(0, {0, static_cast<int>(form.Rows().size()) - 1}); }
  std::vector<IndexVerdict> Verdicts() const {
    std::vector<IndexVerdict> verdicts;
    for (const IndexRow& row : form.Rows()) {
      verdicts.push_back(row.Proof.Verdict);
    }
    return verdicts;
  }
  using Verdicts_ = std::vector<IndexVerdict>;
  static constexpr IndexVerdict kNone = IndexVerdict::kNotAsked;
};

TEST_F(Verifying, ShowsNothingBeforeItIsAskedAndThenTheVerdictOfEachFile) {
  bench.program.home.Write("tavdat/M260102A.OVN", File() + "more");
  std::string changed = File();
  changed[1003] ^= 1;
  bench.program.home.Write("tavdat/M260103A.OVN", changed);
  bench.program.home.Write("tavdat/M260104A.OVN", std::string(2000, '\0'));
  std::filesystem::remove(bench.program.home.File("tavdat/journal/M260104A.OVN"));
  Open();
  EXPECT_EQ(Verdicts(), (Verdicts_{kNone, kNone, kNone, kNone}));
  SelectAll();
  EXPECT_TRUE(form.Values().cmdVerifyEnabled);
  form.cmdVerify_Click([] {});
  EXPECT_EQ(Verdicts(), (Verdicts_{IndexVerdict::kIntact, IndexVerdict::kNotCovered,
                                   IndexVerdict::kDamaged, IndexVerdict::kNoRecording}));
  EXPECT_EQ(form.Rows()[0].Proof.Findings, "");
  EXPECT_NE(form.Rows()[2].Proof.Findings.find("rows 0 to 9"), std::string::npos)
      << form.Rows()[2].Proof.Findings;
  EXPECT_FALSE(form.Values().IsVerifying);
  EXPECT_EQ(form.Values().Progress, kNoProgress);
}

TEST_F(Verifying, VerifiesTheChosenFilesOnlyAndKeepsTheSelection) {
  Open();
  form.Select(1, {1, 2});
  const int revision = form.Values().Revision;
  form.cmdVerify_Click([] {});
  EXPECT_EQ(Verdicts(), (Verdicts_{kNone, IndexVerdict::kIntact, IndexVerdict::kIntact, kNone}));
  EXPECT_EQ(form.Values().Revision, revision) << "the grid is not filled anew";
  EXPECT_EQ(form.Values().Selected.First, 1);
  EXPECT_EQ(form.Values().Selected.Last, 2);
  form.cmdFile_Click();  // the verdicts go with their rows
  EXPECT_EQ(Verdicts(), (Verdicts_{kNone, IndexVerdict::kIntact, IndexVerdict::kIntact, kNone}));
  EXPECT_EQ(form.Rows()[1].Name, "M260103A.OVN");
}

TEST_F(Verifying, ServesEventsBetweenFilesAndIsStopped) {
  for (const bool by_escape : {false, true}) {
    Open();
    SelectAll();
    int served = 0;
    bench.program.events.on_pump = [&] {
      EXPECT_TRUE(form.Values().IsVerifying);
      EXPECT_FALSE(form.Values().cmdCopyEnabled);
      form.cmdOpen_Click();
      form.cmdFile_Click();
      if (++served == 3) {
        by_escape ? form.cmdBack_Click() : form.cmdVerify_Click([] {});
      }
    };
    form.cmdVerify_Click([] {});
    bench.program.events.on_pump = nullptr;
    EXPECT_EQ(served, 3);
    EXPECT_EQ(Verdicts(), (Verdicts_{IndexVerdict::kIntact, IndexVerdict::kIntact, kNone, kNone}));
    EXPECT_TRUE(form.IsOpen());
    form.cmdBack_Click();
    EXPECT_FALSE(form.IsOpen());
  }
}

TEST_F(Verifying, EndsWithTheForm) {
  Open();
  SelectAll();
  int served = 0;
  bench.program.events.on_pump = [&] {
    ++served;
    form.CloseNow();
  };
  form.cmdVerify_Click([] {});
  bench.program.events.on_pump = nullptr;
  EXPECT_EQ(served, 1);
  EXPECT_FALSE(form.IsOpen());
}

TEST_F(Verifying, ForgetsWhatWasFoundWhenItIsOpenedAgain) {
  Open();
  SelectAll();
  form.cmdVerify_Click([] {});
  form.cmdOpen_Click();
  Open();
  EXPECT_EQ(Verdicts(), (Verdicts_{kNone, kNone, kNone, kNone}));
  EXPECT_EQ(form.Values().ProofRevision, 0);
}

}  // namespace
}  // namespace tavrel
