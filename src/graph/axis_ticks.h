#ifndef TAVREL_GRAPH_AXIS_TICKS_H_
#define TAVREL_GRAPH_AXIS_TICKS_H_

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/numbered.h"
#include "graph/view_frame.h"

// Where the grid lines of an axis are and what stands at them. The same ticks serve the screen,
// the page and the picture.
namespace tavrel {

// One grid line of an axis and its label.
struct AxisTick {
  double At = 0;     // minutes or degrees
  std::string Text;  // empty: there is no room for the label, and no tick is drawn
  double Width = 0;  // of the text, in the unit that the measuring function uses
};

// The width of a text, in the scale of the surface that it will stand on.
using TextWidthOf = std::function<double(std::string_view)>;

// Grid steps for the span of an axis: degrees for Y, minutes for X. The X steps are cut to the
// hours and days of a long recording, the Y steps to simple numbers. A span below the smallest
// limit, and one below 0, has the smallest step.
[[nodiscard]] double StepY(double span);
[[nodiscard]] double StepX(double span);

// The ticks of the time axis, those without a label included; `width_of` measures in minutes.
[[nodiscard]] std::vector<AxisTick> TimeTicks(const ViewFrame& view, const TextWidthOf& width_of);

// The ticks of the Y axis; `text_height` is a magnitude in degrees.
[[nodiscard]] std::vector<AxisTick> ValueTicks(const ViewFrame& view, double text_height,
                                               const TextWidthOf& width_of);

// The unit beneath the X axis of a view: "min", "h  ", or "°C " on a reference axis.
[[nodiscard]] std::string AxisUnit(const ViewFrame& view, bool is_reference_axis);

inline constexpr int kMaxAxisTicks = 20;

// The labels that a reference axis got, kept for the page and the picture: the first twenty of
// the last drawing.
struct ReferenceTicks {
  int AxisTickCount = 0;
  Numbered<double, 0, kMaxAxisTicks - 1> AxisTickX;  // record numbers
  Numbered<std::string, 0, kMaxAxisTicks - 1> AxisTickText;

  // No effect when the table is full.
  void Add(double x, const std::string& text);
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_AXIS_TICKS_H_
