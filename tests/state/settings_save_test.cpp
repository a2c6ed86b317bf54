#include "tests/state/settings_fixture.h"
#include "tests/support/hindrance.h"

namespace tavrel {
namespace {

using SettingsSave = SettingsTest;
using DataDirectoryTest = SettingsTest;

// The whole file after SettingsDefaults, for a program in `home`.
std::string DefaultFile(const std::string& home) {
  return "\"VERSION:: 6.1\"\r\n"
         "\"PLANT:: ?\"\r\n"
         "\"LAB:: ?\"\r\n"
         "\"HELPLANG:: English\"\r\n"
         "\"ACRO:: \"\r\n"
         "\"DIAGNOSTIC:: 0\"\r\n"
         "\"COMMPORT:: ----\"\r\n"
         "\"COMMODE:: 0\"\r\n"
         "\"TYPESEL:: 4\"\r\n"
         "\"DEFPATH:: " +
         home +
         "/tavdat\"\r\n"
         "\"OPENPATH:: " +
         home +
         "/tavdat\"\r\n"
         "\"OPENFILE:: \"\r\n"
         "\"OPENSORT:: FD\"\r\n"
         "\"DESTPATH:: A:\"\r\n"
         "\"ACTIVE01:: \"\r\n"
         "\"ACTIVE02:: \"\r\n"
         "\"ACTIVE03:: \"\r\n"
         "\"ACTIVE04:: \"\r\n"
         "\"ACTIVE05:: \"\r\n"
         "\"ACTIVE06:: \"\r\n"
         "\"ACTIVE07:: \"\r\n"
         "\"ACTIVE08:: \"\r\n"
         "\"ACTIVE09:: \"\r\n"
         "\"ACTIVE10:: \"\r\n"
         "\"ACTIVE11:: \"\r\n"
         "\"ACTIVE12:: \"\r\n"
         "\"PRINTNAME:: \"\r\n"
         "\"PFONTNAME:: Arial\"\r\n"
         "\"PFONTSIZE:: 11\"\r\n"
         "\"PCOLORTYPE:: 2\"\r\n"
         "\"PDRAWWIDTH:: 2\"\r\n"
         "\"PROGPATH:: " +
         home +
         "\"\r\n"
         "\"PROGFILE:: \"\r\n"
         "\"VERTYPE:: Standard\"\r\n";
}

TEST_F(SettingsSave, WritesTheDefaultsByteForByte) {
  store_.SettingsDefaults();
  EXPECT_EQ(store_.SettingsSave(), "");
  EXPECT_EQ(home_.Read(kSettingsFile), DefaultFile(home_.Path()));
}

TEST_F(SettingsSave, LosesNothingOnTheWayThereAndBack) {
  WriteKeyFile({});
  store_.SettingsLoad();
  SettingsValues& settings = state_.Settings;
  settings.Plant = "Wärme & Öfen, \tNord €";
  settings.Diagnostic = true;
  settings.ComMode = -7;
  settings.PFontSize = 10.1F;
  settings.DefPath = FilledDirectory("Data");
  settings.OpenPath = FilledDirectory("Open");
  settings.ActiveFiles[6] = "M260314[.ÖFN";
  settings.VerType = "H::2";
  ASSERT_EQ(store_.SettingsSave(), "");
  const SettingsValues saved = settings;
  settings = {};
  store_.SettingsLoad();
  EXPECT_EQ(settings.Plant, saved.Plant);
  EXPECT_EQ(settings.Diagnostic, saved.Diagnostic);
  EXPECT_EQ(settings.ComMode, saved.ComMode);
  EXPECT_EQ(settings.PFontSize, saved.PFontSize);
  EXPECT_EQ(settings.DefPath, saved.DefPath);
  EXPECT_EQ(settings.OpenPath, saved.OpenPath);
  EXPECT_EQ(settings.ActiveFiles, saved.ActiveFiles);
  EXPECT_EQ(settings.VerType, saved.VerType);
}

TEST_F(SettingsSave, WritesTheTypeSelInForce) {
  state_.Settings.TypeSel = 3;
  ASSERT_EQ(store_.SettingsSave(), "");
  EXPECT_NE(home_.Read(kSettingsFile).find("\"TYPESEL:: 3\"\r\n"), std::string::npos);
}

TEST_F(SettingsSave, WritesAnApostropheForAQuoteInAValue) {
  state_.Settings.Plant = "Works \"North\" 1";
  ASSERT_EQ(store_.SettingsSave(), "");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "Works 'North' 1");
}

TEST_F(SettingsSave, LetsNoValueForgeALine) {
  state_.Settings.Plant = "Works\r\nLAB:: forged";
  state_.Settings.Lab = "Miller";
  ASSERT_EQ(store_.SettingsSave(), "");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "Works  LAB:: forged");
  EXPECT_EQ(state_.Settings.Lab, "Miller");
}

TEST_F(SettingsSave, WritesOneByteForACharacter) {
  state_.Settings.Plant = "Öfen Ω";
  ASSERT_EQ(store_.SettingsSave(), "");
  EXPECT_NE(home_.Read(kSettingsFile)
                .find("\"PLANT:: \xD6"
                      "fen ?\"\r\n"),
            std::string::npos);
}

TEST_F(SettingsSave, WritesNumbersInTheirShortestForm) {
  state_.Settings.PFontSize = 10.1F;
  state_.Settings.PColorType = -3;
  ASSERT_EQ(store_.SettingsSave(), "");
  const std::string file = home_.Read(kSettingsFile);
  EXPECT_NE(file.find("\"PFONTSIZE:: 10.1\"\r\n\"PCOLORTYPE:: -3\"\r\n"), std::string::npos);
}

TEST_F(SettingsSave, ReplacesTheFileUnderTheSpellingItHas) {
  home_.Write("Tavrel.usr", "old");
  store_.SettingsDefaults();
  ASSERT_EQ(store_.SettingsSave(), "");
  EXPECT_EQ(home_.Read("Tavrel.usr"), DefaultFile(home_.Path()));
  EXPECT_FALSE(home_.Exists(kSettingsFile));
}

TEST_F(SettingsSave, ClearsSettingsChangedOnlyOnSuccess) {
  state_.SettingsChanged = true;
  state_.DataHome = home_.Path() + "/missing/";
  EXPECT_EQ(store_.SettingsSave(), "No such file or directory");
  EXPECT_TRUE(state_.SettingsChanged);
  state_.DataHome = home_.Path() + "/";
  EXPECT_EQ(store_.SettingsSave(), "");
  EXPECT_FALSE(state_.SettingsChanged);
}

TEST_F(SettingsSave, FailsThroughAFileAndLeavesItAlone) {
  home_.Write("file", "x");
  state_.DataHome = home_.File("file") + "/";
  EXPECT_EQ(store_.SettingsSave(), "Not a directory");
  EXPECT_EQ(home_.Read("file"), "x");
}

class SettingsBackup : public SettingsTest {
 protected:
  SettingsBackup() {
    Load({"PLANT:: old", "ACTIVE01:: M260314A.OVE", "ACTIVE02:: M260314B.AUT"});
    before_ = home_.Read(kSettingsFile);
  }

  // Saves and tells whether the file from before was kept.
  [[nodiscard]] bool IsKept() {
    EXPECT_EQ(store_.SettingsSave(), "");
    EXPECT_NE(home_.Read(kSettingsFile), before_);
    return home_.Exists("TAVREL.BAK") && home_.Read("TAVREL.BAK") == before_;
  }

  std::string before_;
};

TEST_F(SettingsBackup, IsKeptWhenAnActiveNameIsDropped) {
  state_.Settings.ActiveFiles[0].clear();
  EXPECT_TRUE(IsKept());
}

TEST_F(SettingsBackup, IsKeptWhenAnActiveNameIsReplaced) {
  state_.Settings.ActiveFiles[1] = "M260315A.AUT";
  EXPECT_TRUE(IsKept());
}

TEST_F(SettingsBackup, IsNotMadeWhileAllNamesStay) {
  state_.Settings.Plant = "new";
  state_.Settings.ActiveFiles[2] = "M260314C.OVE";
  EXPECT_FALSE(IsKept());
  EXPECT_FALSE(home_.Exists("TAVREL.BAK"));
}

TEST_F(SettingsBackup, IsNotMadeWhenANameMovesToAnotherRowOrCase) {
  state_.Settings.ActiveFiles[0].clear();
  state_.Settings.ActiveFiles[7] = "m260314a.ove";
  EXPECT_FALSE(IsKept());
}

TEST_F(SettingsBackup, IsNotMadeAgainByTheNextSave) {
  state_.Settings.ActiveFiles[0].clear();
  ASSERT_TRUE(IsKept());
  state_.Settings.Plant = "new";
  EXPECT_TRUE(IsKept());
}

TEST_F(SettingsBackup, IsKeptOfAFileThatCannotBeRead) {
  before_ = std::string(1024 * 1024 + 1, 'x');
  home_.Write(kSettingsFile, before_);
  EXPECT_TRUE(IsKept());
}

TEST_F(SettingsBackup, DoesNotStopTheSaveIfItCannotBeMade) {
  std::filesystem::create_directory(home_.File("TAVREL.BAK"));
  state_.Settings.ActiveFiles[0].clear();
  EXPECT_EQ(store_.SettingsSave(), "");
  EXPECT_NE(home_.Read(kSettingsFile), before_);
}

// A backup with names that nobody has attached again.
class OldBackup : public SettingsBackup {
 protected:
  // Drops the names of both rows; the program makes its default slot instead.
  OldBackup() {
    state_.Settings.ActiveFiles[0] = "M011111A.NEW";
    state_.Settings.ActiveFiles[1].clear();
    EXPECT_EQ(store_.SettingsSave(), "");
    EXPECT_EQ(home_.Read("TAVREL.BAK"), before_);
  }
  // The name of row 1 or 2 gives way to another, and the settings are saved.
  void Replace(std::size_t row, const std::string& name) {
    state_.Settings.ActiveFiles.at(row - 1) = name;
    EXPECT_EQ(store_.SettingsSave(), "");
  }
};

TEST_F(OldBackup, OutlivesTheNextNameThatIsDropped) {
  Replace(1, "M260401A.NEW");
  EXPECT_EQ(home_.Read("TAVREL.BAK"), before_);
  Replace(1, "M260402A.NEW");
  Replace(1, "M260403A.NEW");
  Replace(1, "");
  EXPECT_EQ(home_.Read("TAVREL.BAK"), before_);
}

TEST_F(OldBackup, HasOthersBesideIt) {
  const std::string with_default = home_.Read(kSettingsFile);
  Replace(1, "M260401A.NEW");
  EXPECT_EQ(home_.Read("TAVREL.BA2"), with_default);
  const std::string with_first = home_.Read(kSettingsFile);
  Replace(1, "M260402A.NEW");
  EXPECT_EQ(home_.Read("TAVREL.BA2"), with_first);
  EXPECT_FALSE(home_.Exists("TAVREL.BA3"));
}

TEST_F(OldBackup, IsReplacedOnceItsNamesAreAttachedAgain) {
  home_.Write(kSettingsFile, before_);
  store_.SettingsLoad();
  Replace(3, "M260401A.GLU");
  Replace(1, "m260314A.ove");
  Replace(2, "M260314b.AUT");
  const std::string now = home_.Read(kSettingsFile);
  Replace(3, "M260402A.GLU");
  EXPECT_EQ(home_.Read("TAVREL.BAK"), now);
}

TEST_F(OldBackup, StaysIfOnlySomeOfItsNamesAreAttachedAgain) {
  Replace(2, "M260314B.AUT");
  Replace(3, "M260401A.GLU");
  Replace(3, "M260402A.GLU");
  EXPECT_EQ(home_.Read("TAVREL.BAK"), before_);
}

TEST_F(OldBackup, IsReplacedOnceTheUserHasSetUpItsRowsAnew) {
  Replace(1, "M260401A.OVE");
  Replace(2, "M260401A.AUT");
  const std::string anew = home_.Read(kSettingsFile);
  Replace(1, "M260402A.OVE");
  EXPECT_EQ(home_.Read("TAVREL.BAK"), anew);
}

TEST_F(OldBackup, IsNoReasonToKeepTheDefaultSlotOfAnotherLetter) {
  Replace(1, "m011111c.new");
  Replace(2, "M011111B.NEW");
  Replace(2, "M260401A.AUT");
  EXPECT_EQ(home_.Read("TAVREL.BAK"), before_);
}

TEST_F(OldBackup, HasTheNextOneWhereADirectoryHasTheName) {
  std::filesystem::create_directory(home_.File("TAVREL.BA2"));
  Replace(1, "M260401A.NEW");
  EXPECT_EQ(home_.Read("TAVREL.BAK"), before_);
  EXPECT_TRUE(home_.Exists("TAVREL.BA3"));
}

TEST_F(SettingsBackup, IsNotWrittenThroughALink) {
  home_.Write("mine.txt", "mine");
  std::filesystem::create_symlink(home_.File("mine.txt"), home_.File("TAVREL.BAK"));
  state_.Settings.ActiveFiles[0].clear();
  EXPECT_TRUE(IsKept());
  EXPECT_EQ(home_.Read("mine.txt"), "mine");
  EXPECT_FALSE(std::filesystem::is_symlink(home_.File("TAVREL.BAK")));
}

TEST_F(SettingsBackup, IsNotMadeThroughALinkThatLeadsNowhere) {
  std::filesystem::create_symlink(home_.File("later.txt"), home_.File("TAVREL.BAK"));
  state_.Settings.ActiveFiles[0].clear();
  EXPECT_TRUE(IsKept());
  EXPECT_FALSE(home_.Exists("later.txt"));
}

TEST_F(SettingsBackup, LeavesALinkAloneWhereThereIsNothingToKeep) {
  std::filesystem::create_symlink("nowhere", home_.File("TAVREL.BAK"));
  std::filesystem::remove(home_.File(kSettingsFile));
  state_.Settings.ActiveFiles[0].clear();
  EXPECT_EQ(store_.SettingsSave(), "");
  EXPECT_TRUE(std::filesystem::is_symlink(home_.File("TAVREL.BAK")));
}

TEST_F(SettingsBackup, IsNotMadeOfAFileThatCannotBeReadNowIfNoNameIsDropped) {
  std::filesystem::permissions(home_.Path(), std::filesystem::perms(0777));
  std::filesystem::permissions(home_.File(kSettingsFile), std::filesystem::perms(0222));
  state_.Settings.Plant = "new";
  {
    const WithoutRights nobody;
    EXPECT_EQ(store_.SettingsSave(), "");
  }
  EXPECT_FALSE(home_.Exists("TAVREL.BAK"));
}

TEST_F(SettingsBackup, IsNamedToWhoeverKeepsItBeforeTheSave) {
  EXPECT_EQ(store_.KeepDroppedNames(), "");
  state_.Settings.ActiveFiles[1].clear();
  EXPECT_EQ(store_.KeepDroppedNames(), home_.File("TAVREL.BAK"));
  EXPECT_EQ(home_.Read("TAVREL.BAK"), before_);
  EXPECT_TRUE(IsKept());
}

TEST_F(DataDirectoryTest, IsDefPathIfThatIsSet) {
  state_.Settings.DefPath = "/somewhere/else";
  EXPECT_EQ(DataDirectory(state_), "/somewhere/else");
}

TEST_F(DataDirectoryTest, IsTavdatBesideTheSettingsAndMadeIfMissing) {
  EXPECT_EQ(DataDirectory(state_), home_.File("tavdat"));
  EXPECT_TRUE(std::filesystem::is_directory(home_.File("tavdat")));
}

}  // namespace
}  // namespace tavrel
