#include <limits>

#include "tests/state/settings_fixture.h"
#include "tests/support/hindrance.h"

namespace tavrel {
namespace {

using SettingsLoad = SettingsTest;
using SettingsLegacy = SettingsTest;

TEST_F(SettingsLoad, TakesTheDefaultsWithoutAnyFile) {
  store_.SettingsLoad();
  const SettingsValues& settings = state_.Settings;
  EXPECT_EQ(settings.Plant, "?");
  EXPECT_EQ(settings.Lab, "?");
  EXPECT_EQ(settings.HelpLang, "English");
  EXPECT_EQ(settings.Acro, "");
  EXPECT_FALSE(settings.Diagnostic);
  EXPECT_EQ(settings.CommPort, "----");
  EXPECT_EQ(settings.ComMode, 0);
  EXPECT_EQ(settings.TypeSel, 4);
  EXPECT_EQ(settings.SortKey, "FD");
  EXPECT_EQ(settings.DestPath, "A:");
  EXPECT_EQ(settings.PFontName, "Arial");
  EXPECT_EQ(settings.PFontSize, 11);
  EXPECT_EQ(settings.PColorType, 2);
  EXPECT_EQ(settings.PDrawWidth, 2);
  EXPECT_EQ(settings.ProgPath, home_.Path());
  EXPECT_EQ(settings.VerType, "Standard");
  EXPECT_TRUE(state_.FirstRun);
  EXPECT_FALSE(state_.SettingsRead);
  EXPECT_FALSE(state_.SettingsChanged);
}

TEST_F(SettingsLoad, ClearsTheDefaultDefPathWhileTavdatHoldsNoFile) {
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.DefPath, "");
  EXPECT_EQ(state_.Settings.OpenPath, "");
}

TEST_F(SettingsLoad, KeepsTheDefaultDefPathWhenTavdatHoldsAFile) {
  const std::string tavdat = FilledDirectory("tavdat");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.DefPath, tavdat);
  EXPECT_EQ(state_.Settings.OpenPath, tavdat);
}

// A program that cannot be written keeps the settings of each user in a directory of his own.
class SettingsOfAUser : public SettingsTest {
 protected:
  SettingsOfAUser() {
    std::filesystem::create_directory(home_.File("own"));
    state_.DataHome = home_.File("own") + "/";
  }
};

TEST_F(SettingsOfAUser, BeginWithThoseBesideTheProgram) {
  EXPECT_EQ(Load({"PLANT:: Works", "ACTIVE12:: M260314L.OVN"}).Plant, "Works");
  EXPECT_EQ(state_.Settings.ActiveFiles[11], "M260314L.OVN");
  EXPECT_TRUE(state_.SettingsRead);
  EXPECT_FALSE(state_.FirstRun);
}

TEST_F(SettingsOfAUser, GoBeforeThoseBesideTheProgram) {
  home_.Write("own/tavrel.usr", "\"VERSION:: 6.1\"\r\n\"PLANT:: Mine\"\r\n");
  EXPECT_EQ(Load({"PLANT:: Works"}).Plant, "Mine");
}

TEST_F(SettingsOfAUser, AreWrittenIntoHisDirectory) {
  Load({"PLANT:: Works", "LAB:: Miller"});
  const std::string beside = home_.Read(kSettingsFile);
  state_.Settings.Plant = "Mine";
  EXPECT_EQ(store_.SettingsSave(), "");
  EXPECT_EQ(home_.Read(kSettingsFile), beside);
  EXPECT_NE(home_.Read("own/TAVREL.USR").find("PLANT:: Mine"), std::string::npos);
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "Mine");
  EXPECT_EQ(state_.Settings.Lab, "Miller");
}

TEST_F(SettingsOfAUser, TakeTheOldLayoutBesideTheProgramToo) {
  home_.Write(kSettingsFile, "\"no mark\"\r\n");
  home_.Write(kLegacySettingsFile, "\"skipped\"\r\n\"M260314A.OVE\"\r\n");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.ActiveFiles[0], "M260314A.OVE");
  EXPECT_TRUE(state_.FirstRun);
}

// Defaults would hide the names of all tests.
TEST_F(SettingsOfAUser, AreNotReplacedByDefaultsWhileThoseBesideTheProgramCannotBeRead) {
  WriteKeyFile({"PLANT:: Works"});
  {
    const NoHandlesLeft none;
    store_.SettingsLoad();
  }
  EXPECT_NE(store_.ReadError(), "");
  EXPECT_NE(store_.SettingsSave(), "");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "Works");
}

// What the user has no right to is not for him.
TEST_F(SettingsOfAUser, AreTheDefaultsWhereThoseBesideTheProgramAreNotForHim) {
  WriteKeyFile({"PLANT:: Works"});
  std::filesystem::permissions(home_.Path(), std::filesystem::perms{0755});
  std::filesystem::permissions(home_.File(kSettingsFile), std::filesystem::perms::none);
  {
    const WithoutRights nobody;
    store_.SettingsLoad();
  }
  EXPECT_EQ(store_.ReadError(), "");
  EXPECT_EQ(state_.Settings.Plant, "?");
  EXPECT_TRUE(state_.FirstRun);
}

// Editors of other systems end a line by a carriage return alone.
TEST_F(SettingsLoad, TakesACarriageReturnForTheEndOfALine) {
  home_.Write(kSettingsFile,
              "\"VERSION:: 6.1\"\r\"PLANT:: Works\"\r\n\"LAB:: Miller\"\n\"ACRO:: viewer\"\r");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "Works");
  EXPECT_EQ(state_.Settings.Lab, "Miller");
  EXPECT_EQ(state_.Settings.Acro, "viewer");
}

TEST_F(SettingsLegacy, TakesACarriageReturnForTheEndOfALine) {
  std::string bytes;
  for (int line = 1; line <= 20; ++line) {
    bytes += "\"line " + std::to_string(line) + "\"\r";
  }
  home_.Write(kSettingsFile, "\"no mark\"\r");
  home_.Write(kLegacySettingsFile, bytes);
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.ActiveFiles[11], "line 13");
  EXPECT_EQ(state_.Settings.Plant, "line 14");
  EXPECT_EQ(state_.Settings.HelpLang, "line 20");
}

TEST_F(SettingsLoad, ReadsAllKeys) {
  const std::string data = FilledDirectory("data");
  const std::string open = FilledDirectory("open");
  const SettingsValues& settings = Load({"PLANT:: Works, North",
                                         "LAB:: Miller",
                                         "HELPLANG:: German",
                                         "ACRO:: viewer",
                                         "DIAGNOSTIC:: 1",
                                         "COMMPORT:: COM12",
                                         "COMMODE:: 2",
                                         "DEFPATH:: " + data,
                                         "OPENPATH:: " + open,
                                         "OPENFILE:: M260314B.OVE",
                                         "OPENSORT:: PA",
                                         "DESTPATH:: /media/stick",
                                         "ACTIVE01:: M260314A.OVE",
                                         "ACTIVE12:: M260314C.AUT",
                                         "PRINTNAME:: Laser",
                                         "PFONTNAME:: Courier",
                                         "PFONTSIZE:: 10.5",
                                         "PCOLORTYPE:: 1",
                                         "PDRAWWIDTH:: 3",
                                         "PROGPATH:: /programs",
                                         "PROGFILE:: a.prg",
                                         "VERTYPE:: High"});
  EXPECT_EQ(settings.Plant, "Works, North");
  EXPECT_EQ(settings.Lab, "Miller");
  EXPECT_EQ(settings.HelpLang, "German");
  EXPECT_EQ(settings.Acro, "viewer");
  EXPECT_TRUE(settings.Diagnostic);
  EXPECT_EQ(settings.CommPort, "COM12");
  EXPECT_EQ(settings.ComMode, 2);
  EXPECT_EQ(settings.DefPath, data);
  EXPECT_EQ(settings.OpenPath, open);
  EXPECT_EQ(settings.OpenFile, "M260314B.OVE");
  EXPECT_EQ(settings.SortKey, "PA");
  EXPECT_EQ(settings.DestPath, "/media/stick");
  EXPECT_EQ(settings.ActiveFiles[0], "M260314A.OVE");
  EXPECT_EQ(settings.ActiveFiles[11], "M260314C.AUT");
  EXPECT_EQ(settings.PrintName, "Laser");
  EXPECT_EQ(settings.PFontName, "Courier");
  EXPECT_EQ(settings.PFontSize, 10.5F);
  EXPECT_EQ(settings.PColorType, 1);
  EXPECT_EQ(settings.PDrawWidth, 3);
  EXPECT_EQ(settings.ProgPath, "/programs");
  EXPECT_EQ(settings.ProgFile, "a.prg");
  EXPECT_EQ(settings.VerType, "High");
  EXPECT_TRUE(state_.SettingsRead);
  EXPECT_FALSE(state_.FirstRun);
}

TEST_F(SettingsLoad, TakesTheNameOfEachRowFromItsOwnKey) {
  std::vector<std::string> lines;
  for (const char* number :
       {"01", "02", "03", "04", "05", "06", "07", "08", "09", "10", "11", "12"}) {
    lines.push_back("ACTIVE" + std::string(number) + ":: row " + number);
  }
  Load(lines);
  EXPECT_EQ(state_.Settings.ActiveFiles,
            (ActiveNames{"row 01", "row 02", "row 03", "row 04", "row 05", "row 06", "row 07",
                         "row 08", "row 09", "row 10", "row 11", "row 12"}));
  EXPECT_EQ(store_.SettingsSave(), "");
  const std::string bytes = home_.Read(kSettingsFile);
  for (const std::string& line : lines) {
    EXPECT_NE(bytes.find("\"" + line + "\"\r\n"), std::string::npos) << line;
  }
}

TEST_F(SettingsLoad, IsNoFirstRunAnyMoreOnceThereAreSettings) {
  store_.SettingsLoad();
  ASSERT_TRUE(state_.FirstRun);
  ASSERT_FALSE(state_.SettingsRead);
  Load({"PLANT:: Works"});
  EXPECT_FALSE(state_.FirstRun);
  EXPECT_TRUE(state_.SettingsRead);
}

TEST_F(SettingsLoad, LeavesAMissingKeyEmptyOrZero) {
  state_.Settings.Lab = "old";
  state_.Settings.PDrawWidth = 5;
  const SettingsValues& settings = Load({"PLANT:: Works"});
  EXPECT_EQ(settings.Plant, "Works");
  EXPECT_EQ(settings.Lab, "");
  EXPECT_EQ(settings.HelpLang, "");
  EXPECT_EQ(settings.CommPort, "");
  EXPECT_EQ(settings.PFontSize, 0);
  EXPECT_EQ(settings.PDrawWidth, 0);
}

TEST_F(SettingsLoad, SetsTypeSelToFourWhateverTheFileHolds) {
  EXPECT_EQ(Load({"TYPESEL:: 2"}).TypeSel, 4);
}

TEST_F(SettingsLoad, KeepsAnEmptyRowBeforeAFilledOne) {
  const SettingsValues& settings = Load({"ACTIVE05:: ", "ACTIVE06:: M260314A.OVE"});
  EXPECT_EQ(settings.ActiveFiles[4], "");
  EXPECT_EQ(settings.ActiveFiles[5], "M260314A.OVE");
}

TEST_F(SettingsLoad, ReadsAnyNumberButZeroAsDiagnostic) {
  EXPECT_FALSE(Load({"DIAGNOSTIC:: 0"}).Diagnostic);
  EXPECT_TRUE(Load({"DIAGNOSTIC:: -1"}).Diagnostic);
  EXPECT_TRUE(Load({"DIAGNOSTIC:: 0,5"}).Diagnostic);
  EXPECT_FALSE(Load({"DIAGNOSTIC:: yes"}).Diagnostic);
  EXPECT_FALSE(Load({"DIAGNOSTIC:: "}).Diagnostic);
}

TEST_F(SettingsLoad, HoldsNumbersAtTheirLimits) {
  const SettingsValues& settings =
      Load({"COMMODE:: 99999", "PCOLORTYPE:: -99999", "PDRAWWIDTH:: 2.5", "PFONTSIZE:: 1e300"});
  EXPECT_EQ(settings.ComMode, 32767);
  EXPECT_EQ(settings.PColorType, -32768);
  EXPECT_EQ(settings.PDrawWidth, 2);
  EXPECT_EQ(settings.PFontSize, std::numeric_limits<float>::max());
}

TEST_F(SettingsLoad, ComparesKeysInUpperCase) {
  EXPECT_EQ(Load({"plant:: Works"}).Plant, "Works");
}

TEST_F(SettingsLoad, PassesOverUnknownKeysAndLinesWithoutAMark) {
  const SettingsValues& settings = Load({"COLOUR:: red", "PLANT: wrong", "", "PLANT:: Works"});
  EXPECT_EQ(settings.Plant, "Works");
}

TEST_F(SettingsLoad, SplitsAtTheFirstMarkOnly) {
  EXPECT_EQ(Load({"PLANT::a::b"}).Plant, "a::b");
}

TEST_F(SettingsLoad, TrimsTheValue) {
  EXPECT_EQ(Load({"PLANT::   Works   "}).Plant, "Works");
}

TEST_F(SettingsLoad, LetsTheLaterOfTwoLinesCount) {
  EXPECT_EQ(Load({"PLANT:: one", "PLANT:: two"}).Plant, "two");
}

TEST_F(SettingsLoad, TakesLineFeedsAlone) {
  home_.Write(kSettingsFile, "\"VERSION:: 6.1\"\n\"PLANT:: Works\"\n\"LAB:: Miller\"");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "Works");
  EXPECT_EQ(state_.Settings.Lab, "Miller");
}

TEST_F(SettingsLoad, ReadsALineWithoutQuotesAsFarAsItGoes) {
  home_.Write(kSettingsFile, "VERSION:: 6.1\r\nPLANT:: Works, North\r\n\"LAB:: Miller\r\n");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "Works, North");
  EXPECT_EQ(state_.Settings.Lab, "Miller");
}

TEST_F(SettingsLoad, IgnoresWhatStandsBehindTheClosingQuote) {
  home_.Write(kSettingsFile, "\"VERSION:: 6.1\"\r\n  \"PLANT:: Works\",\"rest\"\r\n");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "Works");
}

TEST_F(SettingsLoad, ReadsWindows1252) {
  EXPECT_EQ(Load({"PLANT:: W\xE4rme\x80"}).Plant, "Wärme€");
}

TEST_F(SettingsLoad, FindsTheFileWhateverItsCase) {
  home_.Write("tavrel.usr", "\"version:: 5\"\r\n\"PLANT:: Works\"\r\n");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "Works");
  EXPECT_TRUE(state_.SettingsRead);
}

TEST_F(SettingsLoad, ReadsNoFurtherWithoutTheVersionInTheFirstLine) {
  home_.Write(kSettingsFile, "\"PLANT:: Works\"\r\n\"VERSION:: 6.1\"\r\n\"LAB:: Miller\"\r\n");
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "?");
  EXPECT_EQ(state_.Settings.Lab, "?");
  EXPECT_TRUE(state_.FirstRun);
  EXPECT_FALSE(state_.SettingsRead);
  EXPECT_TRUE(state_.SettingsChanged);
}

TEST_F(SettingsLoad, TakesTheDefaultsForAHugeFile) {
  home_.Write(kSettingsFile,
              "\"VERSION:: 6.1\"\r\n\"PLANT:: Works\"\r\n" + std::string(1024 * 1024UL, '\n'));
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "?");
  EXPECT_FALSE(state_.SettingsRead);
}

TEST_F(SettingsLoad, TakesTheDefaultsIfADirectoryHasTheName) {
  std::filesystem::create_directory(home_.File(kSettingsFile));
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "?");
  EXPECT_TRUE(state_.FirstRun);
}

TEST_F(SettingsLoad, TakesTavdatBesideTheSettingsForAnEmptyDefPath) {
  EXPECT_EQ(Load({"DEFPATH:: "}).DefPath, home_.File("tavdat"));
}

TEST_F(SettingsLoad, ClearsADefPathWithoutAnyFile) {
  std::filesystem::create_directory(home_.File("empty"));
  EXPECT_EQ(Load({"DEFPATH:: " + home_.File("empty")}).DefPath, "");
  EXPECT_EQ(Load({"DEFPATH:: " + home_.File("missing")}).DefPath, "");
}

TEST_F(SettingsLoad, TakesASeparatorAwayAndKeepsTheCaseOfPaths) {
  const std::string data = FilledDirectory("MixedCase");
  const SettingsValues& settings = Load({"DEFPATH:: " + data + "/", "OPENPATH:: " + data + "/"});
  EXPECT_EQ(settings.DefPath, data);
  EXPECT_EQ(settings.OpenPath, data);
}

TEST_F(SettingsLoad, FallsBackToDefPathForAnOpenPathWithoutAnyFile) {
  const std::string data = FilledDirectory("data");
  EXPECT_EQ(Load({"DEFPATH:: " + data, "OPENPATH:: /missing"}).OpenPath, data);
  EXPECT_EQ(Load({"DEFPATH:: " + data, "OPENPATH:: "}).OpenPath, "");
}

TEST_F(SettingsLoad, FindsPathsWithUmlauts) {
  const std::string data = FilledDirectory(
      "\xC3\x96"
      "fen");
  EXPECT_EQ(Load({"DEFPATH:: " + home_.Path() +
                  "/\xD6"
                  "fen"})
                .DefPath,
            data);
}

// Settings that are there and cannot be read.
class UnreadableSettings : public SettingsTest {
 protected:
  void ExpectReadError(const std::string& words) {
    store_.SettingsLoad();
    EXPECT_EQ(store_.ReadError(), words);
    EXPECT_EQ(state_.Settings.Plant, "") << "nothing is taken for the settings";
  }
  const std::vector<std::string> lines_ = {"PLANT:: Works", "ACTIVE01:: M260314A.OVE"};
};

TEST_F(UnreadableSettings, AreNotTakenForMissingOnes) {
  MakeUnreadable(home_.File(kSettingsFile));
  ExpectReadError("Too many levels of symbolic links");
  EXPECT_FALSE(state_.FirstRun);
}

TEST_F(UnreadableSettings, AreReadOnceTheErrorHasPassed) {
  WriteKeyFile(lines_);
  {
    const NoHandlesLeft none;
    ExpectReadError("Too many open files");
  }
  store_.SettingsLoad();
  EXPECT_EQ(store_.ReadError(), "");
  EXPECT_EQ(state_.Settings.ActiveFiles[0], "M260314A.OVE");
}

TEST_F(UnreadableSettings, AreNotReplaced) {
  WriteKeyFile(lines_);
  const std::string before = home_.Read(kSettingsFile);
  {
    const NoHandlesLeft none;
    ExpectReadError("Too many open files");
  }
  EXPECT_EQ(store_.SettingsSave(), "Too many open files");
  EXPECT_EQ(home_.Read(kSettingsFile), before);
  EXPECT_FALSE(home_.Exists("TAVREL.BAK"));
}

TEST_F(UnreadableSettings, MayBeSomebodyElses) {
  WriteKeyFile(lines_);
  std::filesystem::permissions(home_.Path(), std::filesystem::perms(0755));
  std::filesystem::permissions(home_.File(kSettingsFile), std::filesystem::perms(0));
  const WithoutRights nobody;
  ExpectReadError("Permission denied");
}

TEST_F(UnreadableSettings, MayBeInADirectoryThatCannotBeSearched) {
  std::filesystem::create_directory(home_.File("home"));
  home_.Write("home/tavrel.usr", "\"VERSION:: 6.1\"\r\n");
  state_.DataHome = home_.File("home") + "/";
  std::filesystem::permissions(home_.Path(), std::filesystem::perms(0755));
  std::filesystem::permissions(home_.File("home"), std::filesystem::perms(0));
  {
    const WithoutRights nobody;
    ExpectReadError("Permission denied");
  }
  std::filesystem::permissions(home_.File("home"), std::filesystem::perms(0755));
}

TEST_F(UnreadableSettings, MayBeThoseOfTheOldLayout) {
  home_.Write(kSettingsFile, "junk\r\n");
  MakeUnreadable(home_.File(kLegacySettingsFile));
  ExpectReadError("Too many levels of symbolic links");
  EXPECT_FALSE(state_.SettingsChanged);
}

TEST_F(UnreadableSettings, ThatAreMissingInAMissingDirectoryAreDefaults) {
  state_.DataHome = home_.File("missing/further") + "/";
  store_.SettingsLoad();
  EXPECT_EQ(store_.ReadError(), "");
  EXPECT_TRUE(state_.FirstRun);
}

TEST_F(SettingsLoad, KeepsADefPathThatCannotBeLookedIntoNow) {
  MakeUnreadable(home_.File("data"));
  const SettingsValues& settings =
      Load({"DEFPATH:: " + home_.File("data"), "OPENPATH:: " + home_.File("data")});
  EXPECT_EQ(settings.DefPath, home_.File("data"));
  EXPECT_EQ(settings.OpenPath, home_.File("data"));
}

std::string QuotedLines(const std::vector<std::string>& lines) {
  std::string bytes;
  for (const std::string& line : lines) {
    bytes += "\"" + line + "\"\r\n";
  }
  return bytes;
}

// The legacy file line by line, with `data` as its path of recordings.
std::vector<std::string> LegacyLines(const std::string& data) {
  std::vector<std::string> lines(27);
  lines[0] = "TAVREL 5";
  lines[1] = "  M050314A.OVE  ";
  lines[12] = "M050314C.AUTOCLAVE";
  lines[13] = "Works";
  lines[14] = "Miller";
  lines[15] = " " + data + "/ ";
  lines[16] = " B: ";
  lines[17] = "skipped";
  lines[18] = "COM2";
  lines[19] = "German";
  lines[26] = "2";
  return lines;
}

TEST_F(SettingsLegacy, IsReadWhenTheKeyFileHasNoMark) {
  const std::string data = FilledDirectory("data");
  home_.Write(kSettingsFile, "junk\r\n");
  home_.Write(kLegacySettingsFile, QuotedLines(LegacyLines(data)));
  store_.SettingsLoad();
  const SettingsValues& settings = state_.Settings;
  EXPECT_EQ(settings.ActiveFiles[0], "M050314A.OVE");
  EXPECT_EQ(settings.ActiveFiles[1], "");
  EXPECT_EQ(settings.ActiveFiles[11], "M050314C.AUT");
  EXPECT_EQ(settings.Plant, "Works");
  EXPECT_EQ(settings.Lab, "Miller");
  EXPECT_EQ(settings.DefPath, data);
  EXPECT_EQ(settings.DestPath, "B:");
  EXPECT_EQ(settings.CommPort, "COM2");
  EXPECT_EQ(settings.HelpLang, "German");
  EXPECT_EQ(settings.SortKey, "FD");
  EXPECT_EQ(settings.ProgPath, home_.Path());
  EXPECT_EQ(settings.VerType, "Standard");
  EXPECT_EQ(settings.TypeSel, 4);
  EXPECT_EQ(settings.PFontName, "");
  EXPECT_TRUE(state_.SettingsChanged);
  EXPECT_TRUE(state_.FirstRun);
  EXPECT_FALSE(state_.SettingsRead);
}

TEST_F(SettingsLegacy, SetsComModeToZeroWhateverLine27Holds) {
  home_.Write(kSettingsFile, "");
  home_.Write(kLegacySettingsFile, QuotedLines(LegacyLines("/missing")));
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.CommPort, "COM2");
  EXPECT_EQ(state_.Settings.ComMode, 0);
}

TEST_F(SettingsLegacy, IsNotLookedAtWhenThereIsNoKeyFile) {
  home_.Write(kLegacySettingsFile, QuotedLines(LegacyLines("/missing")));
  store_.SettingsLoad();
  EXPECT_EQ(state_.Settings.Plant, "?");
  EXPECT_FALSE(state_.SettingsChanged);
}

TEST_F(SettingsLegacy, FillsWhatAShortFileLeavesEmpty) {
  home_.Write(kLegacySettingsFile, "\"TAVREL 5\"\r\n\"M050314A.OVE\"\r\n");
  store_.SettingsLegacy();
  EXPECT_EQ(state_.Settings.ActiveFiles[0], "M050314A.OVE");
  EXPECT_EQ(state_.Settings.Plant, "?");
  EXPECT_EQ(state_.Settings.Lab, "?");
  EXPECT_EQ(state_.Settings.DefPath, home_.File("tavdat"));
  EXPECT_EQ(state_.Settings.DestPath, "A:");
  EXPECT_EQ(state_.Settings.CommPort, "----");
  EXPECT_EQ(state_.Settings.HelpLang, "English");
}

TEST_F(SettingsLegacy, TakesTheDefaultsIfItIsMissingToo) {
  store_.SettingsLegacy();
  EXPECT_EQ(state_.Settings.PFontName, "Arial");
  EXPECT_TRUE(state_.SettingsChanged);
  EXPECT_TRUE(state_.FirstRun);
}

}  // namespace
}  // namespace tavrel
