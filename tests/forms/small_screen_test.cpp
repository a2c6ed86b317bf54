#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <map>

#include "main/forms/all_load.h"
#include "tests/forms/modal_bench.h"
#include "tests/support/form_bench.h"
#include "tests/support/form_screens.h"

namespace tavrel {
namespace {

constexpr QSize kSmallScreen(640, 400);

bool IsControl(const QWidget& widget) {
  return qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
         qobject_cast<const QLineEdit*>(&widget) != nullptr ||
         qobject_cast<const QComboBox*>(&widget) != nullptr ||
         qobject_cast<const QAbstractItemView*>(&widget) != nullptr ||
         qobject_cast<const QPlainTextEdit*>(&widget) != nullptr ||
         qobject_cast<const QLabel*>(&widget) != nullptr ||
         qobject_cast<const QMenuBar*>(&widget) != nullptr || widget.focusPolicy() != Qt::NoFocus;
}

// Parts that the toolkit makes for its own controls.
bool IsInner(const QWidget& widget) {
  const QString name = widget.objectName();
  const auto* parent = widget.parentWidget();
  return name.startsWith("qt_") || qobject_cast<const QComboBox*>(parent) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(parent) != nullptr ||
         qobject_cast<const QScrollBar*>(&widget) != nullptr ||
         QString(widget.metaObject()->className()).startsWith("QTableCornerButton") ||
         QString(widget.metaObject()->className()).startsWith("QHeaderView") ||
         QString(widget.metaObject()->className()).startsWith("QComboBoxPrivate");
}

// Brings the control into sight as a user can: by the keyboard, or else by the scroll bars.
void BringIntoSight(QWidget& control) {
  if (control.isEnabled() && (control.focusPolicy() & Qt::TabFocus) != 0) {
    control.setFocus(Qt::TabFocusReason);
  }
  for (QWidget* around = control.parentWidget(); around != nullptr;
       around = around->parentWidget()) {
    auto* view = qobject_cast<QAbstractItemView*>(around);
    if (view != nullptr && control.property("row").isValid()) {
      view->scrollTo(view->model()->index(control.property("row").toInt(),
                                          control.property("column").toInt()));
    }
    auto* area = qobject_cast<QScrollArea*>(around);
    if (area != nullptr && !control.hasFocus()) {
      area->ensureWidgetVisible(&control, 0, 0);
    }
  }
  QCoreApplication::processEvents();
}

// The part of the control that no widget around it and no edge of the screen cuts off.
QSize Seen(const QWidget& control) {
  QRect seen = control.rect().translated(control.mapToGlobal(QPoint()));
  for (const QWidget* around = control.parentWidget(); around != nullptr;
       around = around->isWindow() ? nullptr : around->parentWidget()) {
    seen &= around->rect().translated(around->mapToGlobal(QPoint()));
  }
  return (seen & control.screen()->availableGeometry()).size();
}

// Enough of a control is in sight: all of it, or a large part of a table or a picture.
bool IsInSight(const QWidget& control) {
  const QSize seen = Seen(control);
  const QSize wanted = control.size().boundedTo(QSize(200, 60));
  return seen.width() >= wanted.width() && seen.height() >= wanted.height();
}

std::string Called(const QWidget& widget) {
  return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString();
}

// Every cell of a table can be brought into its viewport.
void ExpectCellsReachable(QAbstractItemView& view) {
  if (view.model() == nullptr || view.model()->rowCount() == 0) {
    return;
  }
  for (const int row : {view.model()->rowCount() - 1, 0}) {
    for (const int column : {view.model()->columnCount() - 1, 0}) {
      const QModelIndex cell = view.model()->index(row, column);
      view.scrollTo(cell);
      const QRect seen = view.visualRect(cell) & view.viewport()->rect();
      EXPECT_FALSE(seen.isEmpty()) << Called(view) << " row " << row << " column " << column;
    }
  }
}

void ExpectOnScreen(const QWidget& form) {
  const QRect screen = form.screen()->availableGeometry();
  EXPECT_TRUE(screen.contains(form.frameGeometry()))
      << Called(form) << " is " << form.frameGeometry().width() << " x "
      << form.frameGeometry().height() << " at " << form.frameGeometry().x() << ", "
      << form.frameGeometry().y();
}

void ExpectAllReachable(QWidget& form) {
  for (int turn = 0; turn < 3; ++turn) {
    QCoreApplication::processEvents();
  }
  ASSERT_EQ(form.screen()->size(), kSmallScreen);
  ExpectOnScreen(form);
  for (auto* control : form.findChildren<QWidget*>()) {
    if (control->window() != &form || !control->isVisible() || !IsControl(*control) ||
        IsInner(*control)) {
      continue;
    }
    BringIntoSight(*control);
    EXPECT_TRUE(IsInSight(*control)) << Called(form) << ": " << Called(*control) << " of "
                                     << control->width() << " x " << control->height() << " shows "
                                     << Seen(*control).width() << " x " << Seen(*control).height();
    if (auto* view = qobject_cast<QAbstractItemView*>(control)) {
      ExpectCellsReachable(*view);
    }
  }
}

// The whole program with all its forms on a screen of 640 x 400 points, as one of 1280 x 800 dots
// is at twice the size.
class SmallScreenBench : public ModalDeeds {
 protected:
  SmallScreenBench() {
    bench.screens.on_show = [this](View view) { screens.Run(view); };
    for (const View view :
         {View::kAllCopy, View::kAllCom,   View::kAllDir,   View::kAllMem,   View::kAllMsg,
          View::kTavNum,  View::kAllOpen,  View::kAllQs,    View::kAllRam,   View::kAllRegs,
          View::kTavSett, View::kAllTerm,  View::kTavWork,  View::kTavGraph, View::kTavCoord,
          View::kTavCtrl, View::kTavPid,   View::kTavRec,   View::kTavWait,  View::kTavInst,
          View::kTavProg, View::kTavChann, View::kTavColor, View::kSpTavHs,  View::kAllWdog,
          View::kTavKeys}) {
      bench.screens.built.insert(view);
    }
    bench.cycle.SetHandlers(screens.Handlers());
    bench.state.Settings.HelpLang = "German";
    for (int slot = 1; slot <= kSlots; ++slot) {
      Install(slot);
    }
    bench.Start();
    bench.Run(1);
    bench.state.SelSlot = 1;
    bench.state.ActiveInet = 1;
  }

  void Install(int slot) {
    UnitRecord unit = BenchProgram::Header(1 + slot % 6, 1 + slot % 4, kInputs, true);
    unit.UnitDesignation.Set("OVN:Furnace");
    bench.Install(slot, "M2603" + std::to_string(10 + slot) + "A.OVN", unit,
                  std::vector<std::int16_t>(10 * kInputs, 400));
  }

  void Open(const std::string& form) {
    if (form == "ALL_DIR") {
      static_cast<void>(bench.directory.Ask(bench.home.File("tavdat")));
    } else if (form == "ALL_MSG") {
      bench.message.Ask({"one\ntwo\nthree", "title", true, false, true});
    } else if (form == "TavColor") {
      static_cast<void>(bench.colours.Ask(1, 2));
    } else if (form == "TavCoord") {
      bench.coordinates.Run();
    } else if (form == "TavRec") {
      bench.recording_settings.RunSettings();
    } else {
      bench.screens.Show(ViewOf(form));
    }
  }

  static View ViewOf(const std::string& form) {
    static const std::map<std::string, View> kViews = {
        {"ALL_COPY", View::kAllCopy}, {"ALL_COM", View::kAllCom},   {"ALL_MEM", View::kAllMem},
        {"TavNum", View::kTavNum},    {"ALL_OPEN", View::kAllOpen}, {"ALL_QS", View::kAllQs},
        {"ALL_RAM", View::kAllRam},   {"ALL_REGS", View::kAllRegs}, {"TAVSETT", View::kTavSett},
        {"ALL_TERM", View::kAllTerm}, {"TavWork", View::kTavWork},  {"TavGraph", View::kTavGraph},
        {"TavCtrl", View::kTavCtrl},  {"TavPid", View::kTavPid},    {"TavWait", View::kTavWait},
        {"TavInst", View::kTavInst},  {"TavProg", View::kTavProg},  {"TavChann", View::kTavChann},
        {"SP_TavHS", View::kSpTavHs}, {"All_Wdog", View::kAllWdog}, {"TavKeys", View::kTavKeys}};
    return kViews.at(form);
  }

  BenchProgram bench;
  FormScreens screens{bench};
};

class SmallScreen : public SmallScreenBench, public testing::WithParamInterface<const char*> {};
class SmallScreenSizes : public SmallScreenBench {};

TEST_P(SmallScreen, ShowsEveryControl) {
  Then(GetParam(), [] {
    ExpectAllReachable(*Form());
    qobject_cast<QDialog*>(Form())->done(0);
  });
  Open(GetParam());
}

// A table may scroll sideways, a whole form only downwards.
TEST_P(SmallScreen, ScrollsNoFormSideways) {
  Then(GetParam(), [] {
    QCoreApplication::processEvents();
    for (const auto* part : Form()->findChildren<QScrollArea*>("Scrolls")) {
      const bool is_form = part->parentWidget() == Form() && part->width() == Form()->width();
      EXPECT_FALSE(is_form && part->horizontalScrollBar()->isVisible())
          << "needs " << part->widget()->width() << " of " << part->viewport()->width();
    }
    qobject_cast<QDialog*>(Form())->done(0);
  });
  Open(GetParam());
}

// A form that runs while nobody has to answer has no use for the manual.
TEST_P(SmallScreen, OpensTheManualByF1) {
  Then(GetParam(), [this] {
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr ? focus : Form(), Qt::Key_F1);
    EXPECT_EQ(bench.shell.opened, std::vector<std::string>{bench.home.File(kGermanManual)});
    qobject_cast<QDialog*>(Form())->done(0);
  });
  Open(GetParam());
}

TEST_P(SmallScreen, GivesEachLetterOnce) {
  Then(GetParam(), [] {
    QStringList letters;
    const auto take = [&letters](const QString& text) {
      const QString key = QKeySequence::mnemonic(text).toString();
      EXPECT_TRUE(key.isEmpty() || !letters.contains(key)) << text.toStdString();
      if (!key.isEmpty()) {
        letters << key;
      }
    };
    for (const auto* button : Form()->findChildren<QPushButton*>()) {
      const QString text = button->text();
      take(text);
      const bool is_word = text.size() > 1 && text.at(0).isLetter();
      const bool is_value = button->objectName() == "cmdPath" || button->objectName() == "CmdFont";
      const bool has_letter = !QKeySequence::mnemonic(text).isEmpty();
      EXPECT_TRUE(is_value || !is_word || has_letter) << "without a letter: " << text.toStdString();
    }
    if (const auto* bar = Form()->findChild<QMenuBar*>()) {
      for (const QAction* action : bar->actions()) {
        take(action->text());
        EXPECT_FALSE(QKeySequence::mnemonic(action->text()).isEmpty());
      }
    }
    qobject_cast<QDialog*>(Form())->done(0);
  });
  Open(GetParam());
}

// The bar that scrolls downwards takes its room from the screen, not from the contents.
TEST_F(SmallScreenSizes, ScrollOnlyWhereTheScreenEnds) {
  Then("TAVSETT", [] {
    QCoreApplication::processEvents();
    auto* part = Find<QScrollArea>("Scrolls");
    EXPECT_TRUE(part->verticalScrollBar()->isVisible());
    EXPECT_FALSE(part->horizontalScrollBar()->isVisible());
    QWidget* ok = Find("CmdOK");
    EXPECT_EQ(Seen(*ok), ok->size());
    qobject_cast<QDialog*>(Form())->done(0);
  });
  Open("TAVSETT");
}

// The worksheet is what a user looks at all day, with a program that runs and without.
TEST_F(SmallScreenSizes, ShowsTheWorksheetWithoutABar) {
  Then("TavWork", [] {
    QCoreApplication::processEvents();
    for (const char* name : {"TavcNo", "cmd_Rec_1", "Lbl_Ledger", "cmd_setCtrl", "cmdExit"}) {
      EXPECT_EQ(Seen(*Find(name)), Find(name)->size()) << name;
    }
    for (const auto* part : Form()->findChildren<QScrollArea*>()) {
      EXPECT_FALSE(part->widget()->isAncestorOf(Find("cmdExit"))) << "the whole form scrolls";
    }
    Find("frProg")->show();
    QCoreApplication::processEvents();
    for (const char* name : {"cmd_ProgOff", "Lbl_Step", "Lbl_Time", "ProgText", "cmdExit"}) {
      EXPECT_EQ(Seen(*Find(name)), Find(name)->size()) << name << " beside a program";
    }
    ExpectAllReachable(*Form());
    qobject_cast<QDialog*>(Form())->done(0);
  });
  Open("TavWork");
}

// What the user makes of a size is there in the next run, unless the form has a size of its own.
TEST_F(SmallScreenSizes, KeepsTheSizesThatTheUserGives) {
  for (const char* name : {"TavGraph", "TavWork", "ALL_OPEN", "TavChann", "ALL_RAM"}) {
    Then(name, [] {
      QCoreApplication::processEvents();
      Form()->resize(601, 361);
      qobject_cast<QDialog*>(Form())->done(0);
    });
    Open(name);
  }
  Then("TavPid", [] { qobject_cast<QDialog*>(Form())->done(0); });
  Open("TavPid");
  EXPECT_EQ(bench.home.Read(kFormSizesFile),
            "ALL_OPEN 601 361\nALL_RAM 601 361\nTavChann 601 361\nTavGraph 601 361\n"
            "TavWork 601 361\n");
  FormScreens next(bench);
  bench.screens.on_show = [&next](View view) { next.Run(view); };
  for (const char* name : {"TavWork", "ALL_OPEN"}) {
    Then(name, [] {
      QCoreApplication::processEvents();
      EXPECT_EQ(Form()->size(), QSize(601, 361));
      qobject_cast<QDialog*>(Form())->done(0);
    });
    Open(name);
  }
}

// A size of another screen is bounded by this one.
TEST_F(SmallScreenSizes, BoundsTheSizesOfALargerScreen) {
  bench.form_sizes.Keep("TavWork", {1900, 1000});
  Then("TavWork", [] {
    ExpectAllReachable(*Form());
    qobject_cast<QDialog*>(Form())->done(0);
  });
  Open("TavWork");
}

INSTANTIATE_TEST_SUITE_P(EveryForm, SmallScreen,
                         testing::Values("ALL_COPY", "ALL_COM", "ALL_DIR", "ALL_MEM", "ALL_MSG",
                                         "TavNum", "ALL_OPEN", "ALL_QS", "ALL_RAM", "ALL_REGS",
                                         "TAVSETT", "ALL_TERM", "TavWork", "TavGraph", "TavCoord",
                                         "TavCtrl", "TavPid", "TavRec", "TavWait", "TavInst",
                                         "TavProg", "TavChann", "TavColor", "SP_TavHS", "All_Wdog",
                                         "TavKeys"),
                         [](const auto& form) { return std::string(form.param); });

class SmallSheet : public FormBench {};

TEST_F(SmallSheet, ShowsEveryControlOfTwelveRows) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    Install(slot, 1 + slot % 6, 1, "Furnace");
  }
  Start(kSlots);
  form->PlaceAt(0);
  Run(1);
  ExpectAllReachable(*form);
}

// The columns have room for each word of state in both languages.
TEST_F(SmallSheet, ScrollsNoFewRowsSideways) {
  for (int slot = 1; slot <= 4; ++slot) {
    Install(slot, slot, 1, "Furnace");
  }
  Start(4);
  form->PlaceAt(0);
  Run(1);
  QCoreApplication::processEvents();
  for (const auto* part : form->findChildren<QScrollArea*>()) {
    EXPECT_FALSE(part->horizontalScrollBar()->isVisible())
        << "needs " << part->widget()->width() << " of " << part->viewport()->width();
  }
  EXPECT_LE(QFontMetrics(Find("lb_Rstat_1")->font()).horizontalAdvance("Datei !"),
            Find("lb_Rstat_1")->width());
}

TEST_F(SmallSheet, ShowsTheSplashForm) {
  AllLoad splash;
  splash.show();
  ExpectAllReachable(splash);
}

}  // namespace
}  // namespace tavrel
