#ifndef TAVREL_GRAPH_MARK_DRAWING_H_
#define TAVREL_GRAPH_MARK_DRAWING_H_

#include <string_view>

#include "graph/measure.h"
#include "graph/view_frame.h"
#include "platform/surface.h"
#include "state/unit_record.h"

// The marks of a header on a plot: the picture on the screen and the printed page alike. The
// surface has the scale of the plot, minutes across and degrees upwards; it may reach beyond it.
namespace tavrel {

// Marks that a header says to have, 0..5 whatever stands in it.
[[nodiscard]] int MarkCount(const UnitRecord& unit);

// The cross of mark `k`, 1..5. A comment has none.
void ShowMarkPoint(const UnitRecord& unit, int k, const ViewFrame& view, Surface& to);

// The text of mark `k`.
void ShowMarkText(const UnitRecord& unit, int k, const ViewFrame& view, Surface& to);

// All of them.
void ShowMarksOf(const UnitRecord& unit, const ViewFrame& view, Surface& to);

// A text whose left end is at `at`, centred in height. It is moved so far that it lies inside the
// plot; one that is wider than the plot begins at its left edge.
void PrintMarkText(const ViewFrame& view, PlotPoint at, std::string_view text, Surface& to);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_MARK_DRAWING_H_
