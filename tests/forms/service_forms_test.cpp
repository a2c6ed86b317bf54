#include <QAccessible>
#include <QHeaderView>
#include <QProgressBar>
#include <QScrollBar>
#include <algorithm>

#include "main/main_menu.h"
#include "service/forms/register_sheet_form.h"
#include "tests/forms/modal_bench.h"
#include "tests/support/bench_program.h"
#include "tests/support/form_screens.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

constexpr int kHex = 1;
constexpr int kDec = 2;

// The browsers of registers, driven by mouse and keys; a simulated line answers at once.
class BrowserForms : public ModalDeeds {
 protected:
  void Start(const char* language = "English") {
    bench.state.Settings.CommPort = "----";
    bench.state.Settings.HelpLang = language;
    bench.Start();
    bench.state.ActiveInet = 2;
  }
  void Turns(int count) {
    for (int turn = 0; turn < count; ++turn) {
      bench.cycle.Tick();
      bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
    }
  }
  static RegisterGrid* Grid() { return Find<RegisterGrid>("Grid"); }
  static QModelIndex At(int row, int column) { return Grid()->model()->index(row, column); }
  static std::string Cell(int row, int column) {
    return At(row, column).data().toString().toStdString();
  }
  static void ClickCell(int row, int column) {
    Grid()->scrollTo(At(row, column));
    QTest::mouseClick(Grid()->viewport(), Qt::LeftButton, {},
                      Grid()->visualRect(At(row, column)).center());
  }
  static CellEdit* TxtEdit() { return Find<CellEdit>("txtEdit"); }
  static std::string Focus() {
    QWidget* focus = QApplication::focusWidget();
    return focus == nullptr ? "" : focus->objectName().toStdString();
  }
  static void Type(const char* text) { QTest::keyClicks(QApplication::focusWidget(), text); }

  BenchProgram bench;
  FormScreens screens{bench};
};

TEST_F(BrowserForms, StandInTheMenu) {
  for (const char* control : {"MnuVariables", "MnuRegisters"}) {
    const auto entry = std::find_if(kMainMenu.begin(), kMainMenu.end(),
                                    [&](const MenuEntry& each) { return each.Control == control; });
    ASSERT_NE(entry, kMainMenu.end());
    EXPECT_TRUE(screens.Has(entry->Opens)) << control;
    EXPECT_TRUE(entry->HidesCommands);
    EXPECT_FALSE(entry->StopsCycle) << "the recordings go on";
  }
}

TEST_F(BrowserForms, ShowAllRegistersAndHowFarTheReadingIs) {
  Start();
  Then("ALL_RAM", [&] {
    EXPECT_EQ(Form()->windowTitle(), " Tavrel-2   (320)");
    EXPECT_EQ(Grid()->model()->rowCount(), 320);
    EXPECT_EQ(Cell(0, 0), "G00");
    EXPECT_EQ(Cell(0, kHex), "");
    EXPECT_EQ(Cell(1, 3), " (1) lower limit");
    EXPECT_EQ(TextOf("Cnt"), "");
    EXPECT_TRUE(Find("Progress")->isVisible());
    Turns(100);
    EXPECT_EQ(TextOf("Cnt"), "99");
    EXPECT_EQ(Find<QProgressBar>("Progress")->value(), 100);
    EXPECT_EQ(Find<QProgressBar>("Progress")->maximum(), 320);
    EXPECT_EQ(Cell(0, kHex), "");
    Turns(220);
    EXPECT_EQ(TextOf("Cnt"), "");
    EXPECT_FALSE(Find("Cnt")->isVisible());
    EXPECT_FALSE(Find("Progress")->isVisible());
    EXPECT_EQ(Cell(319, kHex), "0");
    EXPECT_EQ(Cell(319, kDec), "0");
    Click("CmdRefresh");
    EXPECT_TRUE(Find("Cnt")->isVisible());
    EXPECT_FALSE(Find("ComIcon")->isVisible());
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRam);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(BrowserForms, EditByMouseAndShowWhatWasReadBack) {
  Start();
  Then("ALL_RAM", [&] {
    Turns(320);
    ClickCell(258, kDec);  // W02
    ASSERT_TRUE(TxtEdit()->isVisible());
    EXPECT_EQ(Focus(), "txtEdit");
    EXPECT_EQ(TxtEdit()->text(), "0");
    EXPECT_EQ(TxtEdit()->selectedText(), "0");
    const QRect cell = Grid()->visualRect(At(258, kDec));
    EXPECT_EQ(TxtEdit()->geometry(),
              QRect(cell.left() + 1, cell.top() + 1, cell.width() - 5, cell.height() - 2));
    Type("-2");
    Key(Qt::Key_Return);
    EXPECT_FALSE(TxtEdit()->isVisible());
    EXPECT_EQ(TxtEdit()->text(), "");
    EXPECT_EQ(Focus(), "Grid");
    EXPECT_EQ(Cell(258, kHex), "FFFE");
    EXPECT_EQ(Cell(258, kDec), "-2");
    ClickCell(258, 3);
    EXPECT_FALSE(TxtEdit()->isVisible());
    ClickCell(259, kHex);
    EXPECT_TRUE(TxtEdit()->isVisible());
    QTest::mouseClick(Grid()->horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(10, 5));
    EXPECT_FALSE(TxtEdit()->isVisible());
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRam);
}

TEST_F(BrowserForms, AreDrivenByTheKeyboardAlone) {
  Start();
  Then("ALL_RAM", [&] {
    Turns(320);
    EXPECT_EQ(Focus(), "Grid");
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right}) {
      Key(key);
    }
    EXPECT_EQ(Grid()->currentIndex(), At(2, kDec));
    Key(Qt::Key_F2);
    ASSERT_TRUE(TxtEdit()->isVisible());
    EXPECT_EQ(TxtEdit()->accessibleName(), "G02 dec");
    Type("12");
    Key(Qt::Key_Down);
    EXPECT_EQ(Grid()->currentIndex(), At(2, kDec)) << "the edit has the keyboard";
    Key(Qt::Key_Escape);
    EXPECT_FALSE(TxtEdit()->isVisible());
    EXPECT_EQ(Cell(2, kDec), "0");
    Key(Qt::Key_Return);
    Type("12");
    Key(Qt::Key_Enter);
    EXPECT_EQ(Cell(2, kDec), "12");
    EXPECT_EQ(Cell(2, kHex), "C");
    Key(Qt::Key_F5);
    EXPECT_TRUE(WaitUntil([] { return Find("Progress")->isVisible(); }));
    Turns(320);
    EXPECT_FALSE(Find("Progress")->isVisible());
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "CmdRefresh");
    Key(Qt::Key_Space);
    EXPECT_TRUE(Find("Progress")->isVisible());
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRam);
}

TEST_F(BrowserForms, KeepAWrongTextSelectedForCorrection) {
  Start();
  Then("ALL_RAM", [&] {
    Turns(320);
    ClickCell(3, kDec);
    Type("32768");
    Key(Qt::Key_Return);
    EXPECT_EQ(bench.dialogs.boxes.back().Text, "Input data ?");
    ASSERT_TRUE(TxtEdit()->isVisible());
    EXPECT_EQ(TxtEdit()->selectedText(), "32768");
    EXPECT_EQ(Focus(), "txtEdit");
    Type("32767");
    Key(Qt::Key_Tab);
    EXPECT_TRUE(TxtEdit()->isVisible()) << "it waits";
    Key(Qt::Key_Return);
    EXPECT_FALSE(TxtEdit()->isVisible());
    EXPECT_EQ(Cell(3, kHex), "7FFF");
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRam);
}

TEST_F(BrowserForms, MoveTheEditWithItsCell) {
  Start();
  Then("ALL_RAM", [&] {
    Turns(320);
    ClickCell(5, kHex);
    const int before = TxtEdit()->y();
    Grid()->verticalScrollBar()->setValue(40);
    EXPECT_EQ(TxtEdit()->y(), before - 40);
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRam);
}

TEST_F(BrowserForms, BeepBeforeAllValuesHaveCome) {
  Start();
  Then("ALL_RAM", [&] {
    Turns(10);
    ClickCell(3, kDec);
    Key(Qt::Key_F2);
    EXPECT_EQ(bench.events.beeps, 2);
    EXPECT_FALSE(TxtEdit()->isVisible());
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRam);
}

TEST_F(BrowserForms, CloseByTheCloseBoxInTheMiddleOfAnEdit) {
  Start();
  Then("ALL_RAM", [&] {
    Turns(320);
    ClickCell(3, kDec);
    Form()->close();
  });
  screens.Run(View::kAllRam);
  EXPECT_FALSE(bench.variable_browser.IsOpen());
  EXPECT_FALSE(bench.variable_browser.IsEditing());
}

TEST_F(BrowserForms, TellTheirCellsToAScreenReader) {
  Start();
  Then("ALL_RAM", [&] {
    Turns(320);
    QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(Grid());
    ASSERT_NE(grid, nullptr);
    ASSERT_NE(grid->tableInterface(), nullptr);
    EXPECT_EQ(grid->text(QAccessible::Name), "registers");
    const auto said = [&](int row, int column) {
      return grid->tableInterface()->cellAt(row, column)->text(QAccessible::Name).toStdString();
    };
    EXPECT_EQ(said(1, 0), "G01");
    EXPECT_EQ(said(1, kHex), "G01 hex: 0");
    EXPECT_EQ(said(1, 3), "G01 designation: (1) lower limit");
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRam);
}

TEST_F(BrowserForms, HaveTheirTipsInBothLanguages) {
  for (const bool is_german : {false, true}) {
    Start(is_german ? "German" : "English");
    for (const auto& [view, name] :
         {std::pair{View::kAllRam, "ALL_RAM"}, std::pair{View::kAllRegs, "ALL_REGS"}}) {
      Then(name, [&] {
        EXPECT_EQ(TipOf("CmdRefresh"), is_german ? " neu lesen " : " refresh ");
        EXPECT_EQ(TipOf("ComIcon"), is_german ? " keine Verbindung " : " no connection ... ");
        EXPECT_EQ(Find("Progress")->accessibleName(),
                  is_german ? "gelesene Register" : "registers read");
        Key(Qt::Key_Escape);
      });
      screens.Run(view);
    }
  }
}

TEST_F(BrowserForms, ColourTheAddressesInGroupsOfSixteen) {
  Start();
  Then("ALL_RAM", [&] {
    const auto ground = [&](int row, int column) {
      return At(row, column).data(Qt::BackgroundRole).value<QBrush>().color();
    };
    EXPECT_EQ(ground(0, 0), QColor(0xFF, 0xE0, 0xC0));
    EXPECT_EQ(ground(15, 0), QColor(0xFF, 0xE0, 0xC0));
    EXPECT_EQ(ground(16, 0), QColor(0xFF, 0xFF, 0xC0));
    EXPECT_EQ(ground(32, 0), QColor(0xFF, 0xE0, 0xC0));
    EXPECT_FALSE(At(0, kHex).data(Qt::BackgroundRole).isValid()) << "the colour of the sheet";
    EXPECT_TRUE(At(0, 3).data(Qt::BackgroundRole).isValid());
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRam);
}

TEST_F(BrowserForms, ShowThePortsBitByBit) {
  Start();
  Then("ALL_REGS", [&] {
    EXPECT_EQ(Form()->windowTitle(), " Tavrel-2  /  Registers of HD647180");
    EXPECT_EQ(Grid()->currentIndex(), At(0, 2)) << "ready for the keyboard";
    Turns(128);
    EXPECT_EQ(Cell(4, 0), "04");
    EXPECT_EQ(Cell(4, 1), "STAT0");
    ClickCell(4, 2);
    Type("81");
    Key(Qt::Key_Return);
    EXPECT_EQ(Cell(4, 2), "81");
    EXPECT_EQ(Cell(4, 3), " 1  0  0  0     0  0  0  1 ");
    const int room = Grid()->columnWidth(3);
    EXPECT_GT(room, Grid()->fontMetrics().horizontalAdvance(At(4, 3).data().toString()) + 8);
    EXPECT_EQ(Grid()->model()->headerData(3, Qt::Horizontal).toString(),
              " 7  6  5  4     3  2  1  0");
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRegs);
}

TEST_F(BrowserForms, ShowWhatTheInstrumentHasNotAcknowledged) {
  bench.state.Settings.CommPort = "COM1";
  bench.Start();
  Then("ALL_RAM", [&] {
    for (int turn = 0; turn < 400 && !bench.variable_browser.IsLoaded(); ++turn) {
      Turns(1);
    }
    bench.line.silent = {1};
    ClickCell(3, kDec);
    Type("5");
    Key(Qt::Key_Return);
    EXPECT_FALSE(TxtEdit()->isVisible());
    EXPECT_EQ(TextOf("lbl_Note"), "G03:  not acknowledged, it is read again");
    EXPECT_FALSE(Find("ComIcon")->isVisible());
    Turns(20);
    EXPECT_TRUE(Find("ComIcon")->isVisible());
    bench.line.silent = {};
    Turns(20);
    EXPECT_FALSE(Find("ComIcon")->isVisible());
    EXPECT_EQ(TextOf("lbl_Note"), "");
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllRam);
}

}  // namespace
}  // namespace tavrel
