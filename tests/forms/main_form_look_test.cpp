#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>

#include "tests/support/form_bench.h"

namespace tavrel {
namespace {

class MainFormLook : public FormBench {
 protected:
  void InstallRows(int rows) {
    for (int slot = 1; slot <= rows; ++slot) {
      Install(slot, 1, 1, "Furnace");
    }
  }
};

TEST_F(MainFormLook, HasTheSixHeads) {
  InstallRows(1);
  Start();
  const QStringList heads = {"tavrel",   "apparatus",     "controller",
                             "filename", "recorded  [h]", "reference"};
  for (int place = 0; place < heads.size(); ++place) {
    auto* head = Find<QLabel>(qPrintable(QString("head_%1").arg(place)));
    EXPECT_EQ(head->text(), heads[place]);
    EXPECT_TRUE(head->isVisible());
  }
}

TEST_F(MainFormLook, StandsInColumns) {
  InstallRows(3);
  Start();
  Run(1);
  const auto right_edge = [this](const char* name) {
    QWidget* widget = Find(name);
    return widget->mapTo(form.get(), QPoint(widget->width(), 0)).x();
  };
  EXPECT_EQ(right_edge("lb_Ref_1"), right_edge("lb_Ref_3"));
  EXPECT_EQ(right_edge("lb_Rec_1"), right_edge("head_4"));
  EXPECT_LT(right_edge("lb_Ref_1"), right_edge("lb_Ctrl_1"));
}

// The longest recording is 32000 rows of an hour; a file may have any name.
TEST_F(MainFormLook, HasRoomForTheLongestValues) {
  InstallRows(12);
  Start();
  for (const int row : {0, 1, 7, 12}) {
    for (const auto& [control, text] : {std::pair<const char*, const char*>{"lb_Rec", "319980.00"},
                                        {"lb_File", "mmmmmmmm.mmm"},
                                        {"lb_File", "wwwwwwww.www"},
                                        {"lb_Ref", "-1638.4"},
                                        {"lb_Ctrl", "-1638.4"}}) {
      auto* cell = Find<QLabel>(qPrintable(QString("%1_%2").arg(control).arg(row)));
      const int width = QFontMetrics(cell->font()).horizontalAdvance(text);
      EXPECT_LE(width, cell->width()) << control << " " << text;
    }
  }
}

TEST_F(MainFormLook, KeepsItsSizeWhenTheSlotsAreAttached) {
  InstallRows(9);
  bench.state.SettingsRead = true;
  ASSERT_TRUE(bench.start_up.MainFormLoad());
  form = std::make_unique<Tavrel>(
      Tavrel::Parts{bench.sheet, bench.commands, bench.cycle, bench.start_up}, 9);
  form->show();
  const QSize first = form->size();
  ASSERT_TRUE(WaitUntil([this] { return bench.cycle.IsEnabled(); }));
  Run(1);
  EXPECT_TRUE(Find("Sheet_9")->isVisible());
  EXPECT_EQ(form->size(), first);
}

TEST_F(MainFormLook, GrowsWhenMoreRowsComeThanItWasMadeFor) {
  InstallRows(8);
  Start(4);
  QCoreApplication::processEvents();
  QWidget* last = Find("Sheet_8");
  EXPECT_EQ(last->visibleRegion().boundingRect().height(), last->height());
}

TEST_F(MainFormLook, ShowsTheMarkOfAPassWithoutMovingAnything) {
  InstallRows(2);
  Start();
  bench.state.lbl_Info = "reading from Tavrel:  12";
  Run(1);
  const auto lay_out = [] { QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); };
  lay_out();
  QWidget* row = Find("Sheet_2");
  const QPoint before = row->mapTo(form.get(), QPoint());
  const QRect info = Find("lbl_Info")->geometry();
  bench.state.TickRefresh.At = 0;
  bench.cycle.Tick();
  form->UpdateWidgets();
  lay_out();
  ASSERT_TRUE(Find("Indicator")->isVisible());
  EXPECT_EQ(row->mapTo(form.get(), QPoint()), before);
  EXPECT_EQ(Find("lbl_Info")->geometry(), info);
}

TEST_F(MainFormLook, ShowsTheMarkDuringAPassOnly) {
  InstallRows(2);
  Start();
  Run(1);
  EXPECT_FALSE(Find("Indicator")->isVisible());
  bench.state.TickRefresh.At = 0;
  bench.cycle.Tick();
  form->UpdateWidgets();
  EXPECT_TRUE(Find("Indicator")->isVisible());
  bench.Run(0.1);
  form->UpdateWidgets();
  EXPECT_FALSE(Find("Indicator")->isVisible());
}

TEST_F(MainFormLook, SpeaksTheLanguageOfTheSettingsInItsTips) {
  InstallRows(1);
  Start();
  EXPECT_EQ(Find("lb_Ref_1")->toolTip(), " actual value of reference ");
  EXPECT_EQ(Find("cmd_Open")->toolTip(), " open a Tavrel-file ");
  bench.state.Settings.HelpLang = "german";
  bench.sheet.SetCaptionAndTips();
  form->UpdateWidgets();
  EXPECT_EQ(Find("lb_TavNo_1")->toolTip(), QString::fromUtf8(" dieses Tavrel auswählen "));
  EXPECT_EQ(Find("tx_Des_12")->toolTip(), " Bezeichnung der Apparatur ");
  EXPECT_EQ(Find("cmd_Open")->toolTip(), QString::fromUtf8(" Tavrel-Datei öffnen "));
}

TEST_F(MainFormLook, FollowsAChangeOfThePalette) {
  Start();
  const QPalette before = QApplication::palette();
  QPalette dark(QColor(43, 45, 48));
  QApplication::setPalette(dark);
  QCoreApplication::processEvents();
  const QColor head = Find("head_0")->palette().color(QPalette::WindowText);
  QApplication::setPalette(before);
  EXPECT_GT(head.lightness(), 128);
}

TEST_F(MainFormLook, HasTheCaptionOfTheSheet) {
  bench.state.Settings.CommPort = "----";
  Start();
  EXPECT_EQ(form->windowTitle().toStdString(), bench.sheet.Values().Caption);
  EXPECT_TRUE(form->windowTitle().contains("(simulated)"));
}

TEST_F(MainFormLook, NamesEveryControlForThoseWhoDoNotSeeIt) {
  InstallRows(2);
  Start();
  for (const QAbstractButton* button : form->findChildren<QAbstractButton*>()) {
    if (!button->objectName().startsWith("qt_")) {
      EXPECT_FALSE(button->accessibleName().isEmpty()) << button->objectName().toStdString();
    }
  }
  for (const QLineEdit* edit : form->findChildren<QLineEdit*>()) {
    EXPECT_FALSE(edit->accessibleName().isEmpty()) << edit->objectName().toStdString();
  }
}

TEST_F(MainFormLook, LeadsTheTabKeyAlongTheRows) {
  InstallRows(2);
  bench.screens.built.insert(View::kTavWork);
  Start();
  form->activateWindow();
  Find("lb_TavNo_1")->setFocus();
  QStringList way;
  for (int step = 0; step < 5; ++step) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    way << QApplication::focusWidget()->objectName();
  }
  EXPECT_EQ(way, QStringList({"tx_Des_1", "cmd_Work_1", "lb_TavNo_2", "tx_Des_2", "cmd_Work_2"}));
}

}  // namespace
}  // namespace tavrel
