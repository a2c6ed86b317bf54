#ifndef TAVREL_GRAPH_REPORT_H_
#define TAVREL_GRAPH_REPORT_H_

#include <string>

#include "graph/axis_ticks.h"
#include "graph/curve_list.h"
#include "graph/page_layout.h"
#include "platform/random_file.h"
#include "state/unit_record.h"

// The report of a part view: the plot with its axes, marks and curves, the legend, and on paper a
// header and a foot. It is drawn anew from the file, not copied from the screen; the printed page
// and the picture for the clipboard are the same composition.
namespace tavrel {

// What is reported. All outlive the drawing.
struct ReportContent {
  const UnitRecord& Unit;
  const CurveList& Curves;
  const ViewFrame& View;  // of the part view, as it is on the screen
  const ReferenceTicks& AxisTicks;
  RandomFile& File;      // the open recording
  std::string FileName;  // UTF-8
  std::string Ledger;    // how complete the recording is; empty where it has no journal
  std::string Seal;      // the last one of its journal; empty if there is none
};

// How it looks.
struct ReportStyle {
  std::string Plant;     // company
  std::string FontName;  // empty: the surface's own
  double FontSize = 0;   // points; 0: the surface's own
  bool IsColour = true;  // false: curves are told apart by patterns
  int DrawWidth = 2;     // of curves in colour, points; below 1 it is 2
  std::string Date;
};

// Draws it on an empty surface.
void DrawReport(const ReportContent& content, const ReportStyle& style, const PageLayout& layout,
                Surface& surface);

// The pen of a curve with a colour code; on a black printer four patterns take turns.
[[nodiscard]] Pen PenOfCurve(int colour_code, const ReportStyle& style);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_REPORT_H_
