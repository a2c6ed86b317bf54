#include "platform/dot_canvas.h"

#include <algorithm>
#include <cstdlib>

namespace tavrel {
namespace {

constexpr std::uint32_t kAllColours = 0x00FFFFFF;

// Which dots of a period are drawn: bit 0 is the first. Lengths are in widths of the line.
struct Pattern {
  unsigned bits;
  int period;
};

Pattern PatternOf(PenStyle style) {
  switch (style) {
    case PenStyle::kDash:
      return {0b001111, 6};
    case PenStyle::kDot:
      return {0b0011, 4};
    case PenStyle::kDashDot:
      return {0b001001111, 9};
    case PenStyle::kDashDotDot:
      return {0b001001001111, 12};
    case PenStyle::kSolid:
      break;
  }
  return {1, 1};
}

bool IsDrawn(int place, const DotStroke& stroke) {
  const Pattern pattern = PatternOf(stroke.Style);
  return ((pattern.bits >> (place / stroke.Width % pattern.period)) & 1U) != 0;
}

}  // namespace

// A small rectangle of the stroke, both corners included, the first one upper left.
void DotCanvas::Patch(Dot corner, Dot opposite, const DotStroke& stroke) const {
  const int left = std::max(corner.X, 0);
  const int right = std::min(opposite.X, width_ - 1);
  const int bottom = std::min(opposite.Y, height_ - 1);
  for (int y = std::max(corner.Y, 0); y <= bottom; ++y) {
    std::uint32_t* line = dots_ + y * stride_;
    for (int x = left; x <= right; ++x) {
      line[x] = stroke.Mode == PenMode::kInvert ? line[x] ^ kAllColours : stroke.Ink;
    }
  }
}

// Each step of the longer direction gets a patch across it, so that no dot is drawn twice.
void DotCanvas::WideLine(Dot from, Dot to, const DotStroke& stroke) const {
  const int across = std::abs(to.X - from.X);
  const int down = std::abs(to.Y - from.Y);
  const bool is_level = across >= down;
  const int major = std::max(across, down);
  const int minor = std::min(across, down);
  const Dot step{to.X < from.X ? -1 : 1, to.Y < from.Y ? -1 : 1};
  const int before = stroke.Width / 2;
  const int after = stroke.Width - 1 - before;
  if (minor == 0 && stroke.Style == PenStyle::kSolid) {
    const Dot aside = is_level ? Dot{0, 1} : Dot{1, 0};
    const Dot least{std::min(from.X, to.X), std::min(from.Y, to.Y)};
    const Dot most{std::max(from.X, to.X), std::max(from.Y, to.Y)};
    Patch({least.X - before * aside.X, least.Y - before * aside.Y},
          {most.X + after * aside.X, most.Y + after * aside.Y}, stroke);
    return;
  }
  int error = major / 2;
  Dot at = from;
  for (int n = 0; n <= major; ++n) {
    if (IsDrawn(n, stroke)) {
      const Dot corner = is_level ? Dot{at.X, at.Y - before} : Dot{at.X - before, at.Y};
      const Dot opposite = is_level ? Dot{at.X, at.Y + after} : Dot{at.X + after, at.Y};
      Patch(corner, opposite, stroke);
    }
    error -= minor;
    const bool is_aside = error < 0;
    error += is_aside ? major : 0;
    at.X += is_level || is_aside ? step.X : 0;
    at.Y += !is_level || is_aside ? step.Y : 0;
  }
}

void DotCanvas::Side(Dot corner, Dot opposite, bool is_level, const DotStroke& stroke) const {
  const int length = is_level ? opposite.X - corner.X : opposite.Y - corner.Y;
  for (int n = 0; n <= length; ++n) {
    if (!IsDrawn(n, stroke)) {
      continue;
    }
    if (is_level) {
      Patch({corner.X + n, corner.Y}, {corner.X + n, opposite.Y}, stroke);
    } else {
      Patch({corner.X, corner.Y + n}, {opposite.X, corner.Y + n}, stroke);
    }
  }
}

void DotCanvas::Box(Dot corner, Dot opposite, const DotStroke& stroke) const {
  const int width = stroke.Width;
  const int before = width / 2;
  const int after = width - 1 - before;
  // Beyond the edges all places are alike; held near them, the sides stay short.
  const auto held = [width](int place, int size) {
    return std::clamp(place, -2 * width, size + 2 * width);
  };
  const int left = held(std::min(corner.X, opposite.X), width_) - before;
  const int right = held(std::max(corner.X, opposite.X), width_) + after;
  const int top = held(std::min(corner.Y, opposite.Y), height_) - before;
  const int bottom = held(std::max(corner.Y, opposite.Y), height_) + after;
  const int under_top = std::min(top + width - 1, bottom);
  Side({left, top}, {right, under_top}, true, stroke);
  if (under_top == bottom) {
    return;
  }
  const int above_bottom = std::max(bottom - width + 1, under_top + 1);
  Side({left, above_bottom}, {right, bottom}, true, stroke);
  const int inner_left = std::min(left + width - 1, right);
  Side({left, under_top + 1}, {inner_left, above_bottom - 1}, false, stroke);
  const int inner_right = std::max(right - width + 1, inner_left + 1);
  Side({inner_right, under_top + 1}, {right, above_bottom - 1}, false, stroke);
}

void DotCanvas::FillBox(Dot corner, Dot opposite, std::uint32_t ink) const {
  const auto [left, right] = std::minmax(corner.X, opposite.X);
  const auto [top, bottom] = std::minmax(corner.Y, opposite.Y);
  Patch({left, top}, {right, bottom}, {ink, 1, PenMode::kCopy, PenStyle::kSolid});
}

}  // namespace tavrel
