#include "graph/curve_list.h"

namespace tavrel {
namespace {

void AddCurve(const UnitRecord& unit, int input, CurveList& list) {
  const int code = unit.UnitColour[input];
  Curve& curve = list.Curves[list.CurveCount];
  ++list.CurveCount;
  curve.CurveInput = input;
  curve.CurveColumn = list.ColumnCount;
  curve.CurveColorNo = PaletteNumberOf(code);
  const CurveColour* colour = CurveColourOf(code);
  if (colour != nullptr) {
    curve.CurveColor = colour->Rgb;
  }
  if (unit.UnitRef == input) {
    list.RefColumn = list.ColumnCount;
  }
}

}  // namespace

void BuildCurveList(const UnitRecord& unit, CurveList& list) {
  list.CurveCount = 0;
  list.ColumnCount = 0;
  for (int input = 1; input <= kInputs; ++input) {
    if (!unit.IsRecorded(input)) {
      continue;
    }
    ++list.ColumnCount;
    if (unit.UnitColour[input] >= 1) {
      AddCurve(unit, input, list);
    }
  }
}

}  // namespace tavrel
