#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QRadioButton>

#include "service/forms/all_term.h"
#include "service/forms/sp_tavhs.h"
#include "tests/forms/modal_bench.h"
#include "tests/support/bench_program.h"
#include "tests/support/form_screens.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;

// The forms of the outputs and of the terminal, driven by mouse and keys.
class OutputForms : public ModalDeeds {
 protected:
  void Start(const char* language = "English") {
    bench.state.Settings.HelpLang = language;
    bench.Start();
    bench.cycle.SetHandlers(screens.Handlers());
    bench.state.ActiveInet = 3;
  }
  void Turns(int count) {
    for (int turn = 0; turn < count; ++turn) {
      bench.cycle.Tick();
      bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
    }
  }
  std::int16_t& Register(char letter, int ctrl) { return bench.line.registers[{3, letter, ctrl}]; }
  static Lamp* LampOf(int ctrl, int output) {
    return Find<Lamp>(("LedOn" + std::to_string(ctrl) + "_" + std::to_string(output)).c_str());
  }
  static std::string Spoken(const char* name) { return Find(name)->accessibleName().toStdString(); }
  static std::string Focus() {
    QWidget* focus = QApplication::focusWidget();
    return focus == nullptr ? "" : focus->objectName().toStdString();
  }

  BenchProgram bench;
  FormScreens screens{bench};
};

TEST_F(OutputForms, SwitchOutputsByKeyboardAlone) {
  Start();
  Then("SP_TavHS", [this] {
    EXPECT_EQ(Form()->windowTitle(), " Test of Outputs");
    EXPECT_EQ(TextOf("LblInstrument"), "Tavrel-3");
    EXPECT_EQ(Focus(), "Opt1_0");
    EXPECT_EQ(LampOf(2, 1)->Shown(), Lamp::State::kUnknown);
    Turns(60);
    EXPECT_EQ(LampOf(2, 1)->Shown(), Lamp::State::kOff);
    EXPECT_EQ(Find<Lamp>("LedOnW")->Shown(), Lamp::State::kOn);
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "Opt2_0");
    Key(Qt::Key_Down);
    EXPECT_EQ(Focus(), "Opt2_1");
    Turns(40);
    EXPECT_EQ(LampOf(2, 1)->Shown(), Lamp::State::kOn);
    EXPECT_EQ(LampOf(2, 2)->Shown(), Lamp::State::kOff);
    EXPECT_EQ(Spoken("LedOn2_1"), "lamp 2 Heater on");
    EXPECT_EQ(Spoken("Opt2_1"), "output 2 Heater");
    EXPECT_EQ(Register('U', 2), 100);
    Key(Qt::Key_Down);
    Turns(40);
    EXPECT_EQ(LampOf(2, 2)->Shown(), Lamp::State::kOn);
    EXPECT_EQ(Register('Z', 2), 5);
    EXPECT_EQ(TextOf("lbWait"), "");
    Key(Qt::Key_Escape);
    EXPECT_TRUE(Form()->isVisible()) << "the closing steps come first";
    Turns(3);
    EXPECT_EQ(TextOf("lbWait"), "Please wait ...");
    Key(Qt::Key_Escape);
    Turns(30);
  });
  screens.Run(View::kSpTavHs);
  EXPECT_EQ(Register('Z', 2), 0);
  EXPECT_EQ(Register('U', 2), 0);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  EXPECT_FALSE(bench.state.IsHeld(3, 2));
}

TEST_F(OutputForms, CloseTheOutputsByTheCloseBox) {
  Start();
  Then("SP_TavHS", [this] {
    Turns(60);
    Click("Opt4_1");
    Turns(40);
    EXPECT_EQ(Register('Q', 4), 100);
    Form()->close();
    EXPECT_TRUE(Form()->isVisible());
    Click("Opt4_2");
    EXPECT_FALSE(Find<QRadioButton>("Opt4_2")->isChecked()) << "no option counts any more";
    Turns(40);
  });
  screens.Run(View::kSpTavHs);
  EXPECT_EQ(Register('Q', 4), 0);
  EXPECT_EQ(Register('Z', 4), 0);
}

TEST_F(OutputForms, TellTheLampsApartWithoutColour) {
  Lamp lamp("lamp", "lamp", nullptr);
  lamp.resize(lamp.sizeHint());
  std::vector<QImage> pictures;
  for (const Lamp::State state : {Lamp::State::kUnknown, Lamp::State::kOff, Lamp::State::kOn}) {
    lamp.Show(state);
    pictures.push_back(lamp.grab().toImage().convertToFormat(QImage::Format_Grayscale8));
  }
  EXPECT_NE(pictures[0], pictures[1]);
  EXPECT_NE(pictures[1], pictures[2]);
  EXPECT_NE(pictures[0], pictures[2]);
}

// The form polls on a timer of its own, while the cycle stands still.
TEST_F(OutputForms, TypeCommandsIntoTheTerminal) {
  Start();
  Register('Y', 1) = 250;
  bench.port.sent.clear();
  Then("ALL_TERM", [this] {
    EXPECT_EQ(TextOf("Label1"), "COM1: 4800,n,8,2");
    EXPECT_EQ(TextOf("lbl_State"), "The measuring cycle leaves the line alone meanwhile.");
    EXPECT_EQ(Focus(), "Term");
    auto* term = Find<QPlainTextEdit>("Term");
    QTest::keyClicks(term, "Y21?");
    EXPECT_EQ(bench.port.sent, Texts{"Y21?"});
    EXPECT_TRUE(WaitUntil([term] { return term->toPlainText() == "Y21?00FA\n"; }))
        << term->toPlainText().toStdString();
    Key(Qt::Key_Delete);
    Key(Qt::Key_Backspace);
    Key(Qt::Key_Home);
    QTest::keyClick(term, Qt::Key_X, Qt::ControlModifier);
    Key(Qt::Key_Escape);
    EXPECT_EQ(bench.port.sent.back(), "\x1B") << "an Escape is for the instrument";
    EXPECT_TRUE(Form()->isVisible());
    Key(Qt::Key_Tab);
    EXPECT_NE(Focus(), "Term");
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllTerm);
  EXPECT_EQ(bench.port.sent, (Texts{"Y21?", "\x1B"}));
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(OutputForms, PasteCommandsIntoTheTerminal) {
  Start("German");
  bench.port.sent.clear();
  Then("ALL_TERM", [this] {
    EXPECT_EQ(TipOf("Chk_Echo"), " Eingaben anzeigen ");
    EXPECT_EQ(TextOf("lbl_State"), "Der Messzyklus lässt die Leitung solange in Ruhe.");
    QGuiApplication::clipboard()->setText("W21=3E8\nY21?");
    QTest::keyClick(Find("Term"), Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(WaitUntil([this] { return bench.port.sent.size() == 2; }));
    Form()->close();
  });
  screens.Run(View::kAllTerm);
  EXPECT_EQ(bench.port.sent, (Texts{"W21=3E8\r", "Y21?"}));
}

TEST_F(OutputForms, ShowTheTerminalWithoutEcho) {
  Start();
  Then("ALL_TERM", [] {
    Click("Chk_Echo");
    QTest::keyClicks(Find("Term"), "abc");
    EXPECT_EQ(Find<QPlainTextEdit>("Term")->toPlainText(), "");
    Click("Chk_Echo");
    QTest::keyClicks(Find("Term"), "de\r");
    EXPECT_EQ(Find<QPlainTextEdit>("Term")->toPlainText(), "de\n");
    Form()->close();
  });
  screens.Run(View::kAllTerm);
}

}  // namespace
}  // namespace tavrel
