#include "graph/graph_plotter.h"

#include <algorithm>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "graph/measure.h"

namespace tavrel {
namespace {

constexpr double kStripDepth = 10;   // PicX and PicY across their axis
constexpr double kLabelTop = 6;      // of a label on PicX
constexpr double kTickTop = 8;       // of a tick on PicX
constexpr double kLabelRight = 7.5;  // of a label on PicY
constexpr double kTickLeft = 8.5;    // of a tick on PicY
constexpr double kSampleLeft = 0.2;  // line samples of the legend
constexpr double kSampleRight = 0.8;

void SetEmpty(double& top, double bottom, std::int16_t& header_word) {
  if (top == bottom) {
    top += 1;
    header_word = ToWord(top);
  }
}

void SetRestingScales(const ViewSurfaces& to, const ViewFrame& view) {
  to.ImgC.SetScale(view.RestingScale());
  to.PicC.SetScale(view.RestingScale());
  to.PicX.SetScale({view.XLeft, 0, view.XRight, kStripDepth});
  to.PicY.SetScale({0, view.YTop, kStripDepth, view.YBottom});
}

void ClearAll(const ViewSurfaces& to) {
  for (Surface* surface : {&to.ImgC, &to.PicC, &to.PicX, &to.PicY}) {
    surface->Clear();
    surface->SetPen(Pen{});
  }
}

// True if a line between two values comes into the view.
bool IsInside(const ViewFrame& view, double from, double to) {
  return std::max(from, to) >= view.YBottom && std::min(from, to) <= view.YTop;
}

// A label beneath the plot with its tick; `half` is half its width.
void PrintBelow(Surface& strip, double x, double half, const std::string& text) {
  strip.Print(x - half, kLabelTop, text);
  strip.Line({x, kTickTop, x, kStripDepth, kBlack});
}

}  // namespace

UnitRecord& GraphPlotter::Unit() const {
  return parts_.state.Unit[parts_.state.SelSlot];
}

bool GraphPlotter::IsRelative() const {
  return parts_.graph.ViewShown == kPartView && IsRelativeMode(Unit().UnitGraphMode);
}

bool GraphPlotter::HasReferenceAxis() const {
  return parts_.graph.ViewShown == kPartView && IsReferenceMode(Unit().UnitGraphMode);
}

std::optional<double> GraphPlotter::ValueAt(SampleReader& reader, int record, int column) const {
  const std::optional<double> value = reader.Degrees(record + column);
  const std::optional<double> reference = ReferenceAt(reader, record);
  return value && reference ? std::optional(*value - *reference) : std::nullopt;
}

// What is taken from all curves of a row.
std::optional<double> GraphPlotter::ReferenceAt(SampleReader& reader, int record) const {
  return IsRelative() ? reader.Degrees(record + parts_.graph.Curves.RefColumn) : 0;
}

void GraphPlotter::RestorePicture(int view) {
  const ViewSurfaces& to = surfaces_->Views[view];
  to.PicC.TakePicture(to.ImgC);
  to.PicC.Refresh();
}

void GraphPlotter::PrepareView() {
  const bool is_over = parts_.graph.ViewShown == kOverview;
  bool& is_prepared = is_over ? parts_.state.OverPrepared : parts_.state.PartPrepared;
  if (is_prepared) {
    return;
  }
  is_prepared = true;
  if (is_over) {
    FrameOverview();
  } else {
    FramePartView();
  }
  const int slot = parts_.state.SelSlot;
  const bool is_high = SetRecords(parts_.graph.Shown(), Unit(), parts_.state.RecInterval[slot],
                                  parts_.state.SampleCount[slot]);
  parts_.values.lblRes = is_high ? "high" : "low";
  TakeStartPoints();
  PaintEmptyPlot();
  (is_over ? parts_.graph.OverPainted : parts_.graph.PartPainted) = true;
}

// An empty axis is repaired in the header.
void GraphPlotter::FrameOverview() {
  UnitRecord& unit = Unit();
  GraphState& graph = parts_.graph;
  ViewFrame& view = graph.Shown();
  view.XLeft = 0;
  view.XRight = unit.UnitXmax;
  view.YTop = unit.UnitYmax;
  view.YBottom = unit.UnitYmin;
  SetEmpty(view.YTop, view.YBottom, unit.UnitYmax);
  SetEmpty(view.XRight, view.XLeft, unit.UnitXmax);
  SetFactors(view);
  graph.PartX1 = DecodeX(view, unit.UnitView[0]);
  graph.PartY1 = DecodeY(view, unit.UnitView[1]);
  graph.PartX2 = DecodeX(view, unit.UnitView[2]);
  graph.PartY2 = DecodeY(view, unit.UnitView[3]);
}

void GraphPlotter::FramePartView() {
  GraphState& graph = parts_.graph;
  ViewFrame& view = graph.Shown();
  if (graph.PartX2 < graph.PartX1) {
    std::swap(graph.PartX1, graph.PartX2);
  }
  if (graph.PartY2 < graph.PartY1) {
    std::swap(graph.PartY1, graph.PartY2);
  }
  graph.PartX2 += graph.PartX2 == graph.PartX1 ? 1 : 0;
  graph.PartY2 += graph.PartY2 == graph.PartY1 ? 1 : 0;
  view.XLeft = graph.PartX1;
  view.XRight = graph.PartX2;
  view.YTop = graph.PartY2;
  view.YBottom = graph.PartY1;
  SetFactors(view);
  graph.AxisTicks = {};  // a view without rows has none
}

// The start point of every line, and in the relative modes a frame that is symmetrical about 0.
void GraphPlotter::TakeStartPoints() {
  ViewFrame& view = parts_.graph.Shown();
  const bool is_relative = IsRelative();
  if (is_relative) {
    const double half = (view.YTop - view.YBottom) / 2;
    view.YTop = half;
    view.YBottom = -half;
  }
  if (view.RecFirst >= view.RecEnd) {
    return;
  }
  SampleReader reader(parts_.state.SlotFileNo[parts_.state.SelSlot]);
  const CurveList& curves = parts_.graph.Curves;
  for (int k = 0; k < curves.CurveCount; ++k) {
    view.CurveLastY[k] = ValueAt(reader, view.RecFirst, curves.At(k).CurveColumn);
  }
  view.RecPrev = view.RecFirst;
}

void GraphPlotter::PaintEmptyPlot() {
  const ViewSurfaces& to = Shown();
  ClearAll(to);
  SetRestingScales(to, parts_.graph.Shown());
  DrawAxes();
  if (parts_.graph.ViewShown == kOverview) {
    PartFrame(to.ImgC);
  } else if (show_marks_) {
    show_marks_();
  }
  RestorePicture(parts_.graph.ViewShown);
  to.PicX.Refresh();
  to.PicY.Refresh();
}

void GraphPlotter::PartFrame(Surface& target) const {
  const GraphState& graph = parts_.graph;
  target.SetPen({PenMode::kInvert, PenStyle::kDot, 1});
  target.Box({graph.PartX1, graph.PartY1, graph.PartX2, graph.PartY2, kBlack});
  target.SetPen(Pen{});
}

void GraphPlotter::DrawAxes() {
  const ViewSurfaces& to = Shown();
  const ViewFrame& view = parts_.graph.Shown();
  if (!HasReferenceAxis()) {
    DrawTimeAxis(to);
  }
  parts_.values.LblAxis[parts_.graph.ViewShown] = AxisUnit(view, HasReferenceAxis());
  DrawValueAxis(to);
  if (IsRelative()) {
    to.ImgC.Line({view.XLeft, 0, view.XRight, 0, kBlack});
  }
}

void GraphPlotter::DrawTimeAxis(const ViewSurfaces& to) {
  const ViewFrame& view = parts_.graph.Shown();
  const auto width_of = [&to](std::string_view text) { return to.PicX.TextWidth(text); };
  for (const AxisTick& tick : TimeTicks(view, width_of)) {
    to.ImgC.Line({tick.At, view.YBottom, tick.At, view.YTop, kGridColour});
    if (!tick.Text.empty()) {
      PrintBelow(to.PicX, tick.At, tick.Width / 2, tick.Text);
    }
  }
}

void GraphPlotter::DrawValueAxis(const ViewSurfaces& to) {
  const ViewFrame& view = parts_.graph.Shown();
  const double height = -to.PicY.TextHeight();
  const auto width_of = [&to](std::string_view text) { return to.PicY.TextWidth(text); };
  for (const AxisTick& tick : ValueTicks(view, height, width_of)) {
    to.ImgC.Line({view.XLeft, tick.At, view.XRight, tick.At, kGridColour});
    if (!tick.Text.empty()) {
      const double width = std::min(tick.Width, kLabelRight);
      to.PicY.Print(kLabelRight - width, tick.At + height / 2, tick.Text);
      to.PicY.Line({kTickLeft, tick.At, kStripDepth, tick.At, kBlack});
    }
  }
}

void GraphPlotter::DrawCurves() {
  ViewFrame& view = parts_.graph.Shown();
  const int slot = parts_.state.SelSlot;
  view.RecEnd = RecEndOf(view, parts_.state.SampleCount[slot], Unit().UnitChannels);
  if (view.RecNow >= view.RecEnd) {
    return;
  }
  const BusyGraph busy(parts_.graph);
  SetToolsWhileDrawing(false);
  const ViewSurfaces& to = Shown();
  for (Surface* surface : {&to.ImgC, &to.PicC}) {
    surface->SetPen(Pen{});
    surface->SetScale(view.RecordScale());
  }
  DrawRows();
  SetRestingScales(to, view);
  SetToolsWhileDrawing(true);
}

// The tools wait while the part view is drawn. They come back only if it is still wanted.
void GraphPlotter::SetToolsWhileDrawing(bool is_over) {
  const bool is_wanted = !is_over || parts_.graph.ViewWanted == kPartView;
  if (parts_.graph.ViewShown != kPartView || !is_wanted) {
    return;
  }
  parts_.values.EnableTools(is_over);
  parts_.values.CboXYShown = is_over;
  parts_.values.MnuOutputEnabled = is_over;
}

void GraphPlotter::DrawRows() {
  GraphState& graph = parts_.graph;
  ViewFrame& view = graph.Shown();
  const int wanted = graph.ViewWanted;
  SampleReader reader(parts_.state.SlotFileNo[parts_.state.SelSlot]);
  ReferenceScale scale;
  if (HasReferenceAxis()) {
    scale = ScanReference(reader);
  }
  scale.last_right = view.RecFirst;
  int passes = 0;
  for (view.RecNow = view.RecDrawn; view.RecNow < view.RecEnd; view.RecNow += view.RecStep) {
    if (scale.is_on) {
      DrawReferenceTick(scale, reader);
    }
    DrawRow(reader);
    if (++passes % kRowsToPump != 0) {
      continue;
    }
    parts_.events.Pump();
    if (graph.ViewWanted != wanted) {
      break;
    }
  }
  view.RecDrawn = view.RecNow;
}

// Looks through the rows that are about to be drawn. Only a reference that rises over them gives
// a scale.
GraphPlotter::ReferenceScale GraphPlotter::ScanReference(SampleReader& reader) {
  GraphState& graph = parts_.graph;
  const ViewFrame& view = graph.Shown();
  const int wanted = graph.ViewWanted;
  graph.AxisTicks = {};
  int at_least = view.RecDrawn;
  int at_most = view.RecDrawn;
  std::optional<double> least;
  std::optional<double> most;
  int passes = 0;
  for (int record = view.RecDrawn; record < view.RecEnd; record += view.RecStep) {
    const std::optional<double> value = reader.Degrees(record + graph.Curves.RefColumn);
    if (value && (!most || *value > *most)) {
      most = value;
      at_most = record;
    }
    if (value && (!least || *value < *least)) {
      least = value;
      at_least = record;
    }
    if (++passes % kRowsToPump == 0) {
      parts_.events.Pump();
      if (graph.ViewWanted != wanted) {
        break;
      }
    }
  }
  ReferenceScale scale;
  if (!most || *most <= *least) {
    return scale;
  }
  scale.is_on = at_most > at_least;
  scale.step = StepY(*most - *least) / 2;
  scale.next = IntFloor(*least / scale.step);
  return scale;
}

// One tick at the most for a row, so that a fast rise does not spend all its ticks at once.
void GraphPlotter::DrawReferenceTick(ReferenceScale& scale, SampleReader& reader) {
  GraphState& graph = parts_.graph;
  const ViewFrame& view = graph.Shown();
  const double value = scale.next * scale.step;
  const std::optional<double> reference = reader.Degrees(view.RecNow + graph.Curves.RefColumn);
  if (!reference || value > *reference) {
    return;
  }
  ++scale.next;
  const ViewSurfaces& to = Shown();
  const double at = view.RecNow;
  to.ImgC.Line({at, view.YBottom, at, view.YTop, kGridColour});
  to.PicC.Line({at, view.YBottom, at, view.YTop, kGridColour});
  const bool is_whole = scale.step == IntFloor(scale.step);
  const std::string text = FormatMask(value, is_whole ? "####0" : "##0.0") + " ";
  to.PicX.SetScale({view.RecordScale().Left, 0, view.RecordScale().Right, kStripDepth});
  const double half = to.PicX.TextWidth(text) / 2;
  const bool has_room =
      at - half > view.RecFirst && at + half < view.RecLast && at - half > scale.last_right;
  if (!has_room) {
    return;
  }
  PrintBelow(to.PicX, at, half, text);
  to.PicX.Refresh();
  scale.last_right = at + half;
  graph.AxisTicks.Add(at, text);
}

// A word that cannot be read leaves a gap in its curve.
void GraphPlotter::DrawRow(SampleReader& reader) {
  GraphState& graph = parts_.graph;
  ViewFrame& view = graph.Shown();
  const CurveList& curves = graph.Curves;
  const std::optional<double> reference = ReferenceAt(reader, view.RecNow);
  const auto from = static_cast<double>(view.RecPrev);
  const auto to_record = static_cast<double>(view.RecNow);
  std::array<Segment, kInputs> row;
  std::size_t count = 0;
  for (int k = 0; k < curves.CurveCount; ++k) {
    const Curve& curve = curves.At(k);
    std::optional<double>& last = view.CurveLastY[k];
    std::optional<double> y = reader.Degrees(view.RecNow + curve.CurveColumn);
    y = y && reference ? std::optional(*y - *reference) : std::nullopt;
    if (last && y) {
      row.at(count++) = {from, *last, to_record, *y, curve.CurveColor};
      view.HasCurve = view.HasCurve || IsInside(view, *last, *y);
    }
    last = y;
  }
  const std::span<const Segment> drawn = std::span(row).first(count);
  const ViewSurfaces& to = Shown();
  to.ImgC.Lines(drawn);
  to.PicC.Lines(drawn);
  view.RecPrev = view.RecNow;
}

// The number of the input, then its name with an ellipsis where it has no room.
void GraphPlotter::PrintName(Surface& names, double y, int input, std::vector<LegendRow>& legend) {
  const std::string number = std::to_string(input);
  const double left = names.TextWidth("00  ");
  const std::string name = Unit().UnitInputName[input].Get();
  std::string shown = name;
  for (std::size_t count = kTextLength; left + names.TextWidth(shown) > 1 && count > 0; --count) {
    shown = FirstCharacters(name, count - 1) + "…";
  }
  names.Print(names.TextWidth("00") - names.TextWidth(number), y, number);
  names.Print(left, y, shown);
  legend.push_back({number + "  " + name, shown != name, ""});
}

void GraphPlotter::BuildLegend() {
  Surface& samples = surfaces_->PicColor;
  Surface& names = surfaces_->PicProd;
  for (Surface* surface : {&samples, &names}) {
    surface->SetScale({0, 0, 1, 1});
    surface->SetPen(Pen{});
    surface->Clear();
  }
  const double half_text = names.TextHeight() / 2;
  parts_.values.Legend.clear();
  const CurveList& curves = parts_.graph.Curves;
  for (int k = 0; k < curves.CurveCount; ++k) {
    const Curve& curve = curves.At(k);
    const double y = (k + 1) / kDrawnLegendRows;
    PrintName(names, y - half_text, curve.CurveInput, parts_.values.Legend);
    samples.Line({kSampleLeft, y, kSampleRight, y, curve.CurveColor});
  }
  samples.Refresh();
  names.Refresh();
}

}  // namespace tavrel
