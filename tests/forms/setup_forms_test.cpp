#include <QAccessible>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "setup/forms/tav_inst.h"
#include "setup/forms/tav_num.h"
#include "tests/forms/modal_bench.h"
#include "tests/setup/setup_bench.h"
#include "tests/support/form_screens.h"

namespace tavrel {
namespace {

constexpr int kFirstInput = 2;  // columns of the grid
constexpr int kNumber = 17;

// The forms of the installation and of the numbers, driven by mouse and keys.
class SetupForms : public ModalDeeds {
 protected:
  void Start(const char* language = "English") {
    bench.Install(2, "M260101A.OVN", TestHeader(1, 1, 5, {9}), {1, 2, 3, 1, 2, 3});
    bench.Install(5, "M260314C.OVN", TestHeader(2, 2, 6, {}, true), {5, 6, 5, 6});
    bench.state.Settings.HelpLang = language;
    bench.state.Settings.DefPath = bench.home.File("tavdat");
    bench.Start();
    bench.Run(1);
  }
  void RunInst() { screens.Run(View::kTavInst); }
  void RunNum() { screens.Run(View::kTavNum); }

  static EditGrid* Grid() { return Find<EditGrid>("Sheet"); }
  static void Keys(const char* text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  static std::string Focus() {
    QWidget* focus = QApplication::focusWidget();
    return focus == nullptr ? "" : focus->objectName().toStdString();
  }
  static std::string Cell(int row, int column) {
    return Grid()->item(row - 1, column)->text().toStdString();
  }
  static std::string Spoken(int row, int column) {
    return Grid()->item(row - 1, column)->data(Qt::AccessibleTextRole).toString().toStdString();
  }
  static void ClickCell(int row, int column) {
    const QModelIndex index = Grid()->model()->index(row - 1, column);
    QTest::mouseClick(Grid()->viewport(), Qt::LeftButton, {}, Grid()->visualRect(index).center());
  }
  static std::string Effect() {
    return Find<QPlainTextEdit>("lbl_Effect")->toPlainText().toStdString();
  }
  static void Go(Qt::Key key, int times) {
    for (int time = 0; time < times; ++time) {
      Key(key);
    }
  }

  BenchProgram bench;
  FormScreens screens{bench};
};

TEST_F(SetupForms, InstallATestByKeyboardAlone) {
  Start();
  Then("TavInst", [] {
    EXPECT_EQ(Form()->windowTitle(), " Installation  of  tests");
    EXPECT_EQ(Focus(), "Sheet");
    EXPECT_FALSE(Find("CmdOK")->isVisible());
    Go(Qt::Key_Down, 6);  // row 7
    Keys("c");
    EXPECT_EQ(Cell(7, kFirstInput), "C");
    EXPECT_TRUE(Find("CmdOK")->isVisible());
    Go(Qt::Key_Right, 4);
    Keys("C");
    EXPECT_EQ(Cell(7, kFirstInput + 4), "") << "input 5 cannot be a controller";
    Keys("R");
    EXPECT_EQ(Cell(7, kFirstInput + 4), "R");
    Key(Qt::Key_Right);
    Keys("3");
    Key(Qt::Key_Right);
    Keys("m");
    Key(Qt::Key_Delete);
    EXPECT_EQ(Cell(7, kFirstInput + 5), "M");
    EXPECT_EQ(Cell(7, kFirstInput + 6), "");
    Key(Qt::Key_End);
    Keys("74");
    EXPECT_EQ(Cell(7, kNumber), "4");
    Key(Qt::Key_Home);
    EXPECT_EQ(Focus(), "Test_Des_7");
    Keys("Tube");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "Test_Ext_7");
    Keys("tub!");
    EXPECT_EQ(TextOf("Test_Ext_7"), "tub");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "Sheet");
    EXPECT_EQ(Effect(), "begins a file:  row 7  (tub)");
    Key(Qt::Key_Return);
  });
  RunInst();
  EXPECT_EQ(bench.state.SlotFile[7], "M260314A.TUB");
  EXPECT_EQ(bench.state.Unit[7].ApparatusName(), "Tube");
  EXPECT_EQ(bench.state.Unit[7].UnitInet, 4);
  EXPECT_EQ(bench.state.Unit[7].UnitChannels, 3);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(SetupForms, OpenTheChoicesOfACellByKeyboard) {
  Start();
  Then("TavInst", [] {
    Key(Qt::Key_Space);
    EXPECT_TRUE(Find("picInput")->isVisible());
    EXPECT_TRUE(Find("cmd_Input_1")->isVisible());
    EXPECT_EQ(Focus(), "cmd_Input_1");
    Key(Qt::Key_Down);
    Key(Qt::Key_Space);
    EXPECT_EQ(Cell(1, kFirstInput), "R");
    EXPECT_FALSE(Find("picInput")->isVisible());
    EXPECT_EQ(Focus(), "Sheet");
    Go(Qt::Key_Right, 4);
    Key(Qt::Key_F2);
    EXPECT_FALSE(Find("cmd_Input_1")->isVisible());
    EXPECT_EQ(Focus(), "cmd_Input_2");
    Key(Qt::Key_Escape);
    EXPECT_FALSE(Find("picInput")->isVisible());
    EXPECT_EQ(Focus(), "Sheet");
    Key(Qt::Key_End);
    Key(Qt::Key_Space);
    EXPECT_EQ(Focus(), "cmd_TavNo_1");
    Key(Qt::Key_Right);
    Key(Qt::Key_Space);
    EXPECT_EQ(Cell(1, kNumber), "2");
    Key(Qt::Key_Escape);
  });
  RunInst();
  EXPECT_EQ(bench.dialogs.boxes.back().Text, "Installation has been changed, quit anyway ?");
  EXPECT_EQ(bench.state.Unit[1].UnitInet, 0);
}

TEST_F(SetupForms, LeaveTheGridByTheTabKey) {
  Start();
  Then("TavInst", [] {
    Keys("M");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "lbl_Effect");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "CmdOK");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "CmdCancel");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "Sheet");
    Key(Qt::Key_Backtab);
    EXPECT_EQ(Focus(), "CmdCancel");
    Key(Qt::Key_Escape);
  });
  RunInst();
}

TEST_F(SetupForms, OfferTheirChoicesWhereTheGridIsClicked) {
  Start();
  Then("TavInst", [] {
    for (const int row : {1, 6, 12}) {
      for (const int input : {1, 4, 15}) {
        ClickCell(row, kFirstInput + input - 1);
        const QWidget* popup = Find("picInput");
        EXPECT_TRUE(popup->isVisible());
        EXPECT_TRUE(Form()->rect().contains(popup->geometry())) << row << " " << input;
        Click("cmd_Input_3");
        EXPECT_EQ(Cell(row, kFirstInput + input - 1), "M");
      }
      ClickCell(row, kNumber);
      EXPECT_TRUE(Find("picTavNo")->isVisible());
      EXPECT_TRUE(Form()->rect().contains(Find("picTavNo")->geometry()));
      Click("cmd_TavNo_6");
      EXPECT_EQ(Cell(row, kNumber), "6");
    }
    ClickCell(2, kNumber);
    QTest::mouseClick(Find("Test_Des_2"), Qt::LeftButton);
    EXPECT_FALSE(Find("picTavNo")->isVisible());
    EXPECT_EQ(Find<QLineEdit>("Test_Des_2")->selectedText(), "Oven");
    Form()->close();
  });
  RunInst();
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
}

TEST_F(SetupForms, TellTheirCellsToAScreenReader) {
  Start();
  Then("TavInst", [] {
    EXPECT_EQ(Spoken(2, kFirstInput), "row 2, input 1: controller");
    EXPECT_EQ(Spoken(2, kFirstInput + 4), "row 2, input 5: reference");
    EXPECT_EQ(Spoken(12, kFirstInput + 14), "row 12, input F: not used");
    EXPECT_EQ(Spoken(5, kNumber), "row 5, number of the instrument: Tavrel 2");
    EXPECT_EQ(Find("Test_Ext_9")->accessibleName(), "row 9, extension of the files");
    QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(Grid());
    ASSERT_NE(grid->tableInterface(), nullptr);
    EXPECT_EQ(grid->tableInterface()->cellAt(1, kFirstInput)->text(QAccessible::Name),
              "row 2, input 1: controller");
    Key(Qt::Key_Escape);
  });
  RunInst();
}

TEST_F(SetupForms, HaveTheirTipsInBothLanguages) {
  Start("German");
  Then("TavInst", [] {
    EXPECT_EQ(TipOf("cmd_Input_0"), " Eingang löschen ");
    EXPECT_EQ(TipOf("cmd_Input_1"), " Regler-Eingang ");
    EXPECT_EQ(TipOf("cmd_Input_2"), " Referenz-Eingang ");
    EXPECT_EQ(TipOf("cmd_Input_3"), " allgemeiner Messeingang ");
    EXPECT_EQ(TipOf("cmd_TavNo_0"), " Nummer löschen ");
    EXPECT_EQ(TipOf("CmdOK"), " Installation sichern ");
    EXPECT_EQ(Spoken(2, kFirstInput), "Zeile 2, Eingang 1: Regler");
    Key(Qt::Key_Escape);
  });
  RunInst();
  bench.state.Settings.HelpLang = "English";
  Then("TavInst", [] {
    EXPECT_EQ(TipOf("cmd_Input_0"), " remove input  ");
    EXPECT_EQ(TipOf("CmdOK"), " OK  (enter-key) ");
    EXPECT_EQ(TextOf("head_controllers"), "¦       controllers       ¦");
    EXPECT_EQ(TextOf("head_inputs"), "general purpose inputs");
    Key(Qt::Key_Escape);
  });
  RunInst();
}

TEST_F(SetupForms, LockARowThatWaitsForItsFile) {
  Start();
  bench.files.CloseRecordingFile(2);
  bench.state.SlotFile[2].clear();
  Then("TavInst", [] {
    EXPECT_FALSE(Find("Test_Des_2")->isEnabled());
    EXPECT_EQ(TextOf("Test_Des_2"), "m260101a.ovn");
    ClickCell(2, kFirstInput);
    EXPECT_FALSE(Find("picInput")->isVisible());
    Keys("R");
    EXPECT_EQ(Cell(2, kFirstInput), "");
    EXPECT_NE(Spoken(2, kFirstInput).find("waits for its file"), std::string::npos);
    Key(Qt::Key_Down);
    EXPECT_EQ(Grid()->currentRow(), 2) << "the arrow keys go over it";
    Go(Qt::Key_Up, 2);
    EXPECT_EQ(Grid()->currentRow(), 0);
    Key(Qt::Key_Escape);
  });
  RunInst();
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

// It can be read all the same, on a light desktop and on a dark one.
TEST_F(SetupForms, ShowTheFileThatIsWaitedForInInkThatCanBeRead) {
  Start();
  bench.files.CloseRecordingFile(2);
  bench.state.SlotFile[2].clear();
  const QPalette before = QApplication::palette();
  for (const QColor& window : {QColor(239, 239, 239), QColor(43, 45, 48)}) {
    QApplication::setPalette(QPalette(window));
    Then("TavInst", [] {
      for (const char* name : {"Test_Des_2", "Test_Ext_2"}) {
        const QColor ink = Find(name)->palette().color(QPalette::Disabled, QPalette::Text);
        const QColor ground = Grid()->palette().color(QPalette::Base);
        EXPECT_GE(std::abs(ink.lightness() - ground.lightness()), 128) << name;
      }
      Key(Qt::Key_Escape);
    });
    RunInst();
  }
  QApplication::setPalette(before);
}

TEST_F(SetupForms, GiveAnInstrumentItsNumber) {
  Start();
  bench.line.silent = {2, 3, 4, 5, 6};
  bench.port.answer = [this](const std::string& command) {
    if (command[0] == '8') {
      bench.line.silent = {1, 2, 3, 5, 6};
      return std::string();
    }
    return bench.line.Answer(command);
  };
  const auto steps = [this](int count) {
    for (int step = 0; step < count; ++step) {
      bench.cycle.Tick();
      bench.clock.AdvanceSeconds(0.3);
    }
  };
  Then("TavNum", [&] {
    EXPECT_EQ(Form()->windowTitle(), " assign Tavrel-number");
    EXPECT_EQ(Find("cmd_TavNo_1")->x(), Find("cboTavNo")->x());
    EXPECT_EQ(Find("cmd_TavNo_6")->geometry().right(), Find("cboTavNo")->geometry().right());
    EXPECT_EQ(Find<QComboBox>("cboTavNo")->count(), 0);
    steps(6);
    EXPECT_EQ(Find<QComboBox>("cboTavNo")->itemText(0), "1   ");
    EXPECT_FALSE(Find("cmd_TavNo_1")->isEnabled());
    EXPECT_TRUE(Find("cmd_TavNo_4")->isEnabled());
    EXPECT_TRUE(Find("ComIcon")->isVisible());
    EXPECT_EQ(TipOf("ComIcon"), " no connection ... ");
    EXPECT_EQ(TipOf("cboTavNo"), " actual Tavrel number ");
    EXPECT_EQ(TipOf("cmd_TavNo_6"), " new Tavrel number = 6 ");
    steps(1);
    EXPECT_FALSE(Find("ComIcon")->isVisible());
    EXPECT_NE(TextOf("lbl_Buffer").find("at least for:"), std::string::npos);
    EXPECT_NE(TextOf("lbl_Note").find("direct line"), std::string::npos);
    Find("cmd_TavNo_4")->setFocus();
    Key(Qt::Key_Space);
    EXPECT_FALSE(Find("cboTavNo")->isEnabled());
    steps(8);
    EXPECT_EQ(Find<QComboBox>("cboTavNo")->currentText(), "4   ");
    Key(Qt::Key_Escape);
  });
  RunNum();
  ASSERT_FALSE(bench.dialogs.boxes.empty());
  EXPECT_NE(bench.dialogs.boxes.front().Text.find("row 2:  Oven  (Tavrel 1)"), std::string::npos);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  bench.port.sent.clear();
  bench.cycle.Tick();
  EXPECT_FALSE(bench.port.sent.empty()) << "the sheet goes on";
}

}  // namespace
}  // namespace tavrel
