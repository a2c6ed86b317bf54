#ifndef TAVREL_GRAPH_GRAPH_STATE_H_
#define TAVREL_GRAPH_GRAPH_STATE_H_

#include <optional>

#include "graph/axis_ticks.h"
#include "graph/curve_list.h"
#include "graph/view_frame.h"
#include "platform/surface.h"

namespace tavrel {

inline constexpr int kLeaveGraph = 2;  // ViewWanted: the form closes with the next tick

// What the mouse does on the plot. The numbers are the system's own.
enum class Tool : int {
  kResult = -1,     // a result stands in Lbl_Instr, the mouse does nothing
  kNone = 0,        // part view at rest
  kPartRange = 2,   // overview: drag a new part range
  kFirstPoint = 3,  // of the difference
  kSecondPoint = 4,
  kChooseCurve = 5,  // on the legend, not on the plot
  kBaseline1 = 6,    // the four parts of the baseline
  kBaseline2 = 7,
  kBaseline3 = 8,
  kBaseline4 = 9,
  kMarkPoint = 10,     // point of a coordinate mark
  kMarkLocation = 11,  // and the place of its text
  kComment = 12,       // typing a comment
  kCommentLocation = 13,
};

// The button of a tool, as its array and its place in it.
struct ToolButton {
  bool IsMark = false;  // PbMark, else PbEval
  int Index = 0;

  [[nodiscard]] bool operator==(const ToolButton&) const = default;
};

// The button whose tool is at work; empty: none is.
[[nodiscard]] constexpr std::optional<ToolButton> PressedTool(Tool tool) {
  switch (tool) {
    case Tool::kFirstPoint:
    case Tool::kSecondPoint:
      return ToolButton{false, 0};
    case Tool::kChooseCurve:
    case Tool::kBaseline1:
    case Tool::kBaseline2:
    case Tool::kBaseline3:
    case Tool::kBaseline4:
      return ToolButton{false, 1};
    case Tool::kMarkPoint:
    case Tool::kMarkLocation:
      return ToolButton{true, 1};
    case Tool::kComment:
    case Tool::kCommentLocation:
      return ToolButton{true, 2};
    case Tool::kResult:
    case Tool::kNone:
    case Tool::kPartRange:
      break;
  }
  return std::nullopt;
}

// What the parts of the graph share: which curves, which views, which tool. Plain data.
struct GraphState {
  CurveList Curves;
  ByView<ViewFrame> Views;
  ReferenceTicks AxisTicks;

  int ViewShown = kOverview;
  int ViewWanted = kOverview;  // kOverview, kPartView or kLeaveGraph
  Tool ToolState = Tool::kPartRange;
  bool DragOn = false;     // a press was accepted and its release is awaited
  bool GraphBusy = false;  // a drawing or an integral is going on: events must not touch this
  bool GraphLoaded = false;
  bool OverPainted = false;
  bool PartPainted = false;

  // The part range as the user drew it, minutes and degrees.
  double PartX1 = 0;
  double PartX2 = 0;
  double PartY1 = 0;
  double PartY2 = 0;

  [[nodiscard]] ViewFrame& Shown() { return Views[ViewShown]; }
  [[nodiscard]] const ViewFrame& Shown() const { return Views[ViewShown]; }
};

// The pictures of one view. On the screen PicC is what the user sees and ImgC its copy in
// memory, which keeps the permanent strokes only.
struct ViewSurfaces {
  Surface& PicC;
  Surface& ImgC;
  Surface& PicX;
  Surface& PicY;
};

// All pictures of the form.
struct GraphSurfaces {
  ByView<ViewSurfaces> Views;
  Surface& PicColor;  // line samples of the legend, scale (0, 0) to (1, 1)
  Surface& PicProd;   // its names, the same scale
};

// True while it lives: no event may start a second drawing.
class BusyGraph {
 public:
  explicit BusyGraph(GraphState& state) : state_(state) { state_.GraphBusy = true; }
  ~BusyGraph() { state_.GraphBusy = false; }
  BusyGraph(const BusyGraph&) = delete;
  BusyGraph& operator=(const BusyGraph&) = delete;

 private:
  GraphState& state_;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_GRAPH_STATE_H_
