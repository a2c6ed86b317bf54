#include "main/settings_dialog.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "tests/support/settings_bench.h"

namespace tavrel {
namespace {

class SettingsForm : public testing::Test, public SettingsBench {
 protected:
  SettingsValues& Shared() { return bench.state.Settings; }
  std::vector<Notice>& Boxes() { return bench.dialogs.boxes; }
  bool FileHolds(const std::string& line) const {
    return SavedSettings().find("\"" + line + "\"\r\n") != std::string::npos;
  }
};

TEST_F(SettingsForm, ShowsTheSettings) {
  Shared().Diagnostic = true;
  Shared().ComMode = 2;
  Shared().PDrawWidth = 5;
  Shared().PFontSize = 10.5F;
  const SettingsControls& shown = Open().Values();
  EXPECT_EQ(shown.Txt_Plant, "Foundry South");
  EXPECT_EQ(shown.Txt_Lab, "M. Weber");
  EXPECT_EQ(shown.cboHelp, 0);
  EXPECT_EQ(shown.cboCom, 3);
  EXPECT_EQ(shown.cboMode, 2);
  EXPECT_EQ(shown.cboDia, 1);
  EXPECT_EQ(shown.CboWidth, 4);
  EXPECT_EQ(shown.CmdFont, "Arial,  10.5");
}

TEST_F(SettingsForm, ShowsAShortPathInLowerCase) {
  Shared().DefPath = "/Data/TAVREL/Ofenhalle Süd";
  EXPECT_EQ(Open().Values().cmdPath, "/data/tavrel/ofenhalle süd");
}

TEST_F(SettingsForm, ShowsTwentyEightCharactersWhole) {
  Shared().DefPath = "/" + std::string(27, 'X');
  EXPECT_EQ(Open().Values().cmdPath, "/" + std::string(27, 'x'));
}

TEST_F(SettingsForm, ShowsTheLastTwentyEightCharactersOfALongPath) {
  Shared().DefPath = "/Ä/" + std::string(26, 'X') + "Ü";
  EXPECT_EQ(Open().Values().cmdPath, "... /" + std::string(26, 'x') + "ü");
}

TEST_F(SettingsForm, ShowsTheUsualDirectoryForAnEmptyPath) {
  Shared().DefPath.clear();
  const std::string usual = LowerCase(bench.home.File("tavdat"));
  EXPECT_TRUE(Open().Values().cmdPath.ends_with(usual.substr(usual.size() - 20)));
  dialog.CmdOK_Click();
  EXPECT_EQ(Shared().DefPath, "");
}

TEST_F(SettingsForm, HasItsNumberAndGivesTheOldOneBack) {
  Open();
  EXPECT_EQ(bench.state.ActiveView, View::kTavSett);
  dialog.CmdOK_Click();
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  Open();
  dialog.Quit();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(SettingsForm, GivesItsNumberBackEvenIfTheProgramEndsUnderIt) {
  Open();
  dialog.CloseNow();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(SettingsForm, TakesEveryControlOverAtOk) {
  Open();
  dialog.Txt_Plant_Change("  Foundry North ");
  dialog.Txt_Lab_Change(" ");
  dialog.cboHelp_Click(1);
  dialog.cboCom_Click(12);
  dialog.cboMode_Click(1);
  dialog.cboDia_Click(1);
  dialog.CboWidth_Click(0);
  bench.dialogs.chosen_font = FontChoice{"DejaVu Sans", 9};
  dialog.CmdFont_Click();
  EXPECT_EQ(dialog.Values().CmdFont, "DejaVu Sans,  9");
  EXPECT_EQ(Shared().Plant, "Foundry South");
  dialog.CmdOK_Click();
  EXPECT_TRUE(Boxes().empty());
  for (const char* line :
       {"PLANT:: Foundry North", "LAB:: ", "HELPLANG:: German", "COMMPORT:: COM12", "COMMODE:: 1",
        "DIAGNOSTIC:: 1", "PDRAWWIDTH:: 1", "PFONTNAME:: DejaVu Sans", "PFONTSIZE:: 9"}) {
    EXPECT_TRUE(FileHolds(line)) << line;
  }
  EXPECT_EQ(Shared().CommPort, "COM12");
}

TEST_F(SettingsForm, WritesCom12BackAsCom1) {
  Shared().CommPort = "COM12";
  Open().CmdOK_Click();
  EXPECT_EQ(Shared().CommPort, "COM1");
  EXPECT_TRUE(FileHolds("COMMPORT:: COM1"));
}

TEST_F(SettingsForm, ClearsTheListOfFilesAtOkOnly) {
  bench.state.IndexValid = true;
  Open().Quit();
  EXPECT_TRUE(bench.state.IndexValid);
  Open().CmdOK_Click();
  EXPECT_FALSE(bench.state.IndexValid);
}

TEST_F(SettingsForm, KeepsWhatARecordingChangedWhileItWasOpen) {
  Open();
  Shared().ActiveFiles[2] = "M260314B.OVN";
  dialog.CmdOK_Click();
  EXPECT_TRUE(FileHolds("ACTIVE03:: M260314B.OVN"));
}

TEST_F(SettingsForm, ClosesThePortEitherWay) {
  bench.commands.LinkOpen();
  ASSERT_TRUE(bench.link.PortOpen);
  Open().CmdOK_Click();
  EXPECT_FALSE(bench.link.PortOpen);
  bench.commands.LinkOpen();
  Open().Quit();
  EXPECT_FALSE(bench.link.PortOpen);
}

TEST_F(SettingsForm, LeavesWithoutAQuestionIfNothingChanged) {
  Open();
  dialog.Txt_Plant_Change(" Foundry South ");
  dialog.Quit();
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_TRUE(Boxes().empty());
  EXPECT_FALSE(bench.home.Exists("TAVREL.USR"));
}

TEST_F(SettingsForm, AsksBeforeItForgetsAChange) {
  Open().cboDia_Click(1);
  bench.dialogs.ok = false;
  dialog.Quit();
  EXPECT_TRUE(dialog.IsOpen());
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Boxes()[0].Text, "Parameters changed !\nQuit anyway ?");
  EXPECT_EQ(Boxes()[0].Title, "Settings");
  bench.dialogs.ok = true;
  dialog.Quit();
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_FALSE(Shared().Diagnostic);
}

TEST_F(SettingsForm, AsksForWhatItsListsCannotShow) {
  for (const char* port : {"COM12", "", "com3"}) {
    Boxes().clear();
    Shared().CommPort = port;
    Open().Quit();
    EXPECT_EQ(Boxes().size(), 1U) << port;
  }
}

TEST_F(SettingsForm, AsksForALanguageAndAWidthThatItsListsSpellOtherwise) {
  Shared().HelpLang = "english";
  Open().Quit();
  EXPECT_EQ(Boxes().size(), 1U);
  Shared().HelpLang = "English";
  Shared().PDrawWidth = 0;
  Open().Quit();
  EXPECT_EQ(Boxes().size(), 2U);
}

TEST_F(SettingsForm, KeepsTheFontAfterCancel) {
  Open().CmdFont_Click();
  ASSERT_EQ(bench.dialogs.font_dialogs.size(), 1U);
  EXPECT_EQ(bench.dialogs.font_dialogs[0].Name, "Arial");
  EXPECT_EQ(bench.dialogs.font_dialogs[0].Size, 11);
  EXPECT_EQ(dialog.Values().CmdFont, "Arial,  11");
}

TEST_F(SettingsForm, ChangesTheLanguageOfItsTipsAtOnceWithoutKeepingIt) {
  Open();
  EXPECT_EQ(dialog.Values().TipLanguage, Language::kEnglish);
  dialog.cboHelp_Click(1);
  EXPECT_EQ(dialog.Values().TipLanguage, Language::kGerman);
  EXPECT_EQ(Shared().HelpLang, "English");
  dialog.Quit();
  EXPECT_EQ(Shared().HelpLang, "English");
}

TEST_F(SettingsForm, OpensTheManualOfTheLanguageInItsList) {
  bench.home.Write(kEnglishManual, "manual");
  Open().MnuHelp_Click();
  dialog.cboHelp_Click(1);
  dialog.MnuHelp_Click();
  EXPECT_EQ(bench.shell.opened, (std::vector<std::string>{bench.home.File(kEnglishManual),
                                                          bench.home.File(kGermanManual)}));
}

// Links stand among the user's own files then, and the port is opened by them.
TEST_F(SettingsForm, NamesTheDeviceOfALinkOfTheUserBesideAPackage) {
  const TemporaryDirectory own;
  own.Write("COM3", "");
  own.Write("COM9", "");
  bench.home.Write("installed-by-package", "");
  bench.state.DataHome = own.Path() + "/";
  EXPECT_EQ(Open().Values().DeviceTip, " COM3 = " + own.File("COM3") + " ");
  dialog.cboCom_DropDown();
  for (const std::size_t number : {3U, 9U}) {
    const std::string item = dialog.Values().PortItems.at(number);
    EXPECT_NE(item.find(own.File("COM" + std::to_string(number))), std::string::npos) << item;
  }
}

TEST_F(SettingsForm, NamesTheDeviceOfThePort) {
  bench.home.Write("COM5", "");
  bench.home.Write("COM3", "");
  EXPECT_EQ(Open().Values().DeviceTip, " COM3 = " + bench.home.File("COM3") + " ");
  Open().cboCom_Click(5);
  EXPECT_EQ(dialog.Values().DeviceTip, " COM5 = " + bench.home.File("COM5") + " ");
  std::filesystem::remove(bench.home.File("COM5"));
  std::filesystem::create_symlink("/nowhere", bench.home.File("COM6"));
  dialog.cboCom_Click(6);
  EXPECT_EQ(dialog.Values().DeviceTip, " COM6 = " + bench.home.File("COM6") + "  (not present) ");
  dialog.cboHelp_Click(1);
  EXPECT_EQ(dialog.Values().DeviceTip,
            " COM6 = " + bench.home.File("COM6") + "  (nicht vorhanden) ");
  dialog.cboCom_Click(0);
  EXPECT_EQ(dialog.Values().DeviceTip, "");
}

TEST_F(SettingsForm, TakesANewDirectoryWithItsCase) {
  const std::string next = bench.home.File("Ofenhalle");
  NextDirectory(next);
  Open().cmdPath_Click();
  EXPECT_TRUE(dialog.Values().cmdPath.ends_with("/ofenhalle"));
  EXPECT_TRUE(Boxes().empty());
  EXPECT_EQ(bench.state.ActiveView, View::kTavSett);
  dialog.CmdOK_Click();
  EXPECT_EQ(Shared().DefPath, next);
  EXPECT_TRUE(FileHolds("DEFPATH:: " + next));
}

// Directories beside the data directory, by what their names hold.
class DirectoryName : public SettingsForm,
                      public testing::WithParamInterface<std::pair<const char*, bool>> {
 protected:
  // Takes it, saves, and starts again; the data directory after that.
  std::string AfterARestart(const std::string& path) {
    std::filesystem::create_directories(path);
    bench.screens.on_show = [this, path](View) { Choose(path); };
    bench.home.Write(std::string(GetParam().first) + "/M260314A.OVN", "x");
    Open().cmdPath_Click();
    dialog.CmdOK_Click();
    bench.settings.SettingsLoad();
    return DataDirectory(bench.state);
  }
  // As a user does: the directory above, and then the line of the list.
  void Choose(const std::string& path) {
    DirectoryLists& lists = directory.Lists();
    lists.Open(bench.home.Path());
    for (std::size_t line = 0; line < lists.Lines().size(); ++line) {
      if (lists.Lines()[line].Path == path) {
        lists.SelectLine(static_cast<int>(line));
      }
    }
    ASSERT_EQ(lists.Path(), path);
    directory.CmdOK_Click();
  }
};

TEST_P(DirectoryName, IsKeptAsItIsOrRefusedWithItsReason) {
  const auto& [name, is_kept] = GetParam();
  const std::string path = bench.home.File(name);
  const std::string before = DataDirectory(bench.state);
  bench.home.Write("tavdat/M260101A.OVN", "x");
  EXPECT_EQ(AfterARestart(path), is_kept ? path : before);
  ASSERT_EQ(Boxes().size(), is_kept ? 0U : 1U);
  if (!is_kept) {
    EXPECT_EQ(Boxes()[0].Title, "Settings");
    EXPECT_NE(Boxes()[0].Text.find(path), std::string::npos);
    EXPECT_NE(Boxes()[0].Text.find("Western European"), std::string::npos);
  }
}

INSTANTIATE_TEST_SUITE_P(
    BothSidesOfTheBorder, DirectoryName,
    testing::Values(std::pair("Prüfstand ÄÖÜß", true), std::pair("Œuvre Ž", true),
                    std::pair("10 € – “Öfen”", true), std::pair("a::b, 'c'; #d", true),
                    std::pair(" leading", true), std::pair("two  blanks", true),
                    std::pair("Данные", false), std::pair("Žďár", false),
                    std::pair("Ofen Ω", false), std::pair("炉", false),
                    std::pair("O\xCC\x88"
                              "fen",
                              false),
                    std::pair("O\xF6"
                              "fen",
                              false),
                    std::pair("the \"new\" oven", false), std::pair("trailing ", false),
                    std::pair("trailing\t", false), std::pair("two\nlines", false),
                    std::pair("two\rlines", false), std::pair("tavdat ", false)));

TEST_F(SettingsForm, IsContentWithADirectoryThatIsInForceAlready) {
  Shared().DefPath = bench.home.File("Данные");
  NextDirectory(bench.home.File("Данные"));
  Open().cmdPath_Click();
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(SettingsForm, KeepsTheDirectoryIfNoneIsChosen) {
  bench.screens.on_show = [this](View) { directory.Quit(); };
  Open().cmdPath_Click();
  dialog.Quit();
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(SettingsForm, NamesTheConsequenceOfANewDirectoryWhileTestsRun) {
  PutIntoUse(7, false);
  const std::string next = bench.home.File("next");
  NextDirectory(next);
  bench.dialogs.ok = false;
  Open().cmdPath_Click();
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Boxes()[0].Title, "Settings");
  const std::string& text = Boxes()[0].Text;
  EXPECT_EQ(text, "Tests are running in\n" + bench.home.File("tavdat") +
                      "\n\nThey stay there until the end of the program. At the next start they "
                      "are looked for in\n" +
                      next +
                      "\nand are not found, unless their files are moved there.\n\nUse the new "
                      "directory ?");
  EXPECT_TRUE(dialog.Values().cmdPath.ends_with("/tavdat"));
  bench.dialogs.ok = true;
  dialog.cmdPath_Click();
  EXPECT_TRUE(dialog.Values().cmdPath.ends_with("/next"));
}

TEST_F(SettingsForm, AsksForTestsThatAreNotAttachedYet) {
  Shared().ActiveFiles[0] = "M260314A.OVN";
  const std::string next = bench.home.File("next");
  NextDirectory(next);
  Open().cmdPath_Click();
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Boxes()[0].Text,
            "The files of the tests are in\n" + bench.home.File("tavdat") +
                "\n\nFrom now on they are looked for in\n" + next +
                "\nand are not found, unless they are moved there.\n\nUse the new directory ?");
}

TEST_F(SettingsForm, DoesNotAskForTheViewedFileNorForTheSameDirectory) {
  PutIntoUse(kViewedFile, false);
  NextDirectory(bench.home.File("next"));
  Open().cmdPath_Click();
  EXPECT_TRUE(Boxes().empty());
  PutIntoUse(1, false);
  NextDirectory(bench.home.File("tavdat"));
  dialog.cmdPath_Click();
  EXPECT_TRUE(Boxes().empty());
  dialog.Quit();
  EXPECT_TRUE(Boxes().empty()) << "back to the old directory nothing has changed";
}

TEST_F(SettingsForm, AsksBeforeARecordingIsSimulated) {
  bench.commands.LinkOpen();
  PutIntoUse(4, true);
  Open().cboCom_Click(0);
  bench.dialogs.ok = false;
  dialog.CmdOK_Click();
  EXPECT_TRUE(dialog.IsOpen());
  EXPECT_EQ(Shared().CommPort, "COM3");
  EXPECT_TRUE(bench.link.PortOpen);
  EXPECT_EQ(Boxes().size(), 1U);
  bench.dialogs.ok = true;
  dialog.CmdOK_Click();
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_EQ(Shared().CommPort, "----");
}

TEST_F(SettingsForm, SimulatesWithoutAQuestionWhereNothingRecords) {
  bench.commands.LinkOpen();
  PutIntoUse(4, false);
  bench.state.Unit[5].UnitRecOn = 1;
  Open().cboCom_Click(0);
  dialog.CmdOK_Click();
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(SettingsForm, GoesOnSimulatingWithoutAQuestion) {
  Shared().CommPort = "----";
  bench.commands.LinkOpen();
  PutIntoUse(4, true);
  Open().CmdOK_Click();
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(SettingsForm, KeepsTheLineInForceUntilItIsOpenedAnew) {
  bench.commands.LinkOpen();
  Shared().ComMode = 1;
  EXPECT_TRUE(bench.link.Mode().LinkDirect);
  Open().CmdOK_Click();
  EXPECT_TRUE(bench.link.Mode().LinkDirect);
  bench.commands.LinkOpen();
  EXPECT_FALSE(bench.link.Mode().LinkDirect);
}

TEST_F(SettingsForm, EndsTheProgramInOrderIfItCannotSave) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, false));
  bench.state.ActiveView = View::kNone;
  bench.Start();
  bench.sheet.tx_Des_Change(1, "Tube 7");
  bench.state.SettingsChanged = true;
  bench.state.DataHome = bench.home.File("nowhere") + "/";
  bench.screens.on_show = [this](View) { Open().CmdOK_Click(); };
  bench.commands.MnuSettings();
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Boxes()[0].Text, "Cannot write file.");
  EXPECT_EQ(Boxes()[0].Title, "TAVREL.USR");
  EXPECT_EQ(Boxes()[0].Icon, BoxIcon::kWarning);
  EXPECT_TRUE(bench.commands.HasEnded());
  EXPECT_EQ(bench.home.Read("tavdat/M260314A.OVN").substr(200, 10), "NEW:Tube 7");
  EXPECT_FALSE(bench.link.PortOpen);
  EXPECT_EQ(bench.screens.shown.size(), 1U);
}

TEST_F(SettingsForm, EndsTheStartIfItCannotSave) {
  bench.state.FirstRun = true;
  bench.state.DataHome = bench.home.File("nowhere") + "/";
  bench.screens.on_show = [this](View) { Open().CmdOK_Click(); };
  EXPECT_FALSE(bench.start_up.MainFormLoad());
  EXPECT_TRUE(bench.commands.HasEnded());
  EXPECT_FALSE(bench.link.PortOpen);
}

TEST_F(SettingsForm, ComesUpAtAFirstRunBeforeTheLineIsOpened) {
  Shared() = {};
  bench.settings.SettingsLoad();
  ASSERT_TRUE(bench.state.FirstRun);
  bench.screens.on_show = [this](View view) {
    EXPECT_EQ(view, View::kTavSett);
    EXPECT_FALSE(bench.link.PortOpen);
    EXPECT_EQ(Open().Values().cboCom, 0);
    EXPECT_EQ(dialog.Values().Txt_Plant, "?");
    dialog.CmdOK_Click();
  };
  EXPECT_TRUE(bench.start_up.MainFormLoad());
  EXPECT_TRUE(bench.link.Simulated);
  EXPECT_TRUE(FileHolds("COMMPORT:: ----"));
  EXPECT_TRUE(FileHolds("HELPLANG:: English"));
}

TEST_F(SettingsForm, ComesAgainUntilThePortOpens) {
  bench.port.open_error = 2;
  bench.dialogs.retry = true;
  int shown = 0;
  bench.screens.on_show = [&](View) {
    Open();
    if (++shown == 2) {
      dialog.cboCom_Click(0);
    }
    dialog.CmdOK_Click();
  };
  EXPECT_TRUE(bench.start_up.MainFormLoad());
  EXPECT_EQ(shown, 2);
  EXPECT_TRUE(bench.link.Simulated);
}

}  // namespace
}  // namespace tavrel
