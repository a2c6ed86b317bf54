#include "graph/graph.h"

#include <algorithm>

#include "dialogs/help.h"
#include "state/header_edit.h"

namespace tavrel {
namespace {

constexpr double kCursorUp = 100;  // steps of the keyboard's cursor in the height of the plot

}  // namespace

Graph::Graph(const Parts& parts)
    : ModalScreen(parts.state, View::kTavGraph),
      parts_(parts),
      plotter_({parts.state, graph_, values_, parts.events}),
      marks_({parts.state, graph_, values_, plotter_, parts.dialogs,
              [this] { tools_.CancelTool(); }, [this] { cmdPart_Click(); }}),
      tools_({parts.state, graph_, values_, plotter_, marks_, parts.dialogs}),
      reading_({parts.state, graph_, values_, plotter_}) {
  plotter_.SetMarks([this] { marks_.ShowMarks(); });
}

UnitRecord& Graph::Unit() const {
  return parts_.state.Unit[parts_.state.SelSlot];
}

// A row without words or time has no place on an axis.
bool Graph::CanBeShown() const {
  const UnitRecord& unit = Unit();
  const int interval = parts_.state.RecInterval[parts_.state.SelSlot];
  return plotter_.IsAttached() && unit.UnitChannels >= 1 && unit.UnitChannels <= kInputs &&
         interval >= 1;
}

void Graph::Open() {
  if (IsOpen() || !CanBeShown()) {
    return;
  }
  OpenScreen();
  parts_.state.GraphMustClose = false;
  ResetValues();
  if (!parts_.state.OverPrepared) {
    BuildCurves();
  }
  graph_.OverPainted = graph_.OverPainted && parts_.state.OverPrepared;
  graph_.PartPainted = graph_.PartPainted && parts_.state.PartPrepared;
  graph_.GraphLoaded = true;
  parts_.state.GraphIdle = false;
  values_.TimerOn = true;
  parts_.events.SetPointer(Pointer::kNormal);
}

void Graph::ResetValues() {
  graph_.DragOn = false;
  graph_.ToolState = Tool::kPartRange;
  graph_.GraphBusy = false;
  graph_.GraphLoaded = false;
  graph_.ViewShown = kOverview;
  graph_.ViewWanted = kOverview;
  GraphValues fresh;
  fresh.Caption = Unit().ApparatusName();
  fresh.TipLanguage = LanguageOf(parts_.state.Settings.HelpLang);
  fresh.CboXY = std::clamp<int>(Unit().UnitGraphMode, 0, kCboXYItems.size() - 1);
  fresh.lblRes = values_.lblRes;
  fresh.LblAxis = values_.LblAxis;
  fresh.FocusCalls = values_.FocusCalls;
  fresh.Legend = values_.Legend;
  fresh.BandChanges = values_.BandChanges;
  told_rows_ = -1;
  told_.clear();
  values_ = fresh;
}

void Graph::BuildCurves() {
  BuildCurveList(Unit(), graph_.Curves);
  plotter_.BuildLegend();
}

void Graph::Timer_Graph_Timer() {
  if (!IsOpen() || !values_.TimerOn) {
    return;
  }
  values_.TimerOn = false;
  parts_.state.GraphIdle = false;
  if (parts_.state.GraphMustClose) {
    cmdExit_Click();
  }
  if (graph_.ViewWanted != kLeaveGraph) {
    graph_.ViewShown = graph_.ViewWanted;
    plotter_.PrepareView();
    plotter_.DrawCurves();
    ReadTold();
    ShowHint();
  }
  if (graph_.ViewWanted == kLeaveGraph) {
    Leave();
  } else {
    values_.TimerOn = true;
  }
  parts_.state.GraphIdle = true;
}

bool Graph::GoesBeyondAxis() const {
  const int channels = Unit().UnitChannels;
  const std::int32_t rows = parts_.state.SampleCount[parts_.state.SelSlot] - 1;
  return rows < MaxRow(channels) && RecordOfRow(rows, channels) > graph_.Shown().RecLast;
}

void Graph::ShowHint() {
  constexpr BothLanguages kChoose{
      "Draw a rectangle with the mouse (or arrow keys and space bar) around a part; Enter shows "
      "it.",
      "Mit der Maus (oder Pfeil- und Leertaste) ein Rechteck um den Ausschnitt ziehen; die "
      "Eingabe-Taste zeigt ihn."};
  constexpr BothLanguages kBeyond{
      "The recording goes on beyond the X axis: enlarge X max in the coordinates.",
      "Die Aufzeichnung geht über die X-Achse hinaus: X max in den Koordinaten vergrößern."};
  values_.Hint = ToldAtCursor();
  if (!values_.Hint.empty()) {
    return;
  }
  const BothLanguages hint = graph_.ViewShown == kPartView ? HintOfPart()
                             : GoesBeyondAxis()            ? kBeyond
                                                           : kChoose;
  const std::string told = ToldAtCursor();
  values_.Hint = told.empty() ? std::string(hint.In(values_.TipLanguage)) : told;
}

// Why nothing is to be seen. A drawing that was broken off may still bring a curve.
BothLanguages Graph::HintOfPart() const {
  constexpr BothLanguages kEmpty{
      "Nothing has been recorded in this part: choose another one in the overview.",
      "In diesem Ausschnitt ist nichts aufgezeichnet: in der Übersicht einen anderen wählen."};
  constexpr BothLanguages kNoColour{
      "No input has a colour, so there is no curve: choose one on the worksheet.",
      "Kein Eingang hat eine Farbe, also gibt es keine Kurve: auf dem Arbeitsblatt eine wählen."};
  constexpr BothLanguages kOutside{
      "No curve comes into this part: choose another one in the overview.",
      "In diesen Ausschnitt kommt keine Kurve: in der Übersicht einen anderen wählen."};
  const ViewFrame& view = graph_.Shown();
  if (view.RecEnd <= view.RecFirst) {
    return kEmpty;
  }
  if (graph_.Curves.CurveCount == 0) {
    return kNoColour;
  }
  const bool is_drawn = view.RecNow >= view.RecEnd;
  return is_drawn && !view.HasCurve ? kOutside : BothLanguages{};
}

// The journal of a recording that is on is in memory, any other one is read once.
void Graph::ReadTold() {
  const int slot = parts_.state.SelSlot;
  if (parts_.state.SampleCount[slot] == told_rows_) {
    return;
  }
  told_rows_ = parts_.state.SampleCount[slot];
  told_ = parts_.files.Journals().Told(slot);
  ++values_.BandChanges;
}

BandView Graph::BandOf(int columns) const {
  return {graph_.Shown(), Unit().UnitChannels, columns};
}

std::vector<BandRun> Graph::Band(int columns) const {
  return IsLive() ? BandRuns(told_, BandOf(columns)) : std::vector<BandRun>();
}

std::string Graph::BandTipAt(int column, int columns) const {
  return IsLive() ? BandTip(told_, BandOf(columns), column, values_.TipLanguage) : "";
}

// In one line, for the cursor that the keyboard moves.
std::string Graph::ToldAtCursor() const {
  constexpr int kColumns = 1000;
  const ViewFrame& view = graph_.Shown();
  const double width = view.XRight - view.XLeft;
  if (!values_.KeyCursorShown || width == 0) {
    return "";
  }
  const double along = std::clamp((values_.KeyCursorX - view.XLeft) / width, 0.0, 1.0);
  const std::string tip = BandTip(told_, BandOf(kColumns), static_cast<int>(along * (kColumns - 1)),
                                  values_.TipLanguage);
  return tip.substr(0, tip.find('\n'));
}

void Graph::Leave() {
  const int slot = parts_.state.SelSlot;
  if (parts_.state.SlotDirty[slot]) {
    parts_.files.WriteHeader(slot);
  }
  parts_.state.GraphIdle = true;
  parts_.state.GraphMustClose = false;
  graph_.GraphLoaded = false;
  CloseScreen();
}

void Graph::CloseNow() {
  if (!IsOpen()) {
    return;
  }
  values_.TimerOn = false;
  if (plotter_.IsAttached()) {
    tools_.DropDrag();
  }
  graph_.ViewWanted = kLeaveGraph;
  Leave();
}

void Graph::Resized() {
  parts_.state.ForgetCurves();
  if (!IsOpen()) {
    return;
  }
  tools_.CancelTool();
  graph_.DragOn = false;
  graph_.OverPainted = false;
  graph_.PartPainted = false;
  plotter_.BuildLegend();
}

// The view becomes visible at once as far as it is painted; the next tick draws what it lacks.
void Graph::BringToFront(int view) {
  const bool is_part = view == kPartView;
  tools_.DropDrag();
  tools_.MouseLeave();
  values_.KeyCursorShown = false;
  graph_.ToolState = is_part ? Tool::kNone : Tool::kPartRange;
  plotter_.RestorePicture(view);
  values_.frCurve = view;
  values_.EnableTools(is_part);
  values_.cmdOverShown = is_part;
  values_.cmdPartShown = !is_part;
  values_.CboXYShown = is_part;
  values_.MnuOutputEnabled = is_part;
  graph_.ViewWanted = view;
}

void Graph::cmdPart_Click() {
  if (IsOpen() && graph_.OverPainted && graph_.ViewWanted != kLeaveGraph) {
    BringToFront(kPartView);
  }
}

void Graph::cmdOver_Click() {
  if (!IsOpen() || !graph_.PartPainted || graph_.ViewWanted == kLeaveGraph) {
    return;
  }
  tools_.CancelTool();
  values_.Txt_for_MarkShown = false;
  values_.picXYShown = true;
  BringToFront(kOverview);
}

void Graph::cmdExit_Click() {
  if (!IsOpen()) {
    return;
  }
  tools_.CancelTool();
  tools_.DropDrag();
  plotter_.RestorePicture(kOverview);
  plotter_.RestorePicture(kPartView);
  graph_.ViewWanted = kLeaveGraph;
}

// Marks are coded against the Y range, which changes with the mode. The view is drawn anew at once:
// neither the mouse nor an output meets a frame of the mode before.
void Graph::CboXY_Click(int index) {
  const bool is_change = IsLive() && index >= 0 && index < static_cast<int>(kCboXYItems.size()) &&
                         index != Unit().UnitGraphMode;
  if (!is_change) {
    return;
  }
  tools_.CancelTool();
  EditHeader(parts_.state, parts_.state.SelSlot, [index](UnitRecord& header) {
    header.UnitMarks = 0;
    header.UnitGraphMode = static_cast<std::int16_t>(index);
  });
  parts_.state.PartPrepared = false;
  values_.CboXY = index;
  BringToFront(kPartView);
  Timer_Graph_Timer();
}

void Graph::KeyEnter() {
  if (!IsOpen()) {
    return;
  }
  if (graph_.ToolState == Tool::kComment) {
    marks_.TakeComment();
  } else if (values_.frCurve == kPartView) {
    cmdOver_Click();
  } else {
    cmdPart_Click();
  }
}

void Graph::KeyEscape() {
  if (values_.frCurve == kPartView && static_cast<int>(graph_.ToolState) > 0) {
    tools_.CancelTool();
  } else {
    cmdExit_Click();
  }
}

void Graph::MnuHelp_Click() {
  ShowHelp(parts_.dialogs, parts_.shell, parts_.state.AppPath, parts_.state.Settings.HelpLang);
}

void Graph::PicC_MouseDown(PlotPoint at) {
  if (IsLive()) {
    values_.KeyCursorShown = false;
    tools_.MouseDown(at);
  }
}

void Graph::PicC_MouseMove(PlotPoint at) {
  if (IsLive()) {
    values_.KeyCursorShown = false;
    tools_.MouseMove(at);
    reading_.Follow(at);
  }
}

void Graph::PicC_MouseUp(PlotPoint at) {
  if (IsLive()) {
    tools_.MouseUp(at);
  }
}

void Graph::PicC_MouseLeave() {
  tools_.MouseLeave();
  reading_.Leave();
}

void Graph::PicColor_MouseUp(double height) {
  if (!IsLive()) {
    return;
  }
  if (graph_.ToolState == Tool::kChooseCurve) {
    tools_.LegendUp(height);
  } else {
    reading_.Choose(height);
  }
}

// Where the cursor is not shown yet it comes up in the middle.
void Graph::PlaceCursor() {
  const ViewFrame& view = graph_.Shown();
  const auto hold = [](double value, double edge, double other_edge) {
    return std::clamp(value, std::min(edge, other_edge), std::max(edge, other_edge));
  };
  if (!values_.KeyCursorShown) {
    values_.KeyCursorX = (view.XLeft + view.XRight) / 2;
    values_.KeyCursorY = (view.YTop + view.YBottom) / 2;
  }
  values_.KeyCursorShown = true;
  values_.KeyCursorX = hold(values_.KeyCursorX, view.XLeft, view.XRight);
  values_.KeyCursorY = hold(values_.KeyCursorY, view.YBottom, view.YTop);
}

void Graph::MoveCursor(CursorMove move, int times) {
  if (!IsLive()) {
    return;
  }
  PlaceCursor();
  const ViewFrame& view = graph_.Shown();
  const int channels = Unit().UnitChannels;
  const int interval = parts_.state.RecInterval[parts_.state.SelSlot];
  const double point = MinutesOfRecord(view.RecFirst + view.RecStep, interval, channels) -
                       MinutesOfRecord(view.RecFirst, interval, channels);
  const double up = (view.YTop - view.YBottom) / kCursorUp;
  switch (move) {
    case CursorMove::kLeft:
      values_.KeyCursorX -= times * point;
      break;
    case CursorMove::kRight:
      values_.KeyCursorX += times * point;
      break;
    case CursorMove::kUp:
      values_.KeyCursorY += times * up;
      break;
    case CursorMove::kDown:
      values_.KeyCursorY -= times * up;
      break;
    case CursorMove::kToStart:
      values_.KeyCursorX = view.XLeft;
      break;
    case CursorMove::kToEnd:
      values_.KeyCursorX = view.XRight;
      break;
  }
  PlaceCursor();
  tools_.MouseMove({values_.KeyCursorX, values_.KeyCursorY});
  reading_.Follow({values_.KeyCursorX, values_.KeyCursorY});
}

void Graph::PressCursor() {
  if (!IsLive() || !values_.KeyCursorShown) {
    return;
  }
  const PlotPoint at{values_.KeyCursorX, values_.KeyCursorY};
  if (graph_.ToolState == Tool::kChooseCurve) {
    tools_.ChooseCurveAt(at);
    return;
  }
  const bool is_drag =
      graph_.ToolState == Tool::kPartRange ||
      (graph_.ToolState >= Tool::kBaseline1 && graph_.ToolState <= Tool::kBaseline4);
  if (!graph_.DragOn) {
    tools_.MouseDown(at);
    if (is_drag) {
      return;
    }
  }
  tools_.MouseUp(at);
}

void Graph::PbEval_Click(int index) {
  if (IsLive() && graph_.ViewShown == kPartView) {
    tools_.Start(index);
  }
}

void Graph::PbMark_Click(int index) {
  if (!IsLive() || graph_.ViewShown != kPartView || index < 0 || index > 2) {
    return;
  }
  values_.PbMarkEnabled[index] = false;
  values_.Lbl_InstrShown = false;
  values_.Up_ArrowShown = false;
  tools_.BeginTool();
  marks_.Start(index);
}

}  // namespace tavrel
