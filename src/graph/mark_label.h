#ifndef TAVREL_GRAPH_MARK_LABEL_H_
#define TAVREL_GRAPH_MARK_LABEL_H_

#include <optional>
#include <string>

#include "graph/measure.h"
#include "graph/view_frame.h"

// The text of a coordinate mark, in words and numbers.
namespace tavrel {

// What the label of a mark is made of. `reference` is the reference input at the place of the
// point, degrees; empty where the recording has no row for it.
struct MarkedPoint {
  PlotPoint At;
  int GraphMode = 0;  // UnitGraphMode
  std::optional<double> Reference;
};

// Mode 0: "98.50 / 12.25 min", the time in seconds below 16 minutes, in hours from 60 minutes on.
// Mode 1: "-3.20 (95.30)", the difference and the absolute value. Mode 2: "-3.20 (98.50)", the
// difference and the reference. Without a reference the modes 1 and 2 have no bracket.
[[nodiscard]] std::string MarkLabel(const MarkedPoint& point);

// The record of the row at `minutes` in a view, as the labels of marks look for it. Empty at the
// maximal row and behind what is drawn.
[[nodiscard]] std::optional<int> RecordAt(const ViewFrame& view, double minutes, int rec_interval,
                                          int channels);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_MARK_LABEL_H_
