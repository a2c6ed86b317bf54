#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <cmath>

#include "service/forms/all_com.h"
#include "service/forms/all_mem.h"
#include "service/forms/all_qs.h"
#include "service/forms/all_wdog.h"
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

// What the eye tells apart: 1 is no contrast, 21 that of black and white.
double Contrast(const QColor& left, const QColor& right) {
  const auto brightness = [](const QColor& colour) {
    const auto part = [](float value) {
      return value <= 0.03928F ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) +
           0.0722 * part(colour.blueF()) + 0.05;
  };
  const double ratio = brightness(left) / brightness(right);
  return ratio < 1 ? 1 / ratio : ratio;
}

QPalette DarkPalette() {
  QPalette dark;
  dark.setColor(QPalette::Window, QColor(0x2B, 0x2B, 0x2B));
  dark.setColor(QPalette::WindowText, QColor(0xEE, 0xEE, 0xEE));
  return dark;
}

class MemoryForm : public ServiceTestForms {
 protected:
  // The firmware has carried every command out at once, with this result.
  void Hold(int inet, std::int16_t result) {
    bench.port.answer = [this, inet, result](const std::string& command) {
      bench.line.registers[{inet, 'G', 0}] = 0;
      bench.line.registers[{inet, 'G', 8}] = result;
      bench.line.registers[{inet, 'G', 9}] = 0x115;
      return bench.line.Answer(command);
    };
  }
  static QColor InkOf(const char* name) {
    return Find(name)->palette().color(QPalette::WindowText);
  }
};

TEST_F(MemoryForm, ShowsVerdictsInColoursThatCanBeReadInALightAndInADarkPalette) {
  Start();
  Hold(2, 0);
  Then("ALL_MEM", [this] {
    EXPECT_EQ(Title(), " Tavrel-2  /  Test  of  Memory");
    for (const char* name : {"Label2_0", "Label2_1", "Label2_2", "Label2_3"}) {
      EXPECT_EQ(TextOf(name), "?");
    }
    EXPECT_EQ(InkOf("Label2_0"), Form()->palette().color(QPalette::WindowText));
    Turns(3);
    EXPECT_EQ(TextOf("Label2_0"), "passed");
    EXPECT_EQ(InkOf("Label2_0"), QColor(0x00, 0x80, 0x00));
    EXPECT_EQ(Spoken("Label2_0"), "RAM: passed");
    Hold(2, 0x4F);
    Turns(4);
    EXPECT_EQ(TextOf("Label2_1"), "Failure at 4F");
    EXPECT_EQ(InkOf("Label2_1"), QColor(0x80, 0x00, 0x00));
    EXPECT_EQ(TextOf("Label2_2"), "0115");
    EXPECT_EQ(TextOf("Label2_3"), "1");
    EXPECT_EQ(Spoken("Label2_3"), "Tests: 1");
    for (const QPalette& palette : {Form()->palette(), DarkPalette()}) {
      Form()->setPalette(palette);
      for (const char* name : {"Label2_0", "Label2_1"}) {
        EXPECT_GT(Contrast(InkOf(name), palette.color(QPalette::Window)), 4.4) << name;
      }
    }
    EXPECT_GT(InkOf("Label2_0").green(), InkOf("Label2_0").red());
    EXPECT_GT(InkOf("Label2_1").red(), InkOf("Label2_1").green());
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllMem);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  Then("ALL_MEM", [] {
    EXPECT_EQ(TextOf("Label2_1"), "?");
    EXPECT_EQ(InkOf("Label2_1"), Form()->palette().color(QPalette::WindowText));
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllMem);
}

TEST_F(MemoryForm, IsNotShownWhenTheUserDoesNotWantTheTest) {
  bench.Install(7, "M260301A.OVN", BenchProgram::Header(2, 1, 3, true));
  Start();
  bench.dialogs.yes = false;
  screens.Run(View::kAllMem);
  screens.Run(View::kAllWdog);
  EXPECT_EQ(bench.dialogs.boxes.size(), 2U);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(MemoryForm, ShowsThePeriodOfTheWatchdogAndGivesTheKeyboardToItsButton) {
  Start();
  Hold(2, 226);
  Then("All_Wdog", [this] {
    EXPECT_EQ(Title(), " Tavrel-2  /  Test  of  Watchdog");
    EXPECT_EQ(TextOf("Lbl_delay"), "?");
    EXPECT_FALSE(IsShown("Lbl_error"));
    EXPECT_FALSE(Find("Cmd_again")->isEnabled());
    Turns(3);
    EXPECT_EQ(TextOf("Lbl_delay"), "2260");
    EXPECT_EQ(Spoken("Lbl_delay"), "Watchdog timeout period  (ms) 2260");
    EXPECT_TRUE(IsShown("Lbl_error"));
    EXPECT_EQ(TextOf("Lbl_error"), "out of limits !");
    EXPECT_EQ(Focus(), "Cmd_again");
    Hold(2, 225);
    Key(Qt::Key_Space);
    EXPECT_EQ(TextOf("Lbl_delay"), "?");
    EXPECT_FALSE(IsShown("Lbl_error"));
    EXPECT_FALSE(Find("Cmd_again")->isEnabled());
    Turns(3);
    EXPECT_EQ(TextOf("Lbl_delay"), "2250");
    EXPECT_FALSE(IsShown("Lbl_error"));
    EXPECT_EQ(Focus(), "Cmd_again");
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllWdog);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

class QualityForm : public ServiceTestForms {
 protected:
  void StartWith(const std::array<int, 10>& words, const char* language = "English") {
    bench.regional.date.clear();
    bench.regional.form = "dd.MM.yyyy";
    Start(language);
    for (std::size_t place = 0; place < words.size(); ++place) {
      bench.line.registers[{2, 'Z', 6 + static_cast<int>(place)}] =
          static_cast<std::int16_t>(words.at(place));
    }
  }
  static void Type(const char* text) { QTest::keyClicks(QApplication::focusWidget(), text); }
};

TEST_F(QualityForm, IsFilledAndChangedByKeyboardAlone) {
  StartWith({1, 4003, 103, 1203, 24, 7572, 406, 25, 6566, 0});
  Then("ALL_QS", [this] {
    EXPECT_EQ(Title(), " Tavrel-2:  QS");
    EXPECT_EQ(TextOf("Lb_Object"), "Measurement and Control System");
    EXPECT_EQ(TextOf("Lb_Type"), "TAVREL");
    EXPECT_EQ(TextOf("Op_hours"), "");
    EXPECT_FALSE(IsShown("Text_Date_2"));
    EXPECT_FALSE(IsShown("Cmd_Today"));
    EXPECT_FALSE(Find("Text_Serial")->isEnabled());
    Turns(4);
    EXPECT_EQ(TextOf("lbl_State"), "reading ...  3 / 10");
    Turns(10);
    EXPECT_EQ(TextOf("Text_Serial"), "14003");
    EXPECT_EQ(TextOf("Text_Unit"), "103");
    EXPECT_EQ(TextOf("Text_Date_1"), "12.03.2024");
    EXPECT_EQ(TextOf("Text_Name_1"), "KH");
    EXPECT_EQ(TextOf("Text_Date_2"), "04.06.2025");
    EXPECT_EQ(TextOf("Text_Name_2"), "AB");
    EXPECT_TRUE(IsShown("Text_Date_2"));
    EXPECT_TRUE(IsShown("Cmd_Today"));
    EXPECT_FALSE(Find("Cmd_Update")->isEnabled());
    EXPECT_EQ(Focus(), "Text_Serial");
    EXPECT_EQ(Find<QLineEdit>("Text_Serial")->selectedText(), "14003");
    Type("2000789");
    EXPECT_EQ(TextOf("Text_Serial"), "200078") << "six characters";
    EXPECT_TRUE(Find("Cmd_Update")->isEnabled());
    std::vector<std::string> order;
    for (int step = 0; step < 6; ++step) {
      Key(Qt::Key_Tab);
      order.push_back(Focus());
    }
    EXPECT_EQ(order, (std::vector<std::string>{"Text_Unit", "Text_Date_1", "Text_Name_1",
                                               "Text_Date_2", "Text_Name_2", "Cmd_Today"}));
    Key(Qt::Key_Space);
    EXPECT_EQ(TextOf("Text_Date_2"), "14.03.2026");
    Key(Qt::Key_Backtab);
    Type("xyz");
    EXPECT_EQ(TextOf("Text_Name_2"), "xy");
    Key(Qt::Key_Return);
    EXPECT_EQ(TextOf("lbl_State"), "writing ...  0 / 10");
    EXPECT_FALSE(Find("Text_Serial")->isEnabled());
    EXPECT_FALSE(Find("Cmd_Update")->isEnabled());
    Turns(30);
    EXPECT_EQ(TextOf("Text_Serial"), "200078");
    EXPECT_EQ(TextOf("Text_Name_2"), "XY");
    EXPECT_EQ(TextOf("lbl_State"), "");
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllQs);
  EXPECT_EQ((bench.line.registers[{2, 'Z', 6}]), 20);
  EXPECT_EQ((bench.line.registers[{2, 'Z', 7}]), 78);
  EXPECT_EQ((bench.line.registers[{2, 'Z', 14}]), 8889);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(QualityForm, HasTheKeyboardOnUpdateAtTheFirstSetupAndOnTheBoxAtFaultBehindIt) {
  StartWith({}, "German");
  Then("ALL_QS", [this] {
    EXPECT_EQ(TipOf("Cmd_Today"), " heutiges Datum ");
    EXPECT_EQ(TipOf("Cmd_Update"), " Werte in der Apparatur speichern ");
    Turns(14);
    EXPECT_EQ(TextOf("Text_Serial"), "14001");
    EXPECT_EQ(TextOf("Text_Date_1"), "14.03.2026");
    EXPECT_FALSE(IsShown("Text_Name_2"));
    EXPECT_EQ(Focus(), "Cmd_Update");
    Key(Qt::Key_Space);
    EXPECT_EQ(Focus(), "Text_Unit");
    Type("7");
    Key(Qt::Key_Return);
    EXPECT_EQ(Focus(), "Text_Name_1");
    QKeyEvent umlaut(QEvent::KeyPress, 0, Qt::NoModifier, QString::fromUtf8("ä"));
    QApplication::sendEvent(QApplication::focusWidget(), &umlaut);
    Key(Qt::Key_Return);
    EXPECT_EQ(Focus(), "Text_Name_1");
    EXPECT_EQ(Find<QLineEdit>("Text_Name_1")->selectedText(), QString::fromUtf8("ä"));
    Key(Qt::Key_Escape);
  });
  screens.Run(View::kAllQs);
  ASSERT_EQ(bench.dialogs.boxes.size(), 3U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "unit  ...  ?       ");
}

TEST_F(ServiceTestForms, AreAllInTheMenu) {
  QtScreens shown;
  QtEvents events;
  const ProgramScreens forms(bench, shown, events);
  for (const View view : {View::kAllCom, View::kAllMem, View::kAllWdog, View::kAllQs}) {
    EXPECT_TRUE(shown.Has(view));
  }
}

}  // namespace
}  // namespace tavrel
