#include <QLabel>
#include <QPushButton>

#include "service/forms/all_com.h"
#include "tests/forms/modal_bench.h"
#include "tests/support/bench_program.h"
#include "tests/support/form_screens.h"

namespace tavrel {
namespace {

// The forms of the tests of the service, driven by mouse and keys; the cycle gives them their turns
// when the test says so.
class ServiceTestForms : public ModalDeeds {
 protected:
  void Start(const char* language = "English") {
    bench.state.Settings.HelpLang = language;
    bench.Start();
    bench.Run(1);
    bench.state.ActiveInet = 2;
  }
  void Turns(int count) {
    for (int turn = 0; turn < count; ++turn) {
      bench.cycle.Tick();
      bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
    }
  }
  static std::string Spoken(const char* name) { return Find(name)->accessibleName().toStdString(); }
  static bool IsShown(const char* name) { return Find(name)->isVisible(); }
  static std::string Focus() {
    QWidget* focus = QApplication::focusWidget();
    return focus == nullptr ? "" : focus->objectName().toStdString();
  }
  static std::string Title() { return Form()->windowTitle().toStdString(); }

  BenchProgram bench;
  FormScreens screens{bench};
};

TEST_F(ServiceTestForms, CommunicationTestShowsItsCountersAfterEachTurn) {
  Start();
  Then("ALL_COM", [this] {
    EXPECT_EQ(Title(), " Tavrel-2  /  COM1: 4800,n,8,2");
    EXPECT_EQ(bench.state.ActiveView, View::kAllCom);
    EXPECT_EQ(TextOf("Lbl_W_0"), "0");
    EXPECT_FALSE(IsShown("Lbl_is"));
    EXPECT_FALSE(IsShown("Lbl_should"));
    Turns(5);
    EXPECT_EQ(TextOf("Lbl_W_0"), "2");
    EXPECT_EQ(TextOf("Lbl_R_0"), "2");
    EXPECT_EQ(Spoken("Lbl_R_0"), "Read: 2");
    EXPECT_EQ(Spoken("Lbl_R_4"), "Read: non hex 0");
    EXPECT_EQ(TextOf("Trigger"), "c");
    const int width = Find("Lbl_W_0")->width();
    bench.port.answer = [this](const std::string& command) {
      return command.back() == '?' ? std::string("12G4\r") : bench.line.Answer(command);
    };
    Turns(2);
    EXPECT_EQ(TextOf("Lbl_R_4"), "1");
    EXPECT_EQ(TextOf("Lbl_reply"), "12G4!");
    EXPECT_EQ(Spoken("Lbl_reply"), "reply: 12G4!");
    EXPECT_EQ(Find("Lbl_W_0")->width(), width);
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllCom);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(ServiceTestForms, CommunicationTestShowsTheLastMismatchAndForgetsItByKeyboard) {
  Start("German");
  Then("ALL_COM", [this] {
    EXPECT_EQ(TipOf("CmdReset"), " Zähler zurückstellen ");
    EXPECT_EQ(TipOf("ComIcon"), " keine Verbindung ");
    EXPECT_EQ(Focus(), "CmdReset");
    bench.port.answer = [this](const std::string& command) {
      return command.back() == '?' ? std::string("0ABC\r") : bench.line.Answer(command);
    };
    Turns(3);
    EXPECT_TRUE(IsShown("Lbl_is"));
    EXPECT_TRUE(IsShown("Lbl_should"));
    EXPECT_EQ(TextOf("Lbl_is"), "ABC");
    EXPECT_EQ(TextOf("Lbl_F"), "1");
    Key(Qt::Key_Space);
    EXPECT_EQ(TextOf("Lbl_F"), "0");
    EXPECT_FALSE(IsShown("Lbl_is"));
    EXPECT_FALSE(IsShown("ComIcon"));
    bench.line.silent = {2};
    bench.port.answer = [](const std::string&) { return ""; };
    Turns(20);
    EXPECT_TRUE(IsShown("ComIcon"));
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllCom);
}

}  // namespace
}  // namespace tavrel
