#include <QAction>
#include <QPushButton>

#include "tests/forms/modal_bench.h"
#include "tests/support/control_bench.h"
#include "work/forms/tav_ctrl.h"
#include "work/forms/tav_pid.h"
#include "work/forms/tav_prog.h"
#include "work/program_tips.h"

namespace tavrel {
namespace {

// The forms that drive a controller, on a slot with an instrument.
class ControlForms : public ModalBench {
 protected:
  ControlForms() {
    control.Register('H') = 6000;
    control.Register('M') = 5000;
    control.Register('I') = 37;
    control.Register('W') = 4000;
    control.Register('G') = 100;
    control.Register('P') = 2000;
    control.Register('N') = 900;
    control.Register('V') = 160;
    control.Register('Z') = 2;
    control.bench.screens.on_show = [this](View view) {
      if (view == View::kTavPid) {
        RunPid();
      }
    };
  }
  void RunCtrl() {
    control.bench.controller_settings.Open();
    control.Count();
    TavCtrl(control.bench.controller_settings).Run();
  }
  void RunPid() {
    control.bench.pid_parameters.Open();
    control.Count();
    TavPid(control.bench.pid_parameters).Run();
  }
  void RunProg() {
    control.bench.program_editor.Open();
    TavProg(control.bench.program_editor).Run();
  }
  static void Type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  static std::string Focus() { return QApplication::focusWidget()->objectName().toStdString(); }

  ControlBench control;
};

TEST_F(ControlForms, ShowTheSettingsOfTheController) {
  Then("TavCtrl", [] {
    EXPECT_EQ(Form()->windowTitle(), " Controller");
    EXPECT_EQ(TextOf("TBox_0"), "300.0");
    EXPECT_EQ(TextOf("TBox_1"), "250.0");
    EXPECT_EQ(TextOf("TBox_2"), "22.20");
    EXPECT_EQ(TextOf("TBox_3"), "0.37");
    EXPECT_EQ(TextOf("TBox_4"), "200.0");
    EXPECT_EQ(TextOf("TBox_5"), "5.0");
    EXPECT_EQ(TextOf("Label_2"), "increment     °C / min");
    EXPECT_EQ(TextOf("Label_3"), "increment     °C / sec");
    Key(Qt::Key_Escape);
  });
  RunCtrl();
  EXPECT_TRUE(control.Sent().empty());
  EXPECT_EQ(control.bench.state.ActiveView, View::kTavWork);
}

TEST_F(ControlForms, SetTheControllerByTheKeyboardAlone) {
  Then("TavCtrl", [] {
    EXPECT_EQ(Focus(), "TBox_0");
    Type("500");
    Key(Qt::Key_Tab);
    Type("400");
    Key(Qt::Key_Tab);
    Type("30");
    Key(Qt::Key_Tab);
    EXPECT_EQ(TextOf("TBox_3"), "0.50");
    Key(Qt::Key_Tab);
    Type("150,5");
    Key(Qt::Key_Return);
  });
  RunCtrl();
  EXPECT_EQ(control.Sent(),
            (std::vector<std::string>{"H22=2710\r", "M22=1F40\r", "I22=32\r", "W22=BC2\r"}));
}

TEST_F(ControlForms, LeadTheTabKeyThroughTheSettings) {
  QStringList way;
  Then("TavCtrl", [&way] {
    for (int step = 0; step < 9; ++step) {
      way << QApplication::focusWidget()->objectName();
      Key(Qt::Key_Tab);
    }
    Key(Qt::Key_Escape);
  });
  RunCtrl();
  EXPECT_EQ(way, QStringList({"TBox_0", "TBox_1", "TBox_2", "TBox_3", "TBox_4", "TBox_5", "cmdPID",
                              "CmdOK", "CmdCancel"}));
}

TEST_F(ControlForms, AreLeftByTheirCancelButtonWithoutAChange) {
  control.bench.state.Settings.HelpLang = "German";
  Then("TavCtrl", [] {
    Type("1");
    EXPECT_EQ(TextOf("CmdCancel"), "&Abbrechen");
    Click("CmdCancel");
  });
  RunCtrl();
  EXPECT_TRUE(control.Sent().empty());
}

// The limits of a temperature follow the other boxes while they are typed.
TEST_F(ControlForms, TellTheLimitsOfANumberBeforeItIsRefused) {
  Then("TavCtrl", [] {
    EXPECT_EQ(TipOf("TBox_3"), "0 ... 1");
    EXPECT_EQ(TipOf("TBox_2"), "0 ... 60");
    Find("TBox_1")->setFocus();
    Type("420");
    EXPECT_EQ(TipOf("TBox_0"), "430 ... 1100");
    Find("TBox_5")->setFocus();
    Type("-20");
    EXPECT_TRUE(TipOf("TBox_4").starts_with("-10 ... ")) << TipOf("TBox_4");
    Key(Qt::Key_Escape);
  });
  RunCtrl();
}

TEST_F(ControlForms, TakeNoLettersForNumbers) {
  Then("TavCtrl", [] {
    Type("1a2b.,5-e?");
    EXPECT_EQ(TextOf("TBox_0"), "12.5");
    Key(Qt::Key_Escape);
  });
  RunCtrl();
}

TEST_F(ControlForms, LeadTheUserToARefusedValue) {
  Then("TavCtrl", [] {
    Find("TBox_4")->setFocus();
    Type("2000");
    Click("CmdOK");
    EXPECT_TRUE(Form()->isVisible());
    EXPECT_EQ(Focus(), "TBox_4");
    EXPECT_EQ(Find<QLineEdit>("TBox_4")->selectedText(), "2000");
    Type("210");
    Click("CmdOK");
  });
  RunCtrl();
  EXPECT_EQ(control.LastBox(), "check: setpoint:\n15 ... 290");
  EXPECT_EQ(control.Register('W'), 4200);
}

TEST_F(ControlForms, ShowQuestionMarksForASilentInstrument) {
  control.bench.line.silent = {ControlBench::kInet};
  Then("TavCtrl", [] {
    for (int index = 0; index < kControllerBoxes; ++index) {
      EXPECT_EQ(TextOf(("TBox_" + std::to_string(index)).c_str()), "?");
    }
    Click("CmdOK");
    EXPECT_TRUE(Form()->isVisible());
    Find("TBox_0")->setFocus();
    Type("5");
    EXPECT_EQ(TextOf("TBox_0"), "5") << "typing replaces the question mark";
    Form()->close();
  });
  RunCtrl();
  EXPECT_EQ(control.LastBox(), "check: Tavrel connected ?");
}

TEST_F(ControlForms, OpenThePidParametersAndComeBack) {
  Then("TavCtrl", [] { Click("cmdPID"); });
  Then("TavPid", [this] {
    EXPECT_EQ(control.bench.state.ActiveView, View::kTavPid);
    EXPECT_EQ(Form()->windowTitle(), " PID  -  Parameters");
    EXPECT_EQ(TextOf("Label_1"), "P:   proportional   band");
    EXPECT_EQ(TextOf("TBox_1"), "100.0");
    Key(Qt::Key_Escape);
  });
  Then("TavCtrl", [this] {
    EXPECT_EQ(control.bench.state.ActiveView, View::kTavCtrl);
    Key(Qt::Key_Escape);
  });
  RunCtrl();
}

TEST_F(ControlForms, GreyThePidButtonWithoutItsForm) {
  control.bench.screens.built.clear();
  Then("TavCtrl", [] {
    EXPECT_FALSE(Find("cmdPID")->isEnabled());
    Key(Qt::Key_Escape);
  });
  RunCtrl();
}

TEST_F(ControlForms, FillThePidBoxesFromTheListByMouseAndKeys) {
  Then("TavPid", [this] {
    EXPECT_EQ(Focus(), "TBox_1");
    auto* list = Find<QComboBox>("Cbo");
    EXPECT_EQ(list->currentText(), "   ---");
    EXPECT_EQ(list->count(), 6);
    list->setFocus();
    Key(Qt::Key_End);
    EXPECT_EQ(list->currentText(), "   Micro-autoclave");
    EXPECT_EQ(TextOf("TBox_1"), "90.0");
    EXPECT_EQ(TextOf("TBox_4"), "1300");
    Key(Qt::Key_Home);
    EXPECT_EQ(TextOf("TBox_4"), "1300");
    EXPECT_TRUE(control.Sent().empty());
    Click("CmdOK");
  });
  RunPid();
  EXPECT_EQ(control.LastBox(), "controller: new parameters");
  EXPECT_EQ(control.Sent(), (std::vector<std::string>{"Z22?", "Z22=0\r", "P22=708\r", "N22=41A\r",
                                                      "V22=B4\r", "T22=514\r", "Z22=2\r"}));
}

TEST_F(ControlForms, LeadTheUserToARefusedPidParameter) {
  Then("TavPid", [] {
    Type("0");
    Key(Qt::Key_Return);
    EXPECT_TRUE(Form()->isVisible());
    EXPECT_EQ(Focus(), "TBox_1");
    Form()->close();
  });
  RunPid();
  EXPECT_EQ(control.LastBox(), "check: proportional:\n1 ... 500");
}

class ProgramForm : public ControlForms {
 protected:
  static ProgramGrid* Grid() { return Find<ProgramGrid>("Grid"); }
  static std::string Cell(int row, int column) {
    return Grid()->item(row - 1, column)->text().toStdString();
  }
  static void ClickCell(int row, int column) {
    const QRect place = Grid()->visualRect(Grid()->model()->index(row - 1, column));
    QTest::mouseClick(Grid()->viewport(), Qt::LeftButton, Qt::NoModifier, place.center());
  }
};

TEST_F(ProgramForm, ShowsAnEmptyProgram) {
  Then("TavProg", [] {
    EXPECT_EQ(Form()->windowTitle(), " Controller  program");
    EXPECT_EQ(Grid()->rowCount(), 50);
    QStringList heads;
    for (int column = 0; column < 5; ++column) {
      heads << Grid()->horizontalHeaderItem(column)->text();
    }
    EXPECT_EQ(heads, QStringList({"step\n", "time\n[ min ]", "setpoint\n[ °C ]",
                                  "controller\n[ status ]", "increment\n[ °C / sec ]"}));
    EXPECT_EQ(Cell(50, 0), "50");
    EXPECT_FALSE(Find("lb_Changed")->isVisible());
    Key(Qt::Key_Escape);
  });
  RunProg();
  EXPECT_EQ(control.bench.state.ActiveView, View::kTavWork);
}

TEST_F(ProgramForm, IsFilledByTheMouseAndSaved) {
  control.bench.dialogs.chosen_file = control.bench.home.File("A.PRG");
  Then("TavProg", [] {
    ClickCell(1, kTimeColumn);
    EXPECT_EQ(Focus(), "txtEdit");
    Type("30");
    ClickCell(1, kSetpointColumn);
    EXPECT_EQ(Cell(1, kTimeColumn), "30");
    Type("200,05");
    ClickCell(1, kStatusColumn);
    EXPECT_TRUE(Find("Cstat")->isVisible());
    EXPECT_FALSE(Find("txtEdit")->isVisible());
    Find<QComboBox>("Cstat")->setCurrentIndex(2);
    ClickCell(1, kStepColumn);
    EXPECT_EQ(Cell(1, kStatusColumn), "iso");
    EXPECT_EQ(Find("profile")->accessibleDescription().toStdString(), "200.05 °C,  30 min");
    EXPECT_FALSE(Find("Cstat")->isVisible());
    EXPECT_TRUE(Find("lb_Changed")->isVisible());
    Click("cmdSave");
    EXPECT_EQ(Form()->windowTitle(), " a.prg");
    EXPECT_FALSE(Find("lb_Changed")->isVisible());
    Key(Qt::Key_Escape);
  });
  RunProg();
  EXPECT_EQ(control.bench.home.Read("A.PRG"), ProgramBytes({{2, -1, 4001, 30}}));
}

TEST_F(ProgramForm, IsFilledByTheKeyboardAlone) {
  control.bench.dialogs.chosen_file = control.bench.home.File("A.PRG");
  Then("TavProg", [] {
    EXPECT_EQ(Focus(), "Grid");
    Type("3");
    EXPECT_EQ(Focus(), "txtEdit");
    Type("0");
    Key(Qt::Key_Tab);
    Type("200");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "Cstat");
    Key(Qt::Key_End);
    Key(Qt::Key_Tab);
    Type("0.5");
    Key(Qt::Key_Tab);
    Type("10");
    Key(Qt::Key_Return);
    EXPECT_EQ(Cell(2, kTimeColumn), "10");
    Key(Qt::Key_Up);
    EXPECT_EQ(TextOf("txtEdit"), "10");
    Type("99999");
    Key(Qt::Key_Escape);
    EXPECT_EQ(Focus(), "Grid");
    EXPECT_EQ(Cell(2, kTimeColumn), "10");
    EXPECT_EQ(Cell(1, kStatusColumn), "dyn");
    EXPECT_EQ(Cell(1, kIncrementColumn), "0.50");
    Key(Qt::Key_Return);
    Type("");
    Key(Qt::Key_Delete);
    Key(Qt::Key_Return);
    EXPECT_EQ(Cell(2, kTimeColumn), "");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Form()->windowTitle(), " a.prg");
    Key(Qt::Key_Escape);
    if (Form() != nullptr) {
      Key(Qt::Key_Escape);
    }
  });
  RunProg();
  EXPECT_EQ(control.bench.home.Read("A.PRG"), ProgramBytes({{3, 50, 4000, 30}}));
}

TEST_F(ProgramForm, KeepsTheEditOnItsCellWhileTheTableScrolls) {
  Then("TavProg", [] {
    ClickCell(3, kTimeColumn);
    Grid()->scrollToBottom();
    const QRect place = Grid()->visualRect(Grid()->model()->index(2, kTimeColumn));
    EXPECT_EQ(Find("txtEdit")->geometry(), place);
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  RunProg();
}

TEST_F(ProgramForm, DoesNotChangeAStateByTheWheel) {
  Then("TavProg", [] {
    ClickCell(1, kStatusColumn);
    auto* list = Find<QComboBox>("Cstat");
    const QPointF place = list->rect().center();
    QWheelEvent wheel(place, list->mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(list, &wheel);
    EXPECT_EQ(list->currentIndex(), 0);
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  RunProg();
}

TEST_F(ProgramForm, ScrollsToTheCellInEdit) {
  Then("TavProg", [] {
    ClickCell(1, kTimeColumn);
    for (int row = 1; row < 50; ++row) {
      Key(Qt::Key_Return);
    }
    const QRect seen = Grid()->viewport()->rect();
    EXPECT_TRUE(seen.contains(Find("txtEdit")->geometry().center()));
    EXPECT_EQ(Grid()->currentRow(), 49);
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  RunProg();
}

TEST_F(ProgramForm, KeepsARefusedValueInEdit) {
  Then("TavProg", [] {
    ClickCell(1, kSetpointColumn);
    Type("501");
    ClickCell(4, kTimeColumn);
    EXPECT_EQ(Focus(), "txtEdit");
    EXPECT_EQ(Grid()->currentRow(), 0);
    EXPECT_EQ(Grid()->currentColumn(), kSetpointColumn);
    EXPECT_EQ(Find<QLineEdit>("txtEdit")->selectedText(), "501");
    Type("500");
    Key(Qt::Key_Return);
    EXPECT_EQ(Cell(1, kSetpointColumn), "500.0");
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  control.bench.dialogs.yes = false;
  RunProg();
  EXPECT_EQ(control.bench.dialogs.boxes.front().Text, "setpoint:\n0 ... 500");
}

TEST_F(ProgramForm, StaysOpenIfSavingIsCancelled) {
  Then("TavProg", [this] {
    ClickCell(1, kTimeColumn);
    Type("5");
    ClickCell(1, kStepColumn);
    Form()->close();
    EXPECT_TRUE(Form()->isVisible());
    EXPECT_EQ(control.LastBox(), "check of program: missing: status on row 1");
    control.bench.dialogs.yes = false;
    Form()->close();
  });
  RunProg();
}

TEST_F(ProgramForm, OpensAProgramByItsMenu) {
  control.bench.home.Write("B.PRG", ProgramBytes({{3, 25, 8000, 60}, {0, -1, 400, 1}}));
  control.bench.dialogs.chosen_file = control.bench.home.File("B.PRG");
  Then("TavProg", [] {
    Form()->findChild<QAction*>("MnuOpen")->trigger();
    EXPECT_EQ(Form()->windowTitle(), " b.prg");
    EXPECT_EQ(Cell(1, kTimeColumn), "60");
    EXPECT_EQ(Cell(1, kIncrementColumn), "0.25");
    EXPECT_EQ(Cell(2, kStatusColumn), "off");
    EXPECT_EQ(Grid()->item(1, kStatusColumn)->background().color(), QColor(0xFF, 0xE0, 0xC0));
    Form()->findChild<QAction*>("MnuNew")->trigger();
    EXPECT_EQ(Form()->windowTitle(), " new program");
    EXPECT_EQ(Cell(1, kTimeColumn), "");
    Key(Qt::Key_Escape);
  });
  RunProg();
}

TEST_F(ProgramForm, ShowsTheValueOfTheCurrentCellInItsColour) {
  control.bench.home.Write("B.PRG", ProgramBytes({{3, 25, 8000, 60}, {0, -1, 400, 1}}));
  control.bench.dialogs.chosen_file = control.bench.home.File("B.PRG");
  Then("TavProg", [] {
    Click("cmdOpen");
    EXPECT_EQ(Grid()->currentRow(), 0);
    EXPECT_EQ(Grid()->currentColumn(), kTimeColumn);
    const QRect place = Grid()->visualRect(Grid()->model()->index(0, kTimeColumn));
    const QImage picture = Grid()->viewport()->grab(place.adjusted(3, 3, -3, -3)).toImage();
    int paper = 0;
    int ink = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const QColor pixel = picture.pixelColor(x, y);
        paper += pixel == QColor(0xFF, 0xFF, 0xC0) ? 1 : 0;
        ink += pixel.lightness() < 100 ? 1 : 0;
      }
    }
    EXPECT_GT(paper, picture.width() * picture.height() / 2);
    EXPECT_GT(ink, 10);
    Key(Qt::Key_Escape);
  });
  RunProg();
}

TEST_F(ProgramForm, ShowsItsTipsInBothLanguages) {
  for (const char* language : {"English", "German"}) {
    control.bench.state.Settings.HelpLang = language;
    Then("TavProg", [language] {
      for (const ToolTip& tip : kProgramTips) {
        EXPECT_EQ(TipOf(tip.Control.data()), tip.Text.In(LanguageOf(language)));
      }
      Key(Qt::Key_Escape);
    });
    RunProg();
  }
}

TEST_F(ProgramForm, NamesEveryControlForThoseWhoDoNotSeeIt) {
  Then("TavProg", [] {
    for (const char* name : {"cmdNew", "cmdOpen", "cmdSave", "Grid", "txtEdit", "Cstat"}) {
      EXPECT_FALSE(Find(name)->accessibleName().isEmpty()) << name;
    }
    Key(Qt::Key_Escape);
  });
  RunProg();
}

}  // namespace
}  // namespace tavrel
