#include "files/file_index.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <random>

#include "files/recording_format.h"
#include "tests/files/recording_fixture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_screen.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

class Index : public testing::Test {
 protected:
  Index() {
    state.Settings.TypeSel = 4;
    state.Settings.OpenPath = directory.Path();
    state.Settings.SortKey = "FA";
  }

  static std::string File(const std::string& designation, std::size_t length = kHeaderBytes) {
    UnitRecord unit = DefaultUnitRecord();
    unit.UnitDesignation.Set(designation);
    std::string bytes = BytesOf(unit);
    bytes.resize(length);
    return bytes;
  }
  void Write(const std::string& name, const std::string& designation = "OVN:Oven") {
    directory.Write(name, File(designation));
  }
  std::optional<Notice> Build() {
    return index.Build([](int) {});
  }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const IndexRow& row : index.Rows()) {
      names.push_back(row.Name);
    }
    return names;
  }
  std::vector<std::string> NamesBy(const std::string& key) {
    state.Settings.SortKey = key;
    index.Sort();
    return Names();
  }

  using List = std::vector<std::string>;

  TemporaryDirectory directory;
  RunState state;
  FakeEvents events;
  FakeClock clock;
  FileIndex index{{state, events, clock}};
};

TEST_F(Index, ListsRecordingsAndSubfilesWithTheirApparatus) {
  Write("M260314A.OVN", "OVN:Tube oven");
  Write("SPECIAL.OVN", "OVN: Autoclave");
  EXPECT_EQ(Build(), std::nullopt);
  ASSERT_EQ(index.Rows().size(), 2U);
  EXPECT_EQ(index.Rows()[0].Name, "M260314A.OVN");
  EXPECT_EQ(index.Rows()[0].Contents, "Tube oven");
  EXPECT_EQ(index.Rows()[1].Name, "SPECIAL.OVN");
  EXPECT_EQ(index.Rows()[1].Contents, "Autoclave");
  EXPECT_TRUE(state.IndexValid);
  EXPECT_TRUE(index.IsValid());
  EXPECT_EQ(events.pointers, (std::vector<Pointer>{Pointer::kHourglass, Pointer::kNormal}));
}

TEST_F(Index, WantsSixDigitsBehindTheLetter) {
  for (const char* name : {"MABCDEFG.NEW", "M0111.NEW", "M01111A.NEW", "M011111", "K011111A.NEW",
                           "X011111A.NEW", "M011111.", "011111A.NEW", "M"}) {
    Write(name);
  }
  Write("M011111.NEW");
  Write("M011111LONGER.NEW");
  Build();
  EXPECT_EQ(Names(), (List{"M011111.NEW", "M011111LONGER.NEW"}));
}

TEST_F(Index, DropsForeignAndMissingExtensions) {
  for (const char* name : {"SOMETHING.TXT", "SOMETHING", "SOMETHING.", "S.pdf", "S.BMP", "S.com",
                           "S.CMD", "S.DOC", "S.EXE", "S.prg", "M260314A.VAR", "M260314A.zip"}) {
    Write(name);
  }
  Write("S.ABC");
  Write("S.TXT.OLD");
  Build();
  EXPECT_EQ(Names(), (List{"S.ABC", "S.TXT.OLD"}));
}

TEST_F(Index, DropsTextsThatWereExported) {
  Write("M260314A.OVN");
  Write("M260314A.OVN.ASC");
  Write("S260314A.OVN.asc");
  Write("S260314A.ASC");
  Build();
  EXPECT_EQ(Names(), (List{"M260314A.OVN"}));
}

TEST_F(Index, LeavesOutTheFilesThatSlotsRecordTo) {
  Write("M260314A.OVN");
  Write("M260314B.OVN");
  Write("m260314c.ovn");
  state.Settings.ActiveFiles[0] = "M260314A.OVN";
  state.Settings.ActiveFiles[11] = "M260314C.ovn";
  Build();
  EXPECT_EQ(Names(), List{"M260314B.OVN"});
}

TEST_F(Index, SaysSoWhenOnlyActiveFilesAreThere) {
  Write("M260314A.OVN");
  state.Settings.ActiveFiles[0] = "M260314A.OVN";
  const auto notice = Build();
  ASSERT_TRUE(notice);
  EXPECT_EQ(notice->Text, "No data-files in  ...\n" + directory.Path());
  EXPECT_EQ(notice->Title, "Open");
  EXPECT_EQ(notice->Icon, BoxIcon::kInformation);
  EXPECT_TRUE(index.Rows().empty());
}

TEST_F(Index, LeavesShortFilesOutAndOnTheDisk) {
  directory.Write("M260314A.OVN", "");
  directory.Write("M260314B.OVN", File("OVN:B", 499));
  directory.Write("M260314C.OVN", File("OVN:C", 999));
  directory.Write("M260314D.OVN", File("OVN:D", 1000));
  Build();
  EXPECT_EQ(Names(), List{"M260314D.OVN"});
  EXPECT_TRUE(directory.Exists("M260314A.OVN"));
  EXPECT_TRUE(directory.Exists("M260314B.OVN"));
  EXPECT_EQ(directory.Read("M260314C.OVN").size(), 999U);
}

TEST_F(Index, TestsNothingButTheLength) {
  directory.Write("M260314A.OVN", std::string(1000, '\xFF'));
  directory.Write("M260314B.OVN", std::string(1000, '\0'));
  Build();
  ASSERT_EQ(Names(), (List{"M260314A.OVN", "M260314B.OVN"}));
  EXPECT_EQ(index.Rows()[0].Contents, "ÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿ");
  EXPECT_EQ(index.Rows()[1].Contents, "");
}

TEST_F(Index, ShowsNamesInCapitalsAndUmlautsOfTheContents) {
  Write("m260314a.ovn", "OVN:Ofen Süd");
  Build();
  ASSERT_EQ(index.Rows().size(), 1U);
  EXPECT_EQ(index.Rows()[0].Name, "M260314A.OVN");
  EXPECT_EQ(index.Rows()[0].Contents, "Ofen Süd");
}

TEST_F(Index, ListsOneOfSeveralSpellingsAsOpeningFindsIt) {
  Write("m260314a.ovn", "OVN:small");
  Write("M260314A.OVN", "OVN:capital");
  Write("sub.ovn", "OVN:least wins not");
  Write("Sub.ovn", "OVN:least");
  Build();
  ASSERT_EQ(Names(), (List{"M260314A.OVN", "SUB.OVN"}));
  EXPECT_EQ(index.Rows()[0].Contents, "capital");
  EXPECT_EQ(index.Rows()[1].Contents, "least");
}

TEST_F(Index, BlanksOutControlCharactersOfTheContents) {
  std::string bytes = File("OVN:");
  bytes.replace(200, 20, std::string("OVN:A\tB\nC\0D         ", 20));
  directory.Write("M260314A.OVN", bytes);
  Build();
  EXPECT_EQ(index.Rows().at(0).Contents, "A B C D");
}

TEST_F(Index, PassesOverHostileEntries) {
  fs::create_directory(directory.File("M260101A.DIR"));
  mkfifo(directory.File("M260101B.PIP").c_str(), 0600);
  fs::create_symlink("nowhere", directory.File("M260101C.LNK"));
  fs::create_symlink("M260101E.LNK", directory.File("M260101D.LNK"));
  fs::create_symlink("M260101D.LNK", directory.File("M260101E.LNK"));
  fs::create_symlink("M260101B.PIP", directory.File("M260101F.LNK"));
  Write(".M260101G.HID");
  Write("S\xFF\xFE.\xC3");
  Write("S\nLINE.OVN");
  EXPECT_EQ(Build(), std::nullopt);
  EXPECT_EQ(Names(), (List{"S\nLINE.OVN", "S\xFF\xFE.\xC3"}));
}

TEST_F(Index, SurvivesAnyDirectoryOfRandomNamesAndBytes) {
  std::mt19937 random(20260314);
  std::uniform_int_distribution<int> byte(1, 255);
  std::uniform_int_distribution<int> length(1, 40);
  for (int file = 0; file < 300; ++file) {
    std::string name = file % 2 == 0 ? "S" : "M260314";
    for (int count = length(random); count > 0; --count) {
      const char letter = static_cast<char>(byte(random));
      name += letter == '/' ? '.' : letter;
    }
    name += ".Z";
    std::string bytes(static_cast<std::size_t>(length(random) * 50), '\0');
    for (char& value : bytes) {
      value = static_cast<char>(byte(random));
    }
    directory.Write(name, bytes);
  }
  EXPECT_EQ(Build(), std::nullopt);
  EXPECT_GT(index.Rows().size(), 100U);
  for (const IndexRow& row : index.Rows()) {
    EXPECT_EQ(row.ContentsKey.empty(), row.Contents.empty());
    EXPECT_TRUE(index.RowOf(row.Name)) << row.Name;
  }
}

TEST_F(Index, SortsByBothColumnsBothWays) {
  Write("M260101A.OVN", "OVN:beta");
  Write("M260102A.OVN", "OVN:Alpha");
  Write("M260103A.OVN", "OVN:Gamma");
  Write("M260104A.OVN", "OVN:alpha");
  Build();
  const List up = {"M260101A.OVN", "M260102A.OVN", "M260103A.OVN", "M260104A.OVN"};
  const List contents = {"M260102A.OVN", "M260104A.OVN", "M260101A.OVN", "M260103A.OVN"};
  EXPECT_EQ(NamesBy("FA"), up);
  EXPECT_EQ(NamesBy("FD"), List(up.rbegin(), up.rend()));
  EXPECT_EQ(NamesBy("PA"), contents);
  EXPECT_EQ(NamesBy("PD"), List(contents.rbegin(), contents.rend()));
}

// A recording of `rows` rows of three words.
std::string Recording(const std::string& date, int inet, int interval, int rows) {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitDate.Set(date);
  unit.UnitInet = static_cast<std::int16_t>(inet);
  unit.UnitChannels = 3;
  unit.UnitInterval = static_cast<std::int16_t>(interval);
  std::string bytes = BytesOf(unit);
  bytes.resize(kHeaderBytes + 6 * static_cast<std::size_t>(rows));
  return bytes;
}

TEST_F(Index, TellsDateDurationAndInstrumentOfEachFile) {
  for (int inet = 1; inet <= 6; ++inet) {
    const std::string name = "M26031" + std::to_string(inet) + "A.OVN";
    directory.Write(name, Recording("03-14-2026 / 09:05", inet, inet, 10 * inet));
  }
  EXPECT_EQ(Build(), std::nullopt);
  ASSERT_EQ(index.Rows().size(), 6U);
  for (int inet = 1; inet <= 6; ++inet) {
    const IndexDetails& details = index.Rows()[static_cast<std::size_t>(inet - 1)].Details;
    EXPECT_EQ(details.Date, 202603140905);
    EXPECT_EQ(details.Seconds, (10 * inet - 1) * 10 * inet);
    EXPECT_EQ(details.Instrument, inet);
  }
}

TEST_F(Index, TellsNothingOfAHeaderThatMakesNoSense) {
  directory.Write("M260101A.OVN", Recording("03-14-2026 / 09:05", 9, 1, 5));
  directory.Write("M260102A.OVN", Recording("14.03.2026 09:05", 2, 1, 0));
  EXPECT_EQ(Build(), std::nullopt);
  ASSERT_EQ(index.Rows().size(), 2U);
  EXPECT_EQ(index.Rows()[0].Details.Date, 0);
  EXPECT_EQ(index.Rows()[0].Details.Seconds, -1);
  EXPECT_EQ(index.Rows()[0].Details.Instrument, 0);
  EXPECT_EQ(index.Rows()[1].Details.Date, 0);
  EXPECT_EQ(index.Rows()[1].Details.Seconds, 0);
  EXPECT_EQ(index.Rows()[1].Details.Instrument, 2);
}

TEST_F(Index, SortsByItsOtherColumnsForTheMomentOnly) {
  directory.Write("M260101A.OVN", Recording("03-14-2026 / 09:05", 3, 1, 50));
  directory.Write("M260102A.OVN", Recording("12-01-2025 / 09:05", 1, 1, 70));
  directory.Write("M260103A.OVN", Recording("03-14-2026 / 09:04", 2, 1, 60));
  EXPECT_EQ(Build(), std::nullopt);
  struct Way {
    IndexColumn column;
    const char* down;
    List names;
  };
  const Way ways[] = {
      {IndexColumn::kDate, "DD", {"M260101A.OVN", "M260103A.OVN", "M260102A.OVN"}},
      {IndexColumn::kDuration, "LD", {"M260102A.OVN", "M260103A.OVN", "M260101A.OVN"}},
      {IndexColumn::kInstrument, "ID", {"M260101A.OVN", "M260103A.OVN", "M260102A.OVN"}}};
  state.SettingsChanged = false;
  for (const Way& way : ways) {
    const int before = index.Revision();
    index.SortBy(way.column);
    EXPECT_EQ(Names(), way.names);
    EXPECT_EQ(index.Order(), way.down);
    EXPECT_GT(index.Revision(), before);
    index.SortBy(way.column);
    EXPECT_EQ(Names(), List(way.names.rbegin(), way.names.rend()));
    EXPECT_EQ(index.Order().back(), 'A');
  }
  EXPECT_EQ(state.Settings.SortKey, "FA");
  EXPECT_FALSE(state.SettingsChanged);
  index.ToggleFileSort();
  EXPECT_EQ(state.Settings.SortKey, "FD");
  EXPECT_EQ(index.Order(), "FD");
  EXPECT_EQ(Names(), (List{"M260103A.OVN", "M260102A.OVN", "M260101A.OVN"}));
}

TEST_F(Index, ReadsTheSortKeyTrimmedAndInAnyCase) {
  Write("M260101A.OVN");
  Write("M260102A.OVN");
  Build();
  EXPECT_EQ(NamesBy(" fa "), (List{"M260101A.OVN", "M260102A.OVN"}));
  EXPECT_EQ(state.Settings.SortKey, "FA");
}

TEST_F(Index, ReplacesAnUnknownSortKey) {
  Write("M260101A.OVN");
  Write("M260102A.OVN");
  Build();
  for (const char* key : {"", "F", "DF", "XX", "FDX"}) {
    state.SettingsChanged = false;
    EXPECT_EQ(NamesBy(key), (List{"M260102A.OVN", "M260101A.OVN"})) << key;
    EXPECT_EQ(state.Settings.SortKey, "FD");
    EXPECT_TRUE(state.SettingsChanged);
  }
}

TEST_F(Index, TogglesTheDirectionOfAColumn) {
  state.Settings.SortKey = "FD";
  const std::vector<std::pair<char, std::string>> presses = {{'F', "FA"}, {'F', "FD"}, {'P', "PD"},
                                                             {'P', "PA"}, {'P', "PD"}, {'F', "FD"}};
  for (const auto& [head, key] : presses) {
    state.SettingsChanged = false;
    head == 'F' ? index.ToggleFileSort() : index.ToggleProductSort();
    EXPECT_EQ(state.Settings.SortKey, key);
    EXPECT_TRUE(state.SettingsChanged);
  }
}

TEST_F(Index, TellsADirectoryThatCannotBeListed) {
  Write("M260101A.OVN");
  Build();
  state.Settings.OpenPath = directory.File("gone");
  const auto notice = Build();
  ASSERT_TRUE(notice);
  EXPECT_EQ(notice->Text, "No such file or directory");
  EXPECT_EQ(notice->Title, "Creation of Index");
  EXPECT_EQ(notice->Icon, BoxIcon::kInformation);
  EXPECT_TRUE(index.Rows().empty());
  EXPECT_FALSE(state.IndexValid);
  EXPECT_EQ(events.pointers.back(), Pointer::kNormal);
}

TEST_F(Index, TakesTheDataDirectoryWithoutAnOpenPath) {
  Write("M260101A.OVN");
  state.Settings.OpenPath.clear();
  state.Settings.DefPath = directory.Path();
  Build();
  EXPECT_EQ(Names(), List{"M260101A.OVN"});

  state.Settings.DefPath.clear();
  state.DataHome = directory.Path() + "/";
  fs::create_directory(directory.File("tavdat"));
  Write("tavdat/M260102A.OVN");
  Build();
  EXPECT_EQ(Names(), List{"M260102A.OVN"});
}

TEST_F(Index, IsValidForTheDirectoryItWasBuiltOfOnly) {
  Write("M260101A.OVN");
  Build();
  EXPECT_TRUE(index.IsValid());
  state.Settings.OpenPath = directory.File("other");
  EXPECT_FALSE(index.IsValid());
  state.Settings.OpenPath = directory.Path();
  state.IndexValid = false;
  EXPECT_FALSE(index.IsValid());
}

TEST_F(Index, FindsARowWhateverTheCaseOfTheName) {
  Write("M260101A.OVN");
  Write("M260102A.OVN");
  Build();
  EXPECT_EQ(index.RowOf(" m260102a.ovn "), 1U);
  EXPECT_EQ(index.RowOf("M260103A.OVN"), std::nullopt);
  EXPECT_EQ(index.RowOf(""), std::nullopt);
}

TEST_F(Index, TellsThatAProofHasChangedAlsoWhereItIsForgotten) {
  Write("M260101A.OVN");
  Write("M260102A.OVN");
  Build();
  index.ForgetProofs();
  EXPECT_EQ(index.ProofRevision(), 0) << "there was none";
  index.SetProof("M260102A.OVN", {IndexVerdict::kIntact, ""});
  EXPECT_EQ(index.ProofRevision(), 1);
  index.SetProof("M260103A.OVN", {IndexVerdict::kIntact, ""});
  EXPECT_EQ(index.ProofRevision(), 1);
  index.ForgetProofs();
  EXPECT_EQ(index.ProofRevision(), 2);
  EXPECT_EQ(index.Rows()[1].Proof.Verdict, IndexVerdict::kNotAsked);
  index.ForgetProofs();
  EXPECT_EQ(index.ProofRevision(), 2);
}

TEST_F(Index, FollowsTheLinkVariantOfTheFamily) {
  directory.Write("M260101A", "first forty bytes of the text, no more  X" + std::string(1000, ' '));
  directory.Write("K260101A.TXT", std::string(1000, 'k'));
  state.Settings.ActiveFiles[0] = "M260101A";
  state.Settings.TypeSel = 2;
  Build();
  ASSERT_EQ(Names(), List{"M260101A"});
  EXPECT_EQ(index.Rows()[0].Contents, "first forty bytes of the text, no more");
  state.Settings.TypeSel = 3;
  Build();
  ASSERT_EQ(Names(), List{"K260101A.TXT"});
  EXPECT_EQ(index.Rows()[0].Contents, std::string(40, 'k'));
}

// A clock on which each look at it takes a tenth of a second.
class SlowClock : public FakeClock {
 public:
  [[nodiscard]] std::chrono::nanoseconds Elapsed() const override {
    return std::chrono::milliseconds(100) * ++looks_;
  }

 private:
  mutable int looks_ = 0;
};

TEST_F(Index, TellsItsProgressOnlyAfterHalfASecond) {
  for (char letter = 'A'; letter <= 'J'; ++letter) {
    Write(std::string("M260101") + letter + ".OVN");
  }
  std::vector<int> percents;
  const SlowClock slow;
  FileIndex watched({state, events, slow});
  EXPECT_EQ(watched.Build([&](int percent) { percents.push_back(percent); }), std::nullopt);
  EXPECT_EQ(percents, (std::vector<int>{50, 60, 70, 80, 90, 100}));
  percents.clear();
  EXPECT_EQ(index.Build([&](int percent) { percents.push_back(percent); }), std::nullopt);
  EXPECT_TRUE(percents.empty());
}

}  // namespace
}  // namespace tavrel
