#include "graph/graph_marks.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "graph/graph_tools.h"
#include "graph/mark_drawing.h"
#include "graph/mark_label.h"
#include "state/header_edit.h"

namespace tavrel {
namespace {

constexpr int kDelete = 0;  // indices of PbMark
constexpr int kPoint = 1;
constexpr int kComment = 2;

constexpr std::int16_t kNoPlace = 0;  // a comment has no cross

}  // namespace

void GraphMarks::Start(int index) {
  if (index < kDelete || index > kComment) {
    return;
  }
  parts_.values.PbMarkEnabled[index] = false;
  if (index == kDelete) {
    DeleteLast();
    return;
  }
  if (MarkCount(Unit()) >= kMarks) {
    Refuse();
    return;
  }
  index == kPoint ? BeginPoint() : BeginComment();
}

void GraphMarks::DeleteLast() {
  parts_.cancel_tool();
  const int count = MarkCount(Unit());
  if (count == 0) {
    return;
  }
  EditHeader(parts_.state, parts_.state.SelSlot, [count](UnitRecord& header) {
    header.UnitMarks = static_cast<std::int16_t>(count - 1);
  });
  parts_.state.PartPrepared = false;
  parts_.show_part();
}

void GraphMarks::Refuse() {
  parts_.graph.ToolState = Tool::kResult;
  parts_.cancel_tool();
  parts_.dialogs.Message({"max. 5 entries", "TAVREL", BoxIcon::kNone});
}

void GraphMarks::BeginPoint() {
  parts_.graph.ToolState = Tool::kMarkPoint;
  parts_.values.lbXYShown = false;
  parts_.values.Lbl_Instr = "set point";
  parts_.values.Lbl_InstrShown = true;
}

void GraphMarks::BeginComment() {
  GraphValues& values = parts_.values;
  parts_.graph.ToolState = Tool::kComment;
  values.lbXYShown = false;
  values.picXYShown = false;
  values.Lbl_Instr = "enter text ...";
  values.Lbl_InstrShown = true;
  values.Txt_for_Mark.clear();
  values.Txt_for_MarkTaken = false;
  values.Txt_for_MarkShown = true;
  ++values.FocusCalls;
}

void GraphMarks::TakePoint(PlotPoint at) {
  first_ = at;
  parts_.plotter.Shown().PicC.SetPen(Pen());
  ImgC().SetPen(Pen());
  DrawCross(View(), at, ImgC(), kBlack);
  parts_.plotter.RestorePicture(kPartView);
  parts_.graph.ToolState = Tool::kMarkLocation;
  LabelFollowsFrom(at, LabelOfPoint());
}

void GraphMarks::TakeComment() {
  const std::string text = Trim(WithoutControls(parts_.values.Txt_for_Mark));
  if (text.empty()) {
    parts_.cancel_tool();
    return;
  }
  const ViewFrame& view = View();
  parts_.values.Txt_for_MarkTaken = true;
  parts_.graph.ToolState = Tool::kCommentLocation;
  LabelFollowsFrom({(view.XLeft + view.XRight) / 2, (view.YTop + view.YBottom) / 2}, text);
  parts_.plotter.Shown().PicC.Refresh();
}

// The label stands right of and beneath the pointer, so that it does not hide the place.
void GraphMarks::LabelFollowsFrom(PlotPoint at, const std::string& text) {
  constexpr double kBeside = 0.01;  // of the plot
  const ViewFrame& view = View();
  GraphValues& values = parts_.values;
  values.Lbl_Instr = "text location";
  values.Lbl_InstrShown = true;
  values.picXYShown = false;
  values.lbXY = " " + text + " ";
  values.lbXYLeft = at.X + kBeside * (view.XRight - view.XLeft);
  values.lbXYTop = at.Y - kBeside * (view.YTop - view.YBottom);
  values.lbXYShown = true;
}

void GraphMarks::TakeLocation() {
  const ViewFrame& view = View();
  const PlotPoint place = TextPlace();
  const std::int16_t text_x = CodeX(view, place.X);
  const std::int16_t text_y = CodeY(view, place.Y);
  if (parts_.graph.ToolState == Tool::kCommentLocation) {
    Keep({kNoPlace, kNoPlace, text_x, text_y}, Trim(WithoutControls(parts_.values.Txt_for_Mark)));
    return;
  }
  Keep({CodeX(view, first_.X), CodeY(view, first_.Y), text_x, text_y}, Trim(LabelOfPoint()));
}

// The middle of the left edge of the label that follows the mouse.
PlotPoint GraphMarks::TextPlace() const {
  const double height = std::abs(ImgC().TextHeight());
  return {parts_.values.lbXYLeft, parts_.values.lbXYTop - height / 2};
}

// Another view of the same file may have used up the room meanwhile.
void GraphMarks::Keep(const std::array<std::int16_t, kMarkCodes>& codes, const std::string& text) {
  const int count = MarkCount(Unit());
  if (count >= kMarks) {
    Refuse();
    return;
  }
  auto positions = Unit().UnitMarkPos;
  auto texts = Unit().UnitMarkText;
  std::copy(codes.begin(), codes.end(), positions.begin() + std::ptrdiff_t{count} * kMarkCodes);
  texts.at(static_cast<std::size_t>(count)).Set(text);
  EditHeader(parts_.state, parts_.state.SelSlot, [&](UnitRecord& header) {
    header.UnitMarks = static_cast<std::int16_t>(count + 1);
    header.UnitMarkPos = positions;
    header.UnitMarkText = texts;
  });
  ShowMarkPoint(Unit(), count + 1, View(), ImgC());
  ShowMarkText(Unit(), count + 1, View(), ImgC());
  parts_.plotter.RestorePicture(kPartView);
  parts_.graph.ToolState = Tool::kNone;
  parts_.cancel_tool();
}

void GraphMarks::ShowMarks() {
  ShowMarksOf(Unit(), View(), ImgC());
}

std::string GraphMarks::LabelOfPoint() const {
  RunState& state = parts_.state;
  const int channels = Unit().UnitChannels;
  MarkedPoint point{first_, Unit().UnitGraphMode, std::nullopt};
  const auto record = RecordAt(View(), first_.X, state.RecInterval[Slot()], channels);
  if (record) {
    SampleReader reader(state.SlotFileNo[Slot()]);
    point.Reference = reader.Degrees(*record + parts_.graph.Curves.RefColumn);
  }
  return MarkLabel(point);
}

const ViewFrame& GraphMarks::View() const {
  return parts_.graph.Views[kPartView];
}

int GraphMarks::Slot() const {
  return parts_.state.SelSlot;
}

UnitRecord& GraphMarks::Unit() const {
  return parts_.state.Unit[Slot()];
}

Surface& GraphMarks::ImgC() const {
  return parts_.plotter.Surfaces().Views[kPartView].ImgC;
}

}  // namespace tavrel
