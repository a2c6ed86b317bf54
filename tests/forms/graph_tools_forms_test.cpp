#include <QLineEdit>

#include "tests/forms/graph_forms.h"

// The tools of the graph: distance, integral, mark and comment.
namespace tavrel {
namespace {

TEST_F(GraphForms, MeasureADistance) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    Click("PbEval_0");
    EXPECT_TRUE(IsShown("Lbl_Instr"));
    EXPECT_EQ(TextOf("Lbl_Instr"), "set 1st point");
    EXPECT_FALSE(Find("PbEval_0")->isEnabled());
    ClickOn("PicC_1", {20, 200});
    EXPECT_EQ(TextOf("Lbl_Instr"), "set 2nd point");
    ClickOn("PicC_1", {50, 600});
    EXPECT_TRUE(TextOf("Lbl_Instr").starts_with("dy = "));
    EXPECT_TRUE(Find("PbEval_0")->isEnabled());
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, LetTheButtonOfAToolLookPressedWhileItIsAtWork) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    const auto is_down = [](const char* name) { return Find<GlyphButton>(name)->IsLatched(); };
    const QLabel* prompt = Find<QLabel>("Lbl_Instr");
    Click("PbEval_0");
    EXPECT_TRUE(is_down("PbEval_0"));
    EXPECT_EQ(prompt->backgroundRole(), QPalette::Highlight);
    Click("PbMark_1");
    EXPECT_FALSE(is_down("PbEval_0"));
    EXPECT_TRUE(is_down("PbMark_1"));
    Key(Qt::Key_Escape);
    EXPECT_FALSE(is_down("PbMark_1"));
    Click("PbEval_0");
    ClickOn("PicC_1", {20, 200});
    ClickOn("PicC_1", {30, 300});
    EXPECT_FALSE(is_down("PbEval_0")) << "a result stands there";
    EXPECT_FALSE(prompt->autoFillBackground());
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

// A plot that changes its size is painted anew, and that ends the tool.
TEST_F(GraphForms, KeepTheSizeOfThePlotWhenAPromptComes) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    const QSize before = Find("PicC_1")->size();
    for (const char* tool : {"PbEval_0", "PbEval_1", "PbMark_1", "PbMark_2"}) {
      Click(tool);
      QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
      EXPECT_TRUE(IsShown("Lbl_Instr")) << tool;
      EXPECT_EQ(Find("PicC_1")->size(), before) << tool;
      Key(Qt::Key_Escape);
    }
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, ShowValuesAtTheCursorAndTheCurveThatStandsOut) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    const QImage before = PictureOf("PicC_0");
    const QImage legend_before = PictureOf("PicProd");
    QTest::mouseMove(Find("PicC_0"), PlaceOn(Find("PicC_0"), {30, 230}));
    const std::string spoken = Find("values")->accessibleName().toStdString();
    EXPECT_NE(spoken.find("2  input 2 = 2"), std::string::npos) << spoken;
    EXPECT_TRUE(HasInk(PictureOf("values")));
    EXPECT_NE(PictureOf("PicC_0"), before);
    EXPECT_NE(PictureOf("PicProd"), legend_before);
    QTest::mouseMove(Find("PicC_0"), PlaceOn(Find("PicC_0"), {30, 800}));
    EXPECT_EQ(PictureOf("PicC_0"), before);
    EXPECT_EQ(PictureOf("PicProd"), legend_before);
    QWidget* values = Find("values");
    QTest::mouseClick(values, Qt::LeftButton, {}, QPoint(5, values->height() * 3 / 16));
    EXPECT_NE(PictureOf("PicC_0"), before) << "chosen in the legend";
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, SayHowAPartIsChosenUntilAPromptComes) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(WaitForOverview());
    EXPECT_TRUE(WaitUntil([] { return TextOf("Lbl_Hint").starts_with("Draw a rectangle"); }));
    ClickOn("PicC_0", {50, 500});
    ASSERT_TRUE(GoToPart({85, 100}, {99, 700}));
    EXPECT_TRUE(WaitUntil([] { return TextOf("Lbl_Hint").starts_with("Nothing has been"); }));
    Click("PbEval_0");
    EXPECT_EQ(TextOf("Lbl_Hint"), "");
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
  EXPECT_TRUE(program.dialogs.boxes.empty());
}

TEST_F(GraphForms, IntegrateACurveOfTheLegend) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    EXPECT_FALSE(IsShown("Up_Arrow"));
    Click("PbEval_1");
    EXPECT_TRUE(IsShown("Up_Arrow"));
    EXPECT_EQ(TextOf("Lbl_Instr"), "select a curve ...");
    QWidget* samples = Find("PicColor");
    QTest::mouseClick(samples, Qt::LeftButton, {}, QPoint(20, samples->height() / 16));
    EXPECT_FALSE(IsShown("Up_Arrow"));
    EXPECT_EQ(TextOf("Lbl_Instr"), "draw baseline part 1 of 4");
    DragOn("PicC_1", {20, 150}, {25, 150});
    DragOn("PicC_1", {25, 150}, {30, 150});
    DragOn("PicC_1", {30, 150}, {35, 150});
    EXPECT_EQ(TextOf("Lbl_Instr"), "draw baseline part 4 of 4");
    DragOn("PicC_1", {35, 150}, {40, 150});
    EXPECT_TRUE(TextOf("Lbl_Instr").starts_with("Integral =  "));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, SetAMarkAndDeleteIt) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    const QImage before = PictureOf("PicC_1");
    Click("PbMark_1");
    EXPECT_EQ(TextOf("Lbl_Instr"), "set point");
    ClickOn("PicC_1", {30, 300});
    EXPECT_EQ(TextOf("Lbl_Instr"), "text location");
    EXPECT_TRUE(IsShown("lbXY"));
    EXPECT_FALSE(IsShown("picXY"));
    QTest::mouseMove(Find("PicC_1"), PlaceOn(Find("PicC_1"), {40, 500}));
    const QPoint label = Find("lbXY")->pos();
    const QPoint mouse = PlaceOn(Find("PicC_1"), {40, 500});
    EXPECT_GT(label.x(), mouse.x());
    EXPECT_LT(label.x(), mouse.x() + 20);
    EXPECT_GT(label.y(), mouse.y());
    ClickOn("PicC_1", {40, 500});
    EXPECT_FALSE(IsShown("lbXY"));
    EXPECT_EQ(Unit().UnitMarks, 1);
    EXPECT_NE(PictureOf("PicC_1"), before);
    Click("PbMark_0");
    EXPECT_EQ(Unit().UnitMarks, 0);
    ASSERT_TRUE(WaitUntil([this] { return program.state.PartPrepared; }));
    EXPECT_EQ(PictureOf("PicC_1"), before);
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, TakeACommentFromTheKeyboard) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    Click("PbMark_2");
    EXPECT_EQ(TextOf("Lbl_Instr"), "enter text ...");
    ASSERT_EQ(QApplication::focusWidget(), Find("Txt_for_Mark"));
    QTest::keyClicks(QApplication::focusWidget(), "a b, and more than twenty");
    EXPECT_EQ(TextOf("Txt_for_Mark"), "a b, and more than t");
    Key(Qt::Key_Home);
    EXPECT_EQ(Find<QLineEdit>("Txt_for_Mark")->cursorPosition(), 0);
    Key(Qt::Key_Return);
    EXPECT_TRUE(Find<QLineEdit>("Txt_for_Mark")->isReadOnly());
    EXPECT_EQ(TextOf("lbXY"), " a b, and more than t ");
    ClickOn("PicC_1", {40, 500});
    EXPECT_FALSE(IsShown("Txt_for_Mark"));
    EXPECT_EQ(Unit().UnitMarkText[0].Get(), "a b, and more than t");
    Click("PbMark_2");
    EXPECT_EQ(TextOf("Txt_for_Mark"), "");
    EXPECT_FALSE(Find<QLineEdit>("Txt_for_Mark")->isReadOnly());
    Key(Qt::Key_Escape);
    EXPECT_FALSE(IsShown("Txt_for_Mark"));
    EXPECT_TRUE(IsShown("picXY"));
    Key(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

TEST_F(GraphForms, MeasureByTheKeyboardAlone) {
  Then("TavGraph", [this] {
    ASSERT_TRUE(GoToPart(kFrom, kTo));
    Find("PbEval_0")->setFocus();
    Key(Qt::Key_Space);
    EXPECT_EQ(TextOf("Lbl_Instr"), "set 1st point");
    const QImage before = PictureOf("PicC_1");
    KeyOnPlot(Qt::Key_Home);
    EXPECT_NE(PictureOf("PicC_1"), before);
    EXPECT_TRUE(graph.Values().KeyCursorShown);
    EXPECT_NEAR(graph.Values().KeyCursorX, View(kPartView).XLeft, 1e-9);
    KeyOnPlot(Qt::Key_Right);
    KeyOnPlot(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_NEAR(graph.Values().KeyCursorX, View(kPartView).XLeft + 11, 1e-9);
    KeyOnPlot(Qt::Key_Left);
    EXPECT_NEAR(graph.Values().KeyCursorX, View(kPartView).XLeft + 10, 1e-9);
    KeyOnPlot(Qt::Key_Space);
    EXPECT_EQ(TextOf("Lbl_Instr"), "set 2nd point");
    const double y = graph.Values().KeyCursorY;
    KeyOnPlot(Qt::Key_Up, Qt::ShiftModifier);
    KeyOnPlot(Qt::Key_Down);
    const ViewFrame& part = View(kPartView);
    EXPECT_NEAR(graph.Values().KeyCursorY - y, (part.YTop - part.YBottom) * 0.09, 1e-6);
    KeyOnPlot(Qt::Key_End);
    KeyOnPlot(Qt::Key_Space);
    EXPECT_TRUE(TextOf("Lbl_Instr").starts_with("dy = "));
    KeyOnPlot(Qt::Key_Escape);
  });
  Run(Slopes(80));
}

}  // namespace
}  // namespace tavrel
