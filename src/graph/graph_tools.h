#ifndef TAVREL_GRAPH_GRAPH_TOOLS_H_
#define TAVREL_GRAPH_GRAPH_TOOLS_H_

#include "graph/graph_plotter.h"
#include "graph/graph_state.h"
#include "graph/graph_values.h"
#include "graph/measure.h"
#include "platform/dialogs.h"
#include "state/run_state.h"

namespace tavrel {

class GraphMarks;

// Everything that the user does with the mouse on the plot: one state machine for the part
// range, the difference, the integral and the marks. Positions are in the resting scale of the
// view that is shown and may lie outside the plot; they are held inside.
class GraphTools {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    GraphState& graph;
    GraphValues& values;
    GraphPlotter& plotter;
    GraphMarks& marks;
    Dialogs& dialogs;
  };
  explicit GraphTools(const Parts& parts) : parts_(parts) {}

  // These do nothing while the graph is busy.
  void MouseDown(PlotPoint at);
  void MouseMove(PlotPoint at);
  void MouseUp(PlotPoint at);
  void MouseLeave();

  // On the legend; `height` 0 at its top, 1 at its bottom.
  void LegendUp(double height);

  // The same by the keyboard: the curve that is next to a point of the plot.
  void ChooseCurveAt(PlotPoint at);

  // PbEval: 0 the difference, 1 the integral.
  void Start(int index);

  // Leaves any tool of the part view.
  void CancelTool();

  // Leaves a drag whose release is awaited: the part range stays as it was, and its rectangle is in
  // the overview again. Allowed while rows are drawn.
  void DropDrag();

  // What every button of a tool does first: the prompts and transient strokes of the tool
  // before it go.
  void BeginTool();

 private:
  void ShowReading(PlotPoint at);
  void DropMarkPoint();
  void TakeCurve(int place);
  void BandMove(PlotPoint at);
  void BandDraw();
  void TakePartRange();
  void TakeFirstPoint(PlotPoint at);
  void TakeSecondPoint(PlotPoint at);
  void TakeBaselinePoint(PlotPoint at);
  void DrawBaseline(std::size_t last_point);
  void Integrate();
  [[nodiscard]] double SumRows(int start, int end);
  void Prompt(const std::string& text);
  [[nodiscard]] bool IsAway(PlotPoint at) const;
  [[nodiscard]] PlotPoint Held(PlotPoint at) const;
  [[nodiscard]] Surface& PicC() { return parts_.plotter.Shown().PicC; }
  [[nodiscard]] UnitRecord& Unit() const;

  Parts parts_;
  bool is_drag_ = false;  // the mouse has moved since it was pressed: it is no mere click
  PlotPoint band1_;       // start and end of the rubber band
  PlotPoint band2_;
  PlotPoint first_;
  Baseline baseline_;
  int sel_curve_ = 0;  // place of the curve to integrate, from 1; 0 none
};

// A cross at a point of the plot, of a size that the view gives. Its arms end at the plot's edges.
void DrawCross(const ViewFrame& view, PlotPoint at, Surface& target, Colour ink);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_GRAPH_TOOLS_H_
