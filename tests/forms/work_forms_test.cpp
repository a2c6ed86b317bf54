#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QScreen>
#include <algorithm>
#include <array>

#include "main/forms/tavsett.h"
#include "tests/forms/modal_bench.h"
#include "tests/support/form_screens.h"
#include "tests/support/work_bench.h"
#include "work/forms/work_table.h"
#include "work/work_tips.h"

namespace tavrel {
namespace {

// The worksheet's forms on the bench, joined as the program joins them.
class WorkForms : public ModalDeeds, public WorkBench {
 protected:
  WorkForms() {
    bench.screens.on_show = [this](View view) { screens.Run(view); };
    bench.cycle.SetHandlers(screens.Handlers());
  }

  // The worksheet of slot 1, until it closes. The actions that were told run in it.
  void Run() { bench.screens.Show(View::kTavWork); }

  static bool IsDown(const char* name) { return Find<GlyphButton>(name)->IsLatched(); }

  FormScreens screens{bench};
};

TEST_F(WorkForms, ShowTheSlotAndWhatItsInstrumentSays) {
  header.UnitInputName[1].Set("core");
  header.UnitColour[1] = 2;
  Register('Z', 3) = 2;
  Register('W', 3) = 2469;
  Register('Y', 1) = 4567;
  StartProgram();
  Then("TavWork", [this] {
    EXPECT_EQ(Form()->windowTitle(), "Furnace");
    EXPECT_TRUE(Form()->isModal());
    EXPECT_FALSE(IsDown("cmd_Rec_1"));
    EXPECT_FALSE(IsDown("cmd_Rec_2"));
    bench.Run(0.1);
    EXPECT_EQ(TextOf("TavcNo"), "Tavrel-2");
    EXPECT_EQ(TextOf("TavFile"), "m260314a.ovn");
    EXPECT_EQ(TextOf("Actual_1"), "228.4");
    EXPECT_EQ(TextOf("Prod_1"), "core");
    EXPECT_EQ(TextOf("Lbl_setpoint"), "123.5");
    EXPECT_EQ(TextOf("Lbl_rec"), "0.00");
    EXPECT_EQ(TextOf("Lbl_rec_words"), "min   recorded");
    EXPECT_EQ(TextOf("Lbl_sampl"), "10");
    EXPECT_TRUE(IsDown("cmd_Ctrl_0"));
    EXPECT_FALSE(IsDown("cmd_Ctrl_1"));
    EXPECT_TRUE(IsDown("cmd_Rec_2"));
    EXPECT_TRUE(Find("Color_1")->isVisible());
    EXPECT_FALSE(Find("Color_3")->isVisible());
    EXPECT_FALSE(Find("Prod_3")->isEnabled());
    EXPECT_FALSE(Find("CmdOK")->isEnabled());
    EXPECT_FALSE(Find("frProg")->isVisible());
    Key(Qt::Key_Return);
    Click("cmdExit");
  });
  Run();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

// The text of the ledger gets longer while the form is shown.
TEST_F(WorkForms, CutNothingWhenTheLedgerGetsLonger) {
  header.UnitRecOn = 1;
  StartProgram({71, 72, 71, 72, 81, 82});
  Then("TavWork", [this] {
    bench.Run(2);
    const auto is_whole = [](const QWidget& widget) {
      const int least = std::max(widget.minimumSizeHint().height(),
                                 widget.hasHeightForWidth() ? widget.heightForWidth(widget.width())
                                                            : widget.sizeHint().height());
      return widget.height() >= least;
    };
    const int table = Find("Sheet")->width();
    for (int loss = 1; loss <= 3; ++loss) {
      const int before = 3 * loss;
      bench.files.Journals().Note(
          1, "lost", {{"before", before}, {"sets", 0}, {"exact", false}, {"cause", "full"}});
      bench.files.Journals().Note(1, "values",
                                  {{"first", before}, {"last", before}, {"filled", true}});
      ASSERT_TRUE(bench.files.AppendRow(1, std::array<std::int16_t, 2>{91, 92}, 1));
      bench.Run(20);
      QApplication::processEvents();
      for (const char* name : {"cmd_Rec_1", "cmd_New", "Lbl_rec", "Lbl_sampl", "Lbl_Ledger"}) {
        EXPECT_TRUE(is_whole(*Find(name))) << name << ", " << TextOf("Lbl_Ledger");
      }
    }
    EXPECT_GT(Find("Lbl_Ledger")->height(), 2 * Find("Lbl_Ledger")->fontMetrics().height() - 2);
    EXPECT_EQ(Find("Sheet")->width(), table);
    Click("cmdExit");
  });
  Run();
}

TEST_F(WorkForms, LeaveTheWorksheetByEscapeAndShowItAgain) {
  StartProgram();
  Then("TavWork", [] { Key(Qt::Key_Escape); });
  Run();
  const TavWork* first = screens.WorkForm();
  Then("TavWork", [] { Form()->close(); });
  Run();
  EXPECT_EQ(screens.WorkForm(), first);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(WorkForms, SwitchTheControllerByMouseAndKeyboard) {
  StartProgram();
  Then("TavWork", [this] {
    bench.Run(0.1);
    Forget();
    Click("cmd_Ctrl_0");
    EXPECT_TRUE(IsDown("cmd_Ctrl_0"));
    Find("cmd_Ctrl_2")->setFocus();
    Key(Qt::Key_Space);
    EXPECT_TRUE(IsDown("cmd_Ctrl_2"));
    EXPECT_FALSE(IsDown("cmd_Ctrl_0"));
    EXPECT_EQ(Find("cmd_Ctrl_2")->accessibleDescription(), "on");
    Key(Qt::Key_Escape);
  });
  Run();
  EXPECT_EQ(bench.port.sent, (std::vector<std::string>{"Z13=2\r", "Z13=0\r"}));
}

TEST_F(WorkForms, KeepNamesWhenAltComesWithALetterOfNoButton) {
  header.UnitInputName[1].Set("left wall");
  StartProgram();
  Then("TavWork", [this] {
    auto* name = Find<QLineEdit>("Prod_1");
    name->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(name->selectedText(), "left wall");
    QTest::keyClick(name, 't', Qt::AltModifier);
    EXPECT_EQ(Unit().UnitInputName[1].Get(), "left wall");
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(WorkForms, TakeTextsWhileTheUserTypes) {
  header.UnitInputName[2].Set("old");
  StartProgram();
  Then("TavWork", [this] {
    Click("Prod_2");
    QTest::keyClicks(QApplication::focusWidget(), "left wall");
    EXPECT_EQ(Unit().UnitInputName[2].Get(), "left wall");
    Key(Qt::Key_Tab);
    Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "Comments_2");
    QTest::keyClicks(QApplication::focusWidget(), "probe 7, and much more than fits");
    EXPECT_EQ(Unit().UnitInputNote[2].Get(), "probe 7, and much mo");
    Key(Qt::Key_Escape);
  });
  Run();
  EXPECT_TRUE(bench.state.SlotDirty[1]);
}

TEST_F(WorkForms, RecordFromStartToStop) {
  StartProgram();
  Then("TavWork", [this] {
    bench.Run(0.1);
    Click("cmd_Rec_1");
    EXPECT_TRUE(IsDown("cmd_Rec_1"));
    EXPECT_FALSE(IsDown("cmd_Rec_2"));
    Click("cmd_Rec_2");
    EXPECT_TRUE(IsDown("cmd_Rec_2"));
    Key(Qt::Key_Escape);
  });
  Then("TavWait", [this] {
    Key(Qt::Key_Escape);
    Form()->close();
    EXPECT_TRUE(Form()->isVisible());
    EXPECT_EQ(Find<QProgressBar>("prgWait")->value(), 0);
    bench.Run(5.5);
    EXPECT_EQ(Find<QProgressBar>("prgWait")->value(), 60);
    bench.Run(6);
    EXPECT_FALSE(wait_bar.IsOpen());
  });
  Run();
  EXPECT_EQ(FileHeader(kName).UnitRecOn, 0);
  EXPECT_EQ(BoxTexts(), std::vector<std::string>{" |stop acquisition"});
}

TEST_F(WorkForms, BeginANewFileByTheKeyboard) {
  StartProgram({1, 2, 1, 2});
  Then("TavWork", [] {
    Find("cmd_New")->setFocus();
    Key(Qt::Key_Space);
    EXPECT_EQ(TextOf("TavFile"), "m260314b.ovn");
    Key(Qt::Key_Escape);
  });
  Then("TavRec", [] {
    EXPECT_EQ(Form()->windowTitle(), "new  file");
    EXPECT_EQ(Find<QComboBox>("Cbo_Sampl")->currentText(), "10");
    EXPECT_EQ(Find<QComboBox>("Cbo_Sampl")->itemText(0), " 10");
    EXPECT_EQ(TextOf("Lbl_max"), "44.4");
    EXPECT_EQ(TextOf("Lbl_Auto_0"), "2.49");
    QTest::keyClicks(QApplication::focusWidget(), "60");
    EXPECT_EQ(TextOf("Lbl_Auto_0"), "14.9");
    Key(Qt::Key_Return);
  });
  Run();
  EXPECT_EQ(bench.state.RecInterval[1], 60);
}

TEST_F(WorkForms, PickASamplingTimeFromTheList) {
  StartProgram({1, 2, 1, 2});
  Then("TavWork", [] {
    Click("cmd_New");
    Key(Qt::Key_Escape);
  });
  Then("TavRec", [] {
    auto* list = Find<QComboBox>("Cbo_Sampl");
    list->setCurrentIndex(8);
    EXPECT_EQ(list->currentText(), " 3600");
    EXPECT_EQ(TextOf("Lbl_max"), "16000");
    Click("CmdOK");
  });
  Run();
  EXPECT_EQ(bench.state.RecInterval[1], 3600);
}

TEST_F(WorkForms, SetHowARecordingEnds) {
  StartProgram();
  Then("TavWork", [] {
    Click("cmd_SetRec");
    Key(Qt::Key_Escape);
  });
  Then("TavRec", [] {
    EXPECT_EQ(Form()->windowTitle(), "data  acquisition");
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "Txt_Stop");
    EXPECT_EQ(Find<QLineEdit>("Txt_Stop")->selectedText(), "44.4");
    EXPECT_EQ(Find<QComboBox>("Cbo_Func")->itemText(2), " resume acquisition with a new file");
    QTest::keyClicks(QApplication::focusWidget(), "2,5");
    Find<QComboBox>("Cbo_Func")->setCurrentIndex(2);
    Key(Qt::Key_Return);
  });
  Run();
  EXPECT_EQ(Unit().UnitMaxMinutes, 150);
  EXPECT_EQ(Unit().UnitEndAction, 2);
}

TEST_F(WorkForms, SetTheCoordinates) {
  StartProgram();
  Then("TavWork", [] {
    Click("cmd_Coord");
    Click("cmd_Coord");
    Key(Qt::Key_Escape);
  });
  Then("TavCoord", [this] {
    Find("TBox_0")->setFocus();
    QTest::keyClicks(Find("TBox_0"), "70000");
    Key(Qt::Key_Return);
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{"check|Ymax:\n1 ... 30000"});
    Find<QLineEdit>("TBox_0")->selectAll();
    QTest::keyClicks(Find("TBox_0"), "700");
    Find<QComboBox>("CboRes")->setCurrentIndex(1);
    Click("CmdOK");
  });
  Then("TavCoord", [] {
    EXPECT_EQ(TextOf("TBox_0"), "700");
    EXPECT_EQ(Find<QComboBox>("CboRes")->currentText(), "  low");
    Key(Qt::Key_Escape);
  });
  Run();
  EXPECT_EQ(Unit().UnitYmax, 700);
  EXPECT_EQ(Unit().UnitRes, 54);
}

TEST_F(WorkForms, ChooseAColourByMouseAndKeyboard) {
  StartProgram();
  Then("TavWork", [this] {
    Click("Color_2");
    EXPECT_EQ(Unit().UnitColour[2], 9);
    EXPECT_EQ(Find<CurveSampleButton>("Color_2")->Code(), 9);
    QTest::keyClick(Find("Color_1"), Qt::Key_Space);
    EXPECT_EQ(Unit().UnitColour[1], 2);
    Click("Color_1");
    EXPECT_EQ(Unit().UnitColour[1], 2);
    Key(Qt::Key_Escape);
  });
  Then("TavColor", [] {
    QWidget* picture = Find("PicColor");
    const int row = picture->height() / 15;
    QTest::mouseClick(picture, Qt::LeftButton, {}, QPoint(40, 8 * row + row / 2));
  });
  Then("TavColor", [] {
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "PicColor");
    Key(Qt::Key_Home);
    Key(Qt::Key_Down);
    EXPECT_EQ(Find("PicColor")->accessibleName(), "color: light red");
    Key(Qt::Key_Return);
  });
  Then("TavColor", [] { Click("CmdCancel"); });
  Run();
}

// Beside the margins of the field the toolkit keeps two dots on both sides of its text.
int RoomIn(const QLineEdit& edit, int column) {
  return column - edit.textMargins().left() - edit.textMargins().right() - 4;
}

TEST_F(WorkForms, HaveRoomForTheLongestTextsOfAHeader) {
  StartProgram();
  Then("TavWork", [] {
    for (const int input : {1, 7, 15}) {
      for (const char* column : {"Prod", "Comments"}) {
        const auto* edit = Find<QLineEdit>(qPrintable(QString("%1_%2").arg(column).arg(input)));
        const QFontMetrics metrics = edit->fontMetrics();
        const int usual = metrics.horizontalAdvance("Brennkammer Zone 101");
        EXPECT_LE(usual, RoomIn(*edit, edit->width())) << column;
        const int widest = metrics.horizontalAdvance(QString(20, 'W'));
        EXPECT_LE(widest, RoomIn(*edit, WorkTable::TextColumn(metrics, 1280))) << column;
        EXPECT_LE(usual, RoomIn(*edit, WorkTable::TextColumn(metrics, 640))) << column;
      }
    }
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(WorkForms, FitIntoTheScreen) {
  StartProgram();
  Then("TavWork", [] {
    const QSize least = Form()->minimumSizeHint();
    const QFontMetrics metrics = Form()->fontMetrics();
    for (const int screen : {1024, 1280, 1600}) {
      const int wider = 2 * (WorkTable::TextColumn(metrics, screen) -
                             WorkTable::TextColumn(metrics, Form()->screen()->size().width()));
      EXPECT_LE(least.width() + wider, screen);
    }
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(WorkForms, ShowAnAmpersandInTheNameOfAProgram) {
  StartProgram();
  bench.state.ProgRunning[1] = true;
  Unit().UnitProgName.Set("R&D.PRG");
  Then("TavWork", [this] {
    bench.Run(0.1);
    EXPECT_EQ(Find<QGroupBox>("frProg")->title(), " r&&d.prg ");
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(WorkForms, PointToTheEndOfARunningProgram) {
  StartProgram();
  bench.state.ProgRunning[1] = true;
  Unit().UnitProgName.Set("CURE.PRG");
  Then("TavWork", [this] {
    bench.Run(0.1);
    EXPECT_TRUE(Find("frProg")->isVisible());
    EXPECT_TRUE(IsDown("cmd_ProgOn"));
    EXPECT_FALSE(Find("cmd_setCtrl")->isEnabled());
    Click("cmd_Ctrl_1");
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "cmd_ProgOff");
    EXPECT_EQ(bench.events.beeps, 1);
    Click("cmd_ProgOff");
    EXPECT_FALSE(Find("frProg")->isVisible());
    EXPECT_FALSE(IsDown("cmd_ProgOn"));
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(WorkForms, HideWhatAViewedFileDoesNotHave) {
  StartProgram({1, 2, 1, 2});
  bench.state.SlotPath[0] = bench.state.SlotPath[1];
  bench.state.SlotFile[0] = kName;
  bench.files.OpenRecordingFile(0);
  bench.state.SelSlot = 0;
  Then("TavWork", [this] {
    bench.Run(0.1);
    for (const char* name : {"frController", "frProg", "head_1", "Actual_1", "cmd_New", "cmd_Rec_1",
                             "cmd_Rec_2", "cmd_SetRec"}) {
      EXPECT_FALSE(Find(name)->isVisible()) << name;
    }
    EXPECT_TRUE(Find("Lbl_rec")->isVisible());
    EXPECT_EQ(TextOf("Lbl_sampl"), "10");
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(WorkForms, SpeakTheLanguageOfTheHelp) {
  StartProgram();
  Then("TavWork", [] {
    EXPECT_EQ(TipOf("cmd_Rec_1"), " start/resume data acquisition ");
    EXPECT_EQ(TipOf("Lbl_Time"), " time until next program-step ");
    Key(Qt::Key_Escape);
  });
  Run();
  bench.state.Settings.HelpLang = "German";
  Then("TavWork", [] {
    EXPECT_EQ(TipOf("cmd_Rec_1"), " Datenerfassung = ein ");
    EXPECT_EQ(TipOf("Lbl_Time"), " Zeit bis zum nächsten Programmschritt ");
    for (const ToolTip& tip : kWorksheetTips) {
      EXPECT_EQ(TipOf(std::string(tip.Control).c_str()), tip.Text.German) << tip.Control;
    }
    Key(Qt::Key_Escape);
  });
  Run();
}

}  // namespace
}  // namespace tavrel
