#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>

#include "tests/support/form_bench.h"

namespace tavrel {
namespace {

class MainMenu : public FormBench {
 protected:
  static QStringList CaptionsOf(const QList<QAction*>& actions) {
    QStringList captions;
    for (const QAction* action : actions) {
      captions << action->text().remove('&');
    }
    return captions;
  }
  void Choose(const char* name) { form->findChild<QAction*>(name)->trigger(); }
};

TEST_F(MainMenu, HasItsHeadingsAndThreeCommandsInTheBar) {
  Start();
  EXPECT_EQ(CaptionsOf(form->menuBar()->actions()),
            QStringList({"Tools  ", "Diagnostic  ", "Help   ", "Keys   ", "Exit"}));
}

// A list that opens out of the form, be it a menu or that of a text field, is a part of it.
TEST_F(MainMenu, KeepsTheBacklogLineWhileItIsOpen) {
  Start();
  bench.state.BacklogCount = 40;
  bench.state.lbl_Info = "reading from Tavrel:  40";
  for (const int place : {0, 1}) {
    QMenu* menu = form->menuBar()->actions()[place]->menu();
    menu->popup(form->mapToGlobal(QPoint(0, 20)));
    QCoreApplication::processEvents();
    ASSERT_TRUE(menu->isVisible());
    emit qApp->focusWindowChanged(menu->windowHandle());
    EXPECT_EQ(bench.state.BacklogCount, 40) << place;
    menu->close();
  }
}

TEST_F(MainMenu, LosesTheBacklogLineToAnotherFormOfTheProgram) {
  Start();
  bench.state.BacklogCount = 40;
  QDialog other(form.get());
  other.show();
  emit qApp->focusWindowChanged(other.windowHandle());
  EXPECT_EQ(bench.state.BacklogCount, 0);
}

TEST_F(MainMenu, HasItsEntriesInTheirOrder) {
  Start();
  const QList<QAction*> bar = form->menuBar()->actions();
  EXPECT_EQ(CaptionsOf(bar[0]->menu()->actions()),
            QStringList({"System:    Settings  ", "System:    Installation",
                         "Tavrel:    adjust   channels", "Tavrel:    assign  numbers",
                         "Tavrel:    program", "Exit"}));
  EXPECT_EQ(CaptionsOf(bar[1]->menu()->actions()),
            QStringList({"Quality  System", "Test:     Com - Port", "Test:     Memory",
                         "Test:     Outputs", "Test:     Watchdog", "Show:   Variables",
                         "Show:   Registers", "Terminal"}));
}

// A letter that two of them have chooses neither.
TEST_F(MainMenu, GivesEachLetterOnceInBothLanguages) {
  Start();
  for (const char* language : {"English", "German"}) {
    bench.state.Settings.HelpLang = language;
    bench.sheet.SetCaptionAndTips();
    form->UpdateWidgets();
    const QList<QAction*> bar = form->menuBar()->actions();
    for (const QList<QAction*>& list :
         {bar, bar[0]->menu()->actions(), bar[1]->menu()->actions()}) {
      QStringList letters;
      for (const QAction* action : list) {
        const QString key = QKeySequence::mnemonic(action->text()).toString();
        EXPECT_FALSE(key.isEmpty()) << action->text().toStdString();
        EXPECT_FALSE(letters.contains(key)) << action->text().toStdString();
        letters << key;
      }
    }
  }
  EXPECT_EQ(form->findChild<QAction*>("MnuSettings")->text(), "System:    &Settings  ");
}

TEST_F(MainMenu, HasKeysForItsCommands) {
  bench.screens.built = {View::kTavSett, View::kTavKeys};
  bench.dialogs.ok = false;
  Start();
  form->activateWindow();
  QTest::keyClick(form.get(), Qt::Key_Comma, Qt::ControlModifier);
  EXPECT_EQ(bench.screens.shown, std::vector<View>{View::kTavSett});
  QTest::keyClick(form.get(), Qt::Key_K, Qt::AltModifier);
  EXPECT_EQ(bench.screens.shown.back(), View::kTavKeys);
  QTest::keyClick(form.get(), Qt::Key_Q, Qt::ControlModifier);
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "Exit");
  EXPECT_FALSE(bench.commands.HasEnded());
}

TEST_F(MainMenu, GreysWhatIsNotThere) {
  bench.screens.built.insert(View::kAllCom);
  Start();
  EXPECT_TRUE(form->findChild<QAction*>("MnuComm")->isEnabled());
  EXPECT_FALSE(form->findChild<QAction*>("MnuMemory")->isEnabled());
  EXPECT_TRUE(form->findChild<QAction*>("MnuExit2")->isEnabled());
  EXPECT_TRUE(form->findChild<QAction*>("MnuHelp")->isEnabled());
}

TEST_F(MainMenu, HidesTheCommandsWhileAFormIsOpen) {
  bench.screens.built.insert(View::kAllCom);
  Start();
  bool was_shown = true;
  bench.screens.on_show = [&](View) {
    form->UpdateWidgets();
    was_shown = Find("picCmds")->isVisible();
  };
  Choose("MnuComm");
  EXPECT_FALSE(was_shown);
  EXPECT_TRUE(Find("picCmds")->isVisible());
}

TEST_F(MainMenu, OpensTheManual) {
  bench.state.Settings.HelpLang = "German";
  Start();
  Choose("MnuHelp");
  ASSERT_EQ(bench.shell.opened.size(), 1U);
  EXPECT_EQ(bench.shell.opened[0], bench.home.File(kGermanManual));
}

TEST_F(MainMenu, AsksBeforeItEndsTheProgram) {
  Start();
  bench.dialogs.ok = false;
  Choose("MnuExit");
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_FALSE(bench.commands.HasEnded());
  bench.dialogs.ok = true;
  Choose("MnuExit2");
  EXPECT_EQ(bench.dialogs.boxes.size(), 2U);
  EXPECT_TRUE(bench.commands.HasEnded());
}

}  // namespace
}  // namespace tavrel
