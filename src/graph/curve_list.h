#ifndef TAVREL_GRAPH_CURVE_LIST_H_
#define TAVREL_GRAPH_CURVE_LIST_H_

#include "base/colour.h"
#include "base/numbered.h"
#include "state/curve_colours.h"
#include "state/unit_record.h"

namespace tavrel {

// One curve of the graph.
struct Curve {
  int CurveInput = 0;                   // 1..15
  int CurveColumn = 0;                  // place of its word in a row, from 1
  int CurveColorNo = kNoPaletteNumber;  // number in the standard palette
  Colour CurveColor;                    // black until a palette number has given one
};

// A table by the place of a curve in the list, counted from 0.
template <typename T>
using ByCurve = Numbered<T, 0, kInputs - 1>;

// The curves that a header shows, in the order of the inputs.
struct CurveList {
  int CurveCount = 0;   // 0..15 of Curves are in use
  int ColumnCount = 0;  // recorded inputs
  // Column of the reference input. It is found only if the reference input is itself a curve;
  // hidden, it keeps what it was (0 at first), and column 0 is the last word of the row before.
  int RefColumn = 0;
  ByCurve<Curve> Curves;

  [[nodiscard]] const Curve& At(int place) const { return Curves[place]; }
};

// Fills the list anew. A colour code without a palette number leaves the colour that the place in
// the list had.
void BuildCurveList(const UnitRecord& unit, CurveList& list);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_CURVE_LIST_H_
