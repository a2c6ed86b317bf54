#include "main/forms/tavsett.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "base/tool_tips.h"
#include "dialogs/forms/all_dir.h"
#include "tests/forms/modal_bench.h"

namespace tavrel {
namespace {

class SettingsWindow : public ModalBench {
 protected:
  SettingsWindow() {
    bench.screens.on_show = [this](View view) {
      if (view == View::kAllDir) {
        AllDir(directory).Run();
      }
    };
  }
  // Shows the form; the actions that were told run in it.
  void Run() {
    TavSett form(Open());
    form.Run();
  }
  static QComboBox* List(const char* name) { return Find<QComboBox>(name); }
  static std::string ShownIn(const char* name) { return List(name)->currentText().toStdString(); }
  SettingsValues& Shared() { return bench.state.Settings; }
};

TEST_F(SettingsWindow, ShowsTheValues) {
  Then("TAVSETT", [] {
    EXPECT_EQ(Form()->windowTitle(), " Settings");
    EXPECT_TRUE(Form()->isModal());
    EXPECT_EQ(TextOf("Txt_Plant"), "Foundry South");
    EXPECT_EQ(TextOf("Txt_Lab"), "M. Weber");
    EXPECT_TRUE(ShownIn("cboCom").starts_with(" COM3   /")) << ShownIn("cboCom");
    EXPECT_EQ(ShownIn("cboHelp"), " English");
    EXPECT_EQ(ShownIn("cboMode"), " direct  (RS-232)");
    EXPECT_EQ(ShownIn("cboDia"), " no");
    EXPECT_EQ(ShownIn("CboWidth"), "   2 pt");
    EXPECT_EQ(TextOf("CmdFont"), "Arial,  11");
    EXPECT_EQ(List("cboCom")->count(), 31);
    Click("CmdOK");
  });
  Run();
}

TEST_F(SettingsWindow, ShowsWhatIsBehindThePortsAnewWhenTheListUnfolds) {
  Then("TAVSETT", [this] {
    QComboBox* ports = List("cboCom");
    const QString before = ports->itemText(6);
    std::filesystem::create_symlink("/nowhere", bench.home.File("COM6"));
    EXPECT_EQ(ports->itemText(6), before);
    ports->showPopup();
    const std::string missing = " COM6   " + bench.home.File("COM6") + "  (not present)";
    EXPECT_EQ(ports->itemText(6).toStdString(), missing);
    EXPECT_GE(ports->view()->minimumWidth(), ports->view()->sizeHintForColumn(0));
    ports->hidePopup();
    List("cboHelp")->setCurrentIndex(1);
    EXPECT_TRUE(ports->itemText(6).endsWith("(nicht vorhanden)"));
    EXPECT_EQ(ports->currentIndex(), 3);
    List("cboHelp")->setCurrentIndex(0);
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(SettingsWindow, HasALabelForEachControl) {
  Then("TAVSETT", [] {
    for (const char* name : {"Txt_Plant", "Txt_Lab", "cboHelp", "cboCom", "cboMode", "cboDia",
                             "cmdPath", "CmdFont", "CboWidth"}) {
      const auto labels = Form()->findChildren<QLabel*>();
      const QWidget* control = Find<QWidget>(name);
      EXPECT_TRUE(std::ranges::any_of(labels, [control](const QLabel* label) {
        return label->buddy() == control;
      })) << name;
    }
    Key(Qt::Key_Escape);
  });
  Run();
}

// A button would take the letter behind the sign for its key and hide the sign.
TEST_F(SettingsWindow, ShowsAnAmpersandOfThePathAndOfTheFont) {
  bench.state.Settings.DefPath = bench.home.File("R&D");
  bench.state.Settings.PFontName = "Black & White";
  Then("TAVSETT", [] {
    for (const char* name : {"cmdPath", "CmdFont"}) {
      EXPECT_TRUE(Find<QPushButton>(name)->shortcut().isEmpty()) << name;
    }
    EXPECT_TRUE(TextOf("cmdPath").ends_with("/r&&d")) << TextOf("cmdPath");
    EXPECT_EQ(TextOf("CmdFont"), "Black && White,  11");
    Click("CmdOK");
  });
  Run();
  EXPECT_EQ(bench.state.Settings.PFontName, "Black & White");
}

TEST_F(SettingsWindow, IsDrivenByTheMouse) {
  bench.dialogs.chosen_font = FontChoice{"DejaVu Sans", 9};
  Then("TAVSETT", [] {
    List("cboDia")->setCurrentIndex(1);
    QTest::mouseClick(List("cboCom"), Qt::LeftButton);
    QTest::keyClick(List("cboCom")->view(), Qt::Key_Down);
    QTest::keyClick(List("cboCom")->view(), Qt::Key_Return);
    Click("CmdFont");
    EXPECT_EQ(TextOf("CmdFont"), "DejaVu Sans,  9");
    Click("CmdOK");
  });
  Run();
  EXPECT_TRUE(Shared().Diagnostic);
  EXPECT_EQ(Shared().CommPort, "COM4");
  EXPECT_EQ(Shared().PFontName, "DejaVu Sans");
}

TEST_F(SettingsWindow, IsDrivenByTheKeyboardAlone) {
  Then("TAVSETT", [] {
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "Txt_Plant");
    QTest::keyClicks(QApplication::focusWidget(), "North");
    Key(Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), "Q7");
    Key(Qt::Key_Tab);
    Key(Qt::Key_Down);
    Key(Qt::Key_Tab);
    Key(Qt::Key_Up);
    Key(Qt::Key_Tab);
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
  });
  Run();
  EXPECT_EQ(Shared().Plant, "North");
  EXPECT_EQ(Shared().Lab, "Q7");
  EXPECT_EQ(Shared().HelpLang, "German");
  EXPECT_EQ(Shared().CommPort, "COM2");
  EXPECT_EQ(Shared().ComMode, 1);
  EXPECT_NE(SavedSettings().find("COMMPORT:: COM2"), std::string::npos);
}

TEST_F(SettingsWindow, LeadsTheTabKeyThroughAllControls) {
  QStringList way;
  Then("TAVSETT", [&way] {
    for (int step = 0; step < 11; ++step) {
      way << QApplication::focusWidget()->objectName();
      Key(Qt::Key_Tab);
    }
    Key(Qt::Key_Escape);
  });
  Run();
  EXPECT_EQ(way, QStringList({"Txt_Plant", "Txt_Lab", "cboHelp", "cboCom", "cboMode", "cboDia",
                              "cmdPath", "CmdFont", "CboWidth", "CmdOK", "CmdCancel"}));
}

TEST_F(SettingsWindow, IsLeftByItsCancelButtonWithoutAChange) {
  Then("TAVSETT", [] {
    List("cboMode")->setCurrentIndex(2);
    EXPECT_EQ(TextOf("CmdCancel"), "&Cancel");
    Click("CmdCancel");
  });
  Run();
  EXPECT_EQ(Shared().ComMode, 0);
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
}

// All of a text is selected when the keyboard comes to it: a letter that no button has would wipe
// it.
TEST_F(SettingsWindow, KeepsItsTextsWhenAltComesWithALetterOfNoButton) {
  Then("TAVSETT", [] {
    auto* plant = Find<QLineEdit>("Txt_Plant");
    plant->setFocus(Qt::TabFocusReason);
    QTest::keyClicks(plant, "Institute");
    plant->selectAll();
    for (const char letter : {'e', 'T', '5'}) {
      QTest::keyClick(plant, letter, Qt::AltModifier);
      EXPECT_EQ(plant->text(), "Institute") << letter;
    }
    QTest::keyClick(plant, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(plant->text(), "Institute") << "other keys with a modifier do what they do";
    Click("CmdCancel");
  });
  Run();
}

TEST_F(SettingsWindow, TakesEnterOnAnyControlForOk) {
  for (const char* name : {"Txt_Plant", "cboHelp", "cmdPath", "CmdFont", "CmdOK"}) {
    std::filesystem::remove(bench.home.File("TAVREL.USR"));
    Then("TAVSETT", [name] {
      Find(name)->setFocus();
      Key(Qt::Key_Enter);
    });
    Run();
    EXPECT_TRUE(bench.home.Exists("TAVREL.USR")) << name;
  }
  EXPECT_TRUE(bench.screens.shown.empty());
  EXPECT_TRUE(bench.dialogs.font_dialogs.empty());
}

TEST_F(SettingsWindow, IgnoresAnEnterKeyThatIsStillHeldDown) {
  Then("TAVSETT", [this] {
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QApplication::sendEvent(QApplication::focusWidget(), &held);
    EXPECT_TRUE(dialog.IsOpen());
    Key(Qt::Key_Escape);
  });
  Run();
  EXPECT_FALSE(bench.home.Exists("TAVREL.USR"));
}

TEST_F(SettingsWindow, StaysAfterEscapeIfTheUserWantsSo) {
  bench.dialogs.ok = false;
  Then("TAVSETT", [this] {
    QTest::keyClicks(Find("Txt_Lab"), "new");
    Key(Qt::Key_Escape);
    EXPECT_TRUE(Form()->isVisible());
    Form()->close();
    EXPECT_TRUE(Form()->isVisible());
    bench.dialogs.ok = true;
    Form()->close();
  });
  Run();
  EXPECT_EQ(bench.dialogs.boxes.size(), 3U);
  EXPECT_EQ(Shared().Lab, "M. Weber");
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(SettingsWindow, SelectsAllOfATextThatGetsTheFocus) {
  Then("TAVSETT", [] {
    auto* lab = Find<QLineEdit>("Txt_Lab");
    Key(Qt::Key_Tab);
    EXPECT_EQ(lab->selectedText(), "M. Weber");
    auto* plant = Find<QLineEdit>("Txt_Plant");
    QTest::mouseClick(plant, Qt::LeftButton, Qt::NoModifier, QPoint(12, 8));
    EXPECT_EQ(plant->selectedText(), "Foundry South");
    QTest::mouseClick(plant, Qt::LeftButton, Qt::NoModifier, QPoint(12, 8));
    EXPECT_EQ(plant->selectedText(), "") << "the second click sets the cursor";
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(SettingsWindow, KeepsTheCursorOfAUserWhoTypesInTheMiddle) {
  Then("TAVSETT", [] {
    auto* plant = Find<QLineEdit>("Txt_Plant");
    plant->deselect();
    plant->setCursorPosition(7);
    QTest::keyClicks(plant, " far");
    EXPECT_EQ(plant->text(), "Foundry far South");
    EXPECT_EQ(plant->cursorPosition(), 11);
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(SettingsWindow, ShowsTheTipsOfTheChosenLanguageAtOnce) {
  Then("TAVSETT", [] {
    for (const ToolTip& tip : kSettingsTips) {
      EXPECT_TRUE(TipOf(tip.Control.data()).starts_with(tip.Text.English)) << tip.Control;
    }
    List("cboHelp")->setFocus();
    Key(Qt::Key_Down);
    EXPECT_TRUE(TipOf("cboCom").starts_with(" (----) = Tavrel wird simuliert \n COM3 = /"));
    EXPECT_EQ(TipOf("cboDia"), " empfohlen = 'nein' ");
    EXPECT_EQ(TipOf("cboHelp"), " Sprache für Hilfe ");
    EXPECT_EQ(TipOf("cboMode"), " Normaleinstellung = 'direct' ");
    EXPECT_EQ(TipOf("CboWidth"), " Graphik-Linienstärke  (Protokolle) ");
    EXPECT_EQ(TipOf("CmdOK"), " Einstellungen speichern  (Eingabe-Taste) ");
    EXPECT_EQ(TipOf("CmdFont"), " Schriftart und Grösse  (Protokolle) ");
    EXPECT_EQ(TipOf("cmdPath"), " Pfad für Tavrel-Dateien ");
    EXPECT_EQ(TipOf("Txt_Plant"), " beliebiger Text ... ");
    EXPECT_EQ(TipOf("Txt_Lab"), " beliebiger Text ... ");
    List("cboCom")->setCurrentIndex(0);
    EXPECT_EQ(TipOf("cboCom"), " (----) = Tavrel wird simuliert ");
    List("cboHelp")->setCurrentIndex(0);
    EXPECT_EQ(TipOf("cboDia"), " default = 'no' ");
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(SettingsWindow, OpensTheManualOfItsListByMenuAndKey) {
  bench.home.Write(kEnglishManual, "manual");
  Then("TAVSETT", [] {
    auto* help = Form()->findChild<QAction*>("MnuHelp");
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(help->text(), "&Help   ");
    EXPECT_EQ(help->shortcut(), QKeySequence(Qt::Key_F1));
    help->trigger();
    List("cboHelp")->setCurrentIndex(1);
    help->trigger();
    Key(Qt::Key_Escape);
  });
  Run();
  EXPECT_EQ(bench.shell.opened, (std::vector<std::string>{bench.home.File(kEnglishManual),
                                                          bench.home.File(kGermanManual)}));
}

TEST_F(SettingsWindow, TakesADirectoryFromItsFormByTheKeyboard) {
  std::filesystem::create_directory(bench.home.File("tavdat/Next"));
  Then("TAVSETT", [] {
    Find("cmdPath")->setFocus();
    Key(Qt::Key_Space);
    EXPECT_TRUE(TextOf("cmdPath").ends_with("/tavdat/next"));
    Key(Qt::Key_Return);
  });
  Then("ALL_DIR", [] {
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
  });
  Run();
  EXPECT_EQ(Shared().DefPath, bench.home.File("tavdat/Next"));
}

TEST_F(SettingsWindow, NamesEveryControlForThoseWhoDoNotSeeIt) {
  Then("TAVSETT", [] {
    for (const ToolTip& tip : kSettingsTips) {
      EXPECT_FALSE(Find(tip.Control.data())->accessibleName().isEmpty()) << tip.Control;
    }
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(SettingsWindow, HasRoomForTheLongestTexts) {
  Shared().DefPath = "/" + std::string(60, 'W');
  Then("TAVSETT", [] {
    auto* path = Find<QPushButton>("cmdPath");
    EXPECT_GE(path->width(), path->sizeHint().width());
    EXPECT_LE(Form()->width(), 640);
    Key(Qt::Key_Escape);
  });
  Run();
}

// The entries begin with blanks, which nobody types.
TEST_F(SettingsWindow, FindsTheEntriesOfAListByTheirLetters) {
  Then("TAVSETT", [] {
    List("cboHelp")->setFocus();
    QTest::keyClicks(List("cboHelp"), "g");
    EXPECT_EQ(ShownIn("cboHelp"), " German");
    List("cboMode")->setFocus();
    QTest::keyClicks(List("cboMode"), "plug");
    EXPECT_EQ(ShownIn("cboMode"), " plug-in  KBL232");
    List("CboWidth")->setFocus();
    QTest::keyClicks(List("CboWidth"), "4");
    EXPECT_EQ(ShownIn("CboWidth"), "   4 pt");
    List("cboCom")->setFocus();
    QTest::keyClicks(List("cboCom"), "com12");
    EXPECT_EQ(ShownIn("cboCom").substr(0, 6), " COM12");
    QTest::keyClicks(List("cboDia"), "x");
    EXPECT_EQ(ShownIn("cboDia"), " no");
    Key(Qt::Key_Escape);
  });
  Run();
}

}  // namespace
}  // namespace tavrel
