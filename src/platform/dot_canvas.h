#ifndef TAVREL_PLATFORM_DOT_CANVAS_H_
#define TAVREL_PLATFORM_DOT_CANVAS_H_

#include <cstddef>
#include <cstdint>

#include "platform/surface.h"

namespace tavrel {

// A place on a canvas, from 0 at its upper left corner.
struct Dot {
  int X = 0;
  int Y = 0;

  [[nodiscard]] bool operator==(const Dot&) const = default;
};

// How a stroke is drawn on a canvas.
struct DotStroke {
  std::uint32_t Ink = 0;  // 0xFFRRGGBB; plays no part in an inverting stroke
  int Width = 1;          // at least 1
  PenMode Mode = PenMode::kCopy;
  PenStyle Style = PenStyle::kSolid;

  [[nodiscard]] bool operator==(const DotStroke&) const = default;
};

// Draws with whole dots, 32 bits each, into scan lines that somebody else owns. The same stroke
// always gives the same dots, so that two inverting ones cancel each other.
class DotCanvas {
 public:
  // `dots` holds `height` lines of `stride` dots, of which the first `width` are the picture. All
  // are at least 1.
  DotCanvas(std::uint32_t* dots, std::ptrdiff_t stride, int width, int height)
      : dots_(dots), stride_(stride), width_(width), height_(height) {}

  // A line of one dot's width that covers. Both ends must lie inside.
  void ThinLine(Dot from, Dot to, std::uint32_t ink) const {
    const int dx = to.X - from.X;
    const int dy = to.Y - from.Y;
    const int across = dx < 0 ? -dx : dx;
    const int down = dy < 0 ? -dy : dy;
    const std::ptrdiff_t step_x = dx < 0 ? -1 : 1;
    const std::ptrdiff_t step_y = dy < 0 ? -stride_ : stride_;
    std::uint32_t* dot = dots_ + from.Y * stride_ + from.X;
    if (across >= down) {
      Walk(dot, {across, step_x, down, step_y}, ink);
    } else {
      Walk(dot, {down, step_y, across, step_x}, ink);
    }
  }

  // A line as the stroke says. Both ends must lie inside; what the width adds is cut.
  void Line(Dot from, Dot to, const DotStroke& stroke) const {
    const bool is_covering = stroke.Mode == PenMode::kCopy && stroke.Style == PenStyle::kSolid;
    if (is_covering && stroke.Width == 1) {
      ThinLine(from, to, stroke.Ink);
    } else {
      WideLine(from, to, stroke);
    }
  }

  // The outline of a rectangle, no dot of it drawn twice. It may lie outside: what does is cut.
  void Box(Dot corner, Dot opposite, const DotStroke& stroke) const;

  // A filled rectangle, both corners included. It may lie outside: what does is cut.
  void FillBox(Dot corner, Dot opposite, std::uint32_t ink) const;

 private:
  // Steps of the longer direction, and what one step of each direction means in memory.
  struct Course {
    int major;
    std::ptrdiff_t major_step;
    int minor;
    std::ptrdiff_t minor_step;
  };

  static void Walk(std::uint32_t* dot, const Course& course, std::uint32_t ink) {
    *dot = ink;
    int error = course.major / 2;
    for (int n = course.major; n > 0; --n) {
      dot += course.major_step;
      error -= course.minor;
      if (error < 0) {
        error += course.major;
        dot += course.minor_step;
      }
      *dot = ink;
    }
  }

  void WideLine(Dot from, Dot to, const DotStroke& stroke) const;
  void Patch(Dot corner, Dot opposite, const DotStroke& stroke) const;
  void Side(Dot corner, Dot opposite, bool is_level, const DotStroke& stroke) const;

  std::uint32_t* dots_;
  std::ptrdiff_t stride_;
  int width_;
  int height_;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_DOT_CANVAS_H_
