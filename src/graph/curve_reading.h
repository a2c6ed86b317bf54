#ifndef TAVREL_GRAPH_CURVE_READING_H_
#define TAVREL_GRAPH_CURVE_READING_H_

#include <optional>
#include <vector>

#include "graph/graph_plotter.h"
#include "graph/graph_state.h"
#include "graph/graph_values.h"
#include "graph/measure.h"
#include "state/run_state.h"

namespace tavrel {

// What the curves are at the cursor, and which of them stands out: the one that the cursor points
// at, else the one that was chosen in the legend. Values are read from the file when the cursor
// moves; none is kept but as text.
class CurveReading {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    GraphState& graph;
    GraphValues& values;
    GraphPlotter& plotter;
  };
  explicit CurveReading(const Parts& parts) : parts_(parts) {}

  // The cursor is at a point of the shown view, in its resting scale.
  void Follow(PlotPoint at);
  void Leave();

  // A click on the legend chooses the curve of that row, a second one lets it go. `height` 0 at
  // the top of the legend, 1 at its bottom.
  void Choose(double height);

  // Of the curve that stands out what is drawn in the shown view, minutes and degrees; nothing
  // where its line has a gap, and all of it if none stands out. At most four points for each of
  // a thousand parts of the view, however many rows it has.
  [[nodiscard]] std::vector<std::optional<PlotPoint>> StrongPoints() const;

 private:
  using RowValues = ByCurve<std::optional<double>>;

  [[nodiscard]] RowValues ValuesAt(double minutes) const;
  [[nodiscard]] int CurveAt(PlotPoint at, const RowValues& row) const;
  void ShowStrong(int pointed_at);

  Parts parts_;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_CURVE_READING_H_
