#ifndef TAVREL_GRAPH_GRAPH_PLOTTER_H_
#define TAVREL_GRAPH_GRAPH_PLOTTER_H_

#include <functional>
#include <optional>
#include <vector>

#include "graph/graph_state.h"
#include "graph/graph_values.h"
#include "graph/sample_reader.h"
#include "platform/events.h"
#include "state/run_state.h"

namespace tavrel {

// The grid and the tick lines. The plot is white in light and dark surroundings, so they are the
// face of a button as it is on a light screen.
inline constexpr Colour kGridColour{0xC0, 0xC0, 0xC0};
inline constexpr Colour kBlack{0, 0, 0};

// Paints the two views of the graph from the header and the open file of SelSlot. It keeps no
// sample: every value is fetched when it is drawn.
class GraphPlotter {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    GraphState& graph;
    GraphValues& values;
    Events& events;
  };
  explicit GraphPlotter(const Parts& parts) : parts_(parts) {}

  // The pictures to paint on; they outlive this or are replaced.
  void Attach(GraphSurfaces* surfaces) { surfaces_ = surfaces; }
  [[nodiscard]] bool IsAttached() const { return surfaces_ != nullptr; }
  [[nodiscard]] GraphSurfaces& Surfaces() { return *surfaces_; }
  [[nodiscard]] ViewSurfaces& Shown() { return surfaces_->Views[parts_.graph.ViewShown]; }

  // Paints the marks of the part view when its empty plot is painted.
  void SetMarks(std::function<void()> show_marks) { show_marks_ = std::move(show_marks); }

  // For ViewShown: the frame, the row bounds, the resolution and a painted empty plot. Returns
  // at once while the view is prepared.
  void PrepareView();

  // For ViewShown: draws what is new since the last call. Serves events every five rows; a
  // change of ViewWanted ends the drawing, and the next call goes on where it stopped.
  void DrawCurves();

  // Names and line samples of the curves.
  void BuildLegend();

  // The dotted rectangle of the part range, on the overview. A second one wipes the first.
  void PartFrame(Surface& target) const;

  // What the user sees becomes what is permanent; all transient strokes are gone.
  void RestorePicture(int view);

  // True if Y of the curves is the difference from the reference input.
  [[nodiscard]] bool IsRelative() const;
  // True if the X axis has the values of the reference input.
  [[nodiscard]] bool HasReferenceAxis() const;

  // The value of a curve in the row of a record as the shown view has it, degrees.
  [[nodiscard]] std::optional<double> ValueAt(SampleReader& reader, int record, int column) const;

 private:
  void PrintName(Surface& names, double y, int input, std::vector<LegendRow>& legend);
  [[nodiscard]] std::optional<double> ReferenceAt(SampleReader& reader, int record) const;

  // The scale beneath the plot in the mode that puts the reference on the X axis.
  struct ReferenceScale {
    bool is_on = false;
    std::int32_t next = 0;  // the next tick, in steps from 0 degrees
    double step = 1;        // degrees
    double last_right = 0;  // right edge of the last label, a record
  };

  void FrameOverview();
  void FramePartView();
  void TakeStartPoints();
  void PaintEmptyPlot();
  void DrawAxes();
  void DrawTimeAxis(const ViewSurfaces& to);
  void DrawValueAxis(const ViewSurfaces& to);
  void DrawRows();
  void SetToolsWhileDrawing(bool is_over);
  [[nodiscard]] ReferenceScale ScanReference(SampleReader& reader);
  void DrawReferenceTick(ReferenceScale& scale, SampleReader& reader);
  void DrawRow(SampleReader& reader);
  [[nodiscard]] UnitRecord& Unit() const;

  static constexpr int kRowsToPump = 5;  // drawn between two turns of the event loop

  Parts parts_;
  GraphSurfaces* surfaces_ = nullptr;
  std::function<void()> show_marks_;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_GRAPH_PLOTTER_H_
