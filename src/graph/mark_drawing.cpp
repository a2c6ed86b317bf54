#include "graph/mark_drawing.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/text.h"
#include "graph/graph_plotter.h"
#include "graph/graph_tools.h"

namespace tavrel {
namespace {

// A mark as the header keeps it: codes of places, below 1 for a part that is absent.
struct MarkCodes {
  std::int16_t point_x;
  std::int16_t point_y;
  std::int16_t text_x;
  std::int16_t text_y;
};

MarkCodes CodesOf(const UnitRecord& unit, int k) {
  const std::size_t first = static_cast<std::size_t>(k - 1) * 4;
  const auto& codes = unit.UnitMarkPos;
  return {codes.at(first), codes.at(first + 1), codes.at(first + 2), codes.at(first + 3)};
}

bool IsMark(int k) {
  return k >= 1 && k <= kMarks;
}

bool IsPresent(std::int16_t x, std::int16_t y) {
  return x >= 1 && y >= 1;
}

}  // namespace

int MarkCount(const UnitRecord& unit) {
  return std::clamp<int>(unit.UnitMarks, 0, kMarks);
}

void ShowMarkPoint(const UnitRecord& unit, int k, const ViewFrame& view, Surface& to) {
  if (!IsMark(k)) {
    return;
  }
  const MarkCodes codes = CodesOf(unit, k);
  if (!IsPresent(codes.point_x, codes.point_y)) {
    return;
  }
  to.SetPen(Pen());
  DrawCross(view, {DecodeX(view, codes.point_x), DecodeY(view, codes.point_y)}, to, kBlack);
}

void ShowMarkText(const UnitRecord& unit, int k, const ViewFrame& view, Surface& to) {
  if (!IsMark(k)) {
    return;
  }
  const MarkCodes codes = CodesOf(unit, k);
  if (!IsPresent(codes.text_x, codes.text_y)) {
    return;
  }
  const std::string text =
      Trim(WithoutControls(unit.UnitMarkText.at(static_cast<std::size_t>(k - 1)).Get()));
  const PlotPoint at{DecodeX(view, codes.text_x), DecodeY(view, codes.text_y)};
  PrintMarkText(view, at, " " + text + " ", to);
}

void ShowMarksOf(const UnitRecord& unit, const ViewFrame& view, Surface& to) {
  for (int k = 1; k <= MarkCount(unit); ++k) {
    ShowMarkPoint(unit, k, view, to);
    ShowMarkText(unit, k, view, to);
  }
}

void PrintMarkText(const ViewFrame& view, PlotPoint at, std::string_view text, Surface& to) {
  const double width = to.TextWidth(text);
  const double half_height = std::abs(to.TextHeight()) / 2;
  if (at.X + width >= view.XRight) {
    at.X = std::max(view.XRight - width, view.XLeft);
  }
  if (at.Y + half_height >= view.YTop) {
    at.Y = view.YTop - half_height;
  }
  if (at.Y - half_height < view.YBottom) {
    at.Y = view.YBottom + half_height;
  }
  to.Print(at.X, at.Y + half_height, text);
}

}  // namespace tavrel
