#include "graph/graph_tools.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

#include "graph/graph_marks.h"
#include "graph/sample_reader.h"
#include "state/header_edit.h"

namespace tavrel {
namespace {

constexpr Colour kMeasureBlue{0, 0, 0xFF};
constexpr double kLeastPartWidth = 1;   // minutes
constexpr double kLeastPartHeight = 1;  // degrees
constexpr double kArmsAcross = 70;      // half a cross is this part of the view
constexpr double kArmsUp = 50;
constexpr double kLabelAway = 0.01;  // of the view, from the mouse to the label
constexpr double kClick = 0.005;     // of the view: so far a hand moves while it clicks
constexpr double kTolerance = 100;   // a part of the view, see Baseline::At

double HeldBetween(double value, double edge, double other_edge) {
  if (std::isnan(value)) {
    return edge;
  }
  return std::clamp(value, std::min(edge, other_edge), std::max(edge, other_edge));
}

bool IsBaseline(Tool tool) {
  return tool >= Tool::kBaseline1 && tool <= Tool::kBaseline4;
}

// Parts of the baseline that are drawn after the release in this state.
std::size_t PartOf(Tool tool) {
  return static_cast<std::size_t>(tool) - static_cast<std::size_t>(Tool::kBaseline1) + 1;
}

Tool After(Tool tool) {
  return static_cast<Tool>(static_cast<int>(tool) + 1);
}

}  // namespace

void DrawCross(const ViewFrame& view, PlotPoint at, Surface& target, Colour ink) {
  const double across = (view.XRight - view.XLeft) / kArmsAcross;
  const double up = (view.YTop - view.YBottom) / kArmsUp;
  const double left = std::max(at.X - across, view.XLeft);
  const double right = std::min(at.X + across, view.XRight);
  const double bottom = std::max(at.Y - up, view.YBottom);
  const double top = std::min(at.Y + up, view.YTop);
  target.Line({left, at.Y, right, at.Y, ink});
  target.Line({at.X, bottom, at.X, top, ink});
}

UnitRecord& GraphTools::Unit() const {
  return parts_.state.Unit[parts_.state.SelSlot];
}

PlotPoint GraphTools::Held(PlotPoint at) const {
  const ViewFrame& view = parts_.graph.Shown();
  return {HeldBetween(at.X, view.XLeft, view.XRight), HeldBetween(at.Y, view.YBottom, view.YTop)};
}

void GraphTools::Prompt(const std::string& text) {
  parts_.values.Lbl_Instr = text;
  parts_.values.Lbl_InstrShown = true;
}

void GraphTools::MouseDown(PlotPoint at) {
  GraphState& graph = parts_.graph;
  if (graph.GraphBusy || graph.DragOn || static_cast<int>(graph.ToolState) < 1) {
    return;
  }
  graph.DragOn = true;
  if (graph.ToolState == Tool::kPartRange) {
    parts_.plotter.PartFrame(PicC());
    parts_.plotter.PartFrame(parts_.plotter.Shown().ImgC);
    PicC().Refresh();
  }
  band1_ = Held(at);
  band2_ = band1_;
  is_drag_ = false;
}

void GraphTools::MouseMove(PlotPoint at) {
  if (parts_.graph.GraphBusy) {
    return;
  }
  const PlotPoint held = Held(at);
  GraphValues& values = parts_.values;
  const ViewFrame& view = parts_.graph.Shown();
  ShowReading(held);
  const Tool tool = parts_.graph.ToolState;
  if (tool == Tool::kMarkLocation || tool == Tool::kCommentLocation) {
    values.lbXYLeft = held.X + kLabelAway * (view.XRight - view.XLeft);
    values.lbXYTop = held.Y + kLabelAway * (view.YBottom - view.YTop);
    values.lbXYShown = true;
  }
  if (parts_.graph.DragOn) {
    BandMove(held);
  }
}

// Also while its panel is hidden, so that it is right when the panel comes back.
void GraphTools::ShowReading(PlotPoint at) {
  const bool is_in_hours = parts_.graph.Shown().IsInHours();
  parts_.values.lbX = parts_.plotter.HasReferenceAxis() ? "" : CursorTextX(at.X, is_in_hours);
  parts_.values.lbY = CursorTextY(at.Y);
}

void GraphTools::MouseLeave() {
  parts_.values.lbX.clear();
  parts_.values.lbY.clear();
}

// From where the mouse was pressed.
bool GraphTools::IsAway(PlotPoint at) const {
  const ViewFrame& view = parts_.graph.Shown();
  return std::abs(at.X - band1_.X) > kClick * (view.XRight - view.XLeft) ||
         std::abs(at.Y - band1_.Y) > kClick * (view.YTop - view.YBottom);
}

// The band does not follow below the zero line, in a relative mode neither.
void GraphTools::BandMove(PlotPoint at) {
  is_drag_ = is_drag_ || IsAway(at);
  BandDraw();
  band2_ = {at.X, std::max(at.Y, 0.0)};
  BandDraw();
  PicC().Refresh();
}

void GraphTools::BandDraw() {
  const Tool tool = parts_.graph.ToolState;
  const Segment band{band1_.X, band1_.Y, band2_.X, band2_.Y, kBlack};
  const bool has_band = tool == Tool::kPartRange || IsBaseline(tool);
  if (!has_band || band1_ == band2_) {
    return;  // a band that has not begun would leave a dot behind
  }
  PicC().SetPen({PenMode::kInvert, PenStyle::kSolid, 1});
  if (tool == Tool::kPartRange) {
    PicC().Box(band);
  } else {
    PicC().Line(band);
  }
  PicC().SetPen(Pen{});
}

void GraphTools::MouseUp(PlotPoint at) {
  GraphState& graph = parts_.graph;
  if (graph.GraphBusy || !graph.DragOn) {
    return;
  }
  graph.DragOn = false;
  const PlotPoint held = Held(at);
  ShowReading(held);
  const Tool tool = graph.ToolState;
  if (tool == Tool::kPartRange) {
    TakePartRange();
  } else if (tool == Tool::kFirstPoint) {
    TakeFirstPoint(held);
  } else if (tool == Tool::kSecondPoint) {
    TakeSecondPoint(held);
  } else if (IsBaseline(tool)) {
    TakeBaselinePoint(held);
  } else if (tool == Tool::kMarkPoint) {
    parts_.marks.TakePoint(held);
  } else if (tool == Tool::kMarkLocation || tool == Tool::kCommentLocation) {
    parts_.marks.TakeLocation();
  }
  if (graph.ViewShown == kOverview) {
    graph.ToolState = Tool::kPartRange;
  }
}

// The new range is coded against the overview. The marks of the file are coded against the range
// and are lost with the old one.
void GraphTools::TakePartRange() {
  GraphState& graph = parts_.graph;
  const bool is_large = std::abs(band1_.X - band2_.X) > kLeastPartWidth &&
                        std::abs(band1_.Y - band2_.Y) > kLeastPartHeight;
  if (is_large) {
    std::tie(graph.PartX1, graph.PartX2) = std::minmax({band1_.X, band2_.X});
    std::tie(graph.PartY1, graph.PartY2) = std::minmax({band1_.Y, band2_.Y});
    const ViewFrame& view = graph.Shown();
    EditHeader(parts_.state, parts_.state.SelSlot, [&](UnitRecord& header) {
      header.UnitView = {CodeX(view, graph.PartX1), CodeY(view, graph.PartY1),
                         CodeX(view, graph.PartX2), CodeY(view, graph.PartY2)};
      header.UnitMarks = 0;
    });
    parts_.state.PartPrepared = false;
  }
  parts_.plotter.PartFrame(parts_.plotter.Shown().ImgC);
  parts_.plotter.RestorePicture(kOverview);
  if (!is_large && (is_drag_ || IsAway(band2_))) {
    parts_.dialogs.Message({"too small", "window", BoxIcon::kInformation});
  }
}

void GraphTools::TakeFirstPoint(PlotPoint at) {
  first_ = at;
  parts_.graph.ToolState = Tool::kSecondPoint;
  Prompt("set 2nd point");
  DrawCross(parts_.graph.Shown(), at, PicC(), kMeasureBlue);
  PicC().Refresh();
}

void GraphTools::TakeSecondPoint(PlotPoint at) {
  parts_.graph.ToolState = Tool::kResult;
  parts_.values.EnableTools(true);
  DrawCross(parts_.graph.Shown(), at, PicC(), kMeasureBlue);
  PicC().Refresh();
  Prompt(DifferenceText(first_, at));
}

void GraphTools::LegendUp(double height) {
  const GraphState& graph = parts_.graph;
  if (graph.GraphBusy || graph.ToolState != Tool::kChooseCurve) {
    return;
  }
  TakeCurve(LegendCurveAt(height, graph.Curves.CurveCount));
}

void GraphTools::ChooseCurveAt(PlotPoint at) {
  const GraphState& graph = parts_.graph;
  if (graph.GraphBusy || graph.ToolState != Tool::kChooseCurve) {
    return;
  }
  const int slot = parts_.state.SelSlot;
  const int channels = Unit().UnitChannels;
  const int record = RecordOfRow(RowAt(at.X, parts_.state.RecInterval[slot], channels), channels);
  SampleReader reader(parts_.state.SlotFileNo[slot]);
  int nearest = 0;
  double least = 0;
  for (int k = 0; k < graph.Curves.CurveCount; ++k) {
    const int column = graph.Curves.At(k).CurveColumn;
    const std::optional<double> value = parts_.plotter.ValueAt(reader, record, column);
    if (!value) {
      continue;
    }
    const double away = std::abs(*value - at.Y);
    if (nearest == 0 || away < least) {
      nearest = k + 1;
      least = away;
    }
  }
  TakeCurve(nearest);
}

void GraphTools::TakeCurve(int place) {
  if (place == 0) {
    return;
  }
  sel_curve_ = place;
  parts_.graph.ToolState = Tool::kBaseline1;
  parts_.graph.DragOn = false;
  parts_.values.Up_ArrowShown = false;
  Prompt("draw baseline part 1 of 4");
}

// The first drag has a start that counts; the others run on from the point before, and the rubber
// line only shows where the mouse is.
void GraphTools::TakeBaselinePoint(PlotPoint at) {
  GraphState& graph = parts_.graph;
  const std::size_t part = PartOf(graph.ToolState);
  if (part == 1) {
    baseline_.Points[0] = band1_;
  }
  baseline_.Points.at(part) = at;
  if (graph.ToolState != Tool::kBaseline4) {
    graph.ToolState = After(graph.ToolState);
    Prompt("draw baseline part " + std::to_string(part + 1) + " of 4");
    DrawBaseline(part);
    return;
  }
  graph.ToolState = Tool::kResult;
  Prompt("calculation ... ");
  baseline_.Sort();
  parts_.values.EnableTools(true);
  DrawBaseline(part);
  Integrate();
}

void GraphTools::DrawBaseline(std::size_t last_point) {
  parts_.plotter.RestorePicture(parts_.graph.ViewShown);
  const Colour ink = parts_.graph.Curves.At(sel_curve_ - 1).CurveColor;
  for (std::size_t k = 1; k <= last_point; ++k) {
    const PlotPoint& from = baseline_.Points.at(k - 1);
    const PlotPoint& to = baseline_.Points.at(k);
    PicC().Line({from.X, from.Y, to.X, to.Y, ink});
  }
  PicC().Refresh();
}

void GraphTools::Integrate() {
  const BusyGraph busy(parts_.graph);
  const ViewFrame& view = parts_.graph.Shown();
  const int channels = Unit().UnitChannels;
  const int interval = parts_.state.RecInterval[parts_.state.SelSlot];
  const double first = RowAt(baseline_.Points.front().X, interval, channels);
  const double last = RowAt(baseline_.Points.back().X, interval, channels);
  const int start = RecordOfRow(first, channels);
  const int end = std::min(RecordOfRow(last, channels), view.RecEnd);
  const double sum = end > start ? SumRows(start, end) : 0;
  Prompt(IntegralText(interval * sum / kSecondsOfMinute));
  PicC().Refresh();
}

// Every row counts, whatever the resolution of the drawing. The area is hatched as it is summed; a
// word that cannot be read leaves a gap in both.
double GraphTools::SumRows(int start, int end) {
  const ViewFrame& view = parts_.graph.Shown();
  const int slot = parts_.state.SelSlot;
  const int channels = Unit().UnitChannels;
  const Curve& curve = parts_.graph.Curves.At(sel_curve_ - 1);
  const double tolerance = std::abs(view.XRight - view.XLeft) / kTolerance;
  SampleReader reader(parts_.state.SlotFileNo[slot]);
  PicC().SetScale(view.RecordScale());
  std::vector<Segment> hatch;
  const int rows = (end - start) / channels + 1;
  hatch.reserve(static_cast<std::size_t>(rows));
  float sum = 0;
  double base = 0;
  for (int record = start; record < end; record += channels) {
    const double x = MinutesOfRecord(record, parts_.state.RecInterval[slot], channels);
    const std::optional<double> y = parts_.plotter.ValueAt(reader, record, curve.CurveColumn);
    base = baseline_.At(x, tolerance, base);
    if (!y) {
      continue;
    }
    const auto at = static_cast<double>(record);
    hatch.push_back({at, base, at, *y, curve.CurveColor});
    sum += static_cast<float>(std::abs(*y - base));
  }
  PicC().Lines(hatch);
  PicC().SetScale(view.RestingScale());
  return static_cast<double>(sum);
}

// A mark that gets no text leaves its cross in the picture, which is then painted anew.
void GraphTools::DropMarkPoint() {
  if (parts_.graph.ToolState == Tool::kMarkLocation) {
    parts_.state.PartPrepared = false;
  }
}

void GraphTools::BeginTool() {
  DropMarkPoint();
  parts_.values.Txt_for_MarkShown = false;
  parts_.values.lbXYShown = false;
  parts_.values.picXYShown = true;
  parts_.plotter.RestorePicture(kPartView);
}

void GraphTools::Start(int index) {
  GraphState& graph = parts_.graph;
  GraphValues& values = parts_.values;
  if (index != 0 && index != 1) {
    return;
  }
  values.PbEvalEnabled[index] = false;
  BeginTool();
  graph.ToolState = index == 0 ? Tool::kFirstPoint : Tool::kChooseCurve;
  values.Up_ArrowShown = index == 1;
  Prompt(index == 0 ? "set 1st point" : "select a curve ...");
}

// While rows are drawn the scale of the overview is that of records.
void GraphTools::DropDrag() {
  GraphState& graph = parts_.graph;
  if (graph.DragOn && graph.ToolState == Tool::kPartRange) {
    const ViewFrame& view = graph.Views[kOverview];
    Surface& picture = parts_.plotter.Surfaces().Views[kOverview].ImgC;
    const Scale scale = picture.GetScale();
    picture.SetScale(view.RestingScale());
    parts_.plotter.PartFrame(picture);
    picture.SetScale(scale);
    parts_.plotter.RestorePicture(kOverview);
  }
  graph.DragOn = false;
}

void GraphTools::CancelTool() {
  GraphState& graph = parts_.graph;
  GraphValues& values = parts_.values;
  if (graph.ViewShown != kPartView) {
    return;
  }
  DropMarkPoint();
  graph.ToolState = Tool::kNone;
  graph.DragOn = false;
  values.EnableTools(true);
  values.Txt_for_MarkShown = false;
  values.Txt_for_Mark.clear();
  values.Txt_for_MarkTaken = false;
  values.picXYShown = true;
  values.lbXYShown = false;
  values.Lbl_InstrShown = false;
  values.Up_ArrowShown = false;
  values.MnuOutputEnabled = true;
  parts_.plotter.RestorePicture(kPartView);
}

}  // namespace tavrel
