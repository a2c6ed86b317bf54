#include <gmock/gmock.h>

#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(GraphForm, OpensOnTheOverviewWithItsToolsDisabled) {
  GraphBench bench;
  bench.program.state.ActiveView = View::kTavWork;
  bench.LoadAndOpen(bench.Slopes(5));
  const GraphValues& shown = bench.Shown();
  EXPECT_EQ(bench.program.state.ActiveView, View::kTavGraph);
  EXPECT_EQ(shown.Caption, "Furnace 7");
  EXPECT_EQ(shown.frCurve, kOverview);
  EXPECT_TRUE(shown.TimerOn);
  EXPECT_TRUE(shown.cmdPartShown);
  EXPECT_FALSE(shown.cmdOverShown);
  EXPECT_FALSE(shown.CboXYShown);
  EXPECT_FALSE(shown.MnuOutputEnabled);
  EXPECT_FALSE(shown.PbSaveEnabled || shown.PbCopyEnabled || shown.PbPrintEnabled);
  EXPECT_THAT(shown.PbEvalEnabled.Values, Each(false));
  EXPECT_THAT(shown.PbMarkEnabled.Values, Each(false));
  EXPECT_TRUE(shown.picXYShown);
  EXPECT_EQ(bench.ToolState(), Tool::kPartRange);
  EXPECT_FALSE(bench.program.state.GraphIdle);
  bench.Tick();
  EXPECT_TRUE(bench.program.state.GraphIdle);
}

TEST(GraphForm, HasItsTipsInTheLanguageOfTheSettings) {
  for (const char* language : {"German", "English"}) {
    GraphBench bench;
    bench.program.state.Settings.HelpLang = language;
    bench.LoadAndOpen(bench.Slopes(5));
    EXPECT_EQ(bench.Shown().TipLanguage, LanguageOf(language));
  }
}

TEST(GraphForm, KeepsTheFileForItselfWhileItDraws) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(50));
  std::vector<bool> idle;
  bench.program.events.on_pump = [&] { idle.push_back(bench.program.state.GraphIdle); };
  bench.Tick();
  bench.program.state.OverPrepared = false;
  bench.Tick();
  EXPECT_EQ(idle.size(), 18U);  // 48 rows, twice
  EXPECT_THAT(idle, Each(false));
}

// Rows 11 to 20 were fetched later, a value of row 41 is filled in, sets are missing before row 71.
void TellOfRows(GraphBench& bench) {
  bench.WriteJournal(
      {{"begin", {{"interval", 60}, {"line", "direct"}}},
       {"start", {{"rows", 0}}},
       {"back", {{"rows", 11}}},
       {"drained", {{"took", 0.01}, {"rows", 21}}},
       {"values",
        {{"first", 41},
         {"last", 41},
         {"inputs", JsonValue::List{2}},
         {"filled", true},
         {"what", "lost on the line"},
         {"rows", 41}}},
       {"lost",
        {{"before", 71}, {"sets", 3}, {"least", 3}, {"most", 3}, {"what", "full"}, {"rows", 71}}}});
}

TEST(GraphForm, TheBandShowsWhatTheJournalTellsInEachView) {
  GraphBench bench;
  TellOfRows(bench);
  bench.LoadAndOpen(bench.Slopes(90));
  bench.Tick();
  const std::vector<BandRun> over = bench.graph.Band(991);
  EXPECT_THAT(over,
              ElementsAre(BandRun{BandKind::kLater, 95, 195}, BandRun{BandKind::kFilled, 395, 405},
                          BandRun{BandKind::kMissing, 694, 696}));
  EXPECT_EQ(bench.graph.BandTipAt(695, 991), "before row 71: 3 sets are missing (full)");
  bench.ShowPart({60, 100}, {80, 400});
  EXPECT_THAT(bench.graph.Band(201), ElementsAre(BandRun{BandKind::kMissing, 104, 106}));
  for (const int mode : {kRelativeMode, kReferenceMode}) {
    bench.graph.CboXY_Click(mode);
    EXPECT_THAT(bench.graph.Band(201), ElementsAre(BandRun{BandKind::kMissing, 104, 106}));
  }
}

TEST(GraphForm, WithoutAJournalThereIsNoBand) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(90));
  bench.Tick();
  EXPECT_THAT(bench.graph.Band(991), IsEmpty());
  EXPECT_EQ(bench.graph.BandTipAt(300, 991), "");
}

TEST(GraphForm, TheKeyboardsCursorSaysWhatTheBandTells) {
  GraphBench bench;
  bench.program.state.Settings.HelpLang = "German";
  TellOfRows(bench);
  bench.LoadAndOpen(bench.Slopes(90));
  bench.Tick();
  bench.graph.MoveCursor(CursorMove::kToStart, 1);
  bench.graph.MoveCursor(CursorMove::kRight, 15);
  bench.Tick();
  EXPECT_EQ(bench.Shown().Hint, "Zeilen 11 bis 20: später aus dem Puffer des Geräts geholt");
  bench.graph.MoveCursor(CursorMove::kRight, 15);
  bench.Tick();
  EXPECT_NE(bench.Shown().Hint.find("Rechteck"), std::string::npos);
}

TEST(GraphForm, TheBandGrowsWithTheRecording) {
  GraphBench bench;
  TellOfRows(bench);
  bench.LoadAndOpen(bench.Slopes(30));
  bench.Tick();
  EXPECT_EQ(bench.graph.Band(991).size(), 1U);
  const int before = bench.Shown().BandChanges;
  bench.Tick();
  EXPECT_EQ(bench.Shown().BandChanges, before) << "the journal is not read at each tick";
  bench.program.state.SampleCount[GraphBench::kSlot] = 50;
  bench.Tick();
  EXPECT_GT(bench.Shown().BandChanges, before);
  EXPECT_EQ(bench.graph.Band(991).size(), 2U);
}

TEST(GraphForm, DoesNotOpenOnAFileWithoutColumnsOrTime) {
  GraphBench bench;
  bench.Load(bench.Slopes(5));
  bench.Unit().UnitChannels = 0;
  bench.graph.Open();
  EXPECT_FALSE(bench.graph.IsOpen());
  bench.Unit().UnitChannels = 3;
  bench.program.state.RecInterval[GraphBench::kSlot] = 0;
  bench.graph.Open();
  EXPECT_FALSE(bench.graph.IsOpen());
}

TEST(GraphForm, ShowsThePartViewOnlyWhenTheOverviewIsPainted) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(5));
  bench.graph.cmdPart_Click();
  EXPECT_EQ(bench.Shown().frCurve, kOverview);
  bench.Tick();
  bench.graph.cmdPart_Click();
  const GraphValues& shown = bench.Shown();
  EXPECT_EQ(shown.frCurve, kPartView);
  EXPECT_TRUE(shown.cmdOverShown);
  EXPECT_FALSE(shown.cmdPartShown);
  EXPECT_TRUE(shown.CboXYShown);
  EXPECT_TRUE(shown.MnuOutputEnabled);
  EXPECT_THAT(shown.PbMarkEnabled.Values, Each(true));
  bench.graph.cmdOver_Click();  // not painted yet
  EXPECT_EQ(shown.frCurve, kPartView);
  bench.Tick();
  bench.graph.cmdOver_Click();
  EXPECT_EQ(shown.frCurve, kOverview);
  EXPECT_FALSE(shown.CboXYShown);
  EXPECT_FALSE(shown.MnuOutputEnabled);
  EXPECT_THAT(shown.PbMarkEnabled.Values, Each(false));
  EXPECT_EQ(bench.ToolState(), Tool::kPartRange);
}

TEST(GraphForm, SwitchesViewsByEnter) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(5));
  bench.Tick();
  bench.graph.KeyEnter();
  EXPECT_EQ(bench.Shown().frCurve, kPartView);
  bench.Tick();
  bench.graph.KeyEnter();
  EXPECT_EQ(bench.Shown().frCurve, kOverview);
}

TEST(GraphForm, ToolsWaitWhileThePartViewIsDrawn) {
  GraphBench bench;
  bench.header.UnitView = {7689, 4692, 29211, 28083};
  bench.LoadAndOpen(bench.Slopes(50));
  bench.Tick();
  bench.graph.cmdPart_Click();
  bool any_enabled = false;
  bench.program.events.on_pump = [&] {
    any_enabled = any_enabled || bench.Shown().PbEvalEnabled[0] || bench.Shown().CboXYShown ||
                  bench.Shown().MnuOutputEnabled;
  };
  bench.Tick();
  EXPECT_FALSE(any_enabled);
  EXPECT_TRUE(bench.Shown().PbEvalEnabled[0]);
  EXPECT_TRUE(bench.Shown().CboXYShown);
  EXPECT_TRUE(bench.Shown().MnuOutputEnabled);
}

TEST(GraphForm, ToolsStayDisabledWhenTheDrawingWasLeftForTheOverview) {
  GraphBench bench;
  bench.header.UnitView = {7689, 4692, 29211, 28083};
  bench.LoadAndOpen(bench.Slopes(50));
  bench.Tick();
  bench.graph.cmdPart_Click();
  bench.Tick();
  bench.program.state.PartPrepared = false;
  bench.program.events.on_pump = [&bench] { bench.graph.cmdOver_Click(); };
  bench.Tick();
  EXPECT_EQ(bench.Shown().frCurve, kOverview);
  EXPECT_FALSE(bench.Shown().PbEvalEnabled[0]);
  EXPECT_FALSE(bench.Shown().MnuOutputEnabled);
  EXPECT_FALSE(bench.Shown().CboXYShown);
}

TEST(GraphForm, ClosesWithTheTickAfterTheExit) {
  GraphBench bench;
  bench.program.state.ActiveView = View::kTavWork;
  bench.LoadAndOpen(bench.Slopes(5));
  bench.Tick();
  bench.graph.cmdExit_Click();
  EXPECT_TRUE(bench.graph.IsOpen());
  bench.Tick();
  EXPECT_FALSE(bench.graph.IsOpen());
  EXPECT_EQ(bench.program.state.ActiveView, View::kTavWork);
  EXPECT_TRUE(bench.program.state.GraphIdle);
  EXPECT_FALSE(bench.Shown().TimerOn);
}

TEST(GraphForm, ExitEndsADrawingAtOnce) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(90));
  bench.program.events.on_pump = [&bench] { bench.graph.cmdExit_Click(); };
  bench.Tick();
  EXPECT_FALSE(bench.graph.IsOpen());
  EXPECT_EQ(bench.program.events.pumps, 1);
}

TEST(GraphForm, WritesAChangedHeaderWhenItCloses) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(50));
  bench.Tick();
  bench.Drag({20, 200}, {60, 700});
  bench.graph.cmdExit_Click();
  bench.Tick();
  EXPECT_FALSE(bench.program.state.SlotDirty[GraphBench::kSlot]);
  UnitRecord unit{};
  const std::string bytes = bench.program.home.Read(std::string("tavdat/") + GraphBench::kName);
  std::memcpy(&unit, bytes.data(), sizeof unit);
  EXPECT_THAT(unit.UnitView, ElementsAre(11993, 9370, 20602, 21066));
}

TEST(GraphForm, ClosesWhenTheSlotWentOnInAnotherFileWhateverToolIsOn) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(50));
  bench.ShowPart({10, 100}, {90, 900});
  bench.graph.PbEval_Click(0);
  bench.program.state.GraphMustClose = true;
  bench.Tick();
  EXPECT_FALSE(bench.graph.IsOpen());
  EXPECT_FALSE(bench.program.state.GraphMustClose);
}

TEST(GraphForm, OpenedAgainOnTheSameSlotKeepsItsPictures) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(50));
  bench.ShowPart({10, 100}, {90, 900});
  bench.graph.cmdExit_Click();
  bench.Tick();
  bench.graph.Open();
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).clears, 1);
  bench.graph.cmdPart_Click();
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kPartView).clears, 1);
}

TEST(GraphForm, OpenedAgainAfterAChangeIsPaintedAnew) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(50));
  bench.Tick();
  bench.graph.cmdExit_Click();
  bench.Tick();
  bench.Unit().UnitColour[1] = 0;
  bench.program.state.OverPrepared = false;
  bench.graph.Open();
  bench.graph.cmdPart_Click();
  EXPECT_EQ(bench.Shown().frCurve, kOverview);  // nothing is painted yet
  EXPECT_EQ(bench.graph.State().Curves.CurveCount, 2);
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kOverview).clears, 2);
}

TEST(GraphForm, IsPaintedAnewWhenItsPicturesGetAnotherSize) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(50));
  bench.ShowPart({10, 100}, {90, 900});
  const auto before = bench.ImgC(kPartView).strokes;
  for (StrokeSurface* picture : {&bench.ImgC(0), &bench.ImgC(1), &bench.PicC(0), &bench.PicC(1)}) {
    picture->strokes.clear();
  }
  bench.graph.Resized();
  bench.Tick();
  EXPECT_EQ(bench.ImgC(kPartView).strokes, before);
  EXPECT_EQ(bench.PicC(kPartView).strokes, before);
  EXPECT_EQ(bench.Shown().frCurve, kPartView);
}

TEST(GraphForm, MayNotBeResizedInTheMiddleOfADrawing) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(50));
  std::vector<bool> may;
  bench.program.events.on_pump = [&] { may.push_back(bench.graph.MayResize()); };
  bench.Tick();
  EXPECT_THAT(may, Each(false));
  EXPECT_TRUE(bench.graph.MayResize());
}

TEST(GraphForm, IsClosedAtOnceWhenTheProgramEnds) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(50));
  bench.Tick();
  bench.Drag({20, 200}, {60, 700});
  bench.graph.CloseNow();
  EXPECT_FALSE(bench.graph.IsOpen());
  EXPECT_FALSE(bench.program.state.SlotDirty[GraphBench::kSlot]);
  EXPECT_TRUE(bench.program.state.GraphIdle);
}

TEST(GraphForm, ShowsTheHelp) {
  GraphBench bench;
  bench.LoadAndOpen(bench.Slopes(5));
  bench.program.state.Settings.HelpLang = "German";
  bench.graph.MnuHelp_Click();
  EXPECT_THAT(bench.program.shell.opened,
              ElementsAre(bench.program.home.Path() + "/" + kGermanManual));
}

TEST(GraphForm, DoesNothingWhenItIsNotOpen) {
  GraphBench bench;
  bench.Load(bench.Slopes(5));
  bench.Tick();
  bench.graph.cmdPart_Click();
  bench.graph.cmdOver_Click();
  bench.graph.cmdExit_Click();
  bench.graph.KeyEnter();
  bench.graph.KeyEscape();
  bench.graph.PbEval_Click(0);
  bench.graph.PbMark_Click(1);
  bench.graph.CboXY_Click(1);
  bench.Drag({20, 200}, {60, 700});
  bench.graph.PressCursor();
  bench.graph.MoveCursor(CursorMove::kRight, 1);
  EXPECT_THAT(bench.ImgC(kOverview).strokes, IsEmpty());
  EXPECT_EQ(bench.Unit().UnitGraphMode, 0);
}

}  // namespace
}  // namespace tavrel
