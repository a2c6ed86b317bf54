#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QMenuBar>
#include <QToolTip>
#include <chrono>

#include "graph/graph_tips.h"
#include "tests/forms/graph_forms.h"

namespace tavrel {
namespace {

TEST_F(GraphForms, ShowTheOverviewOfTheSlot) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    EXPECT_EQ(Form()->windowTitle(), "Furnace 7");
    EXPECT_TRUE(Form()->isModal());
    EXPECT_TRUE(IsShown("frCurve_0"));
    EXPECT_FALSE(IsShown("frCurve_1"));
    EXPECT_TRUE(IsShown("cmdPart"));
    EXPECT_FALSE(IsShown("cmdOver"));
    EXPECT_FALSE(IsShown("CboXY"));
    for (const char* name : {"PbPrint", "PbSave", "PbCopy", "PbEval_0", "PbEval_1", "PbMark_0",
                             "PbMark_1", "PbMark_2"}) {
      EXPECT_FALSE(Find(name)->isEnabled()) << name;
    }
    EXPECT_TRUE(WaitUntil([] { return TextOf("LblAxis_0") == "min"; }));
    EXPECT_EQ(TextOf("lblRes"), "high");
    EXPECT_TRUE(HasInk(PictureOf("PicC_0")));
    EXPECT_TRUE(HasInk(PictureOf("PicX_0")));
    EXPECT_TRUE(HasInk(PictureOf("PicY_0")));
    EXPECT_TRUE(HasInk(PictureOf("PicColor")));
    EXPECT_TRUE(HasInk(PictureOf("PicProd")));
    Click("cmdExit");
  });
  program.state.ActiveView = View::kTavWork;
  Run(Slopes(50));
  EXPECT_EQ(program.state.ActiveView, View::kTavWork);
  EXPECT_TRUE(program.state.GraphIdle);
}

TEST_F(GraphForms, ShowTheBandBeneathThePlotAndMoveNothing) {
  QImage strip;
  QRect plot_place;
  QRect strip_place;
  const auto take = [&] {
    ASSERT_TRUE(WaitForOverview());
    ASSERT_TRUE(WaitUntil([this] { return Shown().BandChanges > 0; }));
    strip = PictureOf("PicX_0");
    plot_place = Find("PicC_0")->geometry();
    strip_place = Find("PicX_0")->geometry();
    Key(Qt::Key_Escape);
  };
  Then("TavGraph", take);
  Run(Slopes(90));
  const QImage strip_before = strip;
  const QRect plot_before = plot_place;
  const QRect strip_place_before = strip_place;
  const auto column = [&](double row) {
    return static_cast<int>((row - 1) / 99 * (strip_before.width() - 1));
  };
  WriteJournal({{"begin", {{"interval", 60}, {"line", "direct"}}},
                {"start", {{"rows", 0}}},
                {"back", {{"rows", 11}}},
                {"drained", {{"took", 0.01}, {"rows", 21}}},
                {"lost", {{"before", 71}, {"sets", 3}, {"least", 3}, {"most", 3}, {"rows", 71}}}});
  Then("TavGraph", [&] {
    ASSERT_TRUE(WaitUntil([this, &column] { return !graph.Band(column(100)).empty(); }));
    QHelpEvent help(QEvent::ToolTip, {column(70.5), 1}, {});
    QApplication::sendEvent(Find("PicX_0"), &help);
    EXPECT_EQ(QToolTip::text(), "before row 71: 3 sets are missing");
    QToolTip::hideText();
    take();
  });
  Run();
  EXPECT_EQ(plot_place, plot_before);
  EXPECT_EQ(strip_place, strip_place_before);
  EXPECT_EQ(strip.pixelColor(column(70.5), 1), QColor(0x80, 0x00, 0x10));
  EXPECT_EQ(strip.pixelColor(column(16), 1), QColor(0xA8, 0xD0, 0xF8));
  EXPECT_EQ(strip.pixelColor(column(40), 1), strip_before.pixelColor(column(40), 1));
  const int labels = strip.height() / 4;  // beneath the ticks
  EXPECT_EQ(strip.copy(0, labels, strip.width(), strip.height()),
            strip_before.copy(0, labels, strip.width(), strip.height()));
}

TEST_F(GraphForms, DrawWithTheDotsOfTheScreen) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    const QImage picture = PictureOf("PicC_0");
    EXPECT_EQ(picture.size(), Find("PicC_0")->size());
    const QPoint end = PlaceOn(Find("PicC_0"), {49, 149});
    bool has_black = false;
    for (int y = end.y() - 3; y <= end.y() + 3; ++y) {
      has_black = has_black || picture.pixelColor(end.x() - 20, y + 1) == QColor(Qt::black);
    }
    EXPECT_TRUE(has_black);
    Key(Qt::Key_Escape);
  });
  Run(Slopes(50));
}

TEST_F(GraphForms, SelectAPartRangeByTheMouse) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kTo, kFrom));
    EXPECT_TRUE(IsShown("frCurve_1"));
    EXPECT_FALSE(IsShown("frCurve_0"));
    EXPECT_TRUE(IsShown("cmdOver"));
    EXPECT_FALSE(IsShown("cmdPart"));
    EXPECT_TRUE(IsShown("CboXY"));
    EXPECT_TRUE(Find("PbEval_0")->isEnabled());
    const ViewFrame& part = View(kPartView);
    EXPECT_NEAR(part.XLeft, 10, 0.2);
    EXPECT_NEAR(part.XRight, 60, 0.2);
    EXPECT_NEAR(part.YBottom, 100, 3);
    EXPECT_NEAR(part.YTop, 700, 3);
    EXPECT_TRUE(HasInk(PictureOf("PicC_1")));
    Click("cmdOver");
    EXPECT_TRUE(IsShown("frCurve_0"));
    Click("cmdExit");
  });
  Run(Slopes(80));
  EXPECT_TRUE(program.dialogs.boxes.empty());
}

TEST_F(GraphForms, DrawARubberBandThatLeavesNoTrace) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    QWidget* plot = Find("PicC_0");
    const QImage before = PictureOf("PicC_0");
    QTest::mousePress(plot, Qt::LeftButton, {}, PlaceOn(plot, {50, 500}));
    QTest::mouseMove(plot, PlaceOn(plot, {80, 900}));
    EXPECT_NE(PictureOf("PicC_0"), before);
    QTest::mouseMove(plot, PlaceOn(plot, {50.1, 500}));
    QTest::mouseRelease(plot, Qt::LeftButton, {}, PlaceOn(plot, {50.1, 500}));
    EXPECT_EQ(PictureOf("PicC_0"), before);
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
  ASSERT_EQ(program.dialogs.boxes.size(), 1U);
  EXPECT_EQ(program.dialogs.boxes[0].Text, "too small");
}

TEST_F(GraphForms, HoldADragBeyondTheEdgeOnTheEdge) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    QWidget* plot = Find("PicC_0");
    QTest::mousePress(plot, Qt::LeftButton, {}, PlaceOn(plot, {50, 500}));
    QTest::mouseMove(plot, QPoint(plot->width() + 300, -200));
    QTest::mouseRelease(plot, Qt::LeftButton, {}, QPoint(plot->width() + 300, -200));
    EXPECT_DOUBLE_EQ(graph.State().PartX2, 100);
    EXPECT_DOUBLE_EQ(graph.State().PartY2, 1000);
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, ReadTheCursorOut) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    QWidget* plot = Find("PicC_0");
    QTest::mouseMove(plot, QPoint(0, 1));
    EXPECT_EQ(TextOf("lbX"), "x = 0.00");
    QTest::mouseMove(plot, QPoint(1, 0));
    EXPECT_EQ(TextOf("lbY"), "y = 1000.0");
    QTest::mouseMove(plot, QPoint(plot->width() - 1, plot->height() - 1));
    EXPECT_EQ(TextOf("lbX"), "x = 100.00");
    EXPECT_EQ(TextOf("lbY"), "y = 0.00");
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(plot, &leave);
    EXPECT_EQ(TextOf("lbX"), "");
    EXPECT_EQ(TextOf("lbY"), "");
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, ChangeTheAxes) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    auto* list = Find<QComboBox>("CboXY");
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(list->itemText(0), " Y=absolute  /  X=time");
    EXPECT_EQ(list->itemText(2), " Y=relative    /  X=reference");
    list->setFocus();
    Key(Qt::Key_Down);
    EXPECT_EQ(Unit().UnitGraphMode, 1);
    list->setFocus();
    Key(Qt::Key_Down);
    EXPECT_EQ(Unit().UnitGraphMode, 2);
    EXPECT_EQ(list->currentIndex(), 2);
    EXPECT_TRUE(WaitUntil([] { return TextOf("LblAxis_1") == "°C"; }));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, LeaveTheKeyboardOnTheAxesThatItChanges) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    Find("CboXY")->setFocus();
    for (const int mode : {1, 2}) {
      Key(Qt::Key_Down);
      EXPECT_EQ(Unit().UnitGraphMode, mode);
      EXPECT_EQ(QApplication::focusWidget(), Find("CboXY")) << mode;
    }
    Key(Qt::Key_Home);
    EXPECT_EQ(Unit().UnitGraphMode, 0);
    EXPECT_EQ(QApplication::focusWidget(), Find("CboXY"));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, GoOnWithThePlotWhenTheMouseChangedTheAxes) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    Find("CboXY")->setFocus();
    Key(Qt::Key_Down);
    auto* list = Find<QComboBox>("CboXY");
    Click("CboXY");
    ASSERT_TRUE(WaitUntil([list] { return list->view()->isVisible(); }));
    QTest::keyClick(list->view(), Qt::Key_Down);
    QTest::keyClick(list->view(), Qt::Key_Return);
    EXPECT_EQ(Unit().UnitGraphMode, 2);
    EXPECT_EQ(Form()->focusWidget(), Find("PicC_1"));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

// The axes are hidden while curves are drawn, as soon as an event comes in the middle of that.
TEST_F(GraphForms, GiveTheKeyboardBackToTheAxesBehindADrawing) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    Find("CboXY")->setFocus();
    bool was_hidden = false;
    QWidget* plot = Find("PicC_1");
    program.events.on_pump = [&] {
      QTest::mouseMove(plot, QPoint(20, 20));
      was_hidden = was_hidden || !IsShown("CboXY");
    };
    program.state.PartPrepared = false;
    ASSERT_TRUE(WaitUntil([&] { return was_hidden && !graph.State().GraphBusy; }));
    program.events.on_pump = [] {};
    ASSERT_TRUE(WaitUntil([] { return IsShown("CboXY"); }));
    EXPECT_EQ(QApplication::focusWidget(), Find("CboXY"));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, KeepTheirWidthWhenThePartViewComesFirst) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    Form()->resize(Form()->minimumSizeHint());
    QCoreApplication::processEvents();
    const QSize before = Form()->size();
    Click("cmdPart");
    ASSERT_TRUE(WaitForPart());
    QCoreApplication::processEvents();
    ASSERT_TRUE(IsShown("CboXY"));
    EXPECT_EQ(Form()->size(), before);
    EXPECT_EQ(Form()->minimumSizeHint().width(), before.width());
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, SwitchTheViewByEnterWhereverTheKeyboardIs) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    EXPECT_EQ(QApplication::focusWidget(), Find("PicC_0"));
    Key(Qt::Key_Return);
    EXPECT_TRUE(IsShown("frCurve_1"));
    ASSERT_TRUE(WaitForPart());
    Find("PbEval_0")->setFocus();
    Key(Qt::Key_Enter);
    EXPECT_TRUE(IsShown("frCurve_0"));
    EXPECT_EQ(graph.State().ToolState, Tool::kPartRange);
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, MeetTheScaleOfAViewAsSoonAsItIsInFront) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    Key(Qt::Key_Return);
    EXPECT_EQ(graph.State().ViewShown, kPartView);
    EXPECT_TRUE(graph.State().PartPainted);
    Click("cmdOver");
    DragOn("PicC_0", {20, 200}, {70, 800});
    EXPECT_NEAR(graph.State().PartX2, 70, 0.2);
    EXPECT_NEAR(graph.State().PartY2, 800, 4);
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, LeaveAToolByEscapeAndThenTheForm) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    Click("PbEval_0");
    EXPECT_EQ(QApplication::focusWidget(), Find("PicC_1"));
    Key(Qt::Key_Escape);
    EXPECT_FALSE(IsShown("Lbl_Instr"));
    EXPECT_EQ(graph.State().ToolState, Tool::kNone);
    EXPECT_TRUE(graph.IsOpen());
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
  EXPECT_FALSE(graph.IsOpen());
}

TEST_F(GraphForms, LeadTheTabKeyFromThePlotAlongTheTools) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    QStringList way;
    for (int step = 0; step < 11; ++step) {
      way << QApplication::focusWidget()->objectName();
      Key(Qt::Key_Tab);
    }
    EXPECT_EQ(way, QStringList({"PicC_1", "PbPrint", "PbSave", "PbCopy", "PbEval_0", "PbEval_1",
                                "PbMark_1", "PbMark_2", "PbMark_0", "CboXY", "cmdOver"}));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, ShowACrosshairOnlyForTheKeyboard) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    const QImage before = PictureOf("PicC_0");
    KeyOnPlot(Qt::Key_Up);
    EXPECT_NE(PictureOf("PicC_0"), before);
    EXPECT_EQ(Find("PicC_0")->accessibleDescription(), "x = 50.00  y = 510.0");
    QTest::mouseMove(Find("PicC_0"), QPoint(5, 5));
    EXPECT_EQ(PictureOf("PicC_0"), before);
    EXPECT_EQ(Find("PicC_0")->accessibleDescription(), "");
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, RefuseToCloseUntilTheGraphLeaves) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    EXPECT_FALSE(Form()->close());
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(graph.State().ViewWanted, kLeaveGraph);
    EXPECT_TRUE(WaitUntil([this] { return !form->isVisible(); }));
  });
  Run(Slopes(80));
  EXPECT_FALSE(program.state.SlotDirty[kSlot]);
  EXPECT_FALSE(graph.IsOpen());
}

TEST_F(GraphForms, KeepTheirPicturesWhileHidden) {
  QImage first;
  Then("TavGraph", [&] {
    ASSERT_TRUE(WaitForOverview());
    first = PictureOf("frCurve_0");
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
  EXPECT_TRUE(program.state.OverPrepared);
  Then("TavGraph", [&] {
    EXPECT_TRUE(graph.State().OverPainted);
    EXPECT_EQ(PictureOf("frCurve_0"), first);
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(GraphForms, FollowAChangeOfTheirSize) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    form->resize(form->width() + 160, form->height() + 100);
    const QWidget* plot = Find("PicC_0");
    ASSERT_TRUE(WaitUntil([&] { return Find<PlotView>("PicC_0")->Fits(); }));
    const QImage picture = PictureOf("PicC_0");
    EXPECT_EQ(picture.size(), plot->size());
    EXPECT_TRUE(HasInk(picture.copy(picture.width() - 100, 0, 100, picture.height() - 100)));
    Click("cmdPart");
    ASSERT_TRUE(WaitForPart());
    EXPECT_TRUE(Find<PlotView>("PicC_1")->Fits());
    EXPECT_TRUE(Find<PlotView>("PicX_1")->Fits());
    EXPECT_TRUE(Find<PlotView>("PicY_1")->Fits());
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, HaveTheMenuOfTheGraph) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    EXPECT_EQ(Entry("MnuOutput")->text().remove('&'), "Output  ");
    EXPECT_FALSE(Entry("MnuOutput")->isEnabled());
    EXPECT_EQ(Entry("MnuPrint")->text().remove('&'), "Printer");
    EXPECT_EQ(Entry("MnuSubFile")->text().remove('&'), "Sub - file");
    EXPECT_EQ(Entry("MnuASCII")->text().remove('&'), "ASCII - file");
    EXPECT_EQ(Entry("MnuData")->text().remove('&'), "Clipboard:  Data");
    EXPECT_EQ(Entry("MnuGraph")->text().remove('&'), "Clipboard:  Graphics ");
    Entry("MnuHelp")->trigger();
    Key(Qt::Key_Return);
    ASSERT_TRUE(WaitForPart());
    EXPECT_TRUE(WaitUntil([this] { return Entry("MnuOutput")->isEnabled(); }));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
  ASSERT_EQ(program.shell.opened.size() + program.dialogs.boxes.size(), 1U);
}

TEST_F(GraphForms, BringThePartViewOutByButtonsAndMenu) {
  program.state.Settings.DefPath = program.home.File("tavdat");
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    Click("PbCopy");
    EXPECT_TRUE(program.clipboard.picture.has_value());
    EXPECT_EQ(QApplication::focusWidget(), Find("PicC_1"));
    program.clipboard.picture.reset();
    Entry("MnuGraph")->trigger();
    EXPECT_TRUE(program.clipboard.picture.has_value());
    Entry("MnuData")->trigger();
    EXPECT_FALSE(program.clipboard.text.empty());
    Click("PbPrint");
    EXPECT_EQ(program.printer.jobs, 1);
    Entry("MnuPrint")->trigger();
    EXPECT_EQ(program.printer.jobs, 2);
    program.dialogs.chosen_file = program.home.File("tavdat/S260314A.OVN");
    Click("PbSave");
    EXPECT_TRUE(program.home.Exists("tavdat/S260314A.OVN"));
    program.dialogs.chosen_file = program.home.File("tavdat/S260314B.OVN");
    Entry("MnuSubFile")->trigger();
    EXPECT_TRUE(program.home.Exists("tavdat/S260314B.OVN"));
    program.dialogs.chosen_file = program.home.File("tavdat/curves.asc");
    Entry("MnuASCII")->trigger();
    EXPECT_TRUE(program.home.Exists("tavdat/curves.asc"));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, SpeakTheLanguageOfTheHelp) {
  Then("TavGraph", [] {
    for (const ToolTip& tip : kGraphTips) {
      EXPECT_EQ(TipOf(std::string(tip.Control).c_str()), tip.Text.English) << tip.Control;
    }
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
  program.state.Settings.HelpLang = "German";
  Then("TavGraph", [] {
    for (const ToolTip& tip : kGraphTips) {
      EXPECT_EQ(TipOf(std::string(tip.Control).c_str()), tip.Text.German) << tip.Control;
    }
    Key(Qt::Key_Escape);
  });
  Run();
}

TEST_F(GraphForms, StayWhiteOnADarkDesktop) {
  const QPalette before = QApplication::palette();
  QApplication::setPalette(QPalette(QColor(43, 45, 48)));
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    const QImage frame = PictureOf("frCurve_0");
    EXPECT_EQ(frame.pixelColor(3, 3), QColor(Qt::white));
    const QLabel* unit = Find<QLabel>("LblAxis_0");
    EXPECT_EQ(unit->palette().color(QPalette::WindowText), QColor(Qt::black));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
  QApplication::setPalette(before);
}

TEST_F(GraphForms, NameEveryControlForThoseWhoDoNotSeeIt) {
  Then("TavGraph", [this] {
    for (const QWidget* widget : form->findChildren<QWidget*>()) {
      const bool is_ours = !widget->objectName().startsWith("qt_") && widget->parent() != nullptr;
      const bool takes_focus = widget->focusPolicy() != Qt::NoFocus;
      if (is_ours && takes_focus && !widget->objectName().isEmpty()) {
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
      }
    }
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, DoNotOpenForARecordingWithoutChannels) {
  Load(Slopes(10));
  Unit().UnitChannels = 0;
  Run();
  EXPECT_FALSE(graph.IsOpen());
  EXPECT_FALSE(form->isVisible());
}

TEST_F(GraphForms, ServeAKeyInTheMiddleOfADrawing) {
  header.UnitXmax = 2133;
  bool is_posted = false;
  std::chrono::steady_clock::time_point posted;
  double served_after = -1;  // seconds
  Then("TavGraph", [&] {
    ASSERT_TRUE(WaitForOverview());
    program.events.on_pump = [&] {
      if (!is_posted) {
        is_posted = true;
        posted = std::chrono::steady_clock::now();
        auto* key = new QKeyEvent(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::postEvent(Find("PicC_0"), key);
      }
      QCoreApplication::processEvents();
      if (served_after < 0 && graph.State().ViewWanted == kPartView) {
        served_after =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - posted).count();
      }
    };
    program.state.OverPrepared = false;
    ASSERT_TRUE(WaitUntil([&] { return served_after >= 0; }));
    EXPECT_LT(served_after, 0.1);
    EXPECT_LT(View(kOverview).RecDrawn, View(kOverview).RecEnd / 10);
    Key(Qt::Key_Escape);
  });
  Run(Slopes(2133));
}

}  // namespace
}  // namespace tavrel
