#include "platform/scale_map.h"

#include <algorithm>
#include <cmath>

namespace tavrel {
namespace {

constexpr double kVeryFar = 1e9;  // dots; differences of such places are still exact enough

double Held(double dot) {
  return std::clamp(dot, -kVeryFar, kVeryFar);
}

bool IsNumbers(const DotLine& line) {
  return !(std::isnan(line.X1) || std::isnan(line.Y1) || std::isnan(line.X2) ||
           std::isnan(line.Y2));
}

// The part of a line that is kept, as shares of its length.
struct Kept {
  double from = 0;
  double to = 1;

  // Keeps what lies on the inner side of one edge: `out` is how far the start lies beyond it,
  // `gain` how much nearer the end comes. False: nothing is left.
  bool CutAt(double out, double gain) {
    if (gain == 0) {
      return out <= 0;
    }
    const double share = out / gain;
    if (gain > 0) {
      from = std::max(from, share);
    } else {
      to = std::min(to, share);
    }
    return from <= to;
  }
};

double FactorOf(double dots, double from, double to) {
  const double factor = dots / (to == from ? 1 : to - from);
  return factor == 0 || !std::isfinite(factor) ? 1 : factor;
}

}  // namespace

bool CutLine(DotLine& line, const DotBox& box) {
  if (!IsNumbers(line)) {
    return false;
  }
  const DotLine whole{Held(line.X1), Held(line.Y1), Held(line.X2), Held(line.Y2)};
  const double dx = whole.X2 - whole.X1;
  const double dy = whole.Y2 - whole.Y1;
  Kept kept;
  if (!kept.CutAt(box.Left - whole.X1, dx) || !kept.CutAt(whole.X1 - box.Right, -dx) ||
      !kept.CutAt(box.Top - whole.Y1, dy) || !kept.CutAt(whole.Y1 - box.Bottom, -dy)) {
    return false;
  }
  const auto x_at = [&](double share) {
    return std::clamp(whole.X1 + share * dx, box.Left, box.Right);
  };
  const auto y_at = [&](double share) {
    return std::clamp(whole.Y1 + share * dy, box.Top, box.Bottom);
  };
  line = {x_at(kept.from), y_at(kept.from), x_at(kept.to), y_at(kept.to)};
  return true;
}

ScaleMap::ScaleMap(const Scale& scale, const DotBox& dots)
    : x_factor_(FactorOf(dots.Right - dots.Left, scale.Left, scale.Right)),
      x_origin_(dots.Left - scale.Left * x_factor_),
      y_factor_(FactorOf(dots.Bottom - dots.Top, scale.Top, scale.Bottom)),
      y_origin_(dots.Top - scale.Top * y_factor_) {}

}  // namespace tavrel
