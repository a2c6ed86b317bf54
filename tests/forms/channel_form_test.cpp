#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QTableWidget>

#include "setup/forms/tav_chann.h"
#include "tests/forms/modal_bench.h"
#include "tests/setup/channel_bench.h"
#include "tests/support/form_screens.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

// The form of the channels on a scripted instrument, its timer as quick as the test wants and its
// clock moved by a tick with each step.
class ChannelForm : public ModalDeeds {
 protected:
  void Run() {
    fixture.Greet();
    fixture.Forget();
    fixture.bench.channels.Open();
    TavChann form(fixture.bench.channels);
    auto* timer = form.findChild<QTimer*>("Timer_chann");
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(timer->interval(), 100);
    timer->setInterval(0);
    QObject::connect(timer, &QTimer::timeout, &form, [this] {
      fixture.bench.clock.Advance(std::chrono::milliseconds(ChannelAdjustment::kTickMilliseconds));
    });
    form.Run();
  }

  // Does `action` once the dialog has come to that state, behind those that were named before.
  void At(AdjState state, std::function<void()> action) {
    if (script.empty()) {
      Then("TavChann", [this] { GoOn(); });
    }
    script.push_back({state, std::move(action)});
  }
  void GoOn() {
    if (!script.empty() && fixture.bench.channels.State() == script.front().first) {
      const auto action = std::move(script.front().second);
      script.pop_front();
      turns = 0;
      action();
    } else if (++turns > kPatience) {
      ADD_FAILURE() << "the dialog stays in state "
                    << static_cast<int>(fixture.bench.channels.State());
      script.clear();
      fixture.bench.channels.CloseNow();
    }
    if (!script.empty() && Form() != nullptr) {
      QTimer::singleShot(1, Form(), [this] { GoOn(); });
    }
  }
  void AtIdle(std::function<void()> action) { At(AdjState::kIdle, std::move(action)); }

  static void Choose(const char* entry) {
    auto* action = Form()->findChild<QAction*>(entry);
    ASSERT_NE(action, nullptr) << entry;
    EXPECT_TRUE(action->isVisible());
    action->trigger();
  }
  static QTableWidget& Grid() { return *Find<QTableWidget>("Sheet"); }
  static std::string Cell(int row, int column) {
    return Grid().item(row, column)->text().toStdString();
  }
  static void ClickRow(int row) {
    QTableWidget& grid = Grid();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::NoModifier,
                      grid.visualItemRect(grid.item(row, 3)).center());
  }
  static void AltAlone() {
    QTest::keyPress(QApplication::focusWidget(), Qt::Key_Alt, Qt::AltModifier);
    QTest::keyRelease(QApplication::focusWidget(), Qt::Key_Alt);
  }
  static bool IsShown(const char* name) { return Find(name)->isVisible(); }

  ChannelBench fixture;
  static constexpr int kPatience = 10000;  // turns of a millisecond
  std::deque<std::pair<AdjState, std::function<void()>>> script;
  int turns = 0;
};

TEST_F(ChannelForm, ShowsTheSheet) {
  AtIdle([] {
    EXPECT_EQ(Form()->windowTitle(), " Tavrel-3:   Channels");
    QTableWidget& grid = Grid();
    ASSERT_EQ(grid.rowCount(), 16);
    ASSERT_EQ(grid.columnCount(), 7);
    const QStringList heads = {"no",       "sensor", "actual",  "buffer",
                               "sampling", "offset", "1 / gain"};
    for (int column = 0; column < 7; ++column) {
      EXPECT_EQ(grid.horizontalHeaderItem(column)->text(), heads.at(column));
    }
    EXPECT_EQ(Cell(0, 0), "0");
    EXPECT_EQ(Cell(0, 1), "RTD");
    EXPECT_EQ(Cell(0, 2), "25.12");
    EXPECT_EQ(Cell(15, 0), "F");
    EXPECT_EQ(Cell(15, 1), "NiCrNi");
    EXPECT_EQ(Cell(15, 2), "20.75");
    EXPECT_EQ(Cell(15, 3), "0");
    EXPECT_EQ(Cell(15, 4), "10");
    EXPECT_EQ(Cell(15, 5), "25");
    EXPECT_EQ(Cell(15, 6), "1.2000");
    EXPECT_FALSE(IsShown("CmdOK"));
    EXPECT_FALSE(IsShown("pBar"));
    EXPECT_FALSE(IsShown("txt_Final"));
    EXPECT_FALSE(IsShown("Lbl_Instr"));
    EXPECT_FALSE(IsShown("ComIcon"));
    Key(Qt::Key_Escape);
  });
  Run();
  EXPECT_EQ(fixture.bench.state.ActiveView, View::kMainSheet);
}

TEST_F(ChannelForm, HasItsMenus) {
  AtIdle([] {
    const std::vector<std::pair<const char*, const char*>> captions = {
        {"Mnu_Adjust", "Adjust   "},
        {"Mnu_FeCuNi", "FeCuNi  -  thermocouple"},
        {"Mnu_NiCrNi", "NiCrNi   -  thermocouple"},
        {"Mnu_Linear", "Linear   -  input"},
        {"Mnu_RTD", "RTD  -  reference"},
        {"Mnu_Var", "Variables  "},
        {"Mnu_Save", "Save  as ..."},
        {"Mnu_Load", "Load  ..."}};
    for (const auto& [name, caption] : captions) {
      auto* action = Form()->findChild<QAction*>(name);
      ASSERT_NE(action, nullptr) << name;
      EXPECT_EQ(action->text().remove('&'), caption) << "but for the mark of its letter";
      EXPECT_TRUE(action->isEnabled()) << name;
    }
    EXPECT_EQ(Find("CmdOK")->property("text").toString().remove('&'), " ok  (enter-key)  ");
    Choose("Mnu_FeCuNi");
    EXPECT_FALSE(Form()->findChild<QAction*>("Mnu_Adjust")->isEnabled());
    EXPECT_FALSE(Form()->findChild<QAction*>("Mnu_Var")->isEnabled());
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(ChannelForm, SpeaksTheLanguageOfItsTips) {
  AtIdle([] {
    EXPECT_EQ(TipOf("ComIcon"), " no connection ... ");
    EXPECT_EQ(TipOf("CmdOK"), " ok  (enter-key)  ");
    Key(Qt::Key_Escape);
  });
  Run();
  fixture.bench.state.Settings.HelpLang = "german";
  AtIdle([] {
    EXPECT_EQ(TipOf("ComIcon"), " keine Verbindung ");
    EXPECT_EQ(TipOf("CmdOK"), " OK  (Eingabe-Taste) ");
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(ChannelForm, ShowsThatTheInstrumentIsAway) {
  fixture.fails = [](const std::string&) { return true; };
  Then("TavChann", [] {
    EXPECT_TRUE(IsShown("ComIcon"));
    EXPECT_EQ(Cell(1, 1), "");
    EXPECT_FALSE(Form()->findChild<QAction*>("Mnu_Adjust")->isEnabled());
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(ChannelForm, RowsAreChosenByTheMouse) {
  AtIdle([] { Choose("Mnu_NiCrNi"); });
  At(AdjState::kSelect, [] {
    EXPECT_EQ(TextOf("Lbl_Instr"), "Select channel(s):   click on row");
    EXPECT_TRUE(IsShown("Lbl_Instr"));
    ClickRow(0);
    EXPECT_FALSE(IsShown("CmdOK"));
    ClickRow(7);
    EXPECT_TRUE(IsShown("CmdOK"));
    EXPECT_EQ(Cell(7, 0), "✓ 7") << "colour is not the only carrier";
    EXPECT_EQ(Cell(7, 1), "NiCrNi");
    EXPECT_EQ(Cell(8, 0), "8");
    Click("CmdOK");
  });
  At(AdjState::kAwaitShorted, [this] {
    EXPECT_EQ(fixture.Register('L', 7), 0);
    Key(Qt::Key_Escape);
  });
  AtIdle([] {
    EXPECT_EQ(Cell(7, 0), "7");
    EXPECT_EQ(Cell(7, 1), "------");
    Key(Qt::Key_Escape);
  });
  Run();
}

// It drops a run, and a second time it leaves, as the Escape key does.
TEST_F(ChannelForm, HasACancelButton) {
  for (const char* language : {"english", "german"}) {
    fixture.bench.state.Settings.HelpLang = language;
    AtIdle([language] {
      EXPECT_TRUE(IsShown("CmdCancel"));
      EXPECT_EQ(Find("CmdCancel")->property("text").toString().remove('&'),
                language[0] == 'g' ? "Abbrechen" : "Cancel");
      Choose("Mnu_NiCrNi");
    });
    At(AdjState::kSelect, [] {
      ClickRow(7);
      Click("CmdOK");
    });
    At(AdjState::kAwaitShorted, [] { Click("CmdCancel"); });
    AtIdle([] {
      EXPECT_EQ(Cell(7, 1), "------") << "the run has taken its code";
      Click("CmdCancel");
    });
    Run();
    EXPECT_EQ(fixture.bench.state.ActiveView, View::kMainSheet);
    fixture.Register('L', 7) = 1;
  }
}

// From the menu to the coefficients without the mouse.
TEST_F(ChannelForm, IsServedByTheKeyboardAlone) {
  AtIdle([this] {
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "Sheet");
    // The release of a key that opens or closes a menu reaches nobody.
    QTest::keyPress(QApplication::focusWidget(), Qt::Key_F10);
    QWidget* menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr) << "the menu opens by the keyboard";
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyPress(menu, Qt::Key_Return);
    EXPECT_EQ(fixture.bench.channels.State(), AdjState::kBeginInputs);
  });
  At(AdjState::kSelect, [this] {
    EXPECT_EQ(Form()->focusWidget(), &Grid());
    Form()->activateWindow();  // without a screen nobody does when the menu has gone
    ASSERT_TRUE(WaitUntil([] { return QApplication::focusWidget() == &Grid(); }));
    for (int row = 1; row < 9; ++row) {
      Key(Qt::Key_Down);
    }
    EXPECT_EQ(Grid().currentRow(), 9);
    Key(Qt::Key_Space);
    Key(Qt::Key_Down);
    Key(Qt::Key_Space);
    EXPECT_TRUE(fixture.Row(9).selected);
    EXPECT_TRUE(fixture.Row(10).selected);
    Key(Qt::Key_Return);
  });
  At(AdjState::kAwaitShorted, [] { Key(Qt::Key_Return); });
  At(AdjState::kAwaitRaised, [this] {
    EXPECT_EQ(TextOf("Lbl_Instr"), "raise thermocouples to a known temperature");
    fixture.Register('Y', 9) = 4000;
    fixture.Register('Y', 10) = 4000;
    Key(Qt::Key_Return);
  });
  At(AdjState::kAwaitFinal, [] {
    EXPECT_TRUE(IsShown("txt_Final"));
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "txt_Final");
    QTest::keyClicks(QApplication::focusWidget(), "200,5");
    Key(Qt::Key_Return);
  });
  AtIdle([this] {
    EXPECT_EQ(fixture.Register('L', 9), 3);
    EXPECT_EQ(fixture.Register('L', 10), 3);
    EXPECT_EQ(Cell(9, 5), "409");
    EXPECT_FALSE(IsShown("txt_Final"));
    Key(Qt::Key_Escape);
  });
  Run();
  EXPECT_TRUE(fixture.bench.dialogs.boxes.empty());
}

// The key that leads to the menus of all programs, pressed and released alone.
TEST_F(ChannelForm, AltAloneLeadsToTheMenusAndBack) {
  AtIdle([this] {
    auto* bar = Find<QMenuBar>("Menus");
    const QImage before = bar->grab().toImage();
    AltAlone();
    EXPECT_EQ(QApplication::focusWidget(), bar);
    EXPECT_NE(bar->grab().toImage(), before) << "the user sees where the keyboard is";
    ASSERT_NE(bar->activeAction(), nullptr);
    EXPECT_EQ(bar->activeAction()->objectName(), "Mnu_Adjust");
    Key(Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
    EXPECT_TRUE(fixture.bench.channels.IsOpen()) << "it was the menu that Escape has left";
    AltAlone();
    AltAlone();
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
    AltAlone();
    Key(Qt::Key_Right);
    EXPECT_EQ(bar->activeAction()->objectName(), "Mnu_Var");
    Key(Qt::Key_Left);
    QTest::keyPress(bar, Qt::Key_Down);
    QWidget* menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyPress(menu, Qt::Key_Return);
    EXPECT_EQ(fixture.bench.channels.State(), AdjState::kBeginInputs);
  });
  At(AdjState::kSelect, [this] {
    EXPECT_EQ(fixture.bench.channels.Values().Lbl_Instr, "Select channel(s):   click on row");
    EXPECT_EQ(Form()->focusWidget(), &Grid()) << "behind the menu the keyboard belongs to the rows";
    Form()->activateWindow();  // without a screen nobody does when the menu has gone
    ASSERT_TRUE(WaitUntil([] { return QApplication::focusWidget() == &Grid(); }));
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  Run();
}

// In a run the menus are closed to the user: the key must not take the keyboard to them.
TEST_F(ChannelForm, AltAloneLeavesTheKeyboardWhereItIsInARun) {
  AtIdle([] { Choose("Mnu_Linear"); });
  At(AdjState::kSelect, [this] {
    AltAlone();
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
    ClickRow(15);
    AltAlone();
    Key(Qt::Key_Return);
    EXPECT_EQ(fixture.bench.channels.State(), AdjState::kShort);
  });
  At(AdjState::kAwaitShorted, [] {
    AltAlone();
    Key(Qt::Key_Return);
  });
  At(AdjState::kAwaitRaised, [] { Key(Qt::Key_Return); });
  At(AdjState::kAwaitFinal, [this] {
    AltAlone();
    QTest::keyClicks(QApplication::focusWidget(), "55");
    EXPECT_EQ(fixture.Values().txt_Final, "55");
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(ChannelForm, ShowsHowFarTheCollectingIs) {
  AtIdle([] { Choose("Mnu_FeCuNi"); });
  At(AdjState::kSelect, [] {
    ClickRow(9);
    Key(Qt::Key_Return);
  });
  At(AdjState::kAwaitShorted, [] { Key(Qt::Key_Return); });
  At(AdjState::kCollectOffset, [this] {
    ASSERT_TRUE(WaitUntil([this] { return fixture.Values().pBar >= 40; }));
    EXPECT_TRUE(IsShown("pBar"));
    EXPECT_EQ(Find<QProgressBar>("pBar")->value(), fixture.Values().pBar);
    EXPECT_EQ(Find<QProgressBar>("pBar")->maximum(), 100);
    EXPECT_FALSE(IsShown("CmdOK"));
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(ChannelForm, InstructionStandsBelowTheSheetAndItsCountIsNotTornApart) {
  AtIdle([] { Choose("Mnu_FeCuNi"); });
  At(AdjState::kSelect, [] {
    EXPECT_EQ(Find("Lbl_Instr")->x(), Grid().x());
    EXPECT_LE(Find("Lbl_Instr")->geometry().right(), Find("ComIcon")->x());
    ClickRow(9);
    Key(Qt::Key_Return);
  });
  At(AdjState::kAwaitShorted, [this] {
    fixture.FailNext("Y29?", 6);
    Key(Qt::Key_Return);
  });
  At(AdjState::kAwaitRaised, [this] {
    EXPECT_EQ(fixture.Values().Lbl_Instr,
              "raise thermocouples to a known temperature     (2 readings failed)");
    EXPECT_EQ(TextOf("Lbl_Instr"),
              "raise thermocouples to a known temperature     (2\u00a0readings\u00a0failed)");
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  Run();
}

// The label and the bar are painted while nothing else runs.
TEST_F(ChannelForm, ShowsEachRegisterOfATransfer) {
  fixture.bench.dialogs.chosen_file = fixture.bench.home.File("A.VAR");
  std::vector<std::string> labels;
  fixture.on_command = [&](const std::string& command) {
    QWidget* form = Form();
    if (fixture.bench.channels.State() == AdjState::kSaving && form != nullptr) {
      labels.push_back(TextOf("Lbl_Instr"));
      EXPECT_TRUE(IsShown("pBar")) << command;
    }
  };
  AtIdle([&] {
    Choose("Mnu_Save");
    Key(Qt::Key_Escape);
  });
  Run();
  ASSERT_EQ(labels.size(), 272U);
  EXPECT_EQ(labels.front(), "G00");
  EXPECT_EQ(labels.back(), "Z15");
  EXPECT_EQ(fixture.LastBox(), "A.VAR: File written !");
}

TEST_F(ChannelForm, EveryControlHasAName) {
  AtIdle([] {
    for (const char* name : {"Sheet", "pBar", "txt_Final", "CmdOK", "ComIcon"}) {
      EXPECT_FALSE(Find(name)->accessibleName().isEmpty()) << name;
    }
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(ChannelForm, IsOpenedByItsNumber) {
  FormScreens screens(fixture.bench);
  fixture.Greet();
  Then("TavChann", [] { Key(Qt::Key_Escape); });
  screens.Run(View::kTavChann);
  EXPECT_FALSE(fixture.bench.channels.IsOpen());
}

}  // namespace
}  // namespace tavrel
