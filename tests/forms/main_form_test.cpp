#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <functional>

#include "tests/support/form_bench.h"

namespace tavrel {
namespace {

class MainForm : public FormBench {};

TEST_F(MainForm, StartsTheProgramAtItsFirstDisplayOnly) {
  Install(1, 1, 1, "Furnace");
  Start();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  bench.cycle.Stop();
  form->hide();
  form->show();
  form->repaint();
  Run(1);
  EXPECT_FALSE(bench.cycle.IsEnabled());
}

TEST_F(MainForm, ShowsTheRowsThatAreInUse) {
  Install(2, 1, 1, "Furnace");
  Install(12, 2, 2, "Autoclave");
  Start();
  EXPECT_TRUE(Find("Sheet_2")->isVisible());
  EXPECT_TRUE(Find("Sheet_12")->isVisible());
  EXPECT_FALSE(Find("Sheet_1")->isVisible());
  EXPECT_FALSE(Find("Sheet_0")->isVisible());
  EXPECT_EQ(TextOf("tx_Des_2"), "Furnace");
  EXPECT_EQ(TextOf("tx_Des_12"), "Autoclave");
}

TEST_F(MainForm, ShowsWhatTheInstrumentSays) {
  Install(3, 2, 1, "Furnace");
  bench.line.registers[{2, 'Y', 2}] = 2468;
  bench.line.registers[{2, 'Y', 1}] = 2400;
  bench.line.registers[{2, 'Z', 1}] = 2;
  Start();
  Run(1);
  EXPECT_EQ(TextOf("lb_TavNo_3"), "2");
  EXPECT_EQ(ColourOf("sh_TavNo_3"), kYellow);
  EXPECT_EQ(TextOf("lb_Ref_3"), "123.4");
  EXPECT_EQ(TextOf("lb_Ctrl_3"), "120.0");
  EXPECT_EQ(TextOf("lb_Cstat_3"), "iso");
  EXPECT_EQ(ColourOf("sh_Cstat_3"), kGreen);
  EXPECT_EQ(TextOf("lb_Rstat_3"), "on");
  EXPECT_EQ(ColourOf("sh_Rstat_3"), kGreen);
  EXPECT_EQ(TextOf("lb_Rec_3"), "0.00");
  EXPECT_EQ(TextOf("lb_File_3"), "m260313a.ovn");
}

TEST_F(MainForm, ShowsASilentInstrumentByColourAndMarkAndEmptyValues) {
  Install(1, 2, 1, "Furnace");
  bench.line.silent.insert(2);
  Start();
  Run(1);
  EXPECT_EQ(ColourOf("sh_TavNo_1"), kOrange);
  EXPECT_EQ(Find("lb_TavNo_1")->accessibleDescription(), "no answer");
  EXPECT_EQ(TextOf("lb_Ref_1"), "");
  EXPECT_EQ(ColourOf("sh_Cstat_1"), kGrey);
}

TEST_F(MainForm, ShowsAControllerThatIsStillToBeSwitchedOff) {
  Install(1, 2, 1, "Furnace");
  Start();
  Run(1);
  const QString tip = Find("lb_Cstat_1")->toolTip();
  bench.line.silent.insert(2);
  bench.state.Unit[1].UnitEndAction = 1;
  bench.engine.EndOfRecording(1);
  Run(6);
  EXPECT_EQ(TextOf("lb_Cstat_1"), "off ?");
  EXPECT_EQ(ColourOf("sh_Cstat_1"), kOrange);
  EXPECT_TRUE(Find("lb_Cstat_1")->toolTip().contains("not acknowledged"));
  bench.line.silent.clear();
  Run(20);
  EXPECT_EQ(TextOf("lb_Cstat_1"), "off");
  EXPECT_EQ(Find("lb_Cstat_1")->toolTip(), tip);
}

TEST_F(MainForm, MovesTheSelectionToAllRowsOfTheInstrumentThatIsClicked) {
  Install(1, 1, 1, "Furnace");
  Install(2, 2, 1, "Autoclave");
  Install(3, 2, 2, "Dryer");
  Start();
  Run(1);
  EXPECT_TRUE(Find("imgTavSel_1")->isVisible());
  Click("lb_TavNo_3");
  EXPECT_EQ(bench.state.ActiveInet, 2);
  EXPECT_FALSE(Find("imgTavSel_1")->isVisible());
  EXPECT_TRUE(Find("imgTavSel_2")->isVisible());
  EXPECT_TRUE(Find("imgTavSel_3")->isVisible());
}

TEST_F(MainForm, SelectsAnInstrumentByTheKeyboardToo) {
  Install(1, 1, 1, "Furnace");
  Install(2, 2, 1, "Autoclave");
  Start();
  Run(1);
  QTest::keyClick(Find("lb_TavNo_2"), Qt::Key_Return);
  EXPECT_EQ(bench.state.ActiveInet, 2);
  QTest::keyClick(Find("lb_TavNo_1"), Qt::Key_Space);
  EXPECT_EQ(bench.state.ActiveInet, 1);
}

TEST_F(MainForm, TakesTheNameOverWhileTheUserTypesAndKeepsTheCursor) {
  Install(1, 1, 1, "Furnace");
  Start();
  auto* name = Find<QLineEdit>("tx_Des_1");
  name->setFocus();
  QTest::keyClick(name, Qt::Key_F2);
  name->setCursorPosition(0);
  QTest::keyClicks(name, "Big ");
  Run(1);
  EXPECT_EQ(name->text(), "Big Furnace");
  EXPECT_EQ(name->cursorPosition(), 4);
  EXPECT_EQ(bench.state.Unit[1].ApparatusName(), "Big Furnace");
  EXPECT_TRUE(bench.state.SlotDirty[1]);
}

TEST_F(MainForm, KeepsABlankThatTheUserTypesAtTheEnd) {
  Install(1, 1, 1, "Furnace");
  Start();
  auto* name = Find<QLineEdit>("tx_Des_1");
  QTest::keyClick(name, Qt::Key_F2);
  QTest::keyClicks(name, " ");
  Run(1);
  EXPECT_EQ(name->text(), "Furnace ");
  EXPECT_EQ(bench.state.Unit[1].ApparatusName(), "Furnace");
}

TEST_F(MainForm, KeepsANameFromStrayKeys) {
  Install(1, 1, 1, "Furnace");
  Start();
  form->activateWindow();
  Find("lb_TavNo_1")->setFocus();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  auto* name = Find<QLineEdit>("tx_Des_1");
  ASSERT_TRUE(name->hasFocus());
  EXPECT_FALSE(name->hasSelectedText());
  QTest::keyClicks(name, " x7");
  QTest::keyClick(name, Qt::Key_T, Qt::AltModifier);
  QTest::keyClick(name, Qt::Key_Delete);
  QTest::keyClick(name, Qt::Key_Backspace);
  Run(1);
  EXPECT_EQ(name->text(), "Furnace");
  EXPECT_EQ(bench.state.Unit[1].ApparatusName(), "Furnace");
  EXPECT_FALSE(bench.state.SlotDirty[1]);
}

TEST_F(MainForm, EditsANameAfterEnterF2OrAClick) {
  Install(1, 1, 1, "Furnace");
  Install(2, 1, 2, "Chamber");
  Start();
  const std::vector<std::function<void(QWidget*)>> ways = {
      [](QWidget* name) { QTest::keyClick(name, Qt::Key_Return); },
      [](QWidget* name) { QTest::keyClick(name, Qt::Key_F2); },
      [](QWidget* name) { QTest::mouseClick(name, Qt::LeftButton); }};
  for (const int slot : {1, 2}) {
    auto* name = Find<QLineEdit>(qPrintable(QString("tx_Des_%1").arg(slot)));
    for (const auto& begin : ways) {
      Find("cmd_Open")->setFocus();
      const QString before = name->text();
      name->setFocus();
      begin(name);
      name->end(false);
      QTest::keyClick(name, Qt::Key_B, Qt::AltModifier);
      QTest::keyClicks(name, "+");
      EXPECT_EQ(name->text(), before + "+");
      EXPECT_EQ(bench.state.Unit[slot].ApparatusName(), (before + "+").toStdString());
      QTest::keyClick(name, Qt::Key_Return);
      EXPECT_TRUE(name->isReadOnly());
    }
  }
}

TEST_F(MainForm, PutsTheOldNameBackAtEscape) {
  Install(1, 1, 1, "Furnace");
  Start();
  auto* name = Find<QLineEdit>("tx_Des_1");
  name->setFocus();
  QTest::keyClick(name, Qt::Key_F2);
  QTest::keyClick(name, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(name, "wrong");
  EXPECT_EQ(bench.state.Unit[1].ApparatusName(), "wrong");
  QTest::keyClick(name, Qt::Key_Escape);
  EXPECT_EQ(name->text(), "Furnace");
  EXPECT_EQ(bench.state.Unit[1].ApparatusName(), "Furnace");
  QTest::keyClicks(name, "x");
  EXPECT_EQ(name->text(), "Furnace");
}

TEST_F(MainForm, BeginsAtTheSamePlaceWhateverTheRows) {
  Install(3, 1, 1, "Furnace");
  bench.screens.built.insert(View::kAllOpen);
  Start();
  form->activateWindow();
  EXPECT_TRUE(WaitUntil([this] { return Find("cmd_Open")->hasFocus(); }));
}

TEST_F(MainForm, OpensEachRowByItsKey) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    Install(slot, 1 + slot % 6, 1, "Furnace");
  }
  bench.screens.built.insert(View::kTavWork);
  Start(kSlots);
  form->activateWindow();
  for (int slot = 1; slot <= kSlots; ++slot) {
    const auto key = static_cast<Qt::Key>(Qt::Key_0 + slot % 10);
    QTest::keyClick(form.get(), key, slot < 10 ? Qt::ControlModifier : Qt::AltModifier);
    EXPECT_TRUE(WaitUntil([&] { return bench.state.SelSlot == slot; })) << "row " << slot;
    bench.state.SelSlot = 0;
  }
}

TEST_F(MainForm, ReadsTheRowsAgainAtF5) {
  Install(1, 1, 1, "Furnace");
  Start();
  Run(1);
  bench.line.registers[{1, 'Y', 2}] = 3000;
  bench.Run(1);
  EXPECT_NE(bench.Row(1).lb_Ref, "150.0") << "the next pass is due 5 s behind the last one";
  QTest::keyClick(form.get(), Qt::Key_F5);
  Run(1);
  EXPECT_EQ(TextOf("lb_Ref_1"), "150.0");
}

TEST_F(MainForm, SaysTheStateOfTheLineInTheLanguageOfTheSettings) {
  Install(1, 1, 1, "Furnace");
  Start();
  EXPECT_TRUE(WaitUntil([this] { return TextOf("lbl_State").contains(" in the last minute"); }));
  EXPECT_TRUE(TextOf("lbl_State").startsWith("COM1"));
  EXPECT_TRUE(Find("lbl_State")->isVisible());
  EXPECT_EQ(Find("lbl_State")->accessibleName(), TextOf("lbl_State"));
  bench.state.Settings.HelpLang = "German";
  bench.sheet.SetCaptionAndTips();
  EXPECT_TRUE(WaitUntil([this] { return TextOf("lbl_State").contains("letzten Minute"); }));
  EXPECT_EQ(form->findChild<QAction*>("MnuKeys")->text(), "T&asten   ");
}

TEST_F(MainForm, TakesNoNameThatTheHeaderCannotHold) {
  Install(1, 1, 1, "");
  Start();
  QTest::keyClick(Find("tx_Des_1"), Qt::Key_F2);
  QTest::keyClicks(Find("tx_Des_1"), "12345678901234567890");
  EXPECT_EQ(TextOf("tx_Des_1"), "1234567890123456");
  EXPECT_EQ(bench.state.Unit[1].ApparatusName(), "1234567890123456");
}

TEST_F(MainForm, OpensTheWorksheetOfTheRow) {
  Install(4, 1, 1, "Furnace");
  bench.screens.built.insert(View::kTavWork);
  Start();
  Click("cmd_Work_4");
  EXPECT_EQ(bench.screens.shown, std::vector<View>{View::kTavWork});
  EXPECT_EQ(bench.state.SelSlot, 4);
}

TEST_F(MainForm, GreysTheButtonOfAWorksheetThatIsNotThere) {
  Install(4, 1, 1, "Furnace");
  Start();
  EXPECT_FALSE(Find("cmd_Work_4")->isEnabled());
  Click("cmd_Work_4");
  EXPECT_EQ(bench.state.SelSlot, 12);
}

TEST_F(MainForm, RunsTheCycleByItself) {
  Install(1, 1, 1, "Furnace");
  bench.line.registers[{1, 'Y', 2}] = 2000;
  Start();
  EXPECT_TRUE(WaitUntil([this] { return TextOf("lb_Ref_1") == "100.0"; }));
}

TEST_F(MainForm, ShowsTheLineBesideTheTableOnlyWhileItSaysSomething) {
  Install(1, 1, 1, "Furnace");
  for (int set = 0; set < 20; ++set) {
    bench.line.buffers[{1, 1}].push_back(5);
    bench.line.buffers[{1, 2}].push_back(5);
  }
  Start();
  EXPECT_TRUE(Find("lbl_Info")->isVisible());
  EXPECT_EQ(TextOf("lbl_Info").left(22), "reading from Tavrel:  ");
  Run(10);
  EXPECT_FALSE(Find("lbl_Info")->isVisible());
}

TEST_F(MainForm, ClosesWithoutAQuestionAndEndsTheProgram) {
  Install(1, 1, 1, "Furnace");
  Start();
  form->close();
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_TRUE(bench.commands.HasEnded());
  EXPECT_FALSE(bench.cycle.IsEnabled());
}

TEST_F(MainForm, WritesANameThatWasEditedWhenItCloses) {
  Install(1, 1, 1, "Furnace");
  Start();
  auto* name = Find<QLineEdit>("tx_Des_1");
  QTest::keyClick(name, Qt::Key_F2);
  name->selectAll();
  QTest::keyClicks(name, "Oven");
  form->close();
  EXPECT_EQ(bench.home.Read("tavdat/M260311A.OVN").substr(204, 6), "Oven  ");
}

}  // namespace
}  // namespace tavrel
