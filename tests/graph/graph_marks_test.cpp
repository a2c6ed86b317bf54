#include "graph/graph_marks.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "graph/mark_drawing.h"
#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

constexpr PlotPoint kPlace{30, 400};

// The part view 10..60 minutes, 100..600 degrees: a cross has arms of 50 / 70 minutes and
// 500 / 50 degrees, a character is 0.5 minutes wide, a line of text 17.5 degrees high.
class TheMarks : public testing::Test, public GraphBench {
 protected:
  void SetUp() override {
    LoadAndOpen(Slopes(80));
    ShowPart({10, 100}, {60, 600});
    view = View(kPartView);
  }
  // The point and the place of its text.
  void Mark(PlotPoint point, PlotPoint text) {
    graph.PbMark_Click(1);
    Click(point);
    Click(text);
  }
  void Comment(const std::string& text, PlotPoint at) {
    graph.PbMark_Click(2);
    graph.Txt_for_Mark_Change(text);
    graph.KeyEnter();
    Click(at);
  }
  std::string Text(int k) { return Unit().UnitMarkText.at(static_cast<std::size_t>(k - 1)).Get(); }
  std::int16_t Code(int k, int part) {
    return Unit().UnitMarkPos.at(static_cast<std::size_t>(4 * (k - 1) + part));
  }
  std::vector<std::string> LastTexts() {
    ImgC(kPartView).Clear();
    ShowMarksOf(Unit(), view, ImgC(kPartView));
    return ImgC(kPartView).Texts();
  }

  ViewFrame view;
};

TEST_F(TheMarks, KeepPointAndTextInTheHeader) {
  Mark({20, 300}, kPlace);
  EXPECT_EQ(Unit().UnitMarks, 1);
  EXPECT_EQ(Text(1), "300.0 / 20.00 min");
  EXPECT_EQ(Code(1, 0), CodeX(view, 20));
  EXPECT_EQ(Code(1, 1), CodeY(view, 300));
  // The label stands 1 % right of and beneath the mouse; its middle is half a line lower.
  EXPECT_EQ(Code(1, 2), CodeX(view, 30.5));
  EXPECT_EQ(Code(1, 3), CodeY(view, 400 - 5 - 17.5 / 2));
  EXPECT_TRUE(program.state.SlotDirty[kSlot]);
  EXPECT_EQ(ToolState(), Tool::kNone);
}

TEST_F(TheMarks, TellWhatIsToBeDone) {
  graph.PbMark_Click(1);
  EXPECT_EQ(Shown().Lbl_Instr, "set point");
  EXPECT_EQ(ToolState(), Tool::kMarkPoint);
  EXPECT_FALSE(Shown().PbMarkEnabled[1]);
  Click({20, 300});
  EXPECT_EQ(Shown().Lbl_Instr, "text location");
  EXPECT_EQ(Shown().lbXY, " 300.0 / 20.00 min ");
  EXPECT_TRUE(Shown().lbXYShown);
  EXPECT_FALSE(Shown().picXYShown);
  Click(kPlace);
  EXPECT_FALSE(Shown().lbXYShown);
  EXPECT_FALSE(Shown().Lbl_InstrShown);
  EXPECT_TRUE(Shown().picXYShown);
  EXPECT_TRUE(Shown().PbMarkEnabled[1]);
}

TEST_F(TheMarks, DrawACrossAndTheTextOnThePermanentPicture) {
  ImgC(kPartView).Clear();
  Mark({20, 300}, kPlace);
  const auto lines = ImgC(kPartView).LinesOf(kBlack);
  ASSERT_GE(lines.size(), 2U);
  EXPECT_NEAR(lines[0].At.X1, 20 - 50.0 / 70, 1e-9);
  EXPECT_NEAR(lines[0].At.X2, 20 + 50.0 / 70, 1e-9);
  EXPECT_NEAR(lines[0].At.Y1, 300, 1e-9);
  EXPECT_NEAR(lines[1].At.Y1, 290, 1e-9);
  EXPECT_NEAR(lines[1].At.Y2, 310, 1e-9);
  EXPECT_EQ(ImgC(kPartView).Texts(), (std::vector<std::string>{" 300.0 / 20.00 min "}));
  EXPECT_EQ(PicC(kPartView).Texts(), ImgC(kPartView).Texts());
}

TEST_F(TheMarks, KeepACommentWithoutACross) {
  ImgC(kPartView).Clear();
  Comment("  valve open ", kPlace);
  EXPECT_EQ(Unit().UnitMarks, 1);
  EXPECT_EQ(Text(1), "valve open");
  EXPECT_EQ(Code(1, 0), 0);
  EXPECT_EQ(Code(1, 1), 0);
  EXPECT_EQ(Code(1, 2), CodeX(view, 30.5));
  EXPECT_TRUE(ImgC(kPartView).LinesOf(kBlack).empty());
  EXPECT_EQ(ImgC(kPartView).Texts(), (std::vector<std::string>{" valve open "}));
  EXPECT_TRUE(program.state.SlotDirty[kSlot]);
}

TEST_F(TheMarks, TakeTheirCrossBackWhenTheyGetNoText) {
  const auto before = ImgC(kPartView).strokes;
  graph.PbMark_Click(1);
  Click({20, 300});
  EXPECT_NE(ImgC(kPartView).strokes, before);
  graph.KeyEscape();
  Tick();
  EXPECT_EQ(ImgC(kPartView).strokes, before);
  graph.PbMark_Click(1);
  Click({20, 300});
  graph.PbEval_Click(0);
  Tick();
  EXPECT_EQ(ImgC(kPartView).strokes, before);
  EXPECT_EQ(ToolState(), Tool::kFirstPoint);
}

TEST_F(TheMarks, ArePutWithoutPaintingTheViewAnew) {
  const int clears = ImgC(kPartView).clears;
  Mark({20, 300}, kPlace);
  Comment("text", kPlace);
  Tick();
  EXPECT_EQ(ImgC(kPartView).clears, clears);
}

TEST_F(TheMarks, AskForTheTextOfAComment) {
  const int focus = Shown().FocusCalls;
  graph.PbMark_Click(2);
  EXPECT_EQ(Shown().Lbl_Instr, "enter text ...");
  EXPECT_TRUE(Shown().Txt_for_MarkShown);
  EXPECT_FALSE(Shown().Txt_for_MarkTaken);
  EXPECT_FALSE(Shown().picXYShown);
  EXPECT_EQ(Shown().FocusCalls, focus + 1);
  graph.Txt_for_Mark_Change("valve");
  graph.KeyEnter();
  EXPECT_TRUE(Shown().Txt_for_MarkTaken);
  EXPECT_EQ(ToolState(), Tool::kCommentLocation);
  EXPECT_EQ(Shown().lbXY, " valve ");
  EXPECT_EQ(Shown().Lbl_Instr, "text location");
  EXPECT_DOUBLE_EQ(Shown().lbXYLeft, 35.5);
  EXPECT_DOUBLE_EQ(Shown().lbXYTop, 345);
  Click(kPlace);
  EXPECT_FALSE(Shown().Txt_for_MarkShown);
  EXPECT_EQ(Shown().Txt_for_Mark, "");
}

TEST_F(TheMarks, DropACommentOfBlanks) {
  Comment("   ", kPlace);
  EXPECT_EQ(Unit().UnitMarks, 0);
  EXPECT_EQ(ToolState(), Tool::kNone);
  EXPECT_FALSE(Shown().Txt_for_MarkShown);
  EXPECT_FALSE(program.state.SlotDirty[kSlot] && Unit().UnitMarks != 0);
}

TEST_F(TheMarks, CutATextAtTwentyCharacters) {
  Comment("Öl 123456789012345678901234567890", kPlace);
  EXPECT_EQ(Text(1), "Öl 12345678901234567");
}

TEST_F(TheMarks, RefuseTheSixth) {
  for (int k = 0; k < kMarks; ++k) {
    Comment("note", kPlace);
  }
  EXPECT_EQ(Unit().UnitMarks, 5);
  for (const int index : {1, 2}) {
    program.dialogs.boxes.clear();
    graph.PbMark_Click(index);
    ASSERT_EQ(program.dialogs.boxes.size(), 1U);
    EXPECT_EQ(program.dialogs.boxes[0].Text, "max. 5 entries");
    EXPECT_EQ(ToolState(), Tool::kNone);
    EXPECT_TRUE(Shown().PbMarkEnabled[index]);
  }
  graph.PbMark_Click(0);
  Tick();
  EXPECT_EQ(Unit().UnitMarks, 4);
  Comment("again", kPlace);
  EXPECT_EQ(Unit().UnitMarks, 5);
  EXPECT_EQ(Text(5), "again");
}

TEST_F(TheMarks, AreAllDrawnToTheFifth) {
  for (int k = 1; k <= kMarks; ++k) {
    Comment("note " + std::to_string(k), kPlace);
  }
  const std::vector<std::string> texts = LastTexts();
  for (int k = 1; k <= kMarks; ++k) {
    const std::string text = " note " + std::to_string(k) + " ";
    EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 1) << text;
  }
}

TEST_F(TheMarks, DeleteTheLastAndPaintAfresh) {
  Comment("first", kPlace);
  Comment("second", kPlace);
  program.state.SlotDirty[kSlot] = false;
  graph.PbMark_Click(0);
  EXPECT_EQ(Unit().UnitMarks, 1);
  EXPECT_TRUE(program.state.SlotDirty[kSlot]);
  EXPECT_FALSE(program.state.PartPrepared);
  Tick();
  EXPECT_EQ(ImgC(kPartView).Texts(), (std::vector<std::string>{" first "}));
}

TEST_F(TheMarks, HaveNothingToDeleteWhereThereIsNone) {
  program.state.SlotDirty[kSlot] = false;
  graph.PbMark_Click(0);
  EXPECT_EQ(Unit().UnitMarks, 0);
  EXPECT_TRUE(program.state.PartPrepared);
  EXPECT_FALSE(program.state.SlotDirty[kSlot]);
  EXPECT_TRUE(Shown().PbMarkEnabled[0]);
}

TEST_F(TheMarks, SurviveTheOverviewAndDieWithTheMode) {
  Comment("note", kPlace);
  graph.cmdOver_Click();
  Tick();
  graph.cmdPart_Click();
  Tick();
  EXPECT_EQ(Unit().UnitMarks, 1);
  graph.CboXY_Click(1);
  EXPECT_EQ(Unit().UnitMarks, 0);
}

TEST_F(TheMarks, NameTheAbsoluteValueAndTheReference) {
  graph.CboXY_Click(1);
  Tick();
  // Row 20: the reference is 220 degrees.
  Mark({20, -30}, {30, 0});
  EXPECT_EQ(Text(1), "-30.00 (190.0)");
  graph.CboXY_Click(2);
  Tick();
  Mark({20, -30}, {30, 0});
  EXPECT_EQ(Text(1), "-30.00 (220.0)");
}

TEST_F(TheMarks, HaveNoBracketBehindTheRecording) {
  Load(Slopes(40));
  graph.CboXY_Click(1);
  Tick();
  Mark({45, -30}, {30, 0});
  EXPECT_EQ(Text(1), "-30.00");
}

TEST_F(TheMarks, AreWrittenWhenTheGraphCloses) {
  Comment("note", kPlace);
  graph.cmdExit_Click();
  Tick();
  UnitRecord in_file{};
  const std::string bytes = program.home.Read(std::string("tavdat/") + kName);
  std::memcpy(&in_file, bytes.data(), sizeof in_file);
  EXPECT_EQ(in_file.UnitMarks, 1);
  EXPECT_EQ(in_file.UnitMarkText[0].Get(), "note");
}

TEST_F(TheMarks, ShowNoPartThatIsAbsent) {
  Mark({20, 300}, kPlace);
  Unit().UnitMarkPos[1] = 0;
  LastTexts();
  EXPECT_TRUE(ImgC(kPartView).LinesOf(kBlack).empty());
  EXPECT_EQ(LastTexts().size(), 1U);
  Unit().UnitMarkPos[3] = -5;
  EXPECT_TRUE(LastTexts().empty());
}

TEST_F(TheMarks, KeepACrossInTheLowerLeftCorner) {
  Mark({10, 100}, kPlace);
  EXPECT_EQ(Code(1, 0), 7689);
  EXPECT_EQ(Code(1, 1), 4692);
  LastTexts();
  const auto lines = ImgC(kPartView).LinesOf(kBlack);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].At, (Segment{10, 100, 10 + 50.0 / 70, 100, kBlack}));
  EXPECT_EQ(lines[1].At, (Segment{10, 100, 10, 110, kBlack}));
}

TEST_F(TheMarks, AreAtMostFiveWhateverTheHeaderSays) {
  Unit().UnitMarks = 32000;
  EXPECT_EQ(MarkCount(Unit()), 5);
  Unit().UnitMarks = -3;
  EXPECT_EQ(MarkCount(Unit()), 0);
  ShowMarkPoint(Unit(), 0, view, ImgC(kPartView));
  ShowMarkText(Unit(), 6, view, ImgC(kPartView));
}

// Where a text of ten characters (5 minutes) ends up.
struct MarkPlace {
  PlotPoint wanted;
  PlotPoint corner;
};

TEST_F(TheMarks, MoveATextInsideThePlot) {
  const std::vector<MarkPlace> cases = {{{20, 300}, {20, 308.75}}, {{54.9, 300}, {54.9, 308.75}},
                                        {{55, 300}, {55, 308.75}}, {{59, 300}, {55, 308.75}},
                                        {{20, 599}, {20, 600}},    {{20, 100}, {20, 117.5}},
                                        {{59, 599}, {55, 600}},    {{20, 108.75}, {20, 117.5}}};
  for (const MarkPlace& one : cases) {
    StrokeSurface page;
    page.SetScale(view.RestingScale());
    PrintMarkText(view, one.wanted, "0123456789", page);
    ASSERT_EQ(page.strokes.size(), 1U);
    EXPECT_NEAR(page.strokes[0].At.X1, one.corner.X, 1e-9);
    EXPECT_NEAR(page.strokes[0].At.Y1, one.corner.Y, 1e-9);
  }
}

TEST_F(TheMarks, BeginATextThatIsWiderThanThePlotAtItsLeftEdge) {
  StrokeSurface page;
  page.dots_wide = 100;
  page.SetScale(view.RestingScale());
  PrintMarkText(view, {30, 300}, "01234567890123456789", page);
  EXPECT_DOUBLE_EQ(page.strokes.at(0).At.X1, 10);
}

// A file of others, and a text from the clipboard, may hold any character.
TEST_F(TheMarks, HaveBlanksForControlCharacters) {
  Comment(
      "a\tb\nc\x7F"
      "d",
      {30, 400});
  EXPECT_EQ(Text(1), "a b c d");
  Unit().UnitMarkText[0].Bytes = {'\x01', 'o', '\r', '\n', 'n', '\x1F', 'e', '\x7F', '\x81', '!'};
  EXPECT_EQ(LastTexts(), std::vector<std::string>{" o  n e  ! "});
}

}  // namespace
}  // namespace tavrel
