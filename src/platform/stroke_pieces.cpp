#include "platform/stroke_pieces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace tavrel {
namespace {

constexpr std::size_t kKeptOfAColumn = 4;
constexpr std::size_t kLinesOfAPiece = 128;

using PointPlace = StrokePoints::const_iterator;

// The points of one column, of which `first` is the first.
PointPlace EndOfColumn(PointPlace first, PointPlace end, double width) {
  const double column = std::floor(first->X / width);
  return std::find_if(first, end, [column, width](const StrokePoint& point) {
    return std::floor(point.X / width) != column;
  });
}

void AddSeen(PointPlace first, PointPlace end, StrokePoints& seen) {
  if (static_cast<std::size_t>(end - first) <= kKeptOfAColumn) {
    seen.insert(seen.end(), first, end);
    return;
  }
  const auto is_higher = [](const StrokePoint& a, const StrokePoint& b) { return a.Y < b.Y; };
  const auto [least, most] = std::minmax_element(first, end, is_higher);
  std::array<PointPlace, kKeptOfAColumn> kept{first, std::min(least, most), std::max(least, most),
                                              end - 1};
  const auto kept_end = std::unique(kept.begin(), kept.end());
  std::for_each(kept.begin(), kept_end, [&seen](PointPlace place) { seen.push_back(*place); });
}

}  // namespace

StrokePoints WithoutUnseen(const StrokePoints& points, double column_width) {
  if (!(column_width > 0)) {
    return points;
  }
  StrokePoints seen;
  for (PointPlace first = points.begin(); first != points.end();) {
    const PointPlace end = EndOfColumn(first, points.end(), column_width);
    AddSeen(first, end, seen);
    first = end;
  }
  return seen;
}

std::vector<StrokePiece> InPieces(const StrokePoints& points, double length) {
  std::vector<StrokePiece> pieces;
  for (const StrokePoint& point : points) {
    if (pieces.empty()) {
      pieces.push_back({{point}, 0, 0});
      continue;
    }
    if (pieces.back().Points.size() > kLinesOfAPiece || pieces.back().Length >= length) {
      const StrokePiece& full = pieces.back();
      pieces.push_back({{full.Points.back()}, full.Before + full.Length, 0});
    }
    StrokePiece& piece = pieces.back();
    piece.Length += std::hypot(point.X - piece.Points.back().X, point.Y - piece.Points.back().Y);
    piece.Points.push_back(point);
  }
  return pieces;
}

}  // namespace tavrel
