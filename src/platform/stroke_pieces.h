#ifndef TAVREL_PLATFORM_STROKE_PIECES_H_
#define TAVREL_PLATFORM_STROKE_PIECES_H_

#include <vector>

// A curve as a painter gets it. A painter takes a stroke as one shape, and its work grows with the
// square of what of the shape lies in one row of dots: a curve of noise would hold the program for
// minutes. So a curve gives a page no more points than can be told apart there, and gives them in
// pieces.
namespace tavrel {

// A place on a page.
struct StrokePoint {
  double X = 0;  // dots, or the units of a page
  double Y = 0;

  [[nodiscard]] bool operator==(const StrokePoint&) const = default;
};

// One connected line of points.
using StrokePoints = std::vector<StrokePoint>;

// The points without those that nobody can see: of neighbours within one column of that width the
// first, the lowest, the highest and the last are kept, in their order. Where a column has four
// points or fewer, all are kept. A width of 0 or less keeps all.
[[nodiscard]] StrokePoints WithoutUnseen(const StrokePoints& points, double column_width);

// A part of a line.
struct StrokePiece {
  StrokePoints Points;
  double Before = 0;  // length of the line in front of this part, so that a pattern runs on
  double Length = 0;
};

// The line in parts that a painter draws at once. Each begins where the one before ended, has at
// most 128 lines, and is longer than `length` only by its last line. A line of one part is given
// back as it is.
[[nodiscard]] std::vector<StrokePiece> InPieces(const StrokePoints& points, double length);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_STROKE_PIECES_H_
